#include "host/JsonTree.h"

#include <algorithm>

namespace kal::host {
namespace {

bool IsContainer(const JsonValue& value) {
  return value.kind == JsonValue::Kind::Object || value.kind == JsonValue::Kind::Array;
}

// The line of the text on which that object or array begins; 0 for a text of one line.
std::size_t LineOf(std::string_view text, std::size_t container) {
  if (text.find('\n') >= text.size() - 1) {
    return 0;
  }
  std::size_t line = 1;
  bool inText = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '\n') {
      ++line;
    } else if (c == '"') {
      inText = !inText;
    } else if (inText && c == '\\') {
      ++at;
    } else if (!inText && (c == '{' || c == '[') && container-- == 0) {
      return line;
    }
  }
  return 0;
}

}  // namespace

void JsonTree::Start() {
  values_.clear();
  kept_.clear();
  depth_ = 0;
  key_ = {};
  keys_.ForgetMany();
  repeatedKey_ = nullptr;
}

void JsonTree::Add(JsonValue::Kind kind, std::string_view text) {
  if (values_.size() == limits_.values) {
    throw JsonExcess{
        Say({"più di % valori%; con % se ne leggono di più", "more than % values%; % allows more"},
            {std::to_string(limits_.values), Where(), kValuesOption})};
  }
  values_.push_back({.kind = kind, .key = key_, .text = text});
  key_ = {};
}

void JsonTree::AddBoolean(bool value) {
  Add(JsonValue::Kind::Boolean, {});
  values_.back().boolean = value;
}

bool JsonTree::Open(JsonValue::Kind kind) {
  if (depth_ == open_.size()) {
    return false;
  }
  open_[depth_++] = {values_.size(), &keys_.WithoutKeys()};
  Add(kind, {});
  return true;
}

void JsonTree::Close() {
  const Opened& closed = open_[--depth_];
  JsonValue& value = values_[closed.place];
  value.extent = values_.size() - closed.place;
  value.keys = closed.keys->number;
  if (repeatedKey_ == nullptr) {
    repeatedKey_ = JsonKeys::RepeatedKey(*closed.keys);
    if (repeatedKey_ != nullptr) {
      ++depth_;
      repeatedWhere_ = Where();
      --depth_;
      repeatedPlace_ = static_cast<std::size_t>(
          std::count_if(values_.begin(),
                        values_.begin() + static_cast<std::ptrdiff_t>(closed.place), IsContainer));
    }
  }
}

void JsonTree::Key(std::string_view key) {
  Opened& object = open_[depth_ - 1];
  JsonKeyList* const longer = keys_.Append(*object.keys, key);
  if (longer == nullptr) {
    throw JsonExcess{Say({"più di % chiavi in un oggetto: %%; con % se ne leggono di più",
                          "more than % keys in one object: %%; % allows more"},
                         {std::to_string(limits_.keys), QuotedText(key), Where(), kKeysOption})};
  }
  object.keys = longer;
  key_ = object.keys->key;
}

bool JsonTree::LikelyKey(std::string_view text) {
  Opened& object = open_[depth_ - 1];
  JsonKeyList* const longer = object.keys->latest;
  if (longer == nullptr || longer->quoted.empty() || !text.starts_with(longer->quoted)) {
    return false;
  }
  object.keys = longer;
  key_ = longer->key;
  return true;
}

const JsonValue& JsonTree::Finish() {
  if (depth_ > 1) {
    values_.erase(values_.begin() + static_cast<std::ptrdiff_t>(open_[1].place), values_.end());
  }
  if (values_.empty()) {
    values_.emplace_back();
  }
  if (depth_ > 0) {
    values_.front().extent = values_.size();
  }
  return values_.front();
}

Said JsonTree::TooDeep() const {
  return Say({"più di % livelli, uno dentro l'altro%; con % se ne leggono di più",
              "nested deeper than % levels%; % allows more"},
             {std::to_string(limits_.depth), Where(), kDepthOption});
}

Said JsonTree::Where() const {
  if (depth_ < 2) {
    return {};
  }
  const std::string_view key = values_[open_[1].place].key;
  if (depth_ < 3 || values_[open_[2].place].key != "rows") {
    return Say({", in %", ", in %"}, {key});
  }
  // The rows before are closed, so it is known where each ends.
  const std::size_t end = depth_ > 3 ? open_[3].place : values_.size();
  std::size_t row = 1;
  for (std::size_t at = open_[2].place + 1; at < end; at += values_[at].extent) {
    ++row;
  }
  return Say({", in % riga %", ", in % row %"}, {key, std::to_string(row)});
}

Said RepeatedKeyError(const JsonTree& tree, std::string_view text) {
  if (tree.RepeatedKey() == nullptr) {
    return {};
  }
  const std::size_t line = LineOf(text, tree.RepeatedPlace());
  const Said onLine = line == 0 ? Said()
                                : Say({" (comincia alla riga %)", " (it begins on line %)"},
                                      {std::to_string(line)});
  return Say(
      {"la chiave % è data due volte in un oggetto%%", "the key % is given twice in one object%%"},
      {QuotedText(*tree.RepeatedKey()), tree.RepeatedWhere(), onLine});
}

}  // namespace kal::host
