// Cash to five cents: what is paid wholly in cash, on paper and in the sums of the day.
#include "register/document/documents.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class CashRounding : public RegisterTest {
 protected:
  CashRounding() { Round(true); }

  void Round(bool yes) {
    ShopSetup setup;
    setup.round_cash = yes;
    ShopRefusal refused;
    EXPECT_EQ(device.SetUp(setup, &refused), RTF_SUCCESS);
  }
  // What follows the tax on the last paper, up to date and number.
  std::string Payments() {
    const std::string paper = device.paper_text();
    const size_t tax = paper.rfind("di cui IVA");
    const size_t begin = paper.find("\n\n", tax) + 2;
    return paper.substr(begin, paper.find("\n\n", begin) + 1 - begin);
  }
  void Open(Amount total) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, total), RTF_SUCCESS);
  }
};

// 1, 2 to 0; 3, 4, 6, 7 to 5; 8, 9 to 10.
TEST_F(CashRounding, GoesToTheNearestFiveCents) {
  const struct {
    Amount total, paid;
  } kRows[] = {{10000, 10000}, {10100, 10000}, {10200, 10000}, {10300, 10500}, {10400, 10500},
               {10500, 10500}, {10600, 10500}, {10700, 10500}, {10800, 11000}, {10900, 11000}};
  for (const auto& row : kRows) {
    Open(row.total);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    const StoredDocument document = device.store().documents().back();
    EXPECT_EQ(document.total, row.total);
    EXPECT_EQ(document.by_tender.at("0"), row.paid) << row.total;
    EXPECT_EQ(document.change, 0);
    EXPECT_NE(Payments().find("Importo pagato                        " + FormatAmount(row.paid)),
              std::string::npos);
  }
}

// 10,02 is paid with 10,00; 1,81 of it is tax: 10,02 x 22 / 122 = 1,8068...
TEST_F(CashRounding, DownIsADiscountOnThePayment) {
  Open(100200);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_NE(device.paper_text().find("TOTALE COMPLESSIVO                   10,02\n"
                                     "di cui IVA                            1,81\n"),
            std::string::npos);
  EXPECT_EQ(Payments(),
            "Arrotondamento per difetto            0,02\n"
            "Pagamento contante                   10,00\n"
            "Importo pagato                       10,00\n");
}

// 10,03 is paid with 10,05, of 20,00.
TEST_F(CashRounding, UpIsAPayment) {
  Open(100300);
  ASSERT_EQ(PayCash(200000), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                   20,00\n"
            "Resto                                 9,95\n"
            "Importo pagato                       10,05\n");
}

// Partly, then the rest; and who pays to the cent pays as the coins have it.
TEST_F(CashRounding, CountsOnTheWholeTotal) {
  Open(100300);
  ASSERT_EQ(PayCash(40000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().remaining(), 60300);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Pagamento contante                    4,00\n"
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                    6,05\n"
            "Importo pagato                       10,05\n");
  for (const Amount given : {100300, 100400, 100500}) {
    Open(100300);
    ASSERT_EQ(PayCash(given), RTF_SUCCESS);
    EXPECT_EQ(device.store().documents().back().by_tender.at("0"), 100500) << given;
    EXPECT_EQ(device.store().documents().back().change, 0);
  }
  for (const Amount given : {100000, 100100, 100200}) {
    Open(100200);
    ASSERT_EQ(PayCash(given), RTF_SUCCESS);
    EXPECT_EQ(device.store().documents().back().by_tender.at("0"), 100000) << given;
  }
  Open(100300);
  ASSERT_EQ(PayCash(100200), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().remaining(), 100);
}

// A cheque, a card, or any part that is not cash: to the cent.
TEST_F(CashRounding, NothingElseIsRounded) {
  for (const char* tender : {"1", "2", "3", "4", "9", "10", "30"}) {
    Open(100300);
    ASSERT_EQ(PayRest(tender), RTF_SUCCESS);
    Open(100300);
    ASSERT_EQ(device.PrintRecTotalEx(30000, tender, false), RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    EXPECT_EQ(device.store().documents().back().by_tender.at("0"), 70300) << tender;
    Open(100300);
    ASSERT_EQ(PayCash(30000), RTF_SUCCESS);
    ASSERT_EQ(PayRest(tender), RTF_SUCCESS);
  }
  EXPECT_EQ(device.paper_text().find("Arrotondamento"), std::string::npos);
}

TEST_F(CashRounding, IsOffAtFirst) {
  VirtualRegister other{TestSettings()};
  ASSERT_EQ(other.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(other.PrintRecItemEx(PflItemType::kPrintRecItem, "", 100300, 0, -1, 0, "", 1, true, ""),
            RTF_SUCCESS);
  ASSERT_EQ(other.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_EQ(other.store().documents().back().by_tender.at("0"), 100300);
  Round(false);
  Open(100300);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text().find("Arrotondamento"), std::string::npos);
}

// One and two cents cost no coin.
TEST_F(CashRounding, MayLeaveNothingToPay) {
  Open(200);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Arrotondamento per difetto            0,02\n"
            "Importo pagato                        0,00\n");
  Open(300);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                    0,05\n"
            "Importo pagato                        0,05\n");
}

// Line by line too: 10,03 was paid with 10,05, and 10,02 with 10,02.
TEST_F(CashRounding, AVoidByLinesPaysBackAsTheSaleWasPaid) {
  Open(100300);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  Round(false);
  Open(100200);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", false, ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100300), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                   10,05\n"
            "Importo rimborsato                   10,05\n");
  Round(true);
  ASSERT_EQ(device.BeginDocTelematicCancel(2, 1, "", false, ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100200), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Pagamento contante                   10,02\n"
            "Importo rimborsato                   10,02\n");
  // What was paid otherwise tells nothing of it.
  Open(100300);
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicCancel(5, 1, "", false, ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100300), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().by_tender.at("0"), 100500);
  // A credit note of all of it likewise; of a part of it, or of no sale, as is set up.
  Round(false);
  for (const Amount total : {100300, 100400}) {
    Round(true);
    Open(total);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
  }
  Round(false);
  ASSERT_EQ(device.BeginDocTelematicRefund(7, 1, "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100300), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().by_tender.at("0"), 100500);
  for (const int number : {8, 0}) {
    ASSERT_EQ(device.BeginDocTelematicRefund(number, number == 0 ? 0 : 1, "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 10300), RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    EXPECT_EQ(device.store().documents().back().by_tender.at("0"), 10300);
  }
}

// What goes back whole goes back as it was paid, on whatever the shop does by then.
TEST_F(CashRounding, AWholeVoidPaysBackWhatWasPaid) {
  Open(100300);
  ASSERT_EQ(PayCash(200000), RTF_SUCCESS);
  Round(false);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                   10,05\n"
            "Importo rimborsato                   10,05\n");
  EXPECT_EQ(device.store().day().Tender("0"), 0);
  EXPECT_EQ(device.store().day().Tender("33"), 0);
}

// 2 documents down by 0,02 and 0,01, one up by 0,01: 10,00 + 20,00 + 5,00 of 10,02 + 20,01 + 4,99.
TEST_F(CashRounding, TheClosingHasLinesOfItsOwn) {
  for (const Amount total : {100200, 200100, 49900}) {
    Open(total);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
  }
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  const std::string paper = device.paper_text();
  for (const char* line : {"\nPagamento contante n. 3              35,00\n",
                           "\nArrotondamento per difetto n. 2       0,03\n",
                           "\nArrotondamento per eccesso n. 1      -0,01\n",
                           "\nTOTALE GIORNALIERO                   35,02\n"}) {
    EXPECT_NE(paper.find(line), std::string::npos) << line;
  }
}

TEST_F(CashRounding, NoHostPaysWithIt) {
  Open(100300);
  EXPECT_EQ(PayRest("32"), RTF_E_NOEXIST);
  EXPECT_EQ(PayRest("33"), RTF_E_NOEXIST);
  EXPECT_EQ(device.receipt().paid(), 0);
}

using CashRoundingKept = StoredRegisterTest;

TEST_F(CashRoundingKept, TheFileKeepsItAndTheChainHasIt) {
  ShopSetup setup;
  setup.round_cash = true;
  ShopRefusal refused;
  ASSERT_EQ(device->SetUp(setup, &refused), RTF_SUCCESS);
  Restart();
  ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(
      device->PrintRecItemEx(PflItemType::kPrintRecItem, "", 100300, 0, -1, 0, "", 1, true, ""),
      RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_EQ(device->store().documents().back().by_tender.at("0"), 100500);
  device.reset();
  EXPECT_TRUE(FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal(nullptr)).empty());
  Sql("shop.register", "UPDATE setting SET value = '0' WHERE name = 'round_cash'");
  EXPECT_FALSE(FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal(nullptr)).empty());
}

}  // namespace
}  // namespace lorimat
