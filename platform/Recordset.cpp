#include "platform/Recordset.h"

#include "platform/RunTimeError.h"

namespace kal {

Recordset& RecordsetRef::operator*() const {
  if (set_ == nullptr) {
    Raise(RunTime::ObjectNotSet, "Object not set: the record set is Nothing");
  }
  return *set_;
}

}  // namespace kal
