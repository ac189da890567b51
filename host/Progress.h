// Progress: a bar on the terminal for long runs.
//
// It appears only once a few hundred entries have passed, and moves a few times a second.

#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ostream>

namespace kal::host {

class Progress {
 public:
  // Nothing is ever shown without a terminal. The total is the size of all input in bytes, 0 when
  // it is not known.
  Progress(std::ostream& terminal, bool isTerminal, std::uintmax_t totalBytes);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Hide(); }

  // One more entry is done, and so many bytes of all input.
  void Step(std::uintmax_t bytesDone);
  // Takes the bar away until the next step, so that other output can stand there.
  void Hide();

 private:
  void Draw(std::uintmax_t bytesDone);

  std::ostream& terminal_;
  bool isTerminal_;
  std::uintmax_t totalBytes_;
  std::size_t entries_ = 0;
  bool shown_ = false;
  std::chrono::steady_clock::time_point drawn_;
};

}  // namespace kal::host
