// The lines of tables and parts: the values that hold where one is made, and the fields that they
// fill in.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace conversation {

// A line as it is written.
struct Written {
  std::string text;
  std::string file;  // of parts; empty for the conversation's own
  int number = 0;
};

// A column or a parameter with its value for the time being.
struct Binding {
  std::string name;
  std::string value;
  bool used = false;
};

// What holds where a line is being made.
struct Frame {
  std::vector<Binding> bindings;
  int line = 0;  // see ScriptLine; 0 while a line stands for itself
  int depth = 0;
};

// A name of a column, a parameter or a part: small letters, digits and _, a letter first.
bool IsName(std::string_view word);

// A number of nothing but digits, few enough for every sum of some of them.
std::optional<long long> WholeNumber(std::string_view word);

// Throws the Failure of a written line: at the line itself, or at the one that `frame` is at when
// the line stands in a file of parts.
[[noreturn]] void Fail(const Written& at, const Frame& frame, const std::string& message);

// The text with its fields filled in: "{NAME}", "{NAME:WIDTH}", "{NUMBER+NAME-NAME:WIDTH}". A
// comment keeps its braces. Throws Failure.
std::string Filled(const Written& written, Frame& frame);

}  // namespace conversation
