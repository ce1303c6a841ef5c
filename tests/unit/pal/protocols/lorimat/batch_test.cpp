// A batch whose own file the device writes: what was read of it ahead of that does not count.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/threading/posix/thread.h"
#include "rpccommon/services/rtffptrconst.h"
#include "support/null_client.h"
#include "support/temporary_folder.h"

namespace {

// Empties the file that it is to write a report to.
class ReportClient : public NullClient {
 public:
  int GetIntProperty(int, int* value) override {
    *value = RTF_FPTR_PS_MONITOR;
    return 0;
  }
  int PrintXReportEx(int32_t, bool, const char*, const char* file, int32_t) override {
    return Write(file);
  }
  int FiscalReportMessageEx(int32_t, int32_t, int32_t, uint8_t, uint8_t, uint32_t, uint32_t,
                            const char*, const char*, const char*, const char* file,
                            int32_t) override {
    return Write(file);
  }
  int SaveTelematicSummary(int, int, const char* file) override { return Write(file); }
  int TelematicDocument(uint32_t, uint8_t, uint8_t, int32_t, int32_t, int32_t, int32_t,
                        const char* file) override {
    return Write(file);
  }
  int SendTelematicSummary() override {
    ++sent;
    return 0;
  }

  int written = 0;
  int sent = 0;

 private:
  int Write(const char* file) {
    std::ofstream(file, std::ios::trunc).flush();
    ++written;
    return 0;
  }
};

class OwnFile : public testing::TestWithParam<const char*> {
 protected:
  OwnFile() {
    before_ = Thread::SetSleepFunction([](int) {});
    translator_->rtfClient_ = &client_;
    translator_->TStato.bInitOK = true;
    translator_->iTotOpCodes = MAXOPCOD;
    for (int& rows : translator_->iNumOper) rows = MAXCAMPI;
    testing::internal::CaptureStdout();  // the trace of the state words
  }
  ~OwnFile() override {
    testing::internal::GetCapturedStdout();
    Thread::SetSleepFunction(before_);
    std::filesystem::remove_all(folder_);
  }

  std::filesystem::path folder_ = MakeTemporaryFolder();
  ReportClient client_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();

 private:
  decltype(Thread::SetSleepFunction(nullptr)) before_;
};

TEST_P(OwnFile, LinesThatAReportHasTakenAwayDoNotRun) {
  const std::string file = (folder_ / "own.cmd").string();
  std::ofstream(file) << GetParam() << "'" << file << "'\n#121 #6=1\n";
  std::string line = "@'" + file + "'";
  char result[512];
  EXPECT_EQ(translator_->EcrCmd(line.data(), result), 0) << result;
  EXPECT_EQ(client_.written, 1);
  EXPECT_EQ(client_.sent, 0);
}

INSTANTIATE_TEST_SUITE_P(Reports, OwnFile,
                         testing::Values("#26 #1=1, #3=0, #10=", "#72 #1=010126, #6=",
                                         "#121 #3=1, #4=1, #7=", "#127 #5=1, #7="));

}  // namespace
