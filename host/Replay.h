// Replay: a recorded decision, made again without the company, beside the one that was recorded.
//
// The result is compared as --json prints it, key by key: what a later version adds to it makes no
// difference, and neither does the place where the entry stood.

#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/EntryFile.h"
#include "host/EntryReader.h"
#include "host/JsonDocument.h"
#include "host/Wording.h"

namespace kal::host {

enum class Again {
  AsRecorded,
  Different,
  Unreadable,
};

struct Replayed {
  Again again = Again::AsRecorded;
  Place place{};            // where the recording stands
  Said error{};             // why it could not be read
  EntryId id{};             // of the entry
  JsonDocument recorded{};  // the results, where they differ
  JsonDocument now{};
  std::vector<std::string> notRecorded{};  // questions that the recording does not answer, in words
};

[[nodiscard]] Replayed Replay(const EntryText& line, const Limits& limits = {});

// Whether what is decided now is what was recorded, for whoever has decided again in another way.
void Compare(Replayed& replayed);

// One JSON object on one line, without the line end.
[[nodiscard]] std::string ToJson(const Replayed& replayed, Language language = Language::English);

// Nothing for what is as it was recorded; else a block for people: what was recorded and what is
// decided now, finding by finding.
[[nodiscard]] std::string ToBlock(const Replayed& replayed, const ReportStyle& style);

using ReplayTally = std::array<std::size_t, static_cast<std::size_t>(Again::Unreadable) + 1>;
// "12 decisioni: 11 come allora, 1 diversa", with its line end.
[[nodiscard]] std::string ToSummary(const ReplayTally& tally, Language language);
// The same for programs, with the exit status.
[[nodiscard]] std::string ToJson(const ReplayTally& tally, int status);

}  // namespace kal::host
