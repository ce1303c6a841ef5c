#include "console/host/failure_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "console/check/finding.h"
#include "console/check/password_mask.h"
#include "console/host/answer_causes.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/notices.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"
#include "language/code_table.h"

namespace lorimat::console {
namespace {

constexpr size_t kShownLine = 100;  // bytes of a failing line
constexpr size_t kIndent = 2;
constexpr long kNotRun = 0;  // no code of a line that failed

std::string BareLine(std::string_view text) {
  return fmt::format("    {}\n", Shown(text, kShownLine));
}

std::string Meaning(long code) {
  if (code == kNotRun) return Tr("The line was not run.");
  if (code < std::numeric_limits<int>::min() || code > std::numeric_limits<int>::max()) return {};
  const std::vector<language::CodeReading> readings = language::ReadCode(static_cast<int>(code));
  return readings.empty() ? std::string() : std::string(Translated(readings.front().cause));
}

// A row of the summary in the columns of all.
struct Row {
  std::string times;
  std::string code;
  std::string first;
  std::string meaning;
};

size_t WidthOf(const std::vector<Row>& rows, std::string Row::*field) {
  size_t width = 0;
  for (const Row& row : rows) width = std::max(width, ColumnsOf(row.*field));
  return width;
}

std::string ToTheRight(const std::string& text, size_t width) {
  return std::string(width - ColumnsOf(text), ' ') + text;
}

std::string ToTheLeft(const std::string& text, size_t width) {
  return text + std::string(width - ColumnsOf(text), ' ');
}

}  // namespace

bool FailureReport::Take(long code, const std::string& place) {
  ++count_;
  Kind& kind = kinds_[code];
  if (++kind.count == 1) {
    kind.order = count_;
    kind.first = place;
  }
  if (language_ == nullptr || kind.count <= kShown) return true;
  if (kind.count == kShown + 1) {
    if (progress_ != nullptr) progress_->Clear();
    TellNote(streams_, code == kNotRun
                           ? Tr("further lines that are not run are counted and not shown; "
                                "--terse shows all")
                           : Tr("further lines with code {} are counted and not shown; --terse "
                                "shows all",
                                code));
  }
  return false;
}

void FailureReport::Show(const std::string& place, const std::string& heading,
                         const std::string& what, std::string_view text) {
  if (progress_ != nullptr) progress_->Clear();
  const bool colours = streams_.error_has_colours();
  std::string out = Styled(place + ":", Style::kStrong, colours) + " ";
  size_t column = ColumnsOf(place) + 2;
  if (!heading.empty()) {
    out += Styled(heading + ":", Style::kError, colours) + " ";
    column += ColumnsOf(heading) + 2;
  }
  out += Flowed(what, column, 0, columns()) + "\n";
  if (!text.empty()) out += BareLine(WithoutPasswords(language_, text));
  streams_.Error(out);
}

void FailureReport::Report(const FailedLine& failed) {
  if (!Take(failed.code, failed.place)) return;
  // The line stands with the explanation, where its place is marked.
  Show(failed.place, Tr("code {}", failed.code),
       Shown(WithoutTrailingBlanks(failed.answer)) + EncodingHint(failed.text),
       language_ != nullptr ? std::string_view() : failed.text);
  if (language_ != nullptr) Explain(failed);
}

void FailureReport::ReportNotRun(const std::string& place, const std::string& why,
                                 std::string_view text) {
  if (Take(kNotRun, place)) Show(place, Tr("not run"), why, text);
}

void FailureReport::ReportText(const std::string& place, const std::string& what) {
  ++count_;
  Show(place, "", what, {});
}

void FailureReport::Explain(const FailedLine& failed) {
  const size_t width = columns();
  const std::optional<Finding> found = ParserFinding(*language_, failed.text, failed.code);
  std::string out;
  if (found && found->column != 0 && found->column <= failed.text.size() + 1) {
    out = PlaceText(WithoutPasswords(language_, failed.text), found->column,
                    streams_.error_has_colours());
  } else if (!failed.text.empty()) {
    out = BareLine(WithoutPasswords(language_, failed.text));
  }
  if (found) out += Wrapped(Shown(WhatAndBetterWord(*found)), kIndent, width);
  if (!failed.reason.empty()) out += Wrapped(failed.reason, kIndent, width);
  streams_.Error(out + CausesText(failed.code, width));
}

void FailureReport::Summarize() {
  if (language_ == nullptr || kinds_.empty()) return;
  std::vector<std::pair<long, Kind>> kinds(kinds_.begin(), kinds_.end());
  std::sort(kinds.begin(), kinds.end(), [](const auto& a, const auto& b) {
    if (a.second.count != b.second.count) return a.second.count > b.second.count;
    return a.second.order < b.second.order;
  });
  std::vector<Row> rows = {{Tr("times"), Tr("code"), Tr("first line"), Tr("what it means")}};
  for (const auto& [code, kind] : kinds) {
    rows.push_back({std::to_string(kind.count), code == kNotRun ? "-" : std::to_string(code),
                    kind.first, Meaning(code)});
  }
  const size_t times = WidthOf(rows, &Row::times);
  const size_t codes = WidthOf(rows, &Row::code);
  const size_t first = WidthOf(rows, &Row::first);
  std::string out;
  for (const Row& row : rows) {
    out += Entry(fmt::format("  {}  {}  {}  ", ToTheRight(row.times, times),
                             ToTheRight(row.code, codes), ToTheLeft(row.first, first)),
                 row.meaning, columns());
  }
  if (progress_ != nullptr) progress_->Clear();
  streams_.Error(out);
}

}  // namespace lorimat::console
