#include "console/host/library_identity.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <sstream>
#include <system_error>
#include <vector>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "register/client/virtual_register.h"

namespace lorimat::console {
namespace {

constexpr long kVersion = 1;  // of GetEcrConfVal
constexpr size_t kAnswerRoom = 4096;

// A few words, so that a change of those that ship is no change of the library.
constexpr std::string_view kWords =
    "[OPCOD]\n8=CLEAR\n10=SELL\n11=PAY\n12=LESS\n18=SUBTOTAL\n19=COURTESY\n20=MESSAGE\n"
    "[10]\n1=DEP,O\n3=QTY\n4=PRICE\n5=REFUND\n7=TEXT\n[11]\n1=TENDER\n2=AMOUNT\n[12]\n1=VALUE\n"
    "3=TEXT\n[19]\n1=TEXT\n[EQU]\nCASH=1\nYES=2\n";

// What is read and refused, shortened and quoted, sold and paid.
constexpr const char* kLines[] = {
    "",
    "; nothing",
    "'",
    "NONE DEP=1",
    "S DEP=1",
    "SELL",
    "SELL DEP=BANANA",
    "SELL DEP=1, COLOUR=2",
    "SELL DEP=1, T='A'B",
    "#200 #1=1",
    "sell DEP=1,qty=2.5,price=1.20,text='IT''S;A,=' ;x",
    "#10 #1=2, #4='1,50'",
    "SEL DEP=1, PRICE=-1",
    "LESS VALUE=.5, TEXT='LESS'",
    "SUBTOTAL",
    "PAY TENDER=CASH, AMOUNT=5",
    "PAY",
    "SELL DEP=1, PRICE=1.00",
    "CLEAR",
};

RtfClientInterface* trial_client = nullptr;

long GiveTrialClient(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT || out == nullptr) return -1;
  // The last argument is the address of an untyped pointer in the guise of a long*.
  *reinterpret_cast<void**>(out) = trial_client;
  return 0;
}

// A definition file to be read once. A file would have no room below a limit of the sizes of files.
class Words {
 public:
  Words() {
    int ends[2];
    if (pipe2(ends, 0) != 0) throw std::system_error(errno, std::generic_category());
    reading_ = Descriptor(ends[0]);
    const Descriptor writing(ends[1]);
    WriteAll(writing.get(), kWords);
    path_ = fmt::format("/proc/self/fd/{}", reading_.get());
  }
  char* path() { return path_.data(); }

 private:
  Descriptor reading_;
  std::string path_;
};

std::unique_ptr<lorimat::VirtualRegister> NewRegister() {
  lorimat::RegisterSettings settings;
  settings.clock = [] {
    std::tm time{};
    time.tm_year = 124;
    time.tm_mday = 1;
    time.tm_hour = 12;
    return time;
  };
  return std::make_unique<lorimat::VirtualRegister>(std::move(settings));
}

// What the lines answer, and what they print.
template <typename RunLine>
std::string AnswersOf(const lorimat::VirtualRegister& device, RunLine run_line) {
  std::string answers;
  for (const std::string line : kLines) {
    std::vector<char> command(line.c_str(), line.c_str() + line.size() + 1);
    std::array<char, kAnswerRoom> result{};
    const long code = run_line(command.data(), result.data());
    result.back() = 0;
    answers += fmt::format("{} {}\n", code, result.data());
  }
  for (const std::string& line : device.paper().lines()) answers += line + "\n";
  return answers;
}

}  // namespace

std::string IdentifyLibrary(void* handle) {
  // No other definition file, and no settings of a shop.
  setenv("LORIMATRT_REGISTRY", "/dev/null", 1);
  // Nor a file of the user's folder.
  if (chdir("/") != 0) throw std::system_error(errno, std::generic_category());
  const auto find = [handle]<typename Function>(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(handle, name));
  };
  const auto device = NewRegister();
  trial_client = device.get();
  Words words;
  const int started = find(&TradInit, "TradInit")(words.path(), 0, nullptr, &GiveTrialClient);
  std::string theirs = fmt::format("{} {} {} {}\n", started, find(&GetQuoteChar, "GetQuoteChar")(),
                                   find(&GetSeparatorChar, "GetSeparatorChar")(),
                                   find(&GetOutEditOptions, "GetOutEditOptions")());
  if (started == 0) theirs += AnswersOf(*device, find(&EcrCmd, "EcrCmd"));

  const auto own_device = NewRegister();
  Words own_words;
  const auto own = std::make_unique<EcrCmdCommand>();
  const int own_started = own->TradInit(own_words.path(), 0, own_device.get(), true);
  std::string ours = fmt::format("{} {} {} {}\n", own_started, int{own->cChQuote}, int{own->cChSep},
                                 own->iOutEditFlags);
  ours += AnswersOf(*own_device,
                    [&own](char* command, char* result) { return own->EcrCmd(command, result); });
  return fmt::format("{} {} {}", find(&GetEcrConfVal, "GetEcrConfVal")(kVersion),
                     own->GetEcrConfVal(kVersion), theirs == ours ? 1 : 0);
}

LibraryIdentity ReadIdentity(const std::string& text) {
  LibraryIdentity identity;
  std::istringstream(text) >> identity.version >> identity.own_version >> identity.answers_alike;
  return identity;
}

}  // namespace lorimat::console
