#include "console/message/fault_text.h"

#include <fmt/format.h>

#include "console/message/text.h"
#include "console/message/translate.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

std::string WhenText(const lorimat::Fault& fault) {
  const bool any = !fault.operation;
  const std::string_view operation =
      any ? std::string_view() : ClientOperationName(*fault.operation);
  switch (fault.when) {
    case lorimat::FaultWhen::kNext:
      return any ? Tr("at the next operation") : Tr("at the next {}", operation);
    case lorimat::FaultWhen::kNth:
      return any ? Tr("at operation {} from now", fault.count)
                 : Tr("at {} number {} from now", operation, fault.count);
    case lorimat::FaultWhen::kEvery:
      return any ? Tr("at every operation") : Tr("at every {}", operation);
    case lorimat::FaultWhen::kTimes:
      return any ? Tr("at the next operations, {} times", fault.count)
                 : Tr("at the next {}, {} times", operation, fault.count);
  }
  return {};
}

}  // namespace

std::string FaultText(const lorimat::Fault& fault) {
  return fmt::format("{} ({}), {}", Shown(fault.name), fault.code, WhenText(fault));
}

Json FaultsJson(const lorimat::FaultPlan& plan) {
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
