// "lorimat shell": lines typed by a person, or piped, one after the other to a virtual register.

#include <fcntl.h>
#include <fmt/format.h>
#include <langinfo.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <clocale>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "console/check/language.h"
#include "console/check/password_mask.h"
#include "console/command/record_options.h"
#include "console/command/subcommand.h"
#include "console/device/device.h"
#include "console/host/broken_pipe.h"
#include "console/host/device_options.h"
#include "console/host/installed_files.h"
#include "console/host/library.h"
#include "console/host/library_start.h"
#include "console/host/line_recording.h"
#include "console/host/open_document.h"
#include "console/host/output_guard.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
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

struct ShellOptions {
  std::string language;  // definition file; empty takes the one beside the program
  std::string library;   // empty takes the one beside the program
  DeviceOptions device;
  RecordOptions record;
  bool terse = false;  // as a pipe: failing lines without explanation and summary
  bool json = false;   // requests and answers as lines of JSON
};

constexpr const char* kPrompt = "lorimat> ";
constexpr int kSignalExit = 128;  // and the signal's number, as shells have it

// Where there is no window no line is wrapped.
size_t NoWindow() { return 0; }

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
SourceLine MakeSourceLine(const std::string& text, uint64_t number) {
  SourceLine line;
  line.number = number;
  line.text = text;
  line.length = text.size();
  const size_t nul = text.find('\0');
  line.nul_at = nul == std::string::npos ? 0 : nul + 1;
  return line;
}

// --- The pipe.

int RunPipe(ShellSession& session, Streams& streams) {
  LineReader reader("-", &interrupted);
  SourceLine line;
  uint64_t run = 0;
  session.ShowPaper();
  // What a signal leaves of a line that was being sent is not run.
  while (!session.quit() && interrupted == 0 && reader.Next(&line) && interrupted == 0) {
    run = line.number;
    session.Take(line, fmt::format("{}:{}", reader.name(), line.number));
  }
  session.SummarizeFailures();
  if (interrupted != 0) {
    Tell(streams, Tr("stopped by {} behind line {}", InterruptName(), run));
    return InterruptExit();
  }
  if (session.failures() == 0) return session.failures_known() ? kExitGood : kExitNotDone;
  std::optional<uint64_t> lines = session.file_lines();
  if (lines) *lines += run;
  Tell(streams, FailedLinesText(session.failures(), lines));
  return kExitLinesFailed;
}

// --- The terminal.

class TerminalShell {
 public:
  TerminalShell(const Language& language, ShellSession& session, ShellEditor& editor,
                ShellHistory& history, Device& device, bool colours, Streams& streams)
      : language_(language),
        session_(session),
        editor_(editor),
        history_(history),
        device_(device),
        colours_(colours),
        streams_(streams) {}

  int run() {
    Greet();
    session_.ShowPaper();
    uint64_t number = 0;
    for (;;) {
      interrupted = 0;
      const std::string status =
          Wrapped(StatusLine(device_.state(), session_.NextSaleWarning()), 0, editor_.columns());
      streams_.Output(Styled(status, Style::kFaint, colours_));
      std::string text;
      switch (editor_.Read(kPrompt, &text)) {
        case ShellEditor::Event::kLine:
          Remember(text);
          session_.Take(MakeSourceLine(text, ++number), "");
          TellOfLateInterrupt();
          break;
        case ShellEditor::Event::kInterrupt:
          streams_.Output("^C\n");
          Say(dropped_text());
          break;
        case ShellEditor::Event::kSignal:
          streams_.Output("\n");
          return kSignalExit + editor_.signal();
        case ShellEditor::Event::kEnd:
          streams_.Output("\n");
          if (MayLeave()) return kExitGood;
          break;
      }
      if (session_.quit()) {
        if (MayLeave()) return kExitGood;
        session_.Stay();
      }
    }
  }

 private:
  void Greet() {
    Say(device_.Greeting());
    Say(Tr("\"?\" lists the commands, \".help\" tells of the shell, Ctrl-D leaves it."));
    TellHistoryFailure();
  }

  void Say(const std::string& text) { streams_.Output(Wrapped(text, 0, editor_.columns())); }

  void TellHistoryFailure() {
    if (history_.failure().empty() || history_told_) return;
    history_told_ = true;
    TellNote(streams_, Tr("the lines typed are not kept: {}", history_.failure()));
  }

  void Remember(const std::string& text) {
    const bool secret = WithoutPasswords(&language_, text) != text;
    if (!secret && history_.Add(text)) editor_.Remember(text);
    TellHistoryFailure();
  }

  std::string dropped_text() const {
    const std::string open = OpenDocumentWords(device_.state());
    return open.empty() ? Tr("The line was dropped; no document is open.")
                        : Tr("The line was dropped; {}.", open);
  }

  // Ctrl-C while a line was at work.
  void TellOfLateInterrupt() {
    if (interrupted == 0) return;
    interrupted = 0;
    const std::string open = OpenDocumentWords(device_.state());
    Say(open.empty() ? Tr("Ctrl-C: no document is open.") : Tr("Ctrl-C: {}.", open));
  }

  // Asks once when a document is open.
  bool MayLeave() {
    const std::string open = OpenDocumentWords(device_.state());
    if (open.empty()) return true;
    Say(Tr("Note: {}.", open) + " " + device_.OpenDocumentFate());
    std::string answer;
    switch (editor_.Read(Tr("Leave? (y/n) "), &answer)) {
      case ShellEditor::Event::kLine: {
        const char first = answer.empty() ? ' ' : Lower(answer.front());
        if (first == 'y' || first == Tr("y").front()) return true;
        if (first != 'n') Say(Tr("That is neither y nor n; the shell goes on."));
        return false;
      }
      case ShellEditor::Event::kInterrupt:
        streams_.Output("^C\n");
        return false;
      default:
        streams_.Output("\n");
        return true;
    }
  }

  const Language& language_;
  ShellSession& session_;
  ShellEditor& editor_;
  ShellHistory& history_;
  Device& device_;
  bool colours_;
  Streams& streams_;
  bool history_told_ = false;
};

// Characters as the terminal has them; numbers and the rest stay as they are. A locale that is not
// installed, and one without characters beyond ASCII, leaves UTF-8, as terminals have it: bytes
// that are none are kept as they are.
void TakeCharactersOfTerminal() {
  const bool known = std::setlocale(LC_CTYPE, "") != nullptr;
  if (known && std::string_view(nl_langinfo(CODESET)) != "ANSI_X3.4-1968") return;
  std::setlocale(LC_CTYPE, "C.UTF-8");
}

int RunTerminal(const Language& language, Library& library, Device& device, OutputGuard& guard,
                int output, Streams& streams) {
  TakeCharactersOfTerminal();
  const bool colours = HasColours(output);
  ShellHistory history(HistoryFile());
  ShellEditor* window = nullptr;
  ShellSession session(
      language, library, device, guard,
      {.terminal = true,
       .colours = colours,
       .columns = [&window] { return window != nullptr ? window->columns() : NoWindow(); }},
      streams);
  ShellEditor editor(
      STDIN_FILENO, output, history,
      [&session](std::string_view line, size_t cursor) { return session.Complete(line, cursor); });
  window = &editor;
  const TerminalSignals signals;
  return TerminalShell(language, session, editor, history, device, colours, streams).run();
}

void AddOptions(CLI::App* shell, ShellOptions* options) {
  shell
      ->add_option("--language", options->language,
                   Tr("Definition file with the words of the language (default: the merkelin.ini "
                      "beside the program)"))
      ->type_name("FILE");
  AddDeviceOptions(shell, &options->device);
  AddClockOption(shell, &options->device);
  AddRecordOptions(shell, &options->record);
  shell
      ->add_option("--library", options->library,
                   Tr("The shared library (default: liblorimatrt.so beside the program)"))
      ->type_name("FILE")
      ->envname("LORIMAT_LIBRARY");
  CLI::Option* terse =
      shell->add_flag("--terse", options->terse,
                      Tr("As a pipe: show each failing line by place, code, answer and line alone, "
                         "without explanation and summary"));
  shell
      ->add_flag(
          "--json", options->json,
          Tr("For programs: take a request in JSON on each line of standard input, and write "
             "an answer in JSON for each"))
      ->excludes(terse);
}

// Returns one of ExitCode; on a terminal failing lines make no difference to it. Throws Failure
// when the shell cannot start or its output cannot be written.
int ShellCommand(const ShellOptions& options, Streams& streams) {
  // A reader that has gone is an error like a full disk, not the end of the register.
  IgnoreBrokenPipe();
  const bool terminal = !options.json && isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
  if (terminal) streams.WrapNotices();
  // Standard output goes to the library from here on.
  const Descriptor output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
  std::optional<InterruptWatch> watch;
  const DeviceRequest request = RequestOf(options.device);
  std::unique_ptr<Device> device;
  std::optional<LineRecording> recording;
  const std::string library_file = FindLibrary(options.library);
  const std::string words = FindDefinitionFile(options.language).path;
  RequireApartFromWork(options.record, FilesOfDevice(request), words, library_file);
  streams.StartTrace("");
  std::optional<Library> library(std::in_place, library_file, streams);
  // A library that hangs while it is loaded is ended as any program is.
  if (!terminal) watch.emplace();
  device = OpenDevice(request, streams);
  recording.emplace(options.record, *library, *device, words, streams);
  device->TellStart(streams);
  StartLibrary(options.language, false, *library, *device, streams);
  const Language language(words);
  KeptFiles files = FilesOfWork(FilesOfDevice(request), words, library_file, output.get());
  files.Add({"-", TR_TEXT("the file of lines")});
  files.Add({HistoryFile(), TR_TEXT("the file of the lines typed")});
  files.Add({options.record.file, TR_TEXT("the recording")});
  OutputGuard guard(language, std::move(files));

  int code = 0;
  std::exception_ptr stopped;
  try {
    if (terminal) {
      code = RunTerminal(language, *library, *device, guard, output.get(), streams);
    } else if (options.json) {
      code = RunJson(language, *library, *device, guard, streams);
    } else {
      ShellSession session(language, *library, *device, guard,
                           {.terse = options.terse, .columns = &NoWindow}, streams);
      code = RunPipe(session, streams);
    }
  } catch (const Failure&) {
    stopped = std::current_exception();
  }
  const std::string open = OpenDocumentWords(device->state());
  const Device::LeftNote note_of_left = device->NoteOfLeft();
  const bool stays = device->stays();
  const bool kept = device->last_failure().empty();
  library.reset();
  const bool recorded = recording->Finish();
  device.reset();
  // Who left the shell on a terminal was asked, and told that a register in memory goes with it.
  if (!terminal || stays || code != kExitGood) {
    TellOpenDocument(note_of_left, open, terminal ? Tr("the shell") : Tr("standard input"),
                     streams);
  }
  if (stopped) std::rethrow_exception(stopped);
  return kept && recorded ? code : kExitNotDone;
}

}  // namespace

const Subcommand kShellSubcommand = {
    "shell", HelpGroup::kRunLines,
    TR_TEXT("Take lines from a terminal, or a pipe, and show answers and paper"), kShellExamples,
    &Prepare<ShellOptions, AddOptions, ShellCommand>};

}  // namespace lorimat::console
