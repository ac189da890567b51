// Failures of the company's data: RunTimeErrors with the source "DataAccess", whose descriptions
// name the company, table or column meant.

#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/RunTimeError.h"

namespace kal::company {

// The numbers under which automation knows failures of a database.
inline constexpr std::int32_t kDatabaseFailed = -2147467259;
inline constexpr std::int32_t kBadCommand = -2147217900;
inline constexpr std::int32_t kNoSuchTable = -2147217865;

[[noreturn]] inline void RaiseDataError(std::int32_t number, std::string description) {
  throw RunTimeError(number, std::string(kDataAccessSource), std::move(description));
}

[[noreturn]] inline void RaiseDataError(RunTime number, std::string description) {
  RaiseDataError(static_cast<std::int32_t>(number), std::move(description));
}

}  // namespace kal::company
