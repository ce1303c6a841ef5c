// The shell as a person sits at it: keys, history, completion, the line above the prompt.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "shell_terminal_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

TEST_F(ShellOnTerminal, ALineShowsItsAnswerTheNewPaperAndTheStateOfTheRegister) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(
      run.screen().rows(),
      ElementsAre("lorimat " LORIMAT_VERSION ": a virtual register, in memory.",
                  "\"?\" lists the commands, \".help\" tells of the shell, Ctrl-D leaves it.",
                  kReady, "lorimat>"));
  EXPECT_THAT(run.Enter("VEND REP=1, PRE=2.50"),
              ElementsAre("ok",                                              //
                          "  |             NEGOZIO DI PROVA             |",  //
                          "  |        Via Esempio 1 - 00100 ROMA        |",  //
                          "  |            P.IVA 01234567897             |",  //
                          "  |                                          |",  //
                          "  |          DOCUMENTO COMMERCIALE           |",  //
                          "  |         di vendita o prestazione         |",  //
                          "  |                                          |",  //
                          "  |DESCRIZIONE                IVA Prezzo(EUR)|",  //
                          "  |REPARTO 1                  22%        2,50|",
                          "RECEIPT OPEN  1 item  subtotal 2,50  key registering"));
  // Only what is new.
  EXPECT_THAT(run.Enter("VEND REP=4, PRE=1.50"),
              ElementsAre("ok", "  |REPARTO 4                   4%        1,50|",
                          "RECEIPT OPEN  2 items  subtotal 4,00  key registering"));
  EXPECT_EQ("PAYING  2 items  subtotal 4,00  to pay 3,00  key registering",
            run.Enter("CHIU TEND=CONTANTI, IMP=1.00").back());
  EXPECT_EQ(kReady, run.Enter("CHIU").back());
  EXPECT_THAT(run.screen().unknown(), IsEmpty());
  run.Type(kCtrlD);
  EXPECT_EQ(0, run.WaitForEnd());
}

TEST_F(ShellOnTerminal, WhyTheRegisterRefusedIsTold) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(
      run.Enter("INP TASTO=CHIAVE, NUM='9'"),
      testing::Contains("  Not allowed for the position of the key: 9; it goes from 1 to 4."));
  run.Type(kCtrlD);
  EXPECT_EQ(0, run.WaitForEnd());
}

TEST_F(ShellOnTerminal, AFailureIsToldInWordsWithItsPlace) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(
      run.Enter("VEND REP=1, PER=2"),
      ElementsAre("code 260: ERROR 1/4 : SINTAX ERROR 4 : FIELD NAME NOT FOUND",
                  "  class 1: syntax and command errors", StartsWith("  "), "  VEND REP=1, PER=2",
                  "              ^", "  VEND has no field 'PER'; did you mean PRE?", kReady));
  EXPECT_THAT(run.Enter("CHIU"), Contains(HasSubstr("of the device, RTF_EFPTR_WRONG_STATE.")));
  run.Type(kCtrlD);
  // A slip of the fingers is no failure of the shell.
  EXPECT_EQ(0, run.WaitForEnd());
}

TEST_F(ShellOnTerminal, AnAnswerIsShownBehindOk) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(run.Enter("INFO TIPO=MATRICOLA"), ElementsAre("ok: 99LRM0000001VR", kReady));
  EXPECT_THAT(run.Enter("; a comment"), ElementsAre(kReady));
  EXPECT_THAT(run.Enter(""), ElementsAre(kReady));
}

TEST_F(ShellOnTerminal, TheStateTellsKeyDocumentAndFaults) {
  TerminalRun run(shell(), setting());
  EXPECT_EQ("READY  key programming", run.Enter("PROG").back());
  EXPECT_EQ("READY  key closing", run.Enter("CHIAVE AZZ").back());
  run.Enter("CHIAVE REG");
  EXPECT_EQ("NON-FISCAL  key registering", run.Enter("NOFIS INIZIO").back());
  run.Enter("NOFIS FINE");
  EXPECT_EQ("READY  key registering  fault waiting: paper-end",
            run.Enter(".fault paper-end on PrintRecItemEx").back());
  EXPECT_THAT(run.Enter("VEND REP=1, PRE=1"), Contains(StartsWith("code 12")));
  EXPECT_THAT(run.Enter(".status"), Contains("Faults          none"));
}

TEST_F(ShellOnTerminal, ASaleThatWouldOpenNoReceiptIsToldWithTheWayOut) {
  constexpr const char* kLost =
      "READY  key registering  the next sale opens no receipt: CLEAR, CHIU or RESPRN";
  folder_.Write("sale.cmd", "VEND REP=1, PRE=1.00\nINP TASTO=TOTALE\n");
  TerminalSetting wide = setting();
  wide.columns = 200;
  TerminalRun run(shell(), wide);
  EXPECT_THAT(run.Enter(".status"), Contains("Next sale       opens a receipt"));
  run.Enter("VEND REP=1, PRE=1.00");
  EXPECT_THAT(run.Enter(".status"), Contains("Next sale       goes into what is open"));
  // A payment by key ends the receipt, and the library does not hear of it.
  EXPECT_EQ(kLost, run.Enter("INP TASTO=TOTALE").back());
  EXPECT_THAT(run.Enter(".status"),
              Contains("Next sale       opens no receipt, code 1231; the way out is CLEAR, CHIU or "
                       "RESPRN"));
  const std::vector<std::string> refused = run.Enter("VEND REP=1, PRE=2.00");
  EXPECT_THAT(refused.front(), StartsWith("code 1231"));
  EXPECT_THAT(refused,
              Contains("  No sale opens a receipt now: the library takes one for open, and "
                       "the printer has none. The way out is CLEAR, CHIU or RESPRN."));
  EXPECT_EQ(kLost, refused.back());
  EXPECT_EQ(kReady, run.Enter("CLEAR").back());
  EXPECT_EQ("RECEIPT OPEN  1 item  subtotal 2,00  key registering",
            run.Enter("VEND REP=1, PRE=2.00").back());
  EXPECT_EQ(kReady, run.Enter("CHIU").back());
  // The lines of files are followed as well.
  EXPECT_EQ(kLost, run.Enter(".batch sale.cmd").back());
  EXPECT_EQ(kReady, run.Enter("RESPRN").back());
  EXPECT_EQ(kLost, run.Enter("@sale.cmd").back());
  EXPECT_EQ(kLost, run.Enter("@none.cmd").back());
  EXPECT_EQ(kReady, run.Enter("RESPRN").back());
}

TEST_F(ShellOnTerminal, ABatchTellsWhatCameOfItWithoutItsPaper) {
  folder_.Write("day.cmd", "VEND REP=1, PRE=1.00\nINFO TIPO=MATRICOLA\nVNED\nCHIU\n");
  folder_.Write("good.cmd", "VIS CLI1='A'\n");
  TerminalRun run(shell(), setting());
  const std::vector<std::string> rows = run.Enter(".batch day.cmd");
  EXPECT_EQ("day.cmd:2: answer: 99LRM0000001VR", rows.front());
  EXPECT_THAT(rows, Contains(StartsWith("day.cmd:3: code 257: ERROR 1/1")));
  EXPECT_THAT(rows, Contains("  no command is called 'VNED'; did you mean VEND?"));
  EXPECT_THAT(rows, Contains("lorimat: 1 of 4 lines failed"));
  EXPECT_THAT(rows, Not(Contains(StartsWith("  |"))));
  // The receipt: 3 lines of the shop, 2 of the title, the names of the columns and the sale, 2 of
  // the total, 2 of the payment, 4 of the end with its rule, and 5 blank ones between them.
  EXPECT_EQ("20 lines printed; see \".paper 20\"", rows[rows.size() - 2]);
  EXPECT_EQ(kReady, rows.back());
  EXPECT_EQ("  |             NEGOZIO DI PROVA             |", run.Enter(".paper 20").front());
  EXPECT_THAT(run.Enter(".batch good.cmd"), ElementsAre("ok: 1 line", kReady));
  // A line that is typed goes on as before.
  EXPECT_THAT(run.Enter("VEND REP=1, PRE=2.00"),
              Contains("  |REPARTO 1                  22%        2,00|"));
}

TEST_F(ShellOnTerminal, CtrlCDropsTheLineAndNotTheReceipt) {
  TerminalRun run(shell(), setting());
  run.Type("VEND REP=1, PRE=9");
  run.WaitForTyped("VEND REP=1, PRE=9");
  EXPECT_THAT(run.TypeForPrompt(kCtrlC),
              ElementsAre("The line was dropped; no document is open.", kReady));
  run.Enter("VEND REP=1, PRE=2.00");
  run.Type("CHIU");
  run.WaitForTyped("CHIU");
  EXPECT_THAT(
      run.TypeForPrompt(kCtrlC),
      ElementsAre("The line was dropped; the receipt is open, with 1 item and a subtotal of 2,00.",
                  "RECEIPT OPEN  1 item  subtotal 2,00  key registering"));
  EXPECT_EQ(kReady, run.Enter("CHIU").back());
}

TEST_F(ShellOnTerminal, CtrlDAsksOnceWhenADocumentIsOpen) {
  TerminalRun run(shell(), setting());
  run.Enter("VEND REP=1, PRE=2.00");
  run.Type(kCtrlD);
  run.WaitFor("Leave? (y/n)");
  EXPECT_THAT(run.screen().text(), HasSubstr("\nNote: the receipt is open, with 1 item and a "
                                             "subtotal of 2,00. It is gone with\nthe shell.\n"));
  EXPECT_THAT(run.TypeForPrompt("n\r"),
              Contains("RECEIPT OPEN  1 item  subtotal 2,00  key registering"));
  run.Type(".quit\r");
  run.WaitFor("Leave? (y/n)");
  run.Type("y\r");
  EXPECT_EQ(0, run.WaitForEnd());
}

TEST_F(ShellOnTerminal, CtrlDTwiceLeavesAnOpenDocument) {
  TerminalRun run(shell(), setting());
  run.Enter("NOFIS INIZIO");
  run.Type(kCtrlD);
  run.WaitFor("Leave? (y/n)");
  run.Type(kCtrlD);
  EXPECT_EQ(0, run.WaitForEnd());
}

TEST_F(ShellOnTerminal, ARegisterInAFileTellsWhatBecomesOfTheDocument) {
  std::vector<std::string> arguments = shell();
  arguments.insert(arguments.end(), {"--register", folder_.Path("shop.register")});
  TerminalSetting wide = setting();
  wide.columns = 200;
  {
    TerminalRun run(arguments, wide);
    run.Enter("VEND REP=1, PRE=2.00");
    run.Type(kCtrlD);
    run.WaitFor("It is not paid: the next start of the register voids it.");
    run.WaitFor("Leave? (y/n)");
    run.Type("y\r");
    EXPECT_EQ(0, run.WaitForEnd());
    EXPECT_THAT(run.screen().text(),
                HasSubstr("shop.register keeps a receipt of 20/11/2026 11:03"));
  }
  TerminalRun run(arguments, wide);
  EXPECT_THAT(run.screen().text(), HasSubstr(": a virtual register, kept in "));
  EXPECT_EQ(kReady, run.screen().rows()[run.screen().cursor_row() - 1]);
}

TEST_F(ShellOnTerminal, ADocumentThatIsNoSaleIsEndedAndNotVoided) {
  std::vector<std::string> arguments = shell();
  arguments.insert(arguments.end(), {"--register", folder_.Path("shop.register")});
  TerminalSetting wide = setting();
  wide.columns = 200;
  TerminalRun run(arguments, wide);
  run.Enter("NOFIS INIZIO");
  run.Type(kCtrlD);
  run.WaitFor("Note: a document is open (NON-FISCAL). The next start of the register ends it.");
  EXPECT_THAT(run.screen().text(), Not(HasSubstr("voids it")));
}

TEST_F(ShellOnTerminal, ASignalTellsThatTheReceiptInMemoryIsGone) {
  TerminalSetting wide = setting();
  wide.columns = 200;
  TerminalRun run(shell(), wide);
  run.Enter("VEND REP=1, PRE=2.00");
  run.SendSignal(SIGTERM);
  EXPECT_EQ(128 + SIGTERM, run.WaitForEnd());
  EXPECT_THAT(run.screen().text(),
              HasSubstr("lorimat: note: the shell ends, and the receipt is open, with 1 item and a "
                        "subtotal of 2,00: it is gone with the register in memory\n"));
}

TEST_F(ShellOnTerminal, CtrlCEndsABatchBehindTheLineAtWork) {
  std::string lines;
  for (int i = 0; i < 200000; ++i) lines += "VIS CLI1='A'\n";
  lines = "NOPE\n" + lines;
  folder_.Write("long.cmd", lines);
  TerminalRun run(shell(), setting());
  run.Enter("VEND REP=1, PRE=2.00");
  run.Type(".batch long.cmd\r");
  run.WaitFor("long.cmd:1: code 257");
  const std::vector<std::string> rows = run.TypeForPrompt(kCtrlC);
  EXPECT_THAT(rows, Contains(HasSubstr("long.cmd: stopped by Ctrl-C behind line ")));
  EXPECT_EQ("RECEIPT OPEN  1 item  subtotal 2,00  key registering", rows.back());
}

TEST_F(ShellOnTerminal, BytesThatAreNoCharactersReachTheRegisterAsTheyAre) {
  TerminalRun run(shell(), setting());
  // Latin-1 and UTF-8.
  run.Enter("VEND REP=1, PRE=1.00, DES='CAFF\xE8'");
  run.Enter("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
  EXPECT_THAT(ReadFile(history()), HasSubstr("DES='CAFF\xE8'\n"));
  EXPECT_THAT(ReadFile(history()), HasSubstr("DES='CAFF\xC3\xA8'\n"));
  run.TypeForPrompt(".paper 2\r");
  EXPECT_THAT(run.raw(), HasSubstr("CAFF\xE8"));
  EXPECT_THAT(run.raw(), HasSubstr("CAFF\xC3\xA8"));
  run.Type(kUp);
  run.Type(kUp);
  run.WaitForTyped("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
}

TEST_F(ShellOnTerminal, AccentsAreTypedWithoutALocale) {
  const std::vector<std::map<std::string, std::string>> locales = {
      {{"LC_ALL", ""}, {"LANG", "xx_XX.UTF-8"}},
      {{"LC_ALL", "xx_XX"}},
      {{"LC_ALL", "C"}},
      {{"LC_ALL", ""}, {"LC_CTYPE", "xx_XX.UTF-8"}, {"LANG", "C"}}};
  for (const auto& locale : locales) {
    TerminalSetting other = setting();
    other.environment.insert(locale.begin(), locale.end());
    TerminalRun run(shell(), other);
    run.Type("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
    run.WaitForTyped("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
    EXPECT_EQ("ok", run.TypeForPrompt("\r").front());
    EXPECT_THAT(run.raw(), Not(HasSubstr("\\U")));
    EXPECT_THAT(ReadFile(history()), HasSubstr("DES='CAFF\xC3\xA8'\n"));
  }
}

TEST_F(ShellOnTerminal, AFolderOfTheUserThatIsNotThereIsNotMade) {
  TerminalSetting homeless = setting();
  homeless.environment["HOME"] = folder_.Path("nobody");
  homeless.columns = 200;
  TerminalRun run(shell(), homeless);
  EXPECT_THAT(run.Enter("SUBT"),
              Contains(StartsWith("lorimat: note: the lines typed are not kept: ")));
  EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(ShellOnTerminal, AnAnswerThatIsNeitherYesNorNoIsToldSo) {
  TerminalRun run(shell(), setting());
  run.Enter("VEND REP=1, PRE=2.00");
  for (const char* answer : {"\r", "x\r", "q\r"}) {
    run.Type(kCtrlD);
    run.WaitFor("Leave? (y/n)");
    EXPECT_THAT(run.TypeForPrompt(answer), Contains("That is neither y nor n; the shell goes on."));
  }
  run.Type(kCtrlD);
  run.WaitFor("Leave? (y/n)");
  EXPECT_THAT(run.TypeForPrompt("No\r"), Not(Contains(HasSubstr("neither"))));
}

TEST_F(ShellOnTerminal, ALineOfAMegabyteIsRefusedAndTheNextOneRuns) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(run.Enter("VEND DES='" + std::string(1 << 20, 'x') + "'"),
              Contains(StartsWith("code 274")));
  EXPECT_EQ("ok", run.Enter("VEND REP=1, PRE=1.00").front());
}

TEST_F(ShellOnTerminal, ANulByteCannotBeTyped) {
  TerminalRun run(shell(), setting());
  // Ctrl-V takes the next key as it is.
  run.Type(std::string("SUBT ;\x16") + '\0' + "x");
  run.WaitForTyped("SUBT ;x");
}

TEST_F(ShellOnTerminal, ALineLongerThanTheWindowIsEdited) {
  TerminalRun run(shell(), setting());
  const std::string text(150, 'x');
  run.Type("VEND REP=1, PRE=1.00, DES='" + text + "'");
  run.Type("\x01");
  run.WaitForTyped("");
  EXPECT_THAT(run.TypeForPrompt("\r"), Contains(HasSubstr("subtotal 1,00")));
  EXPECT_THAT(run.screen().unknown(), IsEmpty());
}

TEST_F(ShellOnTerminal, TheHelpFitsTheWindow) {
  TerminalSetting narrow = setting();
  narrow.columns = 60;
  narrow.height = 10;
  TerminalRun run(shell(), narrow);
  for (const std::string& row : run.Enter("? VEND")) EXPECT_LE(row.size(), 66u) << row;
  EXPECT_THAT(run.Enter("?"), Contains("Sale"));
  EXPECT_THAT(run.Enter("? VNED"), Contains("no command is called 'VNED'; did you mean VEND?"));
  EXPECT_THAT(run.Enter(".help"), Contains(StartsWith("  .paper [N]")));
  EXPECT_THAT(run.Enter(":paper"), Contains("The paper is blank."));
  EXPECT_THAT(run.Enter(".papre"),
              Contains("the shell has no word '.papre'; did you mean .paper?"));
}

TEST_F(ShellOnTerminal, ANewWindowIsTaken) {
  TerminalRun run(shell(), setting());
  run.Resize(50, 24);
  run.SendSignal(SIGWINCH);
  for (const std::string& row : run.Enter("? SUBT")) EXPECT_LE(row.size(), 50u) << row;
}

TEST_F(ShellOnTerminal, ColoursAreShownUnlessTheyAreRefused) {
  {
    TerminalRun run(shell(), setting());
    run.Enter("VNED");
    EXPECT_THAT(run.raw(), HasSubstr("\x1b[31m"));
  }
  TerminalSetting plain = setting();
  plain.environment["NO_COLOR"] = "1";
  TerminalRun run(shell(), plain);
  run.Enter("VNED");
  EXPECT_THAT(run.raw(), Not(HasSubstr("\x1b[31m")));
}

TEST_F(ShellOnTerminal, ATerminalThatCanDoNothingServesToo) {
  TerminalSetting dumb = setting();
  dumb.environment["TERM"] = "dumb";
  TerminalRun run(shell(), dumb);
  EXPECT_EQ("ok", run.Enter("VEND REP=1, PRE=1.00").front());
}

TEST_F(ShellOnTerminal, ItSpeaksItalianToThoseWhoReadIt) {
  TerminalSetting italian = setting();
  italian.environment["LC_MESSAGES"] = "it_IT.UTF-8";
  italian.environment["LC_ALL"] = "";
  italian.environment["LC_CTYPE"] = "C.UTF-8";
  TerminalRun run(shell(), italian);
  EXPECT_EQ("SCONTRINO APERTO  1 articolo  subtotale 2,50  chiave registrazione",
            run.Enter("VEND REP=1, PRE=2.50").back());
  EXPECT_THAT(run.Enter("VNED"), Contains(StartsWith("codice 257: ERROR 1/1")));
}

TEST_F(ShellOnTerminal, TerminationGivesTheTerminalBackAndEndsTheShell) {
  TerminalRun run(shell(), setting());
  run.Type("SU");
  run.WaitForTyped("SU");
  run.SendSignal(SIGTERM);
  EXPECT_EQ(128 + SIGTERM, run.WaitForEnd());
}

TEST_F(ShellOnTerminal, EveryKeyIsTaken) {
  TerminalRun run(shell(), setting());
  for (int byte = 1; byte < 256; ++byte) {
    // Those that end the shell, stop it or hold its output.
    if (byte == 0x03 || byte == 0x04 || byte == 0x11 || byte == 0x13 || byte == 0x1a ||
        byte == 0x1c) {
      continue;
    }
    run.Type(std::string("A") + static_cast<char>(byte));
  }
  // Behind all of them.
  run.Type("\r; the last of the keys");
  run.WaitForTyped("; the last of the keys");
  run.TypeForPrompt("\r");
  EXPECT_EQ("ok", run.Enter("VEND REP=1, PRE=1.00").front());
}

TEST_F(ShellOnTerminal, WhatIsTypedAheadRunsInItsOrder) {
  folder_.Write("long.cmd", "VEND REP=1, PRE=1.00\nSUBT\nCHIU\n");
  TerminalRun run(shell(), setting());
  run.Type(".batch long.cmd\rVEND REP=1, PRE=7.00\rCHIU\r; all done");
  run.WaitForTyped("; all done");
  EXPECT_THAT(run.screen().text(), HasSubstr("DOCUMENTO N. 0001-0002"));
  EXPECT_THAT(run.screen().text(), HasSubstr(" 7,00|\n"));
}

}  // namespace

// The picture of the shell in README.md is what a person sees.
TEST(ShellPicture, OfTheReadmeIsTrue) {
  const std::string readme = ReadFile(SourceFile("README.md"));
  const std::string mark = "```text\n$ lorimat shell";
  const size_t begin = readme.find(mark);
  ASSERT_NE(begin, std::string::npos);
  const size_t first = readme.find('\n', begin + mark.size()) + 1;
  const std::string picture = readme.substr(first, readme.find("```\n", first) - first);

  TestFolder folder;
  TerminalRun run({"shell", "--clock", "2026-11-20 11:03"},
                  {.folder = folder.path(), .environment = {{"HOME", folder.path()}}});
  run.Enter("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'''");
  run.Type("ve\t");
  run.WaitForTyped("VEND ");
  run.Type("re\t");
  run.WaitFor("REP=  RESO");
  run.WaitForTyped("VEND RE");
  run.Type("\x15");  // the line is cut
  run.WaitForTyped("");
  run.Enter("VNED REP=2, PRE=1.50");
  run.Enter("CHIU TEND=CONTANTI, IMP=5.00");
  run.Type("\x04");
  EXPECT_EQ(0, run.WaitForEnd());
  EXPECT_EQ(picture, run.screen().text());
}
