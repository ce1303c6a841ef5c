// Dumping options and keyboards.

#include "unit/support/table_device.h"

namespace {

using OptionDumps = TableTest;

void SetOptions(TableDevice& device) {
  device.items = {{60, "BEN'VENUTI"}, {317, "1"},  {204, "120"},  {395, "0"},  {402, "13"},
                  {415, "7"},         {399, "16"}, {401, "T 17"}, {318, "0"},  {419, "1"},
                  {459, "1"},         {367, "1"},  {150, "33"},   {151, "-4"}, {396, "0"},
                  {400, "1.000"},     {418, "0"}};
}

TEST_F(OptionDumps, OptionsShareOneLineInTheOrderOfTheirNumbers) {
  SetOptions(device);
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
  EXPECT_EQ(
      "POPZ OPZ01='BEN''VENUTI', OPZ04=SI, CONTRASTO=3, OPZ08=NO, OPZ13=13, OPZ14=SI, "
      "OPZ16=16, OPZ17='T 17', OPZ19=NO, OPZ20=SI, CASSETTO=SI, OPZ32=NO, OPZ33=33, "
      "OPZ34=-4, OPZ35=NO, OPZ36=1000, OPZ37=NO\r\n",
      file("d"));
  EXPECT_EQ((Calls{"GetDataInternal(60)", "GetDataInternal(317)", "GetDataInternal(204)",
                   "GetDataInternal(395)", "GetDataInternal(402)", "GetDataInternal(415)",
                   "GetDataInternal(399)", "GetDataInternal(401)", "GetDataInternal(401)",
                   "GetDataInternal(318)", "GetDataInternal(419)", "GetDataInternal(459)",
                   "GetDataInternal(367)", "GetDataInternal(150)", "GetDataInternal(151)",
                   "GetDataInternal(396)", "GetDataInternal(400)", "GetDataInternal(418)"}),
            device.calls);
}

TEST_F(OptionDumps, OptionsInListFormHaveNumbersAndFlagDigits) {
  SetOptions(device);
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d', LISTA"));
  EXPECT_EQ(
      "#36 #1='BEN''VENUTI', #4=2, #7=3, #8=1, #13=13, #14=2, #16=16, #17='T 17', #19=1, "
      "#20=2, #28=2, #32=1, #33=33, #34=-4, #35=1, #36=1000, #37=1\r\n",
      file("d"));
}

TEST_F(OptionDumps, ARefusedOptionIsLeftOut) {
  device.items = {{204, "80"}, {367, "0"}};
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
  EXPECT_EQ("POPZ CONTRASTO=1, OPZ32=SI\r\n", file("d"));
}

TEST_F(OptionDumps, ContrastReadsAsItsLevel) {
  for (const auto& [value, level] : std::map<std::string, std::string>{
           {"80", "1"}, {"100", "2"}, {"119", "2"}, {"120", "3"}, {"0", "-3"}, {"61", "1"}}) {
    device.items[204] = value;
    EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
    EXPECT_EQ("POPZ CONTRASTO=" + level + "\r\n", file("d")) << value;
  }
}

TEST_F(OptionDumps, OptionSixteenStaysWithEitherOfItsReads) {
  device.items = {{399, "16"}};
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
  EXPECT_EQ("POPZ OPZ16=16\r\n", file("d"));
  device.items = {{401, "T"}};
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
  EXPECT_EQ("POPZ OPZ16=0, OPZ17='T'\r\n", file("d"));
}

TEST_F(OptionDumps, WithoutAnyOptionTheWordLosesALetter) {
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
  EXPECT_EQ("POP\r\n", file("d"));
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d', LISTA"));
  EXPECT_EQ("#3\r\n", file("d"));
}

TEST_F(OptionDumps, NumbersOfAnySizeDoNotOverflow) {
  device.items = {{204, "-99999999999999999999"}, {150, "4294967298"}};
  EXPECT_EQ(0, run("LEGGI TAB=OPZIONI, FILE='d'"));
  // The contrast of the lowest int: (-2147483648 - 80) / 20 + 1. Others keep 32 bits.
  EXPECT_EQ("POPZ CONTRASTO=-107374185, OPZ33=2\r\n", file("d"));
}

// --- Keyboards

void OneKeyboard(TableDevice& device, const std::string& count) {
  device.items = {{104, "1"}, {105, "3"}, {106, "CASSA"}, {107, count}};
}

TEST_F(OptionDumps, KeysAreLinesBehindTheKeyboardsComment) {
  OneKeyboard(device, "3");
  device.keys = {{1, {75, 0, ""}}, {2, {36, 0, ""}}, {3, {202, 0, "\x01\x0a\x4c"}}};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=3\r\n"
      "PTAST POS=1, COD=REP01, TIPO=3\r\n"
      "PTAST POS=2, COD=SUBTOTALE, TIPO=3\r\n"
      "PTAST POS=3, COD=MACRO03, MACRO='N1 N0 REP02 ', TIPO=3\r\n",
      file("d"));
  EXPECT_EQ((Calls{"GetDataInternal(104)", "GetDataInternal(105)", "GetDataInternal(106)",
                   "GetDataInternal(107)", "ConfigKeyboard(read 1,3)", "ConfigKeyboard(read 2,3)",
                   "ConfigKeyboard(read 3,3)"}),
            device.calls);
}

TEST_F(OptionDumps, KeysInListFormKeepTheSymbolsOfTheirMacros) {
  OneKeyboard(device, "2");
  device.keys = {{1, {75, 0, ""}}, {2, {202, 0, "\x01\x0a"}}};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d', LISTA"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=2\r\n"
      "#43 #1=1, #2=75, #4=3\r\n"
      "#43 #1=2, #2=202, #3='N1 N0 ', #4=3\r\n",
      file("d"));
}

TEST_F(OptionDumps, DigitsAndTheKeyLockAreAskedForAndNotWritten) {
  OneKeyboard(device, "8");
  const int codes[] = {0, 1, 10, 11, 12, 13, 14, 15};
  for (int i = 0; i < 8; ++i) device.keys[i + 1] = {codes[i], 0, ""};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d', LISTA"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=8\r\n"
      "#43 #1=5, #2=12, #4=3\r\n"
      "#43 #1=6, #2=13, #4=3\r\n"
      "#43 #1=8, #2=15, #4=3\r\n",
      file("d"));
  EXPECT_EQ(8u, device.calls_of("ConfigKeyboard(read").size());
}

TEST_F(OptionDumps, CodesWithoutASymbolShowTheirNumberAndNothingInAMacro) {
  OneKeyboard(device, "2");
  // 239 and 71 have no symbol.
  device.keys = {{1, {71, 0, ""}}, {2, {239, 0, std::string("\x01\x47\xef\x02", 4)}}};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=2\r\n"
      "PTAST POS=1, COD=71, TIPO=3\r\n"
      "PTAST POS=2, COD=239, MACRO='N1   N2 ', TIPO=3\r\n",
      file("d"));
}

TEST_F(OptionDumps, OnlyCodesFrom200ShowTheirMacro) {
  OneKeyboard(device, "3");
  device.keys = {{1, {199, 0, "\x01"}}, {2, {200, 0, ""}}, {3, {255, 0, "\x01"}}};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d', LISTA"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=3\r\n"
      "#43 #1=1, #2=199, #4=3\r\n"
      "#43 #1=2, #2=200, #4=3\r\n"
      "#43 #1=3, #2=255, #3='N1 ', #4=3\r\n",
      file("d"));
}

TEST_F(OptionDumps, ARefusedKeyEndsItsKeyboardAlone) {
  device.items = {{104, "1"}, {105, "1,2"}, {106, "A,B"}, {107, "3,2"}};
  device.keys = {{1, {75, 0, ""}}, {3, {76, 0, ""}}};
  device.refuse("ConfigKeyboard(read 2,1)", 107);
  device.keys[2] = {77, 0, ""};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d', LISTA"));
  EXPECT_EQ(
      ";Keyboard Name = 'A', Keyboard id = 1, Keyboard Key Numbers=3\r\n"
      "#43 #1=1, #2=75, #4=1\r\n"
      ";Keyboard Name = 'B', Keyboard id = 2, Keyboard Key Numbers=2\r\n"
      "#43 #1=1, #2=75, #4=2\r\n"
      "#43 #1=2, #2=77, #4=2\r\n",
      file("d"));
}

TEST_F(OptionDumps, KeyboardListsEndAtFiveEntriesOfTenCharacters) {
  device.items = {{104, "1"},
                  {105, "1,2,3,4,5,6,7,8,9"},
                  {106, "TASTIERA-LUNGHISSIMA,B,C,D,E,F,G,H,I"},
                  {107, "0,0,0,0,0,7,7,7,7"}};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(
      ";Keyboard Name = 'TASTIERA-L', Keyboard id = 1, Keyboard Key Numbers=0\r\n"
      ";Keyboard Name = 'B', Keyboard id = 2, Keyboard Key Numbers=0\r\n"
      ";Keyboard Name = 'C', Keyboard id = 3, Keyboard Key Numbers=0\r\n"
      ";Keyboard Name = 'D', Keyboard id = 4, Keyboard Key Numbers=0\r\n"
      ";Keyboard Name = 'E', Keyboard id = 5, Keyboard Key Numbers=0\r\n",
      file("d"));
  EXPECT_TRUE(device.calls_of("ConfigKeyboard").empty());
}

TEST_F(OptionDumps, TheListOfCountsTellsHowManyKeyboardsThereAre) {
  device.items = {{105, "1"}, {106, "A,B,C"}, {107, "0,0"}};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(
      ";Keyboard Name = 'A', Keyboard id = 1, Keyboard Key Numbers=0\r\n"
      ";Keyboard Name = 'B', Keyboard id = 0, Keyboard Key Numbers=0\r\n",
      file("d"));
}

TEST_F(OptionDumps, ADeviceWithoutListsHasOneKeyboardWithoutKeys) {
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(";Keyboard Name = '', Keyboard id = 0, Keyboard Key Numbers=0\r\n", file("d"));
}

TEST_F(OptionDumps, AKeyboardOf256KeysIsReadToItsEnd) {
  OneKeyboard(device, "256");
  for (int position = 0; position < 256; ++position) device.keys[position] = {1, 0, ""};
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(256u, device.calls_of("ConfigKeyboard").size());
  EXPECT_EQ("ConfigKeyboard(read 0,3)", device.calls.back());
}

// Two keyboards, of which the first has more keys than there can be. It ends by itself behind the
// bound, so that a test without one ends too.
class EndlessKeys : public NullClient {
 public:
  int GetDataInternal(int item, char* value) override {
    std::strcpy(value, item == 105 ? "1,2" : item == 106 ? "A,B" : "2147483647,2");
    return 0;
  }
  int ConfigKeyboard(bool, uint8_t, uint8_t* code, int8_t* type, char*, uint16_t*) override {
    ++(*type == 1 ? first : second);
    // The lock, which is asked for and not written, and a key on the second keyboard.
    *code = *type == 1 ? 14 : 75;
    return first > 1000100 ? 107 : 0;
  }

  int first = 0;
  int second = 0;
};

TEST_F(OptionDumps, AKeyboardWithoutEndLeavesTheNextOneWhole) {
  EndlessKeys endless;
  translator->rtfClient_ = &endless;
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d', LISTA"));
  EXPECT_EQ(1000000, endless.first);
  EXPECT_EQ(2, endless.second);
  EXPECT_EQ(
      ";Keyboard Name = 'A', Keyboard id = 1, Keyboard Key Numbers=2147483647\r\n"
      ";Keyboard Name = 'B', Keyboard id = 2, Keyboard Key Numbers=2\r\n"
      "#43 #1=1, #2=75, #4=2\r\n"
      "#43 #1=2, #2=75, #4=2\r\n",
      file("d"));
}

TEST_F(OptionDumps, AFullMacroFitsItsLine) {
  OneKeyboard(device, "1");
  std::string macro;
  std::string text;
  for (int i = 0; i < 40; ++i) {
    macro += '\x22';  // MAGGIORAZ
    text += "MAGGIORAZ ";
  }
  device.keys[1] = {200, 0, macro + macro};  // a record takes 40
  EXPECT_EQ(0, run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=1\r\n"
      "PTAST POS=1, COD=MACRO01, MACRO='" +
          text + "', TIPO=3\r\n",
      file("d"));
}

}  // namespace
