// Dumping options and keyboards of devices that keep no promise.

#include "unit/support/table_device.h"

namespace {

using OptionDumps = TableTest;

TEST_F(OptionDumps, NumbersOfAnySizeDoNotOverflow) {
  device.items = {{204, "-99999999999999999999"}, {150, "4294967298"}};
  EXPECT_EQ(0, Run("LEGGI TAB=OPZIONI, FILE='d'"));
  // The contrast of the lowest int: (-2147483648 - 80) / 20 + 1. Others keep 32 bits.
  EXPECT_EQ("POPZ CONTRASTO=-107374185, OPZ33=2\r\n", File("d"));
}

void OneKeyboard(TableDevice& device, const std::string& count) {
  device.items = {{104, "1"}, {105, "3"}, {106, "CASSA"}, {107, count}};
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
  EXPECT_EQ(0, Run("LEGGI TAB=TASTIERE, FILE='d', LISTA"));
  EXPECT_EQ(1000000, endless.first);
  EXPECT_EQ(2, endless.second);
  EXPECT_EQ(
      ";Keyboard Name = 'A', Keyboard id = 1, Keyboard Key Numbers=2147483647\r\n"
      ";Keyboard Name = 'B', Keyboard id = 2, Keyboard Key Numbers=2\r\n"
      "#43 #1=1, #2=75, #4=2\r\n"
      "#43 #1=2, #2=75, #4=2\r\n",
      File("d"));
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
  EXPECT_EQ(0, Run("LEGGI TAB=TASTIERE, FILE='d'"));
  EXPECT_EQ(
      ";Keyboard Name = 'CASSA', Keyboard id = 3, Keyboard Key Numbers=1\r\n"
      "PTAST POS=1, COD=MACRO01, MACRO='" +
          text + "', TIPO=3\r\n",
      File("d"));
}

}  // namespace
