// A job: lines that a desk wants to be run, once, and what has become of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "door/log/document_kind.h"

namespace lorimat::door {

enum class JobState : uint8_t {
  kQueued,         // on the disk, nothing sent
  kRunning,        // its lines may be at the device
  kConfirmed,      // its effect is there, once
  kRejected,       // it has no effect, and will have none
  kUnknown,        // it may have had an effect, and the device has not been asked yet
  kNeedsOperator,  // asking did not tell
  kExpired,        // its time was over before it began
  kCancelled,      // taken back by its desk before it began
  kLast = kCancelled,
};

// "queued", "needs_operator".
std::string_view JobStateName(JobState state);
std::optional<JobState> FindJobState(std::string_view name);
// Whether a job may go from one to the other.
bool MayMove(JobState from, JobState to);
// Whether nothing leads out of it.
bool IsFinal(JobState state);

// Why a job went into a state.
enum class Why : uint8_t {
  kAccepted,
  kRefusedLine,
  kBegun,
  kAnswered,
  kLineFailed,
  kLeftOpen,
  kNothingRegistered,
  kLostAnswer,
  kLostDevice,
  kUnclearNumbers,
  kCutOff,
  kHang,
  kFoundDone,
  kFoundNotDone,
  kTriedOften,
  kNotNumbered,
  kOtherDevice,
  kWentBack,
  kFurtherOn,
  kOtherDocument,
  kClosedBetween,
  kOperatorDone,
  kOperatorNotDone,
  kExpired,
  kCancelled,
  kCopied,
  kMayHaveRun,
  kLast = kMayHaveRun,
};
// A sentence for a person.
std::string_view WhyText(Why why);

// What a job does that is resolved by asking the device.
enum class JobEffect : uint8_t {
  kDocument,  // one numbered document
  kClosing,   // one day closing
  kOther,     // no number tells of it: texts, reports, programming
  kReset,     // what is open is given up
  kLast = kReset,
};

// Whether a number of the device tells of it: that of its document, or of the closing.
constexpr bool IsNumbered(JobEffect effect) {
  return effect == JobEffect::kDocument || effect == JobEffect::kClosing;
}

// A mark is a letter and ten of these, by chance.
inline constexpr char kMarkBegin = 'R';
inline constexpr std::string_view kMarkLetters = "0123456789ABCDEFGHJKMNPQRSTVWXYZ";
inline constexpr size_t kMarkSize = 11;

// What a device tells of itself at a moment.
struct DeviceNumbers {
  std::string serial;
  int closure = 0;        // number of the last day closing
  int document = 0;       // of the last document of the day
  int invoice = 0;        // of the last invoice
  int64_t day_total = 0;  // ten-thousandths
  // Of all documents that there have been, which no closing changes; of a device that tells it.
  std::optional<int64_t> grand_total = {};  // ten-thousandths
  bool operator==(const DeviceNumbers&) const = default;
};

struct JobDocument {
  int closure = 0;
  int number = 0;
  std::string serial;
  std::string time;                   // ISO 8601; empty when neither device nor operator tells it
  std::optional<int64_t> total = {};  // ten-thousandths; nothing when an operator has told of it
  std::optional<DocumentKind> kind = {};  // nothing of a day closing, and in logs from before
  bool operator==(const JobDocument&) const = default;
};

// Receipts, credit notes and voids have one sequence of numbers, invoices another one.
struct DocumentName {
  int closure = 0;  // that it will belong to
  int number = 0;
  bool is_invoice = false;
  bool operator==(const DocumentName&) const = default;
};

struct LineAnswer {
  int line = 0;  // from 1
  long code = 0;
  std::string text;
  std::string explanation;  // empty for 0
  bool operator==(const LineAnswer&) const = default;
};

struct JobStep {
  int64_t time = 0;  // milliseconds since 1970, UTC
  JobState state = JobState::kQueued;
  Why why = Why::kAccepted;
  std::string note = {};  // an operator's reason
};

struct Job {
  int64_t id = 0;
  std::string desk;
  std::string key;     // of the desk
  std::string digest;  // of the body that it came with
  std::string reference;
  std::vector<std::string> lines;  // in the code page of the device
  JobEffect effect = JobEffect::kDocument;
  int64_t expires = 0;  // milliseconds since 1970, UTC
  JobState state = JobState::kQueued;
  int attempts = 0;  // how often it has begun
  std::string mark;  // printed on its document, and on no other
  std::optional<DeviceNumbers> baseline;
  std::optional<JobDocument> document;
  std::vector<LineAnswer> answers;  // of the last attempt
  std::vector<JobStep> history;
};

}  // namespace lorimat::door
