// The nineteen exports, each found by its name as a host finds it.
#include <string>
#include <vector>

#include "loaded_library.h"

namespace {

// What the host's callback was called with.
struct IoCall {
  long code, second;
  char* third;
  long fourth;
  char* fifth;
  long* sixth;
  long* seventh;
};
std::vector<IoCall> io_calls;
int progress_calls;

long FailingIo(long code, long second, char* third, long fourth, char* fifth, long* sixth,
               long* seventh) {
  io_calls.push_back({code, second, third, fourth, fifth, sixth, seventh});
  return -5;
}

void Progress(long, long, long, char*, long*) { ++progress_calls; }

class Exports : public testing::Test {
 protected:
  Exports() {
    io_calls.clear();
    progress_calls = 0;
  }

  int Init(const std::string& language) {
    std::string name = language;
    return EXPORT_OF(library, TradInit)(name.data(), 0, nullptr, FailingIo);
  }
  // Runs a line; the result string goes to answer.
  long Run(const std::string& line) {
    std::string command = line;
    char result[512] = "";
    const long code = EXPORT_OF(library, EcrCmd)(command.data(), result);
    answer = result;
    return code;
  }

  OwnFolder folder;
  LoadedLibrary library;
  std::string answer;
};

TEST_F(Exports, TradInitAsksTheHostOnceForItsClient) {
  const std::string language = folder.Write("words.ini", "[OPCOD]\n10=SELL\n");
  ASSERT_EQ(Init(language), 0);
  Run("SELL");
  ASSERT_EQ(io_calls.size(), 1u);
  EXPECT_EQ(io_calls[0].code, -112);
  EXPECT_EQ(io_calls[0].second, 0);
  EXPECT_EQ(io_calls[0].third, nullptr);
  EXPECT_EQ(io_calls[0].fourth, 0);
  EXPECT_EQ(io_calls[0].fifth, nullptr);
  EXPECT_EQ(io_calls[0].sixth, nullptr);
  EXPECT_NE(io_calls[0].seventh, nullptr);
}

TEST_F(Exports, WithoutAClientTradInitSucceedsAndEveryLineIsRefused) {
  // The callback failed and left the pointer alone: neither is seen.
  ASSERT_EQ(Init(folder.Write("words.ini", "[OPCOD]\n10=SELL\n")), 0);
  for (const char* line : {"SELL", "", "; a comment", "@batch.cmd", "nonsense"}) {
    EXPECT_EQ(Run(line), 256) << line;
    // Class, title, index, and the row of the index, which is the title once more.
    EXPECT_EQ(answer, "ERROR 1/0 : SINTAX ERROR 0 : SINTAX ERROR ") << line;
  }
}

TEST_F(Exports, WithoutADefinitionFileTradInitAnswersTwo) {
  EXPECT_EQ(Init(folder.File("absent.ini")), 2);
  EXPECT_EQ(Run("SELL"), 256);
}

TEST_F(Exports, TheDefinitionFileOfTheCurrentFolderStandsIn) {
  folder.Write("merkelin.ini", "[OPCOD]\n10=SELL\n");
  EXPECT_EQ(Init(folder.File("absent.ini")), 0);
}

TEST_F(Exports, ALineBeforeTradInitIsRefused) { EXPECT_EQ(Run("SELL"), 256); }

TEST_F(Exports, TheProgressCallbackIsNeverCalled) {
  std::string language = folder.Write("words.ini", "[OPCOD]\n10=SELL\n");
  ASSERT_EQ(EXPORT_OF(library, TradInit)(language.data(), 0x80, Progress, FailingIo), 0);
  Run("SELL");
  EXPECT_EQ(progress_calls, 0);
}

TEST_F(Exports, TradCloseAnswersZeroAndLeavesTheSettings) {
  EXPECT_EQ(EXPORT_OF(library, TradClose)(), 0);
  ASSERT_EQ(Init(folder.Write("words.ini", "[OPCOD]\n10=SELL\n")), 0);
  EXPORT_OF(library, SetSeparatorChar)(';');
  EXPECT_EQ(EXPORT_OF(library, TradClose)(), 0);
  EXPECT_EQ(EXPORT_OF(library, GetSeparatorChar)(), ';');
  EXPECT_EQ(Run("SELL"), 256);
}

TEST_F(Exports, TheVersionIsToldWithoutADevice) {
  // 3.1.11, as major * 1000000 + minor * 1000 + release.
  EXPECT_EQ(EXPORT_OF(library, GetEcrConfVal)(0), 3001011);
  EXPECT_EQ(EXPORT_OF(library, GetEcrConfVal)(1), 3001011);
  EXPECT_STREQ(EXPORT_OF(library, GetEcrConfStr)(0), "");
}

TEST_F(Exports, ASelectorThatDoesNotExistHasNoValue) {
  EXPECT_EQ(EXPORT_OF(library, GetEcrConfVal)(5), -1);
  EXPECT_EQ(EXPORT_OF(library, GetEcrConfStr)(5), nullptr);
}

TEST_F(Exports, TheFlagOfTheHostIsKept) {
  const auto get = EXPORT_OF(library, GetEnableTradDC);
  const auto set = EXPORT_OF(library, SetEnableTradDC);
  EXPECT_FALSE(get());
  set(true);
  EXPECT_TRUE(get());
  set(false);
  EXPECT_FALSE(get());
}

TEST_F(Exports, TheQuoteCharacterIsTheLowByteWidenedWithItsSign) {
  const auto get = EXPORT_OF(library, GetQuoteChar);
  const auto set = EXPORT_OF(library, SetQuoteChar);
  EXPECT_EQ(get(), 0x27);
  set('"');
  EXPECT_EQ(get(), '"');
  set(0x127);
  EXPECT_EQ(get(), 0x27);
  set(0x80);
  EXPECT_EQ(get(), -128);
  set(0xFFFF);
  EXPECT_EQ(get(), -1);
}

TEST_F(Exports, TheSeparatorCharacterIsTheLowByteWidenedWithItsSign) {
  const auto get = EXPORT_OF(library, GetSeparatorChar);
  const auto set = EXPORT_OF(library, SetSeparatorChar);
  EXPECT_EQ(get(), ',');
  set(';');
  EXPECT_EQ(get(), ';');
  set(0x12C);
  EXPECT_EQ(get(), ',');
  set(-2);
  EXPECT_EQ(get(), -2);
}

TEST_F(Exports, TheOutputEditOptionsAreKept) {
  const auto get = EXPORT_OF(library, GetOutEditOptions);
  const auto set = EXPORT_OF(library, SetOutEditOptions);
  EXPECT_EQ(get(), 0);
  set(5);
  EXPECT_EQ(get(), 5);
  set(-1);
  EXPECT_EQ(get(), -1);
}

TEST_F(Exports, TradInitResetsNoSetting) {
  EXPORT_OF(library, SetQuoteChar)('"');
  EXPORT_OF(library, SetSeparatorChar)(';');
  EXPORT_OF(library, SetOutEditOptions)(7);
  EXPORT_OF(library, SetEnableTradDC)(true);
  ASSERT_EQ(Init(folder.Write("words.ini", "[OPCOD]\n10=SELL\n")), 0);
  EXPECT_EQ(EXPORT_OF(library, GetQuoteChar)(), '"');
  EXPECT_EQ(EXPORT_OF(library, GetSeparatorChar)(), ';');
  EXPECT_EQ(EXPORT_OF(library, GetOutEditOptions)(), 7);
  EXPECT_TRUE(EXPORT_OF(library, GetEnableTradDC)());
}

TEST_F(Exports, TheDefinitionFileIsReadWithTheQuoteCharacterInForce) {
  const std::string language = folder.Write("words.ini", "[ERRMSG1]\n0=\"  NO ; \"\n");
  EXPORT_OF(library, SetQuoteChar)('"');
  ASSERT_EQ(Init(language), 0);
  EXPECT_EQ(Run("SELL"), 256);
  EXPECT_EQ(answer, "ERROR 1/0 :   NO ; 0 :   NO ; ");
}

TEST_F(Exports, TheThreeEventsReturnOneConstantEmptyText) {
  for (const char* name : {"Trad_DCYEvent", "Trad_DCXEvent", "Trad_IEvent"}) {
    const auto event = library.find<decltype(Trad_IEvent)>(name);
    char text[] = "input";
    const char* first = event(1, text, 5);
    ASSERT_NE(first, nullptr) << name;
    EXPECT_STREQ(first, "") << name;
    EXPECT_EQ(event(0, nullptr, 0), first) << name;
    EXPECT_EQ(event(-1, nullptr, 2000000000), first) << name;
    EXPECT_EQ(event(25, text, -5), first) << name;
    EXPECT_STREQ(text, "input") << name;
  }
}

TEST_F(Exports, FileExtEnqEmptiesTheCode) {
  const auto enquire = EXPORT_OF(library, Trad_FileExtEnq);
  long kind = 77;
  char code[] = "ABC";
  double quantity = 1.5;
  enquire(99, nullptr, -1, &kind, code, &quantity);
  EXPECT_EQ(kind, 0);
  EXPECT_EQ(std::string(code, 4), std::string("\0BC\0", 4));
  EXPECT_EQ(quantity, 0.0);
}

TEST_F(Exports, RispExtEnqAnswersNothingAndLeavesTheOutput) {
  const auto answer_to = EXPORT_OF(library, Trad_RispExtEnq);
  char out[] = "as it was";
  int length = 9;
  EXPECT_EQ(answer_to(99, 1, 2, nullptr, out, &length), 0);
  EXPECT_EQ(length, 0);
  EXPECT_STREQ(out, "as it was");
}

TEST_F(Exports, FileExtUpdLeavesTheCode) {
  const auto update = EXPORT_OF(library, Trad_FileExtUpd);
  int kind = 77;
  char code[] = "ABC";
  double quantity = 1.5;
  double value = 2.5;
  update(99, nullptr, -1, &kind, code, &quantity, &value);
  EXPECT_EQ(kind, 0);
  EXPECT_STREQ(code, "ABC");
  EXPECT_EQ(quantity, 0.0);
  EXPECT_EQ(value, 0.0);
}

}  // namespace
