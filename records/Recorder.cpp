#include "records/Recorder.h"

#include <string>
#include <utility>

#include "platform/WrappedRecordset.h"
#include "records/SelectionMaker.h"
#include "records/Subject.h"

namespace kal::records {
namespace {

// A record set that a component was given.
class GivenSet final : public WrappedRecordset {
 public:
  using WrappedRecordset::WrappedRecordset;

  [[nodiscard]] bool HasCurrentRow() noexcept override { return inner_->HasCurrentRow(); }
  [[nodiscard]] std::size_t Row() const override { return inner_->Row(); }

  // Since it was last asked.
  [[nodiscard]] SetMoves TakeMoves() { return std::exchange(moves_, {}); }

 private:
  // Each of them makes those before it forgotten.
  void Through(std::string_view member, std::string_view of, const Call& call) override {
    call();
    if (member == "Filter") {
      moves_ = {.filter = of == "0" ? "" : std::string(of)};
    } else if (member == "MoveFirst" || member == "MoveLast") {
      moves_.to = member == "MoveFirst" ? SetMoves::To::First : SetMoves::To::Last;
      moves_.next = 0;
    } else if (member == "MoveNext") {
      ++moves_.next;
    }
  }

  SetMoves moves_;
};

// A record set of another make that was answered.
class AnsweredSet final : public WrappedRecordset {
 public:
  // The exchange that answered it stands at that place.
  AnsweredSet(RecordsetRef inner, Conversation& conversation, std::size_t place)
      : WrappedRecordset(std::move(inner)), conversation_(conversation), place_(place) {}

  [[nodiscard]] kal::EditMode EditMode() override {
    return conversation_[place_].editMode = WrappedRecordset::EditMode();
  }
  [[nodiscard]] bool HasCurrentRow() noexcept override { return inner_->HasCurrentRow(); }
  [[nodiscard]] std::size_t Row() const override { return inner_->Row(); }
  [[nodiscard]] std::shared_ptr<const RowTable> AllRows() const override {
    return inner_->AllRows();
  }

 private:
  void Through(std::string_view member, std::string_view of, const Call& call) override {
    const std::size_t time = counts_.Next(member, of);
    try {
      call();
    } catch (...) {
      conversation_[place_].faults.push_back(
          {std::string(member), std::string(of), time, CurrentError()});
      throw;
    }
  }

  Conversation& conversation_;
  std::size_t place_;
  SetCallCounts counts_;
};

}  // namespace

// In the place of the component's own state, which it holds.
struct Recorder::Told final : SiblingState {
  std::unique_ptr<SiblingState> inner;
  Subject subject;
  std::shared_ptr<GivenSet> given;
};

// Nothing for a component that keeps nothing of what it is told.
Recorder::Told* Recorder::ToldOf(const SiblingCall& call) {
  if (call.member == Member::Create || !Subject::IsKeptBy(call.component)) {
    return nullptr;
  }
  auto* told = dynamic_cast<Told*>(call.state.get());
  if (told == nullptr) {
    auto made = std::make_unique<Told>();
    told = made.get();
    made->inner = std::move(call.state);
    call.state = std::move(made);
  }
  return told;
}

SiblingAnswer Recorder::Forward(const SiblingCall& call, Told* told) {
  if (told == nullptr) {
    return inner_.Ask(call);
  }
  RecordsetRef set = call.set;
  if (call.Kind() == CallKind::PutSet && call.set) {
    told->given = std::make_shared<GivenSet>(call.set);
    set = told->given;
  }
  return inner_.Ask({.component = call.component,
                     .member = call.member,
                     .values = call.values,
                     .query = call.query,
                     .set = std::move(set),
                     .state = told->inner});
}

// What is answered, as it is handed on.
void Recorder::Keep(SiblingAnswer& answer, Exchange& exchange) {
  exchange.answer = answer.value;
  if (answer.rows.IsNothing()) {
    return;
  }
  exchange.rows = answer.rows->AllRows();
  if (exchange.rows == nullptr) {
    Raise(RunTime::NotSupported, "A record set that does not tell its rows can't be recorded");
  }
  if (dynamic_cast<const MemoryRecordset*>(&*answer.rows) != nullptr) {
    exchange.editMode = answer.rows->EditMode();
  } else {
    answer.rows = std::make_shared<AnsweredSet>(answer.rows, conversation_, conversation_.size());
  }
}

SiblingAnswer Recorder::Ask(const SiblingCall& call) {
  Exchange exchange{.component = call.component, .member = call.member};
  // Before the call, which may take them away.
  if (call.query != nullptr) {
    exchange.selection = Kept(*call.query);
    if (call.query->IsConstant()) {
      exchange.name = call.query->Name();
    }
    exchange.with.assign(call.query->Values().begin(), call.query->Values().end());
  } else {
    exchange.with.assign(call.values.begin(), call.values.end());
  }
  const bool isQuestion = IsQuestion(call.Kind());
  if (!isQuestion) {
    exchange.time = counts_.Next(call.component, call.member);
  }
  Told* const told = ToldOf(call);
  if (told != nullptr) {
    exchange.about = told->subject.Of(call.member);
  }
  SiblingAnswer answer;
  try {
    answer = Forward(call, told);
    Keep(answer, exchange);
  } catch (...) {
    exchange.error = CurrentError();
  }
  if (told != nullptr && told->given != nullptr) {
    exchange.moves = told->given->TakeMoves();
  }
  if (told != nullptr && !exchange.error && !exchange.with.empty()) {
    told->subject.Tell(call.member, exchange.with.front());
  }
  if (isQuestion || exchange.error || !exchange.moves.None()) {
    conversation_.push_back(std::move(exchange));
    if (conversation_.back().error) {
      RaiseAgain(*conversation_.back().error);
    }
  }
  return answer;
}

}  // namespace kal::records
