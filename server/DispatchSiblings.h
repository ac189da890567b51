// DispatchSiblings: the sibling components of the installed system, called by member names.
//
// Each is created fresh by its class's name and released with the state of whoever asks it.

#pragma once

#include "server/DispatchRecordset.h"
#include "siblings/Siblings.h"

namespace kal {

class DispatchSiblings final : public Siblings {
 public:
  // The sets must outlive this.
  explicit DispatchSiblings(BorrowedSets& sets) : sets_(sets) {}

  SiblingAnswer Ask(const SiblingCall& call) override;

 private:
  BorrowedSets& sets_;
};

}  // namespace kal
