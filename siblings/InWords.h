// InWords: calls to siblings as people read them.

#pragma once

#include <string>

#include "siblings/Siblings.h"

namespace kal {

// The tables, joined ones behind "+", each with its conditions in parentheses: "," is "and", "|"
// is "or". Which columns join two tables is left out. "STDPianoDeiConti (CodConto = '0101',
// TipoConto = 0)".
[[nodiscard]] std::string InWords(const Query& query);

// A list of values: "'FTA', 3".
[[nodiscard]] std::string InWords(std::span<const Variant> values);

}  // namespace kal
