#include "language/code_explanation.h"

#include <charconv>
#include <initializer_list>
#include <limits>

#include "language/code_table.h"
#include "language/message_text.h"

namespace language {
namespace {

// A message with its fields filled, in their order or by their numbers. A field that has nothing to
// hold stays empty.
std::string Filled(std::string_view message, std::initializer_list<std::string> values) {
  std::string out;
  size_t next = 0;
  while (!message.empty()) {
    const size_t open = message.find('{');
    const size_t close = open < message.size() ? message.find('}', open) : message.npos;
    out += message.substr(0, close < message.size() ? open : message.npos);
    if (close >= message.size()) break;
    const std::string_view field = message.substr(open + 1, close - open - 1);
    size_t number = next++;
    if (!field.empty()) std::from_chars(field.data(), field.data() + field.size(), number);
    if (number < values.size()) out += values.begin()[number];
    message.remove_prefix(close + 1);
  }
  return out;
}

std::string ClassText(int code, Translation translated) {
  std::string text;
  for (const CodeClass& one : CodeClasses()) {
    const bool has = one.bit == 0 ? code <= 0xFF : (code & one.bit) != 0;
    if (!has) continue;
    text += text.empty() ? "" : "; ";
    text += Filled(translated(TR_TEXT("class {}: {}")),
                   {std::to_string(one.shown), std::string(translated(one.what))});
  }
  return text;
}

std::string CauseText(const CodeReading& reading, Translation translated) {
  const std::string result = std::to_string(reading.chain.front());
  std::string text;
  if (reading.kind == CodeReading::kClient) {
    text = Filled(translated(TR_TEXT("Result {} of the device, {}.")), {result, reading.name});
  } else if (reading.kind == CodeReading::kUnnamedClient) {
    text = Filled(translated(TR_TEXT("Result {} of the device.")), {result});
  } else if (reading.kind == CodeReading::kUnreachable) {
    text = translated(TR_TEXT("No answer of the device."));
  }
  if (!reading.cause.empty()) {
    text += text.empty() ? "" : " ";
    text += translated(reading.cause);
  }
  if (reading.chain.size() > 2) {
    std::string chain;
    for (const int step : reading.chain) {
      if (!chain.empty()) chain += " -> ";
      chain += std::to_string(step);
    }
    text += " ";
    text += Filled(translated(TR_TEXT("Passed twice: {}.")), {chain});
  }
  return text;
}

}  // namespace

std::vector<std::string> ExplainCode(long code, Translation translated) {
  if (code < std::numeric_limits<int>::min() || code > std::numeric_limits<int>::max()) return {};
  const int number = static_cast<int>(code);
  std::vector<std::string> texts;
  if (number > 0) texts.push_back(ClassText(number, translated));
  const size_t classes = texts.size();
  for (const CodeReading& reading : ReadCode(number)) {
    const std::string text = CauseText(reading, translated);
    if (text.empty()) continue;
    texts.push_back(texts.size() == classes ? text : Filled(translated(TR_TEXT("Or: {}")), {text}));
  }
  return texts;
}

}  // namespace language
