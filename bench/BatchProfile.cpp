#include "bench/BatchProfile.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "bench/Entries.h"
#include "bench/LargeCompany.h"
#include "company/Company.h"
#include "host/EntryReader.h"
#include "host/JsonText.h"
#include "host/Report.h"
#include "host/Runner.h"

namespace kal::bench {
namespace {

using Clock = std::chrono::steady_clock;
using company::Company;

constexpr int kProfiled = 5000;

double Microseconds(Clock::duration time) {
  return std::chrono::duration<double, std::micro>(time).count();
}

// Measures how long the company takes over its answers. A look at the clock costs part of what is
// measured, so it is taken off.
class TimedSiblings final : public Siblings {
 public:
  explicit TimedSiblings(Siblings& inner) : inner_(inner) {}

  SiblingAnswer Ask(const SiblingCall& call) override {
    const auto start = Clock::now();
    SiblingAnswer answer = inner_.Ask(call);
    time_ += Clock::now() - start;
    ++calls_;
    return answer;
  }

  // Since the last call of this one.
  double TakeMicroseconds() {
    const auto start = Clock::now();
    constexpr int kLooks = 1000;
    for (int look = 1; look < kLooks; ++look) {
      (void)Clock::now();
    }
    const double oneLook = Microseconds(Clock::now() - start) / kLooks;
    const double time = Microseconds(std::exchange(time_, {}));
    return time - static_cast<double>(std::exchange(calls_, 0)) * oneLook;
  }

 private:
  Siblings& inner_;
  Clock::duration time_{};
  std::size_t calls_ = 0;
};

// One state of the books for some entries, as the host holds one for what it reads in one turn.
class Books {
 public:
  explicit Books(Company& company) : company_(company) {}

  // Before each entry: how long it took to have a state for it.
  Clock::duration Hold() {
    constexpr std::size_t kTurn = 16;
    const auto start = Clock::now();
    if (entries_++ % kTurn == 0) {
      state_.reset();
      state_.emplace(company_);
    }
    return Clock::now() - start;
  }

 private:
  Company& company_;
  std::size_t entries_ = 0;
  std::optional<Company::Reading> state_;
};

// The same purchases as the batch's.
std::vector<host::EntryText> Entries() {
  std::vector<host::EntryText> entries;
  for (int i = 1; i <= kProfiled; ++i) {
    entries.push_back({Purchase{4, kSavedEntries + i, "2024-12-31"}.Json()});
  }
  return entries;
}

Purchase::Sets SetsOf(const host::EntryText& text) {
  const host::EntryReading reading = host::ReadEntry(text.text);
  const auto set = [&](std::size_t place) -> RecordsetRef {
    const host::SuppliedSet& supplied = reading.entry.value().sets.at(place);
    return std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode);
  };
  return {set(0), set(1), set(2), set(3)};
}

// Microseconds of one entry, by step.
struct Profile {
  double json = 0;
  double rows = 0;
  double check = 0;
  double queries = 0;
  double writing = 0;
};

Profile Measure(Company& company, const std::vector<host::EntryText>& entries) {
  host::JsonReader json;
  TimedSiblings timed(company.Siblings());
  Clock::duration parsing{};
  Clock::duration reading{};
  Clock::duration checking{};
  Clock::duration books{};
  Clock::duration writing{};
  std::size_t answered = 0;
  std::optional<Books> state(company);
  for (const host::EntryText& entry : entries) {
    checking += state->Hold();
    const auto start = Clock::now();
    (void)json.Read(entry.text);
    const auto parsed = Clock::now();
    (void)host::ReadEntry(entry.text);
    const auto read = Clock::now();
    const host::Outcome outcome = host::CheckEntry(company, entry);
    const auto checked = Clock::now();
    answered += host::ToJson(outcome).size();
    const auto written = Clock::now();
    parsing += parsed - start;
    reading += read - parsed;
    checking += checked - read;
    writing += written - checked;
  }
  state.emplace(company);
  for (const host::EntryText& entry : entries) {
    const Purchase::Sets sets = SetsOf(entry);
    books += state->Hold();
    Check(timed, sets);
  }
  if (answered == 0) {
    throw std::runtime_error("nothing was answered");
  }
  const auto count = static_cast<double>(entries.size());
  const double queries = (timed.TakeMicroseconds() + Microseconds(books)) / count;
  return {Microseconds(parsing) / count, Microseconds(reading - parsing) / count,
          Microseconds(checking - reading) / count - queries, queries,
          Microseconds(writing) / count};
}

}  // namespace

void BatchProfile(const std::string& companyPath) {
  constexpr int kRounds = 7;
  const std::vector<host::EntryText> entries = Entries();
  Company company(companyPath);
  std::vector<Profile> rounds;
  for (int round = 0; round < kRounds; ++round) {
    rounds.push_back(Measure(company, entries));
  }
  const auto median = [&](double Profile::*step) {
    std::ranges::nth_element(rounds, rounds.begin() + kRounds / 2, {}, step);
    return rounds[kRounds / 2].*step;
  };
  constexpr std::array kSteps = {
      std::pair{"reading JSON", &Profile::json}, std::pair{"rows", &Profile::rows},
      std::pair{"the check", &Profile::check}, std::pair{"its queries", &Profile::queries},
      std::pair{"writing JSON", &Profile::writing}};
  double all = 0;
  for (const auto& [name, step] : kSteps) {
    all += median(step);
  }
  std::printf("\n%-42s %7s\n", "one entry of 4 lines, where its time goes", "us");
  for (const auto& [name, step] : kSteps) {
    std::printf("  %-40s %7.2f %5.0f %%\n", name, median(step), 100 * median(step) / all);
  }
}

}  // namespace kal::bench
