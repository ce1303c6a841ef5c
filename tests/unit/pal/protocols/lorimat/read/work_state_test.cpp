// The work state file, byte for byte against what the test puts together itself.

#include "unit/support/table_device.h"

namespace {

const int kVatInfo[15] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 20, 30, 40, 50, 60};

struct GridRow {
  int gross;
  int plain;
  int base;
};
const GridRow kGrid[11] = {{16, 21, 1000},   {17, 22, 1250},   {18, 23, 1040},   {20, 25, 1060},
                           {19, 24, 1300},   {104, 124, 1400}, {105, 125, 1420}, {106, 126, 1440},
                           {107, 127, 1460}, {108, 128, 1480}, {110, 130, 1500}};

class WorkState : public TableTest {
 protected:
  WorkState() {
    device.date = "250120261430";
    device.items = {{77, "8"}, {78, "2"}, {121, "12.34"}, {154, "7"}, {372, "100"}, {373, "-5"}};
    for (int entry = 1; entry <= 8; ++entry) device.vat_rates[entry] = entry * 10000 + 5000;
    for (const GridRow& row : kGrid) {
      for (const int vat : kVatInfo) {
        set_total(vat, row.gross, cents(vat, row.gross));
        set_total(vat, row.plain, cents(vat, row.plain));
      }
    }
    for (const int vat : kVatInfo) set_total(vat, 26, cents(vat, 26));
    for (const int department : {1, 2}) {
      for (const int kind : {100, 101, 102}) set_total(department, kind, cents(department, kind));
    }
    device.departments[1].description = "PANE";
    device.departments[2].description = "L'ORTO";
    translator->pCurConf->iNumTOTG = 2;
  }

  static int cents(int vat, int kind) { return vat * 1000 + kind; }
  // The device has four decimals; the last two of these are lost.
  void set_total(int vat, int kind, int amount) {
    device.totals[text(vat, kind)] = std::to_string(amount) + "99";
  }
  static std::string text(int vat, int kind) {
    return std::to_string(vat) + ",2," + std::to_string(kind);
  }
  static std::string ten(int64_t value) {
    return TableDevice::text("%010lld", static_cast<long long>(value));
  }

  std::string head() const {
    return "1,'25/01/26 14:30'\r\n"
           "2,0000001234\r\n"
           "3,000007\r\n";
  }
  std::string rates() const {
    return "900,AL\r\n901,1.50\r\n902,2.50\r\n903,3.50\r\n904,4.50\r\n905,5.50\r\n906,6.50\r\n"
           "907,7.50\r\n908,8.50\r\n909,ES\r\n910,EE\r\n911,NS\r\n912,NI\r\n913,RM\r\n914,VI\r\n";
  }
  std::string grid() const {
    std::string lines;
    for (const GridRow& row : kGrid) {
      for (int i = 0; i < 15; ++i) {
        lines += std::to_string(row.base + i) + "," + ten(cents(kVatInfo[i], row.plain)) + "," +
                 ten(cents(kVatInfo[i], row.gross)) + "\r\n";
      }
    }
    return lines;
  }
  std::string taxes() const {
    std::string lines;
    for (int i = 0; i < 15; ++i) {
      lines += std::to_string(1350 + i) + "," + ten(cents(kVatInfo[i], 26)) + "\r\n";
    }
    return lines;
  }
  std::string departments() const {
    return "2001,0000001102,0000001101,'PANE'\r\n"
           "2002,0000002102,0000002101,'L''ORTO'\r\n";
  }
  std::string counters() const {
    return "3001,0000000100,-00001,'CONTANTI'\r\n"
           "3002,-000000005,-00001,'CREDITO'\r\n";
  }
};

TEST_F(WorkState, HoldsItsRecordsInTheirOrder) {
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(head() + rates() + grid() + taxes() + departments() + counters(), file("d"));
}

TEST_F(WorkState, ListFormChangesNothing) {
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d', LISTA, PROG"));
  EXPECT_EQ("PROG INIZIO\r\n" + head() + rates() + grid() + taxes() + departments() + counters() +
                "ENDPROG\r\n",
            file("d"));
}

TEST_F(WorkState, AsksTheDeviceInItsOrder) {
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  Calls expected = {"SetIntProperty(16032,4)", "GetDate()", "GetDataInternal(121)",
                    "GetDataInternal(154)", "GetDataInternal(77)"};
  for (int entry = 1; entry <= 8; ++entry) {
    expected.push_back("GetVatEntry(" + std::to_string(entry) + ",0)");
  }
  for (const GridRow& row : kGrid) {
    for (const int vat : kVatInfo) {
      expected.push_back("GetTotalizerExtend(" + text(vat, row.gross) + ")");
      expected.push_back("GetTotalizerExtend(" + text(vat, row.plain) + ")");
    }
  }
  for (const int vat : kVatInfo) {
    expected.push_back("GetTotalizerExtend(" + text(vat, 26) + ")");
  }
  expected.push_back("GetDataInternal(78)");
  for (const int department : {1, 2}) {
    for (const int kind : {100, 101, 102}) {
      expected.push_back("GetTotalizerExtend(" + text(department, kind) + ")");
    }
    expected.push_back("ConfigDepartment(read " + std::to_string(department) + ")");
  }
  expected.push_back("GetDataInternal(372)");
  expected.push_back("GetDataInternal(373)");
  EXPECT_EQ(expected, device.calls);
}

TEST_F(WorkState, PassesOverErrorsOfItsHead) {
  device.refuse("SetIntProperty", 107);
  device.refuse("GetDate", 107);
  device.refuse("GetDataInternal(121)", 107);
  device.refuse("GetDataInternal(77)", 107);
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ("1,'// :'\r\n2,\r\n3,\r\n" + rates() + grid() + taxes() + departments() + counters(),
            file("d"));
}

TEST_F(WorkState, AShortDateShowsAsFarAsItGoes) {
  device.date = "250";
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ("1,'25/0/ :'\r\n", file("d").substr(0, 13));
}

TEST_F(WorkState, ARefusedVatEntryEndsIt) {
  device.refuse("GetVatEntry(3", 107);
  EXPECT_EQ(619, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(head() + "900,AL\r\n901,1.50\r\n902,2.50\r\n", file("d"));
}

TEST_F(WorkState, AMissingClassReadsAsZeroInTheGrid) {
  std::string expected = grid();
  for (int i = 0; i < 15; ++i) {
    device.totals.erase(text(kVatInfo[i], 107));
    device.totals.erase(text(kVatInfo[i], 127));
    const std::string record = std::to_string(1460 + i) + ",";
    const size_t place = expected.find(record);
    expected.replace(place + record.size(), 21, "0000000000,0000000000");
  }
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(head() + rates() + expected + taxes() + departments() + counters(), file("d"));
}

TEST_F(WorkState, AnotherRefusalEndsTheGrid) {
  device.refuse("GetTotalizerExtend(2,2,21)", 107);
  EXPECT_EQ(619, run("LEGGI TAB=STATOLAV, FILE='d'"));
  const std::string whole = grid();
  EXPECT_EQ(head() + rates() + whole.substr(0, whole.find("1002,")), file("d"));
  device.allow_all();
  device.refuse("GetTotalizerExtend(0,2,16)", 207);
  EXPECT_EQ(1231, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(head() + rates(), file("d"));
}

TEST_F(WorkState, AMissingTaxIsNotSpared) {
  device.totals.erase(text(1, 26));
  EXPECT_EQ(106 | 0x200, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(head() + rates() + grid() + "1350,0000000026\r\n", file("d"));
}

TEST_F(WorkState, ARefusedTotalOfADepartmentShowsTheOneBefore) {
  device.refuse("GetTotalizerExtend(1,2,102)", 107);  // shows 101
  device.refuse("GetTotalizerExtend(2,2,100)", 107);
  device.refuse("GetTotalizerExtend(2,2,101)", 107);  // shows 102 of nothing: 101 of department 1
  device.refuse("ConfigDepartment(read 2)", 107);
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(head() + rates() + grid() + taxes() +
                "2001,0000001101,0000001101,'PANE'\r\n"
                "2002,0000002102,0000001101,''\r\n" +
                counters(),
            file("d"));
}

TEST_F(WorkState, TheFirstDepartmentMayShowTheLastTax) {
  for (const int kind : {100, 101, 102}) {
    device.refuse("GetTotalizerExtend(" + text(1, kind) + ")", 107);
  }
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  // Class 60, tax: 60 * 1000 + 26.
  EXPECT_NE(std::string::npos, file("d").find("\r\n2001,0000060026,0000060026,'PANE'\r\n"));
}

TEST_F(WorkState, ARefusedCounterEndsItWithItsThirdClassBit) {
  device.refuse("GetDataInternal(373)", 107);
  EXPECT_EQ(1643, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_EQ(
      head() + rates() + grid() + taxes() + departments() + "3001,0000000100,-00001,'CONTANTI'\r\n",
      file("d"));
}

TEST_F(WorkState, FullAndQuotedDescriptionsOfCounters) {
  std::memset(translator->TabDscTotG[1], '\'', 32);  // a full row has no closing NUL
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_NE(std::string::npos,
            file("d").find("\r\n3001,0000000100,-00001,'" + std::string(64, '\'') + "'\r\n"));
}

TEST_F(WorkState, CountersBeyondTheDescriptionsHaveNone) {
  translator->pCurConf->iNumTOTG = 101;
  for (const int item : {374, 375, 376, 377, 378, 32,  379, 380, 9,   29,  28,  112,
                         12,  381, 382, 383, 384, 385, 386, 387, 388, 389, 390, 58}) {
    device.items[item] = "0";
  }
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_NE(std::string::npos, file("d").find("\r\n3099,-000000001,-00001,''\r\n"
                                              "3100,-000000001,-00001,''\r\n"
                                              "3101,-000000001,-00001,''\r\n"));
}

TEST_F(WorkState, FixedFormHasNeitherQuotesNorSeparators) {
  translator->iOutEditFlags = 1;
  device.departments[2].description = "L'ORTO,";
  EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
  const std::string content = file("d");
  // The date keeps its quotes, and a text loses a separator of its own at the end.
  EXPECT_EQ("1'25/01/26 14:30'\r\n20000001234\r\n3000007\r\n900AL\r\n9011.50\r\n",
            content.substr(0, content.find("902")));
  EXPECT_NE(std::string::npos, content.find("\r\n1000"
                                            "0000000021"
                                            "0000000016\r\n"));
  EXPECT_NE(std::string::npos, content.find("\r\n2002"
                                            "0000002102"
                                            "0000002101"
                                            "L'ORTO\r\n"));
  EXPECT_NE(std::string::npos, content.find("\r\n3001"
                                            "0000000100"
                                            "-00001"
                                            "CONTANTI\r\n"));
}

TEST_F(WorkState, OtherEditOptionsQuoteTexts) {
  for (const int options : {0, 2, 3}) {
    translator->iOutEditFlags = options;
    EXPECT_EQ(0, run("LEGGI TAB=STATOLAV, FILE='d'"));
    EXPECT_EQ(head() + rates() + grid() + taxes() + departments() + counters(), file("d"));
  }
}

TEST_F(WorkState, SeparatorsAndMarksAreTheTranslators) {
  translator->cChSep = ';';
  translator->cChQuote = '"';
  translator->cChDate = '-';
  translator->cChTime = '.';
  EXPECT_EQ(0, run("LEGGI TAB=100, FILE=\"d\""));
  const std::string content = file("d");
  EXPECT_EQ("1;\"25-01-26 14.30\"\r\n2;0000001234\r\n", content.substr(0, 34));
  EXPECT_NE(std::string::npos, content.find("\r\n2002;0000002102;0000002101;\"L'ORTO\"\r\n"));
}

TEST_F(WorkState, OutputValuesWithoutAQuoteCharacterStandBare) {
  char text[64];
  translator->cChQuote = 0;
  EXPECT_EQ(text + 3, translator->EditEMOut(text, "AB", 2));
  EXPECT_STREQ("AB,", text);
  translator->cChQuote = '\'';
  EXPECT_EQ(text + 3, translator->EditEMOut(text, "A'", 1));
  EXPECT_STREQ("A',", text);
  EXPECT_EQ(text + 6, translator->EditEMOut(text, "A'", 2));
  EXPECT_STREQ("'A''',", text);
  EXPECT_EQ(text + 3, translator->EditEMOut(text, "", 2));
  EXPECT_STREQ("'',", text);
}

TEST_F(WorkState, ACopyOfSomeCharactersIsClosed) {
  char text[8] = "xxxxxxx";
  EXPECT_EQ(text + 2, translator->Dimpacc(text, "12345", 2));
  EXPECT_STREQ("12", text);
  EXPECT_EQ(text, translator->Dimpacc(text, "12345", 0));
  EXPECT_STREQ("", text);
}

}  // namespace
