#include "console/command/run_command.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "console/check/language.h"
#include "console/command/paper_places.h"
#include "console/host/batch_refusals.h"
#include "console/host/batch_request.h"
#include "console/host/batch_run.h"
#include "console/host/batch_stop.h"
#include "console/host/broken_pipe.h"
#include "console/host/failure_report.h"
#include "console/host/library.h"
#include "console/host/library_start.h"
#include "console/host/line_hints.h"
#include "console/host/memory_watch.h"
#include "console/host/open_document.h"
#include "console/host/places.h"
#include "console/host/register_client.h"
#include "console/message/failure.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/shell/shell_status.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"

namespace lorimat::console {
namespace {

constexpr size_t kShownLine = 100;  // of an "@" line

bool is_long(const LineReader& reader) { return reader.size() >= Progress::kLongFile; }

// Why the register could not be kept, once for each cause.
void tell_failure(const RegisterClient& client, std::string* told, Streams& streams) {
  const std::string cause = client.last_failure();
  if (cause == *told) return;
  *told = cause;
  if (!cause.empty()) tell_error(streams, tr("the register could not be kept: {}", cause));
}

// --- One EcrCmd for each line. Returns an exit code.
int run_lines(const RunOptions& options, LineReader& reader, Library& library,
              RegisterClient& client, MemoryWatch* memory, LineHints* hints,
              FailureReport& failures, Streams& streams) {
  // The answer of a line that has nothing to say, in the words of the definition file.
  std::string plain_answer;
  library.run_line("; lorimat run", &plain_answer);

  Progress progress(streams, is_long(reader), reader.size());
  failures.set_progress(&progress);
  SourceLine line;
  uint64_t run = 0;
  uint64_t batch_lines = 0;  // of "@" lines with failures
  bool stopped = false;
  std::string told_failure;
  // What Ctrl-C leaves of a line that was being typed or sent is not run.
  while (!stopped && !interrupted && reader.next(&line) && !interrupted) {
    run = line.number;
    progress.update(reader.bytes_read());
    const std::string place = fmt::format("{}:{}", reader.name(), line.number);
    const uint64_t failed_before = failures.count();
    if (line.nul_at != 0) {
      failures.report_not_run(place,
                              tr("a NUL byte stands in column {}, and the library would read the "
                                 "line only up to there",
                                 line.nul_at) +
                                  encoding_hint(line.text),
                              line.text);
    } else {
      std::string answer;
      const uint64_t refusals = client.refusals();
      long code = 0;
      if (is_batch_line(line.text)) {
        const BatchRun batch = run_batch_line(line.text, library, client, memory);
        code = batch.code;
        answer = batch.answer;
        tell_unknown_failures(batch, place, streams);
        report_failures(batch.failures, failures);
        if (!batch.failures.empty()) batch_lines += batch.lines;
        if (batch.stopped_behind) {
          tell_error(streams, tr("{}: stopped by {} behind line {}", shown(line.text, kShownLine),
                                 interrupt_name(), *batch.stopped_behind));
        }
      } else {
        code = library.run_line(line.text, &answer);
      }
      std::string reason;
      if (memory != nullptr) {
        memory->answered(line.text, code);
        reason = memory->lost_sale_reason(memory->sale_was_lost(), code);
      }
      if (code != 0) {
        if (reason.empty()) reason = client.reason_since(refusals, code);
        failures.report({place, code, answer, line.text, reason});
        tell_failure(client, &told_failure, streams);
      } else if (hints != nullptr && !is_batch_line(line.text)) {
        const std::string told = hints->take(line, place, streams.error_has_colours());
        if (!told.empty()) {
          progress.clear();
          streams.error(told);
        }
      }
      if (code == 0 && (options.verbose || answer != plain_answer)) {
        progress.clear();
        streams.error(tr("{}: answer: {}\n", place, shown(without_trailing_blanks(answer))));
      }
    }
    stopped = options.stop_on_error && failures.count() != failed_before;
  }
  progress.clear();
  failures.set_progress(nullptr);
  failures.summarize();
  if (interrupted) {
    tell_error(streams, tr("stopped by {} behind line {}", interrupt_name(), run));
    return interrupt_exit();
  }
  if (stopped) {
    tell_error(streams, tr("stopped at line {}, which failed", run));
  } else if (failures.count() != 0) {
    tell_error(streams, tr("{} of {} lines failed", failures.count(), run + batch_lines));
  }
  return failures.count() == 0 ? kExitGood : kExitLinesFailed;
}

// --- The file as one batch.

struct BatchPlace {
  std::string folder;
  std::string name;
};

BatchPlace split(const std::string& file) {
  const size_t slash = file.rfind('/');
  if (slash == std::string::npos) return {".", file};
  return {slash == 0 ? "/" : file.substr(0, slash), file.substr(slash + 1)};
}

// Counts the lines of the file, and refuses what a batch would run other than it reads.
uint64_t count_lines(const std::string& file) {
  LineReader reader(file);
  SourceLine line;
  while (reader.next(&line)) {
    if (line.nul_at != 0) {
      throw Failure(tr(
          "{}:{}: a NUL byte stands in column {}: with --batch the library would run the line only "
          "up to there; nothing was run",
          reader.name(), line.number, line.nul_at));
    }
  }
  return line.number;
}

int run_batch(const RunOptions& options, const LineReader& reader, Library& library,
              RegisterClient& client, const MemoryWatch* memory, FailureReport& failures,
              Streams& streams) {
  const BatchPlace place = split(options.file);
  const uint64_t lines = count_lines(options.file);
  const ScratchFolder scratch;

  // The name on the line has no folder: its capital letters would be lower-cased too.
  const Descriptor origin(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!origin.is_open() || chdir(place.folder.c_str()) != 0) {
    throw Failure(
        tr("{}: cannot work in its folder: {}", shown(options.file), system_message(errno)));
  }
  std::string answer;
  long code = 0;
  Progress progress(streams, is_long(reader), lines);
  std::optional<uint64_t> stopped_behind;
  BatchRefusals refusals(client, memory);
  {
    BatchStop stop(client, [&progress, &refusals](uint64_t line) {
      progress.update(line);
      refusals.note(line);
    });
    code = library.run_line(batch_line(place.name, scratch.error_file()), &answer);
    refusals.note(stop.lines());
    stopped_behind = stop.stopped_behind();
  }
  progress.clear();
  if (fchdir(origin.get()) != 0) {
    throw Failure(tr("cannot return to the folder of the start: {}", system_message(errno)));
  }
  const std::string text = shown(without_trailing_blanks(answer));
  if (code != 0) {
    throw Failure(tr("{}: the batch was refused: code {}: {}", reader.name(), code, text));
  }
  std::string told_failure;
  tell_failure(client, &told_failure, streams);
  report_failures(
      failed_lines(read_batch_errors(scratch.error_file()), options.file, reader.name(), refusals),
      failures);
  failures.summarize();
  if (stopped_behind) {
    tell_error(streams, tr("stopped by {} behind line {}", interrupt_name(), *stopped_behind));
    return interrupt_exit();
  }
  if (options.verbose) streams.error(tr("{}: answer: {}\n", reader.name(), text));
  if (failures.count() == 0) return kExitGood;
  tell_error(streams, tr("{} of {} lines failed", failures.count(), lines));
  return kExitLinesFailed;
}

void require_batch_file(const RunOptions& options, const LineReader& reader) {
  if (options.file == "-" || !reader.is_regular()) {
    throw Failure(
        tr("{}: --batch needs a file, which the library opens by its name", reader.name()));
  }
  require_batch_name(split(options.file).name);
}

// --- The paper, and the register's file.

// Of a client that is there once the paper is written.
std::vector<PaperPlace> paper_places(const RunOptions& options,
                                     const std::optional<RegisterClient>& client) {
  std::vector<PaperPlace> places = {
      {{options.paper.empty() ? "-" : options.paper, "--paper", tr("the paper's text")},
       [&client](const auto&) { return client->paper(); },
       false}};
  if (!options.png.empty()) {
    places.push_back({{options.png, "--png", tr("the PNG")},
                      [&client](const auto& progress) { return client->paper_png(progress); }});
  }
  if (!options.pdf.empty()) {
    places.push_back({{options.pdf, "--pdf", tr("the PDF")},
                      [&client](const auto& progress) { return client->paper_pdf(progress); }});
  }
  return places;
}

// Before anything is opened for writing.
void require_free_places(const RunOptions& options, const std::vector<PaperPlace>& places,
                         const std::string& library_file) {
  std::vector<OutputName> outputs = names_of(places);
  outputs.push_back({options.trace, "--trace", tr("the trace"), true});
  std::vector<KeptFile> kept = {
      {options.file, tr("the file of lines")},
      {find_definition_file(options.language).path, tr("the definition file")},
      {library_file, tr("the library")}};
  for (KeptFile& file : register_files(options.register_file)) kept.push_back(std::move(file));
  require_apart(outputs, kept);
}

// What ran is not to be run again because its paper was lost.
void tell_what_is_kept(const RunOptions& options, Streams& streams) {
  if (options.register_file.empty()) return;
  const std::string file = shown(options.register_file);
  tell_note(streams, tr("{} has what the lines did, and they are not to be run again; \"lorimat "
                        "paper --register {}\" writes the paper",
                        file, file));
}

}  // namespace

int run_command(const RunOptions& options, Streams& streams) {
  LineReader reader(options.file, &interrupted);
  if (options.batch) require_batch_file(options, reader);

  // The library lets go of the client last, and nothing is made before the library is there.
  std::optional<RegisterClient> client;
  const std::string library_file = find_library(options.library);
  const std::vector<PaperPlace> papers = paper_places(options, client);
  require_free_places(options, papers, library_file);
  const bool caller_wants_error = ignore_broken_pipe();
  const InterruptWatch watch;
  streams.start_trace(options.trace);
  if (options.verbose) tell(streams, tr("library {}", shown(library_file)));
  std::optional<Library> library(std::in_place, library_file, streams);
  client.emplace(options.clock, options.register_file, streams);
  start_library(options.language, options.verbose, *library, *client, streams);

  PaperPlaces places(papers, streams);
  // Read before a line can go to another folder.
  std::optional<Language> language;
  if (!options.terse) language.emplace(find_definition_file(options.language).path);
  FailureReport failures(streams, language ? &*language : nullptr, true);
  std::optional<MemoryWatch> memory;
  std::optional<LineHints> hints;
  if (language) {
    memory.emplace(*language, *client);
    hints.emplace(*language);
  }
  MemoryWatch* const watched = memory ? &*memory : nullptr;
  int code = kExitNotDone;
  try {
    code = options.batch ? run_batch(options, reader, *library, *client, watched, failures, streams)
                         : run_lines(options, reader, *library, *client, watched,
                                     hints ? &*hints : nullptr, failures, streams);
  } catch (const std::bad_alloc&) {
    // The paper of what was done is written all the same.
    tell_error(streams, tr("{}: stopped: there is not enough memory", reader.name()));
  }
  memory.reset();
  PaperPlaces::Outcome outcome = places.write();
  // A caller that has the signal ignored is told, and one whose run a signal has ended.
  if (outcome.reader_gone && (caller_wants_error || interrupted != 0)) {
    outcome.failed = true;
    tell_error(streams, tr("cannot write to standard output: {}", system_message(EPIPE)));
  }
  const std::string open = open_document_words(client->device());
  const bool kept = client->last_failure().empty();
  library.reset();
  client.reset();
  tell_open_document(options.register_file, open, reader.name(), streams);
  const std::string trace_failure = streams.trace_failure();
  if (!trace_failure.empty()) tell_error(streams, trace_failure);
  const bool all_written = !outcome.failed && trace_failure.empty();
  if (!all_written || outcome.reader_gone || outcome.stopped) tell_what_is_kept(options, streams);
  if (!kept || !all_written) return kExitNotDone;
  if (outcome.stopped) return interrupt_exit();
  return outcome.reader_gone ? kExitReaderGone : code;
}

}  // namespace lorimat::console
