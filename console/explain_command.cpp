#include "explain_command.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <charconv>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "code_table.h"
#include "failure.h"
#include "json_text.h"
#include "message_texts.h"
#include "text.h"

namespace {

constexpr int kClassMask = 0xFFFF00;
constexpr int kIndexMask = 0xFF;
constexpr size_t kWrapAt = 78;
constexpr size_t kIndent = 10;

std::optional<int64_t> whole_number(std::string_view text) {
  int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// "265", or "1/9" as an answer shows it.
int parse_code(const std::string& text) {
  const size_t slash = text.find('/');
  std::optional<int64_t> number;
  if (slash == std::string::npos) {
    number = whole_number(text);
  } else {
    const std::optional<int64_t> shown_class = whole_number(text.substr(0, slash));
    const std::optional<int64_t> index = whole_number(text.substr(slash + 1));
    if (shown_class && index && *shown_class >= 0 && *shown_class <= (kClassMask >> 8) &&
        *index >= 0 && *index <= kIndexMask) {
      number = *shown_class << 8 | *index;
    }
  }
  if (!number || *number < std::numeric_limits<int32_t>::min() ||
      *number > std::numeric_limits<int32_t>::max()) {
    throw Failure(fmt::format(
        "{}: is no result code; give a number such as 265, or class and index such as 1/9",
        shown(text, 60)));
  }
  return static_cast<int>(*number);
}

struct Explanation {
  int code = 0;
  int class_shown = 0;
  int index = 0;
  std::vector<CodeClass> classes;  // one for each bit that is a class
  std::string text;
  std::vector<CodeReading> readings;
};

Explanation explain(int code, MessageTexts& texts) {
  Explanation explanation;
  explanation.code = code;
  explanation.class_shown = (code & kClassMask) >> 8;
  explanation.index = code & kIndexMask;
  // A negative code is no sum of bits.
  if (code > 0) {
    for (const CodeClass& one : code_classes()) {
      const bool has = one.bit == 0 ? (code & kClassMask) == 0 : (code & one.bit) != 0;
      if (has) explanation.classes.push_back(one);
    }
  }
  explanation.readings = read_code(code);
  // The inner signs are answered as if they were success.
  const bool inner = code == -1 || code == -2;
  if (!inner) explanation.text = texts.answer(code);
  return explanation;
}

// --- As text.

std::string wrapped(std::string_view text) {
  std::string out;
  size_t column = kIndent;
  while (!text.empty()) {
    const size_t blank = text.find(' ');
    const std::string_view word = text.substr(0, blank);
    if (column > kIndent && column + 1 + word.size() > kWrapAt) {
      out += "\n" + std::string(kIndent, ' ');
      column = kIndent;
    } else if (column > kIndent) {
      out += ' ';
      ++column;
    }
    out += word;
    column += word.size();
    text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
  }
  return out;
}

std::string origin(const CodeReading& reading) {
  const int begin = reading.chain.front();
  switch (reading.kind) {
    case CodeReading::kSuccess:
      return "success";
    case CodeReading::kInternal:
      return "outside the scheme of classes";
    case CodeReading::kOwn:
      return reading.given ? "given by the library" : "not given by this library";
    case CodeReading::kOwnAgain:
      return fmt::format("the library's own code {}, then taken for a result of the device client",
                         begin);
    case CodeReading::kUnreachable:
      return "no answer of the device client (-1)";
    case CodeReading::kClient:
      return fmt::format("result {} of the device client, {}", begin, reading.name);
    case CodeReading::kUnnamedClient:
      return fmt::format("result {} of the device client", begin);
  }
  return {};
}

std::string passes(const CodeReading& reading) {
  if (reading.chain.size() < 2 || reading.kind == CodeReading::kOwnAgain) return {};
  if (reading.chain.size() > 2) {
    return fmt::format("passed twice: {}", fmt::join(reading.chain, " -> "));
  }
  return reading.once_or_more ? "passed once or twice, which gives the same" : "passed once";
}

std::string as_text(const Explanation& explanation) {
  std::string out;
  if (explanation.code > 0) {
    out += fmt::format("{}: class {}, index {}\n", explanation.code, explanation.class_shown,
                       explanation.index);
  } else {
    out += fmt::format("{}\n", explanation.code);
  }
  if (!explanation.text.empty()) {
    out += fmt::format("  Text    \"{}\"\n", shown(explanation.text));
  }
  for (const CodeClass& one : explanation.classes) {
    out += fmt::format("  Class   {}: {}\n", one.shown, one.what);
  }
  if (explanation.classes.size() > 1) {
    out += "          " +
           wrapped(
               "Bits of several classes: no table of texts belongs to them, so "
               "the answer ends behind the numbers.") +
           "\n";
  }
  for (const CodeReading& reading : explanation.readings) {
    out += fmt::format("  From    {}\n", wrapped(origin(reading)));
    for (const std::string& line : {passes(reading), reading.cause}) {
      if (!line.empty()) out += fmt::format("          {}\n", wrapped(line));
    }
  }
  if (explanation.readings.empty()) {
    out += "  From    nothing that is known: the library does not give this code\n";
  }
  return out;
}

// --- As JSON.

const char* kind_name(CodeReading::Kind kind) {
  switch (kind) {
    case CodeReading::kSuccess:
      return "success";
    case CodeReading::kInternal:
      return "internal";
    case CodeReading::kOwn:
      return "library";
    case CodeReading::kOwnAgain:
      return "library-as-client";
    case CodeReading::kUnreachable:
      return "no-client";
    case CodeReading::kClient:
      return "client";
    case CodeReading::kUnnamedClient:
      return "client-unnamed";
  }
  return "";
}

Json as_json(const Explanation& explanation) {
  Json classes = Json::array();
  for (const CodeClass& one : explanation.classes) {
    classes.push_back({{"class", one.shown}, {"means", one.what}});
  }
  Json readings = Json::array();
  for (const CodeReading& reading : explanation.readings) {
    Json one = {{"kind", kind_name(reading.kind)},
                {"chain", reading.chain},
                {"given", reading.given},
                {"cause", reading.cause}};
    if (!reading.name.empty()) one["name"] = reading.name;
    readings.push_back(std::move(one));
  }
  Json out = {{"code", explanation.code}, {"text", explanation.text}};
  if (explanation.code >= 0) {
    out["class"] = explanation.class_shown;
    out["index"] = explanation.index;
  }
  out["classes"] = std::move(classes);
  out["readings"] = std::move(readings);
  return out;
}

}  // namespace

int explain_command(const ExplainOptions& options, Streams& streams) {
  std::vector<int> codes;
  for (const std::string& text : options.codes) codes.push_back(parse_code(text));
  MessageTexts texts;
  Json all = Json::array();
  std::string out;
  bool unknown = false;
  for (const int code : codes) {
    const Explanation explanation = explain(code, texts);
    unknown = unknown || explanation.readings.empty();
    if (options.json) {
      all.push_back(as_json(explanation));
    } else {
      if (!out.empty()) out += "\n";
      out += as_text(explanation);
    }
  }
  streams.output(options.json ? json_text(all) : out);
  return unknown ? kExitFaults : kExitGood;
}
