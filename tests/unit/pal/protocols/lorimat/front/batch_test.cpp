// Batches and lines in states that no export sets: the paths stay for hosts of the same interface.

#include <cwchar>

#include "unit/support/table_device.h"

namespace {

class BatchStates : public TableTest {
 protected:
  static constexpr char kNotFound[] =
      "ERROR 1/1 in line 1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\r\n";
};

TEST_F(BatchStates, ABreakKeepsTheLinesOwnTextOutOfTheErrorFile) {
  WriteFile("a.cmd", "NIENTE\r\n");
  EXPECT_EQ(0, Run("@a.cmd,e.txt"));
  EXPECT_EQ(std::string(kNotFound) + kNotFound, File("e.txt"));
  translator->bFlgBreak = true;
  EXPECT_EQ(0, Run("@a.cmd,e.txt"));
  EXPECT_EQ(kNotFound, File("e.txt"));
}

TEST_F(BatchStates, AnExitEndsTheBatchAtAFailingLine) {
  WriteFile("a.cmd", "PROG\r\nNIENTE\r\nPROG\r\n");
  EXPECT_EQ(0, Run("@a.cmd"));
  EXPECT_EQ("OK.(3 Lines   0 msec)", answer_text);
  translator->bExitBatch = true;
  EXPECT_EQ(0, Run("@a.cmd"));
  EXPECT_EQ("OK.(2 Lines   0 msec)", answer_text);
  EXPECT_FALSE(translator->TStato.bFlgEC);
}

TEST_F(BatchStates, CountedErrorsAreTheAnswerOfTheBatch) {
  WriteFile("a.cmd", "PROG\r\n");
  for (long STATERR::*counter : {&STATERR::lTotErr, &STATERR::lTotErrEcr}) {
    translator->Stat.lTotErr = translator->Stat.lTotErrEcr = 0;
    translator->Stat.*counter = 1;
    std::strcpy(translator->szFileIn, "a.cmd");
    translator->szFileErr[0] = 0;
    char result[512];
    EXPECT_EQ(14, translator->RunBatch(result));
    EXPECT_EQ(0u, std::string(result).find("ERROR 0/14 : ")) << result;
    EXPECT_EQ(nullptr, std::strstr(result, "Lines"));
  }
}

TEST_F(BatchStates, AHandlerThatNoOpcodeReachesDoesNothing) {
  EXPECT_EQ(0, translator->Trad_IOCONTO());
  EXPECT_TRUE(device.calls.empty());
}

#ifndef _WIN32
TEST_F(BatchStates, ATraceThatCannotBePrintedIsEmpty) {
  class Traced : public NullClient {
   public:
    void LogTrace(const char* text) override { lines.emplace_back(text); }
    std::vector<std::string> lines;
  } client;
  translator->rtfClient_ = &client;
  translator->LogF(false, "x%lc", static_cast<wint_t>(0x20AC));
  EXPECT_EQ(client.lines, std::vector<std::string>{""});
}
#endif

}  // namespace
