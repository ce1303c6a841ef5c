#include "door/judge/code_page.h"

#include <gtest/gtest.h>

namespace lorimat::door {
namespace {

TEST(CodePage, LettersAndTheEuroGoThereAndBack) {
  const DeviceText text = ToDevice("CAFFÈ 1 € ÿ");
  EXPECT_EQ(text.fault, TextFault::kNone);
  EXPECT_EQ(text.bytes, "CAFF\xC8 1 \x80 \xFF");
  EXPECT_EQ(FromDevice(text.bytes), "CAFFÈ 1 € ÿ");
}

TEST(CodePage, EveryByteComesBackOrIsAQuestionMark) {
  for (int byte = 0x20; byte < 0x100; ++byte) {
    const std::string one(1, static_cast<char>(byte));
    const bool is_none = byte == 0x7F || byte == 0x81 || byte == 0x8D || byte == 0x8F ||
                         byte == 0x90 || byte == 0x9D;
    EXPECT_EQ(ToDevice(FromDevice(one)).bytes, is_none ? "?" : one) << byte;
  }
}

TEST(CodePage, TellsWhereACharacterIsNoGood) {
  const auto expect = [](std::string_view utf8, TextFault fault, size_t column) {
    const DeviceText text = ToDevice(utf8);
    EXPECT_EQ(text.fault, fault) << utf8;
    EXPECT_EQ(text.column, column) << utf8;
    EXPECT_EQ(text.bytes, "");
  };
  expect("è Ω", TextFault::kNotInCodePage, 3);
  expect("😀", TextFault::kNotInCodePage, 1);
  expect(std::string_view("A\0B", 3), TextFault::kControl, 2);
  expect("A\tB", TextFault::kControl, 2);
  expect("AB\x7F", TextFault::kControl, 3);
  expect("A\xC2\x85", TextFault::kControl, 2);
  expect("A\xFF", TextFault::kNotInCodePage, 2);
  expect("Ω😀\n", TextFault::kControl, 3);
  expect("ΩA😀", TextFault::kNotInCodePage, 1);
}

}  // namespace
}  // namespace lorimat::door
