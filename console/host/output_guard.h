// Stands between lines and the library: a line that would write over a file that is needed is not
// sent, and neither is a batch with such a line. The library opens what a line names, whatever it
// is.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "console/check/kept_files.h"
#include "console/check/language.h"

namespace lorimat::console {

class OutputGuard {
 public:
  // The words have to outlive this object.
  OutputGuard(const Language& language, KeptFiles kept)
      : language_(language), kept_(std::move(kept)) {}

  KeptFiles& kept() { return kept_; }

  // Why a line must not be sent, for a person; empty when it may. An "@" line is asked by the two
  // others.
  std::string LineFault(const std::string& line) const;
  // The same of the error file that an "@" line names, as the library opens it.
  std::string ErrorFileFault(const std::string& name) const;
  // The same of a batch file's lines, with the place of the first: none of them would be held up
  // once the library has the file. `of_batch` is kept besides. The library takes the error file's
  // name, empty for none, from the folder that the lines have gone to. A signal of interrupt.h ends
  // the reading, and is a fault too.
  std::string BatchFault(const std::string& file, const std::string& place,
                         const std::string& error_file,
                         const std::vector<KeptFile>& of_batch) const;

 private:
  const Language& language_;
  KeptFiles kept_;
};

// What every command keeps that sets a device to work: its files, the definition file that the
// option names, the library and its settings, the program, and what the standard streams lead to
// but the output of the program.
KeptFiles FilesOfWork(const std::vector<KeptFile>& of_device, const std::string& definition_file,
                      const std::string& library_file, int output);

}  // namespace lorimat::console
