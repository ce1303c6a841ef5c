#include "console/host/batch_run.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <system_error>

#include "console/host/batch_stop.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
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
  std::string file() const { return reader_->szFileIn; }
  std::string log_file() const { return reader_->szFileLog; }

 private:
  std::unique_ptr<EcrCmdCommand> reader_;
  bool is_taken_ = false;
};

// The file that the library would open now: it lower-cases the name.
std::string BatchFile(const Request& request) {
  std::string name = request.file();
  lorimatutility::toLower(name.data());
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

}  // namespace

bool IsBatchLine(const std::string& line) {
  const size_t first = line.find_first_not_of(" \t");
  return first != std::string::npos && line[first] == '@';
}

std::string WithErrorFile(const std::string& line, const std::string& error_file) {
  const Request request(line);
  if (!request.wants_error_file()) return {};
  // A separator behind the name would take its last blank off.
  if (request.file().back() == ' ') return {};
  std::string changed = BatchLine(request.file(), error_file);
  if (!request.log_file().empty()) changed += "," + QuotedOperand(request.log_file());
  return changed.size() <= kLongestLine ? changed : std::string();
}

BatchRun RunBatchLine(const std::string& line, Library& library, RegisterClient& client,
                      const MemoryWatch* memory) {
  BatchRun run;
  BatchRefusals refusals(client, memory);
  const auto send = [&](const std::string& text) {
    BatchStop stop(client, [&refusals](uint64_t lines) { refusals.Note(lines); });
    run.code = library.RunLine(text, &run.answer);
    run.lines = stop.lines();
    refusals.Note(run.lines);
    run.stopped_behind = stop.stopped_behind();
  };
  const Request request(line);
  std::optional<ScratchFolder> scratch;
  std::string changed;
  if (request.wants_error_file()) {
    try {
      scratch.emplace();
      changed = WithErrorFile(line, scratch->error_file());
      if (changed.empty()) run.unknown = Tr("the line has no room for an error file");
    } catch (const Failure& failure) {
      run.unknown = failure.what();
    }
  }
  if (changed.empty()) {
    send(line);
    return run;
  }
  // The batch may go to another folder.
  const std::string file = BatchFile(request);
  send(changed);
  if (run.code == ERROR_FILE_OPEN_ERROR) {
    // Nothing of the batch has run, and the user's line did not ask for this file.
    run.unknown = Tr("{}: the file cannot be written", Shown(scratch->error_file()));
    send(line);
  } else if (run.code == 0) {
    run.unknown = CutCause(*scratch);
    try {
      run.failures = FailedLines(ReadBatchErrors(scratch->error_file()), file,
                                 Shown(request.file()), refusals);
    } catch (const Failure& failure) {
      run.unknown = failure.what();
    }
  }
  return run;
}

std::vector<FailedLine> FailedLines(const std::vector<BatchError>& errors, const std::string& file,
                                    const std::string& place, const BatchRefusals& refusals) {
  std::map<uint64_t, std::string> texts;
  for (const BatchError& error : errors) texts[error.line];
  std::error_code unknown;
  if (!errors.empty() && std::filesystem::is_regular_file(file, unknown)) {
    LineReader reader(file);
    SourceLine line;
    while (reader.Next(&line)) {
      const auto found = texts.find(line.number);
      if (found != texts.end()) found->second = line.text;
    }
  }
  std::vector<FailedLine> failures;
  failures.reserve(errors.size());
  for (const BatchError& error : errors) {
    failures.push_back({error.line == 0 ? place : fmt::format("{}:{}", place, error.line),
                        error.code, error.text, texts[error.line],
                        refusals.Reason(error.line, error.code)});
  }
  return failures;
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

}  // namespace lorimat::console
