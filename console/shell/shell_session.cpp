#include "console/shell/shell_session.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <utility>
#include <vector>

#include "console/host/answer_causes.h"
#include "console/message/failure.h"
#include "console/message/register_failure_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/shell/shell_status.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/pager.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "register/value/register_error.h"

namespace lorimat::console {
namespace {

constexpr size_t kShownLine = 100;  // of a failing line
constexpr size_t kIndent = 2;

struct OwnWord {
  const char* word;
  const char* form;
  const char* what;
};

constexpr OwnWord kOwnWords[] = {
    {".batch", ".batch FILE", TR_TEXT("runs a file line by line; Ctrl-C ends it behind a line")},
    {".fault", ".fault", TR_TEXT("lists the faults there are, and those that wait")},
    {".fault", ".fault NAME ...",
     TR_TEXT("plans one: .fault code 123 nth 2 on PrintRecItemEx; also next, every, times N")},
    {".fault", ".fault clear", TR_TEXT("takes all faults off the plan")},
    {".help", ".help", TR_TEXT("shows this; .help VEND is ? VEND")},
    {".paper", ".paper [N]", TR_TEXT("shows the paper again, or its last N lines")},
    {".quit", ".quit", TR_TEXT("ends the shell, as Ctrl-D does")},
    {".status", ".status", TR_TEXT("shows the state of the register")},
    {"help", "help, quit, exit", TR_TEXT("the same, where no command has such a name")},
};

std::vector<std::string> OwnWords() {
  std::vector<std::string> words;
  for (const OwnWord& own : kOwnWords) {
    if (own.word[0] != '.' || (!words.empty() && words.back() == own.word)) continue;
    words.emplace_back(own.word);
  }
  return words;
}

std::string_view WithoutBlanks(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// What people try first, with the shell's own word for it.
struct PlainWord {
  const char* word;
  const char* own;
};

constexpr PlainWord kPlainWords[] = {{"help", ".help"}, {"quit", ".quit"}, {"exit", ".quit"}};

bool HoldsNothing(std::string_view text) {
  const std::string_view inner = WithoutBlanks(text);
  return inner.empty() || inner.front() == ';';
}

}  // namespace

ShellSession::ShellSession(const Language& language, Library& library, Device& device,
                           OutputGuard& guard, Look look, Streams& streams)
    : language_(language),
      library_(library),
      device_(device),
      look_(std::move(look)),
      streams_(streams),
      help_(language),
      completer_(language, OwnWords(),
                 device.faults() ? device.faults()->words() : std::vector<std::string>()),
      memory_(language, device),
      host_{library, device, memory_, guard},
      hints_(language),
      report_(streams, look_.terse ? nullptr : &language, false) {
  library_.RunLine("; lorimat shell", &plain_answer_);
}

void ShellSession::Take(const SourceLine& line, const std::string& place) {
  echo_ended_ = false;
  const std::string_view text = WithoutBlanks(line.text);
  const std::string own = line.nul_at != 0 ? std::string() : OwnLine(text);
  if (!own.empty()) {
    try {
      if (own.front() == '?') {
        Help(WithoutBlanks(std::string_view(own).substr(1)));
      } else {
        RunOwnWord(own);
      }
    } catch (const Failure& failure) {
      Fail(place, failure.what(), look_.terminal ? "" : line.text);
    } catch (const lorimat::RegisterError& error) {
      Fail(place, RegisterFailureText(error.failure()), look_.terminal ? "" : line.text);
    }
  } else {
    Take(line, place, RunLine(line, host_));
  }
}

bool ShellSession::Take(const SourceLine& line, const std::string& place,
                        const LineAnswer& answer) {
  if (file_at_work_) ++file_lines_;
  if (!answer.not_run.empty()) {
    ShowNotRun(line, place, answer.not_run);
  } else if (answer.batch) {
    ShowBatch(line.text, place, answer);
  } else {
    ShowAnswer(line.text, answer.code, answer.answer, place, answer.reason);
    if (answer.code == 0) ShowHints(line.text, place);
    ShowPaper();
    device_.TellFailure(streams_);
    device_.TellNotes(streams_);
  }
  return true;
}

void ShellSession::ShowNotRun(const SourceLine& line, const std::string& place,
                              const std::string& why) {
  if (FailureReport* report = LineReport()) {
    ++failures_;
    report->ReportNotRun(place, why, line.text);
  } else {
    Fail(place, fmt::format("{}: {}", Tr("not run"), why), line.text);
  }
}

// On a terminal the line stands right above, but for those of a file.
void ShellSession::ShowHints(const std::string& text, const std::string& place) {
  if (look_.terse) return;
  const bool stands_above = look_.terminal && !file_report_;
  const std::string hints =
      hints_.Take({++lines_answered_, text, text.size(), 0}, stands_above ? "" : place,
                  look_.terminal ? look_.colours : streams_.error_has_colours());
  if (hints.empty()) return;
  if (stands_above) {
    streams_.Output(LaidOut(hints));
  } else if (look_.terminal) {
    streams_.Output(hints);
  } else {
    streams_.Error(hints);
  }
}

void ShellSession::ShowBatch(const std::string& text, const std::string& place,
                             const LineAnswer& answer) {
  const BatchRun& batch = *answer.batch;
  if (batch.stop) EndEcho();
  if (!batch.stop || answer.code != 0) ShowAnswer(text, answer.code, answer.answer, place, "");
  ShowPaper();
  device_.TellFailure(streams_);
  device_.TellNotes(streams_);
  TellUnknownFailures(batch, place, streams_);
  failures_known_ = failures_known_ && batch.unknown.empty();
  ShowBatchFailures(batch);
  if (batch.stop) TellStop(StopText(Shown(WithoutBlanks(text), kShownLine), *batch.stop));
}

void ShellSession::ShowBatchFailures(const BatchRun& batch) {
  if (batch.failures.empty()) return;
  file_lines_ += batch.lines.value_or(0);
  if (!batch.lines) ++batches_not_counted_;
  failures_ += batch.failures.size();
  std::optional<FailureReport> of_line;
  FailureReport* report = LineReport();
  if (report == nullptr) report = &of_line.emplace(streams_, &language_, true);
  ReportFailures(batch.failures, *report);
  if (!of_line) return;
  of_line->Summarize();
  Tell(streams_, FailedLinesText(batch.failures.size(), batch.lines));
}

std::string ShellSession::NextSaleWarning() const {
  return memory_.sale_is_lost() ? Tr("the next sale opens no receipt: {}", memory_.ways_out()) : "";
}

std::string ShellSession::next_sale_text() const {
  switch (memory_.next_sale()) {
    case TranslatorMemory::NextSale::kOpensReceipt:
      return Tr("opens a receipt");
    case TranslatorMemory::NextSale::kUnknown:
      return Tr("not known: a batch ran whose lines could not be followed");
    case TranslatorMemory::NextSale::kOpensNone:
      break;
  }
  return memory_.sale_is_lost() ? Tr("opens no receipt, code {}; the way out is {}",
                                     MemoryWatch::kNoDocument, memory_.ways_out())
                                : Tr("goes into what is open");
}

// Of a line that does not stand right above.
FailureReport* ShellSession::LineReport() {
  if (!look_.terminal) return &report_;
  return file_report_ ? &*file_report_ : nullptr;
}

void ShellSession::ShowAnswer(const std::string& text, long code, const std::string& answer,
                              const std::string& place, const std::string& reason) {
  const std::string words = Shown(WithoutTrailingBlanks(answer));
  FailureReport* report = LineReport();
  if (code != 0 && report != nullptr) {
    ++failures_;
    report->Report({place, code, answer, text, reason});
  } else if (code != 0) {
    // The place that is shown has the hint of the encoding.
    Fail(place, Tr("code {}: {}", code, words), "");
    const size_t columns = look_.columns();
    streams_.Output(CausesText(code, columns) + ParserHint(language_, text, columns));
    if (!reason.empty()) streams_.Output(Wrapped(reason, kIndent, columns));
  } else if (!look_.terminal) {
    if (answer != plain_answer_) streams_.Error(Tr("{}: answer: {}", place, words) + "\n");
  } else if (file_report_) {
    if (answer != plain_answer_) streams_.Output(LaidOut(Tr("{}: answer: {}", place, words)));
  } else if (answer != plain_answer_) {
    // "OK.(2 Lines   0 msec)" says ok itself.
    const bool begins_plain = answer.compare(0, plain_answer_.size(), plain_answer_) == 0;
    const std::string rest = begins_plain
                                 ? " " + Shown(WithoutTrailingBlanks(
                                             std::string_view(answer).substr(plain_answer_.size())))
                                 : ": " + words;
    const std::string ok = Tr("ok");
    streams_.Output(Styled(ok, Style::kGood, look_.colours) +
                    Flowed(rest, ColumnsOf(ok), 0, look_.columns()) + "\n");
  } else if (!HoldsNothing(text)) {
    streams_.Output(Styled(Tr("ok"), Style::kGood, look_.colours) + "\n");
  }
}

// On a terminal the line stands right above.
void ShellSession::Fail(const std::string& place, const std::string& what, std::string_view line) {
  ++failures_;
  std::string text = !look_.terminal ? LaidOut(fmt::format("{}: {}", place, what))
                                     : Styled(LaidOut(what), Style::kError, look_.colours);
  if (!line.empty()) text += fmt::format("    {}\n", Shown(line, kShownLine));
  if (look_.terminal) {
    streams_.Output(text);
  } else {
    streams_.Error(text);
  }
}

// What is told behind a Ctrl-C begins below the ^C that the terminal shows.
void ShellSession::EndEcho() {
  if (look_.terminal && !std::exchange(echo_ended_, true)) streams_.Output("\n");
}

void ShellSession::TellStop(const std::string& text) {
  if (look_.terminal) {
    streams_.Output(LaidOut(text));
  } else {
    streams_.Error(LaidOut(text));
  }
}

// --- The paper.

// On a terminal a strip of paper with its edges, so that it cannot be taken for what was typed. A
// window that is too narrow for the edges has the line alone.
std::string ShellSession::PaperStrip(const std::string& line) const {
  if (!look_.terminal) return line + "\n";
  constexpr std::string_view kLeft = "  |";
  constexpr std::string_view kRight = "|";
  constexpr size_t kRoom = lorimat::Paper::kColumns;
  const std::string text = Shown(line);
  const size_t columns = look_.columns();
  if (columns < kLeft.size() + kRoom + kRight.size()) {
    return Styled(Broken(WithoutTrailingBlanks(text), columns), Style::kFaint, look_.colours);
  }
  const size_t width = ColumnsOf(text);
  const std::string blanks(width < kRoom ? kRoom - width : 0, ' ');
  return Styled(fmt::format("{}{}{}{}", kLeft, text, blanks, kRight), Style::kFaint,
                look_.colours) +
         "\n";
}

const std::vector<std::string>& ShellSession::Printed() const {
  static const std::vector<std::string> kNothing;
  DevicePaper* paper = device_.paper();
  return paper != nullptr ? paper->printed() : kNothing;
}

void ShellSession::ShowPaper() {
  if (file_report_) return;
  const std::vector<std::string>& lines = Printed();
  std::string text;
  for (size_t i = std::min(paper_shown_, lines.size()); i < lines.size(); ++i) {
    text += PaperStrip(lines[i]);
  }
  paper_shown_ = lines.size();
  if (text.empty()) return;
  if (look_.terminal) {
    streams_.Output(text);
  } else {
    streams_.OutputText(text);
  }
}

// A person that runs a file wants to know what came of it, and looks at the paper after that.
void ShellSession::TellPaperOfFile() {
  const size_t lines = Printed().size();
  const size_t printed = lines - std::min(paper_shown_, lines);
  paper_shown_ = lines;
  if (printed == 0) return;
  streams_.Output(LaidOut(
      Tr("{} printed; see \".paper {}\"", TrCount(printed, "{} line", "{} lines"), printed)));
}

void ShellSession::ShowLastPaper(const std::string& number) {
  // A roll may have earlier times too; a long session has more than the roll.
  const std::vector<std::string>& session = Printed();
  DevicePaper* paper = device_.paper();
  if (paper == nullptr) throw Failure(Tr("the device '{}' shows no paper", Shown(device_.name())));
  const std::vector<std::string>& roll = paper->roll();
  const std::vector<std::string>& lines =
      number.empty() || session.size() > roll.size() ? session : roll;
  size_t count = lines.size();
  if (!number.empty()) {
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), count);
    if (error == std::errc::result_out_of_range) {
      count = lines.size();
    } else if (error != std::errc() || end != number.data() + number.size()) {
      throw Failure(Tr(".paper takes a number of lines, not '{}'", Shown(number, 60)));
    }
  }
  std::string text;
  for (size_t i = lines.size() - std::min(count, lines.size()); i < lines.size(); ++i) {
    text += PaperStrip(lines[i]);
  }
  if (text.empty() && look_.terminal) text = Tr("The paper is blank.") + "\n";
  if (look_.terminal) {
    streams_.Output(text);
  } else {
    streams_.OutputText(text);
  }
}

// --- Help, and the shell's own words.

std::string ShellSession::LaidOut(const std::string& text) const {
  return Wrapped(text, 0, look_.columns());
}

std::string ShellSession::OwnLine(std::string_view text) const {
  const char first = text.empty() ? ' ' : text.front();
  if (first == '?' || first == '.' || first == ':') return std::string(text);
  const std::string word(text.substr(0, text.find_first_of(" \t")));
  for (const PlainWord& plain : kPlainWords) {
    if (!EqualsIgnoringCase(word.c_str(), plain.word)) continue;
    // A longer name of a command may be cut down to the word.
    if (language_.FindCommand(word).failure != INSTRUCTION_NOT_FOUND) return {};
    return std::string(plain.own).append(text.substr(word.size()));
  }
  return {};
}

void ShellSession::Help(std::string_view word) {
  const size_t columns = look_.columns();
  if (word.empty()) {
    ShowHelp(streams_, help_.Overview(columns));
    return;
  }
  const HelpText text = help_.Command(std::string(word), columns);
  if (!text.found) throw Failure(text.text);
  ShowHelp(streams_, text.text);
}

void ShellSession::RunOwnWord(std::string_view text) {
  const size_t end = std::min(text.find_first_of(" \t"), text.size());
  std::string word(text.substr(0, end));
  word.front() = '.';
  const std::string rest(WithoutBlanks(text.substr(end)));
  if (word == ".paper") return ShowLastPaper(rest);
  if (word == ".fault") return ChangeFaults(rest);
  if (word == ".batch") return RunFile(rest);
  if (word == ".help" && !rest.empty()) return Help(rest);
  if (word != ".help" && word != ".status" && word != ".quit") {
    const std::string near = NearestWord(word, OwnWords());
    throw Failure(near.empty()
                      ? Tr("the shell has no word '{}'; .help lists them", Shown(word, 60))
                      : Tr("the shell has no word '{}'; did you mean {}?", Shown(word, 60), near));
  }
  if (!rest.empty()) throw Failure(Tr("nothing may stand behind {}", word));
  if (word == ".help") ListOwnWords();
  if (word == ".status") {
    streams_.Output(
        StatusText(device_.state(), next_sale_text(), device_.StatusRows(), look_.columns()));
  }
  if (word == ".quit") quit_ = true;
}

void ShellSession::ListOwnWords() {
  size_t width = 0;
  for (const OwnWord& own : kOwnWords) width = std::max(width, ColumnsOf(own.form));
  std::string out;
  const auto add = [&](const std::string& form, const std::string& what) {
    out += Entry(fmt::format("  {:<{}}  ", form, width), what, look_.columns());
  };
  add("?", Tr("lists the commands of the language"));
  add("? VEND", Tr("tells of one: its fields and what they take"));
  for (const OwnWord& own : kOwnWords) add(own.form, std::string(Translated(own.what)));
  if (look_.terminal) {
    out += "\n";
    out +=
        LaidOut(Tr("TAB completes names of commands, fields, values and files; the up "
                   "key and Ctrl-R bring lines back; Ctrl-C drops the line being typed. "
                   "A line that begins with a blank is not kept in the history."));
  }
  ShowHelp(streams_, out);
}

void ShellSession::ChangeFaults(std::string_view words) {
  DeviceFaults* faults = device_.faults();
  if (faults == nullptr) {
    throw Failure(Tr("the device '{}' takes no orders for faults", Shown(device_.name())));
  }
  if (words.empty()) {
    streams_.Output(faults->List(look_.columns()));
  } else {
    try {
      faults->Plan(words);
    } catch (const Failure& failure) {
      throw Failure(Shown(failure.what()));
    }
  }
}

void ShellSession::RunFile(const std::string& file) {
  if (file.empty()) throw Failure(Tr("which file? Its name has to stand behind .batch"));
  struct stat status;
  if (stat(file.c_str(), &status) != 0) {
    throw Failure(Tr("{}: cannot be opened: {}", Shown(file), SystemMessage(errno)));
  }
  if (!S_ISREG(status.st_mode)) throw Failure(Tr("{}: is no regular file", Shown(file)));
  const std::string name = file == "-" ? "./-" : file;
  LineReader reader(name, &interrupted);
  const KeptMeanwhile kept(host_.guard.kept(), {{name, TR_TEXT("the file of lines")}});
  const uint64_t before = failures_;
  const uint64_t lines_before = file_lines_;
  const uint64_t not_counted_before = batches_not_counted_;
  if (look_.terminal) file_report_.emplace(streams_, &language_, true);
  file_at_work_ = true;
  uint64_t last = 0;
  try {
    // The words of the shell are none of a file's.
    last = RunLines(reader, host_, *this);
  } catch (...) {
    file_report_.reset();
    file_at_work_ = false;
    throw;
  }
  file_at_work_ = false;
  if (interrupted != 0) EndEcho();
  if (file_report_) file_report_->Summarize();
  const uint64_t failed = failures_ - before;
  if (interrupted != 0) {
    // In a pipe the whole input ends with it, and tells of it.
    TellStop(Tr("{}: stopped by {} behind line {}", reader.name(), InterruptName(), last));
  } else if (look_.terminal && failed == 0) {
    streams_.Output(Styled(Tr("ok"), Style::kGood, look_.colours) + ": " +
                    TrCount(last, "{} line", "{} lines") + "\n");
  } else if (failed != 0) {
    std::optional<uint64_t> lines;
    if (batches_not_counted_ == not_counted_before) lines = file_lines_ - lines_before;
    Tell(streams_, FailedLinesText(failed, lines));
  }
  file_report_.reset();
  if (look_.terminal) TellPaperOfFile();
}

}  // namespace lorimat::console
