// RecordingText: a recorded decision as one line of JSON, and back. The format is described in
// docs/recording.md.
//
// It knows no company and no engine: whoever plays recordings, on whatever system, reads them with
// this.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/Limits.h"
#include "records/Conversation.h"

namespace kal::host {

// Adds the line with its end. The entry is its JSON text as it was read, the result the one line
// that --json prints for it.
void AppendRecording(std::string& target, std::string_view entry,
                     const records::Conversation& conversation, std::string_view result);

struct Recording {
  std::string entry;  // its JSON text
  records::Conversation conversation;
  std::string result;  // an object's JSON text
};

struct RecordingReading {
  std::optional<Recording> recording;  // nothing when there is an error
  std::string error;
};

// Entry and result are found and not looked into: whoever reads them says what is wrong with them.
[[nodiscard]] RecordingReading ReadRecording(std::string_view line, const JsonLimits& limits = {});

}  // namespace kal::host
