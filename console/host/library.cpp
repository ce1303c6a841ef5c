#include "console/host/library.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <vector>

#include "console/message/failure.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace lorimat::console {
namespace {

// What the I/O callback hands over; the callback has no argument of the host's own.
RtfClientInterface* offered_client = nullptr;

long GiveClient(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT || out == nullptr) return -1;
  // The last argument is the address of an untyped pointer in the guise of a long*.
  *reinterpret_cast<void**>(out) = offered_client;
  return 0;
}

std::vector<char> MutableCopy(const std::string& text) {
  return {text.c_str(), text.c_str() + text.size() + 1};
}

}  // namespace

Library::Library(const std::string& file, Streams& streams) : streams_(streams) {
  // A name without a folder would be searched in the system's folders.
  const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
  if (access(path.c_str(), R_OK) != 0) {
    throw Failure(Tr("the library cannot be loaded: {}: {}", Shown(file), SystemMessage(errno)));
  }
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    // The loader speaks English to everybody.
    const char* cause = dlerror();
    throw Failure(
        Tr("the library cannot be loaded ({})", cause != nullptr ? Shown(cause) : Shown(file)));
  }
  try {
    trad_init_ = reinterpret_cast<decltype(trad_init_)>(Symbol("TradInit", file));
    trad_close_ = reinterpret_cast<decltype(trad_close_)>(Symbol("TradClose", file));
    ecr_cmd_ = reinterpret_cast<decltype(ecr_cmd_)>(Symbol("EcrCmd", file));
  } catch (...) {
    dlclose(handle_);
    throw;
  }
}

Library::~Library() {
  trad_close_();
  streams_.DivertErrors();
  dlclose(handle_);
  streams_.RestoreErrors();
  offered_client = nullptr;
}

void* Library::Symbol(const char* name, const std::string& file) {
  void* address = dlsym(handle_, name);
  if (address == nullptr) {
    throw Failure(Tr("{}: is not the lorimatrt library: it lacks {}", Shown(file), name));
  }
  return address;
}

int Library::Init(const std::string& definition_file, RtfClientInterface* client) {
  offered_client = client;
  std::vector<char> path = MutableCopy(definition_file);
  return trad_init_(path.data(), 0, nullptr, &GiveClient);
}

long Library::RunLine(const std::string& line, std::string* answer) {
  std::vector<char> command = MutableCopy(line);
  // The library asks for 512 characters at least.
  std::array<char, 4096> result{};
  const long code = ecr_cmd_(command.data(), result.data());
  result.back() = 0;
  *answer = result.data();
  return code;
}

}  // namespace lorimat::console
