// The shell's history, the words of ".fault", the bytes of the line editor, answers in words.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "console/device/fault_words.h"
#include "console/device/register_device.h"
#include "console/host/answer_causes.h"
#include "console/message/failure.h"
#include "console/shell/shell_editor.h"
#include "console/shell/shell_history.h"
#include "console/shell/shell_status.h"
#include "register/client/virtual_register.h"
#include "unit/register/till.h"

namespace lorimat::console {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

class ShellHistoryFile : public testing::Test {
 protected:
  ShellHistoryFile()
      : folder_("/tmp/lorimat-history-" + std::to_string(getpid())),
        file_(folder_ + "/deep/er/history") {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~ShellHistoryFile() override { std::filesystem::remove_all(folder_); }

  std::string content() const {
    std::ifstream file(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  void Write(const std::string& text) const {
    std::filesystem::create_directories(folder_ + "/deep/er");
    std::ofstream(file_, std::ios::binary) << text;
  }
  unsigned mode() const {
    struct stat status {};
    stat(file_.c_str(), &status);
    return status.st_mode & 0777;
  }

  const std::string folder_;
  const std::string file_;
};

TEST_F(ShellHistoryFile, LinesComeBackInTheNextSession) {
  ShellHistory first(file_);
  EXPECT_TRUE(first.Add("VEND REP=1"));
  EXPECT_TRUE(first.Add("VEND DES='caff\xE8 \xC3\xA8 \x1b'"));
  EXPECT_EQ("", first.failure());
  EXPECT_EQ(0600u, mode());
  EXPECT_EQ("VEND REP=1\nVEND DES='caff\xE8 \xC3\xA8 \x1b'\n", content());
  const ShellHistory second(file_);
  EXPECT_THAT(second.lines(), ElementsAre("VEND REP=1", "VEND DES='caff\xE8 \xC3\xA8 \x1b'"));
}

TEST_F(ShellHistoryFile, SomeLinesAreNotKept) {
  ShellHistory history(file_);
  EXPECT_TRUE(history.Add("SUBT"));
  EXPECT_FALSE(history.Add("SUBT"));
  EXPECT_FALSE(history.Add(""));
  EXPECT_FALSE(history.Add(" POPER OPE=1, PASS='2580'"));
  EXPECT_FALSE(history.Add(std::string("a\0b", 3)));
  EXPECT_FALSE(history.Add("a\nb"));
  EXPECT_FALSE(history.Add(std::string(2047, 'x')));
  EXPECT_TRUE(history.Add(std::string(2046, 'x')));
  EXPECT_THAT(history.lines(), SizeIs(2));
}

TEST_F(ShellHistoryFile, TheFileIsKeptToItsNewestLines) {
  std::string text;
  for (int i = 1; i <= 5000; ++i) text += "LINE" + std::to_string(i) + "\n";
  Write(text);
  const ShellHistory history(file_);
  ASSERT_THAT(history.lines(), SizeIs(1000));
  EXPECT_EQ("LINE4001", history.lines().front());
  EXPECT_EQ("LINE5000", history.lines().back());
  EXPECT_THAT(content(), StartsWith("LINE4001\n"));
  EXPECT_EQ(0600u, mode());
  EXPECT_FALSE(std::filesystem::exists(file_ + ".new"));
}

TEST_F(ShellHistoryFile, NothingIsWrittenThroughALinkBesideIt) {
  std::string text;
  for (int i = 1; i <= 5000; ++i) text += "LINE" + std::to_string(i) + "\n";
  Write(text);
  const std::string victim = folder_ + "/victim";
  std::ofstream(victim) << "untouched";
  std::filesystem::create_symlink(victim, file_ + ".new");
  const ShellHistory history(file_);
  EXPECT_THAT(content(), StartsWith("LINE4001\n"));
  std::ifstream file(victim);
  EXPECT_EQ("untouched", std::string(std::istreambuf_iterator<char>(file), {}));
}

TEST_F(ShellHistoryFile, AFileThatOthersMayReadIsClosedToThem) {
  Write("SUBT\n");
  chmod(file_.c_str(), 0666);
  const ShellHistory history(file_);
  EXPECT_EQ(0600u, mode());
}

TEST_F(ShellHistoryFile, OddFilesAreReadAsFarAsTheyMakeSense) {
  std::string text = std::string("nul\0byte\n", 9) + std::string(100000, 'x') + "\n\nSUBT";
  Write(text);
  const ShellHistory history(file_);
  EXPECT_THAT(history.lines(), ElementsAre("SUBT"));
  EXPECT_EQ("", history.failure());
}

TEST_F(ShellHistoryFile, AHistoryThatCannotBeKeptSaysWhyAndServesTheSession) {
  Write("x");
  ShellHistory below_a_file(file_ + "/history");
  EXPECT_TRUE(below_a_file.Add("SUBT"));
  EXPECT_THAT(below_a_file.failure(), HasSubstr("Not a directory"));
  EXPECT_THAT(below_a_file.lines(), ElementsAre("SUBT"));
  ShellHistory folder(folder_);
  EXPECT_EQ(folder_ + ": it is no regular file", folder.failure());
  ShellHistory nowhere("");
  EXPECT_TRUE(nowhere.Add("SUBT"));
  EXPECT_EQ("neither HOME nor XDG_STATE_HOME names a folder", nowhere.failure());
}

TEST_F(ShellHistoryFile, APipeInItsPlaceDoesNotKeepTheShellWaiting) {
  const std::string pipe = folder_ + "/pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  ShellHistory history(pipe);
  EXPECT_THAT(history.failure(), HasSubstr("no regular file"));
  EXPECT_TRUE(history.Add("SUBT"));
}

TEST(ShellHistoryPlace, IsTheUsersOwnFolder) {
  const char* home = std::getenv("HOME");
  const std::string before = home != nullptr ? home : "";
  setenv("HOME", "/home/rossi", 1);
  unsetenv("XDG_STATE_HOME");
  EXPECT_EQ("/home/rossi/.local/state/lorimat/history", HistoryFile());
  setenv("XDG_STATE_HOME", "/state", 1);
  EXPECT_EQ("/state/lorimat/history", HistoryFile());
  setenv("XDG_STATE_HOME", "relative", 1);  // counts as not set
  EXPECT_EQ("/home/rossi/.local/state/lorimat/history", HistoryFile());
  unsetenv("XDG_STATE_HOME");
  unsetenv("HOME");
  EXPECT_EQ("", HistoryFile());
  setenv("HOME", before.c_str(), 1);
}

// --- Faults in words.

TEST(ShellFaultWords, ANameAloneIsTheNextOperation) {
  const lorimat::Fault fault = ReadFault("paper-end");
  EXPECT_EQ("paper-end", fault.name);
  EXPECT_EQ(lorimat::FaultWhen::kNext, fault.when);
  EXPECT_FALSE(fault.operation);
}

TEST(ShellFaultWords, MomentAndOperationMayStandBehind) {
  const lorimat::Fault third = ReadFault("paper-end nth 3 on PrintRecItemEx");
  EXPECT_EQ(lorimat::FaultWhen::kNth, third.when);
  EXPECT_EQ(3, third.count);
  EXPECT_EQ(ClientOperation::kPrintRecItemEx, third.operation);
  EXPECT_EQ(lorimat::FaultWhen::kEvery, ReadFault("off-line every").when);
  const lorimat::Fault busy = ReadFault("  busy   --times   4 ");
  EXPECT_EQ(lorimat::FaultWhen::kTimes, busy.when);
  EXPECT_EQ(4, busy.count);
  EXPECT_EQ(123, ReadFault("code 123").code);
}

std::string RefusalOf(const std::string& words) {
  try {
    ReadFault(words);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "taken";
}

TEST(ShellFaultWords, WhatMakesNoFaultIsRefusedWithACause) {
  EXPECT_EQ("no fault is called 'paper-edn'; did you mean paper-end?", RefusalOf("paper-edn"));
  EXPECT_EQ("no fault is called 'zzz'", RefusalOf("zzz"));
  EXPECT_EQ("a number has to stand behind 'code'", RefusalOf("code"));
  EXPECT_EQ("a number has to stand behind 'code'", RefusalOf("code 12x"));
  EXPECT_EQ("a number has to stand behind 'nth'", RefusalOf("busy nth"));
  EXPECT_EQ("the number behind 'nth' is out of range: 99999999999999",
            RefusalOf("busy nth 99999999999999"));
  EXPECT_EQ("'evry' has no place there; did you mean every?", RefusalOf("busy evry"));
  EXPECT_EQ("no operation of the device is called 'PrintRecItemXe'; did you mean PrintRecItemEx?",
            RefusalOf("paper-end on PrintRecItemXe"));
  EXPECT_EQ("'on' has no place there; did you mean on?", RefusalOf("busy on"));
}

TEST(ShellFaultWords, TheListHasEveryFaultAndThoseThatWait) {
  lorimat::FaultPlan plan;
  EXPECT_THAT(FaultList(plan, 0), HasSubstr("No fault waits.\n"));
  plan.Add(ReadFault("paper-end nth 2"));
  const std::string list = FaultList(plan, 0);
  for (const lorimat::FaultKind& kind : lorimat::FaultKinds()) {
    EXPECT_THAT(list, HasSubstr("\n  " + std::string(kind.name) + " ")) << kind.name << "\n"
                                                                        << "\n" + list;
  }
  EXPECT_THAT(list, HasSubstr("Waiting:\n  paper-end ("));
}

// --- Bytes of the line editor.

class ShellEditorBytes : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    before_ = std::setlocale(LC_CTYPE, nullptr);
    // The C library has both built in.
    ASSERT_NE(std::setlocale(LC_CTYPE, GetParam()), nullptr);
  }
  void TearDown() override { std::setlocale(LC_CTYPE, before_.c_str()); }
  std::string before_;
};

TEST_P(ShellEditorBytes, ComeBackAsTheyWere) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(all, ToBytes(ToWide(all)));
  for (const std::string text : {"caff\xC3\xA8", "caff\xE8", "\xE2\x82\xAC", "\xE2\x82", "\xC3",
                                 "\xED\xB2\x80", "\xF0\x9F\x98\x80", "\xFF\xFE"}) {
    EXPECT_EQ(text, ToBytes(ToWide(text)));
    EXPECT_EQ("x" + text + "y", ToBytes(ToWide("x" + text + "y")));
  }
}

INSTANTIATE_TEST_SUITE_P(Locales, ShellEditorBytes, testing::Values("C", "C.UTF-8"));

// --- Answers in words.

TEST(ShellAnswers, AnOwnCodeHasItsClassAndCause) {
  const std::string text = CausesText(265, 80);
  EXPECT_THAT(text, StartsWith("  class 1: syntax and command errors\n  "));
}

TEST(ShellAnswers, AResultOfTheDeviceIsNamed) {
  // 203 with the bit of class 4.
  const std::string text = CausesText(1227, 80);
  EXPECT_THAT(text, StartsWith("  class 4: results of the device client of 200 and above\n"
                               "  Result 203 of the device, RTF_EFPTR_REC_EMPTY."));
  // 107 passed twice.
  EXPECT_THAT(CausesText(1643, 0), HasSubstr("Passed twice: 107 -> 619 -> 1643."));
}

TEST(ShellAnswers, ANumberThatIsNoCodeHasNoCause) {
  EXPECT_EQ("", CausesText(0, 80));
  EXPECT_EQ("", CausesText(-5, 80));
  EXPECT_EQ("", CausesText(5000000000L, 80));
}

class ShellHints : public testing::Test {
 protected:
  ShellHints()
      : language_(Language::FromText(
            "[OPCOD]\n10=VEND\n[10]\n1=REP\n4=PRE\n7=DES\n[EQU]\nCONTANTI=1\n")) {}
  const Language language_;
};

TEST_F(ShellHints, ThePlaceIsMarkedAndABetterWordNamed) {
  EXPECT_EQ("  VNED REP=1\n  ^\n  no command is called 'VNED'; did you mean VEND?\n",
            ParserHint(language_, "VNED REP=1", 80));
  EXPECT_EQ("  VEND REP=1, PER=2\n              ^\n  VEND has no field 'PER'; did you mean PRE?\n",
            ParserHint(language_, "VEND REP=1, PER=2", 80));
}

TEST_F(ShellHints, ACommaIsTakenForADecimalComma) {
  EXPECT_EQ(
      "  VEND REP=1, PRE=1,50\n                    ^\n"
      "  a comma ends field PRE, and '50' is taken for the name of the next one;\n"
      "  decimals stand behind a point; did you mean PRE=1.50?\n",
      ParserHint(language_, "VEND REP=1, PRE=1,50", 80));
}

TEST_F(ShellHints, ALineThatIsReadHasNone) {
  EXPECT_EQ("", ParserHint(language_, "VEND REP=1, PRE=2", 80));
  EXPECT_EQ("", ParserHint(language_, "@file", 80));
  EXPECT_EQ("", ParserHint(language_, "", 80));
}

TEST_F(ShellHints, CharactersCountNotBytes) {
  EXPECT_THAT(ParserHint(language_, "VEND DES='\xC3\xA8', X=1", 80),
              StartsWith("  VEND DES='\xC3\xA8', X=1\n                ^\n"));
}

TEST_F(ShellHints, APlaceBeyondTheWindowIsNotMarked) {
  const std::string line = "VEND DES='" + std::string(200, 'x') + "', Q=1";
  EXPECT_THAT(ParserHint(language_, line, 80), Not(HasSubstr("^")));
  EXPECT_THAT(ParserHint(language_, line, 80), HasSubstr("VEND has no field 'Q'"));
}

TEST_F(ShellHints, NoControlCharacterIsShown) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string line = "VEND " + std::string(2, static_cast<char>(byte)) + "=1";
    for (const char c : ParserHint(language_, line, 80)) {
      EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << byte;
    }
  }
}

// --- The state of the register.

TEST(ShellStatusLine, TrainingStandsThereAsLongAsItLasts) {
  lorimat::VirtualRegister device;
  EXPECT_EQ("READY  key registering", StatusLine(StateOf(device)));
  ASSERT_EQ(0, device.BeginTraining());
  EXPECT_EQ("READY  key registering  TRAINING", StatusLine(StateOf(device)));
  EXPECT_THAT(StatusText(StateOf(device), "opens a receipt", {}, 0),
              HasSubstr("\nTraining   yes\n"));
  ASSERT_EQ(0, device.EndTraining());
  EXPECT_EQ("READY  key registering", StatusLine(StateOf(device)));
}

TEST(ShellStatusLine, TheOpenDocumentIsNamed) {
  const struct {
    const char* line;
    const char* words;
    const char* name;
  } kDocuments[] = {{"VEND REP=1, PRE=2.00", "the receipt", "receipt"},
                    {"FATTURA TIPO=2, RIGA1='A'", "the invoice", "invoice"},
                    {"NOTACRED", "the credit note", "credit note"},
                    {"DOCANNULLO", "the void document", "void"}};
  for (const auto& [line, words, name] : kDocuments) {
    lorimat::Till till{lorimat::RegisterSettings()};
    // What a void document takes back.
    ASSERT_EQ(0, till.Run("VEND REP=1, PRE=1.00"));
    ASSERT_EQ(0, till.Run("CHIU"));
    ASSERT_EQ(0, till.Run(line)) << line;
    ASSERT_EQ(0, till.Run("VEND REP=1, PRE=1.00")) << line;
    const bool receipt = std::string(name) == "receipt";
    EXPECT_EQ(std::string(words) + " is open, with " + (receipt ? "2 items" : "1 item") +
                  " and a subtotal of " + (receipt ? "3,00" : "1,00"),
              OpenDocumentWords(StateOf(till.device)));
    const Json json = StateJson(StateOf(till.device), TranslatorMemory::NextSale::kUnknown);
    EXPECT_EQ(name, json["open_document"]["kind"]);
    EXPECT_EQ(receipt ? 300 : 100, json["open_document"]["subtotal_cents"]);
    EXPECT_EQ("unknown", json["next_sale"]);
  }
}

TEST(ShellStatusLine, EveryPositionOfTheKeyHasItsName) {
  const struct {
    const char* line;
    const char* name;
  } kKeys[] = {{"CHIAVE REG", "registering"},
               {"CHIAVE LET", "reading"},
               {"CHIAVE POS=3", "closing"},
               {"CHIAVE POS=4", "programming"}};
  for (const auto& [line, name] : kKeys) {
    lorimat::Till till{lorimat::RegisterSettings()};
    ASSERT_EQ(0, till.Run(line)) << line;
    EXPECT_EQ(std::string("READY  key ") + name, StatusLine(StateOf(till.device)));
  }
}

TEST(ShellStatusLine, EveryFaultThatWaitsIsNamed) {
  lorimat::VirtualRegister device;
  device.AddFault({.name = "paper-end"});
  device.AddFault({.name = "busy", .when = lorimat::FaultWhen::kEvery});
  EXPECT_EQ("READY  key registering  fault waiting: paper-end, busy", StatusLine(StateOf(device)));
  EXPECT_THAT(StatusText(StateOf(device), "", {{"Register", "shop"}}, 0),
              HasSubstr("\nRegister  shop\n"));
  EXPECT_EQ("", OpenDocumentWords(StateOf(device)));
}

}  // namespace

}  // namespace lorimat::console
