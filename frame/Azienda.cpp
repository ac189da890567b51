#include "frame/Azienda.h"

namespace kal {
namespace {

constexpr Selection kNumerazioneIva = Selection()
                                          .Select("*")
                                          .From("COGNumerazioniIva")
                                          .WhereEqual("Anno")
                                          .WhereEqual("TipoRegIva")
                                          .WhereEqual("SezionaleIva");

}  // namespace

Variant Setting(const Registrazione& aRegistrazione, std::string_view name) {
  return CompanySettings(aRegistrazione.Siblings).Setting(name);
}

bool SettingFlag(const Registrazione& aRegistrazione, std::string_view name) {
  const Variant value = Setting(aRegistrazione, name);
  return !value.IsNull() && CBool(value);
}

Variant SettingText(const Registrazione& aRegistrazione, std::string_view name) {
  const Variant value = Setting(aRegistrazione, name);
  return value.IsNull() ? Variant("") : value.AsText() ? value : Variant(CStr(value));
}

RecordsetRef NumerazioneIva(const Registrazione& aRegistrazione, const Variant& aData,
                            std::int16_t aTipoRegIva, const Variant& aSezionale) {
  return Open<kNumerazioneIva>(aRegistrazione, Year(aData), aTipoRegIva, aSezionale);
}

Variant AnnoDi(const Registrazione& aRegistrazione, std::string_view aColonna) {
  constexpr std::int32_t kAnno = 4;  // the function code of a date's year
  return SqlFunctions(aRegistrazione.Siblings).Expression(kAnno, aColonna);
}

}  // namespace kal
