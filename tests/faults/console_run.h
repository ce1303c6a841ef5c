// The console run as a process of its own, with strike_preload ahead of its libraries, and what it
// said.
#pragma once

#include <sys/resource.h>

#include <string>
#include <vector>

namespace lorimat {

using Words = std::vector<std::string>;  // of a command line

std::string ReadFile(const std::string& path);

struct Ended {
  int code = -1;  // minus the signal
  std::string errors;
};

struct Disturbance {
  std::string strike = {};  // for strike_preload
  std::string clock = {};
  rlim_t descriptors = 0;
};

// Runs the console in the folder ("/.../"); what it prints goes to the file `out`, and what is
// about it into the folder `beside`.
Ended RunConsole(const Words& words, const std::string& folder, const std::string& beside,
                 const Disturbance& disturbance, const std::string& out);

// Whether the message has the name of a file or a stream that the command works on, or a cause:
// what the system says of an error, or that there is no memory.
bool NamesFileOrCause(const std::string& message, const Words& words);

}  // namespace lorimat
