// The shared library as a host uses it: loaded by name, reached through its exports alone.
#pragma once

#include <string>

#include "console/terminal/streams.h"
#include "lorimatrt/lorimatrt.h"

class RtfClientInterface;

namespace lorimat::console {

// What a library tells of itself before it is given a device: its version, and its answers to calls
// that touch nothing.
struct LibraryIdentity {
  long version = 0;  // 3001011 is 3.1.11
  std::string answers;

  // For a person.
  std::string version_text() const;
};

// Of the translator within this program, which reads lines and definition files for checks.
LibraryIdentity OwnIdentity();

class Library {
 public:
  // Loads the file. The library's own lines go to the streams' trace, which has to be
  // started. Throws Failure when the file cannot be loaded or lacks an export.
  Library(const std::string& file, Streams& streams);
  // Unloads the library, with standard error turned to the trace meanwhile.
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Ahead of Init.
  LibraryIdentity identity() const;

  // Hands the client over and reads the definition file. The client has to outlive this object.
  // Returns what TradInit answers: 0, or 2 when it refuses the definition file. The path may
  // have 79 characters; the library cuts a longer one.
  int Init(const std::string& definition_file, RtfClientInterface* client);

  // Runs a line and writes its answer's text. Returns 0 or a result code.
  long RunLine(const std::string& line, std::string* answer);

 private:
  void* Symbol(const char* name, const std::string& file);

  Streams& streams_;
  void* handle_ = nullptr;
  decltype(&TradInit) trad_init_ = nullptr;
  decltype(&TradClose) trad_close_ = nullptr;
  decltype(&EcrCmd) ecr_cmd_ = nullptr;
  decltype(&GetEcrConfVal) get_value_ = nullptr;
  decltype(&GetQuoteChar) get_quote_ = nullptr;
  decltype(&GetSeparatorChar) get_separator_ = nullptr;
  decltype(&GetOutEditOptions) get_edit_options_ = nullptr;
};

}  // namespace lorimat::console
