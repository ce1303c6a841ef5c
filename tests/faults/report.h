// What a host knows of its day, in memory that it shares with the process that started it: it
// outlives the host however that ends, and making a note of something is no call that could fail.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "strike.h"

namespace lorimat {

// What an operation leaves behind for good when it answers 0.
struct Fact {
  enum Kind : int32_t {
    kNone,
    kSale,
    kInvoice,
    kRefund,
    kVoid,
    kNonFiscal,
    kAbandoned,
    kClosure,
    kProgrammed,  // `value` is a Programmed
    kKinds,
  };
  Kind kind = kNone;
  int64_t value = 0;  // the total of a document, in ten-thousandths
};

// What the host programs in the course of its day, each once.
enum Programmed : int32_t {
  kHeader,
  kTrailer,
  kDepartment,
  kRate,
  kFirstArticle,
  kSecondArticle,
  kProgrammedCount,
};

inline bool IsDocument(Fact::Kind kind) { return kind >= Fact::kSale && kind <= Fact::kVoid; }
// Credit notes and voids take off.
inline int64_t Sign(Fact::Kind kind) {
  return kind == Fact::kRefund || kind == Fact::kVoid ? -1 : 1;
}

struct Report {
  static constexpr int kMostFacts = 200;
  static constexpr int kMostWrongs = 4;

  // Answered 0, in this order.
  Fact facts[kMostFacts];
  int fact_count = 0;
  // Of the call that has not been answered yet.
  bool calling = false;
  Fact in_flight;
  // A call failed whose outcome the register called unknown, and nothing has been stored since; and
  // what it would leave behind.
  bool unknown = false;
  bool was_unknown = false;  // at any time
  Fact doubtful;
  // The open document, as far as it was answered.
  struct Open {
    enum Kind : int32_t { kNone, kOther, kCash, kReceipt } kind = kNone;
    int64_t subtotal = 0;  // of a receipt
  };
  Open open;
  bool transfer_closed = false;      // of the articles
  bool power_cut = false;            // the host died with its computer
  bool done = false;                 // the host came to the end
  long failed = 0;                   // calls of the system that were struck
  int refused = 0;                   // operations that answered a failure
  int calls = 0;                     // operations
  char now[64] = "";                 // the call that is being made, or was made last
  char struck[64] = "";              // the one in which the fault struck first
  long counts[strike::kKinds] = {};  // of what can be struck
  long answers = 0;                  // that can be lost
  char wrongs[kMostWrongs][240] = {};
  int wrong_count = 0;

  __attribute__((format(printf, 2, 3))) void Wrong(const char* format, ...) {
    if (wrong_count < kMostWrongs) {
      va_list values;
      va_start(values, format);
      std::vsnprintf(wrongs[wrong_count], sizeof wrongs[0], format, values);
      va_end(values);
    }
    ++wrong_count;
  }
  void Add(const Fact& fact) {
    if (fact.kind == Fact::kNone) return;
    if (fact_count < kMostFacts) {
      facts[fact_count++] = fact;
    } else {
      Wrong("the host's day is too long for its report");
    }
  }
};

}  // namespace lorimat
