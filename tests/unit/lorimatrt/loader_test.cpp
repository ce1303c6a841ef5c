#include "lorimatrt/loader.h"

#include <gtest/gtest.h>

#include <cstring>

#include "lorimatrt/instance.h"
#include "lorimatrt/lorimatrt.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::CaptureStdout;
using ::testing::internal::GetCapturedStderr;
using ::testing::internal::GetCapturedStdout;

std::string Notify(unsigned long reason) {
  CaptureStdout();
  EXPECT_TRUE(LoaderNotification(reason));
  return GetCapturedStdout();
}

std::string Destroy() {
  CaptureStderr();
  lorimat_destroy();
  return GetCapturedStderr();
}

TEST(Loader, TheObjectMadeAtAttachIsTheLiveOne) {
  lorimat_init();
  EcrCmdCommand* first = translator_instance;
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(Notify(kProcessAttach), "Load working...\n");
  EXPECT_NE(translator_instance, first);
  EXPECT_NE(translator_instance, nullptr);
  EXPECT_EQ(Notify(kThreadAttach), "ThreadLoad working...\n");
  EXPECT_EQ(Notify(kThreadDetach), "ThreadUnload working...\n");
  EXPECT_EQ(Notify(77), "");
  EXPECT_EQ(Notify(kProcessDetach), "Unload working...\n");
  EXPECT_EQ(translator_instance, nullptr);
  // The object is gone already; only the line is left to write.
  EXPECT_EQ(Destroy(), "library destroy\n");
}

TEST(Loader, DestroyReleasesAnObjectThatWasNeverDetached) {
  lorimat_init();
  EXPECT_EQ(Destroy(), "library destroy\n");
  EXPECT_EQ(translator_instance, nullptr);
  lorimat_init();
  EXPECT_EQ(Notify(kProcessAttach), "Load working...\n");
  EXPECT_EQ(Destroy(), "library destroy\n");
  EXPECT_EQ(translator_instance, nullptr);
}

TEST(Loader, DetachWithoutAnObjectWritesItsLine) {
  EXPECT_EQ(Notify(kProcessDetach), "Unload working...\n");
}

class Exports : public ::testing::Test {
 protected:
  void SetUp() override {
    lorimat_init();
    Notify(kProcessAttach);
  }
  void TearDown() override {
    Notify(kProcessDetach);
    Destroy();
  }
};

TEST_F(Exports, CharactersKeepTheirLowByteAndSign) {
  EXPECT_EQ(GetQuoteChar(), '\'');
  SetQuoteChar(0x127);
  EXPECT_EQ(GetQuoteChar(), 0x27);
  SetQuoteChar(0xE9);
  EXPECT_EQ(GetQuoteChar(), 0xE9 - 256);
  EXPECT_EQ(GetSeparatorChar(), ',');
  SetSeparatorChar(0x3FF);
  EXPECT_EQ(GetSeparatorChar(), -1);
  SetOutEditOptions(3);
  EXPECT_EQ(GetOutEditOptions(), 3);
  EXPECT_FALSE(GetEnableTradDC());
  SetEnableTradDC(true);
  EXPECT_TRUE(GetEnableTradDC());
}

TEST_F(Exports, ALineAheadOfTradInitAnswers256) {
  char line[] = "CHIU";
  char result[512] = "old";
  EXPECT_EQ(EcrCmd(line, result), 256);
  char comment[] = "; nothing";
  EXPECT_EQ(EcrCmd(comment, result), 256);
}

TEST_F(Exports, TradInitToleratesAHostWithoutCallback) {
  char none[] = "/nonexistent/words.ini";
  EXPECT_EQ(TradInit(none, 0, nullptr, nullptr), 2);
  EXPECT_EQ(TradClose(), 0);
}

TEST_F(Exports, StubsTouchNothingElse) {
  char in[] = "x";
  EXPECT_STREQ(Trad_DCYEvent(1, in, 1), "");
  EXPECT_EQ(Trad_DCXEvent(-5, nullptr, 0), Trad_DCYEvent(0, nullptr, -1));
  EXPECT_EQ(Trad_IEvent(99, in, 100), Trad_DCYEvent(0, nullptr, 0));

  long kind = 9;
  char code[] = "code";
  double quantity = 9;
  Trad_FileExtEnq(1, nullptr, 0, &kind, code, &quantity);
  EXPECT_EQ(kind, 0);
  EXPECT_STREQ(code, "");
  EXPECT_EQ(quantity, 0.0);

  int length = 9;
  char out[] = "out";
  EXPECT_EQ(Trad_RispExtEnq(1, 2, 3, nullptr, out, &length), 0);
  EXPECT_EQ(length, 0);
  EXPECT_STREQ(out, "out");

  int kind2 = 9;
  char code2[] = "code";
  double value = 9;
  quantity = 9;
  Trad_FileExtUpd(1, nullptr, 0, &kind2, code2, &quantity, &value);
  EXPECT_EQ(kind2, 0);
  EXPECT_STREQ(code2, "code");
  EXPECT_EQ(quantity, 0.0);
  EXPECT_EQ(value, 0.0);
}

}  // namespace
