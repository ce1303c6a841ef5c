#include "console/check/language.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "console/check/definition_fault.h"
#include "console/message/failure.h"
#include "console/message/finding_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/streams.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/front/opcodes.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

// How far a name may be shortened so that this and every longer beginning finds the number.
template <typename Find>
std::string ShortestForm(const std::string& name, int number, Find find) {
  size_t length = name.size();
  while (length > 1) {
    const Lookup found = find(name.substr(0, length - 1));
    if (found.failure != 0 || found.number != number) break;
    --length;
  }
  return name.substr(0, length);
}

bool HasFieldTable(int opcode) { return opcode >= 0 && opcode < MAXOPCOD; }

}  // namespace

Language::Language() : translator_(std::make_unique<EcrCmdCommand>()) {
  WriteDefaultMessages(*translator_);
}

Language::~Language() = default;
Language::Language(Language&&) noexcept = default;
Language& Language::operator=(Language&&) noexcept = default;

Language::Language(const std::string& path) : Language() {
  RequireDefinitionFile(path);
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  const std::string name = Shown(path);
  if (!file.is_open()) {
    throw Failure(Tr("definition file {}: cannot be opened: {}", name, SystemMessage(errno)));
  }
  if (Read(file.get())) return;
  const DefinitionReport report = InspectDefinition(path);
  throw Failure(report.fault ? Tr("definition file {}:{}: {}", name, report.fault->line,
                                  Shown(WhatText(*report.fault)))
                             : Tr("definition file {}: the library cannot read it", name));
}

Language Language::FromText(std::string_view text) {
  Language language;
  const Descriptor file(memfd_create("definition", MFD_CLOEXEC));
  if (!file.is_open() || !WriteAll(file.get(), text)) {
    throw Failure(Tr("no room for the words in memory: {}", SystemMessage(errno)));
  }
  if (!language.Read(file.get())) throw Failure(Tr("the library refuses the words"));
  return language;
}

Language Language::WithoutWords() { return {}; }

// By the descriptor: the reader takes a path of 79 characters at most.
bool Language::Read(int descriptor) {
  std::string path = fmt::format("/proc/self/fd/{}", descriptor);
  return translator_->LeggiFileIni(path.data()) == 1;
}

Lookup Language::FindCommand(const std::string& word) const {
  std::string line = word;
  int position = 1;
  Lookup found;
  found.failure = translator_->GetCodOp(line.data(), &position, &found.number);
  return found;
}

Lookup Language::FindField(int opcode, const std::string& word) const {
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
    command.shortest = ShortestForm(command.name, command.id,
                                    [this](const std::string& word) { return FindCommand(word); });
    command.has_handler = FindHandler(command.id) != nullptr;
    const int rows =
        HasFieldTable(command.id) ? std::min<int>(translator_->iNumOper[command.id], MAXCAMPI) : 0;
    for (int field_row = 1; field_row <= rows; ++field_row) {
      FieldWord field;
      field.row = field_row;
      field.name = translator_->szKeyI[command.id][field_row];
      if (field.name.empty()) continue;
      field.number = translator_->iNCI[command.id][field_row];
      field.mandatory = translator_->bObl[command.id][field_row];
      field.shortest = ShortestForm(field.name, field.number, [&](const std::string& word) {
        return FindField(command.id, word);
      });
      command.fields.push_back(std::move(field));
    }
    commands.push_back(std::move(command));
  }
  return commands;
}

int Language::ReadLine(const std::string& line, long* code) const {
  const auto refused = [code](int index) {
    if (code != nullptr) *code = CLASS_SYNTAX | index;
    return 0;
  };
  if (code != nullptr) *code = 0;
  // The library reads a line up to its first NUL byte.
  std::string source = line.substr(0, line.find('\0'));
  if (source.size() > kLongestLine) return refused(SOURCE_LINE_TOO_LONG);
  std::string cleaned(source.size() + 1, '\0');
  if (lorimatutility::TogliCommento(cleaned.data(), source.data(), translator_->cChQuote) == 0) {
    return 0;
  }
  if (cleaned.front() == '@') return kNamesBatch;
  int position = 1;
  int opcode = 0;
  int failure = translator_->GetCodOp(cleaned.data(), &position, &opcode);
  if (failure == 0) failure = translator_->GetCampi(cleaned.data(), opcode, &position);
  return failure == 0 ? opcode : refused(failure);
}

std::vector<std::string> Language::symbols() const {
  std::vector<std::string> names;
  for (int row = 1; row <= translator_->iTotSimb; ++row) names.push_back(translator_->szSimb[row]);
  return names;
}

std::string Language::CommandName(int opcode) const {
  for (int row = 1; row < MAXOPCOD; ++row) {
    if (translator_->szOpCodes[row][0] != 0 && translator_->iIdOpCodes[row] == opcode) {
      return translator_->szOpCodes[row];
    }
  }
  return {};
}

std::string Language::FieldName(int opcode, int number) const {
  if (!HasFieldTable(opcode)) return {};
  for (int row = 1; row <= MAXCAMPI; ++row) {
    if (translator_->szKeyI[opcode][row][0] != 0 && translator_->iNCI[opcode][row] == number) {
      return translator_->szKeyI[opcode][row];
    }
  }
  return {};
}

}  // namespace lorimat::console
