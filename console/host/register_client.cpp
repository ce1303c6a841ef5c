#include "console/host/register_client.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <optional>
#include <utility>

#include "console/host/clock_text.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/refusal_text.h"
#include "console/message/register_failure_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "language/code_table.h"
#include "register/client/virtual_register.h"
#include "register/paper/picture.h"
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
class RegisterClient::Device : public lorimat::VirtualRegister {
 public:
  Device(lorimat::RegisterSettings settings, Streams& streams)
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

RegisterClient::RegisterClient(const std::string& clock, const std::string& register_file,
                               Streams& streams)
    : file_(register_file) {
  if (!file_.empty()) RequireRegisterName(file_);
  struct stat status;
  const bool made = !file_.empty() && stat(file_.c_str(), &status) != 0;
  device_ = std::make_unique<Device>(SettingsFor(clock, file_), streams);
  stoppable_ = std::make_unique<StoppableClient>(*device_);
  if (made) TellNote(streams, Tr("{}: a new register was made", Shown(file_)));
  const std::optional<lorimat::CutOffDocument>& cut_off = device_->cut_off();
  if (cut_off) {
    TellNote(streams, fmt::format("{}: {}", Shown(file_), EndedDocumentText(*cut_off)));
  }
  if (const std::optional<lorimat::UnansweredDocument>& last = device_->unanswered()) {
    TellNote(streams, fmt::format("{}: {}", Shown(file_), UnansweredDocumentText(*last)));
  }
  if (const std::optional<lorimat::ClockBehind>& behind = device_->clock_behind()) {
    lorimat::Refusal refusal;
    refusal.cause = lorimat::RefusalCause::kClockBehind;
    refusal.numbers = {behind->now, behind->latest};
    TellNote(streams, fmt::format("{}: {}", Shown(file_), RefusalText(refusal)));
  }
}

RegisterClient::RegisterClient(lorimat::RegisterSettings settings, Streams& streams)
    : device_(std::make_unique<Device>(std::move(settings), streams)),
      stoppable_(std::make_unique<StoppableClient>(*device_)) {}

RegisterClient::~RegisterClient() = default;

RtfClientInterface* RegisterClient::client() { return stoppable_.get(); }

const lorimat::VirtualRegister& RegisterClient::device() const { return *device_; }

lorimat::VirtualRegister& RegisterClient::device() { return *device_; }

std::string RegisterClient::last_failure() const { return RegisterFailureText(device_->failure()); }

bool RegisterClient::has_notes() const { return device_->lottery_drop_count() != drops_told_; }

void RegisterClient::TellFailure(Streams& streams) {
  if (has_notes()) {
    const uint64_t drops = device_->lottery_drop_count() - drops_told_;
    drops_told_ += drops;
    TellNote(streams, LotteryDropNote(device_->lottery_drop(), drops));
  }
  const lorimat::RegisterFailure& failure = device_->failure();
  if (failure == told_) return;
  told_ = failure;
  TellError(streams, Tr("the register could not be kept: {}", last_failure()));
}

void RegisterClient::TellDay(Streams& streams) {
  TellNotice(device_->day_notice(), streams);
  told_limits_ = lorimat::FindLimits(device_->store());
}

void RegisterClient::TellNotice(const lorimat::DayNotice& notice, Streams& streams) const {
  for (const std::string& text : DayNoticeTexts(notice)) {
    TellNote(streams, file_.empty() ? text : fmt::format("{}: {}", Shown(file_), text));
  }
}

// Those that were not told.
lorimat::DayNotice RegisterClient::FreshLimits() const {
  lorimat::DayNotice limits = lorimat::FindLimits(device_->store());
  if (told_limits_.documents_left) limits.documents_left.reset();
  if (told_limits_.closings_left) limits.closings_left.reset();
  return limits;
}

bool RegisterClient::LimitsToTell() const { return FreshLimits() != lorimat::DayNotice(); }

void RegisterClient::TellLimits(Streams& streams) {
  TellNotice(FreshLimits(), streams);
  told_limits_ = lorimat::FindLimits(device_->store());
}

uint64_t RegisterClient::refusals() const { return device_->refusal_count(); }

const lorimat::Refusal& RegisterClient::last_refusal() const { return device_->last_refusal(); }

int RegisterClient::ResultOf(const lorimat::Refusal& refusal) {
  return refusal.by_key ? RTF_EFPTR_WRONG_STATE : refusal.code;
}

std::string RegisterClient::Reason(const lorimat::Refusal& refusal, long code) const {
  // A line may go on behind a refusal, and fail for something else.
  const int result = ResultOf(refusal);
  if (result == RTF_SUCCESS || !language::ComesFrom(code, result)) return {};
  if (refusal.cause == lorimat::RefusalCause::kNotKept && !last_failure().empty()) {
    return Tr("The register could not store it, and nothing was changed: {}.", last_failure());
  }
  return RefusalText(refusal);
}

std::string RegisterClient::ReasonSince(uint64_t refusals_before, long code) const {
  return refusals() == refusals_before ? std::string() : Reason(last_refusal(), code);
}

const lorimat::Paper& RegisterClient::printed() const { return device_->Printed(); }

std::string RegisterClient::paper() const { return device_->Printed().text(); }

std::string RegisterClient::PaperPng(const lorimat::PictureProgress& progress) const {
  return lorimat::RenderPng(device_->Printed(), progress);
}

std::string RegisterClient::PaperPdf(const lorimat::PictureProgress& progress) const {
  return lorimat::RenderPdf(device_->Printed(), progress);
}

}  // namespace lorimat::console
