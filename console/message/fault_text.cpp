#include "console/message/fault_text.h"

#include <fmt/format.h>

#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

struct FaultWords {
  std::string_view name;
  const char* what;
  const char* strikes;
};

constexpr FaultWords kFaults[] = {
    {"paper-end", TR_TEXT("the roll of paper is at its end"), TR_TEXT("what prints")},
    {"paper-near-end", TR_TEXT("the roll is near its end; printing goes on"),
     TR_TEXT("what prints")},
    {"cover-open", TR_TEXT("the cover is open"), TR_TEXT("what prints")},
    {"off-line", TR_TEXT("the device does not answer: switched off or not connected"),
     TR_TEXT("everything")},
    {"busy", TR_TEXT("the device is busy; polls of its state count"), TR_TEXT("all but reading")},
    {"fiscal-memory-full", TR_TEXT("the fiscal memory is full"),
     TR_TEXT("openings of fiscal documents, payments, day closings")},
    {"day-end-required", TR_TEXT("the day has to be closed first"),
     TR_TEXT("openings of fiscal documents")},
    {"wrong-totals", TR_TEXT("the totals do not agree"), TR_TEXT("subtotals and payments")},
    {"no-answer", TR_TEXT("the operation gets lost on its way, and nothing is done"),
     TR_TEXT("everything")},
    {"lost-answer", TR_TEXT("the operation is carried out, and its answer gets lost"),
     TR_TEXT("all but reading")},
};

const FaultWords* FindFault(std::string_view name) {
  for (const FaultWords& row : kFaults) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

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

std::string FaultKindText(std::string_view name) {
  const FaultWords* const found = FindFault(name);
  return found == nullptr ? std::string() : std::string(Translated(found->what));
}

std::string FaultStrikesText(std::string_view name) {
  const FaultWords* const found = FindFault(name);
  return found == nullptr ? std::string() : std::string(Translated(found->strikes));
}

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
