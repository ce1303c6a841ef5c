#include "console/check/line_traps.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <string_view>

#include "console/check/line_trap_fields.h"
#include "console/check/number_reading.h"
#include "language/field_kinds.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

using namespace line_traps;
using Trap = FindingCause;
using language::FieldKind;

template <size_t kCount>
bool Holds(const FieldOf (&fields)[kCount], const FieldOf& field) {
  return std::find(std::begin(fields), std::end(fields), field) != std::end(fields);
}

bool IsDigits(std::string_view text) { return text.find_first_not_of("0123456789") == text.npos; }

std::string Lowered(std::string text) {
  lorimatutility::toLower(text.data());
  return text;
}

// What a tender that is no number of the table reads as at the device.
bool IsKnownTender(int64_t number) {
  return (number >= 1 && number <= 16) || (number >= 20 && number <= 23) || number == 30 ||
         (number >= FunctionCode::kSubTender01 && number <= FunctionCode::kLastSubTender);
}

class LineTraps {
 public:
  LineTraps(const Language& language, int opcode, const std::string& command,
            const std::vector<GivenField>& fields, const TrapSink& sink)
      : language_(language), opcode_(opcode), command_(command), fields_(fields), sink_(sink) {}

  void Find() {
    for (const GivenField& field : fields_) {
      // Another one of the same number takes its place, and the check says so.
      if (&field == Given(field.number)) FindIn(field);
      if (field.value.empty() && IsLast(field)) FindEmpty(field);
      if (!field.behind.empty()) {
        Add(Trap::kTextBehindQuote, field, {field.key, field.behind, field.value});
      }
    }
    FindUnused();
    FindNeeded();
    if (opcode_ == kSale) FindInSale();
    if (opcode_ == kAttachment || opcode_ == kNonFiscal) {
      FindUnprinted();
      FindCheckDigit();
    }
  }

 private:
  void Add(Trap trap, const GivenField& field, std::vector<FindingArgument> arguments,
           std::string instead = {}) {
    Finding finding = MakeFinding(trap, std::move(arguments));
    finding.column = field.column;
    finding.suggestion = std::move(instead);
    sink_(std::move(finding));
  }

  // The last of a number that holds something; null when there is none. An empty text counts as
  // left out.
  const GivenField* Given(int number) const {
    const auto found = std::find_if(fields_.rbegin(), fields_.rend(),
                                    [&](const GivenField& one) { return one.number == number; });
    return found == fields_.rend() || found->value.empty() ? nullptr : &*found;
  }

  bool IsLast(const GivenField& field) const {
    return std::none_of(&field + 1, fields_.data() + fields_.size(),
                        [&](const GivenField& one) { return one.number == field.number; });
  }

  std::string Value(int number) const {
    const GivenField* field = Given(number);
    return field == nullptr ? "" : field->value;
  }

  // The word of a field that is not given.
  std::string FieldWord(int number) const {
    const std::string name = language_.FieldName(opcode_, number);
    return name.empty() ? fmt::format("#{}", number) : name;
  }

  bool IsBare(const GivenField& field) const {
    return !field.quoted && field.written.empty() && field.value == "VERO";
  }

  // An unquoted word that stands for a number.
  bool IsWord(const GivenField& field) const {
    return !field.quoted && !field.written.empty() && field.written != field.value;
  }

  bool is_tender_key() const {
    const int key = TextToInt(Value(4).c_str());
    return key >= FunctionCode::kSubTender01 && key <= FunctionCode::kLastSubTender;
  }

  void FindIn(const GivenField& field) {
    const FieldOf place = {opcode_, field.number};
    NumberKind kind = KindOfNumber(opcode_, field.number);
    if (place == FieldOf{kKeys, 1}) {
      if (!is_tender_key()) return FindKeyedText(field);
      kind = NumberKind::kPrice;
    }
    if (place == FieldOf{27, 1}) kind = NumberKind::kWhole;
    if (kind != NumberKind::kNone) FindNumber(field, kind);
    if (place == FieldOf{kPayment, 1}) FindTender(field);
    if (Holds(kBytes, place)) FindByte(field);
    if (Holds(kCutDates, place) && (field.value.size() != 6 || !IsDigits(field.value))) {
      Add(Trap::kDateCut, field, {field.key, field.value, field.value.substr(0, 6)});
    }
    if (Holds(kWholeDates, place) && field.value.size() != 6) {
      Add(Trap::kDateIgnored, field, {field.key, field.value});
    }
    if (Holds(kDocuments, place)) FindDocument(field);
    if (opcode_ == kKey || opcode_ == kMacroKey) FindMacro(field);
    FindFlag(field);
    FindCut(field);
    FindCapitals(field);
  }

  // --- Numbers

  void FindNumber(const GivenField& field, NumberKind kind) {
    const bool piece = opcode_ == kSale && kind == NumberKind::kQuantity && Given(16) == nullptr &&
                       Given(17) == nullptr;
    if (IsBare(field)) {
      return Add(piece ? Trap::kQuantityZero : Trap::kNumberBare, field, {field.key});
    }
    const NumberReading reading = ReadNumber(kind, field.value);
    if (IsWord(field)) {
      const bool whole = kind == NumberKind::kWhole;
      // A whole number may well be an answer to a question: SI, 2, is no trap there.
      if (!whole || reading.value == 1 || opcode_ == 27) {
        Add(Trap::kWordAsNumber, field, {field.key, field.written, field.value});
      }
      return;
    }
    if (!reading.plain) {
      std::string likely = LikelyNumber(kind, field.value);
      // Digits that run together are no better than the blanks between them.
      if (likely == reading.text && !HasPoint(likely)) likely.clear();
      const std::string instead = likely.empty() ? "" : fmt::format("{}={}", field.key, likely);
      const Trap trap = opcode_ == kSubtotalCheck ? Trap::kNumberRefused : Trap::kNumberText;
      Add(trap, field, {field.key, field.value, reading.text}, instead);
    } else if (!reading.exact && (kind != NumberKind::kWhole || HasPoint(field.value))) {
      Add(Misread(kind), field, {field.key, reading.text});
    }
    if (piece && reading.value == 0) Add(Trap::kQuantityZero, field, {field.key});
    const bool pays = opcode_ == kPayment || opcode_ == kKeys;
    if (pays && reading.value == 0) Add(Trap::kPaysNothing, field, {field.key});
  }

  void FindEmpty(const GivenField& field) {
    const NumberKind kind = KindOfNumber(opcode_, field.number);
    if (kind == NumberKind::kNone || kind == NumberKind::kWhole) return;
    Add(Trap::kNumberEmpty, field, {field.key});
  }

  static Trap Misread(NumberKind kind) {
    switch (kind) {
      case NumberKind::kQuantity:
        return Trap::kQuantityMisread;
      case NumberKind::kPrice:
      case NumberKind::kPercentage:
        return Trap::kPriceMisread;
      default:
        return Trap::kNumberMisread;
    }
  }

  static bool HasPoint(const std::string& text) { return text.find('.') != text.npos; }

  void FindByte(const GivenField& field) {
    const int number = TextToInt(field.value.c_str());
    if (number >= 0 && number <= 255) return;
    Add(Trap::kNumberCut, field, {field.key, field.value, number & 0xFF});
  }

  void FindKeyedText(const GivenField& field) {
    const size_t end = field.value.find_first_not_of("0123456789.");
    if (end == field.value.npos) return;
    std::string likely = LikelyNumber(NumberKind::kPrice, field.value);
    if (!likely.empty()) likely = fmt::format("{}={}", field.key, likely);
    Add(Trap::kKeyedText, field, {field.key, field.value, field.value.substr(0, end)},
        std::move(likely));
  }

  // --- Payments and references

  void FindTender(const GivenField& field) {
    std::string text = field.value;
    const int64_t number = lorimatutility::TradNumInt64(text.data());
    if (IsKnownTender(number)) return;
    for (const std::string& symbol : language_.symbols()) {
      if (!EqualsIgnoringCase(symbol.c_str(), field.value.c_str())) continue;
      return Add(Trap::kTenderQuoted, field, {field.key, field.value, symbol},
                 fmt::format("{}={}", field.key, symbol));
    }
    Add(Trap::kTenderUnknown, field, {field.key, IsWord(field) ? field.written : field.value});
  }

  void FindDocument(const GivenField& field) {
    const std::string& text = field.value;
    const bool whole = text.size() == 8 || text.size() <= 4;
    if (whole && IsDigits(text)) return;
    if (text.size() == 8) return FindEight(field);
    std::string copy = text;
    const int64_t number = lorimatutility::TradNumInt64(copy.data());
    std::string digits = text;
    std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
    const bool printed = digits.size() == 8 && digits != text;
    Add(Trap::kDocumentNumber, field, {field.key, text, number},
        printed ? fmt::format("{}={}", field.key, digits) : "");
  }

  // Of eight characters each four are read by themselves.
  void FindEight(const GivenField& field) {
    std::string number = field.value.substr(4);
    Add(Trap::kDocumentNumber, field,
        {field.key, field.value, lorimatutility::TradNumInt64(number.data())});
  }

  void FindMacro(const GivenField& field) {
    if (field.number != 3 || IsBare(field)) return;
    const std::string& text = field.value;
    if (text.back() == ' ') return;
    Add(Trap::kMacroLastKey, field, {field.key, text.substr(text.rfind(' ') + 1)});
  }

  // --- Flags and texts

  void FindFlag(const GivenField& field) {
    const FieldKind kind = language::field_kind(opcode_, field.number);
    if (kind == FieldKind::kFlag && SaysNo(field)) {
      const std::string text = field.quoted ? fmt::format("'{}'", field.value) : field.written;
      Add(Trap::kFlagSetByNo, field, {field.key, text});
    } else if (kind == FieldKind::kBareFlag && field.value != "VERO") {
      Add(Trap::kFlagNotSet, field, {field.key}, field.key);
    } else if (kind == FieldKind::kYesNo && field.written == "1" && !field.key.starts_with('#')) {
      // Dumps write the number behind the number of the field, and mean it.
      Add(Trap::kYesNoOne, field, {field.key});
    }
  }

  bool SaysNo(const GivenField& field) const {
    if (IsWord(field)) return field.value == "1";
    if (field.value == "0") return true;
    return field.quoted && (field.value.front() == 'N' || field.value.front() == 'n' ||
                            field.value.front() == 'F' || field.value.front() == 'f');
  }

  // How many characters the command keeps; npos for all.
  size_t Limit(int number) const {
    const FieldOf place = {opcode_, number};
    // The content of a barcode is not a text.
    if (place == FieldOf{kNonFiscal, 3}) {
      if (Given(8) != nullptr) return std::string::npos;
      return (TextToInt(Value(4).c_str()) & 8) != 0 ? 42 : 50;
    }
    // A deposit or voucher hands its article on as it stands.
    if (place == FieldOf{kSale, 2} && (Given(16) != nullptr || Given(17) != nullptr)) {
      return std::string::npos;
    }
    const size_t limit = language::text_limit(opcode_, number);
    return limit == 0 ? std::string::npos : limit;
  }

  void FindCut(const GivenField& field) {
    const size_t kept = Limit(field.number);
    if (field.value.size() <= kept) return;
    Add(Trap::kTextCut, field, {field.key, field.value.size(), kept, field.value.substr(0, kept)});
  }

  void FindCapitals(const GivenField& field) {
    if (!language::is_made_small(opcode_, field.number) || IsBare(field)) return;
    const std::string small = Lowered(field.value);
    if (small == field.value) return;
    Add(Trap::kFileNameLowered, field, {field.key, small},
        fmt::format("{}='{}'", field.key, small));
  }

  // --- Fields that are left alone

  void FindUnused() {
    for (const UnusedField& row : kUnusedBeside) {
      const GivenField* field = row.field.opcode == opcode_ ? Given(row.field.field) : nullptr;
      if (field == nullptr) continue;
      for (const int other : row.others) {
        if (other == 0 || Given(other) == nullptr) continue;
        Add(Trap::kFieldUnused, *field, {field->key, Given(other)->key, command_});
        break;
      }
    }
    for (const UnusedField& row : kUnusedWithout) {
      const GivenField* field = row.field.opcode == opcode_ ? Given(row.field.field) : nullptr;
      if (field == nullptr) continue;
      const bool with = std::any_of(row.others.begin(), row.others.end(), [&](int other) {
        return other != 0 && Given(other) != nullptr;
      });
      if (with) continue;
      Add(Trap::kFieldUnusedWithout, *field, {field->key, WordsOf(row.others), command_});
    }
  }

  FindingList WordsOf(std::span<const int> numbers) const {
    FindingList words;
    for (const int number : numbers) {
      if (number != 0) words.names.push_back({FieldWord(number)});
    }
    return words;
  }

  void FindNeeded() {
    for (const NeededFields& row : kNeeded) {
      if (row.opcode != opcode_) continue;
      std::vector<int> missing;
      for (const int number : row.fields) {
        if (number != 0 && Given(number) == nullptr) missing.push_back(number);
      }
      const size_t needed = row.fields[1] == 0 ? 1 : 2;
      if (missing.empty() || (!row.all && missing.size() < needed)) continue;
      Finding finding = MakeFinding(Trap::kDoesNothing, {command_, WordsOf(missing)});
      finding.column = 1;
      sink_(std::move(finding));
    }
  }

  // Of an EAN of 13 digits (ISO/IEC 15420): each second digit counts three times, and the last one
  // fills up to the next ten.
  void FindCheckDigit() {
    constexpr size_t kDigits = 13;
    const GivenField* text = Given(3);
    const GivenField* barcode = Given(barcode_field());
    if (text == nullptr || barcode == nullptr || text->value.size() != kDigits) return;
    const std::string& kind = barcode->value;
    if (kind != "113" && kind != "0" && kind != "1" && !IsBare(*barcode)) return;
    if (!IsDigits(text->value)) return;
    int sum = 0;
    for (size_t i = 0; i + 1 < kDigits; ++i) sum += (text->value[i] - '0') * (i % 2 == 0 ? 1 : 3);
    const char right = static_cast<char>('0' + (10 - sum % 10) % 10);
    if (text->value.back() == right) return;
    const std::string whole = text->value.substr(0, kDigits - 1) + right;
    Add(opcode_ == kNonFiscal ? Trap::kCheckDigitPrinted : Trap::kCheckDigitRefused, *text,
        {text->key, text->value, whole}, fmt::format("{}='{}'", text->key, whole));
  }

  int barcode_field() const { return opcode_ == kAttachment ? 6 : 8; }

  void FindUnprinted() {
    const GivenField* text = Given(3);
    const bool barcode = Given(barcode_field()) != nullptr;
    if (text == nullptr || barcode || Given(1) != nullptr || Given(2) != nullptr) return;
    const int bits = TextToInt(Value(4).c_str());
    const int hiding = opcode_ == kNonFiscal ? kLogoBit | kCutBit : kLogoBit;
    if ((bits & hiding) == 0) return;
    Add(Trap::kTextNotPrinted, *text, {text->key, Given(4)->key});
  }

  // --- Sales

  void FindInSale() {
    const GivenField* price = Given(4);
    const GivenField* quantity = Given(3);
    const bool deposit = Given(16) != nullptr || Given(17) != nullptr;
    if (deposit && quantity != nullptr && Given(15) == nullptr && IsRead(*quantity)) {
      const GivenField& kind = Given(16) != nullptr ? *Given(16) : *Given(17);
      return Add(Trap::kDepositQuantity, *quantity, {quantity->key, kind.key});
    }
    if (price == nullptr) return;
    const NumberReading reading = ReadNumber(NumberKind::kPrice, price->value);
    if (deposit && reading.value != static_cast<int32_t>(reading.value)) {
      const std::string sent = DecimalText(static_cast<int32_t>(reading.value));
      Add(Trap::kDepositTooLarge, *price, {price->key, reading.text, sent});
    }
    const GivenField* single = Given(15);
    if (single == nullptr || deposit || Given(19) != nullptr) return;
    const bool pieces = quantity != nullptr && IsRead(*quantity);
    Add(Trap::kTwoPrices, *single, {price->key, single->key, pieces ? single->key : price->key});
  }

  static bool IsRead(const GivenField& quantity) {
    return ReadNumber(NumberKind::kQuantity, quantity.value).value > 0;
  }

  const Language& language_;
  int opcode_;
  const std::string& command_;
  const std::vector<GivenField>& fields_;
  const TrapSink& sink_;
};

}  // namespace

void FindLineTraps(const Language& language, int opcode, const std::string& command,
                   const std::vector<GivenField>& fields, const TrapSink& sink) {
  LineTraps(language, opcode, command, fields, sink).Find();
}

const GivenField* FieldBeforeDecimalComma(const std::vector<GivenField>& fields,
                                          const std::string& unknown_key) {
  if (fields.empty() || unknown_key.empty() || !IsDigits(unknown_key)) return nullptr;
  const GivenField& before = fields.back();
  const bool number = !before.quoted && before.written == before.value && !before.value.empty() &&
                      IsDigits(before.value);
  return number ? &before : nullptr;
}

}  // namespace lorimat::console
