// Branches: how a database is asked for the rows that meet one of several alternatives.
//
// The alternatives over one table are run as branches, each with the other conditions and with an
// index of its own; left as one OR, they would walk all rows that meet the others.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "company/Dialect.h"
#include "siblings/Selection.h"

namespace kal::company {

// A comparison with a parameter.
struct ComparisonSql {
  std::string sql;
  Operand left;
  CompareWith operation = CompareWith::Equal;
  std::size_t value = 0;  // its place among the selection's values
  std::string parameter;  // as it stands in the SQL
};

// Whether more than one value can satisfy the comparison, and an index finds them side by side.
[[nodiscard]] constexpr bool IsRange(CompareWith operation) {
  return operation != CompareWith::Equal && operation != CompareWith::NotEqual;
}
[[nodiscard]] constexpr bool IsBelow(CompareWith operation) {
  return operation == CompareWith::Less || operation == CompareWith::LessOrEqual;
}

// A selection from one table, in pieces of SQL.
struct Branches {
  std::string select;  // "SELECT columns FROM "
  std::string table;   // with its alias
  std::size_t columns = 0;
  bool onlyFirst = false;
  std::vector<std::string> all;      // the conditions that all alternatives share
  std::vector<ComparisonSql> equal;  // those among them that an index may begin with
  std::vector<std::vector<ComparisonSql>> alternatives;
};

[[nodiscard]] std::string AllOf(const std::vector<std::string>& conditions);
[[nodiscard]] std::string AllOf(const std::vector<ComparisonSql>& comparisons);

// The two ranges of an alternative whose first row is asked for, over days and something else: an
// index serves only one of them, and half a year may lie in it. But a year has few days: each is
// found with one step in an index, and in each the other range with another.
struct TwoRanges {
  const ComparisonSql* day = nullptr;  // nullptr where it is none
  const ComparisonSql* other = nullptr;
};
[[nodiscard]] TwoRanges RangesOf(const std::vector<ComparisonSql>& alternative);

// "WITH RECURSIVE days(day) AS (…) ": the days of the first range, the nearest first, one step in
// an index each, and a Null behind them.
[[nodiscard]] std::string DaysOf(const Branches& branches, const ComparisonSql& day);

// The whole statement, without the limit to the first row. A row may meet several alternatives:
// that does not matter to who reads the first row alone, and everyone else is given each row once.
[[nodiscard]] std::string SelectBranches(const Branches& branches, const Dialect& dialect);

}  // namespace kal::company
