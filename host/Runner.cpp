#include "host/Runner.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <variant>

#include "checker/KalCOGCheck.h"
#include "platform/MemoryRecordset.h"
#include "platform/WrappedRecordset.h"
#include "records/Recorder.h"

namespace kal::host {
namespace {

// What the operation's caller sees as the current error. The first one counts.
template <class Body>
void Attempt(Outcome& outcome, Body&& body) {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    outcome.result.reset();
    if (!outcome.error) {
      outcome.error = CurrentError();
    }
  }
}

// The host's temporary installments table, as the accounting system's entry screen keeps one.
std::optional<company::Company::TemporaryTable> MakeTemporaryTable(company::Company& company,
                                                                   const Entry& entry) {
  if (entry.tmpTableScadenze.empty() || company.HasTable(entry.tmpTableScadenze)) {
    return std::nullopt;
  }
  constexpr std::string_view kInstallments = "RsScadenze";
  const auto supplied = std::ranges::find_if(
      entry.sets, [&](const SuppliedSet& set) { return set.set->name == kInstallments; });
  const std::shared_ptr<const RowTable> rows =
      supplied != entry.sets.end()
          ? supplied->rows
          : NewRowTable(*std::ranges::find(EntrySets(), kInstallments, &EntrySet::name));
  return std::optional<company::Company::TemporaryTable>(std::in_place, company,
                                                         entry.tmpTableScadenze, *rows);
}

void ReadState(const KalCOGCheck& checker, Outcome& outcome) {
  outcome.errString = checker.ErrString();
  outcome.warnString = checker.WarnString();
  outcome.warnProtocolloString = checker.WarnProtocolloString();
  outcome.warnDuplicatoDocString = checker.WarnDuplicatoDocString();
  outcome.warnInfragruppoString = checker.WarnInfragruppoString();
  outcome.importoPlafond = checker.ImportoPlafond();
  outcome.chiusuraRateInSospensione = checker.ChiusuraRateInSospensione();
  outcome.riaperturaRateInSospensione = checker.RiaperturaRateInSospensione();
  // Last: it asks the company and may raise.
  outcome.isInfragruppo = checker.IsInfragruppo();
}

using Sets = std::vector<std::shared_ptr<MemoryRecordset>>;

// Runs the operation, watched where there is a recorder.
void RunOperation(KalCOGCheck& checker, const Entry& entry, ExplainRecorder* recorder,
                  Outcome& outcome) {
  checker.Observe(recorder);
  Attempt(outcome, [&] { outcome.result = entry.operation->call(checker, entry.arguments); });
  checker.Observe(nullptr);
  outcome.findings = checker.Findings().All();
  if (recorder != nullptr) {
    outcome.steps = recorder->TakeSteps();
    outcome.orders = recorder->TakeOrders();
  }
}

// The field of the entry that was read last, if nothing else was asked for behind it.
struct LastRead {
  std::optional<FailedField> field;
};

// Notes what is read of a set of the entry; of another set, that the entry was left.
class NotedSet final : public WrappedRecordset {
 public:
  NotedSet(RecordsetRef inner, std::string_view name, LastRead& last)
      : WrappedRecordset(std::move(inner)), name_(name), last_(last) {}
  bool HasCurrentRow() noexcept override { return inner_->HasCurrentRow(); }
  [[nodiscard]] std::size_t Row() const override { return inner_->Row(); }

 private:
  void Through(std::string_view member, std::string_view of, const Call& call) override {
    if (name_.empty()) {
      last_.field.reset();
    } else if (member == "Fields" || member == "Value") {
      last_.field = {name_, inner_->HasCurrentRow() ? inner_->Row() : 0, std::string(of)};
    }
    call();
  }

  std::string_view name_;  // "" for a set that is none of the entry's
  LastRead& last_;
};

class NotedSiblings final : public Siblings {
 public:
  NotedSiblings(Siblings& inner, LastRead& last) : inner_(inner), last_(last) {}

  SiblingAnswer Ask(const SiblingCall& call) override {
    last_.field.reset();
    SiblingAnswer answer = inner_.Ask(call);
    if (answer.rows) {
      answer.rows = std::make_shared<NotedSet>(answer.rows, "", last_);
    }
    return answer;
  }

 private:
  Siblings& inner_;
  LastRead& last_;
};

template <class AnySets>
void HandOver(const Entry& entry, KalCOGCheck& checker, const AnySets& sets) {
  for (std::size_t i = 0; i < sets.size(); ++i) {
    (checker.*entry.sets[i].set->assign)(sets[i]);
  }
  checker.IsParcella(entry.isParcella);
  checker.IsFromCard(entry.isFromCard);
  checker.TmpTableScadenze(entry.tmpTableScadenze);
}

Sets MakeSets(const Entry& entry) {
  Sets sets;
  for (const SuppliedSet& supplied : entry.sets) {
    sets.push_back(std::make_shared<MemoryRecordset>(supplied.rows, supplied.editMode));
  }
  return sets;
}

void DecideOver(Siblings& siblings, const Entry& entry, const Sets& sets, Detail detail,
                Outcome& outcome) {
  std::optional<ExplainRecorder> recorder;
  std::optional<WatchedSiblings> watched;
  Siblings* asked = &siblings;
  if (detail == Detail::FindingsAndSteps) {
    asked = &watched.emplace(*asked, recorder.emplace());
  }
  KalCOGCheck checker(*asked);
  HandOver(entry, checker, sets);
  outcome.isDecided = true;
  RunOperation(checker, entry, recorder ? &*recorder : nullptr, outcome);
  Attempt(outcome, [&] { ReadState(checker, outcome); });
}

// Where the operation failed: it is run once more, over sets that note what is read. Nothing where
// that does not end in the same error.
std::optional<FailedField> FindFailedField(Siblings& siblings, const Entry& entry,
                                           const RunTimeError& error) {
  LastRead last;
  try {
    std::vector<RecordsetRef> sets;
    for (const std::shared_ptr<MemoryRecordset>& set : MakeSets(entry)) {
      sets.emplace_back(std::make_shared<NotedSet>(set, entry.sets[sets.size()].set->name, last));
    }
    NotedSiblings noted(siblings, last);
    KalCOGCheck checker(noted);
    HandOver(entry, checker, sets);
    (void)entry.operation->call(checker, entry.arguments);
  } catch (const RunTimeError& again) {
    if (again.Number() == error.Number() && again.Source() == error.Source()) {
      return last.field;
    }
  } catch (const std::exception&) {
    // Memory is scarce: the error is told without it.
  }
  return std::nullopt;
}

// The entry's outcome, as far as it is told before anybody is asked, and the entry where it could
// be read.
std::optional<Entry> Begin(std::string_view text, const Limits& limits, Outcome& outcome) {
  EntryReading reading = ReadEntry(text, limits);
  outcome.id = std::move(reading.id);
  outcome.operation = std::move(reading.operation);
  outcome.inputError = std::move(reading.error);
  if (reading.entry) {
    outcome.isCheck = reading.entry->operation->isCheck;
  }
  return std::move(reading.entry);
}

// A blocked entry that passes for a free one gets into the books, and so does one whose warning has
// lost its text: whatever made it so, it is no answer.
void RefuseTrueBesideFinding(Outcome& outcome) {
  const bool hidden = std::ranges::any_of(outcome.findings, [](const Finding& finding) {
    return finding.string == ResultString::ErrString || finding.text.empty();
  });
  const bool* const answer = outcome.result ? std::get_if<bool>(&*outcome.result) : nullptr;
  if (outcome.isCheck && hidden && answer != nullptr && *answer) {
    outcome.result.reset();
    outcome.error =
        RunTimeError(static_cast<std::int32_t>(RunTime::InternalError), std::string(kComponentName),
                     "The answer is True beside an error, or a warning without its text");
  }
}

// What decide(sets) comes to, and how it hands the sets back.
template <class Decide>
void Run(const Entry& entry, Outcome& outcome, Decide decide) {
  const Sets sets = MakeSets(entry);
  Attempt(outcome, [&] { decide(sets); });
  RefuseTrueBesideFinding(outcome);
  for (std::size_t i = 0; i < sets.size(); ++i) {
    outcome.sets.push_back({entry.sets[i].set->name, sets[i]->FilterText(), sets[i]->Position()});
  }
}

RunTimeError NoMemory() {
  return {static_cast<std::int32_t>(RunTime::OutOfMemory), std::string(kComponentName),
          "Out of memory"};
}

void DecideIn(company::Company& company, const Entry& entry, Detail detail,
              records::Conversation* conversation, Outcome& outcome) {
  Run(entry, outcome, [&](const Sets& sets) {
    const company::Company::Reading books(company);
    const auto temporaryTable = MakeTemporaryTable(company, entry);
    std::optional<records::Recorder> recorder;
    Siblings* siblings = &company.Siblings();
    if (conversation != nullptr) {
      siblings = &recorder.emplace(*siblings, *conversation);
    }
    DecideOver(*siblings, entry, sets, detail, outcome);
    if (outcome.error) {
      outcome.failedField = FindFailedField(company.Siblings(), entry, *outcome.error);
    }
  });
}

void Check(company::Company& company, const EntryText& text, Detail detail,
           records::Conversation* conversation, const Limits& limits, Outcome& outcome) {
  if (!text.error.IsEmpty()) {
    outcome.inputError = text.error;
    return;
  }
  if (std::optional<Entry> entry = Begin(text.text, limits, outcome)) {
    DecideIn(company, *entry, detail, conversation, outcome);
    outcome.entry = std::move(entry);
  }
}

}  // namespace

Outcome WithoutMemory(Outcome outcome) {
  Outcome left;
  left.id = std::move(outcome.id);
  left.place = outcome.place;
  left.operation = std::move(outcome.operation);
  left.isCheck = outcome.isCheck;
  left.error = NoMemory();
  return left;
}

Outcome CheckEntry(company::Company& company, const EntryText& text, Detail detail,
                   records::Conversation* conversation, const Limits& limits) {
  Outcome outcome;
  outcome.place = text.place;
  if (!text.foundMemory) {
    return WithoutMemory(std::move(outcome));
  }
  try {
    Check(company, text, detail, conversation, limits, outcome);
  } catch (const std::bad_alloc&) {
    return WithoutMemory(std::move(outcome));
  }
  return outcome;
}

void EntryRehearsal::operator()() {
  if (!entries_) {
    entries_.emplace();
    for (const Asked& asked : texts_) {
      Outcome unseen;
      if (asked.entry.error.IsEmpty()) {
        if (std::optional<Entry> entry = Begin(asked.entry.text, limits_, unseen)) {
          entries_->push_back(*std::move(entry));
        }
      }
    }
  }
  for (const Entry& entry : *entries_) {
    Outcome unseen;
    Attempt(unseen, [&] {
      const auto temporaryTable = MakeTemporaryTable(company_, entry);
      DecideOver(company_.Siblings(), entry, MakeSets(entry), Detail::Findings, unseen);
    });
  }
}

Outcome CheckAgain(company::Company& company, const Entry& entry) {
  Outcome outcome;
  outcome.isCheck = entry.operation->isCheck;
  DecideIn(company, entry, Detail::FindingsAndSteps, nullptr, outcome);
  return outcome;
}

Outcome DecideAgain(std::string_view entryText, Siblings& siblings, const Limits& limits) {
  Outcome outcome;
  if (const std::optional<Entry> entry = Begin(entryText, limits, outcome)) {
    Run(*entry, outcome,
        [&](const Sets& sets) { DecideOver(siblings, *entry, sets, Detail::Findings, outcome); });
  }
  return outcome;
}

}  // namespace kal::host
