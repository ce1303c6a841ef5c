#include "console/check/definition_words.h"

#include <algorithm>

#include "language/handler_fields.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/front/opcodes.h"

namespace lorimat::console {
namespace {

using Cause = FindingCause;

constexpr int kDump = 3;  // the command that writes dumps
constexpr size_t kListed = 12;

void AddTo(FindingList& list, std::string name, uint64_t line = 0) {
  if (list.names.size() < kListed) {
    list.names.push_back({std::move(name), line});
  } else {
    ++list.more;
  }
}

bool Contains(const std::vector<int>& numbers, int number) {
  return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// The words of one file, held against the handlers.
class WordCheck {
 public:
  WordCheck(const DefinitionRows& rows, const Language& words, Findings& findings)
      : rows_(rows), findings_(findings), words_(words), tables_(words_.translator()) {}

  void Run() {
    CheckCommands();
    for (const auto& [place, row] : rows_.rows) {
      if (place.first >= 0) CheckField(place.first, place.second, row);
    }
    for (const language::CommandFields& command : language::handler_fields()) {
      CheckUnboundFields(command);
    }
    CheckSections();
    CheckFlags();
  }

 private:
  void Add(Cause cause, uint64_t line, std::vector<FindingArgument> arguments = {}) {
    Finding finding = MakeFinding(cause, std::move(arguments));
    finding.line = line;
    findings_.Add(std::move(finding));
  }

  // --- Commands.

  void CheckCommands() {
    for (const auto& [place, row] : rows_.rows) {
      if (place.first == DefinitionRows::kCommandSlot) CheckCommand(place.second, row);
    }
    if (rows_.Count(DefinitionRows::kCommandSlot) == 0) {
      return Add(Cause::kNoCommands, 0);
    }
    FindingList unbound;
    int64_t count = 0;
    for (const language::CommandFields& command : language::handler_fields()) {
      if (FindHandler(command.id) != nullptr && words_.CommandName(command.id).empty()) {
        AddTo(unbound, std::to_string(command.id));
        ++count;
      }
    }
    if (count != 0) Add(Cause::kCommandsUnbound, 0, {count, std::move(unbound)});
  }

  void CheckCommand(int row, const DefinitionRows::Row& entry) {
    if (row >= MAXOPCOD || entry.name.empty()) return;
    const int id = tables_.iIdOpCodes[row];
    const std::string name = tables_.szOpCodes[row];
    CheckCommandFound(entry, name, id);
    NoteLongerNames(DefinitionRows::kCommandSlot, entry, id);
    if (id < 1 || id >= MAXOPCOD) return;
    if (language::find_handler_fields(id) == nullptr && FindHandler(id) == nullptr) {
      Add(Cause::kOpcodeUnknown, entry.line, {name, id});
    }
    if (row == id) return;
    for (int other = 1; other < row; ++other) {
      if (tables_.szOpCodes[other][0] != 0 && tables_.iIdOpCodes[other] == id) {
        return Add(Cause::kAlias, entry.line, {name, tables_.szOpCodes[other]});
      }
    }
    const bool own_row =
        id > 0 && id < MAXOPCOD && tables_.iIdOpCodes[id] == id && tables_.szOpCodes[id][0] != 0;
    if (!own_row) Add(Cause::kCommandInOtherRow, entry.line, {name, row, id});
  }

  void CheckCommandFound(const DefinitionRows::Row& entry, const std::string& name, int id) {
    // These have a fault of their own.
    if (name.find_first_of(" ',@#") != std::string::npos) return;
    const Lookup found = words_.FindCommand(name);
    if (found.failure == 0 && found.number == id) return;
    if (found.failure == 0) {
      Add(Cause::kCommandShadowed, entry.line, {name, words_.CommandName(found.number)});
    } else {
      AddAmbiguous(DefinitionRows::kCommandSlot, entry, name, found.failure);
    }
  }

  void AddAmbiguous(int slot, const DefinitionRows::Row& entry, const std::string& name,
                    int failure) {
    Add(Cause::kNameAmbiguous, entry.line,
        {name, Rivals(slot, entry), int{CLASS_SYNTAX} + failure});
  }

  int NumberOf(int slot, int row) const {
    return slot == DefinitionRows::kCommandSlot ? tables_.iIdOpCodes[row] : tables_.iNCI[slot][row];
  }

  // The other names of a slot that begin with this one or that it begins with, with their lines.
  FindingList Rivals(int slot, const DefinitionRows::Row& entry) const {
    FindingList rivals;
    for (const auto& [place, row] : rows_.rows) {
      if (place.first != slot || row.line == entry.line || row.name.empty()) continue;
      const size_t length = std::min(row.name.size(), entry.name.size());
      if (SameIgnoringCase(row.name.c_str(), entry.name.c_str(), length)) {
        AddTo(rivals, row.name, row.line);
      }
    }
    return rivals;
  }

  // A name that begins another one of a different meaning.
  void NoteLongerNames(int slot, const DefinitionRows::Row& entry, int number) {
    for (const auto& [place, row] : rows_.rows) {
      if (place.first != slot || place.second >= MAXOPCOD) continue;
      if (row.name.size() <= entry.name.size()) continue;
      if (!BeginsWith(row.name.c_str(), entry.name.c_str())) continue;
      if (NumberOf(slot, place.second) == number) continue;
      Add(Cause::kNameBeginsAnother, row.line, {entry.name, entry.line, row.name});
    }
  }

  // --- Fields.

  void CheckField(int id, int row, const DefinitionRows::Row& entry) {
    if (entry.name.empty()) return;
    const std::string name = tables_.szKeyI[id][row];
    const int number = tables_.iNCI[id][row];
    if (row > tables_.iNumOper[id]) {
      return Add(Cause::kRowAboveHighest, entry.line,
                 {row, tables_.iNumOper[id], id, rows_.section_lines.at(id)});
    }
    CheckFieldFound(id, entry, name, number);
    NoteLongerNames(id, entry, number);
    if (number < 1 || number > MAXCAMPI) return;
    const language::CommandFields* handler = language::find_handler_fields(id);
    if (handler != nullptr && !Contains(handler->fields, number) && number > handler->dumped_to) {
      Add(Cause::kFieldOfNoCommand, entry.line, {number, id, name});
    }
    if (row == number) return;
    for (int other = 1; other < row; ++other) {
      if (tables_.szKeyI[id][other][0] != 0 && tables_.iNCI[id][other] == number) {
        Add(Cause::kAlias, entry.line, {name, tables_.szKeyI[id][other]});
        break;
      }
    }
    if (handler != nullptr && Contains(handler->fields, row)) {
      Add(Cause::kFieldInOtherRow, entry.line, {name, row, number});
    }
  }

  void CheckFieldFound(int id, const DefinitionRows::Row& entry, const std::string& name,
                       int number) {
    if (name.find_first_of("',#") != std::string::npos) return;
    const Lookup found = words_.FindField(id, name);
    if (found.failure == 0 && found.number == number) return;
    if (found.failure == 0) {
      Add(Cause::kFieldShadowed, entry.line,
          {name, found.number, words_.FieldName(id, found.number)});
    } else {
      AddAmbiguous(id, entry, name, found.failure);
    }
  }

  void CheckUnboundFields(const language::CommandFields& command) {
    const std::string name = words_.CommandName(command.id);
    if (name.empty()) return;
    FindingList unbound;
    for (const int field : command.fields) {
      if (words_.FieldName(command.id, field).empty()) AddTo(unbound, std::to_string(field));
    }
    if (unbound.names.empty()) return;
    const auto section = rows_.section_lines.find(command.id);
    Add(Cause::kFieldsUnbound, section == rows_.section_lines.end() ? 0 : section->second,
        {name, command.id, std::move(unbound)});
  }

  void CheckSections() {
    for (const auto& [slot, line] : rows_.section_lines) {
      if (slot < 1 || !words_.CommandName(slot).empty()) continue;
      Add(slot <= tables_.iTotOpCodes ? Cause::kSectionByNumberOnly : Cause::kSectionUnreached,
          line, {slot});
    }
  }

  // Dumps write flags with two of the internal messages, and lines must read them back.
  void CheckFlags() {
    if (words_.CommandName(kDump).empty()) return;
    const struct {
      int row;
      int value;
    } flags[] = {{SMSG_YES, 2}, {SMSG_NO, 1}};
    for (const auto& flag : flags) {
      const char* text = tables_.TabIntMsg[flag.row];
      std::string word(text, strnlen(text, sizeof tables_.TabIntMsg[flag.row]));
      int value = 0;
      if (tables_.TradSimb(word.data(), &value) && value == flag.value) continue;
      const DefinitionRows::Row* row = rows_.Find(DefinitionRows::kMessageSlot, flag.row);
      Add(Cause::kFlagNotReadBack, row != nullptr ? row->line : 0, {word, flag.row, flag.value});
    }
  }

  const DefinitionRows& rows_;
  Findings& findings_;
  const Language& words_;
  EcrCmdCommand& tables_;
};

}  // namespace

const DefinitionRows::Row* DefinitionRows::Find(int slot, int row) const {
  const auto found = rows.find({slot, row});
  return found == rows.end() ? nullptr : &found->second;
}

size_t DefinitionRows::Count(int slot) const {
  return static_cast<size_t>(std::count_if(
      rows.begin(), rows.end(), [slot](const auto& row) { return row.first.first == slot; }));
}

size_t DefinitionRows::field_count() const {
  return static_cast<size_t>(std::count_if(rows.begin(), rows.end(),
                                           [](const auto& row) { return row.first.first >= 0; }));
}

void CheckWords(const DefinitionRows& rows, const Language& words, Findings& findings) {
  WordCheck(rows, words, findings).Run();
}

}  // namespace lorimat::console
