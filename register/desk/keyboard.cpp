#include "register/desk/keyboard.h"

#include <limits>
#include <utility>

#include "managermachine/pflitemtype.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "register/tables/tenders.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

// A key or a run of keys: what it does, and what the handler has to know of it.
struct Keyboard::KeyRow {
  uint8_t first;
  uint8_t last;
  Handler handler;
  int value;  // adjustment type, line type, first number, document kind
};

const Keyboard::KeyRow* Keyboard::FindKey(uint8_t key) {
  using F = FunctionCode;
  static const KeyRow kKeys[] = {
      {F::kNumber1, F::kSeparator, &Keyboard::Digit, 0},
      {F::kKey, F::kKey, &Keyboard::Lock, 0},
      {F::kKeyRegistering, F::kKeySetting, &Keyboard::Lock, 1},
      {F::kDepartment, F::kDepartment, &Keyboard::NumberedDepartment, 0},
      {F::kPlu, F::kPlu, &Keyboard::ArticleKey, 0},
      {F::kAmount, F::kAmount, &Keyboard::HoldAmount, 0},
      {F::kMultiplier, F::kMultiplier, &Keyboard::Multiply, 0},
      {F::kRefund, F::kRefund, &Keyboard::Modify, PflItemType::kPrintRecItemRefund},
      {F::kVoidItem, F::kVoidItem, &Keyboard::Modify, PflItemType::kPrintRecItemVoid},
      {F::kSellDeposit, F::kSellDeposit, &Keyboard::Modify, PflItemType::kPrintRecItemDeposit},
      {F::kBuoniMonouso, F::kBuoniMonouso, &Keyboard::Modify,
       PflItemType::kPrintRecItemBuoniMonouso},
      {F::kCancel, F::kCancel, &Keyboard::VoidLast, 0},
      {F::kPercentageA, F::kPercentageA, &Keyboard::Adjust, RTF_FPTR_AT_PERCENTAGE_DISCOUNT},
      {F::kPercentageB, F::kPercentageB, &Keyboard::Adjust, RTF_FPTR_AT_PERCENTAGE_SURCHARGE},
      {F::kAbsoluteDecrease, F::kAbsoluteDecrease, &Keyboard::Adjust, RTF_FPTR_AT_AMOUNT_DISCOUNT},
      {F::kAbsoluteIncrease, F::kAbsoluteIncrease, &Keyboard::Adjust, RTF_FPTR_AT_AMOUNT_SURCHARGE},
      {F::kSubtotal, F::kSubtotal, &Keyboard::Subtotal, 0},
      {F::kDrawer, F::kDrawer, &Keyboard::Drawer, 0},
      {F::kOperator, F::kOperator, &Keyboard::Operator, 0},
      {F::kDescription, F::kDescription, &Keyboard::Describe, 0},
      {F::kInvoice, F::kInvoice, &Keyboard::Invoice, 0},
      {F::kSubTender01, F::kLastSubTender, &Keyboard::Pay, 1},
      {F::kVoidReceipt, F::kVoidReceipt, &Keyboard::VoidWhole, 0},
      {F::kTaxCode, F::kTaxCode, &Keyboard::CustomerTaxCode, 0},
      {F::kDepartment01, F::kLastDepartment, &Keyboard::Department, 1},
      {F::kConfirm, F::kConfirm, &Keyboard::ConfirmCode, 0},
      {F::kLotteryCode, F::kLotteryCode, &Keyboard::Lottery, 0},
      {F::kOpenTransaction, F::kOpenTransaction, &Keyboard::OpenReceipt, 0},
      {F::kCloseTransaction, F::kCloseTransaction, &Keyboard::CloseReceipt, 0},
      {F::kOpenRefundDoc, F::kOpenRefundDoc, &Keyboard::OpenReferring, 0},
      {F::kOpenCancelDoc, F::kOpenCancelDoc, &Keyboard::OpenReferring, 1},
      {F::kPaperFeed, F::kShortPaperFeed, &Keyboard::Feed, 0},
  };
  for (const KeyRow& row : kKeys) {
    if (key >= row.first && key <= row.last) return &row;
  }
  static const KeyRow kTenderKey = {0, 0, &Keyboard::Pay, 0};
  return FindTenderOfKey(key) != nullptr ? &kTenderKey : nullptr;
}

Keyboard::Memory Keyboard::Save() const {
  return {input_.digits, input_.printer_text, input_.display_text, input_.key,
          error_,        quantity_,           held_amount_,        line_type_,
          description_,  lottery_announced_};
}

void Keyboard::Restore(Memory&& memory) noexcept {
  input_ = {std::move(memory.digits), std::move(memory.printer_text),
            std::move(memory.display_text), memory.key};
  error_ = memory.error;
  quantity_ = memory.quantity;
  held_amount_ = memory.held_amount;
  line_type_ = memory.line_type;
  description_ = std::move(memory.description);
  lottery_announced_ = memory.lottery_announced;
}

void Keyboard::ForgetInput() {
  input_ = Input{};
  quantity_ = 0;
  held_amount_ = -1;
  line_type_ = PflItemType::kPrintRecItem;
  description_.clear();
}

void Keyboard::Clear() {
  ForgetInput();
  lottery_announced_ = false;
  error_ = 0;
}

// Digits stay keyed until a key uses them. More than a till's display takes are refused.
bool Keyboard::TakeDigits(std::string_view digits) {
  for (const char c : digits) {
    const unsigned char key = static_cast<unsigned char>(c);
    if (key >= FunctionCode::kNumber1 && key <= FunctionCode::kNumber9) {
      input_.digits += static_cast<char>('0' + key);
    } else if (key == FunctionCode::kNumber0) {
      input_.digits += '0';
    } else if (key == FunctionCode::kNumber00) {
      input_.digits += "00";
    } else if (key == FunctionCode::kNumber000) {
      input_.digits += "000";
    } else if (key == FunctionCode::kSeparator) {
      input_.digits += '.';
    } else {
      return false;
    }
    if (input_.digits.size() > 30) return false;
  }
  return true;
}

int Keyboard::Play(std::string_view digits, std::string_view printer_text,
                   std::string_view display_text, uint8_t key) {
  if (key == FunctionCode::kClear) {
    Clear();
    return RTF_SUCCESS;
  }
  if (const ProgrammedKey* programmed = core_.keyboards.FindMacro(key)) {
    return PlayMacro(programmed->macro);
  }
  const KeyRow* row = FindKey(key);
  if (row == nullptr) {
    error_ = Refuse(RTF_E_ILLEGAL, RefusalCause::kNoKey, {key});
    ForgetInput();
    return RTF_E_ILLEGAL;
  }
  error_ = RTF_SUCCESS;
  input_.key = key;
  input_.printer_text = printer_text;
  input_.display_text = display_text;
  if (row->handler == &Keyboard::Lock) {
    // The lock's position comes as a plain byte, not as keyed digits.
    input_.digits.assign(digits);
    error_ = Lock(*row);
  } else if (!TakeDigits(digits)) {
    error_ = NoDigits();
  } else {
    error_ = (this->*row->handler)(*row);
  }
  const bool keeps_input = row->handler == &Keyboard::Digit ||
                           row->handler == &Keyboard::HoldAmount ||
                           row->handler == &Keyboard::Multiply ||
                           row->handler == &Keyboard::Modify || row->handler == &Keyboard::Describe;
  if (error_ != RTF_SUCCESS || !keeps_input) ForgetInput();
  if (error_ != RTF_SUCCESS) KeepRefusal(error_);
  // An announced lottery code holds for the next key alone.
  if (row->handler != &Keyboard::Lottery) lottery_announced_ = false;
  return RTF_SUCCESS;
}

// A macro ends at the first key that is refused.
int Keyboard::PlayMacro(std::string_view macro) {
  for (const char code : macro) {
    const int result = Play({}, {}, {}, static_cast<uint8_t>(code));
    if (result != RTF_SUCCESS || error_ != RTF_SUCCESS) return result;
  }
  return RTF_SUCCESS;
}

// What was keyed is no number, or longer than a display takes.
int Keyboard::NoDigits() const {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotANumber, Subject::kDigits, {}, input_.digits);
}

int Keyboard::Number(int64_t* number, int64_t highest) const {
  const std::optional<int64_t> value = ParseDecimal(input_.digits, 0, 0);
  if (!value) return NoDigits();
  if (*value > highest) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kDigits,
                       {*value, 0, highest});
  }
  *number = *value;
  return RTF_SUCCESS;
}

// With a fixed decimal point the keyed digits count cents, otherwise whole units.
int Keyboard::KeyedAmount(Amount* amount) const {
  const int implied = core_.tables.settings().fixed_decimal_point ? 2 : 0;
  const std::optional<int64_t> cents = ParseDecimal(input_.digits, 2, implied);
  if (!cents || *cents > kMaxAmount / kCent) {
    return RefuseValue(RTF_EFPTR_BAD_PRICE, RefusalCause::kNotANumber, Subject::kAmount, {},
                       input_.digits);
  }
  *amount = *cents * kCent;
  return RTF_SUCCESS;
}

std::string_view Keyboard::Text() const {
  return input_.printer_text.empty() ? input_.display_text : input_.printer_text;
}

int Keyboard::Digit(const KeyRow&) {
  const char digit = static_cast<char>(input_.key);
  return TakeDigits(std::string_view(&digit, 1)) ? RTF_SUCCESS : NoDigits();
}

int Keyboard::Lock(const KeyRow& row) {
  int position = 0;
  if (row.value != 0) {
    position = input_.key - FunctionCode::kKeyRegistering + 1;
  } else if (input_.digits.size() == 1) {
    position = static_cast<unsigned char>(input_.digits[0]);
  }
  if (position < static_cast<int>(KeyPosition::kRegister) ||
      position > static_cast<int>(KeyPosition::kProgram)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kKeyLock,
                       {position, static_cast<int64_t>(KeyPosition::kRegister),
                        static_cast<int64_t>(KeyPosition::kProgram)});
  }
  if (!core_.Allows(Operation::kTurnKey)) return RTF_EFPTR_WRONG_STATE;
  core_.key = static_cast<KeyPosition>(position);
  return RTF_SUCCESS;
}

int Keyboard::Sell(int department, std::string_view article, Amount price) {
  LineArguments line;
  line.pfl_item_type = line_type_;
  const std::string description = input_.printer_text.empty() ? description_ : input_.printer_text;
  line.description = description;
  line.department = department;
  line.article = article;
  if (quantity_ > 0) {
    line.quantity = quantity_;
    line.unit_price = price;
  } else {
    line.price = price;
  }
  // The first line opens the receipt; one that would be refused leaves the register idle.
  const bool opens = core_.state == PrinterState::kMonitor;
  if (opens) {
    if (const int code = desk_.TryLine(line)) return code;
    if (const int code = desk_.BeginReceipt(true)) return code;
  }
  if (const int code = desk_.Line(line)) return code;
  // The one line of a single-shot department is the whole receipt.
  const Item* sold = core_.document.receipt.last_line();
  const lorimat::Department* row =
      sold != nullptr ? core_.tables.FindDepartment(sold->department) : nullptr;
  if (opens && row != nullptr && row->single_shoot) return desk_.Total(0, kCashTender, true);
  return RTF_SUCCESS;
}

int Keyboard::Department(const KeyRow& row) {
  Amount price = held_amount_;
  if (!input_.digits.empty()) {
    if (const int code = KeyedAmount(&price)) return code;
  }
  return Sell(input_.key - row.first + row.value, {}, price);
}

int Keyboard::NumberedDepartment(const KeyRow&) {
  int64_t number = 0;
  if (const int code = Number(&number, Tables::kMaxDepartments)) return code;
  return Sell(static_cast<int>(number), {}, held_amount_);
}

int Keyboard::ArticleKey(const KeyRow&) {
  const std::string code(input_.digits.empty() ? Text() : std::string_view(input_.digits));
  if (code.empty()) {
    return RefuseValue(RTF_E_NOEXIST, RefusalCause::kMissing, Subject::kArticleCode);
  }
  return Sell(-1, code, held_amount_);
}

int Keyboard::HoldAmount(const KeyRow&) {
  if (const int code = KeyedAmount(&held_amount_)) return code;
  input_ = Input{};
  return RTF_SUCCESS;
}

int Keyboard::Multiply(const KeyRow&) {
  const std::optional<int64_t> value = ParseDecimal(input_.digits, 3, 0);
  if (!value || *value == 0 || *value > std::numeric_limits<int32_t>::max()) {
    return RefuseValue(RTF_EFPTR_BAD_ITEM_QUANTITY, RefusalCause::kNotANumber, Subject::kQuantity,
                       {}, input_.digits);
  }
  quantity_ = static_cast<int32_t>(*value);
  input_ = Input{};
  return RTF_SUCCESS;
}

int Keyboard::Modify(const KeyRow& row) {
  line_type_ = row.value;
  return RTF_SUCCESS;
}

int Keyboard::VoidLast(const KeyRow&) { return desk_.VoidLastLine(); }

int Keyboard::Adjust(const KeyRow& row) {
  int64_t value = 0;
  if (IsPercentage(row.value)) {
    const std::optional<int64_t> percentage = ParseDecimal(input_.digits, 4, 0);
    if (!percentage) {
      return RefuseValue(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNotANumber, Subject::kAmount, {},
                         input_.digits);
    }
    value = *percentage;
  } else if (const int code = KeyedAmount(&value)) {
    return code;
  }
  if (core_.document.receipt.at_subtotal()) {
    return desk_.AdjustSubtotal(row.value, input_.printer_text, value, false);
  }
  return desk_.Adjust(row.value, input_.printer_text, value, -1, -2, false);
}

int Keyboard::Subtotal(const KeyRow&) { return desk_.PrintSubtotal(); }

int Keyboard::Drawer(const KeyRow&) {
  ++core_.drawer_count;
  return RTF_SUCCESS;
}

int Keyboard::Operator(const KeyRow&) {
  int64_t number = 0;
  if (const int code = Number(&number, core_.tables.settings().operators)) return code;
  if (number < 1) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kOperator,
                       {number, 1, core_.tables.settings().operators});
  }
  if (!core_.Allows(Operation::kTurnKey)) return RTF_EFPTR_WRONG_STATE;
  core_.current_operator = static_cast<int>(number);
  return RTF_SUCCESS;
}

int Keyboard::Describe(const KeyRow&) {
  if (Text().empty()) {
    return RefuseValue(RTF_EFPTR_BAD_ITEM_DESCRIPTION, RefusalCause::kMissing,
                       Subject::kDescription);
  }
  description_ = Text();
  return RTF_SUCCESS;
}

int Keyboard::Pay(const KeyRow& row) {
  if (lottery_announced_ && input_.key == FunctionCode::kTotal) return ConfirmCode(row);
  const TenderRow* fixed = FindTenderOfKey(input_.key);
  const std::string tender = fixed != nullptr
                                 ? std::string(fixed->id)
                                 : Tables::SubtenderId(input_.key - row.first + row.value);
  const Subtender* subtender = core_.tables.SubtenderOf(tender);
  if (input_.digits.empty()) {
    if (subtender == nullptr || subtender->preset_value == 0) return desk_.Total(0, tender, true);
    return desk_.Total(subtender->preset_value * kCent, tender, false);
  }
  if (subtender != nullptr && subtender->max_digits > 0 &&
      input_.digits.size() > subtender->max_digits) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kPaymentDigits,
                       {static_cast<int64_t>(input_.digits.size()), subtender->max_digits});
  }
  Amount amount = 0;
  if (const int code = KeyedAmount(&amount)) return code;
  return desk_.Total(amount, tender, false);
}

int Keyboard::Lottery(const KeyRow&) {
  if (!core_.Allows(Operation::kLottery)) return RTF_EFPTR_WRONG_STATE;
  lottery_announced_ = true;
  return RTF_SUCCESS;
}

int Keyboard::ConfirmCode(const KeyRow&) {
  if (!lottery_announced_) {
    return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kLotteryNotAnnounced);
  }
  // The code's digits may have been keyed; letters only come as text for the display.
  return desk_.LotteryCode(input_.digits.empty() ? std::string_view(input_.display_text)
                                                 : std::string_view(input_.digits));
}

int Keyboard::CustomerTaxCode(const KeyRow&) {
  return desk_.TaxId(input_.digits.empty() ? Text() : std::string_view(input_.digits));
}

int Keyboard::OpenReceipt(const KeyRow&) { return desk_.BeginReceipt(true); }

int Keyboard::CloseReceipt(const KeyRow&) {
  return core_.options.auto_cut ? desk_.EndReceipt() : desk_.AdditionalTrailer();
}

int Keyboard::Invoice(const KeyRow&) {
  const std::string_view customer[5] = {Text(), {}, {}, {}, {}};
  return desk_.BeginInvoice(customer, false);
}

// Eight digits name closure and document, fewer a document of the day.
int Keyboard::OpenReferring(const KeyRow& row) {
  Reference reference;
  if (!input_.digits.empty()) {
    int64_t number = 0;
    if (const int code = Number(&number, 99999999)) return code;
    reference.number = static_cast<int>(number % 10000);
    reference.closure = input_.digits.size() == 8 ? static_cast<int>(number / 10000)
                                                  : core_.store.last_closure() + 1;
    if (input_.digits.size() != 8 && number > RegisterStore::kLastNumber) {
      return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kDocumentNumber,
                         {number, 0, RegisterStore::kLastNumber});
    }
  }
  if (row.value == 0) return desk_.BeginRefund(reference);
  return desk_.BeginCancel(reference, false, input_.printer_text);
}

int Keyboard::VoidWhole(const KeyRow&) { return desk_.VoidReceipt(input_.printer_text); }

int Keyboard::Feed(const KeyRow&) {
  core_.paper.Blank();
  return RTF_SUCCESS;
}

}  // namespace lorimat
