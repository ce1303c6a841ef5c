#include "console/shell/shell_fault.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <sstream>

#include "console/message/failure.h"
#include "console/message/fault_text.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/suggestion.h"
#include "register/client/virtual_register.h"
#include "register/fault/fault_operations.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

std::vector<std::string> words_of(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; stream >> word;)
    words.push_back(word.substr(word.find("--") == 0 ? 2 : 0));
  return words;
}

std::optional<int> number_of(const std::string& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::vector<std::string> kind_names() {
  std::vector<std::string> names = {std::string(lorimat::kCodeFault)};
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) names.emplace_back(kind.name);
  return names;
}

[[noreturn]] void refuse(const std::string& what, const std::string& word,
                         const std::vector<std::string>& names) {
  const std::string near = nearest_word(word, names);
  throw Failure(what + (near.empty() ? "" : tr("; did you mean {}?", near)));
}

// Takes the number that has to stand there.
int take_number(const std::vector<std::string>& words, size_t* at) {
  const std::optional<int> number =
      *at + 1 < words.size() ? number_of(words[*at + 1]) : std::nullopt;
  if (!number) throw Failure(tr("a number has to stand behind '{}'", shown(words[*at], 60)));
  ++*at;
  return *number;
}

}  // namespace

lorimat::Fault read_fault(std::string_view text) {
  const std::vector<std::string> words = words_of(text);
  lorimat::Fault fault;
  for (size_t at = 0; at < words.size(); ++at) {
    const std::string& word = words[at];
    if (at == 0) {
      fault.name = word;
      const std::vector<std::string> names = kind_names();
      if (std::find(names.begin(), names.end(), word) == names.end()) {
        refuse(tr("no fault is called '{}'", shown(word, 60)), word, names);
      }
      if (word == lorimat::kCodeFault) fault.code = take_number(words, &at);
    } else if (word == "on" && at + 1 < words.size()) {
      const std::string& name = words[++at];
      fault.operation = FindClientOperation(name);
      if (!fault.operation) {
        refuse(tr("no operation of the device is called '{}'", shown(name, 60)), name,
               {std::begin(kClientOperationNames), std::end(kClientOperationNames)});
      }
    } else if (const auto when = lorimat::FindFaultWhen(word)) {
      fault.when = *when;
      const bool counted = *when == lorimat::FaultWhen::kNth || *when == lorimat::FaultWhen::kTimes;
      if (counted) fault.count = take_number(words, &at);
    } else {
      refuse(tr("'{}' has no place there", shown(word, 60)), word,
             {"next", "nth", "every", "times", "on"});
    }
  }
  return fault;
}

void plan_fault(lorimat::VirtualRegister& device, std::string_view words) {
  if (words == "clear") {
    device.ClearFaults();
  } else {
    device.AddFault(read_fault(words));
  }
}

std::vector<std::string> fault_words() {
  std::vector<std::string> words = kind_names();
  words.insert(words.end(), {"clear", "every", "next", "nth", "on", "times"});
  return words;
}

std::string fault_list(const lorimat::FaultPlan& plan, size_t columns) {
  size_t width = 0;
  for (const std::string& name : kind_names()) width = std::max(width, name.size());
  std::string out;
  const auto add = [&](std::string_view name, std::string_view what) {
    out += entry(fmt::format("  {:<{}}  ", name, width), what, columns);
  };
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds())
    add(kind.name, translated(kind.what));
  add(lorimat::kCodeFault, tr("any result code, by its number"));
  if (plan.empty()) return out + tr("No fault waits.\n");
  out += tr("Waiting:\n");
  for (const lorimat::Fault& fault : plan.faults()) {
    out += wrapped(fault_text(fault), 2, columns);
  }
  return out;
}

}  // namespace lorimat::console
