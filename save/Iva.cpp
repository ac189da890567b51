// What the save check asks of an entry of a VAT register: dates, printed books, its section, its
// lines and totals.

#include "frame/Azienda.h"
#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"
#include "save/Passi.h"

namespace kal {

void LeggiDataIvaControllo(Registrazione& aRegistrazione) {
  aRegistrazione.Corsa.DataIvaControllo =
      aRegistrazione.CausaleCorrente.TipoRegIva == kNessunRegistro
          ? Variant("")
          : GetField(aRegistrazione.RsTesta, "DataIva");
}

// The books are asked also where the host does not want to be told.
void RegistroStampato(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Variant dataRegistrazione = GetField(rsTesta, "DataRegistrazione");
  if (RegistriIvaStampati(aRegistrazione, dataRegistrazione,
                          aRegistrazione.CausaleCorrente.TipoRegIva,
                          CInt(GetField(rsTesta, "SezionaleIva"))) &&
      aRegistrazione.Corsa.CheckRegIva) {
    AddMessage(aRegistrazione, ErrString, MessageCode::RegistroIvaGiaStampato);
  }
}

void RegistroPlafondStampato(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Variant dataPlafond = GetField(rsTesta, "DataPlafond");
  if (dataPlafond != "" && aRegistrazione.CausaleCorrente.TipoRegIva == kAcquisti &&
      RegistriIvaStampati(aRegistrazione, dataPlafond, kAcquisti,
                          CInt(GetField(rsTesta, "SezionaleIva"))) &&
      aRegistrazione.Corsa.CheckRegIva) {
    AddMessage(aRegistrazione, ErrString, MessageCode::RegistroPlafondStampato);
  }
}

// Only once the VAT parameters of the year are there.
void PeriodoBloccato(Registrazione& aRegistrazione) {
  const Esecuzione& corsa = aRegistrazione.Corsa;
  if (corsa.ParametriOk && PeriodLock(aRegistrazione.Siblings).IsLocked(corsa.DataIvaControllo)) {
    AddMessage(aRegistrazione, WarnString, MessageCode::PeriodoBloccato, {"Salvando"});
  }
}

void RigheReverseCharge(Registrazione& aRegistrazione) {
  const RecordsetRef& rsRIva = aRegistrazione.RsRIva;
  if (!GetFlag(aRegistrazione.RsTesta, "ReverseCharge")) {
    return;
  }
  rsRIva->Filter("ReverseCharge = 1");
  if (RecordsetIsEmpty(rsRIva)) {
    AddMessage(aRegistrazione, ErrString, MessageCode::RigheReverseMancanti);
  }
  rsRIva->Filter(FilterGroup::None);
}

void SezionaleIva(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Variant dataRegistrazione = GetField(rsTesta, "DataRegistrazione");
  if (RecordsetIsEmpty(NumerazioneIva(aRegistrazione, dataRegistrazione,
                                      aRegistrazione.CausaleCorrente.TipoRegIva,
                                      GetField(rsTesta, "SezionaleIva")))) {
    AddMessage(aRegistrazione, ErrString, MessageCode::SezionaleIvaInesistente);
  }
}

// Receipts at or above the threshold are reported by customer, unless the entry opts out.
void SogliaCorrispettivi(Registrazione& aRegistrazione) {
  constexpr std::int16_t kClienteOccasionale = 3;
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  const Currency soglia = Currency::FromInteger(3600);
  const Date dataSoglia = *Date::FromYmd(2011, 7, 1);
  if (aRegistrazione.CausaleCorrente.TipoRegIva == kCorrispettivi &&
      !GetFlag(rsTesta, "NonConsiderareAncheSeSopraLaSoglia") &&
      GetField(rsTesta, "TipoCliFor") == kClienteOccasionale &&
      GetField(rsTesta, "DataRegistrazione") >= dataSoglia &&
      GetField(rsTesta, "TotDocumentoVB") >= soglia) {
    AddMessage(aRegistrazione, WarnString, MessageCode::CorrispettivoSopraSoglia);
  }
}

void SospensioneNegativa(Registrazione& aRegistrazione) {
  const RecordsetRef& rsTesta = aRegistrazione.RsTesta;
  if (GetFlag(rsTesta, "InSospensione") && GetField(rsTesta, "TotDocumentoVB") < 0) {
    AddMessage(aRegistrazione, ErrString, MessageCode::SospensioneNegativa);
  }
}

}  // namespace kal
