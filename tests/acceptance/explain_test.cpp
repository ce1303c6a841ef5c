// What the program says of result codes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program_run.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

json Explained(const std::string& code) {
  const ProgramRun run = RunConsole({"explain", "--json", code});
  EXPECT_THAT(run.errors, IsEmpty()) << code;
  return json::parse(run.output).at(0);
}

// The readings' names and chains.
std::vector<std::string> Readings(const std::string& code) {
  std::vector<std::string> texts;
  const json one = Explained(code);
  for (const json& reading : one.at("readings")) {
    std::string text = reading.at("kind").get<std::string>();
    if (reading.contains("name")) text += " " + reading.at("name").get<std::string>();
    for (const json& step : reading.at("chain")) text += " " + std::to_string(step.get<int>());
    texts.push_back(text);
  }
  return texts;
}

}  // namespace

TEST(Explain, CodesAreToldWithClassIndexTextAndCause) {
  const ProgramRun run = RunConsole({"explain", "265", "1643", "1289", "1231", "-2", "0"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, ExpectedPaper("explain.txt"));
}

TEST(Explain, ACodeMayBeGivenAsTheAnswerShowsIt) {
  const ProgramRun run = RunConsole({"explain", "6/107"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, StartsWith("1643: class 6, index 107\n"));
}

TEST(Explain, AnAnswerMayBePasted) {
  // 257 is class 1, index 1; 4 * 256 + 218 = 1242.
  const std::string missing = "257: class 1, index 1\n";
  const std::string total = "1242: class 4, index 218\n";
  const std::vector<std::pair<std::string, std::string>> pasted = {
      {"ERROR 4/218", total},
      {"ERROR 4/218 : ", total},
      {"error 4/218", total},
      {"ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND", missing},
      {" ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n", missing},
      {"ERROR 1/1 in line 7 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND", missing},
      {"SINTAX ERROR 1 : INSTRUCTION NOT FOUND", missing},
      {"Instruction not found", missing},
      {"till.cmd:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND", missing},
      {"code 1242:", total},
      {"no command is called 'VNED'; did you mean VEND? (code 257)", missing},
      {"NON OK.", "16: class 0, index 16\n"},
      {"OK.", "0\n"},
  };
  for (const auto& [text, begin] : pasted) {
    const ProgramRun run = RunConsole({"explain", text});
    EXPECT_EQ(run.exit_code, 0) << text;
    EXPECT_THAT(run.output, StartsWith(begin)) << text;
  }
}

TEST(Explain, APastedAnswerNeedsNoQuotes) {
  const ProgramRun run = RunConsole({"explain", "265", "ERROR", "1/1", ":", "SINTAX", "ERROR", "1",
                                     ":", "INSTRUCTION", "NOT", "FOUND"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, StartsWith("265: class 1, index 9\n"));
  EXPECT_THAT(run.output, HasSubstr("\n\n257: class 1, index 1\n"));
}

TEST(Explain, NoWordOfAnAnswerIsPassedOver) {
  for (const std::vector<std::string>& words :
       std::vector<std::vector<std::string>>{{"ERROR"},
                                             {"ERROR", "4/218", "265"},
                                             {"ERROR 4/218 265"},
                                             {"ERROR 4/218", "nonsense"},
                                             {"ERROR 4/300"},
                                             {"INSTRUCTION NOT"},
                                             {"code 257 265"}}) {
    std::vector<std::string> arguments = {"explain"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 2) << words.front();
    EXPECT_THAT(run.output, IsEmpty()) << words.front();
    EXPECT_THAT(run.errors, HasSubstr("is no result code")) << words.front();
  }
}

TEST(Explain, AClientResultIsTakenOutOfItsClassBit) {
  // 107 | 512, 207 | 1024: the class bit that marks results below and from 200.
  EXPECT_THAT(Readings("619"), ElementsAre("client RTF_E_NOHARDWARE 107 619"));
  EXPECT_THAT(Readings("1231"), ElementsAre("client RTF_EFPTR_WRONG_STATE 207 1231"));
  EXPECT_THAT(Readings("1236"), ElementsAre("client RTF_EFPTR_FISCAL_TOTALS_ERROR 212 1236"));
}

TEST(Explain, DoubledClassBitsAreToldApart) {
  // 619 is 200 or more, so that a second pass adds 1024.
  EXPECT_THAT(Readings("1643"), ElementsAre("client RTF_E_NOHARDWARE 107 619 1643"));
  EXPECT_THAT(Readings("1536"), ElementsAre("no-client -1 512 1536"));
  EXPECT_THAT(Readings("1289"), ElementsAre("library-as-client 265 1289"));
  EXPECT_THAT(Readings("1280"), ElementsAre("library 1280"));
}

TEST(Explain, ALongerClientResultKeepsItsOwnBits) {
  // 1213 = 0x4BD and 120701 = 0x1D77D hold 0x400 already; 121202 = 0x1D972 does not.
  EXPECT_THAT(Readings("1213"), ElementsAre("client RTF_EFPTR_TO_MANY_ZREPORT_PENDING 1213 1213"));
  EXPECT_THAT(Readings("120701"),
              ElementsAre("client RTF_EFPTR_TO_MANY_ZREPORT_PENDING_R2 120701 120701"));
  EXPECT_THAT(Readings("122226"), ElementsAre("client RTF_EFPTR_NEGATIVE_VAT_R2 121202 122226"));
  EXPECT_THAT(Readings("1305"), ElementsAre("client RTF_EFIRMWARE_BAD_FILE 281 1305"));
}

TEST(Explain, AClientResultWithoutANameIsStillTakenOutOfItsClassBit) {
  EXPECT_THAT(Readings("562"), ElementsAre("client-unnamed 50 562"));
  EXPECT_THAT(Readings("1586"), ElementsAre("client-unnamed 50 562 1586"));
  EXPECT_THAT(Readings("1274"), ElementsAre("client-unnamed 250 1274"));
  EXPECT_THAT(Readings("1624"), ElementsAre("client-unnamed 88 600 1624"));
}

TEST(Explain, ASingleClassGivesTheTextOfItsTable) {
  EXPECT_EQ(Explained("2").at("text"), "ERROR 0/2 : INITIALIZATION ERROR ");
  EXPECT_EQ(Explained("268").at("text"),
            "ERROR 1/12 : SINTAX ERROR 12 : INSTRUCTION NOT SUPPORTED ");
  EXPECT_EQ(Explained("512").at("text"), "ERROR 2/0 : I/O ERROR 0");
  EXPECT_EQ(Explained("8194").at("text"), "ERROR 32/2 : EM_LINK ERROR  : ILLEGAL COMMAND ");
  EXPECT_EQ(Explained("16").at("text"), "NON OK. ");
}

TEST(Explain, EveryCodeOfTheLanguagePageHasACauseThatTheLibraryGives) {
  for (const char* code :
       {"1",   "2",   "9",   "10",  "11",  "12",   "23",   "24",   "256",  "257",
        "258", "259", "260", "261", "262", "263",  "264",  "265",  "266",  "267",
        "268", "269", "271", "274", "277", "1280", "8193", "8194", "8195", "8196"}) {
    const json one = Explained(code);
    ASSERT_EQ(one.at("readings").size(), 1u) << code;
    EXPECT_EQ(one.at("readings").at(0).at("kind"), "library") << code;
    EXPECT_TRUE(one.at("readings").at(0).at("given")) << code;
    EXPECT_FALSE(one.at("readings").at(0).at("cause").get<std::string>().empty()) << code;
  }
}

TEST(Explain, ATextThatNoCommandGivesIsSaidToBeKeptOnly) {
  const ProgramRun run = RunConsole({"explain", "25", "275"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr("CHIP-CARD ERROR"));
  EXPECT_THAT(run.output, HasSubstr("ECR NUMBER ILLEGAL"));
  EXPECT_THAT(run.output, HasSubstr("not given by this library"));
  EXPECT_THAT(run.output, Not(HasSubstr("given by the library")));
}

TEST(Explain, TheSignsOutsideTheSchemeHaveNoClass) {
  for (const char* code : {"-1", "-2"}) {
    const json one = Explained(code);
    EXPECT_FALSE(one.contains("class")) << code;
    EXPECT_EQ(one.at("readings").at(0).at("kind"), "internal") << code;
  }
}

TEST(Explain, ANumberThatIsNoCodeIsToldAndAnswersOne) {
  const ProgramRun run = RunConsole({"explain", "265", "999"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("999: class 3, index 231\n"));
  EXPECT_THAT(run.output, HasSubstr("the library does not give this code"));
}

TEST(Explain, WhatIsPastedWithBlanksQuotesAndLineEndsIsTaken) {
  const std::string plain = RunConsole({"explain", "4/218"}).output;
  for (const char* text : {" 4/218 ", "4/218\r", "\"ERROR 4/218\"", "'ERROR 4/218'", "\n1242\n"}) {
    EXPECT_EQ(RunConsole({"explain", text}).output, plain) << text;
  }
  EXPECT_EQ(RunConsole({"explain", "ERROR 4/218\nERROR 1/1\n"}).output,
            RunConsole({"explain", "1242", "257"}).output);
}

TEST(Explain, TextsThatAreNoCodesAreWrongUse) {
  for (const char* code :
       {"abc", "12a", "1/", "/9", "1/256", "99999/1", "2147483648", "1/9/1", " "}) {
    const ProgramRun run = RunConsole({"explain", code});
    EXPECT_EQ(run.exit_code, 2) << code;
    EXPECT_THAT(run.output, IsEmpty()) << code;
    EXPECT_THAT(run.errors, HasSubstr("is no result code")) << code;
  }
  EXPECT_EQ(RunConsole({"explain"}).exit_code, 2);
  EXPECT_EQ(RunConsole({"explain", ""}).exit_code, 2);
}

TEST(Explain, TheEndsOfTheRangeAreExplained) {
  for (const char* code : {"2147483647", "-2147483648", "-3", "16777215"}) {
    const ProgramRun run = RunConsole({"explain", code});
    EXPECT_NE(run.exit_code, 2) << code;
    EXPECT_THAT(run.output, StartsWith(code)) << code;
    EXPECT_THAT(run.errors, IsEmpty()) << code;
  }
}

TEST(Explain, HelpHasExamplesAndExitCodes) {
  const ProgramRun run = RunConsole({"explain", "--help"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr("Examples:"));
  EXPECT_THAT(run.output, HasSubstr("Exit codes:"));
}
