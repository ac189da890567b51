#include "host/EntryText.h"

namespace kal::host {

std::string Place::In(Language language) const {
  std::string text(file);
  if (line != 0) {
    text += Wording{" riga ", " line "}.In(language) + std::to_string(line);
  }
  return text;
}

}  // namespace kal::host
