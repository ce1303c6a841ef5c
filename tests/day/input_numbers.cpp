#include "day/input_numbers.h"

#include <climits>

namespace lorimat {

int64_t InputNumbers::Amount() {
  static constexpr int64_t kEdges[] = {0,       -1,        INT64_MAX,  INT64_MIN, INT_MAX,  1,
                                       9999999, 99999999,  999999999,  10000,     -1000000, INT_MIN,
                                       99,      100000000, 9999999999, 50};
  const uint8_t byte = Byte();
  if (byte < 200) return (byte + 1) * 100;
  if (byte < 240) return ((byte - 200) * 256 + Byte()) * 100;
  return kEdges[byte % 16];
}

}  // namespace lorimat
