#include "console/check/definition_fault.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <vector>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

// Keeps what a report has of the notes.
class ReportSink final : public DefinitionSink {
 public:
  void Take(const DefinitionNote& note) override {
    if (note.cause == DefinitionCause::kCommand) ++report.commands;
    report.fault = StoppingFault(note);
  }

  DefinitionReport report;
};

}  // namespace

std::string CutDefinitionLine(const SourceLine& line) {
  std::string text = line.text.substr(0, DefinitionReader::kLineLimit);
  // The library takes it for the end of the line where it stands last.
  if (text.size() == DefinitionReader::kLineLimit && text.back() == '\r') text.pop_back();
  return text;
}

std::string CleanedDefinitionLine(const std::string& text) {
  std::string source = text;
  std::vector<char> out(source.size() + 1);
  lorimatutility::TogliCommento(out.data(), source.data(), '\'');
  return out.data();
}

std::optional<Finding> StoppingFault(const DefinitionNote& note) {
  constexpr size_t kShown = 20;
  Finding finding;
  switch (note.cause) {
    case DefinitionCause::kNoEquals:
      finding = MakeFinding(FindingCause::kNoEquals);
      break;
    case DefinitionCause::kNothingInFront:
      finding = MakeFinding(FindingCause::kNothingInFront);
      break;
    case DefinitionCause::kNoRowNumber:
      finding = MakeFinding(FindingCause::kNoRowNumber,
                            {CutText(note.text, kShown), CutText(note.section_name, kShown)});
      break;
    case DefinitionCause::kRowAboveLast:
      // As it is written: the library takes the nearest number that it knows.
      finding = MakeFinding(FindingCause::kRowAboveLast,
                            {std::strtol(std::string(note.text).c_str(), nullptr, 10), note.limit});
      break;
    default:
      return std::nullopt;
  }
  finding.line = note.line;
  return finding;
}

void RequireDefinitionFile(const std::string& path) {
  const std::string name = Shown(path);
  if (path == "-") {
    throw Failure(
        Tr("definition file -: standard input is no definition file; a file of this name is ./-"));
  }
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) {
    throw Failure(Tr("definition file {}: cannot be opened: {}", name, SystemMessage(errno)));
  }
  if (!S_ISREG(status.st_mode)) {
    throw Failure(Tr("definition file {}: is no regular file", name));
  }
}

DefinitionReport InspectDefinition(const std::string& path) {
  const auto tables = std::make_unique<EcrCmdCommand>();
  ReportSink sink;
  DefinitionReader reader(*tables, &sink);
  LineReader lines(path);
  SourceLine line;
  bool reads_on = true;
  while (reads_on && lines.Next(&line)) {
    std::string text = CutDefinitionLine(line);
    reads_on = reader.TakeLine(text.data(), line.number);
  }
  return sink.report;
}

}  // namespace lorimat::console
