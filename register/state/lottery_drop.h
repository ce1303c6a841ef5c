// A lottery code that a receipt went out without, and why.
#pragma once

#include <cstdint>

namespace lorimat {

enum class LotteryDropCause { kNone, kTotal, kPayment, kTaxCode };

struct LotteryDrop {
  LotteryDropCause cause = LotteryDropCause::kNone;
  // The receipt.
  int closure = 0;
  int number = 0;
};

// In English, for hosts: "the lottery code was left out: the total is below 1,00"; empty for none.
const char* LotteryDropText(LotteryDropCause cause);

}  // namespace lorimat
