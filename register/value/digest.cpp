// The functions of OpenSSL that do nothing but the arithmetic. Those that are advised today first
// look for who carries a digest out: thousands of allocations deep at the first use, some of which
// end the process when they fail. The register takes its first digest with a receipt half stored,
// and has to come out of it whatever memory there is; these need none, and cannot fail.
#define OPENSSL_API_COMPAT 0x10100000L

#include "register/value/digest.h"

#include <openssl/sha.h>

#include <array>

namespace lorimat {

std::string Sha256(std::string_view bytes) {
  std::array<unsigned char, SHA256_DIGEST_LENGTH> digest;
  SHA256_CTX context;
  SHA256_Init(&context);
  SHA256_Update(&context, bytes.data(), bytes.size());
  SHA256_Final(digest.data(), &context);
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(2 * digest.size());
  for (const unsigned char byte : digest) {
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 0xF]);
  }
  return text;
}

}  // namespace lorimat
