// What is not collected, and what no money pays: each kind on paper and in the sums of the day.
#include "register/inspect/register_file.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class NotCollected : public RegisterTest {
 protected:
  void Open(Amount total) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, total), RTF_SUCCESS);
  }
  // Subtender 2, the tender 11.
  int MakeTicket(uint8_t flags, TenderKind kind = TenderKind::kTicket) {
    auto type = static_cast<uint8_t>(kind);
    uint8_t digits = 0;
    uint32_t value = 0;
    char name[64] = "TICKET PRANZO";
    return device.ConfigSubtender(true, 2, &type, name, &flags, &value, &digits);
  }
  // What follows the tax on the last paper, up to date and number.
  std::string Payments() {
    const std::string paper = device.paper_text();
    const size_t begin = paper.find("\n\n", paper.rfind("di cui IVA")) + 2;
    return paper.substr(begin, paper.find("\n\n", begin) + 1 - begin);
  }
};

class NotCollectedKept : public StoreTest {};

// 1,00 of each kind, and 2,00 in cash of 7,00.
TEST_F(NotCollected, EachKindHasALineOfItsOwn) {
  Open(70000);
  for (const char* tender : {"5", "6", "7", "9", "31"}) {
    ASSERT_EQ(device.PrintRecTotalEx(10000, tender, false), RTF_SUCCESS) << tender;
  }
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Non riscosso fatture                  1,00\n"
            "Non riscosso servizi                  1,00\n"
            "Non riscosso SSN                      1,00\n"
            "Non riscosso                          1,00\n"
            "Non riscosso omaggio                  1,00\n"
            "Pagamento contante                    2,00\n"
            "Importo pagato                        2,00\n");
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_NE(device.paper_text().find("Totale non riscosso                   5,00\n"
                                     "  di cui con fattura a seguire        1,00\n"
                                     "  di cui servizi                      1,00\n"
                                     "  di cui SSN                          1,00\n"
                                     "  di cui altro                        1,00\n"
                                     "  di cui omaggi                       1,00\n"),
            std::string::npos);
}

// 12,20 at 22 % is 10,00 and 2,20 of tax. The file has it, and what goes back.
TEST_F(NotCollectedKept, AGiftIsNoGoodThatIsStillToCome) {
  const auto start = [this] { return std::make_unique<VirtualRegister>(FileSettings()); };
  std::unique_ptr<VirtualRegister> shop = start();
  const auto sell = [&shop](Amount total, const char* tender) {
    EXPECT_EQ(shop->BeginFiscalReceipt(false), RTF_SUCCESS);
    EXPECT_EQ(shop->PrintRecItemEx(0, "", total, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    EXPECT_EQ(shop->PrintRecTotalEx(0, tender, true), RTF_SUCCESS);
  };
  sell(122000, "31");
  sell(61000, "9");
  sell(24400, "31");
  shop.reset();
  shop = start();
  ASSERT_EQ(shop->BeginDocTelematicCancel(3, 1, "", true, ""), RTF_SUCCESS);
  const auto total = [&shop](int kind, int scope) {
    char text[50] = "unset";
    EXPECT_EQ(shop->GetTotalizerExtend(0, scope, kind, text), RTF_SUCCESS) << kind;
    return std::string(text);
  };
  EXPECT_EQ(total(RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS, RTF_FPTR_TT_DAY), "122000");
  EXPECT_EQ(total(RTF_FPTR_GT_VAT_CATEGORY_GIFT, RTF_FPTR_TT_DAY), "100000");
  EXPECT_EQ(total(RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID_GROSS, RTF_FPTR_TT_DAY), "61000");
  EXPECT_EQ(total(RTF_FPTR_GT_NOT_PAID, RTF_FPTR_TT_DAY), "183000");
  ASSERT_EQ(shop->PrintZReport(), RTF_SUCCESS);
  shop.reset();
  shop = start();
  EXPECT_EQ(total(RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS, RTF_FPTR_TT_GRAND), "122000");
  ASSERT_EQ(shop->SaveTelematicSummary(1, 1, Path("summary").c_str()), RTF_SUCCESS);
  const std::string summary = Bytes("summary");
  EXPECT_NE(summary.find("      <BeniInSospeso>5.00</BeniInSospeso>\n"), summary.npos) << summary;
  EXPECT_NE(summary.find("      <NonRiscossoOmaggio>12.00</NonRiscossoOmaggio>\n"), summary.npos);
  for (const std::string& finding :
       FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal({}))) {
    ADD_FAILURE() << finding;
  }
}

// 12,00 by a voucher of 4,50 and a card: 7,50 is paid.
TEST_F(NotCollected, AMultiUseVoucherIsADiscountOnThePayment) {
  Open(120000);
  ASSERT_EQ(device.PrintRecTotalEx(45000, "30", false), RTF_SUCCESS);
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Buono multiuso                        4,50\n"
            "Pagamento elettronico                 7,50\n"
            "Importo pagato                        7,50\n");
}

// Two of 5,29 and one of 8,00 for the 1,42 that are left of 12,00.
TEST_F(NotCollected, ATicketAboveTheRestIsNobodys) {
  ASSERT_EQ(MakeTicket(Subtender::kKeepsRest), RTF_SUCCESS);
  Open(120000);
  ASSERT_EQ(device.PrintRecTotalEx(52900, "4", false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(52900, "11", false), RTF_SUCCESS);
  // The plain one takes the rest and no more.
  EXPECT_EQ(device.PrintRecTotalEx(80000, "4", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  ASSERT_EQ(device.PrintRecTotalEx(80000, "11", false), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Ticket                                5,29\n"
            "TICKET PRANZO                         5,29\n"
            "TICKET PRANZO                         1,42\n"
            "  su 8,00, senza resto\n"
            "Numero ticket                            3\n"
            "Importo pagato                       12,00\n");
  const StoredDocument document = device.store().documents().back();
  EXPECT_EQ(document.change, 0);
  EXPECT_EQ(document.by_tender.at("11"), 67100);
  EXPECT_EQ(document.tender_counts.at("11"), 2);
  // What goes back has them too.
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Payments(),
            "Ticket                                5,29\n"
            "TICKET PRANZO                         5,29\n"
            "TICKET PRANZO                         1,42\n"
            "Numero ticket                            3\n"
            "Importo rimborsato                   12,00\n");
}

// Change goes before it, and what is no ticket never keeps what is above the rest.
TEST_F(NotCollected, OnlyATicketWithoutChangeKeepsTheRest) {
  ASSERT_EQ(MakeTicket(Subtender::kGivesChange | Subtender::kKeepsRest), RTF_SUCCESS);
  Open(50000);
  ASSERT_EQ(device.PrintRecTotalEx(80000, "11", false), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().change, 30000);
  for (const TenderKind kind : {TenderKind::kCash, TenderKind::kElectronic, TenderKind::kNotPaid}) {
    ASSERT_EQ(MakeTicket(Subtender::kKeepsRest, kind), RTF_SUCCESS);
    Open(50000);
    EXPECT_EQ(device.PrintRecTotalEx(80000, "11", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
    ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
  }
  EXPECT_EQ(MakeTicket(4), RTF_E_ILLEGAL);
}

}  // namespace
}  // namespace lorimat
