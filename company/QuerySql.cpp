#include "company/QuerySql.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "company/Branches.h"
#include "company/DataError.h"
#include "company/Schema.h"

namespace kal::company {
namespace {

using Condition = Selection::Condition;

// Goes through the conditions in the order of the values: parameters are numbered as they come.
class Renderer {
 public:
  Renderer(const Query& query, const ShapeOfTable& shapeOf, const Dialect& dialect)
      : query_(query), selection_(query.What()), dialect_(dialect) {
    scope_.Add(query.Text(selection_.Table()), shapeOf);
    for (const Selection::Join& join : selection_.Joins()) {
      scope_.Add(query.Text(join.table), shapeOf);
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
    rendered.sql = HasBranches() ? FromBranches(select) : select + FromTables();
    if (selection_.IsOnlyFirst()) {
      rendered.sql += " LIMIT 1";
    }
    rendered.values = std::move(values_);
    rendered.greatest = std::move(greatest_);
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
      for (const std::string_view item : Items(named)) {
        if (item == "*") {
          for (const Scope::Table& table : scope_.Tables()) {
            std::ranges::for_each(table.shape.columns,
                                  [&](const auto& column) { add(table, column); });
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
    return table.shape.sql + " AS " + QuoteName(table.alias);
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

  std::string FromBranches(const std::string& select) {
    Branches branches;
    branches.select = select;
    branches.table = TableSql(0);
    branches.columns = selected_.size();
    branches.onlyFirst = selection_.IsOnlyFirst();
    const Condition* const group = FindGroup();
    for (const Condition& condition : selection_.Conditions()) {
      if (&condition == group) {
        for (const Selection::All& alternative : group->alternatives) {
          branches.alternatives.push_back(Compared(alternative));
        }
        continue;
      }
      if (condition.kind != Condition::Kind::Value) {
        branches.all.push_back(One(condition));
        continue;
      }
      ComparisonSql comparison = Compare({condition.left, condition.operation});
      branches.all.push_back(comparison.sql);
      if (condition.operation == CompareWith::Equal && comparison.left.indexed) {
        branches.equal.push_back(std::move(comparison));
      }
    }
    greatest_ = GreatestOf(branches);
    return SelectBranches(branches, dialect_);
  }

  // Nothing where an alternative can be met however small everything is that it looks above.
  std::optional<GreatestValues> GreatestOf(const Branches& branches) {
    GreatestValues greatest;
    std::string equal;
    for (const ComparisonSql& comparison : branches.equal) {
      greatest.values.push_back(comparison.value);
      equal += dialect_
                   .CompareWithValue(comparison.left, comparison.operation,
                                     query_.Values()[comparison.value], greatest.values.size())
                   .sql +
               " AND ";
    }
    std::vector<std::string> columns;
    for (const std::vector<ComparisonSql>& alternative : branches.alternatives) {
      std::vector<GreatestValues::Bound>& bounds = greatest.alternatives.emplace_back();
      for (const ComparisonSql& comparison : alternative) {
        const bool reaches = comparison.operation == CompareWith::Greater ||
                             comparison.operation == CompareWith::GreaterOrEqual ||
                             comparison.operation == CompareWith::Equal;
        const std::optional<DataType> type = comparison.left.column;
        if (!reaches || (type != DataType::Integer && type != DataType::Date)) {
          continue;
        }
        const std::string& left = comparison.left.sql;
        const auto place = std::ranges::find(columns, left) - columns.begin();
        if (place == std::ssize(columns)) {
          columns.push_back(left);
          greatest.columns.push_back({left, *comparison.left.column, left});
        }
        bounds.push_back({static_cast<std::size_t>(place), comparison.operation, comparison.value});
      }
      if (bounds.empty()) {
        return std::nullopt;
      }
    }
    for (const std::string& column : columns) {
      greatest.sql.append(greatest.sql.empty() ? "SELECT (SELECT " : ", (SELECT ").append(column);
      greatest.sql.append(" FROM ").append(branches.table).append(" WHERE ").append(equal);
      greatest.sql.append(column).append(" IS NOT NULL ORDER BY ").append(column);
      greatest.sql.append(" DESC LIMIT 1)");
    }
    return greatest;
  }

  std::string AllOf(const auto& conditions) {
    std::vector<std::string> parts;
    for (const Condition& condition : conditions) {
      parts.push_back(One(condition));
    }
    return Joined(parts, " AND ", "TRUE");
  }

  std::string One(const Condition& condition) {
    switch (condition.kind) {
      case Condition::Kind::Value:
        return Compare({condition.left, condition.operation}).sql;
      case Condition::Kind::Columns:
        return dialect_.Compared(Expression(condition.left)) + " = " +
               dialect_.Compared(Expression(condition.right));
      case Condition::Kind::Literal:
        return "(" + ReadCondition(condition.left, scope_, dialect_) + ")";
      case Condition::Kind::AnyOf:
        break;
    }
    std::vector<std::string> alternatives;
    for (const Selection::All& alternative : condition.alternatives) {
      std::vector<std::string> parts;
      for (ComparisonSql& comparison : Compared(alternative)) {
        parts.push_back(std::move(comparison.sql));
      }
      alternatives.push_back("(" + Joined(parts, " AND ", "TRUE") + ")");
    }
    return "(" + Joined(alternatives, " OR ", "FALSE") + ")";
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
    if (operand.column == DataType::Currency) {
      // SQLite stores them as texts, whose order is not that of the amounts.
      RaiseDataError(RunTime::NotSupported, "Amounts can't be compared in a selection: " + text);
    }
    const Variant& value = query_.Values()[values_.size()];
    values_.push_back({operand.type, comparison.operation == CompareWith::LessOrEqual ||
                                         comparison.operation == CompareWith::Greater});
    return dialect_.CompareWithValue(operand, comparison.operation, value, values_.size());
  }

  [[nodiscard]] Operand Expression(std::string_view text) const {
    return ReadExpression(text, scope_, dialect_);
  }

  const Query& query_;
  const Selection& selection_;
  const Dialect& dialect_;
  Scope scope_;
  std::vector<std::string> selected_;
  std::vector<ComparedValue> values_;  // those read so far
  std::optional<GreatestValues> greatest_;
};

}  // namespace

bool CanBeMet(const GreatestValues& greatest, std::span<const Variant> values,
              std::span<const Variant> most) {
  const auto reaches = [&](const GreatestValues::Bound& bound) {
    const Variant& highest = most[bound.column];
    const Variant& wanted = values[bound.value];
    const Date* const day = wanted.As<Date>();
    const bool isAlike = greatest.columns[bound.column].type == DataType::Date
                             ? day != nullptr && *day == day->WithoutTime()
                             : wanted.AsInteger().has_value();
    if (highest.IsNull() || highest.IsEmpty() || !isAlike) {
      return !highest.IsNull();
    }
    return static_cast<bool>(bound.operation == CompareWith::Greater ? highest > wanted
                                                                     : highest >= wanted);
  };
  return std::ranges::any_of(greatest.alternatives, [&](const auto& alternative) {
    return std::ranges::all_of(alternative, reaches);
  });
}

RenderedQuery RenderQuery(const Query& query, const ShapeOfTable& tables, const Dialect& dialect) {
  return Renderer(query, tables, dialect).Render();
}

}  // namespace kal::company
