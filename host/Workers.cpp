#include "host/Workers.h"

#include <utility>

namespace kal::host {
namespace {

// Entries under way for each worker: enough to bridge a slow one.
constexpr std::size_t kUnderWay = 32;

}  // namespace

Workers::Workers(std::vector<std::unique_ptr<company::Company>> companies, Check check,
                 Deliver deliver)
    : companies_(std::move(companies)), check_(std::move(check)), deliver_(std::move(deliver)) {
  for (const auto& company : companies_) {
    threads_.emplace_back([this, &company] { Run(*company); });
  }
}

Workers::~Workers() { Join(); }

void Workers::Finish() {
  Join();
  if (failure_) {
    std::rethrow_exception(failure_);
  }
}

void Workers::Join() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  work_.notify_all();
  for (std::thread& thread : threads_) {
    thread.join();
  }
  threads_.clear();
}

bool Workers::Add(EntryText entry, std::uintmax_t bytesRead) {
  std::unique_lock lock(mutex_);
  const std::size_t most = kUnderWay * companies_.size();
  if (added_ - delivered_ >= most) {
    // Until half of them are gone: going on for each single one would cost more than it brings.
    room_.wait(lock, [&] { return stopped_ || added_ - delivered_ <= most / 2; });
  }
  if (stopped_) {
    return false;
  }
  queue_.push_back({added_++, std::move(entry), bytesRead});
  lock.unlock();
  work_.notify_one();
  return true;
}

// What is wrong with an entry is in its answer; anything else ends the work of all.
void Workers::Run(company::Company& company) {
  try {
    Work(company);
  } catch (...) {
    const std::lock_guard lock(mutex_);
    failure_ = std::current_exception();
    stopped_ = true;
    work_.notify_all();
    room_.notify_one();
  }
}

void Workers::Work(company::Company& company) {
  std::unique_lock lock(mutex_);
  for (;;) {
    work_.wait(lock, [this] { return stopped_ || ended_ || !queue_.empty(); });
    if (stopped_ || queue_.empty()) {
      return;
    }
    const Waiting waiting = std::move(queue_.front());
    queue_.pop_front();
    lock.unlock();
    Answered answer = check_(company, waiting.entry);
    answer.bytesRead = waiting.bytesRead;
    lock.lock();
    early_.emplace(waiting.number, std::move(answer));
    DeliverInTurn();
    if (stopped_) {
      work_.notify_all();
    }
    if (stopped_ || added_ - delivered_ <= kUnderWay * companies_.size() / 2) {
      room_.notify_one();
    }
  }
}

// With the mutex held, which also keeps the deliveries apart.
void Workers::DeliverInTurn() {
  while (!stopped_ && !early_.empty() && early_.begin()->first == delivered_) {
    stopped_ = !deliver_(early_.begin()->second);
    early_.erase(early_.begin());
    ++delivered_;
  }
}

}  // namespace kal::host
