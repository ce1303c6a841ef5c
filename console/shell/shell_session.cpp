#include "console/shell/shell_session.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <utility>
#include <vector>

#include "console/host/answer_causes.h"
#include "console/host/batch_run.h"
#include "console/message/failure.h"
#include "console/message/register_messages.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/shell/shell_fault.h"
#include "console/shell/shell_status.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/notices.h"
#include "console/terminal/pager.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "register/client/virtual_register.h"
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

std::vector<std::string> own_words() {
  std::vector<std::string> words;
  for (const OwnWord& own : kOwnWords) {
    if (own.word[0] != '.' || (!words.empty() && words.back() == own.word)) continue;
    words.emplace_back(own.word);
  }
  return words;
}

std::string_view without_blanks(std::string_view text) {
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

bool holds_nothing(std::string_view text) {
  const std::string_view inner = without_blanks(text);
  return inner.empty() || inner.front() == ';';
}

}  // namespace

ShellSession::ShellSession(const Language& language, Library& library, RegisterClient& client,
                           Look look, Streams& streams)
    : language_(language),
      library_(library),
      client_(client),
      look_(std::move(look)),
      streams_(streams),
      help_(language),
      completer_(language, own_words(), fault_words()),
      memory_(language, client),
      hints_(language),
      report_(streams, look_.terse ? nullptr : &language, false) {
  library_.run_line("; lorimat shell", &plain_answer_);
}

void ShellSession::take(const SourceLine& line, const std::string& place) {
  if (line.nul_at != 0) {
    const std::string why =
        tr("a NUL byte stands in column {}, and the library would read the line only up to there",
           line.nul_at) +
        encoding_hint(line.text);
    if (FailureReport* report = line_report()) {
      ++failures_;
      report->report_not_run(place, why, line.text);
    } else {
      fail(place, fmt::format("{}: {}", tr("not run"), why), line.text);
    }
    return;
  }
  const std::string_view text = without_blanks(line.text);
  const std::string own = own_line(text);
  if (!own.empty()) {
    try {
      if (own.front() == '?') {
        help(without_blanks(std::string_view(own).substr(1)));
      } else {
        own_word(own);
      }
    } catch (const Failure& failure) {
      fail(place, failure.what(), look_.terminal ? "" : line.text);
    } catch (const lorimat::RegisterError& error) {
      fail(place, register_message(error.what()), look_.terminal ? "" : line.text);
    }
  } else {
    run(line.text, place);
  }
}

void ShellSession::run(const std::string& text, const std::string& place) {
  if (is_batch_line(text)) {
    run_batch(text, place);
    return;
  }
  std::string answer;
  const uint64_t refusals = client_.refusals();
  const long code = library_.run_line(text, &answer);
  memory_.answered(text, code);
  const std::string lost = memory_.lost_sale_reason(memory_.sale_was_lost(), code);
  show_answer(text, code, answer, place,
              lost.empty() ? client_.reason_since(refusals, code) : lost);
  if (code == 0) show_hints(text, place);
  show_paper();
  tell_register_failure();
}

// On a terminal the line stands right above, but for those of a file.
void ShellSession::show_hints(const std::string& text, const std::string& place) {
  if (look_.terse) return;
  const bool stands_above = look_.terminal && !file_report_;
  const std::string hints =
      hints_.take({++lines_answered_, text, text.size(), 0}, stands_above ? "" : place,
                  look_.terminal ? look_.colours : streams_.error_has_colours());
  if (hints.empty()) return;
  if (stands_above) {
    streams_.output(laid_out(hints));
  } else if (look_.terminal) {
    streams_.output(hints);
  } else {
    streams_.error(hints);
  }
}

void ShellSession::run_batch(const std::string& text, const std::string& place) {
  const BatchRun batch = run_batch_line(text, library_, client_, &memory_);
  memory_.answered(text, batch.code);
  if (!batch.stopped_behind || batch.code != 0) {
    show_answer(text, batch.code, batch.answer, place, "");
  }
  show_paper();
  tell_register_failure();
  tell_unknown_failures(batch, place, streams_);
  show_batch_failures(batch);
  if (batch.stopped_behind) {
    tell_stop(shown(without_blanks(text), kShownLine), *batch.stopped_behind);
  }
}

void ShellSession::show_batch_failures(const BatchRun& batch) {
  if (batch.failures.empty()) return;
  file_lines_ += batch.lines;
  failures_ += batch.failures.size();
  std::optional<FailureReport> of_line;
  FailureReport* report = line_report();
  if (report == nullptr) report = &of_line.emplace(streams_, &language_, true);
  report_failures(batch.failures, *report);
  if (!of_line) return;
  of_line->summarize();
  tell(streams_, tr("{} of {} lines failed", batch.failures.size(), batch.lines));
}

std::string ShellSession::next_sale_warning() const {
  return memory_.sale_is_lost() ? tr("the next sale opens no receipt: {}", memory_.ways_out()) : "";
}

std::string ShellSession::next_sale_text() const {
  switch (memory_.next_sale()) {
    case TranslatorMemory::NextSale::kOpensReceipt:
      return tr("opens a receipt");
    case TranslatorMemory::NextSale::kUnknown:
      return tr("not known: a line ran that was too long to be followed");
    case TranslatorMemory::NextSale::kOpensNone:
      break;
  }
  return memory_.sale_is_lost() ? tr("opens no receipt, code {}; the way out is {}",
                                     MemoryWatch::kNoDocument, memory_.ways_out())
                                : tr("goes into what is open");
}

// Of a line that does not stand right above.
FailureReport* ShellSession::line_report() {
  if (!look_.terminal) return &report_;
  return file_report_ ? &*file_report_ : nullptr;
}

void ShellSession::show_answer(const std::string& text, long code, const std::string& answer,
                               const std::string& place, const std::string& reason) {
  const std::string words = shown(without_trailing_blanks(answer));
  FailureReport* report = line_report();
  if (code != 0 && report != nullptr) {
    ++failures_;
    report->report({place, code, answer, text, reason});
  } else if (code != 0) {
    // The place that is shown has the hint of the encoding.
    fail(place, tr("code {}: {}", code, words), "");
    const size_t columns = look_.columns();
    streams_.output(causes_text(code, columns) + parser_hint(language_, text, columns));
    if (!reason.empty()) streams_.output(wrapped(reason, kIndent, columns));
  } else if (!look_.terminal) {
    if (answer != plain_answer_) streams_.error(tr("{}: answer: {}", place, words) + "\n");
  } else if (file_report_) {
    if (answer != plain_answer_) streams_.output(laid_out(tr("{}: answer: {}", place, words)));
  } else if (answer != plain_answer_) {
    // "OK.(2 Lines   0 msec)" says ok itself.
    const bool begins_plain = answer.compare(0, plain_answer_.size(), plain_answer_) == 0;
    const std::string rest = begins_plain
                                 ? " " + shown(without_trailing_blanks(
                                             std::string_view(answer).substr(plain_answer_.size())))
                                 : ": " + words;
    const std::string ok = tr("ok");
    streams_.output(styled(ok, Style::kGood, look_.colours) +
                    flowed(rest, columns_of(ok), 0, look_.columns()) + "\n");
  } else if (!holds_nothing(text)) {
    streams_.output(styled(tr("ok"), Style::kGood, look_.colours) + "\n");
  }
}

// On a terminal the line stands right above.
void ShellSession::fail(const std::string& place, const std::string& what, std::string_view line) {
  ++failures_;
  std::string text = !look_.terminal ? laid_out(fmt::format("{}: {}", place, what))
                                     : styled(laid_out(what), Style::kError, look_.colours);
  if (!line.empty()) text += fmt::format("    {}\n", shown(line, kShownLine));
  if (look_.terminal) {
    streams_.output(text);
  } else {
    streams_.error(text);
  }
}

void ShellSession::tell_stop(const std::string& file, uint64_t line) {
  const std::string text =
      laid_out(tr("{}: stopped by {} behind line {}", file, interrupt_name(), line));
  if (look_.terminal) {
    // Behind the ^C that the terminal shows.
    if (file_report_ && !std::exchange(echo_ended_, true)) streams_.output("\n");
    streams_.output(text);
  } else {
    streams_.error(text);
  }
}

void ShellSession::tell_register_failure() {
  const std::string cause = client_.last_failure();
  if (cause == told_failure_) return;
  told_failure_ = cause;
  if (!cause.empty()) tell_error(streams_, tr("the register could not be kept: {}", cause));
}

// --- The paper.

// On a terminal a strip of paper with its edges, so that it cannot be taken for what was typed. A
// window that is too narrow for the edges has the line alone.
std::string ShellSession::paper_strip(const std::string& line) const {
  if (!look_.terminal) return line + "\n";
  constexpr std::string_view kLeft = "  |";
  constexpr std::string_view kRight = "|";
  constexpr size_t kRoom = lorimat::Paper::kColumns;
  const std::string text = shown(line);
  const size_t columns = look_.columns();
  if (columns < kLeft.size() + kRoom + kRight.size()) {
    return styled(broken(without_trailing_blanks(text), columns), Style::kFaint, look_.colours);
  }
  const size_t width = columns_of(text);
  const std::string blanks(width < kRoom ? kRoom - width : 0, ' ');
  return styled(fmt::format("{}{}{}{}", kLeft, text, blanks, kRight), Style::kFaint,
                look_.colours) +
         "\n";
}

void ShellSession::show_paper() {
  if (file_report_) return;
  const std::vector<std::string>& lines = client_.printed().lines();
  std::string text;
  for (size_t i = std::min(paper_shown_, lines.size()); i < lines.size(); ++i) {
    text += paper_strip(lines[i]);
  }
  paper_shown_ = lines.size();
  if (!text.empty()) streams_.output(text);
}

// A person that runs a file wants to know what came of it, and looks at the paper after that.
void ShellSession::tell_paper_of_file() {
  const size_t lines = client_.printed().lines().size();
  const size_t printed = lines - std::min(paper_shown_, lines);
  paper_shown_ = lines;
  if (printed == 0) return;
  streams_.output(
      laid_out(tr("{} printed; see \".paper {}\"",
                  tr_count(printed, TR_TEXT("{} line"), TR_TEXT("{} lines")), printed)));
}

void ShellSession::show_last_paper(const std::string& number) {
  // A register in a file has the roll of earlier times too; a long session has more than the roll.
  const std::vector<std::string>& session = client_.printed().lines();
  const std::vector<std::string>& roll = client_.device().paper_lines();
  const std::vector<std::string>& lines =
      number.empty() || session.size() > roll.size() ? session : roll;
  size_t count = lines.size();
  if (!number.empty()) {
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), count);
    if (error == std::errc::result_out_of_range) {
      count = lines.size();
    } else if (error != std::errc() || end != number.data() + number.size()) {
      throw Failure(tr(".paper takes a number of lines, not '{}'", shown(number, 60)));
    }
  }
  std::string text;
  for (size_t i = lines.size() - std::min(count, lines.size()); i < lines.size(); ++i) {
    text += paper_strip(lines[i]);
  }
  if (text.empty() && look_.terminal) text = tr("The paper is blank.") + "\n";
  streams_.output(text);
}

// --- Help, and the shell's own words.

std::string ShellSession::laid_out(const std::string& text) const {
  return wrapped(text, 0, look_.columns());
}

std::string ShellSession::own_line(std::string_view text) const {
  const char first = text.empty() ? ' ' : text.front();
  if (first == '?' || first == '.' || first == ':') return std::string(text);
  const std::string word(text.substr(0, text.find_first_of(" \t")));
  for (const PlainWord& plain : kPlainWords) {
    if (!equals_ignoring_case(word.c_str(), plain.word)) continue;
    // A longer name of a command may be cut down to the word.
    if (language_.find_command(word).failure != INSTRUCTION_NOT_FOUND) return {};
    return std::string(plain.own).append(text.substr(word.size()));
  }
  return {};
}

void ShellSession::help(std::string_view word) {
  const size_t columns = look_.columns();
  if (word.empty()) {
    show_help(streams_, help_.overview(columns));
    return;
  }
  const HelpText text = help_.command(std::string(word), columns);
  if (!text.found) throw Failure(text.text);
  show_help(streams_, text.text);
}

void ShellSession::own_word(std::string_view text) {
  const size_t end = std::min(text.find_first_of(" \t"), text.size());
  std::string word(text.substr(0, end));
  word.front() = '.';
  const std::string rest(without_blanks(text.substr(end)));
  if (word == ".paper") return show_last_paper(rest);
  if (word == ".fault") return change_faults(rest);
  if (word == ".batch") return run_file(rest);
  if (word == ".help" && !rest.empty()) return help(rest);
  if (word != ".help" && word != ".status" && word != ".quit") {
    const std::string near = nearest_word(word, own_words());
    throw Failure(near.empty()
                      ? tr("the shell has no word '{}'; .help lists them", shown(word, 60))
                      : tr("the shell has no word '{}'; did you mean {}?", shown(word, 60), near));
  }
  if (!rest.empty()) throw Failure(tr("nothing may stand behind {}", word));
  if (word == ".help") list_own_words();
  if (word == ".status") {
    streams_.output(
        status_text(client_.device(), client_.file(), next_sale_text(), look_.columns()));
  }
  if (word == ".quit") quit_ = true;
}

void ShellSession::list_own_words() {
  size_t width = 0;
  for (const OwnWord& own : kOwnWords) width = std::max(width, columns_of(own.form));
  std::string out;
  const auto add = [&](const std::string& form, const std::string& what) {
    out += entry(fmt::format("  {:<{}}  ", form, width), what, look_.columns());
  };
  add("?", tr("lists the commands of the language"));
  add("? VEND", tr("tells of one: its fields and what they take"));
  for (const OwnWord& own : kOwnWords) add(own.form, std::string(translated(own.what)));
  if (look_.terminal) {
    out += "\n";
    out +=
        laid_out(tr("TAB completes names of commands, fields, values and files; the up "
                    "key and Ctrl-R bring lines back; Ctrl-C drops the line being typed. "
                    "A line that begins with a blank is not kept in the history."));
  }
  show_help(streams_, out);
}

void ShellSession::change_faults(std::string_view words) {
  if (words.empty()) {
    streams_.output(fault_list(client_.device().faults(), look_.columns()));
  } else {
    plan_fault(client_.device(), words);
  }
}

void ShellSession::run_file(const std::string& file) {
  if (file.empty()) throw Failure(tr("which file? Its name has to stand behind .batch"));
  struct stat status;
  if (stat(file.c_str(), &status) != 0) {
    throw Failure(tr("{}: cannot be opened: {}", shown(file), system_message(errno)));
  }
  if (!S_ISREG(status.st_mode)) throw Failure(tr("{}: is no regular file", shown(file)));
  LineReader reader(file == "-" ? "./-" : file, &interrupted);
  const uint64_t before = failures_;
  const uint64_t lines_before = file_lines_;
  SourceLine line;
  if (look_.terminal) file_report_.emplace(streams_, &language_, true);
  echo_ended_ = false;
  try {
    while (interrupted == 0 && reader.next(&line) && interrupted == 0) {
      ++file_lines_;
      // The words of the shell are none of a file's.
      const std::string place = fmt::format("{}:{}", reader.name(), line.number);
      if (line.nul_at != 0) {
        take(line, place);
      } else {
        run(line.text, place);
      }
    }
  } catch (...) {
    file_report_.reset();
    throw;
  }
  if (file_report_) file_report_->summarize();
  const uint64_t failed = failures_ - before;
  if (interrupted != 0) {
    // In a pipe the whole input ends with it, and tells of it.
    tell_stop(reader.name(), line.number);
  } else if (look_.terminal && failed == 0) {
    streams_.output(styled(tr("ok"), Style::kGood, look_.colours) + ": " +
                    tr_count(line.number, TR_TEXT("{} line"), TR_TEXT("{} lines")) + "\n");
  } else if (failed != 0) {
    tell(streams_, tr("{} of {} lines failed", failed, file_lines_ - lines_before));
  }
  file_report_.reset();
  if (look_.terminal) tell_paper_of_file();
}

}  // namespace lorimat::console
