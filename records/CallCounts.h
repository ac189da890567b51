// CallCounts: how often each member was called that answers nothing, so that a call is known again
// by its number.

#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "siblings/Siblings.h"

namespace kal::records {

class CallCounts {
 public:
  // The number of this call among those of its member, counted from 1. Components are counted
  // apart where they are created.
  std::size_t Next(Component component, Member member) {
    const std::size_t of = member == Member::Create
                               ? kMembers.size() + static_cast<std::size_t>(component)
                               : static_cast<std::size_t>(member);
    return ++counts_[of];
  }

 private:
  std::array<std::size_t, kMembers.size() + kComponentNames.size()> counts_{};
};

// The same for the members of one record set, each by what it is called for.
class SetCallCounts {
 public:
  std::size_t Next(std::string_view member, std::string_view of) {
    return ++counts_[{std::string(member), std::string(of)}];
  }

 private:
  std::map<std::pair<std::string, std::string>, std::size_t> counts_;
};

}  // namespace kal::records
