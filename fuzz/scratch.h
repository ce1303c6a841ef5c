// A folder for the files of one input, which is the current folder of the program while it fuzzes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// Goes into a folder of its own in memory when it is first called, and empties it each time. The
// folder goes with the program.
void FreshFolder();

// Writes a file of the input into the current folder, and counts it.
void WriteInput(const std::string& name, std::string_view bytes);

// Writes a file of the current folder.
void WriteBytes(const std::string& name, std::string_view bytes);

// A text that names no file outside the current folder.
std::string WithoutFolders(std::string_view text);

// The input, part by part: each ends at a NUL, the last one with the input.
class InputParts {
 public:
  InputParts(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}
  // Empty when there is no more.
  std::string_view Next();
  // All that is left, NULs included.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// The lines of a text, without their ends.
std::vector<std::string> LinesOf(std::string_view text);

// Ends the program, so that the fuzzer keeps the input: something does not hold.
[[noreturn]] void Fails(const std::string& what);
inline void Require(bool holds, const char* what) {
  if (!holds) Fails(what);
}
