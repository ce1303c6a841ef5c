#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "pal/platform/platform.h"
#include "unit/support/temporary_folder.h"

namespace {

using platform::RegistryKey;

constexpr char kKey[] = "Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA";

class RegistryTest : public testing::Test {
 protected:
  void SetUp() override {
    const char* old = std::getenv("LORIMATRT_REGISTRY");
    if (old != nullptr) old_name_ = old;
    folder_ = MakeTemporaryFolder().string();
    name_ = folder_ + "/registry.ini";
    setenv("LORIMATRT_REGISTRY", name_.c_str(), 1);
  }
  void TearDown() override {
    if (old_name_) {
      setenv("LORIMATRT_REGISTRY", old_name_->c_str(), 1);
    } else {
      unsetenv("LORIMATRT_REGISTRY");
    }
    std::filesystem::remove_all(folder_);
  }

  void Write(const std::string& text) { std::ofstream(name_, std::ios::binary) << text; }
  // A file of our section with these lines.
  void WriteSection(const std::string& lines) { Write("[" + std::string(kKey) + "]\n" + lines); }

  // The value's text, or nothing where the query fails.
  std::optional<std::string> Value(const char* name, const char* key = kKey) {
    const RegistryKey registry(key);
    char text[256];
    uint32_t size = sizeof(text);
    if (registry.Query(name, text, &size) != platform::kRegistrySuccess) return std::nullopt;
    EXPECT_EQ(size, std::strlen(text) + 1);
    return text;
  }

  std::optional<std::string> old_name_;
  std::string folder_;
  std::string name_;
};

TEST_F(RegistryTest, AHostWithoutStandardInputReadsItToo) {
  WriteSection("InstallationDir=/opt/lorimat\n");
  const int input = dup(STDIN_FILENO);
  ASSERT_NE(input, -1);
  close(STDIN_FILENO);  // the file becomes number 0
  EXPECT_EQ(Value("InstallationDir"), "/opt/lorimat");
  EXPECT_EQ(fcntl(STDIN_FILENO, F_GETFD), -1) << "the file is left open";
  dup2(input, STDIN_FILENO);
  close(input);
}

TEST_F(RegistryTest, ReadsAValueAndCountsItsTerminator) {
  WriteSection("InstallationDir=/opt/lorimat\n");
  const RegistryKey key(kKey);
  ASSERT_TRUE(key.is_open());
  char text[80];
  uint32_t size = sizeof(text);
  EXPECT_EQ(key.Query("InstallationDir", text, &size), 0);
  EXPECT_STREQ(text, "/opt/lorimat");
  EXPECT_EQ(size, 13u);
}

TEST_F(RegistryTest, AValueThatJustFitsIsRead) {
  WriteSection("Name=abc\n");
  const RegistryKey key(kKey);
  char text[5] = "####";
  uint32_t size = 4;
  EXPECT_EQ(key.Query("Name", text, &size), 0);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(text[4], 0);
  EXPECT_EQ(size, 4u);
}

TEST_F(RegistryTest, AValueThatDoesNotFitTellsItsSizeAndLeavesTheTextAlone) {
  WriteSection("Name=abc\n");
  const RegistryKey key(kKey);
  for (uint32_t room : {0u, 1u, 3u}) {
    char text[5] = "####";
    uint32_t size = room;
    EXPECT_EQ(key.Query("Name", text, &size), 234);
    EXPECT_STREQ(text, "####");
    EXPECT_EQ(size, 4u);
  }
}

TEST_F(RegistryTest, AMissingValueLeavesSizeAndTextAlone) {
  WriteSection("Name=abc\n");
  const RegistryKey key(kKey);
  char text[8] = "####";
  uint32_t size = 5;
  EXPECT_EQ(key.Query("Other", text, &size), 2);
  EXPECT_EQ(key.Query("Nam", text, &size), 2);
  EXPECT_EQ(key.Query("Names", text, &size), 2);
  EXPECT_STREQ(text, "####");
  EXPECT_EQ(size, 5u);
}

TEST_F(RegistryTest, ANullTextAsksForTheSizeAlone) {
  WriteSection("Name=abc\n");
  const RegistryKey key(kKey);
  uint32_t size = 0;
  EXPECT_EQ(key.Query("Name", nullptr, &size), 0);
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(key.Query("Name", nullptr, nullptr), 0);
  char text[8] = "####";
  EXPECT_EQ(key.Query("Name", text, nullptr), 87);
  EXPECT_STREQ(text, "####");
}

TEST_F(RegistryTest, AnEmptyValueIsItsTerminatorAlone) {
  WriteSection("A=\nB= \t \n");
  const RegistryKey key(kKey);
  for (const char* name : {"A", "B"}) {
    char text[4] = "###";
    uint32_t size = 1;
    EXPECT_EQ(key.Query(name, text, &size), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(size, 1u);
  }
}

TEST_F(RegistryTest, KeysAndNamesIgnoreCase) {
  Write("[SOFTWARE\\velmora\\Drivers\\tessaloom\\FIRMWAREA]\nSENDzae=Yes\n");
  EXPECT_EQ(Value("SendZAE"), "Yes");
  EXPECT_EQ(Value("SendZAE", "software\\VELMORA\\drivers\\Tessaloom\\firmwarea"), "Yes");
}

TEST_F(RegistryTest, AMissingFileIsAKeyThatDoesNotOpen) {
  const RegistryKey key(kKey);
  EXPECT_FALSE(key.is_open());
  char text[8] = "####";
  uint32_t size = 5;
  EXPECT_EQ(key.Query("Name", text, &size), 2);
  EXPECT_STREQ(text, "####");
  EXPECT_EQ(size, 5u);
}

TEST_F(RegistryTest, AMissingSectionIsAKeyThatDoesNotOpen) {
  for (const char* text : {"", "\n", "Name=abc\n", "[Other]\nName=abc\n",
                           "[Software\\Velmora\\Drivers\\Tessaloom\\FirmwareAB]\nName=abc\n",
                           "[Software\\Velmora\\Drivers\\Tessaloom\\Firmware]\nName=abc\n",
                           "[Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA\nName=abc\n",
                           "Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA]\nName=abc\n"}) {
    Write(text);
    EXPECT_FALSE(RegistryKey(kKey).is_open()) << text;
    EXPECT_EQ(Value("Name"), std::nullopt) << text;
  }
}

TEST_F(RegistryTest, ValuesOfOtherSectionsDoNotCount) {
  Write("Name=before\n[Other]\nName=other\n[" + std::string(kKey) +
        "]\nMine=1\n[Third]\nName=third\n");
  EXPECT_EQ(Value("Name"), std::nullopt);
  EXPECT_EQ(Value("Mine"), "1");
  EXPECT_EQ(Value("Name", "Third"), "third");
}

TEST_F(RegistryTest, ABrokenHeaderEndsTheSectionBeforeIt) {
  WriteSection("Mine=1\n[Other\nName=other\n");
  EXPECT_EQ(Value("Mine"), "1");
  EXPECT_EQ(Value("Name"), std::nullopt);
}

TEST_F(RegistryTest, TheFirstOfTwoValuesAndOfTwoSectionsHolds) {
  WriteSection("Name=first\nName=second\n[Other]\n[" + std::string(kKey) + "]\nName=third\nX=1\n");
  EXPECT_EQ(Value("Name"), "first");
  EXPECT_EQ(Value("X"), std::nullopt);
}

TEST_F(RegistryTest, BlanksAroundNamesValuesAndHeadersDoNotCount) {
  Write(" \t[" + std::string(kKey) + "]\t \n  WaitIdle\t =  a b \t\n");
  EXPECT_EQ(Value("WaitIdle"), "a b");
}

TEST_F(RegistryTest, AValueMayHoldEqualSignsAndBrackets) {
  WriteSection("Name==a=[b]=\n");
  EXPECT_EQ(Value("Name"), "=a=[b]=");
}

TEST_F(RegistryTest, LinesMayEndInCarriageReturnAndLineFeed) {
  Write("[" + std::string(kKey) + "]\r\nName=abc\r\nOther=\r\n");
  EXPECT_EQ(Value("Name"), "abc");
  EXPECT_EQ(Value("Other"), "");
}

TEST_F(RegistryTest, TheLastLineNeedsNoLineFeed) {
  WriteSection("Name=abc");
  EXPECT_EQ(Value("Name"), "abc");
  WriteSection("Name=abc\r");
  EXPECT_EQ(Value("Name"), "abc");
  Write("[" + std::string(kKey) + "]");
  EXPECT_TRUE(RegistryKey(kKey).is_open());
  EXPECT_EQ(Value("Name"), std::nullopt);
}

TEST_F(RegistryTest, AMarkOfUtf8BeforeTheFirstLineIsSkipped) {
  Write("\xEF\xBB\xBF[" + std::string(kKey) + "]\nName=abc\n");
  EXPECT_EQ(Value("Name"), "abc");
}

TEST_F(RegistryTest, LinesWithoutAnEqualSignArePassedOver) {
  WriteSection("; a comment\nName\n\n   \n=nothing\n# Name\nName=abc\n");
  EXPECT_EQ(Value("Name"), "abc");
  EXPECT_EQ(Value("; a comment"), std::nullopt);
}

TEST_F(RegistryTest, ANulEndsAValueAndSpoilsANameOrAHeader) {
  using std::string_literals::operator""s;
  WriteSection("A=ab\0cd\nWait\0Idle=1\n\0B=2\nC=\0\nD=4\n"s);
  EXPECT_EQ(Value("A"), "ab");
  EXPECT_EQ(Value("Wait"), std::nullopt);
  EXPECT_EQ(Value("B"), std::nullopt);
  EXPECT_EQ(Value("C"), "");
  EXPECT_EQ(Value("D"), "4");
  Write("[Soft\0ware]\nA=1\n[\0]\nA=2\n"s);
  EXPECT_FALSE(RegistryKey("Soft").is_open());
  EXPECT_FALSE(RegistryKey("Sof").is_open());
  EXPECT_FALSE(RegistryKey("").is_open());
}

TEST_F(RegistryTest, LongLinesAreReadWhole) {
  const std::string long_text(300000, 'x');
  Write(long_text + "\n[" + long_text + "]\nName=no\n[" + kKey + "]\n" + long_text +
        "=1\nBig=" + std::string(5000, 'y') + "z\nName=abc\n");
  EXPECT_EQ(Value("Name"), "abc");
  const RegistryKey key(kKey);
  std::string text(5002, '#');
  uint32_t size = 5001;
  EXPECT_EQ(key.Query("Big", text.data(), &size), 234);
  EXPECT_EQ(size, 5002u);
  EXPECT_TRUE(text == std::string(5002, '#'));
  EXPECT_EQ(key.Query("Big", text.data(), &size), 0);
  EXPECT_TRUE(text == std::string(5000, 'y') + "z" + '\0');
}

// The reader takes the file in pieces of 1024 bytes.
TEST_F(RegistryTest, LinesAcrossTheReadersPiecesAreWhole) {
  for (size_t shift = 1000; shift < 1100; ++shift) {
    Write(std::string(shift, '-') + "\r\n[" + kKey + "]\r\nName = abc \r\n");
    ASSERT_EQ(Value("Name"), "abc") << shift;
  }
}

TEST_F(RegistryTest, EveryByteOfAValueButLineEndsAndNulArrives) {
  std::string text = "<";
  for (int i = 1; i < 256; ++i) {
    if (i != '\n') text += static_cast<char>(i);
  }
  WriteSection("Name=" + text + ">\n");
  EXPECT_EQ(Value("Name"), std::nullopt);  // 256 bytes do not fit with their terminator
  const RegistryKey key(kKey);
  char read[300];
  uint32_t size = sizeof(read);
  ASSERT_EQ(key.Query("Name", read, &size), 0);
  EXPECT_EQ(std::string(read, size - 1), text + ">");
}

TEST_F(RegistryTest, AFileOfNoiseIsSafe) {
  uint32_t state = 1;
  for (int round = 0; round < 300; ++round) {
    std::string noise;
    for (int i = 0; i < 2000; ++i) {
      state = state * 1664525u + 1013904223u;
      // Few different bytes, so that the structure comes up often.
      noise += "[]=\n\r \t\0aA\xFF;"[(state >> 24) % 12];
    }
    Write("[a]\n" + noise);
    const RegistryKey key("a");
    ASSERT_TRUE(key.is_open());
    char text[16];
    uint32_t size = sizeof(text);
    const long result = key.Query("a", text, &size);
    if (result == 0) {
      ASSERT_LE(size, sizeof(text));
      ASSERT_EQ(text[size - 1], 0);
    }
  }
}

TEST_F(RegistryTest, DirectoriesPipesAndHugeFilesAreNoRegistry) {
  setenv("LORIMATRT_REGISTRY", folder_.c_str(), 1);
  EXPECT_FALSE(RegistryKey(kKey).is_open());
  setenv("LORIMATRT_REGISTRY", "/dev/zero", 1);
  EXPECT_FALSE(RegistryKey(kKey).is_open());
  ASSERT_EQ(mkfifo(name_.c_str(), 0600), 0);
  setenv("LORIMATRT_REGISTRY", name_.c_str(), 1);
  EXPECT_FALSE(RegistryKey(kKey).is_open());  // and does not block
  std::filesystem::remove(name_);
  WriteSection("Name=abc\n");
  ASSERT_EQ(truncate(name_.c_str(), 1024 * 1024), 0);
  EXPECT_EQ(Value("Name"), "abc");
  ASSERT_EQ(truncate(name_.c_str(), 1024 * 1024 + 1), 0);
  EXPECT_FALSE(RegistryKey(kKey).is_open());
}

TEST_F(RegistryTest, AFileThatShrinksUnderAnOpenKeyIsSafe) {
  WriteSection("Name=abc\n");
  const RegistryKey key(kKey);
  ASSERT_EQ(truncate(name_.c_str(), 3), 0);
  char text[8];
  uint32_t size = sizeof(text);
  EXPECT_EQ(key.Query("Name", text, &size), 2);
}

TEST_F(RegistryTest, AFileThatGrowsUnderAnOpenKeyIsReadUpToTheLargestSize) {
  WriteSection("");
  ASSERT_EQ(truncate(name_.c_str(), 1024 * 1024), 0);
  const RegistryKey key(kKey);
  std::ofstream(name_, std::ios::binary | std::ios::app)
      << std::string(64 * 1024, '\n') << "Name=abc\n";  // behind the piece that is being read
  char text[8];
  uint32_t size = sizeof(text);
  EXPECT_EQ(key.Query("Name", text, &size), 2);
}

TEST_F(RegistryTest, OpenKeysCloseTheirFile) {
  WriteSection("Name=abc\n");
  const int probe = open("/dev/null", O_RDONLY);
  close(probe);
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(Value("Name"), "abc");
    EXPECT_FALSE(RegistryKey("Other").is_open());
  }
  const int again = open("/dev/null", O_RDONLY);
  EXPECT_EQ(again, probe);
  close(again);
}

}  // namespace
