#include "door/http/receipt_post.h"

#include <fmt/format.h>

#include <utility>

#include "door/http/body_reader.h"
#include "door/judge/code_page.h"
#include "door/receipt/decimal.h"
#include "door/receipt/receipt_lines.h"

namespace lorimat::door {
namespace {

using nlohmann::ordered_json;

// A list of what is known, or null.
template <typename Rows, typename Row>
ordered_json ListOf(const std::optional<Rows>& rows, Row row_json) {
  if (!rows) return nullptr;
  ordered_json list = ordered_json::array();
  for (const auto& row : *rows) list.push_back(row_json(row));
  return list;
}

ordered_json SumsJson(const ReceiptSums& sums) {
  ordered_json json;
  if (!sums.is_known) return nullptr;
  json["items"] = ordered_json::array();
  for (const int64_t amount : sums.items) json["items"].push_back(MoneyText(amount));
  json["subtotal"] = MoneyText(sums.subtotal);
  json["total"] = MoneyText(sums.total);
  const auto known = [&sums](int64_t amount) {
    return sums.has_paid ? ordered_json(MoneyText(amount)) : ordered_json();
  };
  json["paid"] = known(sums.paid);
  json["change"] = known(sums.change);
  json["by_vat"] = ListOf(sums.by_vat, [](const auto& row) {
    return ordered_json{{"vat", row.first},
                        {"rate", FromDevice(row.second.rate)},
                        {"amount", MoneyText(row.second.amount)}};
  });
  json["by_department"] = ListOf(sums.by_department, [](const auto& row) {
    return ordered_json{{"department", row.first}, {"amount", MoneyText(row.second)}};
  });
  json["payments"] = ListOf(sums.payments, [](const auto& payment) {
    return ordered_json{{"name", FromDevice(payment.name)}, {"amount", MoneyText(payment.amount)}};
  });
  return json;
}

}  // namespace

ReceiptPost::ReceiptPost(const std::string& text) {
  BodyReader body(text, false);
  if (!body.problem()) {
    Refuse(ReadReceipt(body.value(), &receipt_));
    has_desk_ = body.Has("desk");
    job_.desk = body.Text("desk", Api::kLongestDesk);
    job_.reference = body.Text("reference", Api::kLongestReference);
    expires_s_ = body.Number("expires_s", 1, Api::kMostExpiry, Api::kDefaultExpiry);
    // The same body to another address is another request.
    job_.digest = "receipts " + body.Digest();
  }
  if (!problem_) problem_ = body.problem();
}

void ReceiptPost::Refuse(const std::optional<ReceiptProblem>& problem) {
  if (problem && !problem_) {
    problem_ = Problem(problem->status, problem->code, problem->detail, problem->pointer);
  }
}

void ReceiptPost::Prepare(const DeviceTables* tables, LineJudge& judge) {
  if (!receipt_.items.empty()) Refuse(SumReceipt(receipt_, tables, &sums_));
  if (problem_) return;
  const std::vector<ReceiptLine> lines = LinesOf(receipt_);
  if (lines.size() > Api::kMostLines) {
    problem_ = Problem(413, "too_large",
                       fmt::format("it makes more than {} lines of the language", Api::kMostLines),
                       "/items");
    return;
  }
  for (const ReceiptLine& line : lines) {
    std::string text = LineText(line, judge.quote());
    LineJudge::Fields fields;
    for (const ReceiptField& field : line.fields) fields.emplace_back(field.number, field.value);
    // A definition file may have anything for a quote, or lack a command.
    if (!judge.ReadsAs(text, line.opcode, fields)) {
      problem_ = Problem(
          501, "no_such_line",
          fmt::format("with this definition file command {} cannot be written so that it reads "
                      "back",
                      line.opcode));
      return;
    }
    job_.lines.push_back(std::move(text));
  }
}

Reply ReceiptPost::DryRun() const {
  ordered_json json;
  json["kind"] = DocumentKindName(receipt_.kind);
  json["lines"] = ordered_json::array();
  for (const std::string& line : job_.lines) json["lines"].push_back(FromDevice(line));
  // Of what the device makes void as a whole only the device knows the sums.
  json["sums"] = receipt_.items.empty() ? ordered_json() : SumsJson(sums_);
  Reply reply;
  reply.body = json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
  return reply;
}

}  // namespace lorimat::door
