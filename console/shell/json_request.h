// A request of a program that drives the shell: one line with a JSON object.
//
//   {"id": 7, "line": "VEND REP=1, PRE=2.50"}
//
// A request that is not wholly understood is refused: a line that would run in another way than its
// sender meant is money.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "console/message/json_text.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {

// The longest request, in bytes: the longest line with each character as \u00XX, and room for the
// rest.
constexpr size_t kLongestRequest = 65536;

struct RequestError {
  enum Kind {
    kTooLong,
    kNotJson,
    kNotAnObject,
    kMemberTwice,
    kMemberUnknown,
    kMemberMissing,
    kWrongType,
    kNulByte,
    kLineFeed,
    kFault,   // the words behind ".fault"
    kBatch,   // the files of an "@" line, or what its lines write
    kOutput,  // a file that the line writes
    kLast = kOutput
  };
  Kind kind = kNotJson;
  std::string cause;    // in English
  uint64_t column = 0;  // of the request, in bytes from 1
};

// "not-json": for programs.
const char* RequestErrorName(RequestError::Kind kind);

// NOLINTNEXTLINE(bugprone-exception-escape): a Json is moved without a throw, by its own promise.
struct JsonRequest {
  Json id;  // a text or a whole number; null when the request has none that can be told
  std::string line;
  std::optional<RequestError> error;  // then the line is not to be run
};

// Reads a request; the source has been read with kLongestRequest bytes kept. Any bytes are taken.
JsonRequest ReadRequest(const SourceLine& source);

}  // namespace lorimat::console
