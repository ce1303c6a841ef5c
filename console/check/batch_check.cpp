#include "console/check/batch_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "console/check/line_traps.h"
#include "console/message/shown_text.h"
#include "console/terminal/line_encoding.h"
#include "console/terminal/suggestion.h"
#include "language/handler_fields.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/front/opcodes.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

using Cause = FindingCause;

constexpr size_t kCandidatesShown = 8;

// The names that a shortened word may stand for.
FindingList Candidates(const std::string& word, const std::vector<std::string>& names) {
  FindingList fitting;
  for (const std::string& name : names) {
    const size_t length = std::min(name.size(), word.size());
    if (!SameIgnoringCase(name.c_str(), word.c_str(), length)) continue;
    fitting.uncounted = fitting.names.size() == kCandidatesShown;
    if (fitting.uncounted) break;
    fitting.names.push_back({name});
  }
  return fitting;
}

bool IsFieldNumber(int number) { return number >= 1 && number <= MAXCAMPI; }

// A line in the work of being checked: the text that the parser sees, and where it stood.
class LineCheck {
 public:
  LineCheck(const Language& language, const std::vector<CommandWord>& words,
            const std::vector<std::string>& symbols, Findings& findings, SequenceTraps& sequence,
            const KeptFiles* kept, WorkFolder& folder, const SourceLine& line, std::string cleaned,
            size_t dropped)
      : language_(language),
        words_(words),
        symbols_(symbols),
        findings_(findings),
        sequence_(sequence),
        kept_(kept),
        folder_(folder),
        line_(line),
        text_(std::move(cleaned)),
        dropped_(dropped) {}

  void Run() {
    if (text_.front() == '@') {
      return Add(Cause::kNestedBatch, 1);
    }
    int position = 1;
    const int failure = language_.translator().GetCodOp(text_.data(), &position, &opcode_);
    const std::string word = text_.substr(0, text_.find(' '));
    if (failure != 0) return RefuseCommand(word, failure);
    name_ = language_.CommandName(opcode_);
    if (name_.empty()) name_ = word;
    // The fields come first: the library looks for the command's handler behind them.
    if (!CheckFields(position)) return;
    if (FindHandler(opcode_) == nullptr) {
      return Add(Cause::kCommandUnsupported, 1, {word, opcode_});
    }
    FindLineTraps(language_, opcode_, name_, given_fields_,
                  [this](Finding finding) { Add(std::move(finding)); });
    if (kept_ != nullptr) CheckOutputs();
    sequence_.Take(opcode_, name_, {line_.number, 1 + dropped_, line_.text});
  }

 private:
  // The console would not send the line.
  void CheckOutputs() {
    const EcrCmdCommand& translator = language_.translator();
    for (const LineOutput& output : OutputsOf(translator, opcode_)) {
      const auto given = std::find_if(given_fields_.begin(), given_fields_.end(),
                                      [&](const auto& one) { return one.number == output.field; });
      if (given == given_fields_.end()) continue;
      std::optional<Finding> fault = OutputFault(folder_.descriptor(), output, given->key, *kept_);
      if (!fault) continue;
      fault->column = given->column;
      Add(std::move(*fault));
    }
    folder_.Follow(translator, opcode_);
  }

  // The column is one of the text.
  void Add(Finding finding) {
    finding.line = line_.number;
    finding.column += dropped_;
    finding.source = line_.text;
    findings_.Add(std::move(finding));
  }

  void Add(Cause cause, int position, std::vector<FindingArgument> arguments = {},
           std::string suggestion = {}) {
    Finding finding = MakeFinding(cause, std::move(arguments));
    finding.column = static_cast<uint64_t>(position);
    finding.suggestion = std::move(suggestion);
    Add(std::move(finding));
  }

  // What the parser answers with different codes.
  void AddFailure(Cause cause, int position, int failure) {
    Finding finding = MakeFinding(cause);
    finding.column = static_cast<uint64_t>(position);
    finding.code = CLASS_SYNTAX + failure;
    Add(std::move(finding));
  }

  void RefuseCommand(const std::string& word, int failure) {
    std::vector<std::string> names;
    for (const CommandWord& command : words_) names.push_back(command.name);
    if (failure == INSTRUCTION_NOT_UNIC) {
      Add(Cause::kCommandNotUnique, 1, {word, Candidates(word, names)});
    } else {
      Add(Cause::kCommandNotFound, 1, {word}, NearestWord(word, names));
    }
  }

  std::vector<std::string> field_names() const {
    for (const CommandWord& command : words_) {
      if (command.id != opcode_) continue;
      std::vector<std::string> names;
      for (const FieldWord& field : command.fields) names.push_back(field.name);
      return names;
    }
    return {};
  }

  // Field by field, in the steps of the parser, to know the place; the verdict on the line is
  // the parser's own.
  bool CheckFields(int position) {
    EcrCmdCommand& translator = language_.translator();
    int whole = position;
    const int verdict = translator.GetCampi(text_.data(), opcode_, &whole);
    std::array<char, MAXSIMBLN + 1> key{};
    std::array<char, MAXVALLN + 1> value{};
    while (text_[static_cast<size_t>(position) - 1] != 0) {
      lorimatutility::SkipSpace(text_.data(), &position);
      const int start = position;
      bool quoted = false;
      int number = 0;
      int failure = translator.GetOper(text_.data(), &position, key.data(), value.data(), &quoted);
      if (failure != 0) {
        RefuseValue(start, position, failure);
        return false;
      }
      failure = translator.GetNumOper(opcode_, key.data(), &number);
      if (failure == 0 && !IsFieldNumber(number)) failure = FIELD_NAME_NOT_FOUND;
      if (failure != 0) {
        RefuseField(key.data(), start, failure);
        return false;
      }
      TakeField(key.data(), value.data(), number, start, position, quoted);
    }
    if (verdict != 0) Add(Cause::kFieldMissing, 1, {name_, MissingFields()});
    return verdict == 0;
  }

  // The field began at start, and the next one begins at end.
  void TakeField(const std::string& key, const std::string& value, int number, int start, int end,
                 bool quoted) {
    if (given_[static_cast<size_t>(number)]) {
      Add(Cause::kFieldTwice, start, {key});
    }
    given_[static_cast<size_t>(number)] = true;
    const language::CommandFields* handler = language::find_handler_fields(opcode_);
    if (handler != nullptr && std::find(handler->fields.begin(), handler->fields.end(), number) ==
                                  handler->fields.end()) {
      Add(Cause::kFieldNotRead, start, {name_, key});
    }
    GivenField field = {number, key, value, "", quoted, "", static_cast<uint64_t>(start)};
    const std::string written = WrittenValue(start, end);
    if (quoted) {
      field.behind = BehindQuote(written);
    } else {
      field.written = written;
    }
    given_fields_.push_back(std::move(field));
  }

  // What stands behind the quote that closes a value.
  std::string BehindQuote(const std::string& written) const {
    const char quote = language_.translator().cChQuote;
    size_t at = 1;
    while (at < written.size() && (written[at] != quote || written[at + 1] == quote)) {
      at += written[at] == quote ? 2 : 1;
    }
    const size_t begin = written.find_first_not_of(' ', std::min(at + 1, written.size()));
    return begin == std::string::npos ? "" : written.substr(begin);
  }

  // What stands behind the "=" of a field.
  std::string WrittenValue(int start, int end) const {
    const size_t begin = static_cast<size_t>(start) - 1;
    std::string text = text_.substr(begin, static_cast<size_t>(end) - 1 - begin);
    text.resize(std::min(text.find('\0'), text.size()));
    const size_t equals = text.find('=');
    if (equals == std::string::npos) return {};
    text = text.substr(std::min(text.find_first_not_of("= ", equals), text.size()));
    while (!text.empty() && (text.back() == ' ' || text.back() == ',')) text.pop_back();
    return text;
  }

  FindingList MissingFields() const {
    const EcrCmdCommand& translator = language_.translator();
    FindingList missing;
    for (int row = 1; row <= MAXCAMPI; ++row) {
      if (translator.bObl[opcode_][row] && translator.szCampi[row][0] == 0) {
        missing.names.push_back({translator.szKeyI[opcode_][row]});
      }
    }
    return missing;
  }

  void RefuseField(const std::string& key, int start, int failure) {
    const std::vector<std::string> names = field_names();
    if (const GivenField* before = FieldBeforeDecimalComma(given_fields_, key)) {
      Add(Cause::kDecimalComma, start, {before->key, key},
          fmt::format("{}={}.{}", before->key, before->value, key));
    } else if (key.empty()) {
      AddFailure(Cause::kFieldWithoutName, start, failure);
    } else if (failure == FIELD_NAME_NOT_UNIC) {
      Add(Cause::kFieldNotUnique, start, {key, name_, Candidates(key, names)});
    } else if (names.empty()) {
      Add(Cause::kTakesNoFields, start, {name_});
    } else {
      Add(Cause::kFieldNotFound, start, {name_, key}, NearestWord(key, names));
    }
  }

  // The parser stopped at position; the field began at start.
  void RefuseValue(int start, int position, int failure) {
    switch (failure) {
      case ILLEGAL_FIELD_NAME:
        return Add(Cause::kQuoteInName, position);
      case LABEL_VALUE_NOT_FOUND:
        return RefuseSymbol(start);
      case ALFA_VALUE_INVALID:
        return Add(Cause::kBadQuote, position);
      case UNEXPECTED_END_OF_LINE:
        return Add(Cause::kLineEnds, position);
      default:
        AddFailure(Cause::kValueTooLong, start, failure);
    }
  }

  void RefuseSymbol(int start) {
    const size_t equals = text_.find('=', static_cast<size_t>(start) - 1);
    const size_t begin = text_.find_first_not_of("= ", equals);
    const size_t end = std::min(text_.find(',', begin), text_.find('\0', begin));
    std::string word = text_.substr(begin, end - begin);
    while (!word.empty() && word.back() == ' ') word.pop_back();
    const std::string near = NearestWord(word, symbols_);
    const bool case_only = !near.empty() && EqualsIgnoringCase(near.c_str(), word.c_str());
    const size_t blank = word.find(' ');
    const bool next_field =
        blank != std::string::npos && word.find('=', blank) != std::string::npos;
    Add(next_field  ? Cause::kCommaMissing
        : case_only ? Cause::kCapitalsCount
                    : Cause::kQuotesMissing,
        static_cast<int>(begin) + 1, {word}, near);
  }

  const Language& language_;
  const std::vector<CommandWord>& words_;
  const std::vector<std::string>& symbols_;
  Findings& findings_;
  SequenceTraps& sequence_;
  const KeptFiles* kept_;
  WorkFolder& folder_;
  const SourceLine& line_;
  std::string text_;
  size_t dropped_;  // characters in front of the text
  int opcode_ = 0;
  std::string name_;
  std::array<bool, MAXCAMPI + 1> given_{};
  std::vector<GivenField> given_fields_;
};

}  // namespace

BatchCheck::BatchCheck(const Language& language, Findings& findings, const KeptFiles* kept)
    : language_(language),
      findings_(findings),
      words_(language.commands()),
      symbols_(language.symbols()),
      sequence_(language, findings),
      kept_(kept) {}

// What the eye does not see. A line that is too long or holds a NUL byte is not looked at
// further: the library would not run what stands there.
void BatchCheck::CheckBytes(const SourceLine& line) {
  const auto add = [&](Cause cause, uint64_t column, std::vector<FindingArgument> arguments = {}) {
    Finding finding = MakeFinding(cause, std::move(arguments));
    finding.line = line.number;
    finding.column = column;
    if (column != 0) finding.source = line.text;
    findings_.Add(std::move(finding));
  };
  if (BeginsWithByteOrderMark(line.text)) add(Cause::kLineMark, 1);
  if (line.length > kLongestLine) add(Cause::kLineTooLong, 0, {line.length, kLongestLine});
  if (line.nul_at != 0) add(Cause::kNulInLine, line.nul_at);
  const size_t carriage_return = line.text.find('\r');
  if (carriage_return != std::string::npos) {
    add(Cause::kReturnInLine, carriage_return + 1);
  }
}

void BatchCheck::Take(const SourceLine& line) {
  ++lines_;
  CheckBytes(line);
  if (line.length > kLongestLine || line.nul_at != 0) {
    ++commands_;
    return;
  }
  // What stands behind the mark is looked at as well.
  const size_t mark = BeginsWithByteOrderMark(line.text) ? kByteOrderMark.size() : 0;
  std::string source = line.text.substr(mark);
  std::string cleaned(source.size() + 1, '\0');
  const int length =
      lorimatutility::TogliCommento(cleaned.data(), source.data(), language_.translator().cChQuote);
  if (length == 0 && mark == 0) return;
  ++commands_;
  if (length == 0) return;
  cleaned.resize(static_cast<size_t>(length));
  const size_t dropped = mark + source.find_first_not_of(" \t");
  LineCheck(language_, words_, symbols_, findings_, sequence_, kept_, folder_, line,
            std::move(cleaned), dropped)
      .Run();
}

}  // namespace lorimat::console
