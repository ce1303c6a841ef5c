// A door without the network: a register in a file, the log beside it, and a worker that can be
// killed at each of its steps and begun again.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "door/job/register_device.h"
#include "door/job/worker.h"
#include "door/judge/line_judge.h"
#include "door/log/job_log.h"
#include "language/shipped_language.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "rpccommon/services/rtfconst.h"
#include "support/temporary_folder.h"

namespace lorimat::door {

// The process is gone; nothing of it runs any further.
struct Killed {};

// A register that need not tell its last document and closing.
class ShopDevice : public RegisterDevice {
 public:
  using RegisterDevice::RegisterDevice;
  Told FindLast(const DocumentName& name, LastDocument* document) override {
    return has_journal ? RegisterDevice::FindLast(name, document) : Told::kNo;
  }
  Told FindVoid(const DocumentName& name, const DocumentName& sale) override {
    return has_journal ? RegisterDevice::FindVoid(name, sale) : Told::kNo;
  }
  Told FindPaper(const DocumentName& name, std::optional<DocumentKind> kind,
                 std::vector<std::string>* lines) override {
    return has_journal ? RegisterDevice::FindPaper(name, kind, lines) : Told::kNo;
  }
  std::optional<JobDocument> LastClosing() override {
    return has_journal ? RegisterDevice::LastClosing() : std::nullopt;
  }

  bool has_journal = true;
};

class DoorShop {
 public:
  DoorShop() { Start(); }
  ~DoorShop() {
    End();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  DoorShop(const DoorShop&) = delete;
  DoorShop& operator=(const DoorShop&) = delete;

  // --- The process
  void Start() {
    RegisterSettings settings;
    settings.file = register_file();
    settings.clock = [this] {
      std::tm time{};
      time.tm_year = 126;
      time.tm_mon = 10;
      time.tm_mday = 22;
      time.tm_hour = hour;
      return time;
    };
    device = std::make_unique<ShopDevice>(std::move(settings));
    device->has_journal = has_journal_;
    translator_ = std::make_unique<EcrCmdCommand>();
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(shipped::LanguageFile().parent_path());
    char name[] = "merkelin.ini";
    EXPECT_EQ(translator_->TradInit(name, 0, &device->client(), true), 0);
    std::filesystem::current_path(before);
    log = std::make_unique<JobLog>(log_file().string(), [this] {
      if (at_clock) at_clock();
      return now;
    });
    const DeviceNumbers there = device->Ask()->numbers;
    log->Bind(there.serial, there);
    worker = std::make_unique<Worker>(
        *log, *device, judge(),
        [this](const std::string& line, std::string* answer) { return RunLine(line, answer); },
        [this](Step step) {
          if (at_step) at_step(step);
          if (kill_at_ && *kill_at_ == step && --kill_in_ == 0) {
            kill_at_.reset();
            throw Killed();
          }
        });
  }
  void End() {
    worker.reset();
    log.reset();
    translator_.reset();
    device.reset();
  }
  void Restart() {
    End();
    Start();
  }
  long RunLine(const std::string& line, std::string* answer) {
    sent.push_back(line);
    std::string copy = line;
    copy.resize(copy.size() + 1);
    std::vector<char> text(1024);
    const long code = translator_->EcrCmd(copy.data(), text.data());
    *answer = text.data();
    return code;
  }
  // The n-th time that the step is reached is the end.
  void KillAt(Step step, int times = 1) {
    kill_at_ = step;
    kill_in_ = times;
  }

  // --- Jobs
  Job Submit(const std::string& key, std::vector<std::string> lines,
             const std::string& desk = "till") {
    const Judged judged = judge().Judge(lines, true);
    EXPECT_FALSE(judged.fault);
    NewJob job;
    job.desk = desk;
    job.key = key;
    job.digest = "d";
    job.effect = judged.effect;
    job.refused = judged.refused;
    job.lines = std::move(lines);
    job.expires = now + 600000;
    bool was_there = false;
    return log->Accept(job, &was_there);
  }
  Job Reset(const std::string& key) {
    NewJob reset;
    reset.key = key;
    reset.lines = {"#74"};
    reset.effect = JobEffect::kReset;
    reset.expires = now + 600'000;
    bool was_there = false;
    return log->Accept(reset, &was_there);
  }
  Job Sell(const std::string& key) {
    return Submit(key, {"VEND REP=1, PRE=1.20", "CHIU TEND=CONTANTI"});
  }
  Job Get(int64_t id) { return *log->Find(id); }
  // Works until there is nothing to do, or nothing can be done.
  Worker::Did Drain() {
    for (int i = 0; i < 1000; ++i) {
      const Worker::Did did = worker->Work();
      if (did != Worker::Did::kWork) return did;
    }
    ADD_FAILURE() << "it has no end";
    return Worker::Did::kNothing;
  }
  // The same, with a new process behind each end of one.
  Worker::Did DrainWithRestarts() {
    for (;;) {
      try {
        return Drain();
      } catch (const Killed&) {
        Restart();
      }
    }
  }

  // --- What the register has
  std::string register_file() const { return (folder_ / "shop.register").string(); }
  std::filesystem::path log_file() const { return folder_ / "shop.door"; }
  int64_t documents() { return device->device().store().document_count(); }
  // How many registered documents have a mark on them.
  int WithMark(const std::string& mark) {
    int count = 0;
    device->device().store().ForEveryEntry([&](uint64_t, const JournalEntry& entry) {
      if (entry.document != 0 && HasMark(entry.lines, mark)) ++count;
      return true;
    });
    return count;
  }

  static LineJudge& judge() {
    static LineJudge judge(shipped::LanguageFile().string());
    return judge;
  }

  // For good: each new process has a device without one.
  void TakeJournal() { device->has_journal = has_journal_ = false; }
  // Somebody at its keyboard.
  void SellAside(int64_t amount) {
    VirtualRegister& keyboard = device->device();
    EXPECT_EQ(keyboard.BeginFiscalReceipt(true), RTF_SUCCESS);
    EXPECT_EQ(keyboard.PrintRecItem("CAFFE", static_cast<int>(amount), 0, 1, 0, ""), RTF_SUCCESS);
    EXPECT_EQ(keyboard.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }

  std::unique_ptr<ShopDevice> device;
  std::unique_ptr<JobLog> log;
  std::unique_ptr<Worker> worker;
  std::vector<std::string> sent;
  std::function<void(Step)> at_step;  // ahead of a kill there
  std::function<void()> at_clock;     // the log asks for the time, which it may do as it writes
  int64_t now = 1'790'000'000'000;
  int hour = 10;  // of the register's clock

 private:
  std::filesystem::path folder_ = MakeTemporaryFolder();
  std::unique_ptr<EcrCmdCommand> translator_;
  std::optional<Step> kill_at_;
  int kill_in_ = 0;
  bool has_journal_ = true;
};

}  // namespace lorimat::door
