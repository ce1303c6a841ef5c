#include "console/host/library.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <vector>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
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

constexpr long kVersion = 1;  // of GetEcrConfVal

// Without a device every line is refused at once, and none is traced.
template <typename RunLine>
LibraryIdentity IdentityOf(long version, long quote, long separator, long edit_options,
                           RunLine run_line) {
  LibraryIdentity identity{version, fmt::format("{} {} {}", quote, separator, edit_options)};
  for (const std::string line : {"", "; lorimat", "@", "#1", "'"}) {
    std::vector<char> command = MutableCopy(line);
    std::array<char, kAnswerRoom> result{};
    const long code = run_line(command.data(), result.data());
    result.back() = 0;
    identity.answers += fmt::format("\n{} {}", code, result.data());
  }
  return identity;
}

}  // namespace

std::string LibraryIdentity::version_text() const {
  constexpr long kStep = 1000;
  if (version < 0) return std::to_string(version);
  return fmt::format("{}.{}.{}", version / kStep / kStep, version / kStep % kStep, version % kStep);
}

LibraryIdentity OwnIdentity() {
  const auto own = std::make_unique<EcrCmdCommand>();
  return IdentityOf(own->GetEcrConfVal(kVersion), own->cChQuote, own->cChSep, own->iOutEditFlags,
                    [&own](char* command, char* result) { return own->EcrCmd(command, result); });
}

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
    get_value_ = reinterpret_cast<decltype(get_value_)>(Symbol("GetEcrConfVal", file));
    get_quote_ = reinterpret_cast<decltype(get_quote_)>(Symbol("GetQuoteChar", file));
    get_separator_ = reinterpret_cast<decltype(get_separator_)>(Symbol("GetSeparatorChar", file));
    get_edit_options_ =
        reinterpret_cast<decltype(get_edit_options_)>(Symbol("GetOutEditOptions", file));
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

LibraryIdentity Library::identity() const {
  return IdentityOf(get_value_(kVersion), get_quote_(), get_separator_(), get_edit_options_(),
                    ecr_cmd_);
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
