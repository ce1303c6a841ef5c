// Programming keys with their macros, and logos.

#include "unit/support/table_device.h"

namespace {

using ProgramKeys = TableTest;

TEST_F(ProgramKeys, AKeyIsWrittenWholeWithoutARead) {
  EXPECT_EQ(0, run("PTAST POS=5, COD=REP01"));
  EXPECT_EQ((Calls{"ConfigKeyboard(write 5,75,0,)"}), device.calls);
  EXPECT_EQ(0, run("PTAST POS=5, COD=75, TIPO=3"));
  EXPECT_EQ("ConfigKeyboard(write 5,75,3,)", device.calls.back());
}

TEST_F(ProgramKeys, TheSecondNameIsTheSameCommand) {
  EXPECT_EQ(0, run("PTASTA POS=5, COD=REP01, TIPO=2"));
  EXPECT_EQ((Calls{"ConfigKeyboard(write 5,75,2,)"}), device.calls);
  EXPECT_EQ(266, run("PTASTA POS=5"));
}

TEST_F(ProgramKeys, PositionAndCodeAreRequired) {
  EXPECT_EQ(266, run("PTAST COD=75"));
  EXPECT_EQ(265, run("PTAST POS"));
  EXPECT_EQ(265, run("PTAST POS, COD=75"));
  EXPECT_EQ(266, run("PTAST POS=5"));
  EXPECT_EQ(265, run("PTAST POS=5, COD"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramKeys, PositionsAndCodesHaveEightBits) {
  EXPECT_EQ(0, run("PTAST POS=300, COD=75"));
  EXPECT_EQ("ConfigKeyboard(write 44,75,0,)", device.calls.back());
  EXPECT_EQ(0, run("PTAST POS=-1, COD=-1"));
  EXPECT_EQ("ConfigKeyboard(write 255,255,0,)", device.calls.back());
  // 456 is 200, a macro key.
  EXPECT_EQ(0, run("PTAST POS=1, COD=456, MACRO='1 '"));
  EXPECT_EQ("ConfigKeyboard(write 1,200,0,<1>)", device.calls.back());
}

TEST_F(ProgramKeys, AMacroKeyPlaysItsKeys) {
  EXPECT_EQ(0, run("PTAST POS=9, COD=MACRO03, MACRO='N1 13 N5   N0 REP02 ', TIPO=1"));
  EXPECT_EQ((Calls{"ConfigKeyboard(write 9,202,1,<1><13><5><10><76>)"}), device.calls);
}

TEST_F(ProgramKeys, TheLastKeyOfAMacroNeedsABlankBehindIt) {
  EXPECT_EQ(0, run("PTAST POS=9, COD=MACRO03, MACRO='N1 N2'"));
  EXPECT_EQ("ConfigKeyboard(write 9,202,0,<1>)", device.calls.back());
}

TEST_F(ProgramKeys, OnlyMacroKeysReadTheMacro) {
  for (const int code : {199, 240}) {
    EXPECT_EQ(0, run(TableDevice::text("PTAST POS=9, COD=%d, MACRO='NESSUNO '", code)));
    EXPECT_EQ(TableDevice::text("ConfigKeyboard(write 9,%d,0,)", code), device.calls.back());
  }
  for (const int code : {200, 239}) {
    EXPECT_EQ(0, run(TableDevice::text("PTAST POS=9, COD=%d, MACRO='7 '", code)));
    EXPECT_EQ(TableDevice::text("ConfigKeyboard(write 9,%d,0,<7>)", code), device.calls.back());
  }
}

TEST_F(ProgramKeys, AMacroKeyWithoutMacroPlaysNothing) {
  EXPECT_EQ(0, run("PTAST POS=9, COD=200"));
  EXPECT_EQ(0, run("PTAST POS=9, COD=200, MACRO=''"));
  EXPECT_EQ((Calls(2, "ConfigKeyboard(write 9,200,0,)")), device.calls);
}

TEST_F(ProgramKeys, AMacroWithABadKeyIsRefusedAheadOfTheDevice) {
  EXPECT_EQ(265, run("PTAST POS=9, COD=200, MACRO='N1 NESSUNO '"));
  EXPECT_EQ(265, run("PTAST POS=9, COD=200, MACRO='256 '"));
  EXPECT_EQ(265, run("PTAST POS=9, COD=200, MACRO='" + std::string(40, 'A') + " '"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramKeys, AMacroOf39KeysFitsAndOf40DoesNot) {
  std::string macro;
  for (int i = 0; i < 39; ++i) macro += "8 ";
  EXPECT_EQ(0, run("PTAST POS=9, COD=200, MACRO='" + macro + "'"));
  EXPECT_EQ(std::string(39, '\x08'), device.keys[9].macro);
  device.calls.clear();
  EXPECT_EQ(265, run("PTAST POS=9, COD=200, MACRO='" + macro + "8 '"));
  for (int i = 0; i < 100; ++i) macro += "8 ";
  EXPECT_EQ(265, run("PTAST POS=9, COD=200, MACRO='" + macro + "'"));
  EXPECT_TRUE(device.calls.empty());
}

TEST_F(ProgramKeys, ARefusedKeyGetsItsClassOnce) {
  device.refuse("ConfigKeyboard", 107);
  EXPECT_EQ(619, run("PTAST POS=5, COD=75"));
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(512, translator->Trad_PTAST());
}

// --- Logos

TEST_F(ProgramKeys, AnEraseAloneIsComplete) {
  EXPECT_EQ(0, run("LDGRAF CANC"));
  EXPECT_EQ((Calls{"EraseLogoArchive()"}), device.calls);
}

TEST_F(ProgramKeys, TheThirdPlaceIsLogo63) {
  EXPECT_EQ(0, run("LDGRAF NUM=1, FILE='Logo.bmp'"));
  EXPECT_EQ(0, run("LDGRAF NUM=2, FILE='Logo.bmp'"));
  EXPECT_EQ(0, run("LDGRAF NUM=3, FILE='Logo.bmp'"));
  EXPECT_EQ(
      (Calls{"ProgramGRC(1,Logo.bmp,0)", "ProgramGRC(2,Logo.bmp,0)", "ProgramGRC(63,Logo.bmp,0)"}),
      device.calls);
}

TEST_F(ProgramKeys, LogoNumbersHaveNoUpperEndAndEightBits) {
  EXPECT_EQ(0, run("LDGRAF LOGO=300, FILE='a'"));
  EXPECT_EQ((Calls{"ProgramGRC(44,a,0)"}), device.calls);
  EXPECT_EQ(0, run("LDGRAF LOGO=3, FILE='a'"));
  EXPECT_EQ("ProgramGRC(3,a,0)", device.calls.back());
}

TEST_F(ProgramKeys, LogoNumbersOutOfRangeAreRefused) {
  EXPECT_EQ(265, run("LDGRAF NUM=4, FILE='a'"));
  EXPECT_EQ(265, run("LDGRAF NUM=-1, FILE='a'"));
  EXPECT_EQ(265, run("LDGRAF LOGO=-1, FILE='a'"));
  EXPECT_TRUE(device.calls.empty());
  // The erase comes ahead of these tests.
  EXPECT_EQ(265, run("LDGRAF CANC, NUM=4, FILE='a'"));
  EXPECT_EQ((Calls{"EraseLogoArchive()"}), device.calls);
}

TEST_F(ProgramKeys, ALoadTakesExactlyOneOfTheNumbers) {
  EXPECT_EQ(265, run("LDGRAF NUM=1, LOGO=2, FILE='a'"));
  EXPECT_EQ(265, run("LDGRAF FILE='a'"));
  EXPECT_EQ(265, run("LDGRAF NUM=0, LOGO=0, FILE='a'"));
  EXPECT_TRUE(device.calls.empty());
  EXPECT_EQ(0, run("LDGRAF NUM=1, LOGO=2, FILE='a', CANC"));
  EXPECT_EQ((Calls{"EraseLogoArchive()"}), device.calls);
}

TEST_F(ProgramKeys, ALoadNeedsAFile) {
  EXPECT_EQ(265, run("LDGRAF NUM=1"));
  EXPECT_EQ(265, run("LDGRAF NUM=1, CANC"));
  EXPECT_EQ((Calls{"EraseLogoArchive()"}), device.calls);
}

TEST_F(ProgramKeys, AnEraseAndALoadMayGoTogether) {
  EXPECT_EQ(0, run("LDGRAF CANC, LOGO=5, FILE='a'"));
  EXPECT_EQ((Calls{"EraseLogoArchive()", "ProgramGRC(5,a,0)"}), device.calls);
}

TEST_F(ProgramKeys, ARefusedEraseEndsTheLine) {
  device.refuse("EraseLogoArchive", 107);
  EXPECT_EQ(619, run("LDGRAF CANC, LOGO=5, FILE='a'"));
  EXPECT_EQ(1u, device.calls.size());
  device.refuse("ProgramGRC", 207);
  EXPECT_EQ(1231, run("LDGRAF LOGO=5, FILE='a'"));
  translator->rtfClient_ = nullptr;
  EXPECT_EQ(512, translator->Trad_LDGRAF());
}

TEST_F(ProgramKeys, ALogoFileNameTakes50Characters) {
  EXPECT_EQ(0, run("LDGRAF LOGO=5, FILE='" + std::string(60, 'f') + "'"));
  EXPECT_EQ("ProgramGRC(5," + std::string(50, 'f') + ",0)", device.calls.back());
}

}  // namespace
