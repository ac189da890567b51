// Settings: what the text that is stored for a company's setting stands for.

#pragma once

#include <string_view>

#include "platform/Variant.h"

namespace kal::company {

// The setting's value: a boolean or a date where it has to be one, else the text as it is stored;
// Null for Null and for an empty text. Raises an error that names the setting where it can't be
// read.
[[nodiscard]] Variant SettingValue(std::string_view name, const Variant& stored);

}  // namespace kal::company
