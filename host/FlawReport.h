// FlawReport: what verify says about a company, for people.

#pragma once

#include <string>

#include "company/Verify.h"
#include "host/Wording.h"

namespace kal::host {

// One flaw: where it is, what it is, and what to do; two lines or more.
[[nodiscard]] std::string ToText(const company::Flaw& flaw, Language language);

}  // namespace kal::host
