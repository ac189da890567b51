#include "siblings/Siblings.h"

#include <string>

#include "platform/RunTimeError.h"

namespace kal {

void NoSuchComponent(Component component) {
  Raise(RunTime::CannotCreateObject,
        "This host has no component " + std::string(NameOf(component)));
}

}  // namespace kal
