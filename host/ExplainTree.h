// ExplainTree: how a decision came about, as an indented tree for people.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/Runner.h"
#include "host/Wording.h"

namespace kal::host {

// One line of the tree. Those inside an operation follow it and lie deeper.
struct TreeLine {
  enum class Kind { Operation, Failure, Question, Error, Warning, Note };

  std::size_t depth = 0;
  Kind kind = Kind::Note;
  std::string text;  // may hold whatever stands in the entry
};
inline constexpr std::size_t kTreeLineKinds = 6;

[[nodiscard]] std::vector<TreeLine> TreeLines(const Outcome& outcome, Language language);

// The steps in running order: each check with its answer, or that it was silent, and inside it what
// it asked and what it found; behind them the checks of the complete order that were not reached
// or did not apply. Lines have at most 100 characters.
[[nodiscard]] std::string ExplainTree(const Outcome& outcome, const ReportStyle& style);

}  // namespace kal::host
