// ExplainRecorder: how a decision came about, kept for reports.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/Observer.h"
#include "frame/Ordine.h"
#include "platform/Variant.h"
#include "siblings/WatchedSiblings.h"

namespace kal::host {

// One step of the decision. Steps stand in running order; those inside an operation follow it and
// lie deeper.
struct Step {
  enum class Kind { Operation, Question, Message };

  Kind kind = Kind::Operation;
  std::size_t depth = 0;
  std::string_view name{};              // of the operation
  Member member = Member::Create;       // of the question
  std::string text{};                   // of the question: what is asked behind the member's name
  Variant answer{};                     // Empty where an operation has none
  std::optional<RunTimeError> error{};  // of an operation
  std::size_t findings = 0;             // of an operation: how many were added inside it
  std::size_t finding = 0;              // of a message: its place among the findings
};

// How far the run of an order came, row by row.
struct OrderRun {
  std::span<const Passo> order;
  std::vector<bool> applied;  // of the rows that were reached
  bool entered = false;       // whether the check of the last of them began
};

class ExplainRecorder final : public Observer, public SiblingWatcher {
 public:
  void Asked(const SiblingQuestion& question) override;
  void Entered(std::string_view operation) override;
  void Answered(std::string_view operation, const Variant& answer) override;
  void Failed(std::string_view operation, const RunTimeError& error) override;
  void Added(const Finding& finding) override;
  void Reached(std::span<const Passo> order, std::size_t place, bool applies) override;

  [[nodiscard]] std::vector<Step> TakeSteps() { return std::move(steps_); }
  [[nodiscard]] std::vector<OrderRun> TakeOrders() { return std::move(orders_); }

 private:
  Step& Leave();

  std::vector<Step> steps_;
  std::vector<std::size_t> open_;  // the places of the operations under way
  std::vector<OrderRun> orders_;
  std::size_t findings_ = 0;
};

}  // namespace kal::host
