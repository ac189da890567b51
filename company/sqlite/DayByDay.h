// DayByDay: how SQLite is asked for the rows that meet one of several alternatives.
//
// The alternatives over one table are run as branches, each with the other conditions and with an
// index of its own; left as one OR, they would walk all rows that meet the others. An alternative
// of two ranges, where the first row is enough, walks the days of one of them.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/Recordset.h"
#include "siblings/Selection.h"

namespace kal::company {

// A comparison with a parameter.
struct ComparisonSql {
  std::string sql;
  std::string left;
  std::optional<DataType> type;  // of a bare column on the left
  CompareWith operation = CompareWith::Equal;
  std::size_t value = 0;  // the parameter's place among the values of the selection
};

// Whether more than one value can satisfy the comparison, and an index finds them side by side.
[[nodiscard]] bool IsRange(CompareWith operation);

// A selection from one table, in pieces of SQL.
struct Branches {
  std::string select;  // "SELECT columns FROM "
  std::string table;   // with its alias
  bool onlyFirst = false;
  std::vector<std::string> all;     // the conditions that all alternatives share
  std::vector<std::string> equal;   // those among them that an index may begin with
  std::vector<std::size_t> values;  // the places of the values that these compare with
  std::vector<std::vector<ComparisonSql>> alternatives;
};

// What tells that no row meets an alternative: the highest value that a column has in the rows that
// all alternatives share is lower than what the alternative wants. Whoever appends an entry to the
// books asks for what lies behind their end.
struct Reach {
  std::string highest;  // the question for that value
  DataType type;
  std::size_t value;  // what is wanted: its place among the values
  bool itself;        // whether that very value would do
};

// One for each alternative; none when there is one that no highest value rules out.
[[nodiscard]] std::vector<Reach> Reaches(const Branches& branches);

// The whole statement, without the limit to the first row. A row may meet several alternatives:
// that does not matter to who reads the first row alone, and everyone else is given each row once.
[[nodiscard]] std::string SelectBranches(const Branches& branches);

}  // namespace kal::company
