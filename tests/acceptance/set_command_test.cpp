// "set": what a shop changes of its register.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "shop.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

class SetCommand : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(RunConsole({"init", shop_.file()}).exit_code, 0); }

  ProgramRun Set(std::vector<std::string> options, const ProgramSetting& setting = {}) const {
    std::vector<std::string> arguments = {"set", shop_.file()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunConsole(arguments, setting);
  }
  std::string verified() const { return shop_.Run({"journal", "verify"}).output; }

  Shop shop_;
};

const char* const kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";

}  // namespace

TEST_F(SetCommand, ANatureIsGivenInThePlaceOfARate) {
  ASSERT_EQ(Set({"--vat", "1=22 10 N2", "--vat", "5=N6"}).exit_code, 0);
  const ProgramRun run = shop_.Sell("VEND REP=3, PRE=2.50\nVEND REP=5, PRE=1.00\nCHIU\n");
  EXPECT_THAT(run.output,
              AllOf(HasSubstr("REPARTO 3                  NS*        2,50\n"),
                    HasSubstr("REPARTO 5                  AL*        1,00\n"),
                    HasSubstr("\nNS* = N2 non soggetto\nAL* = N6 operazione non IVA\n")));
  const ProgramRun day = Set({"--vat", "5=N4"});
  EXPECT_EQ(day.exit_code, 2);
  EXPECT_THAT(day.errors, HasSubstr("nothing was set: --vat 5=N4: "));
  const ProgramRun none = Set({"--vat", "5=N7"});
  EXPECT_EQ(none.exit_code, 2);
  EXPECT_THAT(none.errors, HasSubstr("--vat 5=N7: That is no rate."));
}

TEST_F(SetCommand, ChangesWhatIsNamedAndNothingElse) {
  const ProgramRun run =
      Set({"--serial", "99LRM0000042VR", "--vat-number", "12345678903", "--header", "BAR SPORT",
           "--vat", "1=21", "--departments", "1=PANE:4", "--not-in-service"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, shop_.file() +
                            ": set: --serial, --vat-number, --header, --vat, "
                            "--departments, --not-in-service\n");
  EXPECT_EQ(Set({"--in-service", "--departments", "2=CAFFE"}).exit_code, 0);
  const ProgramRun sold = shop_.Sell(
      "VEND REP=1, PRE=1\nVEND REP=2, PRE=1\nVEND REP=6, PRE=1\n"
      "CHIU\n");
  EXPECT_THAT(sold.output, StartsWith("                BAR SPORT\n\n"));
  EXPECT_THAT(sold.output, HasSubstr("PANE                        4%        1,00\n"
                                     "CAFFE                      10%        1,00\n"
                                     "REPARTO 6                  21%        1,00\n"));
  EXPECT_THAT(sold.output, HasSubstr("RT 99LRM0000042VR\n"));
  EXPECT_EQ(verified(), shop_.file() + ": the journal is good: 1 entry, 1 document\n");
}

TEST_F(SetCommand, TheVatNumberOfTheHeaderGoesAlongOrANoteSaysThatNoneIsThere) {
  const ProgramRun run = Set({"--vat-number", "00743110157"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  ASSERT_EQ(Set({"--header", "BAR", "--header", "IVA: 00743110157"}).exit_code, 0);
  EXPECT_EQ(Set({"--vat-number", "12345678903"}).errors,
            "lorimat: note: " + shop_.file() +
                ": no line of the header names the VAT number 12345678903, and the header stays as "
                "it was; --header sets another\n");
  EXPECT_THAT(Set({"--vat-number", "00743110157"}).errors, IsEmpty());
  ASSERT_EQ(Set({"--vat-number", "12345678903", "--header", "BAR"}).exit_code, 0);
  const Shop other;
  ASSERT_EQ(RunConsole({"init", other.file()}).exit_code, 0);
  ASSERT_EQ(RunConsole({"set", other.file(), "--vat-number", "00743110157"}).exit_code, 0);
  EXPECT_THAT(other.Sell(kReceipt).output,
              AllOf(HasSubstr("P.IVA 00743110157\n"), Not(HasSubstr("01234567897"))));
}

TEST_F(SetCommand, SerialAndVatNumberAreFixedBehindADocument) {
  ASSERT_EQ(shop_.Sell(kReceipt).exit_code, 0);
  for (const auto& [option, value] : std::vector<std::pair<std::string, std::string>>{
           {"--serial", "99LRM0000042VR"}, {"--vat-number", "12345678903"}}) {
    const ProgramRun run = Set({option, value, "--header", "ALTRO"});
    EXPECT_EQ(run.exit_code, 2) << option;
    EXPECT_THAT(run.errors,
                StartsWith("lorimat: " + shop_.file() + ": nothing was set: " + option + " " +
                           value + ": Fixed since the register's first document"));
  }
  // Behind a closing, too; and what it has already is no change.
  ASSERT_EQ(shop_.Sell("AZZGIO\n").exit_code, 0);
  EXPECT_EQ(Set({"--serial", "99LRM0000042VR"}).exit_code, 2);
  EXPECT_EQ(Set({"--serial", "99LRM0000001VR"}).exit_code, 0);
  const ProgramRun sold = shop_.Sell(kReceipt);
  EXPECT_THAT(sold.output, AllOf(HasSubstr("NEGOZIO DI PROVA"), HasSubstr("99LRM0000001VR")));
}

TEST_F(SetCommand, RefusesWithTheRule) {
  const ProgramRun run = Set({"--vat", "9=22"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, AllOf(HasSubstr("--vat 9=22: There is no VAT entry 9"),
                                HasSubstr("such as 1=22 or 3=5.5")));
  // A moment that is wrong needs no rule.
  ASSERT_EQ(shop_.Sell(kReceipt).exit_code, 0);
  const ProgramRun day = Set({"--vat", "1=21"});
  EXPECT_EQ(day.exit_code, 2);
  EXPECT_THAT(day.errors, AllOf(HasSubstr("A day is open"), Not(HasSubstr("such as"))));
}

TEST_F(SetCommand, TrainingBeginsAndEnds) {
  ASSERT_EQ(Set({"--training"}).exit_code, 0);
  EXPECT_THAT(shop_.Sell(kReceipt).output, HasSubstr("DOCUMENTO DI PROVA - NON FISCALE"));
  EXPECT_THAT(Set({"--header", "ALTRO"}).errors, HasSubstr("in training"));
  EXPECT_EQ(Set({"--header", "ALTRO", "--no-training"}).exit_code, 0);
  EXPECT_THAT(shop_.Sell(kReceipt).output,
              AllOf(StartsWith("                  ALTRO\n"),
                    Not(HasSubstr("DOCUMENTO DI PROVA - NON FISCALE"))));
  EXPECT_THAT(verified(), HasSubstr("1 document\n"));
}

TEST_F(SetCommand, TheOutboxComesAndGoes) {
  const std::string sent = shop_.folder().Path("sent");
  std::filesystem::create_directory(sent);
  ASSERT_EQ(Set({"--outbox", sent}).exit_code, 0);
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1\nCHIU\nAZZGIO\nRTEJ INVIA\n").exit_code, 0);
  EXPECT_TRUE(std::filesystem::exists(sent + "/corrispettivi_0001.xml"));
  ASSERT_EQ(Set({"--no-outbox"}).exit_code, 0);
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1\nCHIU\nAZZGIO\nRTEJ INVIA\n").exit_code, 0);
  EXPECT_FALSE(std::filesystem::exists(sent + "/corrispettivi_0002.xml"));
}

TEST_F(SetCommand, WantsSomethingToSetAndNoContradiction) {
  const ProgramRun nothing = Set({});
  EXPECT_EQ(nothing.exit_code, 2);
  EXPECT_THAT(nothing.errors, HasSubstr("what is to be set?"));
  EXPECT_EQ(Set({"--training", "--no-training"}).exit_code, 2);
  EXPECT_EQ(Set({"--in-service", "--not-in-service"}).exit_code, 2);
  EXPECT_EQ(Set({"--outbox", "/tmp", "--no-outbox"}).exit_code, 2);
}

TEST_F(SetCommand, ARegisterThatAStartWouldChangeIsLeftAlone) {
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1.00\n").exit_code, 0);
  EXPECT_THAT(Set({"--header", "ALTRO"}).errors, HasSubstr(": holds a receipt of"));
  const Shop other;
  ASSERT_EQ(RunConsole({"init", other.file()}).exit_code, 0);
  ASSERT_EQ(other.Run({"fault", "paper-end"}).exit_code, 0);
  EXPECT_THAT(RunConsole({"set", other.file(), "--header", "ALTRO"}).errors,
              HasSubstr("faults wait in it"));
}

TEST_F(SetCommand, WhatIsUnansweredIsToldToTheHostAllTheSame) {
  const std::string told = "1,00, was stored last, and the register was switched off behind it";
  ASSERT_EQ(shop_.SellAndDie(kReceipt).exit_code, -1);
  for (int times = 0; times < 2; ++times) {
    const ProgramRun run = Set({"--header", "ALTRO"});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.errors, HasSubstr(told));
  }
  EXPECT_EQ(Set({"--vat", "9=22"}).exit_code, 2);
  EXPECT_THAT(shop_.Run({"shell"}).errors, HasSubstr(told));
  EXPECT_THAT(shop_.Run({"shell"}).errors, Not(HasSubstr(told)));
}

TEST_F(SetCommand, AMissingRegisterIsNotMade) {
  const Shop none;
  const ProgramRun run = RunConsole({"set", none.file(), "--header", "ALTRO"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("there is no such register; \"lorimat init " + none.file() +
                                    "\" makes one\n"));
  EXPECT_THAT(none.folder().names(), IsEmpty());
}

TEST_F(SetCommand, AFullDiskChangesNothing) {
  const ProgramRun run =
      RunProgram("/bin/sh", {"-c", "ulimit -f 1; exec \"$0\" set \"$1\" --header ALTRO",
                             std::string(LORIMAT_BIN_FOLDER) + "/lorimat", shop_.file()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(shop_.file() + ": "));
  EXPECT_THAT(shop_.Sell(kReceipt).output, HasSubstr("NEGOZIO DI PROVA"));
  EXPECT_THAT(verified(), HasSubstr("the journal is good"));
}
