// Random days of sales, invoices, credit notes and voids, right and wrong ones, with closings,
// restarts and documents that are cut off. A model of its own foretells each answer; whatever
// happens, of no sale goes back more than was sold, in all and by VAT entry.
#include <array>
#include <map>
#include <random>

#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

using Sums = std::map<int, int64_t>;  // amounts by VAT entry

int64_t TotalOf(const Sums& sums) {
  int64_t total = 0;
  for (const auto& [vat, amount] : sums) total += amount;
  return total;
}

struct ModelSale {
  int closure = 0;
  int number = 0;
  std::string date;
  Sums sold;
  Sums gone;
  int documents = 0;  // that took it back, or a part
  bool voided = false;

  bool nothing_left() const { return documents > 0 && TotalOf(gone) >= TotalOf(sold); }
  bool Covers(const Sums& more) const {
    if (TotalOf(gone) + TotalOf(more) > TotalOf(sold)) return false;
    for (const auto& [vat, amount] : more) {
      const auto of = [vat = vat](const Sums& sums) {
        const auto found = sums.find(vat);
        return found == sums.end() ? 0 : found->second;
      };
      if (of(gone) + amount > of(sold)) return false;
    }
    return true;
  }
};

class PaidBackProperty : public StoreTest, public testing::WithParamInterface<unsigned> {
 protected:
  static constexpr const char* kOwn = "99LRM0000001VR";
  static constexpr const char* kOther = "99XXX9999999ZZ";

  PaidBackProperty() : random_(GetParam()) {
    now = FixedTime();
    Start();
  }
  void Start() {
    device.reset();
    RegisterSettings settings = FileSettings();
    settings.clock = [] { return now; };
    device = std::make_unique<VirtualRegister>(settings);
  }
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  bool Chance(int percent) { return Pick(100) < percent; }
  static std::string Today() {
    return fmt::format("{:02}{:02}{:04}", now.tm_mday, now.tm_mon + 1, 1900 + now.tm_year);
  }

  // What nothing may change that is refused.
  std::string Facts() const {
    const RegisterStore& store = device->store();
    return fmt::format("{} {} {} {} {} {}", store.document_count(), store.journal_count(),
                       store.grand_total(), store.day().ToRecord(),
                       device->paper().dropped() + device->paper_lines().size(),
                       device->printer_state());
  }
  void Refused(const std::string& before, int code, int expected) {
    EXPECT_EQ(code, expected);
    EXPECT_EQ(Facts(), before);
    ++answers[expected];
  }

  // --- Lines. The departments 1 to 5 have the VAT entries of their numbers.
  int Line(int department, int64_t price, int type = PflItemType::kPrintRecItem) {
    return device->PrintRecItemEx(type, "", price, 0, -1, 0, "", department, true, "");
  }
  int64_t Price() { return 100 * (1 + Pick(1500)); }
  // Some lines with discounts, surcharges and voids; what they come to.
  void RandomLines(Sums* sums) {
    for (int lines = 1 + Pick(4); lines > 0; --lines) {
      const int department = 1 + Pick(5);
      const int64_t price = Price();
      ASSERT_EQ(Line(department, price), RTF_SUCCESS);
      if (lines > 1 && Chance(15)) {
        ASSERT_EQ(Line(department, price, PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
        continue;
      }
      (*sums)[department] += price;
      if (Chance(30)) {
        const bool off = Chance(60);
        const int64_t size = off ? 100 * (1 + Pick(static_cast<int>(price / 100))) : Price();
        ASSERT_EQ(
            device->PrintRecItemAdjustmentEx(
                off ? RTF_FPTR_AT_AMOUNT_DISCOUNT : RTF_FPTR_AT_AMOUNT_SURCHARGE, "", size, -1, -2),
            RTF_SUCCESS);
        (*sums)[department] += off ? -size : size;
      }
    }
    if (!Chance(30)) return;
    // A package off the subtotal: the host says what of it falls on which entry.
    std::string shares;
    Sums off;
    for (const auto& [vat, amount] : *sums) {
      if (amount < 100) continue;
      off[vat] = 100 * (1 + Pick(static_cast<int>(amount / 100)));
      shares += fmt::format("{}{},{}", shares.empty() ? "" : ";", vat, off[vat]);
    }
    if (shares.empty()) return;
    ASSERT_EQ(device->PrintRecPackageAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", shares.c_str()),
              RTF_SUCCESS);
    for (const auto& [vat, amount] : off) (*sums)[vat] -= amount;
  }
  // A line for each entry; at a higher price with a discount behind it, at times.
  void LinesOf(const Sums& wanted) {
    bool any = false;
    for (const auto& [vat, amount] : wanted) {
      if (amount == 0) continue;
      any = true;
      const int64_t above = Chance(30) ? Price() : 0;
      ASSERT_EQ(Line(vat, amount + above), RTF_SUCCESS);
      if (above == 0) continue;
      ASSERT_EQ(device->PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", above, -1, -2),
                RTF_SUCCESS);
    }
    if (any) return;
    ASSERT_EQ(Line(1, 10000), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000, -1, -2),
              RTF_SUCCESS);
  }

  // --- Documents
  int Pay() {
    if (Chance(20)) return device->PrintRecNotPaid("", 0) == RTF_SUCCESS ? RTF_SUCCESS : PayAll();
    return PayAll();
  }
  int PayAll() { return device->PrintRecTotalEx(0, Chance(50) ? "0" : "2", true); }
  // Leaves the open document, in one way or another.
  void Leave() {
    if (Chance(50)) {
      ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
    } else if (Chance(50)) {
      ASSERT_EQ(device->PrintRecVoid("basta"), RTF_SUCCESS);
    } else {
      Start();
    }
    ASSERT_EQ(device->printer_state(), RTF_FPTR_PS_MONITOR);
    ++left;
  }
  void Sell() {
    ASSERT_EQ(device->BeginFiscalReceipt(true), RTF_SUCCESS);
    ModelSale sale;
    ASSERT_NO_FATAL_FAILURE(RandomLines(&sale.sold));
    if (Chance(10)) return Leave();
    ASSERT_EQ(PayAll(), RTF_SUCCESS);
    sale.closure = device->store().last_closure() + 1;
    sale.number = device->store().counters().documents;
    sale.date = Today();
    sales.push_back(sale);
  }
  void Invoice() {
    ASSERT_EQ(device->BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
    Sums sums;
    ASSERT_NO_FATAL_FAILURE(RandomLines(&sums));
    ASSERT_EQ(PayAll(), RTF_SUCCESS);
  }

  struct Named {
    int closure = 0;
    int number = 0;
    std::string date;
    ModelSale* sale = nullptr;  // of these numbers; the date may be wrong
    int code = RTF_SUCCESS;     // of what is named so
  };
  Named NameSomething() {
    Named named;
    ModelSale& any = sales[static_cast<size_t>(Pick(static_cast<int>(sales.size())))];
    named.closure = any.closure;
    named.number = any.number;
    if (Chance(15)) named.number += 1 + Pick(3);
    if (Chance(10)) named.closure = 1 + Pick(named.closure + 1);
    for (ModelSale& sale : sales) {
      if (sale.closure == named.closure && sale.number == named.number) named.sale = &sale;
    }
    if (Chance(60)) named.date = Chance(85) ? any.date : "31122023";
    if (named.sale == nullptr) {
      named.code = RTF_E_NOEXIST;
    } else if (!named.date.empty() && named.date != named.sale->date) {
      named.code = RTF_EFPTR_BAD_DATE;
    }
    return named;
  }
  void CreditNote() {
    const std::string before = Facts();
    Named named = NameSomething();
    const int who = Pick(10);
    const bool other = who == 0;
    const bool nobody = who == 1;
    if (nobody) named = Named{};
    const bool limited = !other && !nobody;
    int expected = limited ? named.code : RTF_SUCCESS;
    if (expected == RTF_SUCCESS && limited && (named.sale->voided || named.sale->nothing_left())) {
      expected = RTF_E_EXISTS;
    }
    const char* serial = other ? kOther : who < 5 && !nobody ? kOwn : "";
    const int form = *serial == '\0' ? Pick(3) : 0;
    const int code =
        form == 0 ? device->BeginDocTelematicRefund(named.number, named.closure, named.date.c_str(),
                                                    serial)
        : form == 1
            ? device->BeginDocRefund(named.number, named.closure, named.date.c_str())
            : device->BeginDocRefundEx(named.number, named.closure, named.date.c_str(), false);
    if (expected != RTF_SUCCESS) return Refused(before, code, expected);
    ASSERT_EQ(code, RTF_SUCCESS);

    Sums lines;
    const int what = named.sale == nullptr ? 2 : Pick(4);
    if (what == 0) {  // all that is left
      lines = named.sale->sold;
      for (const auto& [vat, amount] : named.sale->gone) {
        if ((lines[vat] -= amount) < 0) lines[vat] = 0;  // of another register's numbers
      }
      if (Chance(30)) lines[1 + Pick(5)] += 100;  // and a cent
      ASSERT_NO_FATAL_FAILURE(LinesOf(lines));
    } else if (what == 1 || what == 3) {  // a part
      for (const auto& [vat, amount] : named.sale->sold) {
        if (amount >= 100) lines[vat] = 100 * Pick(static_cast<int>(amount / 100) + 1);
      }
      ASSERT_NO_FATAL_FAILURE(LinesOf(lines));
    } else {
      ASSERT_NO_FATAL_FAILURE(RandomLines(&lines));
    }
    if (Chance(10)) return Leave();
    Finish(limited ? named.sale : nullptr, lines,
           !limited || named.sale->Covers(lines) ? RTF_SUCCESS : RTF_EFPTR_FISCAL_TOTALS_ERROR);
  }
  void Void() {
    const std::string before = Facts();
    const Named named = NameSomething();
    int expected = named.code;
    if (expected == RTF_SUCCESS && named.sale->documents > 0) expected = RTF_E_EXISTS;
    const bool whole = Chance(40);
    const bool refund = whole && Chance(50);
    const int code =
        refund ? device->BeginDocRefundEx(named.number, named.closure, named.date.c_str(), true)
               : device->BeginDocTelematicCancel(named.number, named.closure, named.date.c_str(),
                                                 whole, "");
    if (expected != RTF_SUCCESS) return Refused(before, code, expected);
    ASSERT_EQ(code, RTF_SUCCESS);
    ModelSale& sale = *named.sale;
    if (whole) {
      sale.gone = sale.sold;
      ++sale.documents;
      sale.voided = !refund;
      ++answers[RTF_SUCCESS];
      return;
    }
    Sums lines;
    if (Chance(60)) {
      lines = sale.sold;
      if (Chance(30)) {  // the same total of another entry
        const int64_t total = TotalOf(lines);
        lines = {{1 + Pick(5), total}};
      }
      ASSERT_NO_FATAL_FAILURE(LinesOf(lines));
    } else {
      ASSERT_NO_FATAL_FAILURE(RandomLines(&lines));
    }
    if (Chance(10)) return Leave();
    const bool right = sale.Covers(lines) && TotalOf(lines) == TotalOf(sale.sold);
    if (Finish(&sale, lines, right ? RTF_SUCCESS : RTF_EFPTR_FISCAL_TOTALS_ERROR)) {
      sale.voided = true;
    }
  }
  // Pays the open document; whether it went through.
  bool Finish(ModelSale* sale, const Sums& lines, int expected) {
    const std::string before = Facts();
    const int code = Pay();
    if (expected != RTF_SUCCESS) {
      Refused(before, code, expected);
      Leave();
      return false;
    }
    EXPECT_EQ(code, RTF_SUCCESS);
    ++answers[RTF_SUCCESS];
    if (sale == nullptr) return true;
    ++sale->documents;
    for (const auto& [vat, amount] : lines) sale->gone[vat] += amount;
    return true;
  }
  void NextDay() {
    ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
    if (now.tm_mday < 31) ++now.tm_mday;
  }

  // What the register has, held against itself and against the model.
  void ExpectNothingPaidTwice() {
    using Numbers = std::pair<int, int>;
    std::map<Numbers, StoredDocument> sold;
    std::map<Numbers, Sums> gone;
    for (const StoredDocument& document : device->store().documents()) {
      if (document.kind == DocumentKind::kSale) {
        sold[{document.closure, document.number}] = document;
      } else if (document.referred_closure != 0) {
        for (const auto& [vat, gross] : document.by_vat) {
          gone[{document.referred_closure, document.referred_number}][vat] += gross;
        }
      }
    }
    for (auto& [numbers, back] : gone) {
      ASSERT_TRUE(sold.contains(numbers));
      StoredDocument& sale = sold[numbers];
      EXPECT_LE(TotalOf(back), sale.total);
      for (const auto& [vat, amount] : back) EXPECT_LE(amount, sale.by_vat[vat]) << vat;
    }
    ASSERT_EQ(sold.size(), sales.size());
    for (const ModelSale& sale : sales) {
      const Numbers numbers = {sale.closure, sale.number};
      EXPECT_EQ(TotalOf(gone[numbers]), TotalOf(sale.gone));
      EXPECT_EQ(sold[numbers].voided, sale.voided);
      for (const auto& [vat, amount] : sale.gone) EXPECT_EQ(gone[numbers][vat], amount) << vat;
    }
  }

  static inline std::tm now = {};
  std::unique_ptr<VirtualRegister> device;
  std::vector<ModelSale> sales;
  std::map<int, int> answers;  // to credit notes and voids, by code
  int left = 0;                // documents that were abandoned or cut off

 private:
  std::mt19937 random_;
};

TEST_P(PaidBackProperty, OfNoSaleGoesBackMoreThanWasSold) {
  for (int step = 0; step < 400; ++step) {
    SCOPED_TRACE(step);
    const int what = Pick(100);
    if (what < 22 || sales.empty()) {
      Sell();
    } else if (what < 26) {
      Invoice();
    } else if (what < 72) {
      CreditNote();
    } else if (what < 94) {
      Void();
    } else if (what < 97) {
      NextDay();
    } else {
      Start();
    }
    if (HasFatalFailure() || HasNonfatalFailure()) return;
    if (step % 100 == 99) ExpectNothingPaidTwice();
  }
  // The days had some of everything.
  for (const int code : {RTF_SUCCESS, RTF_E_NOEXIST, RTF_E_EXISTS, RTF_EFPTR_BAD_DATE,
                         RTF_EFPTR_FISCAL_TOTALS_ERROR}) {
    EXPECT_GE(answers[code], 10) << code;
  }
  EXPECT_GE(left, 10);
}

INSTANTIATE_TEST_SUITE_P(Seeds, PaidBackProperty, testing::Range(1u, 9u));

}  // namespace
}  // namespace lorimat
