#include "console/device/plugin_file.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

#include "bindings/c/device_client.h"
#include "bindings/c/host_struct.h"
#include "console/device/load_trial.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

constexpr size_t kLongestName = 63;
constexpr const char* kFunctions[] = {LORIMAT_DEVICE_OPEN, LORIMAT_DEVICE_CLOSE};

struct Ability {
  uint32_t bit;
  const char* name;  // for programs
  const char* text;
  // Whether the functions are there that it needs.
  bool (*is_there)(const lorimat_device_plugin& plugin);
};

constexpr Ability kAbilities[] = {
    {LORIMAT_DEVICE_PAPER, "paper", TR_TEXT("shows its paper"),
     [](const lorimat_device_plugin& plugin) { return plugin.paper_line != nullptr; }},
    {LORIMAT_DEVICE_PICTURES, "pictures", TR_TEXT("draws its paper"),
     [](const lorimat_device_plugin& plugin) { return plugin.picture != nullptr; }},
    {LORIMAT_DEVICE_FAULTS, "faults", TR_TEXT("takes orders for faults"),
     [](const lorimat_device_plugin& plugin) { return plugin.fault != nullptr; }},
    {LORIMAT_DEVICE_TRAINING, "training", TR_TEXT("tells whether it is in training"),
     [](const lorimat_device_plugin& plugin) { return plugin.training != nullptr; }},
};

// At most so many bytes of a text that may be null.
std::string CutTo(const char* text, size_t most) {
  if (text == nullptr) return {};
  return std::string(text, std::find(text, text + most, '\0'));
}

// What has to be there and is not.
std::string Lacks(const lorimat_device_plugin& plugin) {
  if (plugin.name == nullptr || *plugin.name == 0) return "name";
  if (plugin.version == nullptr || *plugin.version == 0) return "version";
  if (plugin.kind == LORIMAT_DEVICE_C) {
    if (c::FaultOf(plugin.callbacks) != LORIMAT_OK) return "callbacks";
  } else if (plugin.kind == LORIMAT_DEVICE_CPP) {
    if (plugin.client == nullptr) return "client";
  } else {
    return "kind";
  }
  for (const Ability& ability : kAbilities) {
    if ((plugin.can & ability.bit) != 0 && !ability.is_there(plugin)) return ability.name;
  }
  return {};
}

template <typename Function>
Function Find(void* handle, const char* name) {
  return reinterpret_cast<Function>(dlsym(handle, name));
}

// Facts as a text and back: numbers and texts with a NUL behind each.
std::string ToReport(const PluginFacts& facts) {
  std::string report = fmt::format("{} {} {} {}", facts.result, facts.abi, facts.kind, facts.can);
  for (const std::string& text : {facts.name, facts.version, facts.error, facts.lacks}) {
    report += '\0';
    report += text;
  }
  return report;
}

PluginFacts FromReport(std::string_view report) {
  PluginFacts facts;
  const auto next = [&report] {
    const std::string_view part = report.substr(0, report.find('\0'));
    report.remove_prefix(std::min(report.size(), part.size() + 1));
    return part;
  };
  std::string_view numbers = next();
  const auto number = [&numbers](auto* value) {
    const auto [end, error] =
        std::from_chars(numbers.data(), numbers.data() + numbers.size(), *value);
    numbers.remove_prefix(static_cast<size_t>(end - numbers.data()));
    if (!numbers.empty()) numbers.remove_prefix(1);
  };
  number(&facts.result);
  number(&facts.abi);
  number(&facts.kind);
  number(&facts.can);
  for (std::string* text : {&facts.name, &facts.version, &facts.error, &facts.lacks})
    *text = next();
  return facts;
}

// Asks what any device answers, so that a client that cannot be called shows here.
void AskClient(const lorimat_device_plugin& plugin) {
  int state = 0;
  if (plugin.kind == LORIMAT_DEVICE_CPP) {
    auto* client = static_cast<RtfClientInterface*>(plugin.client);
    client->GetState();
    client->GetIntProperty(RTF_PIDXFptr_PrinterState, &state);
  } else {
    c::DeviceClient client(c::Taken(*plugin.callbacks));
    client.GetState();
    client.GetIntProperty(RTF_PIDXFptr_PrinterState, &state);
  }
}

std::vector<const Ability*> AbilitiesOf(uint32_t can) {
  std::vector<const Ability*> found;
  for (const Ability& ability : kAbilities) {
    if ((can & ability.bit) != 0) found.push_back(&ability);
  }
  return found;
}

}  // namespace

bool PluginFacts::IsSame(const PluginFacts& other) const {
  return kind == other.kind && can == other.can && name == other.name && version == other.version;
}

PluginCall::PluginCall(const DeviceRequest& request, lorimat_device_purpose purpose)
    : texts_(request.options) {
  for (const auto& [key, value] : texts_) options_.push_back({key.c_str(), value.c_str()});
  plugin_.size = sizeof plugin_;
  plugin_.abi = LORIMAT_DEVICE_ABI;
  plugin_.purpose = static_cast<uint32_t>(purpose);
  plugin_.options = options_.data();
  plugin_.option_count = options_.size();
  SetLog([](void*, const char*) {}, nullptr);
}

void PluginCall::SetLog(void (*log)(void*, const char*), void* log_data) {
  plugin_.log = log;
  plugin_.log_data = log_data;
}

PluginFacts PluginCall::Open(void* handle) {
  const auto open = Find<lorimat_device_open_function>(handle, LORIMAT_DEVICE_OPEN);
  PluginFacts facts;
  facts.result = open(&plugin_);
  facts.abi = plugin_.abi;
  // What another contract has behind its first members is not known.
  if (facts.abi != LORIMAT_DEVICE_ABI) {
    facts.result = LORIMAT_DEVICE_OTHER_ABI;
    return facts;
  }
  is_open_ = facts.result == LORIMAT_DEVICE_OK;
  opened_ = plugin_;
  facts.kind = opened_.kind;
  facts.can = opened_.can;
  facts.name = CutTo(opened_.name, kLongestName);
  facts.version = CutTo(opened_.version, kLongestName);
  facts.error = CutTo(opened_.error, sizeof opened_.error);
  if (facts.result == LORIMAT_DEVICE_OK) facts.lacks = Lacks(opened_);
  return facts;
}

void PluginCall::Close(void* handle) {
  is_open_ = false;
  Find<lorimat_device_close_function>(handle, LORIMAT_DEVICE_CLOSE)(&plugin_);
}

PluginTrial TryPlugin(const DeviceRequest& request) {
  PluginCall call(request, LORIMAT_DEVICE_TRIAL);
  bool open = false;
  const Trial trial = TryLoading(
      LoadPath(request.device), kFunctions,
      [&](void* handle) {
        const PluginFacts facts = call.Open(handle);
        open = facts.result == LORIMAT_DEVICE_OK;
        if (facts.is_open()) AskClient(call.opened());
        return ToReport(facts);
      },
      static_cast<int>(request.timeout.count()),
      [&](void* handle) {
        if (open) call.Close(handle);
      });
  PluginTrial result = {.failure = trial.failure};
  if (!trial.report.empty()) result.facts = FromReport(trial.report);
  return result;
}

std::string RefusalOf(const std::string& file, const PluginFacts& facts) {
  const std::string name = Shown(file);
  const std::string cause =
      facts.error.empty() ? Tr("it does not say why") : Shown(WithoutTrailingBlanks(facts.error));
  switch (facts.result) {
    case LORIMAT_DEVICE_OK:
      break;
    case LORIMAT_DEVICE_OTHER_ABI:
      return Tr("{}: the device is made for contract {} of devices, and this program has {}", name,
                facts.abi, LORIMAT_DEVICE_ABI);
    case LORIMAT_DEVICE_BAD_OPTION:
      return Tr("{}: the device refuses its options: {}", name, cause);
    case LORIMAT_DEVICE_IN_USE:
      return Tr("{}: the device is in use: {}", name, cause);
    case LORIMAT_DEVICE_FAILED:
      return Tr("{}: the device cannot be opened: {}", name, cause);
    default:
      return Tr("{}: the device cannot be opened, and answers {}, which is no result: {}", name,
                facts.result, cause);
  }
  if (facts.lacks.empty()) return {};
  return Tr("{}: what the device says of itself is not whole: {}", name, Shown(facts.lacks));
}

std::vector<std::string> AbilityTexts(uint32_t can) {
  std::vector<std::string> texts;
  for (const Ability* ability : AbilitiesOf(can)) {
    texts.emplace_back(Translated(ability->text));
  }
  return texts;
}

std::vector<std::string> AbilityNames(uint32_t can) {
  std::vector<std::string> names;
  for (const Ability* ability : AbilitiesOf(can)) names.emplace_back(ability->name);
  return names;
}

std::string LoadPath(const std::string& file) {
  return file.find('/') == std::string::npos ? "./" + file : file;
}

}  // namespace lorimat::console
