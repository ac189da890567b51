// Dialect: what the SQL of the engines does not have in common.
//
// Everything else of a selection is written once for all of them, in QuerySql, QueryTexts and
// Branches.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

struct Branches;
struct ComparisonSql;

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
  // The operand compared with a value of the same kind as this one, which comes as a parameter.
  [[nodiscard]] virtual ComparisonSql CompareWithValue(const Operand& operand,
                                                       CompareWith operation, const Variant& value,
                                                       std::size_t parameter) const = 0;
  // The first row that meets an alternative and what all of them share; the one that is read where
  // several do.
  [[nodiscard]] virtual std::string FirstRow(
      const Branches& branches, const std::vector<ComparisonSql>& alternative) const = 0;
};

}  // namespace kal::company
