#include "console/device/register_device.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <optional>
#include <utility>

#include "console/device/clock_text.h"
#include "console/device/fault_words.h"
#include "console/device/register_name.h"
#include "console/message/failure.h"
#include "console/message/refusal_text.h"
#include "console/message/register_failure_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "register/paper/picture.h"
#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "register/value/register_error.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

lorimat::RegisterSettings SettingsFor(const std::string& clock, const std::string& file) {
  lorimat::RegisterSettings settings;
  settings.file = file;
  if (clock.empty()) return settings;
  const std::optional<GivenDate> given = ParseDate(clock);
  // A till whose clock stands at midnight by a slip would put its receipts on a wrong day.
  if (!given || !given->has_time) {
    throw Failure(
        Tr("--clock {}: is no date and time, such as YYYY-MM-DD HH:MM or DD/MM/YYYY HH:MM",
           Shown(clock)));
  }
  settings.clock = [fixed = given->time] { return fixed; };
  return settings;
}

}  // namespace

// The register, with its log lines going to the trace.
class RegisterDevice::Machine : public lorimat::VirtualRegister {
 public:
  Machine(lorimat::RegisterSettings settings, Streams& streams)
      : VirtualRegister(std::move(settings)), streams_(streams), collected_(first_line()) {
    HoldPaper(collected_);
  }

  void LogTrace(const char* line) override {
    VirtualRegister::LogTrace(line);
    Collect();
    if (line != nullptr) streams_.Trace(Shown(line));
  }

  void LogError(const char* line) override {
    VirtualRegister::LogError(line);
    if (line != nullptr) streams_.Trace(Shown(line));
  }

  // What was printed since the start.
  const lorimat::Paper& Printed() {
    Collect();
    return printed_;
  }

 private:
  // Keeps what was printed since the last time: the register tears off the beginning of its roll,
  // and one in a file has the roll of earlier times too.
  void Collect() {
    const lorimat::Paper& roll = paper();
    const size_t first = collected_ - roll.dropped();
    const size_t begin = printed_.lines().size();
    for (size_t i = first; i < roll.lines().size(); ++i) printed_.Line(roll.lines()[i]);
    const auto new_row =
        std::lower_bound(roll.rows().begin(), roll.rows().end(), first,
                         [](const lorimat::PaperRow& row, size_t line) { return row.line < line; });
    for (auto row = new_row; row != roll.rows().end(); ++row) {
      lorimat::PaperRow copy = *row;
      copy.line = copy.line - first + begin;
      printed_.Row(std::move(copy));
    }
    collected_ = roll.dropped() + roll.lines().size();
    HoldPaper(collected_);
  }

  Streams& streams_;
  size_t collected_;  // the line of the roll, of all times, up to which printed_ reaches
  lorimat::Paper printed_;
};

class RegisterDevice::Paper : public DevicePaper {
 public:
  explicit Paper(Machine& machine) : machine_(machine) {}

  const std::vector<std::string>& printed() override { return machine_.Printed().lines(); }
  const std::vector<std::string>& roll() override {
    // A register in a file has the roll of earlier times too; a long session has more than the
    // roll.
    return machine_.paper_lines();
  }
  bool has_pictures() const override { return true; }
  std::string Png(const lorimat::PictureProgress& progress) override {
    return lorimat::RenderPng(machine_.Printed(), progress);
  }
  std::string Pdf(const lorimat::PictureProgress& progress) override {
    return lorimat::RenderPdf(machine_.Printed(), progress);
  }

 private:
  Machine& machine_;
};

class RegisterDevice::Faults : public DeviceFaults {
 public:
  explicit Faults(Machine& machine) : machine_(machine) {}

  void Plan(std::string_view words) override {
    try {
      PlanFault(machine_, words);
    } catch (const lorimat::RegisterError& error) {
      throw Failure(RegisterFailureWords(error.failure()));
    }
  }
  std::string List(size_t columns) override { return FaultList(machine_.faults(), columns); }
  std::vector<std::string> words() const override { return FaultWords(); }

 private:
  Machine& machine_;
};

RegisterDevice::RegisterDevice(const std::string& clock, const std::string& register_file,
                               Streams& streams)
    : file_(register_file) {
  if (!file_.empty()) RequireRegisterName(file_);
  struct stat status;
  const bool made = !file_.empty() && stat(file_.c_str(), &status) != 0;
  machine_ = std::make_unique<Machine>(SettingsFor(clock, file_), streams);
  paper_ = std::make_unique<Paper>(*machine_);
  faults_ = std::make_unique<Faults>(*machine_);
  Use(*machine_);
  TellOfStart(made, streams);
}

RegisterDevice::RegisterDevice(lorimat::RegisterSettings settings, Streams& streams)
    : machine_(std::make_unique<Machine>(std::move(settings), streams)),
      paper_(std::make_unique<Paper>(*machine_)),
      faults_(std::make_unique<Faults>(*machine_)) {
  Use(*machine_);
}

RegisterDevice::~RegisterDevice() = default;

void RegisterDevice::TellOfStart(bool made, Streams& streams) {
  if (made) TellNote(streams, Tr("{}: a new register was made", Shown(file_)));
  const std::optional<lorimat::CutOffDocument>& cut_off = machine_->cut_off();
  if (cut_off) {
    TellNote(streams, fmt::format("{}: {}", Shown(file_), EndedDocumentText(*cut_off)));
  }
  if (const std::optional<lorimat::UnansweredDocument>& last = machine_->unanswered()) {
    TellNote(streams, fmt::format("{}: {}", Shown(file_), UnansweredDocumentText(*last)));
  }
  if (const std::optional<lorimat::ClockBehind>& behind = machine_->clock_behind()) {
    lorimat::Refusal refusal;
    refusal.cause = lorimat::RefusalCause::kClockBehind;
    refusal.numbers = {behind->now, behind->latest};
    TellNote(streams, fmt::format("{}: {}", Shown(file_), RefusalText(refusal)));
  }
}

lorimat::VirtualRegister& RegisterDevice::machine() { return *machine_; }

std::string RegisterDevice::keeping_failure() const {
  return RegisterFailureText(machine_->failure());
}

std::string RegisterDevice::version() const {
  return machine_->tables().settings().firmware_version;
}

std::string RegisterDevice::Greeting() const {
  const std::string where = file_.empty() ? Tr("in memory") : Tr("kept in {}", Shown(file_));
  return Tr("lorimat {}: a virtual register, {}.", LORIMAT_VERSION, where);
}

DeviceFacts RegisterDevice::facts() {
  const auto& settings = machine_->tables().settings();
  return {settings.serial_number, settings.firmware_version,
          static_cast<int>(machine_->key_position()), machine_->store().day_open()};
}

DeviceState StateOf(const lorimat::VirtualRegister& device) {
  const int printer = device.printer_state();
  DeviceState state = {.printer = printer,
                       .key_position = static_cast<int>(device.key_position()),
                       .training = device.training(),
                       .faults = device.faults()};
  if (printer == RTF_FPTR_PS_FISCAL_RECEIPT || printer == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL ||
      printer == RTF_FPTR_PS_FISCAL_RECEIPT_ENDING) {
    const lorimat::Receipt& receipt = device.receipt();
    const auto items = std::count_if(receipt.lines().begin(), receipt.lines().end(),
                                     [](const auto& line) { return line.open_quantity != 0; });
    state.receipt = {receipt.kind(), static_cast<uint64_t>(items), receipt.total(), receipt.paid(),
                     receipt.remaining()};
  }
  return state;
}

DeviceState RegisterDevice::state() { return StateOf(*machine_); }

bool RegisterDevice::ready() { return machine_->printer_state() == RTF_FPTR_PS_MONITOR; }

std::vector<std::pair<std::string, std::string>> RegisterDevice::StatusRows() {
  const lorimat::RegisterStore& store = machine_->store();
  auto rows = DayRows(store.last_closure(), store.counters(), store.day_open(), store.daily().net(),
                      store.grand_total());
  for (const std::string& text : DayNoticeTexts(machine_->FindNotice())) {
    rows.emplace_back(Tr("Note"), text);
  }
  rows.emplace_back(Tr("Drawer opened"), TrCount(static_cast<uint64_t>(machine_->drawer_count()),
                                                 "{} time", "{} times"));
  rows.emplace_back(Tr("Paper"), TrCount(machine_->paper_lines().size(), "{} line", "{} lines"));
  rows.emplace_back(Tr("Register"),
                    file_.empty() ? Tr("in memory, gone with the shell") : Shown(file_));
  return rows;
}

DevicePaper* RegisterDevice::paper() { return paper_.get(); }

DeviceFaults* RegisterDevice::faults() { return faults_.get(); }

// --- What went wrong.

namespace {

// What the library takes a refusal for: a refused key is a wrong state.
int ResultOf(const lorimat::Refusal& refusal) {
  return refusal.by_key ? RTF_EFPTR_WRONG_STATE : refusal.code;
}

}  // namespace

uint64_t RegisterDevice::refusals() const { return machine_->refusal_count(); }

int RegisterDevice::last_result() const { return ResultOf(machine_->last_refusal()); }

DeviceRefusal RegisterDevice::last_refusal() const {
  return ToldRefusal(machine_->last_refusal(), machine_->failure());
}

DeviceRefusal ToldRefusal(const lorimat::Refusal& refusal,
                          const lorimat::RegisterFailure& failure) {
  const bool no_document =
      refusal.cause == lorimat::RefusalCause::kState && refusal.numbers[0] == RTF_FPTR_PS_MONITOR;
  const std::string cause =
      refusal.cause == lorimat::RefusalCause::kNotKept ? RegisterFailureText(failure) : "";
  return {ResultOf(refusal), no_document,
          cause.empty()
              ? RefusalText(refusal)
              : Tr("The register could not store it, and nothing was changed: {}.", cause)};
}

std::string RegisterDevice::last_failure() const {
  const std::string cause = keeping_failure();
  return cause.empty() ? cause : Tr("the register could not be kept: {}", cause);
}

void RegisterDevice::TellStart(Streams& streams) {
  TellNotice(machine_->day_notice(), streams);
  told_limits_ = lorimat::FindLimits(machine_->store());
}

void RegisterDevice::TellNotice(const lorimat::DayNotice& notice, Streams& streams) const {
  for (const std::string& text : DayNoticeTexts(notice)) {
    TellNote(streams, file_.empty() ? text : fmt::format("{}: {}", Shown(file_), text));
  }
}

// Those that were not told.
lorimat::DayNotice RegisterDevice::FreshLimits() const {
  lorimat::DayNotice limits = lorimat::FindLimits(machine_->store());
  if (told_limits_.documents_left) limits.documents_left.reset();
  if (told_limits_.closings_left) limits.closings_left.reset();
  return limits;
}

bool RegisterDevice::HasNotes() {
  return machine_->lottery_drop_count() != drops_told_ || FreshLimits() != lorimat::DayNotice();
}

void RegisterDevice::TellNotes(Streams& streams) {
  if (const uint64_t drops = machine_->lottery_drop_count() - drops_told_; drops != 0) {
    drops_told_ += drops;
    TellNote(streams, LotteryDropNote(machine_->lottery_drop(), drops));
  }
  TellNotice(FreshLimits(), streams);
  told_limits_ = lorimat::FindLimits(machine_->store());
}

// --- Its end.

std::string RegisterDevice::OpenDocumentFate() {
  if (file_.empty()) return Tr("It is gone with the shell.");
  const int state = machine_->printer_state();
  const bool unpaid =
      state == RTF_FPTR_PS_FISCAL_RECEIPT || state == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
  if (unpaid && !machine_->training()) {
    return Tr("It is not paid: the next start of the register voids it.");
  }
  return Tr("The next start of the register ends it.");
}

Device::LeftNote RegisterDevice::NoteOfLeft() {
  return [file = file_](const std::string& ended, const std::string& words) -> std::string {
    if (file.empty()) {
      return Tr("{} ends, and {}: it is gone with the register in memory", ended, words);
    }
    const lorimat::RegisterStatus status = lorimat::RegisterFile(file).Status();
    if (!status.open_document) return {};
    return Tr("{} keeps {}", Shown(file), OpenDocumentText(*status.open_document));
  };
}

std::string RegisterDevice::LostPaperNote() const {
  if (file_.empty()) return {};
  const std::string file = Shown(file_);
  return Tr(
      "{} has what the lines did, and they are not to be run again; \"lorimat paper "
      "--register {}\" writes the paper",
      file, file);
}

// --- Opened as one of the devices.

void PlanFault(lorimat::VirtualRegister& device, std::string_view words) {
  if (words == "clear") {
    device.ClearFaults();
  } else {
    device.AddFault(ReadFault(words));
  }
}

lorimat::RegisterStatus RequireQuietRegister(const std::string& file) {
  lorimat::RegisterStatus status = lorimat::RegisterFile(RequireRegister(file)).Status();
  if (status.open_document) {
    // Who sells on it, or may not write it, has no use for that advice.
    const lorimat::Database probe(file, lorimat::Database::Open::kChange, lorimat::kRegisterKind);
    throw Failure(Tr("{}: holds {}. End it first, by a run on this register", Shown(file),
                     OpenDocumentText(*status.open_document)));
  }
  if (!status.faults.faults().empty()) {
    throw Failure(
        Tr("{}: faults wait in it, which would strike now; \"lorimat fault --clear\" takes them "
           "away",
           Shown(file)));
  }
  return status;
}

std::unique_ptr<Device> OpenRegister(const DeviceRequest& request, Streams& streams) {
  for (const auto& [key, value] : request.options) {
    if (key == "file" || key == "clock") continue;
    throw Failure(Tr("the device '{}' has no option '{}'", kRegisterName, Shown(key, 60)));
  }
  const std::string file = request.Option("file");
  if (request.for_tables) RequireQuietRegister(file);
  auto device = std::make_unique<RegisterDevice>(request.Option("clock"), file, streams);
  // The host has to be told at its own start.
  if (request.for_tables) device->machine().LeaveUnanswered();
  return device;
}

void RequireRegisterFile(const DeviceRequest& request) { RequireRegister(request.Option("file")); }

std::vector<KeptFile> FilesOfRegister(const DeviceRequest& request) {
  return RegisterFiles(request.Option("file"));
}

}  // namespace lorimat::console
