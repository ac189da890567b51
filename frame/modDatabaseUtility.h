// modDatabaseUtility: how the checks read fields.

#pragma once

#include <string_view>

#include "platform/Recordset.h"
#include "platform/Variant.h"

namespace kal {

// The field's value in the current row, with Null (and Empty) turned into a default of the
// field's type: 0 (16-bit) for numbers, a Decimal 0 for decimals, "" for texts and dates, False
// for booleans; of any other type it stays as it is. Floating-point values are rounded to six
// decimals. An error is raised again with the field's name in the trail.
[[nodiscard]] Variant GetField(const RecordsetRef& rs, std::string_view name);

// Whether a boolean field is True: GetField for conditions, which a value that stays Null does not
// meet.
[[nodiscard]] bool GetFlag(const RecordsetRef& rs, std::string_view name);

// Whether the set is Nothing or has no current row. Never raises.
[[nodiscard]] bool RecordsetIsEmpty(const RecordsetRef& rs) noexcept;

}  // namespace kal
