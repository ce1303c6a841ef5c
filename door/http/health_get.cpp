// GET /healthz, /readyz and /metrics: for programs that see to it that this one runs.

#include "door/http/api_path.h"
#include "door/http/metrics_text.h"
#include "door/http/trouble_problem.h"

namespace lorimat::door {

// That it answers is the answer.
Reply Api::GetHealth(const Request&, const Path&) {
  Reply reply;
  reply.body = "{\"status\":\"ok\"}\n";
  return reply;
}

Reply Api::GetReady(const Request&, const Path&) {
  if (LogFails()) return StorageProblem();
  if (std::optional<Reply> trouble = TroubleProblem(parts_.trouble())) return *trouble;
  Reply reply;
  reply.body = "{\"status\":\"ready\"}\n";
  return reply;
}

Reply Api::GetMetrics(const Request&, const Path&) {
  MetricsText text;
  const DeviceTrouble trouble = parts_.trouble();
  const bool is_ready = trouble == DeviceTrouble::kNone && !LogFails();
  text.Gauge("lorimatd_ready", "Whether a new job would be taken.", is_ready ? 1 : 0);
  AddLogMetrics(parts_.log, &text);
  if (parts_.figures) parts_.figures(text);
  Reply reply;
  reply.content_type = MetricsText::kContentType;
  reply.body = text.text();
  return reply;
}

}  // namespace lorimat::door
