// Figures of VAT entries, as they are added up and stored.
#include "register/value/figures.h"

#include <gtest/gtest.h>

#include "register/totals/totals.h"

namespace lorimat {
namespace {

StoredDocument WithFigures(DocumentKind kind, int vat) {
  StoredDocument document;
  document.kind = kind;
  VatFigures& figures = document.figures[vat];
  figures[TaxedFigure::kGross] = {1, 2};
  figures[TaxedFigure::kServices] = {3, 4};
  figures[TaxedFigure::kServicesNotPaid] = {5, 6};
  figures[TaxedFigure::kSsnNotPaid] = {7, 8};
  figures[TaxedFigure::kInvoicesNotPaid] = {9, 10};
  figures[TaxedFigure::kUndeliveredNotPaid] = {11, 12};
  figures[EnteredFigure::kItems] = {13, 14};
  figures[EnteredFigure::kRefundLines] = {15, 16};
  figures[EnteredFigure::kDiscounts] = {17, 18};
  figures[EnteredFigure::kSurcharges] = {19, 20};
  figures[EnteredFigure::kSubtotalDiscounts] = {21, 22};
  figures[EnteredFigure::kSubtotalSurcharges] = {23, 24};
  return document;
}

// The hashes of every register's journal are of this text.
TEST(VatFiguresTest, EachIsStoredWithWhatBelongsToIt) {
  const char* const record =
      "0 1 3 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 0 0 0 0 ";
  EXPECT_EQ(SumsRecord(WithFigures(DocumentKind::kSale, 3)), record);
  StoredDocument read;
  ASSERT_TRUE(ReadSums(record, &read));
  EXPECT_EQ(read.figures.at(3)[TaxedFigure::kInvoicesNotPaid].tax, 10);
  EXPECT_EQ(read.figures.at(3)[EnteredFigure::kSubtotalSurcharges].taken_back, 24);
  EXPECT_EQ(SumsRecord(read), record);
}

// Counts stand behind all of that, so that a text without them is read and written as it was.
TEST(VatFiguresTest, CountsFollowWhatWasStoredBefore) {
  StoredDocument document = WithFigures(DocumentKind::kSale, 3);
  document.figures[3][Counted::kDocuments] = 25;
  document.figures[3][Counted::kRefundLines] = 26;
  document.figures[3][Counted::kDiscounts] = 27;
  document.figures[3][Counted::kSurcharges] = 28;
  const std::string before = SumsRecord(WithFigures(DocumentKind::kSale, 3));
  EXPECT_EQ(SumsRecord(document), before + "1 3 25 26 27 28 0 0 ");
  StoredDocument read;
  ASSERT_TRUE(ReadSums(SumsRecord(document), &read));
  EXPECT_EQ(read.figures.at(3)[Counted::kSurcharges], 28);
  EXPECT_EQ(SumsRecord(read), SumsRecord(document));

  Totals old_day;
  old_day.Add(WithFigures(DocumentKind::kInvoice, 3));
  Totals day = old_day;
  day.Add(document);
  day.Add(document);
  Totals again;
  ASSERT_TRUE(Totals::FromRecord(day.ToRecord(), &again));
  EXPECT_EQ(again.of(DocumentKind::kSale).by_vat.at(3)[Counted::kDiscounts], 54);
  EXPECT_EQ(again.ToRecord(), day.ToRecord());
  ASSERT_TRUE(Totals::FromRecord(old_day.ToRecord(), &again));
  EXPECT_EQ(again.ToRecord(), old_day.ToRecord());
  for (const char* end : {"1", "1 ", "x", "0 ", "0 0 0 ", "0 0 0 0 ", "0 0 0 0 0 0 0 0 0 0 0 0 "}) {
    EXPECT_FALSE(Totals::FromRecord(old_day.ToRecord() + end, &again)) << end;
    EXPECT_FALSE(ReadSums(before + end, &read)) << end;
  }
}

TEST(VatFiguresTest, BothAmountsAreSummedWithTheSignOfTheDocument) {
  Totals totals;
  totals.Add(WithFigures(DocumentKind::kSale, 3));
  totals.Add(WithFigures(DocumentKind::kSale, 3));
  totals.Add(WithFigures(DocumentKind::kInvoice, 1));
  totals.Add(WithFigures(DocumentKind::kRefund, 3));
  const TaxedAmount all = totals.Sum(Totals::kAll, 0, TaxedFigure::kSsnNotPaid);
  EXPECT_EQ(all.amount, 14);  // 2 * 7 + 7 - 7
  EXPECT_EQ(all.tax, 16);     // 2 * 8 + 8 - 8
  EXPECT_EQ(all.net(), -2);
  const EnteredAmount sales = totals.Sum(Totals::kSales, 3, EnteredFigure::kDiscounts);
  EXPECT_EQ(sales.amount, 34);
  EXPECT_EQ(sales.taken_back, 36);
}

}  // namespace
}  // namespace lorimat
