#include "console/device/plugin_device.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <mutex>
#include <optional>
#include <utility>

#include "bindings/c/device_client.h"
#include "bindings/c/host_struct.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

// What a device may have the trace keep, in all: one that floods it is told of once.
constexpr size_t kMostLogged = 1 << 20;
constexpr size_t kLongestLogLine = 1000;
constexpr size_t kLineRoom = 256;              // of a line of paper, with its NUL
constexpr size_t kMostLinesAtOnce = 100'000;   // of paper
constexpr size_t kLargestPicture = 256 << 20;  // bytes
constexpr size_t kAnswerRoom = 4096;

// The lines that a device wants kept, from any of its threads.
class LogLines {
 public:
  void Add(const char* line) {
    if (line == nullptr) return;
    const std::lock_guard lock(mutex_);
    if (flooded_) return;
    std::string text(line, strnlen(line, kLongestLogLine));
    logged_ += text.size() + 1;
    flooded_ = logged_ > kMostLogged;
    if (!flooded_) lines_.push_back(std::move(text));
  }
  std::vector<std::string> Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(lines_, {});
  }
  // True once, when it was too much.
  bool TakeFlood() {
    const std::lock_guard lock(mutex_);
    return flooded_ && !std::exchange(flood_told_, true);
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> lines_;
  size_t logged_ = 0;
  bool flooded_ = false;
  bool flood_told_ = false;
};

void Log(void* data, const char* line) {
  try {
    static_cast<LogLines*>(data)->Add(line);
  } catch (const std::exception&) {
    // Without memory the line is lost, and nothing else.
  }
}

// A line of paper as it can be shown in one.
std::string OneLine(const char* text) {
  std::string line(text, strnlen(text, kLineRoom));
  for (char& c : line) {
    if (c == '\n' || c == '\r') c = ' ';
  }
  return line;
}

// Throws what the facts have against the device.
void RequireOpen(const std::string& file, const PluginFacts& facts) {
  const std::string refusal = RefusalOf(file, facts);
  if (refusal.empty()) return;
  if (facts.is_away()) throw DeviceAway(refusal);
  throw Failure(refusal);
}

}  // namespace

// All that the plug-in's thread touches.
struct PluginDevice::Core {
  explicit Core(const DeviceRequest& request) : call(request, LORIMAT_DEVICE_WORK) {
    call.SetLog(&Log, &log);
  }

  RtfClientInterface& client() {
    if (callbacks) return *callbacks;
    return *static_cast<RtfClientInterface*>(call.opened().client);
  }

  LogLines log;
  PluginCall call;
  void* handle = nullptr;
  std::string load_error;
  PluginFacts facts;
  std::unique_ptr<c::DeviceClient> callbacks;  // of a table of C
};

// --- What it can do besides.

class PluginDevice::Paper : public DevicePaper {
 public:
  explicit Paper(PluginDevice& device) : device_(device) {}

  const std::vector<std::string>& printed() override {
    if (!has_lines()) return lines_;
    const auto found = std::make_shared<std::vector<std::string>>();
    const bool ended =
        device_.thread_->Run("paper_line", [found, core = device_.core_, from = lines_.size()] {
          const lorimat_device_plugin& plugin = core->call.opened();
          std::array<char, kLineRoom> text;
          while (found->size() < kMostLinesAtOnce) {
            text.fill(0);
            if (!plugin.paper_line(plugin.data, from + found->size(), text.data(), text.size()))
              return;
            found->push_back(OneLine(text.data()));
          }
        });
    if (ended) lines_.insert(lines_.end(), found->begin(), found->end());
    device_.LookBehind();
    return lines_;
  }
  bool has_lines() const override { return (device_.facts_.can & LORIMAT_DEVICE_PAPER) != 0; }
  bool has_pictures() const override { return (device_.facts_.can & LORIMAT_DEVICE_PICTURES) != 0; }
  std::string Png(const lorimat::PictureProgress&) override { return Draw(LORIMAT_DEVICE_PNG); }
  std::string Pdf(const lorimat::PictureProgress&) override { return Draw(LORIMAT_DEVICE_PDF); }

 private:
  struct Drawing {
    std::string bytes;
    bool drawn = false;
    std::array<char, kAnswerRoom> error{};
  };

  std::string Draw(lorimat_device_format format) {
    const auto drawing = std::make_shared<Drawing>();
    device_.Run("picture", [drawing, core = device_.core_, format] {
      const lorimat_device_plugin& plugin = core->call.opened();
      const auto write = [](void* to, const void* bytes, size_t count) {
        std::string& all = *static_cast<std::string*>(to);
        if (count > kLargestPicture - all.size()) return false;
        all.append(static_cast<const char*>(bytes), count);
        return true;
      };
      drawing->drawn = plugin.picture(plugin.data, format, write, &drawing->bytes,
                                      drawing->error.data(), drawing->error.size());
    });
    drawing->error.back() = 0;
    if (!drawing->drawn) {
      throw Failure(Tr("the device '{}' draws no picture: {}", Shown(device_.name()),
                       Shown(drawing->error.data())));
    }
    return std::move(drawing->bytes);
  }

  PluginDevice& device_;
  std::vector<std::string> lines_;
};

class PluginDevice::Faults : public DeviceFaults {
 public:
  explicit Faults(PluginDevice& device) : device_(device) {}

  void Plan(std::string_view words) override { Ask(words); }
  std::string List(size_t) override {
    std::string text = Ask({});
    if (!text.empty() && text.back() != '\n') text += '\n';
    return text;
  }
  std::vector<std::string> words() const override { return {"clear"}; }

 private:
  struct Answer {
    bool taken = false;
    std::array<char, kAnswerRoom> text{};
  };

  std::string Ask(std::string_view words) {
    const auto answer = std::make_shared<Answer>();
    device_.Run("fault", [answer, core = device_.core_, text = std::string(words)] {
      const lorimat_device_plugin& plugin = core->call.opened();
      answer->taken =
          plugin.fault(plugin.data, text.c_str(), answer->text.data(), answer->text.size());
    });
    answer->text.back() = 0;
    if (!answer->taken) throw Failure(answer->text.data());
    std::string lines;
    for (const char* c = answer->text.data(); *c != 0; ++c) {
      lines += *c == '\n' ? std::string(1, '\n') : Shown(std::string(1, *c));
    }
    return lines;
  }

  PluginDevice& device_;
};

// --- Its beginning and its end.

PluginDevice::PluginDevice(const DeviceRequest& request, Streams& streams)
    : streams_(streams), file_(request.device) {
  std::optional<PluginFacts> tried;
  if (!request.was_tried) {
    PluginTrial trial = TryPlugin(request);
    if (trial.failure) {
      const std::string text = LoadFailureText(file_, trial.failure, LoadedFile::kDevice);
      if (trial.failure.cause == LoadCause::kHangs) throw DeviceHung(text);
      throw Failure(text);
    }
    RequireOpen(file_, trial.facts);
    tried = std::move(trial.facts);
  }
  core_ = std::make_shared<Core>(request);
  thread_ = std::make_unique<DeviceThread>(request.timeout, kStopGrace, request.at_call);
  Run("dlopen", [core = core_, path = LoadPath(file_)] {
    core->handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const char* cause = core->handle == nullptr ? dlerror() : nullptr;
    if (cause != nullptr) core->load_error = cause;
  });
  if (core_->handle == nullptr) {
    throw Failure(
        LoadFailureText(file_, {LoadCause::kLoader, {}, core_->load_error}, LoadedFile::kDevice));
  }
  Run(LORIMAT_DEVICE_OPEN, [core = core_] {
    PluginFacts facts = core->call.Open(core->handle);
    if (facts.is_open() && facts.kind == LORIMAT_DEVICE_C) {
      core->callbacks = std::make_unique<c::DeviceClient>(c::Taken(*core->call.opened().callbacks));
      core->callbacks->Guard(true);
    }
    core->facts = std::move(facts);
  });
  try {
    TakeOpened(tried);
  } catch (...) {
    client_.reset();
    if (!given_up() && core_->call.is_open()) {
      thread_->Run(LORIMAT_DEVICE_CLOSE, [core = core_] { core->call.Close(core->handle); });
      LookBehind();
      TellFailure(streams_);
    }
    throw;
  }
}

void PluginDevice::TakeOpened(const std::optional<PluginFacts>& tried) {
  facts_ = core_->facts;
  RequireOpen(file_, facts_);
  if (tried && !facts_.IsSame(*tried)) {
    throw Failure(
        Tr("{}: the device says something else of itself than a moment ago", Shown(file_)));
  }
  client_ =
      std::make_unique<TimedClient>(std::shared_ptr<RtfClientInterface>(core_, &core_->client()),
                                    *thread_, [this] { LookBehind(); });
  const uint32_t shown = LORIMAT_DEVICE_PAPER | LORIMAT_DEVICE_PICTURES;
  if ((facts_.can & shown) != 0) paper_ = std::make_unique<Paper>(*this);
  if ((facts_.can & LORIMAT_DEVICE_FAULTS) != 0) faults_ = std::make_unique<Faults>(*this);
  Use(*client_);
}

PluginDevice::~PluginDevice() {
  // A constructor that threw has no client and nothing open.
  if (client_ == nullptr) return;
  try {
    thread_->Run(LORIMAT_DEVICE_CLOSE, [core = core_] { core->call.Close(core->handle); });
    LookBehind();
    TellFailure(streams_);
  } catch (const std::exception&) {
    // It is gone either way.
  }
}

void PluginDevice::Run(const char* call, std::function<void()> work) {
  thread_->Run(call, std::move(work));
  LookBehind();
  RequireThread();
}

void PluginDevice::RequireThread() const {
  if (!thread_->given_up().call.empty()) throw DeviceHung(HangText());
}

std::string PluginDevice::HangText() const {
  const DeviceThread::GivenUp& given_up = thread_->given_up();
  const std::string name = Shown(facts_.name.empty() ? file_ : facts_.name);
  if (given_up.interrupted) {
    return Tr("the device '{}' was still at {} when the program was told to stop, and is given up",
              name, given_up.call);
  }
  return Tr("the device '{}' did not come back from {} within {} seconds, and is given up", name,
            given_up.call, given_up.after.count());
}

void PluginDevice::LookBehind() {
  for (const std::string& line : core_->log.Take()) streams_.Trace(Shown(line));
  if (core_->log.TakeFlood()) {
    TellWarning(streams_,
                Tr("the device '{}' logs more than {} bytes, and its other lines are left "
                   "out of the trace",
                   Shown(facts_.name), kMostLogged));
  }
  if (!thread_->given_up().call.empty()) {
    failure_ = HangText();
    return;
  }
  if (client_ != nullptr) {
    const CallFault found = client_->TakeFault();
    NoteFault(found.fault, found.operation);
  }
  if (core_->callbacks == nullptr) return;
  const auto [fault, operation] = core_->callbacks->TakeFault();
  if (fault == LORIMAT_BUFFER_OVERRUN) NoteFault(DeviceCallFault::kOverrun, operation);
  if (fault == LORIMAT_CALLBACK_THREW) NoteFault(DeviceCallFault::kThrew, operation);
}

void PluginDevice::NoteFault(DeviceCallFault fault, ClientOperation operation) {
  if (fault == DeviceCallFault::kNone) return;
  call_fault_ = fault;
  if (fault == DeviceCallFault::kThrew) ++exceptions_;
  const std::string_view name = ClientOperationName(operation);
  failure_ =
      fault == DeviceCallFault::kOverrun
          ? Tr("{} of the device '{}' wrote behind the room of a text", name, Shown(facts_.name))
          : Tr("an exception left {} of the device '{}'", name, Shown(facts_.name));
}

DeviceCallFault PluginDevice::TakeCallFault() {
  if (given_up()) return DeviceCallFault::kHung;
  return std::exchange(call_fault_, DeviceCallFault::kNone);
}

// --- What it is.

std::string PluginDevice::Greeting() const {
  return Tr("lorimat {}: the device {} {}, of {}.", LORIMAT_VERSION, Shown(facts_.name),
            Shown(facts_.version), Shown(file_));
}

std::optional<int> PluginDevice::Property(int property) {
  int value = 0;
  if (client_->GetIntProperty(property, &value) != RTF_SUCCESS) return std::nullopt;
  return value;
}

DeviceFacts PluginDevice::facts() {
  const auto data = [this](int selector) {
    std::array<char, 256> text{};
    int number = 0;
    const int result = client_->GetData(selector, &number, text.data());
    text.back() = 0;
    return result == RTF_SUCCESS ? std::string(WithoutTrailingBlanks(text.data())) : std::string();
  };
  return {data(RTF_FPTR_GD_PRINTER_ID), data(RTF_FPTR_GD_FIRMWARE), std::nullopt,
          Property(RTF_PIDXFptr_DayOpened).value_or(0) != 0};
}

DeviceState PluginDevice::state() {
  DeviceState state = {.printer = Property(RTF_PIDXFptr_PrinterState)};
  if ((facts_.can & LORIMAT_DEVICE_TRAINING) != 0) {
    const auto training = std::make_shared<bool>();
    const bool ended = thread_->Run("training", [training, core = core_] {
      const lorimat_device_plugin& plugin = core->call.opened();
      *training = plugin.training(plugin.data);
    });
    LookBehind();
    if (ended) state.training = *training;
  } else if (const std::optional<int> training = Property(RTF_PIDXFptr_TrainingModeActive)) {
    state.training = *training != 0;
  }
  return state;
}

bool PluginDevice::ready() {
  return DeviceState{.printer = Property(RTF_PIDXFptr_PrinterState)}.ready();
}

std::vector<std::pair<std::string, std::string>> PluginDevice::StatusRows() {
  const std::vector<std::string> can = AbilityTexts(facts_.can);
  const DeviceFacts told = facts();
  std::vector<std::pair<std::string, std::string>> rows = {
      {Tr("Device"), Shown(fmt::format("{} {}", facts_.name, facts_.version))},
      {Tr("File"), Shown(file_)},
      {Tr("Can"), can.empty() ? Tr("nothing more than sell and report")
                              : fmt::format("{}", fmt::join(can, ", "))}};
  if (!told.serial_number.empty()) {
    rows.emplace_back(Tr("Serial number"), Shown(told.serial_number));
  }
  if (!told.firmware_version.empty()) {
    rows.emplace_back(Tr("Firmware"), Shown(told.firmware_version));
  }
  return rows;
}

DevicePaper* PluginDevice::paper() { return paper_.get(); }

DeviceFaults* PluginDevice::faults() { return faults_.get(); }

DeviceRefusal PluginDevice::last_refusal() const {
  return {TimedClient::kRefused, false, thread_->given_up().call.empty() ? "" : HangText() + "."};
}

std::string PluginDevice::OpenDocumentFate() { return Tr("The device keeps it as it is."); }

Device::LeftNote PluginDevice::NoteOfLeft() {
  return [name = facts_.name](const std::string& ended, const std::string& words) {
    return Tr("{} ends, and {}: the device '{}' keeps it as it is", ended, words, Shown(name));
  };
}

std::unique_ptr<Device> OpenPlugin(const DeviceRequest& request, Streams& streams) {
  auto device = std::make_unique<PluginDevice>(request, streams);
  if (request.for_tables && !device->ready()) {
    throw Failure(Tr("{}: a document is open on the device. End it first", Shown(device->name())));
  }
  return device;
}

}  // namespace lorimat::console
