#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "host/JsonReaders.h"

namespace kal::host {
namespace {

using nlohmann::json;

// The library's message without its error number and its own idea of the place.
std::string BareMessage(std::string message) {
  for (const std::string_view end : {"] ", "column "}) {
    const std::size_t found = message.find(end);
    message.erase(0, found == std::string::npos ? 0 : found + end.size());
  }
  const std::size_t detail = message.find_first_not_of("0123456789: ");
  return message.substr(detail == std::string::npos ? 0 : detail);
}

// Hands the parser's events to the tree.
class Events final : public nlohmann::json_sax<json> {
 public:
  Events(std::string_view text, JsonTree& tree) : text_(text), tree_(tree) {}

  bool null() override {
    tree_.AddNull();
    return true;
  }
  bool boolean(bool value) override {
    tree_.AddBoolean(value);
    return true;
  }
  bool number_integer(std::int64_t value) override { return AddNumber(std::to_string(value)); }
  bool number_unsigned(std::uint64_t value) override { return AddNumber(std::to_string(value)); }
  bool number_float(double, const std::string& digits) override { return AddNumber(digits); }
  bool string(std::string& value) override {
    tree_.AddText(tree_.Keep(std::move(value)));
    return true;
  }
  bool binary(json::binary_t&) override { return false; }  // JSON text has none
  bool start_object(std::size_t) override { return Open(JsonValue::Kind::Object); }
  bool key(std::string& name) override {
    tree_.Key(name);
    return true;
  }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(JsonValue::Kind::Array); }
  bool end_array() override { return Close(); }

  bool parse_error(std::size_t position, const std::string&,
                   const json::exception& error) override {
    const std::string detail = BareMessage(error.what());
    const std::string before = Before(position);
    // The parser counts the end of the text as one more character.
    reading_.ending =
        position > text_.size() ? JsonReading::Ending::Unfinished : JsonReading::Ending::Wrong;
    const Said place = PlaceOf(position);
    reading_.error = Say({"non è JSON, %%: si ferma dopo %", "not JSON, %%: %"},
                         {place, tree_.Where(), Wording{before, detail}});
    return false;
  }

  JsonReading Finish() {
    reading_.value = &tree_.Finish();
    return std::move(reading_);
  }

 private:
  // The last of what was read, as a JSON text.
  [[nodiscard]] std::string Before(std::size_t position) const {
    constexpr std::size_t kShown = 20;
    const std::size_t end = std::min(position, text_.size());
    return QuotedText(text_.substr(end - std::min(end, kShown), std::min(end, kShown)));
  }

  // "column 5", behind the number of the line where the text has several.
  [[nodiscard]] Said PlaceOf(std::size_t position) const {
    const std::size_t end = text_.find_last_not_of(" \t\r\n") + 1;
    const std::string_view before = text_.substr(0, std::min(position, end));
    const std::size_t lineStart = before.rfind('\n') + 1;  // 0 when there is no line before
    const auto line = std::ranges::count(before, '\n') + 1;
    return Say({"%colonna %", "%column %"},
               {line > 1 ? Say({"riga % ", "line % "}, {std::to_string(line)}) : Said(),
                std::to_string(before.size() - lineStart)});
  }

  bool AddNumber(std::string digits) {
    tree_.AddNumber(tree_.Keep(std::move(digits)));
    return true;
  }

  bool Open(JsonValue::Kind kind) {
    if (!tree_.Open(kind)) {
      reading_.ending = JsonReading::Ending::Wrong;
      reading_.error = tree_.TooDeep();
      return false;
    }
    return true;
  }

  bool Close() {
    tree_.Close();
    return true;
  }

  std::string_view text_;
  JsonTree& tree_;
  JsonReading reading_;
};

}  // namespace

JsonReading ReadCarefully(std::string_view text, JsonTree& tree) {
  Events events(text, tree);
  // Refusals of ours and the parser's errors both end the parse; Finish tells them apart.
  (void)json::sax_parse(text.begin(), text.end(), &events);
  return events.Finish();
}

}  // namespace kal::host
