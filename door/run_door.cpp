#include "door/run_door.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "console/command/help.h"
#include "console/command/usage_error.h"
#include "console/device/device_thread.h"
#include "console/device/open_device.h"
#include "console/device/register_name.h"
#include "console/host/device_options.h"
#include "console/host/installed_files.h"
#include "console/host/register_options.h"
#include "console/message/catalogs.h"
#include "console/message/failure.h"
#include "console/message/register_failure_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/streams.h"
#include "door/access/access.h"
#include "door/door_watch.h"
#include "door/faults.h"
#include "door/http/api.h"
#include "door/http/server.h"
#include "door/job/door_library.h"
#include "door/job/kept_documents.h"
#include "door/job/opened_device.h"
#include "door/job/register_device.h"
#include "door/job/service.h"
#include "door/job/watched_device.h"
#include "door/judge/line_judge.h"
#include "door/log/job_log.h"
#include "door/receipt/known_tables.h"

namespace lorimat::door {
namespace {

using console::Failure;
using console::Shown;
using console::Streams;
using console::SystemMessage;
using console::Tr;

// A plug-in gives its calls up by itself, later than the program ends for one of them; at the start
// nothing else does.
std::chrono::seconds BehindTimeout(std::chrono::seconds timeout) {
  constexpr std::chrono::seconds kAtLeast{5};
  constexpr int kPart = 12;
  return timeout / kPart + kAtLeast;
}

struct Options {
  console::DeviceOptions device = {.timeout = 300};
  AccessOptions access;
  std::string log;
  std::string language;
  std::string library;
  std::vector<std::string> operators = {"operator"};
  std::string tell;  // empty: by where it goes
};

// Tells what keeps the jobs waiting, each cause once.
class TroubleTeller {
 public:
  explicit TroubleTeller(Notices& notices) : notices_(notices) {}

  void Tell(DeviceTrouble trouble, const std::exception* failure) {
    struct Row {
      DeviceTrouble trouble;
      const char* text;
    };
    static constexpr Row kRows[] = {
        {DeviceTrouble::kDocumentOpen,
         TR_TEXT("a document is open that belongs to no job; nothing runs until an operator "
                 "resets")},
        {DeviceTrouble::kAway, TR_TEXT("the device does not answer")},
        {DeviceTrouble::kOtherDevice,
         TR_TEXT("the device is not the one that the log belongs to")}};
    std::string text;
    if (failure != nullptr) {
      const bool is_sentence = dynamic_cast<const Failure*>(failure) != nullptr;
      text = is_sentence ? failure->what() : console::ErrorText(*failure);
    }
    for (const Row& row : kRows) {
      if (row.trouble != trouble) continue;
      const std::string cause = text.empty() ? text : ": " + text;
      text = std::string(console::Translated(row.text)) + cause;
    }
    if (text == told_) return;
    if (!text.empty()) notices_.Tell(Level::kNote, text);
    told_ = text;
  }

 private:
  Notices& notices_;
  std::string told_;
};

// Of a log that is a copy.
void TellLeftToOperator(const JobLog& log, Notices& notices) {
  const int64_t jobs = log.left_to_operator();
  if (jobs == 0) return;
  notices.Tell(Level::kNote,
               Tr("note: the log is a copy; {} of its jobs were queued, may have run since, and "
                  "need an operator",
                  jobs));
}

// What was registered while no door was there.
void TellFurtherOn(JobLog& log, const std::optional<DeviceNumbers>& seen, const DeviceNumbers& now,
                   Notices& notices) {
  if (!seen || *seen == now || log.First(JobState::kRunning) || log.First(JobState::kUnknown)) {
    return;
  }
  notices.Tell(
      Level::kNote,
      Tr("note: the device is at closing {}, document {} and invoice {}; the log has "
         "seen {}, {} and {}",
         now.closure, now.document, now.invoice, seen->closure, seen->document, seen->invoice));
}

// Their own device is not there to be asked, and might never come back.
void LeaveToOperator(JobLog& log) {
  while (const std::optional<Job> job = log.First(JobState::kRunning)) {
    log.Move(job->id, JobState::kUnknown, Why::kCutOff);
  }
  while (const std::optional<Job> job = log.First(JobState::kUnknown)) {
    log.Move(job->id, JobState::kNeedsOperator, Why::kOtherDevice);
  }
}

// Those that end the program, and the one that has it read again who may come in.
sigset_t WaitedSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGHUP);
  return signals;
}

bool IsRegister(const console::DeviceRequest& request) {
  const console::BuiltInDevice* row = console::FindBuiltInDevice(request);
  return row != nullptr && row->name == console::kRegisterName;
}

// What messages call it, and what its log is named for: a file.
std::string FileOf(const console::DeviceRequest& request) {
  if (!IsRegister(request)) return request.device;
  const std::string file = console::FileOfRegister(request);
  if (file.empty()) {
    throw Failure(Tr("--register names no file: the door needs a register"));
  }
  console::RequireRegisterName(file);
  return file;
}

std::unique_ptr<FiscalDevice> OpenDoorDevice(console::DeviceRequest request, Streams& streams,
                                             Notices& notices, CallWatch& calls) {
  if (!IsRegister(request)) {
    request.timeout += BehindTimeout(request.timeout);
    // It is opened anew by several calls, none of which is one of its client's.
    request.at_call = [&calls] { calls.NoteSign(); };
    return std::make_unique<OpenedDevice>(std::move(request), streams);
  }
  for (const auto& [key, value] : request.options) {
    if (key == "file") continue;
    throw Failure(Tr("the device '{}' has no option '{}'", console::kRegisterName, Shown(key)));
  }
  RegisterSettings settings;
  settings.file = FileOf(request);
  auto device = std::make_unique<RegisterDevice>(std::move(settings));
  const std::string notice = device->device().start_notice();
  if (!notice.empty()) {
    notices.Tell(Level::kNote, Shown(FileOf(request)) + ": " + Shown(notice));
  }
  return device;
}

// A device that hangs at the start keeps no end of the program waiting.
void EndIfHung(const OpenedDevice* device, Notices& notices) {
  const std::string text = device != nullptr ? device->HangText() : std::string();
  if (text.empty()) return;
  notices.Tell(Level::kError, text);
  _exit(kExitHung);
}

// What the device is as the program begins; nothing where it does not tell that now, with the cause
// in *away. Throws Failure where it refuses to.
std::optional<DeviceState> FirstState(FiscalDevice& device, const OpenedDevice* plugin,
                                      const std::string& file, Notices& notices,
                                      std::string* away) {
  if (plugin != nullptr) *away = plugin->away();
  if (!away->empty()) return std::nullopt;
  const MissingItems missing = device.Missing();
  const std::optional<DeviceState> state = device.Ask();
  EndIfHung(plugin, notices);
  if (missing.text.empty() && state) return state;
  *away = Tr("{}: the device does not tell what the outcome of a job is known by: {}", Shown(file),
             missing.text);
  if (!missing.may_pass || plugin == nullptr) throw Failure(*away);
  return std::nullopt;
}

// The log belongs to the device that is there.
void BindLog(JobLog& log, const DeviceNumbers& now, Notices& notices) {
  try {
    log.Bind(now.serial, now);
  } catch (const OtherDevice& other) {
    LeaveToOperator(log);
    throw Failure(Tr("the log belongs to the device {}, and this is {}", Shown(other.serial()),
                     Shown(now.serial)));
  }
  TellFurtherOn(log, log.seen(), now, notices);
}

std::string LogFile(const Options& options, const console::DeviceRequest& request) {
  if (options.log.empty() && !IsRegister(request)) {
    throw Failure(Tr("--log names no file: with --device there has to be one for the log"));
  }
  const std::string file = options.log.empty() ? FileOf(request) + ".door" : options.log;
  console::RequireRegisterName(file);
  return file;
}

// Of a service manager that listens in the program's place.
std::optional<int> PassedSocket(ServiceManager& manager) {
  const std::optional<int> socket = manager.TakeSocket();
  if (socket == -1) {
    throw Failure(Tr("what LISTEN_FDS tells of is not one TCP socket that listens"));
  }
  return socket;
}

std::unique_ptr<HttpServer> Listen(const std::optional<int>& passed, const Access& access,
                                   const std::string& listen) {
  if (passed) return std::make_unique<HttpServer>(*passed);
  try {
    return std::make_unique<HttpServer>(access.address(), access.port());
  } catch (const std::system_error& error) {
    throw Failure(
        fmt::format("--listen {}: {}", Shown(listen), SystemMessage(error.code().value())));
  }
}

// Their threads use what has to outlive them, also where something is thrown.
struct StoppedThreads {
  ~StoppedThreads() {
    service.Stop();
    server.Stop();
  }
  Service& service;
  HttpServer& server;
};

int RunDoor(const Options& options, Streams& streams, Notices& notices) {
  ServiceManager manager;
  const std::optional<int> passed = PassedSocket(manager);
  const auto tell = [&notices](const std::string& text) { notices.Tell(Level::kNote, text); };
  AccessOptions access_options = options.access;
  if (passed) access_options.listen = ListeningAddress(*passed);
  Access access(access_options, tell);
  const console::DeviceRequest request = console::RequestOf(options.device);
  const std::string device_file = FileOf(request);
  const std::string log_file = LogFile(options, request);
  const sigset_t signals = WaitedSignals();
  // Ahead of all threads, which inherit it.
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  CallWatch calls;
  std::unique_ptr<FiscalDevice> bare = OpenDoorDevice(request, streams, notices, calls);
  // What its tables are is known of the register alone.
  auto* own = dynamic_cast<RegisterDevice*>(bare.get());
  auto* plugin = dynamic_cast<OpenedDevice*>(bare.get());
  const std::unique_ptr<FiscalDevice> opened = WithFaults(std::move(bare));
  WatchedDevice device(*opened, calls);
  std::string away;
  const std::optional<DeviceState> state = FirstState(device, plugin, device_file, notices, &away);
  // Which device a new log is to belong to is known by that device alone.
  if (!state && !std::filesystem::exists(log_file)) throw Failure(away);
  JobLog log(log_file);
  if (!state && log.serial().empty()) throw Failure(away);
  TellLeftToOperator(log, notices);
  if (state) {
    BindLog(log, state->numbers, notices);
  } else {
    plugin->PutAway();
  }

  const console::DefinitionFile definition = console::FindDefinitionFile(options.language);
  LineJudge judge(definition.path);
  streams.StartTrace("");
  DoorLibrary library(definition.path, console::FindLibrary(options.library), streams, device);
  const bool has_begun = library.Begin();
  EndIfHung(plugin, notices);
  if (!has_begun) {
    throw Failure(Tr("definition file {}: the library cannot read it", Shown(definition.path)));
  }
  if (!state) {
    // By then what waits may have been looked at, and the device counts as seen.
    library.BeginAgain([&log, &notices, seen = log.seen()](const DeviceState& now) {
      TellFurtherOn(log, seen, now.numbers, notices);
    });
  }

  const std::unique_ptr<HttpServer> made = Listen(passed, access, access_options.listen);
  HttpServer& server = *made;
  server.SetTls(access.tls());
  TroubleTeller teller(notices);
  KnownTables tables;
  const auto look = [&tables, own] {
    if (own != nullptr) tables.Look(own->device());
  };
  look();
  DoorWatch* told = nullptr;
  Service service({.log = log,
                   .device = device,
                   .judge = judge,
                   .run = WithFaults([&library](const std::string& line, std::string* answer) {
                     return library.RunLine(line, answer);
                   }),
                   .watch =
                       [&look, faults = FaultWatch()](Step step) {
                         // What a job has programmed counts for the next receipt, ahead of telling
                         // that it did.
                         if (step == Step::kBeforeOutcome) look();
                         if (faults) faults(step);
                       },
                   .calls = &calls,
                   .device_timeout = request.timeout,
                   .trouble = state ? DeviceTrouble::kNone : DeviceTrouble::kAway,
                   .hung = [] { _exit(kExitHung); },
                   .tell =
                       [&](DeviceTrouble trouble, const std::exception* failure) {
                         teller.Tell(trouble, failure);
                         // Of a log that fails nothing can be told by it.
                         if (trouble != DeviceTrouble::kNone || failure == nullptr)
                           told->NoteDevice(trouble);
                       },
                   .answered = [&server](int64_t question) { server.Notify(question); }});
  DoorWatch watch({log, server, service, notices, manager});
  told = &watch;
  watch.NoteCertificate(CertificateEnd(access.tls()));
  log.SetEventObserver([&watch](const Job* job) { watch.Told(job); });
  log.SetObserver([&server, &service](int64_t id) {
    service.NoteWritten();
    server.Notify(id);
  });
  std::unique_ptr<KeptDocuments> documents;
  if (own != nullptr) documents = std::make_unique<KeptDocuments>(device_file);
  Api api({.log = log,
           .judge = judge,
           .hosts = access.Hosts(server.port()),
           .operators = options.operators,
           .trouble = [&service] { return service.trouble(); },
           .log_failed = [&service] { return service.log_failed(); },
           .wake = [&service] { service.Wake(); },
           .tables = [&tables] { return tables.Get(); },
           .ask = [&service](auto question) { return service.Ask(std::move(question)); },
           .documents = documents.get(),
           .figures = [&watch](MetricsText& text) { watch.AddMetrics(text); },
           .access = access.Rules(),
           .not_written =
               [&](const std::exception& failure) {
                 if (!watch.NoteNotWritten()) return;
                 notices.Tell(Level::kNote, Tr("a job that came could not be written: {}",
                                               console::ErrorText(failure)));
               },
           .writes_none = [&watch] { return watch.writes_none(); }});
  const StoppedThreads stopped{service, server};
  service.Start();
  server.Start(api);
  const std::string url = access.Url(server.port());
  streams.Output("lorimatd: listening on " + url + "\n");
  const SignsOfLife signs(manager, [&] { return watch.IsAlive(api); });
  manager.Notify("READY=1\nSTATUS=listening on " + url);

  constexpr timespec kNowAndThen = {5, 0};
  constexpr int kRoundsOfDevice = 12;
  for (int round = 1;; ++round) {
    const int signal = sigtimedwait(&signals, nullptr, &kNowAndThen);
    if (signal == SIGHUP) {
      access.Reload(tell);
      server.SetTls(access.tls());
      watch.NoteCertificate(CertificateEnd(access.tls()));
      // Whoever follows them may have lost the right to.
      server.NotifyEvents();
    } else if (signal > 0) {
      break;
    }
    if (round % kRoundsOfDevice == 0) watch.AskDevice();
    watch.NoteWarnings();
  }
  manager.Notify("STOPPING=1\nSTATUS=finishing the job at work");
  return console::kExitGood;
}

int ParseAndRun(int argc, char** argv, Streams& streams, Notices& notices) {
  Options options;
  CLI::App app(Tr("Takes jobs for a fiscal device by HTTP and JSON, and sees to it that each has "
                  "its effect once at most, and that every outcome is known."),
               "lorimatd");
  app.set_help_flag("-h,--help", Tr("Print this help message and exit"));
  app.set_version_flag("-V,--version", "lorimatd " LORIMAT_VERSION,
                       Tr("Print the version and exit"));
  console::AddDeviceOptions(&app, &options.device);
  app.get_option("--device-timeout")
      ->description(Tr("How many seconds a call of the device may take; one that takes longer ends "
                       "the program with 75"))
      ->capture_default_str();
  console::AddLanguageOptions(&app, &options.language, &options.library);
  AddAccessOptions(&app, &options.access);
  app.add_option("--log", options.log,
                 Tr("The file of the log of jobs; without it the register's name with .door. A "
                    "device from a file needs it"))
      ->type_name("FILE");
  app.add_option("--operator", options.operators,
                 Tr("A desk whose jobs may hold reports, closings and programming; \"operator\" "
                    "without it"))
      ->type_name("DESK");
  app.add_option("--tell", options.tell,
                 Tr("What standard error, or the journal, is told: errors, notes besides, or jobs "
                    "besides as they move; without it notes, and jobs to the journal"))
      ->type_name("WHAT")
      ->check(CLI::IsMember(std::vector<std::string>{"errors", "notes", "jobs"}));
  console::RefuseEmptyTexts(&app);
  console::TranslateHelp(app);
  // Its footer is that of the other program.
  app.footer(console::Translated(TR_TEXT(R"(Exit codes:
  0   ended by SIGTERM or Ctrl-C; the job at work has been finished
  2   wrong use, or the device, the log or the library cannot be used; a
      device that is away is waited for, unless the log is new
  75  a call of the device did not come back; started again, it asks what became of the job
)"))
                 .data());
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      std::ostringstream output;
      app.exit(error, output, output);
      streams.Output(output.str());
      return console::kExitGood;
    }
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    notices.Tell(Level::kError, console::UsageError(app, error, arguments));
    streams.Error(Tr("Run with --help for more information.\n"));
    return console::kExitNotDone;
  }
  if (options.tell == "errors") notices.SetMost(Level::kError);
  if (options.tell == "notes") notices.SetMost(Level::kNote);
  if (options.tell == "jobs") notices.SetMost(Level::kJob);
  return RunDoor(options, streams, notices);
}

}  // namespace

int RunProgram(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    Streams streams("lorimatd");
    Notices notices(streams);
    try {
      console::OpenCatalogs(console::FindCatalogs());
      return ParseAndRun(argc, argv, streams, notices);
    } catch (const console::DeviceHung& hung) {
      notices.Tell(Level::kError, hung.what());
      _exit(kExitHung);
    } catch (const Failure& failure) {
      notices.Tell(Level::kError, failure.what());
    } catch (const std::exception& error) {
      notices.Tell(Level::kError, console::ErrorText(error));
    }
  } catch (const std::exception&) {
    // Neither streams nor memory for a notice.
    for (const char* part : {"lorimatd: ", "there is not enough memory", "\n"}) {
      console::WriteAll(STDERR_FILENO, part);
    }
  }
  // What the end of a program does could wait for a device that hangs.
  if (console::DeviceThread::AnyGivenUp()) _exit(kExitHung);
  return console::kExitNotDone;
}

}  // namespace lorimat::door
