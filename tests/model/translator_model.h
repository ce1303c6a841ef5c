// The rules of the line language, written once more: plainly, slowly, with nothing in common with
// the translator. A program compares the two. A rule is changed in both or in none.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace model {

struct CommandRow {
  std::string name;
  int id = 0;
};

struct FieldRow {
  std::string name;
  int number = 0;
  bool mandatory = false;
};

using Texts = std::map<int, std::string>;

// All that a definition file may fill.
struct Definition {
  std::map<int, CommandRow> commands;                // by row
  int highest_command = 0;                           // of the last section of commands
  std::map<int, std::map<int, FieldRow>> fields;     // by opcode id, then row
  std::map<int, int> highest_field;                  // by opcode id
  std::vector<std::pair<std::string, int>> symbols;  // name and value, in their order
  std::map<int, int> symbol_of_key;                  // key code to row of symbols, from 1
  Texts internal;                                    // INTMSG
  Texts totals;                                      // TOTG
  std::map<int, Texts> errors;                       // by the digit of ERRMSG
  std::map<int, Texts> client_keys;                  // keys of ERRMSG2 and ERRMSG3

  // With the default messages.
  Definition();
  // Takes the bytes of a file. False when a line ends the reading; what came before it stays.
  bool Read(const std::string& bytes, char quote);
};

// What a host's answer may have to tell beside its code.
struct Pending {
  std::optional<std::string> property;  // answer of a property that was asked for
  std::optional<std::string> info;      // answer of an info command
  std::string addition;                 // behind the "OK."
  bool link = false;                    // an answer of the article exchange
  long link_lines = 0;
  unsigned int link_time = 0;
  bool line_failed = false;  // of a batch
  bool link_line_failed = false;
  long line = 0;
  long link_line = 0;
  long link_errors = 0;
  long link_device_errors = 0;
};

// One line of the language as the translator reads it, up to the handler's door.
class Lines {
 public:
  // Where the road of a line ended.
  enum class End { kNothing, kBatch, kFailed, kReached };

  struct Operands {
    std::string input;
    std::string errors;
    std::string log;
  };

  Lines(const Definition& definition, char quote, char separator)
      : definition_(definition), quote_(quote), separator_(separator) {}

  // kFailed has its code in code(). kReached has the opcode, whose handler would run now.
  End Run(const std::string& line);

  int code() const { return code_; }
  int opcode() const { return opcode_; }
  const std::map<int, std::string>& fields() const { return fields_; }
  // Fields whose last value was quoted, by whatever line that was.
  const std::set<int>& quoted() const { return quoted_; }
  const Operands& operands() const { return operands_; }

 private:
  // One field of a line, or one operand. The position counts from 0.
  struct Field {
    std::string key;
    std::string value;
    bool quoted = false;
  };

  End Fail(int index);
  int FindCommand(const std::string& line, size_t& position);
  int TakeFields(const std::string& line, size_t position);
  int TakeField(const std::string& line, size_t& position, Field& field) const;
  int FindField(const std::string& key, int& number) const;
  int TakeOperand(const std::string& line, size_t& position, std::string& operand) const;

  const Definition& definition_;
  char quote_;
  char separator_;
  int code_ = 0;
  int opcode_ = 0;
  std::map<int, std::string> fields_;
  std::set<int> quoted_;
  Operands operands_;
};

// A line without its comment and the blanks at its ends.
std::string Clean(const std::string& line, char quote);
// The opcode ids that have a handler.
bool HasHandler(int opcode);

// The result code of a client's result.
int ResultCode(int client_result);
// The result string of a code. It takes from the pending answers what it shows; before is what
// stands in the host's buffer.
std::string ResultText(const Definition& definition, Pending& pending, long code,
                       const std::string& before);

// The text of a bare or quoted literal, or the index of its fault (8 or 9).
int TakeText(const std::string& literal, size_t longest, char quote, std::string& text);
// The keys of a sequence; their count, -1 or -2. keys has what was stored.
int TakeKeys(const Definition& definition, const std::string& sequence, std::vector<int>& keys);
bool IsNumber(const std::string& text, bool point_allowed);
bool IsTrue(const std::string& text);

// Numbers. A text that cannot be read is 0.
int64_t Price(const std::string& text, bool implied, char separator, int precision);
int32_t Percentage(const std::string& text, char separator, int precision);
int32_t Quantity(const std::string& text, char separator);
int64_t WholeNumber(const std::string& text);
// Digits as key values, with the values of "0" and ".".
std::string Digits(const std::string& text, char zero, char point);
std::string EditNumber(long number, long factor, bool short_zero);
std::string EditDescription(const std::string& name, long number, long factor, bool short_zero);
std::string EditCurrency(long number, long factor, bool short_zero, int place_factor);
std::string InBase(int number, int base);
std::string PadLeft(const std::string& text, int width, char fill);
std::string PadRight(const std::string& text, int width, char fill);

}  // namespace model
