#include "console/message/register_failure_text.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <filesystem>
#include <new>
#include <nlohmann/json.hpp>
#include <system_error>

#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/register_error.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

using Cause = lorimat::FailureCause;

struct FailureSentence {
  Cause cause;
  const char* text;  // with a "{}" for each of FailureFields
};

constexpr FailureSentence kSentences[] = {
    {Cause::kUnknown, TR_TEXT("for an unknown cause")},
    {Cause::kNoMemory, TR_TEXT("there is not enough memory")},
    // --- The register's file
    {Cause::kNoName, TR_TEXT("the register's file has no name")},
    {Cause::kIsFolder, TR_TEXT("is a directory, not a register")},
    {Cause::kNoRegularFile, TR_TEXT("is no regular file")},
    {Cause::kEmptyFile, TR_TEXT("the file is empty")},
    {Cause::kOtherProgram, TR_TEXT("is the database of another program")},
    {Cause::kNoDatabase, TR_TEXT("is not a register of this program: it is no SQLite database")},
    {Cause::kInUse, TR_TEXT("is in use by another program")},
    {Cause::kNames, TR_TEXT("has {} names (hard links), and its log goes by one of them: keep one "
                            "name, that with the log beside it, and copy with lorimat copy")},
    {Cause::kNamesNoLog,
     TR_TEXT("has {} names (hard links), and no log lies beside this one: what was stored last may "
             "stand beside another; read it by that name, or keep one name")},
    {Cause::kOvertaken, TR_TEXT("was written by another program meanwhile; nothing more is stored "
                                "until it is opened again")},
    {Cause::kDisturbed,
     TR_TEXT("another program has begun to work with it meanwhile; read it again")},
    {Cause::kUntidy,
     TR_TEXT("has to be put in order by the program that writes it, before it is read")},
    {Cause::kLogNotShared,
     TR_TEXT("cannot be kept here: its log cannot be shared between programs")},
    {Cause::kNewerVersion,
     TR_TEXT(
         "was made by a newer version: its tables are of version {}, known are those up to {}")},
    {Cause::kCutShort, TR_TEXT("the file is cut short: {} bytes are left of {}")},
    {Cause::kDamagedFile, TR_TEXT("the file is damaged")},
    {Cause::kDamagedVersion, TR_TEXT("the register is damaged: its version makes no sense")},
    {Cause::kDamagedValue, TR_TEXT("the register is damaged: {} makes no sense")},
    {Cause::kDamagedTables, TR_TEXT("the register is damaged ({})")},
    {Cause::kCannotOpen, TR_TEXT("cannot be opened")},
    {Cause::kOpenRefused, TR_TEXT("cannot be opened: {}")},
    {Cause::kCannotWrite, TR_TEXT("cannot be written")},
    {Cause::kWriteRefused, TR_TEXT("cannot be written: {}")},
    {Cause::kFolderRefused, TR_TEXT("its folder cannot be written: {}")},
    {Cause::kLoneLog, TR_TEXT("is not there, or empty, and {} is: what was stored last stands in "
                              "it alone. Put the register back beside it, or move it away")},
    {Cause::kLogToTakeOver, TR_TEXT("cannot be written here, and {} has to be taken over into it: "
                                    "copy both to a folder where they can be written")},
    {Cause::kDiskFull, TR_TEXT("the disk is full")},
    {Cause::kCutOff, TR_TEXT("cannot be read or written to its end")},
    {Cause::kCutOffBySystem, TR_TEXT("cannot be read or written to its end: {}")},
    {Cause::kLogUntidy,
     TR_TEXT(
         "its log cannot be put in order after a failure, and nothing more is stored until it is")},
    {Cause::kLogRead,
     TR_TEXT(
         "the disk failed, and the log has to be taken over into the file: nothing more is stored "
         "until those who read the register meanwhile have ended")},
    {Cause::kNotOnDisk,
     TR_TEXT("the disk did not take what was transferred last, and a cut of the power may take it "
             "away: transfer it again")},
    {Cause::kGone, TR_TEXT("was removed, moved or replaced while the register worked on it")},
    {Cause::kLogGone,
     TR_TEXT("its log was removed, moved or replaced while the register worked on it")},
    {Cause::kStorage, TR_TEXT("SQLite failed ({})")},
    // --- A new file
    {Cause::kTaken, TR_TEXT("is there already, and is not overwritten")},
    {Cause::kLoneBeside, TR_TEXT("is not there, and {} is, which would be taken for a part of it: "
                                 "put the register back beside it, or move it away")},
    {Cause::kMakeRefused, TR_TEXT("cannot be made: {}")},
    {Cause::kUnfinished,
     TR_TEXT(
         "is left of a register that was not finished, or another one is being made; remove it")},
    // --- Faults
    {Cause::kAtWork, TR_TEXT("the register is at an operation")},
    {Cause::kPlanFull, TR_TEXT("{} faults wait already")},
    {Cause::kUnknownFault, TR_TEXT("unknown fault: {}")},
    {Cause::kFaultCode, TR_TEXT("{} answers {}, not {}")},
    {Cause::kResultCode, TR_TEXT("a result code is 1 to {}, not {}")},
    {Cause::kUnknownOccasion, TR_TEXT("unknown occasion")},
    {Cause::kFaultCount, TR_TEXT("a number of operations is 1 to {}, not {}")},
    {Cause::kUnknownOperation, TR_TEXT("unknown operation")},
    {Cause::kAnswersNoCode, TR_TEXT("{} answers no result code")},
    {Cause::kCannotStrike, TR_TEXT("{} cannot strike {}")},
    // --- Pictures
    {Cause::kPictureNotDrawn, TR_TEXT("the picture cannot be drawn: {}")},
    {Cause::kPictureNoMemory, TR_TEXT("there is no memory for the picture")},
    {Cause::kPaperTooLong,
     TR_TEXT("the paper is {} dots long, and a PNG takes {} at most; a PDF has pages")},
};

// The number of the system; 0 for errors of another kind.
int SystemNumber(const std::error_code& code) {
  const bool of_system =
      code.category() == std::generic_category() || code.category() == std::system_category();
  return of_system ? code.value() : 0;
}

std::string ForeignText(int64_t error, std::string_view words) {
  if (error != 0) return SystemMessage(static_cast<int>(error));
  return Tr("an error that was not expected: {}", words);
}

std::string CauseText(const lorimat::RegisterFailure& failure) {
  if (failure.cause == Cause::kSystem) return SystemMessage(static_cast<int>(failure.numbers[0]));
  if (failure.cause == Cause::kForeign) return ForeignText(failure.numbers[0], failure.text);
  for (const FailureSentence& row : kSentences) {
    if (row.cause != failure.cause) continue;
    fmt::dynamic_format_arg_store<fmt::format_context> fields;
    const int64_t* number = failure.numbers.data();
    for (const char field : lorimat::FailureFields(failure.cause)) {
      switch (field) {
        case 'n':
          fields.push_back(*number++);
          break;
        case 'e':
          fields.push_back(SystemMessage(static_cast<int>(*number++)));
          break;
        case 'o':
          fields.push_back(ClientOperationName(static_cast<ClientOperation>(*number++)));
          break;
        default:
          fields.push_back(failure.text);
      }
    }
    return fmt::vformat(Translated(row.text), fields);
  }
  return {};
}

}  // namespace

std::string RegisterFailureWords(const lorimat::RegisterFailure& failure) {
  std::string cause = CauseText(failure);
  if (failure.doubtful) {
    cause += Translated(TR_TEXT("; whether it is stored is not known until the next start"));
  }
  switch (failure.place) {
    case lorimat::FailurePlace::kFile:
      return fmt::format("{}: {}", failure.file, cause);
    case lorimat::FailurePlace::kMemory:
      return Tr("register in memory: {}", cause);
    case lorimat::FailurePlace::kNone:
      break;
  }
  return cause;
}

std::string RegisterFailureText(const lorimat::RegisterFailure& failure) {
  return Shown(RegisterFailureWords(failure));
}

std::string ErrorText(const std::exception& error) {
  if (const auto* own = dynamic_cast<const lorimat::RegisterError*>(&error)) {
    return RegisterFailureText(own->failure());
  }
  if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
    return Tr("there is not enough memory");
  }
  if (const auto* file = dynamic_cast<const std::filesystem::filesystem_error*>(&error)) {
    const std::string cause = ForeignText(SystemNumber(file->code()), file->what());
    return Shown(fmt::format("{}: {}", file->path1().native(), cause));
  }
  if (const auto* system = dynamic_cast<const std::system_error*>(&error)) {
    return Shown(ForeignText(SystemNumber(system->code()), system->what()));
  }
  if (const auto* json = dynamic_cast<const nlohmann::json::exception*>(&error)) {
    return Tr("JSON that was not expected (error {})", json->id);
  }
  return Shown(ForeignText(0, error.what()));
}

}  // namespace lorimat::console
