#include "platform/FilterParser.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

#include "platform/FilterValue.h"
#include "platform/LetterCase.h"
#include "platform/NumberText.h"
#include "platform/Quoted.h"
#include "platform/RunTimeError.h"

namespace kal {
namespace {

using Operation = FilterExpression::Operation;
using Node = FilterExpression::Node;
using Nodes = std::pmr::vector<Node>;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsNamePart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsWildcard(char c) { return c == '*' || c == '%'; }

class Parser {
 public:
  Parser(const RowTable& table, std::string_view text, Nodes& nodes)
      : table_(table), text_(text), nodes_(nodes) {}

  // The whole text; the root's place.
  std::uint32_t Parse() {
    const std::uint32_t root = Group(Operation::Any);
    SkipBlanks();
    if (at_ != text_.size()) {
      Refuse("and, or, or the end was expected");
    }
    return root;
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    Raise(RunTime::InvalidFilter,
          "Invalid filter at character " + std::to_string(at_ + 1) + ": " + reason,
          kRecordsetSource);
  }

  void SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) {
      ++at_;
    }
  }

  bool Accept(char symbol) {
    if (at_ == text_.size() || text_[at_] != symbol) {
      return false;
    }
    ++at_;
    return true;
  }

  // The letters, digits and underscores that stand here.
  [[nodiscard]] std::string_view Word() const {
    std::size_t end = at_;
    while (end < text_.size() && IsNamePart(text_[end])) {
      ++end;
    }
    return text_.substr(at_, end - at_);
  }

  bool AcceptWord(std::string_view word) {
    if (at_ == text_.size() || FoldedAscii(text_[at_]) != word[0] || !SameName(Word(), word)) {
      return false;
    }
    at_ += word.size();
    return true;
  }

  std::uint32_t Add(Node node) {
    nodes_.push_back(std::move(node));
    return static_cast<std::uint32_t>(nodes_.size() - 1);
  }

  // Operands joined by "or" (Any) or "and" (All); a single one stands for itself.
  std::uint32_t Group(Operation operation) {
    const bool any = operation == Operation::Any;
    const std::uint32_t first = any ? Group(Operation::All) : Condition();
    std::uint32_t last = first;
    for (SkipBlanks(); AcceptWord(any ? "or" : "and"); SkipBlanks()) {
      const std::uint32_t next = any ? Group(Operation::All) : Condition();
      nodes_[last].next = next;
      last = next;
    }
    return last == first ? first
                         : Add({.operation = operation, .firstOperand = first, .constant = {}});
  }

  std::uint32_t Condition() {
    constexpr int kDeepest = 100;
    SkipBlanks();
    if (!Accept('(')) {
      return Add(Comparison());
    }
    if (++depth_ > kDeepest) {
      Refuse("too many parentheses inside each other");
    }
    const std::uint32_t group = Group(Operation::Any);
    SkipBlanks();
    if (!Accept(')')) {
      Refuse("a closing parenthesis was expected");
    }
    --depth_;
    return group;
  }

  Node Comparison() {
    Node node;
    node.column = ColumnPlace();
    SkipBlanks();
    if (AcceptWord("like")) {
      SkipBlanks();
      Pattern(node);
      return node;
    }
    node.operation = Operator();
    SkipBlanks();
    const std::size_t start = at_;
    Variant value = Constant();
    if (value.IsNull()) {
      NullTest(node);
      return node;
    }
    const Variant* constant =
        FilterConstant(table_.Columns()[node.column].type, value, node.constant);
    if (constant == nullptr) {
      at_ = start;
      Refuse("the value is not of the kind of column " +
             Quoted(table_.Columns()[node.column].name));
    }
    if (constant == &value) {
      node.constant = std::move(value);
    }
    return node;
  }

  std::uint32_t ColumnPlace() {
    const std::size_t start = at_;
    std::string_view name = Word();
    if (Accept('[')) {
      const std::size_t end = text_.find(']', at_);
      if (end == std::string_view::npos) {
        Refuse("a closing bracket was expected");
      }
      name = text_.substr(at_, end - at_);
      at_ = end + 1;
    } else {
      at_ += name.size();
    }
    const std::ptrdiff_t place = table_.FindColumn(name);
    if (place < 0) {
      at_ = start;
      Refuse(name.empty() ? "a column was expected" : "there is no column " + Quoted(name));
    }
    return static_cast<std::uint32_t>(place);
  }

  Operation Operator() {
    if (Accept('=')) {
      return Operation::Equal;
    }
    if (Accept('<')) {
      return Accept('>')   ? Operation::NotEqual
             : Accept('=') ? Operation::LessOrEqual
                           : Operation::Less;
    }
    if (Accept('>')) {
      return Accept('=') ? Operation::GreaterOrEqual : Operation::Greater;
    }
    Refuse("=, <>, <, <=, >, >= or like was expected");
  }

  void NullTest(Node& node) const {
    if (node.operation != Operation::Equal && node.operation != Operation::NotEqual) {
      Refuse("Null is tested with = and <> only");
    }
    node.operation = node.operation == Operation::Equal ? Operation::IsNull : Operation::IsNotNull;
  }

  Variant Constant() {
    const char first = at_ < text_.size() ? text_[at_] : ' ';
    if (IsDigit(first)) {
      return Number();
    }
    if (first == '\'') {
      return Text();
    }
    if (Accept('#')) {
      return DateConstant();
    }
    if (AcceptWord("null")) {
      return Null;
    }
    if (AcceptWord("true")) {
      return true;
    }
    if (AcceptWord("false")) {
      return false;
    }
    return Number();
  }

  // A text between quotes; a quote inside it is doubled.
  std::string Text() {
    if (!Accept('\'')) {
      Refuse("a text was expected");
    }
    std::string value;
    for (;;) {
      const std::size_t quote = text_.find('\'', at_);
      if (quote == std::string_view::npos) {
        Refuse("a closing quote was expected");
      }
      value.append(text_.substr(at_, quote - at_));
      at_ = quote + 1;
      if (!Accept('\'')) {
        return value;
      }
      value += '\'';
    }
  }

  Variant DateConstant() {
    const std::size_t end = text_.find('#', at_);
    const std::optional<Date> date =
        end == std::string_view::npos ? std::nullopt : Date::FromText(text_.substr(at_, end - at_));
    if (!date) {
      Refuse("a date was expected");
    }
    at_ = end + 1;
    return *date;
  }

  // A sign, digits and decimals, up to the next blank or parenthesis.
  Variant Number() {
    std::size_t end = at_;
    while (end < text_.size() && !IsBlank(text_[end]) && text_[end] != ')') {
      ++end;
    }
    const std::string_view digits = text_.substr(at_, end - at_);
    std::optional<Variant> value;
    std::int32_t whole = 0;
    const char* const last = digits.data() + digits.size();
    if (std::from_chars(digits.data(), last, whole) == std::from_chars_result{last, std::errc()}) {
      value = whole;
    } else if (const auto amount = Currency::FromExactText(digits)) {
      value = *amount;
    } else if (const auto decimal = Decimal::FromText(digits)) {
      value = *decimal;
    } else {
      Refuse(end == at_ ? "a value was expected" : Quoted(digits) + " is not a value");
    }
    at_ = end;
    return *std::move(value);
  }

  void Pattern(Node& node) {
    if (!IsTextColumn(table_.Columns()[node.column].type)) {
      Refuse("like needs a text column");
    }
    std::string pattern = Text();
    node.operation = Operation::Equal;
    if (!pattern.empty() && IsWildcard(pattern.back())) {
      pattern.pop_back();
      node.operation = Operation::StartsWith;
      if (!pattern.empty() && IsWildcard(pattern.front())) {
        pattern.erase(0, 1);
        node.operation = Operation::Contains;
      }
    }
    if (std::any_of(pattern.begin(), pattern.end(), IsWildcard)) {
      Refuse("like takes * and % only as the last, or the first and last, character");
    }
    node.constant = pattern;
  }

  const RowTable& table_;
  std::string_view text_;
  Nodes& nodes_;
  std::size_t at_ = 0;
  int depth_ = 0;
};

}  // namespace

FilterExpression::FilterExpression(const RowTable& table, std::string_view text) : table_(table) {
  nodes_.reserve(kUsualNodes);
  root_ = Parser(table, text, nodes_).Parse();
}

bool FilterExpression::Holds(const Node& node, std::size_t row) const {
  const auto anyOperand = [&](bool wanted) {
    for (std::uint32_t at = node.firstOperand; at != kNone; at = nodes_[at].next) {
      if (Holds(nodes_[at], row) == wanted) {
        return true;
      }
    }
    return false;
  };
  const auto cell = [&]() -> const Variant& { return table_.Cell(row, node.column); };
  const auto order = [&] { return CompareInFilter(cell(), node.constant); };
  switch (node.operation) {
    case Operation::All:
      return !anyOperand(false);
    case Operation::Any:
      return anyOperand(true);
    case Operation::IsNull:
      return cell().IsNull() || cell().IsEmpty();
    case Operation::IsNotNull:
      return !cell().IsNull() && !cell().IsEmpty();
    case Operation::Equal:
      return order() == 0;
    case Operation::NotEqual: {
      const std::partial_ordering found = order();
      return found < 0 || found > 0;
    }
    case Operation::Less:
      return order() < 0;
    case Operation::LessOrEqual:
      return order() <= 0;
    case Operation::Greater:
      return order() > 0;
    case Operation::GreaterOrEqual:
      return order() >= 0;
    case Operation::StartsWith:
    case Operation::Contains:
      break;
  }
  const auto text = cell().AsText();
  const auto pattern = node.constant.AsText();
  if (!text || !pattern) {
    return false;
  }
  return node.operation == Operation::StartsWith ? StartsWithFolded(*text, *pattern)
                                                 : ContainsFolded(*text, *pattern);
}

}  // namespace kal
