// Setting options: every given field is one data item.

#include "unit/support/table_device.h"

namespace {

using ProgramOptions = TableTest;

TEST_F(ProgramOptions, AreAppliedInTheOrderOfTheTable) {
  EXPECT_EQ(0, run("POPZ CASSETTO, OPZ37=NO, OPZ36='6', OPZ35=SI, OPZ34='4', OPZ33='3', OPZ32=NO,"
                   " OPZ20=2, OPZ19=1, OPZ17='T 17', OPZ16='16', OPZ14=SI, OPZ13='13', OPZ08=NO,"
                   " CONTRASTO=2, OPZ04, OPZ01='BEN''VENUTI'"));
  EXPECT_EQ((Calls{"SetDataInternal(60,BEN'VENUTI)", "SetDataInternal(317,1)",
                   "SetDataInternal(204,100)", "SetDataInternal(395,0)", "SetDataInternal(402,13)",
                   "SetDataInternal(415,1)", "SetDataInternal(399,16)", "SetDataInternal(401,T 17)",
                   "SetDataInternal(419,1)", "SetDataInternal(400,6)", "SetDataInternal(318,0)",
                   "SetDataInternal(367,1)", "SetDataInternal(150,3)", "SetDataInternal(151,4)",
                   "SetDataInternal(396,1)", "SetDataInternal(418,0)", "SetDataInternal(459,1)"}),
            device.calls);
}

TEST_F(ProgramOptions, ALineWithoutAnyMakesNoCall) {
  EXPECT_EQ(0, run("POPZ"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramOptions, Option32IsInverted) {
  EXPECT_EQ(0, run("POPZ OPZ32='SI'"));
  EXPECT_EQ((Calls{"SetDataInternal(367,0)"}), device.calls);
}

TEST_F(ProgramOptions, ARefusedOneDoesNotHoldBackTheOthers) {
  device.refuse("SetDataInternal(317", 107);
  device.refuse("SetDataInternal(415", 207);
  EXPECT_EQ(619, run("POPZ OPZ04, OPZ08, OPZ14"));
  EXPECT_EQ((Calls{"SetDataInternal(317,1)", "SetDataInternal(395,1)", "SetDataInternal(415,1)"}),
            device.calls);
}

TEST_F(ProgramOptions, ContrastLevelsAreTwentyApart) {
  for (const auto& [level, value] : std::map<std::string, std::string>{
           {"1", "80"}, {"2", "100"}, {"3", "120"}, {"2.9", "100"}}) {
    device.calls.clear();
    EXPECT_EQ(0, run("POPZ CONTRASTO=" + level));
    EXPECT_EQ((Calls{"SetDataInternal(204," + value + ")"}), device.calls);
  }
}

TEST_F(ProgramOptions, AContrastOutOfRangeIsLeftOutAndTold) {
  for (const char* level : {"4", "0", "-1", "99999999999999999999"}) {
    device.calls.clear();
    EXPECT_EQ(265, run(std::string("POPZ CONTRASTO=") + level + ", OPZ08"));
    EXPECT_EQ((Calls{"SetDataInternal(395,1)"}), device.calls);
  }
  // The first failure stays the answer.
  device.refuse("SetDataInternal(317", 107);
  EXPECT_EQ(619, run("POPZ OPZ04, CONTRASTO=4"));
}

TEST_F(ProgramOptions, AContrastThatIsNoNumberEndsTheLine) {
  device.refuse("SetDataInternal(317", 107);
  for (const char* field : {"CONTRASTO='CHIARO'", "CONTRASTO", "CONTRASTO='-'"}) {
    device.calls.clear();
    // The refusal of the option before it is forgotten.
    EXPECT_EQ(265, run(std::string("POPZ OPZ04, OPZ08, ") + field)) << field;
    EXPECT_EQ((Calls{"SetDataInternal(317,1)"}), device.calls) << field;
  }
}

TEST_F(ProgramOptions, WithoutClientEveryOneIsUnreachable) {
  translator->rtfClient_ = nullptr;
  std::strcpy(translator->szCampi[4], "VERO");
  EXPECT_EQ(512, translator->Trad_POPZ());
}

}  // namespace
