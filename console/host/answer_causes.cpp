#include "console/host/answer_causes.h"

#include <fmt/format.h>

#include <vector>

#include "console/check/batch_check.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "language/code_explanation.h"

namespace lorimat::console {
namespace {

constexpr size_t kIndent = 2;

}  // namespace

std::vector<std::string> Causes(long code) {
  return code > 0 ? language::ExplainCode(code, &Translated) : std::vector<std::string>();
}

std::string CausesText(long code, size_t columns) {
  std::string out;
  for (const std::string& text : Causes(code)) out += Wrapped(text, kIndent, columns);
  return out;
}

std::optional<Finding> ParserFinding(const Language& language, const std::string& line) {
  SourceLine source;
  source.number = 1;
  source.text = line.substr(0, LineReader::kKept);
  source.length = line.size();
  if (line.find('@') == line.find_first_not_of(" \t")) return std::nullopt;
  Findings findings;
  BatchCheck(language, findings).Take(source);
  for (const Finding& finding : findings.sorted()) {
    if (finding.severity() == Severity::kError) return finding;
  }
  return std::nullopt;
}

std::optional<Finding> ParserFinding(const Language& language, const std::string& line, long code) {
  std::optional<Finding> found = ParserFinding(language, line);
  if (found && found->code != 0 && found->code != code) found.reset();
  return found;
}

std::string ParserHint(const Language& language, const std::string& line, size_t columns) {
  const std::optional<Finding> finding = ParserFinding(language, line);
  if (!finding) return {};
  std::string out;
  if (finding->column != 0 && finding->column <= line.size() + 1) {
    const std::string before = Shown(line.substr(0, finding->column - 1));
    // A place beyond the window's edge has no column to point at.
    if (kIndent + ColumnsOf(before) < columns) {
      out += fmt::format("  {}\n", CutTo(Shown(line), columns - kIndent));
      out += fmt::format("  {}^\n", std::string(ColumnsOf(before), ' '));
    }
  }
  return out + Wrapped(Shown(WhatAndBetterWord(*finding)), kIndent, columns);
}

}  // namespace lorimat::console
