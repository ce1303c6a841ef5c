// Why a register, its file or its pictures fail: a value with its arguments and its place, from
// which whoever shows it makes a sentence in the reader's language. The register itself makes an
// English one of it, for hosts that print what they catch.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace lorimat {

// Behind each what its numbers and its text are. Sizes are in bytes.
enum class FailureCause : uint8_t {
  kNone,
  kUnknown,
  kNoMemory,
  kSystem,   // an errno value
  kForeign,  // an errno value or 0; what an exception says that is none of the register's
  // --- The register's file
  kNoName,
  kIsFolder,
  kNoRegularFile,
  kEmptyFile,
  kOtherProgram,
  kNoDatabase,
  kInUse,
  kNames,       // how many; to be written
  kNamesNoLog,  // how many; to be read
  kOvertaken,
  kDisturbed,
  kUntidy,
  kLogNotShared,
  kNewerVersion,  // of its tables, the newest that is known
  kCutShort,      // bytes that are left, of how many
  kDamagedFile,
  kDamagedVersion,
  kDamagedValue,   // the name of what makes no sense
  kDamagedTables,  // an SQLite code; what SQLite says
  kCannotOpen,
  kOpenRefused,  // an errno value
  kCannotWrite,
  kWriteRefused,   // an errno value
  kFolderRefused,  // an errno value
  kLoneLog,        // the log's name
  kLogToTakeOver,  // the log's name
  kDiskFull,
  kCutOff,
  kCutOffBySystem,  // an errno value
  kLogUntidy,
  kLogRead,
  kNotOnDisk,
  kGone,
  kLogGone,
  kStorage,  // an SQLite code; what SQLite calls it
  // --- A new file
  kTaken,
  kLoneBeside,   // the name of what lies beside it
  kMakeRefused,  // an errno value
  kUnfinished,
  // --- Faults
  kAtWork,
  kPlanFull,      // the most faults
  kUnknownFault,  // its name, cut and without control characters
  kFaultCode,     // the code of the fault, the one given; its name
  kResultCode,    // the highest code, the one given
  kUnknownOccasion,
  kFaultCount,  // the highest count, the one given
  kUnknownOperation,
  kAnswersNoCode,  // ClientOperation
  kCannotStrike,   // ClientOperation; the fault's name
  // --- Pictures
  kPictureNotDrawn,  // a cairo_status_t; what cairo calls it
  kPictureNoMemory,
  kPaperTooLong,  // dots, the most
  kLast = kPaperTooLong,
};

// What a failure is of.
enum class FailurePlace : uint8_t { kNone, kFile, kMemory };

struct RegisterFailure {
  static constexpr size_t kNumbers = 2;

  FailureCause cause = FailureCause::kNone;
  std::array<int64_t, kNumbers> numbers{};
  std::string text = {};  // any bytes
  FailurePlace place = FailurePlace::kNone;
  std::string file = {};  // of kFile; any bytes
  // Nobody knows before the next start whether it is stored all the same.
  bool doubtful = false;

  bool operator==(const RegisterFailure&) const = default;
};

RegisterFailure MakeFailure(FailureCause cause, std::initializer_list<int64_t> numbers = {},
                            std::string text = {}) noexcept;
// The same of a file.
RegisterFailure MakeFileFailure(std::string file, FailureCause cause,
                                std::initializer_list<int64_t> numbers = {},
                                std::string text = {}) noexcept;

// What the fields of a cause's sentence are, in their order, a letter for each:
//
//   n number   e message of the system for an errno value   o operation of the client   t the text
std::string_view FailureFields(FailureCause cause);

// The English of a cause, with "{}" for its fields. Needs no memory.
std::string_view EnglishPattern(FailureCause cause);

// The English sentence, "FILE: cause". A NUL byte shows as "?", or the text would end there.
std::string EnglishFailure(const RegisterFailure& failure);
// The same without the file.
std::string EnglishCause(const RegisterFailure& failure);

// Behind a sentence, for what is doubtful.
inline constexpr std::string_view kDoubtfulEnglish =
    "; whether it is stored is not known until the next start";

}  // namespace lorimat
