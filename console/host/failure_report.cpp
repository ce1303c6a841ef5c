#include "console/host/failure_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "console/check/code_table.h"
#include "console/check/finding.h"
#include "console/check/password_mask.h"
#include "console/host/answer_causes.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/notices.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"

namespace lorimat::console {
namespace {

constexpr size_t kShownLine = 100;  // bytes of a failing line
constexpr size_t kIndent = 2;
constexpr long kNotRun = 0;  // no code of a line that failed

std::string bare_line(std::string_view text) {
  return fmt::format("    {}\n", shown(text, kShownLine));
}

std::string meaning(long code) {
  if (code == kNotRun) return tr("A NUL byte in the line: it was not run.");
  if (code < std::numeric_limits<int>::min() || code > std::numeric_limits<int>::max()) return {};
  const std::vector<CodeReading> readings = read_code(static_cast<int>(code));
  return readings.empty() ? std::string() : std::string(translated(readings.front().cause));
}

// A row of the summary in the columns of all.
struct Row {
  std::string times;
  std::string code;
  std::string first;
  std::string meaning;
};

size_t width_of(const std::vector<Row>& rows, std::string Row::*field) {
  size_t width = 0;
  for (const Row& row : rows) width = std::max(width, columns_of(row.*field));
  return width;
}

std::string to_the_right(const std::string& text, size_t width) {
  return std::string(width - columns_of(text), ' ') + text;
}

std::string to_the_left(const std::string& text, size_t width) {
  return text + std::string(width - columns_of(text), ' ');
}

}  // namespace

bool FailureReport::take(long code, const std::string& place) {
  ++count_;
  Kind& kind = kinds_[code];
  if (++kind.count == 1) {
    kind.order = count_;
    kind.first = place;
  }
  if (language_ == nullptr || kind.count <= kShown) return true;
  if (kind.count == kShown + 1) {
    if (progress_ != nullptr) progress_->clear();
    tell_note(streams_, code == kNotRun
                            ? tr("further lines that are not run are counted and not shown; "
                                 "--terse shows all")
                            : tr("further lines with code {} are counted and not shown; --terse "
                                 "shows all",
                                 code));
  }
  return false;
}

void FailureReport::show(const std::string& place, const std::string& heading,
                         const std::string& what, std::string_view text) {
  if (progress_ != nullptr) progress_->clear();
  const bool colours = streams_.error_has_colours();
  std::string out = styled(place + ":", Style::kStrong, colours) + " ";
  size_t column = columns_of(place) + 2;
  if (!heading.empty()) {
    out += styled(heading + ":", Style::kError, colours) + " ";
    column += columns_of(heading) + 2;
  }
  out += flowed(what, column, 0, columns()) + "\n";
  if (!text.empty()) out += bare_line(without_passwords(language_, text));
  streams_.error(out);
}

void FailureReport::report(const FailedLine& failed) {
  if (!take(failed.code, failed.place)) return;
  // The line stands with the explanation, where its place is marked.
  show(failed.place, tr("code {}", failed.code),
       shown(without_trailing_blanks(failed.answer)) + encoding_hint(failed.text),
       language_ != nullptr ? std::string_view() : failed.text);
  if (language_ != nullptr) explain(failed);
}

void FailureReport::report_not_run(const std::string& place, const std::string& why,
                                   std::string_view text) {
  if (take(kNotRun, place)) show(place, tr("not run"), why, text);
}

void FailureReport::report_text(const std::string& place, const std::string& what) {
  ++count_;
  show(place, "", what, {});
}

void FailureReport::explain(const FailedLine& failed) {
  const size_t width = columns();
  const std::optional<Finding> found = parser_finding(*language_, failed.text, failed.code);
  std::string out;
  if (found && found->column != 0 && found->column <= failed.text.size() + 1) {
    out = place_text(without_passwords(language_, failed.text), found->column,
                     streams_.error_has_colours());
  } else if (!failed.text.empty()) {
    out = bare_line(without_passwords(language_, failed.text));
  }
  if (found) out += wrapped(finding_words(*found), kIndent, width);
  if (!failed.reason.empty()) out += wrapped(failed.reason, kIndent, width);
  streams_.error(out + causes_text(failed.code, width));
}

void FailureReport::summarize() {
  if (language_ == nullptr || kinds_.empty()) return;
  std::vector<std::pair<long, Kind>> kinds(kinds_.begin(), kinds_.end());
  std::sort(kinds.begin(), kinds.end(), [](const auto& a, const auto& b) {
    if (a.second.count != b.second.count) return a.second.count > b.second.count;
    return a.second.order < b.second.order;
  });
  std::vector<Row> rows = {{tr("times"), tr("code"), tr("first line"), tr("what it means")}};
  for (const auto& [code, kind] : kinds) {
    rows.push_back({std::to_string(kind.count), code == kNotRun ? "-" : std::to_string(code),
                    kind.first, meaning(code)});
  }
  const size_t times = width_of(rows, &Row::times);
  const size_t codes = width_of(rows, &Row::code);
  const size_t first = width_of(rows, &Row::first);
  std::string out;
  for (const Row& row : rows) {
    out += entry(fmt::format("  {}  {}  {}  ", to_the_right(row.times, times),
                             to_the_right(row.code, codes), to_the_left(row.first, first)),
                 row.meaning, columns());
  }
  if (progress_ != nullptr) progress_->clear();
  streams_.error(out);
}

}  // namespace lorimat::console
