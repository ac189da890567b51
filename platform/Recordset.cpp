#include "platform/Recordset.h"

#include "platform/RunTimeError.h"

namespace kal {

bool Recordset::HasCurrentRow() noexcept {
  try {
    (void)Fields(std::size_t{0}).Value();
    return true;
  } catch (const RunTimeError& error) {
    // A value that can't be represented stands in a row all the same.
    return error.Number() == static_cast<std::int32_t>(RunTime::TypeMismatch);
  } catch (...) {
    return false;
  }
}

void RecordsetRef::RaiseNothing() {
  Raise(RunTime::ObjectNotSet, "Object not set: the record set is Nothing");
}

}  // namespace kal
