// The console with each call of the system failing in turn: commands are run again and again on a
// register in a file, each time with another place struck, or with few descriptors, on a file
// system that lacks something, or with a clock that jumps. What has to hold of each run:
// - it ends by itself, with one of the exit codes that the console has;
// - with 0 only if all that it was to write is there as without the fault (a clock that jumps
//   changes what is written, and the library takes a file of an "@" line that cannot be read on for
//   its end);
// - otherwise it says something on standard error, and names a file or a cause;
// - a file of its own has its name only when it is whole, or as it was before;
// - the register's journal is good.
// script/faults --help tells of the arguments. It ends with 1 when one of these does not hold.
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "apart.h"
#include "console_run.h"
#include "loop_options.h"
#include "strike.h"
#include "tally.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

constexpr const char* kClock = "2024-03-15 10:30";

struct Command {
  const char* name;
  Words words;         // of the command line
  Words outputs = {};  // that it writes
  // They show what was done, which may be less; otherwise each is whole or as before.
  bool shows_work = false;
  // The library takes a batch that it cannot read on for one that is at its end.
  bool ends_early = false;
};

// The register is shop.register, with a day in it; tables is a backup of it.
const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"run",
       {"run", "lines.cmd", "--register", "shop.register", "--paper", "paper.txt", "--clock",
        kClock},
       {"paper.txt"},
       true},
      {"run-new", {"run", "lines.cmd", "--register", "new.register", "--clock", kClock}},
      {"batch-line",
       {"run", "at.cmd", "--register", "shop.register", "--clock", kClock},
       {},
       false,
       true},
      {"batch",
       {"run", "lines.cmd", "--batch", "--register", "shop.register", "--clock", kClock},
       {},
       false,
       true},
      {"init", {"init", "new.register", "--header", "BAR SPORT"}},
      {"set", {"set", "shop.register", "--header", "BAR SPORT"}},
      {"copy", {"copy", "shop.register", "new.register"}},
      {"backup", {"backup", "saved", "--register", "shop.register"}},
      {"restore", {"restore", "tables", "--register", "shop.register"}},
      {"paper-text",
       {"paper", "--register", "shop.register", "--paper", "paper.txt"},
       {"paper.txt"}},
      {"paper",
       {"paper", "--register", "shop.register", "--paper", "paper.txt", "--pdf", "paper.pdf",
        "--png", "paper.png"},
       {"paper.txt", "paper.png"}},
      {"verify", {"journal", "verify", "--register", "shop.register"}},
      {"journal", {"journal", "--register", "shop.register"}},
  };
  return commands;
}

struct ConsoleManner {
  const char* name;
  const char* kind;  // of the places: strike::kKinds, "descriptors", "clock", or "" for one place
  int number = 0;    // of the kind
  long run = 1;      // 0: from there on
  int error = 0;
  const char* letters = "-";  // for strike_preload
  const char* mount = nullptr;
  bool may_fail = true;  // otherwise the command has to go as without the fault
};

constexpr ConsoleManner kConsoleManners[] = {
    {.name = "memory/once", .kind = "strike", .number = strike::kMemory, .letters = "o"},
    {.name = "memory/for-good",
     .kind = "strike",
     .number = strike::kMemory,
     .run = 0,
     .letters = "o"},
    {.name = "open/once", .kind = "strike", .number = strike::kOpen},
    {.name = "open/read-only", .kind = "strike", .number = strike::kOpen, .error = EROFS},
    {.name = "open/for-good", .kind = "strike", .number = strike::kOpen, .run = 0},
    {.name = "read/once", .kind = "strike", .number = strike::kRead},
    {.name = "read/interrupted", .kind = "strike", .number = strike::kRead, .error = EINTR},
    {.name = "read/short",
     .kind = "strike",
     .number = strike::kRead,
     .letters = "c",
     .may_fail = false},
    {.name = "write/once", .kind = "strike", .number = strike::kWrite},
    {.name = "write/for-good", .kind = "strike", .number = strike::kWrite, .run = 0, .error = EIO},
    {.name = "write/interrupted", .kind = "strike", .number = strike::kWrite, .error = EINTR},
    {.name = "write/half", .kind = "strike", .number = strike::kWrite, .letters = "h"},
    {.name = "write/short",
     .kind = "strike",
     .number = strike::kWrite,
     .letters = "c",
     .may_fail = false},
    {.name = "sync/once", .kind = "strike", .number = strike::kSync},
    {.name = "sync/interrupted", .kind = "strike", .number = strike::kSync, .error = EINTR},
    {.name = "name/once", .kind = "strike", .number = strike::kName},
    {.name = "name/full", .kind = "strike", .number = strike::kName, .error = ENOSPC},
    {.name = "truncate/once", .kind = "strike", .number = strike::kTruncate},
    {.name = "map/once", .kind = "strike", .number = strike::kMap},
    {.name = "descriptors", .kind = "descriptors"},
    {.name = "clock/forward", .kind = "clock", .number = 86400 * 3},
    {.name = "clock/back", .kind = "clock", .number = -86400 * 3},
    {.name = "file-system/read-only", .kind = "", .letters = "r"},
    {.name = "file-system/full", .kind = "", .letters = "f"},
    {.name = "file-system/no-locks", .kind = "", .letters = "l"},
    {.name = "file-system/one-case", .kind = "", .letters = "i", .may_fail = false},
    {.name = "mount/read-only", .kind = "", .mount = "read-only"},
    {.name = "mount/full", .kind = "", .mount = "full"},
};

constexpr long kDescriptorLimits = 24;  // from 3 on

// The struck calls, those of each kind, and the clock's readings.
std::vector<long> ReadCounts(const std::string& beside) {
  std::ifstream file(beside + "counts.txt");
  std::vector<long> counts;
  for (long count; file >> count;) counts.push_back(count);
  counts.resize(strike::kKinds + 2);
  return counts;
}

struct ConsoleRow : Tally {
  const Command* command = nullptr;
  const ConsoleManner* manner = nullptr;
  std::vector<long> places;
};

struct ConsoleReport {
  bool struck = false;
  char wrong[600] = "";
};

struct Without {  // a fault
  int code = 0;
  std::map<std::string, std::string> files;  // by name, what they hold then
  std::string journal;
  std::vector<long> counts;
};

class ConsoleLoops {
 public:
  explicit ConsoleLoops(LoopOptions options)
      : options_(std::move(options)), base_(options_.folder + "/lorimat-console.XXXXXX") {
    if (mkdtemp(base_.data()) == nullptr) {
      std::perror(base_.c_str());
      std::exit(2);
    }
  }
  ~ConsoleLoops() {
    std::error_code ignored;
    fs::remove_all(base_, ignored);
  }

  int Run() {
    if (!MakeShop()) return 2;
    for (const Command& command : Commands()) {
      if (!Measure(command)) return 2;
    }
    ChoosePlaces();
    std::vector<int> running(static_cast<size_t>(options_.jobs), 0);
    reports_.resize(running.size());
    for (ConsoleReport*& report : reports_) report = Shared<ConsoleReport>();
    std::vector<std::pair<ConsoleRow*, long>> trials(running.size());
    const auto collect = [&] {
      const int process = wait(nullptr);
      for (size_t slot = 0; slot < running.size(); ++slot) {
        if (running[slot] != process) continue;
        running[slot] = 0;
        Note(*trials[slot].first, trials[slot].second, *reports_[slot]);
      }
    };
    for (ConsoleRow& row : rows_) {
      for (const long place : row.places) {
        auto free = std::find(running.begin(), running.end(), 0);
        if (free == running.end()) {
          collect();
          free = std::find(running.begin(), running.end(), 0);
        }
        const auto slot = static_cast<size_t>(free - running.begin());
        *reports_[slot] = ConsoleReport{};
        trials[slot] = {&row, place};
        auto work = [&] { Try(row, place, slot, reports_[slot]); };
        *free = StartApart(work, 4);
      }
    }
    while (std::any_of(running.begin(), running.end(), [](int p) { return p != 0; })) collect();
    std::vector<const Tally*> tallies;
    for (const ConsoleRow& row : rows_)
      if (row.tried > 0) tallies.push_back(&row);
    return PrintTallies(tallies, "faults.console", options_.only > 0 ? 1 : options_.places) ? 0 : 1;
  }

 private:
  std::string Shop() const { return base_ + "/shop/"; }

  bool MakeShop() const {
    fs::create_directories(Shop() + "scratch");
    const auto write = [this](const char* name, const char* text) {
      std::ofstream(Shop() + name) << text;
    };
    write("lines.cmd", "VEND REP=1, PRE=2.50\nVEND REP=2, PRE=1, QTA=3\nCHIU\n");
    write("at.cmd", "@lines.cmd,errors.cmd,log.cmd\nVEND REP=1, PRE=4\nCHIU\n");
    const Words sell = {"run", "lines.cmd", "--register", "shop.register", "--clock", kClock};
    const Words save = {"backup", "tables", "--register", "shop.register"};
    for (const Words& words : {sell, save}) {
      const Ended ended = RunConsole(words, Shop(), base_ + "/", {}, base_ + "/out.txt");
      if (ended.code == 0) continue;
      std::printf("the shop cannot be made: %s\n", ended.errors.c_str());
      return false;
    }
    return true;
  }

  // The folders of a slot: its files, and what is about them.
  std::string Beside(size_t slot) const { return base_ + "/" + std::to_string(slot) + "/"; }
  std::string Prepare(size_t slot) const {
    const std::string folder = Beside(slot) + "files/";
    fs::remove_all(Beside(slot));
    fs::create_directories(Beside(slot));
    fs::copy(Shop(), folder, fs::copy_options::recursive);
    return folder;
  }

  // What the register that the command leaves has in its journal.
  static std::string Journal(const std::string& folder, const std::string& beside) {
    std::string journal;
    for (const char* name : {"shop.register", "new.register"}) {
      if (!fs::exists(folder + name)) continue;
      const std::string listed = beside + "journal.txt";
      RunConsole({"journal", "--register", name}, folder, beside, {}, listed);
      journal += ReadFile(listed);
    }
    return journal;
  }

  bool Measure(const Command& command) {
    const std::string folder = Prepare(0);
    // The kinds are counted with no place to be struck.
    const Ended ended =
        RunConsole(command.words, folder, Beside(0), {.strike = "0 0 1 0 o"}, folder + "out.txt");
    Without& without = without_[command.name];
    without.code = ended.code;
    without.counts = ReadCounts(Beside(0));
    if (ended.code != 0) {
      std::printf("%s without a fault: %d %s\n", command.name, ended.code, ended.errors.c_str());
      return false;
    }
    for (const std::string& name : Outputs(command)) without.files[name] = ReadFile(folder + name);
    without.journal = Journal(folder, Beside(0));
    for (const ConsoleManner& manner : kConsoleManners) {
      ConsoleRow row;
      row.name = std::string(command.name) + "/" + manner.name;
      row.command = &command;
      row.manner = &manner;
      const std::string kind = manner.kind;
      row.calls = kind == "strike"        ? without.counts[static_cast<size_t>(manner.number) + 1]
                  : kind == "clock"       ? without.counts.back()
                  : kind == "descriptors" ? kDescriptorLimits
                                          : 1;
      if (manner.mount != nullptr && geteuid() != 0) row.calls = 0;
      // The libraries that draw, and that of JSON, end the program when they have no memory.
      const std::string_view own = command.name;
      const bool ends = own == "paper" || own == "backup" || own == "restore";
      if (ends && kind == "strike" && manner.number == strike::kMemory) row.calls = 0;
      const auto& names = options_.names;
      const bool taken =
          names.empty() || std::any_of(names.begin(), names.end(), [&](auto& name) {
            return ("/" + row.name + "/").find("/" + name + "/") != std::string::npos;
          });
      if (taken && row.calls > 0) rows_.push_back(std::move(row));
    }
    return true;
  }

  static Words Outputs(Command command) {
    command.outputs.push_back("out.txt");
    return command.outputs;
  }

  void ChoosePlaces() {
    long left = options_.places;
    auto rows_left = static_cast<long>(rows_.size());
    std::vector<ConsoleRow*> by_size;
    for (ConsoleRow& row : rows_) by_size.push_back(&row);
    std::sort(by_size.begin(), by_size.end(), [](auto* a, auto* b) { return a->calls < b->calls; });
    for (ConsoleRow* row : by_size) {
      row->places = SpreadPlaces(row->calls, options_.places == 0 ? 0 : left / rows_left,
                                 rows_left * 7919 + options_.seed);
      if (options_.only > 0) row->places = {options_.only};
      left -= static_cast<long>(row->places.size());
      --rows_left;
    }
  }

  static bool Mount(const ConsoleManner& manner, const std::string& folder) {
    if (std::string(manner.mount) == "read-only") {
      return mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
             mount(nullptr, folder.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) ==
                 0;
    }
    // As large as what is there, and one page more.
    const std::string kept = folder.substr(0, folder.size() - 1) + "-kept";
    fs::rename(folder.substr(0, folder.size() - 1), kept);
    fs::create_directories(folder);
    long pages = 2;
    for (const auto& entry : fs::recursive_directory_iterator(kept)) {
      pages += entry.is_directory() ? 1 : static_cast<long>(entry.file_size() + 4095) / 4096;
    }
    const std::string size = "size=" + std::to_string(pages * 4) + "k";
    if (mount("none", folder.c_str(), "tmpfs", 0, size.c_str()) != 0) return false;
    fs::copy(kept, folder, fs::copy_options::recursive);
    return true;
  }

  void Try(const ConsoleRow& row, long place, size_t slot, ConsoleReport* report) const {
    const ConsoleManner& manner = *row.manner;
    const std::string folder = Prepare(slot);
    const std::string beside = Beside(slot);
    Disturbance disturbance;
    const std::string kind = manner.kind;
    if (kind == "descriptors") {
      disturbance.descriptors = static_cast<rlim_t>(2 + place);
    } else if (kind == "clock") {
      disturbance.clock = std::to_string(place) + " " + std::to_string(manner.number);
    } else {
      disturbance.strike =
          std::to_string(manner.number) + " " + std::to_string(kind == "strike" ? place : 0) + " " +
          std::to_string(manner.run) + " " + std::to_string(manner.error) + " " + manner.letters;
    }
    if (manner.mount != nullptr) {
      fs::create_directories(folder + "scratch");
      if (!Mount(manner, folder)) {
        std::snprintf(report->wrong, sizeof report->wrong, "no mount: %s", std::strerror(errno));
        return;
      }
    }
    const Ended ended =
        RunConsole(row.command->words, folder, beside, disturbance, folder + "out.txt");
    report->struck = kind != "strike" || ReadCounts(beside)[0] > 0 || ended.code != 0;
    std::string wrong = Judge(row, ended, folder, beside);
    if (manner.mount != nullptr) umount2(folder.c_str(), MNT_DETACH);
    if (!wrong.empty())
      wrong += "; it ends with " + std::to_string(ended.code) + ": " + ended.errors;
    std::snprintf(report->wrong, sizeof report->wrong, "%s", wrong.c_str());
  }

  std::string Judge(const ConsoleRow& row, const Ended& ended, const std::string& folder,
                    const std::string& beside) const {
    const ConsoleManner& manner = *row.manner;
    const Without& without = without_.at(row.command->name);
    if (ended.code < 0) return "dies by signal " + std::to_string(-ended.code);
    // 127 is the loader's, which has no console yet.
    if (ended.code > 2 && ended.code != 127) return "no exit code of the console";
    const bool tells =
        !ended.errors.empty() || (ended.code == 1 && fs::file_size(folder + "out.txt") > 0);
    if (ended.code != 0 && !tells) return "fails without a word";
    const bool names = ended.errors.empty() || ended.code == 127 ||
                       NamesFileOrCause(ended.errors, row.command->words);
    if (!names) return "names neither a file nor a cause";
    if (ended.code != 0 && !manner.may_fail) return "fails where it need not";
    const bool is_clock = std::string(manner.kind) == "clock";
    const bool ends_early = row.command->ends_early && manner.number == strike::kRead;
    const bool has_all = ended.code == 0 && !is_clock && !ends_early;
    // A mounted folder without room has none for a file of the test either.
    if (manner.mount == nullptr) {
      for (const std::string& name : Outputs(*row.command)) {
        const std::string seen = ReadFile(folder + name);
        const bool as_without = seen == without.files.at(name);
        // What is printed goes out as it comes.
        if (has_all && !as_without) return name + " is not as without the fault";
        if (name != "out.txt" && !row.command->shows_work && !as_without &&
            fs::exists(folder + name)) {
          return name + " is half there";
        }
      }
    }
    for (const char* name : {"shop.register", "new.register"}) {
      // An empty one is no register yet.
      if (!fs::exists(folder + name) || fs::file_size(folder + name) == 0) continue;
      const Ended verified = RunConsole({"journal", "verify", "--register", name}, folder, beside,
                                        {}, beside + "verify.txt");
      if (verified.code != 0) return std::string(name) + " is not good: " + verified.errors;
    }
    if (has_all && manner.mount == nullptr && Journal(folder, beside) != without.journal) {
      return "the journal is not as without the fault";
    }
    return {};
  }

  void Note(ConsoleRow& row, long place, const ConsoleReport& report) {
    ++row.tried;
    if (*report.wrong != 0) {
      ++row.wrong;
      std::printf("%s %ld: %s\n", row.name.c_str(), place, report.wrong);
      std::fflush(stdout);
    } else if (!report.struck) {
      ++row.missed;
    }
  }

  const LoopOptions options_;
  std::string base_;
  std::map<std::string, Without> without_;
  std::vector<ConsoleRow> rows_;
  std::vector<ConsoleReport*> reports_;
};

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) {
  return lorimat::ConsoleLoops(lorimat::ReadLoopOptions(argc, argv)).Run();
}
