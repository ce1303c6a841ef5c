#include "register/value/register_failure.h"

#include <fmt/args.h>
#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat {
namespace {

struct Sentence {
  FailureCause cause;
  std::string_view fields;
  std::string_view english;
};

constexpr Sentence kSentences[] = {
    {FailureCause::kUnknown, "", "for an unknown cause"},
    {FailureCause::kNoMemory, "", "there is not enough memory"},
    {FailureCause::kSystem, "e", "{}"},
    {FailureCause::kForeign, "t", "{}"},
    // --- The register's file
    {FailureCause::kNoName, "", "the register's file has no name"},
    {FailureCause::kIsFolder, "", "is a directory, not a register"},
    {FailureCause::kNoRegularFile, "", "is no regular file"},
    {FailureCause::kEmptyFile, "", "the file is empty"},
    {FailureCause::kOtherProgram, "", "is the database of another program"},
    {FailureCause::kNoDatabase, "", "is not a register of this program: it is no SQLite database"},
    {FailureCause::kInUse, "", "is in use by another program"},
    {FailureCause::kNames, "n",
     "has {} names (hard links), and its log goes by one of them: keep one name, that with the log "
     "beside it, and copy with lorimat copy"},
    {FailureCause::kNamesNoLog, "n",
     "has {} names (hard links), and no log lies beside this one: what was stored last may stand "
     "beside another; read it by that name, or keep one name"},
    {FailureCause::kOvertaken, "",
     "was written by another program meanwhile; nothing more is stored until it is opened again"},
    {FailureCause::kDisturbed, "",
     "another program has begun to work with it meanwhile; read it again"},
    {FailureCause::kUntidy, "",
     "has to be put in order by the program that writes it, before it is read"},
    {FailureCause::kLogNotShared, "",
     "cannot be kept here: its log cannot be shared between programs"},
    {FailureCause::kNewerVersion, "nn",
     "was made by a newer version: its tables are of version {}, known are those up to {}"},
    {FailureCause::kCutShort, "nn", "the file is cut short: {} bytes are left of {}"},
    {FailureCause::kDamagedFile, "", "the file is damaged"},
    {FailureCause::kDamagedVersion, "", "the register is damaged: its version makes no sense"},
    {FailureCause::kDamagedValue, "t", "the register is damaged: {} makes no sense"},
    {FailureCause::kDamagedTables, "t", "the register is damaged ({})"},
    {FailureCause::kCannotOpen, "", "cannot be opened"},
    {FailureCause::kOpenRefused, "e", "cannot be opened: {}"},
    {FailureCause::kCannotWrite, "", "cannot be written"},
    {FailureCause::kWriteRefused, "e", "cannot be written: {}"},
    {FailureCause::kFolderRefused, "e", "its folder cannot be written: {}"},
    {FailureCause::kLoneLog, "t",
     "is not there, or empty, and {} is: what was stored last stands in it alone. Put the register "
     "back beside it, or move it away"},
    {FailureCause::kLogToTakeOver, "t",
     "cannot be written here, and {} has to be taken over into it: copy both to a folder where "
     "they can be written"},
    {FailureCause::kDiskFull, "", "the disk is full"},
    {FailureCause::kCutOff, "", "cannot be read or written to its end"},
    {FailureCause::kCutOffBySystem, "e", "cannot be read or written to its end: {}"},
    {FailureCause::kLogUntidy, "",
     "its log cannot be put in order after a failure, and nothing more is stored until it is"},
    {FailureCause::kLogRead, "",
     "the disk failed, and the log has to be taken over into the file: nothing more is stored "
     "until "
     "those who read the register meanwhile have ended"},
    {FailureCause::kNotOnDisk, "",
     "the disk did not take what was transferred last, and a cut of the power may take it away: "
     "transfer it again"},
    {FailureCause::kGone, "", "was removed, moved or replaced while the register worked on it"},
    {FailureCause::kLogGone, "",
     "its log was removed, moved or replaced while the register worked on it"},
    {FailureCause::kStorage, "t", "SQLite failed ({})"},
    // --- A new file
    {FailureCause::kTaken, "", "is there already, and is not overwritten"},
    {FailureCause::kLoneBeside, "t",
     "is not there, and {} is, which would be taken for a part of it: put the register back beside "
     "it, or move it away"},
    {FailureCause::kMakeRefused, "e", "cannot be made: {}"},
    {FailureCause::kUnfinished, "",
     "is left of a register that was not finished, or another one is being made; remove it"},
    // --- Faults
    {FailureCause::kAtWork, "", "the register is at an operation"},
    {FailureCause::kPlanFull, "n", "{} faults wait already"},
    {FailureCause::kUnknownFault, "t", "unknown fault: {}"},
    {FailureCause::kFaultCode, "tnn", "{} answers {}, not {}"},
    {FailureCause::kResultCode, "nn", "a result code is 1 to {}, not {}"},
    {FailureCause::kUnknownOccasion, "", "unknown occasion"},
    {FailureCause::kFaultCount, "nn", "a number of operations is 1 to {}, not {}"},
    {FailureCause::kUnknownOperation, "", "unknown operation"},
    {FailureCause::kAnswersNoCode, "o", "{} answers no result code"},
    {FailureCause::kCannotStrike, "to", "{} cannot strike {}"},
    // --- Pictures
    {FailureCause::kPictureNotDrawn, "t", "the picture cannot be drawn: {}"},
    {FailureCause::kPictureNoMemory, "", "there is no memory for the picture"},
    {FailureCause::kPaperTooLong, "nn",
     "the paper is {} dots long, and a PNG takes {} at most; a PDF has pages"},
};

const Sentence* SentenceOf(FailureCause cause) {
  for (const Sentence& row : kSentences) {
    if (row.cause == cause) return &row;
  }
  return nullptr;
}

std::string WithoutNul(std::string text) {
  std::replace(text.begin(), text.end(), '\0', '?');
  return text;
}

}  // namespace

RegisterFailure MakeFailure(FailureCause cause, std::initializer_list<int64_t> numbers,
                            std::string text) noexcept {
  RegisterFailure failure;
  failure.cause = cause;
  std::copy_n(numbers.begin(), std::min(numbers.size(), RegisterFailure::kNumbers),
              failure.numbers.begin());
  failure.text = std::move(text);
  return failure;
}

RegisterFailure MakeFileFailure(std::string file, FailureCause cause,
                                std::initializer_list<int64_t> numbers, std::string text) noexcept {
  RegisterFailure failure = MakeFailure(cause, numbers, std::move(text));
  failure.place = FailurePlace::kFile;
  failure.file = std::move(file);
  return failure;
}

std::string_view FailureFields(FailureCause cause) {
  const Sentence* const sentence = SentenceOf(cause);
  return sentence == nullptr ? std::string_view() : sentence->fields;
}

std::string_view EnglishPattern(FailureCause cause) {
  const Sentence* const sentence = SentenceOf(cause);
  return sentence == nullptr ? std::string_view() : sentence->english;
}

std::string EnglishCause(const RegisterFailure& failure) {
  const Sentence* const sentence = SentenceOf(failure.cause);
  if (sentence == nullptr) return {};
  fmt::dynamic_format_arg_store<fmt::format_context> fields;
  const int64_t* number = failure.numbers.data();
  for (const char field : sentence->fields) {
    switch (field) {
      case 'n':
        fields.push_back(*number++);
        break;
      case 'e':
        fields.push_back(std::generic_category().message(static_cast<int>(*number++)));
        break;
      case 'o':
        fields.push_back(ClientOperationName(static_cast<ClientOperation>(*number++)));
        break;
      default:
        fields.push_back(std::string_view(failure.text));
    }
  }
  std::string text = WithoutNul(fmt::vformat(sentence->english, fields));
  if (failure.doubtful) text += kDoubtfulEnglish;
  return text;
}

std::string EnglishFailure(const RegisterFailure& failure) {
  switch (failure.place) {
    case FailurePlace::kFile:
      return WithoutNul(failure.file) + ": " + EnglishCause(failure);
    case FailurePlace::kMemory:
      return "register in memory: " + EnglishCause(failure);
    case FailurePlace::kNone:
      break;
  }
  return EnglishCause(failure);
}

}  // namespace lorimat
