// The work state where a conversation does not reach: descriptions that fill their row, more
// counters than a device has, marks of dates that no host sets, and the editors of its values.

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
        SetTotal(vat, row.gross, Cents(vat, row.gross));
        SetTotal(vat, row.plain, Cents(vat, row.plain));
      }
    }
    for (const int vat : kVatInfo) SetTotal(vat, 26, Cents(vat, 26));
    for (const int department : {1, 2}) {
      for (const int kind : {100, 101, 102}) SetTotal(department, kind, Cents(department, kind));
    }
    device.departments[1].description = "PANE";
    device.departments[2].description = "L'ORTO";
    translator->pCurConf->iNumTOTG = 2;
  }

  static int Cents(int vat, int kind) { return vat * 1000 + kind; }
  // The device has four decimals; the last two of these are lost.
  void SetTotal(int vat, int kind, int amount) {
    device.totals[Text(vat, kind)] = std::to_string(amount) + "99";
  }
  static std::string Text(int vat, int kind) {
    return std::to_string(vat) + ",2," + std::to_string(kind);
  }
};

TEST_F(WorkState, FullAndQuotedDescriptionsOfCounters) {
  std::memset(translator->TabDscTotG[1], '\'', 32);  // a full row has no closing NUL
  EXPECT_EQ(0, Run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_NE(std::string::npos,
            File("d").find("\r\n3001,0000000100,-00001,'" + std::string(64, '\'') + "'\r\n"));
}

TEST_F(WorkState, CountersBeyondTheDescriptionsHaveNone) {
  translator->pCurConf->iNumTOTG = 101;
  for (const int item : {374, 375, 376, 377, 378, 32,  379, 380, 9,   29,  28,  112,
                         12,  381, 382, 383, 384, 385, 386, 387, 388, 389, 390, 58}) {
    device.items[item] = "0";
  }
  EXPECT_EQ(0, Run("LEGGI TAB=STATOLAV, FILE='d'"));
  EXPECT_NE(std::string::npos, File("d").find("\r\n3099,-000000001,-00001,''\r\n"
                                              "3100,-000000001,-00001,''\r\n"
                                              "3101,-000000001,-00001,''\r\n"));
}

TEST_F(WorkState, SeparatorsAndMarksAreTheTranslators) {
  translator->cChSep = ';';
  translator->cChQuote = '"';
  translator->cChDate = '-';
  translator->cChTime = '.';
  EXPECT_EQ(0, Run("LEGGI TAB=100, FILE=\"d\""));
  const std::string content = File("d");
  EXPECT_EQ("1;\"25-01-26 14.30\"\r\n2;0000001234\r\n", content.substr(0, 34));
  EXPECT_NE(std::string::npos, content.find("\r\n2002;0000002102;0000002101;\"L'ORTO\"\r\n"));
}

TEST_F(WorkState, WithoutSeparatorAndMarksTheValuesStandSideBySide) {
  translator->cChSep = 0;
  translator->cChQuote = 0;
  translator->cChDate = 0;
  translator->cChTime = 0;
  EXPECT_EQ(0, Run("LEGGI TAB=100, FILE=5"));
  // Record 1 with 25-01-26 14.30, record 2 with 12.34.
  EXPECT_EQ("1250126 1430\r\n20000001234\r\n", File("5").substr(0, 27));
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

TEST_F(WorkState, OutputValuesAreCutAtTheEndOfTheirBuffer) {
  char text[10] = "xxxxxxxxx";
  EXPECT_EQ(text + 6, translator->EditEMOut(text, 7, "A'", 2));
  EXPECT_EQ(std::string("'A''',\0xx", 9), std::string(text, 9));
  EXPECT_EQ(text + 4, translator->EditEMOut(text, 5, "A'", 2));
  EXPECT_EQ(std::string("'A''\0,\0xx", 9), std::string(text, 9));
  EXPECT_EQ(text, translator->EditEMOut(text, 1, "A", 0));
  EXPECT_EQ(std::string("\0A", 2), std::string(text, 2));
}

TEST_F(WorkState, ACopyOfSomeCharactersIsClosed) {
  char text[8] = "xxxxxxx";
  EXPECT_EQ(text + 2, translator->Dimpacc(text, "12345", 2));
  EXPECT_STREQ("12", text);
  EXPECT_EQ(text, translator->Dimpacc(text, "12345", 0));
  EXPECT_STREQ("", text);
}

}  // namespace
