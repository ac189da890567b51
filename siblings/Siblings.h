// How the checker asks the other components of the accounting system.
//
// They are late-bound: one is created at each use, its members are called with values, and it is
// let go at the latest when the operation ends, also on the error path. Every one of these calls
// passes Siblings::Ask. Who answers them, watches them, writes them down, plays them back or hands
// them over to automation overrides that one function. Any call may raise a RunTimeError of the
// sibling's own.

#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/Recordset.h"
#include "platform/Variant.h"
#include "siblings/Members.h"
#include "siblings/Selection.h"

namespace kal {

// What the answering side keeps of one component between its creation and its end.
class SiblingState {
 public:
  SiblingState() = default;
  SiblingState(const SiblingState&) = delete;
  SiblingState& operator=(const SiblingState&) = delete;
  virtual ~SiblingState() = default;
};

struct SiblingCall {
  Component component;
  Member member;
  std::span<Variant> values;             // the arguments; the callee may take them away
  const Query* query = nullptr;          // of DataAccess.Open
  RecordsetRef set{};                    // of Totals.Recordset
  std::unique_ptr<SiblingState>& state;  // of this component, nothing at its creation

  [[nodiscard]] CallKind Kind() const {
    return member == Member::Create ? CallKind::Create
                                    : kMembers[static_cast<std::size_t>(member)].kind;
  }
  // "Create", or the member's own name.
  [[nodiscard]] std::string_view Name() const {
    return member == Member::Create ? "Create" : kMembers[static_cast<std::size_t>(member)].name;
  }
};

struct SiblingAnswer {
  Variant value{};      // Empty where a call answers nothing
  RecordsetRef rows{};  // of DataAccess.Open: on the first row; they stay as they are
};

class Siblings {
 public:
  Siblings() = default;
  Siblings(const Siblings&) = delete;
  Siblings& operator=(const Siblings&) = delete;
  virtual ~Siblings() = default;

  // A component that the host does not have raises 429 when it is created: NoSuchComponent.
  virtual SiblingAnswer Ask(const SiblingCall& call) = 0;
};

[[noreturn]] void NoSuchComponent(Component component);

}  // namespace kal
