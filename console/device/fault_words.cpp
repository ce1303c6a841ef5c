#include "console/device/fault_words.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <sstream>

#include "console/message/failure.h"
#include "console/message/fault_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/suggestion.h"
#include "register/fault/fault_operations.h"
#include "rpccommon/client/rtfclientoperation.h"

namespace lorimat::console {
namespace {

std::vector<std::string> WordsOf(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; stream >> word;)
    words.push_back(word.substr(word.find("--") == 0 ? 2 : 0));
  return words;
}

std::vector<std::string> KindNames() {
  std::vector<std::string> names = {std::string(lorimat::kCodeFault)};
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) names.emplace_back(kind.name);
  return names;
}

[[noreturn]] void Refuse(const std::string& what, const std::string& word,
                         const std::vector<std::string>& names) {
  const std::string near = NearestWord(word, names);
  throw Failure(what + (near.empty() ? "" : Tr("; did you mean {}?", near)));
}

// Takes the number that has to stand there.
int TakeNumber(const std::vector<std::string>& words, size_t* at) {
  const std::string& name = words[*at];
  const std::string text = ++*at < words.size() ? words[*at] : std::string();
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
    throw Failure(Tr("a number has to stand behind '{}'", CutText(name, 60)));
  }
  if (error == std::errc::result_out_of_range) {
    throw Failure(
        Tr("the number behind '{}' is out of range: {}", CutText(name, 60), CutText(text, 60)));
  }
  return number;
}

}  // namespace

lorimat::Fault ReadFault(std::string_view text) {
  const std::vector<std::string> words = WordsOf(text);
  lorimat::Fault fault;
  for (size_t at = 0; at < words.size(); ++at) {
    const std::string& word = words[at];
    if (at == 0) {
      fault.name = word;
      const std::vector<std::string> names = KindNames();
      if (std::find(names.begin(), names.end(), word) == names.end()) {
        Refuse(Tr("no fault is called '{}'", CutText(word, 60)), word, names);
      }
      if (word == lorimat::kCodeFault) fault.code = TakeNumber(words, &at);
    } else if (word == "on" && at + 1 < words.size()) {
      const std::string& name = words[++at];
      fault.operation = FindClientOperation(name);
      if (!fault.operation) {
        Refuse(Tr("no operation of the device is called '{}'", CutText(name, 60)), name,
               {std::begin(kClientOperationNames), std::end(kClientOperationNames)});
      }
    } else if (const auto when = lorimat::FindFaultWhen(word)) {
      fault.when = *when;
      const bool counted = *when == lorimat::FaultWhen::kNth || *when == lorimat::FaultWhen::kTimes;
      if (counted) fault.count = TakeNumber(words, &at);
    } else {
      Refuse(Tr("'{}' has no place there", CutText(word, 60)), word,
             {"next", "nth", "every", "times", "on"});
    }
  }
  return fault;
}

std::vector<std::string> FaultWords() {
  std::vector<std::string> words = KindNames();
  words.insert(words.end(), {"clear", "every", "next", "nth", "on", "times"});
  return words;
}

std::string FaultList(const lorimat::FaultPlan& plan, size_t columns) {
  size_t width = 0;
  for (const std::string& name : KindNames()) width = std::max(width, name.size());
  std::string out;
  const auto add = [&](std::string_view name, std::string_view what) {
    out += Entry(fmt::format("  {:<{}}  ", name, width), what, columns);
  };
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds())
    add(kind.name, FaultKindText(kind.name));
  add(lorimat::kCodeFault, Tr("any result code, by its number"));
  if (plan.empty()) return out + Tr("No fault waits.\n");
  out += Tr("Waiting:\n");
  for (const lorimat::Fault& fault : plan.faults()) {
    out += Wrapped(FaultText(fault), 2, columns);
  }
  return out;
}

}  // namespace lorimat::console
