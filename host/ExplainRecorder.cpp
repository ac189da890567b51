#include "host/ExplainRecorder.h"

namespace kal::host {

void ExplainRecorder::Asked(const SiblingQuestion& question) {
  steps_.push_back({.kind = Step::Kind::Question,
                    .depth = open_.size(),
                    .member = question.call.member,
                    .text = std::string(question.text),
                    .answer = question.answer});
}

void ExplainRecorder::Entered(std::string_view operation) {
  steps_.push_back({.depth = open_.size(), .name = operation, .findings = findings_});
  open_.push_back(steps_.size() - 1);
  if (!orders_.empty()) {
    OrderRun& run = orders_.back();
    run.entered = run.entered || run.order[run.applied.size() - 1].Controllo == operation;
  }
}

// Until it is left, an operation counts the findings before it.
Step& ExplainRecorder::Leave() {
  Step& step = steps_[open_.back()];
  open_.pop_back();
  step.findings = findings_ - step.findings;
  return step;
}

void ExplainRecorder::Answered(std::string_view /*operation*/, const Variant& answer) {
  Leave().answer = answer;
}

void ExplainRecorder::Failed(std::string_view /*operation*/, const RunTimeError& error) {
  Leave().error = error;
}

void ExplainRecorder::Added(const Finding& /*finding*/) {
  steps_.push_back({.kind = Step::Kind::Message, .depth = open_.size(), .finding = findings_});
  ++findings_;
}

void ExplainRecorder::Reached(std::span<const Passo> order, std::size_t place, bool applies) {
  if (place == 0) {
    OrderRun run{.order = order, .applied = {}};
    run.applied.reserve(order.size());  // an order that was begun has at least one row
    orders_.push_back(std::move(run));
  }
  orders_.back().applied.push_back(applies);
  orders_.back().entered = false;
}

}  // namespace kal::host
