#include "console/message/message_texts.h"

#include <array>

#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace lorimat::console {

MessageTexts::MessageTexts() : translator_(std::make_unique<EcrCmdCommand>()) {
  write_default_messages(*translator_);
}

MessageTexts::~MessageTexts() = default;

std::string MessageTexts::answer(int code) {
  std::array<char, 512> text{};
  translator_->SetStringErr(text.data(), code);
  text.back() = 0;
  return text.data();
}

}  // namespace lorimat::console
