// Why a shared object is not loaded: a value, and its sentence in the reader's language.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace lorimat::console {

// Behind each what its numbers and its text are.
enum class LoadCause : uint8_t {
  kNone,
  kUnreadable,  // an errno value
  kNoRegularFile,
  kNoSharedObject,
  kCutShort,  // bytes that are there, bytes that its tables name
  kOtherMachine,
  kLoader,      // what the loader says, in its own words
  kLacks,       // the name of a function
  kDiesAtLoad,  // signal, 0 for an end by itself
  kDiesAtWork,  // the same
  kDiesAtEnd,   // the same, when its work was done
  kHangs,       // seconds, and where: 0 when it was loaded, 1 at work, 2 behind it
  kStopped,     // by a signal of interrupt.h
  kNotTried,    // an errno value: there is no process to try it in
};

struct LoadFailure {
  LoadCause cause = LoadCause::kNone;
  std::array<int64_t, 2> numbers{};
  std::string text = {};  // any bytes

  explicit operator bool() const { return cause != LoadCause::kNone; }
};

// What the file is to be.
enum class LoadedFile : uint8_t { kLibrary, kDevice };

// "SIGSEGV".
std::string SignalText(int64_t signal);

// Of a file with this name, which shows as on a terminal.
std::string LoadFailureText(const std::string& file, const LoadFailure& failure,
                            LoadedFile loaded = LoadedFile::kLibrary);

}  // namespace lorimat::console
