#include "door/log/job_record.h"

#include <fmt/format.h>

namespace lorimat::door {
namespace {

using nlohmann::json;

// The records are written on the way of each job, so without a tree of values in between.

// In quotes. Texts are bytes in the code page of the device, which JSON does not take: each byte
// goes as the character of its number.
std::string Quoted(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "\"";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text += '\\';
      text += c;
    } else if (byte < 0x20) {
      text += "\\u00";
      text += kDigits[byte >> 4];
      text += kDigits[byte & 0xF];
    } else if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  text += '"';
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
std::string AmountRecord(const std::optional<int64_t>& amount) {
  return amount ? std::to_string(*amount) : "null";
}

template <typename All, typename One>
std::string List(const All& all, One one) {
  std::string text = "[";
  for (const auto& value : all) {
    if (text.size() > 1) text += ',';
    text += one(value);
  }
  return text + "]";
}

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

std::string LinesRecord(const std::vector<std::string>& lines) { return List(lines, Quoted); }

std::vector<std::string> ReadLines(std::string_view text) {
  std::vector<std::string> lines;
  for (const json& line : json::parse(text)) lines.push_back(Narrowed(line.get<std::string>()));
  return lines;
}

std::string NumbersRecord(const DeviceNumbers& numbers) {
  return fmt::format(
      R"({{"closure":{},"day_total":{},"document":{},"grand_total":{},"invoice":{},"serial":{}}})",
      numbers.closure, numbers.day_total, numbers.document, AmountRecord(numbers.grand_total),
      numbers.invoice, Quoted(numbers.serial));
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
  return fmt::format(R"({{"closure":{},"kind":{},"number":{},"serial":{},"time":{},"total":{}}})",
                     document.closure,
                     document.kind ? Quoted(DocumentKindName(*document.kind)) : "null",
                     document.number, Quoted(document.serial), Quoted(document.time),
                     AmountRecord(document.total));
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
  return List(answers, [](const LineAnswer& answer) {
    return fmt::format(R"({{"code":{},"explanation":{},"line":{},"text":{}}})", answer.code,
                       Quoted(answer.explanation), answer.line, Quoted(answer.text));
  });
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
