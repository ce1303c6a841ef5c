// The values of the system as text, and back: the printable vocabulary in the available
// languages, and the local forms of numbers, money, dates, addresses and receipt numbers.
//
// There is one object, `loc`. Nothing in here allocates, throws or locks: the language and
// the currency are set once when the program starts and only read afterwards.
//
// In every operation `s` and `n` are a text and its size in bytes. An operation that writes
// a text never writes more than `n` bytes and always closes the text when `n` is not 0; one
// that reads a text reads up to `n` characters or to its terminator, whichever comes first,
// unless its comment says otherwise. A boolean result is the only report: false means that
// the text could not be read, or that it had no room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>

#include "utility/locale/textcode.h"

class Number;

class Locale {
 public:
  // Every language that has a name; getLanguageIndexFromCode tells which are available.
  enum Languages : uint8_t {
    kDefault = 0,
    kItalian = 1,
    kEnglish = 2,
    kFrench = 3,
    kGreek = 4,
    kEnd = 5,
  };

  // A row of the languages that are available: the code, the texts by TextCode::Enum, and
  // the name of the encoding that the texts are in.
  struct language_data_t {
    Languages code;
    const char* const* texts;
    const char* encoding;
  };

  struct currency_data_t {
    const char* name;  // in the code page of the device
    TextCode::Enum description_code;
    int decimal_digits;
    char decimal_separator;
  };

  struct abs_uri_protocol_t {
    const char* proto;  // with its "://"
    size_t proto_len;
    int default_port;
  };

  constexpr Locale() = default;

  // --- Languages -------------------------------------------------------------------------

  // The text of a code in the current language, never null. The code is not checked.
  const char* getText(TextCode::Enum code) const;
  // The text of an error number of the device, 0 to 148; the empty text above.
  const char* getErrorText(unsigned int index) const;
  // The text of a code in the default language. The code is not checked.
  const char* getDefaultLanguageText(TextCode::Enum code) const;

  static int getAvailableLanguagesCount();
  // The language in a row of the available ones; kDefault for a row that there is not.
  static Languages getLanguageCode(int index);
  // The row of a language, -1 if it is not available.
  static int getLanguageIndexFromCode(Languages code);

  // The name of a language in the current language; the empty text from kEnd on.
  const char* getLanguageName(Languages code) const;
  const char* getLanguageName(int index) const;

  int getCurrentLanguageIndex() const;
  Languages getCurrentLanguageCode() const;
  // An index out of range changes nothing.
  void setCurrentLanguageIndex(int index);
  // A language that is not available selects the default language.
  void setCurrentLanguageCode(Languages code);
  // "utf-8" or "cp1253".
  const char* getCurrentLanguageEncoding() const;

  // --- Dates and times (local_dates.cpp) -------------------------------------------------

  static const char* localDateTimeSeparator();
  const char* localTransactionDateTimeFormat() const;  // the Greek one holds a "%q"
  static const char* localFirmwareDateFormat();
  static const char* localShortDateTimeFormat();
  static const char* localDateTimeFormat();
  static const char* localYearDateFormat();
  static const char* localShortDateFormat();
  static const char* localLongDateFormat();
  static const char* localCompactDateFormat();
  static const char* localShortTimeFormat();
  static const char* localLongTimeFormat();
  static const char* localXMLDateTimeFormat();
  static const char* localISO8601DateFormat();
  static const char* localUPOSLongTimeFormat();
  static const char* localUPOSShortTimeFormat();
  static const char* localXmlDateFormat();
  static const char* localXmlTimeFormat();
  static const char* localCompactLongDateTimeFormat();
  static const char* localCompactShortDateFormat();
  static const char* localCompactShortDateTimeFormat();
  static const char* localHTTPDateTimeFormat();

  // A mask shows an input field: a blank for each digit, the separators in their places.
  static const char* localYearDateMask();
  static const char* localShortDateMask();
  static const char* localLongDateMask();
  static const char* localShortTimeMask();
  static const char* localLongTimeMask();
  static const char* localRegistrationNumberMask();
  static const char* localTelematicReceiptNumberMask();

  static int localTimezone();  // always 0
  // "CET" and "CEST"; in Greek two bytes each.
  const char* getWinterTimeText() const;
  const char* getSummerTimeText() const;

  // Reads a local date and time by the format `f` of pal::strptime and turns it into UTC.
  // What the format does not name stays at the epoch's. `s` must be terminated; `n` is not
  // used. `result` may be written in part when the answer is false.
  bool fromLocalDateTime(const char* s, size_t n, const char* f, tm* result) const;
  // Prints by strftime; "%q", which only this operation knows, becomes the summer or winter
  // text. With `use_local_time` the time is UTC and is turned into local time first. A text
  // that does not fit is cut, and the answer is false.
  bool toLocalDateTime(char* s, size_t n, const char* f, const tm* time, bool use_local_time) const;

  // --- Integers --------------------------------------------------------------------------

  // Leading white space and a sign are accepted, what stands behind the digits is ignored.
  // All three are limited to 32 signed bits; the output is only written on success. The
  // uint64_t form passes the bits on, so that "-1" gives all ones.
  static bool fromLocalInteger(const char* s, size_t n, int32_t& output);
  static bool fromLocalInteger(const char* s, size_t n, int64_t& output);
  static bool fromLocalInteger(const char* s, size_t n, uint64_t& output);

  // True if anything was printed; what does not fit is cut.
  static bool toLocalInteger(char* s, size_t n, int32_t i);
  static bool toLocalInteger(char* s, size_t n, int64_t i);
  static bool toLocalInteger(char* s, size_t n, uint8_t i);
  static bool toLocalInteger(char* s, size_t n, uint16_t i);
  static bool toLocalInteger(char* s, size_t n, uint32_t i);
  static bool toLocalInteger(char* s, size_t n, uint64_t i);

  // --- Numbers and money (local_forms.cpp) -----------------------------------------------

  // Reads a number with the separator of plain numbers and at most 4 decimals.
  bool fromLocalNumber(const char* s, size_t n, Number& output) const;
  // Reads a number. With `virgola_fissa` (fixed point) the number has `desired_precision`
  // decimals, and a text without a separator gives its last digits as the decimals, after
  // `fixed_decimal` zeros were put behind it. The output is only written on success.
  static bool fromLocalNumber(const char* s, size_t n, char separator, Number& output,
                              bool virgola_fissa, int desired_precision, int fixed_decimal);

  // Prints a number with `decimal_digits` decimals at most, or exactly with
  // `force_decimals`; -1 takes both from the object. Decimals are cut, never rounded.
  bool toLocalNumber(char* s, size_t n, const Number& number, int decimal_digits = -1,
                     bool force_decimals = false) const;
  bool toLocalNumber(char* s, size_t n, char separator, const Number& number, int decimal_digits,
                     bool force_decimals) const;

  // In spite of its name it reads a text (parse_number.cpp): a number in units of ten to the
  // minus `desired_precision`. Characters before the first digit and among the digits of the
  // integer part are passed over; more decimals than `desired_precision` refuse the text.
  // With `bVF` (fixed point) a text without decimals counts in hundredths. The output is
  // only written on success.
  static bool toLocalNumber(const char* s, size_t n, int64_t& output, bool bVF,
                            char currency_decimal_separator, int desired_precision);
  // The same for a text that is not const, which else would fit the printing form as well.
  static bool toLocalNumber(char* s, size_t n, int64_t& output, bool bVF,
                            char currency_decimal_separator, int desired_precision) {
    return toLocalNumber(static_cast<const char*>(s), n, output, bVF, currency_decimal_separator,
                         desired_precision);
  }

  // Prints an amount of money, with `cur_symbol` behind the symbol of the currency and a
  // blank. `full_precision` keeps the decimals that the currency does not have.
  bool toLocalCurrency(char* s, size_t n, const Number& number, bool cur_symbol) const;
  bool toLocalCurrencyFullPrecision(char* s, size_t n, const Number& number, bool cur_symbol,
                                    bool full_precision) const;
  // Reads an amount without symbol. A leading "-" is passed over and has no effect.
  bool fromLocalCurrency(const char* s, size_t n, Number& num) const;

  static int GetCurrencyCount();
  int GetCurrentCurrency() const;  // its row
  const char* GetCurrentCurrencyName() const;
  // Rows of currencies are not checked: stay below GetCurrencyCount().
  static const char* GetCurrencyName(int index);
  void SetCurrentCurrency(int index);

  int number_group_size() const { return number_group_size_; }
  void set_number_group_size(int size) { number_group_size_ = size; }

  // --- Addresses and codes (local_codes.cpp) ---------------------------------------------

  // An IPv4 address, its first group in the top byte. `s` must be terminated: `n` is only
  // tested to be 7 or more (15 or more when printing, where the longest address is cut).
  static bool fromLocalIPAddress(const char* s, size_t n, uint32_t& a);
  static bool toLocalIPAddress(char* s, size_t n, uint32_t a);

  // An ATECO 2007 activity code "NN.NN.NN" as the number NNNNNN.
  static bool fromLocalAteco(const char* s, size_t n, uint32_t& a);
  static bool toLocalAteco(char* s, size_t n, uint32_t a);
  static bool toXMLAteco(char* s, size_t n, uint32_t a);  // without the points

  // The number of a telematic receipt, "ZZZZ-PPPP" or "ZZZZPPPP": closure and progressive.
  // `s` must be terminated; `n` is not used. With a closure alone `p` takes its value.
  static bool fromLocalTelematicReceiptNumber(const char* s, size_t n, int32_t& z, int32_t& p);
  static bool toLocalTelematicReceiptNumber(char* s, size_t n, int32_t z, int32_t p);

  // Takes an absolute http or https URI apart and gives its path, a pointer into `uri`, or
  // null when it is none. `protocol`, which may be null, has room for 6 characters;
  // `hostname` gets at most `hostname_len` bytes with its terminator, and is left alone when
  // the URI has no host.
  static const char* parseAbsURI(const char* uri, char* protocol, char* hostname,
                                 size_t hostname_len, int& port_number);

  // --- Tables ----------------------------------------------------------------------------

  static const language_data_t languages[];
  static const currency_data_t currencies[];
  static const abs_uri_protocol_t abs_uri_protocols[];  // ended by a null row
  static const uint32_t pow10[11];

  // --- Members ---------------------------------------------------------------------------

  int number_decimal_digits_ = 2;
  char number_decimal_separator_ = ',';
  bool number_force_decimals_ = false;  // pad to that many decimals
  int number_group_size_ = 0;           // digits in a group, 0 for none
  char number_group_separator_ = '.';
  int currency_decimal_digits_ = 2;
  char currency_decimal_separator_ = ',';
  bool currency_force_decimals_ = true;
  int currency_group_size_ = 3;
  char currency_group_separator_ = '.';
  int language_index_ = 0;  // row of `languages`
  int currency_index_ = 0;  // row of `currencies`
};

// The one object. It is initialised by the compiler, so it stands before any code runs.
extern Locale loc;
