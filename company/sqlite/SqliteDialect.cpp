#include "company/sqlite/SqliteDialect.h"

namespace kal::company {
namespace {

// The first row in two ranges. Where one of them is empty, no day is looked at; the one that lies
// ahead is looked at first, because for a new entry at the end it is the empty one.
std::string DayByDay(const Branches& branches, const ComparisonSql& day,
                     const ComparisonSql& other) {
  const bool back = IsBelow(day.operation);
  const std::string& left = day.left.sql;
  const std::string rows = " FROM " + branches.table + " WHERE " + AllOf(branches.equal) + " AND ";
  const std::string met = branches.table + " WHERE " + AllOf(branches.all) + " AND " + other.sql +
                          " AND " + left + " = ";
  // The days are not joined with their rows: SQLite might walk all rows once to make itself a
  // filter of them.
  const std::string found = DaysOf(branches, day) +
                            "SELECT day FROM days WHERE EXISTS (SELECT 1 FROM " + met +
                            "days.day) LIMIT 1";
  const std::string& ahead = back ? other.sql : day.sql;
  const std::string& behind = back ? day.sql : other.sql;
  // Neither AND nor a join keeps SQLite from starting on the days; CASE does.
  return met + "CASE WHEN EXISTS (SELECT 1" + rows + ahead + ") THEN CASE WHEN EXISTS (SELECT 1" +
         rows + behind + ") THEN (" + found + ") END END";
}

}  // namespace

std::string SqliteDialect::Year(std::string_view columnSql) const {
  return "CAST(substr(" + std::string(columnSql) + ", 1, 4) AS INTEGER)";
}

Operand SqliteDialect::IfNull(const Operand& value, const Operand& otherwise) const {
  return {.sql = "ifnull(" + value.sql + ", " + otherwise.sql + ")", .indexed = false};
}

ComparisonSql SqliteDialect::CompareWithValue(const Operand& operand, CompareWith operation,
                                              const Variant& value, std::size_t parameter) const {
  std::string sql = operand.sql;
  if (operand.column == DataType::Boolean && value.VarType() == Variant::Type::Boolean) {
    sql = "(" + sql + " <> 0)";  // True may be stored as 1 or as -1
  } else if (operand.column == DataType::Date && !IsRange(operation)) {
    sql = "substr(" + sql + ", 1, 10)";
  }
  const std::string its = "?" + std::to_string(parameter);
  return {sql.append(Symbol(operation)).append(its), operand, operation, parameter - 1, its};
}

std::string SqliteDialect::FirstRow(const Branches& branches,
                                    const std::vector<ComparisonSql>& alternative) const {
  const auto [day, other] = RangesOf(alternative);
  return branches.select + (day != nullptr ? DayByDay(branches, *day, *other)
                                           : branches.table + " WHERE " + AllOf(branches.all) +
                                                 " AND " + AllOf(alternative));
}

}  // namespace kal::company
