#include "console/check/batch_check.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "console/check/line_traps.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
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

constexpr size_t kCandidatesShown = 8;

// The names that a shortened word may stand for.
std::string CandidatesText(const std::string& word, const std::vector<std::string>& names) {
  std::vector<std::string> fitting;
  for (const std::string& name : names) {
    const size_t length = std::min(name.size(), word.size());
    if (SameIgnoringCase(name.c_str(), word.c_str(), length)) fitting.push_back(name);
  }
  const bool more = fitting.size() > kCandidatesShown;
  if (more) fitting.resize(kCandidatesShown);
  return fmt::format("{}{}", fmt::join(fitting, ", "), more ? Tr(" and others") : "");
}

bool IsFieldNumber(int number) { return number >= 1 && number <= MAXCAMPI; }

// A line in the work of being checked: the text that the parser sees, and where it stood.
class LineCheck {
 public:
  LineCheck(const Language& language, const std::vector<CommandWord>& words,
            const std::vector<std::string>& symbols, Findings& findings, SequenceTraps& sequence,
            const SourceLine& line, std::string cleaned, size_t dropped)
      : language_(language),
        words_(words),
        symbols_(symbols),
        findings_(findings),
        sequence_(sequence),
        line_(line),
        text_(std::move(cleaned)),
        dropped_(dropped) {}

  void Run() {
    if (text_.front() == '@') {
      Add(Severity::kError, "nested-batch", 1, INVALID_BATCH_LINE,
          Tr("a batch does not run inside a batch"));
      return;
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
      Add(Severity::kError, "command-not-supported", 1, SyntaxError(INSTRUCTION_NOT_SUPPORTED),
          Tr("{} has the number {}, which is no command of the library", word, opcode_));
      return;
    }
    FindLineTraps(language_, opcode_, name_, given_fields_,
                  [this](const FoundTrap& found, uint64_t column) { Add(found, column); });
    sequence_.Take(opcode_, name_, {line_.number, 1 + dropped_, line_.text});
  }

 private:
  void Add(Severity severity, const char* rule, int position, int code, std::string what,
           std::string suggestion = {}) {
    Finding finding;
    finding.severity = severity;
    finding.rule = rule;
    finding.line = line_.number;
    finding.column = static_cast<uint64_t>(position) + dropped_;
    finding.code = code;
    finding.what = std::move(what);
    finding.suggestion = std::move(suggestion);
    finding.source = line_.text;
    findings_.Add(std::move(finding));
  }

  void Add(const FoundTrap& found, uint64_t column) {
    Finding finding = TrapFinding(found);
    finding.line = line_.number;
    finding.column = column + dropped_;
    finding.source = line_.text;
    findings_.Add(std::move(finding));
  }

  void RefuseCommand(const std::string& word, int failure) {
    std::vector<std::string> names;
    for (const CommandWord& command : words_) names.push_back(command.name);
    if (failure == INSTRUCTION_NOT_UNIC) {
      Add(Severity::kError, "command-not-unique", 1, SyntaxError(INSTRUCTION_NOT_UNIC),
          Tr("'{}' fits more than one command: {}", word, CandidatesText(word, names)));
    } else {
      Add(Severity::kError, "command-not-found", 1, SyntaxError(INSTRUCTION_NOT_FOUND),
          Tr("no command is called '{}'", word), NearestWord(word, names));
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
    if (verdict != 0) {
      Add(Severity::kError, "field-missing", 1, SyntaxError(CAMPO_OBBLIGATORIO),
          Tr("{} lacks a field that must be given: {}", name_, MissingFields()));
    }
    return verdict == 0;
  }

  // The field began at start, and the next one begins at end.
  void TakeField(const std::string& key, const std::string& value, int number, int start, int end,
                 bool quoted) {
    if (given_[static_cast<size_t>(number)]) {
      Add(Severity::kWarning, "field-twice", start, 0,
          Tr("field {} is given twice; the last value counts", key));
    }
    given_[static_cast<size_t>(number)] = true;
    const language::CommandFields* handler = language::find_handler_fields(opcode_);
    if (handler != nullptr && std::find(handler->fields.begin(), handler->fields.end(), number) ==
                                  handler->fields.end()) {
      Add(Severity::kWarning, "field-not-read", start, 0,
          Tr("{} does not read field {}: it has no effect", name_, key));
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

  std::string MissingFields() const {
    const EcrCmdCommand& translator = language_.translator();
    std::vector<std::string> names;
    for (int row = 1; row <= MAXCAMPI; ++row) {
      if (translator.bObl[opcode_][row] && translator.szCampi[row][0] == 0) {
        names.emplace_back(translator.szKeyI[opcode_][row]);
      }
    }
    return fmt::format("{}", fmt::join(names, ", "));
  }

  void RefuseField(const std::string& key, int start, int failure) {
    const std::vector<std::string> names = field_names();
    if (const GivenField* before = FieldBeforeDecimalComma(given_fields_, key)) {
      Add({Trap::kDecimalComma,
           {before->key, key},
           fmt::format("{}={}.{}", before->key, before->value, key)},
          static_cast<uint64_t>(start));
    } else if (key.empty()) {
      Add(Severity::kError, "field-without-name", start, CLASS_SYNTAX + failure,
          Tr("a field without a name"));
    } else if (failure == FIELD_NAME_NOT_UNIC) {
      Add(Severity::kError, "field-not-unique", start, SyntaxError(FIELD_NAME_NOT_UNIC),
          Tr("'{}' fits more than one field of {}: {}", key, name_, CandidatesText(key, names)));
    } else if (names.empty()) {
      Add(Severity::kError, "field-not-found", start, SyntaxError(FIELD_NAME_NOT_FOUND),
          Tr("{} takes no fields", name_));
    } else {
      Add(Severity::kError, "field-not-found", start, SyntaxError(FIELD_NAME_NOT_FOUND),
          Tr("{} has no field '{}'", name_, key), NearestWord(key, names));
    }
  }

  // The parser stopped at position; the field began at start.
  void RefuseValue(int start, int position, int failure) {
    const int code = CLASS_SYNTAX + failure;
    switch (failure) {
      case ILLEGAL_FIELD_NAME:
        Add(Severity::kError, "quote-in-name", position, code,
            Tr("a quote in a field's name; is the '=' missing?"));
        break;
      case LABEL_VALUE_NOT_FOUND:
        RefuseSymbol(start, code);
        break;
      case ALFA_VALUE_INVALID:
        Add(Severity::kError, "bad-quote", position, code,
            Tr("this quote is not closed, or stands behind the beginning of the value"));
        break;
      case UNEXPECTED_END_OF_LINE:
        Add(Severity::kError, "line-ends", position, code,
            Tr("the line ends where a field is due"));
        break;
      default:
        Add(Severity::kError, "bad-value", start, code, Tr("the value is too long"));
        break;
    }
  }

  void RefuseSymbol(int start, int code) {
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
    Add(Severity::kError, "value-not-found", static_cast<int>(begin) + 1, code,
        Tr("'{}' is no word for a value; {}", word,
           next_field  ? Tr("is a comma missing?")
           : case_only ? Tr("capitals count")
                       : Tr("a text needs quotes")),
        near);
  }

  const Language& language_;
  const std::vector<CommandWord>& words_;
  const std::vector<std::string>& symbols_;
  Findings& findings_;
  SequenceTraps& sequence_;
  const SourceLine& line_;
  std::string text_;
  size_t dropped_;  // characters in front of the text
  int opcode_ = 0;
  std::string name_;
  std::array<bool, MAXCAMPI + 1> given_{};
  std::vector<GivenField> given_fields_;
};

}  // namespace

BatchCheck::BatchCheck(const Language& language, Findings& findings)
    : language_(language),
      findings_(findings),
      words_(language.commands()),
      symbols_(language.symbols()),
      sequence_(language, [&findings](const FoundTrap& found, const LinePlace& place) {
        Finding finding = TrapFinding(found);
        finding.line = place.line;
        finding.column = place.column;
        finding.source = place.source;
        findings.Add(std::move(finding));
      }) {}

// What the eye does not see. A line that is too long or holds a NUL byte is not looked at
// further: the library would not run what stands there.
void BatchCheck::CheckBytes(const SourceLine& line) {
  const auto add = [&](const char* rule, uint64_t column, int code, std::string what,
                       std::string effect = {}) {
    Finding finding;
    finding.rule = rule;
    finding.line = line.number;
    finding.column = column;
    finding.code = code;
    finding.what = std::move(what);
    finding.effect = std::move(effect);
    if (column != 0) finding.source = line.text;
    findings_.Add(std::move(finding));
  };
  if (BeginsWithByteOrderMark(line.text)) {
    add("byte-order-mark", 1, SyntaxError(INSTRUCTION_NOT_FOUND),
        Tr("the line begins with a byte order mark"),
        Tr("the library takes it for a part of the line, and finds no command"));
  }
  if (line.length > kLongestLine) {
    add("line-too-long", 0, SyntaxError(SOURCE_LINE_TOO_LONG),
        Tr("the line has {} characters, more than {}", line.length, kLongestLine));
  }
  if (line.nul_at != 0) {
    add("nul-byte", line.nul_at, 0, Tr("a NUL byte: the library reads the line only up to there"));
  }
  const size_t carriage_return = line.text.find('\r');
  if (carriage_return != std::string::npos) {
    add("bare-carriage-return", carriage_return + 1, 0,
        Tr("a carriage return that ends no line: what follows belongs to the same line"));
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
  LineCheck(language_, words_, symbols_, findings_, sequence_, line, std::move(cleaned), dropped)
      .Run();
}

}  // namespace lorimat::console
