#include "console/check/translator_memory.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

using NextSale = TranslatorMemory::NextSale;

std::string ShippedWords() {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/language/merkelin.ini");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A till: the translator on a register, and a memory that follows what is sent.
class Till {
 public:
  Till()
      : library_(Language::FromText(ShippedWords())),
        words_(Language::FromText(ShippedWords())),
        memory_(words_) {
    library_.translator().TStato.bInitOK = true;
    library_.translator().rtfClient_ = &device_;
  }

  long Send(const std::string& line) {
    std::string command = line;
    std::array<char, 4096> result{};
    TranslatorMemory::Seen seen;
    seen.ready_before = ready();
    const long code = library_.translator().EcrCmd(command.data(), result.data());
    seen.ready_after = ready();
    seen.code = code;
    memory_.Follow(line, seen);
    return code;
  }
  bool ready() const { return device_.printer_state() == RTF_FPTR_PS_MONITOR; }
  NextSale next_sale() const { return memory_.next_sale(); }
  // What the translator itself holds.
  NextSale true_next_sale() const {
    return library_.translator().bOnFirstSale ? NextSale::kOpensReceipt : NextSale::kOpensNone;
  }
  bool sale_is_lost() const { return memory_.SaleIsLost(ready()); }

 private:
  lorimat::VirtualRegister device_;
  Language library_;
  Language words_;
  TranslatorMemory memory_;
};

constexpr const char* kSale = "VEND REP=1, PRE=1.00";

// How a receipt ends without the translator taking notice.
struct Ending {
  std::string name;
  std::vector<std::string> lines;
};

void PrintTo(const Ending& ending, std::ostream* stream) { *stream << ending.name; }

class TranslatorMemoryBehind : public testing::TestWithParam<Ending> {
 protected:
  void EndReceipt(Till& till) {
    for (const std::string& line : GetParam().lines) till.Send(line);
    ASSERT_TRUE(till.ready());
  }
};

TEST_P(TranslatorMemoryBehind, TheNextSaleIsLost) {
  Till till;
  EndReceipt(till);
  EXPECT_TRUE(till.sale_is_lost());
  EXPECT_EQ(1231, till.Send(kSale));
  EXPECT_EQ(1231, till.Send(kSale)) << "it does not heal by itself";
  EXPECT_TRUE(till.sale_is_lost());
}

TEST_P(TranslatorMemoryBehind, EachWayOutLeadsOut) {
  for (const char* line : {"CLEAR", "RESPRN", "CHIU", "INP", "INP TASTO=ST01"}) {
    Till till;
    EndReceipt(till);
    till.Send(line);
    EXPECT_FALSE(till.sale_is_lost()) << line;
    EXPECT_EQ(0, till.Send(kSale)) << line;
  }
}

TEST_P(TranslatorMemoryBehind, OtherLinesDoNotLeadOut) {
  for (const char* line : {"INP TASTO=CHIUDETRAN", "SUBT", "NOFIS INIZIO", "NOFIS FINE", "PROG",
                           "ENDPROG", "CHIAVE REG", "REPORT TIPO=XGIORNO", "AZZGIO TIPO=1",
                           "ALLEG FINE", "CHKSUB IMP=1.00", "INFO TIPO=MATRICOLA"}) {
    Till till;
    EndReceipt(till);
    till.Send(line);
    if (std::string(line) == "NOFIS INIZIO") till.Send("NOFIS FINE");
    EXPECT_TRUE(till.sale_is_lost()) << line;
    EXPECT_EQ(1231, till.Send(kSale)) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Endings, TranslatorMemoryBehind,
    testing::Values(Ending{"AVoidOfAWholeDocument", {kSale, "CHIU", "DOCANNULLO AUTO"}},
                    Ending{"AVoidThatWasRefused", {"DOCANNULLO AUTO"}},
                    Ending{"ACreditNoteThatWasRefused", {"NOTACRED DOC=1, DATA=310299"}},
                    Ending{"ASubtotalThatDiffers", {kSale, "CHKSUB IMP=1.01"}},
                    Ending{"TheTotalKey", {kSale, "INP TASTO=TOTALE"}},
                    Ending{"ATenderKey", {kSale, "INP TASTO=T_CARTA"}},
                    Ending{"TheVoidKey", {kSale, "INP TASTO=ANNULLADOC"}},
                    Ending{"ASaleInADocumentThatIsNone", {"NOFIS INIZIO", kSale, "NOFIS FINE"}},
                    Ending{"ASaleBehindASettledReceipt",
                           {"ALLEG INIZIO", kSale, "CHIU", kSale, "ALLEG FINE"}}),
    [](const testing::TestParamInfo<Ending>& test) { return test.param.name; });

TEST(TranslatorMemoryOf, AReceiptOpensOneAgainBehindItsPayment) {
  Till till;
  EXPECT_EQ(NextSale::kOpensReceipt, till.next_sale());
  till.Send(kSale);
  EXPECT_EQ(NextSale::kOpensNone, till.next_sale());
  EXPECT_FALSE(till.sale_is_lost()) << "it goes into the open receipt";
  till.Send("CHIU");
  EXPECT_EQ(NextSale::kOpensReceipt, till.next_sale());
}

TEST(TranslatorMemoryOf, LinesThatDoNotRunChangeNothing) {
  Till till;
  till.Send("DOCANNULLO AUTO");
  for (const char* line :
       {"; CLEAR", "", "CLEAR COLORE=1", "CLEARER 'X'", "CHIU TEND=BANANA", "CHIU 'X'=1"}) {
    till.Send(line);
    EXPECT_TRUE(till.sale_is_lost()) << line;
  }
  till.Send("CLEAR " + std::string(2041, ' '));
  EXPECT_TRUE(till.sale_is_lost()) << "a line that is too long";
  till.Send("CLEAR " + std::string(2040, ' '));
  EXPECT_FALSE(till.sale_is_lost());
}

TEST(TranslatorMemoryOf, ABatchIsUnknownUntilALineTells) {
  const Language words = Language::FromText(ShippedWords());
  TranslatorMemory memory(words);
  memory.Follow("@ giorno.cmd", {true, true, 11});
  EXPECT_EQ(NextSale::kOpensReceipt, memory.next_sale()) << "no line of it ran";
  memory.Follow("@ giorno.cmd", {true, true, 0});
  EXPECT_EQ(NextSale::kUnknown, memory.next_sale());
  EXPECT_FALSE(memory.SaleIsLost(true));
  memory.Follow(kSale, {true, true, 1231});
  EXPECT_EQ(NextSale::kUnknown, memory.next_sale());
  memory.Follow(kSale, {true, false, 0});
  EXPECT_EQ(NextSale::kOpensNone, memory.next_sale());
}

TEST(TranslatorMemoryOf, ALineEndsAtItsNulByte) {
  const Language words = Language::FromText(ShippedWords());
  TranslatorMemory memory(words);
  memory.Follow("DOCANNULLO AUTO", {});
  memory.Follow(std::string("CLEAR\0X", 7), {});
  EXPECT_EQ(NextSale::kOpensReceipt, memory.next_sale());
}

// The answer of a line in a batch is not known; the device's state tells enough.
TEST(TranslatorMemoryOf, ASaleWithoutAnAnswerIsJudgedByTheDevice) {
  const Language words = Language::FromText(ShippedWords());
  TranslatorMemory memory(words);
  memory.Follow(kSale, {true, true, std::nullopt});
  EXPECT_EQ(NextSale::kOpensReceipt, memory.next_sale()) << "the receipt was not opened";
  memory.Follow(kSale, {true, false, std::nullopt});
  EXPECT_EQ(NextSale::kOpensNone, memory.next_sale());
}

TEST(TranslatorMemoryOf, TheClosingKeyIsNoWayOutButWhereItIsRefused) {
  Till till;
  till.Send("DOCANNULLO AUTO");
  EXPECT_EQ(0, till.Send("INP TASTO=CHIUDETRAN"));
  EXPECT_EQ(NextSale::kOpensNone, till.next_sale()) << "with nothing open it does nothing";
  till.Send("CHIAVE PRG");
  EXPECT_EQ(1231, till.Send("INP TASTO=CHIUDETRAN"));
  EXPECT_EQ(NextSale::kOpensReceipt, till.next_sale());
}

TEST(TranslatorMemoryProperty, ItIsThatOfTheTranslatorWhateverIsSent) {
  const std::vector<std::string> pool = {kSale,
                                         kSale,
                                         kSale,
                                         "VEND REP=99, PRE=1.00",
                                         "VEND PRE=1.00",
                                         "VEND REP=1, ART='8001'",
                                         "VEND REP=1, PRE=5.00, ACCONTO, COUPON",
                                         "VEND REP=1, PRE=0.10, COUPON",
                                         "CHIU",
                                         "CHIU",
                                         "CHIU TEND=CARTA, IMP=0.50",
                                         "CHIU TEND='BONUS'",
                                         "CLEAR",
                                         "RESPRN",
                                         "CHKSUB IMP=1.00",
                                         "CHKSUB IMP=9.99",
                                         "CHKSUB",
                                         "DOCANNULLO AUTO",
                                         "DOCANNULLO DOC=1",
                                         "DOCANNULLO",
                                         "NOTACRED",
                                         "NOTACRED DOC=45, ZETA=123, DATA=150124",
                                         "NOTACRED DOC=45, DATA=310299",
                                         "FATTURA TIPO=2",
                                         "FATTURA TIPO=1",
                                         "FATTURA",
                                         "INP TASTO=APRETRANS",
                                         "INP TASTO=CHIUDETRAN",
                                         "INP TASTO=TOTALE",
                                         "INP TASTO=T_CARTA",
                                         "INP NUM=1.00, TASTO=ST01",
                                         "INP TASTO=300",
                                         "INP TASTO=ANNULLADOC",
                                         "INP TASTO=APRERESO",
                                         "INP TASTO=APREANNULL",
                                         "INP TASTO=FATTURA",
                                         "INP",
                                         "INP TASTO=LOTTERIA",
                                         "INP LOTTERIA='X', TASTO=CONFERMA",
                                         "INP NUM=1.00, TASTO=REP01",
                                         "NOFIS INIZIO",
                                         "NOFIS FINE",
                                         "NOFIS MSG='A'",
                                         "ALLEG INIZIO",
                                         "ALLEG FINE",
                                         "ALLEG MSG='A'",
                                         "SUBT",
                                         "SCONTO IMP=0.10",
                                         "CHIAVE PRG",
                                         "CHIAVE REG",
                                         "PROG",
                                         "ENDPROG",
                                         "AZZGIO TIPO=1",
                                         "REPORT TIPO=XGIORNO",
                                         "SETP ATTESA=SI",
                                         "SELL",
                                         "@",
                                         "@ manca.cmd"};
  std::mt19937 random(20261120);
  std::uniform_int_distribution<size_t> any(0, pool.size() - 1);
  int lost = 0;
  for (int till_number = 0; till_number < 40; ++till_number) {
    Till till;
    std::string sent;
    for (int i = 0; i < 100; ++i) {
      const std::string& line = pool[any(random)];
      const long code = till.Send(line);
      sent += line + "  -> " + std::to_string(code) + "\n";
      ASSERT_EQ(till.true_next_sale(), till.next_sale()) << sent;
      lost += till.sale_is_lost();
    }
  }
  EXPECT_GT(lost, 0) << "the case that all this is for came up";
}

}  // namespace

}  // namespace lorimat::console
