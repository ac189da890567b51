// Azienda: what several checks ask of the company.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "frame/Registrazione.h"
#include "siblings/Components.h"

namespace kal {

// The rows of a constant selection, with a value for each of its comparisons.
template <const Selection& kSelezione, class... Values>
[[nodiscard]] RecordsetRef Open(const Registrazione& aRegistrazione, Values&&... values) {
  return Open<kSelezione>(aRegistrazione.Siblings, std::forward<Values>(values)...);
}
template <const Selection& kSelezione, class... Values>
[[nodiscard]] RecordsetRef OpenNamed(const Registrazione& aRegistrazione, std::string_view name,
                                     Values&&... values) {
  return OpenNamed<kSelezione>(aRegistrazione.Siblings, name, std::forward<Values>(values)...);
}

// A company setting; the flag and the text read a missing one as False and "".
[[nodiscard]] Variant Setting(const Registrazione& aRegistrazione, std::string_view name);
[[nodiscard]] bool SettingFlag(const Registrazione& aRegistrazione, std::string_view name);
[[nodiscard]] Variant SettingText(const Registrazione& aRegistrazione, std::string_view name);

// The rows of COGNumerazioniIva of one section: at most one in sound data.
[[nodiscard]] RecordsetRef NumerazioneIva(const Registrazione& aRegistrazione, const Variant& aData,
                                          std::int16_t aTipoRegIva, const Variant& aSezionale);

// The year of a date column, in words of the company's database.
[[nodiscard]] Variant AnnoDi(const Registrazione& aRegistrazione, std::string_view aColonna);

}  // namespace kal
