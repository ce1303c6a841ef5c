// "lorimat check": looks for faults in definition files and batch files, and runs nothing.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console/check/batch_check.h"
#include "console/check/definition_check.h"
#include "console/check/definition_fault.h"
#include "console/check/finding.h"
#include "console/check/kept_files.h"
#include "console/check/language.h"
#include "console/command/subcommand.h"
#include "console/host/installed_files.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "console/terminal/styles.h"
#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

struct CheckOptions {
  std::vector<std::string> files;  // "-" is standard input
  std::string language;            // the words of batch files; empty as a host would read them
  std::string register_file;       // that the lines are for; empty for none
  bool language_file = false;      // every file is a definition file
  bool batch_file = false;         // every file is a batch file; with neither it is found out
  bool notes = false;              // aliases are told, too
  bool json = false;
};

constexpr std::string_view kCheckExamples = TR_TEXT(R"(Examples:
  lorimat check words.ini
      Each fault of a definition file, and what the library would do with it.
  lorimat check receipt.cmd --language words.ini
      Each line of a batch file against the words of a definition file. Nothing runs.
  lorimat check receipt.cmd --register shop.register
      Besides, whether a line would write over the register that the lines are for.
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

enum class FileKind { kUnknown, kDefinition, kBatch };

FileKind KindByName(const std::string& file) {
  constexpr std::string_view kEnding = ".ini";
  const bool ends = file.size() >= kEnding.size() &&
                    EqualsIgnoringCase(file.c_str() + file.size() - kEnding.size(), ".ini");
  return ends ? FileKind::kDefinition : FileKind::kUnknown;
}

// By the first line that holds more than a comment: definition files begin with a header.
FileKind KindByLine(const SourceLine& line) {
  std::string text = line.text;
  if (line.number == 1 && BeginsWithByteOrderMark(text)) text.erase(0, kByteOrderMark.size());
  text = CleanedDefinitionLine(text);
  if (text.empty()) return FileKind::kUnknown;
  return text.front() == '[' ? FileKind::kDefinition : FileKind::kBatch;
}

bool IsOdd(const SourceLine& line) {
  return line.nul_at != 0 || line.length > kLongestLine ||
         line.text.find('\r') != std::string::npos || BeginsWithByteOrderMark(line.text);
}

class Checker {
 public:
  Checker(const CheckOptions& options, Streams& streams) : options_(options), streams_(streams) {}

  int run() {
    if (std::count(options_.files.begin(), options_.files.end(), "-") > 1) {
      throw Failure(Tr("- is given twice, and standard input can be read once"));
    }
    for (const std::string& file : options_.files) {
      try {
        CheckFile(file);
      } catch (const Failure& failure) {
        TellError(streams_, failure.what());
        not_done_ = true;
      }
      // What was not read to its end is not told of: it would look like all that there is.
      if (stopped_) return InterruptExit();
    }
    if (options_.json) streams_.Output(JsonText({{"files", files_}}));
    if (not_done_) return kExitNotDone;
    return errors_ == 0 ? kExitGood : kExitFaults;
  }

 private:
  FileKind KindAtStart(const std::string& file) const {
    if (options_.language_file) return FileKind::kDefinition;
    if (options_.batch_file) return FileKind::kBatch;
    return KindByName(file);
  }

  void CheckFile(const std::string& file) {
    LineReader reader(file, &interrupted);
    Findings findings;
    std::optional<DefinitionCheck> definition;
    std::optional<BatchCheck> batch;
    const KeptFiles kept = KeptBeside(file);
    {
      const InterruptWatch watch;
      Progress progress(streams_, reader.size() >= Progress::kLongFile, reader.size());
      FileKind kind = KindAtStart(file);
      // Lines from before the kind is known that either check has something to say of.
      std::vector<SourceLine> waiting;
      SourceLine line;
      const auto start = [&] {
        if (kind == FileKind::kDefinition) definition.emplace(findings);
        if (kind == FileKind::kBatch) batch.emplace(words(), findings, &kept);
        for (const SourceLine& one : waiting) Take(one, definition, batch);
        waiting.clear();
      };
      if (kind != FileKind::kUnknown) start();
      bool only_empty = true;
      bool utf16 = false;
      uint64_t taken = 0;
      while (reader.Next(&line) && interrupted == 0) {
        taken = line.number;
        progress.Update(reader.bytes_read());
        utf16 = only_empty && ShowsUtf16(line);
        if (utf16) break;
        only_empty = only_empty && line.length == 0;
        if (kind == FileKind::kUnknown) {
          kind = KindByLine(line);
          if (kind == FileKind::kUnknown) {
            if (IsOdd(line) && waiting.size() < Findings::kKept) waiting.push_back(line);
            continue;
          }
          start();
        }
        Take(line, definition, batch);
      }
      if (interrupted != 0) {
        progress.Clear();
        TellError(streams_,
                  Tr("{}: stopped by {} behind line {}", reader.name(), InterruptName(), taken));
        stopped_ = true;
        return;
      }
      if (kind == FileKind::kUnknown) {
        // Nothing but comments: a batch that does nothing.
        kind = FileKind::kBatch;
        start();
      }
      if (utf16) {
        // Its lines would have a finding for each byte, and none that tells why.
        findings.Add(MakeFinding(FindingCause::kUtf16));
      } else if (definition) {
        definition->Finish();
      } else {
        batch->Finish();
      }
    }
    errors_ += findings.errors();
    const std::string name_in_json = file == "-" ? "standard input" : file;
    Show(options_.json ? name_in_json : reader.name(), findings, definition, batch);
  }

  void Take(const SourceLine& line, std::optional<DefinitionCheck>& definition,
            std::optional<BatchCheck>& batch) const {
    if (definition) {
      definition->Take(line);
    } else if (batch) {
      batch->Take(line);
    }
  }

  // What the lines of the file may not write over.
  KeptFiles KeptBeside(const std::string& file) const {
    KeptFiles kept(RegisterFiles(options_.register_file));
    kept.Add({file, TR_TEXT("the file of lines")});
    kept.Add({DefinitionPath(options_.language), TR_TEXT("the definition file")});
    return kept;
  }

  // The words of batch files, read when the first one comes.
  const Language& words() {
    if (!words_) words_.emplace(DefinitionPath(options_.language));
    return *words_;
  }

  void Show(const std::string& name, const Findings& findings,
            const std::optional<DefinitionCheck>& definition,
            const std::optional<BatchCheck>& batch) {
    if (options_.json) {
      files_.push_back(AsJson(name, findings, definition));
      return;
    }
    const bool colours = streams_.output_has_colours();
    std::string out;
    for (const Finding& finding : findings.sorted()) {
      if (finding.severity() == Severity::kNote && !options_.notes) continue;
      out += FindingText(name, finding, colours);
    }
    if (findings.dropped() != 0) {
      out += Tr("{}: {} more are not shown\n", name, findings.dropped());
    }
    const std::string content =
        definition ? Tr("definition file, {}, {}, {}", CountedCommands(definition->commands()),
                        TrCount(definition->fields(), "{} field", "{} fields"),
                        TrCount(definition->symbols(), "{} symbol", "{} symbols"))
                   : Tr("batch file, {}", CountedCommands(batch ? batch->commands() : 0));
    out += fmt::format("{} {}: {}\n", Styled(name + ":", Style::kStrong, colours), content,
                       Verdict(findings, colours));
    streams_.Output(out);
  }

  static std::string CountedCommands(uint64_t count) {
    return TrCount(count, "{} command", "{} commands");
  }

  static std::string Verdict(const Findings& findings, bool colours) {
    const uint64_t errors = findings.errors();
    const uint64_t warnings = findings.warnings();
    if (errors == 0 && warnings == 0) return Styled(Tr("no faults"), Style::kGood, colours);
    return fmt::format(
        "{}, {}",
        Styled(TrCount(errors, "{} error", "{} errors"), Style::kError, colours && errors != 0),
        Styled(TrCount(warnings, "{} warning", "{} warnings"), Style::kWarning,
               colours && warnings != 0));
  }

  static Json AsJson(const std::string& name, const Findings& findings,
                     const std::optional<DefinitionCheck>& definition) {
    Json file = {{"file", name},
                 {"kind", definition ? "definition" : "batch"},
                 {"errors", findings.errors()},
                 {"warnings", findings.warnings()}};
    if (definition && definition->stop_line() != 0) file["stops_at"] = definition->stop_line();
    if (findings.dropped() != 0) file["not_shown"] = findings.dropped();
    Json list = Json::array();
    for (const Finding& finding : findings.sorted()) list.push_back(FindingJson(finding));
    file["findings"] = std::move(list);
    return file;
  }

  const CheckOptions& options_;
  Streams& streams_;
  std::optional<Language> words_;
  Json files_ = Json::array();
  uint64_t errors_ = 0;
  bool not_done_ = false;
  bool stopped_ = false;  // by a signal
};

void AddOptions(CLI::App* check, CheckOptions* options) {
  check->add_option("FILE", options->files, Tr("Files to check; - is standard input"))->required();
  check
      ->add_option("--language", options->language,
                   Tr("Definition file with the words of batch files (default: the one that a host "
                      "would read)"))
      ->type_name("FILE");
  AddRegisterOption(check, &options->register_file);
  CLI::Option* definition = check->add_flag("--language-file", options->language_file,
                                            Tr("Take every FILE for a definition file"));
  check->add_flag("--batch-file", options->batch_file, Tr("Take every FILE for a batch file"))
      ->excludes(definition);
  check->add_flag("--notes", options->notes, Tr("Tell also of aliases, which are no fault"));
  check->add_flag("--json", options->json, Tr("Write JSON"));
}

// Returns kExitGood, kExitFaults when a file has errors, or kExitNotDone when one cannot be
// read; the others are checked all the same. A signal ends it within a file, of which nothing is
// shown, and it returns interrupt_exit().
int CheckCommand(const CheckOptions& options, Streams& streams) {
  return Checker(options, streams).run();
}

}  // namespace

const Subcommand kCheckSubcommand = {"check", HelpGroup::kLookIntoLines,
                                     TR_TEXT("Look for faults in definition files and batch files"),
                                     kCheckExamples,
                                     &Prepare<CheckOptions, AddOptions, CheckCommand>};

}  // namespace lorimat::console
