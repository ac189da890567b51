// Any text as an entry: it is read or refused with a reason, and what was read is shown as JSON
// that reads the same again.

#include <sstream>

#include "fuzz/Input.h"
#include "host/EntryFile.h"
#include "host/EntryReader.h"

namespace {

using kal::fuzz::Require;
using namespace kal::host;

void ReadOne(const std::string& text) {
  const EntryReading reading = ReadEntry(text);
  Require(reading.entry.has_value() == reading.error.empty(), "an entry or an error");
  const JsonReading json = ReadJson(text);
  if (json.ending == JsonReading::Ending::Complete && json.error.empty()) {
    const std::string shown = ToText(json.value);
    const JsonReading again = ReadJson(shown);
    Require(again.ending == JsonReading::Ending::Complete, "shown JSON is JSON");
    Require(ToText(again.value) == shown, "shown JSON reads the same");
    Require(shown.find('\n') == std::string::npos, "shown JSON is one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  ReadOne(text);
  std::istringstream stream(text);
  EntryFile file(stream, "x");
  while (const std::optional<EntryText> entry = file.Next()) {
    Require(!entry->place.empty(), "an entry has a place");
    (void)ReadEntry(entry->text);
  }
  return 0;
}
