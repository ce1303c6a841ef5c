// Every parser of the foundation: texts of any bytes, closed by a NUL in memory of their length.
// The input: which one, a byte of choices, the text; a NUL divides two texts.
#include <cstring>
#include <iterator>
#include <memory>

#include "fuzz/scratch.h"
#include "pal/calendar.h"
#include "pal/drivers/datetime.h"
#include "pal/fiscalcode.h"
#include "pal/peripherals/network/sockets.h"
#include "pal/platform/platform.h"
#include "pal/protocols/lorimat/lorimatutility.h"
#include "pal/strptime.h"
#include "utility/hex.h"
#include "utility/locale/locale.h"
#include "utility/number.h"
#include "utility/stringserializer.h"
#include "utility/stringutils.h"

namespace {

// A text as a caller has it: in memory of its own, so that a byte too many is seen.
struct Text {
  explicit Text(std::string_view text) : size(text.size()), room(new char[text.size() + 1]) {
    std::memcpy(room.get(), text.data(), size);
    room[size] = 0;
  }
  char* data() const { return room.get(); }
  size_t size;
  std::unique_ptr<char[]> room;
};

struct Input {
  uint8_t choice;
  Text text;
  Text other;
};

// A number is its text, whatever way it takes.
void Numbers(const Input& input) {
  const Number number(std::string(input.text.data()));
  const Number other(std::string(input.other.data()));
  const std::string wire = Number::marshal(number);
  const Number back = Number::unmarshal(wire);
  // A text alone makes numbers of 17 and 18 digits, which the wire has no place for.
  if (!number.isOverflow() && number.absValue() <= Number::MAX_VALUE) {
    Require(back == number, "a number comes back from the wire");
  }
  Number::unmarshal(std::string(input.text.data(), input.text.size));
  Number sum = number;
  sum += other;
  sum -= other;
  sum *= other;
  sum /= other;
  sum /= int64_t{input.choice};
  sum.round(input.choice % 8, static_cast<Number::ROUNDTYPE>(input.choice % 3));
  sum.round_mod(other, static_cast<Number::ROUNDTYPE>(input.choice % 3));
  int64_t integer = 0;
  int64_t fraction = 0;
  sum.fractional(integer, fraction);
  sum.toBCD();
  sum.toInt64(input.choice % 8);
  // Two equal negative numbers are below each other: that is meant.
  Require(number.isOverflow() || number.isNegative() || !(number < number),
          "a number is not below itself");
}

void Dates(const Input& input) {
  tm time = {};
  char* end = pal::strptime(input.text.data(), input.other.data(), &time);
  if (end != nullptr) {
    Require(end >= input.text.data() && end <= input.text.data() + input.text.size,
            "what is left lies in the text");
  }
  tm copy = time;
  pal::timegm(&copy);
  DateTime::CheckDateTime(&time);
  copy = time;
  DateTime::ToLocalDateTime(&copy);
  copy = time;
  DateTime::FromLocalDateTime(&copy);
  uint64_t bcd = 0;
  if (DateTime::ToBCDDateTime(&time, bcd)) {
    tm back = {};
    Require(DateTime::FromBCDDateTime(bcd, &back), "a date comes back from its digits");
  }
  std::memcpy(&bcd, input.text.data(), std::min(input.text.size, sizeof bcd));
  DateTime::FromBCDDateTime(bcd, &copy);
  DateTime::CompareDateTime(&time, &copy);
}

void LocalDates(const Input& input) {
  tm time = {};
  loc.fromLocalDateTime(input.text.data(), input.text.size, input.other.data(), &time);
  static const char* const formats[] = {
      loc.localTransactionDateTimeFormat(), Locale::localFirmwareDateFormat(),
      Locale::localShortDateTimeFormat(),   Locale::localDateTimeFormat(),
      Locale::localXMLDateTimeFormat(),     Locale::localHTTPDateTimeFormat()};
  tm plain = {};
  const char* format = formats[input.choice % std::size(formats)];
  if (!loc.fromLocalDateTime(input.text.data(), input.text.size, format, &plain)) return;
  const size_t room = 1 + input.choice % 64;
  const auto text = std::make_unique<char[]>(room);
  loc.toLocalDateTime(text.get(), room, format, &plain, (input.choice & 1) != 0);
}

void LocalNumbers(const Input& input) {
  const char* s = input.text.data();
  const size_t n = input.choice % 2 == 0 ? input.text.size : input.text.size / 2;
  int32_t small = 0;
  int64_t large = 0;
  uint64_t positive = 0;
  Number number;
  Locale::fromLocalInteger(s, n, small);
  Locale::fromLocalInteger(s, n, positive);
  const size_t room = 1 + input.choice % 40;
  const auto text = std::make_unique<char[]>(room);
  if (Locale::fromLocalInteger(s, n, large)) Locale::toLocalInteger(text.get(), room, large);
  if (loc.fromLocalNumber(s, n, number)) {
    loc.toLocalNumber(text.get(), room, number, input.choice % 6, (input.choice & 8) != 0);
  }
  if (loc.fromLocalCurrency(s, n, number)) {
    loc.toLocalCurrency(text.get(), room, number, (input.choice & 4) != 0);
    loc.toLocalCurrencyFullPrecision(text.get(), room, number, true, (input.choice & 2) != 0);
  }
  Locale::fromLocalNumber(s, n, ',', number, (input.choice & 1) != 0, input.choice % 6,
                          input.choice / 64);
  Locale::toLocalNumber(s, n, large, (input.choice & 1) != 0, '.', input.choice % 20);
}

void Addresses(const Input& input) {
  const char* s = input.text.data();
  uint32_t address = 0;
  char text[64];
  if (Locale::fromLocalIPAddress(s, input.text.size, address)) {
    Require(Locale::toLocalIPAddress(text, sizeof text, address), "an address can be written");
    uint32_t back = 0;
    Require(Locale::fromLocalIPAddress(text, std::strlen(text), back) && back == address,
            "an address comes back from its text");
  }
  sockets::FromDotted(s);
  sockets::ToDotted(address, text);
  if (Locale::fromLocalAteco(s, input.text.size, address)) {
    Locale::toLocalAteco(text, sizeof text, address);
    Locale::toXMLAteco(text, sizeof text, address);
  }
  int32_t closure = 0;
  int32_t number = 0;
  if (Locale::fromLocalTelematicReceiptNumber(s, input.text.size, closure, number)) {
    Locale::toLocalTelematicReceiptNumber(text, 1 + input.choice % 20, closure, number);
  }
  char protocol[6];
  int port = 0;
  const size_t room = 1 + input.choice % 32;
  const auto host = std::make_unique<char[]>(room);
  const char* path =
      Locale::parseAbsURI(s, (input.choice & 1) != 0 ? protocol : nullptr, host.get(), room, port);
  if (path != nullptr) {
    Require(path >= s && path <= s + input.text.size, "the path lies in the address");
  }
}

void Bytes(const Input& input) {
  const char* s = input.text.data();
  const size_t size = input.text.size;
  const auto wide = std::make_unique<char[]>(2 * size + 1);
  const auto bytes = std::make_unique<uint8_t[]>(size + 1);
  Hex::Encode(reinterpret_cast<const uint8_t*>(s), size, wide.get());
  Require(Hex::Check(wide.get(), 2 * size), "what was encoded is hexadecimal");
  Hex::Decode(wide.get(), 2 * size, bytes.get());
  Require(std::memcmp(bytes.get(), s, size) == 0, "bytes come back from their text");
  if (Hex::Check(s, size)) {
    std::memset(bytes.get(), 0, size + 1);
    Hex::Decode(s, size, bytes.get());
  }
  StringUtils::BCDToAscii(reinterpret_cast<const uint8_t*>(s), size, wide.get());
  if (StringUtils::CheckAsciiNum(s, size)) {
    StringUtils::AsciiToBCD(s, size, bytes.get());
  }
  if (size < 9) return;
  int64_t value = 0;
  uint32_t small = 0;
  StringSerializer::get_le40(s, &value);
  char back[8];
  StringSerializer::append_le40(back, value);
  Require(std::memcmp(back, s, 5) == 0, "forty bits come back");
  StringSerializer::get_be(s, &small);
  StringSerializer::append_be(back, small);
  Require(std::memcmp(back, s, 4) == 0, "32 bits come back");
}

void Texts(const Input& input) {
  const std::string text(input.text.data(), input.text.size);
  const std::string other(input.other.data(), input.other.size);
  std::string changed = text;
  // A replacement that grows without end of its own accord is the caller's to avoid.
  if (other.size() > 2) {
    StringUtils::replace_all(changed, other.substr(0, 2), other.substr(2, 1));
  }
  StringUtils::normalize(changed);
  StringUtils::hex2ascii(text, changed);
  StringUtils::trim(changed);
  StringUtils::startsWith(text, other);
  StringUtils::zeroPadNumber(input.choice, static_cast<long long>(text.size()));
  long long number = 0;
  static constexpr int kBases[] = {0, 2, 8, 10, 16, 36};
  StringUtils::StrToLong(input.text.data(), kBases[input.choice % 6], &number);
  uint32_t digits = 0;
  if (StringUtils::AsciiNumToBCD(text, &digits)) {
    char ascii[16];
    StringUtils::BCDToAsciiNum(digits, ascii, sizeof ascii);
  }
  const size_t room = 1 + input.choice;
  const auto encoded = std::make_unique<char[]>(room);
  StringUtils::URLEncoding(text.data(), text.size(), encoded.get(), room);
  Text own(text);
  StringUtils::trim(own.data(), static_cast<int>(own.size));
}

void FiscalCodes(const Input& input) {
  const std::string text(input.text.data(), input.text.size);
  const std::string other(input.other.data(), input.other.size);
  FiscalCode::CheckFiscalCode(text);
  FiscalCode::CheckVatCode(text);
  FiscalCode::CheckClientID(input.text.data());
  FiscalCode::CheckSurnameName(text);
  FiscalCode::GenerateChecksum(text);
  FiscalCode::GenerateFiscalCode(text, other, (input.choice & 1) != 0, input.choice % 40,
                                 input.choice % 16, 1900u + input.choice, "H501");
  Calendar::CheckDate(input.choice % 40, input.choice % 16, input.choice * 16u);
}

void Registry(const Input& input) {
  WriteBytes("registry.ini", std::string_view(input.text.data(), input.text.size));
  setenv("LORIMATRT_REGISTRY", "registry.ini", 1);
  const platform::RegistryKey key(input.other.data());
  uint32_t size = input.choice;
  const auto room = std::make_unique<char[]>(size + 1);
  if (key.Query("WaitIdle", room.get(), &size) == platform::kRegistrySuccess) {
    Require(std::memchr(room.get(), 0, input.choice) != nullptr,
            "a value that was read has an end");
  }
  unsetenv("LORIMATRT_REGISTRY");
}

void Utilities(const Input& input) {
  Text text{std::string_view(input.text.data(), input.text.size)};
  const auto room = std::make_unique<char[]>(text.size + 64);
  lorimatutility::TogliCommento(room.get(), text.data(), static_cast<char>(input.choice | 1));
  lorimatutility::TradPrice(text.data(), (input.choice & 1) != 0, '.', input.choice % 8);
  lorimatutility::TradPercentage(text.data(), ',', input.choice % 8);
  lorimatutility::TradQuantity(text.data(), '.');
  lorimatutility::TradNumLong(text.data());
  lorimatutility::SeNum(text.data());
  lorimatutility::TradNumToECR(room.get(), text.data());
  const auto alfa = std::make_unique<char[]>(input.choice + 1);
  lorimatutility::EstraeAlfa(text.data(), alfa.get(), input.choice, '\'');
  char date[17];
  lorimatutility::upos2ZupDateTime(date, text.data());
  lorimatutility::FnLPAD(room.get(), text.data(), static_cast<int>(text.size % 64), '0');
  lorimatutility::toLower(text.data());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  FreshFolder();
  static constexpr void (*kParsers[])(const Input&) = {
      Numbers, Dates, LocalDates,  LocalNumbers, Addresses,
      Bytes,   Texts, FiscalCodes, Registry,     Utilities};
  InputParts parts(data + 2, size - 2);
  const std::string_view whole = parts.Rest();
  const std::string_view first = parts.Next();
  // Bytes have NULs of their own.
  const auto parser = kParsers[data[0] % std::size(kParsers)];
  const Input input{data[1], Text(parser == Bytes ? whole : first), Text(parts.Rest())};
  parser(input);
  return 0;
}
