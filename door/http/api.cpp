#include "door/http/api.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "door/http/api_path.h"
#include "door/http/api_route.h"
#include "door/http/body_reader.h"
#include "door/http/fault_problem.h"
#include "door/http/job_request.h"
#include "door/http/receipt_post.h"
#include "door/http/target.h"
#include "door/http/trouble_problem.h"
#include "register/value/register_error.h"

namespace lorimat::door {
namespace {

constexpr int64_t kSecond = 1000;  // milliseconds

}  // namespace

Reply Api::Handle(const Request& request) noexcept {
  try {
    if (std::optional<Reply> refused = RefuseHead(request)) return *refused;
    return Serve(request);
  } catch (const RegisterError&) {
    return StorageProblem();
  } catch (const IllegalMove&) {
    return Problem(409, "wrong_state", "the job is in another state by now");
  } catch (...) {
    return {500, "application/problem+json", "{\"status\":500,\"code\":\"failed\"}\n"};
  }
}

const std::vector<Api::Route>& Api::Routes() {
  static const std::vector<Route> kRoutes = {
      {"POST", {"v1", "jobs"}, &Api::PostJob, {"wait"}},
      {"POST", {"v1", "receipts"}, &Api::PostReceipt, {"wait", "dry_run"}},
      {"GET", {"v1", "jobs"}, &Api::ListJobs, {"key", "desk", "state", "after", "limit"}},
      {"GET", {"v1", "jobs", "#"}, &Api::GetJob, {}},
      {"DELETE", {"v1", "jobs", "#"}, &Api::DeleteJob, {}},
      {"POST", {"v1", "jobs", "#", "resolve"}, &Api::PostResolve, {}, Caller::kOperator},
      {"POST", {"v1", "device", "close-day"}, &Api::PostDevice, {"wait"}, Caller::kOperator},
      {"POST", {"v1", "device", "reset"}, &Api::PostDevice, {"wait"}, Caller::kOperator},
      {"GET", {"v1", "device"}, &Api::GetDevice, {}},
      {"GET", {"openapi.json"}, &Api::GetOpenApi, {}, Caller::kAnybody},
      {"GET", {"v1", "documents"}, &Api::ListDocuments, {"from", "to", "after", "limit"}},
      {"GET", {"v1", "documents", "#", "#"}, &Api::GetDocument, {"kind"}},
      {"POST",
       {"v1", "documents", "#", "#", "copy"},
       &Api::PostCopy,
       {"kind", "wait"},
       Caller::kOperator},
      {"GET", {"v1", "events"}, &Api::GetEvents, {"after", "follow"}},
      {"GET", {"healthz"}, &Api::GetHealth, {}, Caller::kAnybody},
      {"GET", {"readyz"}, &Api::GetReady, {}, Caller::kAnybody},
      {"GET", {"metrics"}, &Api::GetMetrics, {}},
  };
  return kRoutes;
}

std::vector<std::string> Api::RouteTexts() {
  std::vector<std::string> texts;
  for (const Route& route : Routes()) {
    std::string& text = texts.emplace_back(route.method);
    for (const char* one : route.segments) text += one ? std::string("/") + one : "";
    for (const char* one : route.query) text += one ? std::string("&") + one : "";
  }
  return texts;
}

Reply Api::Serve(const Request& request) {
  if (request.preflight && request.method == "OPTIONS") return Preflight(request);
  Path path;
  if (std::optional<Reply> refused = RefuseCaller(request, &path.caller)) return *refused;
  Reply problem;
  const Route* route = FindRoute(request, &path, &problem);
  return route == nullptr ? problem : (this->*route->handler)(request, path);
}

bool Api::IsOperator(const std::string& desk, const Path& path) const {
  if (path.caller) return path.caller->role == console::TokenRole::kOperator;
  return std::find(parts_.operators.begin(), parts_.operators.end(), desk) !=
         parts_.operators.end();
}

Reply Api::PostJob(const Request& request, const Path& path) {
  if (std::optional<Reply> problem = KeyProblem(request.key)) return *problem;
  const std::optional<int> wait = WaitOf(path.query);
  if (!wait) return WaitProblem();
  BodyReader body(request.body, false);
  if (body.problem()) return *body.problem();
  body.Allow({"lines", "desk", "reference", "expires_s"});
  NewJob job;
  job.key = *request.key;
  job.digest = body.Digest();
  job.desk = body.Text("desk", kLongestDesk);
  job.reference = body.Text("reference", kLongestReference);
  job.expires =
      parts_.log.Now() + kSecond * body.Number("expires_s", 1, kMostExpiry, kDefaultExpiry);
  job.lines = body.Lines();
  if (!body.Has("desk")) job.desk = path.OwnDesk();
  if (body.problem()) return *body.problem();
  if (std::optional<Reply> refused = RefuseDesk(job.desk, path)) return *refused;
  // A key that is known is answered as it was, whatever is allowed by now.
  if (std::optional<Reply> replay = Replay(job)) return *replay;
  return JudgeAndTake(std::move(job), *wait, path);
}

Reply Api::JudgeAndTake(NewJob job, int wait, const Path& path) {
  Judged judged = parts_.judge.Judge(job.lines, IsOperator(job.desk, path));
  if (!judged.fault && judged.may_hold_mark) {
    judged.fault = parts_.judge.FindMark(job.lines, parts_.log.OpenMarks());
  }
  if (judged.fault) return FaultProblem(*judged.fault);
  job.effect = judged.effect;
  job.refused = std::move(judged.refused);
  return Take(std::move(job), wait);
}

Reply Api::PostReceipt(const Request& request, const Path& path) {
  const auto dry_run = path.query.find("dry_run");
  const bool is_dry = dry_run != path.query.end() && dry_run->second == "true";
  if (!is_dry && dry_run != path.query.end() && dry_run->second != "false") {
    return Problem(400, "bad_field", "dry_run: is neither true nor false");
  }
  std::optional<Reply> problem = is_dry ? std::nullopt : KeyProblem(request.key);
  const std::optional<int> wait = WaitOf(path.query);
  if (!problem && !wait) problem = WaitProblem();
  if (problem) return *problem;
  ReceiptPost post(request.body);
  NewJob job = post.job();
  if (!post.has_desk()) job.desk = path.OwnDesk();
  if (!post.problem()) problem = RefuseDesk(job.desk, path);
  if (problem) return *problem;
  job.key = request.key.value_or("");
  job.expires = parts_.log.Now() + kSecond * post.expires_s();
  if (!post.problem() && !is_dry) problem = Replay(job);
  if (problem) return *problem;
  if (!post.problem()) post.Prepare(parts_.tables ? parts_.tables().get() : nullptr, parts_.judge);
  if (post.problem()) return *post.problem();
  job.lines = post.job().lines;
  if (std::optional<Reply> unclear = ReferenceProblem(post)) return *unclear;
  return is_dry ? post.DryRun() : JudgeAndTake(std::move(job), *wait, path);
}

NewJob Api::DeviceJob(BodyReader& body, const std::string& key, const Path& path) {
  body.Allow({"desk", "reference", "expires_s"});
  NewJob job;
  job.key = key;
  job.desk = body.Text("desk", kLongestDesk);
  if (!body.Has("desk")) {
    job.desk = path.OwnDesk(parts_.operators.empty() ? std::string() : parts_.operators.front());
  }
  job.reference = body.Text("reference", kLongestReference);
  job.expires =
      parts_.log.Now() + kSecond * body.Number("expires_s", 1, kMostExpiry, kDefaultExpiry);
  return job;
}

Reply Api::PostDevice(const Request& request, const Path& path) {
  if (std::optional<Reply> problem = KeyProblem(request.key)) return *problem;
  const std::optional<int> wait = WaitOf(path.query);
  if (!wait) return WaitProblem();
  BodyReader body(request.body, true);
  if (body.problem()) return *body.problem();
  NewJob job = DeviceJob(body, *request.key, path);
  if (body.problem()) return *body.problem();
  const bool closes = path.action == "close-day";
  // The same body to the other address is another request.
  job.digest = path.action + " " + body.Digest();
  // AZZGIO without the reading ahead of it, and RESPRN, by their numbers.
  job.lines = {closes ? "#27 #1=0" : "#74"};
  job.effect = closes ? JobEffect::kClosing : JobEffect::kReset;
  if (std::optional<Reply> replay = Replay(job)) return *replay;
  if (!IsOperator(job.desk, path)) {
    return Problem(422, "line_not_allowed", "a desk of an operator alone may do this");
  }
  return Take(std::move(job), *wait);
}

namespace {

Reply ReplayOf(const Job& job, const std::string& digest) {
  if (job.digest != digest) {
    return Problem(422, "key_reused",
                   fmt::format("the key belongs to job {}, which came with another body", job.id));
  }
  if (job.state == JobState::kConfirmed) return JobReply(200, job, true);
  return JobReply(IsFinal(job.state) ? 422 : 409, job, true);
}

}  // namespace

std::optional<Reply> Api::Replay(const NewJob& job) {
  const std::optional<Job> known = parts_.log.FindKey(job.desk, job.key);
  if (!known) return std::nullopt;
  return ReplayOf(*known, job.digest);
}

Reply Api::Take(NewJob job, int wait) {
  if (parts_.log_failed()) return StorageProblem();
  const DeviceTrouble trouble = parts_.trouble();
  // What gives up an open document is not to wait for it.
  const bool helps = job.effect == JobEffect::kReset && trouble == DeviceTrouble::kDocumentOpen;
  if (std::optional<Reply> away = TroubleProblem(trouble); away && !helps) return *away;
  if (parts_.log.Count(JobState::kQueued) >= kMostQueued) {
    Reply reply = Problem(429, "queue_full", fmt::format("{} jobs are waiting", kMostQueued));
    reply.headers.emplace_back("Retry-After", "5");
    return reply;
  }
  bool was_there = false;
  const Job taken = Write(job, &was_there);
  if (was_there) return ReplayOf(taken, job.digest);
  if (IsFinal(taken.state)) return JobReply(422, taken, false);
  parts_.wake();
  Reply reply = JobReply(202, taken, false);
  reply.wait_for = taken.id;
  reply.wait_seconds = wait;
  return reply;
}

Job Api::Write(const NewJob& job, bool* was_there) {
  try {
    return parts_.log.Accept(job, was_there);
  } catch (const RegisterError& error) {
    if (parts_.not_written) parts_.not_written(error);
    throw;
  }
}

bool Api::LogFails() const {
  return parts_.log_failed() || (parts_.writes_none && parts_.writes_none());
}

bool Api::IsOver(int64_t job_id) noexcept {
  try {
    if (job_id < 0) return IsAnswered(job_id);
    const std::optional<Job> job = parts_.log.Find(job_id);
    return !job || IsFinal(job->state) || job->state == JobState::kNeedsOperator;
  } catch (...) {
    return true;
  }
}

Reply Api::Finish(int64_t job_id) noexcept {
  try {
    if (job_id < 0) return FinishQuestion(job_id);
    const std::optional<Job> job = parts_.log.Find(job_id);
    if (!job) return Problem(404, "not_found", "there is no such job");
    if (job->state == JobState::kConfirmed) return JobReply(201, *job, false);
    return JobReply(IsFinal(job->state) ? 422 : 202, *job, false);
  } catch (const RegisterError&) {
    return StorageProblem();
  } catch (...) {
    return {500, "application/problem+json", "{\"status\":500,\"code\":\"failed\"}\n"};
  }
}

std::optional<int64_t> Api::OwnerOf(const JobDocument& document, const Job& job) {
  // Invoices have numbers of their own. Logs from before have no kinds, but the lines; and they may
  // have a report to which an operator gave the numbers of a sale, whose they are not.
  const auto is_invoice = [this](const JobDocument& known, const Job& owner) {
    const DocumentKind kind = known.kind ? *known.kind : parts_.judge.Judge(owner.lines, true).kind;
    return kind == DocumentKind::kInvoice;
  };
  for (const Job& other : parts_.log.WithDocument(document.closure, document.number)) {
    if (other.id != job.id && other.state == JobState::kConfirmed && other.document &&
        IsNumbered(other.effect) &&
        is_invoice(*other.document, other) == is_invoice(document, job)) {
      return other.id;
    }
  }
  return std::nullopt;
}

Reply Api::PostResolve(const Request& request, const Path& path) {
  BodyReader body(request.body, false);
  if (body.problem()) return *body.problem();
  body.Allow({"outcome", "document", "reason"});
  const std::string outcome = body.Text("outcome", kLongestReference);
  const std::string reason = body.Text("reason", kLongestReference);
  if (outcome != "done" && outcome != "not_done") {
    body.Refuse(400, "bad_field", "outcome: is neither done nor not_done");
  }
  if (reason.empty()) body.Refuse(400, "bad_field", "reason: is missing");
  JobNews news{.note = reason};
  const auto document = body.value().find("document");
  if (document != body.value().end() && !document->is_null()) {
    constexpr int64_t kLast = 9999;
    const auto number = [&document](const char* name) -> std::optional<int64_t> {
      if (!document->contains(name)) return std::nullopt;
      return BodyReader::WholeNumber(document->at(name), 1, kLast);
    };
    // A day closing has the one alone.
    const bool has_number =
        document->is_object() && document->contains("number") && !document->at("number").is_null();
    const bool good = document->is_object() && number("closure") &&
                      document->size() == (document->contains("number") ? 2 : 1) &&
                      (!has_number || number("number"));
    if (!good) {
      body.Refuse(400, "bad_field", "document: is no object of closure and number, 1 to 9999");
    } else {
      news.document = JobDocument{static_cast<int>(*number("closure")),
                                  has_number ? static_cast<int>(*number("number")) : 0,
                                  parts_.log.serial(),
                                  {},
                                  {}};
    }
  }
  if (news.document && outcome == "not_done") {
    body.Refuse(400, "bad_field", "document: what is not done has none");
  }
  if (body.problem()) return *body.problem();
  const std::lock_guard<std::mutex> lock(resolving_);
  const std::optional<Job> job = parts_.log.Find(path.id);
  if (!job) return Problem(404, "not_found", "there is no such job");
  if (job->state != JobState::kNeedsOperator) {
    return Problem(409, "wrong_state", "the job waits for no operator");
  }
  if (news.document) {
    if (!IsNumbered(job->effect)) {
      return Problem(422, "no_document", "document: a job of this kind makes none");
    }
    if (job->effect == JobEffect::kDocument) {
      news.document->kind = parts_.judge.Judge(job->lines, true).kind;
    }
    if ((news.document->number == 0) != (job->effect == JobEffect::kClosing)) {
      return Problem(400, "bad_field", "document: a closing has no number, all others have one");
    }
    if (const std::optional<int64_t> other = OwnerOf(*news.document, *job)) {
      return Problem(409, "document_taken", fmt::format("document: job {} has it", *other));
    }
  }
  const bool done = outcome == "done";
  const Job resolved = parts_.log.Move(path.id, done ? JobState::kConfirmed : JobState::kRejected,
                                       done ? Why::kOperatorDone : Why::kOperatorNotDone, news);
  return JobReply(200, resolved, false);
}

Reply Api::GetJob(const Request&, const Path& path) {
  const std::optional<Job> job = parts_.log.Find(path.id);
  const bool is_seen = job && path.MaySee(job->desk);
  return is_seen ? JobReply(200, *job, false) : Problem(404, "not_found", "there is no such job");
}

Reply Api::ListJobs(const Request&, const Path& path) {
  constexpr int64_t kMostListed = 100;
  const auto given = [&](const char* name) -> std::optional<std::string> {
    const auto found = path.query.find(name);
    return found == path.query.end() ? std::nullopt : std::optional(found->second);
  };
  const std::optional<std::string> key = given("key");
  // A key is its desk's, and names one job.
  const bool is_mixed =
      key ? path.query.size() > 1 + path.query.count("desk") : path.query.count("desk") != 0;
  if (is_mixed) return Problem(400, "bad_field", "key and desk go together, and with nothing else");
  if (key) {
    const std::string desk = given("desk").value_or(path.OwnDesk());
    const std::optional<Job> job = parts_.log.FindKey(desk, *key);
    if (!job || !path.MaySee(desk)) return Problem(404, "not_found", "there is no such job");
    return JobReply(200, *job, false);
  }
  std::optional<JobState> state;
  if (const std::optional<std::string> name = given("state")) {
    state = FindJobState(*name);
    if (!state) return Problem(400, "bad_field", "state: there is no such state");
  }
  const std::optional<int64_t> after = ReadCount(given("after").value_or("0"));
  const std::optional<int64_t> limit = ReadCount(given("limit").value_or("50"));
  if (!after || !limit || *limit < 1 || *limit > kMostListed) {
    return Problem(400, "bad_field",
                   fmt::format("after is a number of a job, limit 1 to {}", kMostListed));
  }
  const bool sees_all = !path.caller || path.caller->role == console::TokenRole::kOperator;
  const std::optional<std::string> desk =
      sees_all ? std::nullopt : std::optional(path.caller->name);
  Reply reply{200, "application/json", "{\"jobs\":["};
  for (const Job& job : parts_.log.List(state, *after, static_cast<int>(*limit), desk)) {
    reply.body += JobJson(job, false);
    reply.body.back() = ',';
  }
  if (reply.body.back() == ',') reply.body.pop_back();
  reply.body += "]}\n";
  return reply;
}

Reply Api::DeleteJob(const Request&, const Path& path) {
  const std::optional<Job> job = parts_.log.Find(path.id);
  if (!job || !path.MaySee(job->desk)) return Problem(404, "not_found", "there is no such job");
  if (job->state != JobState::kQueued) {
    return Problem(409, "wrong_state", "the job has begun, or is over");
  }
  return JobReply(200, parts_.log.Move(path.id, JobState::kCancelled, Why::kCancelled), false);
}

}  // namespace lorimat::door
