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

Variant ValueOrDefault(const Field& field) {
  Variant value = field.Value();
  const DataType type = field.Type();
  if (!value.IsNull() && !value.IsEmpty()) {
    if (type == DataType::Single || type == DataType::Double) {
      return RoundToSixDecimals(CDbl(value));
    }
    return WithoutTime(std::move(value));
  }
  switch (type) {
    case DataType::SmallInt:
    case DataType::Integer:
    case DataType::Single:
    case DataType::Double:
    case DataType::Currency:
    case DataType::TinyInt:
    case DataType::BigInt:
    case DataType::Numeric:
      return std::int16_t{0};
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
      return "";
    case DataType::Boolean:
      return false;
    case DataType::Decimal:
      return Decimal();
    case DataType::Variant:
      break;
  }
  return value;
}

}  // namespace

Variant GetField(const RecordsetRef& rs, std::string_view name) {
  Campo campo(rs, name);
  return GetField(campo);
}

Variant GetField(Campo& campo) {
  try {
    return ValueOrDefault(campo.Place());
  } catch (...) {
    // The tag is put together here because every read passes this place and few ever fail.
    RaiseError(CurrentError(),
               "modDataBaseUtility.GetField ( Field: " + std::string(campo.Name()) + " ) ");
  }
}

Variant RawField(const RecordsetRef& rs, std::string_view name) {
  return WithoutTime(rs->Fields(name).Value());
}

bool GetFlag(const RecordsetRef& rs, std::string_view name) {
  const Variant value = GetField(rs, name);
  return !value.IsNull() && CBool(value);
}

bool RecordsetIsEmpty(const RecordsetRef& rs) noexcept {
  return rs.IsNothing() || !rs->HasCurrentRow();
}

}  // namespace kal
