// TestProtocollo: protocol numbers grow with the registration date within a register, section and
// year, and none stands twice.
//
// TestProtocolloIntra: the self-invoice of an intra-community or reverse-charge purchase keeps that
// order too, with the number that it has or will get.
//
// Provisional entries and the entry itself (or its self-invoice) do not count; on the same day
// any order will do. One conflict is reported, whichever the database gives first.

#include <string>

#include "frame/KalCOGCheck.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// A protocol to be placed among the saved entries of its register.
struct Protocollo {
  std::int32_t IdEscluso;
  Variant Data;
  std::int16_t TipoRegIva;
  std::int16_t SezionaleIva;
  std::int32_t Numero;
};

void CercaConflitto(QueryBuilder& query, SiblingFactory& siblings, const Protocollo& aProtocollo) {
  const std::string anno =
      siblings.CreateSqlFunctions()->Expression(kFunzioneAnno, "DataRegistrazione");
  const Variant& data = aProtocollo.Data;
  const std::int32_t numero = aProtocollo.Numero;
  query.OnlyFirst()
      .Select("Protocollo, DataRegistrazione")
      .From("COGPrimeNoteTeste")
      .Where("IdPrimaNota", CompareWith::NotEqual, aProtocollo.IdEscluso)
      .WhereEqual(anno, CStr(Year(data)))
      .WhereEqual("TipoRegIva", aProtocollo.TipoRegIva)
      .WhereEqual("SezionaleIva", aProtocollo.SezionaleIva)
      .WhereEqual("IsNull(Provvisoria,0)", 0)
      .WhereAnyOf({{{"Protocollo", CompareWith::Greater, numero},
                    {"DataRegistrazione", CompareWith::Less, data}},
                   {{"Protocollo", CompareWith::Less, numero},
                    {"DataRegistrazione", CompareWith::Greater, data}},
                   {{"Protocollo", CompareWith::Equal, numero}}});
}

}  // namespace

void KalCOGCheck::TestProtocollo() {
  Trap("KalCOGCheck.TestProtocollo", [&] {
    const Protocollo protocollo{.IdEscluso = CLng(GetField(rsTesta_, "IdPrimaNota")),
                                .Data = CDate(GetField(rsTesta_, "DataRegistrazione")),
                                .TipoRegIva = causaleCorrente_.TipoRegIva,
                                .SezionaleIva = CInt(GetField(rsTesta_, "SezionaleIva")),
                                .Numero = CLng(GetField(rsTesta_, "Protocollo"))};
    QueryBuilder query;
    CercaConflitto(query, siblings_, protocollo);
    const RecordsetRef conflitto = Open(query);
    if (!RecordsetIsEmpty(conflitto)) {
      AddMessage(warnProtocolloString_, MessageCode::ProtocolloNonInOrdine,
                 {GetField(conflitto, "DataRegistrazione"), GetField(conflitto, "Protocollo")});
    }
  });
}

void KalCOGCheck::TestProtocolloIntra(std::int32_t aIdLink, std::int32_t aProtocolloCollegato,
                                      std::int16_t aSezionaleIva) {
  Trap("KalCOGCheck.TestProtocolloIntra", [&] {
    Protocollo protocollo{.IdEscluso = aIdLink,
                          .Data = GetField(rsTesta_, "DataRegistrazione"),
                          .TipoRegIva = kVendite,
                          .SezionaleIva = aSezionaleIva,
                          .Numero = aProtocolloCollegato};
    if (aProtocolloCollegato == -1) {
      protocollo.Numero = siblings_.CreateProtocolNumbering()->NextProtocol(kVendite, aSezionaleIva,
                                                                            protocollo.Data);
    }
    QueryBuilder query;
    CercaConflitto(query, siblings_, protocollo);
    const RecordsetRef conflitto = Open(query);
    if (!RecordsetIsEmpty(conflitto)) {
      AddMessage(warnProtocolloString_, MessageCode::AutofatturaNonInOrdine,
                 {GetField(conflitto, "DataRegistrazione"), GetField(conflitto, "Protocollo")});
    }
  });
}

}  // namespace kal
