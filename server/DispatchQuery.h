// DispatchQuery: a selection handed over to the system's query builder, word by word.

#pragma once

#include "server/LateBound.h"
#include "server/SiblingNames.h"
#include "siblings/Selection.h"

namespace kal {

// A fresh query builder that holds the selection with the values of this use.
[[nodiscard]] LateBound DescribeQuery(const Query& query, const SiblingNames& names = {});

}  // namespace kal
