// Batch files. The input: the file, a NUL, the line that names it (the file's own name for an empty
// one), a NUL, the device's answers.
#include "fuzz/hostile_client.h"
#include "fuzz/translator_session.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  InputParts parts(data, size);
  const std::string file(parts.Next());
  const std::string line(parts.Next());
  HostileClient client(parts.Rest());
  TranslatorSession session(client, false);
  WriteInput("a", WithoutFolders(file));
  // A second file, so that its lines may name one that is there.
  WriteBytes("b", "VEND REP=1, PRE=1\n");
  client.BeginLine();
  const long code = session.Run(line.empty() ? "@a,e,l" : "@" + WithoutFolders(line));
  if (line.empty()) {
    Require(std::filesystem::exists("e") || code == 12 || code == 11, "the error file is there");
    Require(!std::filesystem::exists("e.tmp"), "the temporary file is gone");
  }
  return 0;
}
