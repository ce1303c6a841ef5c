// What the device keeps of its documents: a list, one of them in several forms, and its copy.
#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <utility>

#include "door/http/accept.h"
#include "door/http/api_path.h"
#include "door/http/body_reader.h"
#include "door/http/document_json.h"
#include "door/http/job_request.h"
#include "door/http/receipt_post.h"
#include "door/http/target.h"
#include "door/http/trouble_problem.h"
#include "door/job/register_device.h"
#include "door/judge/code_page.h"
#include "door/log/iso_time.h"
#include "register/paper/picture.h"
#include "register/totals/journal.h"

namespace lorimat::door {
namespace {

using nlohmann::ordered_json;
using Query = std::map<std::string, std::string>;

constexpr std::string_view kJson = "application/json";
constexpr std::string_view kText = "text/plain";
constexpr std::string_view kPng = "image/png";

// A document of a device that has no journal to be read is asked for, and takes its time.
constexpr int kPaperSeconds = 5;
// A picture of as many takes 36 MB of memory while it is drawn.
constexpr size_t kMostDrawn = 2000;
constexpr int64_t kLastKept = 9999;  // of days and documents

std::optional<std::string> Given(const Query& query, const char* name) {
  const auto found = query.find(name);
  return found == query.end() ? std::nullopt : std::optional(found->second);
}

Reply BadField(const std::string& detail) { return Problem(400, "bad_field", detail); }

Reply NoDocument() { return Problem(404, "not_found", "there is no such document"); }

Reply NotKept() { return Problem(501, "not_kept", "the device keeps no documents to be read"); }

Reply Busy(const char* detail) {
  Reply reply = Problem(503, "device_busy", detail);
  reply.headers.emplace_back("Retry-After", "2");
  return reply;
}

Reply Ambiguous(int64_t closure, int64_t number) {
  return Problem(409, "ambiguous_document",
                 fmt::format("closing {} has an invoice of number {} and another document: "
                             "kind says which one",
                             closure, number));
}

Reply NotAcceptable(const std::vector<std::string_view>& types) {
  return Problem(406, "not_acceptable", fmt::format("there is {}", fmt::join(types, ", ")));
}

// False for a kind that there is not.
bool ReadKind(const Query& query, std::optional<DocumentKind>* kind) {
  const std::optional<std::string> name = Given(query, "kind");
  if (name) *kind = FindDocumentKind(*name);
  return !name || *kind;
}

Reply KindProblem() { return BadField("kind: is none of receipt, invoice, refund and void"); }

Reply PaperReply(std::string_view type, const std::vector<std::string>& lines,
                 const std::vector<std::string_view>& others) {
  Reply reply;
  if (type == kPng) {
    if (lines.size() > kMostDrawn) {
      return Problem(406, "not_acceptable",
                     fmt::format("it has {} lines, too many for a picture; there is {}",
                                 lines.size(), fmt::join(others, ", ")));
    }
    Paper paper;
    for (const std::string& line : lines) paper.Line(line);
    reply.body = RenderPng(paper);
    reply.content_type = kPng;
    return reply;
  }
  for (const std::string& line : lines) reply.body += FromDevice(line) + "\n";
  reply.content_type = "text/plain; charset=utf-8";
  return reply;
}

Reply JsonReply(const ordered_json& json) {
  Reply reply;
  reply.body = json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
  return reply;
}

// The register's file, which cannot be read for a moment.
template <typename Read>
Reply WhileReadable(Read read) {
  try {
    return read();
  } catch (const RegisterError&) {
    return Busy("the register's file cannot be read now");
  }
}

// The one that is meant; where there is none, or more than one, `*problem`.
const KeptDocument* Choose(const std::vector<KeptDocument>& found, std::optional<DocumentKind> kind,
                           std::optional<Reply>* problem) {
  const KeptDocument* chosen = nullptr;
  for (const KeptDocument& one : found) {
    if (kind && one.document.kind != *kind) continue;
    if (chosen != nullptr) {
      *problem = Ambiguous(one.document.closure, one.document.number);
      return nullptr;
    }
    chosen = &one;
  }
  if (chosen == nullptr) *problem = NoDocument();
  return chosen;
}

bool IsNumber(int64_t number) { return number >= 1 && number <= kLastKept; }

}  // namespace

Reply Api::ListDocuments(const Request&, const Path& path) {
  constexpr int64_t kMostListed = 100;
  DocumentSpan span;
  const std::optional<std::string> from = Given(path.query, "from");
  const std::optional<std::string> to = Given(path.query, "to");
  const std::optional<int64_t> begin = from ? ReadIsoTime(*from, false) : span.from;
  const std::optional<int64_t> end = to ? ReadIsoTime(*to, true) : span.to;
  for (const auto& [name, time] : {std::pair("from", begin), std::pair("to", end)}) {
    if (!time) {
      return BadField(
          fmt::format("{}: is no day or time, such as 2026-11-22 or "
                      "2026-11-22T18:03:07+01:00",
                      name));
    }
  }
  if (*begin > *end) return BadField("from is behind to");
  const std::optional<int64_t> behind = ReadCount(Given(path.query, "after").value_or("0"));
  const std::optional<int64_t> limit = ReadCount(Given(path.query, "limit").value_or("50"));
  if (!behind) return BadField("after: is not what next was");
  if (!limit || *limit < 1 || *limit > kMostListed) {
    return BadField(fmt::format("limit: is no whole number of 1 to {}", kMostListed));
  }
  if (parts_.documents == nullptr) return NotKept();
  return WhileReadable([&] {
    const auto most = static_cast<size_t>(*limit);
    // One more tells whether there is more.
    std::vector<StoredDocument> found = parts_.documents->List({*begin, *end, *behind, most + 1});
    const bool more = found.size() > most;
    if (more) found.pop_back();
    const std::string serial = parts_.log.serial();
    ordered_json json;
    json["documents"] = ordered_json::array();
    for (const StoredDocument& one : found) {
      json["documents"].push_back(DocumentJson(FactsOf(one, serial)));
    }
    json["next"] = more ? ordered_json(std::to_string(found.back().id)) : ordered_json();
    return JsonReply(json);
  });
}

Reply Api::GetDocument(const Request& request, const Path& path) {
  std::optional<DocumentKind> kind;
  if (!ReadKind(path.query, &kind)) return KindProblem();
  std::vector<std::string_view> types = {kText, kPng};
  if (parts_.documents != nullptr) types.insert(types.begin(), kJson);
  const std::string type(ChooseType(request.accept, types));
  if (type.empty()) return NotAcceptable(types);
  if (!IsNumber(path.id) || !IsNumber(path.number)) return NoDocument();
  if (parts_.documents == nullptr) return AskForDocument(type, path, kind);
  return WhileReadable([&] {
    const std::vector<KeptDocument> found =
        parts_.documents->Find(static_cast<int>(path.id), static_cast<int>(path.number));
    std::optional<Reply> problem;
    const KeptDocument* kept = Choose(found, kind, &problem);
    if (kept == nullptr) return *problem;
    if (type != kJson) return PaperReply(type, kept->entry.lines, {kJson, kText});
    const auto tables = parts_.tables ? parts_.tables() : nullptr;
    return JsonReply(KeptDocumentJson(kept->document, parts_.log.serial(), tables.get()));
  });
}

// By the journal of a device that tells no more of a document than how it was printed.
Reply Api::AskForDocument(const std::string& type, const Path& path,
                          std::optional<DocumentKind> kind) {
  struct Found {
    Told told = Told::kNoAnswer;
    std::vector<std::string> lines;
    bool is_ambiguous = false;
  };
  const auto found = std::make_shared<Found>();
  const DocumentName name{static_cast<int>(path.id), static_cast<int>(path.number),
                          kind == DocumentKind::kInvoice};
  const auto ask = [found, name, kind](FiscalDevice& device) {
    found->told = device.FindPaper(name, kind, &found->lines);
    if (kind || found->told != Told::kYes) return;
    std::vector<std::string> invoice;
    found->told = device.FindPaper({name.closure, name.number, true}, kind, &invoice);
    found->is_ambiguous = !found->lines.empty() && !invoice.empty();
    if (found->lines.empty()) found->lines = std::move(invoice);
  };
  return Ask(ask, kPaperSeconds, [this, found, type, name](bool answered) {
    const DeviceTrouble trouble = parts_.trouble();
    if (std::optional<Reply> away = TroubleProblem(trouble); away && !answered) return *away;
    if (!answered || found->told == Told::kNoAnswer) {
      return Busy("the device is at work, or does not answer");
    }
    if (found->told == Told::kNo) return NotKept();
    if (found->is_ambiguous) return Ambiguous(name.closure, name.number);
    if (found->lines.empty()) return NoDocument();
    return PaperReply(type, found->lines, {kText});
  });
}

Reply Api::PostCopy(const Request& request, const Path& path) {
  if (std::optional<Reply> problem = KeyProblem(request.key)) return *problem;
  const std::optional<int> wait = WaitOf(path.query);
  if (!wait) return WaitProblem();
  std::optional<DocumentKind> kind;
  if (!ReadKind(path.query, &kind)) return KindProblem();
  BodyReader body(request.body, true);
  if (body.problem()) return *body.problem();
  NewJob job = DeviceJob(body, *request.key, path);
  if (body.problem()) return *body.problem();
  // The same body for another document is another request.
  job.digest = fmt::format("copy {} {} {} {}", path.id, path.number,
                           kind ? DocumentKindName(*kind) : "", body.Digest());
  if (std::optional<Reply> replay = Replay(job)) return *replay;
  if (!IsOperator(job.desk, path)) {
    return Problem(422, "line_not_allowed", "a desk of an operator alone may do this");
  }
  if (!IsNumber(path.id) || !IsNumber(path.number)) return NoDocument();
  if (parts_.documents != nullptr) {
    std::optional<Reply> problem;
    Reply unreadable = WhileReadable([&] {
      const std::vector<KeptDocument> found =
          parts_.documents->Find(static_cast<int>(path.id), static_cast<int>(path.number));
      if (const KeptDocument* kept = Choose(found, kind, &problem)) kind = kept->document.kind;
      return Reply();
    });
    if (problem) return *problem;
    if (unreadable.status != 200) return unreadable;
  }
  // DGFE, by its numbers: the extract of the journal that has this document alone, on paper.
  constexpr int kAllButInvoices = kJournalSale | kJournalRefund | kJournalCancel;
  const int filter = kind ? JournalKindOf(*kind) : kAllButInvoices;
  job.lines = {fmt::format("#72 #3={}, #18={}, #14={}", path.number, path.id, filter)};
  return JudgeAndTake(std::move(job), *wait, path);
}

// A number alone is no name where an invoice has it too: nothing is to be taken back that was not
// meant.
std::optional<Reply> Api::ReferenceProblem(const ReceiptPost& post) {
  const std::optional<ReceiptReference>& reference = post.receipt().refers_to;
  if (!reference || !reference->IsOf(parts_.log.serial())) return std::nullopt;
  if (reference->kind == DocumentKind::kInvoice) {
    return Problem(400, "bad_field", "the device takes none of its own invoices back",
                   "/refers_to/kind");
  }
  if (reference->kind || parts_.documents == nullptr) return std::nullopt;
  try {
    for (const KeptDocument& one : parts_.documents->Find(reference->closure, reference->number)) {
      if (one.document.kind != DocumentKind::kInvoice) continue;
      return Problem(422, "ambiguous_document",
                     fmt::format("number {} of closing {} is an invoice's too: kind says which "
                                 "document is meant",
                                 reference->number, reference->closure),
                     "/refers_to");
    }
  } catch (const RegisterError&) {
    return Busy("the register's file cannot be read now");
  }
  return std::nullopt;
}

}  // namespace lorimat::door
