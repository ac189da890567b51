#include "host/Workers.h"

#include <thread>
#include <utility>

#include "host/TryTwice.h"

namespace kal::host {
namespace {

// Entries read and not yet answered, for each worker: enough to bridge a slow one.
constexpr std::size_t kUnderWay = 64;

}  // namespace

Workers::Workers(std::size_t count, Read read, BeginTurn beginTurn, Check check, EndTurn endTurn,
                 Deliver deliver)
    : count_(count),
      read_(std::move(read)),
      beginTurn_(std::move(beginTurn)),
      check_(std::move(check)),
      endTurn_(std::move(endTurn)),
      deliver_(std::move(deliver)) {}

void Workers::Run() {
  const auto work = [this](std::size_t worker) {
    try {
      Work(worker);
    } catch (...) {
      Fail(std::current_exception());
    }
  };
  std::vector<std::jthread> threads;
  TryTwice([&] { threads.reserve(count_); });
  try {
    for (std::size_t worker = 1; worker < count_; ++worker) {
      threads.emplace_back(work, worker);
    }
  } catch (const std::exception&) {
    // No more threads, or no memory for them, can be had: those that are there do the work.
  }
  work(0);
  threads.clear();  // waits for them
  if (failure_) {
    std::rethrow_exception(failure_);
  }
}

void Workers::Work(std::size_t worker) {
  while (WaitForRoom()) {
    const Turn turn = TakeTurn();
    if (turn.asked.empty()) {
      return;
    }
    std::vector<Answered> answers;
    TryTwice([&] { answers.reserve(turn.asked.size()); });
    try {
      beginTurn_(worker, turn.asked);
      for (const Asked& asked : turn.asked) {
        answers.push_back(check_(worker, asked.entry));
        answers.back().bytesRead = asked.bytesRead;
      }
    } catch (...) {
      endTurn_(worker);
      HandIn(turn.first, std::move(answers));
      throw;
    }
    endTurn_(worker);
    HandIn(turn.first, std::move(answers));
  }
}

// False when the work was stopped.
bool Workers::WaitForRoom() {
  std::unique_lock lock(mutex_);
  room_.wait(lock, [this] { return stopped_ || asked_ - delivered_ < kUnderWay * count_; });
  return !stopped_;
}

Workers::Turn Workers::TakeTurn() {
  const std::lock_guard reading(reading_);
  Turn turn;
  if (!atEnd_) {
    turn.asked = read_();
    atEnd_ = turn.asked.empty();
  }
  const std::lock_guard lock(mutex_);
  turn.first = asked_;
  asked_ += turn.asked.size();
  return turn;
}

void Workers::HandIn(std::size_t first, std::vector<Answered> answers) {
  const std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < answers.size(); ++i) {
    // A place is made first: an answer that finds none is not lost.
    TryTwice([&] { early_.try_emplace(first + i); });
    early_[first + i] = std::move(answers[i]);
  }
  std::vector<Answered> inTurn;
  TryTwice([&] { inTurn.reserve(early_.size()); });
  for (; !early_.empty() && early_.begin()->first == delivered_; ++delivered_) {
    inTurn.push_back(std::move(early_.begin()->second));
    early_.erase(early_.begin());
  }
  if (!inTurn.empty() && !stopped_) {
    stopped_ = !deliver_(inTurn);
  }
  room_.notify_all();
}

void Workers::Fail(std::exception_ptr failure) {
  const std::lock_guard lock(mutex_);
  failure_ = std::move(failure);
  stopped_ = true;
  room_.notify_all();
}

}  // namespace kal::host
