#include "register/paper/barcode.h"

#include <cstddef>

#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kCode39 = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%";
constexpr std::string_view kCodabar = "0123456789-$:/.+ABCD";

struct Rule {
  BarcodeType type;
  size_t min_length;
  size_t max_length;
  std::string_view alphabet;  // empty for every character
  // The length that includes a check digit of weights 3 and 1; 0 for none.
  size_t checked_length;
};

// The first nine numbers are those that receipt printers use for the one-dimensional codes.
constexpr Rule kRules[] = {
    {{"00", "UPC-A", false}, 11, 12, kDigits, 12},  {{"01", "UPC-E", false}, 6, 12, kDigits, 12},
    {{"02", "EAN13", false}, 12, 13, kDigits, 13},  {{"03", "EAN8", false}, 7, 8, kDigits, 8},
    {{"04", "CODE39", false}, 1, 40, kCode39, 0},   {{"05", "ITF", false}, 2, 40, kDigits, 0},
    {{"06", "CODABAR", false}, 1, 40, kCodabar, 0}, {{"07", "CODE93", false}, 1, 40, {}, 0},
    {{"08", "CODE128", false}, 1, 60, {}, 0},       {{"09", "PDF417", true}, 1, 249, {}, 0},
    {{"10", "QR CODE", true}, 1, 249, {}, 0},       {{"11", "DATAMATRIX", true}, 1, 249, {}, 0},
};

// The last digit makes the sum of all digits, weighted 1 and 3 from the right, a multiple of
// ten (the rule of the EAN and UPC codes).
char CheckDigit(std::string_view digits) {
  int sum = 0;
  for (size_t i = 1; i < digits.size(); ++i) {
    const int digit = digits[digits.size() - 1 - i] - '0';
    sum += i % 2 == 0 ? digit : 3 * digit;
  }
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

int WrongCharacters(std::string_view data) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCharacters, Subject::kBarcode, {}, data);
}

}  // namespace

const BarcodeType* FindBarcode(std::string_view id) {
  for (const Rule& rule : kRules) {
    if (rule.type.id == id) return &rule.type;
  }
  return nullptr;
}

int CheckBarcode(const BarcodeType& type, std::string_view data) {
  for (const Rule& rule : kRules) {
    if (rule.type.id != type.id) continue;
    if (data.size() < rule.min_length || data.size() > rule.max_length) {
      return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kWrongLength, Subject::kBarcode,
                         {static_cast<int64_t>(data.size()), static_cast<int64_t>(rule.min_length),
                          static_cast<int64_t>(rule.max_length)});
    }
    if (!rule.alphabet.empty() && data.find_first_not_of(rule.alphabet) != data.npos) {
      return WrongCharacters(data);
    }
    for (const char c : data) {
      const unsigned char byte = static_cast<unsigned char>(c);
      if (!rule.type.two_dimensional && (byte < 0x20 || byte > 0x7E)) return WrongCharacters(data);
    }
    // Interleaved digits come in pairs.
    if (type.id == "05" && data.size() % 2 != 0) {
      return Refuse(RTF_EFPTR_BAD_LENGTH, RefusalCause::kOddDigits,
                    {static_cast<int64_t>(data.size())});
    }
    if (data.size() == rule.checked_length && data.back() != CheckDigit(data)) {
      return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kCheckDigit, Subject::kBarcode,
                         {data.back() - '0', CheckDigit(data) - '0'});
    }
    return RTF_SUCCESS;
  }
  return RTF_E_ILLEGAL;
}

}  // namespace lorimat
