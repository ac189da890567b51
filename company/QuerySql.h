// QuerySql: a selection as SQL, its values as numbered parameters.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "company/Dialect.h"
#include "company/QueryTexts.h"
#include "siblings/Selection.h"

namespace kal::company {

struct ResultColumn {
  std::string name;  // as the table writes it
  DataType type;
  std::string source;  // table.column, for error texts
};

struct ComparedValue {
  std::optional<DataType> with;  // the type of what the value is compared with, where it is known
  // Whether it stands for the end of its day, if it is a date: a stored date may carry a time, and
  // is the same day nevertheless.
  bool endsDay = false;
};

struct RenderedQuery {
  std::string sql;
  std::vector<ResultColumn> columns;
  std::vector<ComparedValue> values;  // in the order of the parameters
};

// The SQL serves every use of the selection that brings the same name and values of the same
// kinds, as far as the dialect tells them apart.
[[nodiscard]] RenderedQuery RenderQuery(const Query& query, const ShapeOfTable& tables,
                                        const Dialect& dialect);

}  // namespace kal::company
