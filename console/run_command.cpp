#include "run_command.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "batch_request.h"
#include "definition_fault.h"
#include "failure.h"
#include "library.h"
#include "line_reader.h"
#include "paper_file.h"
#include "places.h"
#include "progress.h"
#include "register/picture.h"
#include "register_client.h"
#include "text.h"

namespace {

constexpr size_t kShownLine = 100;        // of a failing line
constexpr size_t kLibraryPathLimit = 79;  // of a definition file's path
constexpr int kDefinitionRefused = 2;     // TradInit

// --- Ctrl-C. The run ends behind the line at work, so that the paper is not lost; a second
// Ctrl-C ends the program at once.

volatile std::sig_atomic_t interrupted = 0;

void note_interrupt(int) { interrupted = 1; }

class InterruptWatch {
 public:
  InterruptWatch() {
    struct sigaction action {};
    action.sa_handler = &note_interrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &before_);
  }
  ~InterruptWatch() { sigaction(SIGINT, &before_, nullptr); }
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

 private:
  struct sigaction before_ {};
};

// --- The definition file.

void tell_about_definition(const RunOptions& options, const DefinitionFile& definition,
                           Streams& streams) {
  const bool overridden = !definition.installation_dir.empty();
  if (overridden && (!options.language.empty() || options.verbose)) {
    streams.error(fmt::format(
        "lorimat: note: InstallationDir={} in the registry {} overrides {}: the definition file "
        "is {}\n",
        shown(definition.installation_dir), shown(definition.registry_file),
        options.language.empty() ? "the default" : "--language " + shown(options.language),
        shown(definition.path)));
  } else if (options.verbose) {
    streams.error(fmt::format("lorimat: definition file {}\n", shown(definition.path)));
  }
}

// Hands the definition file to the library, having looked at it first: the library says only
// "2", and takes merkelin.ini of the current directory when it cannot open the file.
void start_library(const RunOptions& options, Library& library, RegisterClient& client,
                   Streams& streams) {
  const DefinitionFile definition = find_definition_file(options.language);
  tell_about_definition(options, definition, streams);
  const bool overridden = !definition.installation_dir.empty();
  const std::string origin = overridden ? fmt::format(
                                              " (named by InstallationDir in the registry {}; set "
                                              "LORIMATRT_REGISTRY to another file to leave it out)",
                                              shown(definition.registry_file))
                                        : "";
  DefinitionReport report;
  try {
    report = inspect_definition(definition.path);
  } catch (const Failure& failure) {
    throw Failure(fmt::format("definition file {}{}", failure.what(), origin));
  }
  // The library cuts a longer path. A host's own can be named shorter, by its descriptor; the
  // registry's cannot.
  std::string path = definition.path;
  Descriptor open_file;
  if (path.size() > kLibraryPathLimit) {
    if (overridden) {
      throw Failure(fmt::format(
          "definition file {}: its path is longer than the {} characters that the library takes{}",
          shown(path), kLibraryPathLimit, origin));
    }
    open_file = Descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    path = fmt::format("/proc/self/fd/{}", open_file.get());
  }
  const int code = library.init(path, client.client());
  if (code != 0) {
    const std::string cause = code == kDefinitionRefused && report.fault_line != 0
                                  ? fmt::format(":{}: {}", report.fault_line, report.fault)
                                  : fmt::format(": the library answered {}", code);
    throw Failure(fmt::format("definition file {}{}{}", shown(definition.path), cause, origin));
  }
  if (report.commands == 0) {
    streams.error(fmt::format(
        "lorimat: warning: definition file {} names no commands (section [OPCOD]), so every line "
        "will fail{}\n",
        shown(definition.path), origin));
  }
}

// --- Failing lines.

class FailureList {
 public:
  FailureList(Streams& streams, Progress& progress) : streams_(streams), progress_(progress) {}

  // place is "FILE:LINE" or "FILE".
  void report(const std::string& place, const std::string& what, std::string_view line) {
    ++count_;
    progress_.clear();
    streams_.error(fmt::format("{}: {}\n", place, what));
    if (!line.empty()) streams_.error(fmt::format("    {}\n", shown(line, kShownLine)));
  }
  void report_code(const std::string& place, long code, std::string_view text,
                   std::string_view line) {
    report(place, fmt::format("code {}: {}", code, shown(without_trailing_blanks(text))), line);
  }
  uint64_t count() const { return count_; }

 private:
  Streams& streams_;
  Progress& progress_;
  uint64_t count_ = 0;
};

bool is_long(const LineReader& reader) { return reader.size() >= Progress::kLongFile; }

// --- One EcrCmd for each line. Returns an exit code.
int run_lines(const RunOptions& options, LineReader& reader, Library& library, Streams& streams) {
  // The answer of a line that has nothing to say, in the words of the definition file.
  std::string plain_answer;
  library.run_line("; lorimat run", &plain_answer);

  Progress progress(streams, is_long(reader), reader.size());
  FailureList failures(streams, progress);
  InterruptWatch watch;
  SourceLine line;
  uint64_t run = 0;
  bool stopped = false;
  // What Ctrl-C leaves of a line that was being typed or sent is not run.
  while (!stopped && !interrupted && reader.next(&line) && !interrupted) {
    run = line.number;
    progress.update(reader.bytes_read());
    const std::string place = fmt::format("{}:{}", reader.name(), line.number);
    const uint64_t failed_before = failures.count();
    if (line.nul_at != 0) {
      failures.report(place,
                      fmt::format("not run: a NUL byte stands in column {}, and the library would "
                                  "read the line only up to there",
                                  line.nul_at),
                      line.text);
    } else {
      std::string answer;
      const long code = library.run_line(line.text, &answer);
      if (code != 0) {
        failures.report_code(place, code, answer, line.text);
      } else if (options.verbose || answer != plain_answer) {
        progress.clear();
        streams.error(
            fmt::format("{}: answer: {}\n", place, shown(without_trailing_blanks(answer))));
      }
    }
    stopped = options.stop_on_error && failures.count() != failed_before;
  }
  progress.clear();
  if (interrupted) {
    streams.error(fmt::format("lorimat: stopped by Ctrl-C behind line {}\n", run));
    return kExitInterrupted;
  }
  if (stopped) {
    streams.error(fmt::format("lorimat: stopped at line {}, which failed\n", run));
  } else if (failures.count() != 0) {
    streams.error(fmt::format("lorimat: {} of {} lines failed\n", failures.count(), run));
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
      throw Failure(fmt::format(
          "{}:{}: a NUL byte stands in column {}: with --batch the library would run the line only "
          "up to there; nothing was run",
          reader.name(), line.number, line.nul_at));
    }
  }
  return line.number;
}

void report_batch_errors(const std::string& file, const std::vector<BatchError>& errors,
                         FailureList& failures) {
  std::map<uint64_t, std::string> texts;
  for (const BatchError& error : errors) texts[error.line];
  LineReader reader(file);
  SourceLine line;
  while (reader.next(&line)) {
    const auto found = texts.find(line.number);
    if (found != texts.end()) found->second = line.text;
  }
  for (const BatchError& error : errors) {
    if (error.line == 0) {
      failures.report(reader.name(), shown(error.text), {});
    } else {
      failures.report_code(fmt::format("{}:{}", reader.name(), error.line), error.code, error.text,
                           texts[error.line]);
    }
  }
}

int run_batch(const RunOptions& options, const LineReader& reader, Library& library,
              RegisterClient& client, Streams& streams) {
  const BatchPlace place = split(options.file);
  const uint64_t lines = count_lines(options.file);
  const ScratchFolder scratch;

  // The name on the line has no folder: its capital letters would be lower-cased too.
  const Descriptor origin(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!origin.is_open() || chdir(place.folder.c_str()) != 0) {
    throw Failure(fmt::format("{}: cannot work in its folder: {}", shown(options.file),
                              system_message(errno)));
  }
  std::string answer;
  long code = 0;
  Progress progress(streams, is_long(reader), lines);
  {
    // The library traces each line of a batch through the client; the "@" line is the first.
    uint64_t traced = 0;
    client.on_line([&] { progress.update(traced++); });
    code = library.run_line(batch_line(place.name, scratch.error_file()), &answer);
    client.on_line(nullptr);
  }
  progress.clear();
  if (fchdir(origin.get()) != 0) {
    throw Failure(
        fmt::format("cannot return to the folder of the start: {}", system_message(errno)));
  }
  const std::string text = shown(without_trailing_blanks(answer));
  if (code != 0) {
    throw Failure(fmt::format("{}: the batch was refused: code {}: {}", reader.name(), code, text));
  }
  FailureList failures(streams, progress);
  report_batch_errors(options.file, read_batch_errors(scratch.error_file()), failures);
  if (options.verbose) streams.error(fmt::format("{}: answer: {}\n", reader.name(), text));
  if (failures.count() == 0) return kExitGood;
  streams.error(fmt::format("lorimat: {} of {} lines failed\n", failures.count(), lines));
  return kExitLinesFailed;
}

void require_batch_file(const RunOptions& options, const LineReader& reader) {
  if (options.file == "-" || !reader.is_regular()) {
    throw Failure(fmt::format("{}: --batch needs a file, which the library opens by its name",
                              reader.name()));
  }
  require_batch_name(split(options.file).name);
}

// --- The paper's places: text, and the pictures that were asked for.

struct PaperPlace {
  std::string name;  // "-" is standard output
  const char* option;
  const char* what;
  std::string (RegisterClient::*content)() const;
};

std::vector<PaperPlace> paper_places(const RunOptions& options) {
  std::vector<PaperPlace> places = {{options.paper.empty() ? "-" : options.paper, "--paper",
                                     "the paper's text", &RegisterClient::paper}};
  if (!options.png.empty()) {
    places.push_back({options.png, "--png", "the PNG", &RegisterClient::paper_png});
  }
  if (!options.pdf.empty()) {
    places.push_back({options.pdf, "--pdf", "the PDF", &RegisterClient::paper_pdf});
  }
  return places;
}

bool are_one_file(const std::string& one, const std::string& other) {
  if (one == "-" || other == "-") return one == other;
  struct stat status;
  struct stat other_status;
  return stat(one.c_str(), &status) == 0 && stat(other.c_str(), &other_status) == 0 &&
         S_ISREG(status.st_mode) && status.st_dev == other_status.st_dev &&
         status.st_ino == other_status.st_ino;
}

// Opens them all, so that a run does not start whose paper could not be kept.
std::vector<PaperFile> open_paper(const std::vector<PaperPlace>& places, const RunOptions& options,
                                  Streams& streams) {
  std::vector<PaperFile> files;
  for (const PaperPlace& place : places) {
    files.emplace_back(place.name, options.file, streams);
    for (const PaperPlace& before : places) {
      if (&before == &place) break;
      if (!are_one_file(before.name, place.name)) continue;
      throw Failure(fmt::format("{} {}: {} goes there already", place.option, shown(place.name),
                                before.what));
    }
  }
  return files;
}

void write_paper(const std::vector<PaperPlace>& places, std::vector<PaperFile>& files,
                 const RegisterClient& client) {
  for (size_t i = 0; i < places.size(); ++i) {
    std::string content;
    try {
      content = (client.*places[i].content)();
    } catch (const lorimat::PictureError& error) {
      throw Failure(fmt::format("{}: {}", shown(places[i].name), error.what()));
    }
    files[i].write(content);
  }
}

}  // namespace

int run_command(const RunOptions& options, Streams& streams) {
  LineReader reader(options.file, &interrupted);
  if (options.batch) require_batch_file(options, reader);

  RegisterClient client(options.clock, streams);

  const std::string library_file = find_library(options.library);
  streams.start_trace(options.trace);
  if (options.verbose) streams.error(fmt::format("lorimat: library {}\n", shown(library_file)));
  Library library(library_file, streams);
  start_library(options, library, client, streams);

  const std::vector<PaperPlace> places = paper_places(options);
  std::vector<PaperFile> files = open_paper(places, options, streams);
  const int code = options.batch ? run_batch(options, reader, library, client, streams)
                                 : run_lines(options, reader, library, streams);
  write_paper(places, files, client);
  if (client.document_open()) {
    streams.error(
        fmt::format("lorimat: note: {} ends with the receipt still open; a payment closes it\n",
                    reader.name()));
  }
  return code;
}
