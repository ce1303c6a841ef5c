#include "console/command/job_text.h"

#include <algorithm>
#include <array>
#include <utility>

#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/remote/job_request.h"

namespace lorimat::console {
namespace {

const Json& Member(const Json& json, const char* name) {
  static const Json kNone;
  if (!json.is_object()) return kNone;
  const auto member = json.find(name);
  return member == json.end() ? kNone : *member;
}

}  // namespace

int64_t NumberOf(const Json& json, const char* name) {
  const Json& member = Member(json, name);
  return member.is_number_integer() ? member.get<int64_t>() : 0;
}

std::string JobDocumentText(const Json& job) {
  const Json& document = Member(job, "document");
  if (!document.is_object()) return {};
  return DocumentNumberText(static_cast<int>(NumberOf(document, "closure")),
                            static_cast<int>(NumberOf(document, "number")));
}

std::string FailedLinesText(const Json& job) {
  std::string text;
  for (const Json& line : Member(job, "lines")) {
    const int64_t code = NumberOf(line, "code");
    if (code == 0) continue;
    text +=
        Tr("line {}: {}: {}\n", NumberOf(line, "line"), code, Shown(TextOf(line, "explanation")));
  }
  return text;
}

std::string JobText(const Json& job) {
  const Json& document = Member(job, "document");
  std::vector<std::pair<std::string, std::string>> rows;
  const auto add = [&rows](std::string name, const std::string& value) {
    if (!value.empty()) rows.emplace_back(std::move(name), Shown(value));
  };
  add(Tr("Job"), std::to_string(NumberOf(job, "id")));
  add(Tr("State"), TextOf(job, "state"));
  add(Tr("Key"), TextOf(job, "key"));
  add(Tr("Desk"), TextOf(job, "desk"));
  add(Tr("Reference"), TextOf(job, "reference"));
  add(Tr("Document"), JobDocumentText(job));
  add(Tr("Total"), TextOf(document, "total"));
  add(Tr("Serial number"), TextOf(document, "serial"));
  std::string text = PairedRows(rows) + FailedLinesText(job);
  for (const Json& step : Member(job, "history")) {
    text += Shown(TextOf(step, "time")) + "  " + Shown(TextOf(step, "state")) + ": " +
            Shown(TextOf(step, "why")) + "\n";
  }
  return text;
}

std::string JobListText(const std::vector<Json>& jobs) {
  constexpr size_t kColumns = 6;
  std::vector<std::array<std::string, kColumns>> rows = {
      {Tr("Job"), Tr("State"), Tr("Document"), Tr("Total"), Tr("Desk"), Tr("Key")}};
  for (const Json& job : jobs) {
    rows.push_back({std::to_string(NumberOf(job, "id")), Shown(TextOf(job, "state")),
                    JobDocumentText(job), Shown(TextOf(Member(job, "document"), "total")),
                    Shown(TextOf(job, "desk")), Shown(TextOf(job, "key"))});
  }
  std::array<size_t, kColumns> widths = {};
  for (const auto& row : rows) {
    for (size_t i = 0; i < kColumns; ++i) widths[i] = std::max(widths[i], ColumnCount(row[i]));
  }
  std::string text;
  for (const auto& row : rows) {
    std::string line;
    for (size_t i = 0; i < kColumns; ++i) {
      line += row[i] + std::string(widths[i] - ColumnCount(row[i]) + 2, ' ');
    }
    text += std::string(WithoutTrailingBlanks(line)) + "\n";
  }
  return text;
}

}  // namespace lorimat::console
