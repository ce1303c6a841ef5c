#include "pal/protocols/lorimat/lorimatutility.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/lorimatenums.h"
#include "utility/locale/locale.h"

namespace {

constexpr char kNameMark = 19;      // opens a name in the older protocol's records
constexpr char kEcrZero = 10;       // key value of the digit zero
constexpr char kEcrSeparator = 13;  // key value of the decimal point

bool IsDigits(const char* text, size_t length, bool point_allowed) {
  const char* const end = text + length;
  if (length > 0 && *text == '-') ++text;
  while (text != end && IsDigit(*text)) ++text;
  if (point_allowed && text != end && *text == '.') {
    ++text;
    while (text != end && IsDigit(*text)) ++text;
  }
  return text == end;
}

// Trims, then maps each character to the device's digit values.
char* MapDigits(char* sDest, char* szIn, char zero, char point) {
  int length = 0;
  const char* text = lorimatutility::TogliSpaziP(szIn, &length);
  for (int i = 0; i < length; ++i) {
    const char c = text[i];
    char mapped = 0;
    if (c == '0') {
      mapped = zero;
    } else if (IsDigit(c)) {
      mapped = static_cast<char>(c - '0');
    } else if (c == '.') {
      mapped = point;
    }
    *sDest++ = mapped;
  }
  *sDest = 0;
  return sDest;
}

int64_t ParseScaled(const char* text, bool fixed_point, char separator, int precision) {
  int64_t value = 0;
  if (!loc.toLocalNumber(text, std::strlen(text), value, fixed_point, separator, precision)) {
    return 0;
  }
  return value;
}

// Copies a line up to its comment, without the blanks in front. Returns its length.
size_t CopyUpToComment(char* szOut, const char* szIn, char cChQuote) {
  bool in_quotes = false;
  size_t length = 0;
  for (const char* in = szIn; *in != 0; ++in) {
    char c = *in;
    if (c == ';' && !in_quotes) break;
    if (c == cChQuote) {
      if (!in_quotes) {
        in_quotes = true;
      } else if (in[1] == cChQuote) {
        // A doubled quote stays doubled: the tokenisers undo it.
        szOut[length++] = c;
        ++in;
      } else {
        in_quotes = false;
      }
    }
    if (c == '\t') c = ' ';  // inside quotes as well
    if (c == ' ' && length == 0) continue;
    szOut[length++] = c;
  }
  return length;
}

// The same for a line without a ";", whose quotes then change nothing: in whole blocks.
size_t CopyPlain(char* szOut, const char* szIn, size_t length) {
  const char* text = szIn;
  while (*text == ' ' || *text == '\t') ++text;
  length -= static_cast<size_t>(text - szIn);
  std::memmove(szOut, text, length);
  if (std::memchr(szOut, '\t', length) != nullptr) std::replace(szOut, szOut + length, '\t', ' ');
  return length;
}

}  // namespace

int lorimatutility::TogliCommento(char* szOut, char* szIn, char cChQuote) {
  return static_cast<int>(CleanLine(szOut, szIn, std::strlen(szIn), cChQuote));
}

size_t lorimatutility::CleanLine(char* szOut, const char* szIn, size_t size, char cChQuote) {
  // A quote character may be a blank too, and then counts where it stands in front.
  const bool is_blank = cChQuote == ' ' || cChQuote == '\t';
  size_t length = is_blank || std::memchr(szIn, ';', size) != nullptr
                      ? CopyUpToComment(szOut, szIn, cChQuote)
                      : CopyPlain(szOut, szIn, size);
  if (length > 0 && szOut[length - 1] == '\n') --length;
  while (length > 0 && szOut[length - 1] == ' ') --length;
  szOut[length] = 0;
  return length;
}

int lorimatutility::TogliSpazi(char* szOut, char* szIn) {
  int length = 0;
  const char* text = TogliSpaziP(szIn, &length);
  std::memmove(szOut, text, static_cast<size_t>(length));
  szOut[length] = 0;
  return length;
}

char* lorimatutility::TogliSpaziP(char* szIn, int* iLung) {
  while (*szIn == ' ') ++szIn;
  int length = static_cast<int>(std::strlen(szIn));
  while (length > 0 && szIn[length - 1] == ' ') --length;
  *iLung = length;
  return szIn;
}

int lorimatutility::TogliSpaziD(char* szIn) {
  int length = static_cast<int>(std::strlen(szIn));
  while (length > 0 && szIn[length - 1] == ' ') --length;
  szIn[length] = 0;
  return length;
}

int lorimatutility::SkipSpace(char* szIn, int* iPunt) {
  while (szIn[*iPunt - 1] == ' ') ++*iPunt;
  return *iPunt;
}

bool lorimatutility::SeNum(char* szInp) {
  int length = 0;
  const char* text = TogliSpaziP(szInp, &length);
  return IsNumber(text, static_cast<size_t>(length));
}

bool lorimatutility::IsNumber(const char* text, size_t length) {
  return IsDigits(text, length, true);
}

bool lorimatutility::SeNumeric(char* szInp) {
  int length = 0;
  const char* text = TogliSpaziP(szInp, &length);
  return IsDigits(text, static_cast<size_t>(length), false);
}

char* lorimatutility::TradNome(char* sDest, char* szIn) {
  return TradNomeL(sDest, szIn, static_cast<int>(std::strlen(szIn)));
}

char* lorimatutility::TradNomeL(char* sDest, char* szIn, int iLung) {
  *sDest++ = kNameMark;
  *sDest++ = static_cast<char>(iLung);
  std::memmove(sDest, szIn, static_cast<size_t>(iLung));
  return sDest + iLung;
}

char* lorimatutility::TradNum(char* sDest, char* szIn) { return MapDigits(sDest, szIn, '0', '.'); }

char* lorimatutility::TradNumToECR(char* sDest, char* szIn) {
  return MapDigits(sDest, szIn, kEcrZero, kEcrSeparator);
}

int64_t lorimatutility::TradPrice(char* szIn, bool bVirgolaFissa, char currency_decimal_separator_,
                                  int max_precision) {
  return ParseScaled(szIn, bVirgolaFissa, currency_decimal_separator_, max_precision);
}

long lorimatutility::TradPercentage(char* szIn, char currency_decimal_separator,
                                    int max_precision) {
  return static_cast<int32_t>(ParseScaled(szIn, false, currency_decimal_separator, max_precision));
}

long lorimatutility::TradQuantity(char* szIn, char currency_decimal_separator) {
  return static_cast<int32_t>(
      ParseScaled(szIn, false, currency_decimal_separator, QUANTITY_PRECISION));
}

long lorimatutility::TradNumLong(char* szIn) { return NearestLong(TradNumInt64(szIn)); }

int64_t lorimatutility::TradNumInt64(char* szIn) {
  constexpr int kLongest = 19;
  int length = 0;
  const char* text = TogliSpaziP(szIn, &length);
  int used = 0;
  uint64_t whole = 0;
  for (; used < length && used < kLongest && IsDigit(text[used]); ++used) {
    whole = whole * 10 + static_cast<uint64_t>(text[used] - '0');
  }
  // Up to 15 digits a floating number would be the same.
  if (used <= std::numeric_limits<double>::digits10 && (used == length || text[used] != '.')) {
    return static_cast<int64_t>(whole);
  }
  while (used < length && used < kLongest && (IsDigit(text[used]) || text[used] == '.')) ++used;
  // A floating number, whatever decimal point the host's locale has, then truncated.
  double value = 0;
  std::from_chars(text, text + used, value, std::chars_format::fixed);
  constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
  return value >= static_cast<double>(kMost) ? kMost : static_cast<int64_t>(value);
}

bool lorimatutility::ConvCharFromEcr(char* szDest, char* sEcr, int iLn) {
  const size_t room = static_cast<size_t>(iLn);
  const size_t length = RowLength(sEcr, room);
  std::memmove(szDest, sEcr, length);
  std::memset(szDest + length, 0, room - length);
  szDest[iLn] = 0;
  return false;
}

bool lorimatutility::ConvCharFromPC(char* szDest, char* sPC, int iLn) {
  if (szDest != sPC) return ConvCharFromEcr(szDest, sPC, iLn);
  // In place: nothing to copy, and nothing is filled.
  szDest[iLn] = 0;
  return false;
}

void lorimatutility::NumToStringDescription(char* description, char* des, long num, long factor,
                                            bool remove0) {
  const size_t size = std::strlen(des) + 64;  // a blank, two numbers and a point
  std::snprintf(description, size, "%s %ld", des, num / factor);
  long remainder = num % factor;
  if (remainder == 0) return;
  AppendText(description, size, ".");
  if (remove0) {
    // The zeros in front of the fraction go too, so that 10.05 reads "10.5": meant.
    while (remainder % 10 == 0) remainder /= 10;
    AppendFormat(description, size, "%ld", remainder);
  } else {
    AppendFormat(description, size, "%ld", remainder / 1000);
  }
}

void lorimatutility::NumToString(char* description, long num, long factor, bool remove0) {
  constexpr size_t kSize = 64;
  std::snprintf(description, kSize, "%ld", num / factor);
  const long remainder = num % factor;
  if (remove0 && remainder == 0) return;
  AppendText(description, kSize, ".");
  AppendFormat(description, kSize, "%2.2ld", remainder / 100);
}

void lorimatutility::CurrencyToString(char* description, long num, long factor, bool remove0,
                                      int currency_decimal_place_factor) {
  constexpr size_t kSize = 64;
  std::snprintf(description, kSize, "%ld.", num / factor);
  const long remainder = num % factor;
  const long cents = remainder / currency_decimal_place_factor;
  if (remainder <= 999 && remove0) {
    AppendFormat(description, kSize, "%ld", cents / 10);
  } else {
    AppendFormat(description, kSize, "%2.2ld", cents);
  }
  // A zero of remove0 reads "0.0" and stays as it is.
  if (std::strcmp(description, "0.00") == 0) CopyText(description, kSize, "0");
}

void lorimatutility::upos2ZupDateTime(char* szInfo, char* szAUX1) {
  char in[12] = {};
  std::memcpy(in, szAUX1, RowLength(szAUX1, sizeof in));
  std::memset(szInfo, 0, 16);
  const char out[] = {in[0], in[1], '/',   in[2], in[3], '/',    in[6],
                      in[7], ' ',   in[8], in[9], ':',   in[10], in[11]};
  std::memcpy(szInfo, out, sizeof out);
}

void upos2ZupDateTime(char* szInfo, char* szAUX1) {
  lorimatutility::upos2ZupDateTime(szInfo, szAUX1);
}

void lorimatutility::zup_2_upos_datetime(char* sDateTime, const char* sDate, const char* sTime) {
  char date[6] = {};
  std::memcpy(date, sDate, RowLength(sDate, sizeof date));
  std::memset(sDateTime, 0, 13);
  const char out[] = {date[0], date[1], date[2], date[3], '2', '0', date[4], date[5]};
  std::memcpy(sDateTime, out, sizeof out);
  std::memcpy(sDateTime + sizeof out, sTime, std::strlen(sTime) + 1);
}

int lorimatutility::EstraeAlfa(char* szCampo, char* szVal, int iMaxLn, char cChQuote) {
  int result = 0;
  int length = 0;
  bool in_quotes = false;
  for (const char* in = szCampo; *in != 0 && result == 0; ++in) {
    bool store = *in != cChQuote;
    if (!store && !in_quotes) {
      if (length == 0 && in[1] != 0 && std::strchr(in + 1, cChQuote) != nullptr) {
        in_quotes = true;
      } else {
        result = 8;
      }
    } else if (!store && in[1] == cChQuote) {
      ++in;
      store = true;
      if (in[1] == 0 || std::strchr(in + 1, cChQuote) == nullptr) result = 8;
    } else if (!store) {
      in_quotes = false;
    }
    if (store && result == 0) {
      if (length == iMaxLn) {
        result = 9;
      } else {
        szVal[length++] = *in;
      }
    }
  }
  szVal[length] = 0;
  return result;
}

void lorimatutility::strreverse(char* begin, char* end) {
  while (begin < end) {
    const char c = *end;
    *end-- = *begin;
    *begin++ = c;
  }
}

void lorimatutility::itoa(int value, char* str, int base) {
  if (base < 2 || base > 35) {
    *str = 0;
    return;
  }
  unsigned int rest =
      value < 0 ? 0u - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
  char* end = str;
  do {
    *end++ = "0123456789abcdefghijklmnopqrstuvwxy"[rest % static_cast<unsigned int>(base)];
    rest /= static_cast<unsigned int>(base);
  } while (rest != 0);
  if (value < 0) *end++ = '-';
  *end = 0;
  strreverse(str, end - 1);
}

void lorimatutility::toLower(char* str) {
  for (; *str != 0; ++str) *str = Lower(*str);
}

char* lorimatutility::FnLPAD(char* szDest, size_t size, const char* szIn, int iL, char cPad) {
  BufferWriter padded(szDest, size);
  int length = static_cast<int>(std::strlen(szIn));
  if (length < iL) {
    int fill = iL - length;
    if (*szIn == '-') {
      padded.Put(*szIn++);
      --length;
    }
    for (; fill > 0; --fill) padded.Put(cPad);
  }
  // By the length from before: szDest may be the same place.
  padded.Move(szIn, static_cast<size_t>(length));
  return padded.Close();
}

char* lorimatutility::FnLPAD(char* szDest, char* szIn, int iL, char cPad) {
  const size_t width = static_cast<size_t>(std::max(iL, 0));
  return FnLPAD(szDest, std::max(width, std::strlen(szIn)) + 1, szIn, iL, cPad);
}

char* lorimatutility::FnRPAD(char* szDest, char* szIn, int iL, char cPad) {
  if (iL <= 0) return szDest;
  const size_t width = static_cast<size_t>(iL);
  const size_t length = RowLength(szIn, width);
  std::memmove(szDest, szIn, length);
  std::memset(szDest + length, cPad, width - length);
  return szDest + width;
}

bool lorimatutility::CheckTrue(char* szDest) {
  return BeginsWith(szDest, "VERO") || BeginsWith(szDest, "SI") || BeginsWith(szDest, "YES") ||
         BeginsWith(szDest, "2");
}
