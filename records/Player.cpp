#include "records/Player.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "platform/WrappedRecordset.h"
#include "records/Subject.h"
#include "siblings/InWords.h"

namespace kal::records {
namespace {

constexpr std::string_view kSource = "Recording";

// Bytes that are the same for the same questions, and for no others: every part stands behind its
// size.
class Key {
 public:
  Key(Component component, Member member) {
    Add(static_cast<std::uint64_t>(component));
    Add(static_cast<std::uint64_t>(member));
  }

  void Add(std::uint64_t number) {
    bytes_.append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  void Add(std::string_view text) {
    Add(text.size());
    bytes_ += text;
  }
  void Add(std::span<const Variant> values) {
    Add(values.size());
    for (const Variant& value : values) {
      Add(static_cast<std::uint64_t>(value.VarType()));
      if (const auto* date = value.As<Date>()) {
        AddBytes(date->Serial());
      } else if (const auto* number = value.As<double>()) {
        AddBytes(*number);
      } else if (const auto* single = value.As<float>()) {
        AddBytes(*single);
      } else if (const auto text = value.AsText()) {
        Add(*text);
      } else if (!value.IsNull()) {
        Add(CStr(value));
      }
    }
  }
  void Add(const Query& query) {
    const Selection& what = query.What();
    Add(static_cast<std::uint64_t>(what.Option()));
    Add(what.Columns().Size());
    for (const std::string_view columns : what.Columns()) {
      Add(query.Text(columns));
    }
    Add(query.Text(what.Table()));
    Add(what.Joins().Size());
    for (const Selection::Join& join : what.Joins()) {
      Add(static_cast<std::uint64_t>(join.kind));
      Add(query.Text(join.table));
      AddConditions(query, join.on);
    }
    AddConditions(query, what.Conditions());
    Add(query.Values());
  }

  [[nodiscard]] std::string Take() && { return std::move(bytes_); }

 private:
  template <class Number>
  void AddBytes(Number number) {
    bytes_.append(reinterpret_cast<const char*>(&number), sizeof number);
  }
  template <class Conditions>
  void AddConditions(const Query& query, const Conditions& conditions) {
    Add(conditions.Size());
    for (const Selection::Condition& condition : conditions) {
      Add(static_cast<std::uint64_t>(condition.kind));
      Add(static_cast<std::uint64_t>(condition.operation));
      Add(query.Text(condition.left));
      Add(query.Text(condition.right));
      Add(condition.alternatives.Size());
      for (const Selection::All& alternative : condition.alternatives) {
        Add(alternative.Size());
        for (const Selection::Comparison& comparison : alternative) {
          Add(static_cast<std::uint64_t>(comparison.operation));
          Add(query.Text(comparison.left));
        }
      }
    }
  }

  std::string bytes_;
};

std::string KeyOf(Component component, Member member, std::size_t time) {
  Key key(component, member);
  key.Add(std::uint64_t{time});
  return std::move(key).Take();
}

std::string KeyOf(Component component, Member member, const Query* query,
                  std::span<const Variant> values, std::span<const Variant> about) {
  Key key(component, member);
  if (query != nullptr) {
    key.Add(*query);
  } else {
    key.Add(values);
    key.Add(about);
  }
  return std::move(key).Take();
}

// A record set whose members fail where they failed.
class FailingSet final : public WrappedRecordset {
 public:
  FailingSet(RecordsetRef inner, const std::vector<SetFault>& faults)
      : WrappedRecordset(std::move(inner)), faults_(faults) {}

  [[nodiscard]] bool HasCurrentRow() noexcept override { return inner_->HasCurrentRow(); }
  [[nodiscard]] std::size_t Row() const override { return inner_->Row(); }

 private:
  void Through(std::string_view member, std::string_view of, const Call& call) override {
    const std::size_t time = counts_.Next(member, of);
    for (const SetFault& fault : faults_) {
      if (fault.time == time && fault.member == member && fault.of == of) {
        RaiseAgain(fault.error);
      }
    }
    call();
  }

  const std::vector<SetFault>& faults_;
  SetCallCounts counts_;
};

void Play(const SetMoves& moves, Recordset& set) {
  if (moves.filter) {
    set.Filter(*moves.filter);
  }
  if (moves.to == SetMoves::To::First) {
    set.MoveFirst();
  } else if (moves.to == SetMoves::To::Last) {
    set.MoveLast();
  }
  for (std::size_t i = 0; i < moves.next; ++i) {
    set.MoveNext();
  }
}

std::string Asked(const SiblingCall& call, std::span<const Variant> about) {
  std::string words = std::string(NameOf(call.component)) + "." + std::string(call.Name()) + " " +
                      (call.query != nullptr ? InWords(*call.query) : InWords(call.values));
  return about.empty() ? words : words + " (" + InWords(about) + ")";
}

}  // namespace

// What one component was told.
struct Player::Told final : SiblingState {
  Subject subject;
  RecordsetRef given;
};

Player::Player(const Conversation& conversation) {
  for (const Exchange& exchange : conversation) {
    if (!IsQuestion(exchange.Kind())) {
      others_.emplace(KeyOf(exchange.component, exchange.member, exchange.time), &exchange);
      continue;
    }
    std::optional<Query> query;
    if (exchange.selection != nullptr) {
      query = exchange.AsQuery();
    }
    questions_[KeyOf(exchange.component, exchange.member, query ? &*query : nullptr, exchange.with,
                     exchange.about)]
        .exchanges.push_back(&exchange);
  }
}

const Exchange& Player::Answer(const SiblingCall& call, const std::vector<Variant>& about) {
  const auto found =
      questions_.find(KeyOf(call.component, call.member, call.query, call.values, about));
  if (found == questions_.end()) {
    notRecorded_.push_back(Asked(call, about));
    Raise(RunTime::NotSupported, "This question was not recorded: " + notRecorded_.back(), kSource);
  }
  Answers& answers = found->second;
  const Exchange& exchange = *answers.exchanges[answers.next];
  if (answers.next + 1 < answers.exchanges.size()) {
    ++answers.next;
  }
  return exchange;
}

void Player::Do(const SiblingCall& call, Told* told) {
  if (call.Kind() == CallKind::PutSet) {
    told->given = call.set;
  }
  const auto found =
      others_.find(KeyOf(call.component, call.member, counts_.Next(call.component, call.member)));
  if (found == others_.end()) {
    return;
  }
  const Exchange& exchange = *found->second;
  if (!exchange.moves.None() && told != nullptr && told->given) {
    Play(exchange.moves, *told->given);
  }
  if (exchange.error) {
    RaiseAgain(*exchange.error);
  }
}

SiblingAnswer Player::Ask(const SiblingCall& call) {
  Told* told = nullptr;
  if (call.member != Member::Create && Subject::IsKeptBy(call.component)) {
    if (call.state == nullptr) {
      call.state = std::make_unique<Told>();
    }
    told = static_cast<Told*>(call.state.get());
  }
  SiblingAnswer answer;
  if (IsQuestion(call.Kind())) {
    const Exchange& exchange =
        Answer(call, told != nullptr ? told->subject.Of(call.member) : std::vector<Variant>());
    if (!exchange.moves.None() && told != nullptr && told->given) {
      Play(exchange.moves, *told->given);
    }
    if (exchange.error) {
      RaiseAgain(*exchange.error);
    }
    answer.value = exchange.answer;
    if (exchange.rows != nullptr) {
      answer.rows = std::make_shared<MemoryRecordset>(exchange.rows, exchange.editMode);
    }
    if (answer.rows && !exchange.faults.empty()) {
      answer.rows = std::make_shared<FailingSet>(answer.rows, exchange.faults);
    }
  } else {
    Do(call, told);
  }
  if (told != nullptr && !call.values.empty()) {
    told->subject.Tell(call.member, call.values.front());
  }
  return answer;
}

}  // namespace kal::records
