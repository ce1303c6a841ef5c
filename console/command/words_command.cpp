#include "console/command/words_command.h"

#include <fmt/format.h>

#include <map>
#include <vector>

#include "console/check/language.h"
#include "console/host/places.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "console/terminal/styles.h"
#include "console/terminal/suggestion.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace lorimat::console {
namespace {

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

std::string joined(const std::string& first, const std::string& second) {
  return first.empty() || second.empty() ? first + second : first + ", " + second;
}

std::string command_remark(const CommandWord& command, const std::string& first_name) {
  std::string remark;
  if (first_name != command.name) remark = tr("the same as {}", shown(first_name));
  if (!command.has_handler) remark = joined(remark, tr("no command of the library, answers 268"));
  return remark;
}

std::string field_remark(const FieldWord& field, const std::string& first_name) {
  std::string remark;
  if (first_name != field.name) remark = tr("the same as {}", shown(first_name));
  if (field.mandatory) remark = joined(remark, tr("must be given"));
  return remark;
}

// The first name of each field number, which the others are aliases of.
std::map<int, std::string> first_names(const CommandWord& command) {
  std::map<int, std::string> names;
  for (const FieldWord& field : command.fields) names.emplace(field.number, field.name);
  return names;
}

std::vector<TableRow> table_rows(const std::vector<CommandWord>& commands,
                                 const Language& language) {
  std::vector<TableRow> rows;
  for (const CommandWord& command : commands) {
    TableRow row;
    row.number = std::to_string(command.id);
    row.command = shown(command.name);
    row.short_command = shown(command.shortest);
    row.remark = command_remark(command, language.command_name(command.id));
    const std::map<int, std::string> names = first_names(command);
    bool command_written = false;
    for (const FieldWord& field : command.fields) {
      // A remark of the command has a row of its own.
      if (!command_written && !row.remark.empty()) {
        rows.push_back(row);
        row = {};
      }
      command_written = true;
      row.field_number = std::to_string(field.number);
      row.field = shown(field.name);
      row.short_field = shown(field.shortest);
      row.remark = field_remark(field, names.at(field.number));
      rows.push_back(row);
      row = {};
    }
    if (!command_written) rows.push_back(row);
  }
  return rows;
}

std::string as_text(const std::vector<TableRow>& rows, bool colours) {
  std::string out;
  const auto add = [&out](const TableRow& row, bool heading) {
    const std::string line =
        fmt::format("{:>4}  {:<10}  {:<10}  {:>5}  {:<10}  {:<10}  {}", row.number, row.command,
                    row.short_command, row.field_number, row.field, row.short_field, row.remark);
    out += styled(without_trailing_blanks(line), Style::kStrong, heading);
    out += '\n';
  };
  add({tr("No"), tr("Command"), tr("Short"), tr("Field"), tr("Name"), tr("Short"), ""}, colours);
  for (const TableRow& row : rows) add(row, false);
  return out;
}

std::string cell(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '|' || c == '\\') out += '\\';
    out += c;
  }
  return out;
}

std::string as_markdown(const std::vector<TableRow>& rows) {
  std::string out = fmt::format("| {} | {} | {} | {} | {} | {} | {} |\n", tr("No"), tr("Command"),
                                tr("Short"), tr("Field"), tr("Name"), tr("Short"), tr("Remark"));
  out += "|---|---|---|---|---|---|---|\n";
  for (const TableRow& row : rows) {
    out += fmt::format("| {} | {} | {} | {} | {} | {} | {} |\n", row.number, cell(row.command),
                       cell(row.short_command), row.field_number, cell(row.field),
                       cell(row.short_field), cell(row.remark));
  }
  return out;
}

Json as_json(const std::vector<CommandWord>& commands) {
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
std::vector<CommandWord> select(const std::vector<CommandWord>& commands, const Language& language,
                                const std::string& word, Streams& streams) {
  const Lookup found = language.find_command(word);
  std::vector<CommandWord> selected;
  if (found.failure == 0) {
    for (const CommandWord& command : commands) {
      if (command.id == found.number) selected.push_back(command);
    }
  }
  if (!selected.empty()) return selected;
  if (found.failure == INSTRUCTION_NOT_UNIC) {
    tell_error(streams, tr("{}: fits more than one command", shown(word)));
    return {};
  }
  std::vector<std::string> names;
  for (const CommandWord& command : commands) names.push_back(command.name);
  const std::string near = nearest_word(word, names);
  tell_error(streams, tr("{}: no command has this name", shown(word)) +
                          (near.empty() ? "" : tr("; did you mean {}?", shown(near))));
  return {};
}

}  // namespace

int words_command(const WordsOptions& options, Streams& streams) {
  const Language language(definition_path(options.language));
  std::vector<CommandWord> commands = language.commands();
  if (!options.command.empty()) {
    commands = select(commands, language, options.command, streams);
    if (commands.empty()) return kExitFaults;
  }
  if (options.json) {
    streams.output(json_text(as_json(commands)));
  } else {
    const std::vector<TableRow> rows = table_rows(commands, language);
    streams.output(options.markdown ? as_markdown(rows)
                                    : as_text(rows, streams.output_has_colours()));
  }
  return kExitGood;
}

}  // namespace lorimat::console
