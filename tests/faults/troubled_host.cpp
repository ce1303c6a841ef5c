// A host that lives long on a register in a file, in hard times: the clock jumps by days in both
// directions between one receipt and the next, and for a part of each life the process has few
// descriptors to spare, from none on. What has to hold, whatever is refused:
// - the file has as many documents as payments were answered with 0;
// - with the clock more than an hour behind the last document nothing is registered, and with the
//   clock ahead of it and descriptors to be had every sale is;
// - the process holds as many descriptors and threads behind each life as before it;
// - the journal is good in the end.
// script/faults --help tells of the arguments; a place is a receipt here.
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>

#include "loaded_library.h"
#include "loop_options.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

constexpr int kReceiptsOfLife = 40;
constexpr int kMostSpare = 12;              // descriptors
constexpr std::time_t kBegin = 1710495000;  // 15 March 2024
constexpr long kDay = 86400;
// How far the clock goes from the last document that was registered, in turns.
constexpr long kJumps[] = {60, 3 * kDay, -3 * kDay, 30, -2 * 3600, -1800, kDay / 2, -400 * kDay};

VirtualRegister* device = nullptr;
std::time_t now = kBegin;
std::time_t last = kBegin;  // of a document or a closing

long EcrIo(long code, long, char*, long, char*, long*, long* client) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(client) = static_cast<RtfClientInterface*>(device);
  return 0;
}

// The process may have so many descriptors more than it has; below 0 as many as ever.
class FewDescriptors {
 public:
  explicit FewDescriptors(long spare) {
    getrlimit(RLIMIT_NOFILE, &before_);
    if (spare < 0) return;
    // The limit is for their numbers, of which the lowest is taken first.
    const int lowest = dup(STDIN_FILENO);
    close(lowest);
    const rlimit limit = {std::min(static_cast<rlim_t>(lowest + spare), before_.rlim_max),
                          before_.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit);
  }
  ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit before_ = {};
};

struct Count {
  long receipts = 0, registered = 0, refused = 0, behind = 0;
  long not_loaded = 0, not_opened = 0, not_started = 0, lives = 0;
  std::string wrong = {};
};

class Life {
 public:
  Life(std::string file, long number, Count* count)
      : file_(std::move(file)), number_(number), count_(*count) {}

  void Run() {
    ++count_.lives;
    std::optional<LoadedLibrary> library;
    std::optional<VirtualRegister> own;
    {
      // Each step has few, so that what comes before it does not always stand in its way.
      const long spare = number_ % kMostSpare;
      const long step = number_ / kMostSpare % 4;
      if (!Load(step == 0 ? spare : -1, &library)) ++count_.not_loaded;
      if (!Open(step == 1 ? spare : -1, &own)) ++count_.not_opened;
      if (!Start(step == 2 ? spare : -1, *library)) ++count_.not_started;
      const FewDescriptors few(step == 3 ? spare : -1);
      for (int i = 0; i < kReceiptsOfLife / 2 && count_.wrong.empty(); ++i) {
        Sell(*library, step != 3);
      }
    }
    // All is to be had again.
    for (int i = 0; i < kReceiptsOfLife / 2 && count_.wrong.empty(); ++i) Sell(*library, true);
    now = last += 60;
    if (count_.wrong.empty() && Send(*library, "AZZGIO TIPO=1") != 0)
      Wrong("no closing of the day");
    library->close();
  }

 private:
  // False when it only went with enough descriptors.
  static bool Load(long spare, std::optional<LoadedLibrary>* library) {
    {
      const FewDescriptors few(spare);
      library->emplace();
    }
    if ((*library)->loaded()) return true;
    library->emplace();
    return false;
  }

  bool Open(long spare, std::optional<VirtualRegister>* own) const {
    RegisterSettings settings;
    settings.file = file_;
    settings.clock = [] {
      std::tm time = {};
      gmtime_r(&now, &time);
      return time;
    };
    bool opened = true;
    try {
      const FewDescriptors few(spare);
      own->emplace(settings);
    } catch (const RegisterError&) {
      opened = false;
    }
    if (!opened) own->emplace(settings);
    device = &**own;
    return opened;
  }

  static bool Start(long spare, const LoadedLibrary& library) {
    char language[] = DEFINITION_FILE;
    const auto start = [&] { return library.start(language, 0, nullptr, &EcrIo) == 0; };
    {
      const FewDescriptors few(spare);
      if (start()) return true;
    }
    start();
    return false;
  }

  static long Send(const LoadedLibrary& library, const char* text) {
    char line[64];
    char answer[512];
    std::snprintf(line, sizeof line, "%s", text);
    return library.send(line, answer);
  }

  void Sell(const LoadedLibrary& library, bool has_descriptors) {
    const long jump = kJumps[static_cast<size_t>(count_.receipts) % std::size(kJumps)];
    now = last + jump;
    ++count_.receipts;
    const int64_t before = device->store().document_count();
    const bool sold = Send(library, "VEND REP=1, PRE=2.50") == 0 && Send(library, "CHIU") == 0;
    const int64_t after = device->store().document_count();
    const bool behind = jump < -3600;
    if (after - before != (sold ? 1 : 0)) Wrong("an answer that is not what is stored");
    if (behind && sold) Wrong("a sale with the clock behind");
    if (!behind && has_descriptors && !sold) Wrong("no sale, and nothing stands in its way");
    if (sold) {
      last = now;
      ++count_.registered;
    } else {
      ++(behind ? count_.behind : count_.refused);
      Send(library, "RESPRN");
    }
  }

  void Wrong(const char* what) {
    count_.wrong = std::string(what) + ", receipt " + std::to_string(count_.receipts) +
                   " of life " + std::to_string(number_) + ": " + device->last_failure();
  }

  const std::string file_;
  const long number_;
  Count& count_;
};

size_t StoredDocuments(const std::string& file) {
  RegisterSettings settings;
  settings.file = file;
  return VirtualRegister(settings).store().documents().size();
}

int Live(const LoopOptions& options) {
  std::string folder = options.folder + "/lorimat-host.XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) {
    std::perror(folder.c_str());
    return 2;
  }
  const std::string file = folder + "/shop.register";
  setenv("LORIMATRT_REGISTRY", (folder + "/none").c_str(), 1);
  const long wanted = options.places == 0 ? 100000 : options.places;
  const int own_output = SilenceStreams();
  if (own_output < 0) return 2;
  Count count;
  // What the C library keeps for itself of a first time is there behind one life.
  Life(file, 0, &count).Run();
  const Holding before = HoldingNow();
  Holding then = before;
  while (count.receipts < wanted && count.wrong.empty() && then.descriptors == before.descriptors &&
         then.threads == before.threads) {
    Life(file, count.lives, &count).Run();
    then = HoldingNow();
  }
  const bool good = RegisterFile(file).VerifyJournal({}).good();
  const auto stored = static_cast<long>(StoredDocuments(file));
  dprintf(own_output,
          "%ld receipts in %ld lives: %ld registered, %ld refused with the clock behind, %ld "
          "otherwise\n"
          "without descriptors: %ld times not loaded, %ld not opened, %ld not started\n"
          "before: %zu bytes, %ld descriptors, %ld threads\n"
          "now:    %zu bytes, %ld descriptors, %ld threads\n"
          "%s%s%ld documents in the file\n"
          "COUNT host.troubled %ld %ld\n",
          count.receipts, count.lives, count.registered, count.behind, count.refused,
          count.not_loaded, count.not_opened, count.not_started, before.memory, before.descriptors,
          before.threads, then.memory, then.descriptors, then.threads, count.wrong.c_str(),
          good ? "" : "\nthe journal is not good\n", stored, count.receipts, wanted);
  std::error_code ignored;
  fs::remove_all(folder, ignored);
  const bool brought =
      count.behind > 0 && count.not_loaded > 0 && count.not_opened > 0 && count.not_started > 0;
  return count.wrong.empty() && good && brought && stored == count.registered &&
                 then.descriptors == before.descriptors && then.threads == before.threads
             ? 0
             : 1;
}

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) { return lorimat::Live(lorimat::ReadLoopOptions(argc, argv)); }
