// The customer's codes of a document: tax code and lottery.
#include <algorithm>
#include <optional>

#include "register/desk/receipt_desk.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

// What a receipt has to come to for the lottery.
constexpr Amount kLeastOfLottery = kCurrencyUnit;

bool IsAlphanumeric(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Whether all that was paid went by cards and the like.
bool IsElectronic(const StoredDocument& document, const Tables& tables) {
  return std::all_of(document.by_tender.begin(), document.by_tender.end(), [&](const auto& sum) {
    const Tender* tender = tables.FindTender(sum.first);
    return sum.second == 0 || (tender != nullptr && tender->kind == TenderKind::kElectronic);
  });
}

}  // namespace

int ReceiptDesk::TaxId(std::string_view text) {
  if (!core_.Allows(Operation::kTaxId)) return RTF_EFPTR_WRONG_STATE;
  // A VAT number of 11 digits or a personal tax code of 16 characters.
  if (text.size() != 11 && text.size() != 16) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kEitherLength, Subject::kTaxCode,
                       {static_cast<int64_t>(text.size()), 11, 16});
  }
  if (!std::all_of(text.begin(), text.end(), IsAlphanumeric)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kTaxCode, {}, text);
  }
  core_.document.tax_id = text;
  return RTF_SUCCESS;
}

int ReceiptDesk::LotteryCode(std::string_view code) {
  if (!core_.Allows(Operation::kLottery)) return RTF_EFPTR_WRONG_STATE;
  if (core_.document.receipt.kind() != DocumentKind::kSale) {
    return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kNoLotteryHere);
  }
  if (code.size() != 8) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kWrongLength, Subject::kLotteryCode,
                       {static_cast<int64_t>(code.size()), 8, 8});
  }
  if (!std::all_of(code.begin(), code.end(), IsAlphanumeric)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kLotteryCode, {}, code);
  }
  // Codes have capital letters; customers show them as they like.
  core_.document.lottery_code = code;
  for (char& c : core_.document.lottery_code) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return RTF_SUCCESS;
}

// What the lottery does not take goes out without its code: the customer has bought and paid. What
// goes back has the code of its sale.
void ReceiptDesk::SetLottery(const StoredDocument& stored) {
  OpenDocument& document = core_.document;
  if (stored.kind != DocumentKind::kSale) {
    StoredDocument sale;
    if (IsOwn(document.reference) && FindSale(document.reference, &sale) == RTF_SUCCESS) {
      document.lottery_code = sale.lottery_code;
    }
    return;
  }
  if (document.lottery_code.empty()) return;
  if (stored.total < kLeastOfLottery) {
    document.lottery_drop = LotteryDropCause::kTotal;
  } else if (!IsElectronic(stored, core_.tables)) {
    document.lottery_drop = LotteryDropCause::kPayment;
  } else if (!document.tax_id.empty()) {
    document.lottery_drop = LotteryDropCause::kTaxCode;
  }
  if (document.lottery_drop != LotteryDropCause::kNone) document.lottery_code.clear();
}

}  // namespace lorimat
