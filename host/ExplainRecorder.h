// ExplainRecorder: what a checker's observer heard, kept for reports.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/Observer.h"
#include "platform/MemoryRecordset.h"

namespace kal::host {

// One message of a result string.
struct Finding {
  ResultString string = ResultString::ErrString;
  std::optional<MessageCode> code;     // nothing for a literal text
  std::string_view name;               // of the code or of the literal text
  std::vector<std::string_view> path;  // operations, outermost first
  std::vector<Variant> parameters;
  std::string text;
  std::string_view set;  // of whose rows the check speaks; "" when it is none
  std::size_t row = 0;   // the row meant, counted from 1; 0 when no row is current
};

// One step of the decision. Steps stand in running order; those inside an operation follow it and
// lie deeper.
struct Step {
  enum class Kind { Operation, Question, Message };

  Kind kind = Kind::Operation;
  std::size_t depth = 0;
  std::string_view name{};              // of the operation, or the sibling component asked
  std::string text{};                   // of the question
  Variant answer{};                     // Empty where an operation has none
  std::optional<RunTimeError> error{};  // of an operation
  std::size_t findings = 0;             // of an operation: how many were added inside it
  std::size_t finding = 0;              // of a message: its place among the findings
};

class ExplainRecorder final : public Observer {
 public:
  using NamedSet = std::pair<std::string_view, std::shared_ptr<MemoryRecordset>>;

  // The sets are those that the checker was given. Steps are kept where asked for, findings always.
  ExplainRecorder(std::vector<NamedSet> sets, bool withSteps)
      : sets_(std::move(sets)), withSteps_(withSteps) {}

  void Asked(const SiblingQuestion& question) override;
  void Entered(std::string_view operation) override;
  void Answered(std::string_view operation, const Variant& answer) override;
  void Failed(std::string_view operation, const RunTimeError& error) override;
  void Added(const ObservedMessage& message) override;

  [[nodiscard]] std::vector<Finding> TakeFindings() { return std::move(findings_); }
  [[nodiscard]] std::vector<Step> TakeSteps() { return std::move(steps_); }

 private:
  Step& Leave();

  std::vector<NamedSet> sets_;
  bool withSteps_;
  std::vector<Finding> findings_;
  std::vector<Step> steps_;
  std::vector<std::size_t> open_;  // the places of the operations under way
};

}  // namespace kal::host
