// Allocations: counts what this program takes from the heap.

#pragma once

#include <cstdint>

namespace kal::bench {

// Calls of operator new on this thread so far.
[[nodiscard]] std::uint64_t Allocations();

}  // namespace kal::bench
