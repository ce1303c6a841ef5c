#include "console/check/definition_words.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "console/message/translate.h"
#include "language/handler_fields.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/front/opcodes.h"

namespace lorimat::console {
namespace {

constexpr int kDump = 3;  // the command that writes dumps
constexpr size_t kListed = 12;

template <typename T>
std::string Listed(const std::vector<T>& items) {
  const size_t count = std::min(items.size(), kListed);
  const std::string text = fmt::format("{}", fmt::join(items.begin(), items.begin() + count, ", "));
  return items.size() > count ? Tr("{} and {} more", text, items.size() - count) : text;
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
  void Add(Severity severity, const char* rule, uint64_t line, std::string what,
           std::string effect = {}) {
    Finding finding;
    finding.severity = severity;
    finding.rule = rule;
    finding.line = line;
    finding.what = std::move(what);
    finding.effect = std::move(effect);
    findings_.Add(std::move(finding));
  }

  // --- Commands.

  void CheckCommands() {
    std::vector<std::string> unbound;
    for (const auto& [place, row] : rows_.rows) {
      if (place.first == DefinitionRows::kCommandSlot) CheckCommand(place.second, row);
    }
    if (rows_.Count(DefinitionRows::kCommandSlot) == 0) {
      Add(Severity::kError, "no-commands", 0, Tr("the file names no commands (section [OPCOD])"),
          Tr("every line fails"));
      return;
    }
    for (const language::CommandFields& command : language::handler_fields()) {
      if (FindHandler(command.id) != nullptr && words_.CommandName(command.id).empty()) {
        unbound.push_back(std::to_string(command.id));
      }
    }
    if (!unbound.empty()) {
      Add(Severity::kWarning, "commands-not-bound", 0,
          Tr("{} of the library's commands have no word: {}", unbound.size(), Listed(unbound)));
    }
  }

  void CheckCommand(int row, const DefinitionRows::Row& entry) {
    if (row >= MAXOPCOD || entry.name.empty()) return;
    const int id = tables_.iIdOpCodes[row];
    const std::string name = tables_.szOpCodes[row];
    CheckCommandFound(entry, name, id);
    NoteLongerNames(DefinitionRows::kCommandSlot, entry, id);
    if (id < 1 || id >= MAXOPCOD) return;
    if (language::find_handler_fields(id) == nullptr && FindHandler(id) == nullptr) {
      Add(Severity::kWarning, "command-not-supported", entry.line,
          Tr("{} has the number {}, which is no command of the library", name, id),
          Tr("its lines answer 268"));
    }
    if (row == id) return;
    for (int other = 1; other < row; ++other) {
      if (tables_.szOpCodes[other][0] != 0 && tables_.iIdOpCodes[other] == id) {
        Add(Severity::kNote, "alias", entry.line,
            Tr("{} is another name of {}", name, tables_.szOpCodes[other]));
        return;
      }
    }
    const bool own_row =
        id > 0 && id < MAXOPCOD && tables_.iIdOpCodes[id] == id && tables_.szOpCodes[id][0] != 0;
    if (!own_row) {
      Add(Severity::kWarning, "row-not-number", entry.line,
          Tr("{} stands in row {} and has the number {}", name, row, id),
          Tr("'#{}' finds the command {}, and dumps take their words from row {}", row, row, id));
    }
  }

  void CheckCommandFound(const DefinitionRows::Row& entry, const std::string& name, int id) {
    // These have a fault of their own.
    if (name.find_first_of(" ',@#") != std::string::npos) return;
    const Lookup found = words_.FindCommand(name);
    if (found.failure == 0 && found.number == id) return;
    const std::string others = Rivals(DefinitionRows::kCommandSlot, entry);
    if (found.failure == 0) {
      Add(Severity::kError, "name-shadowed", entry.line,
          Tr("{} in full finds the command {}", name, words_.CommandName(found.number)),
          Tr("this row is never found"));
    } else {
      Add(Severity::kError, "name-ambiguous", entry.line,
          Tr("{} in full is ambiguous with {}", name, others),
          Tr("a line with it answers {}", int{CLASS_SYNTAX} + found.failure));
    }
  }

  int NumberOf(int slot, int row) const {
    return slot == DefinitionRows::kCommandSlot ? tables_.iIdOpCodes[row] : tables_.iNCI[slot][row];
  }

  // The other names of a slot that begin with this one or that it begins with, with their lines.
  std::string Rivals(int slot, const DefinitionRows::Row& entry) const {
    std::vector<std::string> texts;
    for (const auto& [place, row] : rows_.rows) {
      if (place.first != slot || row.line == entry.line || row.name.empty()) continue;
      const size_t length = std::min(row.name.size(), entry.name.size());
      if (SameIgnoringCase(row.name.c_str(), entry.name.c_str(), length)) {
        texts.push_back(Tr("{} (line {})", row.name, row.line));
      }
    }
    return Listed(texts);
  }

  // A name that begins another one of a different meaning.
  void NoteLongerNames(int slot, const DefinitionRows::Row& entry, int number) {
    for (const auto& [place, row] : rows_.rows) {
      if (place.first != slot || place.second >= MAXOPCOD) continue;
      if (row.name.size() <= entry.name.size()) continue;
      if (!BeginsWith(row.name.c_str(), entry.name.c_str())) continue;
      if (NumberOf(slot, place.second) == number) continue;
      Add(Severity::kNote, "name-begins-another", row.line,
          Tr("{} (line {}) begins {}", entry.name, entry.line, row.name),
          Tr("{} has to be written in full", row.name));
    }
  }

  // --- Fields.

  void CheckField(int id, int row, const DefinitionRows::Row& entry) {
    if (entry.name.empty()) return;
    const std::string name = tables_.szKeyI[id][row];
    const int number = tables_.iNCI[id][row];
    if (row > tables_.iNumOper[id]) {
      Add(Severity::kError, "row-out-of-reach", entry.line,
          Tr("row {} is above {}, the highest row below the last header of [{}] (line "
             "{})",
             row, tables_.iNumOper[id], id, rows_.section_lines.at(id)),
          Tr("the library never finds it"));
      return;
    }
    CheckFieldFound(id, entry, name, number);
    NoteLongerNames(id, entry, number);
    if (number < 1 || number > MAXCAMPI) return;
    const language::CommandFields* handler = language::find_handler_fields(id);
    if (handler != nullptr && !Contains(handler->fields, number) && number > handler->dumped_to) {
      Add(Severity::kWarning, "field-not-read", entry.line,
          Tr("no command reads field {} of [{}], {}", number, id, name),
          Tr("it has no effect in a line"));
    }
    if (row == number) return;
    for (int other = 1; other < row; ++other) {
      if (tables_.szKeyI[id][other][0] != 0 && tables_.iNCI[id][other] == number) {
        Add(Severity::kNote, "alias", entry.line,
            Tr("{} is another name of {}", name, tables_.szKeyI[id][other]));
        break;
      }
    }
    if (handler != nullptr && Contains(handler->fields, row)) {
      Add(Severity::kWarning, "row-not-number", entry.line,
          Tr("{} stands in row {} and has the number {}", name, row, number),
          Tr("'#{}' means field {}, which the command reads, and dumps write {} for it", row, row,
             name));
    }
  }

  void CheckFieldFound(int id, const DefinitionRows::Row& entry, const std::string& name,
                       int number) {
    if (name.find_first_of("',#") != std::string::npos) return;
    const Lookup found = words_.FindField(id, name);
    if (found.failure == 0 && found.number == number) return;
    if (found.failure == 0) {
      Add(Severity::kError, "name-shadowed", entry.line,
          Tr("{} in full finds field {}, {}", name, found.number,
             words_.FieldName(id, found.number)),
          Tr("this row is never found"));
      return;
    }
    const std::string others = Rivals(id, entry);
    Add(Severity::kError, "name-ambiguous", entry.line,
        Tr("{} in full is ambiguous with {}", name, others),
        Tr("a line with it answers {}", int{CLASS_SYNTAX} + found.failure));
  }

  void CheckUnboundFields(const language::CommandFields& command) {
    const std::string name = words_.CommandName(command.id);
    if (name.empty()) return;
    std::vector<int> unbound;
    for (const int field : command.fields) {
      if (words_.FieldName(command.id, field).empty()) unbound.push_back(field);
    }
    if (unbound.empty()) return;
    const auto section = rows_.section_lines.find(command.id);
    Add(Severity::kWarning, "fields-not-bound",
        section == rows_.section_lines.end() ? 0 : section->second,
        Tr("{} (command {}) reads fields that have no word: {}", name, command.id,
           Listed(unbound)));
  }

  void CheckSections() {
    for (const auto& [slot, line] : rows_.section_lines) {
      if (slot < 1 || !words_.CommandName(slot).empty()) continue;
      Add(Severity::kWarning, "section-without-command", line,
          Tr("[{}] is the section of a command without a word", slot),
          slot <= tables_.iTotOpCodes ? Tr("only '#{}' reaches it", slot)
                                      : Tr("no line reaches it"));
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
      Add(Severity::kWarning, "flag-not-read-back", row != nullptr ? row->line : 0,
          Tr("dumps write a flag as {} (INTMSG {}), which is no symbol of value {}", word, flag.row,
             flag.value),
          Tr("such a dump does not load back"));
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
