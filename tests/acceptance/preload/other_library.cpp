// A library of another version, for --library: it takes any definition file and answers OK to any
// line, to an "@" line the line itself, and asks nothing of its device. "3001011" in
// LORIMAT_TEST_VERSION is 3.1.11.
#include <cstdio>
#include <cstdlib>

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int TradInit(char*, int, void*, void*) { return 0; }
EXPORTED int TradClose() { return 0; }
EXPORTED long EcrCmd(char* command, char* result) {
  std::snprintf(result, 512, "%s", command[0] == '@' ? command : "OK.");
  return 0;
}
EXPORTED long GetEcrConfVal(long) {
  const char* text = std::getenv("LORIMAT_TEST_VERSION");
  return text != nullptr ? std::atol(text) : 0;
}
EXPORTED long GetQuoteChar() { return '\''; }
EXPORTED long GetSeparatorChar() { return ','; }
EXPORTED long GetOutEditOptions() { return 0; }
