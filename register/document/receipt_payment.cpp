// How a document is paid.
#include <algorithm>
#include <optional>

#include "register/document/receipt.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

Amount Receipt::RoundingBy(const Tender& tender, const CashRounding* rounding) const {
  const auto coins = [](const Tender& one) { return one.id == kCashTender; };
  const bool all =
      coins(tender) && std::all_of(payments_.begin(), payments_.end(),
                                   [&](const Payment& payment) { return coins(*payment.tender); });
  if (rounding == nullptr || !all || remaining() == 0) return 0;
  const Amount coined = RoundToFiveCents(total_);
  // No payment comes to more than a document may.
  return coined <= kMaxAmount ? coined - total_ : 0;
}

int Receipt::Pay(const Tender& tender, Amount amount, bool automatic, Payment* done,
                 const CashRounding* rounding) {
  const Amount rest = remaining();
  const Amount rounded = RoundingBy(tender, rounding);
  const Amount due = rest + rounded;
  Amount given = due;
  Amount face = 0;
  if (!automatic) {
    std::optional<Amount> cents = RoundToCents(amount);
    if (!cents || *cents < 0 || *cents > kMaxAmount) {
      return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kPaymentSize, {amount});
    }
    // A payment of nothing settles only what costs nothing.
    if (*cents == 0 && rest > 0) {
      return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNothingPaid, {rest});
    }
    if (*cents > rest && tender.keeps_rest) {
      face = *cents;
      cents = rest;
    }
    if (*cents > rest && !tender.gives_change) {
      return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoChange, {*cents, rest});
    }
    given = *cents;
    // Who pays to the cent pays as the coins have it.
    if (given >= std::min(rest, due) && given <= std::max(rest, due)) given = due;
  }
  if (rounded != 0 && given >= due) {
    payments_.push_back({rounded < 0 ? rounding->down : rounding->up, -rounded, 0});
    paid_ -= rounded;
  }
  *done = {&tender, given, face};
  // Rounding may leave nothing to be paid.
  if (given != 0 || rounded == 0) payments_.push_back(*done);
  paid_ += given;
  at_subtotal_ = false;
  return RTF_SUCCESS;
}

Amount Receipt::remaining() const { return std::max<Amount>(total_ - paid(), 0); }

Amount Receipt::change() const { return std::max<Amount>(paid() - total_, 0); }

}  // namespace lorimat
