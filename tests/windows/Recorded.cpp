#include "tests/windows/Recorded.h"

#include <fstream>
#include <stdexcept>
#include <utility>

#include "platform/RunTimeError.h"

namespace kal::test {
namespace {

template <class Part>
Part Required(std::optional<Part> part, const std::string& error) {
  if (!part) {
    throw std::invalid_argument(error);
  }
  return *std::move(part);
}

host::Entry ReadEntry(const std::string& text) {
  host::EntryReading reading = host::ReadEntry(text);
  return Required(std::move(reading.entry), "the entry: " + reading.error.english);
}

// Where tools/test-windows leaves the recordings, as seen from the folder that it runs programs in.
constexpr const char* kSamples = "../recordings/samples.jsonl";

std::string LineOfSample(std::string_view id) {
  const std::string quoted = '"' + std::string(id) + '"';
  std::ifstream file(kSamples, std::ios::binary);
  for (std::string line; std::getline(file, line);) {
    if (line.find(quoted) != line.npos) {
      return line;
    }
  }
  throw std::invalid_argument("there is no sample " + quoted);
}

}  // namespace

Recorded::Recorded(const std::string& line) : Recorded(host::ReadRecording(line)) {}

Recorded::Recorded(host::RecordingReading reading)
    : recording(Required(std::move(reading.recording), reading.error)),
      entry(ReadEntry(recording.entry)),
      player(recording.conversation) {
  for (const host::SuppliedSet& supplied : entry.sets) {
    sets.push_back(std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode));
  }
}

Sample::Sample(std::string_view id) : recorded(LineOfSample(id)) {}

SiblingAnswer Sample::Ask(const SiblingCall& call) {
  if (call.member != Member::Create && failAt > 0 && --failAt == 0) {
    throw RunTimeError(-2147467259, "Società", "guasto");
  }
  return recorded.player.Ask(call);
}

}  // namespace kal::test
