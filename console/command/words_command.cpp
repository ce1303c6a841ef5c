// "lorimat words": the commands and fields of a definition file.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "console/check/language.h"
#include "console/command/subcommand.h"
#include "console/host/installed_files.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace lorimat::console {
namespace {

struct WordsOptions {
  std::string language;  // definition file; empty takes the one that a host would read
  std::string command;   // empty shows all; else a name, which may be shortened, or "#10"
  bool markdown = false;
  bool json = false;
};

constexpr std::string_view kWordsExamples = TR_TEXT(R"(Examples:
  lorimat words
      The commands and fields of the definition file beside the program.
  lorimat words --command VEND
      One command; the name may be shortened, or be #10.
  lorimat words --markdown > words.md
      The table for a page.

"Short" is how far a word may be cut.

Exit codes:
  0  the words were shown
  1  there is no such command
  2  wrong use, or the definition file cannot be read
)");

// A row of the table: a command, a field of it, or both in one.
struct TableRow {
  std::string number;
  std::string command;
  std::string short_command;
  std::string field_number;
  std::string field;
  std::string short_field;
  std::string remark;
};

std::string Joined(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + ", " + second;
}

std::string CommandRemark(const CommandWord& command, const std::string& first_name) {
  std::string remark;
  if (first_name != command.name) remark = Tr("the same as {}", Shown(first_name));
  if (!command.has_handler) remark = Joined(remark, Tr("no command of the library, answers 268"));
  return remark;
}

std::string FieldRemark(const FieldWord& field, const std::string& first_name) {
  std::string remark;
  if (first_name != field.name) remark = Tr("the same as {}", Shown(first_name));
  if (field.mandatory) remark = Joined(remark, Tr("must be given"));
  return remark;
}

// The first name of each field number, which the others are aliases of.
std::map<int, std::string> FirstNames(const CommandWord& command) {
  std::map<int, std::string> names;
  for (const FieldWord& field : command.fields) names.emplace(field.number, field.name);
  return names;
}

std::vector<TableRow> TableRows(const std::vector<CommandWord>& commands,
                                const Language& language) {
  std::vector<TableRow> rows;
  for (const CommandWord& command : commands) {
    TableRow row;
    row.number = std::to_string(command.id);
    row.command = Shown(command.name);
    row.short_command = Shown(command.shortest);
    row.remark = CommandRemark(command, language.CommandName(command.id));
    const std::map<int, std::string> names = FirstNames(command);
    bool command_written = false;
    for (const FieldWord& field : command.fields) {
      // A remark of the command has a row of its own.
      if (!command_written && !row.remark.empty()) {
        rows.push_back(row);
        row = {};
      }
      command_written = true;
      row.field_number = std::to_string(field.number);
      row.field = Shown(field.name);
      row.short_field = Shown(field.shortest);
      row.remark = FieldRemark(field, names.at(field.number));
      rows.push_back(row);
      row = {};
    }
    if (!command_written) rows.push_back(row);
  }
  return rows;
}

std::string AsText(const std::vector<TableRow>& rows, bool colours) {
  const TableRow headings = {Tr("No"),   Tr("Command"), Tr("Short"), Tr("Field"),
                             Tr("Name"), Tr("Short"),   ""};
  // As wide as the language needs, and no less than the words that ship.
  const auto width = [](const std::string& heading, size_t least) {
    return std::max(least, ColumnsOf(heading));
  };
  std::string out;
  const auto add = [&](const TableRow& row, bool heading) {
    const std::string line =
        fmt::format("{:>{}}  {:<{}}  {:<{}}  {:>{}}  {:<{}}  {:<{}}  {}", row.number,
                    width(headings.number, 4), row.command, width(headings.command, 10),
                    row.short_command, width(headings.short_command, 10), row.field_number,
                    width(headings.field_number, 5), row.field, width(headings.field, 10),
                    row.short_field, width(headings.short_field, 10), row.remark);
    out += Styled(WithoutTrailingBlanks(line), Style::kStrong, heading);
    out += '\n';
  };
  add(headings, colours);
  for (const TableRow& row : rows) add(row, false);
  return out;
}

std::string Cell(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '|' || c == '\\') out += '\\';
    out += c;
  }
  return out;
}

std::string AsMarkdown(const std::vector<TableRow>& rows) {
  std::string out = fmt::format("| {} | {} | {} | {} | {} | {} | {} |\n", Tr("No"), Tr("Command"),
                                Tr("Short"), Tr("Field"), Tr("Name"), Tr("Short"), Tr("Remark"));
  out += "|---|---|---|---|---|---|---|\n";
  for (const TableRow& row : rows) {
    out += fmt::format("| {} | {} | {} | {} | {} | {} | {} |\n", row.number, Cell(row.command),
                       Cell(row.short_command), row.field_number, Cell(row.field),
                       Cell(row.short_field), Cell(row.remark));
  }
  return out;
}

Json AsJson(const std::vector<CommandWord>& commands) {
  Json all = Json::array();
  for (const CommandWord& command : commands) {
    Json fields = Json::array();
    for (const FieldWord& field : command.fields) {
      fields.push_back({{"number", field.number},
                        {"name", field.name},
                        {"short", field.shortest},
                        {"row", field.row},
                        {"mandatory", field.mandatory}});
    }
    all.push_back({{"opcode", command.id},
                   {"name", command.name},
                   {"short", command.shortest},
                   {"row", command.row},
                   {"supported", command.has_handler},
                   {"fields", std::move(fields)}});
  }
  return all;
}

// The rows of one command; empty, with the cause told, when the word finds none.
std::vector<CommandWord> Select(const std::vector<CommandWord>& commands, const Language& language,
                                const std::string& word, Streams& streams) {
  const Lookup found = language.FindCommand(word);
  std::vector<CommandWord> selected;
  if (found.failure == 0) {
    for (const CommandWord& command : commands) {
      if (command.id == found.number) selected.push_back(command);
    }
  }
  if (!selected.empty()) return selected;
  if (found.failure == INSTRUCTION_NOT_UNIC) {
    TellError(streams, Tr("{}: fits more than one command", Shown(word)));
    return {};
  }
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (const CommandWord& command : commands) names.push_back(command.name);
  const std::string near = NearestWord(word, names);
  TellError(streams, Tr("{}: no command has this name", Shown(word)) +
                         (near.empty() ? "" : Tr("; did you mean {}?", Shown(near))));
  return {};
}

void AddOptions(CLI::App* words, WordsOptions* options) {
  words
      ->add_option("--language", options->language,
                   Tr("Definition file (default: the one that a host would read)"))
      ->type_name("FILE");
  words->add_option("--command", options->command, Tr("Show this command alone"))
      ->type_name("NAME");
  CLI::Option* markdown =
      words->add_flag("--markdown", options->markdown, Tr("Write a Markdown table"));
  words->add_flag("--json", options->json, Tr("Write JSON"))->excludes(markdown);
}

// Returns kExitGood, or kExitFaults when there is no such command. Throws Failure when the
// definition file cannot be read.
int WordsCommand(const WordsOptions& options, Streams& streams) {
  const Language language(DefinitionPath(options.language));
  std::vector<CommandWord> commands = language.commands();
  if (!options.command.empty()) {
    commands = Select(commands, language, options.command, streams);
    if (commands.empty()) return kExitFaults;
  }
  if (options.json) {
    streams.Output(JsonText(AsJson(commands)));
  } else {
    const std::vector<TableRow> rows = TableRows(commands, language);
    streams.Output(options.markdown ? AsMarkdown(rows)
                                    : AsText(rows, streams.output_has_colours()));
  }
  return kExitGood;
}

}  // namespace

const Subcommand kWordsSubcommand = {"words", HelpGroup::kLookIntoLines,
                                     TR_TEXT("Show the commands and fields of a definition file"),
                                     kWordsExamples,
                                     &Prepare<WordsOptions, AddOptions, WordsCommand>};

}  // namespace lorimat::console
