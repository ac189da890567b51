#include "company/Settings.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "company/DataError.h"
#include "platform/LetterCase.h"
#include "platform/Recordset.h"

namespace kal::company {
namespace {

// The settings that are answered as something else than the text that is stored.
struct SettingType {
  std::string_view name;
  DataType type;
};
constexpr SettingType kSettingTypes[] = {
    {"AttivitaSeparateIva", DataType::Boolean},
    {"GestisciPNInfragruppo", DataType::Boolean},
    {"BloccoInviatoSDI", DataType::Boolean},
    {"GirocontoFatturaSplitPayment", DataType::Boolean},
    {"GirocontoFatturaSplitPaymentPAS", DataType::Boolean},
    {"AziendaSplitPayment", DataType::Boolean},
    {"DataInizioSplitPayment", DataType::Date},
};

bool FlagOfText(std::string_view text) {
  if (text == "1" || text == "-1" || SameName(text, "True")) {
    return true;
  }
  if (text == "0" || SameName(text, "False")) {
    return false;
  }
  Raise(RunTime::TypeMismatch, "no boolean");
}

Variant SettingOfText(DataType type, std::string_view text) {
  if (type == DataType::Boolean) {
    return FlagOfText(text);
  }
  const std::optional<Date> date = Date::FromIso(text);
  if (!date) {
    Raise(RunTime::TypeMismatch, "no date");
  }
  return *date;
}

}  // namespace

Variant SettingValue(std::string_view name, const Variant& stored) {
  const auto text = stored.AsText();
  if (!text || text->empty()) {
    return Null;
  }
  const auto* const known = std::ranges::find(kSettingTypes, name, &SettingType::name);
  if (known == std::end(kSettingTypes)) {
    return stored;
  }
  try {
    return SettingOfText(known->type, *text);
  } catch (const RunTimeError& error) {
    RaiseDataError(error.Number(), "The setting " + std::string(name) + " can't have the value '" +
                                       std::string(*text) + "'");
  }
}

}  // namespace kal::company
