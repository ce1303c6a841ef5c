// The layouts of the keyboards: which keys can be programmed, and what a macro plays.
#include "register/tables/keyboards.h"

#include <cstring>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using F = FunctionCode;

class KeyboardsTest : public RegisterTest {
 protected:
  int Program(int8_t keyboard, uint8_t position, uint8_t code, const std::string& macro = "") {
    char text[256] = "";
    macro.copy(text, sizeof text);
    uint16_t size = static_cast<uint16_t>(macro.size());
    return device.ConfigKeyboard(true, position, &code, &keyboard, text, &size);
  }
  // "code" or "code:macro", with the macro's codes; "refused N" for a key that is not there.
  std::string Key(int8_t keyboard, uint8_t position) {
    uint8_t code = 99;
    char macro[40];
    std::memset(macro, '#', sizeof macro);
    uint16_t size = 99;
    const int result = device.ConfigKeyboard(false, position, &code, &keyboard, macro, &size);
    if (result != RTF_SUCCESS) return "refused " + std::to_string(result);
    std::string text = std::to_string(code);
    for (uint16_t at = 0; at < size; ++at) {
      text += (at == 0 ? ":" : " ") + std::to_string(static_cast<unsigned char>(macro[at]));
    }
    EXPECT_EQ(macro[size], '\0');
    return text;
  }
};

TEST_F(KeyboardsTest, ThreeKeyboardsAsTheDataItemsTell) {
  EXPECT_EQ(Item(104), "0");
  EXPECT_EQ(Item(105), "0,1,2");
  EXPECT_EQ(Item(106), "INTERNA,ESTERNA,COMPATTA");
  EXPECT_EQ(Item(107), "60,120,48");
  EXPECT_NE(Key(0, 60), "refused 106");
  EXPECT_EQ(Key(0, 61), "refused 106");
  EXPECT_NE(Key(1, 120), "refused 106");
  EXPECT_EQ(Key(1, 121), "refused 106");
  EXPECT_NE(Key(2, 48), "refused 106");
  EXPECT_EQ(Key(2, 49), "refused 106");
  EXPECT_EQ(Key(0, 0), "refused 106");
  for (const int8_t keyboard : std::initializer_list<int8_t>{-128, -1, 3, 127})
    EXPECT_EQ(Key(keyboard, 1), "refused 106");
}

TEST_F(KeyboardsTest, KeysLeaveTheFactoryWithTheirFunctions) {
  EXPECT_EQ(Key(0, 1), "0");      // clear
  EXPECT_EQ(Key(0, 2), "1");      // the digit 1
  EXPECT_EQ(Key(0, 11), "10");    // the digit 0
  EXPECT_EQ(Key(0, 15), "14");    // the lock
  EXPECT_EQ(Key(0, 35), "49");    // total
  EXPECT_EQ(Key(0, 40), "240");   // paper feed
  EXPECT_EQ(Key(0, 41), "75");    // department 1
  EXPECT_EQ(Key(0, 60), "94");    // department 20
  EXPECT_EQ(Key(1, 80), "114");   // department 40
  EXPECT_EQ(Key(1, 100), "144");  // subtender 20
  EXPECT_EQ(Key(1, 101), "254");  // empty
  EXPECT_EQ(Key(1, 120), "254");
  EXPECT_EQ(Key(2, 45), "79");  // department 5
  EXPECT_EQ(Key(2, 46), "254");
}

TEST_F(KeyboardsTest, AKeyIsReadBackAsItWasWritten) {
  EXPECT_EQ(Program(0, 41, F::kMenu), RTF_SUCCESS);
  EXPECT_EQ(Key(0, 41), "249");
  EXPECT_EQ(Key(1, 41), "75");
  EXPECT_EQ(Program(2, 46, F::kMacro20, {F::kNumber5, F::kClear, F::kDepartment02}), RTF_SUCCESS);
  EXPECT_EQ(Key(2, 46), "219:5 0 76");
  EXPECT_EQ(Program(2, 46, F::kMacro20), RTF_SUCCESS);  // a key is written whole
  EXPECT_EQ(Key(2, 46), "219");
}

// The codes that a key takes, counted from their names: 20 (0 to 19), 24 (24 to 47), 22 (49 to
// 70), 40 departments, 24 (125 to 148), 11 (150 to 160), 2 (162, 163), 2 (166, 167), 2 (172, 173),
// 175, 8 (178 to 185), 188, 9 (190 to 198), 37 (200 to 236), 4 (240 to 243), 7 (249 to 255): 214.
// 13 of them are fixed: 0 to 11 and 14.
TEST_F(KeyboardsTest, KeysTakeTheCodesThatHaveAName) {
  int taken = 0;
  for (int code = 0; code <= 255; ++code) {
    const int result = Program(0, 41, static_cast<uint8_t>(code));
    EXPECT_TRUE(result == RTF_SUCCESS || result == RTF_E_ILLEGAL);
    if (result == RTF_SUCCESS) ++taken;
  }
  EXPECT_EQ(taken, 214 - 13);
  for (const int code : {20,  23,  48,  71,  74,  115, 124, 149, 161, 164, 165, 168,
                         171, 174, 176, 177, 186, 187, 189, 199, 237, 239, 244, 248}) {
    EXPECT_EQ(Program(0, 41, static_cast<uint8_t>(code)), RTF_E_ILLEGAL) << code;
  }
}

TEST_F(KeyboardsTest, ClearDigitsAndLockKeepTheirPlaces) {
  for (const uint8_t position : std::initializer_list<uint8_t>{1, 2, 10, 11, 12, 15}) {
    const std::string before = Key(0, position);
    EXPECT_EQ(Program(0, position, F::kMenu), RTF_E_ILLEGAL);
    EXPECT_EQ(Key(0, position), before);
    EXPECT_EQ(Program(0, position, static_cast<uint8_t>(std::stoi(before))), RTF_SUCCESS);
  }
  for (const uint8_t code : {F::kClear, F::kNumber1, F::kNumber0, F::kNumber00, F::kKey}) {
    EXPECT_EQ(Program(0, 41, code), RTF_E_ILLEGAL);
  }
  // The triple zero and the separator are keys like others.
  EXPECT_EQ(Program(0, 13, F::kSeparator), RTF_SUCCESS);
  EXPECT_EQ(Program(0, 41, F::kNumber000), RTF_SUCCESS);
}

TEST_F(KeyboardsTest, MacrosHaveLimits) {
  const std::string longest(39, static_cast<char>(F::kNumber000));
  EXPECT_EQ(Program(0, 41, F::kMacro01, longest), RTF_SUCCESS);
  uint8_t code = F::kMacro01;
  int8_t keyboard = 0;
  uint16_t size = 40;
  std::string macro(40, '\x01');
  EXPECT_EQ(device.ConfigKeyboard(true, 41, &code, &keyboard, macro.data(), &size),
            RTF_EFPTR_BAD_LENGTH);
  size = 65535;  // the buffer behind it is not looked at
  EXPECT_EQ(device.ConfigKeyboard(true, 41, &code, &keyboard, macro.data(), &size),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(Key(0, 41).substr(0, 7), "200:12 ");
  for (const uint8_t other : {F::kTotal, F::kLetterJ, F::kEmpty, F::kNull}) {
    EXPECT_EQ(Program(0, 41, other, "\x01"), RTF_E_ILLEGAL);
  }
  EXPECT_EQ(Program(0, 41, F::kMacro01, "\xc9"), RTF_E_ILLEGAL);
  EXPECT_EQ(Program(0, 41, F::kMacro01, "\x14"), RTF_E_ILLEGAL);  // 20 has no name
  EXPECT_EQ(Key(0, 41).substr(0, 7), "200:12 ");
  EXPECT_EQ(device.ConfigKeyboard(true, 41, nullptr, &keyboard, macro.data(), &size),
            RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigKeyboard(false, 41, &code, nullptr, macro.data(), &size), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigKeyboard(false, 41, &code, &keyboard, nullptr, &size), RTF_E_ILLEGAL);
  EXPECT_EQ(device.ConfigKeyboard(false, 41, &code, &keyboard, macro.data(), nullptr),
            RTF_E_ILLEGAL);
}

TEST_F(KeyboardsTest, AMacroKeyPlaysItsKeys) {
  // 5 on department 2, 1 and 0 on department 1, total.
  ASSERT_EQ(Program(1, 101, F::kMacro03,
                    {F::kNumber5, F::kDepartment02, F::kNumber1, F::kNumber0, F::kDepartment01,
                     F::kTotal}),
            RTF_SUCCESS);
  EXPECT_EQ(device.KeyCodeInput("", "", "", F::kMacro03), RTF_SUCCESS);
  EXPECT_EQ(Item(368), "0");
  ASSERT_EQ(device.store().documents().size(), 1u);
  EXPECT_EQ(device.store().documents()[0].by_vat, (std::map<int, Amount>{{1, 100000}, {2, 50000}}));
  // A macro key that no keyboard has stays unknown.
  EXPECT_EQ(device.KeyCodeInput("", "", "", F::kMacro04), RTF_E_ILLEGAL);
}

TEST_F(KeyboardsTest, EveryMacroKeyPlaysAndIsPlayedByNone) {
  const std::string sale = {F::kNumber1, F::kDepartment01, F::kTotal};
  int documents = 0;
  for (int code = F::kMacro01; code <= F::kMacro20; ++code) {
    const auto key = static_cast<uint8_t>(code);
    ASSERT_EQ(Program(0, 41, key, sale), RTF_SUCCESS) << code;
    EXPECT_EQ(Program(0, 42, F::kMacro01, std::string(1, static_cast<char>(key))), RTF_E_ILLEGAL)
        << code;
    EXPECT_EQ(device.KeyCodeInput("", "", "", key), RTF_SUCCESS) << code;
    EXPECT_EQ(Item(368), "0") << code;
    EXPECT_EQ(device.store().document_count(), ++documents) << code;
  }
}

TEST_F(KeyboardsTest, AMacroStopsAtTheFirstRefusedKey) {
  ASSERT_EQ(Program(0, 41, F::kMacro01, {F::kTotal, F::kNumber5, F::kDepartment01}), RTF_SUCCESS);
  EXPECT_EQ(device.KeyCodeInput("", "", "", F::kMacro01), RTF_SUCCESS);
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_WRONG_STATE));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  ASSERT_EQ(Program(0, 41, F::kMacro01, {F::kHost, F::kNumber5, F::kDepartment01}), RTF_SUCCESS);
  EXPECT_EQ(device.KeyCodeInput("", "", "", F::kMacro01), RTF_E_ILLEGAL);  // a key without a job
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

}  // namespace
}  // namespace lorimat
