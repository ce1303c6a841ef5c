// "lorimat paper": the roll of a register's file as text and as pictures.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console/command/paper_outputs.h"
#include "console/command/subcommand.h"
#include "console/command/usage_error.h"
#include "console/host/broken_pipe.h"
#include "console/host/register_following.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "register/inspect/register_file.h"
#include "register/paper/picture.h"

namespace lorimat::console {
namespace {

struct PaperOptions {
  std::string register_file;
  size_t last = 0;    // documents from the end; 0 takes all of the roll
  std::string paper;  // of the text; empty is standard output, unless pictures are asked for
  std::string png;
  std::string pdf;
  bool follow = false;
};

constexpr std::string_view kPaperExamples = TR_TEXT(R"(Examples:
  lorimat paper --register shop.register
      The roll as text.
  lorimat paper --register shop.register --last 1 --png receipt.png
      The last document as a picture.
  lorimat paper --register shop.register --paper roll.txt --pdf roll.pdf
      The roll as text in a file, and as a PDF with a page for each document.
  lorimat paper --register shop.register --last 1 --follow
      The last document, and what is printed from now on, until Ctrl-C.

The register keeps the end of its roll; "lorimat journal" has every document. With --png or --pdf
the text is written only if --paper asks for it; "-" is standard output.

Exit codes:
  0  the paper was written
  2  wrong use, or the file cannot be read or the paper not be written
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)");

// The text goes on where it ended. A roll that was torn off in between lacks lines.
int FollowPaper(const PaperOptions& options, const std::string& name, Streams& streams) {
  for (const auto& [option, given] :
       {std::pair("--paper", !options.paper.empty()), std::pair("--png", !options.png.empty()),
        std::pair("--pdf", !options.pdf.empty())}) {
    if (!given) continue;
    throw Failure(Tr("{}: --follow writes text to standard output, and no file", option));
  }
  lorimat::RegisterFile file(name);
  std::optional<size_t> end;  // of what was shown, by the count of the whole roll
  const auto next = [&]() -> Following {
    const lorimat::Paper roll = file.Roll(end ? 0 : options.last);
    const size_t first = roll.dropped();
    const size_t behind = first + roll.lines().size();
    const size_t from = std::clamp(end.value_or(first), first, behind);
    if (end && *end < first) {
      TellNote(streams, TrCount(first - *end, "{} line is missing: the register has torn it off",
                                "{} lines are missing: the register has torn them off"));
    }
    std::string text;
    for (size_t line = from; line < behind; ++line) text += roll.lines()[line - first] + "\n";
    end = behind;
    return {.text = std::move(text)};
  };
  return FollowRegister(file, name, next, streams);
}

void AddOptions(CLI::App* paper, PaperOptions* options) {
  AddRegisterOption(paper, &options->register_file);
  paper->add_option("--last", options->last, Tr("Only the last N documents"))
      ->type_name("N")
      ->check(WholeNumberIn(1, 1000000));
  AddPaperOption(paper, &options->paper, Tr("Write the text to FILE"));
  paper->add_option("--png", options->png, Tr("Write a picture of the paper to FILE"))
      ->type_name("FILE");
  paper
      ->add_option("--pdf", options->pdf,
                   Tr("Write the paper to FILE as a PDF, a page for each document"))
      ->type_name("FILE");
  paper->add_flag("--follow", options->follow,
                  Tr("Go on with what comes, until Ctrl-C or the file is gone"));
}

// Returns one of ExitCode. Throws Failure or RegisterError.
int PaperCommand(const PaperOptions& options, Streams& streams) {
  const std::string& file = RequireRegister(options.register_file);
  if (options.follow) return FollowPaper(options, file, streams);
  const lorimat::Paper roll = lorimat::RegisterFile(file).Roll(options.last);
  std::vector<PaperOutput> outputs;
  if (!options.paper.empty() || (options.png.empty() && options.pdf.empty())) {
    outputs.push_back(
        {{options.paper.empty() ? "-" : options.paper, "--paper", Tr("the paper's text")},
         [&roll](const auto&) { return roll.text(); },
         false});
  }
  if (!options.png.empty()) {
    outputs.push_back({{options.png, "--png", Tr("the PNG")}, [&roll](const auto& progress) {
                         return lorimat::RenderPng(roll, progress);
                       }});
  }
  if (!options.pdf.empty()) {
    outputs.push_back({{options.pdf, "--pdf", Tr("the PDF")}, [&roll](const auto& progress) {
                         return lorimat::RenderPdf(roll, progress);
                       }});
  }
  RequireApart(NamesOf(outputs), RegisterFiles(file));
  const bool caller_wants_error = IgnoreBrokenPipe();
  const PaperOutputs::Outcome outcome = PaperOutputs(std::move(outputs), streams).write();
  if (!outcome.reader_gone) {
    if (outcome.failed) return kExitNotDone;
    return outcome.stopped ? InterruptExit() : kExitGood;
  }
  if (!outcome.failed && !caller_wants_error) return kExitReaderGone;
  TellError(streams, Tr("cannot write to standard output: {}", SystemMessage(EPIPE)));
  return kExitNotDone;
}

}  // namespace

const Subcommand kPaperSubcommand = {"paper", HelpGroup::kLookAtRegister,
                                     TR_TEXT("Write the roll of a register's file"), kPaperExamples,
                                     &Prepare<PaperOptions, AddOptions, PaperCommand>};

}  // namespace lorimat::console
