#include "door/http/trouble_problem.h"

namespace lorimat::door {
namespace {

struct TroubleRow {
  DeviceTrouble trouble;
  const char* code;
  const char* detail;
};

constexpr TroubleRow kTroubles[] = {
    {DeviceTrouble::kDocumentOpen, "document_open",
     "a document is open on the device that belongs to no job; an operator has to reset it"},
    {DeviceTrouble::kAway, "device_away", "the device does not answer"},
    {DeviceTrouble::kOtherDevice, "device_away",
     "the device is not the one that the log belongs to"},
};

}  // namespace

std::string_view TroubleCode(DeviceTrouble trouble) {
  for (const TroubleRow& row : kTroubles) {
    if (row.trouble == trouble) return row.code;
  }
  return {};
}

std::optional<Reply> TroubleProblem(DeviceTrouble trouble) {
  for (const TroubleRow& row : kTroubles) {
    if (row.trouble != trouble) continue;
    Reply reply = Problem(503, row.code, row.detail);
    reply.headers.emplace_back("Retry-After", "5");
    return reply;
  }
  return std::nullopt;
}

Reply StorageProblem() {
  Reply reply = Problem(503, kDiskFull, "the log cannot be written or read");
  reply.headers.emplace_back("Retry-After", "10");
  return reply;
}

}  // namespace lorimat::door
