// The members of KalCOGCheck that only keep or hand out its state, and what its checks share.

#include "frame/KalCOGCheck.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "frame/modCommonCostanti.h"
#include "frame/modDatabaseUtility.h"
#include "frame/modKalErrorHandling.h"

namespace kal {

void KalCOGCheck::TmpTableScadenze(std::string_view name) {
  Trap("KalCOGCheck.TmpTableScadenze", [&] { tmpTableScadenze_ = name; });
}

std::string KalCOGCheck::TmpTableScadenze() const {
  return Trap("KalCOGCheck.TmpTableScadenze", [&] { return tmpTableScadenze_; });
}

void KalCOGCheck::IsFromCard(bool value) { isFromCard_ = value; }

void KalCOGCheck::IsParcella(bool value) { isParcella_ = value; }

std::string KalCOGCheck::IsInfragruppo() const {
  return Trap("KalCOGCheck.IsInfragruppo", [&] {
    const bool gestito = SettingFlag("GestisciPNInfragruppo");
    return CStr(gestito && infragruppo_);
  });
}

std::string KalCOGCheck::WarnStringModifica() const { return {}; }

std::string KalCOGCheck::WarnString() const {
  return Trap("KalCOGCheck.WarnString", [&] { return warnString_; });
}

std::string KalCOGCheck::WarnDuplicatoDocString() const {
  return Trap("KalCOGCheck.WarnDuplicatoDocString", [&] { return warnDuplicatoDocString_; });
}

std::string KalCOGCheck::WarnProtocolloString() const {
  return Trap("KalCOGCheck.WarnProtocolloString", [&] { return warnProtocolloString_; });
}

std::string KalCOGCheck::WarnInfragruppoString() const {
  return Trap("KalCOGCheck.WarnInfragruppoString", [&] { return warnInfragruppoString_; });
}

Currency KalCOGCheck::ImportoPlafond() const { return importoPlafond_; }

bool KalCOGCheck::ChiusuraRateInSospensione() const { return chiusuraRateInSospensione_; }

bool KalCOGCheck::RiaperturaRateInSospensione() const { return riaperturaRateInSospensione_; }

void KalCOGCheck::RsCausale(RecordsetRef set) { rsCausale_ = std::move(set); }

void KalCOGCheck::RsScadenze(RecordsetRef set) { rsScadenze_ = std::move(set); }

std::string KalCOGCheck::ErrString() const {
  return Trap("KalCOGCheck.ErrString", [&] { return errString_; });
}

void KalCOGCheck::RsTesta(RecordsetRef set) { rsTesta_ = std::move(set); }

void KalCOGCheck::RsRIva(RecordsetRef set) { rsRIva_ = std::move(set); }

void KalCOGCheck::RsRCont(RecordsetRef set) { rsRCont_ = std::move(set); }

void KalCOGCheck::RsRisconti(RecordsetRef set) {
  rsRisconti_ = std::move(set);
  rsRiscontiImpostato_ = true;
}

void KalCOGCheck::RsFiscalitaBL(RecordsetRef set) { rsFiscalitaBL_ = std::move(set); }

std::int32_t KalCOGCheck::GenericFx(std::string_view /*v1*/, const std::shared_ptr<void>& /*v2*/) {
  return 0;
}

RecordsetRef KalCOGCheck::Open(const QueryBuilder& query) const {
  return siblings_.CreateDataAccess()->Open(query);
}

Variant KalCOGCheck::Setting(std::string_view name) const {
  return siblings_.CreateCompanySettings()->Setting(name);
}

bool KalCOGCheck::SettingFlag(std::string_view name) const {
  const Variant value = Setting(name);
  return !value.IsNull() && CBool(value);
}

std::string KalCOGCheck::SettingText(std::string_view name) const {
  const Variant value = Setting(name);
  return value.IsNull() ? std::string() : CStr(value);
}

RecordsetRef KalCOGCheck::NumerazioneIva(const Variant& data, std::int16_t tipoRegIva,
                                         const Variant& sezionale) const {
  QueryBuilder query;
  query.Select("*")
      .From("COGNumerazioniIva")
      .WhereEqual("Anno", Year(data))
      .WhereEqual("TipoRegIva", tipoRegIva)
      .WhereEqual("SezionaleIva", sezionale);
  return Open(query);
}

void KalCOGCheck::AddMessage(std::string& target, MessageCode code,
                             std::initializer_list<Variant> parameters) const {
  const std::string text = kal::AddMessage(siblings_, target, code, parameters);
  if (observation_.observer != nullptr) {
    observation_.observer->Added(
        {ResultStringOf(target), code, NameOf(code), parameters, text, *observation_.innermost});
  }
}

void KalCOGCheck::AppendLiteral(std::string& target, const testi::Letterale& literal,
                                std::string_view shown) const {
  kal::AppendLiteral(target, shown);
  if (observation_.observer != nullptr) {
    observation_.observer->Added(
        {ResultStringOf(target), std::nullopt, literal.nome, {}, shown, *observation_.innermost});
  }
}

ResultString KalCOGCheck::ResultStringOf(const std::string& target) const {
  const std::array strings = {&errString_, &warnString_, &warnProtocolloString_,
                              &warnDuplicatoDocString_, &warnInfragruppoString_};
  return static_cast<ResultString>(std::ranges::find(strings, &target) - strings.begin());
}

}  // namespace kal
