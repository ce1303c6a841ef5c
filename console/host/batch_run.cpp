#include "console/host/batch_run.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

#include "console/device/stoppable_client.h"
#include "console/host/batch_request.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

// The operands of an "@" line, as the library takes them.
class Request {
 public:
  explicit Request(const std::string& line) : reader_(std::make_unique<EcrCmdCommand>()) {
    constexpr int kTaken = -1;
    if (line.size() > kLongestLine) return;
    std::string copy = line;
    std::string cleaned(line.size() + 1, '\0');
    lorimatutility::TogliCommento(cleaned.data(), copy.data(), reader_->cChQuote);
    is_taken_ = reader_->ParseBatchRequest(cleaned.data()) == kTaken;
  }

  // Whether a batch would run without an error file.
  bool wants_error_file() const {
    return is_taken_ && reader_->szFileIn[0] != 0 && reader_->szFileErr[0] == 0;
  }
  std::string file() const { return is_taken_ ? reader_->szFileIn : ""; }
  std::string error_file() const { return is_taken_ ? reader_->szFileErr : ""; }
  std::string log_file() const { return reader_->szFileLog; }

 private:
  std::unique_ptr<EcrCmdCommand> reader_;
  bool is_taken_ = false;
};

// The library lower-cases the names.
std::string Lower(std::string name) {
  lorimatutility::toLower(name.data());
  return name;
}

std::string Absolute(const std::string& name) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(name, error);
  return error ? name : path.string();
}

// Why the error file may be cut: the library does not tell of a full disk. Empty when nothing
// speaks for it.
std::string CutCause(const ScratchFolder& scratch) {
  const std::string name = scratch.error_file();
  std::ifstream file(name, std::ios::binary | std::ios::ate);
  if (file && file.tellg() > 0) {
    file.seekg(-1, std::ios::end);
    if (file.get() != '\n') return Tr("{}: the file is cut", Shown(name));
  }
  const std::string probe = scratch.path() + "/probe";
  const Descriptor opened(open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  constexpr size_t kBlock = 4096;
  if (opened.is_open() && WriteAll(opened.get(), std::string(kBlock, ' '))) return {};
  return Tr("{}: cannot be written: {}", Shown(scratch.path()), SystemMessage(errno));
}

// The line with this batch file and error file.
std::string LineWith(const Request& request, const std::string& file,
                     const std::string& error_file) {
  std::string line = BatchLine(file, error_file);
  if (!request.log_file().empty()) line += "," + QuotedOperand(request.log_file());
  return line;
}

}  // namespace

std::string WithErrorFile(const std::string& line, const std::string& error_file) {
  const Request request(line);
  if (!request.wants_error_file()) return {};
  // A separator behind the name would take its last blank off.
  if (request.file().back() == ' ') return {};
  const std::string changed = LineWith(request, request.file(), error_file);
  return changed.size() <= kLongestLine ? changed : std::string();
}

namespace {

// The batch and the error file of a line that runs.
struct BatchNames {
  std::string file;
  std::string place;
  std::string error_file;       // as it can be opened when the line has run; empty for none
  std::string error_name = {};  // as the library opens it
};

// Sends the line, of which the console may be told to let go of the rest.
void Send(const std::string& line, const LineHost& host, BatchRefusals& refusals, BatchRun* run,
          bool* stopped) {
  const StoppableLine at_work(host.device.stoppable(), &interrupted,
                              [&refusals] { refusals.Note(); });
  run->code = host.library.RunLine(line, &run->answer);
  *stopped = host.device.stoppable().End();
  refusals.Note();
}

// The file as it is, to see whether it was changed meanwhile.
struct FileMark {
  dev_t device = 0;
  ino_t node = 0;
  off_t size = 0;
  timespec changed = {};

  bool operator==(const FileMark& other) const {
    return device == other.device && node == other.node && size == other.size &&
           changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
  }
};

FileMark MarkOf(const std::string& file) {
  struct stat status = {};
  // What is written into a pipe changes it.
  if (stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

// Runs the line and tells what became of the lines of the file.
BatchRun RunAndWalk(const std::string& line, const BatchNames& names, const LineHost& host,
                    const ScratchFolder* scratch) {
  BatchRun run;
  BatchRefusals refusals(host.device);
  RunBatch batch;
  batch.file = names.file;
  batch.place = names.place;
  const FileMark before = MarkOf(names.file);
  Send(line, host, refusals, &run, &batch.stopped);
  if (run.code != 0) return run;
  // What the user has the errors written to is not always a file that can be read.
  std::error_code error;
  const std::filesystem::file_status kind = std::filesystem::status(names.error_file, error);
  if (!names.error_file.empty() &&
      (!std::filesystem::exists(kind) || std::filesystem::is_regular_file(kind))) {
    try {
      batch.errors = ReadBatchErrors(names.error_file);
    } catch (const Failure& failure) {
      run.unread = failure.what();
    }
  }
  run.unknown = run.unread;
  if (scratch != nullptr && run.unknown.empty()) run.unknown = CutCause(*scratch);
  batch.all_errors = run.unknown.empty();
  if (!(MarkOf(names.file) == before)) {
    batch.file.clear();
    run.unknown = Tr("{}: the file was changed meanwhile", names.place);
  }
  BatchOutcome outcome = WalkBatch(batch, refusals, host.memory);
  if (run.unknown.empty()) run.unknown = outcome.unread;
  run.lines = outcome.lines_known ? std::optional(outcome.lines) : std::nullopt;
  run.stop = outcome.stop;
  run.failures = std::move(outcome.failures);
  return run;
}

// Both are one file, by whatever names: the batch would be lost.
bool AreOneFile(const std::string& one, const std::string& other) {
  std::error_code error;
  return std::filesystem::equivalent(one, other, error) && !error;
}

// Why the error file cannot be what the line names; empty when it can. The same name is the
// library's to refuse.
std::string ErrorFileFault(const Request& request, const OutputGuard& guard) {
  const std::string file = Lower(request.file());
  const std::string errors = Lower(request.error_file());
  if (errors.empty() || errors == file) return {};
  for (const std::string& name : {errors, errors + ".tmp"}) {
    if (name == file || !AreOneFile(name, file)) continue;
    return Tr("the error file {} is the batch file {} by another name, and its lines would be lost",
              Shown(name), Shown(file));
  }
  return guard.ErrorFileFault(errors);
}

// What is kept while the batch runs: what its lines come from and what tells of them.
std::vector<KeptFile> FilesOf(const BatchNames& names) {
  std::vector<KeptFile> files = {{names.file, TR_TEXT("the batch file")}};
  if (!names.error_file.empty()) {
    files.push_back({names.error_file, TR_TEXT("the error file of the batch")});
    files.push_back({names.error_file + ".tmp", TR_TEXT("the error file of the batch")});
  }
  return files;
}

// The same for a batch whose lines may be sent; else the run says why not.
BatchRun RunIfAllowed(const std::string& line, const BatchNames& names, const LineHost& host,
                      const ScratchFolder* scratch) {
  BatchRun run;
  run.not_run = host.guard.BatchFault(names.file, names.place, names.error_name, FilesOf(names));
  return run.not_run.empty() ? RunAndWalk(line, names, host, scratch) : run;
}

// The name of a file with the lines that the request names: its own, or that of a copy in the
// scratch folder where they come from a pipe. Throws Failure when they come from neither.
std::string FileOfLines(const std::string& name, const std::string& place,
                        std::optional<ScratchFolder>& scratch) {
  struct stat status;
  if (stat(name.c_str(), &status) != 0) return name;
  if (S_ISFIFO(status.st_mode)) {
    if (!scratch) scratch.emplace();
    CopyPipe(name, scratch->batch_file(), place, &interrupted);
    return scratch->batch_file();
  }
  if (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode)) {
    throw Failure(Tr("{}: is neither a regular file nor a pipe", place));
  }
  return name;
}

}  // namespace

BatchRun RunBatchLine(const std::string& line, const LineHost& host) {
  const Request request(line);
  BatchRun run;
  run.not_run = ErrorFileFault(request, host.guard);
  if (!run.not_run.empty()) return run;
  std::optional<ScratchFolder> scratch;
  // The batch may go to another folder.
  BatchNames names = {Absolute(Lower(request.file())), Shown(request.file()), {}};
  std::string sent = line;
  try {
    const std::string file = FileOfLines(names.file, names.place, scratch);
    if (file != names.file) sent = LineWith(request, file, request.error_file());
    names.file = file;
  } catch (const Failure& failure) {
    run.not_run = failure.what();
    return run;
  }
  if (!request.wants_error_file()) {
    names.error_name = Lower(request.error_file());
    if (!names.error_name.empty()) names.error_file = Absolute(names.error_name);
    run = RunIfAllowed(sent, names, host, nullptr);
    // They are in the file that the line names, if that is there.
    run.failures.clear();
    run.unknown = run.unread;
    return run;
  }
  std::string changed;
  std::string unknown;
  try {
    if (!scratch) scratch.emplace();
    changed = WithErrorFile(sent, scratch->error_file());
    if (changed.empty()) unknown = Tr("the line has no room for an error file");
  } catch (const Failure& failure) {
    unknown = failure.what();
  }
  if (!changed.empty()) {
    names.error_file = scratch->error_file();
    run = RunIfAllowed(changed, names, host, &*scratch);
    if (run.code != ERROR_FILE_OPEN_ERROR) return run;
    // Nothing of the batch has run, and the user's line did not ask for this file.
    unknown = Tr("{}: the file cannot be written", Shown(names.error_file));
    names.error_file.clear();
  }
  run = RunIfAllowed(sent, names, host, nullptr);
  if (run.code == 0 && run.not_run.empty()) run.unknown = unknown;
  return run;
}

BatchRun RunBatchFile(const std::string& name, const std::string& place, const LineHost& host) {
  const ScratchFolder scratch;
  return RunIfAllowed(BatchLine(name, scratch.error_file()),
                      {Absolute(name), place, scratch.error_file()}, host, &scratch);
}

void ReportFailures(const std::vector<FailedLine>& failures, FailureReport& report) {
  for (const FailedLine& failed : failures) {
    if (failed.code == 0) {
      report.ReportText(failed.place, Shown(failed.answer));
    } else {
      report.Report(failed);
    }
  }
}

void TellUnknownFailures(const BatchRun& run, const std::string& place, Streams& streams) {
  if (run.unknown.empty()) return;
  TellNote(streams,
           Tr("{}: which lines of the batch failed is not known for sure: {}", place, run.unknown));
}

std::string FailedLinesText(uint64_t failed, const std::optional<uint64_t>& lines) {
  return lines ? Tr("{} of {} lines failed", failed, *lines)
               : TrCount(failed, "{} line failed", "{} lines failed");
}

std::string StopText(const std::string& batch, const StopPlace& stop) {
  if (stop.refused == 0) {
    return Tr("{}: stopped by {}; behind which line is not known", batch, InterruptName());
  }
  if (stop.is_exact()) {
    return Tr("{}: stopped by {} behind line {}", batch, InterruptName(), stop.ran);
  }
  return Tr(
      "{}: stopped by {} behind line {} and ahead of line {}; which lines between them ran is "
      "not known",
      batch, InterruptName(), stop.ran, stop.refused);
}

}  // namespace lorimat::console
