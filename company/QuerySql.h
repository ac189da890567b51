// QuerySql: a selection as SQLite's SQL.
//
// The texts of a selection are read, never pasted: a table name is quoted whole, a column must be
// one that its table has, and an expression or a literal condition may hold columns, numbers,
// 'texts', IsNull(x, y), Year(x), comparisons, Is [Not] Null, And, Or, Not and parentheses. An
// unqualified column belongs to the first table that has it. Anything else is refused with an
// error that names it. Values stand in the SQL as numbered parameters.

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Recordset.h"
#include "siblings/QueryBuilder.h"

namespace kal::company {

struct TableColumn {
  std::string name;
  DataType type;
};

// The columns that a table has; raises an error when there is no such table.
using ColumnsOfTable = std::function<std::vector<TableColumn>(std::string_view table)>;

struct ResultColumn {
  std::string name;  // as the table writes it
  DataType type;
  std::string source;  // table.column, for error texts
};

struct RenderedQuery {
  std::string sql;
  std::vector<ResultColumn> columns;
};

[[nodiscard]] std::string QuoteName(std::string_view name);
// The year of a date column, as a number. Index and selection must use the same expression.
[[nodiscard]] std::string YearExpression(std::string_view columnSql);

[[nodiscard]] RenderedQuery RenderQuery(const QueryBuilder& query, const ColumnsOfTable& tables);

// Writes a key that two selections share exactly when they render into the same SQL, whatever
// their values.
void AppendShape(std::string& key, const QueryBuilder& query);

// Writes a key that two values share exactly when they are identical.
void AppendValue(std::string& key, const Variant& value);

// Every comparison with a value, in the order of the SQL's parameters.
template <class Visit>
void ForEachComparison(const QueryBuilder& query, Visit&& visit) {
  const auto walk = [&visit](const auto& conditions) {
    for (const QueryBuilder::Condition& condition : conditions) {
      if (condition.kind == QueryBuilder::Condition::Kind::Value) {
        visit(condition.left, condition.operation, condition.value);
      }
      for (const auto& alternative : condition.alternatives) {
        for (const QueryBuilder::Comparison& comparison : alternative) {
          visit(comparison.left, comparison.operation, comparison.value);
        }
      }
    }
  };
  for (const QueryBuilder::Join& join : query.Joins()) {
    walk(join.on);
  }
  walk(query.Conditions());
}

}  // namespace kal::company
