#include "platform/Recordset.h"

#include "platform/RunTimeError.h"

namespace kal {

bool Recordset::HasCurrentRow() noexcept {
  try {
    (void)Fields(std::size_t{0}).Value();
    return true;
  } catch (...) {
    return false;
  }
}

void RecordsetRef::RaiseNothing() {
  Raise(RunTime::ObjectNotSet, "Object not set: the record set is Nothing");
}

}  // namespace kal
