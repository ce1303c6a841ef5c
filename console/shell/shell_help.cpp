#include "console/shell/shell_help.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <map>
#include <set>

#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/suggestion.h"
#include "language/command_help.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace lorimat::console {
namespace {

constexpr size_t kNameWidth = 10;

language::PageLanguage page_language() {
  return messages_are_italian() ? language::PageLanguage::kItalian
                                : language::PageLanguage::kEnglish;
}

// Blanks up to a width in columns, at least one.
std::string padded(const std::string& text, size_t width) {
  const size_t columns = columns_of(text);
  return text + std::string(columns < width ? width - columns : 0, ' ');
}

std::string overview_line(const CommandWord& command, const std::string& summary, size_t columns) {
  const std::string heading = fmt::format("  {}  {}  ", padded(shown(command.name), kNameWidth),
                                          padded(shown(command.shortest), kNameWidth));
  return entry(heading, summary, columns);
}

// Rows of fields: the name, how far it may be cut, and what it takes in the rest of the line.
std::string rows_text(const std::vector<std::vector<std::string>>& rows, size_t columns) {
  size_t first = 0;
  size_t second = 0;
  for (const std::vector<std::string>& row : rows) {
    first = std::max(first, columns_of(row[0]));
    second = std::max(second, columns_of(row[1]));
  }
  std::string out;
  for (const std::vector<std::string>& row : rows) {
    std::string heading = "  " + padded(row[0], first + 2);
    if (second != 0) heading += padded(row[1], second + 2);
    out += entry(heading, row[2], columns);
  }
  return out;
}

std::string joined(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + ", " + second;
}

// Whether a definition file calls the command and its fields as the page does.
bool speaks_like_the_page(const CommandWord& command, const language::CommandHelp& help) {
  if (!equals_ignoring_case(command.name.c_str(), help.name.c_str())) return false;
  std::set<std::string> names;
  for (const FieldWord& field : command.fields) names.insert(field.name);
  return std::all_of(help.fields.begin(), help.fields.end(),
                     [&](const auto& field) { return names.count(field.names.front()) != 0; });
}

}  // namespace

ShellHelp::ShellHelp(const Language& language)
    : language_(language), commands_(language.commands()) {}

std::string ShellHelp::overview(size_t columns) const {
  if (commands_.empty()) return tr("The definition file names no commands.\n");
  std::string out;
  std::set<int> listed;
  const auto add = [&](const std::string& title, const std::string& lines) {
    if (!lines.empty()) out += (out.empty() ? "" : "\n") + wrapped(title, 0, columns) + lines;
  };
  for (const language::CommandGroup& group : language::command_groups(page_language())) {
    std::string lines;
    for (const language::CommandHelp& help : group.commands) {
      const auto command = std::find_if(commands_.begin(), commands_.end(),
                                        [&](const CommandWord& one) { return one.id == help.id; });
      listed.insert(help.id);
      if (command != commands_.end()) lines += overview_line(*command, help.summary(), columns);
    }
    add(group.title, lines);
  }
  std::string lines;
  for (const CommandWord& command : commands_) {
    if (!listed.insert(command.id).second) continue;
    lines += overview_line(command, tr("No command of the library; answers 268."), columns);
  }
  add(tr("Others"), lines);
  return out + "\n" +
         wrapped(tr("\"? NAME\" tells more of a command, \".help\" of the shell."), 0, columns);
}

HelpText ShellHelp::command(const std::string& word, size_t columns) const {
  HelpText help;
  const Lookup found = language_.find_command(word);
  if (found.failure == 0) {
    const auto command =
        std::find_if(commands_.begin(), commands_.end(),
                     [&](const CommandWord& one) { return one.id == found.number; });
    if (command != commands_.end()) {
      help.found = true;
      help.text = page(*command, columns);
      return help;
    }
  }
  std::vector<std::string> names;
  std::vector<std::string> fitting;
  for (const CommandWord& command : commands_) {
    names.push_back(command.name);
    if (begins_with(command.name.c_str(), word.c_str())) fitting.push_back(shown(command.name));
  }
  const std::string text = shown(word, 60);
  if (found.failure == INSTRUCTION_NOT_UNIC) {
    help.text = tr("'{}' fits more than one command: {}", text,
                   fmt::format("{}", fmt::join(fitting, ", ")));
    return help;
  }
  const std::string near = nearest_word(word, names);
  help.text = near.empty() ? tr("no command is called '{}'; \"?\" lists them", text)
                           : tr("no command is called '{}'; did you mean {}?", text, shown(near));
  return help;
}

std::string ShellHelp::page(const CommandWord& command, size_t columns) const {
  const language::CommandHelp* help = language::find_command_help(command.id, page_language());
  std::string out =
      tr("{}: command {}, short {}", shown(command.name), command.id, shown(command.shortest));
  std::vector<std::string> aliases;
  for (const CommandWord& other : commands_) {
    if (other.id == command.id && other.row != command.row) aliases.push_back(shown(other.name));
  }
  if (!aliases.empty()) out += tr(", also {}", fmt::format("{}", fmt::join(aliases, ", ")));
  out = wrapped(out, 0, columns);
  if (help == nullptr) {
    out += wrapped(tr("No command of the library; answers 268."), 0, columns);
  } else {
    for (const std::string& text : help->text) out += wrapped(text, 0, columns);
  }

  std::vector<std::vector<std::string>> rows;
  std::map<int, std::string> first_names;
  for (const FieldWord& field : command.fields) {
    const language::FieldHelp* what = help != nullptr ? help->find_field(field.number) : nullptr;
    std::string takes = what != nullptr ? what->takes : tr("not read");
    const auto [first, is_first] = first_names.emplace(field.number, field.name);
    if (!is_first) takes = tr("the same as {}", shown(first->second));
    if (field.mandatory) takes = joined(takes, tr("must be given"));
    rows.push_back({shown(field.name), shown(field.shortest), takes});
  }
  if (rows.empty()) {
    out += "\n" + tr("No fields.") + "\n";
  } else {
    rows.insert(rows.begin(), {tr("Field"), tr("Short"), tr("Takes")});
    out += "\n" + rows_text(rows, columns);
  }
  if (help == nullptr) return out;

  for (const language::ValueTable& table : help->values) {
    rows = {{tr("Value"), tr("Word"), table.what}};
    for (const language::ValueHelp& value : table.rows) {
      rows.push_back({value.value, value.word, value.meaning});
    }
    out += "\n" + rows_text(rows, columns);
  }
  if (!help->remarks.empty()) out += "\n";
  for (const std::string& remark : help->remarks) out += wrapped(remark, 0, columns);
  for (const language::CommandGroup& group : language::command_groups(page_language())) {
    if (group.title != help->group || group.text.empty()) continue;
    out += "\n" + wrapped(group.title, 0, columns);
    for (const std::string& text : group.text) out += wrapped(text, 0, columns);
  }
  const bool same_words = speaks_like_the_page(command, *help);
  if (!same_words) {
    out += "\n" + wrapped(tr("These texts call {} and its fields as the definition file that ships "
                             "does.",
                             help->name),
                          0, columns);
  } else if (!help->examples.empty()) {
    out += "\n" + tr("Examples") + "\n";
    for (const std::string& example : help->examples) out += "  " + example + "\n";
  }
  if (!help->codes.empty()) {
    rows = {};
    for (const language::CodeHelp& code : help->codes) rows.push_back({code.code, "", code.when});
    out += "\n" + wrapped(tr("Answers, besides those that any line may get"), 0, columns) +
           rows_text(rows, columns);
  }
  return out;
}

}  // namespace lorimat::console
