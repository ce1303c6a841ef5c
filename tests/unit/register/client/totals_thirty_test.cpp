// Totalizers and counters of thirty documents, added up here by plain sums of cents.
#include <algorithm>
#include <map>
#include <vector>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class ThirtyTotalsTest : public ReportTest {};

struct TestLine {
  int department;   // 1 to 5
  int64_t cents;    // unit price
  int thousandths;  // 0: one piece without a quantity
  int type = 0;     // PflItemType
  int64_t off = 0;  // discount on the line, in cents
};

struct TestDocument {
  char kind;  // 'S' sale, 'I' invoice, 'R' credit note, 'V' void of the last sale, 'A' abandoned
  std::vector<TestLine> lines = {};
  const char* tender = "0";
  int64_t cash_part = 0;     // paid in cash ahead of the tender, in cents
  int64_t subtotal_off = 0;  // in cents, on documents of a single VAT entry
  const char* serial = "";   // of a credit note: the register that sold, or this one
};

constexpr int64_t kRates[] = {0, 22, 10, 5, 4, 0};

int64_t RoundedTax(int64_t cents, int64_t rate) {
  return (2 * cents * rate + (100 + rate)) / (2 * (100 + rate));
}

const std::vector<TestDocument>& ThirtyDocuments() {
  using T = PflItemType;
  static const std::vector<TestDocument> documents = {
      {'S', {{1, 1000, 0}}},
      {'S', {{2, 120, 3000}, {4, 390, 750}}, "2"},
      {'S', {{3, 999, 0}, {5, 5000, 0}}, "4"},
      {'S', {{1, 1999, 0, 0, 199}}, "3"},
      {'I', {{1, 10000, 0}, {2, 505, 2000}}, "5"},
      {'R', {{1, 300, 0}}},
      {'S', {{4, 85, 0}}},
      {'V'},
      {'A', {{1, 777, 0}}},
      {'S', {{2, 1250, 0}}, "9"},
      {'S', {{1, 3333, 333}}},
      {'S', {{1, 500, 0}, {1, 200, 0, T::kPrintRecItemRefund}}},
      {'S', {{5, 10000, 0}, {5, 2500, 0, T::kPrintRecItemDeposit}}, "1"},
      {'S', {{5, 4000, 0}, {5, 1000, 0, T::kPrintRecItemBuoniMonouso}}},
      {'S', {{2, 650, 0}, {2, 650, 0, T::kPrintRecItemVoid}, {2, 700, 0}}},
      {'S', {{1, 2000, 0}}, "10", 500},
      {'S', {{1, 2000, 0}}, "29", 1999},
      {'I', {{4, 12345, 0}}, "0"},
      {'S', {{1, 4000, 0}}, "0", 0, 400},
      {'S', {{3, 1, 0}}},
      {'R', {{3, 1, 0}, {4, 10, 0}}, "2", 0, 0, "99LRM0000002"},
      {'S', {{2, 1, 1500}}},
      {'S', {{1, 9999999, 0}}, "2"},
      {'V'},
      {'S', {{1, 122, 0}, {2, 110, 0}, {3, 105, 0}, {4, 104, 0}, {5, 100, 0}}, "6", 41},
      {'S', {{1, 61, 0}}, "7"},
      {'A', {{5, 1, 0}}},
      {'S', {{4, 250, 2500}}, "8"},
      {'S', {{2, 333, 3000, 0, 99}}, "30"},
      {'S', {{1, 5, 0}, {2, 5, 0}}},
  };
  return documents;
}

// What the documents have to come to.
struct TestSums {
  std::map<char, int64_t> by_kind;
  std::map<char, int> counts;
  std::map<char, std::map<int, int64_t>> gross;
  std::map<char, std::map<int, int64_t>> tax;
  std::map<std::string, int64_t> tenders;
  std::map<std::string, int> payments;
  std::map<int, int> documents;  // of each rate
  std::map<int, int64_t> departments;
};

TEST_F(ThirtyTotalsTest, ThirtyDocumentsOfEveryKindAddUp) {
  ASSERT_EQ(ThirtyDocuments().size(), 30u);
  TestSums sums;
  std::map<int, int64_t> last_gross, last_departments;  // of the last sale, for its void
  std::map<std::string, int64_t> last_tenders;
  for (const TestDocument& document : ThirtyDocuments()) {
    std::map<int, int64_t> gross, departments;
    std::map<std::string, int64_t> tenders;
    switch (document.kind) {
      case 'I':
        ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
        break;
      case 'R':
        ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "", document.serial), RTF_SUCCESS);
        break;
      case 'V':
        ASSERT_EQ(device.BeginDocTelematicCancel(0, 0, "", true, ""), RTF_SUCCESS);
        gross = last_gross;
        departments = last_departments;
        tenders = last_tenders;
        break;
      default:
        ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    }
    int64_t total = 0;
    for (const TestLine& line : document.lines) {
      const int code =
          line.thousandths == 0
              ? Sell(line.department, line.cents * 100, "", line.type)
              : SellPieces(line.department, line.thousandths, line.cents * 100, "", line.type);
      ASSERT_EQ(code, RTF_SUCCESS);
      if (line.off != 0) {
        ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", line.off * 100,
                                                  -1, -2),
                  RTF_SUCCESS);
      }
      const int64_t pieces = line.thousandths == 0 ? 1000 : line.thousandths;
      const int64_t amount = (line.cents * pieces + 500) / 1000 - line.off;
      const int64_t signed_amount = line.type == 0 ? amount : -amount;
      gross[line.department] += signed_amount;
      departments[line.department] += signed_amount;
      total += signed_amount;
    }
    if (document.subtotal_off != 0) {
      ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "",
                                                  document.subtotal_off * 100),
                RTF_SUCCESS);
      gross[document.lines[0].department] -= document.subtotal_off;
      total -= document.subtotal_off;
    }
    if (document.kind == 'A') {
      ASSERT_EQ(device.PrintRecVoid(""), RTF_SUCCESS);
      ++sums.counts['A'];
      continue;
    }
    if (document.kind != 'V') {
      if (document.cash_part != 0) {
        ASSERT_EQ(device.PrintRecTotalEx(document.cash_part * 100, "0", false), RTF_SUCCESS);
        tenders["0"] += document.cash_part;
      }
      ASSERT_EQ(PayRest(document.tender), RTF_SUCCESS);
      tenders[document.tender] += total - document.cash_part;
    }
    const int sign = document.kind == 'S' || document.kind == 'I' ? 1 : -1;
    for (const auto& [vat, cents] : gross) {
      if (cents != 0) ++sums.documents[vat];
      sums.by_kind[document.kind] += cents;
      sums.gross[document.kind][vat] += cents;
      sums.tax[document.kind][vat] += RoundedTax(cents, kRates[vat]);
    }
    for (const auto& [department, cents] : departments)
      sums.departments[department] += sign * cents;
    for (const auto& [tender, cents] : tenders) {
      sums.tenders[tender] += sign * cents;
      ++sums.payments[tender];
    }
    ++sums.counts[document.kind];
    if (document.kind == 'S') {
      last_gross = gross;
      last_departments = departments;
      last_tenders = tenders;
    }
  }

  const int64_t day = sums.by_kind['S'] + sums.by_kind['I'] - sums.by_kind['R'] - sums.by_kind['V'];
  // 8 and 7 kinds: 24 documents of the day in numbers, 2 invoices, 2 abandoned.
  EXPECT_EQ(sums.counts['S'], 22);
  EXPECT_EQ(sums.counts['I'], 2);
  EXPECT_EQ(sums.counts['R'], 2);
  EXPECT_EQ(sums.counts['V'], 2);
  EXPECT_EQ(sums.counts['A'], 2);

  const auto text = [](int64_t cents) { return std::to_string(cents * 100); };
  const struct {
    char kind;
    int gross, net;
  } kinds[] = {
      {'S', RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS, RTF_FPTR_GT_VAT_CATEGORY_RECEIPT},
      {'I', RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, RTF_FPTR_GT_VAT_CATEGORY_INVOICE},
      {'R', RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, RTF_FPTR_GT_VAT_CATEGORY_REFUND},
      {'V', RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, RTF_FPTR_GT_VAT_CATEGORY_CANCEL},
  };
  const auto check_totalizers = [&](int scope) {
    int64_t all_tax = 0;
    for (int vat = 1; vat <= 5; ++vat) {
      int64_t gross = 0, tax = 0;
      for (const auto& kind : kinds) {
        const int64_t kind_gross = sums.gross[kind.kind][vat];
        const int64_t kind_tax = sums.tax[kind.kind][vat];
        EXPECT_EQ(Totalizer(vat, kind.gross, scope), text(kind_gross)) << kind.kind << vat;
        EXPECT_EQ(Totalizer(vat, kind.net, scope), text(kind_gross - kind_tax)) << kind.kind << vat;
        const int sign = kind.kind == 'S' || kind.kind == 'I' ? 1 : -1;
        gross += sign * kind_gross;
        tax += sign * kind_tax;
      }
      EXPECT_EQ(Totalizer(vat, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, scope), text(gross));
      EXPECT_EQ(Totalizer(vat, RTF_FPTR_GT_VAT_CATEGORY_TAXALL, scope), text(tax));
      EXPECT_EQ(Totalizer(vat, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE, scope),
                text(sums.departments[vat]));
      all_tax += tax;
    }
    EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, scope), text(day));
    EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_VAT_CATEGORY_TAXALL, scope), text(all_tax));
  };
  check_totalizers(RTF_FPTR_TT_DAY);
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), text(day));

  NewPaper();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  check_totalizers(RTF_FPTR_TT_GRAND);  // the closing keeps what the day had
  EXPECT_EQ(Data(RTF_FPTR_GD_GRAND_TOTAL), text(day));
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "0");

  // The paper of the closing says the same.
  const std::string paper = NewPaper();
  const auto money = [](int64_t cents) {
    const std::string sign = cents < 0 ? "-" : "";
    const int64_t size = std::abs(cents);
    const std::string rest = std::to_string(100 + size % 100).substr(1);
    return sign + std::to_string(size / 100) + "," + rest;
  };
  const auto has = [&](const std::string& left, const std::string& right) {
    const std::string line =
        "\n" + left + std::string(42 - left.size() - right.size(), ' ') + right + "\n";
    EXPECT_NE(paper.find(line), std::string::npos) << line << paper;
  };
  has("Documenti", "26");
  has("Fatture", "2");
  has("Documenti annullati in corso", "2");
  has("Vendite", money(sums.by_kind['S'] + sums.by_kind['I']));
  has("Resi", money(sums.by_kind['R']));
  has("Annulli", money(sums.by_kind['V']));
  has("Totale non riscosso",
      money(sums.tenders["5"] + sums.tenders["6"] + sums.tenders["7"] + sums.tenders["9"]));
  has("TOTALE GIORNALIERO", money(day));
  has("GRAN TOTALE", money(day));
  const auto pays = [&](const std::string& name, const char* tender) {
    has(name + " n. " + std::to_string(sums.payments[tender]), money(sums.tenders[tender]));
  };
  pays("Pagamento contante", "0");
  pays("Pagamento assegno", "1");
  pays("Pagamento elettronico", "2");
  pays("Pagamento bancomat", "3");
  pays("Ticket", "4");
  pays("Pagamento elettronico 01", "10");
  pays("Pagamento elettronico 20", "29");
  const char* names[] = {"", "22%", "10%", "5%", "4%", "ES*"};
  for (int vat = 1; vat <= 5; ++vat) {
    has("Totale " + std::string(names[vat]) + " n. " + std::to_string(sums.documents[vat]),
        money(sums.gross['S'][vat] + sums.gross['I'][vat] - sums.gross['R'][vat] -
              sums.gross['V'][vat]));
  }
}

}  // namespace
}  // namespace lorimat
