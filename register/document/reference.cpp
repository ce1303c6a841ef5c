#include "register/document/reference.h"

#include <algorithm>

namespace lorimat {
namespace {

bool IsBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

// What is only written differently is still this register: another one's documents know no limit.
bool Reference::IsOf(std::string_view own_serial) const {
  const std::string_view given = Trimmed(serial);
  const std::string_view own = Trimmed(own_serial);
  return given.empty() || std::equal(given.begin(), given.end(), own.begin(), own.end(),
                                     [](char a, char b) { return Capital(a) == Capital(b); });
}

}  // namespace lorimat
