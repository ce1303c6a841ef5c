// The register's keyboard: what has been keyed and not used yet, and what each key does. The
// keys sell, pay and open documents through the same operations as a host's calls.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "register/desk/receipt_desk.h"

namespace lorimat {

class Keyboard {
 public:
  Keyboard(RegisterCore& core, ReceiptDesk& desk) : core_(core), desk_(desk) {}

  // What has been keyed, to go back to after an operation that could not be stored.
  struct Memory {
    std::string digits;  // '0' to '9' and '.'
    std::string printer_text;
    std::string display_text;
    uint8_t key = 0;
    int error = 0;
    int32_t quantity = 0;     // keyed with the multiplier; 0 for none
    Amount held_amount = -1;  // keyed with the amount key; -1 for none
    int line_type = 0;        // PflItemType::Enum of the next line
    std::string description;  // of the next line
    bool lottery_announced = false;
  };
  Memory Save() const;
  void Restore(Memory&& memory) noexcept;

  // Plays digits (bytes of FunctionCode::Enum), then alphanumeric input for the printer and
  // for the display, then a key. A key that the device has and refuses answers RTF_SUCCESS
  // and leaves its code in error(); a key that this register does not model answers
  // RTF_E_ILLEGAL and leaves the same code there.
  int Play(std::string_view digits, std::string_view printer_text, std::string_view display_text,
           uint8_t key);
  // Forgets what was keyed, the error and a lottery code that was announced.
  void Clear();

  // Why the last key was refused, 0 when it was not: the device's data item 368.
  int error() const { return error_; }

 private:
  struct KeyRow;
  using Handler = int (Keyboard::*)(const KeyRow& row);

  struct Input {
    std::string digits;  // '0' to '9' and '.'
    std::string printer_text;
    std::string display_text;
    uint8_t key = 0;
  };

  static const KeyRow* FindKey(uint8_t key);
  bool TakeDigits(std::string_view digits);
  int PlayMacro(std::string_view macro);
  void ForgetInput();
  int NoDigits() const;
  int Number(int64_t* number, int64_t highest) const;
  int KeyedAmount(Amount* amount) const;
  std::string_view Text() const;

  // The keys.
  int Digit(const KeyRow& row);
  int Lock(const KeyRow& row);
  int Department(const KeyRow& row);
  int NumberedDepartment(const KeyRow& row);
  int ArticleKey(const KeyRow& row);
  int HoldAmount(const KeyRow& row);
  int Multiply(const KeyRow& row);
  int Modify(const KeyRow& row);
  int VoidLast(const KeyRow& row);
  int Adjust(const KeyRow& row);
  int Subtotal(const KeyRow& row);
  int Drawer(const KeyRow& row);
  int Operator(const KeyRow& row);
  int Describe(const KeyRow& row);
  int Pay(const KeyRow& row);
  int Lottery(const KeyRow& row);
  int ConfirmCode(const KeyRow& row);
  int CustomerTaxCode(const KeyRow& row);
  int OpenReceipt(const KeyRow& row);
  int CloseReceipt(const KeyRow& row);
  int Invoice(const KeyRow& row);
  int OpenReferring(const KeyRow& row);
  int VoidWhole(const KeyRow& row);
  int Feed(const KeyRow& row);

  int Sell(int department, std::string_view article, Amount price);

  RegisterCore& core_;
  ReceiptDesk& desk_;
  Input input_;
  int error_ = 0;
  int32_t quantity_ = 0;     // keyed with the multiplier; 0 for none
  Amount held_amount_ = -1;  // keyed with the amount key; -1 for none
  int line_type_ = 0;        // PflItemType::Enum of the next line
  std::string description_;  // of the next line
  bool lottery_announced_ = false;
};

}  // namespace lorimat
