#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"
#include "support/null_client.h"
#include "utility/locale/locale.h"

namespace {

namespace fs = std::filesystem;

class ItemClient : public NullClient {
 public:
  int GetDataInternal(int item, char* text) override {
    calls.push_back("get " + std::to_string(item));
    const auto found = items.find(item);
    if (found == items.end()) return RTF_E_NOHARDWARE;
    std::memcpy(text, found->second.c_str(), found->second.size() + 1);
    return RTF_SUCCESS;
  }
  int SetDataInternal(int item, const char* text) override {
    calls.push_back("set " + std::to_string(item) + " " + text);
    return set_result;
  }
  int SetIntProperty(int property, int value) override {
    calls.push_back("property " + std::to_string(property) + " " + std::to_string(value));
    return RTF_E_FAILURE;
  }
  int GetData(int selector, int* number, char* text) override {
    calls.push_back("data " + std::to_string(selector) + " " + std::to_string(*number));
    if (data.empty()) return RTF_EFPTR_WRONG_STATE;
    std::memcpy(text, data.c_str(), data.size() + 1);
    return RTF_SUCCESS;
  }
  void LogTrace(const char* line) override { trace.push_back(line); }

  std::map<int, std::string> items;
  std::string data;
  int set_result = 0;
  std::vector<std::string> calls;
  std::vector<std::string> trace;
};

class Init : public ::testing::Test {
 protected:
  void SetUp() override {
    directory_ = fs::temp_directory_path() / ("init_test." + std::to_string(getpid()));
    fs::create_directories(directory_);
    Write("words.ini", "[OPCOD]\n10=VEND\n");
    setenv("LORIMATRT_REGISTRY", (directory_ / "registry.ini").c_str(), 1);
    loc.setCurrentLanguageCode(Locale::kDefault);
    t().rtfClient_ = &client_;
    t().iCurEcrNum = 1;
  }
  void TearDown() override {
    unsetenv("LORIMATRT_REGISTRY");
    loc.setCurrentLanguageCode(Locale::kDefault);
    fs::remove_all(directory_);
  }

  void Write(const std::string& name, const std::string& text) {
    fs::create_directories((directory_ / name).parent_path());
    std::ofstream(directory_ / name, std::ios::binary) << text;
  }
  void Registry(const std::string& values) {
    Write("registry.ini", "[Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA]\n" + values);
  }
  int RunInit(int options = 0, bool read_configuration = false) {
    std::string path = (directory_ / "words.ini").string();
    return t().TradInit(path.data(), options, &client_, read_configuration);
  }

  EcrCmdCommand& t() { return *translator_; }
  ECRCONF& conf() { return t().EcrConfArray[1]; }

  ItemClient client_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
  fs::path directory_;
};

TEST_F(Init, TheConstructorSetsTheDefaults) {
  EcrCmdCommand fresh;
  EXPECT_EQ(fresh.cChQuote, '\'');
  EXPECT_EQ(fresh.cChSep, ',');
  EXPECT_EQ(fresh.cChDate, '/');
  EXPECT_EQ(fresh.cChTime, ':');
  EXPECT_EQ(fresh.currency_decimal_separator, '.');
  EXPECT_EQ(fresh.wVerMajor * 1000000 + fresh.wVerMinor * 1000 + fresh.wVerRelease, 3001011);
  EXPECT_EQ(fresh.GetCurrencyFactor(), 10000);
  EXPECT_EQ(fresh.GetPercentageFactor(), 10000);
  EXPECT_EQ(fresh.quantity_factor, 1000);
  EXPECT_EQ(fresh.GetMaxPrecision(), 4);
  EXPECT_EQ(fresh.GetCurrencyDecimalPlaceFactor(), 100);
  EXPECT_EQ(fresh.GetPercentageDecimalPlaceFactor(), 100);
  EXPECT_TRUE(fresh.bOnFirstSale);
  EXPECT_TRUE(fresh.bAutoSlaveOnBatch);
  EXPECT_FALSE(fresh.TStato.bInitOK);
  EXPECT_FALSE(fresh.LotteryCodeDetect_);
  EXPECT_EQ(fresh.rtfClient_, nullptr);
  EXPECT_EQ(fresh.filesettable_, nullptr);
  EXPECT_EQ(fresh.iCurEcrNum, 0);
  for (const auto& row : fresh.TabErrTrad1) EXPECT_EQ(row[0], 0);
}

TEST_F(Init, ASinkIsKept) {
  class Sink : public FileSettable {
    void set_filename(char*) override {}
  } sink;
  EcrCmdCommand with_sink(&sink);
  EXPECT_EQ(with_sink.filesettable_, &sink);
}

TEST_F(Init, TradInitSetsTheWorkingState) {
  EXPECT_EQ(RunInit(0x180), 0);
  EXPECT_TRUE(t().TStato.bInitOK);
  EXPECT_EQ(t().iGlobalOptions, 0x80);
  EXPECT_TRUE(t().bProgressZUP);
  EXPECT_EQ(t().iMaxEcr, 24);
  EXPECT_EQ(t().iCurEcrNum, 1);
  EXPECT_EQ(t().iEcrSelected, 1);
  EXPECT_EQ(t().pCurConf, &t().EcrConfArray[1]);
  EXPECT_EQ(client_.trace, std::vector<std::string>{"EcrCmdCommand::TradInit"});
  EXPECT_EQ(client_.calls, (std::vector<std::string>{"property 16815 0", "property 16816 0"}));
  EXPECT_EQ(RunInit(0x7F), 0);
  EXPECT_FALSE(t().bProgressZUP);
}

TEST_F(Init, AMissingDefinitionFileStopsTradInit) {
  const fs::path old = fs::current_path();
  fs::current_path(directory_);
  std::string none = "/nonexistent/none.ini";
  EcrCmdCommand fresh;
  EXPECT_EQ(fresh.TradInit(none.data(), 0, &client_, true), 2);
  EXPECT_FALSE(fresh.TStato.bInitOK);
  EXPECT_EQ(fresh.rtfClient_, nullptr);
  // A good run followed by a bad one keeps the client.
  EXPECT_EQ(RunInit(), 0);
  EXPECT_EQ(t().TradInit(none.data(), 0, nullptr, true), 2);
  EXPECT_FALSE(t().TStato.bInitOK);
  EXPECT_EQ(t().rtfClient_, &client_);
  fs::current_path(old);
}

TEST_F(Init, ASecondRunRewritesTheDefaults) {
  Write("words.ini", "[OPCOD]\n10=VEND\n[ERRMSG]\n2=mine\n[TOTG]\n1=total\n");
  EXPECT_EQ(RunInit(), 0);
  EXPECT_STREQ(t().TabErrTradBase[2], "mine");
  Write("words.ini", "[OPCOD]\n10=VEND\n");
  EXPECT_EQ(RunInit(), 0);
  EXPECT_STREQ(t().TabErrTradBase[2], "INITIALIZATION ERROR ");
  EXPECT_EQ(t().TabDscTotG[1][0], 0);
}

TEST_F(Init, TheInstallationOfTheRegistryWins) {
  Write("inst/Drivers/MERKELIN.INI", "[OPCOD]\n11=CHIU\n");
  Registry("InstallationDir=" + (directory_ / "inst").string() + "\n");
  EXPECT_EQ(RunInit(), 0);
  EXPECT_STREQ(t().szOpCodes[11], "CHIU");
  EXPECT_STREQ(t().szOpCodes[10], "");
  EXPECT_EQ(t().szInstDir, (directory_ / "inst").string());
}

TEST_F(Init, FlagsOfTheRegistry) {
  Registry("InstallationDir=" + std::string(90, 'x') +  // too long: counts as missing
           "\nSendLotteriaAEOnClosure=YES\nAutoCloseOnInactivity=si\nSendZAE=1\nWaitIdle=1\n");
  EXPECT_EQ(RunInit(), 0);
  EXPECT_STREQ(t().szOpCodes[10], "VEND");
  EXPECT_TRUE(t().bSendLotteriaAEOnClosure);
  EXPECT_TRUE(t().bAutoCloseOnInactivity);
  EXPECT_TRUE(t().bSendZAE);
  EXPECT_TRUE(t().bWaitIdle);
  EXPECT_EQ(client_.calls, (std::vector<std::string>{"property 16815 1", "property 16816 1"}));
}

TEST_F(Init, ConfigurationOfADevice) {
  client_.items = {{86, "1"},      {103, "05.01"}, {92, "99MEX0123456AB7"},
                   {75, "6"},      {77, "14"},     {110, "10"},
                   {108, "20"},    {78, "40"},     {157, "8"},
                   {109, "1.234"}, {352, "1"}};
  conf().iNumPLU = 5;
  conf().iEMArtDel = 5;
  conf().iEMTTGFlags = 5;
  conf().iTT_Con_LnName = 5;
  EXPECT_EQ(t().GetEcrConf(1), 0);
  EXPECT_EQ(t().commissioning, 1);
  EXPECT_STREQ(conf().szVers, "05.01");
  EXPECT_STREQ(conf().szMatr, "99MEX0123456AB7");
  EXPECT_STREQ(conf().szModel, "AB");
  EXPECT_EQ(conf().iConfOK, 1);
  EXPECT_EQ(conf().iFlgART, 1);
  EXPECT_EQ(conf().iEMArtMax, 6000);
  EXPECT_EQ(conf().iLNSTPINT, 6);
  EXPECT_EQ(conf().iNumIVA, 14);
  EXPECT_EQ(conf().iNumOPE, 10);
  EXPECT_EQ(conf().iNumDPT, 14);  // item 77 replaces item 78
  EXPECT_EQ(conf().iNumSTEN, 8);
  EXPECT_EQ(conf().iEMArtNum, 1234);
  EXPECT_EQ(conf().iNumTOTG, 67);
  EXPECT_EQ(conf().iLTS, 5);
  EXPECT_TRUE(conf().bUPOS);
  EXPECT_TRUE(t().bVirgolaFissa);
  EXPECT_EQ(conf().iEMArtDel, 0);
  EXPECT_EQ(conf().iEMTTGFlags, 0);
  EXPECT_EQ(conf().iTT_Con_LnName, 0);
  EXPECT_EQ(conf().iNumPLU, 5);
  EXPECT_EQ(client_.calls, (std::vector<std::string>{"get 86", "get 103", "get 92", "get 75",
                                                     "get 77", "get 110", "get 108", "get 78",
                                                     "get 157", "get 109", "get 77", "get 352"}));
}

TEST_F(Init, AValidRecordIsKeptUntilTradClose) {
  t().GetEcrConf(0);
  client_.calls.clear();
  t().GetEcrConf(0);
  EXPECT_TRUE(client_.calls.empty());
  t().GetEcrConf(1);
  EXPECT_FALSE(client_.calls.empty());
  EXPECT_EQ(t().TradClose(), 0);
  EXPECT_EQ(t().pCurConf, &t().EcrConfArray[0]);
  EXPECT_EQ(t().iEcrSelected, 0);
  EXPECT_EQ(t().iCurEcrNum, 1);
  client_.calls.clear();
  t().GetEcrConf(0);
  EXPECT_FALSE(client_.calls.empty());
}

TEST_F(Init, SerialNumbersOfAnyLengthAreSafe) {
  for (size_t length = 0; length < 50; ++length) {
    client_.items[92] = std::string("0123456789AB").append("XYZ").append(40, 'q').substr(0, length);
    t().GetEcrConf(1);
    const std::string model = length < 13 ? "" : length == 13 ? "X" : "XY";
    EXPECT_EQ(std::string(conf().szModel), model) << length;
    EXPECT_EQ(std::strlen(conf().szMatr), std::min<size_t>(length, 32)) << length;
  }
}

TEST_F(Init, WithoutANameTheFileOfTheCurrentFolderIsRead) {
  const fs::path before = fs::current_path();
  fs::current_path(directory_);
  EXPECT_EQ(t().TradInit(nullptr, 0, &client_, false), 2);
  EXPECT_FALSE(t().TStato.bInitOK);
  Write("merkelin.ini", "[OPCOD]\n10=VENDITA\n");
  EXPECT_EQ(t().TradInit(nullptr, 0, &client_, false), 0);
  EXPECT_TRUE(t().TStato.bInitOK);
  EXPECT_STREQ(t().szOpCodes[10], "VENDITA");
  fs::current_path(before);
}

TEST_F(Init, TheSerialNumberMayChooseTheLanguage) {
  client_.items[92] =
      "\xC5\xCB"
      "0000001";
  t().GetEcrConf(1);
  EXPECT_EQ(loc.getCurrentLanguageCode(), Locale::kGreek);
  // Another kind changes nothing, and half of a kind is none.
  for (const char* serial : {"99MEX000001",
                             "\x85"
                             "0000001",
                             "\xC5"
                             "0000001"}) {
    client_.items[92] = serial;
    t().GetEcrConf(1);
    EXPECT_EQ(loc.getCurrentLanguageCode(), Locale::kGreek);
  }
  client_.items[92] =
      "\x85\xE0"
      "0000001";
  t().GetEcrConf(1);
  EXPECT_EQ(loc.getCurrentLanguageCode(), Locale::kDefault);  // English is not available
}

TEST_F(Init, DataItemsLoseTheirSeparators) {
  client_.items[9] = "1.234,50";
  long value = 7;
  EXPECT_EQ(t().getDataInternal(9, &value), 0);
  EXPECT_EQ(value, 123450);
  EXPECT_EQ(t().getDataInternal(10, &value), 619);
  EXPECT_EQ(value, 123450);
  client_.items[9] = std::string(300, '.');
  EXPECT_EQ(t().getDataInternal(9, &value), 0);
  EXPECT_EQ(value, 0);
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().getDataInternal(9, &value), 512);
}

TEST_F(Init, DataItemsAreWrittenAsDecimalText) {
  EXPECT_EQ(t().setDataInternal(148, -5), 0);
  EXPECT_EQ(client_.calls.back(), "set 148 -5");
  client_.set_result = 207;
  EXPECT_EQ(t().setDataInternal(148, 0), 1231);
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().setDataInternal(148, 0), 512);
}

TEST_F(Init, GetDataReadsANumber) {
  long value = 7;
  EXPECT_EQ(t().getData(20, 3, &value), 1231);
  EXPECT_EQ(value, 0);
  client_.data = "0042";
  EXPECT_EQ(t().getData(20, 3, &value), 0);
  EXPECT_EQ(value, 42);
  EXPECT_EQ(client_.calls.back(), "data 20 3");
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().getData(20, 0, &value), 512);
}

}  // namespace
