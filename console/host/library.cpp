#include "console/host/library.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <array>
#include <fstream>
#include <iterator>
#include <vector>

#include "console/device/load_trial.h"
#include "console/host/library_identity.h"
#include "console/message/failure.h"
#include "recording/recorder.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace lorimat::console {
namespace {

// What the I/O callback hands over; the callback has no argument of the host's own.
RtfClientInterface* offered_client = nullptr;
recording::Recorder* offered_recorder = nullptr;

long Give(long code, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT || out == nullptr) return -1;
  // The last argument is the address of an untyped pointer in the guise of a long*.
  *reinterpret_cast<void**>(out) = offered_client;
  return 0;
}

long GiveClient(long code, long second, char* third, long fourth, char* fifth, long* sixth,
                long* out) {
  const long answer = Give(code, out);
  if (offered_recorder != nullptr) {
    const auto pointer = [](const void* p) { return p == nullptr ? "null" : "pointer"; };
    offered_recorder->Callback(fmt::format("{}, {}, {}, {}, {}, {}", code, second, pointer(third),
                                           fourth, pointer(fifth), pointer(sixth)),
                               answer);
  }
  return answer;
}

// Of a file that the library is about to read; empty when it cannot be read.
std::string ContentsOf(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
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
  const long closed = trad_close_();
  if (recorder_ != nullptr) recorder_->Closed(closed);
  streams_.DivertErrors();
  dlclose(handle_);
  streams_.RestoreErrors();
  offered_client = nullptr;
  offered_recorder = nullptr;
}

int Library::Init(const std::string& definition_file, RtfClientInterface* client) {
  std::vector<char> path = MutableCopy(definition_file);
  offered_client = recorder_ != nullptr ? &recorder_->Wrap(*client) : client;
  offered_recorder = recorder_;
  if (recorder_ != nullptr) recorder_->InitBegins(ContentsOf(definition_file));
  const int code = trad_init_(path.data(), 0, nullptr, &GiveClient);
  if (recorder_ != nullptr) recorder_->InitEnds(code);
  return code;
}

long Library::RunLine(const std::string& line, std::string* answer) {
  std::vector<char> command = MutableCopy(line);
  std::array<char, kAnswerRoom> result{};
  if (recorder_ != nullptr) recorder_->LineBegins(line.c_str());
  const long code = ecr_cmd_(command.data(), result.data());
  result.back() = 0;
  *answer = result.data();
  if (recorder_ != nullptr) recorder_->LineEnds(code, *answer);
  return code;
}

}  // namespace lorimat::console
