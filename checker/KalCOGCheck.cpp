#include "checker/KalCOGCheck.h"

#include "frame/Azienda.h"
#include "frame/Observer.h"
#include "frame/Registrazione.h"
#include "frame/modKalErrorHandling.h"
#include "modify/Modify.h"
#include "save/OkAggiorna.h"

namespace kal {

KalCOGCheck::KalCOGCheck(Siblings& siblings)
    : registrazione_(std::make_unique<Registrazione>(siblings)) {}

KalCOGCheck::~KalCOGCheck() = default;

void KalCOGCheck::TmpTableScadenze(Unread<std::string> name) {
  Trap(*registrazione_, "KalCOGCheck.TmpTableScadenze",
       [&] { registrazione_->TmpTableScadenze = name(); });
}

std::string KalCOGCheck::TmpTableScadenze() const {
  return Trap(*registrazione_, "KalCOGCheck.TmpTableScadenze",
              [&] { return registrazione_->TmpTableScadenze; });
}

void KalCOGCheck::IsFromCard(bool value) { registrazione_->IsFromCard = value; }

void KalCOGCheck::IsParcella(bool value) { registrazione_->IsParcella = value; }

std::string KalCOGCheck::IsInfragruppo() const {
  return Trap(*registrazione_, "KalCOGCheck.IsInfragruppo", [&] {
    const bool gestito = SettingFlag(*registrazione_, "GestisciPNInfragruppo");
    return CStr(gestito && registrazione_->Infragruppo);
  });
}

std::string KalCOGCheck::WarnStringModifica() const { return {}; }

std::string KalCOGCheck::WarnString() const {
  return Trap(*registrazione_, "KalCOGCheck.WarnString",
              [&] { return registrazione_->Rilievi.Text(ResultString::WarnString); });
}

std::string KalCOGCheck::WarnDuplicatoDocString() const {
  return Trap(*registrazione_, "KalCOGCheck.WarnDuplicatoDocString",
              [&] { return registrazione_->Rilievi.Text(ResultString::WarnDuplicatoDocString); });
}

std::string KalCOGCheck::WarnProtocolloString() const {
  return Trap(*registrazione_, "KalCOGCheck.WarnProtocolloString",
              [&] { return registrazione_->Rilievi.Text(ResultString::WarnProtocolloString); });
}

std::string KalCOGCheck::WarnInfragruppoString() const {
  return Trap(*registrazione_, "KalCOGCheck.WarnInfragruppoString",
              [&] { return registrazione_->Rilievi.Text(ResultString::WarnInfragruppoString); });
}

bool KalCOGCheck::OkCancellaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc) {
  return kal::OkCancellaDoc(*registrazione_, aTipologiaDoc, aIdDoc);
}

bool KalCOGCheck::OkModificaDoc(std::int16_t aTipologiaDoc, std::int32_t aIdDoc) {
  return kal::OkModificaDoc(*registrazione_, aTipologiaDoc, aIdDoc);
}

Currency KalCOGCheck::ImportoPlafond() const { return registrazione_->ImportoPlafond; }

bool KalCOGCheck::ChiusuraRateInSospensione() const {
  return registrazione_->ChiusuraRateInSospensione;
}

bool KalCOGCheck::RiaperturaRateInSospensione() const {
  return registrazione_->RiaperturaRateInSospensione;
}

bool KalCOGCheck::OkModifica() { return kal::OkModifica(*registrazione_); }

bool KalCOGCheck::ScadenzeInDistinta() { return kal::ScadenzeInDistinta(*registrazione_); }

bool KalCOGCheck::ScadenzeInDistintaIncPag() {
  return kal::ScadenzeInDistintaIncPag(*registrazione_);
}

bool KalCOGCheck::OkCancella() { return kal::OkCancella(*registrazione_); }

bool KalCOGCheck::CheckDuplicatoNrDocRicevuto(Unread<std::string> aNumeroDoc,
                                              Unread<Variant> aDataDoc, std::int32_t aIdAnagrafica,
                                              std::int32_t aIdPrimaNota) {
  return kal::CheckDuplicatoNrDocRicevuto(*registrazione_, aNumeroDoc, aDataDoc, aIdAnagrafica,
                                          aIdPrimaNota);
}

bool KalCOGCheck::ContabilitaChiusa() { return kal::ContabilitaChiusa(*registrazione_); }

void KalCOGCheck::RsCausale(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsCausale", [&] { registrazione_->RsCausale = set(); });
}

void KalCOGCheck::RsScadenze(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsScadenze", [&] { registrazione_->RsScadenze = set(); });
}

std::string KalCOGCheck::ErrString() const {
  return Trap(*registrazione_, "KalCOGCheck.ErrString",
              [&] { return registrazione_->Rilievi.Text(ResultString::ErrString); });
}

void KalCOGCheck::RsTesta(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsTesta", [&] { registrazione_->RsTesta = set(); });
}

void KalCOGCheck::RsRIva(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsRIva", [&] { registrazione_->RsRIva = set(); });
}

void KalCOGCheck::RsRCont(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsRCont", [&] { registrazione_->RsRCont = set(); });
}

bool KalCOGCheck::OkAggiorna(bool aCheckRegIva, bool aCheckDuplicatoDoc) {
  return kal::OkAggiorna(*registrazione_, aCheckRegIva, aCheckDuplicatoDoc);
}

bool KalCOGCheck::LibroGiornaleStampato(Unread<Variant> aDataReg) {
  return kal::LibroGiornaleStampato(*registrazione_, aDataReg);
}

bool KalCOGCheck::RegistriIvaStampati(Unread<Variant> aDataReg, std::int16_t aTipoRegIva,
                                      std::int16_t aSezionale) {
  return kal::RegistriIvaStampati(*registrazione_, aDataReg, aTipoRegIva, aSezionale);
}

std::int32_t KalCOGCheck::LeggiIdPrimaNota(std::int32_t aIdDoc, std::int16_t aTipoDoc) {
  return kal::LeggiIdPrimaNota(*registrazione_, aIdDoc, aTipoDoc);
}

void KalCOGCheck::RsRisconti(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsRisconti", [&] { registrazione_->RsRisconti = set(); });
}

void KalCOGCheck::RsFiscalitaBL(Unread<RecordsetRef> set) {
  Trap(*registrazione_, "KalCOGCheck.RsFiscalitaBL",
       [&] { registrazione_->RsFiscalitaBL = set(); });
}

bool KalCOGCheck::CheckDuplicatoNrDocEmesso(std::int16_t aTipoRegIva, std::int16_t aSezionaleIva,
                                            Unread<std::string> aNumeroDoc,
                                            Unread<Variant> aDataDoc, std::int32_t aIdPrimaNota) {
  return kal::CheckDuplicatoNrDocEmesso(*registrazione_, aTipoRegIva, aSezionaleIva, aNumeroDoc,
                                        aDataDoc, aIdPrimaNota);
}

std::int32_t KalCOGCheck::GenericFx(std::string_view /*v1*/, const std::shared_ptr<void>& /*v2*/) {
  return 0;
}

const Findings& KalCOGCheck::Findings() const { return registrazione_->Rilievi; }

void KalCOGCheck::Observe(Observer* observer) { registrazione_->Operazioni = {observer, nullptr}; }

}  // namespace kal
