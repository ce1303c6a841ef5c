// The numbers of kinds that every register's file holds.
#include <gtest/gtest.h>

#include "register/document/documents.h"
#include "register/totals/journal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

TEST(StoredKindsTest, AnEntryOfADocumentHasTheBitOfItsKind) {
  EXPECT_EQ(JournalKindOf(DocumentKind::kSale), 0x2);
  EXPECT_EQ(JournalKindOf(DocumentKind::kInvoice), 0x4);
  EXPECT_EQ(JournalKindOf(DocumentKind::kRefund), 0x8);
  EXPECT_EQ(JournalKindOf(DocumentKind::kCancel), 0x10);
  EXPECT_EQ(kJournalSale | kJournalInvoice | kJournalRefund | kJournalCancel, 0x1e);
}

TEST(StoredKindsTest, LinesAndAdjustmentsAreNumberedInOneOrder) {
  Receipt receipt;
  Item item;
  item.department = 1;
  item.vat = 1;
  for (const LineKind kind :
       {LineKind::kSale, LineKind::kRefund, LineKind::kDeposit, LineKind::kVoucher}) {
    item.kind = kind;
    item.unit_price = item.amount = kind == LineKind::kSale ? 1000000 : 10000;
    ASSERT_EQ(receipt.Enter(item), RTF_SUCCESS);
  }
  AdjustmentRequest discount;
  discount.type = RTF_FPTR_AT_AMOUNT_DISCOUNT;
  discount.value = 10000;
  discount.department = 1;
  Adjustment done;
  ASSERT_EQ(receipt.Adjust(discount, &done), RTF_SUCCESS);
  discount.department = 0;
  ASSERT_EQ(receipt.AdjustSubtotal(discount, &done), RTF_SUCCESS);
  StoredDocument stored;
  AddDetails(receipt, &stored);
  ASSERT_EQ(stored.lines.size(), 6u);
  for (size_t place = 0; place < stored.lines.size(); ++place) {
    EXPECT_EQ(static_cast<size_t>(stored.lines[place].kind), place);
  }
}

}  // namespace
}  // namespace lorimat
