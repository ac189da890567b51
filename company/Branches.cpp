#include "company/Branches.h"

#include "company/QueryTexts.h"

namespace kal::company {

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

TwoRanges RangesOf(const std::vector<ComparisonSql>& alternative) {
  if (alternative.size() == 2 && IsRange(alternative[0].operation) &&
      IsRange(alternative[1].operation)) {
    for (std::size_t day = 0; day < 2; ++day) {
      if (alternative[day].left.column == DataType::Date) {
        return {&alternative[day], &alternative[1 - day]};
      }
    }
  }
  return {};
}

std::string DaysOf(const Branches& branches, const ComparisonSql& day) {
  const bool back = IsBelow(day.operation);
  const std::string& left = day.left.sql;
  const std::string rows = " FROM " + branches.table + " WHERE " + AllOf(branches.equal) + " AND ";
  const std::string nearest = " ORDER BY " + left + (back ? " DESC" : "") + " LIMIT 1)";
  return "WITH RECURSIVE days(day) AS (SELECT (SELECT " + left + rows + day.sql + nearest +
         " UNION ALL SELECT (SELECT " + left + rows + left + (back ? " < " : " > ") + "days.day" +
         nearest + " FROM days WHERE day IS NOT NULL) ";
}

std::string SelectBranches(const Branches& branches, const Dialect& dialect) {
  std::vector<std::string> rows;
  rows.reserve(branches.alternatives.size());
  std::string notBefore;
  for (const auto& alternative : branches.alternatives) {
    if (branches.onlyFirst) {
      rows.push_back(dialect.FirstRow(branches, alternative));
      continue;
    }
    rows.push_back(branches.select + branches.table + " WHERE " + AllOf(branches.all) + " AND " +
                   AllOf(alternative) + notBefore);
    notBefore += " AND (" + AllOf(alternative) + ") IS NOT TRUE";
  }
  return Joined(rows, " UNION ALL ");
}

}  // namespace kal::company
