#include "console/check/line_outputs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "console/message/translate.h"
#include "language/field_kinds.h"
#include "language/handler_fields.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/fields.h"
#include "register/value/planted_link.h"

namespace lorimat::console {
namespace {

using Cause = FindingCause;
using language::FileUse;

constexpr int kSetProperties = 48;  // SETP
constexpr int kFolderField = 1;     // of it
constexpr int kDirectionField = 1;  // of EMLINK

bool IsWritten(FileUse use, const EcrCmdCommand& translator) {
  if (use == FileUse::kExchanged) return !BeginsWith(translator.szCampi[kDirectionField], "UA");
  return use == FileUse::kWritten || use == FileUse::kReplaced;
}

// In a folder that is no other than that of the program a name may be long.
bool IsPlanted(int folder, const std::string& name) {
  if (folder == AT_FDCWD || name.front() == '/') return lorimat::IsPlantedLink(name);
  return lorimat::IsPlantedLink("/proc/self/fd/" + std::to_string(folder) + "/" + name);
}

}  // namespace

std::vector<LineOutput> OutputsOf(const EcrCmdCommand& translator, int opcode) {
  const language::CommandFields* command = language::find_handler_fields(opcode);
  if (command == nullptr) return {};
  std::vector<LineOutput> outputs;
  for (const int field : command->fields) {
    const FileUse use = language::file_use(opcode, field);
    if (!IsWritten(use, translator) || !Given(translator, field)) continue;
    LineOutput output = {field, translator.szCampi[field], use == FileUse::kReplaced};
    if (language::is_made_small(opcode, field)) lorimatutility::toLower(output.name.data());
    const size_t limit = language::text_limit(opcode, field);
    if (limit != 0 && output.name.size() > limit) output.name.resize(limit);
    outputs.push_back(std::move(output));
  }
  return outputs;
}

WorkFolder::WorkFolder() : folder_(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

int WorkFolder::descriptor() const { return folder_.is_open() ? folder_.get() : AT_FDCWD; }

bool WorkFolder::Follow(const EcrCmdCommand& translator, int opcode) {
  if (opcode != kSetProperties || !Given(translator, kFolderField)) return false;
  if (IsNamed(translator, kFolderField)) return false;
  Descriptor next(
      openat(descriptor(), translator.szCampi[kFolderField], O_PATH | O_DIRECTORY | O_CLOEXEC));
  // A folder that may not be searched is not entered.
  if (!next.is_open() || faccessat(next.get(), ".", X_OK, AT_EACCESS) != 0) return false;
  folder_ = std::move(next);
  return true;
}

std::optional<Finding> OutputFault(int folder, const LineOutput& output, const std::string& key,
                                   const KeptFiles& kept) {
  if (output.name.empty()) return std::nullopt;
  if (const char* what = kept.Find(folder, output.name)) {
    return MakeFinding(Cause::kWritesKept, {key, output.name, std::string(Translated(what))});
  }
  if (IsPlanted(folder, output.name)) {
    return MakeFinding(Cause::kWritesPlantedLink, {key, output.name});
  }
  struct stat status;
  if (fstatat(folder, output.name.c_str(), &status, 0) != 0 || S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  if (output.is_removed) return MakeFinding(Cause::kRemovesNoFile, {key, output.name});
  if (S_ISBLK(status.st_mode)) return MakeFinding(Cause::kWritesDisk, {key, output.name});
  return std::nullopt;
}

std::optional<Finding> ErrorFileFault(int folder, const std::string& name, const KeptFiles& kept) {
  if (name.empty()) return std::nullopt;
  for (const std::string& one : {name, name + ".tmp"}) {
    if (const char* what = kept.Find(folder, one)) {
      return MakeFinding(Cause::kErrorFileKept, {one, std::string(Translated(what))});
    }
    struct stat status;
    const bool no_file = fstatat(folder, one.c_str(), &status, 0) == 0 && !S_ISREG(status.st_mode);
    if (no_file || IsPlanted(folder, one)) return MakeFinding(Cause::kErrorFileNoFile, {one});
  }
  return std::nullopt;
}

std::optional<Finding> LineOutputFault(const Language& language, int opcode, int folder,
                                       const KeptFiles& kept) {
  for (const LineOutput& output : OutputsOf(language.translator(), opcode)) {
    std::optional<Finding> fault =
        OutputFault(folder, output, language.FieldName(opcode, output.field), kept);
    if (fault) return fault;
  }
  return std::nullopt;
}

}  // namespace lorimat::console
