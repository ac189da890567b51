// Limits: how much of one entry is read, so that no input takes all memory or all time.
//
// An entry of a hundred thousand lines stays far below each of them.

#pragma once

#include <cstddef>

namespace kal::host {

// What holds for any JSON text.
struct JsonLimits {
  std::size_t depth = 32;          // of values inside each other
  std::size_t keys = 1'000;        // of one object
  std::size_t values = 4'000'000;  // of one text

  bool operator==(const JsonLimits&) const = default;
};

struct Limits {
  std::size_t bytes = std::size_t{64} << 20U;  // of a line, or of an entry over several lines
  std::size_t rows = 200'000;                  // of a record set
  JsonLimits json;

  bool operator==(const Limits&) const = default;
};

// The most that can be asked for: each level takes room on the stack.
inline constexpr std::size_t kMostDepth = 1000;

// The options that raise them.
inline constexpr const char* kBytesOption = "--max-line-bytes";
inline constexpr const char* kRowsOption = "--max-rows";
inline constexpr const char* kValuesOption = "--max-values";
inline constexpr const char* kKeysOption = "--max-keys";
inline constexpr const char* kDepthOption = "--max-depth";

}  // namespace kal::host
