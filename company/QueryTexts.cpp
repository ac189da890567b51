#include "company/QueryTexts.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "company/DataError.h"
#include "platform/LetterCase.h"
#include "platform/Trimmed.h"

namespace kal::company {
namespace {

bool IsDigit(char letter) { return letter >= '0' && letter <= '9'; }

bool StartsName(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool IsName(std::string_view text) {
  return !text.empty() && StartsName(text.front()) && std::ranges::all_of(text, [](char letter) {
    return StartsName(letter) || IsDigit(letter);
  });
}

// Reads one expression or condition and writes it as SQL.
class TextReader {
 public:
  TextReader(std::string_view text, const Scope& scope, const Dialect& dialect)
      : text_(text), rest_(text), scope_(scope), dialect_(dialect) {}

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
    const Operand operand = ReadOperand();
    if (AcceptWord("Is")) {
      std::string sql = operand.sql;
      sql += AcceptWord("Not") ? " IS NOT NULL" : " IS NULL";
      if (!AcceptWord("Null")) {
        Refuse();
      }
      return sql;
    }
    for (const std::string_view symbol : {"<>", "<=", ">=", "=", "<", ">"}) {
      if (Accept(symbol)) {
        std::string sql = dialect_.Compared(operand);
        sql.append(" ").append(symbol).append(" ");
        return sql + dialect_.Compared(ReadOperand());
      }
    }
    Refuse();
  }

  Operand ReadOperand() {
    const std::string_view word = NextWord();
    if (word.empty()) {
      return {.sql = ReadText(), .type = DataType::VarWChar};
    }
    if (!StartsName(word.front())) {
      const std::string_view number =
          Take([](char letter) { return IsDigit(letter) || letter == '.'; });
      return {.sql = std::string(number),
              .type = number.find('.') == std::string_view::npos ? DataType::Integer
                                                                 : DataType::Double};
    }
    if (AcceptFunction("IsNull")) {
      const Operand value = ReadOperand();
      Expect(",");
      const Operand otherwise = ReadOperand();
      Expect(")");
      return dialect_.IfNull(value, otherwise);
    }
    if (AcceptFunction("Year")) {
      Operand year{.sql = dialect_.Year(ReadOperand().sql), .type = DataType::Integer};
      Expect(")");
      return year;
    }
    const auto [table, column] = scope_.Find(
        Take([](char letter) { return StartsName(letter) || IsDigit(letter) || letter == '.'; }));
    return {.sql = Scope::Sql(*table, *column), .type = column->type, .column = column->type};
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
  const Dialect& dialect_;
};

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

std::string Joined(std::span<const std::string> parts, std::string_view separator,
                   std::string_view whenNone) {
  std::string text;
  for (const std::string& part : parts) {
    text.append(text.empty() ? std::string_view() : separator).append(part);
  }
  return text.empty() ? std::string(whenNone) : text;
}

void Scope::Add(std::string_view text, const ShapeOfTable& shapeOf) {
  std::string_view name = text;
  std::string_view alias = text;
  // The alias is what follows the last " as ": a name in front of it may be any text.
  constexpr std::string_view kAs = " as ";
  for (std::size_t at = text.size(); at-- > 0;) {
    if (SameName(text.substr(at, kAs.size()), kAs) &&
        IsName(Trimmed(text.substr(at + kAs.size())))) {
      name = Trimmed(text.substr(0, at));
      alias = Trimmed(text.substr(at + kAs.size()));
      break;
    }
  }
  tables_.push_back({std::string(name), std::string(alias), shapeOf(name)});
}

std::pair<const Scope::Table*, const TableColumn*> Scope::Find(std::string_view name) const {
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
        table.shape.columns, [column](const TableColumn& c) { return SameName(c.name, column); });
    if (found != table.shape.columns.end()) {
      return {&table, &*found};
    }
  }
  if (!ownerFound) {
    RaiseDataError(kNoSuchTable, "The selection has no table '" + std::string(owner) + "'");
  }
  RaiseDataError(kBadCommand, "There is no column '" + std::string(column) + "' in " +
                                  (qualified ? std::string(owner) : TableNames()));
}

std::string Scope::Sql(const Table& table, const TableColumn& column) {
  return QuoteName(table.alias) + "." + column.sql;
}

std::string Scope::TableNames() const {
  std::vector<std::string> names;
  for (const Table& table : tables_) {
    names.push_back(table.name);
  }
  return Joined(names, ", ");
}

Operand ReadExpression(std::string_view text, const Scope& scope, const Dialect& dialect) {
  return TextReader(text, scope, dialect).WholeOperand();
}

std::string ReadCondition(std::string_view text, const Scope& scope, const Dialect& dialect) {
  return TextReader(text, scope, dialect).WholeCondition();
}

}  // namespace kal::company
