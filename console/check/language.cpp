#include "console/check/language.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "console/check/definition_fault.h"
#include "console/message/failure.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/streams.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/opcodes.h"

namespace lorimat::console {
namespace {

// How far a name may be shortened so that this and every longer beginning finds the number.
template <typename Find>
std::string shortest_form(const std::string& name, int number, Find find) {
  size_t length = name.size();
  while (length > 1) {
    const Lookup found = find(name.substr(0, length - 1));
    if (found.failure != 0 || found.number != number) break;
    --length;
  }
  return name.substr(0, length);
}

bool has_field_table(int opcode) { return opcode >= 0 && opcode < MAXOPCOD; }

}  // namespace

Language::Language() : translator_(std::make_unique<EcrCmdCommand>()) {
  write_default_messages(*translator_);
}

Language::~Language() = default;
Language::Language(Language&&) noexcept = default;
Language& Language::operator=(Language&&) noexcept = default;

Language::Language(const std::string& path) : Language() {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  const std::string name = shown(path);
  if (!file.is_open()) {
    throw Failure(tr("definition file {}: cannot be opened: {}", name, system_message(errno)));
  }
  struct stat status;
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
    throw Failure(tr("definition file {}: is no regular file", name));
  }
  if (read(file.get())) return;
  const DefinitionReport report = inspect_definition(path);
  throw Failure(report.fault_line != 0
                    ? tr("definition file {}:{}: {}", name, report.fault_line, report.fault)
                    : tr("definition file {}: the library cannot read it", name));
}

Language Language::from_text(std::string_view text) {
  Language language;
  const Descriptor file(memfd_create("definition", MFD_CLOEXEC));
  if (!file.is_open() || !write_all(file.get(), text)) {
    throw Failure(tr("no room for the words in memory: {}", system_message(errno)));
  }
  if (!language.read(file.get())) throw Failure(tr("the library refuses the words"));
  return language;
}

// By the descriptor: the reader takes a path of 79 characters at most.
bool Language::read(int descriptor) {
  std::string path = fmt::format("/proc/self/fd/{}", descriptor);
  return translator_->LeggiFileIni(path.data()) == 1;
}

Lookup Language::find_command(const std::string& word) const {
  std::string line = word;
  int position = 1;
  Lookup found;
  found.failure = translator_->GetCodOp(line.data(), &position, &found.number);
  return found;
}

Lookup Language::find_field(int opcode, const std::string& word) const {
  std::string key = word.substr(0, MAXSIMBLN);
  Lookup found;
  found.failure = translator_->GetNumOper(opcode, key.data(), &found.number);
  return found;
}

std::vector<CommandWord> Language::commands() const {
  std::vector<CommandWord> commands;
  for (int row = 1; row < MAXOPCOD; ++row) {
    CommandWord command;
    command.row = row;
    command.name = translator_->szOpCodes[row];
    if (command.name.empty()) continue;
    command.id = translator_->iIdOpCodes[row];
    command.shortest = shortest_form(
        command.name, command.id, [this](const std::string& word) { return find_command(word); });
    command.has_handler = find_handler(command.id) != nullptr;
    const int rows = has_field_table(command.id)
                         ? std::min<int>(translator_->iNumOper[command.id], MAXCAMPI)
                         : 0;
    for (int field_row = 1; field_row <= rows; ++field_row) {
      FieldWord field;
      field.row = field_row;
      field.name = translator_->szKeyI[command.id][field_row];
      if (field.name.empty()) continue;
      field.number = translator_->iNCI[command.id][field_row];
      field.mandatory = translator_->bObl[command.id][field_row];
      field.shortest = shortest_form(field.name, field.number, [&](const std::string& word) {
        return find_field(command.id, word);
      });
      command.fields.push_back(std::move(field));
    }
    commands.push_back(std::move(command));
  }
  return commands;
}

std::vector<std::string> Language::symbols() const {
  std::vector<std::string> names;
  for (int row = 1; row <= translator_->iTotSimb; ++row) names.push_back(translator_->szSimb[row]);
  return names;
}

std::string Language::command_name(int opcode) const {
  for (int row = 1; row < MAXOPCOD; ++row) {
    if (translator_->szOpCodes[row][0] != 0 && translator_->iIdOpCodes[row] == opcode) {
      return translator_->szOpCodes[row];
    }
  }
  return {};
}

std::string Language::field_name(int opcode, int number) const {
  if (!has_field_table(opcode)) return {};
  for (int row = 1; row <= MAXCAMPI; ++row) {
    if (translator_->szKeyI[opcode][row][0] != 0 && translator_->iNCI[opcode][row] == number) {
      return translator_->szKeyI[opcode][row];
    }
  }
  return {};
}

}  // namespace lorimat::console
