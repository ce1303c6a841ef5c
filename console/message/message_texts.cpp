#include "console/message/message_texts.h"

#include <array>

#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace lorimat::console {

MessageTexts::MessageTexts() : translator_(std::make_unique<EcrCmdCommand>()) {
  WriteDefaultMessages(*translator_);
}

MessageTexts::~MessageTexts() = default;

std::string MessageTexts::Answer(int code) {
  std::array<char, 512> text{};
  translator_->SetStringErr(text.data(), code);
  text.back() = 0;
  return text.data();
}

}  // namespace lorimat::console
