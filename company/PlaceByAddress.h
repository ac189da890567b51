// PlaceByAddress: where a table of fixed size keeps what belongs to an object, by its address.

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace kal::company {

template <std::size_t kPlaces>
[[nodiscard]] std::size_t PlaceByAddress(const void* address) {
  static_assert(kPlaces > 1 && std::has_single_bit(kPlaces));
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
  constexpr int kUnused = 64 - std::countr_zero(kPlaces);
  return static_cast<std::size_t>((std::hash<const void*>()(address) * kSpread) >> kUnused);
}

}  // namespace kal::company
