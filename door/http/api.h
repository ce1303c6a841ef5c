// What the door answers, without the network: requests in, replies out, or a job to wait for.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "door/access/access_rules.h"
#include "door/job/kept_documents.h"
#include "door/job/questions.h"
#include "door/job/worker.h"
#include "door/judge/line_judge.h"
#include "door/log/job_log.h"
#include "door/receipt/receipt_sums.h"

namespace lorimat::door {

class BodyReader;
class EventStream;
class MetricsText;
class ReceiptPost;

struct Request {
  std::string method;
  std::string target;  // path and query, as they came
  std::string host;
  // "http" or "https", where the target was a whole address, of which `host` is the authority.
  std::optional<std::string> scheme = {};
  std::optional<std::string> origin;
  std::string content_type;
  std::optional<std::string> key;                 // Idempotency-Key
  std::optional<std::string> last_event_id = {};  // Last-Event-ID
  std::string body = {};
  std::string accept = {};  // empty for none
  std::optional<std::string> authorization = {};
  // What a browser asks ahead of a page's request: Access-Control-Request-Method, and whether the
  // page comes from a wider network.
  std::optional<std::string> preflight = {};
  bool asks_private_network = false;
};

struct Reply {
  int status = 200;
  std::string content_type = "application/json";
  std::string body;
  std::vector<std::pair<std::string, std::string>> headers = {};
  // An answer once the job's outcome is known, or these seconds are over: by Api::Finish. A number
  // below 0 is that of a question to the device.
  std::optional<int64_t> wait_for = {};
  int wait_seconds = 0;
  // Instead of a body: what comes, until the client goes.
  std::shared_ptr<EventStream> events = {};
};

class Api {
 public:
  static constexpr size_t kMostBody = 1 << 20;
  static constexpr size_t kMostLines = 1000;
  static constexpr size_t kLongestLine = 2046;
  static constexpr size_t kLongestDesk = 64;
  static constexpr size_t kLongestReference = 256;
  static constexpr int64_t kMostQueued = 1000;
  static constexpr int kMostWait = 300;          // seconds
  static constexpr int kDefaultWait = 30;        // seconds
  static constexpr int kDefaultExpiry = 600;     // seconds
  static constexpr int kMostExpiry = 7 * 86400;  // seconds

  struct Parts {
    JobLog& log;
    LineJudge& judge;
    std::vector<std::string> hosts;      // that a request may name: "127.0.0.1:8577"
    std::vector<std::string> operators;  // desks
    std::function<DeviceTrouble()> trouble;
    std::function<bool()> log_failed;  // of the jobs that it has
    std::function<void()> wake;        // a job has come
    // What receipts are summed by; null, or answers null, where the device does not tell it.
    std::function<std::shared_ptr<const DeviceTables>()> tables = nullptr;
    // Asks the device between two jobs; false when it cannot be asked. Null: nobody can.
    std::function<bool(std::shared_ptr<Question>)> ask = nullptr;
    // What the device keeps, where it is a register.
    KeptDocuments* documents = nullptr;
    // Figures of the program beside those of the log; may be null.
    std::function<void(MetricsText& text)> figures = nullptr;
    AccessRules access = {};
    // Is told of a job that came and could not be written, and why; and tells whether that is so
    // still. Both may be null.
    std::function<void(const std::exception&)> not_written = nullptr;
    std::function<bool()> writes_none = nullptr;
  };

  // What the door takes, each as "GET/v1/jobs/#&key&desk"; "#" is a number. door/openapi.json
  // describes them.
  static std::vector<std::string> RouteTexts();

  explicit Api(Parts parts) : parts_(std::move(parts)) {}

  // Ahead of the body: the answer to a request that is not to be read any further.
  std::optional<Reply> RefuseHead(const Request& request) const;
  Reply Handle(const Request& request) noexcept;
  // Whether a request that was answered with events is still that of somebody who may be told of
  // them, and of no others: tokens change while their events are followed.
  bool MayFollow(const Request& request, const EventStream& events) const;
  // Lets the browser show an answer to a page that may ask. For each answer behind the head.
  void AllowOrigin(const Request& request, Reply* reply) const;
  // Whether nothing more is to be waited for; of a job, or of a question.
  bool IsOver(int64_t job_id) noexcept;
  // The answer to a POST whose job was waited for.
  Reply Finish(int64_t job_id) noexcept;
  // Nobody waits any longer for what an answer was to wait for; nothing behind Finish.
  void Drop(int64_t job_id) noexcept;

 private:
  struct Path;
  using Handler = Reply (Api::*)(const Request& request, const Path& path);
  struct Route;

  // Who may take a route: without tokens there is nobody to tell apart.
  enum class Caller : uint8_t { kAnybody, kKnown, kOperator };
  static const std::vector<Route>& Routes();
  // The route and what it says; null, with the problem, for none.
  static const Route* FindRoute(const Request& request, Path* path, Reply* problem);
  bool IsAllowedOrigin(const Request& request) const;
  // Finds out who asks; the problem of one who may not.
  std::optional<Reply> RefuseCaller(const Request& request,
                                    std::optional<console::TokenHolder>* caller) const;
  // Of a job whose body names this desk: a desk's token is no other's.
  static std::optional<Reply> RefuseDesk(const std::string& desk, const Path& path);
  Reply Serve(const Request& request);
  Reply PostJob(const Request& request, const Path& path);
  Reply PostReceipt(const Request& request, const Path& path);
  // Of a request whose body has no lines, without digest and lines.
  NewJob DeviceJob(BodyReader& body, const std::string& key, const Path& path);
  Reply PostDevice(const Request& request, const Path& path);
  Reply PostResolve(const Request& request, const Path& path);
  Reply GetJob(const Request& request, const Path& path);
  Reply ListJobs(const Request& request, const Path& path);
  Reply DeleteJob(const Request& request, const Path& path);
  Reply GetDevice(const Request& request, const Path& path);
  Reply GetOpenApi(const Request& request, const Path& path);
  Reply DeviceReply();
  Reply ListDocuments(const Request& request, const Path& path);
  Reply GetDocument(const Request& request, const Path& path);
  Reply AskForDocument(const std::string& type, const Path& path, std::optional<DocumentKind> kind);
  Reply PostCopy(const Request& request, const Path& path);
  std::optional<Reply> ReferenceProblem(const ReceiptPost& post);
  // Waits for the device's answer, so many seconds, and then for what `finish` makes of it.
  Reply Ask(std::function<void(FiscalDevice&)> ask, int seconds,
            std::function<Reply(bool answered)> finish);
  Reply FinishQuestion(int64_t id);
  bool IsAnswered(int64_t id);
  Reply GetEvents(const Request& request, const Path& path);
  Reply GetHealth(const Request& request, const Path& path);
  Reply GetReady(const Request& request, const Path& path);
  Reply GetMetrics(const Request& request, const Path& path);
  Reply JudgeAndTake(NewJob job, int wait, const Path& path);
  Reply Take(NewJob job, int wait);
  // To the log; that it cannot be is told.
  Job Write(const NewJob& job, bool* was_there);
  bool LogFails() const;
  std::optional<Reply> Replay(const NewJob& job);
  bool IsOperator(const std::string& desk, const Path& path) const;
  // Another job that is confirmed with this document.
  std::optional<int64_t> OwnerOf(const JobDocument& document, const Job& job);

  Parts parts_;
  std::mutex resolving_;  // one at a time tells of a document

  struct Waiting {
    std::shared_ptr<Question> question;
    std::function<Reply(bool answered)> finish;
  };
  std::mutex asking_;
  int64_t last_question_ = 0;  // counts down
  std::map<int64_t, Waiting> questions_;
  // What the device told last of itself, and when.
  std::shared_ptr<const DeviceReport> report_;
  int64_t reported_ = 0;
};

// A problem as RFC 9457 has it; `pointer` is the place in the body (RFC 6901), where it has one.
Reply Problem(int status, std::string_view code, const std::string& detail,
              const std::string& pointer = {});
// A job as clients see it.
std::string JobJson(const Job& job, bool replayed);
// What is told by an event, without a line end.
std::string EventJson(const LogEvent& event);

}  // namespace lorimat::door
