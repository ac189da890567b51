// Digest: what a text comes down to, so that it is known again without being kept.

#pragma once

#include <string>
#include <string_view>

namespace kal::host {

// SHA-256, as 64 hexadecimal digits.
[[nodiscard]] std::string Sha256Hex(std::string_view text);
// SHA-256, as browsers want to be told which script of a page is the page's own.
[[nodiscard]] std::string Sha256Base64(std::string_view text);

}  // namespace kal::host
