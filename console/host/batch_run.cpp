#include "console/host/batch_run.h"

#include <fcntl.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <system_error>

#include "console/host/batch_feed.h"
#include "console/host/batch_refusals.h"
#include "console/host/batch_request.h"
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

  bool is_taken() const { return is_taken_; }
  std::string file() const { return reader_->szFileIn; }
  std::string error_file() const { return reader_->szFileErr; }
  std::string log_file() const { return reader_->szFileLog; }
  // Whether a batch would run without an error file.
  bool wants_error_file() const { return is_taken_ && !file().empty() && error_file().empty(); }
  // The file that the library would open now: it lower-cases the name.
  std::string path() const {
    const std::string name = Lowered(file());
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(name, error);
    return error ? name : path.string();
  }
  // The library refuses such a line: it would write over the lines that it reads.
  bool has_its_file_for_errors() const {
    const std::string errors = Lowered(error_file());
    return errors == Lowered(file()) || errors + ".tmp" == Lowered(file());
  }

 private:
  static std::string Lowered(std::string name) {
    lorimatutility::toLower(name.data());
    return name;
  }

  std::unique_ptr<EcrCmdCommand> reader_;
  bool is_taken_ = false;
};

// The line with other files in the place of its own; empty where the library would read it
// otherwise: a name that ends in a blank, a line of more than the characters there may be.
std::string WithFiles(const Request& request, const std::string& file,
                      const std::string& error_file) {
  std::string line = BatchLine(file, error_file, request.log_file());
  const Request read(line);
  const bool is_same = read.is_taken() && read.file() == file && read.error_file() == error_file;
  return is_same ? line : std::string();
}

// The failing lines of a batch with their texts, which are read from its file.
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

namespace {

// One "@" line at work.
class Batch {
 public:
  Batch(const std::string& line, const BatchHost& host)
      : line_(line),
        host_(host),
        request_(line),
        file_(request_.path()),
        refusals_(host.client, host.memory) {}

  BatchRun Run() {
    // The batch may go to another folder: all names are looked at before it runs.
    if (request_.is_taken() && !request_.has_its_file_for_errors()) Open();
    std::string error_file = request_.error_file();
    if (request_.wants_error_file()) {
      MakeScratch();
      if (scratch_) error_file = scratch_->error_file();
    }
    const std::string changed = Changed(error_file);
    if (changed.empty() && scratch_) run_.unknown = Tr("the line has no room for an error file");
    const bool own_errors = !changed.empty() && scratch_.has_value();
    Send(changed.empty() ? line_ : changed);
    if (own_errors && run_.code == ERROR_FILE_OPEN_ERROR) {
      // Nothing of the batch has run, and the user's line did not ask for this file.
      run_.unknown = Tr("{}: the file cannot be written", Shown(scratch_->error_file()));
      const std::string without = Changed({});
      Send(without.empty() ? line_ : without);
    } else if (own_errors && run_.code == 0) {
      ReadFailures();
    }
    if (feed_ && run_.unknown.empty()) run_.unknown = feed_->failure();
    return std::move(run_);
  }

 private:
  // What the library would not open, or what is no file of lines, it is left to say. A pipe is not
  // touched: whoever writes to it would find its reader gone.
  void Open() {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(file_, unknown)) return;
    try {
      feed_.emplace(file_, host_.client,
                    [this](uint64_t number, const std::string& line) { Begin(number, line); });
      if (!feed_->is_fed()) feed_.reset();
    } catch (const Failure&) {
    }
  }

  void MakeScratch() {
    try {
      scratch_.emplace();
    } catch (const Failure& failure) {
      run_.unknown = failure.what();
    }
  }

  // The line that is sent in the place of the user's; empty where that one has to do.
  std::string Changed(const std::string& error_file) {
    if (feed_) {
      const std::string fed = WithFiles(request_, feed_->name(), error_file);
      if (!fed.empty()) return fed;
      feed_.reset();
    }
    return error_file == request_.error_file() ? std::string()
                                               : WithFiles(request_, request_.file(), error_file);
  }

  void Begin(uint64_t number, const std::string& line) {
    if (host_.progress) host_.progress(number - 1);
    refusals_.Note(number - 1);
    if (host_.memory != nullptr) host_.memory->Begin(line);
  }

  void Send(const std::string& line) {
    run_.code = host_.library.RunLine(line, &run_.answer);
    if (feed_) {
      run_.lines = feed_->lines();
      if (run_.code == 0) run_.stopped_behind = feed_->stopped_behind();
    }
    refusals_.Note(run_.lines);
    if (host_.memory != nullptr) host_.memory->BatchEnded(feed_.has_value() || run_.code != 0);
  }

  void ReadFailures() {
    run_.unknown = CutCause(*scratch_);
    try {
      const std::vector<BatchError> errors = ReadBatchErrors(scratch_->error_file());
      run_.failures = FailedLines(
          errors, file_, host_.place.empty() ? Shown(request_.file()) : host_.place, refusals_);
      // Of a batch that was not followed, it is known how far it got at least.
      for (const BatchError& error : errors) run_.lines = std::max(run_.lines, error.line);
    } catch (const Failure& failure) {
      run_.unknown = failure.what();
    }
  }

  const std::string& line_;
  const BatchHost& host_;
  const Request request_;
  const std::string file_;
  BatchRefusals refusals_;
  std::optional<BatchFeed> feed_;
  std::optional<ScratchFolder> scratch_;
  BatchRun run_;
};

}  // namespace

BatchRun RunBatchLine(const std::string& line, const BatchHost& host) {
  return Batch(line, host).Run();
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
