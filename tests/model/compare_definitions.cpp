// Definition files: the tables that they leave, their message texts, and the result strings that
// are made of these.

#include <cstring>
#include <memory>

#include "model/comparison.h"
#include "model/definitions.h"
#include "model/scratch_file.h"
#include "model/translator_model.h"
#include "model/translator_under_test.h"

namespace {

// Collects what is not the same.
class Tables {
 public:
  void Number(const std::string& name, int row, long model, long translator) {
    if (model != translator) {
      Tell(name, row, std::to_string(model), std::to_string(translator));
    }
  }

  void Text(const std::string& name, int row, const std::string& model, const char* translator,
            size_t size) {
    const std::string own(translator, strnlen(translator, size));
    if (model != own) Tell(name, row, Shown(model), Shown(own));
  }

  template <size_t Rows, size_t Size>
  void Texts(const std::string& name, const model::Texts& model,
             const char (&translator)[Rows][Size]) {
    for (int row = 0; row < static_cast<int>(Rows); ++row) {
      const auto text = model.find(row);
      Text(name, row, text == model.end() ? "" : text->second, translator[row], Size);
    }
  }

  const std::string& differences() const { return differences_; }

 private:
  void Tell(const std::string& name, int row, const std::string& model,
            const std::string& translator) {
    differences_ += " " + name + "[" + std::to_string(row) + "]: the model has " + model +
                    ", the translator " + translator + ";";
  }

  std::string differences_;
};

model::Texts Keys(const model::Definition& definition, int digit) {
  const auto keys = definition.client_keys.find(digit);
  return keys == definition.client_keys.end() ? model::Texts() : keys->second;
}

void CompareMessages(Tables& tables, const model::Definition& definition,
                     const EcrCmdInterpreter& translator) {
  tables.Texts("INTMSG", definition.internal, translator.TabIntMsg);
  tables.Texts("TOTG", definition.totals, translator.TabDscTotG);
  tables.Texts("ERRMSG0", definition.errors.at(0), translator.TabErrTradBase);
  tables.Texts("ERRMSG1", definition.errors.at(1), translator.TabErrTrad1);
  tables.Texts("ERRMSG2", definition.errors.at(2), translator.TabErrTrad2);
  tables.Texts("ERRMSG3", definition.errors.at(3), translator.TabErrTrad3);
  tables.Texts("ERRMSG4", definition.errors.at(4), translator.TabErrTrad4);
  tables.Texts("ERRMSG5", definition.errors.at(5), translator.TabErrTrad5);
  tables.Texts("ERRMSG6", definition.errors.at(6), translator.TabErrTrad6);
  tables.Texts("ERRMSG7", definition.errors.at(7), translator.TabErrTrad7);
  tables.Texts("ERRMSG8", definition.errors.at(8), translator.TabErrTrad8);
  tables.Texts("ERRMSG9", definition.errors.at(9), translator.TabErrTrad9);
  tables.Texts("key of ERRMSG2", Keys(definition, 2), translator.TabErrKey2);
  tables.Texts("key of ERRMSG3", Keys(definition, 3), translator.TabErrKey3);
}

void CompareWords(Tables& tables, const model::Definition& definition,
                  const EcrCmdInterpreter& translator) {
  tables.Number("highest command", 0, definition.highest_command, translator.iTotOpCodes);
  const model::CommandRow no_command;
  for (int row = 1; row < MAXOPCOD; ++row) {
    const auto own = definition.commands.find(row);
    const model::CommandRow& command = own == definition.commands.end() ? no_command : own->second;
    tables.Text("command", row, command.name, translator.szOpCodes[row], MAXSIMBLN + 1);
    tables.Number("opcode id", row, command.id, translator.iIdOpCodes[row]);
  }
  const model::FieldRow no_field;
  for (int id = 0; id < MAXOPCOD; ++id) {
    const auto highest = definition.highest_field.find(id);
    tables.Number("highest field", id,
                  highest == definition.highest_field.end() ? 0 : highest->second,
                  translator.iNumOper[id]);
    const auto own = definition.fields.find(id);
    for (int row = 1; row <= MAXCAMPI; ++row) {
      const bool has = own != definition.fields.end() && own->second.contains(row);
      const model::FieldRow& field = has ? own->second.at(row) : no_field;
      tables.Text("field", id, field.name, translator.szKeyI[id][row], MAXSIMBLN + 1);
      tables.Number("field number", id, field.number, translator.iNCI[id][row]);
      tables.Number("mandatory", id, field.mandatory, translator.bObl[id][row]);
    }
  }
  tables.Number("symbols", 0, static_cast<long>(definition.symbols.size()), translator.iTotSimb);
  for (int row = 1; row <= static_cast<int>(definition.symbols.size()); ++row) {
    const auto& [name, value] = definition.symbols[static_cast<size_t>(row) - 1];
    tables.Text("symbol", row, name, translator.szSimb[row], MAXSIMBLN + 1);
    tables.Number("value", row, value, translator.iVSimb[row]);
  }
  for (int code = 0; code < 300; ++code) {
    const auto key = definition.symbol_of_key.find(code);
    tables.Number("symbol of key", code, key == definition.symbol_of_key.end() ? 0 : key->second,
                  translator.iInvTast[code]);
  }
}

void CompareKeySequences(Comparison& comparison, const model::Definition& definition,
                         EcrCmdInterpreter& translator) {
  static const std::vector<std::string> pieces = {" ",   "  ",  "A",  "B", "AB",  "6",
                                                  "255", "256", "-1", ".", "1.5", "99999999999"};
  for (int i = 0; i < 20; ++i) {
    std::string sequence;
    const uint64_t length = comparison.Once(4) ? 190 + comparison.Below(30) : comparison.Below(12);
    const bool keys = comparison.Once(2);
    for (uint64_t piece = 0; piece < length; ++piece) {
      sequence += keys ? (comparison.Once(2) ? "6 " : "7 ") : comparison.Any(pieces);
    }
    std::vector<int> expected;
    const int count = model::TakeKeys(definition, sequence, expected);
    unsigned char taken[100] = {};
    const int answer = translator.GetMacro(sequence.data(), taken);
    comparison.Check(answer == count && std::equal(expected.begin(), expected.end(), taken), [&] {
      return "keys " + Shown(sequence) + ": the model says " + std::to_string(count) +
             ", the translator " + std::to_string(answer);
    });
  }
}

// One definition for the model, one for the translator, and a result string of each.
class ResultPair {
 public:
  explicit ResultPair(const std::string& file) {
    definition_.Read(file, '\'');
    translator_->Read(file, ScratchFile());
  }

  void Compare(Comparison& comparison, long code, const model::Pending& pending,
               const std::string& before) {
    model::Pending own = pending;
    Prepare(pending);
    const std::string expected = model::ResultText(definition_, own, code, before);
    char text[512] = {};
    std::memcpy(text, before.data(), before.size());
    translator_->SetStringErr(text, code);
    const STATERR& state = translator_->Stat;
    const bool same = expected == text && state.bLineErr == own.line_failed &&
                      state.bEMLineErr == own.link_line_failed &&
                      state.bGetP == own.property.has_value() &&
                      (translator_->TStato.iFlgINFO != 0) == own.info.has_value() &&
                      own.addition == state.szMsgOK;
    comparison.Check(same, [&] {
      return "code " + std::to_string(code) + ": the model says " + Shown(expected) +
             ", the translator " + Shown(text);
    });
  }

 private:
  template <size_t Size>
  static void Put(char (&place)[Size], const std::string& text) {
    std::memset(place, 0, Size);
    std::memcpy(place, text.data(), std::min(text.size(), Size - 1));
  }

  void Prepare(const model::Pending& pending) {
    STATERR& state = translator_->Stat;
    state.bGetP = pending.property.has_value();
    Put(state.szGetP, pending.property.value_or(""));
    translator_->TStato.iFlgINFO = pending.info.has_value();
    Put(translator_->szInfo, pending.info.value_or(""));
    Put(state.szMsgOK, pending.addition);
    translator_->TStato.iFlgEMCmd = pending.link;
    state.lEMTotLines = pending.link_lines;
    state.dwEMTotTime = pending.link_time;
    state.bLineErr = pending.line_failed;
    state.bEMLineErr = pending.link_line_failed;
    state.lCurLine = pending.line;
    state.lEMCurLine = pending.link_line;
    state.lEMTotErr = pending.link_errors;
    state.lEMTotErrEcr = pending.link_device_errors;
  }

  model::Definition definition_;
  std::unique_ptr<TranslatorUnderTest> translator_ = std::make_unique<TranslatorUnderTest>();
};

// The flags of an answer, as bits.
model::Pending Flags(unsigned bits) {
  model::Pending pending;
  pending.line_failed = (bits & 1) != 0;
  pending.link_line_failed = (bits & 2) != 0;
  pending.line = 7;
  pending.link_line = 2147483647;
  pending.link_errors = 12;
  pending.link_device_errors = -1;
  if ((bits & 4) != 0) pending.property = std::string(200, 'P');
  if ((bits & 8) != 0) pending.info = "1,'INFO'";
  if ((bits & 16) != 0) pending.addition = " AND MORE";
  pending.link = (bits & 32) != 0;
  pending.link_lines = 44;
  pending.link_time = 4294967295U;
  return pending;
}

}  // namespace

void CompareDefinitions(Comparison& comparison, uint64_t most) {
  const auto compare = [&comparison](const std::string& file) {
    model::Definition definition;
    auto translator = std::make_unique<TranslatorUnderTest>();
    const bool expected = definition.Read(file, '\'');
    const bool read = translator->Read(file, ScratchFile());
    Tables tables;
    CompareWords(tables, definition, *translator);
    CompareMessages(tables, definition, *translator);
    comparison.Check(expected == read && tables.differences().empty(), [&] {
      return "definition file " + Shown(file) + ": the model says " + std::to_string(expected) +
             ", the translator " + std::to_string(read) + ";" + tables.differences();
    });
    CompareKeySequences(comparison, definition, *translator);
  };
  const uint64_t begin = comparison.count();
  for (const std::string& file : SmallDefinitions()) compare(file);
  uint64_t files = SmallDefinitions().size();
  for (; comparison.count() - begin < most; ++files) compare(ChanceDefinition(comparison));
  std::printf("%llu definition files with all their tables, and key sequences\n",
              static_cast<unsigned long long>(files));
}

void CompareResultTexts(Comparison& comparison) {
  constexpr long kCodes = 0x20000;
  // Every row that a file can fill, some as long as they can be.
  std::string texts = "[INTMSG]\n1='YES, '\n2=" + std::string(32, 'N') + "\n3='E '\n";
  for (int digit = 0; digit < 10; ++digit) {
    texts += "[ERRMSG" + std::to_string(digit) + "]\n";
    for (int key = 0; key < 50; ++key) {
      const std::string text(key % 10 == 3 ? 80 : 5, static_cast<char>('A' + digit));
      texts += std::to_string(key) + "=" + text + "\n";
    }
  }
  for (const std::string& file : {std::string(), texts}) {
    ResultPair pair(file);
    for (long code = 0; code < kCodes; ++code) {
      for (unsigned bits = 0; bits < 4; ++bits) pair.Compare(comparison, code, Flags(bits), "");
    }
    for (unsigned bits = 0; bits < 64; ++bits) {
      pair.Compare(comparison, 0, Flags(bits), "");
      pair.Compare(comparison, 16, Flags(bits), "WHAT STANDS THERE ");
      pair.Compare(comparison, -1, Flags(bits), "");
      pair.Compare(comparison, -0x7FFFFF00L + 12, Flags(bits), "");
      pair.Compare(comparison, -0xFEFF, Flags(bits), "");
    }
  }
  const auto translator = std::make_unique<TranslatorUnderTest>();
  for (int result = -70000; result < 70000; ++result) {
    const int expected = model::ResultCode(result);
    const int code = translator->checkResult(result);
    comparison.Check(code == expected, [&] {
      return "client result " + std::to_string(result) + ": the model says " +
             std::to_string(expected) + ", the translator " + std::to_string(code);
    });
  }
  std::printf(
      "the result strings of all codes below 0x20000, client results from -70000 to 69999\n");
}
