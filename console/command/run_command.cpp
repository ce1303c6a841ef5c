// "lorimat run": runs a file of command lines as a host does, and prints the paper.

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/check/language.h"
#include "console/command/paper_outputs.h"
#include "console/command/record_options.h"
#include "console/command/subcommand.h"
#include "console/device/device.h"
#include "console/host/batch_request.h"
#include "console/host/batch_run.h"
#include "console/host/broken_pipe.h"
#include "console/host/device_options.h"
#include "console/host/failure_report.h"
#include "console/host/installed_files.h"
#include "console/host/library.h"
#include "console/host/library_start.h"
#include "console/host/line_hints.h"
#include "console/host/line_recording.h"
#include "console/host/line_run.h"
#include "console/host/memory_watch.h"
#include "console/host/open_document.h"
#include "console/host/output_guard.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/shell/shell_status.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"

namespace lorimat::console {
namespace {

struct RunOptions {
  std::string file;      // "-" is standard input
  std::string language;  // definition file; empty takes the one beside the program
  std::string paper;     // empty, or "-", is standard output
  std::string png;       // empty for no such picture of the paper; "-" is standard output
  std::string pdf;       // the same
  std::string library;   // empty takes the one beside the program
  std::string trace;     // empty discards the library's own lines; "-" is standard error
  DeviceOptions device;
  RecordOptions record;
  bool batch = false;
  bool stop_on_error = false;
  bool terse = false;  // failing lines without their explanation and the summary
  bool verbose = false;
};

constexpr std::string_view kRunExamples = TR_TEXT(R"(Examples:
  lorimat run examples/receipt.cmd
      Runs the lines and prints the receipt.
  lorimat run receipt.cmd --paper receipt.txt --clock "2024-03-15 10:30"
      Keeps the paper in a file, with a clock that gives the same paper each time.
  lorimat run receipt.cmd --paper receipt.txt --png receipt.png --pdf receipt.pdf
      Draws it besides, with its barcodes and logos.
  lorimat run receipt.cmd --batch
      Lets the library run the file itself, as one "@" line.
  printf 'VEND REP=1, PRE=2.50\nCHIU\n' | lorimat run -
      Reads the lines from standard input.
  lorimat run receipt.cmd --register shop.register
      On a register that is kept in a file, which is made when it is not there.
  lorimat run receipt.cmd --device ./libprinter.so --device-option port=/dev/ttyS0
      On a device of one's own, whose plug-in is named.

The paper goes to standard output, everything else to standard error. A failing line does not
end the run, as it does not in a host. Each is shown with its number, result code and text, with
the place where the line is wrong, and with what causes the code:
  receipt.cmd:7: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND
      VNED REP=1, PRE=1.00
      ^
    no command is called 'VNED'; did you mean VEND?
Of one code 20 lines are shown, and all are counted in the table at the end. --terse shows every
line without its cause.

Exit codes:
  0  every line ran; what a line "@FILE,ERRORS" writes to its error file does not count
  1  at least one line failed
  2  wrong use, or the run, its paper or its register could not be done, or nobody knows which lines
     of a batch failed
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP; the paper is written
  141  nobody reads standard output any more
)");

constexpr size_t kShownLine = 100;  // of an "@" line

// What a run leaves to be told.
struct Ran {
  // Those of batches that had failures among them.
  std::optional<uint64_t> lines = 0;
  bool stopped = false;  // by a line that failed
  bool failures_known = true;
};

// --- One EcrCmd for each line.

class Lines : public LineSink {
 public:
  Lines(const RunOptions& options, const LineReader& reader, const LineHost& host, LineHints* hints,
        FailureReport& failures, Streams& streams)
      : options_(options),
        reader_(reader),
        device_(host.device),
        hints_(hints),
        failures_(failures),
        streams_(streams),
        progress_(streams, reader.is_regular() && reader.size() >= Progress::kLongFile,
                  reader.size()) {
    // The answer of a line that has nothing to say, in the words of the definition file.
    host.library.RunLine("; lorimat run", &plain_answer_);
    failures_.SetProgress(&progress_);
  }
  ~Lines() override {
    progress_.Clear();
    failures_.SetProgress(nullptr);
  }
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  bool Take(const SourceLine& line, const std::string& place, const LineAnswer& answer) override {
    progress_.Update(reader_.bytes_read());
    const uint64_t failed_before = failures_.count();
    if (!answer.not_run.empty()) {
      failures_.ReportNotRun(place, answer.not_run, line.text);
    } else {
      if (answer.batch) TellBatch(line, place, *answer.batch);
      if (answer.code != 0) {
        failures_.Report({place, answer.code, answer.answer, line.text, answer.reason});
      } else {
        TellSuccess(line, place, answer);
      }
      if (answer.code != 0 || answer.batch || device_.HasNotes()) {
        progress_.Clear();
        device_.TellFailure(streams_);
        device_.TellNotes(streams_);
      }
    }
    ran_.stopped = options_.stop_on_error && failures_.count() != failed_before;
    return !ran_.stopped;
  }

  const Ran& ran() const { return ran_; }

 private:
  void TellBatch(const SourceLine& line, const std::string& place, const BatchRun& batch) {
    if (!batch.unknown.empty()) {
      progress_.Clear();
      ran_.failures_known = false;
      TellUnknownFailures(batch, place, streams_);
    }
    ReportFailures(batch.failures, failures_);
    if (!batch.failures.empty()) {
      ran_.lines =
          ran_.lines && batch.lines ? std::optional(*ran_.lines + *batch.lines) : std::nullopt;
    }
    if (batch.stop) {
      progress_.Clear();
      TellError(streams_, StopText(Shown(line.text, kShownLine), *batch.stop));
    }
  }

  void TellSuccess(const SourceLine& line, const std::string& place, const LineAnswer& answer) {
    std::string told;
    if (hints_ != nullptr && !answer.batch) {
      told = hints_->Take(line, place, streams_.error_has_colours());
    }
    if (options_.verbose || answer.answer != plain_answer_) {
      told += Tr("{}: answer: {}\n", place, Shown(WithoutTrailingBlanks(answer.answer)));
    }
    if (told.empty()) return;
    progress_.Clear();
    streams_.Error(told);
  }

  const RunOptions& options_;
  const LineReader& reader_;
  Device& device_;
  LineHints* hints_;
  FailureReport& failures_;
  Streams& streams_;
  Progress progress_;
  std::string plain_answer_;
  Ran ran_;
};

// Returns an exit code.
int RunByLines(const RunOptions& options, LineReader& reader, const LineHost& host,
               LineHints* hints, FailureReport& failures, Streams& streams) {
  Ran ran;
  uint64_t last = 0;
  {
    Lines lines(options, reader, host, hints, failures, streams);
    last = RunLines(reader, host, lines);
    ran = lines.ran();
  }
  failures.Summarize();
  if (interrupted) {
    TellError(streams, Tr("stopped by {} behind line {}", InterruptName(), last));
    return InterruptExit();
  }
  const bool given_up = host.device.given_up();
  if (given_up) {
    TellError(streams,
              Tr("stopped behind line {}: the device '{}' is given up, and no further line "
                 "was sent",
                 last, Shown(host.device.name())));
  }
  if (ran.stopped) {
    TellError(streams, Tr("stopped at line {}, which failed", last));
  } else if (failures.count() != 0) {
    if (ran.lines) *ran.lines += last;
    TellError(streams, FailedLinesText(failures.count(), ran.lines));
  }
  // Lines that were there when the run began are not any more.
  const bool cut = !ran.stopped && !given_up && reader.bytes_read() < reader.size();
  if (cut) TellError(streams, Tr("{}: the file was changed meanwhile", reader.name()));
  if (failures.count() != 0) return kExitLinesFailed;
  return ran.failures_known && !cut ? kExitGood : kExitNotDone;
}

// --- The file as one batch.

struct BatchPlace {
  std::string folder;
  std::string name;
};

BatchPlace Split(const std::string& file) {
  const size_t slash = file.rfind('/');
  if (slash == std::string::npos) return {".", file};
  return {slash == 0 ? "/" : file.substr(0, slash), file.substr(slash + 1)};
}

// Refuses what a batch would run other than it reads.
void RequireLinesForBatch(const std::string& file) {
  LineReader reader(file, &interrupted);
  SourceLine line;
  while (reader.Next(&line)) {
    if (line.nul_at != 0) {
      throw Failure(Tr(
          "{}:{}: a NUL byte stands in column {}: with --batch the library would run the line only "
          "up to there; nothing was run",
          reader.name(), line.number, line.nul_at));
    }
  }
}

int RunByBatch(const RunOptions& options, const LineReader& reader, const LineHost& host,
               FailureReport& failures, Streams& streams) {
  const BatchPlace place = Split(options.file);
  RequireLinesForBatch(options.file);
  if (interrupted) {
    TellError(streams, StopText(reader.name(), {0, 1}));
    return InterruptExit();
  }

  // The name on the line has no folder: its capital letters would be lower-cased too.
  const Descriptor origin(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!origin.is_open() || chdir(place.folder.c_str()) != 0) {
    throw Failure(
        Tr("{}: cannot work in its folder: {}", Shown(options.file), SystemMessage(errno)));
  }
  const BatchRun run = RunBatchFile(place.name, reader.name(), host);
  if (fchdir(origin.get()) != 0) {
    throw Failure(Tr("cannot return to the folder of the start: {}", SystemMessage(errno)));
  }
  if (!run.not_run.empty()) {
    failures.ReportNotRun(reader.name(), run.not_run, "");
    return interrupted ? InterruptExit() : kExitLinesFailed;
  }
  const std::string text = Shown(WithoutTrailingBlanks(run.answer));
  if (run.code != 0) {
    throw Failure(Tr("{}: the batch was refused: code {}: {}", reader.name(), run.code, text));
  }
  host.device.TellFailure(streams);
  host.device.TellNotes(streams);
  TellUnknownFailures(run, reader.name(), streams);
  ReportFailures(run.failures, failures);
  failures.Summarize();
  if (run.stop) {
    TellError(streams, StopText(reader.name(), *run.stop));
    return InterruptExit();
  }
  if (options.verbose) streams.Error(Tr("{}: answer: {}\n", reader.name(), text));
  if (failures.count() == 0) return run.unknown.empty() ? kExitGood : kExitNotDone;
  TellError(streams, FailedLinesText(failures.count(), run.lines));
  return kExitLinesFailed;
}

void RequireBatchFile(const RunOptions& options, const LineReader& reader) {
  if (options.file == "-" || !reader.is_regular()) {
    throw Failure(
        Tr("{}: --batch needs a file, which the library opens by its name", reader.name()));
  }
  RequireBatchName(Split(options.file).name);
}

// --- The paper, and the device's files.

// Of a device that is there once the paper is written.
std::vector<PaperOutput> OutputsOfPaper(const RunOptions& options,
                                        const std::unique_ptr<Device>& device) {
  std::vector<PaperOutput> outputs = {
      {{options.paper.empty() ? "-" : options.paper, "--paper", Tr("the paper's text")},
       [&device](const auto&) {
         return device->paper() != nullptr ? device->paper()->text() : std::string();
       },
       false}};
  if (!options.png.empty()) {
    outputs.push_back({{options.png, "--png", Tr("the PNG")},
                       [&device](const auto& progress) { return device->paper()->Png(progress); }});
  }
  if (!options.pdf.empty()) {
    outputs.push_back({{options.pdf, "--pdf", Tr("the PDF")},
                       [&device](const auto& progress) { return device->paper()->Pdf(progress); }});
  }
  return outputs;
}

// The device shows what of its paper was asked for.
void RequirePaper(const RunOptions& options, Device& device) {
  const std::string name = Shown(device.name());
  const bool lines = device.paper() != nullptr && device.paper()->has_lines();
  if (!options.paper.empty() && !lines) {
    throw Failure(Tr("--paper: the device '{}' shows no paper", name));
  }
  const bool pictures = device.paper() != nullptr && device.paper()->has_pictures();
  if (pictures || (options.png.empty() && options.pdf.empty())) return;
  throw Failure(Tr("{}: the device '{}' draws no pictures of its paper",
                   options.png.empty() ? "--pdf" : "--png", name));
}

std::vector<OutputName> OutputsOf(const RunOptions& options,
                                  const std::vector<PaperOutput>& papers) {
  std::vector<OutputName> outputs = NamesOf(papers);
  outputs.push_back({options.trace, "--trace", Tr("the trace"), true});
  outputs.push_back(RecordingName(options.record));
  return outputs;
}

// Before anything is opened for writing.
void RequireFreeNames(const RunOptions& options, const DeviceRequest& request,
                      const std::vector<OutputName>& outputs, const std::string& library_file) {
  std::vector<KeptFile> kept = {
      {options.file, TR_TEXT("the file of lines")},
      {FindDefinitionFile(options.language).path, TR_TEXT("the definition file")},
      {library_file, TR_TEXT("the library")}};
  for (KeptFile& file : FilesOfDevice(request)) kept.push_back(std::move(file));
  RequireApart(outputs, kept);
}

// What no line may write over.
KeptFiles FilesOfRun(const RunOptions& options, const DeviceRequest& request,
                     const std::vector<OutputName>& outputs, const std::string& library_file,
                     const Streams& streams) {
  KeptFiles kept = FilesOfWork(FilesOfDevice(request), FindDefinitionFile(options.language).path,
                               library_file, streams.output_descriptor());
  kept.Add({options.file, TR_TEXT("the file of lines")});
  for (const OutputName& output : outputs) {
    if (output.name != "-") kept.Add({output.name, TR_TEXT("an output of the run")});
  }
  return kept;
}

void AddOptions(CLI::App* run, RunOptions* options) {
  run->add_option("FILE", options->file, Tr("Lines to run, one command each; - is standard input"))
      ->required();
  run->add_option("--language", options->language,
                  Tr("Definition file with the words of the language (default: the merkelin.ini "
                     "beside the program)"))
      ->type_name("FILE");
  AddPaperOption(run, &options->paper, Tr("Write the paper to FILE (default: standard output)"));
  run->add_option("--png", options->png, Tr("Write a picture of the paper to FILE"))
      ->type_name("FILE");
  run->add_option("--pdf", options->pdf,
                  Tr("Write the paper to FILE as a PDF, a page for each document"))
      ->type_name("FILE");
  AddDeviceOptions(run, &options->device);
  CLI::Option* batch =
      run->add_flag("--batch", options->batch,
                    Tr("Run the file as one \"@\" batch; its name must not have capital letters, "
                       "which the library would lower-case"));
  run->add_flag("--stop-on-error", options->stop_on_error,
                Tr("End the run at the first failing line"))
      ->excludes(batch);
  AddClockOption(run, &options->device);
  AddRecordOptions(run, &options->record);
  run->add_option("--trace", options->trace,
                  Tr("Write the library's own lines and the lines it was given to FILE; - is "
                     "standard error (default: they are discarded)"))
      ->type_name("FILE");
  run->add_flag("--terse", options->terse,
                Tr("Show each failing line by place, code, answer and line alone, without "
                   "explanation and summary"));
  run->add_flag("-v,--verbose", options->verbose,
                Tr("Show the files in use and the answer of every line"));
  run->add_option("--library", options->library,
                  Tr("The shared library (default: liblorimatrt.so beside the program)"))
      ->type_name("FILE")
      ->envname("LORIMAT_LIBRARY");
}

// Returns one of ExitCode. Throws Failure when the run could not be done.
int RunCommand(const RunOptions& options, Streams& streams) {
  LineReader reader(options.file, &interrupted);
  if (options.batch) RequireBatchFile(options, reader);

  const DeviceRequest request = RequestOf(options.device);
  // The library lets go of the device last, and nothing is made before the library is there.
  std::unique_ptr<Device> device;
  std::optional<LineRecording> recording;
  const std::string library_file = FindLibrary(options.library);
  const std::vector<PaperOutput> papers = OutputsOfPaper(options, device);
  const std::vector<OutputName> output_names = OutputsOf(options, papers);
  RequireFreeNames(options, request, output_names, library_file);
  const bool caller_wants_error = IgnoreBrokenPipe();
  streams.StartTrace(options.trace);
  if (options.verbose) Tell(streams, Tr("library {}", Shown(library_file)));
  std::optional<Library> library(std::in_place, library_file, streams);
  // A library that hangs while it is loaded is ended as any program is.
  const InterruptWatch watch;
  device = OpenDevice(request, streams);
  RequirePaper(options, *device);
  recording.emplace(options.record, *library, *device, FindDefinitionFile(options.language).path,
                    streams);
  device->TellStart(streams);
  StartLibrary(options.language, options.verbose, *library, *device, streams);

  PaperOutputs outputs(papers, streams);
  // Read before a line can go to another folder.
  const Language language(FindDefinitionFile(options.language).path);
  OutputGuard guard(language, FilesOfRun(options, request, output_names, library_file, streams));
  FailureReport failures(streams, options.terse ? nullptr : &language, true);
  MemoryWatch memory(language, *device);
  LineHints hints(language);
  int code = kExitNotDone;
  try {
    const LineHost host = {*library, *device, memory, guard};
    code = options.batch ? RunByBatch(options, reader, host, failures, streams)
                         : RunByLines(options, reader, host, options.terse ? nullptr : &hints,
                                      failures, streams);
  } catch (const std::bad_alloc&) {
    // The paper of what was done is written all the same.
    TellError(streams, Tr("{}: stopped: there is not enough memory", reader.name()));
  }
  PaperOutputs::Outcome outcome = outputs.write();
  // A caller that has the signal ignored is told, and one whose run a signal has ended.
  if (outcome.reader_gone && (caller_wants_error || interrupted != 0)) {
    outcome.failed = true;
    TellError(streams, Tr("cannot write to standard output: {}", SystemMessage(EPIPE)));
  }
  const std::string open = OpenDocumentWords(device->state());
  const Device::LeftNote note_of_left = device->NoteOfLeft();
  const std::string lost_paper = device->LostPaperNote();
  const bool kept = device->last_failure().empty();
  library.reset();
  const bool recorded = recording->Finish();
  device.reset();
  TellOpenDocument(note_of_left, open, reader.name(), streams);
  const std::string trace_failure = streams.trace_failure();
  if (!trace_failure.empty()) TellError(streams, trace_failure);
  const bool all_written = !outcome.failed && trace_failure.empty();
  // What ran is not to be run again because its paper was lost.
  const bool lost = !all_written || outcome.reader_gone || outcome.stopped;
  if (lost && !lost_paper.empty()) TellNote(streams, lost_paper);
  if (!kept || !all_written || !recorded) return kExitNotDone;
  if (outcome.stopped) return InterruptExit();
  return outcome.reader_gone ? kExitReaderGone : code;
}

}  // namespace

const Subcommand kRunSubcommand = {
    "run", HelpGroup::kRunLines,
    TR_TEXT("Run a file of command lines on a virtual register and print the paper"), kRunExamples,
    &Prepare<RunOptions, AddOptions, RunCommand>};

}  // namespace lorimat::console
