#include "server/DispatchSiblings.h"

#include <memory>
#include <utility>

#include "server/DispatchQuery.h"
#include "server/LateBound.h"

namespace kal {
namespace {

struct Installed final : SiblingState {
  explicit Installed(LateBound anObject) : object(std::move(anObject)) {}
  LateBound object;
};

}  // namespace

SiblingAnswer DispatchSiblings::Ask(const SiblingCall& call) {
  if (call.member == Member::Create) {
    call.state = std::make_unique<Installed>(LateBound::Create(names_.ClassOf(call.component)));
    return {};
  }
  LateBound& sibling = static_cast<Installed&>(*call.state).object;
  const std::string_view name = names_.NameOf(call.member);
  switch (call.Kind()) {
    case CallKind::Create:
      break;
    case CallKind::Get:
      return {.value = sibling.Get(name, call.values)};
    case CallKind::Do:
      sibling.Do(name, call.values);
      break;
    case CallKind::Put:
      sibling.Put(name, call.values.front());
      break;
    case CallKind::PutSet:  // the component's record sets are all of them automation objects
      sibling.PutRef(name, dynamic_cast<DispatchRecordset&>(*call.set).Object());
      break;
    case CallKind::Open:
      return {.rows = sets_.Borrow(
                  sibling.GetObject(name, DescribeQuery(*call.query, names_).Object()))};
    case CallKind::Execute:
      return {.value = sibling.DoForOutput(name, call.values)};
  }
  return {};
}

}  // namespace kal
