// Interrupt: Ctrl-C stops the program at once, but never in the middle of an answer.

#pragma once

namespace kal::host {

// From now on SIGINT and SIGTERM end the program with kExitTrouble: at once, or behind the answer
// that is being written.
void StopBetweenAnswers();

// While one of these lives, an answer is being written. One at a time.
class Writing {
 public:
  Writing();
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;
  ~Writing();
};

}  // namespace kal::host
