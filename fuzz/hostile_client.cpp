#include "fuzz/hostile_client.h"

#include <climits>
#include <cstring>

#include "fuzz/tally.h"
#include "rpccommon/services/rtfconst.h"

namespace {

constexpr unsigned kMostCalls = 3000;

}  // namespace

// The answers begin again when they are at their end.
uint8_t HostileClient::Byte() {
  if (answers_.empty()) return 0;
  const auto byte = static_cast<uint8_t>(answers_[place_]);
  place_ = (place_ + 1) % answers_.size();
  return byte;
}

int64_t HostileClient::Number() {
  static constexpr int64_t kEdges[] = {0,       1,        -1,       9,         10,        255,
                                       256,     9999,     INT_MAX,  INT_MIN,   INT64_MAX, INT64_MIN,
                                       1000000, 99999999, 10000000, 2147483648};
  const uint8_t byte = Byte();
  if (byte < 128) return byte;
  if (byte < 240) return byte * 256 + Byte();
  return kEdges[byte % 16];
}

int HostileClient::TakeResult() {
  if (++calls_ > kMostCalls) return RTF_E_FAILURE;
  if (!answers_.empty()) ++TheTally().answers;
  const uint8_t byte = Byte();
  static constexpr int kResults[] = {-1,  -2,  -513, 1,       101,     107,  199, 200,
                                     217, 255, 256,  INT_MAX, INT_MIN, 1207, 300, 0};
  if (byte < 0xC0) return 0;
  if (byte < 0xF0) return kResults[byte % 16];
  if (byte < 0xF8) return byte * 7;
  if (byte % 2 == 0) throw std::runtime_error("a client's own");
  throw byte;
}

void HostileClient::Read(const char* text) { read_ += std::strlen(text); }

void HostileClient::Text(char* text) {
  if (writes_) return Read(text);
  const uint8_t kind = Byte();
  if (kind >= 0xF0) {
    // To the end of the room and without one of its own.
    std::memset(text, Byte() | 1, kTextRoom);
    return;
  }
  if (kind >= 0xE0) {
    std::memset(text, Byte() | 1, kTextRoom - 1);
    text[kTextRoom - 1] = 0;
    return;
  }
  if (kind >= 0x80) {
    // A number, as most texts are.
    const int64_t number = Number();
    int length = 0;
    char digits[24];
    uint64_t rest = number < 0 ? 0 - static_cast<uint64_t>(number) : static_cast<uint64_t>(number);
    do {
      digits[length++] = static_cast<char>('0' + rest % 10);
      rest /= 10;
    } while (rest != 0);
    if (number < 0) digits[length++] = '-';
    while (length > 0) *text++ = digits[--length];
    *text = 0;
    return;
  }
  for (uint8_t i = 0; i < kind; ++i) text[i] = static_cast<char>(Byte());
  text[kind] = 0;
}
