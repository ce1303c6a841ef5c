// Dumping the plain tables: the command, the files and the record lines, byte for byte.

#include <climits>

#include "unit/support/table_device.h"

namespace {

using TableDumps = TableTest;

TableDevice::Department Bread() {
  return {"PANE", 15000, 990000, 7, 2, 3, true, false, true, true};
}

// --- The command

TEST_F(TableDumps, NumbersWithoutATableAreRefusedAheadOfTheFile) {
  write_file("d", "old");
  for (const char* number : {"0", "5", "13", "19", "25", "29", "32", "99", "101", "200", "10000"}) {
    EXPECT_EQ(271, run(std::string("LEGGI FILE='d', TAB=") + number)) << number;
  }
  EXPECT_EQ(271, run("LEGGI FILE='d'"));
  EXPECT_EQ("ERROR 1/15 : SINTAX ERROR 15 : ILLEGAL FILE NUMBER ", answer_text);
  EXPECT_EQ("old", file("d"));
}

TEST_F(TableDumps, NumbersWithoutAReaderEmptyTheFileFirst) {
  for (const char* number : {"2", "30", "31", "199", "9999", "-1", "-100"}) {
    write_file("d", "old");
    EXPECT_EQ(271, run(std::string("LEGGI FILE='d', TAB=") + number)) << number;
    EXPECT_EQ("", file("d")) << number;
    EXPECT_EQ(11, run(std::string("LEGGI FILE='none/d', TAB=") + number)) << number;
  }
}

TEST_F(TableDumps, TablesThatHoldNothingGiveAnEmptyFile) {
  for (const char* number : {"7", "11", "21", "23", "24"}) {
    EXPECT_EQ(0, run(std::string("LEGGI FILE='d', TAB=") + number)) << number;
    EXPECT_EQ("", file("d")) << number;
  }
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(TableDumps, AWrappedEmptyTableIsTheTwoWrapperLines) {
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', PROG"));
  EXPECT_EQ("PROG INIZIO\r\nENDPROG\r\n", file("d"));
  // In words in list form too.
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', PROG, LISTA"));
  EXPECT_EQ("PROG INIZIO\r\nENDPROG\r\n", file("d"));
}

TEST_F(TableDumps, AWrappedDumpEndsWithItsLineBehindAnErrorToo) {
  EXPECT_EQ(271, run("LEGGI TAB=2, FILE='d', PROG"));
  EXPECT_EQ("PROG INIZIO\r\nENDPROG\r\n", file("d"));
}

TEST_F(TableDumps, TheBareNameAloneSetsAFlag) {
  write_file("d", "old\r\n");
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', AGGIUNGI=2, PROG=VERO, LISTA=SI"));
  EXPECT_EQ("", file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', PROG='vero'"));
  EXPECT_EQ("", file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', PROG='VERO'"));
  EXPECT_EQ("PROG INIZIO\r\nENDPROG\r\n", file("d"));
}

TEST_F(TableDumps, TheFileNameIsMadeSmall) {
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='DUMP.Txt'"));
  EXPECT_TRUE(exists("dump.txt"));
  EXPECT_FALSE(exists("DUMP.Txt"));
}

TEST_F(TableDumps, AppendingNeedsTheFileAndGoesBehindItsEnd) {
  EXPECT_EQ(11, run("LEGGI TAB=7, FILE='d', AGGIUNGI, PROG"));
  EXPECT_EQ("ERROR 0/11 : FILE OPEN ERROR", answer_text);
  EXPECT_FALSE(exists("d"));
  write_file("d", "first\r\n");
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', AGGIUNGI, PROG"));
  EXPECT_EQ("first\r\nPROG INIZIO\r\nENDPROG\r\n", file("d"));
}

TEST_F(TableDumps, ADumpReplacesTheFile) {
  write_file("d", std::string(5000, 'x'));
  EXPECT_EQ(0, run("LEGGI TAB=7, FILE='d', PROG"));
  EXPECT_EQ("PROG INIZIO\r\nENDPROG\r\n", file("d"));
}

TEST_F(TableDumps, AFileThatCannotBeMadeIsTold) {
  EXPECT_EQ(11, run("LEGGI TAB=3, FILE='none/d'"));
  EXPECT_EQ(11, run("LEGGI TAB=3"));
  EXPECT_EQ(11, run("LEGGI TAB=3, FILE='" + std::string(2000, 'd') + "'"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(TableDumps, AFullDiskIsNotTold) {
  device.items[77] = "1";
  device.vat_rates[1] = 220000;
  EXPECT_EQ(0, run("LEGGI TAB=3, FILE='/dev/full', AGGIUNGI"));
  EXPECT_EQ("OK.", answer_text);
}

// --- Departments

TEST_F(TableDumps, ADepartmentLineHoldsEveryField) {
  device.items[78] = "1";
  device.departments[1] = Bread();
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d'"));
  EXPECT_EQ(
      "PREP REP=1, DES='PANE', LIMITE=99.00, SINGOLO=SI, IVA=2, PRE=1.50, GRU=3, "
      "SCONTO=NO, OBBDES=SI, SERVIZIO=SI\r\n",
      file("d"));
  EXPECT_EQ((Calls{"GetDataInternal(78)", "ConfigDepartmentEx(read 1)"}), device.calls);
}

TEST_F(TableDumps, ADepartmentInListFormReadsByItsPlaces) {
  device.items[78] = "1";
  device.departments[1] = Bread();
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d', LISTA"));
  EXPECT_EQ("#31 #1=1, #1='PANE', #1=99.00, #1=2, #1=2, #1=1.50, #1=3, #1=1, #1=2, #1=2\r\n",
            file("d"));
}

TEST_F(TableDumps, ADepartmentOfThePlainRecordHasNoService) {
  device.items[78] = "3";
  device.departments[1] = {};
  device.departments[2] = Bread();
  device.departments[3] = {};
  device.refuse("ConfigDepartmentEx(read 2)", 106);
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d'"));
  EXPECT_EQ(
      "PREP REP=1, DES='', LIMITE=0, SINGOLO=NO, IVA=0, PRE=0, GRU=0, SCONTO=NO, "
      "OBBDES=NO, SERVIZIO=NO\r\n"
      "PREP REP=2, DES='PANE', LIMITE=99.00, SINGOLO=SI, IVA=2, PRE=1.50, GRU=3, "
      "SCONTO=NO, OBBDES=SI\r\n"
      "PREP REP=3, DES='', LIMITE=0, SINGOLO=NO, IVA=0, PRE=0, GRU=0, SCONTO=NO, "
      "OBBDES=NO, SERVIZIO=NO\r\n",
      file("d"));
}

TEST_F(TableDumps, AFailingDepartmentIsLeftOut) {
  device.items[78] = "3";
  device.departments[1] = {};
  device.departments[3] = {};
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d', LISTA, ESTESO"));
  EXPECT_EQ(
      "#31 #1=1, #1='', #1=0, #1=1, #1=0, #1=0, #1=0, #1=1, #1=1, #1=1\r\n"
      "#31 #1=3, #1='', #1=0, #1=1, #1=0, #1=0, #1=0, #1=1, #1=1, #1=1\r\n",
      file("d"));
  EXPECT_EQ(1u, device.calls_of("ConfigDepartment(").size());
}

TEST_F(TableDumps, QuotesInATextAreDoubled) {
  device.items[78] = "1";
  device.departments[1].description = "L'ORTO ''A''";
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d', LISTA"));
  EXPECT_EQ("#31 #1=1, #1='L''ORTO ''''A''''', #1=0, #1=1, #1=0, #1=0, #1=0, #1=1, #1=1, #1=1\r\n",
            file("d"));
}

TEST_F(TableDumps, OnlyTheLow32BitsOfAPriceShow) {
  device.items[78] = "1";
  device.departments[1].price = (int64_t{1} << 32) + 15000;  // 1.50 above the low bits
  device.departments[1].max_price = 99;                      // below a cent
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d'"));
  EXPECT_EQ(
      "PREP REP=1, DES='', LIMITE=0, SINGOLO=NO, IVA=0, PRE=1.50, GRU=0, SCONTO=NO, "
      "OBBDES=NO, SERVIZIO=NO\r\n",
      file("d"));
}

TEST_F(TableDumps, AFullDepartmentTextStaysWhole) {
  device.items[78] = "1";
  device.departments[1].description = std::string(127, '\'');
  EXPECT_EQ(0, run("LEGGI TAB=REPARTI, FILE='d', LISTA"));
  EXPECT_EQ("#31 #1=1, #1='" + std::string(254, '\'') +
                "', #1=0, #1=1, #1=0, #1=0, #1=0, #1=1, #1=1, #1=1\r\n",
            file("d"));
}

TEST_F(TableDumps, ATextBeyondItsRecordIsCut) {
  device.items = {{78, "1"}, {108, "1"}, {75, "1"}};
  translator->pCurConf->iNumSTEN = 1;
  const std::string text(500, 'x');
  device.departments[1].description = text;
  device.groups[1] = {text, text, 0, 0};
  device.subtenders[1].description = text;
  device.headers[1] = text;
  for (const auto& [table, length] :
       std::map<std::string, size_t>{{"1", 127}, {"4", 64}, {"8", 128}, {"9", 63}}) {
    EXPECT_EQ(0, run("LEGGI FILE='d', TAB=" + table));
    const std::string content = file("d");
    const size_t begin = content.find("'x") + 1;
    EXPECT_EQ(length, content.find('\'', begin) - begin) << table;
  }
}

TEST_F(TableDumps, WithoutKnownCountThereAreNoRecords) {
  device.refuse("GetDataInternal", 107);
  for (const char* table : {"REPARTI", "IVA", "GRUPPI", "OPERATORI"}) {
    EXPECT_EQ(0, run(std::string("LEGGI FILE='d', TAB=") + table)) << table;
    EXPECT_EQ("", file("d")) << table;
  }
}

// --- Separators and flag texts

TEST_F(TableDumps, SeparatorAndQuoteAreTheHosts) {
  device.items[78] = "1";
  device.departments[1].description = "A\"B'C";
  translator->cChSep = ';';
  translator->cChQuote = '"';
  EXPECT_EQ(0, run("LEGGI TAB=1, FILE=\"d\""));
  EXPECT_EQ(
      "PREP REP=1; DES=\"A\"\"B'C\"; LIMITE=0; SINGOLO=NO; IVA=0; PRE=0; GRU=0; "
      "SCONTO=NO; OBBDES=NO; SERVIZIO=NO\r\n",
      file("d"));
}

TEST_F(TableDumps, FlagTextsAreInternalMessages) {
  device.items[78] = "1";
  device.departments[1] = Bread();
  std::memset(translator->TabIntMsg[5], 'S', 32);  // a full row has no closing NUL
  std::memset(translator->TabIntMsg[6], 'N', 32);
  EXPECT_EQ(0, run("LEGGI TAB=1, FILE='d'"));
  const std::string yes(32, 'S');
  const std::string no(32, 'N');
  EXPECT_EQ("PREP REP=1, DES='PANE', LIMITE=99.00, SINGOLO=" + yes +
                ", IVA=2, PRE=1.50, GRU=3, "
                "SCONTO=" +
                no + ", OBBDES=" + yes + ", SERVIZIO=" + yes + "\r\n",
            file("d"));
}

TEST_F(TableDumps, EditOptionsDoNotActOnRecordLines) {
  device.items[77] = "1";
  device.vat_rates[1] = 220000;
  translator->iOutEditFlags = 1;
  EXPECT_EQ(0, run("LEGGI TAB=3, FILE='d'"));
  EXPECT_EQ("PIVA IVA=1, ALIQ=22.00\r\n", file("d"));
}

// --- VAT rates

TEST_F(TableDumps, VatRatesHaveTwoDecimalsAndFailingOnesAreLeftOut) {
  device.items[77] = "4";
  device.vat_rates = {{1, 220000}, {2, 55000}, {4, 0}};
  EXPECT_EQ(0, run("LEGGI TAB=IVA, FILE='d'"));
  EXPECT_EQ("PIVA IVA=1, ALIQ=22.00\r\nPIVA IVA=2, ALIQ=5.50\r\nPIVA IVA=4, ALIQ=0.00\r\n",
            file("d"));
  EXPECT_EQ("GetVatEntry(3,0)", device.calls[3]);
  EXPECT_EQ(0, run("LEGGI TAB=IVA, FILE='d', LISTA"));
  EXPECT_EQ("#33 #1=1, #2=22.00\r\n#33 #1=2, #2=5.50\r\n#33 #1=4, #2=0.00\r\n", file("d"));
}

// --- Header lines

TEST_F(TableDumps, HeaderLinesShareOneLine) {
  device.items[75] = "3";
  device.headers = {{1, "BAR SPORT"}, {3, "CAFFE' E TE'"}};
  device.refuse("GetHeaderLine(2)", 107);
  EXPECT_EQ(0, run("LEGGI TAB=INTESTAZ, FILE='d'"));
  EXPECT_EQ("PINT RIGA1='BAR SPORT', RIGA2='', RIGA3='CAFFE'' E TE'''\r\n", file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=INTESTAZ, FILE='d', LISTA"));
  EXPECT_EQ("#34 #1='BAR SPORT', #2='', #3='CAFFE'' E TE'''\r\n", file("d"));
}

TEST_F(TableDumps, WithoutHeaderLinesTheWordLosesALetter) {
  device.items[75] = "0";
  EXPECT_EQ(0, run("LEGGI TAB=INTESTAZ, FILE='d'"));
  EXPECT_EQ("PIN\r\n", file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=INTESTAZ, FILE='d', LISTA"));
  EXPECT_EQ("#3\r\n", file("d"));
}

TEST_F(TableDumps, HeaderLinesAreFortyAtMostAndStayWhole) {
  device.items[75] = "50";
  std::string expected = "PINT ";
  for (int line = 1; line <= 50; ++line) {
    device.headers[line] = std::string(64, '\'');
    if (line <= 40) {
      expected += "RIGA" + std::to_string(line) + "='" + std::string(128, '\'') + "', ";
    }
  }
  expected.resize(expected.size() - 2);
  EXPECT_EQ(0, run("LEGGI TAB=INTESTAZ, FILE='d'"));
  EXPECT_EQ(expected + "\r\n", file("d"));
  EXPECT_EQ(40u, device.calls_of("GetHeaderLine").size());
}

// --- Subtenders

TEST_F(TableDumps, SubtendersAreAsManyAsTheConfigurationSays) {
  translator->pCurConf->iNumSTEN = 2;
  device.subtenders[1] = {2, "BUONO 'A'", 255, 4294967295u, 6};
  device.subtenders[2] = {};
  device.subtenders[3] = {};
  EXPECT_EQ(0, run("LEGGI TAB=PAGAMENTI, FILE='d'"));
  EXPECT_EQ(
      "PSTEN ST=1, TIPO=2, DES='BUONO ''A''', FLAG=255, IMP=4294967295, CIFRE=6\r\n"
      "PSTEN ST=2, TIPO=0, DES='', FLAG=0, IMP=0, CIFRE=0\r\n",
      file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=PAGAMENTI, FILE='d', LISTA"));
  EXPECT_EQ(
      "#39 #1=1, #2=2, #3='BUONO ''A''', #4=255, #5=4294967295, #6=6\r\n"
      "#39 #1=2, #2=0, #3='', #4=0, #5=0, #6=0\r\n",
      file("d"));
}

TEST_F(TableDumps, ARefusedSubtenderEndsTheDumpWithItsCode) {
  translator->pCurConf->iNumSTEN = 3;
  device.subtenders[1] = {};
  device.subtenders[3] = {};
  device.refuse("ConfigSubtender(read 2)", 107);
  EXPECT_EQ(1643, run("LEGGI TAB=PAGAMENTI, FILE='d', PROG, LISTA"));
  EXPECT_EQ("PROG INIZIO\r\n#39 #1=1, #2=0, #3='', #4=0, #5=0, #6=0\r\nENDPROG\r\n", file("d"));
}

// Subtenders without end; it ends by itself behind the bound, so that a test without one ends too.
class EndlessSubtenders : public NullClient {
 public:
  int ConfigSubtender(bool, int32_t, uint8_t*, char*, uint8_t*, uint32_t*, uint8_t*) override {
    return ++asked > 65635 ? 107 : 0;
  }
  int asked = 0;
};

TEST_F(TableDumps, SubtendersWithoutEndAreReadToTheBoundOfTheOtherTables) {
  EndlessSubtenders endless;
  translator->rtfClient_ = &endless;
  translator->pCurConf->iNumSTEN = INT32_MAX;
  EXPECT_EQ(0, run("LEGGI TAB=PAGAMENTI, FILE='d'"));
  EXPECT_EQ(65535, endless.asked);
}

TEST_F(TableDumps, NoSubtendersAreNoError) {
  translator->pCurConf->iNumSTEN = 0;
  EXPECT_EQ(0, run("LEGGI TAB=PAGAMENTI, FILE='d'"));
  EXPECT_EQ("", file("d"));
}

// --- Groups and operators

TEST_F(TableDumps, AFailingGroupEndsTheDumpUntold) {
  device.items[108] = "3";
  device.groups = {{1, {"BAR", "x", 1, 2}}, {3, {"CUCINA", "", 0, 0}}};
  EXPECT_EQ(0, run("LEGGI TAB=GRUPPI, FILE='d'"));
  EXPECT_EQ("PGRU GRU=1, DES='BAR'\r\n", file("d"));
  device.groups[2] = {};
  EXPECT_EQ(0, run("LEGGI TAB=GRUPPI, FILE='d', LISTA"));
  EXPECT_EQ("#38 #1=1, #2='BAR'\r\n#38 #1=2, #2=''\r\n#38 #1=3, #2='CUCINA'\r\n", file("d"));
}

TEST_F(TableDumps, OperatorsStandBehindTheGroups) {
  device.items[108] = "10";
  device.items[110] = "3";
  device.groups = {{11, {"MARIO", "12'34", 1, -2}}, {12, {"", "", 0, 0}}};
  EXPECT_EQ(0, run("LEGGI TAB=OPERATORI, FILE='d'"));
  EXPECT_EQ(
      "POPER OPE=1, DES='MARIO', PASS='12''34', FLAG=1, OPZ=-2\r\n"
      "POPER OPE=2, DES='', PASS='', FLAG=0, OPZ=0\r\n",
      file("d"));
  EXPECT_EQ((Calls{"GetDataInternal(110)", "GetDataInternal(108)", "ConfigGroup(read 11)",
                   "ConfigGroup(read 12)", "ConfigGroup(read 13)"}),
            device.calls);
  EXPECT_EQ(0, run("LEGGI TAB=OPERATORI, FILE='d', LISTA"));
  EXPECT_EQ(
      "#53 #1=1, #2='MARIO', #3='12''34', #4=1, #5=-2\r\n"
      "#53 #1=2, #2='', #3='', #4=0, #5=0\r\n",
      file("d"));
}

TEST_F(TableDumps, OperatorsAreNotReadWhereTheGroupsEndUnknown) {
  device.items[110] = "3";
  device.groups = {{1, {"BAR", "", 0, 0}}};
  device.refuse("GetDataInternal(108)", 107);
  EXPECT_EQ(0, run("LEGGI TAB=OPERATORI, FILE='d'"));
  EXPECT_EQ("", file("d"));
}

TEST_F(TableDumps, FullGroupTextsStayWhole) {
  device.items[108] = "0";
  device.items[110] = "1";
  device.groups[1] = {std::string(128, '\''), std::string(64, '\''), INT_MIN, INT_MAX};
  EXPECT_EQ(0, run("LEGGI TAB=OPERATORI, FILE='d'"));
  EXPECT_EQ("POPER OPE=1, DES='" + std::string(256, '\'') + "', PASS='" + std::string(128, '\'') +
                "', FLAG=-2147483648, OPZ=2147483647\r\n",
            file("d"));
}

}  // namespace
