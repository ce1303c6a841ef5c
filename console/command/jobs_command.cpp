// "lorimat jobs": the jobs of a door, listed, shown, cancelled and resolved.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/command/door_options.h"
#include "console/command/job_text.h"
#include "console/command/subcommand.h"
#include "console/command/usage_error.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/remote/job_request.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"

namespace lorimat::console {
namespace {

constexpr uint64_t kLastJob = 999999999999999999;
constexpr std::chrono::seconds kWait{10};  // for a door that is away or busy

struct JobsOptions {
  DoorOptions door;
  uint64_t job = 0;  // 0 lists
  std::string state;
  bool json = false;
  // What is done with one.
  bool cancel = false;
  bool resolve = false;
  std::string outcome;
  std::string reason;
  std::string document;
};

constexpr std::string_view kJobsExamples = TR_TEXT(R"(Examples:
  lorimat jobs --state needs_operator
      The jobs that wait for an operator, one a line, of the door on this computer.
  lorimat jobs 7
      A job, with its lines that failed and its history.
  lorimat jobs --to https://till.example:8577 --token till.token --json
      All of them, for a program.

States: queued, running, confirmed, rejected, unknown, needs_operator, expired, cancelled.

Exit codes:
  0  the jobs were shown
  1  there is no such job, or the door does not tell
  2  wrong use, or there is no door
)");

const char* const kCancelExamples = TR_TEXT(R"(Examples:
  lorimat jobs cancel 7
      Takes the job back, as long as it has not begun.

Exit codes:
  0  it is cancelled
  1  it is not: it has begun, or there is none
  2  wrong use, or there is no door
  3  no answer came: look at the job
)");

const char* const kResolveExamples = TR_TEXT(R"(Examples:
  lorimat jobs resolve 7 --outcome done --document 1/12 --reason "the receipt is in the journal"
      The job is confirmed, with document 12 of closing 1.
  lorimat jobs resolve 7 --outcome not_done --reason "no receipt was printed"
      It is rejected.

Exit codes:
  0  it is resolved
  1  it is not: it waits for no operator, or there is none
  2  wrong use, or there is no door
  3  no answer came: look at the job
)");

// "1/12", or "1" for a closing.
std::optional<Json> DocumentOf(std::string_view text) {
  constexpr int kLast = 9999;
  Json document = Json::object();
  for (const char* name : {"closure", "number"}) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < 1 || number > kLast) return std::nullopt;
    document[name] = number;
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    if (text.empty()) return document;
    if (text.front() != '/') return std::nullopt;
    text.remove_prefix(1);
  }
  return std::nullopt;
}

// What the door answered instead of what was asked for; and the exit code.
int TellProblem(const DoorReply& reply, Streams& streams) {
  const std::string text = Shown(ProblemText(reply.body, reply.cause));
  if (reply.is_lost) {
    TellError(streams, Tr("no answer came, and it may have been done; look at the job: {}", text));
    return kExitUnknown;
  }
  if (interrupted != 0) return InterruptExit();
  if (reply.status == 0) throw Failure(Tr("there is no door: {}", text));
  TellError(streams, Tr("the door refuses: {}", text));
  return kExitFaults;
}

int ShowJob(const JobsOptions& options, const DoorReply& reply, Streams& streams) {
  if (reply.status != 200 || reply.body.is_null()) return TellProblem(reply, streams);
  streams.Output(options.json ? JsonText(reply.body) : JobText(reply.body));
  return kExitGood;
}

int ListJobs(const JobsOptions& options, const DoorAddress& address, Streams& streams) {
  std::vector<Json> jobs;
  for (int64_t after = 0;;) {
    std::string path = fmt::format("/v1/jobs?limit=100&after={}", after);
    if (!options.state.empty()) path += "&state=" + UrlText(options.state);
    const DoorReply reply = AskDoor(address, {"GET", path, {}, {}, {}}, kWait);
    const auto page = reply.body.is_object() ? reply.body.find("jobs") : reply.body.end();
    if (reply.status != 200 || page == reply.body.end() || !page->is_array()) {
      return TellProblem(reply, streams);
    }
    if (page->empty()) break;
    for (const Json& job : *page) {
      const int64_t id = job.is_object() && job.contains("id") ? job.at("id").get<int64_t>() : 0;
      // What does not go on has no end.
      if (id <= after) throw Failure(Tr("the door's list of jobs does not go on"));
      after = id;
      jobs.push_back(job);
    }
    if (interrupted != 0) return InterruptExit();
  }
  streams.Output(options.json ? JsonText(Json{{"jobs", jobs}}) : JobListText(jobs));
  return kExitGood;
}

int Resolve(const JobsOptions& options, const DoorAddress& address, Streams& streams) {
  Json body = {{"outcome", options.outcome}, {"reason", options.reason}};
  if (!options.document.empty()) {
    const std::optional<Json> document = DocumentOf(options.document);
    if (!document) {
      throw Failure(Tr("--document: {} is no closing and number, such as 1/12, and no closing",
                       Shown(options.document)));
    }
    body["document"] = *document;
  }
  return ShowJob(options,
                 AskDoor(address,
                         {"POST",
                          fmt::format("/v1/jobs/{}/resolve", options.job),
                          {},
                          body.dump(-1, ' ', false, Json::error_handler_t::replace),
                          {}},
                         kWait),
                 streams);
}

CLI::Option* AddJob(CLI::App* command, JobsOptions* options) {
  return command->add_option("ID", options->job, Tr("The number of the job"))
      ->check(WholeNumberIn(1, kLastJob));
}

void AddOptions(CLI::App* jobs, JobsOptions* options) {
  AddJob(jobs, options);
  AddDoorOptions(jobs, &options->door);
  CLI::Option* state =
      jobs->add_option("--state", options->state, Tr("Only the jobs of this state"))
          ->type_name("NAME");
  jobs->add_flag("--json", options->json, Tr("Write JSON"));
  jobs->require_subcommand(0, 1);

  CLI::App* resolve =
      jobs->add_subcommand("resolve", Tr("Tell what became of a job that needs an operator"));
  AddJob(resolve, options)->required();
  resolve->add_option("--outcome", options->outcome, Tr("done or not_done"))
      ->type_name("NAME")
      ->required();
  resolve->add_option("--reason", options->reason, Tr("How this is known; it stays with the job"))
      ->type_name("TEXT")
      ->required();
  resolve
      ->add_option("--document", options->document,
                   Tr("Its closing and number, as 1/12; of a closing, 1"))
      ->type_name("N/N");
  resolve->callback([options] { options->resolve = true; });
  resolve->footer(std::string(Translated(kResolveExamples)));

  CLI::App* cancel = jobs->add_subcommand("cancel", Tr("Take a job back that has not begun"));
  AddJob(cancel, options)->required();
  cancel->callback([options] { options->cancel = true; });
  cancel->footer(std::string(Translated(kCancelExamples)));
  for (CLI::App* nested : {resolve, cancel}) {
    AddDoorOptions(nested, &options->door);
    nested->add_flag("--json", options->json, Tr("Write JSON"));
    nested->excludes(state);
  }
}

// Returns one of ExitCode. Throws Failure.
int JobsCommand(const JobsOptions& options, Streams& streams) {
  const InterruptWatch watch;
  const DoorAddress address = AddressOf(options.door);
  const std::string path = fmt::format("/v1/jobs/{}", options.job);
  if (options.resolve) return Resolve(options, address, streams);
  if (options.cancel) {
    return ShowJob(options, AskDoor(address, {"DELETE", path, {}, "", {}}, kWait), streams);
  }
  if (options.job != 0) {
    return ShowJob(options, AskDoor(address, {"GET", path, {}, {}, {}}, kWait), streams);
  }
  return ListJobs(options, address, streams);
}

}  // namespace

const Subcommand kJobsSubcommand = {"jobs", HelpGroup::kUseDoor,
                                    TR_TEXT("Show, cancel and resolve the jobs of a door"),
                                    kJobsExamples, &Prepare<JobsOptions, AddOptions, JobsCommand>};

}  // namespace lorimat::console
