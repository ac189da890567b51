// EntryText: one entry, or one recording, as it stands in a file.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/Said.h"
#include "platform/Wording.h"

namespace kal::host {

// Where an entry stands.
struct Place {
  std::string_view file{};
  std::size_t line = 0;  // counted from 1; 0 for the file as a whole

  // "FILE" or "FILE line 17".
  [[nodiscard]] std::string In(Language language) const;
};

struct EntryText {
  std::string text{};
  Place place{};
  Said error{};             // why there is no text; empty when there is
  bool foundMemory = true;  // whether the text, or the reason, found room
};

}  // namespace kal::host
