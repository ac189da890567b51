#include "company/QuerySql.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <utility>

#include "company/Schema.h"
#include "company/Sqlite.h"

namespace kal::company {
namespace {

using Condition = QueryBuilder::Condition;
using Comparison = QueryBuilder::Comparison;

bool IsBlank(char letter) { return letter == ' ' || letter == '\t'; }

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

bool StartsName(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool IsName(std::string_view text) {
  return !text.empty() && StartsName(text.front()) && std::ranges::all_of(text, [](char letter) {
    return StartsName(letter) || IsDigit(letter);
  });
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string Join(std::span<const std::string> parts, std::string_view separator,
                 std::string_view whenNone) {
  std::string text;
  for (const std::string& part : parts) {
    text.append(text.empty() ? std::string_view() : separator).append(part);
  }
  return text.empty() ? std::string(whenNone) : text;
}

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

// A piece of SQL that stands for one value; the type is known for a bare column.
struct Operand {
  std::string sql;
  std::optional<DataType> type;
};

// The tables of a selection, under the names by which its texts know them.
class Scope {
 public:
  struct Table {
    std::string_view name;
    std::string_view alias;
    std::vector<TableColumn> columns;
  };

  void Add(std::string_view text, const ColumnsOfTable& columnsOf) {
    Table table{text, text, {}};
    // The alias is what follows the last " as ": a name in front of it may be any text.
    constexpr std::string_view kAs = " as ";
    for (std::size_t at = text.size(); at-- > 0;) {
      if (SameName(text.substr(at, kAs.size()), kAs) &&
          IsName(Trimmed(text.substr(at + kAs.size())))) {
        table.name = Trimmed(text.substr(0, at));
        table.alias = Trimmed(text.substr(at + kAs.size()));
        break;
      }
    }
    table.columns = columnsOf(table.name);
    tables_.push_back(std::move(table));
  }

  [[nodiscard]] const std::vector<Table>& Tables() const { return tables_; }

  // A column by its name, or by "table.name"; the part in front may be an alias.
  [[nodiscard]] std::pair<const Table*, const TableColumn*> Find(std::string_view name) const {
    const std::size_t point = name.rfind('.');
    const bool qualified = point != std::string_view::npos;
    const std::string_view owner = qualified ? Trimmed(name.substr(0, point)) : "";
    const std::string_view column = Trimmed(qualified ? name.substr(point + 1) : name);
    bool ownerFound = !qualified;
    for (const Table& table : tables_) {
      if (qualified && !SameName(table.alias, owner)) {
        continue;
      }
      ownerFound = true;
      const auto found = std::ranges::find_if(
          table.columns, [column](const TableColumn& c) { return SameName(c.name, column); });
      if (found != table.columns.end()) {
        return {&table, &*found};
      }
    }
    if (!ownerFound) {
      RaiseDataError(kNoSuchTable, "The selection has no table '" + std::string(owner) + "'");
    }
    RaiseDataError(kBadCommand, "There is no column '" + std::string(column) + "' in " +
                                    (qualified ? std::string(owner) : TableNames()));
  }

  [[nodiscard]] static std::string Sql(const Table& table, const TableColumn& column) {
    return QuoteName(table.alias) + "." + QuoteName(column.name);
  }

 private:
  [[nodiscard]] std::string TableNames() const {
    std::vector<std::string> names;
    for (const Table& table : tables_) {
      names.emplace_back(table.name);
    }
    return company::Join(names, ", ", "");
  }

  std::vector<Table> tables_;
};

// Reads one expression or condition and writes it as SQL.
class TextReader {
 public:
  TextReader(std::string_view text, const Scope& scope) : text_(text), rest_(text), scope_(scope) {}

  Operand WholeOperand() {
    Operand operand = ReadOperand();
    ExpectEnd();
    return operand;
  }

  std::string WholeCondition() {
    std::string condition = ReadOr();
    ExpectEnd();
    return condition;
  }

 private:
  [[noreturn]] void Refuse() {
    RaiseDataError(kBadCommand, "Can't read '" + std::string(text_) + "' from '" +
                                    std::string(Trimmed(rest_)) + "' on");
  }

  void ExpectEnd() {
    if (!Trimmed(rest_).empty()) {
      Refuse();
    }
  }

  // Takes the letters that satisfy the test from the front.
  template <class Test>
  std::string_view Take(Test test) {
    const auto end = std::ranges::find_if_not(rest_, test);
    const auto size = static_cast<std::size_t>(end - rest_.begin());
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }

  bool Accept(std::string_view symbol) {
    rest_ = Trimmed(rest_);
    if (!rest_.starts_with(symbol)) {
      return false;
    }
    rest_.remove_prefix(symbol.size());
    return true;
  }

  void Expect(std::string_view symbol) {
    if (!Accept(symbol)) {
      Refuse();
    }
  }

  // The word at the front, left in place.
  std::string_view NextWord() {
    rest_ = Trimmed(rest_);
    const std::string_view before = rest_;
    const std::string_view word =
        Take([](char letter) { return StartsName(letter) || IsDigit(letter); });
    rest_ = before;
    return word;
  }

  bool AcceptWord(std::string_view word) {
    if (!SameName(NextWord(), word)) {
      return false;
    }
    rest_.remove_prefix(word.size());
    return true;
  }

  std::string ReadOr() {
    std::string sql = ReadAnd();
    while (AcceptWord("Or")) {
      sql += " OR " + ReadAnd();
    }
    return sql;
  }

  std::string ReadAnd() {
    std::string sql = ReadTest();
    while (AcceptWord("And")) {
      sql += " AND " + ReadTest();
    }
    return sql;
  }

  std::string ReadTest() {
    if (AcceptWord("Not")) {
      return "NOT (" + ReadTest() + ")";
    }
    if (Accept("(")) {
      std::string sql = "(" + ReadOr() + ")";
      Expect(")");
      return sql;
    }
    std::string sql = ReadOperand().sql;
    if (AcceptWord("Is")) {
      sql += AcceptWord("Not") ? " IS NOT NULL" : " IS NULL";
      if (!AcceptWord("Null")) {
        Refuse();
      }
      return sql;
    }
    for (const std::string_view symbol : {"<>", "<=", ">=", "=", "<", ">"}) {
      if (Accept(symbol)) {
        sql.append(" ").append(symbol).append(" ");
        return sql + ReadOperand().sql;
      }
    }
    Refuse();
  }

  Operand ReadOperand() {
    const std::string_view word = NextWord();
    if (word.empty()) {
      return {ReadText(), std::nullopt};
    }
    if (!StartsName(word.front())) {
      return {std::string(Take([](char letter) { return IsDigit(letter) || letter == '.'; })),
              std::nullopt};
    }
    if (AcceptFunction("IsNull")) {
      std::string sql = "ifnull(" + ReadOperand().sql;
      Expect(",");
      sql += ", " + ReadOperand().sql + ")";
      Expect(")");
      return {std::move(sql), std::nullopt};
    }
    if (AcceptFunction("Year")) {
      std::string sql = YearExpression(ReadOperand().sql);
      Expect(")");
      return {std::move(sql), std::nullopt};
    }
    const auto [table, column] = scope_.Find(
        Take([](char letter) { return StartsName(letter) || IsDigit(letter) || letter == '.'; }));
    return {Scope::Sql(*table, *column), column->type};
  }

  bool AcceptFunction(std::string_view name) {
    const std::string_view before = rest_;
    if (AcceptWord(name) && Accept("(")) {
      return true;
    }
    rest_ = before;
    return false;
  }

  // 'text', a quote inside doubled, as in SQL.
  std::string ReadText() {
    std::string sql;
    while (rest_.starts_with('\'')) {
      const std::size_t end = rest_.find('\'', 1);
      if (end == std::string_view::npos) {
        Refuse();
      }
      sql += rest_.substr(0, end + 1);
      rest_.remove_prefix(end + 1);
    }
    if (sql.empty()) {
      Refuse();
    }
    return sql;
  }

  std::string_view text_;
  std::string_view rest_;
  const Scope& scope_;
};

class Renderer {
 public:
  Renderer(const QueryBuilder& query, const ColumnsOfTable& columnsOf) : query_(query) {
    scope_.Add(query.Table(), columnsOf);
    for (const QueryBuilder::Join& join : query.Joins()) {
      scope_.Add(join.table, columnsOf);
    }
  }

  RenderedQuery Render() {
    RenderedQuery rendered;
    rendered.columns = SelectColumns();
    const std::string select = "SELECT " + company::Join(selected_, ", ", "") + " FROM ";
    if (HasBranches()) {
      rendered.sql = select + FromBranches(select);
    } else {
      rendered.sql = select + TableSql(0);
      for (std::size_t i = 0; i < query_.Joins().size(); ++i) {
        const QueryBuilder::Join& join = query_.Joins()[i];
        rendered.sql += join.kind == JoinKind::Inner ? " JOIN " : " LEFT JOIN ";
        rendered.sql += TableSql(i + 1) + " ON " + AllOf(join.on);
      }
      rendered.sql += " WHERE " + AllOf(query_.Conditions());
    }
    if (query_.IsOnlyFirst()) {
      rendered.sql += " LIMIT 1";
    }
    return rendered;
  }

 private:
  std::vector<ResultColumn> SelectColumns() {
    std::vector<ResultColumn> columns;
    const auto add = [&](const Scope::Table& table, const TableColumn& column) {
      selected_.push_back(Scope::Sql(table, column));
      columns.push_back({column.name, column.type, std::string(table.name) + "." + column.name});
    };
    for (std::string_view list : query_.Columns()) {
      while (!list.empty()) {
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
                     "The selection from " + std::string(query_.Table()) + " names no columns");
    }
    return columns;
  }

  [[nodiscard]] std::string TableSql(std::size_t index) const {
    const Scope::Table& table = scope_.Tables()[index];
    return QuoteName(table.name) + " AS " + QuoteName(table.alias);
  }

  // A group of alternatives over one table is run as branches, each with the other conditions and
  // with an index of its own; left as one OR, it would walk all rows that meet the others.
  [[nodiscard]] bool HasBranches() const {
    return query_.Joins().empty() && FindTable(scope_.Tables()[0].name) != nullptr &&
           FindGroup() != query_.Conditions().end() && !FindGroup()->alternatives.empty();
  }

  [[nodiscard]] std::pmr::vector<Condition>::const_iterator FindGroup() const {
    return std::ranges::find(query_.Conditions(), Condition::Kind::AnyOf, &Condition::kind);
  }

  // What follows the first FROM. A row may stand in several branches: that does not matter to who
  // reads the first row alone, and everyone else is given each row once.
  std::string FromBranches(const std::string& select) {
    const auto group = FindGroup();
    Common common;
    for (auto condition = query_.Conditions().begin(); condition != group; ++condition) {
      AddCommon(common, *condition);
    }
    std::vector<std::string> branches;
    const int before = parameters_;
    for (const auto& alternative : group->alternatives) {
      parameters_ += static_cast<int>(alternative.size());
    }
    for (auto condition = std::next(group); condition != query_.Conditions().end(); ++condition) {
      AddCommon(common, *condition);
    }
    const int after = std::exchange(parameters_, before);
    for (const auto& alternative : group->alternatives) {
      branches.push_back(Branch(alternative, common));
    }
    parameters_ = after;
    if (query_.IsOnlyFirst()) {
      return company::Join(branches, " UNION ALL " + select, "");
    }
    const std::string rowid = QuoteName(scope_.Tables()[0].alias) + ".rowid";
    const std::string each = "SELECT " + rowid + " FROM ";
    return TableSql(0) + " WHERE " + rowid + " IN (" + each +
           company::Join(branches, " UNION ALL " + each, "") + ")";
  }

  // The conditions that all branches share.
  struct Common {
    std::vector<std::string> all;
    std::vector<std::string> equal;  // those that an index may begin with
  };

  void AddCommon(Common& common, const Condition& condition) {
    common.all.push_back(One(condition));
    const bool isEqual =
        condition.kind == Condition::Kind::Value && condition.operation == CompareWith::Equal;
    if (isEqual && !common.all.back().starts_with("ifnull")) {
      common.equal.push_back(common.all.back());
    }
  }

  // One alternative, behind its FROM.
  std::string Branch(const std::pmr::vector<Comparison>& alternative, const Common& common) {
    std::vector<std::string> parts;
    for (const Comparison& comparison : alternative) {
      parts.push_back(Compare(comparison.left, comparison.operation, comparison.value));
    }
    if (query_.IsOnlyFirst() && alternative.size() == 2 && IsRange(alternative[0]) &&
        IsRange(alternative[1])) {
      for (std::size_t day = 0; day < 2; ++day) {
        if (Expression(alternative[day].left).type == DataType::Date) {
          return DayByDay(alternative[day], parts[day], parts[1 - day], common);
        }
      }
    }
    return TableSql(0) + " WHERE " + AllOf(common.all) + " AND " + AllOf(parts);
  }

  static bool IsRange(const Comparison& comparison) {
    return comparison.operation != CompareWith::Equal &&
           comparison.operation != CompareWith::NotEqual;
  }

  // The first row in two ranges. An index serves only one of them, and half a year may lie in it.
  // But a year has few days: each is found with one step in the index, and in each the other range
  // with another. Where one of the ranges is empty, as for a new entry at the end, no day is looked
  // at.
  std::string DayByDay(const Comparison& day, const std::string& inDays,
                       const std::string& otherRange, const Common& common) {
    const bool back =
        day.operation == CompareWith::Less || day.operation == CompareWith::LessOrEqual;
    const std::string column = Expression(day.left).sql;
    const std::string rows = " FROM " + TableSql(0) + " WHERE " + AllOf(common.equal) + " AND ";
    const std::string next =
        std::string("SELECT ") + (back ? "max(" : "min(") + column + ")" + rows;
    const std::string days = "WITH RECURSIVE days(day) AS (" + next + inDays +
                             " UNION ALL SELECT (" + next + column + (back ? " < " : " > ") +
                             "days.day) FROM days WHERE day IS NOT NULL) ";
    const std::string rowid = QuoteName(scope_.Tables()[0].alias) + ".rowid";
    const std::string found = days + "SELECT " + rowid + " FROM days CROSS JOIN " + TableSql(0) +
                              " WHERE " + AllOf(common.all) + " AND " + column +
                              " = days.day AND " + otherRange;
    // Neither AND nor a join keeps SQLite from starting on the days; CASE does.
    return TableSql(0) + " WHERE " + rowid + " = CASE WHEN EXISTS (SELECT 1" + rows + otherRange +
           ") THEN CASE WHEN EXISTS (SELECT 1" + rows + inDays + ") THEN (" + found +
           " LIMIT 1) END END";
  }

  static std::string AllOf(const std::vector<std::string>& conditions) {
    return company::Join(conditions, " AND ", "1");
  }

  std::string AllOf(const std::pmr::vector<Condition>& conditions) {
    std::vector<std::string> parts;
    for (const Condition& condition : conditions) {
      parts.push_back(One(condition));
    }
    return AllOf(parts);
  }

  std::string One(const Condition& condition) {
    switch (condition.kind) {
      case Condition::Kind::Value:
        return Compare(condition.left, condition.operation, condition.value);
      case Condition::Kind::Columns:
        return Expression(condition.left).sql + " = " + Expression(condition.right).sql;
      case Condition::Kind::Literal:
        return "(" + TextReader(condition.left, scope_).WholeCondition() + ")";
      case Condition::Kind::AnyOf:
        break;
    }
    return "(" + company::Join(Alternatives(condition), " OR ", "0") + ")";
  }

  std::vector<std::string> Alternatives(const Condition& group) {
    std::vector<std::string> alternatives;
    alternatives.reserve(group.alternatives.size());
    for (const auto& alternative : group.alternatives) {
      std::vector<std::string> parts;
      parts.reserve(alternative.size());
      for (const Comparison& comparison : alternative) {
        parts.push_back(Compare(comparison.left, comparison.operation, comparison.value));
      }
      alternatives.push_back("(" + AllOf(parts) + ")");
    }
    return alternatives;
  }

  std::string Compare(std::string_view left, CompareWith operation, const Variant& value) {
    Operand operand = Expression(left);
    if (operand.type == DataType::Currency) {
      // They are stored as texts, whose order is not that of the amounts.
      RaiseDataError(static_cast<std::int32_t>(RunTime::NotSupported),
                     "Amounts can't be compared in a selection: " + std::string(left));
    }
    if (operand.type == DataType::Boolean && value.VarType() == Variant::Type::Boolean) {
      operand.sql = "(" + operand.sql + " <> 0)";  // True may be stored as 1 or as -1
    }
    return operand.sql + std::string(Symbol(operation)) + "?" + std::to_string(++parameters_);
  }

  [[nodiscard]] Operand Expression(std::string_view text) const {
    return TextReader(text, scope_).WholeOperand();
  }

  const QueryBuilder& query_;
  Scope scope_;
  std::vector<std::string> selected_;
  int parameters_ = 0;
};

template <class Number>
void AppendNumber(std::string& key, Number number) {
  key.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// How much follows, and of which kind: no two texts can pass for one.
void AppendHead(std::string& key, std::size_t size, std::uint8_t kind = 0) {
  constexpr unsigned kKindBits = 8;
  AppendNumber(key, std::uint64_t{size} << kKindBits | kind);
}

void AppendText(std::string& key, std::string_view text, std::uint8_t kind = 0) {
  AppendHead(key, text.size(), kind);
  key += text;
}

// What the SQL shows of a comparison, besides its left side.
std::uint8_t KindOf(CompareWith operation, const Variant& value) {
  constexpr unsigned kOperations = 8;
  return static_cast<std::uint8_t>(static_cast<unsigned>(operation) +
                                   (value.VarType() == Variant::Type::Boolean ? kOperations : 0));
}

void AppendConditions(std::string& key, const std::pmr::vector<Condition>& conditions) {
  AppendHead(key, conditions.size());
  for (const Condition& condition : conditions) {
    AppendNumber(key, condition.kind);
    AppendText(key, condition.left, KindOf(condition.operation, condition.value));
    if (condition.kind == Condition::Kind::Columns) {
      AppendText(key, condition.right);
    }
    if (condition.kind == Condition::Kind::AnyOf) {
      AppendHead(key, condition.alternatives.size());
    }
    for (const auto& alternative : condition.alternatives) {
      AppendHead(key, alternative.size());
      for (const Comparison& comparison : alternative) {
        AppendText(key, comparison.left, KindOf(comparison.operation, comparison.value));
      }
    }
  }
}

}  // namespace

std::string QuoteName(std::string_view name) {
  std::string quoted = "\"";
  for (const char letter : name) {
    if (letter == '\0') {
      RaiseDataError(kBadCommand, "A name holds a null character");
    }
    quoted.append(letter == '"' ? 2U : 1U, letter);
  }
  return quoted + "\"";
}

std::string YearExpression(std::string_view columnSql) {
  return "CAST(substr(" + std::string(columnSql) + ", 1, 4) AS INTEGER)";
}

RenderedQuery RenderQuery(const QueryBuilder& query, const ColumnsOfTable& tables) {
  return Renderer(query, tables).Render();
}

void AppendValue(std::string& key, const Variant& value) {
  AppendNumber(key, value.VarType());
  switch (value.VarType()) {
    case Variant::Type::Boolean:
      return AppendNumber(key, *value.As<bool>());
    case Variant::Type::SmallInt:
      return AppendNumber(key, *value.As<std::int16_t>());
    case Variant::Type::Integer:
      return AppendNumber(key, *value.As<std::int32_t>());
    case Variant::Type::Single:
      return AppendNumber(key, *value.As<float>());
    case Variant::Type::Double:
      return AppendNumber(key, *value.As<double>());
    case Variant::Type::Date:
      return AppendNumber(key, value.As<Date>()->Serial());
    case Variant::Type::Text:
      return AppendText(key, *value.AsText());
    case Variant::Type::Empty:
    case Variant::Type::NullValue:
      return;
    default:  // rarely asked for, and exact as a text
      AppendText(key, CStr(value));
  }
}

void AppendShape(std::string& key, const QueryBuilder& query) {
  AppendHead(key, query.Columns().size(), query.IsOnlyFirst() ? 1 : 0);
  for (const std::string_view columns : query.Columns()) {
    AppendText(key, columns);
  }
  AppendText(key, query.Table());
  AppendHead(key, query.Joins().size());
  for (const QueryBuilder::Join& join : query.Joins()) {
    AppendNumber(key, join.kind);
    AppendText(key, join.table);
    AppendConditions(key, join.on);
  }
  AppendConditions(key, query.Conditions());
}

}  // namespace kal::company
