#include "frame/modDatabaseUtility.h"

#include <cmath>
#include <string>

#include "frame/modKalErrorHandling.h"

namespace kal {
namespace {

// Half to even on the sixth decimal; numbers too large to have six decimals stay as they are.
double RoundToSixDecimals(double value) {
  constexpr double kMillion = 1e6;
  constexpr double kNoDecimalsAbove = 4503599627.0;  // 2^52 / 10^6
  if (!(std::abs(value) < kNoDecimalsAbove)) {
    return value;
  }
  return std::nearbyint(value * kMillion) / kMillion;
}

Variant ValueOrDefault(const Field& field) {
  Variant value = field.Value();
  const DataType type = field.Type();
  if (!value.IsNull() && !value.IsEmpty()) {
    if (type == DataType::Single || type == DataType::Double) {
      return RoundToSixDecimals(CDbl(value));
    }
    return value;
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
  try {
    return ValueOrDefault(rs->Fields(name));
  } catch (...) {
    // The tag is put together here because every read passes this place and few ever fail.
    RaiseError(CurrentError(), "modDataBaseUtility.GetField ( Field: " + std::string(name) + " ) ");
  }
}

bool GetFlag(const RecordsetRef& rs, std::string_view name) {
  const Variant value = GetField(rs, name);
  return !value.IsNull() && CBool(value);
}

bool RecordsetIsEmpty(const RecordsetRef& rs) noexcept {
  return rs.IsNothing() || !rs->HasCurrentRow();
}

}  // namespace kal
