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

std::string money(int64_t amount) {
  const char* sign = amount < 0 ? "-" : "";
  const int64_t cents = (amount < 0 ? -amount : amount) / (kTenThousand / 100);
  return fmt::format("{}{}.{:02}", sign, cents / 100, cents % 100);
}

// The keys that pay what is due, or the amount keyed in front of them.
bool is_paying_key(int key) {
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

bool is_selling_key(int key) {
  return key == FunctionCode::kDepartment || key == FunctionCode::kPlu ||
         (key >= FunctionCode::kDepartment01 && key <= FunctionCode::kLastDepartment);
}

bool is_plain_key(int key) {
  return (key >= FunctionCode::kNumber1 && key <= FunctionCode::kSeparator) ||
         key == FunctionCode::kAmount || key == FunctionCode::kMultiplier ||
         key == FunctionCode::kSubtotal || key == FunctionCode::kDrawer ||
         key == FunctionCode::kConfirm;
}

}  // namespace

bool SequenceTraps::given(int field) const { return language_.translator().szCampi[field][0] != 0; }

int SequenceTraps::whole(int field) const {
  return text_to_int(language_.translator().szCampi[field]);
}

int64_t SequenceTraps::amount(int field) const {
  return read_number(NumberKind::kPrice, language_.translator().szCampi[field]).value;
}

std::string SequenceTraps::command_word(int opcode) const {
  const std::string name = language_.command_name(opcode);
  return name.empty() ? fmt::format("#{}", opcode) : name;
}

void SequenceTraps::tell(Trap trap, std::vector<std::string> arguments, const Mark& mark) {
  sink_({trap, std::move(arguments), {}}, mark.place);
}

void SequenceTraps::become(State state) {
  if (state != state_) refusal_told_ = false;
  state_ = state;
  if (state == State::kReady) attachments_ = by_key_ = false;
  if (state == State::kOpen || state == State::kReady) paid_sum_ = 0;
  if (state == State::kOpen || state == State::kUnknown) has_lines_ = state == State::kUnknown;
}

// Where the printer is ready and the translator counts a document as open, the line that brought
// it about is kept.
void SequenceTraps::note_memory() {
  if (state_ != State::kReady || opens_) {
    lost_.reset();
    lost_told_ = false;
  } else if (!lost_) {
    lost_ = here_;
  }
}

void SequenceTraps::take(int opcode, const std::string& command, const LinePlace& place) {
  here_ = {command, place};
  switch (opcode) {
    case kSale:
      sell();
      break;
    case kPayment:
      pay_by_command();
      break;
    case kKeys:
      play_key();
      break;
    case kDiscount:
    case kSurcharge:
    case kPercentageDiscount:
    case kPercentageSurcharge:
      adjust(opcode);
      break;
    case kSubtotalCheck:
      check_subtotal();
      break;
    case kInvoice:
    case kCreditNote:
    case kVoidDocument:
      open_document(opcode);
      break;
    case kProgramming:
    case kEndOfProgramming:
    case kLock:
      turn_lock(opcode);
      break;
    case kAttachment:
      attach();
      break;
    case kNonFiscal:
      print_non_fiscal();
      break;
    case kClear:
      opens_ = true;
      break;
    case kReset:
      opens_ = true;
      lottery_ = false;
      become(State::kReady);
      break;
    default:
      break;
  }
  note_memory();
}

void SequenceTraps::finish() {
  if (lost_ && !lost_told_) {
    tell(Trap::kNextSaleLost, {lost_->command, command_word(kClear)}, *lost_);
  }
  if (state_ == State::kPaying && !refusal_told_ && total_) {
    tell(Trap::kPaidTooLittle, {paid_.command, money(paid_sum_), money(*total_)}, paid_);
  }
}

// --- Sales

void SequenceTraps::sell() {
  if (receipt_effect(language_.translator(), kSale) != ReceiptEffect::kSale) return;
  const std::string line = std::to_string(paid_.place.line);
  switch (state_) {
    case State::kReady:
      if (key_) {
        if (!key_told_) {
          tell(Trap::kKeyTurned,
               {key_->command, std::to_string(key_->place.line), command_word(kEndOfProgramming)},
               here_);
        }
        key_told_ = true;
        return;
      }
      if (!opens_) {
        if (lost_ && !lost_told_) {
          tell(Trap::kNoReceiptOpens,
               {lost_->command, std::to_string(lost_->place.line), command_word(kClear),
                command_word(kReset), command_word(kPayment)},
               here_);
        }
        lost_told_ = true;
        return;
      }
      become(State::kOpen);
      total_ = 0;
      break;
    case State::kPaying:
      if (!refusal_told_ && total_) {
        tell(Trap::kSaleBehindPayment,
             {line, money(paid_sum_), money(*total_), command_word(kPayment)}, here_);
      }
      refusal_told_ = true;
      break;
    case State::kEnding:
      if (!refusal_told_) {
        tell(Trap::kReceiptNotEnded, {line, command_word(attachments_ ? kAttachment : kKeys)},
             here_);
      }
      refusal_told_ = true;
      break;
    case State::kNonFiscal:
      if (!refusal_told_) {
        tell(Trap::kSaleInNonFiscal, {std::to_string(opened_.place.line), command_word(kNonFiscal)},
             here_);
      }
      refusal_told_ = true;
      break;
    case State::kUnknown:
      total_.reset();
      become(State::kOpen);
      break;
    case State::kOpen:
      break;
  }
  opens_ = false;
  if (state_ != State::kOpen) return;
  has_lines_ = true;
  add_line();
}

// The line's amount, where the line tells it. The device may still refuse the line; then the total
// is less, and what follows would be wrong, but so is the line.
void SequenceTraps::add_line() {
  if (!total_) return;
  const bool takes_off = given(5) || given(6) || given(16) || given(17) || given(19);
  const int64_t quantity =
      given(3) ? read_number(NumberKind::kQuantity, language_.translator().szCampi[3]).value : 0;
  const bool known = given(1) && given(4) && !given(15) && amount(4) > 0 && quantity >= 0 &&
                     !(quantity > 0 && (given(16) || given(17)));
  std::optional<int64_t> line;
  if (known && quantity > 0) {
    line = lorimat::LineAmount(static_cast<int32_t>(quantity), amount(4));
  } else if (known) {
    line = lorimat::RoundToCents(amount(4));
  }
  if (!line || *line > kMostAmount || *total_ > kMostAmount || *total_ < -kMostAmount) {
    total_.reset();
  } else {
    *total_ += takes_off ? -*line : *line;
  }
}

void SequenceTraps::adjust(int opcode) {
  if (state_ != State::kOpen || !total_) return;
  // A percentage is rounded by the device.
  const bool amounts = opcode == kDiscount || opcode == kSurcharge;
  const std::optional<int64_t> value =
      amounts ? lorimat::RoundToCents(amount(1)) : std::optional<int64_t>();
  const bool surcharge = opcode == kSurcharge;
  if (!value || *value <= 0 || *value > (surcharge ? kMostAmount : *total_)) {
    total_.reset();
  } else {
    *total_ += surcharge ? *value : -*value;
  }
}

void SequenceTraps::check_subtotal() {
  if (state_ != State::kOpen || !total_ || !given(1)) return;
  const char* text = language_.translator().szCampi[1];
  if (!read_number(NumberKind::kPrice, text).plain || amount(1) == *total_) return;
  tell(Trap::kSubtotalDiffers, {here_.command, money(*total_), text}, here_);
  // The receipt is given up, and nothing tells the translator.
  become(State::kReady);
  note_memory();
  lost_told_ = true;
}

// --- Payments

// A receipt that a key has opened is to be closed by a key.
void SequenceTraps::settle() { become(attachments_ || by_key_ ? State::kEnding : State::kReady); }

// amount is what is paid, where it is known; whole pays what is due.
void SequenceTraps::pay(std::optional<int64_t> amount, bool whole, bool forgets) {
  if (forgets) opens_ = true;
  if (state_ != State::kOpen && state_ != State::kPaying && state_ != State::kUnknown) return;
  // There is nothing to pay yet.
  if (state_ == State::kOpen && !has_lines_) return;
  paid_ = here_;
  if (whole) return settle();
  if (state_ == State::kUnknown || !total_ || !amount || *amount <= 0) {
    return become(State::kUnknown);
  }
  paid_sum_ += std::min(*amount, *total_ - paid_sum_);
  if (paid_sum_ >= *total_) return settle();
  const int64_t sum = paid_sum_;
  become(State::kPaying);
  paid_sum_ = sum;
}

void SequenceTraps::pay_by_command() {
  // A tender that the device does not know, and change that a tender does not give, are refused.
  const int tender = given(1) ? whole(1) : 1;
  if (!given(2)) return pay({}, tender > 0, true);
  const bool exact = total_ && amount(2) <= *total_ - paid_sum_;
  pay(tender == 1 || (tender > 0 && exact) ? std::optional(amount(2)) : std::nullopt, false, true);
}

void SequenceTraps::play_key() {
  const int key = whole(4);
  if (key < 0 || key > 255) return;
  const bool lottery = lottery_;
  lottery_ = key == FunctionCode::kLotteryCode;
  if (lottery_ || (lottery && (key == FunctionCode::kConfirm || key == FunctionCode::kTotal))) {
    return;
  }
  if (key == FunctionCode::kClear) {
    opens_ = true;
  } else if (key >= FunctionCode::kSubTender01 && key <= FunctionCode::kLastSubTender) {
    pay(given(1) ? std::optional(amount(1)) : std::nullopt, !given(1), true);
  } else if (is_paying_key(key)) {
    // How many decimals the digits have is the device's to know.
    pay({}, !given(1), false);
  } else if (key == FunctionCode::kVoidReceipt) {
    if (state_ == State::kOpen || state_ == State::kPaying) become(State::kReady);
  } else if (key == FunctionCode::kOpenTransaction) {
    opens_ = false;
    if (state_ != State::kReady || key_) return;
    become(State::kOpen);
    by_key_ = true;
    total_ = 0;
  } else if (key == FunctionCode::kCloseTransaction) {
    if (state_ != State::kReady || key_) opens_ = true;
    if (state_ == State::kEnding && !attachments_) become(State::kReady);
  } else if (key == FunctionCode::kOpenRefundDoc || key == FunctionCode::kOpenCancelDoc ||
             key == FunctionCode::kInvoice) {
    opens_ = false;
    if (state_ == State::kReady) become(State::kUnknown);
  } else if (key == FunctionCode::kKeyRegistering) {
    key_.reset();
  } else if (is_selling_key(key) && !key_) {
    if (state_ == State::kReady || state_ == State::kUnknown) become(State::kOpen);
    has_lines_ = true;
    total_.reset();
  } else if (!is_plain_key(key)) {
    // Discounts, macros, and what else a key may do.
    total_.reset();
    if (key >= FunctionCode::kMacro01) become(State::kUnknown);
  }
}

// --- Other documents, and the key

void SequenceTraps::open_document(int opcode) {
  if (receipt_effect(language_.translator(), opcode) != ReceiptEffect::kOpens) return;
  opens_ = false;
  if (state_ != State::kReady || key_) return;
  // A void of the whole document ends by itself.
  if (opcode == kVoidDocument && given(5)) return;
  become(State::kOpen);
  total_ = 0;
}

void SequenceTraps::turn_lock(int opcode) {
  if (state_ != State::kReady && state_ != State::kUnknown) return;
  bool registering = opcode == kEndOfProgramming;
  if (opcode == kLock) {
    const EcrCmdCommand& translator = language_.translator();
    registering = given(1) ? translator.szCampi[1][0] == '1' : given(2);
  }
  key_told_ = false;
  key_.reset();
  if (!registering) key_ = here_;
}

void SequenceTraps::attach() {
  if (given(1)) {
    attachments_ = true;
  } else if (given(2) && state_ == State::kEnding) {
    become(State::kReady);
  }
}

void SequenceTraps::print_non_fiscal() {
  if (given(1) && state_ == State::kReady && !key_) {
    opened_ = here_;
    become(State::kNonFiscal);
  } else if (!given(1) && given(2) && state_ == State::kNonFiscal) {
    become(State::kReady);
  }
}

}  // namespace lorimat::console
