// Faults on demand: what a device can suffer, for hosts that want to see what they do about it.
// A plan holds the faults that wait; the register asks it before each operation. A struck
// operation changes nothing and answers the fault's code.
//
//   device.AddFault({.name = "paper-end"});                     // the next operation that prints
//   device.AddFault({.name = "lost-answer", .operation = ClientOperation::kPrintRecTotalEx});
//   device.AddFault({.name = "code", .code = RTF_EFPTR_BAD_VAT, .when = FaultWhen::kNth,
//                    .count = 3});
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "register/value/register_failure.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat {

// A fault that has a name.
struct FaultKind {
  std::string_view name;     // "paper-end"
  int code;                  // what a struck operation answers; 0: it is carried out all the same
  std::string_view what;     // for a person
  std::string_view strikes;  // which operations, for a person
  unsigned effects;          // which operations: one bit of OperationEffect at least
  bool reading;              // strikes reading too, when it is there for every call or by name
};

// All of them, in the order in which they are listed. The fault "code", which answers any
// result code, is not among them.
std::span<const FaultKind> FaultKinds();
const FaultKind* FindFaultKind(std::string_view name);

// Names that the register itself asks for.
inline constexpr std::string_view kPaperEndFault = "paper-end";
inline constexpr std::string_view kPaperNearEndFault = "paper-near-end";
inline constexpr std::string_view kCoverOpenFault = "cover-open";
inline constexpr std::string_view kOffLineFault = "off-line";
inline constexpr std::string_view kBusyFault = "busy";
inline constexpr std::string_view kFiscalMemoryFullFault = "fiscal-memory-full";
inline constexpr std::string_view kLostAnswerFault = "lost-answer";
// Any result code, by number.
inline constexpr std::string_view kCodeFault = "code";

enum class FaultWhen {
  kNext,   // the next operation that it can strike
  kNth,    // the one of that number, counted from 1
  kEvery,  // each one, until it is taken away
  kTimes,  // the next ones, as many as the number says; for polls of a busy device
};

// "next", "nth", "every", "times".
std::string_view FaultWhenName(FaultWhen when);
std::optional<FaultWhen> FindFaultWhen(std::string_view name);

struct Fault {
  std::string name = {};  // of a FaultKind, or "code" for any other result code
  int code = 0;           // with "code": what the operation answers, 1 to kMostCode
  // Strikes this operation of the client alone; none: all that it can.
  std::optional<ClientOperation> operation = {};
  FaultWhen when = FaultWhen::kNext;
  int count = 1;  // for kNth and kTimes: what is left of it

  bool operator==(const Fault&) const = default;
};

class FaultPlan {
 public:
  // The most faults that wait at once.
  static constexpr size_t kMostFaults = 100;
  static constexpr int kMostCount = 1'000'000;
  static constexpr int kMostCode = 999'999;

  // Why a fault cannot be: a name or an operation that does not exist, an operation that it
  // cannot strike, a code or a number out of range. Nothing when it can.
  static std::optional<RegisterFailure> Refusal(const Fault& fault);

  // Throws RegisterError with that failure, and when the plan is full. A fault with a name gets the
  // code of its kind.
  void Add(Fault fault);
  void Clear();
  const std::vector<Fault>& faults() const { return faults_; }
  bool empty() const { return faults_.empty(); }

  // As text, one fault a line, and back; false for a text that is no plan, which leaves *plan
  // as it is.
  std::string ToText() const;
  static bool FromText(std::string_view text, FaultPlan* plan);

  // --- What the register asks
  struct Strike {
    int before = 0;  // not 0: the operation is not carried out and answers this
    int after = 0;   // not 0: it is carried out and answers this
  };
  // An operation begins. Counts the faults that can strike it and uses up the one that does: one
  // at a time, the first that was added; another that is due waits. While a document is open
  // nothing opens another. `effects` says what this call does where the operation does one thing
  // or the other; 0: all that it can do. What is no operation of the client is not struck.
  Strike Begin(std::optional<ClientOperation> operation, bool document_open, unsigned effects = 0);
  // The state that a poll shows, one of RTF_S_*. The polls of a busy device count.
  int PollState();
  // Whether a fault of this name strikes the next operation that it can: then the device shows
  // its condition.
  bool Waits(std::string_view name) const;
  // Grows with each change, also when a fault counts: what stores the plan looks at it.
  uint64_t changes() const { return changes_; }

 private:
  bool CanStrike(const Fault& fault, ClientOperation operation, unsigned effects) const;
  // Counts a fault that is due and forgets it when it is used up.
  void Use(size_t index);

  std::vector<Fault> faults_;
  uint64_t changes_ = 0;
};

}  // namespace lorimat
