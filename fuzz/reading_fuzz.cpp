// What reads a device and writes files of it: dumps, the article link, the work state, reports. The
// input: which lines, one byte each, a NUL, the file of articles, a NUL, the device's answers.
#include <iterator>

#include "fuzz/hostile_client.h"
#include "fuzz/translator_session.h"

namespace {

constexpr const char* kLines[] = {
#include "fuzz/reading_lines.inc"
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  InputParts parts(data, size);
  const std::string_view choice = parts.Next().substr(0, 8);
  WriteInput("in", parts.Next());
  HostileClient client(parts.Rest());
  TranslatorSession session(client);
  for (const char which : choice) {
    client.BeginLine();
    session.Run(kLines[static_cast<uint8_t>(which) % std::size(kLines)]);
  }
  for (long value = -2; value < 60; ++value) {
    session.translator().GetEcrConfVal(value);
    session.translator().GetEcrConfStr(value);
  }
  return 0;
}
