#include "company/sqlite/SqliteDialect.h"

#include "company/DayByDay.h"

namespace kal::company {

std::string SqliteDialect::Year(std::string_view columnSql) const {
  return "CAST(substr(" + std::string(columnSql) + ", 1, 4) AS INTEGER)";
}

Operand SqliteDialect::IfNull(const Operand& value, const Operand& otherwise) const {
  return {.sql = "ifnull(" + value.sql + ", " + otherwise.sql + ")", .indexed = false};
}

std::string SqliteDialect::CompareWithValue(const Operand& operand, CompareWith operation,
                                            const Variant& value, std::size_t parameter) const {
  std::string sql = operand.sql;
  if (operand.column == DataType::Boolean && value.VarType() == Variant::Type::Boolean) {
    sql = "(" + sql + " <> 0)";  // True may be stored as 1 or as -1
  } else if (operand.column == DataType::Date && !IsRange(operation)) {
    sql = "substr(" + sql + ", 1, 10)";
  }
  return sql.append(Symbol(operation)).append("?").append(std::to_string(parameter));
}

}  // namespace kal::company
