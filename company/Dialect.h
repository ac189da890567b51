// Dialect: what the SQL of the engines does not have in common.
//
// Everything else of a selection is written once for all of them, in QuerySql, QueryTexts and
// DayByDay.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Recordset.h"
#include "platform/Variant.h"
#include "siblings/Selection.h"

namespace kal::company {

// A piece of SQL that stands for one value.
struct Operand {
  std::string sql;
  std::optional<DataType> type{};    // of its values, where it is known
  std::optional<DataType> column{};  // likewise, of a bare column
  bool indexed = true;               // whether an index may begin with it
};

// " = " and so on, the same in all.
[[nodiscard]] constexpr std::string_view Symbol(CompareWith operation) {
  switch (operation) {
    case CompareWith::Equal:
      return " = ";
    case CompareWith::NotEqual:
      return " <> ";
    case CompareWith::Less:
      return " < ";
    case CompareWith::LessOrEqual:
      return " <= ";
    case CompareWith::Greater:
      return " > ";
    case CompareWith::GreaterOrEqual:
      return " >= ";
  }
  return " = ";
}

class Dialect {
 public:
  Dialect() = default;
  Dialect(const Dialect&) = delete;
  Dialect& operator=(const Dialect&) = delete;
  virtual ~Dialect() = default;

  // The year of a date column, as a number. Index and selection must use the same expression.
  [[nodiscard]] virtual std::string Year(std::string_view columnSql) const = 0;
  // The value, or the other one where it is Null.
  [[nodiscard]] virtual Operand IfNull(const Operand& value, const Operand& otherwise) const = 0;
  // The operand where it is compared with another one, a flag as 0 or 1.
  [[nodiscard]] virtual std::string Compared(const Operand& operand) const = 0;
  // The operand compared with a parameter, which will be a value of the same kind as this one.
  [[nodiscard]] virtual std::string CompareWithValue(const Operand& operand, CompareWith operation,
                                                     const Variant& value,
                                                     std::size_t parameter) const = 0;
  // A selection of so many columns of which the first row is all that is read.
  [[nodiscard]] virtual std::string OnlyFirst(const std::string& rows,
                                              std::size_t columns) const = 0;
};

}  // namespace kal::company
