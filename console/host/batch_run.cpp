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
#include "console/message/text.h"
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
    is_taken_ = reader_->parse_batch_request(cleaned.data()) == kTaken;
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
std::string batch_file(const Request& request) {
  std::string name = request.file();
  lorimatutility::toLower(name.data());
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(name, error);
  return error ? name : path.string();
}

// Why the error file may be cut: the library does not tell of a full disk. Empty when nothing
// speaks for it.
std::string cut_cause(const ScratchFolder& scratch) {
  const std::string name = scratch.error_file();
  std::ifstream file(name, std::ios::binary | std::ios::ate);
  if (file && file.tellg() > 0) {
    file.seekg(-1, std::ios::end);
    if (file.get() != '\n') return tr("{}: the file is cut", shown(name));
  }
  const std::string probe = scratch.path() + "/probe";
  const Descriptor opened(open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  constexpr size_t kBlock = 4096;
  if (opened.is_open() && write_all(opened.get(), std::string(kBlock, ' '))) return {};
  return tr("{}: cannot be written: {}", shown(scratch.path()), system_message(errno));
}

}  // namespace

bool is_batch_line(const std::string& line) {
  const size_t first = line.find_first_not_of(" \t");
  return first != std::string::npos && line[first] == '@';
}

std::string with_error_file(const std::string& line, const std::string& error_file) {
  const Request request(line);
  if (!request.wants_error_file()) return {};
  // A separator behind the name would take its last blank off.
  if (request.file().back() == ' ') return {};
  std::string changed = batch_line(request.file(), error_file);
  if (!request.log_file().empty()) changed += "," + quoted_operand(request.log_file());
  return changed.size() <= kLongestLine ? changed : std::string();
}

BatchRun run_batch_line(const std::string& line, Library& library, RegisterClient& client,
                        const MemoryWatch* memory) {
  BatchRun run;
  BatchRefusals refusals(client, memory);
  const auto send = [&](const std::string& text) {
    BatchStop stop(client, [&refusals](uint64_t lines) { refusals.note(lines); });
    run.code = library.run_line(text, &run.answer);
    run.lines = stop.lines();
    refusals.note(run.lines);
    run.stopped_behind = stop.stopped_behind();
  };
  const Request request(line);
  std::optional<ScratchFolder> scratch;
  std::string changed;
  if (request.wants_error_file()) {
    try {
      scratch.emplace();
      changed = with_error_file(line, scratch->error_file());
      if (changed.empty()) run.unknown = tr("the line has no room for an error file");
    } catch (const Failure& failure) {
      run.unknown = failure.what();
    }
  }
  if (changed.empty()) {
    send(line);
    return run;
  }
  // The batch may go to another folder.
  const std::string file = batch_file(request);
  send(changed);
  if (run.code == ERROR_FILE_OPEN_ERROR) {
    // Nothing of the batch has run, and the user's line did not ask for this file.
    run.unknown = tr("{}: the file cannot be written", shown(scratch->error_file()));
    send(line);
  } else if (run.code == 0) {
    run.unknown = cut_cause(*scratch);
    try {
      run.failures = failed_lines(read_batch_errors(scratch->error_file()), file,
                                  shown(request.file()), refusals);
    } catch (const Failure& failure) {
      run.unknown = failure.what();
    }
  }
  return run;
}

std::vector<FailedLine> failed_lines(const std::vector<BatchError>& errors, const std::string& file,
                                     const std::string& place, const BatchRefusals& refusals) {
  std::map<uint64_t, std::string> texts;
  for (const BatchError& error : errors) texts[error.line];
  std::error_code unknown;
  if (!errors.empty() && std::filesystem::is_regular_file(file, unknown)) {
    LineReader reader(file);
    SourceLine line;
    while (reader.next(&line)) {
      const auto found = texts.find(line.number);
      if (found != texts.end()) found->second = line.text;
    }
  }
  std::vector<FailedLine> failures;
  for (const BatchError& error : errors) {
    failures.push_back({error.line == 0 ? place : fmt::format("{}:{}", place, error.line),
                        error.code, error.text, texts[error.line],
                        refusals.reason(error.line, error.code)});
  }
  return failures;
}

void report_failures(const std::vector<FailedLine>& failures, FailureReport& report) {
  for (const FailedLine& failed : failures) {
    if (failed.code == 0) {
      report.report_text(failed.place, shown(failed.answer));
    } else {
      report.report(failed);
    }
  }
}

void tell_unknown_failures(const BatchRun& run, const std::string& place, Streams& streams) {
  if (run.unknown.empty()) return;
  tell_note(streams, tr("{}: which lines of the batch failed is not known for sure: {}", place,
                        run.unknown));
}

}  // namespace lorimat::console
