// Report: outcomes as people and as programs read them.

#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "host/Runner.h"
#include "host/Wording.h"

namespace kal::host {

// What an entry came to.
enum class Verdict {
  Free,       // may be saved, modified or deleted
  ToConfirm,  // warnings alone
  Blocked,    // at least one error
  Refused,    // answered False without a finding (a provisional entry)
  Yes,        // a lookup's answer; a number counts as yes
  No,
  Unchecked,  // not read, or a run-time error
};

[[nodiscard]] Verdict VerdictOf(const Outcome& outcome);

// Whether JSON says where the entry stands, which is no part of its decision.
enum class PlaceToo : bool { No, Yes };

// One JSON object on one line, without the line end. The language is that of what is said about an
// entry that could not be read.
[[nodiscard]] std::string ToJson(const Outcome& outcome, Language language = Language::English,
                                 PlaceToo placeToo = PlaceToo::No);

// A block for people: a line that names the entry, what was asked and the verdict, and a line for
// each finding. Control characters of the texts are shown as "?".
[[nodiscard]] std::string ToBlock(const Outcome& outcome, const ReportStyle& style);

// A block with the decision as a tree in the place of its findings; for outcomes with steps.
[[nodiscard]] std::string ToExplanation(const Outcome& outcome, const ReportStyle& style);

// How often each verdict was given.
using Tally = std::array<std::size_t, static_cast<std::size_t>(Verdict::Unchecked) + 1>;
// "12 registrazioni: 5 libere, 7 bloccate", with its line end.
[[nodiscard]] std::string ToSummary(const Tally& tally, Language language);
// The same for programs, with the exit status: one JSON object, without a line end.
[[nodiscard]] std::string ToJson(const Tally& tally, int status);

}  // namespace kal::host
