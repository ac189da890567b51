#include "frame/modDatabaseUtility.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "frame/modKalErrorHandling.h"
#include "platform/NumberText.h"

namespace kal {
namespace {

// The number that its 15 significant digits show, with six decimals, an exact half away from zero.
double RoundToSixDecimals(double value) {
  constexpr int kSignificant = 15;
  constexpr std::int64_t kDecimals = 6;
  constexpr double kMillion = 1e6;
  if (value == std::trunc(value)) {
    return value;
  }
  const std::optional<NumberText> shown = SignificantDigits(value, kSignificant);
  if (!shown) {
    return value;
  }
  const std::int64_t kept = shown->WholeDigits() + kDecimals;
  if (kept >= static_cast<std::int64_t>(shown->count)) {
    return shown->ToDouble().value_or(value);
  }
  if (kept < 0) {
    return 0.0;
  }
  const auto digits = static_cast<std::size_t>(kept);
  std::int64_t millionths = 0;
  for (std::size_t i = 0; i < digits; ++i) {
    millionths = millionths * 10 + (shown->digits[i] - '0');
  }
  millionths += shown->digits[digits] >= '5' ? 1 : 0;
  const double rounded = static_cast<double>(millionths) / kMillion;
  return shown->negative ? -rounded : rounded;
}

// What stands for Null (and Empty) in a field of that type; `value` itself where nothing does.
void MakeDefault(DataType type, Variant& value) {
  switch (type) {
    case DataType::SmallInt:
    case DataType::Integer:
    case DataType::Single:
    case DataType::Double:
    case DataType::Currency:
    case DataType::TinyInt:
    case DataType::BigInt:
    case DataType::Numeric:
      value = std::int16_t{0};
      break;
    case DataType::Date:
    case DataType::Text:
    case DataType::Char:
    case DataType::WChar:
    case DataType::DBTime:
    case DataType::DBTimeStamp:
    case DataType::VarChar:
    case DataType::LongVarChar:
    case DataType::VarWChar:
    case DataType::LongVarWChar:
      value = "";
      break;
    case DataType::Boolean:
      value = false;
      break;
    case DataType::Decimal:
      value = Decimal();
      break;
    case DataType::Variant:
      break;
  }
}

Variant ValueOrDefault(const Field& field) {
  Variant value = field.Value();
  const DataType type = field.Type();
  if (value.IsNull() || value.IsEmpty()) {
    MakeDefault(type, value);
  } else if (type == DataType::Single || type == DataType::Double) {
    value = RoundToSixDecimals(CDbl(value));
  } else {
    DropTime(value);
  }
  return value;
}

// The error under way, with the field's name in its trail. The tag is put together here because
// every read passes its place and few ever fail.
[[noreturn]] void RaiseOfField(std::string_view name) {
  RaiseError(CurrentError(), "modDataBaseUtility.GetField ( Field: " + std::string(name) + " ) ");
}

}  // namespace

Variant GetField(const RecordsetRef& rs, std::string_view name) {
  try {
    return ValueOrDefault(rs->Fields(name));
  } catch (...) {
    RaiseOfField(name);
  }
}

Variant GetField(Campo& campo) {
  try {
    return ValueOrDefault(campo.Place());
  } catch (...) {
    RaiseOfField(campo.Name());
  }
}

Variant RawField(const RecordsetRef& rs, std::string_view name) {
  Campo campo(rs, name);
  return campo.Value();
}

bool GetFlag(const RecordsetRef& rs, std::string_view name) {
  const Variant value = GetField(rs, name);
  return !value.IsNull() && CBool(value);
}

bool RecordsetIsEmpty(const RecordsetRef& rs) noexcept {
  return rs.IsNothing() || !rs->HasCurrentRow();
}

}  // namespace kal
