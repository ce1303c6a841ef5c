#include "console/command/check_command.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "console/check/batch_check.h"
#include "console/check/definition_check.h"
#include "console/check/definition_fault.h"
#include "console/check/finding.h"
#include "console/check/language.h"
#include "console/host/places.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/text.h"
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
    {
      const InterruptWatch watch;
      Progress progress(streams_, reader.size() >= Progress::kLongFile, reader.size());
      FileKind kind = KindAtStart(file);
      // Lines from before the kind is known that either check has something to say of.
      std::vector<SourceLine> waiting;
      SourceLine line;
      const auto start = [&] {
        if (kind == FileKind::kDefinition) definition.emplace(findings);
        if (kind == FileKind::kBatch) batch.emplace(words(), findings);
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
      const EnglishMessages english(options_.json);
      if (utf16) {
        AddUtf16(findings);
      } else if (definition) {
        definition->Finish();
      } else {
        batch->Finish();
      }
    }
    errors_ += findings.errors();
    Show(options_.json && file == "-" ? "standard input" : reader.name(), findings, definition,
         batch);
  }

  // Its lines would have a finding for each byte, and none that tells why.
  static void AddUtf16(Findings& findings) {
    Finding finding;
    finding.rule = "utf-16";
    finding.what = Tr("the file is UTF-16");
    finding.effect = Tr("the library cannot read it; save it as UTF-8 without a byte order mark");
    findings.Add(std::move(finding));
  }

  void Take(const SourceLine& line, std::optional<DefinitionCheck>& definition,
            std::optional<BatchCheck>& batch) const {
    const EnglishMessages english(options_.json);
    if (definition) {
      definition->Take(line);
    } else if (batch) {
      batch->Take(line);
    }
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
      if (finding.severity == Severity::kNote && !options_.notes) continue;
      out += FindingText(name, finding, colours);
    }
    if (findings.dropped() != 0) {
      out += Tr("{}: {} more are not shown\n", name, findings.dropped());
    }
    const std::string content =
        definition ? Tr("definition file, {}, {}, {}", CountedCommands(definition->commands()),
                        TrCount(definition->fields(), TR_TEXT("{} field"), TR_TEXT("{} fields")),
                        TrCount(definition->symbols(), TR_TEXT("{} symbol"), TR_TEXT("{} symbols")))
                   : Tr("batch file, {}", CountedCommands(batch ? batch->commands() : 0));
    out += fmt::format("{} {}: {}\n", Styled(name + ":", Style::kStrong, colours), content,
                       Verdict(findings, colours));
    streams_.Output(out);
  }

  static std::string CountedCommands(uint64_t count) {
    return TrCount(count, TR_TEXT("{} command"), TR_TEXT("{} commands"));
  }

  static std::string Verdict(const Findings& findings, bool colours) {
    const uint64_t errors = findings.errors();
    const uint64_t warnings = findings.warnings();
    if (errors == 0 && warnings == 0) return Styled(Tr("no faults"), Style::kGood, colours);
    return fmt::format("{}, {}",
                       Styled(TrCount(errors, TR_TEXT("{} error"), TR_TEXT("{} errors")),
                              Style::kError, colours && errors != 0),
                       Styled(TrCount(warnings, TR_TEXT("{} warning"), TR_TEXT("{} warnings")),
                              Style::kWarning, colours && warnings != 0));
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

}  // namespace

int CheckCommand(const CheckOptions& options, Streams& streams) {
  return Checker(options, streams).run();
}

}  // namespace lorimat::console
