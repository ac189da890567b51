// QuerySql: a selection as SQL, its values as numbered parameters.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
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

// The greatest values of some columns, in the rows that all alternatives share, tell beforehand
// whether any of these can be met: whoever appends an entry to the books asks for what lies behind
// their end.
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

// Whether an alternative can be met where these are the greatest values: Null where there is none,
// Empty where it is nothing that the column is for. True also where that can't be told.
[[nodiscard]] bool CanBeMet(const GreatestValues& greatest, std::span<const Variant> values,
                            std::span<const Variant> most);

// The SQL serves every use of the selection that brings the same name and values of the same
// kinds, as far as the dialect tells them apart.
[[nodiscard]] RenderedQuery RenderQuery(const Query& query, const ShapeOfTable& tables,
                                        const Dialect& dialect);

}  // namespace kal::company
