#include "host/Digest.h"

#include <nettle/base16.h>
#include <nettle/base64.h>
#include <nettle/sha2.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace kal::host {
namespace {

using Digest = std::array<std::uint8_t, SHA256_DIGEST_SIZE>;

Digest Sha256(std::string_view text) {
  sha256_ctx context;
  sha256_init(&context);
  // The library takes bytes, which a text's characters are.
  sha256_update(&context, text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
  Digest digest{};
  sha256_digest(&context, digest.size(), digest.data());
  return digest;
}

}  // namespace

std::string Sha256Hex(std::string_view text) {
  const Digest digest = Sha256(text);
  std::string hex(BASE16_ENCODE_LENGTH(SHA256_DIGEST_SIZE), '\0');
  base16_encode_update(hex.data(), digest.size(), digest.data());
  return hex;
}

std::string Sha256Base64(std::string_view text) {
  const Digest digest = Sha256(text);
  std::string base64(BASE64_ENCODE_RAW_LENGTH(SHA256_DIGEST_SIZE), '\0');
  base64_encode_raw(base64.data(), digest.size(), digest.data());
  return base64;
}

}  // namespace kal::host
