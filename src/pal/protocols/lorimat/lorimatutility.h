// lorimatutility: small conversions between the texts of a command line and the values
// of the device client. Stateless; a text that cannot be read counts as 0, without an
// error. A routine that returns char* returns the place behind what it wrote; the
// caller's buffers must hold the result.
#pragma once

#include <cstddef>
#include <cstdint>

class lorimatutility {
 public:
  // Copies a line without its comment, its leading and its trailing blanks; TAB becomes a
  // blank. szOut takes the length of szIn plus 1. Returns the length.
  static int TogliCommento(char* szOut, char* szIn, char cChQuote);
  // The same for a text of this length.
  static size_t CleanLine(char* szOut, const char* szIn, size_t size, char cChQuote);
  // Copies without blanks at both ends. szOut may be szIn. Returns the length.
  static int TogliSpazi(char* szOut, char* szIn);
  // The first non-blank of szIn; *iLung is the length without blanks at both ends.
  static char* TogliSpaziP(char* szIn, int* iLung);
  // Removes trailing blanks in place. Returns the length.
  static int TogliSpaziD(char* szIn);
  // Moves the one-based cursor forward over blanks and returns it.
  static int SkipSpace(char* szIn, int* iPunt);
  // Digits with one "-" in front and one "." at most; also true for an empty text.
  static bool SeNum(char* szInp);
  // The same for a text of this length without blanks at its ends.
  static bool IsNumber(const char* text, size_t length);
  // SeNum without ".".
  static bool SeNumeric(char* szInp);
  // Writes the byte 19, the length as one byte, the text, without a NUL.
  static char* TradNome(char* sDest, char* szIn);
  static char* TradNomeL(char* sDest, char* szIn, int iLung);
  // Digits as the device's key values: "1" to "9" become 1 to 9, "0" and "." stay, the
  // rest becomes 0. Ends with NUL.
  static char* TradNum(char* sDest, char* szIn);
  // The same with 10 for "0" and 13 for ".".
  static char* TradNumToECR(char* sDest, char* szIn);
  // An amount in ten-thousandths (with max_precision 4). With bVirgolaFissa a text
  // without separator counts hundredths.
  static int64_t TradPrice(char* szIn, bool bVirgolaFissa, char currency_decimal_separator_,
                           int max_precision);
  // A percentage in ten-thousandths of a percent, and a quantity in thousandths: the low
  // 32 bits of the value, with their sign.
  static long TradPercentage(char* szIn, char currency_decimal_separator, int max_precision);
  static long TradQuantity(char* szIn, char currency_decimal_separator);
  // The whole part of a number; the text ends at the first character that is neither
  // digit nor ".". Never negative; 19 characters count.
  static long TradNumLong(char* szIn);
  // The same with 64 bits on every platform.
  static int64_t TradNumInt64(char* szIn);
  // Copies at most iLn characters, up to a NUL, and fills with NUL up to szDest[iLn].
  // Always false.
  static bool ConvCharFromEcr(char* szDest, char* sEcr, int iLn);
  static bool ConvCharFromPC(char* szDest, char* sPC, int iLn);
  // Editors of scaled numbers: factor is the scale, and is never 0. remove0 leaves out a
  // fraction of zero.
  static void NumToStringDescription(char* description, char* des, long num, long factor,
                                     bool remove0);
  static void NumToString(char* description, long num, long factor, bool remove0);
  static void CurrencyToString(char* description, long num, long factor, bool remove0,
                               int currency_decimal_place_factor);
  // DDMMYYYYHHMM to DD/MM/YY HH:MM. szInfo takes 17 characters.
  static void upos2ZupDateTime(char* szInfo, char* szAUX1);
  // DDMMYY and a time to DDMM20YY and the time.
  static void zup_2_upos_datetime(char* sDateTime, const char* sDate, const char* sTime);
  // Takes a bare or quoted text. szVal takes iMaxLn + 1 characters. Returns 0, 8 for a
  // misplaced quote, 9 for a text that is too long.
  static int EstraeAlfa(char* szCampo, char* szVal, int iMaxLn, char cChQuote);
  // Reverses the characters between two pointers, both inclusive.
  static void strreverse(char* begin, char* end);
  // base 2 to 35, lower case; another base empties str.
  static void itoa(int value, char* str, int base);
  static void toLower(char* str);
  // Right-justifies in iL characters with cPad, a leading "-" in front of the fill; a
  // longer text stays whole, as far as szDest has the size. szDest and szIn do not overlap. Returns
  // the place of the closing NUL.
  static char* FnLPAD(char* szDest, size_t size, const char* szIn, int iL, char cPad);
  // The same for a buffer of one character more than iL, and than szIn has.
  static char* FnLPAD(char* szDest, char* szIn, int iL, char cPad);
  // Left-justifies in exactly iL characters, without a closing NUL.
  static char* FnRPAD(char* szDest, char* szIn, int iL, char cPad);
  // Whether a text begins with VERO, SI or YES in any case, or with 2.
  static bool CheckTrue(char* szDest);
};

// The same as the member of the same name.
void upos2ZupDateTime(char* szInfo, char* szAUX1);
