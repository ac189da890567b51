// Baseline: findings that somebody has accepted, which count no longer.
//
// A finding is known again by the id of its entry, its code or literal, its parameters, and the
// digest of what the entry holds: an entry that was changed has none of its findings accepted.
// What is no content is how an entry is laid out: blanks, the order of keys, zeros behind an
// amount, fields that are null, and what nobody looks at ("expected"). A file of them is JSON
// Lines, sorted, one finding a line.

#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/Runner.h"
#include "host/Said.h"

namespace kal::host {

// The line of each finding, in their order, without line ends.
[[nodiscard]] std::vector<std::string> BaselineLines(const Outcome& outcome);

// Why a baseline can't be read, with file and line.
struct BadBaseline {
  Said why;
};

class Baseline {
 public:
  // Raises BadBaseline when there is no reading it.
  explicit Baseline(const std::string& path);

  // Says of each finding, known by those lines, whether it is accepted.
  void Mark(Outcome& outcome, const std::vector<std::string>& lines) const;

 private:
  std::unordered_set<std::string> lines_;
};

// Gathers the lines of a run.
class NewBaseline {
 public:
  void Add(const std::vector<std::string>& lines) { lines_.insert(lines.begin(), lines.end()); }
  // Returns why the file can't be written, empty when it was.
  [[nodiscard]] Said Write(const std::string& path) const;

 private:
  std::set<std::string> lines_;
};

}  // namespace kal::host
