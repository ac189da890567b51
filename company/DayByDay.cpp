#include "company/DayByDay.h"

#include "company/QueryTexts.h"

namespace kal::company {
namespace {

std::string AllOf(const std::vector<std::string>& conditions) {
  return Joined(conditions, " AND ", "TRUE");
}

std::string AllOf(const std::vector<ComparisonSql>& comparisons) {
  std::vector<std::string> conditions;
  conditions.reserve(comparisons.size());
  for (const ComparisonSql& comparison : comparisons) {
    conditions.push_back(comparison.sql);
  }
  return AllOf(conditions);
}

// The first row in two ranges, behind its FROM. An index serves only one of them, and half a year
// may lie in it. But a year has few days: each is found with one step in the index, and in each the
// other range with another. Where one of the ranges is empty, as for a new entry at the end, no day
// is looked at.
std::string DayByDay(const Branches& branches, const ComparisonSql& day,
                     const ComparisonSql& other) {
  const bool back = day.operation == CompareWith::Less || day.operation == CompareWith::LessOrEqual;
  const std::string rows = " FROM " + branches.table + " WHERE " + AllOf(branches.equal) + " AND ";
  const std::string nearest = " ORDER BY " + day.left.sql + (back ? " DESC" : "") + " LIMIT 1)";
  const std::string days = "WITH RECURSIVE days(day) AS (SELECT (SELECT " + day.left.sql + rows +
                           day.sql + nearest + " UNION ALL SELECT (SELECT " + day.left.sql + rows +
                           day.left.sql + (back ? " < " : " > ") + "days.day" + nearest +
                           " FROM days WHERE day IS NOT NULL) ";
  const std::string met = branches.table + " WHERE " + AllOf(branches.all) + " AND " + other.sql +
                          " AND " + day.left.sql + " = ";
  // The days are not joined with their rows: SQLite might walk all rows once to make itself a
  // filter of them.
  const std::string found =
      days + "SELECT day FROM days WHERE EXISTS (SELECT 1 FROM " + met + "days.day) LIMIT 1";
  // Neither AND nor a join keeps SQLite from starting on the days; CASE does.
  return met + "CASE WHEN EXISTS (SELECT 1" + rows + other.sql +
         ") THEN CASE WHEN EXISTS (SELECT 1" + rows + day.sql + ") THEN (" + found + ") END END";
}

// One alternative, behind its FROM.
std::string Branch(const Branches& branches, const std::vector<ComparisonSql>& alternative) {
  if (branches.onlyFirst && alternative.size() == 2 && IsRange(alternative[0].operation) &&
      IsRange(alternative[1].operation)) {
    for (std::size_t day = 0; day < 2; ++day) {
      if (alternative[day].left.column == DataType::Date) {
        return DayByDay(branches, alternative[day], alternative[1 - day]);
      }
    }
  }
  return branches.table + " WHERE " + AllOf(branches.all) + " AND " + AllOf(alternative);
}

}  // namespace

bool IsRange(CompareWith operation) {
  return operation != CompareWith::Equal && operation != CompareWith::NotEqual;
}

std::string SelectBranches(const Branches& branches, const Dialect& dialect) {
  std::vector<std::string> rows;
  rows.reserve(branches.alternatives.size());
  std::string notBefore;
  for (const auto& alternative : branches.alternatives) {
    const std::string branch = branches.select + Branch(branches, alternative) + notBefore;
    if (branches.onlyFirst) {
      rows.push_back(dialect.OnlyFirst(branch, branches.columns));
    } else {
      rows.push_back(branch);
      notBefore += " AND (" + AllOf(alternative) + ") IS NOT TRUE";
    }
  }
  return Joined(rows, " UNION ALL ");
}

}  // namespace kal::company
