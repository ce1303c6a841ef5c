// Memory that runs out when a test wants it to: what the program's own code allocates, and what
// SQLite and OpenSSL do.
#pragma once

namespace lorimat {

class FailingMemory {
 public:
  static constexpr int kForGood = -1;

  // Of the allocations from now on the n-th fails, and so many in a row with it.
  static void FailAt(int n, int in_a_row);
  static void Heal();
  // Whether one has failed since.
  static bool failed();
};

}  // namespace lorimat
