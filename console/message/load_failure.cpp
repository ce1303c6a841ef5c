#include "console/message/load_failure.h"

#include <fmt/format.h>

#include <csignal>
#include <cstring>
#include <string_view>

#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

// Behind "(SIGSEGV)" of a process that a signal ended; nothing behind an end by itself.
std::string BySignal(int64_t signal) {
  return signal == 0 ? std::string() : fmt::format(" ({})", SignalText(signal));
}

// Of the file of a device.
std::string DeviceText(const std::string& name, const LoadFailure& failure) {
  const int64_t number = failure.numbers[0];
  switch (failure.cause) {
    case LoadCause::kNone:
      break;
    case LoadCause::kUnreadable:
      return Tr("the device cannot be loaded: {}: {}", name,
                SystemMessage(static_cast<int>(number)));
    case LoadCause::kNoRegularFile:
      return Tr("the device cannot be loaded: {} is no regular file", name);
    case LoadCause::kNoSharedObject:
      return Tr("the device cannot be loaded: {} is no shared library", name);
    case LoadCause::kCutShort:
      return Tr("the device cannot be loaded: {} is cut short: {} bytes are left of {}", name,
                number, failure.numbers[1]);
    case LoadCause::kOtherMachine:
      return Tr("the device cannot be loaded: {} is made for another kind of processor", name);
    case LoadCause::kLoader:
      return Tr("the device cannot be loaded ({})", Shown(failure.text));
    case LoadCause::kLacks:
      return Tr("{}: is no device: it lacks {}", name, Shown(failure.text));
    case LoadCause::kDiesAtLoad:
      return Tr("the device is not opened: {} ended the process that tried to load it{}", name,
                BySignal(number));
    case LoadCause::kDiesAtWork:
      return Tr("the device is not opened: {} ended the process that tried to open it{}", name,
                BySignal(number));
    case LoadCause::kDiesAtEnd:
      return Tr("the device is not opened: {} ended the process that tried to close it again{}",
                name, BySignal(number));
    case LoadCause::kHangs: {
      const std::string_view call = failure.numbers[1] == 0   ? "dlopen"
                                    : failure.numbers[1] == 1 ? "lorimat_device_open"
                                                              : "lorimat_device_close";
      return Tr("the device is not opened: {} did not come back from {} within {} seconds", name,
                call, number);
    }
    case LoadCause::kStopped:
      return Tr("stopped while {} was tried", name);
    case LoadCause::kNotTried:
      return Tr("the device {} cannot be tried: {}", name, SystemMessage(static_cast<int>(number)));
  }
  return {};
}

}  // namespace

std::string SignalText(int64_t signal) {
  const char* name = sigabbrev_np(static_cast<int>(signal));
  return name != nullptr ? std::string("SIG") + name : std::to_string(signal);
}

std::string LoadFailureText(const std::string& file, const LoadFailure& failure,
                            LoadedFile loaded) {
  const std::string name = Shown(file);
  if (loaded == LoadedFile::kDevice) return DeviceText(name, failure);
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
      return Tr("the library is not loaded: {} ended the process that tried to load it{}", name,
                BySignal(number));
    case LoadCause::kDiesAtWork:
      return Tr("the library is not loaded: {} ended the process that tried some lines{}", name,
                BySignal(number));
    case LoadCause::kDiesAtEnd:
      return Tr("the library is not loaded: {} ended the process behind the lines that it tried{}",
                name, BySignal(number));
    case LoadCause::kStopped:
      return Tr("stopped while {} was tried", name);
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
