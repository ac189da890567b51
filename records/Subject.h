// Subject: what one component was told that its later answers rest on.

#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "siblings/Siblings.h"

namespace kal::records {

class Subject {
 public:
  // Whether the component keeps what it is told: some of its members take a value for the others
  // to use. The fiscal year is selected by a question.
  [[nodiscard]] static constexpr bool IsKeptBy(Component component) {
    return component == Component::CompanySettings ||
           std::ranges::any_of(kMembers, [component](const MemberInfo& member) {
             return member.component == component && member.kind == CallKind::Put;
           });
  }

  // What the answer of that member rests on.
  [[nodiscard]] std::vector<Variant> Of(Member member) const {
    const bool rests = member != Member::Create &&
                       kMembers[static_cast<std::size_t>(member)].kind == CallKind::Get &&
                       member != Member::CompanySettings_Setting &&
                       member != Member::CompanySettings_SelectFiscalYear;
    return rests ? values_ : std::vector<Variant>();
  }

  // The component was told a value; the last one of each member counts.
  void Tell(Member member, const Variant& value) {
    if (member != Member::CompanySettings_SelectFiscalYear &&
        kMembers[static_cast<std::size_t>(member)].kind != CallKind::Put) {
      return;
    }
    const auto told = std::ranges::find(members_, member);
    if (told == members_.end()) {
      members_.push_back(member);
      values_.push_back(value);
    } else {
      values_[static_cast<std::size_t>(told - members_.begin())] = value;
    }
  }

 private:
  std::vector<Member> members_;
  std::vector<Variant> values_;  // one for each
};

}  // namespace kal::records
