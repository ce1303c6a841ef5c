#include "console/check/finding.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/styles.h"

namespace lorimat::console {
namespace {

constexpr size_t kWindow = 50;  // bytes shown before and behind the place

const char* SeverityName(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return TR_TEXT("error");
    case Severity::kWarning:
      return TR_TEXT("warning");
    case Severity::kNote:
      return TR_TEXT("note");
  }
  return "";
}

Style SeverityStyle(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return Style::kError;
    case Severity::kWarning:
      return Style::kWarning;
    case Severity::kNote:
      return Style::kNote;
  }
  return Style::kStrong;
}

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Columns that a shown text takes on a terminal.
size_t Width(std::string_view text) {
  return text.size() - static_cast<size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
}

}  // namespace

std::string PlaceText(const std::string& source, uint64_t column, bool colours) {
  const size_t place = std::min(static_cast<size_t>(column - 1), source.size());
  size_t begin = place > kWindow ? place - kWindow : 0;
  size_t end = std::min(source.size(), place + kWindow);
  while (begin > 0 && IsContinuation(source[begin])) --begin;
  while (end < source.size() && IsContinuation(source[end])) ++end;
  const std::string before = (begin > 0 ? "..." : "") + Shown(source.substr(begin, place - begin));
  const std::string behind =
      Shown(source.substr(place, end - place)) + (end < source.size() ? "..." : "");
  return fmt::format("    {}{}\n    {}{}\n", before, behind, std::string(Width(before), ' '),
                     Styled("^", Style::kGood, colours));
}

void Findings::Add(Finding finding) {
  if (finding.severity() == Severity::kError) ++errors_;
  if (finding.severity() == Severity::kWarning) ++warnings_;
  if (kept_.size() < kKept) {
    kept_.push_back(std::move(finding));
  } else {
    ++dropped_;
  }
}

std::vector<Finding> Findings::sorted() const {
  std::vector<Finding> sorted = kept_;
  std::stable_sort(sorted.begin(), sorted.end(), [](const Finding& a, const Finding& b) {
    if ((a.line == 0) != (b.line == 0)) return b.line == 0;
    return a.line != b.line ? a.line < b.line : a.column < b.column;
  });
  return sorted;
}

std::string FindingText(const std::string& file, const Finding& finding, bool colours) {
  std::string place = file;
  if (finding.line != 0) place += fmt::format(":{}", finding.line);
  if (finding.column != 0) place += fmt::format(":{}", finding.column);
  std::string text = place.empty() ? "" : Styled(place + ":", Style::kStrong, colours) + " ";
  const FindingSentences sentences = SentencesOf(finding);
  text += fmt::format("{} {}",
                      Styled(fmt::format("{}:", Translated(SeverityName(finding.severity()))),
                             SeverityStyle(finding.severity()), colours),
                      Shown(sentences.what));
  if (!sentences.effect.empty()) text += ": " + Shown(sentences.effect);
  if (!finding.suggestion.empty()) {
    text += Tr("; did you mean {}?", Shown(finding.suggestion));
  }
  if (!sentences.remedy.empty()) text += Tr("; write {}", Shown(sentences.remedy));
  if (finding.code != 0) text += Tr(" (code {})", finding.code);
  text += '\n';
  if (finding.column != 0 && !finding.source.empty()) {
    text += PlaceText(finding.source, finding.column, colours);
  }
  return text;
}

Json FindingJson(const Finding& finding) {
  const EnglishMessages english;
  const FindingSentences sentences = SentencesOf(finding);
  Json json = {{"severity", SeverityName(finding.severity())}, {"rule", finding.rule()}};
  if (finding.line != 0) json["line"] = finding.line;
  if (finding.column != 0) json["column"] = finding.column;
  if (finding.code != 0) json["code"] = finding.code;
  json["what"] = sentences.what;
  if (!sentences.effect.empty()) json["effect"] = sentences.effect;
  if (!finding.suggestion.empty()) json["suggestion"] = finding.suggestion;
  if (!sentences.remedy.empty()) json["remedy"] = sentences.remedy;
  return json;
}

}  // namespace lorimat::console
