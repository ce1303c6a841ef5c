#include "console/device/stoppable_client.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "console/check/language.h"
#include "console/host/batch_walk.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"
#include "support/language_commands.h"

namespace lorimat::console {
namespace {

std::string ShippedWords() {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/language/merkelin.ini");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The translator on a register that can be told to stop, in a folder for what lines write.
class Stopping : public testing::Test {
 protected:
  Stopping()
      : start_(std::filesystem::current_path()), language_(Language::FromText(ShippedWords())) {
    std::string folder = testing::TempDir() + "/stopping-XXXXXX";
    folder_ = mkdtemp(folder.data());
    std::filesystem::current_path(folder_);
    language_.translator().TStato.bInitOK = true;
    language_.translator().rtfClient_ = &client_;
  }
  ~Stopping() override {
    std::filesystem::current_path(start_);
    std::filesystem::remove_all(folder_);
  }

  long Send(const std::string& line) {
    std::string command = line;
    std::array<char, 4096> result{};
    return language_.translator().EcrCmd(command.data(), result.data());
  }
  // Sends it with the signal come ahead of it; whether a call of it was refused.
  bool SendStopped(const std::string& line, long* code) {
    stop_ = SIGINT;
    client_.Begin(&stop_, nullptr);
    *code = Send(line);
    stop_ = 0;
    return client_.End();
  }

  lorimat::VirtualRegister device_;
  StoppableClient client_{device_};
  volatile std::sig_atomic_t stop_ = 0;

 private:
  std::filesystem::path start_;
  std::string folder_;
  Language language_;
};

// Its fields by number: none, each one, each pair, and all of them, with a number and by name.
std::vector<std::string> LinesOf(const LanguageCommand& command) {
  const std::string name = "#" + std::to_string(command.opcode);
  const auto field = [](int number, const char* value) {
    return " #" + std::to_string(number) + "=" + value;
  };
  std::vector<std::string> lines = {name};
  for (const char* value : {"1", "2", "'A1'"}) {
    std::string all = name;
    for (const int one : command.fields) {
      lines.push_back(name + field(one, value));
      for (const int other : command.fields) {
        if (other > one) lines.push_back(name + field(one, value) + "," + field(other, value));
      }
      all += (one == command.fields.front() ? "" : ",") + field(one, value);
    }
    lines.push_back(all);
  }
  return lines;
}

TEST_F(Stopping, IsTheCodeOfALineOrTheCommandAnswersForItself) {
  int refused = 0;
  for (const LanguageCommand& command : LanguageCommands()) {
    for (const std::string& line : LinesOf(command)) {
      Send("#8");  // what is open is cleared
      long code = 0;
      if (!SendStopped(line, &code)) continue;
      ++refused;
      if (AnswersForItself(command.opcode)) continue;
      EXPECT_EQ(code, language::kStoppedHere) << line;
    }
  }
  EXPECT_GT(refused, 200);
}

TEST_F(Stopping, LeavesTheRegisterAsItIs) {
  EXPECT_EQ(Send("VEND REP=1, PRE=1.00"), 0);
  for (const LanguageCommand& command : LanguageCommands()) {
    for (const std::string& line : LinesOf(command)) {
      long code = 0;
      SendStopped(line, &code);
    }
  }
  EXPECT_EQ(device_.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(Send("CHKSUB IMPORTO=1.00"), 0);
}

TEST_F(Stopping, TellsTheFirstLineFromThoseBehindIt) {
  const std::string file = "three.cmd";
  std::ofstream(file) << "CHIU\nCHIU\n; none\nVEND REP=1, PRE=1.00\n";
  stop_ = SIGINT;
  client_.Begin(&stop_, nullptr);
  EXPECT_EQ(Send("@three.cmd, errors.txt"), 0);
  stop_ = 0;
  EXPECT_TRUE(client_.End());
  const std::vector<BatchError> errors = ReadBatchErrors("errors.txt");
  ASSERT_EQ(errors.size(), 3u);
  EXPECT_EQ(errors[0].code, language::kStoppedHere);
  EXPECT_EQ(errors[1].code, language::kStoppedBehind);
  EXPECT_EQ(errors[2].line, 4u);
  EXPECT_EQ(errors[2].code, language::kStoppedBehind);
}

// A receipt that was due is still due.
TEST_F(Stopping, TheNextSaleOpensItsReceipt) {
  long code = 0;
  EXPECT_TRUE(SendStopped("VEND REP=1, PRE=1.00", &code));
  EXPECT_EQ(Send("VEND REP=1, PRE=1.00"), 0);
}

// The signal comes while the line is at work: between two of its calls nothing is refused.
TEST_F(Stopping, ALineThatHasBegunRunsToItsEnd) {
  client_.Begin(&stop_, nullptr);
  client_.LogTrace("");
  stop_ = SIGINT;
  EXPECT_EQ(client_.BeginFiscalReceipt(true), 0);
  client_.LogTrace("");
  EXPECT_EQ(client_.EndFiscalReceipt(true), language::kStoppedHere);
  int state = 0;
  EXPECT_EQ(client_.GetIntProperty(RTF_PIDXFptr_PrinterState, &state), 0);
  EXPECT_EQ(state, RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_TRUE(client_.End());
  EXPECT_EQ(client_.ResetPrn(), 0);
}

TEST_F(Stopping, WithoutABatchPassesEverything) {
  stop_ = SIGINT;
  client_.LogTrace("");
  EXPECT_EQ(client_.BeginFiscalReceipt(true), 0);
  EXPECT_FALSE(client_.End());
}

}  // namespace
}  // namespace lorimat::console
