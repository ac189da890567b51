// QuerySql: a selection as SQL, its values as numbered parameters.

#pragma once

#include <cstddef>
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

// The greatest values of some columns, which tell beforehand whether any of the alternatives can be
// met: a new entry stands behind all others.
struct GreatestValues {
  struct Bound {
    std::size_t column;
    CompareWith operation;
    std::size_t value;  // its place among the selection's values
  };

  std::string sql;  // that selects them
  std::vector<ResultColumn> columns;
  std::vector<std::size_t> values;               // those of the selection that it is asked with
  std::vector<std::vector<Bound>> alternatives;  // each with bounds that must all hold
};

struct RenderedQuery {
  std::string sql;
  std::vector<ResultColumn> columns;
  std::vector<ComparedValue> values;  // in the order of the parameters
  std::optional<GreatestValues> greatest;
};

// The SQL serves every use of the selection that brings the same name and values of the same
// kinds, as far as the dialect tells them apart.
[[nodiscard]] RenderedQuery RenderQuery(const Query& query, const ShapeOfTable& tables,
                                        const Dialect& dialect);

}  // namespace kal::company
