// QuerySql: a selection as SQLite's SQL, its values as numbered parameters.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "company/sqlite/DayByDay.h"
#include "company/sqlite/QueryTexts.h"
#include "siblings/Selection.h"

namespace kal::company {

struct ResultColumn {
  std::string name;  // as the table writes it
  DataType type;
  std::string source;  // table.column, for error texts
};

struct RenderedQuery {
  std::string sql;
  std::vector<ResultColumn> columns;
  // For each value whether it stands for the end of its day, if it is a date: a stored date may
  // carry a time, and is the same day nevertheless.
  std::vector<bool> endsDay;
  // Of a selection that is run as branches: which of its values these share with an index, and
  // what tells beforehand that it has no row.
  std::vector<std::size_t> shared;
  std::vector<Reach> reaches;
};

// The SQL serves every use of the selection that brings the same name, and a Boolean where this
// use brings one.
[[nodiscard]] RenderedQuery RenderQuery(const Query& query, const ColumnsOfTable& tables);

}  // namespace kal::company
