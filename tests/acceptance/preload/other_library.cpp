// A library of another version, for --library: it takes any definition file and answers OK to any
// line, to an "@" line the line itself, and asks nothing of its device. "3001011" in
// LORIMAT_TEST_VERSION is 3.1.11.
//
// With the file of a library in LORIMAT_TEST_FORWARD it does what that one does, but for the price
// of a line that LORIMAT_TEST_PRICE is given for. LORIMAT_TEST_END ends the process: "load" when
// the library is loaded, "exit" the same without a signal, "line" at the first line. "hang" waits
// for ever when it is loaded, with the pipe open that LORIMAT_TEST_PIPE names.
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

std::string Setting(const char* name) {
  const char* text = std::getenv(name);
  return text != nullptr ? text : "";
}

void* other = nullptr;

template <typename Function>
Function* Other(const char* name) {
  return other == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(other, name));
}

__attribute__((constructor)) void Load() {
  if (Setting("LORIMAT_TEST_END") == "load") raise(SIGBUS);
  if (Setting("LORIMAT_TEST_END") == "exit") _exit(3);
  if (Setting("LORIMAT_TEST_END") == "hang") {
    const int pipe = open(Setting("LORIMAT_TEST_PIPE").c_str(), O_WRONLY);
    if (write(pipe, "hangs\n", 6) == 6) {
      for (;;) pause();
    }
    close(pipe);
  }
  const std::string file = Setting("LORIMAT_TEST_FORWARD");
  if (!file.empty()) other = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
}

long ValueOf(const char* name, long own) {
  auto* function = Other<long()>(name);
  return function != nullptr ? function() : own;
}

}  // namespace

EXPORTED int TradInit(char* file, int options, void* progress, void* callback) {
  auto* init = Other<int(char*, int, void*, void*)>("TradInit");
  return init != nullptr ? init(file, options, progress, callback) : 0;
}

EXPORTED int TradClose() {
  auto* close = Other<int()>("TradClose");
  return close != nullptr ? close() : 0;
}

EXPORTED long EcrCmd(char* command, char* result) {
  if (Setting("LORIMAT_TEST_END") == "line") raise(SIGSEGV);
  if (auto* run = Other<long(char*, char*)>("EcrCmd")) {
    std::string line = command;
    const std::string price = Setting("LORIMAT_TEST_PRICE");
    const size_t at = price.empty() ? line.npos : line.find("price=" + price);
    if (at != line.npos) line.replace(at, 6 + price.size(), "price=9.99");
    return run(line.data(), result);
  }
  std::snprintf(result, 512, "%s", command[0] == '@' ? command : "OK.");
  return 0;
}

EXPORTED long GetEcrConfVal(long number) {
  if (auto* value = Other<long(long)>("GetEcrConfVal")) return value(number);
  return std::atol(Setting("LORIMAT_TEST_VERSION").c_str());
}

EXPORTED long GetQuoteChar() { return ValueOf("GetQuoteChar", '\''); }
EXPORTED long GetSeparatorChar() { return ValueOf("GetSeparatorChar", ','); }
EXPORTED long GetOutEditOptions() { return ValueOf("GetOutEditOptions", 0); }
