// DayByDay: how a database is asked for the rows that meet one of several alternatives.
//
// The alternatives over one table are run as branches, each with the other conditions and with an
// index of its own; left as one OR, they would walk all rows that meet the others. An alternative
// of two ranges, where the first row is enough, walks the days of one of them.

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
};

// Whether more than one value can satisfy the comparison, and an index finds them side by side.
[[nodiscard]] bool IsRange(CompareWith operation);

// A selection from one table, in pieces of SQL.
struct Branches {
  std::string select;  // "SELECT columns FROM "
  std::string table;   // with its alias
  std::size_t columns = 0;
  bool onlyFirst = false;
  std::vector<std::string> all;    // the conditions that all alternatives share
  std::vector<std::string> equal;  // those among them that an index may begin with
  std::vector<std::vector<ComparisonSql>> alternatives;
};

// The whole statement, without the limit to the first row. A row may meet several alternatives:
// that does not matter to who reads the first row alone, and everyone else is given each row once.
[[nodiscard]] std::string SelectBranches(const Branches& branches, const Dialect& dialect);

}  // namespace kal::company
