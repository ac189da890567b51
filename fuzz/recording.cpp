// Any text as a recording: it is refused with a reason, or read; what was read is written as a line
// that reads the same again, and can be decided again, whatever it answers.

#include "fuzz/Input.h"
#include "host/RecordingText.h"
#include "host/Replay.h"

namespace {

using kal::fuzz::Require;
using namespace kal::host;

std::string Written(const Recording& recording) {
  std::string line;
  AppendRecording(line, recording.entry, recording.conversation, recording.result);
  return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const RecordingReading reading = ReadRecording(text);
  Require(reading.recording.has_value() == reading.error.empty(), "a recording or an error");
  if (reading.recording) {
    const std::string line = Written(*reading.recording);
    const RecordingReading again = ReadRecording(line);
    Require(again.recording.has_value(), "what is written can be read");
    Require(Written(*again.recording) == line, "and is the same");
    Require(line.find('\n') + 1 == line.size(), "a recording is one line");
  }
  const Replayed replayed = Replay({text, "F line 1", ""});
  Require((replayed.again == Again::Unreadable) == !replayed.error.empty(), "a reason");
  Require(reading.recording.has_value() || replayed.again == Again::Unreadable,
          "nothing is guessed");
  Require(ToBlock(replayed, {}).empty() == (replayed.again == Again::AsRecorded), "a block");
  Require(ReadDocument(ToJson(replayed)).error.empty(), "JSON for programs");
  return 0;
}
