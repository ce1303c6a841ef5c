// A register is programmed and dumped in one run of the console; the next run, with a register
// fresh from the factory, takes the dump as its lines and dumps again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char* const kProgramming =
    "PROG\n"
    "PREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, SINGOLO=SI, IVA=2, PRE=12.50, GRU=3\n"
    "PIVA IVA=1, ALIQ=21\n"
    "PINT RIGA1='BAR ''SPORT''', RIGA2='\"DA GINO\"; VIA ROMA, 1'\n"
    "POPZ OPZ01='L''ORA \"ESATTA\"', CONTRASTO=3, CASSETTO=SI, OPZ33='7'\n"
    "PGRU GRU=2, DES='L''ORTO'\n"
    "POPER OPE=3, DES='ANNA \"A\"', PASS='12''34', FLAG=-5\n"
    "PSTEN ST=1, TIPO=2, DES='BUONO ''A''', FLAG=1, CIFRE=6\n"
    "PTAST POS=42, COD=MACRO01, MACRO='N1 N2 REP01 T_CARTA '\n"
    "ENDPROG\n";

// Dumps of these tables into files of the folder, each with the name and its number.
std::string Dumps(const TestFolder& folder, const std::string& name,
                  const std::vector<std::string>& tables, const std::string& form) {
  std::string lines;
  for (const std::string& table : tables) {
    lines += "LEGGI TAB=" + table + ", FILE='" + folder.Path(name + table) + "'" + form + "\n";
  }
  return lines;
}

ProgramRun RunLines(const TestFolder& folder, const std::string& lines, bool batch) {
  std::vector<std::string> arguments = {"run", folder.Write("lines.cmd", lines), "--clock",
                                        "2024-03-15 10:30"};
  if (batch) arguments.push_back("--batch");
  return RunConsole(arguments);
}

void ExpectDumpsLoad(const std::vector<std::string>& tables, const std::string& form, bool batch) {
  TestFolder folder;
  const ProgramRun first =
      RunLines(folder, kProgramming + Dumps(folder, "first", tables, form), batch);
  ASSERT_EQ(first.exit_code, 0) << first.errors;
  const ProgramRun factory = RunLines(folder, Dumps(folder, "factory", tables, form), batch);
  ASSERT_EQ(factory.exit_code, 0) << factory.errors;
  std::string all;
  for (const std::string& table : tables) {
    EXPECT_NE(folder.Read("first" + table), folder.Read("factory" + table)) << table;
    all += folder.Read("first" + table);
  }
  const ProgramRun second = RunLines(folder, all + Dumps(folder, "second", tables, form), batch);
  EXPECT_EQ(second.exit_code, 0) << second.errors;
  EXPECT_THAT(second.errors, IsEmpty());
  for (const std::string& table : tables) {
    EXPECT_EQ(folder.Read("second" + table), folder.Read("first" + table)) << table;
  }
}

}  // namespace

TEST(DumpLoad, ADumpInWordsLoadsIntoTheNextRegister) {
  const std::vector<std::string> tables = {"1", "3", "4", "6", "8", "9", "10", "12"};
  for (const bool batch : {false, true}) {
    ExpectDumpsLoad(tables, "", batch);
    ExpectDumpsLoad(tables, ", PROG", batch);
  }
}

TEST(DumpLoad, AndInNumbersWithoutTheDepartments) {
  const std::vector<std::string> tables = {"3", "4", "6", "8", "9", "10", "12"};
  for (const bool batch : {false, true}) ExpectDumpsLoad(tables, ", LISTA", batch);
}

TEST(DumpLoad, ALoadedRegisterSellsAsTheFirstOne) {
  TestFolder folder;
  const ProgramRun dumped =
      RunLines(folder, kProgramming + Dumps(folder, "dump", {"1", "3", "4"}, ""), false);
  ASSERT_EQ(dumped.exit_code, 0) << dumped.errors;
  const std::string sale = "VEND REP=1\nCHIU\n";
  const ProgramRun programmed = RunLines(folder, kProgramming + sale, false);
  const ProgramRun loaded = RunLines(
      folder, folder.Read("dump1") + folder.Read("dump3") + folder.Read("dump4") + sale, false);
  EXPECT_EQ(programmed.exit_code, 0) << programmed.errors;
  EXPECT_EQ(loaded.exit_code, 0) << loaded.errors;
  EXPECT_EQ(loaded.output, programmed.output);
  EXPECT_THAT(loaded.output, HasSubstr("BAR 'SPORT'\n"));
  EXPECT_THAT(loaded.output, HasSubstr("L'ORO \"FINO\"               10%       12,50\n"));
}

TEST(DumpLoad, ArticlesGoByAFile) {
  TestFolder folder;
  const std::string rows =
      "'8001','LATTE ''FRESCO'', 1 L',4,1.50\r\n'A;1','PANE \"NERO\"',1,0.00\r\n";
  const std::string all = folder.Write("all", rows);
  const ProgramRun run =
      RunLines(folder,
               "EMLINK CMD='UA', FILE='" + all + "', AZZERA\n" + "EMLINK CMD='DA', FILE='" +
                   folder.Path("again") + "'\n" + "VEND ART='8001'\nCHIU\n",
               false);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(folder.Read("again"), rows);
  EXPECT_THAT(run.output, HasSubstr("LATTE 'FRESCO', 1 L         4%        1,50\n"));
}
