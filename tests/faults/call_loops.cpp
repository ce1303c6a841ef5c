// Every fault of a device at every client call: each conversation is played again and again against
// the shared library, and each time another call of the client is refused, throws or answers what
// no device may, or another call of the system that the library makes fails. call_trial.h says what
// has to hold. script/faults --help tells of the arguments.
//
// It ends with 1 when a place was found where the promise does not hold.
#include <sys/wait.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "apart.h"
#include "call_trial.h"
#include "loop_options.h"
#include "tally.h"

// The library waits for a device that is busy, up to minutes: here every wait is over at once.
extern "C" __attribute__((visibility("default"))) int nanosleep(const timespec*, timespec*) {
  return 0;
}

namespace lorimat {
namespace {

namespace fs = std::filesystem;

constexpr CallManner kManners[] = {
    {.name = "call/refused", .fault = CallFault::kRefused},
    {.name = "call/exception", .fault = CallFault::kException, .traces = true},
    {.name = "call/integer-thrown", .fault = CallFault::kInteger, .traces = true},
    {.name = "call/no-memory-thrown", .fault = CallFault::kNoMemory, .traces = true},
    {.name = "call/minus-one", .fault = CallFault::kNoResult},
    {.name = "call/no-such-result", .fault = CallFault::kBeyond},
    {.name = "call/full-text", .fault = CallFault::kFullText},
    {.name = "call/bad-number", .fault = CallFault::kBadNumber},
    {.name = "library/memory", .kind = strike::kMemory},
    {.name = "library/open", .kind = strike::kOpen},
    {.name = "library/open-interrupted", .kind = strike::kOpen, .error = EINTR},
    {.name = "library/read", .kind = strike::kRead},
    {.name = "library/read-interrupted", .kind = strike::kRead, .error = EINTR},
    {.name = "library/read-half", .kind = strike::kRead, .half = true},
    {.name = "library/write", .kind = strike::kWrite},
    {.name = "library/write-half", .kind = strike::kWrite, .half = true},
    {.name = "library/name", .kind = strike::kName},
};
constexpr size_t kMannerCount = std::size(kManners);

constexpr int kMostWrongs = 4;

// What the trials of a conversation tell.
struct CallReport {
  bool measured = false;
  bool again = false;
  long lines = 0;
  long places[kMannerCount] = {};
  size_t manner = 0;  // that is being tried
  long place = 0;
  long tried[kMannerCount] = {};
  long missed[kMannerCount] = {};
  long wrong[kMannerCount] = {};
  char wrongs[kMostWrongs][1000] = {};
  int wrong_count = 0;

  void Note(const std::string& text) {
    if (wrong_count < kMostWrongs) std::snprintf(wrongs[wrong_count], 1000, "%s", text.c_str());
    ++wrong_count;
  }
};

class CallLoops {
 public:
  explicit CallLoops(LoopOptions options) : options_(std::move(options)) {
    stage_.library = CONVERSATION_LIBRARY;
    stage_.language = CONVERSATION_LANGUAGE;
    setenv("TMPDIR", options_.folder.c_str(), 1);  // of the conversations' folders
  }

  int Run() {
    FindConversations();
    for (const std::string& file : files_) {
      reports_.push_back(Shared<CallReport>());
      Start([this, &file, report = reports_.back()] {
        Bound();
        MeasureFile(file, report);
      });
    }
    Finish();
    bool good = !files_.empty();
    for (size_t i = 0; i < files_.size(); ++i) {
      if (reports_[i]->measured && reports_[i]->wrong_count == 0) continue;
      std::printf("%s: %s\n", files_[i].c_str(), reports_[i]->wrongs[0]);
      good = false;
    }
    if (!good) return 2;
    ChooseStrides();
    for (size_t i = 0; i < files_.size(); ++i) TryFile(i);
    Finish();
    return PrintReports() ? 0 : 1;
  }

 private:
  void FindConversations() {
    const fs::path root = CONVERSATIONS;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
      const std::string name = fs::relative(entry.path(), root).replace_extension().string();
      const bool own = name.find('/') != name.npos && entry.path().extension() == ".txt" &&
                       !name.starts_with("must_fail/") &&
                       !name.starts_with("register_must_fail/") && !name.ends_with("_windows");
      if (own) files_.push_back(entry.path().string());
    }
    std::sort(files_.begin(), files_.end());
  }

  bool Takes(size_t manner) const {
    const auto& names = options_.names;
    return names.empty() || std::any_of(names.begin(), names.end(), [&](const std::string& name) {
             return ("/" + std::string(kManners[manner].name) + "/").find("/" + name + "/") !=
                    std::string::npos;
           });
  }

  template <typename Work>
  void Start(Work work) {
    if (running_ == options_.jobs) Collect();
    StartApart(work, kNoBound);
    ++running_;
  }
  void Collect() {
    int status = 0;
    wait(&status);
    --running_;
  }
  void Finish() {
    while (running_ > 0) Collect();
  }

  void MeasureFile(const std::string& file, CallReport* report) const {
    Undisturbed undisturbed;
    Wrong wrong;
    const conversation::Conversation script = Read(file, report);
    wrong = Measure(script, stage_, &undisturbed);
    if (!wrong.empty()) report->Note("without a fault: " + wrong);
    for (size_t m = 0; m < kMannerCount; ++m) {
      report->places[m] = Takes(m) ? PlacesOf(kManners[m], undisturbed) : 0;
    }
    report->again = undisturbed.again;
    report->lines = std::count_if(undisturbed.codes.begin(), undisturbed.codes.end(),
                                  [](long code) { return code >= 0; });
    report->measured = true;
  }

  static conversation::Conversation Read(const std::string& file, CallReport* report) {
    try {
      return conversation::ReadConversation(file);
    } catch (const conversation::Failure& failure) {
      report->Note(failure.what());
      return {};
    }
  }

  // Each manner's places are numbered through all conversations, and one of so many is taken.
  // Manners with few are tried whole; the others share what is left.
  void ChooseStrides() {
    std::vector<std::pair<long, size_t>> by_size;
    for (size_t m = 0; m < kMannerCount; ++m) {
      long all = 0;
      for (const CallReport* report : reports_) all += report->places[m];
      by_size.emplace_back(all, m);
    }
    std::sort(by_size.begin(), by_size.end());
    long left = options_.places;
    long manners_left = kMannerCount;
    for (const auto& [all, manner] : by_size) {
      const long share = std::max(1L, left / manners_left--);
      const long stride = options_.places == 0 ? 1 : std::max(1L, (all + share - 1) / share);
      strides_[manner] = stride;
      left -= all / stride;
    }
  }

  // The next place of a conversation from `place` on; 0 behind the last.
  long NextPlace(const CallReport& report, size_t manner, long place, long numbered_before) const {
    if (options_.only > 0) {
      return place <= options_.only && options_.only <= report.places[manner] ? options_.only : 0;
    }
    while (place <= report.places[manner]) {
      // A prime gives each manner a beginning of its own.
      const long number =
          numbered_before + place + options_.seed + static_cast<long>(manner) * 7919;
      if (number % strides_[manner] == 0) return place;
      ++place;
    }
    return 0;
  }

  void TryFile(size_t index) {
    const std::vector<long> before = numbered_;
    for (size_t m = 0; m < kMannerCount; ++m) numbered_[m] += reports_[index]->places[m];
    Start([this, index, before] {
      CallReport* report = reports_[index];
      // One that dies of a trial is followed by another behind it.
      for (;;) {
        const int status = RunApart([&] { TryOn(index, before); });
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
        ++report->wrong[report->manner];
        report->Note(Place(*report) + (WIFSIGNALED(status)
                                           ? "dies by signal " + std::to_string(WTERMSIG(status))
                                           : "ends with " + std::to_string(WEXITSTATUS(status))));
      }
    });
  }

  static std::string Place(const CallReport& report) {
    return std::string(kManners[report.manner].name) + " " + std::to_string(report.place) + ": ";
  }

  void TryOn(size_t index, const std::vector<long>& numbered_before) const {
    CallReport* report = reports_[index];
    const conversation::Conversation script = Read(files_[index], report);
    Undisturbed undisturbed;
    Measure(script, stage_, &undisturbed);
    for (; report->manner < kMannerCount; ++report->manner, report->place = 0) {
      const size_t m = report->manner;
      for (;;) {
        const long place = NextPlace(*report, m, report->place + 1, numbered_before[m]);
        if (place == 0) break;
        report->place = place;
        Bound();  // of the place: a conversation may have any number of them
        ++report->tried[m];
        bool struck = false;
        const Wrong wrong = Try(script, stage_, undisturbed, kManners[m], place, &struck);
        if (!wrong.empty()) {
          ++report->wrong[m];
          report->Note(Place(*report) + wrong);
        } else if (!struck) {
          ++report->missed[m];
        }
      }
    }
  }

  bool PrintReports() const {
    std::FILE* failures =
        options_.failures.empty() ? nullptr : std::fopen(options_.failures.c_str(), "w");
    std::vector<Tally> tallies(kMannerCount);
    long again = 0, lines = 0;
    for (size_t i = 0; i < files_.size(); ++i) {
      const CallReport& report = *reports_[i];
      again += report.again;
      lines += report.lines;
      for (int w = 0; w < std::min(report.wrong_count, kMostWrongs); ++w) {
        for (std::FILE* to : {stdout, failures}) {
          if (to != nullptr) std::fprintf(to, "%s: %s\n", files_[i].c_str(), report.wrongs[w]);
        }
      }
      for (size_t m = 0; m < kMannerCount; ++m) {
        tallies[m].calls += report.places[m];
        tallies[m].tried += report.tried[m];
        tallies[m].missed += report.missed[m];
        tallies[m].wrong += report.wrong[m];
      }
    }
    if (failures != nullptr) std::fclose(failures);
    std::printf("\n%zu conversations with %ld lines; %ld play once more behind the fault\n",
                files_.size(), lines, again);
    std::vector<const Tally*> rows;
    for (size_t m = 0; m < kMannerCount; ++m) {
      tallies[m].name = kManners[m].name;
      if (tallies[m].calls > 0) rows.push_back(&tallies[m]);
    }
    return PrintTallies(rows, "faults.calls", options_.only > 0 ? 1 : options_.places);
  }

  // What works in it has bounds of its own.
  static constexpr unsigned kNoBound = 0;

  const LoopOptions options_;
  conversation::Stage stage_;
  std::vector<std::string> files_;
  std::vector<CallReport*> reports_;
  std::vector<long> numbered_ = std::vector<long>(kMannerCount, 0);
  std::vector<long> strides_ = std::vector<long>(kMannerCount, 1);
  int running_ = 0;
};

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) {
  // Where TZ is not set, the C library keeps a copy of its own name for that, a new one each time
  // that the time of a trace is asked for. That is none of the library's allocations.
  setenv("TZ", "UTC", 1);
  tzset();
  return lorimat::CallLoops(lorimat::ReadLoopOptions(argc, argv)).Run();
}
