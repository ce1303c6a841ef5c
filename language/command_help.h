// What the commands of the language do and what their fields take: the chapters of
// docs/language.md, as data, and those of its Italian, docs/language.it.md. The pages are compiled
// in, so that they and the help of the console cannot differ.
//
// Words are those of the definition file that ships; numbers hold for every file. Texts have lost
// the page's marks (`code`) and its line ends.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace language {

// The language that a page is written in. All pages have the same commands in the same order, with
// the same fields, values and codes.
enum class PageLanguage { kEnglish, kItalian };

struct FieldHelp {
  int number = 0;
  std::vector<std::string> names;  // the first is the name, the others are aliases
  std::string shortest;            // how far the name may be cut
  std::string takes;               // "quantity", "text of up to 50 characters", "flag: ..."
};

// A word that stands for a value in a field.
struct ValueHelp {
  std::string value;
  std::string word;  // "-" for none
  std::string meaning;
};

struct ValueTable {
  std::string what;  // "Tender", the heading of its meanings
  std::vector<ValueHelp> rows;
};

struct CodeHelp {
  std::string code;  // a number, or the page's words for "device" and "device twice"
  std::string when;
};

struct CommandHelp {
  int id = 0;
  std::string name;
  std::string shortest;  // empty where the page tells none
  std::string group;
  std::vector<std::string> text;  // what it does: paragraphs; the first sentence is the summary
  std::vector<FieldHelp> fields;
  std::vector<std::string> remarks;  // paragraphs behind the fields; a list's begin with "- "
  std::vector<ValueTable> values;
  std::vector<std::string> examples;
  std::vector<CodeHelp> codes;

  std::string summary() const;
  const FieldHelp* find_field(int number) const;
};

struct CommandGroup {
  std::string title;
  std::vector<std::string> text;  // what its commands share
  std::vector<CommandHelp> commands;
};

// Reads a page of this form, which has the headings of this language.
std::vector<CommandGroup> read_command_help(std::string_view page,
                                            PageLanguage language = PageLanguage::kEnglish);

// A page that was compiled in. The groups without commands are left out.
const std::vector<CommandGroup>& command_groups(PageLanguage language = PageLanguage::kEnglish);
// Null for a number that is no command's.
const CommandHelp* find_command_help(int id, PageLanguage language = PageLanguage::kEnglish);

}  // namespace language
