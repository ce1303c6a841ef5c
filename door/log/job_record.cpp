#include "door/log/job_record.h"

namespace lorimat::door {
namespace {

using nlohmann::json;

// Texts are bytes in the code page of the device, which JSON does not take: each byte goes as the
// character of its number.
std::string Widened(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
}

std::string Narrowed(const std::string& text) {
  std::string bytes;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80 || i + 1 == text.size()) {
      bytes += text[i];
    } else {
      const auto next = static_cast<unsigned char>(text[++i]);
      bytes += static_cast<char>(((lead & 0x03) << 6) | (next & 0x3F));
    }
  }
  return bytes;
}

// What is not known is null.
json AmountRecord(const std::optional<int64_t>& amount) { return amount ? json(*amount) : json(); }

// Logs from before do not have it.
std::optional<DocumentKind> ReadKind(const json& record) {
  const auto found = record.find("kind");
  if (found == record.end() || found->is_null()) return std::nullopt;
  return FindDocumentKind(found->get_ref<const std::string&>());
}

// Logs from before do not have all of them.
std::optional<int64_t> ReadAmount(const json& record, const char* name) {
  const auto found = record.find(name);
  if (found == record.end() || found->is_null()) return std::nullopt;
  return found->get<int64_t>();
}

}  // namespace

std::string LinesRecord(const std::vector<std::string>& lines) {
  json all = json::array();
  for (const std::string& line : lines) all.push_back(Widened(line));
  return all.dump();
}

std::vector<std::string> ReadLines(std::string_view text) {
  std::vector<std::string> lines;
  for (const json& line : json::parse(text)) lines.push_back(Narrowed(line.get<std::string>()));
  return lines;
}

std::string NumbersRecord(const DeviceNumbers& numbers) {
  return json{
      {"serial", Widened(numbers.serial)}, {"closure", numbers.closure},
      {"document", numbers.document},      {"invoice", numbers.invoice},
      {"day_total", numbers.day_total},    {"grand_total", AmountRecord(numbers.grand_total)}}
      .dump();
}

DeviceNumbers ReadNumbers(std::string_view text) {
  const json record = json::parse(text);
  return {Narrowed(record.at("serial").get<std::string>()),
          record.at("closure").get<int>(),
          record.at("document").get<int>(),
          record.at("invoice").get<int>(),
          record.at("day_total").get<int64_t>(),
          ReadAmount(record, "grand_total")};
}

std::string DocumentRecord(const JobDocument& document) {
  return json{{"closure", document.closure},
              {"number", document.number},
              {"serial", Widened(document.serial)},
              {"time", document.time},
              {"total", AmountRecord(document.total)},
              {"kind", document.kind ? json(DocumentKindName(*document.kind)) : json()}}
      .dump();
}

JobDocument ReadDocument(std::string_view text) {
  const json record = json::parse(text);
  return {record.at("closure").get<int>(),
          record.at("number").get<int>(),
          Narrowed(record.at("serial").get<std::string>()),
          record.at("time").get<std::string>(),
          ReadAmount(record, "total"),
          ReadKind(record)};
}

std::string AnswersRecord(const std::vector<LineAnswer>& answers) {
  json all = json::array();
  for (const LineAnswer& answer : answers) {
    all.push_back({{"line", answer.line},
                   {"code", answer.code},
                   {"text", Widened(answer.text)},
                   {"explanation", Widened(answer.explanation)}});
  }
  return all.dump();
}

std::vector<LineAnswer> ReadAnswers(std::string_view text) {
  std::vector<LineAnswer> answers;
  for (const json& row : json::parse(text)) {
    answers.push_back({row.at("line").get<int>(), row.at("code").get<long>(),
                       Narrowed(row.at("text").get<std::string>()),
                       Narrowed(row.at("explanation").get<std::string>())});
  }
  return answers;
}

}  // namespace lorimat::door
