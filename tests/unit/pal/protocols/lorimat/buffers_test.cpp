// The doors to fixed buffers at their edges: no room at all, a full buffer, a text that cannot be
// printed.

#include "pal/protocols/lorimat/buffers.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <string>

namespace {

// A buffer of four characters with one behind it that nobody may touch.
struct Guarded {
  char text[5] = {'a', 'b', 'c', 'd', '!'};
  std::string bytes() const { return std::string(text, sizeof text); }
};

TEST(Buffers, ABufferOfNoSizeIsNotTouched) {
  Guarded buffer;
  CopyBytes(buffer.text, 0, "xyz", 3);
  CopyText(buffer.text, 0, "xyz");
  EXPECT_EQ(buffer.bytes(), "abcd!");
}

TEST(Buffers, WhatIsCopiedIsCutAndClosed) {
  Guarded buffer;
  CopyText(buffer.text, 4, "uvwxyz");
  EXPECT_EQ(buffer.bytes(), std::string("uvw\0!", 5));
}

// Of every length, to every size and from every place of the same buffer.
TEST(Buffers, FewBytesAreCopiedAsAnyBytes) {
  constexpr size_t kLongest = 20;
  constexpr size_t kRoom = 2 * kLongest + 3;
  for (size_t length = 0; length <= kLongest; ++length) {
    for (size_t size = 0; size <= kLongest + 2; ++size) {
      for (size_t from = 0; from <= kLongest; ++from) {
        std::string expected(kRoom, ' ');
        for (size_t i = 0; i < kRoom; ++i) expected[i] = static_cast<char>('0' + i);
        std::string copied = expected;
        CopyBytes(expected.data(), size, expected.data() + from, length);
        CopyFewBytes(copied.data(), size, copied.data() + from, length);
        ASSERT_EQ(copied, expected) << length << " bytes to " << size << " from " << from;
      }
    }
  }
}

TEST(Buffers, NothingIsAppendedToABufferWithoutAnEnd) {
  Guarded buffer;
  AppendText(buffer.text, 4, "xyz");
  EXPECT_EQ(buffer.bytes(), "abcd!");
  AppendFormat(buffer.text, 4, "%d", 12);
  EXPECT_EQ(buffer.bytes(), "abcd!");
}

TEST(Buffers, WhatIsAppendedIsCutAndClosed) {
  Guarded buffer;
  buffer.text[1] = 0;
  AppendText(buffer.text, 4, "xyz");
  EXPECT_EQ(buffer.bytes(), std::string("axy\0!", 5));
  buffer.text[1] = 0;
  AppendFormat(buffer.text, 4, "%d", 12345);
  EXPECT_EQ(buffer.bytes(), std::string("a12\0!", 5));
}

#ifndef _WIN32
// A character that the process's language does not have ends the print without a text.
TEST(Buffers, WhatCannotBePrintedLeavesTheTextAsItWas) {
  Guarded buffer;
  buffer.text[1] = 0;
  AppendFormat(buffer.text, 4, "x%lc", static_cast<wint_t>(0x20AC));
  EXPECT_STREQ(buffer.text, "a");
  EXPECT_EQ(buffer.text[4], '!');
}
#endif

}  // namespace
