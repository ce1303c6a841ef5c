#include "console/host/answer_causes.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <limits>
#include <vector>

#include "console/check/batch_check.h"
#include "console/check/code_table.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"

namespace lorimat::console {
namespace {

constexpr size_t kIndent = 2;

std::string ClassText(int code) {
  std::vector<std::string> texts;
  for (const CodeClass& one : CodeClasses()) {
    const bool has = one.bit == 0 ? code <= 0xFF : (code & one.bit) != 0;
    if (has) texts.push_back(Tr("class {}: {}", one.shown, Translated(one.what)));
  }
  return fmt::format("{}", fmt::join(texts, "; "));
}

std::string CauseText(const CodeReading& reading) {
  std::string text;
  switch (reading.kind) {
    case CodeReading::kClient:
      text = Tr("Result {} of the device, {}.", reading.chain.front(), reading.name);
      break;
    case CodeReading::kUnnamedClient:
      text = Tr("Result {} of the device.", reading.chain.front());
      break;
    case CodeReading::kUnreachable:
      text = Tr("No answer of the device.");
      break;
    default:
      break;
  }
  if (!reading.cause.empty()) {
    text += text.empty() ? "" : " ";
    text += Translated(reading.cause);
  }
  if (reading.chain.size() > 2) {
    text += " " + Tr("Passed twice: {}.", fmt::format("{}", fmt::join(reading.chain, " -> ")));
  }
  return text;
}

}  // namespace

std::vector<std::string> Causes(long code) {
  if (code <= 0 || code > std::numeric_limits<int>::max()) return {};
  const int number = static_cast<int>(code);
  std::vector<std::string> texts = {ClassText(number)};
  for (const CodeReading& reading : ReadCode(number)) {
    const std::string text = CauseText(reading);
    if (!text.empty()) texts.push_back(texts.size() == 1 ? text : Tr("Or: {}", text));
  }
  return texts;
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
