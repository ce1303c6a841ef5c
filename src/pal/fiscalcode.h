// The identifiers of Italian tax law: the personal tax code of 16 characters (codice fiscale,
// D.M. 23 December 1976), the VAT number of 11 digits (partita IVA), whose last digit is a
// Luhn control, and the client identifier of 8 characters of the receipt lottery. All checks
// are of form and control characters: no table of places or of persons stands behind them.
#pragma once

#include <string>

class FiscalCode {
 public:
  // Kinds of characters; letters are upper-case ASCII, but for IsAlfa, which takes both cases.
  static bool IsVocal(char c);      // A, E, I, O, U
  static bool IsConsonant(char c);  // the other letters
  static bool IsDigit(char c);
  static bool IsCharacter(char c);  // A to Z
  static bool IsAlfa(char c);       // digits and letters of either case
  // A digit, or one of the letters LMNPQRSTUV that replace the digits 0 to 9 when two persons
  // would have the same code (omocodia).
  static bool IsExtendedDigit(char c);

  // Control letter of a text of any length. Characters that are neither digit nor upper-case
  // letter add nothing; "A" for an empty text.
  static char GenerateChecksum(const std::string& text);

  // Whether the first three characters have the shape of a surname's or a name's block:
  // consonants, then vowels, then "X" for padding.
  static bool CheckSurnameName(const std::string& block);

  // The digit that a digit or its substitute letter stands for; 0 for anything else.
  static int DigitFromCoding(char c);
  // The month, 0 to 11, of its letter; 0 for anything else.
  static int MonthFromCoding(char c);

  // Builds a tax code. Names are in upper case; other characters in them are passed over. Day
  // and month count from 0, the year is in full; city_of_birth is the four characters of the
  // land registry and is taken as it is. Empty for a month above 11, which has no letter.
  static std::string GenerateFiscalCode(const std::string& surname, const std::string& name,
                                        bool is_male, unsigned int day_of_birth,
                                        unsigned int month_of_birth, unsigned int year_of_birth,
                                        const std::string& city_of_birth);

  // Whether code is a well-formed tax code with its control letter: 16 characters, upper case.
  // Years below 39 are 20xx, the others 19xx, whatever today's date is.
  static bool CheckFiscalCode(const std::string& code);

  // Whether number is a VAT number: 11 digits, the last one the control of the others. The sum
  // is kept in 8 bits with sign: where it passes 127, the control digit that passes is not the
  // law's. That is meant.
  static bool CheckVatCode(const std::string& number);

  // Whether client_id has exactly 8 characters, digits and letters of either case.
  static bool CheckClientID(const char* client_id);
};
