// The virtual table of the client interface, as hosts and devices meet in it: for each operation
// its slot, its type and its name. script/check abi compares that with tests/abi/kept.
#include <cxxabi.h>
#include <lorimatrt/client.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <typeinfo>

namespace {

struct Free {
  void operator()(char* text) const { std::free(text); }
};

// A pointer to a virtual member begins with the offset of its slot; processors that need all bits
// of addresses of code have a mark beside it, others add it.
template <typename Member>
void Show(Member member, const char* name) {
  std::uintptr_t offset = 0;
  static_assert(sizeof member >= sizeof offset);
  std::memcpy(&offset, &member, sizeof offset);
  const std::unique_ptr<char, Free> type(
      abi::__cxa_demangle(typeid(Member).name(), nullptr, nullptr, nullptr));
  std::printf("%3zu %s: %s\n", static_cast<size_t>(offset / sizeof(void*)), name, type.get());
}

}  // namespace

int main() {
  // With its table in this program, whose size the check reads.
  const RtfClientBase client;
  static_cast<void>(client);
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Show(&RtfClientInterface::Name, #Name);
#include "rpccommon/client/rtfclientoperations.inc"
  return 0;
}
