#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/JsonText.h"
#include "host/PerThread.h"
#include "host/RecordingNames.h"
#include "host/RecordingText.h"

namespace kal::host {
namespace {

using records::Conversation;
using records::Exchange;
using records::IsQuestion;
using records::SetFault;
using records::SetMoves;

// What stands in a JSON text as it is: no quotes, no backslashes, no control characters, and
// nothing beyond ASCII, which would have to be UTF-8.
bool IsPlain(std::string_view text) {
  bool plain = true;  // without a way out of the loop it takes many bytes at a time
  for (const char c : text) {
    plain = plain & (c >= ' ') & (c != '\x7F') & (c != '"') & (c != '\\');
  }
  return plain;
}

// How often the character stands there that takes the place of what is no UTF-8.
std::size_t Replacements(std::string_view text) {
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::size_t count = 0;
  for (std::size_t at = text.find(kReplacement); at != text.npos;
       at = text.find(kReplacement, at + 1)) {
    ++count;
  }
  return count;
}

class Writer {
 public:
  explicit Writer(std::string& target) : target_(target) {}

  void Write(const Conversation& conversation) {
    List(conversation, [this](const Exchange& exchange) { Write(exchange); });
  }

 private:
  void Raw(std::string_view text) { target_ += text; }
  template <class Digits>
  void Number(Digits number) {
    constexpr std::size_t kLongest = 32;
    std::array<char, kLongest> digits;
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    target_.append(digits.data(), end);
  }
  void Quoted(std::string_view text) {
    if (IsPlain(text)) {
      target_ += '"';
      target_ += text;
      target_ += '"';
    } else {
      target_ += QuotedText(text);
    }
  }
  template <class Items, class WriteItem>
  void List(const Items& items, WriteItem writeItem) {
    Raw("[");
    bool isFirst = true;
    for (const auto& item : items) {
      Raw(isFirst ? "" : ",");
      isFirst = false;
      writeItem(item);
    }
    Raw("]");
  }
  // A value with the letter of its type: a number, or a text that holds one.
  template <class Digits>
  void Marked(std::string_view front, Digits number, std::string_view back) {
    Raw(front);
    Number(number);
    Raw(back);
  }
  void MarkedText(std::string_view front, std::string_view text) {
    Raw(front);
    Raw(text);
    Raw("\"}");
  }

  void Write(const Variant& value) {
    using Type = Variant::Type;
    switch (value.VarType()) {
      case Type::Empty:
        return Raw("{\"e\":null}");
      case Type::NullValue:
        return Raw("null");
      case Type::Boolean:
        return Raw(CBool(value) ? "true" : "false");
      case Type::TinyInt:
        return Marked("{\"y\":", CLng(value), "}");
      case Type::SmallInt:
        return Marked("{\"i\":", CLng(value), "}");
      case Type::Integer:
        return Number(CLng(value));
      case Type::BigInt:
        return Marked(R"({"q":")", *value.As<std::int64_t>(), "\"}");
      case Type::Single:
        return Marked(R"({"s":")", *value.As<float>(), "\"}");
      case Type::Double:
        return Marked(R"({"f":")", *value.As<double>(), "\"}");
      case Type::Currency:
        return MarkedText(R"({"m":")", value.As<Currency>()->ToFixedText());
      case Type::Decimal:
        return MarkedText(R"({"n":")", value.As<Decimal>()->ToText());
      case Type::Date:
        return Write(*value.As<Date>());
      case Type::Text:
        return WriteText(*value.AsText());
    }
  }
  // A day as such; with a time of day the serial number, which tells it exactly.
  void Write(Date date) {
    if (date.WithoutTime() == date) {
      MarkedText(R"({"d":")", date.ToIso());
    } else {
      Marked(R"({"dt":")", date.Serial(), "\"}");
    }
  }
  // What is no UTF-8 byte by byte, which JSON could not hold.
  void WriteText(std::string_view text) {
    if (IsPlain(text)) {
      return Quoted(text);
    }
    if (const std::string quoted = QuotedText(text); Replacements(quoted) == Replacements(text)) {
      return Raw(quoted);
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr unsigned kHalf = 4;
    std::string digits;
    for (const char c : text) {
      const auto byte = static_cast<unsigned char>(c);
      digits += kDigits[byte >> kHalf];
      digits += kDigits[byte & 0xFU];
    }
    MarkedText(R"({"x":")", digits);
  }

  void Write(const std::vector<Variant>& values) {
    List(values, [this](const Variant& value) { Write(value); });
  }
  void Write(const RunTimeError& error) {
    Raw("{\"number\":");
    Number(error.Number());
    Raw(",\"source\":");
    Quoted(error.Source());
    Raw(",\"description\":");
    Quoted(error.Description());
    Raw("}");
  }

  void Write(const Query& query, const Selection::Comparison& comparison) {
    Raw("[");
    Quoted(query.Text(comparison.left));
    Raw(",\"");
    Raw(kOperators[static_cast<std::size_t>(comparison.operation)]);
    Raw("\"]");
  }
  void Write(const Query& query, const Selection::Condition& condition) {
    using ConditionKind = Selection::Condition::Kind;
    switch (condition.kind) {
      case ConditionKind::Value:
        return Write(query, Selection::Comparison{condition.left, condition.operation});
      case ConditionKind::Columns:
        Raw("[");
        Quoted(query.Text(condition.left));
        Raw(",\"=\",");
        Quoted(query.Text(condition.right));
        return Raw("]");
      case ConditionKind::Literal:
        return Quoted(query.Text(condition.left));
      case ConditionKind::AnyOf:
        break;
    }
    Raw("{\"any\":");
    List(condition.alternatives, [&](const Selection::All& alternative) {
      List(alternative, [&](const Selection::Comparison& comparison) { Write(query, comparison); });
    });
    Raw("}");
  }
  template <class Conditions>
  void WriteConditions(std::string_view key, const Query& query, const Conditions& conditions) {
    if (conditions.Size() > 0) {
      Raw(key);
      List(conditions, [&](const Selection::Condition& condition) { Write(query, condition); });
    }
  }
  void Write(const Query& query) {
    const Selection& what = query.What();
    Raw("{\"table\":");
    Quoted(query.Text(what.Table()));
    if (what.Option() != 0) {
      Raw(",\"option\":");
      Number(what.Option());
    }
    Raw(",\"columns\":");
    List(what.Columns(), [&](std::string_view columns) { Quoted(query.Text(columns)); });
    if (what.Joins().Size() > 0) {
      Raw(",\"joins\":");
      List(what.Joins(), [&](const Selection::Join& join) {
        Raw(R"({"kind":")");
        Raw(kJoinKinds[static_cast<std::size_t>(join.kind)]);
        Raw(R"(","table":)");
        Quoted(query.Text(join.table));
        WriteConditions(",\"on\":", query, join.on);
        Raw("}");
      });
    }
    WriteConditions(",\"where\":", query, what.Conditions());
    Raw("}");
  }
  // The text of a constant is made once on each thread.
  void WriteSelection(const Exchange& exchange) {
    const bool isConstant = exchange.selection.use_count() == 0;
    if (!isConstant || !exchange.name.empty()) {
      return Write(exchange.AsQuery());
    }
    using Made = std::unordered_map<const Selection*, std::string>;
    std::string& text = OfThisThread<Made>()[exchange.selection.get()];
    if (text.empty()) {
      std::string whole;
      Writer(whole).Write(exchange.AsQuery());
      text = std::move(whole);
    }
    Raw(text);
  }

  void Write(const RowTable& rows) {
    Raw(",\"columns\":");
    List(rows.Columns(), [this](const Column& column) {
      Raw("[");
      Quoted(column.name);
      Raw(",");
      const auto* const known = std::ranges::find(kTypes, column.type, &TypeLetter::type);
      if (known != kTypes.end()) {
        Quoted(known->letter);
      } else {
        Number(static_cast<std::int32_t>(column.type));
      }
      Raw("]");
    });
    Raw(",\"rows\":[");
    for (std::size_t row = 0; row < rows.RowCount(); ++row) {
      Raw(row == 0 ? "[" : ",[");
      for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
        Raw(column == 0 ? "" : ",");
        Write(rows.Cell(row, column));
      }
      Raw("]");
    }
    Raw("]");
  }
  void Write(const SetFault& fault) {
    Raw("{\"call\":");
    Quoted(fault.member);
    if (!fault.of.empty()) {
      Raw(",\"of\":");
      WriteText(fault.of);
    }
    Raw(",\"time\":");
    Number(fault.time);
    Raw(",\"error\":");
    Write(fault.error);
    Raw("}");
  }
  void Write(const SetMoves& moves) {
    std::string_view comma;
    const auto key = [&](std::string_view name) {
      Raw(std::exchange(comma, ","));
      Raw(name);
    };
    Raw(",\"moves\":{");
    if (moves.filter) {
      key("\"filter\":");
      WriteText(*moves.filter);
    }
    if (moves.to != SetMoves::To::Stay) {
      key("\"to\":");
      Quoted(kPlaces[static_cast<std::size_t>(moves.to)]);
    }
    if (moves.next > 0) {
      key("\"next\":");
      Number(moves.next);
    }
    Raw("}");
  }
  void WriteAnswer(const Exchange& exchange) {
    if (exchange.error) {
      Raw(",\"error\":");
      Write(*exchange.error);
    } else if (exchange.Kind() != CallKind::Open) {
      if (IsQuestion(exchange.Kind())) {
        Raw(",\"answer\":");
        Write(exchange.answer);
      }
    } else if (exchange.rows == nullptr) {
      Raw(",\"rows\":null");
    } else {
      Write(*exchange.rows);
      if (exchange.editMode != EditMode::None) {
        Raw(",\"EditMode\":");
        Number(static_cast<std::int32_t>(exchange.editMode));
      }
    }
  }
  void Write(const Exchange& exchange) {
    Raw(R"({"ask":")");
    Raw(NameOf(exchange.component));
    Raw(".");
    Raw(exchange.Name());
    Raw("\"");
    if (!IsQuestion(exchange.Kind())) {
      Raw(",\"time\":");
      Number(exchange.time);
    }
    if (exchange.selection != nullptr) {
      Raw(",\"selection\":");
      WriteSelection(exchange);
    }
    if (!exchange.with.empty()) {
      Raw(",\"with\":");
      Write(exchange.with);
    }
    if (!exchange.about.empty()) {
      Raw(",\"about\":");
      Write(exchange.about);
    }
    WriteAnswer(exchange);
    if (!exchange.faults.empty()) {
      Raw(",\"faults\":");
      List(exchange.faults, [this](const SetFault& fault) { Write(fault); });
    }
    if (!exchange.moves.None()) {
      Write(exchange.moves);
    }
    Raw("}");
  }

  std::string& target_;
};

// The text with what stands on several lines on one. No JSON text holds a line end elsewhere than
// between its parts.
void AppendOnOneLine(std::string& target, std::string_view json) {
  json.remove_suffix(json.size() - (json.find_last_not_of(" \t\r\n") + 1));
  json.remove_prefix(std::min(json.find_first_not_of(" \t\r\n"), json.size()));
  for (std::size_t end = 0; !json.empty(); json.remove_prefix(end)) {
    end = std::min(json.find('\n'), json.size());
    target += json.substr(0, end);
    if (end < json.size()) {
      target += ' ';
      ++end;
    }
  }
}

}  // namespace

void AppendRecording(std::string& target, std::string_view entry, const Conversation& conversation,
                     std::string_view result) {
  constexpr std::size_t kUsualQuestion = 250;
  target.reserve(target.size() + entry.size() + result.size() +
                 conversation.size() * kUsualQuestion);
  target += R"({"recording":1,"entry":)";
  AppendOnOneLine(target, entry);
  target += ",\"conversation\":";
  Writer(target).Write(conversation);
  target += ",\"result\":";
  AppendOnOneLine(target, result);
  target += "}\n";
}

}  // namespace kal::host
