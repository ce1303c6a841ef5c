// "lorimat fault": the faults that a register can be made to suffer, and its plan of them.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "console/command/subcommand.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/fault_text.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "console/terminal/suggestion.h"
#include "register/fault/fault_operations.h"
#include "register/fault/faults.h"
#include "register/inspect/register_file.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

struct FaultOptions {
  std::string register_file;
  std::string name;         // of the fault; empty lists
  std::optional<int> code;  // behind the name "code"
  bool next = false;
  std::optional<int> nth;
  bool every = false;
  std::optional<int> times;
  std::string operation;
  bool clear = false;
  bool json = false;
};

constexpr std::string_view kFaultExamples = TR_TEXT(R"(Examples:
  lorimat fault --register shop.register
      The faults there are, and those that wait in the register.
  lorimat fault paper-end --register shop.register
      The next operation that prints finds no paper.
  lorimat fault busy --times 3 --register shop.register
      The next three polls find the printer busy.
  lorimat fault code 123 --nth 2 --on PrintRecItemEx --register shop.register
      The second sale from now answers 123.
  lorimat fault --clear --register shop.register
      No fault waits any longer.

The plan is kept in the register's file, and what programs do with the register uses it up. A
struck operation changes nothing. Without a register the faults alone are listed.

Exit codes:
  0  the faults were listed or the plan was changed
  2  wrong use, or the file cannot be read or written
)");

// --- The list.

std::string KindsAsText() {
  size_t width = 0;
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) {
    width = std::max(width, kind.name.size());
  }
  std::string out = Tr("Faults\n");
  const auto add = [&](std::string_view name, const std::string& code, const std::string& what,
                       const std::string& strikes) {
    out += fmt::format("  {:<{}}  {:>6}  {}\n", name, width, code, what);
    if (!strikes.empty()) out += fmt::format("  {:<{}}  {:>6}  {}\n", "", width, "", strikes);
  };
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) {
    add(kind.name, kind.code == 0 ? "-" : std::to_string(kind.code), FaultKindText(kind.name),
        Tr("strikes: {}", FaultStrikesText(kind.name)));
  }
  add(lorimat::kCodeFault, "N", Tr("any result code, by its number"), "");
  return out;
}

std::string PlanAsText(const std::string& file, const lorimat::FaultPlan& plan) {
  if (plan.empty()) return Tr("No fault waits in {}\n", Shown(file));
  std::string out = Tr("In {} wait\n", Shown(file));
  for (const lorimat::Fault& fault : plan.faults()) {
    out += fmt::format("  {}\n", FaultText(fault));
  }
  return out;
}

Json KindsAsJson() {
  Json kinds = Json::array();
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) {
    kinds.push_back(
        {{"name", kind.name}, {"code", kind.code}, {"what", kind.what}, {"strikes", kind.strikes}});
  }
  return kinds;
}

Json OperationsAsJson() {
  Json names = Json::array();
  for (const std::string_view name : kClientOperationNames) names.push_back(name);
  return names;
}

int List(const FaultOptions& options, Streams& streams) {
  const bool has_register = !options.register_file.empty();
  lorimat::FaultPlan plan;
  if (has_register) {
    plan = lorimat::RegisterFile(RequireRegister(options.register_file)).Faults();
  }
  if (options.json) {
    Json json = {{"kinds", KindsAsJson()}, {"operations", OperationsAsJson()}};
    if (has_register) json["waiting"] = FaultsJson(plan);
    streams.Output(JsonText(json));
    return kExitGood;
  }
  std::string text = KindsAsText();
  if (has_register) text += "\n" + PlanAsText(options.register_file, plan);
  streams.Output(text);
  return kExitGood;
}

// --- A new fault.

std::string DidYouMean(const std::string& near) {
  return near.empty() ? std::string() : Tr("; did you mean {}?", near);
}

void RequireKind(const std::string& name) {
  if (name == lorimat::kCodeFault || lorimat::FindFaultKind(name) != nullptr) return;
  std::vector<std::string> names = {std::string(lorimat::kCodeFault)};
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) names.emplace_back(kind.name);
  const std::string near = NearestWord(name, names);
  throw Failure(near.empty()
                    ? Tr("{}: no fault has this name; \"lorimat fault\" lists them", Shown(name))
                    : Tr("{}: no fault has this name; did you mean {}?", Shown(name), near));
}

std::optional<ClientOperation> RequireOperation(const std::string& name) {
  const std::optional<ClientOperation> operation = FindClientOperation(name);
  if (name.empty() || operation) return operation;
  const std::vector<std::string> names(std::begin(kClientOperationNames),
                                       std::end(kClientOperationNames));
  throw Failure(Tr("--on {}: no operation of the device has this name{}", Shown(name),
                   DidYouMean(NearestWord(name, names))));
}

lorimat::Fault NewFault(const FaultOptions& options) {
  RequireKind(options.name);
  const std::optional<ClientOperation> operation = RequireOperation(options.operation);
  const bool by_code = options.name == lorimat::kCodeFault;
  if (by_code && !options.code) {
    throw Failure(Tr("fault code: which? Give the number of a result code behind it"));
  }
  if (!by_code && options.code) {
    throw Failure(Tr("{} {}: only the fault \"code\" takes a number", options.name, *options.code));
  }
  lorimat::Fault fault;
  fault.name = options.name;
  fault.operation = operation;
  if (by_code) fault.code = *options.code;
  if (options.nth) {
    fault.when = lorimat::FaultWhen::kNth;
    fault.count = *options.nth;
  } else if (options.times) {
    fault.when = lorimat::FaultWhen::kTimes;
    fault.count = *options.times;
  } else if (options.every) {
    fault.when = lorimat::FaultWhen::kEvery;
  }
  return fault;
}

void AddOptions(CLI::App* fault, FaultOptions* options) {
  AddRegisterOption(fault, &options->register_file);
  CLI::Option* name = fault->add_option("FAULT", options->name, Tr("The fault to plan"));
  fault->add_option("CODE", options->code, Tr("The result code, for the fault \"code\""));
  CLI::Option* next =
      fault->add_flag("--next", options->next, Tr("At the next operation (the default)"));
  CLI::Option* nth =
      fault->add_option("--nth", options->nth, Tr("At the Nth operation from now"))->type_name("N");
  CLI::Option* every = fault->add_flag("--every", options->every, Tr("At every operation"));
  CLI::Option* times =
      fault->add_option("--times", options->times, Tr("At the next N operations"))->type_name("N");
  const std::vector<CLI::Option*> moments = {next, nth, every, times};
  for (CLI::Option* one : moments) {
    one->needs(name);
    for (CLI::Option* other : moments) {
      if (other != one) one->excludes(other);
    }
  }
  fault
      ->add_option("--on", options->operation,
                   Tr("Only at this operation of the device, such as PrintRecItemEx"))
      ->type_name("OPERATION")
      ->needs(name);
  fault->add_flag("--clear", options->clear, Tr("Take all faults off the plan"))->excludes(name);
  fault->add_flag("--json", options->json, Tr("List as JSON"))->excludes(name);
}

// Returns one of ExitCode. Throws Failure or RegisterError.
int FaultCommand(const FaultOptions& options, Streams& streams) {
  if (options.name.empty() && !options.clear) return List(options, streams);
  const lorimat::FaultPlan plan = lorimat::RegisterFile::ChangeFaults(
      RequireRegister(options.register_file), [&options](lorimat::FaultPlan* changed) {
        if (options.clear) {
          changed->Clear();
        } else {
          changed->Add(NewFault(options));
        }
      });
  streams.Output(PlanAsText(options.register_file, plan));
  return kExitGood;
}

}  // namespace

const Subcommand kFaultSubcommand = {
    "fault", HelpGroup::kLookAfterRegister,
    TR_TEXT("List the faults of a register, plan one or clear the plan"), kFaultExamples,
    &Prepare<FaultOptions, AddOptions, FaultCommand>};

}  // namespace lorimat::console
