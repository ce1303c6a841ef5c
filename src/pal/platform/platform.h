// The platform seam: what the code needs from the operating system and each platform
// gives in its own folder (posix/, windows/). See README.md here.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// --- Registry: read access to values under HKEY_LOCAL_MACHINE. On POSIX the registry is
// a text file, named by the environment variable LORIMATRT_REGISTRY, by default
// /etc/lorimatrt/registry.ini: a section "[key]", then "Name=Value" lines. Blanks and TABs
// around a name or a value do not count, lines of another form are passed over, and a text
// ends at a NUL byte. Of two sections or two values of one name the first holds.

constexpr long kRegistrySuccess = 0;            // ERROR_SUCCESS
constexpr long kRegistryNotFound = 2;           // ERROR_FILE_NOT_FOUND
constexpr long kRegistryInvalidParameter = 87;  // ERROR_INVALID_PARAMETER
constexpr long kRegistryMoreData = 234;         // ERROR_MORE_DATA

// An open key. Opening fails when the key, its section or its file is missing or is no
// ordinary file; queries then answer kRegistryNotFound. Keys and names compare without
// regard to ASCII case. It allocates nothing.
class RegistryKey {
 public:
  explicit RegistryKey(const char* path);
  ~RegistryKey();
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  bool is_open() const;
  // Reads a text value as RegQueryValueExA does: *size is the room of text in bytes and
  // receives the value's size, the closing NUL counted. A value that does not fit gives
  // kRegistryMoreData and its size, and text is not touched. A missing value leaves both
  // as they were. With a null text only the size is told; a text without a size is
  // kRegistryInvalidParameter. A text that was read always ends in NUL.
  long Query(const char* name, char* text, uint32_t* size) const;

 private:
  intptr_t handle_;      // the key's handle, or the registry file's descriptor
  int64_t section_ = 0;  // where the section's values begin in the file
};

// --- Current directory of the process.

// Whether the directory was changed.
bool EnterDirectory(const char* path);
// Writes the directory's path into size bytes; false when there is none or it does not
// fit, and path is then empty.
bool WorkingDirectory(char* path, size_t size);
// The character that joins folder names, and joins the installation directory with the
// definition file's path.
char PathSeparator();

// --- Line files.

// Whether files opened in the default mode have their line ends translated. A position in
// such a file is no count of the bytes that were read, so that bytes read ahead cannot be
// given back by a seek.
bool DefaultModeTranslates();

// --- Waiting.

// Blocks the calling thread for that many milliseconds, whatever signals come meanwhile;
// returns at once for 0 and below. Thread::Sleep is the caller.
void SleepMs(int milliseconds);

}  // namespace platform
