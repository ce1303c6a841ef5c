// The words of a definition file, as the library's own reader and look-ups have them; no device,
// and no command runs.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class EcrCmdCommand;

namespace lorimat::console {

// A field row of a command's section.
struct FieldWord {
  int row = 0;
  int number = 0;  // of the field, as a handler sees it; several rows may share one
  std::string name;
  std::string shortest;  // how far the name may be shortened
  bool mandatory = false;
};

// A row of the OPCOD section.
struct CommandWord {
  int row = 0;
  int id = 0;  // opcode; several rows may share one
  std::string name;
  std::string shortest;
  bool has_handler = false;  // else a line answers 268
  std::vector<FieldWord> fields;
};

// What the library makes of a word.
struct Lookup {
  int number = 0;   // opcode or field number
  int failure = 0;  // index of a class 1 message; 0 when the word was found
};

class Language {
 public:
  // Reads a definition file. Throws Failure with line and cause when it cannot be opened or the
  // library refuses it.
  explicit Language(const std::string& path);
  ~Language();
  Language(Language&&) noexcept;
  Language& operator=(Language&&) noexcept;

  // Reads the text of a definition file. Throws Failure when the library refuses it.
  static Language FromText(std::string_view text);
  // The library's own messages alone, for a reader that is to fill the tables.
  static Language WithoutWords();

  // The rows that can be found by name, in their order.
  std::vector<CommandWord> commands() const;
  std::vector<std::string> symbols() const;
  Lookup FindCommand(const std::string& word) const;
  Lookup FindField(int opcode, const std::string& word) const;
  // The name in the first row of an opcode, or of a field's number; empty when there is none.
  std::string CommandName(int opcode) const;
  std::string FieldName(int opcode, int number) const;

  // What ReadLine answers to an "@" line.
  static constexpr int kNamesBatch = -1;
  // Reads a line as the library does, and answers its opcode: the fields stand in the translator.
  // 0 for a line that holds no command, or one that the library refuses; *code, where it is given,
  // is what the library answers to it then, and 0 for a line without a command.
  int ReadLine(const std::string& line, long* code = nullptr) const;

  // The library's state, with its tables filled.
  EcrCmdCommand& translator() const { return *translator_; }

 private:
  Language();
  bool Read(int descriptor);

  std::unique_ptr<EcrCmdCommand> translator_;
};

}  // namespace lorimat::console
