// lorimat: the program a person runs. Each subcommand has a file of its own; here they get
// their options.

#include <CLI/CLI.hpp>
#include <exception>
#include <sstream>
#include <string>

#include "check_command.h"
#include "explain_command.h"
#include "failure.h"
#include "run_command.h"
#include "streams.h"
#include "text.h"
#include "words_command.h"

namespace {

constexpr const char* kRunExamples = R"(Examples:
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

The paper goes to standard output, everything else to standard error. A failing line does not
end the run, as it does not in a host. Each is shown with its number, result code and text:
  receipt.cmd:7: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND

Exit codes:
  0  every line ran
  1  at least one line failed
  2  wrong use, or the run or its paper could not be done
  130  stopped by Ctrl-C
)";

// An unset variable of a script must not pass for an option left out.
void refuse_empty_texts(CLI::App* command) {
  const CLI::Validator given(
      [](const std::string& text) { return std::string(text.empty() ? "must not be empty" : ""); },
      "");
  for (CLI::Option* option : command->get_options()) {
    if (option->get_items_expected_max() > 0) option->check(given);
  }
}

void add_run(CLI::App& app, RunOptions* options) {
  CLI::App* run = app.add_subcommand(
      "run", "Run a file of command lines on a virtual register and print the paper");
  run->add_option("FILE", options->file, "Lines to run, one command each; - is standard input")
      ->required();
  run->add_option("--language", options->language,
                  "Definition file with the words of the language (default: the merkelin.ini "
                  "beside the program)")
      ->type_name("FILE");
  run->add_option("--paper", options->paper, "Write the paper to FILE (default: standard output)")
      ->type_name("FILE");
  run->add_option("--png", options->png, "Write a picture of the paper to FILE")
      ->type_name("FILE");
  run->add_option("--pdf", options->pdf,
                  "Write the paper to FILE as a PDF, a page for each document")
      ->type_name("FILE");
  CLI::Option* batch =
      run->add_flag("--batch", options->batch,
                    "Run the file as one \"@\" batch; its name must not have capital letters, "
                    "which the library would lower-case");
  run->add_flag("--stop-on-error", options->stop_on_error, "End the run at the first failing line")
      ->excludes(batch);
  run->add_option("--clock", options->clock, "Set the register's clock")
      ->type_name("\"YYYY-MM-DD HH:MM\"");
  run->add_option("--trace", options->trace,
                  "Write the library's own lines and the lines it was given to FILE; - is "
                  "standard error (default: they are discarded)")
      ->type_name("FILE");
  run->add_flag("-v,--verbose", options->verbose,
                "Show the files in use and the answer of every line");
  run->add_option("--library", options->library,
                  "The shared library (default: liblorimatrt.so beside the program)")
      ->type_name("FILE")
      ->envname("LORIMAT_LIBRARY");
  refuse_empty_texts(run);
  run->footer(kRunExamples);
}

constexpr const char* kExplainExamples = R"(Examples:
  lorimat explain 265
      Class, index, text and cause of a result code.
  lorimat explain 6/107 1231
      Several codes; the first as an answer shows it, class and index.
  lorimat explain --json 1643
      The same for a program.

A code of the device client bears the bit of a class, and some commands add it twice: 107 (no
hardware) reads 619 once and 1643 twice. The answer shows the bits as a sum, 6 for 2 and 4.

Exit codes:
  0  every code was explained
  1  a code is none that the library gives
  2  wrong use, or a text that is no code
)";

void add_explain(CLI::App& app, ExplainOptions* options) {
  CLI::App* explain =
      app.add_subcommand("explain", "Tell what a result code is and what causes it");
  explain->add_option("CODE", options->codes, "Result codes: 265, or 1/9 as an answer shows it")
      ->required();
  explain->add_flag("--json", options->json, "Write JSON");
  refuse_empty_texts(explain);
  explain->footer(kExplainExamples);
}

constexpr const char* kWordsExamples = R"(Examples:
  lorimat words
      The commands and fields of the definition file beside the program.
  lorimat words --language words.ini --command SELL
      One command of another file; the name may be shortened, or be #10.
  lorimat words --markdown > words.md
      The table for a page.

"Short" is how far a word may be cut.

Exit codes:
  0  the words were shown
  1  there is no such command
  2  wrong use, or the definition file cannot be read
)";

void add_words(CLI::App& app, WordsOptions* options) {
  CLI::App* words =
      app.add_subcommand("words", "Show the commands and fields of a definition file");
  words
      ->add_option("--language", options->language,
                   "Definition file (default: the one that a host would read)")
      ->type_name("FILE");
  words->add_option("--command", options->command, "Show this command alone")->type_name("NAME");
  CLI::Option* markdown =
      words->add_flag("--markdown", options->markdown, "Write a Markdown table");
  words->add_flag("--json", options->json, "Write JSON")->excludes(markdown);
  refuse_empty_texts(words);
  words->footer(kWordsExamples);
}

constexpr const char* kCheckExamples = R"(Examples:
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
)";

void add_check(CLI::App& app, CheckOptions* options) {
  CLI::App* check =
      app.add_subcommand("check", "Look for faults in definition files and batch files");
  check->add_option("FILE", options->files, "Files to check; - is standard input")->required();
  check
      ->add_option("--language", options->language,
                   "Definition file with the words of batch files (default: the one that a host "
                   "would read)")
      ->type_name("FILE");
  CLI::Option* definition = check->add_flag("--language-file", options->language_file,
                                            "Take every FILE for a definition file");
  check->add_flag("--batch-file", options->batch_file, "Take every FILE for a batch file")
      ->excludes(definition);
  check->add_flag("--notes", options->notes, "Tell also of aliases, which are no fault");
  check->add_flag("--json", options->json, "Write JSON");
  refuse_empty_texts(check);
  check->footer(kCheckExamples);
}

int parse_and_run(int argc, char** argv, Streams& streams) {
  CLI::App app("Runs, checks and explains lines of the cash register command language.", "lorimat");
  app.set_version_flag("--version", "lorimat " LORIMAT_VERSION, "Print the version and exit");
  app.require_subcommand(1);
  app.footer("\"lorimat run --help\" tells more of run, with examples; so for each subcommand.");
  RunOptions run;
  add_run(app, &run);
  CheckOptions check;
  add_check(app, &check);
  ExplainOptions explain;
  add_explain(app, &explain);
  WordsOptions words;
  add_words(app, &words);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream errors;
    const int code = app.exit(error, output, errors);
    if (code == 0) {
      streams.output(output.str());
      return kExitGood;
    }
    streams.error("lorimat: " + errors.str());
    return kExitNotDone;
  }
  if (app.got_subcommand("check")) return check_command(check, streams);
  if (app.got_subcommand("explain")) return explain_command(explain, streams);
  if (app.got_subcommand("words")) return words_command(words, streams);
  return run_command(run, streams);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Streams streams;
    try {
      return parse_and_run(argc, argv, streams);
    } catch (const std::exception& error) {
      streams.error(std::string("lorimat: ") + error.what() + "\n");
    }
  } catch (const std::exception&) {
    // Not even standard error can be reached.
  }
  return kExitNotDone;
}
