// SampleCompany: two years of books of a small Italian firm.

#pragma once

#include <string_view>

namespace kal::company {

// INSERT statements for a company that was just made.
[[nodiscard]] std::string_view SampleCompanySql();

}  // namespace kal::company
