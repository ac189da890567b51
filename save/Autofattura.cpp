// An intra-community or reverse-charge purchase makes a self-invoice in a sales section: the
// section is there and of the same activity, its book is not printed, and its number is no larger
// than a protocol may be.

#include "checks/Checks.h"
#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"
#include "save/Passi.h"

namespace kal {
namespace {

constexpr Selection kCollegata =
    Selection().Select("Protocollo").From("COGPrimeNoteTeste").WhereEqual("IdPrimaNota");

}  // namespace

void Autofattura(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  Esecuzione& corsa = aRegistrazione.Corsa;
  const Variant dataRegistrazione = GetField(rsTesta, "DataRegistrazione");
  const std::int16_t tipoRegIva = CInt(GetField(rsTesta, "TipoRegIva"));
  const std::int16_t sezionaleIva = CInt(GetField(rsTesta, "SezionaleIva"));
  corsa.SezionaleAutofattura =
      SezionaleIvaAutofattura(aRegistrazione, tipoRegIva, sezionaleIva, dataRegistrazione);
  const std::int16_t sezionale = corsa.SezionaleAutofattura;
  if (RecordsetIsEmpty(NumerazioneIva(aRegistrazione, dataRegistrazione, kVendite, sezionale))) {
    AddMessage(aRegistrazione, ErrString, MessageCode::SezionaleAutofatturaInesistente);
  } else if (corsa.AttivitaSeparateIva) {
    const Variant attivita = VatActivities(aRegistrazione.Siblings)
                                 .ActivityCode(Year(dataRegistrazione), kVendite, sezionale);
    if (attivita != GetField(rsTesta, "CodAttivita")) {
      AddMessage(aRegistrazione, ErrString, MessageCode::AttivitaAutofatturaDiversa);
    }
  }
  if (RegistriIvaStampati(aRegistrazione, dataRegistrazione, kVendite, sezionale) &&
      corsa.CheckRegIva) {
    AddMessage(aRegistrazione, ErrString, MessageCode::RegistroAutofatturaStampato, {sezionale});
  }
  const RecordsetRef collegata =
      Open<kCollegata>(aRegistrazione, CLng(GetField(rsTesta, "IdLink")));
  corsa.ProtocolloCollegato =
      RecordsetIsEmpty(collegata) ? -1 : CLng(GetField(collegata, "Protocollo"));
}

// The number that it will get; one that it has was looked at when it got it.
void ProtocolloAutofattura(Registrazione& aRegistrazione) {
  const Esecuzione& corsa = aRegistrazione.Corsa;
  if (corsa.ProtocolloCollegato != -1) {
    return;
  }
  ProtocolNumbering numerazione(aRegistrazione.Siblings);
  const std::int32_t protocollo = numerazione.NextProtocol(
      kVendite, corsa.SezionaleAutofattura, GetField(aRegistrazione.RsTesta, "DataRegistrazione"));
  if (protocollo > kProtocolloMassimo) {
    AddMessage(aRegistrazione, WarnString, MessageCode::ProtocolloTroppoGrande,
               {TranslateText(aRegistrazione.Siblings, testi::kDellAutofattura)});
  }
}

}  // namespace kal
