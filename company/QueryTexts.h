// QueryTexts: the texts of a selection, read and written as SQL.
//
// They are read, never pasted: a table name is quoted whole, a column must be one that its table
// has, and an expression or a literal condition may hold columns, numbers, 'texts', IsNull(x, y),
// Year(x), comparisons, Is [Not] Null, And, Or, Not and parentheses. An unqualified column belongs
// to the first table that has it. Anything else is refused with an error that names it.

#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "company/Dialect.h"
#include "platform/Recordset.h"

namespace kal::company {

struct TableColumn {
  std::string name;
  DataType type;
  std::string sql;  // its quoted name
};

struct TableShape {
  std::string sql;  // what stands for the table behind FROM
  std::vector<TableColumn> columns;
};

// What a table looks like; raises an error when there is no such table.
using ShapeOfTable = std::function<TableShape(std::string_view table)>;

// The tables of a selection, under the names by which its texts know them.
class Scope {
 public:
  struct Table {
    std::string name;
    std::string alias;
    TableShape shape;
  };

  // A table: its name, or "name as alias".
  void Add(std::string_view text, const ShapeOfTable& shapeOf);

  [[nodiscard]] const std::vector<Table>& Tables() const { return tables_; }
  // A column by its name, or by "table.name"; the part in front may be an alias.
  [[nodiscard]] std::pair<const Table*, const TableColumn*> Find(std::string_view name) const;
  [[nodiscard]] static std::string Sql(const Table& table, const TableColumn& column);

 private:
  [[nodiscard]] std::string TableNames() const;

  std::vector<Table> tables_;
};

[[nodiscard]] Operand ReadExpression(std::string_view text, const Scope& scope,
                                     const Dialect& dialect);
[[nodiscard]] std::string ReadCondition(std::string_view text, const Scope& scope,
                                        const Dialect& dialect);

[[nodiscard]] std::string QuoteName(std::string_view name);

[[nodiscard]] std::string Joined(std::span<const std::string> parts, std::string_view separator,
                                 std::string_view whenNone = {});

}  // namespace kal::company
