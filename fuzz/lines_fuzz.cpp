// Lines through EcrCmd. The input: the lines, a NUL, the device's answers.
#include "fuzz/hostile_client.h"
#include "fuzz/translator_session.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  InputParts parts(data, size);
  const std::string_view lines = parts.Next();
  HostileClient client(parts.Rest());
  TranslatorSession session(client);
  for (const std::string& line : LinesOf(lines)) {
    client.BeginLine();
    session.Run(WithoutFolders(line));
  }
  session.translator().TradClose();
  return 0;
}
