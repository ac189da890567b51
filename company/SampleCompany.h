// SampleCompany: two years of books of a small Italian firm.

#pragma once

#include <string_view>

namespace kal::company {

// The statements that fill a company that was just made, message texts aside.
[[nodiscard]] std::string_view SampleCompanySql();

}  // namespace kal::company
