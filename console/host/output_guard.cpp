#include "console/host/output_guard.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <optional>

#include "console/check/line_outputs.h"
#include "console/host/installed_files.h"
#include "console/message/failure.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {
namespace {

std::string Words(const std::optional<Finding>& fault) {
  if (!fault) return {};
  const FindingSentences sentences = SentencesOf(*fault);
  return fmt::format("{}: {}", Shown(sentences.what), Shown(sentences.effect));
}

}  // namespace

std::string OutputGuard::LineFault(const std::string& line) const {
  return Words(LineOutputFault(language_, language_.ReadLine(line), AT_FDCWD, kept_));
}

std::string OutputGuard::ErrorFileFault(const std::string& name) const {
  return Words(console::ErrorFileFault(AT_FDCWD, name, kept_));
}

std::string OutputGuard::BatchFault(const std::string& file, const std::string& place,
                                    const std::string& error_file,
                                    const std::vector<KeptFile>& of_batch) const {
  KeptFiles kept = kept_;
  for (const KeptFile& one : of_batch) kept.Add(one);
  try {
    LineReader reader(file, &interrupted);
    WorkFolder folder;
    SourceLine line;
    while (reader.Next(&line)) {
      const int opcode = language_.ReadLine(line.text);
      std::optional<Finding> fault = LineOutputFault(language_, opcode, folder.descriptor(), kept);
      if (!fault && folder.Follow(language_.translator(), opcode)) {
        fault = console::ErrorFileFault(folder.descriptor(), error_file, kept_);
      }
      if (fault) return fmt::format("{}:{}: {}", place, line.number, Words(fault));
    }
  } catch (const Failure&) {
    // What cannot be read the library refuses, or reads as far as this went.
  }
  if (interrupted == 0) return {};
  return Tr("{}: stopped by {} ahead of its first line", place, InterruptName());
}

KeptFiles FilesOfWork(const std::vector<KeptFile>& of_device, const std::string& definition_file,
                      const std::string& library_file, int output) {
  KeptFiles kept(of_device);
  kept.Add({definition_file, TR_TEXT("the definition file")});
  kept.Add({library_file, TR_TEXT("the library")});
  kept.Add({RegistryFile(), TR_TEXT("the file of the library's settings")});
  kept.Add({"/proc/self/exe", TR_TEXT("the program")});
  kept.AddStream(output, TR_TEXT("the file that standard output goes to"));
  kept.AddStream(STDERR_FILENO, TR_TEXT("the file that standard error goes to"));
  return kept;
}

}  // namespace lorimat::console
