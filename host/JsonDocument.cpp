#include "host/JsonDocument.h"

#include <algorithm>

#include "host/JsonReaders.h"
#include "host/JsonTree.h"

namespace kal::host {
namespace {

JsonDocument Kept(const JsonValue& value) {
  JsonDocument kept{.kind = value.kind, .boolean = value.boolean, .text = std::string(value.text)};
  for (const JsonValue& item : value.Items()) {
    if (value.kind == JsonValue::Kind::Object) {
      kept.keys.emplace_back(item.key);
    }
    kept.items.push_back(Kept(item));
  }
  return kept;
}

void Append(const JsonDocument& value, std::string& target) {
  using Kind = JsonDocument::Kind;
  switch (value.kind) {
    case Kind::Null:
      target += "null";
      return;
    case Kind::Boolean:
      target += value.boolean ? "true" : "false";
      return;
    case Kind::Number:
      target += value.text;
      return;
    case Kind::Text:
      AppendQuoted(value.text, target);
      return;
    case Kind::Array:
    case Kind::Object:
      break;
  }
  const bool isObject = value.kind == Kind::Object;
  target += isObject ? '{' : '[';
  for (std::size_t i = 0; i < value.items.size(); ++i) {
    target += i == 0 ? "" : ",";
    if (isObject) {
      AppendQuoted(value.keys[i], target);
      target += ':';
    }
    Append(value.items[i], target);
  }
  target += isObject ? '}' : ']';
}

}  // namespace

const JsonDocument* JsonDocument::Find(std::string_view name) const {
  const auto key = std::ranges::find(keys, name);
  return key == keys.end() ? nullptr : &items[static_cast<std::size_t>(key - keys.begin())];
}

JsonDocumentReading ReadDocument(std::string_view text, const JsonLimits& limits) {
  JsonTree tree(limits);
  tree.Start();
  JsonReading reading;
  try {
    reading = ReadCarefully(text, tree);
    if (reading.error.IsEmpty()) {
      reading.error = RepeatedKeyError(tree, text);
    }
  } catch (const JsonExcess& excess) {
    return {{}, excess.what.english};
  }
  return {Kept(*reading.value), std::move(reading.error.english)};
}

std::string ToText(const JsonDocument& value) {
  std::string text;
  Append(value, text);
  return text;
}

}  // namespace kal::host
