// Interrupt: Ctrl-C stops the program at once, but not in the middle of an answer, unless nobody
// takes that, and never in the middle of making a company.

#pragma once

namespace kal::host {

// From now on SIGINT and SIGTERM end the program with kExitTrouble: at once, or behind the answer
// that is being written; after two seconds in any case. A progress bar is wiped away.
void StopBetweenAnswers();

// Whether a progress bar stands on the terminal.
void BarIsShown(bool shown);

// While one of these lives, the end waits however long it takes. One at a time.
class Unstoppable {
 public:
  Unstoppable();
  Unstoppable(const Unstoppable&) = delete;
  Unstoppable& operator=(const Unstoppable&) = delete;
  ~Unstoppable();
};

// While one of these lives, an answer is being written. One at a time.
class Writing {
 public:
  Writing();
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;
  ~Writing();
};

}  // namespace kal::host
