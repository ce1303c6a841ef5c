#include "console/message/fault_text.h"

#include <fmt/format.h>

#include "console/message/text.h"
#include "console/message/translate.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

std::string when_text(const lorimat::Fault& fault) {
  const bool any = !fault.operation;
  const std::string_view operation =
      any ? std::string_view() : ClientOperationName(*fault.operation);
  switch (fault.when) {
    case lorimat::FaultWhen::kNext:
      return any ? tr("at the next operation") : tr("at the next {}", operation);
    case lorimat::FaultWhen::kNth:
      return any ? tr("at operation {} from now", fault.count)
                 : tr("at {} number {} from now", operation, fault.count);
    case lorimat::FaultWhen::kEvery:
      return any ? tr("at every operation") : tr("at every {}", operation);
    case lorimat::FaultWhen::kTimes:
      return any ? tr("at the next operations, {} times", fault.count)
                 : tr("at the next {}, {} times", operation, fault.count);
  }
  return {};
}

}  // namespace

std::string fault_text(const lorimat::Fault& fault) {
  return fmt::format("{} ({}), {}", shown(fault.name), fault.code, when_text(fault));
}

Json faults_json(const lorimat::FaultPlan& plan) {
  Json faults = Json::array();
  for (const lorimat::Fault& fault : plan.faults()) {
    Json json = {
        {"name", fault.name}, {"code", fault.code}, {"when", lorimat::FaultWhenName(fault.when)}};
    const bool counted =
        fault.when == lorimat::FaultWhen::kNth || fault.when == lorimat::FaultWhen::kTimes;
    if (counted) json["count"] = fault.count;
    if (fault.operation) json["operation"] = ClientOperationName(*fault.operation);
    faults.push_back(std::move(json));
  }
  return faults;
}

}  // namespace lorimat::console
