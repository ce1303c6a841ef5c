#include "console/command/shell_command.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <langinfo.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <clocale>
#include <exception>
#include <optional>
#include <string_view>
#include <utility>

#include "console/check/language.h"
#include "console/check/password_mask.h"
#include "console/host/broken_pipe.h"
#include "console/host/library.h"
#include "console/host/library_start.h"
#include "console/host/open_document.h"
#include "console/host/places.h"
#include "console/host/register_client.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/shell/shell_editor.h"
#include "console/shell/shell_history.h"
#include "console/shell/shell_json.h"
#include "console/shell/shell_session.h"
#include "console/shell/shell_status.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"
#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

constexpr const char* kPrompt = "lorimat> ";
constexpr int kSignalExit = 128;  // and the signal's number, as shells have it

// Where there is no window no line is wrapped.
size_t no_window() { return 0; }

constexpr std::string_view kShellExamples = TR_TEXT(R"(Examples:
  lorimat shell
      Lines for a register in memory, which is gone with the shell.
  lorimat shell --register shop.register
      A register that keeps what it is told.
  printf 'VEND REP=1, PRE=2.50\nCHIU\n' | lorimat shell
      The same as a pipe: no prompt; the paper goes to standard output as it is printed, failing
      lines to standard error as with "lorimat run".
  lorimat shell --json --register shop.register
      For a program: requests such as {"id": 1, "line": "VEND REP=1, PRE=2.50"} on standard input,
      a line each, and an answer in a line of JSON for each on standard output.

"?" lists the commands of the language, "? VEND" tells of one, ".help" of the shell itself. TAB
completes names. The lines typed are kept in $XDG_STATE_HOME/lorimat/history or
~/.local/state/lorimat/history.

Exit codes:
  0  the shell was left; as a pipe: every line ran; with --json: the input has ended
  1  as a pipe: at least one line failed
  2  wrong use, or the shell or its output could not be done
  130  as a pipe: stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)");

// A terminal's line as the session takes it.
SourceLine source_line(const std::string& text, uint64_t number) {
  SourceLine line;
  line.number = number;
  line.text = text;
  line.length = text.size();
  const size_t nul = text.find('\0');
  line.nul_at = nul == std::string::npos ? 0 : nul + 1;
  return line;
}

// --- The pipe.

int run_pipe(ShellSession& session, Streams& streams) {
  LineReader reader("-", &interrupted);
  SourceLine line;
  uint64_t run = 0;
  session.show_paper();
  // What a signal leaves of a line that was being sent is not run.
  while (!session.quit() && interrupted == 0 && reader.next(&line) && interrupted == 0) {
    run = line.number;
    session.take(line, fmt::format("{}:{}", reader.name(), line.number));
  }
  session.summarize_failures();
  if (interrupted != 0) {
    tell(streams, tr("stopped by {} behind line {}", interrupt_name(), run));
    return interrupt_exit();
  }
  if (session.failures() == 0) return kExitGood;
  tell(streams, tr("{} of {} lines failed", session.failures(), run + session.file_lines()));
  return kExitLinesFailed;
}

// --- The terminal.

class TerminalShell {
 public:
  TerminalShell(const Language& language, ShellSession& session, ShellEditor& editor,
                ShellHistory& history, RegisterClient& client, bool colours, Streams& streams)
      : language_(language),
        session_(session),
        editor_(editor),
        history_(history),
        client_(client),
        colours_(colours),
        streams_(streams) {}

  int run() {
    greet();
    session_.show_paper();
    uint64_t number = 0;
    for (;;) {
      interrupted = 0;
      const std::string status = wrapped(
          status_line(client_.device(), session_.next_sale_warning()), 0, editor_.columns());
      streams_.output(styled(status, Style::kFaint, colours_));
      std::string text;
      switch (editor_.read(kPrompt, &text)) {
        case ShellEditor::Event::kLine:
          remember(text);
          session_.take(source_line(text, ++number), "");
          tell_of_late_interrupt();
          break;
        case ShellEditor::Event::kInterrupt:
          streams_.output("^C\n");
          say(dropped_text());
          break;
        case ShellEditor::Event::kSignal:
          streams_.output("\n");
          return kSignalExit + editor_.signal();
        case ShellEditor::Event::kEnd:
          streams_.output("\n");
          if (may_leave()) return kExitGood;
          break;
      }
      if (session_.quit()) {
        if (may_leave()) return kExitGood;
        session_.stay();
      }
    }
  }

 private:
  void greet() {
    const std::string where =
        client_.file().empty() ? tr("in memory") : tr("kept in {}", shown(client_.file()));
    say(tr("lorimat {}: a virtual register, {}.", LORIMAT_VERSION, where));
    say(tr("\"?\" lists the commands, \".help\" tells of the shell, Ctrl-D leaves it."));
    tell_history_failure();
  }

  void say(const std::string& text) { streams_.output(wrapped(text, 0, editor_.columns())); }

  void tell_history_failure() {
    if (history_.failure().empty() || history_told_) return;
    history_told_ = true;
    tell_note(streams_, tr("the lines typed are not kept: {}", history_.failure()));
  }

  void remember(const std::string& text) {
    const bool secret = without_passwords(&language_, text) != text;
    if (!secret && history_.add(text)) editor_.remember(text);
    tell_history_failure();
  }

  std::string dropped_text() const {
    const std::string open = open_document_words(client_.device());
    return open.empty() ? tr("The line was dropped; no document is open.")
                        : tr("The line was dropped; {}.", open);
  }

  // Ctrl-C while a line was at work.
  void tell_of_late_interrupt() {
    if (interrupted == 0) return;
    interrupted = 0;
    const std::string open = open_document_words(client_.device());
    say(open.empty() ? tr("Ctrl-C: no document is open.") : tr("Ctrl-C: {}.", open));
  }

  // Asks once when a document is open.
  bool may_leave() {
    const std::string open = open_document_words(client_.device());
    if (open.empty()) return true;
    say(tr("Note: {}.", open) + " " +
        open_document_fate(client_.device(), !client_.file().empty()));
    std::string answer;
    switch (editor_.read(tr("Leave? (y/n) "), &answer)) {
      case ShellEditor::Event::kLine: {
        const char first = answer.empty() ? ' ' : lower(answer.front());
        if (first == 'y' || first == tr("y").front()) return true;
        if (first != 'n') say(tr("That is neither y nor n; the shell goes on."));
        return false;
      }
      case ShellEditor::Event::kInterrupt:
        streams_.output("^C\n");
        return false;
      default:
        streams_.output("\n");
        return true;
    }
  }

  const Language& language_;
  ShellSession& session_;
  ShellEditor& editor_;
  ShellHistory& history_;
  RegisterClient& client_;
  bool colours_;
  Streams& streams_;
  bool history_told_ = false;
};

// Characters as the terminal has them; numbers and the rest stay as they are. A locale that is not
// installed, and one without characters beyond ASCII, leaves UTF-8, as terminals have it: bytes
// that are none are kept as they are.
void take_characters_of_terminal() {
  const bool known = std::setlocale(LC_CTYPE, "") != nullptr;
  if (known && std::string_view(nl_langinfo(CODESET)) != "ANSI_X3.4-1968") return;
  std::setlocale(LC_CTYPE, "C.UTF-8");
}

int run_terminal(const Language& language, Library& library, RegisterClient& client, int output,
                 Streams& streams) {
  take_characters_of_terminal();
  const bool colours = has_colours(output);
  ShellHistory history(history_file());
  ShellEditor* window = nullptr;
  ShellSession session(
      language, library, client,
      {.terminal = true,
       .colours = colours,
       .columns = [&window] { return window != nullptr ? window->columns() : no_window(); }},
      streams);
  ShellEditor editor(
      STDIN_FILENO, output, history,
      [&session](std::string_view line, size_t cursor) { return session.complete(line, cursor); });
  window = &editor;
  const TerminalSignals signals;
  return TerminalShell(language, session, editor, history, client, colours, streams).run();
}

}  // namespace

void add_shell(CLI::App& app, ShellOptions* options) {
  CLI::App* shell = app.add_subcommand(
      "shell", tr("Take lines from a terminal, or a pipe, and show answers and paper"));
  shell
      ->add_option("--language", options->language,
                   tr("Definition file with the words of the language (default: the merkelin.ini "
                      "beside the program)"))
      ->type_name("FILE");
  add_register_option(shell, &options->register_file);
  shell->add_option("--clock", options->clock, tr("Set the register's clock"))
      ->type_name("\"YYYY-MM-DD HH:MM\"");
  shell
      ->add_option("--library", options->library,
                   tr("The shared library (default: liblorimatrt.so beside the program)"))
      ->type_name("FILE")
      ->envname("LORIMAT_LIBRARY");
  CLI::Option* terse =
      shell->add_flag("--terse", options->terse,
                      tr("As a pipe: show each failing line by place, code, answer and line alone, "
                         "without explanation and summary"));
  shell
      ->add_flag(
          "--json", options->json,
          tr("For programs: take a request in JSON on each line of standard input, and write "
             "an answer in JSON for each"))
      ->excludes(terse);
  refuse_empty_texts(shell);
  shell->footer(std::string(translated(kShellExamples)));
}

int shell_command(const ShellOptions& options, Streams& streams) {
  // A reader that has gone is an error like a full disk, not the end of the register.
  ignore_broken_pipe();
  const bool terminal = !options.json && isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
  if (terminal) streams.wrap_notices();
  // Standard output goes to the library from here on.
  const Descriptor output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
  std::optional<InterruptWatch> watch;
  if (!terminal) watch.emplace();
  std::optional<RegisterClient> client;
  const std::string library_file = find_library(options.library);
  streams.start_trace("");
  std::optional<Library> library(std::in_place, library_file, streams);
  client.emplace(options.clock, options.register_file, streams);
  start_library(options.language, false, *library, *client, streams);
  const Language language(find_definition_file(options.language).path);

  int code = 0;
  std::exception_ptr stopped;
  try {
    if (terminal) {
      code = run_terminal(language, *library, *client, output.get(), streams);
    } else if (options.json) {
      code = run_json(language, *library, *client, streams);
    } else {
      ShellSession session(language, *library, *client,
                           {.terse = options.terse, .columns = &no_window}, streams);
      code = run_pipe(session, streams);
    }
  } catch (const Failure&) {
    stopped = std::current_exception();
  }
  const std::string open = open_document_words(client->device());
  const bool kept = client->last_failure().empty();
  library.reset();
  client.reset();
  // Who left the shell on a terminal was asked, and told that a register in memory goes with it.
  if (!terminal || !options.register_file.empty() || code != kExitGood) {
    tell_open_document(options.register_file, open,
                       terminal ? tr("the shell") : tr("standard input"), streams);
  }
  if (stopped) std::rethrow_exception(stopped);
  return kept ? code : kExitNotDone;
}

}  // namespace lorimat::console
