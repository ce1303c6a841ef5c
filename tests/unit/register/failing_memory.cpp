#include "unit/register/failing_memory.h"

#include <openssl/crypto.h>
#include <sqlite3.h>

#include <cstdlib>
#include <new>

namespace lorimat {
namespace {

// Not 0 while memory is about to run out. Of one thread at a time.
bool armed = false;
bool has_failed = false;
int left_before = 0;
int left_to_fail = 0;

bool Fails() {
  if (!armed) return false;
  if (left_before > 0) {
    --left_before;
    return false;
  }
  if (left_to_fail == 0) return false;
  if (left_to_fail > 0) --left_to_fail;
  has_failed = true;
  return true;
}

sqlite3_mem_methods real_methods = {};

// SQLite and OpenSSL take another allocation only before their first use.
const bool placed = [] {
  const int digests = CRYPTO_set_mem_functions(
      [](size_t size, const char*, int) { return Fails() ? nullptr : std::malloc(size); },
      [](void* block, size_t size, const char*, int) {
        return Fails() ? nullptr : std::realloc(block, size);
      },
      [](void* block, const char*, int) { std::free(block); });
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &real_methods);
  sqlite3_mem_methods methods = real_methods;
  methods.xMalloc = [](int size) { return Fails() ? nullptr : real_methods.xMalloc(size); };
  methods.xRealloc = [](void* block, int size) {
    return Fails() ? nullptr : real_methods.xRealloc(block, size);
  };
  return digests == 1 && sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK;
}();

}  // namespace

void FailingMemory::FailAt(int n, int in_a_row) {
  if (!placed) std::abort();
  left_before = n - 1;
  left_to_fail = in_a_row;
  has_failed = false;
  armed = true;
}

void FailingMemory::Heal() { armed = false; }

bool FailingMemory::failed() { return has_failed; }

}  // namespace lorimat

void* operator new(size_t size) {
  void* const block = lorimat::Fails() ? nullptr : std::malloc(size > 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

// The sanitizers have one of their own, which this must not meet.
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return lorimat::Fails() ? nullptr : std::malloc(size > 0 ? size : 1);
}

void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
