#include "model/translator_model.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace model {
namespace {

// --- Words

std::string TrimEnd(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

std::string Trim(std::string text) {
  while (!text.empty() && text.front() == ' ') text.erase(0, 1);
  return TrimEnd(text);
}

bool Digit(char c) { return c >= '0' && c <= '9'; }

char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// A name and a word are compared over the shorter of the two, so that either may be a beginning of
// the other. Capitals make no difference. A row without a name is no row.
bool Alike(const std::string& name, const std::string& word) {
  if (name.empty()) return false;
  for (size_t i = 0; i < std::min(name.size(), word.size()); ++i) {
    if (Capital(name[i]) != Capital(word[i])) return false;
  }
  return true;
}

// The number at the beginning of a text, behind blanks and with a sign; 0 if there is none.
int NumberOf(const std::string& text) {
  const long number = std::strtol(text.c_str(), nullptr, 10);
  return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

// The number of a word "#12"; 0 of any other word.
long HashNumber(const std::string& word) {
  if (word.size() < 2 || word[0] != '#') return 0;
  for (size_t i = 1; i < word.size(); ++i) {
    if (!Digit(word[i])) return 0;
  }
  return std::strtol(word.c_str() + 1, nullptr, 10);
}

std::string Row(const Texts& table, int row) {
  const auto found = table.find(row);
  return found == table.end() ? "" : found->second;
}

bool HasBehind(const std::string& text, size_t place, char c) {
  return place < text.size() && text.find(c, place) != std::string::npos;
}

void SkipBlanks(const std::string& line, size_t& position) {
  while (position < line.size() && line[position] == ' ') ++position;
}

// --- Messages

const Texts kInternal = {
    {1, "OK."},
    {2, "NON OK. "},
    {3, "ERROR "},
    {4, " *** ABORTED BY USER *** "},
    {5, "SI"},
    {6, "NO"},
    {7, "FILE ERROR"},
    {8, "EXT. FILE ERROR"},
    {9, "WAITING FOR TRANSACTION END"},
    {10, "COMMAND = "},
    {11, "ECR# = "},
    {12, "ECR-ID = "},
    {13, "DATE = "},
    {14, "ECR = "},
    {15, "ERRORS "},
    {16, "END. "},
    {17, "WAITING FOR CHIPCARD"},
    {18, "CALL IN PROGRESS"},
};

const std::map<int, Texts> kErrors = {
    {0,
     {{1, "SO NOT OPEN "},
      {2, "INITIALIZATION ERROR "},
      {3, "'PROG' SESSION OPEN "},
      {4, "CONFIGURATION READ ERROR ECR "},
      {5, "ECR VERSION NOT SUPPORTED "},
      {6, "ECR NOT IN IDLE "},
      {7, "'PROG' SESSION NOT OPEN "},
      {8, "ECR NOT IN REG POSITION "},
      {9, "EM-BOARD NOT INITALIZED ON ECR "},
      {10, "INVALID BATCH LINE "},
      {11, "FILE OPEN ERROR"},
      {12, "ERROR FILE OPEN ERROR"},
      {13, "LOG FILE OPEN ERROR"},
      {14, "ERRORS DURING EXECUTION OF FILE"},
      {15, "NO TRANSACTION OPEN"},
      {16, "ERRORS DURING EXECUTION"},
      {17, "NO SERVICE OBJECT FOUND"},
      {18, "SO ALREADY OPEN"},
      {19, "SO BUSY"},
      {20, "NO SERIAL PORT"},
      {21, "PROPERTY ERROR"},
      {22, "INVALID PARAMETERES"},
      {23, "SET PROPERTY ERROR"},
      {24, "GET PROPERTY ERROR"},
      {25, "CHIP-CARD ERROR"},
      {26, "CHIP-CARD NOT BLANK"},
      {27, "NO ECR SELECTED"},
      {28, "CONNECTION TIME-OUT"},
      {29, "MODEM ERROR"},
      {30, "BROADCAST ERROR"},
      {31, "INTERNAL ERROR : ECR STRING TOO BIG"},
      {32, "ECR ASKS FOR CONFIRMATION"},
      {33, "ECR MEMORY OVERFLOW"}}},
    {1,
     {{0, "SINTAX ERROR "},
      {1, "INSTRUCTION NOT FOUND"},
      {2, "INSTRUCTION NOT UNIC"},
      {3, "ILLEGAL INSTRUCTION"},
      {4, "FIELD NAME NOT FOUND"},
      {5, "FIELD NAME NOT UNIC"},
      {6, "ILLEGAL FIELD NAME"},
      {7, "LABEL-VALUE NOT FOUND"},
      {8, "ALFA-VALUE INVALID"},
      {9, "ILLEGAL VALUE"},
      {10, "CAMPO OBBLIGATORIO "},
      {11, "UNEXPECTED END OF LINE "},
      {12, "INSTRUCTION NOT SUPPORTED "},
      {13, "NO DPT NUMBER OR ARTICLE CODE "},
      {14, "ILLEGAL DPR NUMBER "},
      {15, "ILLEGAL FILE NUMBER "},
      {16, "FILE NOT SUPPORTED BY ECR "},
      {17, "GROUPS FILE NOT SUPPORTED BY ECR "},
      {18, "SOURCE LINE TOO LONG"},
      {19, "ECR NUMBER ILLEGAL"},
      {20, "OPERATOR CODE ILLEGAL"},
      {21, "REPORT NOT SUPPORTED"},
      {22, "MODIFIER CODE ILLEGAL"},
      {23, "CURRENCIES FILE NOT SUPPORTED BY ECR "},
      {24, "PROGRAMMABLE GRAPHIC NOT AVAILABLE ON ECR "}}},
    {2, {{0, "I/O ERROR "}}},
    {3, {{0, "ECR SIGNALS CRITICAL ERROR "}}},
    {4, {{0, "ECR REPORTS DATA-ERROR "}}},
    {5, {{0, "ECR REPORTS ERROR "}}},
    {6,
     {{0, "EM_LINK ERROR "},
      {1, "ERRORS DURING EXECUTION "},
      {2, "ILLEGAL COMMAND "},
      {3, "FILE OPEN "},
      {4, "ERR FILE OPEN ERROR "},
      {5, "LOG FILE OPEN ERROR "},
      {6, "ERROR IN ARTICLES-FILE RESET "},
      {7, "ERROR IN STAND-BY SET "},
      {8, "ERROR IN DOWNLOAD OPEN "},
      {9, "ECR ABORT DOWNLOAD SESSION"},
      {10, "ONE OR MORE RECORDS MISSING"},
      {11, "ECR REPOERTS DATA-COLLECT OVERFLOW"},
      {12, "CAN NOT BLOCK. TRANSACTION OPEN ON ECR"}}},
    {7,
     {{0, "SYNTAX ERROR "},
      {1, "UNEXPECTED END OF LINE "},
      {2, "ALPHA FIELD INVALID "},
      {3, "ARTICLE CODE INVALID "},
      {4, "NOT NUMERIC FIELD "},
      {5, "VAT FIELD INVALID "},
      {6, "DPT FIELD INVALID "},
      {7, "COMMAND FIELD INVALID "},
      {8, "NUMERIC FILED ILLEGAL "}}},
    {8, {{0, "ECR REPORTS ERROR "}}},
    {9, {{0, "INCORRECT ANSWER FOR ECR "}}},
};

// Rows of the message tables, by the digit of their section.
constexpr int kErrorRows[] = {50, 40, 20, 30, 10, 10, 20, 20, 10, 10};

// --- The definition file

std::vector<std::string> FileLines(const std::string& bytes) {
  std::vector<std::string> lines;
  size_t begin = 0;
  while (begin < bytes.size()) {
    size_t end = bytes.find('\n', begin);
    if (end == std::string::npos) end = bytes.size();
    // What is beyond 254 characters of a line is not read.
    std::string line = bytes.substr(begin, std::min<size_t>(end - begin, 254));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    begin = end + 1;
  }
  return lines;
}

struct Binding {
  std::string name;
  int number = 0;
  bool mandatory = false;
};

// NAME, or NAME,NUMBER, or NAME,O. A comma in first position is part of the name.
Binding TakeBinding(const std::string& text) {
  Binding binding;
  const size_t comma = text.find(',');
  if (comma == std::string::npos || comma == 0) {
    binding.name = TrimEnd(text.substr(0, 10));
    return binding;
  }
  binding.name = TrimEnd(text.substr(0, std::min<size_t>(comma, 10)));
  const std::string behind = text.substr(comma + 1);
  binding.mandatory = behind.substr(0, 1) == "O";
  binding.number = NumberOf(behind);
  return binding;
}

void StoreText(Texts& table, int rows, size_t longest, int key, const std::string& literal,
               char quote) {
  std::string text;
  if (key < 0 || key >= rows) return;
  if (TakeText(literal, longest, quote, text) == 0) table[key] = text;
}

}  // namespace

Definition::Definition() : internal(kInternal), errors(kErrors) {}

bool Definition::Read(const std::string& bytes, char quote) {
  highest_command = 0;
  symbols.clear();
  std::string section;
  int highest = 0;  // row of the section so far
  for (const std::string& raw : FileLines(bytes)) {
    const std::string line = Clean(raw, quote);
    if (line.empty()) continue;
    if (line[0] == '[') {
      section = line.size() < 2 ? "" : line.substr(1, line.size() - 2);
      highest = 0;
      continue;
    }
    const size_t equals = line.find('=');
    if (equals == std::string::npos) return false;
    // A part that is too long for its place counts as far as there is room.
    const std::string left = TrimEnd(Trim(line.substr(0, equals)).substr(0, 79));
    const std::string right = Trim(line.substr(equals + 1));
    if (left.empty()) return false;

    if (section == "EQU" || section == "EQUTASTI") {
      if (symbols.size() >= 299) continue;
      const int value = NumberOf(right);
      symbols.emplace_back(left.substr(0, 10), value);
      if (section == "EQUTASTI" && value >= 0 && value < 300) {
        symbol_of_key[value] = static_cast<int>(symbols.size());
      }
      continue;
    }
    const int key = NumberOf(left);
    if (section == "INTMSG") {
      StoreText(internal, 40, 32, key, right, quote);
    } else if (section == "TOTG") {
      StoreText(totals, 100, 32, key, right, quote);
    } else if (section.substr(0, 6) == "ERRMSG") {
      const int digit = NumberOf(section.substr(6));
      if (digit < 0 || digit > 9) continue;
      // The keys of these two lie 100 and 200 rows before their tables.
      Texts& table = digit == 2 || digit == 3 ? client_keys[digit] : errors[digit];
      StoreText(table, kErrorRows[digit], 80, key, right, quote);
    } else if (key == 0) {
      return false;
    } else if (section == "OPCOD") {
      if (key > 150) return false;
      if (key < 0) continue;
      highest = std::max(highest, key);
      highest_command = highest;
      const Binding binding = TakeBinding(right);
      commands[key] = {binding.name, binding.number != 0 ? binding.number : key};
    } else {
      const int id = NumberOf(section);
      if (key < 0 || key > 40 || id < 0 || id > 149) continue;
      highest = std::max(highest, key);
      highest_field[id] = highest;
      const Binding binding = TakeBinding(right);
      fields[id][key] = {binding.name, binding.number != 0 ? binding.number : key,
                         binding.mandatory};
    }
  }
  return true;
}

// --- Lines

std::string Clean(const std::string& line, char quote) {
  std::string clean;
  bool in_quotes = false;
  for (size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    if (c == ';' && !in_quotes) break;
    // A quote may be a blank too, and then counts ahead of what becomes of blanks.
    if (c == quote && in_quotes && i + 1 < line.size() && line[i + 1] == quote) {
      clean += c;  // a doubled quote stays doubled
      ++i;
    } else if (c == quote) {
      in_quotes = !in_quotes;
    }
    if (c == '\t') c = ' ';
    if (c == ' ' && clean.empty()) continue;
    clean += c;
  }
  if (!clean.empty() && clean.back() == '\n') clean.pop_back();
  return TrimEnd(clean);
}

bool HasHandler(int opcode) {
  static const std::set<int> ids = {
      1,  2,  3,  4,  5,  8,  9,  10, 11, 12, 14, 15, 16,  17,  18,  19,  20,  21,  22,  23, 24, 25,
      26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38,  39,  40,  41,  43,  45,  46,  47, 48, 49,
      51, 52, 53, 54, 55, 60, 71, 72, 73, 74, 75, 80, 120, 121, 122, 123, 124, 125, 126, 127};
  return ids.contains(opcode);
}

Lines::End Lines::Fail(int index) {
  code_ = 0x100 | index;
  return End::kFailed;
}

Lines::End Lines::Run(const std::string& source) {
  opcode_ = 0;
  code_ = 0;
  if (source.size() > 2046) return Fail(18);
  const std::string line = Clean(source, quote_);
  if (line.empty()) return End::kNothing;
  size_t position = 0;
  if (line[0] == '@') {
    position = 1;
    operands_ = {};
    if (TakeOperand(line, position, operands_.input) != 0) {
      code_ = 10;
      return End::kFailed;
    }
    // What is wrong with these two stays where it is.
    TakeOperand(line, position, operands_.errors);
    if (operands_.errors.size() > 251) {
      code_ = 12;  // no room for the ending of the temporary file
      return End::kFailed;
    }
    TakeOperand(line, position, operands_.log);
    return End::kBatch;
  }
  if (const int fault = FindCommand(line, position); fault != 0) return Fail(fault);
  if (const int fault = TakeFields(line, position); fault != 0) return Fail(fault);
  if (!HasHandler(opcode_)) code_ = 268;
  return End::kReached;
}

int Lines::FindCommand(const std::string& line, size_t& position) {
  const size_t end = std::min(line.find_first_of(" \t"), line.size());
  std::string word = line.substr(0, end);
  position = end;
  SkipBlanks(line, position);
  if (word.size() > 16) word.resize(16);

  const long number = HashNumber(word);
  if (number > 0 && number <= definition_.highest_command) {
    opcode_ = static_cast<int>(number);
    return 0;
  }

  bool found = false;
  bool exact = false;
  size_t compared = 0;  // characters of the row that holds so far
  int id = 0;
  for (const auto& [row, command] : definition_.commands) {
    if (row > 149 || !Alike(command.name, word)) continue;
    const size_t length = std::min(command.name.size(), word.size());
    const bool is_exact = command.name.size() == word.size();
    if (!found) {
      found = true;
      exact = is_exact;
      compared = length;
      id = command.id;
    } else if (length < compared) {
      continue;
    } else if (is_exact) {
      if (exact) return 2;
      exact = true;
      compared = length;
      id = command.id;
    } else if (!exact) {
      return 2;
    }
  }
  if (!found) return 1;
  opcode_ = id;
  return 0;
}

int Lines::TakeFields(const std::string& line, size_t position) {
  const int opcode = opcode_;
  fields_.clear();
  while (position < line.size()) {
    Field field;
    int number = 0;
    if (const int fault = TakeField(line, position, field); fault != 0) return fault;
    if (const int fault = FindField(field.key, number); fault != 0) return fault;
    // A file may give a name a number that is no field's.
    if (number < 1 || number > 40) return 4;
    fields_[number] = field.value;
    if (field.quoted) {
      quoted_.insert(number);
    } else {
      quoted_.erase(number);
    }
  }
  const auto rows = definition_.fields.find(opcode);
  if (rows == definition_.fields.end()) return 0;
  for (const auto& [row, field] : rows->second) {
    // The row's own number is looked at, not the field's.
    const auto value = fields_.find(row);
    if (field.mandatory && (value == fields_.end() || value->second.empty())) return 10;
  }
  return 0;
}

int Lines::TakeField(const std::string& line, size_t& position, Field& field) const {
  SkipBlanks(line, position);
  if (position >= line.size()) return 11;
  bool in_quotes = false;
  bool seen_equals = false;
  while (position < line.size()) {
    const char c = line[position];
    if (c == quote_) {
      if (!seen_equals) return 6;
      if (!in_quotes) {
        if (!field.value.empty() || !HasBehind(line, position + 1, quote_)) return 8;
        in_quotes = true;
        field.quoted = true;
      } else if (position + 1 < line.size() && line[position + 1] == quote_) {
        if (!HasBehind(line, position + 2, quote_)) return 8;
        ++position;
        if (field.value.size() >= 2048) return 9;
        field.value += c;
      } else {
        in_quotes = false;
      }
    } else if (c == '=' && !in_quotes) {
      seen_equals = true;
      ++position;
      SkipBlanks(line, position);
      continue;
    } else if (c == ',' && !in_quotes) {
      ++position;
      SkipBlanks(line, position);
      break;
    } else if (seen_equals) {
      if (field.value.size() >= 2048) return 9;
      field.value += c;
    } else if (field.key.size() < 10) {
      field.key += c;
    }
    ++position;
  }
  field.key = TrimEnd(field.key);
  if (field.quoted) return 0;
  field.value = TrimEnd(field.value);
  if (field.value.empty()) {
    field.value = "VERO";  // a field that is named alone is a true flag, and no symbol
    return 0;
  }
  if (IsNumber(field.value, true)) return 0;
  for (const auto& [name, value] : definition_.symbols) {
    if (name != field.value) continue;
    field.value = std::to_string(value);
    return 0;
  }
  return 7;
}

int Lines::FindField(const std::string& key, int& number) const {
  static const std::map<int, FieldRow> no_rows;
  const auto own = definition_.fields.find(opcode_);
  const std::map<int, FieldRow>& rows = own == definition_.fields.end() ? no_rows : own->second;
  const auto highest = definition_.highest_field.find(opcode_);
  const int last = highest == definition_.highest_field.end() ? 0 : highest->second;

  const long hash = HashNumber(key);
  if (hash > 0 && hash <= last) {
    number = static_cast<int>(hash);
    return 0;
  }
  bool found = false;
  size_t compared = 0;
  for (const auto& [row, field] : rows) {
    if (row > last || !Alike(field.name, key)) continue;
    const size_t length = std::min(field.name.size(), key.size());
    const bool exact = field.name.size() == key.size();
    if (!found) {
      found = true;
      compared = length;
      number = field.number;
      if (exact) return 0;
    } else if (length >= compared && field.number != number) {
      // The first row that contradicts decides.
      number = exact ? field.number : 0;
      return exact ? 0 : 5;
    }
  }
  return found ? 0 : 4;
}

int Lines::TakeOperand(const std::string& line, size_t& position, std::string& operand) const {
  operand.clear();
  SkipBlanks(line, position);
  if (position >= line.size()) return 11;
  const auto store = [&operand](char c) {
    if (operand.size() < 255) operand += c;  // a name has that much room
  };
  bool in_quotes = false;
  while (position < line.size()) {
    const char c = line[position];
    if (c == quote_ && in_quotes && position + 1 < line.size() && line[position + 1] == quote_) {
      if (!HasBehind(line, position + 2, quote_)) return 2;
      ++position;
      store(c);
    } else if (c == quote_ && in_quotes) {
      in_quotes = false;
    } else if (c == quote_) {
      if (!operand.empty() || !HasBehind(line, position + 1, quote_)) return 2;
      in_quotes = true;
    } else if (c == separator_ && !in_quotes) {
      ++position;
      SkipBlanks(line, position);
      operand = TrimEnd(operand);
      return 0;
    } else {
      store(c);
    }
    ++position;
  }
  return 0;
}

// --- Results

int ResultCode(int client_result) {
  if (client_result == 0) return 0;
  if (client_result == -1) return 512;
  return client_result < 200 ? client_result | 0x200 : client_result | 0x400;
}

std::string ResultText(const Definition& definition, Pending& pending, long code,
                       const std::string& before) {
  if (code == 0) {
    std::string text;
    if (pending.property) {
      text = *pending.property;
      pending.property.reset();
    } else if (pending.info) {
      text = *pending.info;
      pending.info.reset();
    } else {
      text = Row(definition.internal, 1) + pending.addition;
      pending.addition.clear();
      if (pending.link) {
        text += "(" + std::to_string(pending.link_lines) + " Lines   " +
                std::to_string(pending.link_time) + " msec)";
      }
    }
    return text;
  }
  if (code == 16) return before + Row(definition.internal, 2);

  const int bits = static_cast<int>(code & 0xFFFF00);
  const int index = static_cast<int>(code & 0xFF);
  std::string text =
      Row(definition.internal, 3) + std::to_string(bits >> 8) + "/" + std::to_string(index);
  if (pending.line_failed) {
    text += " in line " + std::to_string(pending.line);
  } else if (pending.link_line_failed) {
    text += " in line " + std::to_string(pending.link_line);
  }
  text += " : ";
  pending.line_failed = false;
  pending.link_line_failed = false;

  const auto row = [&definition](int digit, int number) {
    return Row(definition.errors.at(digit), number);
  };
  // The rows of client results begin at an offset. Below it are the file's keys.
  const auto client_row = [&](int digit, int offset) {
    if (index >= offset) return row(digit, index - offset);
    const auto keys = definition.client_keys.find(digit);
    return keys == definition.client_keys.end() ? "" : Row(keys->second, index);
  };
  const std::string number = std::to_string(index);
  switch (bits) {
    case 0:
      return text + row(0, index);
    case 0x100:
      text += row(1, 0) + number;
      return code > 0 ? text + " : " + row(1, index) : text;
    case 0x200:
      return text + row(2, 0) + number + client_row(2, 100);
    case 0x400:
      return text + row(3, 0) + number + " : " + client_row(3, 200);
    case 0x800:
      return text + row(4, 0) + number;
    case 0x1000:
      return text + row(5, 0) + number;
    case 0x2000:
      if (index == 1) {
        return text + row(6, 1) + "(" + std::to_string(pending.link_errors) + " Errors   " +
               std::to_string(pending.link_device_errors) + " ECR-Errors)";
      }
      return text + row(6, 0) + " : " + row(6, index);
    case 0x4000:
      return text + row(7, 0) + " : " + row(7, index);
    case 0x8000:
      return text + row(8, 0) + number;
    case 0x10000:
      text += row(9, 0);
      // The index is a character; that of 0 ends the text.
      if (index != 0) text += static_cast<char>(index);
      return text;
    default:
      return text;
  }
}

// --- Texts

int TakeText(const std::string& literal, size_t longest, char quote, std::string& text) {
  text.clear();
  bool in_quotes = false;
  for (size_t i = 0; i < literal.size(); ++i) {
    const char c = literal[i];
    if (c == quote && !in_quotes) {
      if (!text.empty() || !HasBehind(literal, i + 1, quote)) return 8;
      in_quotes = true;
      continue;
    }
    if (c == quote) {
      if (i + 1 >= literal.size() || literal[i + 1] != quote) {
        in_quotes = false;
        continue;
      }
      ++i;
      if (!HasBehind(literal, i + 1, quote)) return 8;
    }
    if (text.size() == longest) return 9;
    text += c;
  }
  return 0;
}

int TakeKeys(const Definition& definition, const std::string& sequence, std::vector<int>& keys) {
  keys.clear();
  std::string token;
  size_t position = 0;
  SkipBlanks(sequence, position);
  for (; position < sequence.size(); ++position) {
    if (sequence[position] != ' ') {
      token += sequence[position];
      if (token.size() >= 32) return -1;
      continue;
    }
    int value = 0;
    if (IsNumber(token, true)) {
      value = NumberOf(token);
    } else {
      const auto symbol = std::find_if(definition.symbols.begin(), definition.symbols.end(),
                                       [&](const auto& row) { return row.first == token; });
      if (symbol == definition.symbols.end()) return -1;
      value = symbol->second;
    }
    if (value > 255) return -1;
    keys.push_back(value & 0xFF);
    if (keys.size() > 99) return -2;
    token.clear();
    SkipBlanks(sequence, position);
    --position;
  }
  // A last key with no blank behind it is not stored.
  return static_cast<int>(keys.size());
}

bool IsNumber(const std::string& text, bool point_allowed) {
  const std::string number = Trim(text);
  int points = 0;
  for (size_t i = 0; i < number.size(); ++i) {
    if (Digit(number[i])) continue;
    if (number[i] == '-' && i == 0) continue;
    if (number[i] == '.' && point_allowed && ++points == 1) continue;
    return false;
  }
  return true;
}

bool IsTrue(const std::string& text) {
  std::string capitals;
  for (const char c : text) capitals += Capital(c);
  return capitals.substr(0, 4) == "VERO" || capitals.substr(0, 2) == "SI" ||
         capitals.substr(0, 3) == "YES" || capitals.substr(0, 1) == "2";
}

// --- Numbers

namespace {

// The value of a text in units of so many decimals; 0 of a text that is no number. With implied
// the last two places of a text without decimals are implied.
int64_t Scaled(const std::string& text, bool implied, char separator, int precision) {
  enum { kStart, kNumber, kDecimals } state = kStart;
  bool negative = false;
  uint64_t value = 0;
  int significant = 0;
  int decimals = 0;
  for (const char c : text) {
    if (state == kStart && c == '-') {
      negative = true;
    } else if (Digit(c)) {
      if (state == kStart) state = kNumber;
      if (state == kDecimals) {
        if (decimals >= precision || significant > 17) return 0;
        ++decimals;
      }
      value = value * 10 + static_cast<uint64_t>(c - '0');
      if (value != 0) ++significant;
      if (significant == 19) return 0;
    } else if (state == kDecimals) {
      return 0;
    } else if (state == kStart && negative) {
      return 0;
    } else if (c == separator) {
      state = kDecimals;
    }
    // Everything else is skipped: junk ahead of the number, and what groups its digits.
  }
  if (state == kStart) return 0;
  int places = implied && decimals == 0 ? precision - 2 : precision - decimals;
  for (; places > 0; --places) value *= 10;
  return static_cast<int64_t>(negative ? 0 - value : value);
}

}  // namespace

int64_t Price(const std::string& text, bool implied, char separator, int precision) {
  return Scaled(text, implied, separator, precision);
}

int32_t Percentage(const std::string& text, char separator, int precision) {
  return static_cast<int32_t>(Scaled(text, false, separator, precision));
}

int32_t Quantity(const std::string& text, char separator) {
  return static_cast<int32_t>(Scaled(text, false, separator, 3));
}

int64_t WholeNumber(const std::string& text) {
  std::string number;
  for (const char c : Trim(text)) {
    if (number.size() == 19 || (!Digit(c) && c != '.')) break;
    number += c;
  }
  const double value = std::strtod(number.c_str(), nullptr);
  return value >= 0x1p63 ? INT64_MAX : static_cast<int64_t>(value);
}

std::string Digits(const std::string& text, char zero, char point) {
  std::string keys;
  for (const char c : Trim(text)) {
    if (c == '0') {
      keys += zero;
    } else if (c == '.') {
      keys += point;
    } else {
      keys += Digit(c) ? static_cast<char>(c - '0') : '\0';
    }
  }
  return keys;
}

namespace {

// At least two digits.
std::string TwoPlaces(long number) {
  const std::string sign = number < 0 ? "-" : "";
  const std::string digits = std::to_string(std::labs(number));
  return sign + (digits.size() < 2 ? "0" + digits : digits);
}

}  // namespace

std::string EditNumber(long number, long factor, bool short_zero) {
  const std::string text = std::to_string(number / factor);
  const long rest = number % factor;
  return short_zero && rest == 0 ? text : text + "." + TwoPlaces(rest / 100);
}

std::string EditDescription(const std::string& name, long number, long factor, bool short_zero) {
  const std::string text = name + " " + std::to_string(number / factor);
  long rest = number % factor;
  if (rest == 0) return text;
  if (!short_zero) return text + "." + std::to_string(rest / 1000);
  while (rest % 10 == 0) rest /= 10;
  return text + "." + std::to_string(rest);
}

std::string EditCurrency(long number, long factor, bool short_zero, int place_factor) {
  std::string text = std::to_string(number / factor) + ".";
  const long rest = number % factor;
  const long places = rest / place_factor;
  text += rest <= 999 && short_zero ? std::to_string(places / 10) : TwoPlaces(places);
  return text == "0.00" ? "0" : text;
}

std::string InBase(int number, int base) {
  if (base < 2 || base > 35) return "";
  std::string text;
  int64_t rest = std::llabs(number);  // long may have as many bits as int
  do {
    const int digit = static_cast<int>(rest % base);
    text.insert(text.begin(), static_cast<char>(digit < 10 ? '0' + digit : 'a' + digit - 10));
    rest /= base;
  } while (rest != 0);
  return number < 0 ? "-" + text : text;
}

std::string PadLeft(const std::string& text, int width, char fill) {
  if (static_cast<int>(text.size()) >= width) return text;
  const std::string gap(static_cast<size_t>(width) - text.size(), fill);
  return text.substr(0, 1) == "-" ? text.substr(0, 1) + gap + text.substr(1) : gap + text;
}

std::string PadRight(const std::string& text, int width, char fill) {
  if (width <= 0) return "";
  std::string padded = text.substr(0, static_cast<size_t>(width));
  padded.resize(static_cast<size_t>(width), fill);
  return padded;
}

}  // namespace model
