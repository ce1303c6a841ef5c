#include "console/message/load_failure.h"

#include <csignal>
#include <cstring>

#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

// "SIGSEGV".
std::string SignalText(int64_t signal) {
  const char* name = sigabbrev_np(static_cast<int>(signal));
  return name != nullptr ? std::string("SIG") + name : std::to_string(signal);
}

}  // namespace

std::string LoadFailureText(const std::string& file, const LoadFailure& failure) {
  const std::string name = Shown(file);
  const int64_t number = failure.numbers[0];
  switch (failure.cause) {
    case LoadCause::kNone:
      break;
    case LoadCause::kUnreadable:
      return Tr("the library cannot be loaded: {}: {}", name,
                SystemMessage(static_cast<int>(number)));
    case LoadCause::kNoRegularFile:
      return Tr("the library cannot be loaded: {} is no regular file", name);
    case LoadCause::kNoSharedObject:
      return Tr("the library cannot be loaded: {} is no shared library", name);
    case LoadCause::kCutShort:
      return Tr("the library cannot be loaded: {} is cut short: {} bytes are left of {}", name,
                number, failure.numbers[1]);
    case LoadCause::kOtherMachine:
      return Tr("the library cannot be loaded: {} is made for another kind of processor", name);
    case LoadCause::kLoader:
      return Tr("the library cannot be loaded ({})", Shown(failure.text));
    case LoadCause::kLacks:
      return Tr("{}: is not the lorimatrt library: it lacks {}", name, Shown(failure.text));
    case LoadCause::kDiesAtLoad:
      if (number == 0) {
        return Tr("the library is not loaded: {} ended the process that tried to load it", name);
      }
      return Tr("the library is not loaded: {} ended the process that tried to load it ({})", name,
                SignalText(number));
    case LoadCause::kDiesAtWork:
      if (number == 0) {
        return Tr("the library is not loaded: {} ended the process that tried some lines", name);
      }
      return Tr("the library is not loaded: {} ended the process that tried some lines ({})", name,
                SignalText(number));
    case LoadCause::kHangs:
      return Tr("the library is not loaded: {} did not come to an end of a trial within {} seconds",
                name, number);
    case LoadCause::kNotTried:
      return Tr("the library {} cannot be tried: {}", name,
                SystemMessage(static_cast<int>(number)));
  }
  return {};
}

}  // namespace lorimat::console
