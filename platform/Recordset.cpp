#include "platform/Recordset.h"

#include "platform/RunTimeError.h"

namespace kal {

void RecordsetRef::RaiseNothing() {
  Raise(RunTime::ObjectNotSet, "Object not set: the record set is Nothing");
}

}  // namespace kal
