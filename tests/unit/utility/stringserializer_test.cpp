#include "utility/stringserializer.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

namespace {

template <typename Byte>
class StringSerializerTest : public testing::Test {
 protected:
  // The bytes written so far; end is where they must end.
  void ExpectWritten(const Byte* end, std::initializer_list<int> bytes) {
    ASSERT_EQ(end, buffer_ + bytes.size());
    size_t i = 0;
    for (const int byte : bytes) {
      EXPECT_EQ(static_cast<unsigned char>(buffer_[i]), byte) << "byte " << i;
      ++i;
    }
    EXPECT_EQ(static_cast<unsigned char>(buffer_[i]), 0xEE) << "written past the end";
  }
  void SetUp() override {
    for (Byte& byte : buffer_) byte = static_cast<Byte>(0xEE);
  }

  Byte buffer_[16];
};

using Bytes = testing::Types<char, unsigned char>;
TYPED_TEST_SUITE(StringSerializerTest, Bytes);

TYPED_TEST(StringSerializerTest, AppendsTextWithoutTerminator) {
  this->ExpectWritten(StringSerializer::append(this->buffer_, "abc"), {'a', 'b', 'c'});
  EXPECT_EQ(StringSerializer::append(this->buffer_, std::string()), this->buffer_);
}

TYPED_TEST(StringSerializerTest, CopiesBytes) {
  const char source[] = {'\0', '\xFF', '\x7F'};
  this->ExpectWritten(StringSerializer::append(this->buffer_, source, 3), {0x00, 0xFF, 0x7F});
  char back[4] = {1, 1, 1, 1};
  EXPECT_EQ(StringSerializer::get(this->buffer_, back, 3), this->buffer_ + 3);
  EXPECT_EQ(std::string(back, 4), std::string("\0\xFF\x7F\1", 4));
  EXPECT_EQ(StringSerializer::append(this->buffer_, nullptr, 0), this->buffer_);
}

TYPED_TEST(StringSerializerTest, WritesOneByte) {
  this->ExpectWritten(StringSerializer::append_le(this->buffer_, uint8_t{0xFE}), {0xFE});
  this->ExpectWritten(StringSerializer::append_be(this->buffer_, int8_t{-1}), {0xFF});
}

TYPED_TEST(StringSerializerTest, WritesLeastSignificantByteFirst) {
  this->ExpectWritten(StringSerializer::append_le(this->buffer_, uint16_t{0x0102}), {2, 1});
  this->ExpectWritten(StringSerializer::append_le(this->buffer_, int16_t{-2}), {0xFE, 0xFF});
  this->ExpectWritten(StringSerializer::append_le(this->buffer_, uint32_t{0x01020304}),
                      {4, 3, 2, 1});
  this->ExpectWritten(StringSerializer::append_le(this->buffer_, uint64_t{0x0102030405060708}),
                      {8, 7, 6, 5, 4, 3, 2, 1});
}

TYPED_TEST(StringSerializerTest, WritesMostSignificantByteFirst) {
  this->ExpectWritten(StringSerializer::append_be(this->buffer_, uint16_t{0x0102}), {1, 2});
  this->ExpectWritten(StringSerializer::append_be(this->buffer_, uint32_t{0x01020304}),
                      {1, 2, 3, 4});
  this->ExpectWritten(StringSerializer::append_be(this->buffer_, int32_t{-2}),
                      {0xFF, 0xFF, 0xFF, 0xFE});
  this->ExpectWritten(StringSerializer::append_be(this->buffer_, uint64_t{0x0102030405060708}),
                      {1, 2, 3, 4, 5, 6, 7, 8});
}

template <typename T, typename Byte>
void ExpectRoundTrips(Byte* buffer) {
  for (const T value : {std::numeric_limits<T>::min(), static_cast<T>(-1), T{0}, T{1},
                        std::numeric_limits<T>::max()}) {
    T back = 42;
    StringSerializer::append_le(buffer, value);
    EXPECT_EQ(StringSerializer::get_le(buffer, &back), buffer + sizeof(T));
    EXPECT_EQ(back, value);
    back = 42;
    StringSerializer::append_be(buffer, value);
    EXPECT_EQ(StringSerializer::get_be(buffer, &back), buffer + sizeof(T));
    EXPECT_EQ(back, value);
  }
}

TYPED_TEST(StringSerializerTest, ReadsBackTheLimitsOfEveryWidth) {
  ExpectRoundTrips<uint8_t>(this->buffer_);
  ExpectRoundTrips<int8_t>(this->buffer_);
  ExpectRoundTrips<uint16_t>(this->buffer_);
  ExpectRoundTrips<int16_t>(this->buffer_);
  ExpectRoundTrips<uint32_t>(this->buffer_);
  ExpectRoundTrips<int32_t>(this->buffer_);
  ExpectRoundTrips<uint64_t>(this->buffer_);
  ExpectRoundTrips<int64_t>(this->buffer_);
  // Odd addresses are as good as even ones.
  ExpectRoundTrips<int64_t>(this->buffer_ + 1);
}

TYPED_TEST(StringSerializerTest, ReadsTheStatedOrder) {
  const TypeParam bytes[] = {static_cast<TypeParam>(0x80), 0x01};
  uint16_t value = 0;
  const TypeParam* end = StringSerializer::get_le(bytes, &value);
  EXPECT_EQ(end, bytes + 2);
  EXPECT_EQ(value, 0x0180);
  StringSerializer::get_be(bytes, &value);
  EXPECT_EQ(value, 0x8001);
}

TYPED_TEST(StringSerializerTest, CallsChain) {
  TypeParam* end = StringSerializer::append_be(
      StringSerializer::append_le(StringSerializer::append(this->buffer_, "k"), uint16_t{1}),
      uint16_t{1});
  this->ExpectWritten(end, {'k', 1, 0, 0, 1});
}

class StringSerializer40Test : public StringSerializerTest<char> {};

TEST_F(StringSerializer40Test, WritesTheLow40Bits) {
  const uint64_t value = 0xFFFFFF0102030405;
  ExpectWritten(StringSerializer::append_le40(buffer_, value), {5, 4, 3, 2, 1});
  ExpectWritten(StringSerializer::append_be40(buffer_, value), {1, 2, 3, 4, 5});
}

TEST_F(StringSerializer40Test, ReadingClearsTheHighBytes) {
  const char bytes[] = {1, 2, 3, 4, 5};
  uint64_t value = ~uint64_t{0};
  EXPECT_EQ(StringSerializer::get_le40(bytes, &value), bytes + 5);
  EXPECT_EQ(value, 0x0504030201u);
  value = ~uint64_t{0};
  EXPECT_EQ(StringSerializer::get_be40(bytes, &value), bytes + 5);
  EXPECT_EQ(value, 0x0102030405u);
}

TEST_F(StringSerializer40Test, SignedFormIsOffsetBinary) {
  ExpectWritten(StringSerializer::append_le40(buffer_, int64_t{0}), {0xFF, 0xFF, 0xFF, 0xFF, 0x7F});
  ExpectWritten(StringSerializer::append_be40(buffer_, int64_t{0}), {0x7F, 0xFF, 0xFF, 0xFF, 0xFF});
  ExpectWritten(StringSerializer::append_be40(buffer_, int64_t{-0x7FFFFFFFFF}), {0, 0, 0, 0, 0});
  ExpectWritten(StringSerializer::append_be40(buffer_, int64_t{0x8000000000}),
                {0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
}

TEST_F(StringSerializer40Test, SignedFormReadsBackItsWholeRange) {
  for (const int64_t value :
       {int64_t{-0x7FFFFFFFFF}, int64_t{-1}, int64_t{0}, int64_t{1}, int64_t{0x8000000000}}) {
    int64_t back = 42;
    StringSerializer::append_le40(buffer_, value);
    StringSerializer::get_le40(buffer_, &back);
    EXPECT_EQ(back, value);
    back = 42;
    StringSerializer::append_be40(buffer_, value);
    StringSerializer::get_be40(buffer_, &back);
    EXPECT_EQ(back, value);
  }
}

TEST_F(StringSerializer40Test, SignedFormWrapsOutsideItsRange) {
  int64_t back = 0;
  StringSerializer::append_le40(buffer_, int64_t{0x8000000001});
  StringSerializer::get_le40(buffer_, &back);
  EXPECT_EQ(back, -0x7FFFFFFFFF);
  // The largest value plus the bias runs past 64 bits: 0x7FFFFFFFFFFFFFFF + 0x7FFFFFFFFF ends
  // in 0x7FFFFFFFFE.
  ExpectWritten(StringSerializer::append_be40(buffer_, std::numeric_limits<int64_t>::max()),
                {0x7F, 0xFF, 0xFF, 0xFF, 0xFE});
}

}  // namespace
