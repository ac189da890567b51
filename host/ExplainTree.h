// ExplainTree: how a decision came about, as an indented tree for people.

#pragma once

#include <string>

#include "host/Runner.h"
#include "host/Wording.h"

namespace kal::host {

// The steps in running order: each check with its answer, or that it was silent, and inside it what
// it asked and what it found; behind them the checks of the complete order that were not reached
// or did not apply. Lines have at most 100 characters.
[[nodiscard]] std::string ExplainTree(const Outcome& outcome, const ReportStyle& style);

}  // namespace kal::host
