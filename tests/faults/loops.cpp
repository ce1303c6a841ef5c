// Every fault at every place: a host lives its day in a process of its own, again and again, and
// each time another call of the system fails, or the process dies there. Behind each day the
// register's file is looked at by a process that nothing happened to. It has to hold what was
// answered with 0, once, and nothing else. script/faults --help tells of the arguments.
//
// It ends with 1 when a place was found where the promise does not hold.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "apart.h"
#include "check.h"
#include "life.h"
#include "loop_options.h"
#include "rows.h"
#include "tally.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

class Loops {
 public:
  explicit Loops(LoopOptions options)
      : options_(std::move(options)), base_(options_.folder + "/lorimat-faults.XXXXXX") {
    if (mkdtemp(base_.data()) == nullptr) Fail(base_);
  }
  ~Loops() {
    std::error_code ignored;
    fs::remove_all(base_, ignored);
  }

  int Run() {
    if (!Prepare()) return 2;
    ChoosePlaces(options_.places, &rows_);
    for (Row& row : rows_) {
      if (options_.only > 0) row.places = {options_.only};
      all_ += static_cast<long>(row.places.size());
    }
    if (!options_.failures.empty()) {
      failures_ = std::fopen(options_.failures.c_str(), "w");
      if (failures_ == nullptr) Fail(options_.failures);
    }
    slots_.resize(static_cast<size_t>(options_.jobs));
    for (Slot& slot : slots_) slot.report = Shared<Report>();
    for (Row& row : rows_) {
      for (const long place : row.places) Start(row, place);
    }
    while (running_ > 0) Collect();
    if (failures_ != nullptr) std::fclose(failures_);
    return PrintTable() ? 0 : 1;
  }

 private:
  struct Slot {
    pid_t process = 0;
    Row* row = nullptr;
    long place = 0;
    Report* report = nullptr;
  };

  [[noreturn]] static void Fail(const std::string& what) {
    std::perror(("fault_loops: " + what).c_str());
    std::exit(2);
  }

  std::string Folder(size_t slot) const { return base_ + "/" + std::to_string(slot) + "/"; }

  void PrepareFolder(Part part, const std::string& folder) const {
    fs::remove_all(folder);
    fs::create_directories(folder + kOutboxName);
    if (part != Part::kCut) return;
    fs::copy(half_, folder, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  }

  // In a process of its own; whether that ended as it should.
  template <typename Work>
  static bool Apart(Work&& work) {
    const int status = RunApart(work);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

  // Each part without a fault: it has to be good, and tells how many places there are.
  bool Prepare() {
    half_ = base_ + "/half/";
    PrepareFolder(Part::kNew, half_);
    auto* report = Shared<Report>();
    if (!Apart([&] { LeaveHalf(half_, report); }) || report->wrong_count > 0 ||
        report->refused > 0) {
      std::printf("half a day without a fault: %s\n", report->wrongs[0]);
      return false;
    }
    half_report_ = *report;
    return std::all_of(std::begin(kParts), std::end(kParts),
                       [this](Part part) { return Measure(part); });
  }

  bool Measure(Part part) {
    static constexpr Manner kNone = {.name = "none", .kinds = 0, .run = 0};
    constexpr long kBeyond = 100000;  // more operations than a day has
    const std::string folder = Folder(0);
    struct Looks {
      Look looks[1000];
      size_t count = 0;
    };
    auto* behind_each = Shared<Looks>();
    auto* report = Shared<Report>();
    const auto run = [&](const Trouble& trouble) {
      PrepareFolder(part, folder);
      *report = part == Part::kCut ? half_report_ : Report{};
      const bool ended = Apart([&] {
        std::vector<Look> looks;
        Live(trouble, folder, undisturbed_, report, &looks);
        behind_each->count = std::min(looks.size(), std::size(behind_each->looks));
        std::copy_n(looks.begin(), behind_each->count, behind_each->looks);
      });
      const bool checked = Apart([&] { CheckFile(folder, report); });
      if (ended && checked && report->wrong_count == 0 && report->refused == 0) return true;
      std::printf("%s without a fault: %s\n", NameOf(part),
                  report->wrong_count > 0 ? report->wrongs[0] : "a call is refused, or it dies");
      return false;
    };
    if (!run({part, strike::kMemory, &kNone, 0})) return false;
    Report measured = *report;
    if (part == Part::kDay) {
      undisturbed_.assign(behind_each->looks, behind_each->looks + behind_each->count);
      if (!run({part, strike::kMemory, nullptr, kBeyond})) return false;
      measured.answers = report->answers;
    }
    for (Row& row : RowsOf(part, measured)) {
      const bool taken = options_.names.empty() ||
                         std::any_of(options_.names.begin(), options_.names.end(),
                                     [&row](const std::string& name) { return Takes(name, row); });
      if (taken) rows_.push_back(std::move(row));
    }
    return true;
  }

  void Start(Row& row, long place) {
    if (running_ == options_.jobs) Collect();
    size_t number = 0;
    while (slots_[number].process != 0) ++number;
    Slot& slot = slots_[number];
    const std::string folder = Folder(number);
    PrepareFolder(row.trouble.part, folder);
    *slot.report = row.trouble.part == Part::kCut ? half_report_ : Report{};
    slot.row = &row;
    slot.place = place;
    auto work = [&] {
      Trouble trouble = row.trouble;
      trouble.place = place;
      Try(trouble, folder, undisturbed_, slot.report);
    };
    slot.process = StartApart(work, /*processes=*/2);
    ++running_;
  }

  void Collect() {
    int status = 0;
    const pid_t process = wait(&status);
    for (Slot& slot : slots_) {
      if (slot.process != process) continue;
      slot.process = 0;
      --running_;
      if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        slot.report->Wrong("file: looking at it ends with status %d", status);
      }
      Note(*slot.row, slot.place, *slot.report);
    }
  }

  void Note(Row& row, long place, const Report& report) {
    ++row.tried;
    if (report.was_unknown) ++row.unknown;
    if (report.wrong_count > 0) {
      ++row.wrong;
      if (row.wrong <= 3) Print(stdout, row, place, report);
      if (failures_ != nullptr) Print(failures_, row, place, report);
    } else if (report.failed == 0) {
      ++row.missed;
    }
    if (++done_ % 1000 == 0 && done_ < all_) {
      std::printf("%ld of %ld places\n", done_, all_);
      std::fflush(stdout);
    }
  }

  static void Print(std::FILE* to, const Row& row, long place, const Report& report) {
    std::fprintf(to, "%s %ld, struck in %s:\n", row.name.c_str(), place,
                 *report.struck != 0 ? report.struck : report.now);
    for (int i = 0; i < std::min(report.wrong_count, Report::kMostWrongs); ++i) {
      std::fprintf(to, "    %s\n", report.wrongs[i]);
    }
    if (report.wrong_count > Report::kMostWrongs) {
      std::fprintf(to, "    and %d more\n", report.wrong_count - Report::kMostWrongs);
    }
    std::fflush(to);
  }

  bool PrintTable() const {
    std::vector<const Tally*> tallies;
    for (const Row& row : rows_) tallies.push_back(&row);
    return PrintTallies(tallies, "faults", options_.only > 0 ? all_ : options_.places);
  }

  const LoopOptions options_;
  std::string base_;
  std::string half_;  // left behind in the middle of a receipt
  Report half_report_;
  std::vector<Look> undisturbed_;  // behind each call of a day
  std::vector<Row> rows_;
  std::vector<Slot> slots_;
  std::FILE* failures_ = nullptr;
  int running_ = 0;
  long done_ = 0;
  long all_ = 0;
};

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) {
  return lorimat::Loops(lorimat::ReadLoopOptions(argc, argv)).Run();
}
