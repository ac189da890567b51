// TestProtocollo: protocol numbers grow with the registration date within a register, section and
// year, and none stands twice.
//
// TestProtocolloIntra: the self-invoice of an intra-community or reverse-charge purchase keeps that
// order too, with the number that it has or will get.
//
// Provisional entries and the entry itself (or its self-invoice) do not count; on the same day
// any order will do. One conflict is reported, whichever the database gives first.

#include <string>

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// The name that comes with each use is the year of the registration date.
constexpr Selection kConflitto =
    Selection()
        .OnlyFirst()
        .Select("Protocollo, DataRegistrazione")
        .From("COGPrimeNoteTeste")
        .Where("IdPrimaNota", CompareWith::NotEqual)
        .WhereEqual(kGivenName)
        .WhereEqual("TipoRegIva")
        .WhereEqual("SezionaleIva")
        .WhereEqual("IsNull(Provvisoria,0)")
        .WhereAnyOf(
            {{{"Protocollo", CompareWith::Greater}, {"DataRegistrazione", CompareWith::Less}},
             {{"Protocollo", CompareWith::Less}, {"DataRegistrazione", CompareWith::Greater}},
             {{"Protocollo", CompareWith::Equal}}});

// A protocol to be placed among the saved entries of its register.
struct Protocollo {
  std::int32_t IdEscluso;
  Variant Data;
  std::int16_t TipoRegIva;
  std::int16_t SezionaleIva;
  std::int32_t Numero;
};

void CercaConflitto(Registrazione& aRegistrazione, const Protocollo& aProtocollo,
                    MessageCode aMessaggio) {
  const Variant& data = aProtocollo.Data;
  const std::int32_t numero = aProtocollo.Numero;
  const Variant anno = AnnoDi(aRegistrazione, "DataRegistrazione");
  const RecordsetRef conflitto = OpenNamed<kConflitto>(
      aRegistrazione, *anno.AsText(), aProtocollo.IdEscluso, CStr(Year(data)),
      aProtocollo.TipoRegIva, aProtocollo.SezionaleIva, 0, numero, data, numero, data, numero);
  if (!RecordsetIsEmpty(conflitto)) {
    const Variant dataConflitto = GetField(conflitto, "DataRegistrazione");
    AddMessage(aRegistrazione, WarnProtocolloString, aMessaggio,
               {dataConflitto, GetField(conflitto, "Protocollo")});
  }
}

}  // namespace

void TestProtocollo(Registrazione& aRegistrazione) {
  Trap(aRegistrazione, "KalCOGCheck.TestProtocollo", [&] {
    const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
    CercaConflitto(aRegistrazione,
                   {.IdEscluso = CLng(GetField(rsTesta, "IdPrimaNota")),
                    .Data = CDate(GetField(rsTesta, "DataRegistrazione")).WithoutTime(),
                    .TipoRegIva = aRegistrazione.CausaleCorrente.TipoRegIva,
                    .SezionaleIva = CInt(GetField(rsTesta, "SezionaleIva")),
                    .Numero = CLng(GetField(rsTesta, "Protocollo"))},
                   MessageCode::ProtocolloNonInOrdine);
  });
}

void TestProtocolloIntra(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const std::int32_t idLink = CLng(GetField(rsTesta, "IdLink"));
  Trap(aRegistrazione, "KalCOGCheck.TestProtocolloIntra", [&] {
    Protocollo protocollo{.IdEscluso = idLink,
                          .Data = GetField(rsTesta, "DataRegistrazione"),
                          .TipoRegIva = kVendite,
                          .SezionaleIva = aRegistrazione.Corsa.SezionaleAutofattura,
                          .Numero = aRegistrazione.Corsa.ProtocolloCollegato};
    if (protocollo.Numero == -1) {
      protocollo.Numero = ProtocolNumbering(aRegistrazione.Siblings)
                              .NextProtocol(kVendite, protocollo.SezionaleIva, protocollo.Data);
    }
    CercaConflitto(aRegistrazione, protocollo, MessageCode::AutofatturaNonInOrdine);
  });
}

}  // namespace kal
