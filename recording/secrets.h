// What a recording does not show unless it is told to: operators' passwords, fiscal and lottery
// codes, customers' names. They are blanked in the same way wherever they stand, so that a line and
// the calls that come of it still fit each other.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "recording/conversation/script_text.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace recording {

// A digit becomes 0, a blank stays, any other byte becomes X: a code keeps the form that it is
// looked at for.
char Blanked(char c);
std::string Blanked(std::string_view text);

class Secrets {
 public:
  // Blanks the fields of a line of the language, byte for byte. Without it lines stay as they are.
  using LineBlanking = std::function<std::string(std::string_view line)>;

  explicit Secrets(LineBlanking line) : line_(std::move(line)) {}

  // Another step: the secrets of the one before are forgotten.
  void Begin() { known_.clear(); }
  // The line, and the texts that were blanked in it are known from here on.
  std::string Line(std::string_view line);
  // A text of the step, a trace or an answer: the line within "Cmd<...>" and the known secrets.
  std::string Text(std::string_view text);
  // A call's arguments, and what it filled. The operation's arguments are those of its slip.
  void Arguments(ClientOperation operation, std::vector<conversation::Value>& arguments);
  void Outs(ClientOperation operation, const std::vector<conversation::Value>& arguments,
            std::vector<conversation::Value>& outs);

 private:
  void Blank(conversation::Value& value, size_t least);
  void Know(std::string_view secret);

  LineBlanking line_;
  std::vector<std::string> known_;
};

}  // namespace recording
