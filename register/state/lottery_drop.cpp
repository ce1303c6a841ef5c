#include "register/state/lottery_drop.h"

namespace lorimat {

const char* LotteryDropText(LotteryDropCause cause) {
  switch (cause) {
    case LotteryDropCause::kNone:
      break;
    case LotteryDropCause::kTotal:
      return "the lottery code was left out: the total is below 1,00";
    case LotteryDropCause::kPayment:
      return "the lottery code was left out: not all of it was paid electronically";
    case LotteryDropCause::kTaxCode:
      return "the lottery code was left out: the receipt has a tax code";
  }
  return "";
}

}  // namespace lorimat
