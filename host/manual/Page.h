// Page: the program's page of the manual, in the language of man(7).

#pragma once

#include <string>

#include "host/manual/Surface.h"
#include "platform/Wording.h"

namespace kal::host {

// In UTF-8. The surface is in the same language.
[[nodiscard]] std::string ManualPage(const ProgramSurface& surface, Language language);

}  // namespace kal::host
