#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "utility/locale/locale.h"

namespace {

// A terminated text in memory of exactly its size.
class Terminated {
 public:
  explicit Terminated(const std::string& text) : text_(new char[text.size() + 1]) {
    std::memcpy(text_.get(), text.c_str(), text.size() + 1);
  }
  const char* get() const { return text_.get(); }

 private:
  std::unique_ptr<char[]> text_;
};

// --- IP addresses ------------------------------------------------------------------------

std::optional<uint32_t> readAddress(const std::string& text, size_t n) {
  const Terminated terminated(text);
  uint32_t a = 0;
  if (!Locale::fromLocalIPAddress(terminated.get(), n, a)) return std::nullopt;
  return a;
}

std::optional<uint32_t> readAddress(const std::string& text) {
  return readAddress(text, text.size());
}

TEST(LocalIPAddress, HasItsFirstGroupInTheTopByte) {
  EXPECT_EQ(0x01020304U, readAddress("1.2.3.4"));
  EXPECT_EQ(0xFFFFFFFFU, readAddress("255.255.255.255"));
  EXPECT_EQ(0xC0A8010AU, readAddress("192.168.1.10"));
}

TEST(LocalIPAddress, NeedsFourGroups) {
  EXPECT_EQ(std::nullopt, readAddress("1.2.3"));
  EXPECT_EQ(std::nullopt, readAddress("1.2.3", 20));
  EXPECT_EQ(std::nullopt, readAddress("1.2.3.", 20));
  EXPECT_EQ(std::nullopt, readAddress("1.2.3.4.5"));
  EXPECT_EQ(std::nullopt, readAddress("", 7));
}

TEST(LocalIPAddress, NeedsOneToThreeCharactersInAGroup) {
  EXPECT_EQ(std::nullopt, readAddress("1..3.4444", 20));
  EXPECT_EQ(std::nullopt, readAddress("1000.2.3.4"));
  EXPECT_EQ(std::nullopt, readAddress("1.2.3.4000"));
  EXPECT_EQ(0x01020304U, readAddress("001.002.003.004"));
}

TEST(LocalIPAddress, ASizeBelowSevenIsRefusedAndNotUsedFurther) {
  EXPECT_EQ(std::nullopt, readAddress("1.2.3.4", 6));
  EXPECT_EQ(0xC0A8010AU, readAddress("192.168.1.10", 7));
  EXPECT_EQ(0x01020304U, readAddress("1.2.3.4", 1000));
}

TEST(LocalIPAddress, AGroupThatReadsIsTakenAsItIs) {
  // 300 shifted into the top byte loses what is above it: 300 - 256 = 44.
  EXPECT_EQ(0x2C010101U, readAddress("300.1.1.1"));
  // 0x01000000 + 300 * 0x10000 = 0x022C0000
  EXPECT_EQ(0x022C0101U, readAddress("1.300.1.1"));
  // -1 takes one from the group above.
  EXPECT_EQ(0x00FF0101U, readAddress("1.-1.1.1"));
}

TEST(LocalIPAddress, AGroupThatDoesNotReadTakesTheOneBeforeIt) {
  EXPECT_EQ(0x07070304U, readAddress("7.x.3.4"));
  EXPECT_EQ(0x00020304U, readAddress("x.2.3.4"));
  EXPECT_EQ(std::nullopt, readAddress("300.x.1.1"));
  EXPECT_EQ(std::nullopt, readAddress("1.-1.x.1"));
}

TEST(LocalIPAddress, Prints) {
  char s[16];
  EXPECT_TRUE(Locale::toLocalIPAddress(s, 16, 0xC0A8010A));
  EXPECT_STREQ("192.168.1.10", s);
  EXPECT_TRUE(Locale::toLocalIPAddress(s, 16, 0xFFFFFFFF));
  EXPECT_STREQ("255.255.255.255", s);
}

TEST(LocalIPAddress, PrintNeedsFifteenBytesWhichCutTheLongest) {
  char s[16] = "unchanged";
  EXPECT_FALSE(Locale::toLocalIPAddress(s, 14, 0x01020304));
  EXPECT_STREQ("unchanged", s);
  EXPECT_FALSE(Locale::toLocalIPAddress(nullptr, 0, 0x01020304));
  const std::unique_ptr<char[]> exact(new char[15]);
  EXPECT_TRUE(Locale::toLocalIPAddress(exact.get(), 15, 0xFFFFFFFF));
  EXPECT_STREQ("255.255.255.25", exact.get());
}

// --- Activity codes ----------------------------------------------------------------------

std::optional<uint32_t> readAteco(const std::string& text) {
  // Without a terminator: the size ends it.
  const std::unique_ptr<char[]> exact(new char[text.size()]);
  std::memcpy(exact.get(), text.data(), text.size());
  uint32_t a = 99;
  if (Locale::fromLocalAteco(exact.get(), text.size(), a)) return a;
  EXPECT_EQ(0U, a);
  return std::nullopt;
}

TEST(LocalAteco, ReadsThreePairs) {
  EXPECT_EQ(471100U, readAteco("47.11.00"));
  EXPECT_EQ(10203U, readAteco("1.02.03"));
  EXPECT_EQ(999999U, readAteco("99.99.99"));
  uint32_t a = 0;
  EXPECT_TRUE(Locale::fromLocalAteco("47.11.00", 100, a));
  EXPECT_EQ(471100U, a);
}

TEST(LocalAteco, NeedsASizeAboveSix) {
  EXPECT_EQ(std::nullopt, readAteco(""));
  EXPECT_EQ(std::nullopt, readAteco("1.2.33"));
  uint32_t a = 0;
  EXPECT_TRUE(Locale::fromLocalAteco("1.2.33", 7, a));
  EXPECT_EQ(10233U, a);
}

TEST(LocalAteco, RefusesOtherShapes) {
  EXPECT_EQ(std::nullopt, readAteco("47.11.000"));
  EXPECT_EQ(std::nullopt, readAteco("471.1.00"));
  EXPECT_EQ(std::nullopt, readAteco("47..1100"));
  EXPECT_EQ(std::nullopt, readAteco("47.11.0.0"));
  EXPECT_EQ(std::nullopt, readAteco("47.1100"));
  EXPECT_EQ(std::nullopt, readAteco("47.11.00."));
  EXPECT_EQ(std::nullopt, readAteco("0047.11."));
  EXPECT_EQ(std::nullopt, readAteco(std::string(5000, '.')));
}

TEST(LocalAteco, RefusesWhatDoesNotReadAndWhatIsOutOfRange) {
  EXPECT_EQ(std::nullopt, readAteco("47.xx.00"));
  EXPECT_EQ(std::nullopt, readAteco("47.-1.00"));
  EXPECT_EQ(std::nullopt, readAteco("xx.11.00"));
}

TEST(LocalAteco, Prints) {
  char s[9];
  EXPECT_TRUE(Locale::toLocalAteco(s, sizeof s, 471100));
  EXPECT_STREQ("47.11.00", s);
  EXPECT_TRUE(Locale::toLocalAteco(s, sizeof s, 10203));
  EXPECT_STREQ("01.02.03", s);
  EXPECT_TRUE(Locale::toLocalAteco(s, sizeof s, 0));
  EXPECT_STREQ("00.00.00", s);
  // Digits above the six are not shown.
  EXPECT_TRUE(Locale::toLocalAteco(s, sizeof s, 4294967295U));
  EXPECT_STREQ("96.72.95", s);
}

TEST(LocalAteco, PrintNeedsEightBytesAndIsCutByThem) {
  char s[9] = "same";
  EXPECT_FALSE(Locale::toLocalAteco(s, 7, 471100));
  EXPECT_STREQ("same", s);
  const std::unique_ptr<char[]> exact(new char[8]);
  EXPECT_TRUE(Locale::toLocalAteco(exact.get(), 8, 471100));
  EXPECT_STREQ("47.11.0", exact.get());
}

TEST(XMLAteco, PrintsWithoutPoints) {
  char s[7];
  EXPECT_TRUE(Locale::toXMLAteco(s, sizeof s, 10203));
  EXPECT_STREQ("010203", s);
  EXPECT_FALSE(Locale::toXMLAteco(s, 5, 10203));
  const std::unique_ptr<char[]> exact(new char[6]);
  EXPECT_TRUE(Locale::toXMLAteco(exact.get(), 6, 471100));
  EXPECT_STREQ("47110", exact.get());
}

// --- Receipt numbers ---------------------------------------------------------------------

struct Receipt {
  bool ok;
  int32_t z, p;
  bool operator==(const Receipt&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Receipt& receipt) {
  return out << receipt.ok << ' ' << receipt.z << ' ' << receipt.p;
}

Receipt readReceipt(const std::string& text) {
  const Terminated terminated(text);
  Receipt receipt{false, -7, -7};
  receipt.ok =
      Locale::fromLocalTelematicReceiptNumber(terminated.get(), text.size(), receipt.z, receipt.p);
  return receipt;
}

const Receipt kRefused = {false, -7, -7};

TEST(TelematicReceiptNumber, ReadsWithAndWithoutItsDash) {
  EXPECT_EQ((Receipt{true, 12, 34}), readReceipt("0012-0034"));
  EXPECT_EQ((Receipt{true, 12, 34}), readReceipt("00120034"));
  EXPECT_EQ((Receipt{true, 9999, 9999}), readReceipt("9999-9999"));
}

TEST(TelematicReceiptNumber, WithoutASecondNumberItTakesTheFirst) {
  EXPECT_EQ((Receipt{true, 12, 12}), readReceipt("0012"));
  EXPECT_EQ((Receipt{true, 12, 12}), readReceipt("0012 0034"));
  EXPECT_EQ((Receipt{true, 12, 12}), readReceipt("0012x"));
  // A text that ends before its fifth character.
  EXPECT_EQ((Receipt{true, 7, 7}), readReceipt("7"));
  EXPECT_EQ((Receipt{true, 123, 123}), readReceipt("123"));
}

TEST(TelematicReceiptNumber, AFailedReadIsRefused) {
  EXPECT_EQ(kRefused, readReceipt(""));
  EXPECT_EQ(kRefused, readReceipt("abcd-0034"));
  EXPECT_EQ(kRefused, readReceipt("0012-"));
  EXPECT_EQ(kRefused, readReceipt("0012-abcd"));
}

TEST(TelematicReceiptNumber, ReadsFourCharactersOfEach) {
  EXPECT_EQ((Receipt{true, 1234, 5678}), readReceipt("12345678999"));
  EXPECT_EQ((Receipt{true, 1234, 5}), readReceipt("1234-5"));
  EXPECT_EQ((Receipt{true, 12, 34}), readReceipt("12-4-34"));
}

TEST(TelematicReceiptNumber, Prints) {
  char s[16];
  EXPECT_TRUE(Locale::toLocalTelematicReceiptNumber(s, sizeof s, 12, 34));
  EXPECT_STREQ("0012-0034", s);
  EXPECT_TRUE(Locale::toLocalTelematicReceiptNumber(s, sizeof s, 12345, 0));
  EXPECT_STREQ("12345-0000", s);
  const std::unique_ptr<char[]> exact(new char[5]);
  EXPECT_TRUE(Locale::toLocalTelematicReceiptNumber(exact.get(), 5, 12, 34));
  EXPECT_STREQ("0012", exact.get());
  EXPECT_FALSE(Locale::toLocalTelematicReceiptNumber(s, 1, 12, 34));
  EXPECT_FALSE(Locale::toLocalTelematicReceiptNumber(nullptr, 0, 12, 34));
}

// --- URIs --------------------------------------------------------------------------------

struct Uri {
  std::string path = "null";
  char protocol[6] = "";
  char host[32] = "unset";
  int port = -1;
};

Uri parseUri(const std::string& text, size_t hostname_len = 32) {
  const Terminated terminated(text);
  Uri uri;
  const char* const path =
      Locale::parseAbsURI(terminated.get(), uri.protocol, uri.host, hostname_len, uri.port);
  if (path != nullptr) uri.path = path;
  return uri;
}

TEST(ParseAbsURI, TakesAllPartsApart) {
  const Uri uri = parseUri("HTTPS://host:8443/a");
  EXPECT_STREQ("https", uri.protocol);
  EXPECT_STREQ("host", uri.host);
  EXPECT_EQ(8443, uri.port);
  EXPECT_EQ("/a", uri.path);
}

TEST(ParseAbsURI, WithoutAPortItIsTheProtocols) {
  EXPECT_EQ(80, parseUri("http://host/").port);
  EXPECT_EQ(443, parseUri("https://host/").port);
  EXPECT_STREQ("http", parseUri("http://host/").protocol);
}

TEST(ParseAbsURI, ThePathIsAPointerIntoTheText) {
  const char* const text = "http://host/a/b:c";
  int port = 0;
  EXPECT_EQ(text + 11, Locale::parseAbsURI(text, nullptr, nullptr, 0, port));
}

TEST(ParseAbsURI, APathMayBeMissing) {
  const Uri uri = parseUri("http://host");
  EXPECT_EQ("", uri.path);
  EXPECT_STREQ("host", uri.host);
  EXPECT_EQ(81, parseUri("http://host:81").port);
}

TEST(ParseAbsURI, WhiteSpaceInFrontIsPassedOver) {
  EXPECT_STREQ("host", parseUri(" \t\r\nhttp://host/").host);
  EXPECT_EQ("null", parseUri("").path);
  EXPECT_EQ("null", parseUri("   ").path);
}

TEST(ParseAbsURI, OtherProtocolsAreRefused) {
  EXPECT_EQ("null", parseUri("ftp://host/").path);
  EXPECT_EQ("null", parseUri("http:/host/").path);
  EXPECT_EQ("null", parseUri("http").path);
  EXPECT_EQ("null", parseUri("httpx://host/").path);
}

TEST(ParseAbsURI, ThePortIsOneTo65535AndEndsAtThePath) {
  EXPECT_EQ("null", parseUri("http://host:0/").path);
  EXPECT_EQ("null", parseUri("http://host:65536/").path);
  EXPECT_EQ(65535, parseUri("http://host:65535/").port);
  EXPECT_EQ("null", parseUri("http://host:/").path);
  EXPECT_EQ("null", parseUri("http://host:80x/").path);
  EXPECT_EQ("null", parseUri("http://host:80:81/").path);
  EXPECT_EQ("null", parseUri("http://host:99999999999999999999999/").path);
  EXPECT_EQ("null", parseUri("http://host:-1/").path);
  EXPECT_EQ(-1, parseUri("http://host:0/").port);
}

TEST(ParseAbsURI, AColonInThePathIsNoPort) { EXPECT_EQ(80, parseUri("http://host/a:0").port); }

TEST(ParseAbsURI, AnEmptyHostIsNotWritten) {
  const Uri plain = parseUri("http:///a");
  EXPECT_EQ("/a", plain.path);
  EXPECT_STREQ("unset", plain.host);
  EXPECT_EQ(80, plain.port);
  const Uri port = parseUri("http://:81/a");
  EXPECT_EQ("/a", port.path);
  EXPECT_STREQ("unset", port.host);
  EXPECT_EQ(81, port.port);
}

TEST(ParseAbsURI, ALongHostIsCut) {
  EXPECT_STREQ("hos", parseUri("http://hostname/", 4).host);
  EXPECT_STREQ("", parseUri("http://hostname/", 1).host);
  EXPECT_STREQ("unset", parseUri("http://hostname/", 0).host);
  EXPECT_STREQ("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa",
               parseUri("http://" + std::string(100000, 'a') + "/").host);
}

TEST(ParseAbsURI, EveryByteMayStandInAHost) {
  for (int byte = 1; byte < 256; ++byte) {
    const Uri uri = parseUri(std::string("http://h") + static_cast<char>(byte) + "/");
    EXPECT_EQ(byte != ':', uri.path != "null") << byte;
  }
}

}  // namespace
