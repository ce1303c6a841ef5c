#include "console/shell/shell_completion.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "language/command_help.h"
#include "language/field_kinds.h"
#include "pal/protocols/lorimat/ascii.h"

namespace lorimat::console {
namespace {

constexpr char kQuote = '\'';
constexpr size_t kMostFiles = 10000;  // that are looked at in a folder

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

size_t SkipBlanks(std::string_view text, size_t at) {
  while (at < text.size() && IsBlank(text[at])) ++at;
  return at;
}

bool BeginsLike(const std::string& name, std::string_view start) {
  return name.size() >= start.size() &&
         SameIgnoringCase(name.c_str(), std::string(start).c_str(), start.size());
}

std::string_view WithoutBlanksBehind(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

// Where the operand of an "@" line begins in which the text ends.
size_t OperandBegin(std::string_view text, size_t at) {
  size_t begin = SkipBlanks(text, at);
  bool quoted = false;
  for (; at < text.size(); ++at) {
    if (text[at] == kQuote) quoted = !quoted;
    if (text[at] == ',' && !quoted) begin = SkipBlanks(text, at + 1);
  }
  return begin;
}

// A quoted operand, or one being quoted, as plain text.
std::string Unquoted(std::string_view operand) {
  if (operand.empty() || operand.front() != kQuote) return std::string(operand);
  std::string path;
  for (size_t at = 1; at < operand.size(); ++at) {
    if (operand[at] == kQuote) ++at;
    if (at < operand.size()) path += operand[at];
  }
  return path;
}

std::string AsOperand(const std::string& path, bool quote, bool folder) {
  if (!quote && path.find_first_of("',; \t") == std::string::npos) return path;
  std::string out(1, kQuote);
  for (const char c : path) {
    if (c == kQuote) out += kQuote;
    out += c;
  }
  if (!folder) out += kQuote;
  return out;
}

// The text cut into fields, up to its end: where the last one begins, and what is in front.
struct FieldPlace {
  size_t begin = 0;
  size_t equals = std::string_view::npos;  // of the last field
  bool quoted = false;                     // the text ends inside quotes
  bool comment = false;                    // or in a comment
  std::vector<std::string> keys;           // of the fields in front
};

FieldPlace FindFieldPlace(std::string_view text, size_t at) {
  FieldPlace place;
  place.begin = SkipBlanks(text, at);
  for (; at < text.size() && !place.comment; ++at) {
    const char c = text[at];
    if (c == kQuote) {
      place.quoted = !place.quoted;
    } else if (place.quoted) {
      continue;
    } else if (c == ';') {
      place.comment = true;
    } else if (c == '=' && place.equals == std::string_view::npos) {
      place.equals = at;
    } else if (c == ',') {
      const size_t end = std::min(place.equals, at);
      place.keys.emplace_back(
          WithoutBlanksBehind(text.substr(place.begin, end - std::min(end, place.begin))));
      place.begin = SkipBlanks(text, at + 1);
      place.equals = std::string_view::npos;
    }
  }
  return place;
}

}  // namespace

std::string Completion::common_beginning() const {
  if (candidates.empty()) return {};
  std::string common = candidates.front().text;
  for (const Candidate& candidate : candidates) {
    size_t same = 0;
    while (same < common.size() && same < candidate.text.size() &&
           Lower(common[same]) == Lower(candidate.text[same])) {
      ++same;
    }
    common.resize(same);
  }
  // Not half a character of UTF-8.
  size_t end = common.size();
  while (end > 0 && end < candidates.front().text.size() &&
         (static_cast<unsigned char>(candidates.front().text[end]) & 0xC0) == 0x80) {
    --end;
  }
  common.resize(end);
  return common;
}

ShellCompleter::ShellCompleter(const Language& language, std::vector<std::string> own_words,
                               std::vector<std::string> fault_words)
    : language_(language),
      commands_(language.commands()),
      symbols_(language.symbols()),
      own_words_(std::move(own_words)),
      fault_words_(std::move(fault_words)) {}

Completion ShellCompleter::Complete(std::string_view line, size_t cursor) const {
  const std::string_view text = line.substr(0, cursor);
  const size_t begin = SkipBlanks(text, 0);
  if (begin == text.size()) return CompleteCommand(text, begin, true);
  const char first = text[begin];
  if (first == '.' || first == ':') {
    Completion completion = CompleteOwn(text.substr(begin));
    completion.begin += begin;
    return completion;
  }
  if (first == '?') return CompleteCommand(text, SkipBlanks(text, begin + 1), false);
  if (first == '@') return CompleteFile(text, OperandBegin(text, begin + 1), false);
  const size_t blank = text.find_first_of(" \t", begin);
  if (blank == std::string_view::npos) return CompleteCommand(text, begin, true);
  return CompleteField(text, blank);
}

Completion ShellCompleter::CompleteOwn(std::string_view text) const {
  Completion completion;
  const size_t blank = text.find_first_of(" \t");
  if (blank == std::string_view::npos) {
    for (const std::string& word : own_words_) {
      // ":help" is the same as ".help", and stays as it was begun.
      std::string own = text.front() + word.substr(1);
      if (BeginsLike(own, text)) completion.candidates.push_back({own + " ", own});
    }
    return completion;
  }
  const std::string word = "." + std::string(text.substr(1, blank - 1));
  const size_t begin = SkipBlanks(text, blank);
  if (word == ".batch") return CompleteFile(text, begin, true);
  if (word != ".fault") return completion;
  const size_t last = text.find_last_of(" \t");
  completion.begin = last + 1;
  for (const std::string& fault : fault_words_) {
    if (BeginsLike(fault, text.substr(completion.begin))) {
      completion.candidates.push_back({fault + " ", fault});
    }
  }
  return completion;
}

Completion ShellCompleter::CompleteCommand(std::string_view text, size_t begin,
                                           bool with_mark) const {
  Completion completion;
  completion.begin = begin;
  std::set<std::string> seen;
  for (const CommandWord& command : commands_) {
    if (!BeginsLike(command.name, text.substr(begin)) || !seen.insert(command.name).second) {
      continue;
    }
    const bool blank = with_mark && !command.fields.empty();
    completion.candidates.push_back({command.name + (blank ? " " : ""), command.name});
  }
  return completion;
}

Completion ShellCompleter::CompleteField(std::string_view text, size_t fields) const {
  const size_t word_begin = SkipBlanks(text, 0);
  const Lookup command =
      language_.FindCommand(std::string(text.substr(word_begin, fields - word_begin)));
  const FieldPlace place = FindFieldPlace(text, fields);
  Completion completion;
  completion.begin = place.begin;
  if (command.failure != 0 || place.comment || place.quoted) return completion;
  if (place.equals != std::string_view::npos) {
    return CompleteValue(text, SkipBlanks(text, place.equals + 1), command.number);
  }
  std::set<int> given;
  for (const std::string& key : place.keys) {
    const Lookup field = language_.FindField(command.number, key);
    if (field.failure == 0) given.insert(field.number);
  }
  std::set<std::string> seen;
  for (const CommandWord& one : commands_) {
    if (one.id != command.number) continue;
    for (const FieldWord& field : one.fields) {
      if (!BeginsLike(field.name, text.substr(place.begin)) || given.count(field.number) != 0 ||
          !seen.insert(field.name).second) {
        continue;
      }
      const std::string name =
          field.name + (language::is_flag(command.number, field.number) ? "" : "=");
      completion.candidates.push_back({name, name});
    }
  }
  return completion;
}

// The words that the command's own tables have; behind some letters any word, where no such one
// fits.
Completion ShellCompleter::CompleteValue(std::string_view text, size_t begin, int opcode) const {
  Completion completion;
  completion.begin = begin;
  const std::string_view start = text.substr(begin);
  const auto add = [&](const std::string& word) {
    if (BeginsLike(word, start)) completion.candidates.push_back({word, word});
  };
  const language::CommandHelp* help = language::find_command_help(opcode);
  if (help != nullptr) {
    for (const language::ValueTable& table : help->values) {
      for (const language::ValueHelp& value : table.rows) {
        if (std::find(symbols_.begin(), symbols_.end(), value.word) != symbols_.end()) {
          add(value.word);
        }
      }
    }
  }
  if (!completion.candidates.empty() || start.empty()) return completion;
  for (const std::string& symbol : symbols_) add(symbol);
  return completion;
}

Completion CompleteFile(std::string_view text, size_t begin, bool plain) {
  namespace fs = std::filesystem;
  Completion completion;
  completion.begin = begin;
  const std::string_view typed = text.substr(begin);
  const bool quoted = !plain && !typed.empty() && typed.front() == kQuote;
  const std::string path = plain ? std::string(typed) : Unquoted(typed);
  const size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : path.substr(0, slash + 1);
  const std::string start = path.substr(folder.size());
  std::error_code error;
  fs::directory_iterator entry(folder.empty() ? "." : folder, error);
  for (size_t looked_at = 0; !error && entry != fs::directory_iterator() && looked_at < kMostFiles;
       entry.increment(error), ++looked_at) {
    const std::string name = entry->path().filename().string();
    if (name.compare(0, start.size(), start) != 0) continue;
    if (start.empty() && name.front() == '.') continue;
    if (std::any_of(name.begin(), name.end(), IsControl)) continue;
    if (!plain && std::any_of(name.begin(), name.end(), IsCapital)) continue;
    std::error_code unknown;
    const bool is_folder = entry->is_directory(unknown);
    const std::string whole = folder + name + (is_folder ? "/" : "");
    completion.candidates.push_back(
        {plain ? whole : AsOperand(whole, quoted, is_folder), name + (is_folder ? "/" : "")});
  }
  std::sort(completion.candidates.begin(), completion.candidates.end(),
            [](const auto& one, const auto& other) { return one.text < other.text; });
  return completion;
}

}  // namespace lorimat::console
