// The two readers behind JsonReader.
//
// The quick one, simdjson, reads what is well formed, which is nearly everything; it says little
// about the rest and nothing about where. The careful one, nlohmann-json, reads again what the
// quick one left: it says what is wrong in which column, and keeps what stood before it.

#pragma once

#include <memory>
#include <string_view>

#include "host/JsonText.h"
#include "host/JsonTree.h"

namespace kal::host {

class QuickJson {
 public:
  QuickJson();
  QuickJson(const QuickJson&) = delete;
  QuickJson& operator=(const QuickJson&) = delete;
  ~QuickJson();

  // Whether the text is one object and nothing behind it, now in the tree; otherwise, and for a few
  // rare ways of writing one, the tree is to be started again. Texts in the tree stay until the
  // next reading.
  [[nodiscard]] bool Read(std::string_view text, JsonTree& tree);

 private:
  struct Parser;
  std::unique_ptr<Parser> parser_;
};

// Into a tree that was started.
[[nodiscard]] JsonReading ReadCarefully(std::string_view text, JsonTree& tree);

}  // namespace kal::host
