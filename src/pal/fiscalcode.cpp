#include "pal/fiscalcode.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "pal/calendar.h"

namespace {

constexpr char kMonthTable[12] = {'A', 'B', 'C', 'D', 'E', 'H', 'L', 'M', 'P', 'R', 'S', 'T'};
constexpr char kOmocodiaTable[10] = {'L', 'M', 'N', 'P', 'Q', 'R', 'S', 'T', 'U', 'V'};

// Check values by position, counted from 1 as the law counts.
constexpr char kEvenCode[26] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25};
constexpr char kEvenDigitsCode[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
constexpr char kOddCode[26] = {1,  0,  5, 7, 9, 13, 15, 17, 19, 21, 2,  4,  18,
                               20, 11, 3, 6, 8, 12, 14, 16, 10, 22, 25, 24, 23};
constexpr char kOddDigitsCode[10] = {1, 0, 5, 7, 9, 13, 15, 17, 19, 21};

constexpr size_t kFiscalCodeLength = 16;
constexpr size_t kVatCodeLength = 11;
constexpr size_t kClientIdLength = 8;
constexpr size_t kBlockLength = 3;

constexpr int kCenturyPivot = 39;  // two-digit years from here on are 19xx
constexpr unsigned int kFemaleDayOffset = 40;

// Place of c in a table, or -1.
template <size_t kSize>
int IndexOf(const char (&table)[kSize], char c) {
  const char* found = std::find(std::begin(table), std::end(table), c);
  return found == std::end(table) ? -1 : static_cast<int>(found - table);
}

std::string LettersOf(const std::string& text, bool (*kind)(char)) {
  std::string letters;
  std::copy_if(text.begin(), text.end(), std::back_inserter(letters), kind);
  return letters;
}

// Consonants, then the name's vowels, then "X", cut to a block.
std::string PaddedBlock(const std::string& consonants, const std::string& name) {
  std::string block = consonants + LettersOf(name, FiscalCode::IsVocal);
  block.resize(kBlockLength, 'X');
  return block;
}

}  // namespace

bool FiscalCode::IsVocal(char c) {
  return c == 'A' || c == 'E' || c == 'I' || c == 'O' || c == 'U';
}

bool FiscalCode::IsConsonant(char c) { return IsCharacter(c) && !IsVocal(c); }

bool FiscalCode::IsDigit(char c) { return c >= '0' && c <= '9'; }

bool FiscalCode::IsCharacter(char c) { return c >= 'A' && c <= 'Z'; }

bool FiscalCode::IsAlfa(char c) { return IsDigit(c) || IsCharacter(c) || (c >= 'a' && c <= 'z'); }

bool FiscalCode::IsExtendedDigit(char c) { return IsDigit(c) || IndexOf(kOmocodiaTable, c) >= 0; }

char FiscalCode::GenerateChecksum(const std::string& text) {
  int sum = 0;  // modulo 26
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool even_position = i % 2 != 0;
    if (IsDigit(c)) {
      sum += (even_position ? kEvenDigitsCode : kOddDigitsCode)[c - '0'];
    } else if (IsCharacter(c)) {
      sum += (even_position ? kEvenCode : kOddCode)[c - 'A'];
    }
    sum %= 26;
  }
  return static_cast<char>('A' + sum);
}

bool FiscalCode::CheckSurnameName(const std::string& block) {
  if (block.size() < kBlockLength) return false;
  bool vowel_seen = false;
  for (size_t i = 0; i < kBlockLength; ++i) {
    const char c = block[i];
    if (!(vowel_seen ? IsVocal(c) || c == 'X' : IsCharacter(c))) return false;
    if (IsVocal(c)) vowel_seen = true;
  }
  return true;
}

int FiscalCode::DigitFromCoding(char c) {
  if (IsDigit(c)) return c - '0';
  return std::max(IndexOf(kOmocodiaTable, c), 0);
}

int FiscalCode::MonthFromCoding(char c) { return std::max(IndexOf(kMonthTable, c), 0); }

std::string FiscalCode::GenerateFiscalCode(const std::string& surname, const std::string& name,
                                           bool is_male, unsigned int day_of_birth,
                                           unsigned int month_of_birth, unsigned int year_of_birth,
                                           const std::string& city_of_birth) {
  if (month_of_birth >= std::size(kMonthTable)) return {};

  std::string code = PaddedBlock(LettersOf(surname, IsConsonant), surname);

  std::string consonants = LettersOf(name, IsConsonant);
  // A name of four consonants and more goes without its second one.
  if (consonants.size() > kBlockLength) consonants.erase(1, 1);
  code += PaddedBlock(consonants, name);

  if (!is_male) day_of_birth += kFemaleDayOffset;
  char date[6];  // cut to five characters where a day is no day
  std::snprintf(date, sizeof(date), "%02u%c%02u", year_of_birth % 100, kMonthTable[month_of_birth],
                day_of_birth + 1);
  code += date;

  code += city_of_birth;
  code += GenerateChecksum(code);
  return code;
}

bool FiscalCode::CheckFiscalCode(const std::string& code) {
  if (code.size() != kFiscalCodeLength) return false;
  if (!CheckSurnameName(code.substr(0, 3)) || !CheckSurnameName(code.substr(3, 3))) return false;
  for (const size_t i : {6, 7, 9, 10}) {
    if (!IsExtendedDigit(code[i])) return false;
  }
  if (IndexOf(kMonthTable, code[8]) < 0) return false;

  int year = DigitFromCoding(code[6]) * 10 + DigitFromCoding(code[7]);
  year += year < kCenturyPivot ? 2000 : 1900;
  // From 0; a day field of "00" becomes -1, which no month has.
  int day = DigitFromCoding(code[9]) * 10 + DigitFromCoding(code[10]) - 1;
  if (day > 39) day -= static_cast<int>(kFemaleDayOffset);
  if (!Calendar::CheckDate(static_cast<unsigned int>(day),
                           static_cast<unsigned int>(MonthFromCoding(code[8])),
                           static_cast<unsigned int>(year))) {
    return false;
  }

  if (!IsCharacter(code[11])) return false;
  for (const size_t i : {12, 13, 14}) {
    if (!IsExtendedDigit(code[i])) return false;
  }
  return GenerateChecksum(code.substr(0, 15)) == code[15];
}

bool FiscalCode::CheckVatCode(const std::string& number) {
  if (number.size() != kVatCodeLength) return false;
  // Eight bits are part of the result: from 128 on the sum is negative, and so is its modulo.
  int8_t sum = 0;
  for (size_t i = 0; i < kVatCodeLength - 1; ++i) {
    if (!IsDigit(number[i])) return false;
    const int digit = number[i] - '0';
    const int added = i % 2 == 0 ? digit : digit * 2 + (digit > 4 ? 1 : 0);
    sum = static_cast<int8_t>(sum + added);
  }
  const int control = (10 - sum % 10) % 10;
  return number[kVatCodeLength - 1] == static_cast<char>('0' + control);
}

bool FiscalCode::CheckClientID(const char* client_id) {
  if (client_id == nullptr) return false;
  for (size_t i = 0; i < kClientIdLength; ++i) {
    if (!IsAlfa(client_id[i])) return false;
  }
  return client_id[kClientIdLength] == '\0';
}
