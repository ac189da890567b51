// Answering: one run of a command that answers entries.

#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "host/Commands.h"
#include "host/Input.h"
#include "host/Interrupt.h"
#include "host/Progress.h"
#include "host/Report.h"
#include "host/TryTwice.h"
#include "host/Workers.h"

namespace kal::host {

// So many entries are answered one by one, each before the next is read, before more workers than
// one are worth their start.
inline constexpr std::size_t kEntriesBeforeWorkers = 64;

// One run of a command that answers entries: those of its files, in their order, on all workers.
template <class File>
class Answering {
 public:
  Answering(const Options& options, const Streams& streams)
      : options_(options),
        streams_(streams),
        style_{LanguageOf(options), streams.terminals.out && streams.terminals.colours},
        input_(options.files, options.limits, streams.in),
        progress_(streams.err, streams.terminals.err, input_.Size()) {}
  Answering(const Answering&) = delete;
  Answering& operator=(const Answering&) = delete;
  virtual ~Answering() = default;

 protected:
  // Called on the workers' threads, at the same time for several entries. Memory may run out.
  [[nodiscard]] virtual Answered Answer(std::size_t worker, const EntryText& text) = 0;
  // What the entries of one turn of reading have in common begins and ends here.
  virtual void BeginTurn(std::size_t /*worker*/, std::span<const Asked> /*entries*/) {}
  virtual void EndTurn(std::size_t worker) = 0;
  // How many workers are ready, at least one, when that many are wanted.
  [[nodiscard]] virtual std::size_t Ready(std::size_t workers) = 0;
  // What else becomes of the next answers, before they are written.
  virtual void Note(std::span<const Answered> answers) = 0;

  // Ends early when standard output takes no more.
  void AnswerAll() {
    for (std::size_t answered = 0; answered < kEntriesBeforeWorkers || options_.jobs == 1;) {
      const std::vector<Asked> few = NextFew();
      answered += few.size();
      if (few.empty() || !AnswerFew(few)) {
        return;
      }
    }
    Workers(
        Ready(options_.jobs), [this] { return NextFew(); },
        [this](std::size_t worker, std::span<const Asked> entries) { BeginTurn(worker, entries); },
        [this](std::size_t worker, const EntryText& text) { return Answer(worker, text); },
        [this](std::size_t worker) { EndTurn(worker); },
        [this](std::span<const Answered> answers) { return Deliver(answers); })
        .Run();
  }

  // What stands behind all answers, and the exit status of a run that came to this one.
  int End(const std::string& summary, int status) {
    if (!options_.json || options_.summary) {
      const Writing answer;
      (void)Write(summary);
    }
    progress_.Hide();
    if (!streams_.out) {
      return ComplainOfOutput(streams_, options_);
    }
    if (!isAsked_) {
      (void)Complain(streams_, options_,
                     Say({"in ingresso non c'è nulla", "there is nothing in the input"}));
    }
    return status;
  }

  const Options& options_;
  const Streams& streams_;
  ReportStyle style_;
  Input<File> input_;
  Progress progress_;

 private:
  std::vector<Asked> NextFew() {
    std::vector<Asked> few = input_.NextFew();
    isAsked_ = isAsked_ || !few.empty();
    return few;
  }

  // False when standard output takes no more. Where one entry fails, those before it are answered.
  bool AnswerFew(const std::vector<Asked>& few) {
    std::vector<Answered> answers;
    TryTwice([&] { answers.reserve(few.size()); });
    try {
      BeginTurn(0, few);
      for (const Asked& asked : few) {
        answers.push_back(Answer(0, asked.entry));
        answers.back().bytesRead = asked.bytesRead;
      }
    } catch (...) {
      EndTurn(0);
      (void)Deliver(answers);
      throw;
    }
    EndTurn(0);
    return Deliver(answers);
  }

  // False when standard output takes no more.
  bool Deliver(std::span<const Answered> answers) {
    bool written = false;
    {
      const Writing answer;
      Note(answers);
      written = Write(answers);
    }
    for (const Answered& answer : answers) {
      progress_.Step(answer.bytesRead);
    }
    return written;
  }

  // All together where there is room for that.
  bool Write(std::span<const Answered> answers) {
    try {
      text_.clear();
      for (const Answered& answer : answers) {
        text_ += answer.text;
      }
    } catch (const std::bad_alloc&) {
      return std::ranges::all_of(answers,
                                 [this](const Answered& answer) { return Write(answer.text); });
    }
    return Write(text_);
  }

  // At once, so that a program that feeds entries one by one reads the answer to each.
  bool Write(const std::string& text) {
    if (streams_.terminals.out) {
      progress_.Hide();
    }
    return static_cast<bool>(streams_.out << text << std::flush);
  }

  bool isAsked_ = false;  // whether there was any entry
  std::string text_;      // what is written; kept for its memory
};

}  // namespace kal::host
