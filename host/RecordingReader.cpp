#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#include "host/JsonDocument.h"
#include "host/RecordingNames.h"
#include "host/RecordingText.h"
#include "records/SelectionMaker.h"

namespace kal::host {
namespace {

using records::Conversation;
using records::Exchange;
using records::IsQuestion;
using records::SetFault;
using records::SetMoves;
using Kind = JsonDocument::Kind;

class FormatError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

[[noreturn]] void Refuse(const std::string& why) { throw FormatError(why); }

// The parts of an object's text, each value as it is written. What stands inside of a value is
// looked at only so far as to find its end.
class Parts {
 public:
  explicit Parts(std::string_view text) : text_(text) {
    Expect('{');
    do {
      SkipBlanks();
      const std::string_view key = TakeValue();
      Expect(':');
      SkipBlanks();
      parts_.emplace_back(key, TakeValue());
    } while (Next());
    if (SkipBlanks(), at_ != text_.size()) {
      Refuse("there is more behind its end");
    }
  }

  // Nothing is left out and nothing else is there.
  template <std::size_t kCount>
  [[nodiscard]] std::array<std::string_view, kCount> Take(
      const std::array<std::string_view, kCount>& keys) const {
    std::array<std::string_view, kCount> values;
    for (const auto& [key, value] : parts_) {
      const auto known = std::ranges::find_if(keys, [&key = key](std::string_view name) {
        return key.size() == name.size() + 2 && key.substr(1, name.size()) == name;
      });
      if (known == keys.end()) {
        Refuse("it has an unknown key " + std::string(key));
      }
      auto& place = values[static_cast<std::size_t>(known - keys.begin())];
      if (!place.empty()) {
        Refuse("it has the key " + std::string(key) + " twice");
      }
      place = value;
    }
    for (std::size_t i = 0; i < kCount; ++i) {
      if (values[i].empty()) {
        Refuse("it has no \"" + std::string(keys[i]) + "\"");
      }
    }
    return values;
  }

 private:
  void SkipBlanks() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }
  [[nodiscard]] char Take() {
    if (at_ >= text_.size()) {
      Refuse("it breaks off");
    }
    return text_[at_++];
  }
  void Expect(char wanted) {
    SkipBlanks();
    if (const char found = Take(); found != wanted) {
      Refuse("it is no recording: column " + std::to_string(at_) + " should be " +
             std::string(1, wanted));
    }
  }
  // Whether there is another part.
  [[nodiscard]] bool Next() {
    SkipBlanks();
    const char found = Take();
    if (found != ',' && found != '}') {
      Refuse("it is no recording: column " + std::to_string(at_) + " should be , or }");
    }
    return found == ',';
  }
  void SkipString() {
    for (char c = Take(); c != '"'; c = Take()) {
      if (c == '\\') {
        (void)Take();
      }
    }
  }
  [[nodiscard]] std::string_view TakeValue() {
    const std::size_t start = at_;
    std::size_t depth = 0;
    do {
      const char c = Take();
      if (c == '"') {
        SkipString();
      } else if (c == '{' || c == '[') {
        ++depth;
      } else if (c == '}' || c == ']') {
        if (depth == 0) {
          Refuse("it is no recording: column " + std::to_string(at_) + " should be a value");
        }
        --depth;
      } else if (depth == 0) {
        at_ = std::min(text_.find_first_of(",:}] \t\r\n", at_), text_.size());
      }
    } while (depth > 0);
    return text_.substr(start, at_ - start);
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::vector<std::pair<std::string_view, std::string_view>> parts_;
};

const JsonDocument& Require(const JsonDocument* value, Kind kind, std::string_view what) {
  constexpr std::array<std::string_view, 6> kNames = {"null",   "true or false", "a number",
                                                      "a text", "a list",        "an object"};
  if (value == nullptr || value->kind != kind) {
    Refuse(std::string(what) + " must be " + std::string(kNames[static_cast<std::size_t>(kind)]));
  }
  return *value;
}

template <class Number>
Number ReadNumber(const std::string& digits, std::string_view what) {
  Number number{};
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end || digits.empty()) {
    Refuse("there is no such " + std::string(what) + ": " + QuotedText(digits));
  }
  return number;
}

template <class Number>
Number ReadNumber(const JsonDocument* value, std::string_view what) {
  return ReadNumber<Number>(Require(value, Kind::Number, what).text, what);
}

template <class Value>
Value Held(const std::optional<Value>& value, std::string_view what, const std::string& text) {
  if (!value) {
    Refuse("there is no such " + std::string(what) + ": " + QuotedText(text));
  }
  return *value;
}

std::string BytesOf(const std::string& digits) {
  std::string bytes;
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    unsigned byte = 0;
    const char* const end = digits.data() + std::min(at + 2, digits.size());
    const auto [stop, error] = std::from_chars(digits.data() + at, end, byte, 16);
    if (error != std::errc() || stop != digits.data() + at + 2) {
      Refuse("these are no bytes: " + QuotedText(digits));
    }
    bytes += static_cast<char>(static_cast<unsigned char>(byte));
  }
  return bytes;
}

Variant ReadMarked(const std::string& letter, const JsonDocument& value) {
  if (letter == "e") {
    (void)Require(&value, Kind::Null, "the value of \"e\"");
    return {};
  }
  if (letter == "i") {
    return ReadNumber<std::int16_t>(&value, "16-bit number");
  }
  if (letter == "y") {
    return ReadNumber<std::int8_t>(&value, "8-bit number");
  }
  const std::string& text = Require(&value, Kind::Text, "the value of \"" + letter + "\"").text;
  if (letter == "m") {
    return Held(Currency::FromExactText(text), "amount", text);
  }
  if (letter == "d") {
    return Held(Date::FromIso(text), "date", text);
  }
  if (letter == "dt") {
    return Held(Date::FromSerial(ReadNumber<double>(text, "date")), "date", text);
  }
  if (letter == "f") {
    return ReadNumber<double>(text, "number");
  }
  if (letter == "s") {
    return ReadNumber<float>(text, "number");
  }
  if (letter == "q") {
    return ReadNumber<std::int64_t>(text, "64-bit number");
  }
  if (letter == "n") {
    return Held(Decimal::FromText(text), "decimal", text);
  }
  if (letter == "x") {
    return BytesOf(text);
  }
  Refuse("there is no type " + QuotedText(letter));
}

Variant ReadValue(const JsonDocument& value) {
  switch (value.kind) {
    case Kind::Null:
      return Null;
    case Kind::Boolean:
      return value.boolean;
    case Kind::Number:
      return ReadNumber<std::int32_t>(&value, "32-bit number");
    case Kind::Text:
      return value.text;
    case Kind::Object:
      if (value.items.size() == 1) {
        return ReadMarked(value.keys.front(), value.items.front());
      }
      break;
    case Kind::Array:
      break;
  }
  Refuse("this is no value: " + ToText(value));
}

std::vector<Variant> ReadValues(const JsonDocument* list, std::string_view what) {
  std::vector<Variant> values;
  for (const JsonDocument& value : Require(list, Kind::Array, what).items) {
    values.push_back(ReadValue(value));
  }
  return values;
}

RunTimeError ReadError(const JsonDocument* value) {
  const JsonDocument& error = Require(value, Kind::Object, "an error");
  return {ReadNumber<std::int32_t>(error.Find("number"), "an error's number"),
          Require(error.Find("source"), Kind::Text, "an error's source").text,
          Require(error.Find("description"), Kind::Text, "an error's description").text};
}

template <std::size_t kCount>
std::size_t PlaceOf(const std::array<std::string_view, kCount>& names, const JsonDocument* value,
                    std::string_view what) {
  const std::string& name = Require(value, Kind::Text, what).text;
  const auto found = std::ranges::find(names, name);
  if (found == names.end()) {
    Refuse("there is no such " + std::string(what) + ": " + QuotedText(name));
  }
  return static_cast<std::size_t>(found - names.begin());
}

// A condition is a text; a list of column and operator, or of column, "=" and column; or an object
// of alternatives.
class SelectionReader {
 public:
  std::shared_ptr<const Selection> Read(const JsonDocument& selection) {
    if (const JsonDocument* const option = selection.Find("option")) {
      maker_.Option(ReadNumber<std::int32_t>(option, "option"));
    }
    for (const JsonDocument& columns :
         Require(selection.Find("columns"), Kind::Array, "a selection's columns").items) {
      maker_.Select(Require(&columns, Kind::Text, "a selection's column").text);
    }
    maker_.From(Require(selection.Find("table"), Kind::Text, "a selection's table").text);
    if (const JsonDocument* const joins = selection.Find("joins")) {
      for (const JsonDocument& join : Require(joins, Kind::Array, "a selection's joins").items) {
        (void)Require(&join, Kind::Object, "a join");
        maker_.JoinWith(static_cast<JoinKind>(PlaceOf(kJoinKinds, join.Find("kind"), "join kind")),
                        Require(join.Find("table"), Kind::Text, "a join's table").text);
        ReadConditions(join.Find("on"));
      }
    }
    maker_.Where();
    ReadConditions(selection.Find("where"));
    return maker_.Take();
  }

 private:
  void ReadConditions(const JsonDocument* conditions) {
    if (conditions == nullptr) {
      return;
    }
    for (const JsonDocument& condition : Require(conditions, Kind::Array, "the conditions").items) {
      if (condition.kind == Kind::Text) {
        maker_.Literal(condition.text);
      } else if (condition.kind == Kind::Object) {
        ReadAnyOf(Require(condition.Find("any"), Kind::Array, "the alternatives"));
      } else if (condition.kind == Kind::Array && condition.items.size() == 3) {
        (void)PlaceOf(std::array<std::string_view, 1>{"="}, &condition.items[1],
                      "comparison of columns");
        maker_.Columns(Require(condition.items.data(), Kind::Text, "a column").text,
                       Require(&condition.items[2], Kind::Text, "a column").text);
      } else {
        ReadComparison(condition);
      }
    }
  }
  void ReadComparison(const JsonDocument& comparison) {
    if (Require(&comparison, Kind::Array, "a condition").items.size() != 2) {
      Refuse("this is no condition: " + ToText(comparison));
    }
    maker_.Compare(Require(comparison.items.data(), Kind::Text, "a column").text,
                   static_cast<CompareWith>(PlaceOf(kOperators, &comparison.items[1], "operator")));
  }
  void ReadAnyOf(const JsonDocument& alternatives) {
    maker_.BeginAnyOf();
    for (const JsonDocument& alternative : alternatives.items) {
      maker_.BeginAlternative();
      for (const JsonDocument& comparison :
           Require(&alternative, Kind::Array, "an alternative").items) {
        ReadComparison(comparison);
      }
    }
    maker_.EndAnyOf();
  }

  records::SelectionMaker maker_;
};

DataType ReadType(const JsonDocument& value) {
  if (value.kind == Kind::Number) {
    return static_cast<DataType>(ReadNumber<std::int32_t>(&value, "column type"));
  }
  const std::string& letter = Require(&value, Kind::Text, "a column's type").text;
  const auto* const known = std::ranges::find(kTypes, letter, &TypeLetter::letter);
  if (known == kTypes.end()) {
    Refuse("there is no column type " + QuotedText(letter));
  }
  return known->type;
}

std::shared_ptr<const RowTable> ReadRows(const JsonDocument* columns, const JsonDocument& rows) {
  std::vector<Column> read;
  for (const JsonDocument& column : Require(columns, Kind::Array, "the columns").items) {
    if (column.kind != Kind::Array || column.items.size() != 2) {
      Refuse("this is no column: " + ToText(column));
    }
    read.push_back({Require(column.items.data(), Kind::Text, "a column's name").text,
                    ReadType(column.items[1])});
  }
  auto table = std::make_shared<RowTable>(std::move(read));
  for (const JsonDocument& row : Require(&rows, Kind::Array, "the rows").items) {
    std::vector<Variant> cells = ReadValues(&row, "a row");
    if (cells.size() != table->Columns().size()) {
      Refuse("a row has " + std::to_string(cells.size()) + " values for " +
             std::to_string(table->Columns().size()) + " columns");
    }
    table->AddRow(std::move(cells));
  }
  return table;
}

std::string ReadTextValue(const JsonDocument* value, std::string_view what) {
  const Variant text = value == nullptr ? Variant("") : ReadValue(*value);
  return std::string(Held(text.AsText(), what, "no text"));
}

SetFault ReadFault(const JsonDocument& fault) {
  (void)Require(&fault, Kind::Object, "a record set's error");
  return {Require(fault.Find("call"), Kind::Text, "the call of a record set").text,
          ReadTextValue(fault.Find("of"), "field"),
          ReadNumber<std::size_t>(fault.Find("time"), "time"), ReadError(fault.Find("error"))};
}

SetMoves ReadMoves(const JsonDocument& value) {
  (void)Require(&value, Kind::Object, "the moves");
  SetMoves moves;
  if (const JsonDocument* const filter = value.Find("filter")) {
    moves.filter = ReadTextValue(filter, "filter");
  }
  if (const JsonDocument* const place = value.Find("to")) {
    moves.to = static_cast<SetMoves::To>(PlaceOf(kPlaces, place, "place"));
  }
  if (const JsonDocument* const next = value.Find("next")) {
    moves.next = ReadNumber<std::size_t>(next, "number of rows");
  }
  return moves;
}

void ReadMember(const std::string& asked, Exchange& exchange) {
  const std::size_t point = std::min(asked.find('.'), asked.size());
  const std::string_view name(asked);
  const auto component = std::ranges::find(kComponentNames, name.substr(0, point));
  if (component != kComponentNames.end() && point < asked.size()) {
    exchange.component = static_cast<Component>(component - kComponentNames.begin());
    const auto* const member = std::ranges::find_if(kMembers, [&](const MemberInfo& one) {
      return one.component == exchange.component && one.name == name.substr(point + 1);
    });
    exchange.member = static_cast<Member>(member - kMembers.begin());
    if (member != kMembers.end() || name.substr(point + 1) == "Create") {
      return;
    }
  }
  Refuse("there is no question " + QuotedText(asked));
}

EditMode ReadEditMode(const JsonDocument& value) {
  return static_cast<EditMode>(ReadNumber<std::int32_t>(&value, "edit mode"));
}

// Every key of an exchange, and what becomes of it.
void ReadPart(const std::string& key, const JsonDocument& value, const JsonDocument& whole,
              Exchange& exchange) {
  if (key == "ask") {
    ReadMember(Require(&value, Kind::Text, "\"ask\"").text, exchange);
  } else if (key == "time") {
    exchange.time = ReadNumber<std::size_t>(&value, "time");
  } else if (key == "selection") {
    exchange.selection = SelectionReader().Read(Require(&value, Kind::Object, "a selection"));
  } else if (key == "with") {
    exchange.with = ReadValues(&value, "\"with\"");
  } else if (key == "about") {
    exchange.about = ReadValues(&value, "\"about\"");
  } else if (key == "answer") {
    exchange.answer = ReadValue(value);
  } else if (key == "error") {
    exchange.error = ReadError(&value);
  } else if (key == "rows") {
    if (value.kind != Kind::Null) {
      exchange.rows = ReadRows(whole.Find("columns"), value);
    }
  } else if (key == "EditMode") {
    exchange.editMode = ReadEditMode(value);
  } else if (key == "faults") {
    for (const JsonDocument& fault : Require(&value, Kind::Array, "\"faults\"").items) {
      exchange.faults.push_back(ReadFault(fault));
    }
  } else if (key == "moves") {
    exchange.moves = ReadMoves(value);
  } else if (key != "columns") {
    Refuse("there is an unknown key " + QuotedText(key));
  }
}

Exchange ReadExchange(const JsonDocument& value) {
  (void)Require(&value, Kind::Object, "a question");
  (void)Require(value.Find("ask"), Kind::Text, "\"ask\"");
  Exchange exchange;
  for (std::size_t i = 0; i < value.items.size(); ++i) {
    ReadPart(value.keys[i], value.items[i], value, exchange);
  }
  const bool isSelection = exchange.Kind() == CallKind::Open;
  if (isSelection != (exchange.selection != nullptr)) {
    Refuse(isSelection ? "the selection is missing" : "there is a selection");
  }
  if (isSelection && exchange.selection->ValueCount() != exchange.with.size()) {
    Refuse("a selection with " + std::to_string(exchange.selection->ValueCount()) +
           " comparisons has " + std::to_string(exchange.with.size()) + " values");
  }
  const std::string_view answer = isSelection ? "rows" : "answer";
  if (IsQuestion(exchange.Kind()) && !exchange.error && value.Find(answer) == nullptr) {
    Refuse("there is neither \"" + std::string(answer) + R"(" nor "error")");
  }
  return exchange;
}

Conversation ReadConversation(std::string_view text, const JsonLimits& limits) {
  const JsonDocumentReading json = ReadDocument(text, limits);
  if (!json.error.empty()) {
    Refuse("conversation: " + json.error);
  }
  Conversation conversation;
  for (const JsonDocument& value : Require(&json.value, Kind::Array, "the conversation").items) {
    try {
      conversation.push_back(ReadExchange(value));
    } catch (const FormatError& error) {
      Refuse("question " + std::to_string(conversation.size() + 1) + ": " + error.what());
    } catch (const std::length_error& error) {
      Refuse("question " + std::to_string(conversation.size() + 1) + ": " + error.what());
    }
  }
  return conversation;
}

}  // namespace

RecordingReading ReadRecording(std::string_view line, const JsonLimits& limits) {
  constexpr std::array<std::string_view, 4> kKeys = {"recording", "entry", "conversation",
                                                     "result"};
  RecordingReading reading;
  try {
    const auto [version, entry, conversation, result] = Parts(line).Take(kKeys);
    if (version != "1") {
      Refuse("it is of the version " + std::string(version.substr(0, 20)) +
             "; this program reads version 1");
    }
    reading.recording = {std::string(entry), ReadConversation(conversation, limits),
                         std::string(result)};
  } catch (const FormatError& error) {
    reading.error = error.what();
  }
  return reading;
}

}  // namespace kal::host
