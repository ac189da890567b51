#include "company/sqlite/QuerySql.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "company/DataError.h"
#include "company/Schema.h"

namespace kal::company {
namespace {

using Condition = Selection::Condition;

std::string_view Symbol(CompareWith operation) {
  switch (operation) {
    case CompareWith::Equal:
      return " = ";
    case CompareWith::NotEqual:
      return " <> ";
    case CompareWith::Less:
      return " < ";
    case CompareWith::LessOrEqual:
      return " <= ";
    case CompareWith::Greater:
      return " > ";
    case CompareWith::GreaterOrEqual:
      return " >= ";
  }
  return " = ";
}

// Goes through the conditions in the order of the values: parameters are numbered as they come.
class Renderer {
 public:
  Renderer(const Query& query, const ColumnsOfTable& columnsOf)
      : query_(query), selection_(query.What()) {
    scope_.Add(query.Text(selection_.Table()), columnsOf);
    for (const Selection::Join& join : selection_.Joins()) {
      scope_.Add(query.Text(join.table), columnsOf);
    }
  }

  RenderedQuery Render() {
    if (query_.Values().size() != selection_.ValueCount()) {
      RaiseDataError(kBadCommand, "The selection from " + scope_.Tables()[0].name + " compares " +
                                      std::to_string(selection_.ValueCount()) + " values, not " +
                                      std::to_string(query_.Values().size()));
    }
    RenderedQuery rendered;
    rendered.columns = SelectColumns();
    const std::string select = "SELECT " + Joined(selected_, ", ") + " FROM ";
    if (HasBranches()) {
      Branches branches = MakeBranches(select);
      rendered.sql = SelectBranches(branches);
      rendered.reaches = Reaches(branches);
      rendered.shared = std::move(branches.values);
    } else {
      rendered.sql = select + FromTables();
    }
    if (selection_.IsOnlyFirst()) {
      rendered.sql += " LIMIT 1";
    }
    rendered.endsDay = std::move(endsDay_);
    return rendered;
  }

 private:
  std::vector<ResultColumn> SelectColumns() {
    std::vector<ResultColumn> columns;
    const auto add = [&](const Scope::Table& table, const TableColumn& column) {
      selected_.push_back(Scope::Sql(table, column));
      columns.push_back({column.name, column.type, table.name + "." + column.name});
    };
    for (const std::string_view texts : selection_.Columns()) {
      const std::string named = query_.Text(texts);
      for (std::string_view list = named; !list.empty();) {
        const std::size_t comma = std::min(list.find(','), list.size());
        const std::string_view item = Trimmed(list.substr(0, comma));
        list.remove_prefix(std::min(comma + 1, list.size()));
        if (item == "*") {
          for (const Scope::Table& table : scope_.Tables()) {
            std::ranges::for_each(table.columns, [&](const auto& column) { add(table, column); });
          }
        } else {
          const auto [table, column] = scope_.Find(item);
          add(*table, *column);
        }
      }
    }
    if (columns.empty()) {
      RaiseDataError(kBadCommand,
                     "The selection from " + query_.Text(selection_.Table()) + " names no columns");
    }
    return columns;
  }

  [[nodiscard]] std::string TableSql(std::size_t index) const {
    const Scope::Table& table = scope_.Tables()[index];
    return QuoteName(table.name) + " AS " + QuoteName(table.alias);
  }

  std::string FromTables() {
    std::string sql = TableSql(0);
    std::size_t table = 0;
    for (const Selection::Join& join : selection_.Joins()) {
      sql += join.kind == JoinKind::Inner ? " JOIN " : " LEFT JOIN ";
      sql += TableSql(++table) + " ON " + AllOf(join.on);
    }
    return sql + " WHERE " + AllOf(selection_.Conditions());
  }

  [[nodiscard]] const Condition* FindGroup() const {
    return std::ranges::find(selection_.Conditions(), Condition::Kind::AnyOf, &Condition::kind);
  }

  [[nodiscard]] bool HasBranches() const {
    return selection_.Joins().Size() == 0 && FindTable(scope_.Tables()[0].name) != nullptr &&
           FindGroup() != selection_.Conditions().end() && FindGroup()->alternatives.Size() != 0;
  }

  Branches MakeBranches(const std::string& select) {
    Branches branches;
    branches.select = select;
    branches.table = TableSql(0);
    branches.onlyFirst = selection_.IsOnlyFirst();
    const Condition* const group = FindGroup();
    for (const Condition& condition : selection_.Conditions()) {
      if (&condition == group) {
        for (const Selection::All& alternative : group->alternatives) {
          branches.alternatives.push_back(Compared(alternative));
        }
        continue;
      }
      const std::string& sql = branches.all.emplace_back(One(condition));
      if (condition.kind == Condition::Kind::Value && condition.operation == CompareWith::Equal &&
          !sql.starts_with("ifnull")) {
        branches.equal.push_back(sql);
        branches.values.push_back(endsDay_.size() - 1);
      }
    }
    return branches;
  }

  std::string AllOf(const auto& conditions) {
    std::vector<std::string> parts;
    for (const Condition& condition : conditions) {
      parts.push_back(One(condition));
    }
    return Joined(parts, " AND ", "1");
  }

  std::string One(const Condition& condition) {
    switch (condition.kind) {
      case Condition::Kind::Value:
        return Compare({condition.left, condition.operation}).sql;
      case Condition::Kind::Columns:
        return Expression(condition.left).sql + " = " + Expression(condition.right).sql;
      case Condition::Kind::Literal:
        return "(" + ReadCondition(condition.left, scope_) + ")";
      case Condition::Kind::AnyOf:
        break;
    }
    std::vector<std::string> alternatives;
    for (const Selection::All& alternative : condition.alternatives) {
      std::vector<std::string> parts;
      for (ComparisonSql& comparison : Compared(alternative)) {
        parts.push_back(std::move(comparison.sql));
      }
      alternatives.push_back("(" + Joined(parts, " AND ", "1") + ")");
    }
    return "(" + Joined(alternatives, " OR ", "0") + ")";
  }

  std::vector<ComparisonSql> Compared(const Selection::All& alternative) {
    std::vector<ComparisonSql> compared;
    for (const Selection::Comparison& comparison : alternative) {
      compared.push_back(Compare(comparison));
    }
    return compared;
  }

  ComparisonSql Compare(const Selection::Comparison& comparison) {
    const std::string text = query_.Text(comparison.left);
    const Operand operand = Expression(text);
    if (operand.type == DataType::Currency) {
      // They are stored as texts, whose order is not that of the amounts.
      RaiseDataError(RunTime::NotSupported, "Amounts can't be compared in a selection: " + text);
    }
    const Variant& value = query_.Values()[endsDay_.size()];
    endsDay_.push_back(comparison.operation == CompareWith::LessOrEqual ||
                       comparison.operation == CompareWith::Greater);
    std::string sql = operand.sql;
    if (operand.type == DataType::Boolean && value.VarType() == Variant::Type::Boolean) {
      sql = "(" + sql + " <> 0)";  // True may be stored as 1 or as -1
    } else if (operand.type == DataType::Date && !IsRange(comparison.operation)) {
      sql = "substr(" + sql + ", 1, 10)";
    }
    sql.append(Symbol(comparison.operation)).append("?").append(std::to_string(endsDay_.size()));
    return {std::move(sql), operand.sql, operand.type, comparison.operation, endsDay_.size() - 1};
  }

  [[nodiscard]] Operand Expression(std::string_view text) const {
    return ReadExpression(text, scope_);
  }

  const Query& query_;
  const Selection& selection_;
  Scope scope_;
  std::vector<std::string> selected_;
  std::vector<bool> endsDay_;  // of the values read so far
};

}  // namespace

RenderedQuery RenderQuery(const Query& query, const ColumnsOfTable& tables) {
  return Renderer(query, tables).Render();
}

}  // namespace kal::company
