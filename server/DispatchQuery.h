// DispatchQuery: a selection handed over to the system's QueryBuilder, word by word.

#pragma once

#include "server/LateBound.h"
#include "siblings/QueryBuilder.h"

namespace kal {

// A fresh QueryBuilder object that holds the selection.
[[nodiscard]] LateBound DescribeQuery(const QueryBuilder& query);

}  // namespace kal
