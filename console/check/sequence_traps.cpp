#include "console/check/sequence_traps.h"

#include <fmt/format.h>

#include <algorithm>

#include "console/check/number_reading.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "register/value/money.h"

namespace lorimat::console {
namespace {

using Trap = FindingCause;

// Opcodes.
constexpr int kProgramming = 1;
constexpr int kEndOfProgramming = 2;
constexpr int kClear = 8;
constexpr int kKeys = 9;
constexpr int kSale = 10;
constexpr int kPayment = 11;
constexpr int kDiscount = 12;
constexpr int kLock = 15;
constexpr int kPercentageDiscount = 16;
constexpr int kPercentageSurcharge = 17;
constexpr int kAttachment = 21;
constexpr int kNonFiscal = 22;
constexpr int kInvoice = 23;
constexpr int kCreditNote = 24;
constexpr int kSubtotalCheck = 73;
constexpr int kReset = 74;
constexpr int kSurcharge = 80;
constexpr int kVoidDocument = 124;

constexpr int64_t kTenThousand = 10000;
// Beyond any receipt; sums of two do not overflow.
constexpr int64_t kMostAmount = 1'000'000'000 * kTenThousand;

std::string Money(int64_t amount) {
  const char* sign = amount < 0 ? "-" : "";
  const int64_t cents = (amount < 0 ? -amount : amount) / (kTenThousand / 100);
  return fmt::format("{}{}.{:02}", sign, cents / 100, cents % 100);
}

// The keys that pay what is due, or the amount keyed in front of them.
bool IsPayingKey(int key) {
  switch (key) {
    case FunctionCode::kTotal:
    case FunctionCode::kCredit:
    case FunctionCode::kCheque:
    case FunctionCode::kTicket:
    case FunctionCode::kCreditCard:
    case FunctionCode::kCreditInvoice:
    case FunctionCode::kCreditServices:
    case FunctionCode::kCreditSSN:
      return true;
    default:
      return false;
  }
}

bool IsSellingKey(int key) {
  return key == FunctionCode::kDepartment || key == FunctionCode::kPlu ||
         (key >= FunctionCode::kDepartment01 && key <= FunctionCode::kLastDepartment);
}

bool IsPlainKey(int key) {
  return (key >= FunctionCode::kNumber1 && key <= FunctionCode::kSeparator) ||
         key == FunctionCode::kAmount || key == FunctionCode::kMultiplier ||
         key == FunctionCode::kSubtotal || key == FunctionCode::kDrawer ||
         key == FunctionCode::kConfirm;
}

}  // namespace

bool SequenceTraps::Given(int field) const { return language_.translator().szCampi[field][0] != 0; }

int SequenceTraps::Whole(int field) const {
  return TextToInt(language_.translator().szCampi[field]);
}

int64_t SequenceTraps::Amount(int field) const {
  return ReadNumber(NumberKind::kPrice, language_.translator().szCampi[field]).value;
}

std::string SequenceTraps::CommandWord(int opcode) const {
  const std::string name = language_.CommandName(opcode);
  return name.empty() ? fmt::format("#{}", opcode) : name;
}

void SequenceTraps::Tell(Trap trap, std::vector<FindingArgument> arguments, const Mark& mark) {
  Finding finding = MakeFinding(trap, std::move(arguments));
  finding.line = mark.place.line;
  finding.column = mark.place.column;
  finding.source = mark.place.source;
  findings_.Add(std::move(finding));
}

void SequenceTraps::Become(State state) {
  if (state != state_) refusal_told_ = false;
  state_ = state;
  if (state == State::kReady) attachments_ = by_key_ = false;
  if (state == State::kOpen || state == State::kReady) paid_sum_ = 0;
  if (state == State::kOpen || state == State::kUnknown) has_lines_ = state == State::kUnknown;
}

// Where the printer is ready and the translator counts a document as open, the line that brought
// it about is kept.
void SequenceTraps::NoteMemory() {
  if (state_ != State::kReady || opens_) {
    lost_.reset();
    lost_told_ = false;
  } else if (!lost_) {
    lost_ = here_;
  }
}

void SequenceTraps::Take(int opcode, const std::string& command, const LinePlace& place) {
  here_ = {command, place};
  switch (opcode) {
    case kSale:
      Sell();
      break;
    case kPayment:
      PayByCommand();
      break;
    case kKeys:
      PlayKey();
      break;
    case kDiscount:
    case kSurcharge:
    case kPercentageDiscount:
    case kPercentageSurcharge:
      Adjust(opcode);
      break;
    case kSubtotalCheck:
      CheckSubtotal();
      break;
    case kInvoice:
    case kCreditNote:
    case kVoidDocument:
      OpenDocument(opcode);
      break;
    case kProgramming:
    case kEndOfProgramming:
    case kLock:
      TurnLock(opcode);
      break;
    case kAttachment:
      Attach();
      break;
    case kNonFiscal:
      PrintNonFiscal();
      break;
    case kClear:
      opens_ = true;
      break;
    case kReset:
      opens_ = true;
      lottery_ = false;
      Become(State::kReady);
      break;
    default:
      break;
  }
  NoteMemory();
}

void SequenceTraps::Finish() {
  if (lost_ && !lost_told_) {
    Tell(Trap::kNextSaleLost, {lost_->command, CommandWord(kClear)}, *lost_);
  }
  if (state_ == State::kPaying && !refusal_told_ && total_) {
    Tell(Trap::kPaidTooLittle, {paid_.command, Money(paid_sum_), Money(*total_)}, paid_);
  }
}

// --- Sales

void SequenceTraps::Sell() {
  if (EffectOf(language_.translator(), kSale) != ReceiptEffect::kSale) return;
  switch (state_) {
    case State::kReady:
      if (key_) {
        if (!key_told_) {
          Tell(Trap::kKeyTurned, {key_->command, key_->place.line, CommandWord(kEndOfProgramming)},
               here_);
        }
        key_told_ = true;
        return;
      }
      if (!opens_) {
        if (lost_ && !lost_told_) {
          Tell(Trap::kNoReceiptOpens,
               {lost_->command, lost_->place.line, CommandWord(kClear), CommandWord(kReset),
                CommandWord(kPayment)},
               here_);
        }
        lost_told_ = true;
        return;
      }
      Become(State::kOpen);
      total_ = 0;
      break;
    case State::kPaying:
      if (!refusal_told_ && total_) {
        Tell(Trap::kSaleBehindPayment,
             {paid_.place.line, Money(paid_sum_), Money(*total_), CommandWord(kPayment)}, here_);
      }
      refusal_told_ = true;
      break;
    case State::kEnding:
      if (!refusal_told_) {
        Tell(Trap::kReceiptNotEnded,
             {paid_.place.line, CommandWord(attachments_ ? kAttachment : kKeys)}, here_);
      }
      refusal_told_ = true;
      break;
    case State::kNonFiscal:
      if (!refusal_told_) {
        Tell(Trap::kSaleInNonFiscal, {opened_.place.line, CommandWord(kNonFiscal)}, here_);
      }
      refusal_told_ = true;
      break;
    case State::kUnknown:
      total_.reset();
      Become(State::kOpen);
      break;
    case State::kOpen:
      break;
  }
  opens_ = false;
  if (state_ != State::kOpen) return;
  has_lines_ = true;
  AddLine();
}

// The line's amount, where the line tells it. The device may still refuse the line; then the total
// is less, and what follows would be wrong, but so is the line.
void SequenceTraps::AddLine() {
  if (!total_) return;
  const bool takes_off = Given(5) || Given(6) || Given(16) || Given(17) || Given(19);
  const int64_t quantity =
      Given(3) ? ReadNumber(NumberKind::kQuantity, language_.translator().szCampi[3]).value : 0;
  const bool known = Given(1) && Given(4) && !Given(15) && Amount(4) > 0 && quantity >= 0 &&
                     !(quantity > 0 && (Given(16) || Given(17)));
  std::optional<int64_t> line;
  if (known && quantity > 0) {
    line = lorimat::LineAmount(static_cast<int32_t>(quantity), Amount(4));
  } else if (known) {
    line = lorimat::RoundToCents(Amount(4));
  }
  if (!line || *line > kMostAmount || *total_ > kMostAmount || *total_ < -kMostAmount) {
    total_.reset();
  } else {
    *total_ += takes_off ? -*line : *line;
  }
}

void SequenceTraps::Adjust(int opcode) {
  if (state_ != State::kOpen || !total_) return;
  // A percentage is rounded by the device.
  const bool amounts = opcode == kDiscount || opcode == kSurcharge;
  const std::optional<int64_t> value =
      amounts ? lorimat::RoundToCents(Amount(1)) : std::optional<int64_t>();
  const bool surcharge = opcode == kSurcharge;
  if (!value || *value <= 0 || *value > (surcharge ? kMostAmount : *total_)) {
    total_.reset();
  } else {
    *total_ += surcharge ? *value : -*value;
  }
}

void SequenceTraps::CheckSubtotal() {
  if (state_ != State::kOpen || !total_ || !Given(1)) return;
  const char* text = language_.translator().szCampi[1];
  if (!ReadNumber(NumberKind::kPrice, text).plain || Amount(1) == *total_) return;
  Tell(Trap::kSubtotalDiffers, {here_.command, Money(*total_), text}, here_);
  // The receipt is given up, and nothing tells the translator.
  Become(State::kReady);
  NoteMemory();
  lost_told_ = true;
}

// --- Payments

// A receipt that a key has opened is to be closed by a key.
void SequenceTraps::Settle() { Become(attachments_ || by_key_ ? State::kEnding : State::kReady); }

// amount is what is paid, where it is known; whole pays what is due.
void SequenceTraps::Pay(std::optional<int64_t> amount, bool whole, bool forgets) {
  if (forgets) opens_ = true;
  if (state_ != State::kOpen && state_ != State::kPaying && state_ != State::kUnknown) return;
  // There is nothing to pay yet.
  if (state_ == State::kOpen && !has_lines_) return;
  paid_ = here_;
  if (whole) return Settle();
  if (state_ == State::kUnknown || !total_ || !amount || *amount <= 0) {
    return Become(State::kUnknown);
  }
  paid_sum_ += std::min(*amount, *total_ - paid_sum_);
  if (paid_sum_ >= *total_) return Settle();
  const int64_t sum = paid_sum_;
  Become(State::kPaying);
  paid_sum_ = sum;
}

void SequenceTraps::PayByCommand() {
  // A tender that the device does not know, and change that a tender does not give, are refused.
  const int tender = Given(1) ? Whole(1) : 1;
  if (!Given(2)) return Pay({}, tender > 0, true);
  const bool exact = total_ && Amount(2) <= *total_ - paid_sum_;
  Pay(tender == 1 || (tender > 0 && exact) ? std::optional(Amount(2)) : std::nullopt, false, true);
}

void SequenceTraps::PlayKey() {
  const int key = Whole(4);
  if (key < 0 || key > 255) return;
  const bool lottery = lottery_;
  lottery_ = key == FunctionCode::kLotteryCode;
  if (lottery_ || (lottery && (key == FunctionCode::kConfirm || key == FunctionCode::kTotal))) {
    return;
  }
  if (key == FunctionCode::kClear) {
    opens_ = true;
  } else if (key >= FunctionCode::kSubTender01 && key <= FunctionCode::kLastSubTender) {
    Pay(Given(1) ? std::optional(Amount(1)) : std::nullopt, !Given(1), true);
  } else if (IsPayingKey(key)) {
    // How many decimals the digits have is the device's to know.
    Pay({}, !Given(1), false);
  } else if (key == FunctionCode::kVoidReceipt) {
    if (state_ == State::kOpen || state_ == State::kPaying) Become(State::kReady);
  } else if (key == FunctionCode::kOpenTransaction) {
    opens_ = false;
    if (state_ != State::kReady || key_) return;
    Become(State::kOpen);
    by_key_ = true;
    total_ = 0;
  } else if (key == FunctionCode::kCloseTransaction) {
    if (state_ != State::kReady || key_) opens_ = true;
    if (state_ == State::kEnding && !attachments_) Become(State::kReady);
  } else if (key == FunctionCode::kOpenRefundDoc || key == FunctionCode::kOpenCancelDoc ||
             key == FunctionCode::kInvoice) {
    opens_ = false;
    if (state_ == State::kReady) Become(State::kUnknown);
  } else if (key == FunctionCode::kKeyRegistering) {
    key_.reset();
  } else if (IsSellingKey(key) && !key_) {
    if (state_ == State::kReady || state_ == State::kUnknown) Become(State::kOpen);
    has_lines_ = true;
    total_.reset();
  } else if (!IsPlainKey(key)) {
    // Discounts, macros, and what else a key may do.
    total_.reset();
    if (key >= FunctionCode::kMacro01) Become(State::kUnknown);
  }
}

// --- Other documents, and the key

void SequenceTraps::OpenDocument(int opcode) {
  if (EffectOf(language_.translator(), opcode) != ReceiptEffect::kOpens) return;
  opens_ = false;
  if (state_ != State::kReady || key_) return;
  // A void of the whole document ends by itself.
  if (opcode == kVoidDocument && Given(5)) return;
  Become(State::kOpen);
  total_ = 0;
}

void SequenceTraps::TurnLock(int opcode) {
  if (state_ != State::kReady && state_ != State::kUnknown) return;
  bool registering = opcode == kEndOfProgramming;
  if (opcode == kLock) {
    const EcrCmdCommand& translator = language_.translator();
    registering = Given(1) ? translator.szCampi[1][0] == '1' : Given(2);
  }
  key_told_ = false;
  key_.reset();
  if (!registering) key_ = here_;
}

void SequenceTraps::Attach() {
  if (Given(1)) {
    attachments_ = true;
  } else if (Given(2) && state_ == State::kEnding) {
    Become(State::kReady);
  }
}

void SequenceTraps::PrintNonFiscal() {
  if (Given(1) && state_ == State::kReady && !key_) {
    opened_ = here_;
    Become(State::kNonFiscal);
  } else if (!Given(1) && Given(2) && state_ == State::kNonFiscal) {
    Become(State::kReady);
  }
}

}  // namespace lorimat::console
