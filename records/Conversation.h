// Conversation: what was asked of the sibling components while an entry was decided, and what came
// back.
//
// The entry and its conversation are the whole decision: a Recorder writes the conversation down, a
// Player answers from it, and no company is needed to decide the entry again.
//
// Questions (members that answer) stand here in the order in which they were asked. Calls that
// answer nothing, a component's creation among them, stand here only where there is something to
// tell of them: that they failed, or how they left the record set that the component was given.

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/MemoryRecordset.h"
#include "platform/RunTimeError.h"
#include "siblings/Siblings.h"

namespace kal::records {

// An error that a member of an answered record set raised.
struct SetFault {
  std::string member;    // "MoveNext", "Value"
  std::string of;        // as in WrappedRecordset: a field, a filter's condition or nothing
  std::size_t time = 1;  // at which call of that member for that, counted from 1
  RunTimeError error;
};

// How a component left the record set that it was given: what it did to its filter and position,
// one after the other.
struct SetMoves {
  enum class To : std::uint8_t { Stay, First, Last };

  std::optional<std::string> filter{};  // "" clears it
  To to = To::Stay;
  std::size_t next = 0;  // so many times MoveNext

  [[nodiscard]] bool None() const { return !filter && to == To::Stay && next == 0; }
};

struct Exchange {
  Component component = Component::KalStatus;
  Member member = Member::Create;
  // What was handed over; of a selection the values to compare with.
  std::vector<Variant> with{};
  // What the component had been told before, as far as the answer rests on it: the customer whose
  // data is asked for, the date of the fiscal year.
  std::vector<Variant> about{};
  std::shared_ptr<const Selection> selection{};  // of DataAccess.Open
  // What stands for the selection's "?": a "?" where its texts are whole.
  std::string name{kGivenName};
  std::size_t time = 0;  // of a call that answers nothing: which of its member, counted from 1

  // What came back: an error, or else a value, or the rows of a record set, all of them whatever
  // was read; no rows where the answer was Nothing.
  std::optional<RunTimeError> error{};
  Variant answer{};
  std::shared_ptr<const RowTable> rows{};
  EditMode editMode = EditMode::None;
  std::vector<SetFault> faults{};
  SetMoves moves{};

  [[nodiscard]] CallKind Kind() const {
    return member == Member::Create ? CallKind::Create
                                    : kMembers[static_cast<std::size_t>(member)].kind;
  }
  // "Create", or the member's own name.
  [[nodiscard]] std::string_view Name() const {
    return member == Member::Create ? "Create" : kMembers[static_cast<std::size_t>(member)].name;
  }
  // The selection as it was used; valid as long as this and its values.
  [[nodiscard]] Query AsQuery() const { return Query::OfPassing(*selection, with, name); }
};

using Conversation = std::vector<Exchange>;

// Whether a call of that kind answers something.
[[nodiscard]] constexpr bool IsQuestion(CallKind kind) {
  return kind == CallKind::Get || kind == CallKind::Open || kind == CallKind::Execute;
}

// Raises what was recorded.
[[noreturn]] inline void RaiseAgain(const RunTimeError& error) {
  throw RunTimeError(error.Number(), error.Source(), error.Description());
}

}  // namespace kal::records
