// One reader reads definition files, for the library and for whoever asks what became of a line:
// the tables are the same, and what is told is what was done.
#include "console/check/definition_check.h"

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
#include "support/definition_record.h"

namespace lorimat::console {
namespace {

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

}  // namespace lorimat::console
