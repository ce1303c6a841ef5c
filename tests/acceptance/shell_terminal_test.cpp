// The shell as a person sits at it: keys, history, completion, the line above the prompt.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "program_run.h"
#include "terminal_run.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kUp = "\x1b[A";
constexpr const char* kDown = "\x1b[B";
constexpr const char* kLeft = "\x1b[D";
constexpr const char* kCtrlC = "\x03";
constexpr const char* kCtrlD = "\x04";
constexpr const char* kReady = "READY  key registering";

class ShellOnTerminal : public testing::Test {
 protected:
  TerminalSetting setting() const {
    return {.folder = folder_.path(), .environment = {{"HOME", folder_.path()}}};
  }
  static std::vector<std::string> shell() { return {"shell", "--clock", "2026-11-20 11:03"}; }
  std::string history() const { return folder_.path(".local/state/lorimat/history"); }

  TestFolder folder_;
};

TEST_F(ShellOnTerminal, ALineShowsItsAnswerTheNewPaperAndTheStateOfTheRegister) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(
      run.screen().rows(),
      ElementsAre("lorimat " LORIMAT_VERSION ": a virtual register, in memory.",
                  "\"?\" lists the commands, \".help\" tells of the shell, Ctrl-D leaves it.",
                  kReady, "lorimat>"));
  EXPECT_THAT(run.enter("VEND REP=1, PRE=2.50"),
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
  EXPECT_THAT(run.enter("VEND REP=4, PRE=1.50"),
              ElementsAre("ok", "  |REPARTO 4                   4%        1,50|",
                          "RECEIPT OPEN  2 items  subtotal 4,00  key registering"));
  EXPECT_EQ("PAYING  2 items  subtotal 4,00  to pay 3,00  key registering",
            run.enter("CHIU TEND=CONTANTI, IMP=1.00").back());
  EXPECT_EQ(kReady, run.enter("CHIU").back());
  EXPECT_THAT(run.screen().unknown(), IsEmpty());
  run.type(kCtrlD);
  EXPECT_EQ(0, run.wait_for_end());
}

TEST_F(ShellOnTerminal, WhyTheRegisterRefusedIsTold) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(
      run.enter("INP TASTO=CHIAVE, NUM='9'"),
      testing::Contains("  Not allowed for the position of the key: 9; it goes from 1 to 4."));
  run.type(kCtrlD);
  EXPECT_EQ(0, run.wait_for_end());
}

TEST_F(ShellOnTerminal, AFailureIsToldInWordsWithItsPlace) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(
      run.enter("VEND REP=1, PER=2"),
      ElementsAre("code 260: ERROR 1/4 : SINTAX ERROR 4 : FIELD NAME NOT FOUND",
                  "  class 1: syntax and command errors", StartsWith("  "), "  VEND REP=1, PER=2",
                  "              ^", "  VEND has no field 'PER'; did you mean PRE?", kReady));
  EXPECT_THAT(run.enter("CHIU"), Contains(HasSubstr("of the device, RTF_EFPTR_WRONG_STATE.")));
  run.type(kCtrlD);
  // A slip of the fingers is no failure of the shell.
  EXPECT_EQ(0, run.wait_for_end());
}

TEST_F(ShellOnTerminal, AnAnswerIsShownBehindOk) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(run.enter("INFO TIPO=MATRICOLA"), ElementsAre("ok: 99LRM0000001VR", kReady));
  EXPECT_THAT(run.enter("; a comment"), ElementsAre(kReady));
  EXPECT_THAT(run.enter(""), ElementsAre(kReady));
}

TEST_F(ShellOnTerminal, TheStateTellsKeyDocumentAndFaults) {
  TerminalRun run(shell(), setting());
  EXPECT_EQ("READY  key programming", run.enter("PROG").back());
  EXPECT_EQ("READY  key closing", run.enter("CHIAVE AZZ").back());
  run.enter("CHIAVE REG");
  EXPECT_EQ("NON-FISCAL  key registering", run.enter("NOFIS INIZIO").back());
  run.enter("NOFIS FINE");
  EXPECT_EQ("READY  key registering  fault waiting: paper-end",
            run.enter(".fault paper-end on PrintRecItemEx").back());
  EXPECT_THAT(run.enter("VEND REP=1, PRE=1"), Contains(StartsWith("code 12")));
  EXPECT_THAT(run.enter(".status"), Contains("Faults          none"));
}

TEST_F(ShellOnTerminal, ASaleThatWouldOpenNoReceiptIsToldWithTheWayOut) {
  constexpr const char* kLost =
      "READY  key registering  the next sale opens no receipt: CLEAR, CHIU or RESPRN";
  folder_.write("sale.cmd", "VEND REP=1, PRE=1.00\nINP TASTO=TOTALE\n");
  TerminalSetting wide = setting();
  wide.columns = 200;
  TerminalRun run(shell(), wide);
  EXPECT_THAT(run.enter(".status"), Contains("Next sale       opens a receipt"));
  run.enter("VEND REP=1, PRE=1.00");
  EXPECT_THAT(run.enter(".status"), Contains("Next sale       goes into what is open"));
  // A payment by key ends the receipt, and the library does not hear of it.
  EXPECT_EQ(kLost, run.enter("INP TASTO=TOTALE").back());
  EXPECT_THAT(run.enter(".status"),
              Contains("Next sale       opens no receipt, code 1231; the way out is CLEAR, CHIU or "
                       "RESPRN"));
  const std::vector<std::string> refused = run.enter("VEND REP=1, PRE=2.00");
  EXPECT_THAT(refused.front(), StartsWith("code 1231"));
  EXPECT_THAT(refused,
              Contains("  No sale opens a receipt now: the library takes one for open, and "
                       "the printer has none. The way out is CLEAR, CHIU or RESPRN."));
  EXPECT_EQ(kLost, refused.back());
  EXPECT_EQ(kReady, run.enter("CLEAR").back());
  EXPECT_EQ("RECEIPT OPEN  1 item  subtotal 2,00  key registering",
            run.enter("VEND REP=1, PRE=2.00").back());
  EXPECT_EQ(kReady, run.enter("CHIU").back());
  // The lines of files are followed as well.
  EXPECT_EQ(kLost, run.enter(".batch sale.cmd").back());
  EXPECT_EQ(kReady, run.enter("RESPRN").back());
  EXPECT_EQ(kLost, run.enter("@sale.cmd").back());
  EXPECT_EQ(kLost, run.enter("@none.cmd").back());
  EXPECT_EQ(kReady, run.enter("RESPRN").back());
}

TEST_F(ShellOnTerminal, TheLineIsEditedBeforeItRuns) {
  TerminalRun run(shell(), setting());
  run.type("VEND REP=1, PRE=2.5");
  run.wait_for_typed("VEND REP=1, PRE=2.5");
  run.type("\b1");
  run.wait_for_typed("VEND REP=1, PRE=2.1");
  run.type("\x01");  // to the beginning
  run.wait_for_typed("");
  run.type("  ");
  run.wait_for_typed("  ");
  EXPECT_THAT(run.type_for_prompt("\r"), Contains(HasSubstr("subtotal 2,10")));
  run.type("SUBX");
  run.type(kLeft);
  run.wait_for_typed("SUB");
  run.type("T\x0b");  // and cut the rest
  run.wait_for_typed("SUBT");
  EXPECT_EQ("ok", run.type_for_prompt("\r").front());
}

TEST_F(ShellOnTerminal, TheUpKeyBringsLinesBackAlsoInTheNextSession) {
  {
    TerminalRun run(shell(), setting());
    run.enter("VEND REP=1, PRE=1.00");
    run.enter("SUBT");
    run.type(kUp);
    run.wait_for_typed("SUBT");
    run.type(kUp);
    run.wait_for_typed("VEND REP=1, PRE=1.00");
    run.type(kDown);
    run.wait_for_typed("SUBT");
    run.type_for_prompt("\r");
    run.enter(" PRMSG MSG='A SECRET'");
    run.enter("POPER OPE=3, PASS='A SECRET'");
    run.enter("CHIU");
    run.type(kCtrlD);
    EXPECT_EQ(0, run.wait_for_end());
  }
  EXPECT_EQ("VEND REP=1, PRE=1.00\nSUBT\nCHIU\n", read_file(history()));
  struct stat status {};
  ASSERT_EQ(0, stat(history().c_str(), &status));
  EXPECT_EQ(0600u, status.st_mode & 0777);
  TerminalRun run(shell(), setting());
  run.type(kUp);
  run.wait_for_typed("CHIU");
}

TEST_F(ShellOnTerminal, CtrlRSearchesTheHistory) {
  TerminalRun run(shell(), setting());
  run.enter("VEND REP=1, PRE=1.00");
  run.enter("SUBT");
  run.enter("CHIU");
  run.type("\x12VEN");
  run.wait_for("VEND REP=1, PRE=1.00");
  EXPECT_THAT(run.type_for_prompt("\x1b\r"), Contains(HasSubstr("subtotal 1,00")));
}

TEST_F(ShellOnTerminal, TheFolderOfTheHistoryMayBeNamed) {
  TerminalSetting named = setting();
  named.environment["XDG_STATE_HOME"] = folder_.path("state");
  TerminalRun run(shell(), named);
  run.enter("SUBT");
  EXPECT_EQ("SUBT\n", folder_.read("state/lorimat/history"));
}

TEST_F(ShellOnTerminal, AHistoryThatCannotBeKeptIsANote) {
  TerminalSetting none = setting();
  none.environment["HOME"] = "/proc/none";
  none.columns = 200;
  TerminalRun run(shell(), none);
  EXPECT_THAT(run.enter("SUBT"),
              Contains(StartsWith("lorimat: note: the lines typed are not kept: /proc/none/")));
  EXPECT_THAT(run.enter("CHIU"), Not(Contains(HasSubstr("not kept"))));
  run.type(kUp);
  run.wait_for_typed("CHIU");
}

TEST_F(ShellOnTerminal, TabCompletesCommandsFieldsAndValues) {
  TerminalRun run(shell(), setting());
  run.type("ve\t");
  run.wait_for_typed("VEND ");
  run.type("rep\t");
  run.wait_for_typed("VEND REP=");
  run.type("1, de\t");
  run.wait_for_typed("VEND REP=1, DES=");
  run.type("'X', pre\t5.00");
  run.wait_for_typed("VEND REP=1, DES='X', PRE=5.00");
  EXPECT_THAT(run.type_for_prompt("\r"),
              Contains("  |X                          22%        5,00|"));
  run.type("chiu ten\tcon\t");
  run.wait_for_typed("chiu TEND=CONTANTI");
  EXPECT_EQ(kReady, run.type_for_prompt("\r").back());
}

TEST_F(ShellOnTerminal, SeveralCandidatesAreListedBelowTheLine) {
  TerminalRun run(shell(), setting());
  run.type("perc\t");
  run.wait_for("PERCA  PERCB");
  run.wait_for_typed("PERC");
  run.type("a\t");
  run.wait_for_typed("PERCA ");
}

TEST_F(ShellOnTerminal, TabCompletesNamesOfFiles) {
  folder_.write("tuesday.cmd", "VEND REP=1, PRE=3.00\nCHIU\n");
  TerminalRun run(shell(), setting());
  run.type("@tue\t");
  run.wait_for_typed("@tuesday.cmd");
  EXPECT_THAT(run.type_for_prompt("\r"), Contains("ok (2 Lines   0 msec)"));
  run.type(".ba\t");
  run.wait_for_typed(".batch ");
  run.type("tu\t");
  run.wait_for_typed(".batch tuesday.cmd");
  EXPECT_THAT(run.type_for_prompt("\r"), Contains("ok: 2 lines"));
}

TEST_F(ShellOnTerminal, ABatchTellsWhatCameOfItWithoutItsPaper) {
  folder_.write("day.cmd", "VEND REP=1, PRE=1.00\nINFO TIPO=MATRICOLA\nVNED\nCHIU\n");
  folder_.write("good.cmd", "VIS CLI1='A'\n");
  TerminalRun run(shell(), setting());
  const std::vector<std::string> rows = run.enter(".batch day.cmd");
  EXPECT_EQ("day.cmd:2: answer: 99LRM0000001VR", rows.front());
  EXPECT_THAT(rows, Contains(StartsWith("day.cmd:3: code 257: ERROR 1/1")));
  EXPECT_THAT(rows, Contains("  no command is called 'VNED'; did you mean VEND?"));
  EXPECT_THAT(rows, Contains("lorimat: 1 of 4 lines failed"));
  EXPECT_THAT(rows, Not(Contains(StartsWith("  |"))));
  // The receipt: 3 lines of the shop, 2 of the title, the names of the columns and the sale, 2 of
  // the total, 2 of the payment, 4 of the end with its rule, and 5 blank ones between them.
  EXPECT_EQ("20 lines printed; see \".paper 20\"", rows[rows.size() - 2]);
  EXPECT_EQ(kReady, rows.back());
  EXPECT_EQ("  |             NEGOZIO DI PROVA             |", run.enter(".paper 20").front());
  EXPECT_THAT(run.enter(".batch good.cmd"), ElementsAre("ok: 1 line", kReady));
  // A line that is typed goes on as before.
  EXPECT_THAT(run.enter("VEND REP=1, PRE=2.00"),
              Contains("  |REPARTO 1                  22%        2,00|"));
}

TEST_F(ShellOnTerminal, CtrlCDropsTheLineAndNotTheReceipt) {
  TerminalRun run(shell(), setting());
  run.type("VEND REP=1, PRE=9");
  run.wait_for_typed("VEND REP=1, PRE=9");
  EXPECT_THAT(run.type_for_prompt(kCtrlC),
              ElementsAre("The line was dropped; no document is open.", kReady));
  run.enter("VEND REP=1, PRE=2.00");
  run.type("CHIU");
  run.wait_for_typed("CHIU");
  EXPECT_THAT(
      run.type_for_prompt(kCtrlC),
      ElementsAre("The line was dropped; the receipt is open, with 1 item and a subtotal of 2,00.",
                  "RECEIPT OPEN  1 item  subtotal 2,00  key registering"));
  EXPECT_EQ(kReady, run.enter("CHIU").back());
}

TEST_F(ShellOnTerminal, CtrlDAsksOnceWhenADocumentIsOpen) {
  TerminalRun run(shell(), setting());
  run.enter("VEND REP=1, PRE=2.00");
  run.type(kCtrlD);
  run.wait_for("Leave? (y/n)");
  EXPECT_THAT(run.screen().text(), HasSubstr("\nNote: the receipt is open, with 1 item and a "
                                             "subtotal of 2,00. It is gone with\nthe shell.\n"));
  EXPECT_THAT(run.type_for_prompt("n\r"),
              Contains("RECEIPT OPEN  1 item  subtotal 2,00  key registering"));
  run.type(".quit\r");
  run.wait_for("Leave? (y/n)");
  run.type("y\r");
  EXPECT_EQ(0, run.wait_for_end());
}

TEST_F(ShellOnTerminal, CtrlDTwiceLeavesAnOpenDocument) {
  TerminalRun run(shell(), setting());
  run.enter("NOFIS INIZIO");
  run.type(kCtrlD);
  run.wait_for("Leave? (y/n)");
  run.type(kCtrlD);
  EXPECT_EQ(0, run.wait_for_end());
}

TEST_F(ShellOnTerminal, ARegisterInAFileTellsWhatBecomesOfTheDocument) {
  std::vector<std::string> arguments = shell();
  arguments.insert(arguments.end(), {"--register", folder_.path("shop.register")});
  TerminalSetting wide = setting();
  wide.columns = 200;
  {
    TerminalRun run(arguments, wide);
    run.enter("VEND REP=1, PRE=2.00");
    run.type(kCtrlD);
    run.wait_for("It is not paid: the next start of the register voids it.");
    run.wait_for("Leave? (y/n)");
    run.type("y\r");
    EXPECT_EQ(0, run.wait_for_end());
    EXPECT_THAT(run.screen().text(),
                HasSubstr("shop.register keeps a receipt of 20/11/2026 11:03"));
  }
  TerminalRun run(arguments, wide);
  EXPECT_THAT(run.screen().text(), HasSubstr(": a virtual register, kept in "));
  EXPECT_EQ(kReady, run.screen().rows()[run.screen().cursor_row() - 1]);
}

TEST_F(ShellOnTerminal, ADocumentThatIsNoSaleIsEndedAndNotVoided) {
  std::vector<std::string> arguments = shell();
  arguments.insert(arguments.end(), {"--register", folder_.path("shop.register")});
  TerminalSetting wide = setting();
  wide.columns = 200;
  TerminalRun run(arguments, wide);
  run.enter("NOFIS INIZIO");
  run.type(kCtrlD);
  run.wait_for("Note: a document is open (NON-FISCAL). The next start of the register ends it.");
  EXPECT_THAT(run.screen().text(), Not(HasSubstr("voids it")));
}

TEST_F(ShellOnTerminal, ASignalTellsThatTheReceiptInMemoryIsGone) {
  TerminalSetting wide = setting();
  wide.columns = 200;
  TerminalRun run(shell(), wide);
  run.enter("VEND REP=1, PRE=2.00");
  run.send_signal(SIGTERM);
  EXPECT_EQ(128 + SIGTERM, run.wait_for_end());
  EXPECT_THAT(run.screen().text(),
              HasSubstr("lorimat: note: the shell ends, and the receipt is open, with 1 item and a "
                        "subtotal of 2,00: it is gone with the register in memory\n"));
}

TEST_F(ShellOnTerminal, CtrlCEndsABatchBehindTheLineAtWork) {
  std::string lines;
  for (int i = 0; i < 200000; ++i) lines += "VIS CLI1='A'\n";
  lines = "NOPE\n" + lines;
  folder_.write("long.cmd", lines);
  TerminalRun run(shell(), setting());
  run.enter("VEND REP=1, PRE=2.00");
  run.type(".batch long.cmd\r");
  run.wait_for("long.cmd:1: code 257");
  const std::vector<std::string> rows = run.type_for_prompt(kCtrlC);
  EXPECT_THAT(rows, Contains(HasSubstr("long.cmd: stopped by Ctrl-C behind line ")));
  EXPECT_EQ("RECEIPT OPEN  1 item  subtotal 2,00  key registering", rows.back());
}

TEST_F(ShellOnTerminal, BytesThatAreNoCharactersReachTheRegisterAsTheyAre) {
  TerminalRun run(shell(), setting());
  // Latin-1 and UTF-8.
  run.enter("VEND REP=1, PRE=1.00, DES='CAFF\xE8'");
  run.enter("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
  EXPECT_THAT(read_file(history()), HasSubstr("DES='CAFF\xE8'\n"));
  EXPECT_THAT(read_file(history()), HasSubstr("DES='CAFF\xC3\xA8'\n"));
  run.type_for_prompt(".paper 2\r");
  EXPECT_THAT(run.raw(), HasSubstr("CAFF\xE8"));
  EXPECT_THAT(run.raw(), HasSubstr("CAFF\xC3\xA8"));
  run.type(kUp);
  run.type(kUp);
  run.wait_for_typed("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
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
    run.type("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
    run.wait_for_typed("VEND REP=1, PRE=1.00, DES='CAFF\xC3\xA8'");
    EXPECT_EQ("ok", run.type_for_prompt("\r").front());
    EXPECT_THAT(run.raw(), Not(HasSubstr("\\U")));
    EXPECT_THAT(read_file(history()), HasSubstr("DES='CAFF\xC3\xA8'\n"));
  }
}

TEST_F(ShellOnTerminal, AFolderOfTheUserThatIsNotThereIsNotMade) {
  TerminalSetting homeless = setting();
  homeless.environment["HOME"] = folder_.path("nobody");
  homeless.columns = 200;
  TerminalRun run(shell(), homeless);
  EXPECT_THAT(run.enter("SUBT"),
              Contains(StartsWith("lorimat: note: the lines typed are not kept: ")));
  EXPECT_THAT(folder_.names(), IsEmpty());
}

TEST_F(ShellOnTerminal, AnAnswerThatIsNeitherYesNorNoIsToldSo) {
  TerminalRun run(shell(), setting());
  run.enter("VEND REP=1, PRE=2.00");
  for (const char* answer : {"\r", "x\r", "q\r"}) {
    run.type(kCtrlD);
    run.wait_for("Leave? (y/n)");
    EXPECT_THAT(run.type_for_prompt(answer),
                Contains("That is neither y nor n; the shell goes on."));
  }
  run.type(kCtrlD);
  run.wait_for("Leave? (y/n)");
  EXPECT_THAT(run.type_for_prompt("No\r"), Not(Contains(HasSubstr("neither"))));
}

TEST_F(ShellOnTerminal, ALineOfAMegabyteIsRefusedAndTheNextOneRuns) {
  TerminalRun run(shell(), setting());
  EXPECT_THAT(run.enter("VEND DES='" + std::string(1 << 20, 'x') + "'"),
              Contains(StartsWith("code 274")));
  EXPECT_EQ("ok", run.enter("VEND REP=1, PRE=1.00").front());
}

TEST_F(ShellOnTerminal, ANulByteCannotBeTyped) {
  TerminalRun run(shell(), setting());
  // Ctrl-V takes the next key as it is.
  run.type(std::string("SUBT ;\x16") + '\0' + "x");
  run.wait_for_typed("SUBT ;x");
}

TEST_F(ShellOnTerminal, ALineLongerThanTheWindowIsEdited) {
  TerminalRun run(shell(), setting());
  const std::string text(150, 'x');
  run.type("VEND REP=1, PRE=1.00, DES='" + text + "'");
  run.type("\x01");
  run.wait_for_typed("");
  EXPECT_THAT(run.type_for_prompt("\r"), Contains(HasSubstr("subtotal 1,00")));
  EXPECT_THAT(run.screen().unknown(), IsEmpty());
}

TEST_F(ShellOnTerminal, TheHelpFitsTheWindow) {
  TerminalSetting narrow = setting();
  narrow.columns = 60;
  narrow.height = 10;
  TerminalRun run(shell(), narrow);
  for (const std::string& row : run.enter("? VEND")) EXPECT_LE(row.size(), 66u) << row;
  EXPECT_THAT(run.enter("?"), Contains("Sale"));
  EXPECT_THAT(run.enter("? VNED"), Contains("no command is called 'VNED'; did you mean VEND?"));
  EXPECT_THAT(run.enter(".help"), Contains(StartsWith("  .paper [N]")));
  EXPECT_THAT(run.enter(":paper"), Contains("The paper is blank."));
  EXPECT_THAT(run.enter(".papre"),
              Contains("the shell has no word '.papre'; did you mean .paper?"));
}

TEST_F(ShellOnTerminal, ANewWindowIsTaken) {
  TerminalRun run(shell(), setting());
  run.resize(50, 24);
  run.send_signal(SIGWINCH);
  for (const std::string& row : run.enter("? SUBT")) EXPECT_LE(row.size(), 50u) << row;
}

TEST_F(ShellOnTerminal, ColoursAreShownUnlessTheyAreRefused) {
  {
    TerminalRun run(shell(), setting());
    run.enter("VNED");
    EXPECT_THAT(run.raw(), HasSubstr("\x1b[31m"));
  }
  TerminalSetting plain = setting();
  plain.environment["NO_COLOR"] = "1";
  TerminalRun run(shell(), plain);
  run.enter("VNED");
  EXPECT_THAT(run.raw(), Not(HasSubstr("\x1b[31m")));
}

TEST_F(ShellOnTerminal, ATerminalThatCanDoNothingServesToo) {
  TerminalSetting dumb = setting();
  dumb.environment["TERM"] = "dumb";
  TerminalRun run(shell(), dumb);
  EXPECT_EQ("ok", run.enter("VEND REP=1, PRE=1.00").front());
}

TEST_F(ShellOnTerminal, ItSpeaksItalianToThoseWhoReadIt) {
  TerminalSetting italian = setting();
  italian.environment["LC_MESSAGES"] = "it_IT.UTF-8";
  italian.environment["LC_ALL"] = "";
  italian.environment["LC_CTYPE"] = "C.UTF-8";
  TerminalRun run(shell(), italian);
  EXPECT_EQ("SCONTRINO APERTO  1 articolo  subtotale 2,50  chiave registrazione",
            run.enter("VEND REP=1, PRE=2.50").back());
  EXPECT_THAT(run.enter("VNED"), Contains(StartsWith("codice 257: ERROR 1/1")));
}

TEST_F(ShellOnTerminal, TerminationGivesTheTerminalBackAndEndsTheShell) {
  TerminalRun run(shell(), setting());
  run.type("SU");
  run.wait_for_typed("SU");
  run.send_signal(SIGTERM);
  EXPECT_EQ(128 + SIGTERM, run.wait_for_end());
}

TEST_F(ShellOnTerminal, EveryKeyIsTaken) {
  TerminalRun run(shell(), setting());
  for (int byte = 1; byte < 256; ++byte) {
    // Those that end the shell, stop it or hold its output.
    if (byte == 0x03 || byte == 0x04 || byte == 0x11 || byte == 0x13 || byte == 0x1a ||
        byte == 0x1c) {
      continue;
    }
    run.type(std::string("A") + static_cast<char>(byte));
  }
  // Behind all of them.
  run.type("\r; the last of the keys");
  run.wait_for_typed("; the last of the keys");
  run.type_for_prompt("\r");
  EXPECT_EQ("ok", run.enter("VEND REP=1, PRE=1.00").front());
}

TEST_F(ShellOnTerminal, WhatIsTypedAheadRunsInItsOrder) {
  folder_.write("long.cmd", "VEND REP=1, PRE=1.00\nSUBT\nCHIU\n");
  TerminalRun run(shell(), setting());
  run.type(".batch long.cmd\rVEND REP=1, PRE=7.00\rCHIU\r; all done");
  run.wait_for_typed("; all done");
  EXPECT_THAT(run.screen().text(), HasSubstr("DOCUMENTO N. 0001-0002"));
  EXPECT_THAT(run.screen().text(), HasSubstr(" 7,00|\n"));
}

}  // namespace

// The picture of the shell in README.md is what a person sees.
TEST(ShellPicture, OfTheReadmeIsTrue) {
  const std::string readme = read_file(source_file("README.md"));
  const std::string mark = "```text\n$ lorimat shell";
  const size_t begin = readme.find(mark);
  ASSERT_NE(begin, std::string::npos);
  const size_t first = readme.find('\n', begin + mark.size()) + 1;
  const std::string picture = readme.substr(first, readme.find("```\n", first) - first);

  TestFolder folder;
  TerminalRun run({"shell", "--clock", "2026-11-20 11:03"},
                  {.folder = folder.path(), .environment = {{"HOME", folder.path()}}});
  run.enter("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'''");
  run.type("ve\t");
  run.wait_for_typed("VEND ");
  run.type("re\t");
  run.wait_for("REP=  RESO");
  run.wait_for_typed("VEND RE");
  run.type("\x15");  // the line is cut
  run.wait_for_typed("");
  run.enter("VNED REP=2, PRE=1.50");
  run.enter("CHIU TEND=CONTANTI, IMP=5.00");
  run.type("\x04");
  EXPECT_EQ(0, run.wait_for_end());
  EXPECT_EQ(picture, run.screen().text());
}
