// Workers: many entries checked at once, answered in the order in which they came.
//
// Each worker is a thread with a company of its own. Entries wait in a queue and answers until
// their turn, and no more of both than a few for each worker: memory stays flat however long the
// input is, and an answer is given as soon as all before it are.

#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "company/Company.h"
#include "host/EntryFile.h"
#include "host/Report.h"

namespace kal::host {

// One entry's answer, ready to be written.
struct Answered {
  Verdict verdict = Verdict::Unchecked;
  std::string text;
  std::uintmax_t bytesRead = 0;  // of all input, up to the entry's end
};

class Workers {
 public:
  // Called on the workers' threads, at the same time for several entries.
  using Check = std::function<Answered(company::Company&, const EntryText&)>;
  // Called for one answer at a time, in the order of the entries, on whichever thread gave the
  // last one that was missing. False stops the work.
  using Deliver = std::function<bool(const Answered&)>;

  // One worker for each company.
  Workers(std::vector<std::unique_ptr<company::Company>> companies, Check check, Deliver deliver);
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  ~Workers();

  // Waits while too many entries are under way. False when the work was stopped.
  bool Add(EntryText entry, std::uintmax_t bytesRead);
  // Waits for the answers to all that was added. Raises what a worker failed with.
  void Finish();

 private:
  struct Waiting {
    std::size_t number;
    EntryText entry;
    std::uintmax_t bytesRead;
  };

  void Run(company::Company& company);
  void Work(company::Company& company);
  void Join();
  void DeliverInTurn();

  std::vector<std::unique_ptr<company::Company>> companies_;
  Check check_;
  Deliver deliver_;

  std::mutex mutex_;              // guards what follows
  std::condition_variable work_;  // for the workers: an entry waits, or there is no more work
  std::condition_variable room_;  // for whoever adds: fewer entries are under way
  std::deque<Waiting> queue_;
  std::map<std::size_t, Answered> early_;  // answers whose turn has not come
  std::size_t added_ = 0;
  std::size_t delivered_ = 0;
  bool ended_ = false;    // nothing more will be added
  bool stopped_ = false;  // nothing more can be delivered
  std::exception_ptr failure_;

  std::vector<std::thread> threads_;  // last: they use all of the above
};

}  // namespace kal::host
