// Lines: what the model and the translator make of them, with the same definition file.

#include <cstring>
#include <memory>

#include "model/comparison.h"
#include "model/definitions.h"
#include "model/scratch_file.h"
#include "model/translator_model.h"
#include "model/translator_under_test.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

// The two beside each other, from one definition file on.
class Pair {
 public:
  Pair(Comparison& comparison, std::string file, char quote, char separator)
      : comparison_(comparison), file_(std::move(file)), lines_(definition_, quote, separator) {
    definition_.Read(file_, quote);
    translator_->SetQuoteChar(quote);
    translator_->SetSeparatorChar(separator);
    translator_->Read(file_, ScratchFile());
  }

  void Compare(const std::string& line) {
    const model::Lines::End end = lines_.Run(line);
    std::string buffer = line;
    const int answer = translator_->TradEcr(buffer.data());
    comparison_.Check(answer == Expected(end) && SameState(end), [&] {
      return "line " + Shown(line) + " with " + Shown(file_) + ": the model says " +
             std::to_string(Expected(end)) + Fields(false) + ", the translator " +
             std::to_string(answer) + Fields(true);
    });
  }

 private:
  int Expected(model::Lines::End end) const {
    switch (end) {
      case model::Lines::End::kNothing:
        return -2;
      case model::Lines::End::kBatch:
        return -1;
      case model::Lines::End::kReached:
        if (model::HasHandler(lines_.opcode())) return kReached + lines_.opcode();
        [[fallthrough]];
      default:
        return lines_.code();
    }
  }

  bool SameState(model::Lines::End end) const {
    const int opcode = end == model::Lines::End::kReached ? lines_.opcode() : 0;
    if (translator_->TStato.iCurOpCode != opcode) return false;
    for (int field = 1; field <= MAXCAMPI; ++field) {
      const char* value = translator_->szCampi[field];
      const auto expected = lines_.fields().find(field);
      if (expected == lines_.fields().end() ? value[0] != 0 : expected->second != value) {
        return false;
      }
      if (translator_->bCampiA[field] != lines_.quoted().contains(field)) return false;
    }
    if (end != model::Lines::End::kBatch) return true;
    const model::Lines::Operands& names = lines_.operands();
    return names.input == translator_->szFileIn && names.errors == translator_->szFileErr &&
           names.log == translator_->szFileLog &&
           (names.errors.empty() || names.errors + ".tmp" == translator_->szFileErrTmp);
  }

  std::string Fields(bool translators) const {
    std::string text;
    for (int field = 1; field <= MAXCAMPI; ++field) {
      const auto own = lines_.fields().find(field);
      const std::string value = translators                    ? translator_->szCampi[field]
                                : own == lines_.fields().end() ? ""
                                                               : own->second;
      if (!value.empty()) text += " #" + std::to_string(field) + "=" + Shown(value);
    }
    return text;
  }

  Comparison& comparison_;
  const std::string file_;
  model::Definition definition_;
  model::Lines lines_;
  std::unique_ptr<TranslatorUnderTest> translator_ = std::make_unique<TranslatorUnderTest>();
};

// What a line by chance is made of, beside names.
std::string ChancePiece(Comparison& comparison) {
  static const std::vector<std::string> pieces = {
      " ",  "  ", "\t", ",",    "=",  "'",   "''",  ";",   "#",  "@",  "6",  "7",    "60",
      "#6", "#7", "#1", "VERO", "-1", "1.5", "#40", "#41", "#0", "\n", "\r", "\xE8", "\x01"};
  if (comparison.Once(3)) return ChanceName(comparison);
  return comparison.Any(pieces);
}

std::string ChanceLine(Comparison& comparison) {
  std::string line;
  if (comparison.Once(20)) line += "@";
  // A number counts as far as a word does.
  if (comparison.Once(40)) line += "#" + std::string(comparison.Below(17), '0') + "67 ";
  if (!comparison.Once(5)) line += ChanceName(comparison) + " ";
  if (comparison.Once(2)) {
    // As a host writes them.
    const uint64_t fields = comparison.Below(6);
    for (uint64_t i = 0; i < fields; ++i) {
      line +=
          comparison.Once(4) ? "#" + std::to_string(comparison.Below(12)) : ChanceName(comparison);
      const uint64_t value = comparison.Below(5);
      if (value < 2) line += "=" + std::to_string(comparison.Below(100));
      if (value == 2) line += "='" + ChancePiece(comparison) + ChancePiece(comparison) + "'";
      if (value == 3) line += "=" + ChanceName(comparison);
      line += comparison.Once(3) ? ", " : ",";
    }
    if (!comparison.Once(6) && !line.empty()) line.pop_back();
    return line;
  }
  const uint64_t length = comparison.Below(24);
  for (uint64_t i = 0; i < length; ++i) line += ChancePiece(comparison);
  if (comparison.Once(300)) {
    // About as long as a line may be.
    const std::string filling(1, comparison.Any(std::string("A 6,;'=")));
    while (line.size() < 2040) line += filling;
    line.resize(2040 + comparison.Below(12), filling[0]);
  }
  return line;
}

}  // namespace

void CompareCleaning(Comparison& comparison, uint64_t most) {
  constexpr std::string_view kAlphabet = "A' ;\t\"\n";
  constexpr std::string_view kQuotes = "'\";A\n \t";
  size_t length = 0;
  for (const char quote : kQuotes) {
    length = EveryText(kAlphabet, most / kQuotes.size(), [&](const std::string& line) {
      std::string copy = line;
      std::string cleaned(line.size() + 1, '\0');
      const int size = lorimatutility::TogliCommento(cleaned.data(), copy.data(), quote);
      cleaned.resize(std::strlen(cleaned.data()));
      const std::string expected = model::Clean(line, quote);
      comparison.Check(cleaned == expected && size == static_cast<int>(expected.size()), [&] {
        return "cleaning " + Shown(line) + " with the quote " + Shown({&quote, 1}) +
               ": the model says " + Shown(expected) + ", the translator " + Shown(cleaned);
      });
    });
  }
  std::printf("every line of %zu characters of %zu cleaned, with %zu quotes\n", length,
              kAlphabet.size(), kQuotes.size());
}

void CompareEveryLine(Comparison& comparison, uint64_t most) {
  constexpr std::string_view kAlphabet = "A' =,B#6;7\tb@";
  const auto& definitions = SmallDefinitions();
  const uint64_t each = most / (2 * definitions.size());
  size_t lines = 0;
  size_t fields = 0;
  for (const std::string& definition : definitions) {
    Pair pair(comparison, definition, '\'', ',');
    lines = EveryText(kAlphabet, each, [&](const std::string& line) { pair.Compare(line); });
    // Behind a command that the file has, so that no time goes into commands that are not there.
    const std::string command = definition.find("AB") == std::string::npos ? "A " : "AB ";
    fields =
        EveryText(kAlphabet, each, [&](const std::string& line) { pair.Compare(command + line); });
  }
  std::printf(
      "every line of %zu characters and every one of %zu behind a command, of %zu, with %zu "
      "definition files\n",
      lines, fields, kAlphabet.size(), definitions.size());
}

void CompareChanceLines(Comparison& comparison, uint64_t most) {
  constexpr uint64_t kLinesOfAFile = 200;
  const uint64_t begin = comparison.count();
  while (comparison.count() - begin < most) {
    const char quote = comparison.Once(8) ? '"' : '\'';
    const char separator = comparison.Once(8) ? ';' : ',';
    const std::string definition =
        comparison.Once(3) ? comparison.Any(SmallDefinitions()) : ChanceDefinition(comparison);
    Pair pair(comparison, definition, quote, separator);
    for (uint64_t i = 0; i < kLinesOfAFile; ++i) pair.Compare(ChanceLine(comparison));
  }
  std::printf("lines by chance\n");
}
