// The small texts of a conversation file: escapes, quoted texts, values and calls.
//
// A text is written with the escapes \n \r \t \\ \" \{ and \xNN, and with {TEXT*N}
// for TEXT repeated N times, so that every byte and every length can be shown.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "rpccommon/client/rtfclientoperation.h"

namespace conversation {

// A fault of the conversation file itself, or of what was found when it ran. line 0
// speaks of the file as a whole.
struct Failure : std::runtime_error {
  Failure(int at, const std::string& message) : std::runtime_error(message), line(at) {}
  int line;
};

// The bytes that a written text stands for. Throws Failure (line 0) on a bad escape.
std::string Unescape(std::string_view written);

// How many bytes `Unescape` may make of it, roughly and at least: for whoever has to refuse what
// would fill the memory. No bad escape counts.
std::uintmax_t UnescapedSize(std::string_view written);

// The text in double quotes with escapes; a run of more than 40 equal bytes shows as {X*N}.
std::string Quote(std::string_view bytes);

// The text as it stands without quotes, behind "> ": its last blank is escaped, its quotes are not.
std::string Escape(std::string_view bytes);

// An argument, an answer or an out-parameter.
struct Value {
  enum Kind {
    kWord,  // a number, true, false, null, kept
    kText,  // "..."
    kAny,   // * : accepted whatever it is
  };
  Kind kind = kWord;
  std::string text;

  static Value Word(std::string word) { return {kWord, std::move(word)}; }
  static Value Text(std::string bytes) { return {kText, std::move(bytes)}; }
  // The word "kept", of an out-parameter: the operation leaves it as it is.
  bool IsKept() const { return kind == kWord && text == "kept"; }
  std::string Shown() const;
  // As an expectation against what was seen.
  bool Fits(const Value& seen) const;
};

std::string Shown(const std::vector<Value>& values);
bool Fit(const std::vector<Value>& expected, const std::vector<Value>& seen);

// "Name(argument, ...) -> answer [out, ...]"; answer and outs may be missing.
struct Call {
  int line = 0;
  std::string name;
  std::optional<ClientOperation> operation;  // that has this name
  std::vector<Value> arguments;
  bool has_arguments = false;  // "Name" alone, without parentheses, names every such call
  bool has_answer = false;
  Value answer;
  bool has_outs = false;
  std::vector<Value> outs;

  // The operation's result: 0 without an answer, 1 and 0 for true and false, nothing for "throws",
  // with which the operation ends by an exception. Throws Failure for what is no number.
  std::optional<int> Result() const;
  std::string Shown() const;        // name and arguments
  std::string ShownAnswer() const;  // what stands behind the arrow
};

// Reads a call. Throws Failure (line 0).
Call ReadCall(std::string_view written);

// The number in a word, decimal or with 0x. Throws Failure (line 0).
long long ReadNumber(std::string_view word);

std::string_view Trimmed(std::string_view text);

}  // namespace conversation
