#include "register/digest.h"

#include <openssl/evp.h>

#include <new>

namespace lorimat {

std::string Sha256(std::string_view bytes) {
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int size = 0;
  // It only fails without memory.
  if (EVP_Digest(bytes.data(), bytes.size(), digest, &size, EVP_sha256(), nullptr) != 1) {
    throw std::bad_alloc();
  }
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(2 * size);
  for (unsigned int index = 0; index < size; ++index) {
    text.push_back(kDigits[digest[index] >> 4]);
    text.push_back(kDigits[digest[index] & 0xF]);
  }
  return text;
}

}  // namespace lorimat
