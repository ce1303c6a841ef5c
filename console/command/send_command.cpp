// "lorimat send": the lines of a file as one job of a door.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <new>
#include <string>
#include <string_view>

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
#include "console/terminal/line_encoding.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"

namespace lorimat::console {
namespace {

constexpr uint64_t kLongestWait = 86400;     // seconds
constexpr uint64_t kLongestExpiry = 604800;  // seconds, as the door takes them

struct SendOptions {
  DoorOptions door;
  std::string file;
  std::string key;
  std::string desk;
  std::string reference;
  uint64_t expires = 0;  // seconds; 0 leaves it to the door
  uint64_t wait = 60;    // seconds
  bool json = false;
};

constexpr std::string_view kSendExamples = TR_TEXT(R"(Examples:
  lorimat send receipt.cmd --key order-4711
      The lines of the file as one job of the door on this computer; waits for its outcome.
  lorimat send - --to https://till.example:8577 --token till.token --key order-4711 --json
      From a pipe to another computer, for a program.

It asks again with the same key where the connection is cut or the door is busy: that is one job,
and one receipt. So may whoever calls it, as often as the exit code is 3. The lines are UTF-8.

Exit codes:
  0  confirmed: it is done, once
  1  rejected, expired or cancelled: nothing was done, for good; a new try takes a new key
  2  wrong use, not taken, or no door: this call did nothing; mend it, and keep the key
  3  not known yet, or it waits for an operator: send it again with the same key
  130  stopped by Ctrl-C; send it again with the same key

Behind 1 alone there may be a new key. Behind 2, what an earlier call with the key did is as open as
it was.
)");

// The first byte that belongs to no character of UTF-8, from 1; 0 for none.
size_t WrongByte(std::string_view text) {
  size_t at = 0;
  while (at < text.size()) {
    const Utf8Character character = CharacterAt(text.substr(at));
    if (character.size == 1 && static_cast<unsigned char>(text[at]) >= 0x80) return at + 1;
    at += character.size;
  }
  return 0;
}

Json LinesOf(const std::string& file) {
  constexpr size_t kMostLines = 1000;
  LineReader reader(file, &interrupted);
  // With the carriage return that may stand at its end.
  reader.GiveUpBehind(kLongestLine + 1);
  Json lines = Json::array();
  SourceLine line;
  while (reader.Next(&line)) {
    std::string_view text = line.text;
    if (line.number == 1 && BeginsWithByteOrderMark(text))
      text.remove_prefix(kByteOrderMark.size());
    const std::string name = Shown(reader.name());
    if (line.length > kLongestLine) {
      throw Failure(Tr("{}:{}: a line has at most {} bytes", name, line.number, kLongestLine));
    }
    if (WithoutTrailingBlanks(text).empty()) continue;
    if (ShowsUtf16(line)) throw Failure(Tr("{}:{}: is not UTF-8", name, line.number));
    if (const size_t byte = WrongByte(text)) {
      throw Failure(Tr("{}:{}: byte {} is not UTF-8", name, line.number, byte));
    }
    lines.push_back(text);
    if (lines.size() > kMostLines) throw Failure(Tr("{}: a job has at most 1000 lines", name));
  }
  if (lines.empty()) throw Failure(Tr("{}: there is no line in it", Shown(reader.name())));
  return lines;
}

void AddOptions(CLI::App* send, SendOptions* options) {
  send->add_option("FILE", options->file, Tr("The file of lines; - is standard input"))->required();
  AddDoorOptions(send, &options->door);
  send->add_option("--key", options->key,
                   Tr("The job's key: 1 to 64 of A-Z a-z 0-9 . _ : -; with it a job is one"))
      ->type_name("KEY")
      ->required();
  send->add_option("--desk", options->desk, Tr("Whose key it is"))->type_name("NAME");
  send->add_option("--reference", options->reference, Tr("A text that is kept with the job"))
      ->type_name("TEXT");
  send->add_option("--expires", options->expires,
                   Tr("Seconds after which it is not to begin; 600 unless it is said"))
      ->type_name("N")
      ->check(WholeNumberIn(1, kLongestExpiry));
  send->add_option("--wait", options->wait,
                   Tr("Seconds to wait for the outcome, 60 unless it is said; 0 asks once"))
      ->type_name("N")
      ->check(WholeNumberIn(0, kLongestWait));
  send->add_flag("--json", options->json, Tr("Write JSON"));
}

// What became of it, as programs and persons are told; and the exit code.
struct OutcomeRow {
  Asked asked;
  const char* name;
  int exit_code;
};

constexpr OutcomeRow kOutcomes[] = {
    {Asked::kConfirmed, "confirmed", kExitGood}, {Asked::kFailed, "failed", kExitFaults},
    {Asked::kRefused, "refused", kExitNotDone},  {Asked::kAway, "away", kExitNotDone},
    {Asked::kUnknown, "unknown", kExitUnknown},
};

void TellOutcome(const JobOutcome& outcome, Streams& streams) {
  const int64_t id = NumberOf(outcome.job, "id");
  const std::string state = Shown(TextOf(outcome.job, "state"));
  const std::string why = Shown(LastWhy(outcome.job));
  const std::string problem = Shown(ProblemText(outcome.problem, outcome.cause));
  switch (outcome.asked) {
    case Asked::kConfirmed:
      return;
    case Asked::kFailed:
      TellError(streams, Tr("job {} is {}: {}; nothing was done, and a new try takes a new key", id,
                            state, why));
      streams.Error(FailedLinesText(outcome.job));
      return;
    case Asked::kRefused:
      TellError(streams,
                Tr("the door does not take it: {}; by this call nothing was done, and if the "
                   "key was sent before, its outcome is still unknown",
                   problem));
      return;
    case Asked::kAway:
      TellError(streams,
                Tr("no door takes it now: {}; by this call nothing was done, and if the key "
                   "was sent before, its outcome is still unknown",
                   problem));
      return;
    case Asked::kUnknown:
      if (state == "needs_operator") {
        TellError(streams, Tr("job {} needs an operator, who resolves it: {}", id, why));
      } else if (id != 0) {
        TellError(streams, Tr("job {} is {}: what becomes of it is not known yet; send it again "
                              "with the same key",
                              id, state));
      } else if (TextOf(outcome.problem, "code") == kKeyReused) {
        TellError(streams,
                  Tr("the key is that of another job, and what became of that one \"lorimat "
                     "jobs\" shows: {}",
                     problem));
      } else {
        TellError(streams, Tr("what became of it is not known; send it again with the same key: {}",
                              problem));
      }
  }
}

std::string ConfirmedText(const Json& job) {
  const std::string document = JobDocumentText(job);
  const int64_t id = NumberOf(job, "id");
  if (document.empty()) return Tr("job {}: confirmed\n", id);
  return Tr("job {}: confirmed, document {}, total {}\n", id, document,
            Shown(TextOf(job.at("document"), "total")));
}

// What cannot be written has happened all the same: that is told, and no failure.
void WriteOutcome(const SendOptions& options, const JobOutcome& outcome, const char* name,
                  Streams& streams) {
  if (!options.json) TellOutcome(outcome, streams);
  try {
    if (options.json) {
      streams.Output(JsonText({{"outcome", name},
                               {"key", options.key},
                               {"job", outcome.job},
                               {"problem", outcome.problem},
                               {"cause", outcome.cause.empty() ? Json() : Json(outcome.cause)}}));
    } else if (outcome.asked == Asked::kConfirmed) {
      streams.Output(ConfirmedText(outcome.job));
    }
  } catch (const Failure& failure) {
    TellError(streams, failure.what());
  }
}

// Returns one of ExitCode, which is that of the outcome, told or not. Throws Failure: then nothing
// was sent.
int SendCommand(const SendOptions& options, Streams& streams) {
  const InterruptWatch watch;
  if (!IsKey(options.key)) {
    throw Failure(Tr("--key: {} is not 1 to 64 of A-Z a-z 0-9 . _ : -", Shown(options.key)));
  }
  const DoorAddress address = AddressOf(options.door);
  Json body = {{"lines", LinesOf(options.file)}};
  if (interrupted != 0) return InterruptExit();
  if (!options.desk.empty()) body["desk"] = options.desk;
  if (!options.reference.empty()) body["reference"] = options.reference;
  if (options.expires != 0) body["expires_s"] = options.expires;
  const std::string text = body.dump(-1, ' ', false, Json::error_handler_t::replace);
  const std::string no_memory =
      fmt::format("{}: {}\n", streams.program(), Tr("there is not enough memory"));
  int code = kExitUnknown;
  try {
    const JobOutcome outcome =
        AskForJob(address, {"/v1/jobs", options.key, text, std::chrono::seconds(options.wait)});
    const auto* row =
        std::find_if(std::begin(kOutcomes), std::end(kOutcomes),
                     [&](const OutcomeRow& one) { return one.asked == outcome.asked; });
    const bool is_stopped = interrupted != 0 && row->exit_code >= kExitNotDone;
    code = is_stopped ? InterruptExit() : row->exit_code;
    WriteOutcome(options, outcome, row->name, streams);
  } catch (const std::bad_alloc&) {
    streams.Error(no_memory);
  }
  return code;
}

}  // namespace

const Subcommand kSendSubcommand = {"send", HelpGroup::kUseDoor,
                                    TR_TEXT("Send lines to a door as one job"), kSendExamples,
                                    &Prepare<SendOptions, AddOptions, SendCommand>};

}  // namespace lorimat::console
