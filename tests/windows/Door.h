// Door: the component as its hosts call it, by names or compiled against its interface.
//
// Both raise what the component raises.

#pragma once

#include <span>
#include <string_view>

#include "platform/Variant.h"
#include "server/ComPtr.h"
#include "server/LateBound.h"
#include "tests/windows/Recorded.h"
#include "tests/windows/ServerFile.h"

namespace kal::test {

enum class Binding { Early, Late };

class Door {
 public:
  explicit Door(Binding binding, const ComPtr<IKalCOGCheck>& checker = MakeChecker())
      : binding_(binding), early_(checker), late_(ComPtr<IDispatch>(checker.Get()), "nobody") {}

  // Calls an operation or reads a property.
  Variant Ask(std::string_view member, std::span<const Variant> values = {});
  void Put(std::string_view property, const Variant& value);
  void Hand(std::string_view property, const ComPtr<IDispatch>& set);
  // The record sets and all else that the entry's host hands over.
  void Hand(const Recorded& recorded);

 private:
  void Call(std::string_view name, std::span<ScopedVariant> handed);

  Binding binding_;
  ComPtr<IKalCOGCheck> early_;
  LateBound late_;
};

}  // namespace kal::test
