// Programming the master tables: each line reads a record, changes what it names and writes
// it back.

#include "unit/support/table_device.h"

namespace {

using ProgramTables = TableTest;

TEST_F(ProgramTables, ProgrammingTurnsTheKeyToFourBehindAClear) {
  EXPECT_EQ(0, run("PROG"));
  EXPECT_EQ((Calls{"KeyCodeInput(,,,0)", "KeyCodeInput(<4>,,,14)"}), device.calls);
}

TEST_F(ProgramTables, EndOfProgrammingTurnsTheKeyToOneWithoutAClear) {
  EXPECT_EQ(0, run("ENDPROG"));
  EXPECT_EQ((Calls{"KeyCodeInput(<1>,,,14)"}), device.calls);
}

TEST_F(ProgramTables, ProgrammingCannotFail) {
  device.refuse("KeyCodeInput", 107);
  EXPECT_EQ(0, run("PROG"));
  EXPECT_EQ(0, run("ENDPROG"));
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(0, translator->Trad_PROG());
  EXPECT_EQ(0, translator->Trad_ENDPROG());
}

// --- Departments

TableDevice::Department Bread() {
  return {"PANE", 15000, 990000, 7, 2, 3, true, false, true, true};
}

TEST_F(ProgramTables, ADepartmentLineOfOnePriceLeavesTheRest) {
  device.departments[4] = Bread();
  EXPECT_EQ(0, run("PREP REP=4, PRE=2.50"));
  EXPECT_EQ((Calls{"ConfigDepartmentEx(read 4)",
                   "ConfigDepartmentEx(write 4,PANE,25000,990000,7,2,3,1011)"}),
            device.calls);
}

TEST_F(ProgramTables, EveryFieldOfADepartmentGoesToItsPlace) {
  device.departments[1] = {};
  EXPECT_EQ(0, run("PREP REP=1, DES='LATTE', LIMITE=100, SINGOLO=SI, IVA=4, PRE=1.2345, GRU=260,"
                   " SCONTO, OBBDES=2, SERVIZIO=VERO"));
  EXPECT_EQ("ConfigDepartmentEx(write 1,LATTE,12345,1000000,0,4,4,1111)", device.calls.back());
  EXPECT_EQ(0, run("PREP REP=1, SINGOLO=NO, SCONTO=1, OBBDES=FALSO, SERVIZIO=NO"));
  EXPECT_EQ("ConfigDepartmentEx(write 1,LATTE,12345,1000000,0,4,4,0000)", device.calls.back());
}

TEST_F(ProgramTables, DepartmentPricesKnowTheFixedPoint) {
  device.departments[1] = {};
  translator->bVirgolaFissa = true;
  EXPECT_EQ(0, run("PREP REP=1, PRE=1234"));
  EXPECT_EQ("ConfigDepartmentEx(write 1,,123400,0,0,0,0,0000)", device.calls.back());
}

TEST_F(ProgramTables, ADepartmentWithoutANumberIsNumberZero) {
  EXPECT_EQ(1642, run("PREP PRE=1"));  // 106, then 0x200 and 0x400
  EXPECT_EQ((Calls{"ConfigDepartmentEx(read 0)", "ConfigDepartment(read 0)"}), device.calls);
  device.calls.clear();
  EXPECT_EQ(1642, run("PREP REP=-3"));
  EXPECT_EQ("ConfigDepartmentEx(read -3)", device.calls[0]);
}

TEST_F(ProgramTables, AVatEntryWithAMinusIsZero) {
  device.departments[1] = Bread();
  EXPECT_EQ(0, run("PREP REP=1, IVA=-5, GRU=-5"));
  EXPECT_EQ("ConfigDepartmentEx(write 1,PANE,15000,990000,7,0,0,1011)", device.calls.back());
}

TEST_F(ProgramTables, APlainDeviceTakesTheUpdateOnThePlainCall) {
  device.departments[2] = Bread();
  device.refuse("ConfigDepartmentEx", 106);
  EXPECT_EQ(0, run("PREP REP=2, DES='PIZZA', SERVIZIO=NO"));
  EXPECT_EQ((Calls{"ConfigDepartmentEx(read 2)", "ConfigDepartment(read 2)",
                   "ConfigDepartment(write 2,PIZZA,15000,990000,7,2,3,101)"}),
            device.calls);
}

TEST_F(ProgramTables, ADeviceThatRefusesBothReadsKeepsItsRecord) {
  device.departments[2] = Bread();
  device.refuse("ConfigDepartmentEx", 106);
  device.refuse("ConfigDepartment(", 107);
  EXPECT_EQ(1643, run("PREP REP=2, DES='PIZZA'"));
  EXPECT_EQ("ERROR 6/107 : ", answer_text);
  EXPECT_EQ((Calls{"ConfigDepartmentEx(read 2)", "ConfigDepartment(read 2)"}), device.calls);
  EXPECT_EQ(Bread(), device.departments[2]);
}

TEST_F(ProgramTables, ARefusedDepartmentWriteIsNotTriedOtherwise) {
  device.departments[2] = Bread();
  device.refuse("ConfigDepartmentEx(write", 207);
  EXPECT_EQ(1231, run("PREP REP=2, PRE=1"));
  EXPECT_EQ(2u, device.calls.size());
  device.refuse("ConfigDepartmentEx", 107);
  device.refuse("ConfigDepartment(write", 1213);
  EXPECT_EQ(1213, run("PREP REP=2, PRE=1"));
}

TEST_F(ProgramTables, ADepartmentWithoutClientCountsAsUnreachableTwice) {
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(1536, translator->Trad_PREP());
  EXPECT_EQ(256, run("PREP REP=1"));
}

TEST_F(ProgramTables, ADepartmentDescriptionIsCutToItsRecord) {
  device.departments[1] = {};
  const std::string text(200, 'x');
  EXPECT_EQ(0, run("PREP REP=1, DES='" + text + "'"));
  EXPECT_EQ(std::string(127, 'x'), device.departments[1].description);
  EXPECT_EQ(0, run("PREP REP=1, DES='" + std::string(127, 'y') + "'"));
  EXPECT_EQ(std::string(127, 'y'), device.departments[1].description);
}

TEST_F(ProgramTables, AnEmptyTextIsNotGiven) {
  device.departments[1] = Bread();
  EXPECT_EQ(0, run("PREP REP=1, DES=''"));
  EXPECT_EQ("PANE", device.departments[1].description);
}

// --- Groups and operators

TEST_F(ProgramTables, AGroupKeepsTheMembersOfAnOperator) {
  device.items[108] = "10";
  device.groups[3] = {"BAR", "secret", 5, 6};
  EXPECT_EQ(0, run("PGRU GRU=3, DES='CUCINA'"));
  EXPECT_EQ((Calls{"GetDataInternal(108)", "ConfigGroup(read 3)",
                   "ConfigGroup(write 3,CUCINA,secret,5,6)"}),
            device.calls);
}

TEST_F(ProgramTables, AGroupWritesAlsoBehindAFailedRead) {
  device.items[108] = "10";
  device.refuse("ConfigGroup(read", 107);
  EXPECT_EQ(0, run("PGRU GRU=3, DES='CUCINA'"));
  EXPECT_EQ("ConfigGroup(write 3,CUCINA,,0,0)", device.calls.back());
  device.refuse("ConfigGroup(write", 101);
  EXPECT_EQ(101 | 0x600, run("PGRU GRU=3, DES='CUCINA'"));
}

TEST_F(ProgramTables, GroupNumbersEndAtTheCapacity) {
  device.items[108] = "1.0";  // "10": separators do not count
  EXPECT_EQ(0, run("PGRU GRU=10, DES='A'"));
  EXPECT_EQ(0, run("PGRU GRU=1, DES='A'"));
  device.calls.clear();
  for (const char* line : {"PGRU GRU=0", "PGRU GRU=11", "PGRU GRU=-1", "PGRU DES='A'"}) {
    EXPECT_EQ(265, run(line)) << line;
  }
  EXPECT_EQ(Calls(4, "GetDataInternal(108)"), device.calls);
}

TEST_F(ProgramTables, AGroupWithoutKnownCapacityIsRefused) {
  device.refuse("GetDataInternal(108)", 107);
  EXPECT_EQ(265, run("PGRU GRU=1, DES='A'"));
  EXPECT_EQ((Calls{"GetDataInternal(108)"}), device.calls);
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(265, translator->Trad_PGRU());
}

TEST_F(ProgramTables, OperatorThreeBehindTenGroupsIsRecordThirteen) {
  device.items[108] = "10";
  device.items[110] = "8";
  device.groups[13] = {"MARIO", "1111", 1, 2};
  EXPECT_EQ(0, run("POPER OPE=3, PASS='2222', OPZ=-7"));
  EXPECT_EQ((Calls{"GetDataInternal(108)", "GetDataInternal(110)", "ConfigGroup(read 13)",
                   "ConfigGroup(write 13,MARIO,2222,1,-7)"}),
            device.calls);
  EXPECT_EQ(0, run("POPER OPE=3, DES='LUCA', FLAG=9"));
  EXPECT_EQ((TableDevice::Group{"LUCA", "2222", 9, -7}), device.groups[13]);
}

TEST_F(ProgramTables, OperatorNumbersEndAtTheirOwnCapacity) {
  device.items[108] = "10";
  device.items[110] = "8";
  EXPECT_EQ(0, run("POPER OPE=8, DES='A'"));
  device.calls.clear();
  EXPECT_EQ(265, run("POPER OPE=9, DES='A'"));
  EXPECT_EQ(265, run("POPER OPE=0, DES='A'"));
  EXPECT_EQ(265, run("POPER DES='A'"));
  EXPECT_TRUE(device.calls_of("ConfigGroup").empty());
}

TEST_F(ProgramTables, AnOperatorNeedsBothCapacities) {
  device.items[108] = "10";
  device.items[110] = "8";
  device.refuse("GetDataInternal(108)", 107);
  EXPECT_EQ(265, run("POPER OPE=1, DES='A'"));
  EXPECT_EQ((Calls{"GetDataInternal(108)", "GetDataInternal(110)"}), device.calls);
  device.allow_all();
  device.refuse("GetDataInternal(110)", 107);
  EXPECT_EQ(265, run("POPER OPE=1, DES='A'"));
  EXPECT_TRUE(device.calls_of("ConfigGroup").empty());
}

TEST_F(ProgramTables, ADeviceWithoutGroupsHasItsOperatorsInFront) {
  device.items[108] = "0";
  device.items[110] = "8";
  EXPECT_EQ(0, run("POPER OPE=2, DES='A'"));
  EXPECT_EQ("ConfigGroup(write 2,A,,0,0)", device.calls.back());
}

TEST_F(ProgramTables, AnOperatorWriteGetsItsClassTwice) {
  device.items[108] = "10";
  device.items[110] = "8";
  device.refuse("ConfigGroup(write", 107);
  EXPECT_EQ(1643, run("POPER OPE=1, DES='A'"));
}

TEST_F(ProgramTables, GroupAndOperatorTextsAreCutToTheirRecord) {
  device.items[108] = "10";
  device.items[110] = "8";
  const std::string text(300, 'd');
  EXPECT_EQ(0, run("PGRU GRU=1, DES='" + text + "'"));
  EXPECT_EQ(128u, device.groups[1].description.size());
  EXPECT_EQ(0, run("POPER OPE=1, DES='" + text + "', PASS='" + text + "'"));
  EXPECT_EQ(128u, device.groups[11].description.size());
  EXPECT_EQ(64u, device.groups[11].password.size());
}

TEST_F(ProgramTables, CapacitiesOfAnySizeDoNotOverflow) {
  device.items[108] = "99999999999999999999";
  device.items[110] = "99999999999999999999";
  EXPECT_EQ(0, run("POPER OPE=1, DES='A'"));
  EXPECT_EQ("ConfigGroup(read 2147483647)", device.calls_of("ConfigGroup").front());
  device.items[108] = "-99999999999999999999";
  EXPECT_EQ(265, run("PGRU GRU=1"));
}

// --- Subtenders

TEST_F(ProgramTables, ASubtenderKeepsWhatIsNotNamed) {
  device.subtenders[5] = {2, "BUONO", 4, 50000, 6};
  EXPECT_EQ(0, run("PSTEN ST=5, DES='GIFT'"));
  EXPECT_EQ((Calls{"ConfigSubtender(read 5)", "ConfigSubtender(write 5,2,GIFT,4,50000,6)"}),
            device.calls);
  EXPECT_EQ(0, run("PSTEN ST=5, TIPO=258, FLAG=255, IMP=4294967295, CIFRE=9"));
  EXPECT_EQ("ConfigSubtender(write 5,2,GIFT,255,4294967295,9)", device.calls.back());
  EXPECT_EQ(0, run("PSTEN ST=5, IMP=-5"));
  EXPECT_EQ("ConfigSubtender(write 5,2,GIFT,255,0,9)", device.calls.back());
}

TEST_F(ProgramTables, ASubtenderHasNoRangeOfItsOwn) {
  EXPECT_EQ(1642, run("PSTEN ST=-9"));
  EXPECT_EQ((Calls{"ConfigSubtender(read -9)"}), device.calls);
}

TEST_F(ProgramTables, ARefusedSubtenderIsNotWritten) {
  device.subtenders[1] = {};
  device.refuse("ConfigSubtender(read", 107);
  EXPECT_EQ(1643, run("PSTEN ST=1, DES='A'"));
  EXPECT_EQ(1u, device.calls.size());
  device.allow_all();
  device.refuse("ConfigSubtender(write", 207);
  EXPECT_EQ(1231, run("PSTEN ST=1, DES='A'"));
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(1536, translator->Trad_PSTEN());
}

TEST_F(ProgramTables, ASubtenderDescriptionIsCutTo63) {
  device.subtenders[1] = {};
  EXPECT_EQ(0, run("PSTEN ST=1, DES='" + std::string(64, 's') + "'"));
  EXPECT_EQ(std::string(63, 's'), device.subtenders[1].description);
}

// --- VAT rates

TEST_F(ProgramTables, AVatRateIsSetAndCommitted) {
  EXPECT_EQ(0, run("PIVA IVA=3, ALIQ=22"));
  EXPECT_EQ((Calls{"SetVatValue(3,220000)", "SetVatTable()"}), device.calls);
  EXPECT_EQ(0, run("PIVA IVA=4, ALIQ=5.5"));
  EXPECT_EQ(55000, device.vat_rates[4]);
}

TEST_F(ProgramTables, AVatLineWithOneFieldDoesNothing) {
  EXPECT_EQ(0, run("PIVA ALIQ=22"));
  EXPECT_EQ(0, run("PIVA IVA=3"));
  EXPECT_EQ(0, run("PIVA"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramTables, ARefusedRateIsNotCommitted) {
  device.refuse("SetVatValue", 107);
  EXPECT_EQ(619, run("PIVA IVA=3, ALIQ=22"));
  EXPECT_EQ((Calls{"SetVatValue(3,220000)"}), device.calls);
  device.allow_all();
  device.refuse("SetVatTable", 207);
  EXPECT_EQ(1231, run("PIVA IVA=3, ALIQ=22"));
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(512, translator->Trad_PIVA());
}

TEST_F(ProgramTables, ARateThatIsNoNumberIsZero) {
  EXPECT_EQ(0, run("PIVA IVA=3, ALIQ='1.2.3'"));
  EXPECT_EQ("SetVatValue(3,0)", device.calls[0]);
}

// --- Header lines

TEST_F(ProgramTables, OnlyTheGivenHeaderLinesAreSent) {
  EXPECT_EQ(0, run("PINT RIGA2='BAR SPORT', RIGA5='GRAZIE'"));
  EXPECT_EQ((Calls{"SetHeaderLine(2,BAR SPORT,1)", "SetHeaderLine(5,GRAZIE,1)"}), device.calls);
  device.calls.clear();
  EXPECT_EQ(0, run("PINT"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramTables, HeaderLinesBehindTheSixthAreNotTaken) {
  EXPECT_EQ(0, run("PINT RIGA6='A', RIGA7='B', RIGA40='C'"));
  EXPECT_EQ((Calls{"SetHeaderLine(6,A,1)"}), device.calls);
}

TEST_F(ProgramTables, ARefusedHeaderLineStopsTheLine) {
  device.refuse("SetHeaderLine(2", 107);
  EXPECT_EQ(619, run("PINT RIGA1='A', RIGA2='B', RIGA3='C'"));
  EXPECT_EQ((Calls{"SetHeaderLine(1,A,1)", "SetHeaderLine(2,B,1)"}), device.calls);
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(512, translator->Trad_PINT());
}

TEST_F(ProgramTables, HeaderLinesAreCutTo50) {
  EXPECT_EQ(0, run("PINT RIGA1='" + std::string(60, 'h') + "'"));
  EXPECT_EQ(std::string(50, 'h'), device.headers[1]);
}

// --- Invoice numbering

TEST_F(ProgramTables, InvoiceNumberAndSeriesAreProperties) {
  EXPECT_EQ(0, run("PPFATT NUM=120, SERIE='A/2'"));
  EXPECT_EQ((Calls{"SetIntProperty(16800,120)", "SetStringProperty(1016800,A/2)"}), device.calls);
  device.calls.clear();
  EXPECT_EQ(0, run("PPFATT SERIE='B'"));
  EXPECT_EQ((Calls{"SetStringProperty(1016800,B)"}), device.calls);
  device.calls.clear();
  EXPECT_EQ(0, run("PPFATT NUM=7"));
  EXPECT_EQ((Calls{"SetIntProperty(16800,7)"}), device.calls);
  EXPECT_EQ(0, run("PPFATT"));
}

TEST_F(ProgramTables, ARefusedInvoiceNumberLeavesTheSeries) {
  device.refuse("SetIntProperty", 107);
  EXPECT_EQ(619, run("PPFATT NUM=120, SERIE='A'"));
  EXPECT_EQ(1u, device.calls.size());
  device.allow_all();
  device.refuse("SetStringProperty", 207);
  EXPECT_EQ(1231, run("PPFATT NUM=120, SERIE='A'"));
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(512, translator->Trad_PPFATT());
}

TEST_F(ProgramTables, ASeriesThatDoesNotFitIsRefusedAheadOfTheNumber) {
  EXPECT_EQ(0, run("PPFATT SERIE='123456789'"));
  device.calls.clear();
  EXPECT_EQ(265, run("PPFATT NUM=1, SERIE='1234567890'"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramTables, CommandsWithoutEffectAskNothing) {
  for (const char* line :
       {"PPLU", "PMOD", "PVAL", "PCONV", "PINIEM", "PSYSF", "PPLUEM", "POFFEM"}) {
    EXPECT_EQ(0, run(line)) << line;
    EXPECT_EQ("OK.", answer_text);
  }
  EXPECT_TRUE(device.calls.empty());
}

}  // namespace
