#include "console/shell/shell_help.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>

#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/suggestion.h"
#include "language/command_help.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace lorimat::console {
namespace {

constexpr size_t kNameWidth = 10;

language::PageLanguage LanguageOfPage() {
  return LanguageOfMessages() == "it" ? language::PageLanguage::kItalian
                                      : language::PageLanguage::kEnglish;
}

// While one lives, all is in the language of the page: a page in English gets no headings in a
// third language.
class PageMessages {
 private:
  EnglishMessages english_{LanguageOfPage() == language::PageLanguage::kEnglish};
};

// Blanks up to a width in columns, at least one.
std::string Padded(const std::string& text, size_t width) {
  const size_t columns = ColumnsOf(text);
  return text + std::string(columns < width ? width - columns : 0, ' ');
}

std::string OverviewLine(const CommandWord& command, const std::string& summary, size_t columns) {
  const std::string heading = fmt::format("  {}  {}  ", Padded(Shown(command.name), kNameWidth),
                                          Padded(Shown(command.shortest), kNameWidth));
  return Entry(heading, summary, columns);
}

// Rows of fields: the name, how far it may be cut, and what it takes in the rest of the line.
std::string RowsText(const std::vector<std::vector<std::string>>& rows, size_t columns) {
  size_t first = 0;
  size_t second = 0;
  for (const std::vector<std::string>& row : rows) {
    first = std::max(first, ColumnsOf(row[0]));
    second = std::max(second, ColumnsOf(row[1]));
  }
  std::string out;
  for (const std::vector<std::string>& row : rows) {
    std::string heading = "  " + Padded(row[0], first + 2);
    if (second != 0) heading += Padded(row[1], second + 2);
    out += Entry(heading, row[2], columns);
  }
  return out;
}

std::string Joined(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + ", " + second;
}

// Whether a definition file calls the command and its fields as the page does.
bool SpeaksLikeThePage(const CommandWord& command, const language::CommandHelp& help) {
  if (!EqualsIgnoringCase(command.name.c_str(), help.name.c_str())) return false;
  std::set<std::string> names;
  for (const FieldWord& field : command.fields) names.insert(field.name);
  return std::all_of(help.fields.begin(), help.fields.end(),
                     [&](const auto& field) { return names.count(field.names.front()) != 0; });
}

}  // namespace

ShellHelp::ShellHelp(const Language& language)
    : language_(language), commands_(language.commands()) {}

std::string ShellHelp::Overview(size_t columns) const {
  if (commands_.empty()) return Tr("The definition file names no commands.\n");
  const PageMessages messages;
  std::string out;
  std::set<int> listed;
  const auto add = [&](const std::string& title, const std::string& lines) {
    if (!lines.empty()) out += (out.empty() ? "" : "\n") + Wrapped(title, 0, columns) + lines;
  };
  for (const language::CommandGroup& group : language::command_groups(LanguageOfPage())) {
    std::string lines;
    for (const language::CommandHelp& help : group.commands) {
      const auto command = std::find_if(commands_.begin(), commands_.end(),
                                        [&](const CommandWord& one) { return one.id == help.id; });
      listed.insert(help.id);
      if (command != commands_.end()) lines += OverviewLine(*command, help.summary(), columns);
    }
    add(group.title, lines);
  }
  std::string lines;
  for (const CommandWord& command : commands_) {
    if (!listed.insert(command.id).second) continue;
    lines += OverviewLine(command, Tr("No command of the library; answers 268."), columns);
  }
  add(Tr("Others"), lines);
  return out + "\n" +
         Wrapped(Tr("\"? NAME\" tells more of a command, \".help\" of the shell."), 0, columns);
}

HelpText ShellHelp::Command(const std::string& word, size_t columns) const {
  HelpText help;
  const Lookup found = language_.FindCommand(word);
  if (found.failure == 0) {
    const auto command =
        std::find_if(commands_.begin(), commands_.end(),
                     [&](const CommandWord& one) { return one.id == found.number; });
    if (command != commands_.end()) {
      help.found = true;
      help.text = Page(*command, columns);
      return help;
    }
  }
  std::vector<std::string> names;
  std::vector<std::string> fitting;
  for (const CommandWord& command : commands_) {
    names.push_back(command.name);
    if (BeginsWith(command.name.c_str(), word.c_str())) fitting.push_back(Shown(command.name));
  }
  const std::string text = Shown(word, 60);
  if (found.failure == INSTRUCTION_NOT_UNIC) {
    help.text = Tr("'{}' fits more than one command: {}", text,
                   fmt::format("{}", fmt::join(fitting, ", ")));
    return help;
  }
  const std::string near = NearestWord(word, names);
  help.text = near.empty() ? Tr("no command is called '{}'; \"?\" lists them", text)
                           : Tr("no command is called '{}'; did you mean {}?", text, Shown(near));
  return help;
}

std::string ShellHelp::Page(const CommandWord& command, size_t columns) const {
  const PageMessages messages;
  const language::CommandHelp* help = language::find_command_help(command.id, LanguageOfPage());
  std::string out =
      Tr("{}: command {}, short {}", Shown(command.name), command.id, Shown(command.shortest));
  std::vector<std::string> aliases;
  for (const CommandWord& other : commands_) {
    if (other.id == command.id && other.row != command.row) aliases.push_back(Shown(other.name));
  }
  if (!aliases.empty()) out += Tr(", also {}", fmt::format("{}", fmt::join(aliases, ", ")));
  out = Wrapped(out, 0, columns);
  if (help == nullptr) {
    out += Wrapped(Tr("No command of the library; answers 268."), 0, columns);
  } else {
    for (const std::string& text : help->text) out += Wrapped(text, 0, columns);
  }

  std::vector<std::vector<std::string>> rows;
  std::map<int, std::string> first_names;
  for (const FieldWord& field : command.fields) {
    const language::FieldHelp* what = help != nullptr ? help->find_field(field.number) : nullptr;
    std::string takes = what != nullptr ? what->takes : Tr("not read");
    const auto [first, is_first] = first_names.emplace(field.number, field.name);
    if (!is_first) takes = Tr("the same as {}", Shown(first->second));
    if (field.mandatory) takes = Joined(takes, Tr("must be given"));
    rows.push_back({Shown(field.name), Shown(field.shortest), takes});
  }
  if (rows.empty()) {
    out += "\n" + Tr("No fields.") + "\n";
  } else {
    rows.insert(rows.begin(), {Tr("Field"), Tr("Short"), Tr("Takes")});
    out += "\n" + RowsText(rows, columns);
  }
  if (help == nullptr) return out;

  for (const language::ValueTable& table : help->values) {
    rows = {{Tr("Value"), Tr("Word"), table.what}};
    for (const language::ValueHelp& value : table.rows) {
      rows.push_back({value.value, value.word, value.meaning});
    }
    out += "\n" + RowsText(rows, columns);
  }
  if (!help->remarks.empty()) out += "\n";
  for (const std::string& remark : help->remarks) out += Wrapped(remark, 0, columns);
  for (const language::CommandGroup& group : language::command_groups(LanguageOfPage())) {
    if (group.title != help->group || group.text.empty()) continue;
    out += "\n" + Wrapped(group.title, 0, columns);
    for (const std::string& text : group.text) out += Wrapped(text, 0, columns);
  }
  const bool same_words = SpeaksLikeThePage(command, *help);
  if (!same_words) {
    out += "\n" + Wrapped(Tr("These texts call {} and its fields as the definition file that ships "
                             "does.",
                             help->name),
                          0, columns);
  } else if (!help->examples.empty()) {
    out += "\n" + Tr("Examples") + "\n";
    for (const std::string& example : help->examples) out += "  " + example + "\n";
  }
  if (!help->codes.empty()) {
    rows = {};
    for (const language::CodeHelp& code : help->codes) rows.push_back({code.code, "", code.when});
    out += "\n" + Wrapped(Tr("Answers, besides those that any line may get"), 0, columns) +
           RowsText(rows, columns);
  }
  return out;
}

}  // namespace lorimat::console
