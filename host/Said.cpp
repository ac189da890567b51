#include "host/Said.h"

#include <algorithm>

namespace kal::host {
namespace {

std::string Filled(std::string_view words, std::initializer_list<SaidPart> parts,
                   std::string_view Wording::*language) {
  std::string filled;
  for (const SaidPart& part : parts) {
    const std::size_t place = std::min(words.find('%'), words.size());
    filled += words.substr(0, place);
    filled += part.*language;
    words.remove_prefix(std::min(place + 1, words.size()));
  }
  filled += words;
  return filled;
}

}  // namespace

Said Say(const Wording& words, std::initializer_list<SaidPart> parts) {
  return {Filled(words.italian, parts, &Wording::italian),
          Filled(words.english, parts, &Wording::english)};
}

}  // namespace kal::host
