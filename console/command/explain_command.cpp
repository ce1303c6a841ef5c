// "lorimat explain": what a result code is, and what causes it.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "console/command/subcommand.h"
#include "console/host/answer_text.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/message_texts.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"
#include "language/code_table.h"

namespace lorimat::console {
namespace {

struct ExplainOptions {
  // Decimal, as an answer shows them ("1/9"), or whole answers, whose words may be apart.
  std::vector<std::string> codes;
  bool json = false;
};

constexpr std::string_view kExplainExamples = TR_TEXT(R"(Examples:
  lorimat explain 265
      Class, index, text and cause of a result code.
  lorimat explain 6/107 1231
      Several codes; the first as an answer shows it, class and index.
  lorimat explain "ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND"
      An answer as it was read somewhere; the quotes may be left out.
  lorimat explain --json 1643
      The same for a program.

A code of the device client bears the bit of a class, and some commands add it twice: 107 (no
hardware) reads 619 once and 1643 twice. The answer shows the bits as a sum, 6 for 2 and 4.

Exit codes:
  0  every code was explained
  1  a code is none that the library gives
  2  wrong use, or a text that is no code
)");

constexpr size_t kWrapAt = 78;

// What was pasted, line by line, without the blanks and quotes around it.
std::vector<std::string> PastedLines(const std::vector<std::string>& arguments) {
  constexpr const char* kAround = " \t\r\"'";
  std::vector<std::string> lines;
  for (const std::string& argument : arguments) {
    std::istringstream text(argument);
    bool empty = true;
    for (std::string line; std::getline(text, line);) {
      const size_t first = line.find_first_not_of(kAround);
      if (first == std::string::npos) continue;
      lines.push_back(line.substr(first, line.find_last_not_of(kAround) - first + 1));
      empty = false;
    }
    if (empty) lines.push_back(argument);
  }
  return lines;
}

// The codes that the arguments name: numbers, and answers as they were pasted, in quotes or without
// them. Throws Failure for a text that is neither.
std::vector<int> ReadCodes(const std::vector<std::string>& given, MessageTexts& texts) {
  const std::vector<std::string> arguments = PastedLines(given);
  std::vector<int> codes;
  for (size_t i = 0; i < arguments.size(); ++i) {
    if (const std::optional<int> number = ReadCodeNumber(arguments[i])) {
      codes.push_back(*number);
      continue;
    }
    std::vector<int> pasted = CodesInAnswer(arguments[i], texts);
    if (pasted.empty()) {
      // Without quotes the words of an answer are arguments each.
      const auto rest = arguments.begin() + static_cast<std::ptrdiff_t>(i);
      pasted = CodesInAnswer(fmt::format("{}", fmt::join(rest, arguments.end(), " ")), texts);
      if (pasted.empty()) {
        throw Failure(
            Tr("{}: is no result code; give a number such as 265, class and index such "
               "as 1/9, or the text of an answer",
               Shown(arguments[i], 60)));
      }
      i = arguments.size();
    }
    codes.insert(codes.end(), pasted.begin(), pasted.end());
  }
  return codes;
}

struct Explanation {
  int code = 0;
  int class_shown = 0;
  int index = 0;
  std::vector<language::CodeClass> classes;  // one for each bit that is a class
  std::string text;
  std::vector<language::CodeReading> readings;
};

Explanation Explain(int code, MessageTexts& texts) {
  Explanation explanation;
  explanation.code = code;
  explanation.class_shown = (code & kCodeClassMask) >> 8;
  explanation.index = code & kCodeIndexMask;
  // A negative code is no sum of bits.
  if (code > 0) {
    for (const language::CodeClass& one : language::CodeClasses()) {
      const bool has = one.bit == 0 ? (code & kCodeClassMask) == 0 : (code & one.bit) != 0;
      if (has) explanation.classes.push_back(one);
    }
  }
  explanation.readings = language::ReadCode(code);
  // The inner signs are answered as if they were success.
  const bool inner = code == -1 || code == -2;
  if (!inner) explanation.text = texts.Answer(code);
  return explanation;
}

// --- As text.

// The column of the texts, behind the longest heading of the user's language.
size_t IndentOfTexts() {
  constexpr size_t kLeast = 10;
  size_t indent = kLeast;
  for (const std::string& heading : {Tr("Text"), Tr("Class"), Tr("From")}) {
    indent = std::max(indent, ColumnsOf(heading) + 3);
  }
  return indent;
}

std::string Wrapped(std::string_view text) {
  const size_t indent = IndentOfTexts();
  return Flowed(text, indent, indent, kWrapAt);
}

std::string Origin(const language::CodeReading& reading) {
  const int begin = reading.chain.front();
  switch (reading.kind) {
    case language::CodeReading::kSuccess:
      return Tr("success");
    case language::CodeReading::kInternal:
      return Tr("outside the scheme of classes");
    case language::CodeReading::kOwn:
      return reading.given ? Tr("given by the library") : Tr("not given by this library");
    case language::CodeReading::kOwnAgain:
      return Tr("the library's own code {}, then taken for a result of the device client", begin);
    case language::CodeReading::kUnreachable:
      return Tr("no answer of the device client (-1)");
    case language::CodeReading::kClient:
      return Tr("result {} of the device client, {}", begin, reading.name);
    case language::CodeReading::kUnnamedClient:
      return Tr("result {} of the device client", begin);
    case language::CodeReading::kConsole:
      return Tr("given by the console, in the place of the device");
  }
  return {};
}

std::string Passes(const language::CodeReading& reading) {
  if (reading.chain.size() < 2 || reading.kind == language::CodeReading::kOwnAgain) return {};
  if (reading.chain.size() > 2) {
    return Tr("passed twice: {}", fmt::join(reading.chain, " -> "));
  }
  return reading.once_or_more ? Tr("passed once or twice, which gives the same")
                              : Tr("passed once");
}

// A line of the explanation, with its heading in front.
std::string Entry(std::string_view heading, std::string_view text, bool colours) {
  const std::string blanks(IndentOfTexts() - 2 - ColumnsOf(heading), ' ');
  return fmt::format("  {}{}{}\n", Styled(heading, Style::kStrong, colours), blanks, text);
}

std::string Continuation(std::string_view text) {
  return std::string(IndentOfTexts(), ' ') + Wrapped(text) + "\n";
}

std::string AsText(const Explanation& explanation, bool colours) {
  const std::string begin = explanation.code > 0 ? Tr("{}: class {}, index {}", explanation.code,
                                                      explanation.class_shown, explanation.index)
                                                 : std::to_string(explanation.code);
  std::string out = Styled(begin, Style::kStrong, colours) + "\n";
  if (!explanation.text.empty()) {
    out += Entry(Tr("Text"), fmt::format("\"{}\"", Shown(explanation.text)), colours);
  }
  for (const language::CodeClass& one : explanation.classes) {
    out += Entry(Tr("Class"), Wrapped(fmt::format("{}: {}", one.shown, Translated(one.what))),
                 colours);
  }
  if (explanation.classes.size() > 1) {
    out += Continuation(
        Tr("Bits of several classes: no table of texts belongs to them, so the answer ends behind "
           "the numbers."));
  }
  for (const language::CodeReading& reading : explanation.readings) {
    out += Entry(Tr("From"), Wrapped(Origin(reading)), colours);
    const std::string passed = Passes(reading);
    if (!passed.empty()) out += Continuation(passed);
    if (!reading.cause.empty()) out += Continuation(Translated(reading.cause));
    if (!reading.way_out.empty()) out += Continuation(Translated(reading.way_out));
  }
  if (explanation.readings.empty()) {
    out += Entry(Tr("From"), Tr("nothing that is known: the library does not give this code"),
                 colours);
  }
  return out;
}

// --- As JSON.

const char* KindName(language::CodeReading::Kind kind) {
  switch (kind) {
    case language::CodeReading::kSuccess:
      return "success";
    case language::CodeReading::kInternal:
      return "internal";
    case language::CodeReading::kOwn:
      return "library";
    case language::CodeReading::kOwnAgain:
      return "library-as-client";
    case language::CodeReading::kUnreachable:
      return "no-client";
    case language::CodeReading::kClient:
      return "client";
    case language::CodeReading::kUnnamedClient:
      return "client-unnamed";
    case language::CodeReading::kConsole:
      return "console";
  }
  return "";
}

Json AsJson(const Explanation& explanation) {
  Json classes = Json::array();
  for (const language::CodeClass& one : explanation.classes) {
    classes.push_back({{"class", one.shown}, {"means", one.what}});
  }
  Json readings = Json::array();
  for (const language::CodeReading& reading : explanation.readings) {
    Json one = {{"kind", KindName(reading.kind)},
                {"chain", reading.chain},
                {"given", reading.given},
                {"cause", reading.cause}};
    if (!reading.name.empty()) one["name"] = reading.name;
    if (!reading.way_out.empty()) one["way_out"] = reading.way_out;
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

void AddOptions(CLI::App* explain, ExplainOptions* options) {
  explain
      ->add_option("CODE", options->codes,
                   Tr("Result codes: 265, 1/9 as an answer shows it, or the text of an answer"))
      ->required();
  explain->add_flag("--json", options->json, Tr("Write JSON"));
}

// Returns kExitGood, or kExitFaults when a code is none that the library can give. Throws Failure
// for a text that is no code.
int ExplainCommand(const ExplainOptions& options, Streams& streams) {
  MessageTexts texts;
  const std::vector<int> codes = ReadCodes(options.codes, texts);
  Json all = Json::array();
  std::string out;
  bool unknown = false;
  for (const int code : codes) {
    const Explanation explanation = Explain(code, texts);
    unknown = unknown || explanation.readings.empty();
    if (options.json) {
      all.push_back(AsJson(explanation));
    } else {
      if (!out.empty()) out += "\n";
      out += AsText(explanation, streams.output_has_colours());
    }
  }
  streams.Output(options.json ? JsonText(all) : out);
  return unknown ? kExitFaults : kExitGood;
}

}  // namespace

const Subcommand kExplainSubcommand = {
    "explain", HelpGroup::kLookIntoLines, TR_TEXT("Tell what a result code is and what causes it"),
    kExplainExamples, &Prepare<ExplainOptions, AddOptions, ExplainCommand>};

}  // namespace lorimat::console
