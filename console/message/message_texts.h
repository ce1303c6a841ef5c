// The answers of the library in words: its own tables, with no device and nothing run.
#pragma once

#include <memory>
#include <string>

class EcrCmdCommand;

namespace lorimat::console {

class MessageTexts {
 public:
  // The default texts.
  MessageTexts();
  ~MessageTexts();

  // What a host reads as the answer of a line that gives this code.
  std::string Answer(int code);

 private:
  std::unique_ptr<EcrCmdCommand> translator_;
};

}  // namespace lorimat::console
