// Runner: one entry, checked against a company.
//
// CheckEntry needs nothing but the company and the entry's text and keeps nothing between calls,
// so several threads may each work through entries with a Company of their own.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "company/Company.h"
#include "frame/Findings.h"
#include "host/EntryFile.h"
#include "host/EntryReader.h"
#include "host/ExplainRecorder.h"
#include "host/Operations.h"
#include "host/Workers.h"
#include "platform/Currency.h"
#include "platform/RunTimeError.h"
#include "records/Conversation.h"

namespace kal::host {

// How a supplied record set was handed back.
struct SetState {
  std::string_view name;
  std::string filter;        // "" when none is set
  std::size_t position = 0;  // among the visible rows, counted from 1; 0 when no row is current
};

// The field of a record set of the entry that was read last.
struct FailedField {
  std::string_view set;
  std::size_t row = 0;  // counted from 1 among all rows of the set; 0 when no row was current
  std::string field;
};

struct Outcome {
  EntryId id;
  Place place;                           // where the entry stands
  std::optional<std::string> operation;  // nothing when it could not be read
  bool isCheck = true;
  std::optional<OperationResult> result;  // nothing when there is an error of either kind
  std::string errString;
  std::string warnString;
  std::string warnProtocolloString;
  std::string warnDuplicatoDocString;
  std::string warnInfragruppoString;
  Currency importoPlafond;
  bool chiusuraRateInSospensione = false;
  bool riaperturaRateInSospensione = false;
  std::string isInfragruppo = "False";
  std::vector<Finding> findings;  // which the result strings join
  std::vector<Step> steps;        // how the decision came about, where asked for
  std::vector<OrderRun> orders;   // likewise: which checks it came to
  std::vector<SetState> sets;
  Said inputError;                           // why the entry could not be read; empty when it could
  std::optional<RunTimeError> error;         // what the operation raised
  std::optional<FailedField> failedField{};  // the field on which it did, where it was one
  bool isDecided = false;                    // whether the checker was asked at all
  std::optional<Entry> entry{};              // as it was read; nothing when it could not be
  std::vector<bool> accepted{};              // by finding: whether a baseline has it; may be empty

  [[nodiscard]] bool IsAccepted(std::size_t finding) const {
    return finding < accepted.size() && accepted[finding];
  }
};

// Whether an outcome tells how the decision came about.
enum class Detail { Findings, FindingsAndSteps };

// Never throws for what is wrong with the entry or the company, nor for want of memory: that is in
// the outcome. What the checker asks is written down in the conversation, where one is given.
[[nodiscard]] Outcome CheckEntry(company::Company& company, const EntryText& text,
                                 Detail detail = Detail::Findings,
                                 records::Conversation* conversation = nullptr,
                                 const Limits& limits = {});

// An outcome of which nothing more could be told for want of memory: error 7.
[[nodiscard]] Outcome WithoutMemory(Outcome outcome);

// Entries that will be checked in one reading of the books: what a company wants to know of them
// beforehand is found out by deciding them for nobody to see. They must outlive it.
class EntryRehearsal {
 public:
  EntryRehearsal(company::Company& company, std::span<const Asked> entries,
                 const Limits& limits = {})
      : company_(company), texts_(entries), limits_(limits) {}

  void operator()();

 private:
  company::Company& company_;
  std::span<const Asked> texts_;
  Limits limits_;
  std::optional<std::vector<Entry>> entries_;  // those that could be read
};

// The steps of an entry that was checked, found by checking it once more, with the findings that
// they speak of. Meant to be asked while one state of the books is held for both.
[[nodiscard]] Outcome CheckAgain(company::Company& company, const Entry& entry);

// The same over siblings that need no company, such as those that play a recording.
[[nodiscard]] Outcome DecideAgain(std::string_view entryText, Siblings& siblings,
                                  const Limits& limits = {});

}  // namespace kal::host
