// DispatchSiblings: the sibling components of the installed system, called by member names.
//
// Each is created fresh by its class's name and released with the state of whoever asks it.

#pragma once

#include <utility>

#include "server/DispatchRecordset.h"
#include "server/SiblingNames.h"
#include "siblings/Siblings.h"

namespace kal {

class DispatchSiblings final : public Siblings {
 public:
  // The sets must outlive this.
  explicit DispatchSiblings(BorrowedSets& sets, SiblingNames names = {})
      : sets_(sets), names_(std::move(names)) {}

  SiblingAnswer Ask(const SiblingCall& call) override;

 private:
  BorrowedSets& sets_;
  SiblingNames names_;
};

}  // namespace kal
