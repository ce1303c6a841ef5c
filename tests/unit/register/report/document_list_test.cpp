// The list of the documents of a period.
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

using DocumentList = ReportTest;

TEST_F(DocumentList, HasInvoicesWhateverTheirNumber) {
  ASSERT_EQ(device.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 999999), RTF_SUCCESS);
  for (const int64_t price : {10000, 20000}) {
    ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, price), RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
  }
  NewPaper();
  const char* const all =
      "0001-999999 15/01/2024 10:30 FAT      1,00\n"
      "0001-1000000 15/01/2024 10:30 FAT     2,00\n"
      "\n"
      "Documenti                                2\n"
      "TOTALE                                3,00\n";
  ASSERT_EQ(Extract(4, 2, 0, 0, "150120240000", "150120242359"), RTF_SUCCESS);
  const std::string by_date = NewPaper();
  EXPECT_NE(by_date.find(all), by_date.npos) << by_date;
  ASSERT_EQ(Extract(4, 4, 0, 0, "150120240000", "150120242359"), RTF_SUCCESS);
  const std::string of_all_numbers = NewPaper();
  EXPECT_NE(of_all_numbers.find(all), of_all_numbers.npos) << of_all_numbers;
  ASSERT_EQ(Extract(4, 4, 1000000, 1000000, "150120240000", "150120242359"), RTF_SUCCESS);
  const std::string last = NewPaper();
  EXPECT_EQ(last.find("0001-999999"), last.npos);
  EXPECT_NE(last.find("0001-1000000 "), last.npos) << last;
}

// To the cent, whichever way the money went.
TEST_F(DocumentList, TakesOffWhatWentBack) {
  Receipt(1, 50000);
  Receipt(1, 30000);
  ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocCancel(2, 1, "", true), RTF_SUCCESS);
  const struct {
    int filter;
    const char* lines;
  } lists[] = {
      {kJournalAll,
       "0001-0001 15/01/2024 10:30 VEN        5,00\n"
       "0001-0002 15/01/2024 10:30 VEN        3,00\n"
       "0001-0003 15/01/2024 10:30 RES       -1,00\n"
       "0001-0004 15/01/2024 10:30 ANN       -3,00\n"
       "\n"
       "Documenti                                4\n"
       "TOTALE                                4,00\n"},
      {kJournalRefund,
       "0001-0003 15/01/2024 10:30 RES       -1,00\n"
       "\n"
       "Documenti                                1\n"
       "TOTALE                               -1,00\n"},
      {kJournalRefund | kJournalCancel,
       "0001-0003 15/01/2024 10:30 RES       -1,00\n"
       "0001-0004 15/01/2024 10:30 ANN       -3,00\n"
       "\n"
       "Documenti                                2\n"
       "TOTALE                               -4,00\n"},
  };
  for (const auto& list : lists) {
    NewPaper();
    ASSERT_EQ(Extract(4, 2, 0, 0, "150120240000", "150120242359", list.filter), RTF_SUCCESS);
    const std::string paper = NewPaper();
    EXPECT_NE(paper.find(std::string("\n\n") + list.lines), paper.npos) << paper;
  }
}

}  // namespace
}  // namespace lorimat
