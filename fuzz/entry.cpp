// Any text as an entry: it is read or refused with a reason, and what was read is shown as JSON
// that reads the same again. What the quick reader takes, the careful one reads alike.

#include <sstream>

#include "fuzz/Input.h"
#include "host/EntryFile.h"
#include "host/EntryReader.h"
#include "host/JsonReaders.h"

namespace {

using kal::fuzz::Require;
using namespace kal::host;

// In one memory for all texts, as a batch is read.
void ReadQuickly(const std::string& text) {
  static QuickJson quick;
  static JsonTree tree;
  tree.Start();
  const auto read = [&] {
    try {
      return quick.Read(text, tree);
    } catch (const JsonExcess&) {
      return false;
    }
  };
  if (read()) {
    JsonTree other;
    other.Start();
    const JsonReading careful = ReadCarefully(text, other);
    Require(careful.ending == JsonReading::Ending::Complete, "both take it");
    Require(ToText(*careful.value) == ToText(tree.Finish()), "both read the same");
    const std::string* const twice = tree.RepeatedKey();
    Require((twice == nullptr) == (other.RepeatedKey() == nullptr), "both find a key twice");
    Require(twice == nullptr || *twice == *other.RepeatedKey(), "both find the same key twice");
  }
}

void ReadOne(const std::string& text) {
  const EntryReading reading = ReadEntry(text);
  Require(reading.entry.has_value() == reading.error.IsEmpty(), "an entry or an error");
  static JsonReader reader;
  const JsonReading json = reader.Read(text);
  if (json.ending == JsonReading::Ending::Complete && json.error.IsEmpty()) {
    const std::string shown = ToText(*json.value);
    const JsonReading again = reader.Read(shown);
    Require(again.ending == JsonReading::Ending::Complete, "shown JSON is JSON");
    Require(ToText(*again.value) == shown, "shown JSON reads the same");
    Require(shown.find('\n') == std::string::npos, "shown JSON is one line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  ReadQuickly(text);
  ReadOne(text);
  std::istringstream stream(text);
  EntryFile file(stream, "x");
  while (const std::optional<EntryText> entry = file.Next()) {
    Require(!entry->place.file.empty(), "an entry has a place");
    (void)ReadEntry(entry->text);
  }
  return 0;
}
