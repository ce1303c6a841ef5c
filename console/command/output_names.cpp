#include "console/command/output_names.h"

#include <fcntl.h>
#include <unistd.h>

#include <optional>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

// Standard error takes messages and the trace, and may be one with standard output.
std::optional<FileIdentity> IdentityOfOutput(const OutputName& output) {
  if (output.name != "-") return IdentityOf(AT_FDCWD, output.name);
  return output.is_trace ? std::nullopt : IdentityOfStream(STDOUT_FILENO);
}

// What standard output replaces, a shell has replaced before.
void RequireNotKept(const OutputName& output, const std::vector<KeptFile>& kept) {
  if (output.name == "-") return;
  const char* found = KeptFiles(kept).Find(AT_FDCWD, output.name);
  if (found == nullptr) return;
  const std::string what(Translated(found));
  if (output.is_recording) {
    throw Failure(Tr("{}: is {}; the recording would replace it", Shown(output.name), what));
  }
  throw Failure(output.is_trace
                    ? Tr("{}: is {}; the trace would replace it", Shown(output.name), what)
                    : Tr("{}: is {}; the paper would replace it", Shown(output.name), what));
}

bool AreOnePlace(const OutputName& one, const OutputName& other) {
  if (one.is_trace == other.is_trace && one.name == "-" && other.name == "-") return true;
  const std::optional<FileIdentity> identity = IdentityOfOutput(one);
  return identity && identity == IdentityOfOutput(other);
}

}  // namespace

void RequireApart(const std::vector<OutputName>& outputs, const std::vector<KeptFile>& kept) {
  for (const OutputName& output : outputs) {
    if (output.name.empty()) continue;
    RequireNotKept(output, kept);
    for (const OutputName& before : outputs) {
      if (&before == &output) break;
      if (before.name.empty() || !AreOnePlace(before, output)) continue;
      throw Failure(
          Tr("{} {}: {} goes there already", output.option, Shown(output.name), before.what));
    }
  }
}

}  // namespace lorimat::console
