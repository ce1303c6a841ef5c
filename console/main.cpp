// lorimat: the program a person runs. Each subcommand has a file of its own; here they get
// their options.

#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <string_view>

#include "console/command/backup/backup_command.h"
#include "console/command/backup/restore_command.h"
#include "console/command/check_command.h"
#include "console/command/copy_command.h"
#include "console/command/explain_command.h"
#include "console/command/fault_command.h"
#include "console/command/help.h"
#include "console/command/help_command.h"
#include "console/command/init_command.h"
#include "console/command/journal_command.h"
#include "console/command/paper_command.h"
#include "console/command/run_command.h"
#include "console/command/set_command.h"
#include "console/command/shell_command.h"
#include "console/command/status_command.h"
#include "console/command/words_command.h"
#include "console/host/broken_pipe.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/register_messages.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "console/terminal/pager.h"
#include "console/terminal/streams.h"

namespace lorimat::console {
namespace {

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
  0  every line ran
  1  at least one line failed
  2  wrong use, or the run, its paper or its register could not be done
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP; the paper is written
  141  nobody reads standard output any more
)");

void AddRun(CLI::App& app, RunOptions* options) {
  CLI::App* run = app.add_subcommand(
      "run", Tr("Run a file of command lines on a virtual register and print the paper"));
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
  AddRegisterOption(run, &options->register_file);
  CLI::Option* batch =
      run->add_flag("--batch", options->batch,
                    Tr("Run the file as one \"@\" batch; its name must not have capital letters, "
                       "which the library would lower-case"));
  run->add_flag("--stop-on-error", options->stop_on_error,
                Tr("End the run at the first failing line"))
      ->excludes(batch);
  run->add_option("--clock", options->clock, Tr("Set the register's clock"))
      ->type_name("\"YYYY-MM-DD HH:MM\"");
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
  RefuseEmptyTexts(run);
  run->footer(std::string(Translated(kRunExamples)));
}

constexpr std::string_view kExplainExamples = TR_TEXT(R"(Examples:
  lorimat explain 265
      Class, index, text and cause of a result code.
  lorimat explain 6/107 1231
      Several codes; the first as an answer shows it, class and index.
  lorimat explain "ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND"
      An answer as it was read somewhere; the quotes may be left out.
  lorimat explain --json 1643
      The same for a program.

A code of the device client bears the bit of a class, and some commands add it twice: 107 (no
hardware) reads 619 once and 1643 twice. The answer shows the bits as a sum, 6 for 2 and 4.

Exit codes:
  0  every code was explained
  1  a code is none that the library gives
  2  wrong use, or a text that is no code
)");

void AddExplain(CLI::App& app, ExplainOptions* options) {
  CLI::App* explain =
      app.add_subcommand("explain", Tr("Tell what a result code is and what causes it"));
  explain
      ->add_option("CODE", options->codes,
                   Tr("Result codes: 265, 1/9 as an answer shows it, or the text of an answer"))
      ->required();
  explain->add_flag("--json", options->json, Tr("Write JSON"));
  RefuseEmptyTexts(explain);
  explain->footer(std::string(Translated(kExplainExamples)));
}

constexpr std::string_view kWordsExamples = TR_TEXT(R"(Examples:
  lorimat words
      The commands and fields of the definition file beside the program.
  lorimat words --command VEND
      One command; the name may be shortened, or be #10.
  lorimat words --markdown > words.md
      The table for a page.

"Short" is how far a word may be cut.

Exit codes:
  0  the words were shown
  1  there is no such command
  2  wrong use, or the definition file cannot be read
)");

void AddWords(CLI::App& app, WordsOptions* options) {
  CLI::App* words =
      app.add_subcommand("words", Tr("Show the commands and fields of a definition file"));
  words
      ->add_option("--language", options->language,
                   Tr("Definition file (default: the one that a host would read)"))
      ->type_name("FILE");
  words->add_option("--command", options->command, Tr("Show this command alone"))
      ->type_name("NAME");
  CLI::Option* markdown =
      words->add_flag("--markdown", options->markdown, Tr("Write a Markdown table"));
  words->add_flag("--json", options->json, Tr("Write JSON"))->excludes(markdown);
  RefuseEmptyTexts(words);
  words->footer(std::string(Translated(kWordsExamples)));
}

constexpr std::string_view kCheckExamples = TR_TEXT(R"(Examples:
  lorimat check words.ini
      Each fault of a definition file, and what the library would do with it.
  lorimat check receipt.cmd --language words.ini
      Each line of a batch file against the words of a definition file. Nothing runs.
  lorimat check --json *.cmd
      The same for a program.

A file is a definition file when its name ends in .ini or when it begins with a section such as
[OPCOD]. Findings stand on standard output, with file, line and column:
  receipt.cmd:7:1: error: no command is called 'VNED'; did you mean VEND? (code 257)

Exit codes:
  0  no errors; there may be warnings
  1  at least one error
  2  wrong use, or a file that cannot be read
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)");

void AddCheck(CLI::App& app, CheckOptions* options) {
  CLI::App* check =
      app.add_subcommand("check", Tr("Look for faults in definition files and batch files"));
  check->add_option("FILE", options->files, Tr("Files to check; - is standard input"))->required();
  check
      ->add_option("--language", options->language,
                   Tr("Definition file with the words of batch files (default: the one that a host "
                      "would read)"))
      ->type_name("FILE");
  CLI::Option* definition = check->add_flag("--language-file", options->language_file,
                                            Tr("Take every FILE for a definition file"));
  check->add_flag("--batch-file", options->batch_file, Tr("Take every FILE for a batch file"))
      ->excludes(definition);
  check->add_flag("--notes", options->notes, Tr("Tell also of aliases, which are no fault"));
  check->add_flag("--json", options->json, Tr("Write JSON"));
  RefuseEmptyTexts(check);
  check->footer(std::string(Translated(kCheckExamples)));
}

int ParseAndRun(int argc, char** argv, Streams& streams) {
  CLI::App app(Tr("Runs, checks and explains lines of the cash register command language."),
               "lorimat");
  app.set_help_flag("-h,--help", Tr("Print this help message and exit"));
  app.set_version_flag("-V,--version", "lorimat " LORIMAT_VERSION,
                       Tr("Print the version and exit"));
  app.require_subcommand(1);
  InitOptions init;
  AddInit(app, &init);
  SetOptions set;
  AddSet(app, &set);
  RunOptions run;
  AddRun(app, &run);
  ShellOptions shell;
  AddShell(app, &shell);
  CheckOptions check;
  AddCheck(app, &check);
  ExplainOptions explain;
  AddExplain(app, &explain);
  WordsOptions words;
  AddWords(app, &words);
  StatusOptions status;
  AddStatus(app, &status);
  PaperOptions paper;
  AddPaper(app, &paper);
  JournalOptions journal;
  AddJournal(app, &journal);
  FaultOptions fault;
  AddFault(app, &fault);
  CopyOptions copy;
  AddCopy(app, &copy);
  BackupOptions backup;
  AddBackup(app, &backup);
  RestoreOptions restore;
  AddRestore(app, &restore);
  HelpOptions help;
  AddHelp(app, &help);
  AddVersion(app);
  TranslateHelp(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const std::string unknown = UnknownCommand(app);
    if (error.get_exit_code() == 0 && unknown.empty()) {
      std::ostringstream output;
      app.exit(error, output, output);
      ShowHelp(streams, output.str());
      return kExitGood;
    }
    TellError(streams, unknown.empty() ? UsageError(app, error) : unknown);
    streams.Error(Tr("Run with --help for more information.\n"));
    return kExitNotDone;
  }
  if (app.got_subcommand("init")) return InitCommand(init, streams);
  if (app.got_subcommand("set")) return SetCommand(set, streams);
  if (app.got_subcommand("shell")) return ShellCommand(shell, streams);
  if (app.got_subcommand("check")) return CheckCommand(check, streams);
  if (app.got_subcommand("explain")) return ExplainCommand(explain, streams);
  if (app.got_subcommand("words")) return WordsCommand(words, streams);
  if (app.got_subcommand("status")) return StatusCommand(status, streams);
  if (app.got_subcommand("paper")) return PaperCommand(paper, streams);
  if (app.got_subcommand("journal")) return JournalCommand(journal, streams);
  if (app.got_subcommand("fault")) return FaultCommand(fault, streams);
  if (app.got_subcommand("copy")) return CopyCommand(copy, streams);
  if (app.got_subcommand("backup")) return RunBackup(backup, streams);
  if (app.got_subcommand("restore")) return RunRestore(restore, streams);
  if (app.got_subcommand("help")) return HelpCommand(help, app, streams);
  if (app.got_subcommand("version")) return VersionCommand(streams);
  return RunCommand(run, streams);
}

// The whole program, without what has to be in the global namespace.
int RunProgram(int argc, char** argv) {
  // A limit of file sizes is an error like a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  int code = kExitNotDone;
  try {
    Streams streams;
    try {
      code = ParseAndRun(argc, argv, streams);
    } catch (const Failure& failure) {
      TellError(streams, failure.what());
    } catch (const std::bad_alloc&) {
      TellError(streams, Tr("there is not enough memory"));
    } catch (const std::exception& error) {
      TellError(streams, RegisterMessage(error.what()));
    }
  } catch (const std::exception&) {
    // Not even standard error can be reached.
  }
  if (code == kExitReaderGone) EndByBrokenPipe();
  return code;
}

}  // namespace
}  // namespace lorimat::console

int main(int argc, char** argv) { return lorimat::console::RunProgram(argc, argv); }
