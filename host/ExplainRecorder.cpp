#include "host/ExplainRecorder.h"

#include <algorithm>

#include "messages/Catalogue.h"

namespace kal::host {

void ExplainRecorder::Asked(const SiblingQuestion& question) {
  if (!withSteps_) {
    return;
  }
  // Components are named by literals of the program.
  steps_.push_back({.kind = Step::Kind::Question,
                    .depth = open_.size(),
                    .name = question.component,
                    .text = std::string(question.text),
                    .answer = question.answer});
}

void ExplainRecorder::Entered(std::string_view operation) {
  if (withSteps_) {
    steps_.push_back({.depth = open_.size(), .name = operation, .findings = findings_.size()});
    open_.push_back(steps_.size() - 1);
  }
}

// Until it is left, an operation counts the findings before it.
Step& ExplainRecorder::Leave() {
  Step& step = steps_[open_.back()];
  open_.pop_back();
  step.findings = findings_.size() - step.findings;
  return step;
}

void ExplainRecorder::Answered(std::string_view /*operation*/, const Variant& answer) {
  if (withSteps_) {
    Leave().answer = answer;
  }
}

void ExplainRecorder::Failed(std::string_view /*operation*/, const RunTimeError& error) {
  if (withSteps_) {
    Leave().error = error;
  }
}

void ExplainRecorder::Added(const ObservedMessage& message) {
  const Message* const known = FindMessage(message.name);
  Finding finding{.string = message.target,
                  .code = message.code,
                  .name = message.name,
                  .path = message.operation.Path(),
                  .parameters = {message.parameters.begin(), message.parameters.end()},
                  .text = std::string(message.text),
                  .set = known == nullptr ? "" : known->set,
                  .row = 0};
  const auto set = std::ranges::find(sets_, finding.set, &NamedSet::first);
  if (set != sets_.end()) {
    finding.row = set->second->Row();
  }
  if (withSteps_) {
    steps_.push_back(
        {.kind = Step::Kind::Message, .depth = open_.size(), .finding = findings_.size()});
  }
  findings_.push_back(std::move(finding));
}

}  // namespace kal::host
