#include "console/host/library_start.h"

#include <fcntl.h>
#include <fmt/format.h>

#include "console/check/definition_fault.h"
#include "console/host/installed_files.h"
#include "console/message/failure.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"

namespace lorimat::console {
namespace {

constexpr size_t kLibraryPathLimit = 79;  // of a definition file's path
constexpr int kDefinitionRefused = 2;     // TradInit

void TellAboutDefinition(const std::string& language, bool verbose,
                         const DefinitionFile& definition, Streams& streams) {
  const bool overridden = !definition.installation_dir.empty();
  if (overridden && (!language.empty() || verbose)) {
    TellNote(streams, Tr("InstallationDir={} in the registry {} overrides {}: the definition "
                         "file is {}",
                         Shown(definition.installation_dir), Shown(definition.registry_file),
                         language.empty() ? Tr("the default") : "--language " + Shown(language),
                         Shown(definition.path)));
  } else if (verbose) {
    Tell(streams, Tr("definition file {}", Shown(definition.path)));
  }
}

// What the console says of lines comes from the translator within it, and what they do from the
// library.
void TellOtherLibrary(const Library& library, Streams& streams) {
  const LibraryIdentity& loaded = library.identity();
  if (loaded.version != loaded.own_version) {
    TellWarning(streams,
                Tr("the library is version {}, and this program checks and explains lines by "
                   "version {}: what it says of them may not be what the library does",
                   VersionText(loaded.version), VersionText(loaded.own_version)));
  } else if (!loaded.answers_alike) {
    TellWarning(streams,
                Tr("the library calls itself version {}, as this program does, and answers "
                   "otherwise: what is said of lines may not be what the library does",
                   VersionText(loaded.version)));
  }
}

}  // namespace

// Hands the definition file to the library, having looked at it first: the library says only
// "2", and takes merkelin.ini of the current directory when it cannot open the file.
void StartLibrary(const std::string& language, bool verbose, Library& library, Device& device,
                  Streams& streams) {
  TellOtherLibrary(library, streams);
  const DefinitionFile definition = FindDefinitionFile(language);
  TellAboutDefinition(language, verbose, definition, streams);
  const bool overridden = !definition.installation_dir.empty();
  const std::string origin =
      overridden ? Tr(" (named by InstallationDir in the registry {}; set LORIMATRT_REGISTRY to "
                      "another file to leave it out)",
                      Shown(definition.registry_file))
                 : "";
  DefinitionReport report;
  try {
    RequireDefinitionFile(definition.path);
  } catch (const Failure& failure) {
    throw Failure(failure.what() + origin);
  }
  try {
    report = InspectDefinition(definition.path);
  } catch (const Failure& failure) {
    throw Failure(Tr("definition file {}", failure.what()) + origin);
  }
  // The library cuts a longer path. A host's own can be named shorter, by its descriptor; the
  // registry's cannot.
  std::string path = definition.path;
  Descriptor open_file;
  if (path.size() > kLibraryPathLimit) {
    if (overridden) {
      throw Failure(Tr(
          "definition file {}: its path is longer than the {} characters that the library takes{}",
          Shown(path), kLibraryPathLimit, origin));
    }
    open_file = Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    path = fmt::format("/proc/self/fd/{}", open_file.get());
  }
  const int code = library.Init(path, device.client());
  if (code != 0) {
    const std::string cause =
        code == kDefinitionRefused && report.fault
            ? fmt::format(":{}: {}", report.fault->line, Shown(WhatText(*report.fault)))
            : Tr(": the library answered {}", code);
    throw Failure(Tr("definition file {}", Shown(definition.path)) + cause + origin);
  }
  if (report.commands == 0) {
    TellWarning(streams,
                Tr("definition file {} names no commands (section [OPCOD]), so every line will "
                   "fail{}",
                   Shown(definition.path), origin));
  }
}

}  // namespace lorimat::console
