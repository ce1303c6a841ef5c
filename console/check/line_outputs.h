// The files that a line of the language writes, as the translator reads the line: by the numbers of
// its fields, whatever words or numbers they were written with.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "console/check/kept_files.h"
#include "console/check/language.h"
#include "console/message/finding.h"
#include "console/terminal/streams.h"

class EcrCmdCommand;

namespace lorimat::console {

struct LineOutput {
  int field = 0;            // its number
  std::string name;         // as it is opened
  bool is_removed = false;  // what has the name goes first
};

// Of the line that the translator has read last, with this opcode.
std::vector<LineOutput> OutputsOf(const EcrCmdCommand& translator, int opcode);

// The folder that names count from, followed over lines that are looked at ahead of being run. It
// begins as the folder of the program.
class WorkFolder {
 public:
  WorkFolder();
  // Of the line that the translator has read last. Whether the folder is another one now.
  bool Follow(const EcrCmdCommand& translator, int opcode);
  int descriptor() const;

 private:
  Descriptor folder_;
};

// Why the file of this name must not be written: a kept one, somebody else's link, a device. The
// field's key stands in the finding.
std::optional<Finding> OutputFault(int folder, const LineOutput& output, const std::string& key,
                                   const KeptFiles& kept);
// The same of an "@" line's error file, which is removed, as is the one of the ending that the
// library gives it while the batch runs.
std::optional<Finding> ErrorFileFault(int folder, const std::string& name, const KeptFiles& kept);

// The first fault of the command that the translator has read last.
std::optional<Finding> LineOutputFault(const Language& language, int opcode, int folder,
                                       const KeptFiles& kept);

}  // namespace lorimat::console
