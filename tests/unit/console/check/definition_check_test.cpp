// One reader reads definition files, for the library and for whoever asks what became of a line:
// the tables are the same, and what is told is what was done.
#include "console/check/definition_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "console/check/definition_fault.h"
#include "console/terminal/line_reader.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/definition_reader.h"

namespace lorimat::console {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A note without the places that its texts have in memory.
struct Told {
  DefinitionCause cause;
  uint64_t line;
  uint64_t column;
  std::string text;
  std::string kept;
  int row;
  int number;
};

class Record : public DefinitionSink {
 public:
  void Take(const DefinitionNote& note) override {
    told.push_back({note.cause, note.line, note.column, std::string(note.text),
                    std::string(note.kept), note.row, note.number});
  }

  std::vector<Told> told;
};

bool IsStop(DefinitionCause cause) {
  return cause >= DefinitionCause::kNoEquals && cause <= DefinitionCause::kRowAboveLast;
}
bool IsSkip(DefinitionCause cause) {
  return cause >= DefinitionCause::kRowOutOfRange && cause <= DefinitionCause::kTextBadlyQuoted;
}
bool IsStore(DefinitionCause cause) {
  return cause >= DefinitionCause::kCommand && cause <= DefinitionCause::kText;
}

template <typename T>
void AddBytes(const T& table, std::string* bytes) {
  bytes->append(reinterpret_cast<const char*>(&table), sizeof table);
}

// All that a definition file fills.
std::string TablesOf(const EcrCmdCommand& t) {
  std::string bytes;
  AddBytes(t.szOpCodes, &bytes);
  AddBytes(t.iIdOpCodes, &bytes);
  AddBytes(t.szKeyI, &bytes);
  AddBytes(t.iNCI, &bytes);
  AddBytes(t.bObl, &bytes);
  AddBytes(t.iNumOper, &bytes);
  AddBytes(t.iTotOpCodes, &bytes);
  AddBytes(t.iTotSimb, &bytes);
  AddBytes(t.szSimb, &bytes);
  AddBytes(t.iVSimb, &bytes);
  AddBytes(t.iInvTast, &bytes);
  AddBytes(t.TabIntMsg, &bytes);
  AddBytes(t.TabDscTotG, &bytes);
  AddBytes(t.TabErrTradBase, &bytes);
  AddBytes(t.TabErrTrad1, &bytes);
  AddBytes(t.TabErrTrad2, &bytes);
  AddBytes(t.TabErrTrad3, &bytes);
  AddBytes(t.TabErrTrad4, &bytes);
  AddBytes(t.TabErrTrad5, &bytes);
  AddBytes(t.TabErrTrad6, &bytes);
  AddBytes(t.TabErrTrad7, &bytes);
  AddBytes(t.TabErrTrad8, &bytes);
  AddBytes(t.TabErrTrad9, &bytes);
  AddBytes(t.TabErrKey2, &bytes);
  AddBytes(t.TabErrKey3, &bytes);
  return bytes;
}

std::unique_ptr<EcrCmdCommand> NewTables() {
  auto tables = std::make_unique<EcrCmdCommand>();
  WriteDefaultMessages(*tables);
  return tables;
}

class DefinitionReading : public testing::Test {
 protected:
  DefinitionReading()
      : file_(std::filesystem::temp_directory_path() /
              ("definition_check_test." + std::to_string(getpid()))) {}
  ~DefinitionReading() override { std::filesystem::remove(file_); }

  void Write(const std::string& text) { std::ofstream(file_, std::ios::binary) << text; }
  std::string name() const { return file_.string(); }

  // The notes of a text, which is read to its end or to the line that stops the reading.
  std::vector<Told> NotesOf(const std::string& text) {
    Write(text);
    Record record;
    NewTables()->ReadDefinition(name().c_str(), &record);
    return record.told;
  }
  std::vector<DefinitionCause> CausesOf(const std::string& text) {
    std::vector<DefinitionCause> causes;
    for (const Told& told : NotesOf(text)) causes.push_back(told.cause);
    return causes;
  }

  // Holds all readings of a text against each other.
  void Compare(const std::string& text);

  const std::filesystem::path file_;
};

size_t CountCommands(const EcrCmdCommand& tables) {
  return static_cast<size_t>(std::count_if(
      std::begin(tables.iIdOpCodes), std::end(tables.iIdOpCodes), [](int id) { return id != 0; }));
}

size_t CountFields(const EcrCmdCommand& tables) {
  size_t count = 0;
  for (int id = 1; id < MAXOPCOD; ++id) {
    for (int row = 1; row <= MAXCAMPI; ++row) count += tables.iNCI[id][row] != 0 ? 1 : 0;
  }
  return count;
}

void DefinitionReading::Compare(const std::string& text) {
  SCOPED_TRACE(text);
  Write(text);
  const auto library = NewTables();
  std::string path = name();
  const bool whole = library->LeggiFileIni(path.data()) == 1;
  const auto told_tables = NewTables();
  Record record;
  ASSERT_EQ(whole, told_tables->ReadDefinition(path.c_str(), &record) == 1);
  ASSERT_TRUE(TablesOf(*library) == TablesOf(*told_tables));

  // Each entry was stored or skipped, or stopped the reading.
  uint64_t line = 0;
  uint64_t stop = 0;
  bool last_row = false;
  for (const Told& told : record.told) {
    ASSERT_GE(told.column, 1u);
    last_row = last_row || told.cause == DefinitionCause::kRowOutOfReach;
    if (!IsStop(told.cause) && !IsSkip(told.cause) && !IsStore(told.cause)) continue;
    ASSERT_GT(told.line, line) << "told twice";
    ASSERT_EQ(stop, 0u) << "told behind the stop";
    line = told.line;
    if (IsStop(told.cause)) stop = told.line;
  }
  ASSERT_EQ(whole, stop == 0);

  // The check of the console, by lines.
  Findings findings;
  DefinitionCheck check(findings);
  LineReader lines(path);
  for (SourceLine one; lines.Next(&one);) check.Take(one);
  ASSERT_EQ(check.stop_line(), stop);
  const DefinitionReport report = InspectDefinition(path);
  ASSERT_EQ(report.fault ? report.fault->line : 0, stop);
  ASSERT_EQ(!report.fault, whole);
  if (!whole) return;
  ASSERT_EQ(check.commands(), CountCommands(*library) + (last_row ? 1 : 0));
  ASSERT_EQ(check.fields(), CountFields(*library));
  ASSERT_EQ(check.symbols(), static_cast<size_t>(library->iTotSimb));
}

// Lines that come near to what is read, and lines that do not.
class Lines {
 public:
  explicit Lines(unsigned seed) : random_(seed) {}

  std::string Text() {
    std::string text;
    const std::string end = Below(4) == 0 ? "\r\n" : "\n";
    for (int count = Below(50); count > 0; --count) text += Line() + end;
    for (int changes = Below(3); changes > 0 && !text.empty(); --changes) {
      text[static_cast<size_t>(Below(static_cast<int>(text.size())))] =
          static_cast<char>(Below(256));
    }
    return text;
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  template <size_t N>
  std::string Of(const char* const (&texts)[N]) {
    return texts[Below(static_cast<int>(N))];
  }
  std::string Line() {
    static constexpr const char* kHeaders[] = {
        "OPCOD", "EQU", "EQUTASTI", "INTMSG", "TOTG", "ERRMSG", "ERRMSG3", "ERRMSG77", "10",
        "11",    "0",   "149",      "150",    "-1",   "1x",     "OPCODES", "ERRMSGx"};
    static constexpr const char* kLefts[] = {"1",   "2",  "10", "39",  "40",  "41", "149",
                                             "150", "-3", "99", "100", "5 x", "+7", "A",
                                             "A b", "#1", "12", "1.5", "A''", "; x"};
    static constexpr const char* kRights[] = {"VEND", "VENDI", "ELEVENCHARS", "1", "255", "300",
                                              "A,O",  "A,7",   "A,x",         "",  ",O,7"};
    static constexpr const char* kTails[] = {"", "", "", " ;c", "'", "''", " ' ; '", "\t", ",150"};
    if (Below(5) == 0) return "[" + Of(kHeaders) + (Below(9) == 0 ? "" : "]");
    std::string line = Below(4) == 0 ? " \t" : "";
    line += (Below(99) == 0 ? "" : Of(kLefts)) + (Below(60) == 0 ? "" : " =") + Of(kRights);
    if (Below(12) == 0) line.append(static_cast<size_t>(Below(300)), Below(2) == 0 ? ' ' : 'x');
    return line + Of(kTails);
  }

  std::mt19937 random_;
};

}  // namespace

TEST_F(DefinitionReading, FillsTheSameTablesWhetherItTellsOrNot) {
  for (unsigned seed = 1; seed <= 300 && !HasFatalFailure(); ++seed) Compare(Lines(seed).Text());
}

TEST_F(DefinitionReading, TakesEveryByteAtEveryPlaceOfALine) {
  const std::string head = "[OPCOD]\n10=SELL\n11=PAY\n[10]\n";
  const std::string line = "1=DEP,O ";
  for (int byte = 0; byte < 256; ++byte) {
    for (size_t at = 0; at <= line.size() && !HasFatalFailure(); at += 2) {
      std::string changed = line;
      changed.insert(at, 1, static_cast<char>(byte));
      Compare(head + changed + "\n2=PLU\n");
    }
  }
}

// The line feed, or what stands before it, at the last character that is taken.
TEST_F(DefinitionReading, CutsALineWhereTheLibraryDoes) {
  for (const char* end : {"\n", "\r\n", "\r\r\n", "\rx\r\n", "=\r\r\n", ""}) {
    for (size_t length = 248; length < 258 && !HasFatalFailure(); ++length) {
      Compare("[OPCOD]\n10=SELL\n[ERRMSG1]\n1=" + std::string(length, 'x') + end);
      Compare("[OPCOD]\n10=SELL\n" + std::string(length, ' ') + "1=A" + end);
      Compare("[OPCOD]\n" + std::string(length, ' ') + "\r=A" + end);
    }
  }
}

TEST_F(DefinitionReading, TellsWhatItStores) {
  const std::vector<Told> told = NotesOf("[OPCOD]\n 10 = SELL , 9 ; c\n[EQU]\nCASH=1\n");
  ASSERT_EQ(told.size(), 5u);
  EXPECT_EQ(told[2].cause, DefinitionCause::kCommand);
  EXPECT_EQ(told[2].line, 2u);
  EXPECT_EQ(told[2].column, 7u);
  EXPECT_EQ(told[2].text, "SELL");
  EXPECT_EQ(told[2].row, 10);
  EXPECT_EQ(told[2].number, 9);
  EXPECT_EQ(told[4].cause, DefinitionCause::kSymbol);
  EXPECT_EQ(told[4].text, "CASH");
  EXPECT_EQ(told[4].number, 1);
}

TEST_F(DefinitionReading, TellsWhatItCuts) {
  const std::vector<Told> told = NotesOf("[OPCOD\n[OPCOD]\n\t10=ELEVENCHARS\n");
  ASSERT_EQ(told.size(), 6u);
  EXPECT_EQ(told[0].cause, DefinitionCause::kHeaderNotClosed);
  EXPECT_EQ(told[0].kept, "OPCO");
  EXPECT_EQ(told[3].cause, DefinitionCause::kNameCut);
  EXPECT_EQ(told[3].column, 5u);
  EXPECT_EQ(told[3].kept, "ELEVENCHAR");
  EXPECT_THAT(CausesOf("[EQU]\n" + std::string(80, 'x') + "=1\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kPartCut,
                          DefinitionCause::kNameCut, DefinitionCause::kSymbol));
}

TEST_F(DefinitionReading, TellsWhatItSkips) {
  const struct {
    const char* text;
    DefinitionCause cause;
  } kSkipped[] = {{"[OPCOD]\n-1=X\n", DefinitionCause::kRowOutOfRange},
                  {"[10]\n41=X\n", DefinitionCause::kRowOutOfRange},
                  {"[INTMSG]\n40=X\n", DefinitionCause::kRowOutOfRange},
                  {"[150]\n1=X\n", DefinitionCause::kSectionOutOfRange},
                  {"[ERRMSG10]\n1=X\n", DefinitionCause::kNoSuchTable},
                  {"[TOTG]\n1=123456789012345678901234567890123\n", DefinitionCause::kTextTooLong},
                  {"[TOTG]\n1='X\n", DefinitionCause::kTextBadlyQuoted}};
  for (const auto& skipped : kSkipped) {
    EXPECT_EQ(CausesOf(skipped.text).back(), skipped.cause) << skipped.text;
  }
  std::string symbols = "[EQU]\n";
  for (int i = 1; i <= 300; ++i) symbols += "S" + std::to_string(i) + "=1\n";
  EXPECT_EQ(NotesOf(symbols).back().cause, DefinitionCause::kTableFull);
  EXPECT_EQ(NotesOf(symbols).back().line, 301u);
}

TEST_F(DefinitionReading, TellsWhatItReadsAsSomethingElse) {
  EXPECT_THAT(CausesOf("[OPCOD]\n5x=SELL,O\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kRowNotANumber,
                          DefinitionCause::kNameRead, DefinitionCause::kMarkIgnored,
                          DefinitionCause::kCommand));
  EXPECT_THAT(
      CausesOf("[10]\n1=,O\n2=A,x\n3=\n"),
      ElementsAre(DefinitionCause::kSection, DefinitionCause::kNameRead, DefinitionCause::kField,
                  DefinitionCause::kNameRead, DefinitionCause::kNumberNotANumber,
                  DefinitionCause::kField, DefinitionCause::kNameMissing, DefinitionCause::kField));
  EXPECT_THAT(CausesOf("[EQU]\nA=1x\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kValueNotANumber,
                          DefinitionCause::kSymbol));
  EXPECT_THAT(CausesOf("[OPCOD]\n150=X\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kNameRead,
                          DefinitionCause::kCommand, DefinitionCause::kRowOutOfReach));
}

TEST_F(DefinitionReading, TellsWhereItStops) {
  EXPECT_THAT(CausesOf("x\n1=A\n"),
              ElementsAre(DefinitionCause::kNoSection, DefinitionCause::kNoEquals));
  EXPECT_EQ(CausesOf("[10]\n=A\n1=A\n").back(), DefinitionCause::kNothingInFront);
  EXPECT_EQ(CausesOf("[10]\nA=1\n1=A\n").back(), DefinitionCause::kNoRowNumber);
  EXPECT_EQ(CausesOf("[OPCOD]\n151=A\n1=A\n").back(), DefinitionCause::kRowAboveLast);
  EXPECT_THAT(CausesOf("; nothing\n\n \t\n"), IsEmpty());
}

}  // namespace lorimat::console
