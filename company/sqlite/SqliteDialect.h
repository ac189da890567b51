// SqliteDialect: SQLite's SQL. Amounts and dates are stored as texts, flags as numbers.

#pragma once

#include "company/Branches.h"
#include "company/Dialect.h"

namespace kal::company {

class SqliteDialect final : public Dialect {
 public:
  [[nodiscard]] std::string Year(std::string_view columnSql) const override;
  [[nodiscard]] Operand IfNull(const Operand& value, const Operand& otherwise) const override;
  [[nodiscard]] std::string Compared(const Operand& operand) const override { return operand.sql; }
  [[nodiscard]] ComparisonSql CompareWithValue(const Operand& operand, CompareWith operation,
                                               const Variant& value,
                                               std::size_t parameter) const override;
  [[nodiscard]] std::string FirstRow(const Branches& branches,
                                     const std::vector<ComparisonSql>& alternative) const override;
};

}  // namespace kal::company
