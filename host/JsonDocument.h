// JsonDocument: JSON that outlives its reading, for whoever keeps and compares it.
//
// Read as JsonText reads it, with its digits as written and the same messages.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/JsonText.h"

namespace kal::host {

struct JsonDocument {
  using Kind = JsonValue::Kind;

  Kind kind = Kind::Null;
  bool boolean = false;
  std::string text{};                 // of a text (UTF-8), or the digits of a number
  std::vector<std::string> keys{};    // of an object, in order
  std::vector<JsonDocument> items{};  // of an array or an object, in order

  // The first item of that key; nullptr when there is none.
  [[nodiscard]] const JsonDocument* Find(std::string_view name) const;
};

struct JsonDocumentReading {
  JsonDocument value;
  std::string error;  // "" when there is none
};

[[nodiscard]] JsonDocumentReading ReadDocument(std::string_view text,
                                               const JsonLimits& limits = {});

// On one line.
[[nodiscard]] std::string ToText(const JsonDocument& value);

}  // namespace kal::host
