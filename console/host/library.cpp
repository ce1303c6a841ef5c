#include "console/host/library.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <array>
#include <vector>

#include "console/device/load_trial.h"
#include "console/host/library_identity.h"
#include "console/message/failure.h"
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

// The library asks for 512 characters at least.
constexpr size_t kAnswerRoom = 4096;

// The exports that are used here or in a trial.
constexpr const char* kFunctions[] = {"TradInit",         "TradClose",    "EcrCmd",
                                      "GetEcrConfVal",    "GetQuoteChar", "GetSeparatorChar",
                                      "GetOutEditOptions"};

}  // namespace

std::string VersionText(long version) {
  constexpr long kStep = 1000;
  if (version < 0) return std::to_string(version);
  return fmt::format("{}.{}.{}", version / kStep / kStep, version / kStep % kStep, version % kStep);
}

Library::Library(const std::string& file, Streams& streams) : streams_(streams) {
  // A name without a folder would be searched in the system's folders.
  const std::string path = file.find('/') == std::string::npos ? "./" + file : file;
  const Trial trial = TryLoading(path, kFunctions, &IdentifyLibrary);
  if (trial.failure) throw Failure(LoadFailureText(file, trial.failure));
  identity_ = ReadIdentity(trial.report);
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    const char* cause = dlerror();
    throw Failure(LoadFailureText(file, {LoadCause::kLoader, {}, cause != nullptr ? cause : file}));
  }
  trad_init_ = reinterpret_cast<decltype(trad_init_)>(dlsym(handle_, "TradInit"));
  trad_close_ = reinterpret_cast<decltype(trad_close_)>(dlsym(handle_, "TradClose"));
  ecr_cmd_ = reinterpret_cast<decltype(ecr_cmd_)>(dlsym(handle_, "EcrCmd"));
}

Library::~Library() {
  trad_close_();
  streams_.DivertErrors();
  dlclose(handle_);
  streams_.RestoreErrors();
  offered_client = nullptr;
}

int Library::Init(const std::string& definition_file, RtfClientInterface* client) {
  offered_client = client;
  std::vector<char> path = MutableCopy(definition_file);
  return trad_init_(path.data(), 0, nullptr, &GiveClient);
}

long Library::RunLine(const std::string& line, std::string* answer) {
  std::vector<char> command = MutableCopy(line);
  std::array<char, kAnswerRoom> result{};
  const long code = ecr_cmd_(command.data(), result.data());
  result.back() = 0;
  *answer = result.data();
  return code;
}

}  // namespace lorimat::console
