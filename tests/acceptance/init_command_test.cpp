// "init": a new register in a file, whole or not at all.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "program_run.h"

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

class InitCommand : public testing::Test {
 protected:
  std::string file() const { return folder_.Path("shop.register"); }
  ProgramRun Init(std::vector<std::string> options, const ProgramSetting& setting = {}) const {
    std::vector<std::string> arguments = {"init", file()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunConsole(arguments, setting);
  }
  // The paper of lines on the register that was made.
  ProgramRun Sell(const std::string& lines) const {
    return RunConsole({"run", "-", "--register", file(), "--clock", "2024-03-15 10:30"},
                      {.input = lines});
  }
  std::string verified() const {
    return RunConsole({"journal", "verify", "--register", file()}).output;
  }

  TestFolder folder_;
};

}  // namespace

TEST_F(InitCommand, MakesARegisterThatCanSellAtOnce) {
  const ProgramRun run = Init({});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, file() + ": a new register, serial number 99LRM0000001VR\n");
  EXPECT_THAT(folder_.names(), ElementsAre("shop.register"));
  EXPECT_EQ(verified(), file() + ": the journal is good: 0 entries, 0 documents\n");
  // The paper is that of a register in memory.
  const std::string lines = "VEND REP=1, PRE=2.50\nCHIU\n";
  EXPECT_EQ(Sell(lines).output,
            RunConsole({"run", "-", "--clock", "2024-03-15 10:30"}, {.input = lines}).output);
}

TEST_F(InitCommand, TheShopsOwnValuesStandOnItsPaper) {
  const ProgramRun made =
      Init({"--serial", "99LRM0000042VR", "--vat-number", "12345678903", "--header", "BAR SPORT",
            "--header", "P.IVA 12345678903", "--vat", "2=5,50", "--departments",
            "1=PANE: INTEGRALE:2:2,50", "--departments", "40=GELATO"});
  ASSERT_EQ(made.exit_code, 0) << made.errors;
  const ProgramRun run = Sell("VEND REP=1\nVEND REP=40, PRE=1.00\nCHIU\n");
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, StartsWith("                BAR SPORT\n"
                                     "            P.IVA 12345678903\n"
                                     "\n"
                                     "          DOCUMENTO COMMERCIALE\n"));
  EXPECT_THAT(run.output, HasSubstr("PANE: INTEGRALE           5,5%        2,50\n"
                                    "GELATO                     22%        1,00\n"));
  EXPECT_THAT(run.output, HasSubstr("            RT 99LRM0000042VR\n"));
  EXPECT_THAT(verified(), HasSubstr("the journal is good: 1 entry, 1 document\n"));
}

TEST_F(InitCommand, TheHeaderOfTheTrialShopHasTheVatNumberThatWasGiven) {
  ASSERT_EQ(Init({"--vat-number", "12345678903"}).exit_code, 0);
  EXPECT_THAT(Sell("VEND REP=1, PRE=1\nCHIU\n").output,
              StartsWith("             NEGOZIO DI PROVA\n"
                         "        Via Esempio 1 - 00100 ROMA\n"
                         "            P.IVA 12345678903\n"));
}

TEST_F(InitCommand, RatesMayBeGivenAsAListOrOneByOne) {
  const std::vector<std::vector<std::string>> forms = {
      {"--vat", "21 10 5,5 4.25 7"},
      {"--vat", "21;10;5.50;4,25;7"},
      {"--vat", "21%", "--vat", "3=5,5%", "--vat", "4,25 7"},
      {"--vat", "5=7 4=4,25", "--vat", "3=05.5", "--vat", "1=21"},
  };
  for (const std::vector<std::string>& form : forms) {
    ASSERT_EQ(Init(form).exit_code, 0) << form[1];
    const std::string folder = folder_.Path("tables");
    ASSERT_EQ(RunConsole({"backup", folder, "--register", file()}).exit_code, 0);
    EXPECT_EQ(folder_.Read("tables/vat.txt"),
              "PROG INIZIO\r\nPIVA IVA=1, ALIQ=21.00\r\nPIVA IVA=2, ALIQ=10.00\r\n"
              "PIVA IVA=3, ALIQ=5.50\r\nPIVA IVA=4, ALIQ=4.25\r\nPIVA IVA=5, ALIQ=7.00\r\n"
              "ENDPROG\r\n")
        << form[1];
    fs::remove_all(folder);
    fs::remove(file());
  }
}

TEST_F(InitCommand, TrainingAndServiceShowOnThePaper) {
  ASSERT_EQ(Init({"--training"}).exit_code, 0);
  EXPECT_THAT(Sell("VEND REP=1, PRE=1\nCHIU\n").output,
              HasSubstr("DOCUMENTO DI PROVA - NON FISCALE"));
  EXPECT_THAT(verified(), HasSubstr("0 documents"));
  fs::remove(file());
  ASSERT_EQ(Init({"--not-in-service"}).exit_code, 0);
  EXPECT_THAT(Sell("VEND REP=1, PRE=1\nCHIU\n").output, HasSubstr("REGISTRATORE NON IN SERVIZIO"));
}

TEST_F(InitCommand, SummariesGoIntoTheOutboxWhereverTheRegisterIsOpened) {
  fs::create_directory(folder_.Path("sent"));
  const ProgramRun made =
      RunConsole({"init", "shop.register", "--outbox", "sent"}, {.folder = folder_.path()});
  ASSERT_EQ(made.exit_code, 0) << made.errors;
  ASSERT_EQ(Sell("VEND REP=1, PRE=1\nCHIU\nAZZGIO\nRTEJ INVIA\n").exit_code, 0);
  EXPECT_TRUE(fs::exists(folder_.Path("sent/corrispettivi_0001.xml")));
}

TEST_F(InitCommand, AnEmptyLogIsInNobodysWay) {
  const TestFolder folder;
  const std::string file = folder.Path("q");
  const std::string log = folder.Write("q-wal", "");
  EXPECT_EQ(RunConsole({"init", file}).exit_code, 0);
  EXPECT_THAT(RunConsole({"journal", "verify", "--register", file}).output,
              HasSubstr("the journal is good"));
  const std::string other = folder.Path("other");
  folder.Write("other-wal", "stored");
  EXPECT_EQ(RunConsole({"init", other}).exit_code, 2);
  EXPECT_EQ(folder.Read("other-wal"), "stored");
}

TEST_F(InitCommand, RefusesWithTheValueTheRuleAndAnExample) {
  struct Case {
    std::vector<std::string> options;
    std::string told;  // the value
    std::string cause;
    std::string example;  // at the end of the rule
  };
  const std::string serial =
      "A serial number has 11 to 32 capital letters and digits, such as 99LRM0000001VR\n";
  const std::string vat = "such as 01234567897\n";
  const std::string rate =
      "such as 1=22 or 3=5.5, or the nature of sales without tax, N1 to N6, such as 5=N4; ";
  const std::string department = "such as 1=PANE, 1=PANE:4 or 1=PANE:4:2,50; ";
  const std::vector<Case> cases = {
      {{"--serial", "99LRM1"}, "--serial 99LRM1", "6 characters, and it takes 11 to 32", serial},
      {{"--serial", "99lrm0000001vr"}, "--serial 99lrm0000001vr", ": 'l'. ", serial},
      {{"--serial", "99LRM000000\xC3\x89VR"},
       "--serial 99LRM000000\xC3\x89VR",
       ": '\xC3\x89'. ",
       serial},
      {{"--serial", std::string(5000, 'A')}, "--serial AAAA", "5000 characters", serial},
      {{"--vat-number", "0123456789"},
       "--vat-number 0123456789",
       "10 characters, and it takes 11. ",
       vat},
      {{"--vat-number", "0123456789A"}, "--vat-number 0123456789A", "Not allowed", vat},
      {{"--vat-number", "01234567890"}, "--vat-number 01234567890", "would have to be 7", vat},
      {{"--header", "A", "--header", std::string(43, 'B')},
       "--header BBBB",
       "43 characters, of 42 at most",
       "such as --header \"BAR SPORT\"; an accented letter counts two\n"},
      // 22 letters of two bytes.
      {{"--header",
        "\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3"
        "\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80\xC3\x80"
        "\xC3\x80\xC3\x80\xC3\x80"},
       "--header \xC3\x80",
       "44 characters, of 42 at most",
       "an accented letter counts two\n"},
      {{"--header", "A\nB"}, "--header A\\x0AB", "Not allowed", "\"BAR SPORT\""},
      {{"--header", "A", "--header", "B", "--header", "C", "--header", "D", "--header", "E",
        "--header", "F", "--header", "G"},
       "--header",
       "7; it goes from 1 to 6",
       "\"BAR SPORT\""},
      {{"--vat", "100"}, "--vat 100", "no rate", rate},
      {{"--vat", "-5"}, "--vat -5", "no rate", rate},
      {{"--vat", "1=5,505"}, "--vat 1=5,505", "no rate", rate},
      {{"--vat", "1=5,"}, "--vat 1=5,", "no rate", rate},
      {{"--vat", "1=,5"}, "--vat 1=,5", "no rate", rate},
      {{"--vat", "1="}, "--vat 1=", "no rate", rate},
      {{"--vat", "x=5"}, "--vat x=5", "no rate", rate},
      {{"--vat", "0=5"}, "--vat 0=5", "no rate", rate},
      {{"--vat", "99999999999=5"}, "--vat 99999999999=5", "no rate", rate},
      {{"--vat", ";"}, "--vat ;", "no rate in it", rate},
      {{"--vat", "22,10"}, "--vat 22,10", "Write 22.10 for one rate, or --vat 22 --vat 10.", rate},
      {{"--vat", "1=22 2=10,4"},
       "--vat 2=10,4",
       "Write 2=10.4 for one rate, or --vat 2=10 --vat 3=4.",
       rate},
      {{"--vat", "22 1=10"}, "--vat 1=10", "Entry 1 is given twice", rate},
      {{"--vat", "6=22"}, "--vat 6=22", "They are 1 to 5", rate},
      {{"--departments", "PANE"}, "--departments PANE", "no department", department},
      {{"--departments", "1=A:B:2"}, "--departments 1=A:B:2", "no department", department},
      {{"--departments", "1=A:1:2,5O"}, "--departments 1=A:1:2,5O", "no department", department},
      {{"--departments", "1=A:"}, "--departments 1=A:", "no department", department},
      {{"--departments", "x=A"}, "--departments x=A", "no department", department},
      {{"--departments", "41=A"}, "--departments 41=A", "41", department},
      {{"--departments", "0=A"}, "--departments 0=A", "0", department},
      {{"--departments", "1=A:6"}, "--departments 1=A:6", "They are 1 to 5", department},
      {{"--departments", "1=A:1:100000"}, "--departments 1=A:1:100000", "99.999,99", department},
      {{"--departments", "1=" + std::string(33, 'A')}, "--departments 1=AAA", "33", department},
      {{"--departments", "1=A\nB"}, "--departments 1=A\\x0AB", "Not allowed", department},
      {{"--departments",
        "1=A\x1B"
        "B"},
       "--departments 1=A\\x1BB",
       "Not allowed",
       department},
      {{"--departments", "1=A", "--departments", "1=B"},
       "--departments 1=B",
       "Department 1 is given twice",
       department},
      {{"--outbox", "/nowhere"}, "--outbox /nowhere", "is no folder", "such as /srv/outbox\n"},
  };
  for (const Case& one : cases) {
    std::vector<std::string> options = one.options;
    // As a person has to write it.
    if (options[1] == "-5") options = {"--vat=-5"};
    const ProgramRun run = Init(options);
    EXPECT_EQ(run.exit_code, 2) << one.told;
    EXPECT_THAT(run.output, IsEmpty()) << one.told;
    EXPECT_THAT(run.errors, StartsWith("lorimat: " + one.told)) << one.told;
    std::string errors = run.errors;
    if (const size_t at = errors.find("they are"); at != errors.npos) errors[at] = 'T';
    EXPECT_THAT(errors, AllOf(HasSubstr(one.cause), HasSubstr(one.example))) << one.told;
    EXPECT_THAT(folder_.names(), IsEmpty()) << one.told;
  }
}

TEST_F(InitCommand, AnEmptyTextIsRefusedForEveryOption) {
  for (const char* option :
       {"--serial", "--vat-number", "--header", "--vat", "--departments", "--outbox"}) {
    const ProgramRun run = Init({option, ""});
    EXPECT_EQ(run.exit_code, 2) << option;
    EXPECT_THAT(run.errors, HasSubstr(std::string(option) + ": must not be empty")) << option;
    EXPECT_THAT(folder_.names(), IsEmpty()) << option;
  }
}

TEST_F(InitCommand, RefusesToOverwriteAnything) {
  folder_.Write("file", "mine");
  folder_.Write("empty", "");
  fs::create_directory(folder_.Path("folder"));
  fs::create_symlink("nowhere", folder_.Path("dangling"));
  fs::create_symlink("file", folder_.Path("link"));
  const std::vector<std::string> before = folder_.names();
  for (const char* name : {"file", "empty", "folder", "dangling", "link"}) {
    const ProgramRun run = RunConsole({"init", folder_.Path(name)});
    EXPECT_EQ(run.exit_code, 2) << name;
    EXPECT_EQ(run.errors,
              "lorimat: " + folder_.Path(name) +
                  ": is there already, and stays as it is; \"lorimat set\" changes a register\n");
  }
  EXPECT_EQ(folder_.names(), before);
  EXPECT_EQ(folder_.Read("file"), "mine");
  ASSERT_EQ(Init({}).exit_code, 0);
  const std::string bytes = folder_.Read("shop.register");
  EXPECT_EQ(Init({"--serial", "99LRM0000042VR"}).exit_code, 2);
  EXPECT_TRUE(folder_.Read("shop.register") == bytes);
}

TEST_F(InitCommand, ALogThatWouldBeTakenForItsOwnIsNamed) {
  folder_.Write("shop.register-wal", "of another");
  const ProgramRun run = Init({});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("shop.register-wal is, which would be taken for a part of it"));
  EXPECT_THAT(folder_.names(), ElementsAre("shop.register-wal"));
}

TEST_F(InitCommand, NamesThatAreNoneAreRefused) {
  for (const auto& [name, told] : std::vector<std::pair<std::string, std::string>>{
           {"-", "standard input and output are no register"},
           {folder_.Path("none/shop"), "none/shop: cannot be opened: No such file or directory"},
           {folder_.Path(""), "Is a directory"},
           {folder_.Path("."), "Is a directory"},
           {folder_.Path(std::string(300, 'x')), "File name too long"}}) {
    const ProgramRun run = RunConsole({"init", name});
    EXPECT_EQ(run.exit_code, 2) << name;
    EXPECT_THAT(run.errors, HasSubstr(told)) << name;
  }
  EXPECT_THAT(folder_.names(), IsEmpty());
  // A name that means something to a database is the name of a file.
  for (const std::string name : {":memory:", "file:x?mode=memory"}) {
    ASSERT_EQ(RunConsole({"init", name}, {.folder = folder_.path()}).exit_code, 0) << name;
    EXPECT_TRUE(fs::exists(folder_.Path(name))) << name;
  }
}

TEST_F(InitCommand, AFolderThatCannotBeWrittenIsNamed) {
  fs::permissions(folder_.path(), fs::perms(0555));
  const ProgramRun run = Init({}, {.as_nobody = true});
  fs::permissions(folder_.path(), fs::perms(0777));
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + file() + ": cannot be made: Permission denied\n");
  EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(InitCommand, AFullDiskLeavesNothing) {
  for (const int blocks : {0, 1, 8, 64, 200}) {  // of 512 bytes; a new register has some 260
    const ProgramRun run = RunProgram(
        "/bin/sh", {"-c", "ulimit -f " + std::to_string(blocks) + "; exec \"$0\" init \"$1\"",
                    std::string(LORIMAT_BIN_FOLDER) + "/lorimat", file()});
    EXPECT_EQ(run.exit_code, 2) << blocks;
    EXPECT_EQ(run.errors, "lorimat: " + file() + ": cannot be written: File too large\n");
    EXPECT_THAT(folder_.names(), IsEmpty()) << blocks;
  }
}

TEST_F(InitCommand, WhatFailsBehindTheRegisterLeavesIt) {
  const ProgramRun run = Init({}, {.output_file = "/dev/full"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors,
              HasSubstr("the register is there and whole, and its report is missing: "));
  EXPECT_THAT(verified(), HasSubstr("the journal is good"));
}

TEST_F(InitCommand, SpeaksItalian) {
  const ProgramSetting italian = {.environment = {{"LANG", "it_IT.UTF-8"}}};
  EXPECT_THAT(Init({"--serial", "X"}, italian).errors,
              AllOf(HasSubstr("la matricola"), EndsWith("come 99LRM0000001VR\n")));
  EXPECT_EQ(Init({}, italian).output,
            file() + ": un nuovo registratore, matricola 99LRM0000001VR\n");
}

// --- With the tables of a backup

namespace {

class InitFromBackup : public InitCommand {
 protected:
  void SetUp() override {
    const std::string rows =
        folder_.Write("rows", "'8001','LATTE',4,1.50\r\n'8002','PANE',4,0.00\r\n");
    const ProgramRun run = RunConsole(
        {"run", "-", "--register", folder_.Path("first")},
        {.input = "PROG\n"
                  "PREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, IVA=2, PRE=12.50, GRU=3\n"
                  "PIVA IVA=1, ALIQ=21\nPINT RIGA1='BAR ''SPORT'''\nPOPZ CASSETTO=SI\n"
                  "PGRU GRU=2, DES='L''ORTO'\nPOPER OPE=3, DES='ANNA', PASS='1234'\n"
                  "PSTEN ST=1, DES='BUONO', FLAG=1\n"
                  "PTAST POS=42, COD=MACRO01, MACRO='N1 REP01 '\nENDPROG\n"
                  "EMLINK CMD='UA', FILE='" +
                  rows + "', AZZERA\n"});
    ASSERT_EQ(run.exit_code, 0) << run.errors;
    ASSERT_EQ(RunConsole({"backup", tables(), "--register", folder_.Path("first")}).exit_code, 0);
  }
  std::string tables() const { return folder_.Path("tables"); }
};

}  // namespace

TEST_F(InitFromBackup, HasItsTables) {
  const ProgramRun run = Init({"--from", tables(), "--serial", "99LRM0000042VR"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, file() + ": a new register, serial number 99LRM0000042VR\n");
  EXPECT_EQ(run.errors,
            "lorimat: note: the backup is of 99LRM0000001VR, and this is 99LRM0000042VR\n");
  EXPECT_THAT(verified(), HasSubstr("the journal is good: 0 entries, 0 documents"));
  const std::string again = folder_.Path("again");
  ASSERT_EQ(RunConsole({"backup", again, "--register", file()}).exit_code, 0);
  for (const auto& entry : fs::directory_iterator(tables())) {
    const std::string name = entry.path().filename();
    if (name == "manifest.json") continue;
    EXPECT_EQ(folder_.Read("again/" + name), folder_.Read("tables/" + name)) << name;
  }
}

TEST_F(InitFromBackup, OptionsGoBeforeIt) {
  ASSERT_EQ(Init({"--from", tables(), "--header", "ALTRO", "--departments", "1=PANE:4:1,00",
                  "--vat", "4=5"})
                .exit_code,
            0);
  const ProgramRun sold = Sell("VEND REP=1\nCHIU\n");
  EXPECT_THAT(sold.output, StartsWith("                  ALTRO\n\n"));
  EXPECT_THAT(sold.output, HasSubstr("PANE                        5%        1,00\n"));
}

TEST_F(InitFromBackup, ABackupThatIsNotWholeMakesNoRegister) {
  const std::vector<std::string> before = folder_.names();
  EXPECT_THAT(Init({"--from", folder_.Path("none")}).errors, HasSubstr("there is no such folder"));
  folder_.Write("tables/vat.txt", "PROG INIZIO\r\nENDPROG\r\n");
  const ProgramRun run = Init({"--from", tables()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("vat.txt"));
  EXPECT_EQ(folder_.names(), before);
}

TEST_F(InitFromBackup, ARelativeNameIsThatOfTheFolderOfTheStart) {
  const ProgramRun run =
      RunConsole({"init", "second", "--from", "tables"}, {.folder = folder_.path()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_TRUE(fs::exists(folder_.Path("second")));
}
