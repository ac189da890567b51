#include "company/sqlite/DayByDay.h"

#include "company/sqlite/QueryTexts.h"

namespace kal::company {
namespace {

std::string AllOf(const std::vector<std::string>& conditions) {
  return Joined(conditions, " AND ", "1");
}

bool IsRange(const ComparisonSql& comparison) {
  return comparison.operation != CompareWith::Equal &&
         comparison.operation != CompareWith::NotEqual;
}

// The first row in two ranges, behind its FROM. An index serves only one of them, and half a year
// may lie in it. But a year has few days: each is found with one step in the index, and in each the
// other range with another. Where one of the ranges is empty, as for a new entry at the end, no day
// is looked at.
std::string DayByDay(const Branches& branches, const ComparisonSql& day,
                     const ComparisonSql& other) {
  const bool back = day.operation == CompareWith::Less || day.operation == CompareWith::LessOrEqual;
  const std::string rows = " FROM " + branches.table + " WHERE " + AllOf(branches.equal) + " AND ";
  const std::string next =
      std::string("SELECT ") + (back ? "max(" : "min(") + day.left + ")" + rows;
  const std::string days = "WITH RECURSIVE days(day) AS (" + next + day.sql +
                           " UNION ALL SELECT (" + next + day.left + (back ? " < " : " > ") +
                           "days.day) FROM days WHERE day IS NOT NULL) ";
  const std::string found = days + "SELECT " + branches.rowid + " FROM days CROSS JOIN " +
                            branches.table + " WHERE " + AllOf(branches.all) + " AND " + day.left +
                            " = days.day AND " + other.sql;
  // Neither AND nor a join keeps SQLite from starting on the days; CASE does.
  return branches.table + " WHERE " + branches.rowid + " = CASE WHEN EXISTS (SELECT 1" + rows +
         other.sql + ") THEN CASE WHEN EXISTS (SELECT 1" + rows + day.sql + ") THEN (" + found +
         " LIMIT 1) END END";
}

// One alternative, behind its FROM.
std::string Branch(const Branches& branches, const std::vector<ComparisonSql>& alternative) {
  if (branches.onlyFirst && alternative.size() == 2 && IsRange(alternative[0]) &&
      IsRange(alternative[1])) {
    for (std::size_t day = 0; day < 2; ++day) {
      if (alternative[day].type == DataType::Date) {
        return DayByDay(branches, alternative[day], alternative[1 - day]);
      }
    }
  }
  std::vector<std::string> own;
  own.reserve(alternative.size());
  for (const ComparisonSql& comparison : alternative) {
    own.push_back(comparison.sql);
  }
  return branches.table + " WHERE " + AllOf(branches.all) + " AND " + AllOf(own);
}

}  // namespace

std::string SelectBranches(const Branches& branches) {
  std::vector<std::string> rows;
  rows.reserve(branches.alternatives.size());
  for (const auto& alternative : branches.alternatives) {
    rows.push_back(Branch(branches, alternative));
  }
  if (branches.onlyFirst) {
    return branches.select + Joined(rows, " UNION ALL " + branches.select);
  }
  const std::string each = "SELECT " + branches.rowid + " FROM ";
  return branches.select + branches.table + " WHERE " + branches.rowid + " IN (" + each +
         Joined(rows, " UNION ALL " + each) + ")";
}

}  // namespace kal::company
