// Workers: many entries checked at once, answered in the order in which they came.
//
// Each worker is a thread, which takes its turn in reading, checks what it has read and hands its
// answers in. No worker reads on while too many answers wait for an
// earlier one: memory stays flat however long the input is, and an answer is given as soon as all
// before it are.

#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "host/EntryFile.h"

namespace kal::host {

// One entry as it was read.
struct Asked {
  EntryText entry;
  std::uintmax_t bytesRead = 0;  // of all input, up to the entry's end
};

// One entry's answer, ready to be written.
struct Answered {
  std::size_t verdict = 0;  // by the list of whoever answers
  std::string text;
  std::string recording{};  // the line for the recording, where one is made
  std::uintmax_t bytesRead = 0;
  bool isWhole = true;  // false where there was no memory to tell it
};

class Workers {
 public:
  // The next entries in order, one or a few; none at the end. Called by one thread at a time.
  using Read = std::function<std::vector<Asked>()>;
  // Called on the workers' threads, at the same time for several entries, with the place of the
  // worker among all, so that each may have a company of its own.
  using Check = std::function<Answered(std::size_t worker, const EntryText&)>;
  // Called on a worker's thread with what it has read in one turn, before it answers that; and when
  // it has answered it, or failed to.
  using BeginTurn = std::function<void(std::size_t worker, std::span<const Asked>)>;
  using EndTurn = std::function<void(std::size_t worker)>;
  // Called for the next answers, in the order of the entries, by one thread at a time: whichever
  // gave the last one that was missing. False stops the work.
  using Deliver = std::function<bool(std::span<const Answered>)>;

  Workers(std::size_t count, Read read, BeginTurn beginTurn, Check check, EndTurn endTurn,
          Deliver deliver);

  // Until all entries are answered or the work was stopped, on as many threads as can be had and
  // at least on this one. Raises what one of the calls failed with; that ends the work of all.
  void Run();

 private:
  // What was read in one turn, and the place of its first entry among all.
  struct Turn {
    std::size_t first = 0;
    std::vector<Asked> asked;
  };

  void Work(std::size_t worker);
  [[nodiscard]] bool WaitForRoom();
  [[nodiscard]] Turn TakeTurn();
  void HandIn(std::size_t first, std::vector<Answered> answers);
  void Fail(std::exception_ptr failure);

  std::size_t count_;
  Read read_;
  BeginTurn beginTurn_;
  Check check_;
  EndTurn endTurn_;
  Deliver deliver_;

  std::mutex reading_;  // whose turn it is; locked before the other one
  bool atEnd_ = false;  // of the input; guarded by reading_

  std::mutex mutex_;                       // guards what follows
  std::condition_variable room_;           // fewer answers wait, or the work was stopped
  std::map<std::size_t, Answered> early_;  // answers whose turn has not come
  std::size_t asked_ = 0;
  std::size_t delivered_ = 0;
  bool stopped_ = false;
  std::exception_ptr failure_;
};

}  // namespace kal::host
