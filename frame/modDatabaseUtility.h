// modDatabaseUtility: how the checks read fields.

#pragma once

#include <string_view>

#include "platform/Recordset.h"
#include "platform/Variant.h"

namespace kal {

// The field's value in the current row, with Null (and Empty) turned into a default of the
// field's type: 0 (16-bit) for numbers, a Decimal 0 for decimals, "" for texts and dates, False
// for booleans; of any other type it stays as it is. Floating-point values are rounded to six
// decimals, dates are calendar days. An error is raised again with the field's name in the trail.
[[nodiscard]] Variant GetField(const RecordsetRef& rs, std::string_view name);

// The field's value in the current row as it is, Null included; dates are calendar days, as they
// are for GetField.
[[nodiscard]] Variant RawField(const RecordsetRef& rs, std::string_view name);

// A field that a walk reads on every row: looked up on the row that first reads it, and kept.
class Campo {
 public:
  Campo(const RecordsetRef& rs, std::string_view name) : rs_(rs), name_(name) {}

  [[nodiscard]] std::string_view Name() const { return name_; }
  [[nodiscard]] const Field& Place() {
    if (field_ == nullptr) {
      field_ = &rs_->Fields(name_);
    }
    return *field_;
  }
  // As RawField reads it.
  [[nodiscard]] Variant Value() {
    Variant value = Place().Value();
    DropTime(value);
    return value;
  }

 private:
  const RecordsetRef& rs_;
  std::string_view name_;
  const Field* field_ = nullptr;
};
// As GetField reads it.
[[nodiscard]] Variant GetField(Campo& campo);

// Whether a boolean field is True: GetField for conditions, which a value that stays Null does not
// meet.
[[nodiscard]] bool GetFlag(const RecordsetRef& rs, std::string_view name);

// Whether the set is Nothing or has no current row. Never raises.
[[nodiscard]] bool RecordsetIsEmpty(const RecordsetRef& rs) noexcept;

}  // namespace kal
