#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "console/check/batch_check.h"
#include "console/message/finding_text.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Language& Words() {
  static const Language language = [] {
    std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/language/merkelin.ini");
    return Language::FromText(
        std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
  }();
  return language;
}

std::vector<Finding> FindingsOf(const std::vector<std::string>& lines) {
  Findings findings;
  BatchCheck check(Words(), findings);
  for (size_t i = 0; i < lines.size(); ++i) {
    SourceLine line;
    line.number = i + 1;
    line.text = lines[i];
    line.length = line.text.size();
    check.Take(line);
  }
  check.Finish();
  return findings.sorted();
}

// "line rule code" of each finding.
std::vector<std::string> Traps(const std::vector<std::string>& lines) {
  std::vector<std::string> found;
  for (const Finding& finding : FindingsOf(lines)) {
    found.push_back(std::to_string(finding.line) + " " + finding.rule() + " " +
                    std::to_string(finding.code));
  }
  return found;
}

constexpr const char* kSale = "VEND REP=1, PRE=10.00";

}  // namespace

TEST(SequenceTraps, ADocumentThatEndsByItselfLosesTheNextSale) {
  EXPECT_THAT(Traps({kSale, "CHIU", "DOCANNULLO AUTO", kSale, kSale, "CHIU", kSale, "CHIU"}),
              ElementsAre("4 no-receipt-opens 1231"));
  EXPECT_THAT(Traps({kSale, "CHIU", "DOCANNULLO AUTO", "VEND PRE=1.00", kSale}),
              ElementsAre("5 no-receipt-opens 1231"))
      << "a line that its command refuses is no sale";
  for (const char* way_out : {"CLEAR", "RESPRN", "CHIU", "INP", "INP TASTO=CLEAR"}) {
    EXPECT_THAT(Traps({kSale, "CHIU", "DOCANNULLO AUTO", way_out, kSale, "CHIU"}), IsEmpty())
        << way_out;
  }
  EXPECT_THAT(Traps({kSale, "CHIU", "DOCANNULLO AUTO", "INP TASTO=CHIUDETRAN", kSale}),
              ElementsAre("5 no-receipt-opens 1231"));
  // A void whose lines follow is a document like any other.
  EXPECT_THAT(Traps({kSale, "CHIU", "DOCANNULLO", kSale, "CHIU", kSale, "CHIU"}), IsEmpty());
}

TEST(SequenceTraps, KeysThatEndTheReceiptLoseTheNextSale) {
  for (const char* key : {"TOTALE", "T_CARTA", "T_CREDITO", "ANNULLADOC"}) {
    EXPECT_THAT(Traps({kSale, std::string("INP TASTO=") + key, kSale}),
                ElementsAre("3 no-receipt-opens 1231"))
        << key;
  }
  EXPECT_THAT(Traps({kSale, "INP TASTO=ST01", kSale, "CHIU"}), IsEmpty());
  EXPECT_THAT(Traps({"INP TASTO=APRETRANS", kSale, "INP TASTO=LOTTERIA",
                     "INP LOTTERIA='ABCD1234', TASTO=TOTALE", kSale, "CHIU"}),
              IsEmpty())
      << "the key behind LOTTERIA brings a code and pays nothing";
}

// Behind a key that opens a document nobody knows what the next sale goes into: no trap is told.
TEST(SequenceTraps, KeysThatOpenADocumentMakeTheStateUnknown) {
  const std::vector<std::string> lost = {kSale, "INP TASTO=TOTALE", kSale};
  EXPECT_THAT(Traps(lost), ElementsAre("3 no-receipt-opens 1231"));
  for (const int key : {FunctionCode::kOpenRefundDoc, FunctionCode::kOpenCancelDoc,
                        FunctionCode::kInvoice, FunctionCode::kMacro01}) {
    std::vector<std::string> opened = lost;
    opened.insert(opened.begin() + 2, "INP TASTO=" + std::to_string(key));
    EXPECT_THAT(Traps(opened), IsEmpty()) << key;
  }
}

TEST(SequenceTraps, TheKeyTurnsBackByItsKeyToo) {
  EXPECT_THAT(Traps({"CHIAVE LET", "INP TASTO=CHIAVEREG", kSale, "CHIU"}), IsEmpty());
  EXPECT_THAT(Traps({"CHIAVE LET", kSale}), ElementsAre("2 key-turned 1231"));
}

TEST(SequenceTraps, AFileThatLeavesTheTranslatorSoIsWarnedOf) {
  EXPECT_THAT(Traps({kSale, "CHIU", "DOCANNULLO AUTO"}), ElementsAre("3 next-sale-lost 0"));
  EXPECT_THAT(Traps({kSale, "INP TASTO=TOTALE", "; the end", "SUBT"}),
              ElementsAre("2 next-sale-lost 0"));
  EXPECT_THAT(Traps({kSale, "INP TASTO=TOTALE", "CLEAR"}), IsEmpty());
}

TEST(SequenceTraps, ASubtotalThatIsNotTheSumIsFound) {
  EXPECT_THAT(Traps({kSale, "CHKSUB IMP=10.01", kSale, "CHIU"}),
              ElementsAre("2 subtotal-differs 1236"));
  // 3 x 1.25 = 3.75; a quarter of 3.33 = 0.8325, in cents 0.83; 10 + 3.75 + 0.83 - 1 + 0.5
  EXPECT_THAT(Traps({kSale, "VEND REP=1, QTA=3, PRE=1.25", "VEND REP=1, QTA=0.25, PRE=3.33",
                     "SCONTO IMP=1.00", "MAGGIORAZ IMP=0.50", "CHKSUB IMP=14.08", "CHIU"}),
              IsEmpty());
  EXPECT_THAT(Traps({kSale, "PERCA PERC=10", "CHKSUB IMP=1.00", "CHIU"}), IsEmpty())
      << "how the device rounds is not known";
  EXPECT_THAT(Traps({"VEND ART='8001'", "CHKSUB IMP=1.00", "CHIU"}), IsEmpty());
}

TEST(SequenceTraps, APaymentThatDoesNotCoverTheReceiptIsFound) {
  EXPECT_THAT(Traps({kSale, "CHIU IMP=5.00", kSale, "CHIU"}),
              ElementsAre("3 sale-behind-payment 1231"));
  EXPECT_THAT(Traps({kSale, "CHIU IMP=5.00", "CHIU TEND=CARTA, IMP=4.99"}),
              ElementsAre("3 paid-too-little 0"));
  EXPECT_THAT(Traps({kSale, "CHIU IMP=5.00", "CHIU TEND=CARTA, IMP=5.00", kSale, "CHIU"}),
              IsEmpty());
  EXPECT_THAT(Traps({kSale, "CHIU IMP=50.00", kSale, "CHIU"}), IsEmpty()) << "with change";
  // The device refuses change on a card, and the receipt may be open or not.
  EXPECT_THAT(Traps({kSale, "CHIU TEND=CARTA, IMP=50.00", kSale, "CHIU"}), IsEmpty());
}

TEST(SequenceTraps, SalesInDocumentsThatTakeNoneAreFound) {
  EXPECT_THAT(Traps({"ALLEG INIZIO", kSale, "CHIU", kSale, kSale, "ALLEG FINE", kSale}),
              ElementsAre("4 receipt-not-ended 1231", "7 no-receipt-opens 1231"));
  EXPECT_THAT(Traps({"ALLEG INIZIO", kSale, "CHIU", "ALLEG MSG='A'", "ALLEG FINE", kSale, "CHIU"}),
              IsEmpty());
  EXPECT_THAT(Traps({"NOFIS INIZIO", kSale, "NOFIS FINE", kSale}),
              ElementsAre("2 sale-in-non-fiscal 1231", "4 no-receipt-opens 1231"));
}

TEST(SequenceTraps, AKeyThatWasTurnedAwayTakesNoSale) {
  EXPECT_THAT(Traps({"PROG", kSale, kSale, "ENDPROG", kSale, "CHIU"}),
              ElementsAre("2 key-turned 1231"));
  EXPECT_THAT(Traps({"CHIAVE LET", kSale, "CHIAVE POS=1", kSale, "CHIU"}),
              ElementsAre("2 key-turned 1231"));
  EXPECT_THAT(Traps({"PROG", "NOTACRED", "ENDPROG", kSale}), ElementsAre("4 no-receipt-opens 1231"))
      << "a document that could not be opened is counted as open";
}

TEST(SequenceTraps, TheWordsAreThoseOfTheDefinitionFile) {
  const Language other = Language::FromText(
      "[OPCOD]\n8=WIPE\n10=SELL\n11=PAY\n74=STOP\n124=UNDO\n[10]\n1=DEP\n4=PRICE\n[124]\n5=ALL\n");
  Findings findings;
  BatchCheck check(other, findings);
  const std::vector<std::string> lines = {"UNDO ALL", "SELL DEP=1, PRICE=1"};
  for (size_t i = 0; i < lines.size(); ++i) check.Take({i + 1, lines[i], lines[i].size(), 0});
  ASSERT_EQ(1u, findings.sorted().size());
  const FindingSentences sentences = SentencesOf(findings.sorted().front());
  EXPECT_EQ("every sale is refused until WIPE, STOP or PAY", sentences.effect);
  EXPECT_EQ("WIPE ahead of it", sentences.remedy);
}

// Files of random lines, run on a register as well: the first sale that is lost is the one that the
// check names, and a file without such a sale is not accused of one.
TEST(SequenceTrapsProperty, TheFirstLostSaleIsTheOneThatARunLoses) {
  const std::vector<std::string> pool = {kSale,
                                         kSale,
                                         kSale,
                                         kSale,
                                         kSale,
                                         kSale,
                                         kSale,
                                         kSale,
                                         "INP TASTO=TOTALE",
                                         "DOCANNULLO AUTO",
                                         "VEND REP=1, QTA=2, PRE=1.25",
                                         "CHIU",
                                         "CHIU",
                                         "CHIU TEND=CARTA",
                                         "CHIU IMP=5.00",
                                         "CLEAR",
                                         "RESPRN",
                                         "CHKSUB IMP=10.00",
                                         "CHKSUB IMP=9.99",
                                         "DOCANNULLO AUTO",
                                         "NOTACRED",
                                         "FATTURA TIPO=2",
                                         "FATTURA TIPO=1",
                                         "INP TASTO=APRETRANS",
                                         "INP TASTO=CHIUDETRAN",
                                         "INP TASTO=TOTALE",
                                         "INP TASTO=ST01",
                                         "INP TASTO=ANNULLADOC",
                                         "INP",
                                         "NOFIS INIZIO",
                                         "NOFIS FINE",
                                         "ALLEG INIZIO",
                                         "ALLEG FINE",
                                         "SUBT",
                                         "PROG",
                                         "ENDPROG"};
  std::mt19937 random(20261120);
  std::uniform_int_distribution<size_t> any(0, pool.size() - 1);
  int files_with = 0;
  int files_without = 0;
  for (int file = 0; file < 1000; ++file) {
    std::vector<std::string> lines;
    for (int i = 0; i < 10; ++i) lines.push_back(pool[any(random)]);

    lorimat::VirtualRegister device;
    std::ifstream definition(std::string(LORIMAT_SOURCE_DIR) + "/language/merkelin.ini");
    static const Language library = Language::FromText(
        std::string(std::istreambuf_iterator<char>(definition), std::istreambuf_iterator<char>()));
    EcrCmdCommand& translator = library.translator();
    translator.TStato.bInitOK = true;
    translator.rtfClient_ = &device;
    translator.bOnFirstSale = true;
    translator.LotteryCodeDetect_ = false;
    size_t lost = 0;  // line of the first sale that is lost
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i) {
      const bool ready = device.printer_state() == RTF_FPTR_PS_MONITOR &&
                         device.key_position() == lorimat::KeyPosition::kRegister;
      if (lost == 0 && lines[i].starts_with("VEND") && ready && !translator.bOnFirstSale) {
        lost = i + 1;
      }
      std::string command = lines[i];
      std::array<char, 4096> answer{};
      const long code = translator.EcrCmd(command.data(), answer.data());
      text += lines[i] + "  -> " + std::to_string(code) + "\n";
      if (lost == i + 1) {
        ASSERT_EQ(1231, code) << text;
      }
    }
    size_t named = 0;
    bool given_up = false;  // the check has said so of a subtotal, and says it once
    for (const Finding& finding : FindingsOf(lines)) {
      if (finding.cause == FindingCause::kNoReceiptOpens && named == 0) named = finding.line;
      if (finding.cause == FindingCause::kSubtotalDiffers && named == 0) given_up = true;
    }
    if (given_up) continue;
    ASSERT_EQ(lost, named) << text;
    ++(lost != 0 ? files_with : files_without);
  }
  EXPECT_GT(files_with, 100);
  EXPECT_GT(files_without, 100);
}

}  // namespace lorimat::console
