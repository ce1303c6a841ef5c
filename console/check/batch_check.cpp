#include "console/check/batch_check.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>

#include "console/check/line_traps.h"
#include "console/message/text.h"
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
std::string candidates_text(const std::string& word, const std::vector<std::string>& names) {
  std::vector<std::string> fitting;
  for (const std::string& name : names) {
    const size_t length = std::min(name.size(), word.size());
    if (same_ignoring_case(name.c_str(), word.c_str(), length)) fitting.push_back(name);
  }
  const bool more = fitting.size() > kCandidatesShown;
  if (more) fitting.resize(kCandidatesShown);
  return fmt::format("{}{}", fmt::join(fitting, ", "), more ? tr(" and others") : "");
}

bool is_field_number(int number) { return number >= 1 && number <= MAXCAMPI; }

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

  void run() {
    if (text_.front() == '@') {
      add(Severity::kError, "nested-batch", 1, INVALID_BATCH_LINE,
          tr("a batch does not run inside a batch"));
      return;
    }
    int position = 1;
    const int failure = language_.translator().GetCodOp(text_.data(), &position, &opcode_);
    const std::string word = text_.substr(0, text_.find(' '));
    if (failure != 0) return refuse_command(word, failure);
    name_ = language_.command_name(opcode_);
    if (name_.empty()) name_ = word;
    // The fields come first: the library looks for the command's handler behind them.
    if (!check_fields(position)) return;
    if (find_handler(opcode_) == nullptr) {
      add(Severity::kError, "command-not-supported", 1, syntax_error(INSTRUCTION_NOT_SUPPORTED),
          tr("{} has the number {}, which is no command of the library", word, opcode_));
      return;
    }
    find_line_traps(language_, opcode_, name_, given_fields_,
                    [this](FoundTrap found, uint64_t column) { add(std::move(found), column); });
    sequence_.take(opcode_, name_, {line_.number, 1 + dropped_, line_.text});
  }

 private:
  void add(Severity severity, const char* rule, int position, int code, std::string what,
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
    findings_.add(std::move(finding));
  }

  void add(const FoundTrap& found, uint64_t column) {
    Finding finding = trap_finding(found);
    finding.line = line_.number;
    finding.column = column + dropped_;
    finding.source = line_.text;
    findings_.add(std::move(finding));
  }

  void refuse_command(const std::string& word, int failure) {
    std::vector<std::string> names;
    for (const CommandWord& command : words_) names.push_back(command.name);
    if (failure == INSTRUCTION_NOT_UNIC) {
      add(Severity::kError, "command-not-unique", 1, syntax_error(INSTRUCTION_NOT_UNIC),
          tr("'{}' fits more than one command: {}", word, candidates_text(word, names)));
    } else {
      add(Severity::kError, "command-not-found", 1, syntax_error(INSTRUCTION_NOT_FOUND),
          tr("no command is called '{}'", word), nearest_word(word, names));
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
  bool check_fields(int position) {
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
        refuse_value(start, position, failure);
        return false;
      }
      failure = translator.GetNumOper(opcode_, key.data(), &number);
      if (failure == 0 && !is_field_number(number)) failure = FIELD_NAME_NOT_FOUND;
      if (failure != 0) {
        refuse_field(key.data(), start, failure);
        return false;
      }
      take_field(key.data(), value.data(), number, start, position, quoted);
    }
    if (verdict != 0) {
      add(Severity::kError, "field-missing", 1, syntax_error(CAMPO_OBBLIGATORIO),
          tr("{} lacks a field that must be given: {}", name_, missing_fields()));
    }
    return verdict == 0;
  }

  // The field began at start, and the next one begins at end.
  void take_field(const std::string& key, const std::string& value, int number, int start, int end,
                  bool quoted) {
    if (given_[static_cast<size_t>(number)]) {
      add(Severity::kWarning, "field-twice", start, 0,
          tr("field {} is given twice; the last value counts", key));
    }
    given_[static_cast<size_t>(number)] = true;
    const language::CommandFields* handler = language::find_handler_fields(opcode_);
    if (handler != nullptr && std::find(handler->fields.begin(), handler->fields.end(), number) ==
                                  handler->fields.end()) {
      add(Severity::kWarning, "field-not-read", start, 0,
          tr("{} does not read field {}: it has no effect", name_, key));
    }
    GivenField field = {number, key, value, "", quoted, "", static_cast<uint64_t>(start)};
    const std::string written = written_value(start, end);
    if (quoted) {
      field.behind = behind_quote(written);
    } else {
      field.written = written;
    }
    given_fields_.push_back(std::move(field));
  }

  // What stands behind the quote that closes a value.
  std::string behind_quote(const std::string& written) const {
    const char quote = language_.translator().cChQuote;
    size_t at = 1;
    while (at < written.size() && (written[at] != quote || written[at + 1] == quote)) {
      at += written[at] == quote ? 2 : 1;
    }
    const size_t begin = written.find_first_not_of(' ', std::min(at + 1, written.size()));
    return begin == std::string::npos ? "" : written.substr(begin);
  }

  // What stands behind the "=" of a field.
  std::string written_value(int start, int end) const {
    const size_t begin = static_cast<size_t>(start) - 1;
    std::string text = text_.substr(begin, static_cast<size_t>(end) - 1 - begin);
    text.resize(std::min(text.find('\0'), text.size()));
    const size_t equals = text.find('=');
    if (equals == std::string::npos) return {};
    text = text.substr(std::min(text.find_first_not_of("= ", equals), text.size()));
    while (!text.empty() && (text.back() == ' ' || text.back() == ',')) text.pop_back();
    return text;
  }

  std::string missing_fields() const {
    const EcrCmdCommand& translator = language_.translator();
    std::vector<std::string> names;
    for (int row = 1; row <= MAXCAMPI; ++row) {
      if (translator.bObl[opcode_][row] && translator.szCampi[row][0] == 0) {
        names.emplace_back(translator.szKeyI[opcode_][row]);
      }
    }
    return fmt::format("{}", fmt::join(names, ", "));
  }

  void refuse_field(const std::string& key, int start, int failure) {
    const std::vector<std::string> names = field_names();
    if (const GivenField* before = field_before_decimal_comma(given_fields_, key)) {
      add({Trap::kDecimalComma,
           {before->key, key},
           fmt::format("{}={}.{}", before->key, before->value, key)},
          static_cast<uint64_t>(start));
    } else if (key.empty()) {
      add(Severity::kError, "field-without-name", start, CLASS_SYNTAX + failure,
          tr("a field without a name"));
    } else if (failure == FIELD_NAME_NOT_UNIC) {
      add(Severity::kError, "field-not-unique", start, syntax_error(FIELD_NAME_NOT_UNIC),
          tr("'{}' fits more than one field of {}: {}", key, name_, candidates_text(key, names)));
    } else if (names.empty()) {
      add(Severity::kError, "field-not-found", start, syntax_error(FIELD_NAME_NOT_FOUND),
          tr("{} takes no fields", name_));
    } else {
      add(Severity::kError, "field-not-found", start, syntax_error(FIELD_NAME_NOT_FOUND),
          tr("{} has no field '{}'", name_, key), nearest_word(key, names));
    }
  }

  // The parser stopped at position; the field began at start.
  void refuse_value(int start, int position, int failure) {
    const int code = CLASS_SYNTAX + failure;
    switch (failure) {
      case ILLEGAL_FIELD_NAME:
        add(Severity::kError, "quote-in-name", position, code,
            tr("a quote in a field's name; is the '=' missing?"));
        break;
      case LABEL_VALUE_NOT_FOUND:
        refuse_symbol(start, code);
        break;
      case ALFA_VALUE_INVALID:
        add(Severity::kError, "bad-quote", position, code,
            tr("this quote is not closed, or stands behind the beginning of the value"));
        break;
      case UNEXPECTED_END_OF_LINE:
        add(Severity::kError, "line-ends", position, code,
            tr("the line ends where a field is due"));
        break;
      default:
        add(Severity::kError, "bad-value", start, code, tr("the value is too long"));
        break;
    }
  }

  void refuse_symbol(int start, int code) {
    const size_t equals = text_.find('=', static_cast<size_t>(start) - 1);
    const size_t begin = text_.find_first_not_of("= ", equals);
    const size_t end = std::min(text_.find(',', begin), text_.find('\0', begin));
    std::string word = text_.substr(begin, end - begin);
    while (!word.empty() && word.back() == ' ') word.pop_back();
    const std::string near = nearest_word(word, symbols_);
    const bool case_only = !near.empty() && equals_ignoring_case(near.c_str(), word.c_str());
    const size_t blank = word.find(' ');
    const bool next_field =
        blank != std::string::npos && word.find('=', blank) != std::string::npos;
    add(Severity::kError, "value-not-found", static_cast<int>(begin) + 1, code,
        tr("'{}' is no word for a value; {}", word,
           next_field  ? tr("is a comma missing?")
           : case_only ? tr("capitals count")
                       : tr("a text needs quotes")),
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
      sequence_(language, [&findings](FoundTrap found, const LinePlace& place) {
        Finding finding = trap_finding(found);
        finding.line = place.line;
        finding.column = place.column;
        finding.source = place.source;
        findings.add(std::move(finding));
      }) {}

// What the eye does not see. A line that is too long or holds a NUL byte is not looked at
// further: the library would not run what stands there.
void BatchCheck::check_bytes(const SourceLine& line) {
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
    findings_.add(std::move(finding));
  };
  if (begins_with_byte_order_mark(line.text)) {
    add("byte-order-mark", 1, syntax_error(INSTRUCTION_NOT_FOUND),
        tr("the line begins with a byte order mark"),
        tr("the library takes it for a part of the line, and finds no command"));
  }
  if (line.length > kLongestLine) {
    add("line-too-long", 0, syntax_error(SOURCE_LINE_TOO_LONG),
        tr("the line has {} characters, more than {}", line.length, kLongestLine));
  }
  if (line.nul_at != 0) {
    add("nul-byte", line.nul_at, 0, tr("a NUL byte: the library reads the line only up to there"));
  }
  const size_t carriage_return = line.text.find('\r');
  if (carriage_return != std::string::npos) {
    add("bare-carriage-return", carriage_return + 1, 0,
        tr("a carriage return that ends no line: what follows belongs to the same line"));
  }
}

void BatchCheck::take(const SourceLine& line) {
  ++lines_;
  check_bytes(line);
  if (line.length > kLongestLine || line.nul_at != 0) {
    ++commands_;
    return;
  }
  // What stands behind the mark is looked at as well.
  const size_t mark = begins_with_byte_order_mark(line.text) ? kByteOrderMark.size() : 0;
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
      .run();
}

}  // namespace lorimat::console
