// The shared library as a host uses it: loaded by name, reached through its exports alone.
#pragma once

#include <string>

#include "console/terminal/streams.h"
#include "lorimatrt/lorimatrt.h"

class RtfClientInterface;
namespace recording {
class Recorder;
}  // namespace recording

namespace lorimat::console {

// What a library tells of itself beside the translator within this program, which reads lines and
// definition files for checks.
struct LibraryIdentity {
  long version = 0;  // 3001011 is 3.1.11
  long own_version = 0;
  bool answers_alike = false;  // to lines of a receipt, on registers in memory
};

// For a person.
std::string VersionText(long version);

class Library {
 public:
  // Loads the file, which has been tried in a process of its own. The library's own lines go to the
  // streams' trace, which has to be started. Throws Failure when the file cannot be loaded, lacks
  // an export or ends the process.
  Library(const std::string& file, Streams& streams);
  // Unloads the library, with standard error turned to the trace meanwhile.
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  const LibraryIdentity& identity() const { return identity_; }

  // What passes from here on is recorded; ahead of Init. The recorder has to outlive this object.
  void Record(recording::Recorder& recorder) { recorder_ = &recorder; }

  // Hands the client over and reads the definition file. The client has to outlive this object.
  // Returns what TradInit answers: 0, or 2 when it refuses the definition file. The path may
  // have 79 characters; the library cuts a longer one.
  int Init(const std::string& definition_file, RtfClientInterface* client);

  // Runs a line and writes its answer's text. Returns 0 or a result code.
  long RunLine(const std::string& line, std::string* answer);

 private:
  Streams& streams_;
  LibraryIdentity identity_;
  recording::Recorder* recorder_ = nullptr;
  void* handle_ = nullptr;
  decltype(&TradInit) trad_init_ = nullptr;
  decltype(&TradClose) trad_close_ = nullptr;
  decltype(&EcrCmd) ecr_cmd_ = nullptr;
};

}  // namespace lorimat::console
