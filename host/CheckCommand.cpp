#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "company/Company.h"
#include "host/Answering.h"
#include "host/Baseline.h"
#include "host/EntryFile.h"
#include "host/HtmlReport.h"
#include "host/RecordingFile.h"
#include "host/RecordingText.h"
#include "host/Runner.h"

namespace kal::host {
namespace {

// One run of check.
class CheckRun final : public Answering<EntryFile> {
 public:
  CheckRun(const Options& options, const Streams& streams)
      : Answering(options, streams), workers_(options.jobs) {
    workers_.at(0).company.emplace(options.company, options.language);
    if (!options.baseline.empty()) {
      baseline_.emplace(options.baseline);
    }
  }

  int Check() {
    if (!options_.recording.empty()) {
      recording_.emplace(options_.recording);
      ComplainOfRecording();
    }
    if (!options_.report.empty()) {
      report_.emplace(style_.language);
    }
    AnswerAll();
    bool allPass = true;
    for (std::size_t place = 0; place < tally_.size(); ++place) {
      const auto verdict = static_cast<Verdict>(place);
      const bool passes =
          Passes(verdict) || (verdict == Verdict::ToConfirm && options_.failOn == "error");
      allPass = allPass && (passes || tally_[place] == 0);
    }
    const bool allChecked = tally_[static_cast<std::size_t>(Verdict::Unchecked)] == 0;
    const int status = !allChecked || recordingFailed_ ? kExitTrouble
                       : allPass                       ? kExitAllTrue
                                                       : kExitSomeFalse;
    return WriteFiles(
        End(options_.json ? ToJson(tally_, status) + '\n' : ToSummary(tally_, style_.language),
            status));
  }

 private:
  // What a worker has for itself.
  struct Worker {
    std::optional<company::Company> company;
    std::span<const Asked> ahead;  // of the turn, from the entry that is checked on
    // One state of the books for what was read in one turn.
    std::optional<company::Company::Reading> books;
    records::Conversation conversation;  // of the entry that is checked; kept for its memory
  };

  Answered Answer(std::size_t worker, const EntryText& text) override {
    Worker& own = workers_[worker];
    const std::span<const Asked> ahead = own.ahead;
    own.ahead = ahead.subspan(1);
    try {
      return Checked(own, text, ahead);
    } catch (const std::bad_alloc&) {
      own.books.reset();
      Outcome outcome;
      outcome.place = text.place;
      return Told(own, WithoutMemory(std::move(outcome)));
    }
  }

  Answered Checked(Worker& own, const EntryText& text, std::span<const Asked> ahead) {
    HoldBooks(own, ahead);
    const bool withSteps = options_.explain || (report_ && report_->MostAreListed());
    const Detail detail = withSteps ? Detail::FindingsAndSteps : Detail::Findings;
    own.conversation.clear();
    Outcome outcome = CheckEntry(*own.company, text, detail,
                                 recording_ ? &own.conversation : nullptr, options_.limits);
    const bool failed = outcome.error.has_value();
    std::string recording;
    if (recording_ && outcome.isDecided) {
      AppendRecording(recording, text.text, own.conversation, ToJson(outcome));
    }
    Answered answer = Told(own, std::move(outcome));
    if (answer.isWhole) {
      answer.recording = std::move(recording);
    }
    if (failed) {
      own.books.reset();  // the database may have let the state go
    }
    return answer;
  }

  void BeginTurn(std::size_t worker, std::span<const Asked> entries) override {
    workers_[worker].ahead = entries;
  }
  // The answer, or, where there is no room to write it, that there was none.
  [[nodiscard]] Answered Told(Worker& own, Outcome outcome) {
    Answered answer;
    try {
      if (baseline_ || !options_.newBaseline.empty()) {
        answer.baseline = BaselineLines(outcome);
      }
      if (baseline_) {
        baseline_->Mark(outcome, answer.baseline);
      }
      Show(own, outcome, answer);
    } catch (const std::bad_alloc&) {
      outcome = WithoutMemory(std::move(outcome));
      answer = Answered();
      answer.isWhole = false;
      TryTwice([&] { Show(own, outcome, answer); });
    }
    return answer;
  }
  void Show(Worker& own, const Outcome& outcome, Answered& answer) {
    answer.verdict = Place(outcome);
    answer.text = Shown(outcome);
    if (report_) {
      answer.page = std::make_shared<PageEntry>(
          report_->Note(outcome, [&] { return CheckAgain(*own.company, *outcome.entry); }));
    }
  }

  // Books that can't be read are an error of the entry, which tries by itself.
  void HoldBooks(Worker& own, std::span<const Asked> ahead) const {
    if (!own.books) {
      try {
        EntryRehearsal rehearsal(*own.company, ahead, options_.limits);
        own.books.emplace(*own.company, own.company->WantsRehearsal()
                                            ? company::Rehearsal(std::ref(rehearsal))
                                            : company::Rehearsal());
      } catch (const RunTimeError&) {
        own.books.reset();
      }
    }
  }
  void EndTurn(std::size_t worker) override { workers_[worker].books.reset(); }

  // Each worker has the company for itself. It is opened at once for all: the name may mean another
  // file later. Where it can't be, those that have it do the work.
  [[nodiscard]] std::size_t Ready(std::size_t workers) override {
    for (std::size_t ready = 1; ready < workers; ++ready) {
      Said why;
      try {
        if (workers_[ready]
                .company.emplace(options_.company, options_.language)
                .IsSameAs(*workers_.front().company)) {
          continue;
        }
        why = Say({"un altro file ha preso il suo nome", "another file has its name"});
      } catch (const RunTimeError& error) {
        why = Say({"%", "%"}, {error.Description()});
      } catch (const std::bad_alloc&) {
        why = OutOfMemory();
      }
      progress_.Hide();
      (void)Complain(streams_, options_,
                     Say({"lavorano in % su %: di più non riescono ad aprire l'azienda: %",
                          "% of % workers could open the company: %"},
                         {std::to_string(ready), std::to_string(workers), why}));
      return ready;
    }
    return workers;
  }

  [[nodiscard]] static std::size_t Place(const Outcome& outcome) {
    return static_cast<std::size_t>(VerdictOf(outcome));
  }
  [[nodiscard]] static bool Passes(Verdict verdict) {
    return verdict == Verdict::Free || verdict == Verdict::Yes || verdict == Verdict::Accepted;
  }
  [[nodiscard]] std::string Shown(const Outcome& outcome) const {
    if (options_.onlyProblems && Passes(VerdictOf(outcome))) {
      return {};
    }
    if (options_.json) {
      return ToJson(outcome, style_.language, PlaceToo::Yes) + '\n';
    }
    return options_.explain ? ToExplanation(outcome, style_) : ToBlock(outcome, style_);
  }

  // What was answered is recorded: the recording comes first.
  void Note(std::span<const Answered> answers) override {
    for (const Answered& answer : answers) {
      ++tally_[answer.verdict];
      newBaseline_.Add(answer.baseline);
      if (answer.page) {
        report_->Add(*answer.page);
      }
    }
    if (recording_) {
      recording_->Write(answers);
      ComplainOfRecording();
    }
  }

  // What a whole run came to; nothing of one whose answers could not be written.
  [[nodiscard]] int WriteFiles(int status) const {
    Said why;
    if (report_ && streams_.out) {
      why = report_->Write(options_.report, options_.files, company::ShownName(options_.company));
      status = why.IsEmpty() ? status : Complain(streams_, options_, why);
    }
    if (!options_.newBaseline.empty() && streams_.out) {
      why = newBaseline_.Write(options_.newBaseline);
      status = why.IsEmpty() ? status : Complain(streams_, options_, why);
    }
    return status;
  }

  // Once; the answers go on.
  void ComplainOfRecording() {
    if (!recordingFailed_ && !recording_->Error().IsEmpty()) {
      recordingFailed_ = true;
      progress_.Hide();
      Complain(streams_, options_, recording_->Error());
    }
  }

  std::vector<Worker> workers_;  // each used on its own thread alone
  std::optional<RecordingTarget> recording_;
  bool recordingFailed_ = false;
  std::optional<HtmlReport> report_;
  std::optional<Baseline> baseline_;
  NewBaseline newBaseline_;
  Tally tally_{};
};

// What a file that check writes would take the place of; empty where all are new or its own.
Said WrittenOver(const Options& options) {
  const std::pair<Wording, const std::string&> written[] = {
      {{"le decisioni scritte prenderebbero il posto di %",
        "the recording would take the place of %"},
       options.recording},
      {{"la pagina prenderebbe il posto di %", "the report would take the place of %"},
       options.report},
      {{"i rilievi accettati prenderebbero il posto di %",
        "the new baseline would take the place of %"},
       options.newBaseline}};
  std::vector<std::string> used = options.files;
  used.push_back(options.company);
  for (const auto& [what, path] : written) {
    for (const std::string& file : used) {
      if (IsSameFile(path, file)) {
        return Say(what, {company::ShownName(file)});
      }
    }
    used.push_back(path);
  }
  return IsSameFile(options.report, options.baseline) ||
                 IsSameFile(options.recording, options.baseline)
             ? Say({"i rilievi accettati in % andrebbero perduti",
                    "the baseline % would be written over"},
                   {options.baseline})
             : Said();
}

}  // namespace

int Check(const Options& options, const Streams& streams) {
  if (const Said why = WrittenOver(options); !why.IsEmpty()) {
    return Complain(streams, options, why);
  }
  std::optional<CheckRun> run;
  try {
    run.emplace(options, streams);
  } catch (const RunTimeError& error) {
    return Complain(streams, options,
                    Say({"non si può aprire l'azienda %: %", "can't open the company %: %"},
                        {company::ShownName(options.company), error.Description()}));
  } catch (const BadBaseline& error) {
    return Complain(streams, options, error.why);
  }
  return run->Check();
}

}  // namespace kal::host
