// The tokenisers of a cleaned line: command word, fields, operands of "@" lines, symbols
// and key sequences. Words are looked up in the tables that the definition file filled.
// Results are 0 or the index of a class 1 message.

#include <algorithm>

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

constexpr size_t kLongestCommandWord = 16;

// The number of "#" and digits; 0 for any other word, and for one too long to be a row.
int HashNumber(const char* word, size_t length) {
  if (length < 2 || length > kLongestCommandWord || word[0] != '#') return 0;
  int64_t number = 0;
  for (size_t i = 1; i < length; ++i) {
    if (!IsDigit(word[i])) return 0;
    number = number * 10 + (word[i] - '0');
  }
  return number > INT_MAX ? 0 : static_cast<int>(number);
}

// Whether a name and a word are the same over the shorter of the two, ignoring case.
// *compared receives that length.
bool Matches(const char* name, const char* word, size_t word_length, size_t* compared) {
  size_t length = 0;
  while (length < word_length && name[length] != 0) {
    const char a = name[length];
    const char b = word[length];
    if (a != b && Lower(a) != Lower(b)) return false;
    ++length;
  }
  *compared = length;
  return name[0] != 0;
}

// Of a name that matches.
bool IsExact(const char* name, size_t compared, size_t word_length) {
  return compared == word_length && name[compared] == 0;
}

bool QuoteFollows(const char* text, char quote) {
  return *text != 0 && std::strchr(text, quote) != nullptr;
}

const char* PastBlanks(const char* text) {
  while (*text == ' ') ++text;
  return text;
}

// The end of a text without its last blanks.
char* WithoutBlanksBehind(const char* text, char* end) {
  while (end != text && end[-1] == ' ') --end;
  return end;
}

bool HasMandatoryField(const bool (&rows)[MAXCAMPI + 1]) {
  return std::memchr(rows, 1, sizeof rows) != nullptr;
}

// Opcode ids come from the definition file, and some lie outside the field tables: such a
// command has no fields.
bool HasFields(int opcode) { return opcode >= 0 && opcode < MAXOPCOD; }

}  // namespace

int EcrCmdInterpreter::GetCodOp(char* szLinea, int* iPunt, int* iOpCod) {
  *iOpCod = 0;
  const char* word = szLinea + *iPunt - 1;
  size_t length = std::strcspn(word, " \t");
  *iPunt += static_cast<int>(length);
  if (word[length] != 0) {
    ++*iPunt;
    lorimatutility::SkipSpace(szLinea, iPunt);
  }
  length = std::min(length, kLongestCommandWord);

  const int number = HashNumber(word, length);
  if (number > 0 && number <= iTotOpCodes) {
    *iOpCod = number;
    return 0;
  }

  command_index_.Follow(szOpCodes, MAXOPCOD);
  const auto& rows = command_index_.Candidates(word, length);
  const auto next_match = [&](size_t row, size_t* compared) {
    do row = CommandIndex::Next(rows, row + 1);
    while (row < MAXOPCOD && !Matches(szOpCodes[row], word, length, compared));
    return row;
  };

  size_t longest = 0;
  size_t row = next_match(0, &longest);
  if (row == MAXOPCOD) return INSTRUCTION_NOT_FOUND;
  int found = iIdOpCodes[row];
  bool exact = IsExact(szOpCodes[row], longest, length);

  // The order of the rows counts: an exact name behind two abbreviations comes too late.
  size_t compared = 0;
  while ((row = next_match(row, &compared)) != MAXOPCOD) {
    if (compared < longest) continue;
    const bool exact_again = IsExact(szOpCodes[row], compared, length);
    if (exact == exact_again) return INSTRUCTION_NOT_UNIC;
    if (exact) continue;
    exact = true;
    longest = compared;
    found = iIdOpCodes[row];
  }
  *iOpCod = found;
  return 0;
}

int EcrCmdInterpreter::GetCampi(char* szLinea, int iOpCod, int* iPunt) {
  static char key[MAXSIMBLN + 1];
  static char value[MAXVALLN + 1];
  // The rows lie far apart, and most are empty: to look is cheaper than to write.
  for (int field = 1; field <= MAXCAMPI; ++field) {
    if (szCampi[field][0] != 0) szCampi[field][0] = 0;
  }

  FollowFieldNames(iOpCod);
  while (szLinea[*iPunt - 1] != 0) {
    OperandLengths lengths;
    bool quoted = false;
    int number = 0;
    int result = ReadOperand(szLinea, iPunt, key, value, &quoted, &lengths);
    if (result == 0) result = FindField(iOpCod, key, lengths.key, &number);
    // A definition file may bind a name to a number that is no field.
    if (result == 0 && (number < 1 || number > MAXCAMPI)) result = FIELD_NAME_NOT_FOUND;
    if (result != 0) return result;
    CopyBytes(szCampi[number], sizeof szCampi[number], value, lengths.value);
    bCampiA[number] = quoted;
  }

  if (!HasFields(iOpCod) || !HasMandatoryField(bObl[iOpCod])) return 0;
  for (int row = 1; row <= MAXCAMPI; ++row) {
    // By field row against field number, whatever number the row has: meant.
    if (bObl[iOpCod][row] && szCampi[row][0] == 0) return CAMPO_OBBLIGATORIO;
  }
  return 0;
}

int EcrCmdInterpreter::GetOper(char* szLinea, int* iPunt, char* szKey, char* szVal, bool* bAlfa) {
  OperandLengths lengths;
  return ReadOperand(szLinea, iPunt, szKey, szVal, bAlfa, &lengths);
}

int EcrCmdInterpreter::ReadOperand(char* szLinea, int* iPunt, char* szKey, char* szVal, bool* bAlfa,
                                   OperandLengths* lengths) {
  *bAlfa = false;
  szKey[0] = 0;
  szVal[0] = 0;
  const char* place = PastBlanks(szLinea + *iPunt - 1);
  if (*place == 0) {
    *iPunt = static_cast<int>(place - szLinea) + 1;
    return UNEXPECTED_END_OF_LINE;
  }
  char* key_end = szKey;
  char* value_end = szVal;
  const auto end = [&](int result) {
    *key_end = 0;
    *value_end = 0;
    *iPunt = static_cast<int>(place - szLinea) + 1;
    return result;
  };

  const char quote = cChQuote;
  const char* const key_limit = szKey + MAXSIMBLN;
  const char* const value_limit = szVal + MAXVALLN;
  bool in_quotes = false;
  bool seen_equals = false;
  for (char c; (c = *place) != 0; ++place) {
    if (c == quote) {
      if (!seen_equals) return end(ILLEGAL_FIELD_NAME);
      if (!in_quotes) {
        if (value_end != szVal || !QuoteFollows(place + 1, quote)) return end(ALFA_VALUE_INVALID);
        in_quotes = true;
        *bAlfa = true;
        continue;
      }
      if (place[1] != quote) {
        in_quotes = false;
        continue;
      }
      if (!QuoteFollows(place + 2, quote)) return end(ALFA_VALUE_INVALID);
      ++place;
    } else if (!in_quotes && c == '=') {
      seen_equals = true;
      place = PastBlanks(place + 1) - 1;
      continue;
    } else if (!in_quotes && c == ',') {
      place = PastBlanks(place + 1);
      break;
    }
    if (seen_equals) {
      if (value_end == value_limit) return end(ILLEGAL_VALUE);
      *value_end++ = c;
    } else if (key_end != key_limit) {
      *key_end++ = c;
    }
  }

  key_end = WithoutBlanksBehind(szKey, key_end);
  if (!*bAlfa) value_end = WithoutBlanksBehind(szVal, value_end);
  end(0);
  lengths->key = static_cast<size_t>(key_end - szKey);
  lengths->value = static_cast<size_t>(value_end - szVal);
  return *bAlfa ? 0 : ReadBareValue(szVal, &lengths->value);
}

int EcrCmdInterpreter::ReadBareValue(char* szVal, size_t* length) {
  if (*length == 0) {
    // A field named without a value is a true flag.
    CopyText(szVal, MAXVALLN + 1, "VERO");
  } else if (lorimatutility::SeNum(szVal)) {
    return 0;
  } else {
    int symbol = 0;
    if (!TradSimb(szVal, &symbol)) return LABEL_VALUE_NOT_FOUND;
    std::snprintf(szVal, MAXVALLN + 1, "%d", symbol);
  }
  *length = std::strlen(szVal);
  return 0;
}

int EcrCmdInterpreter::GetNumOper(int iOpCod, char* szKey, int* iNum) {
  FollowFieldNames(iOpCod);
  return FindField(iOpCod, szKey, std::strlen(szKey), iNum);
}

size_t EcrCmdInterpreter::FieldRows(int opcode) const {
  return HasFields(opcode) ? static_cast<size_t>(std::clamp(iNumOper[opcode], 0, int{MAXCAMPI}))
                           : 0;
}

void EcrCmdInterpreter::FollowFieldNames(int opcode) {
  if (HasFields(opcode)) field_indexes_[opcode].Follow(szKeyI[opcode], FieldRows(opcode) + 1);
}

int EcrCmdInterpreter::FindField(int iOpCod, const char* szKey, size_t length, int* iNum) const {
  *iNum = 0;
  const size_t rows = FieldRows(iOpCod);
  const int hash = HashNumber(szKey, length);
  if (hash > 0 && static_cast<size_t>(hash) <= rows) {
    *iNum = hash;
    return 0;
  }
  if (rows == 0) return FIELD_NAME_NOT_FOUND;

  const auto& names = szKeyI[iOpCod];
  const auto& numbers = iNCI[iOpCod];
  const auto& candidates = field_indexes_[iOpCod].Candidates(szKey, length);
  const auto next_match = [&](size_t row, size_t* compared) {
    do row = FieldIndex::Next(candidates, row + 1);
    while (row <= rows && !Matches(names[row], szKey, length, compared));
    return row;
  };

  size_t longest = 0;
  size_t row = next_match(0, &longest);
  if (row > rows) return FIELD_NAME_NOT_FOUND;
  const int found = numbers[row];
  *iNum = found;
  if (IsExact(names[row], longest, length)) return 0;

  // Rows of the same number are aliases and never conflict.
  size_t compared = 0;
  do row = next_match(row, &compared);
  while (row <= rows && (compared < longest || numbers[row] == found));
  if (row > rows) return 0;
  if (IsExact(names[row], compared, length)) {
    *iNum = numbers[row];
    return 0;
  }
  *iNum = 0;
  return FIELD_NAME_NOT_UNIC;
}

int EcrCmdInterpreter::GetEMOper(char* szLinea, int* iPunt, char* szVal, bool* bAlfa) {
  constexpr size_t kLongest = 255;  // what the callers' buffers hold
  constexpr int kBadQuote = 2;
  size_t length = 0;
  bool in_quotes = false;
  bool separated = false;
  szVal[0] = 0;
  lorimatutility::SkipSpace(szLinea, iPunt);
  if (szLinea[*iPunt - 1] == 0) return UNEXPECTED_END_OF_LINE;
  *bAlfa = false;

  while (szLinea[*iPunt - 1] != 0) {
    const char* place = szLinea + *iPunt - 1;
    bool store = true;
    if (*place == cChQuote) {
      if (in_quotes && place[1] == cChQuote) {
        if (!QuoteFollows(place + 2, cChQuote)) return kBadQuote;
        ++*iPunt;
      } else if (in_quotes) {
        in_quotes = false;
        store = false;
      } else {
        if (length > 0 || !QuoteFollows(place + 1, cChQuote)) return kBadQuote;
        in_quotes = true;
        *bAlfa = true;
        store = false;
      }
    } else if (!in_quotes && *place == cChSep) {
      ++*iPunt;
      lorimatutility::SkipSpace(szLinea, iPunt);
      separated = true;
      break;
    }
    if (store && length < kLongest) {
      szVal[length++] = *place;
      szVal[length] = 0;
    }
    ++*iPunt;
  }
  if (separated) lorimatutility::TogliSpaziD(szVal);
  return 0;
}

bool EcrCmdInterpreter::TradSimb(char* szIn, int* iVal) {
  int length = 0;
  const char* word = lorimatutility::TogliSpaziP(szIn, &length);
  const size_t size = static_cast<size_t>(length);
  for (int row = 1; row <= iTotSimb && row < MAXSIMB; ++row) {
    if (std::strlen(szSimb[row]) == size && std::memcmp(szSimb[row], word, size) == 0) {
      *iVal = iVSimb[row];
      return true;
    }
  }
  return false;
}

int EcrCmdInterpreter::GetMacro(char* szCampo, unsigned char* iMacro) {
  constexpr size_t kTokenSize = 32;
  constexpr int kMostKeys = 99;
  int keys = 0;
  int place = 1;
  lorimatutility::SkipSpace(szCampo, &place);
  while (szCampo[place - 1] != 0) {
    const char* word = szCampo + place - 1;
    const size_t length = std::strcspn(word, " ");
    if (length >= kTokenSize) return -1;
    // A key that no blank ends is not stored.
    if (word[length] == 0) break;
    char token[kTokenSize];
    CopyBytes(token, sizeof token, word, length);
    int value = 0;
    if (lorimatutility::SeNum(token)) {
      value = TextToInt(token);
    } else if (!TradSimb(token, &value)) {
      return -1;
    }
    if (value > 255) return -1;
    iMacro[keys++] = static_cast<unsigned char>(value);
    if (keys > kMostKeys) return -2;
    place += static_cast<int>(length);
    lorimatutility::SkipSpace(szCampo, &place);
  }
  return keys;
}

char* EcrCmdInterpreter::EditAlfa(char* szDest, size_t size, const char* sIn, int iLnIn) {
  BufferWriter literal(szDest, size);
  literal.Put(cChQuote);
  for (int i = 0; i < iLnIn; ++i) {
    if (sIn[i] == cChQuote) literal.Put(cChQuote);
    literal.Put(sIn[i]);
  }
  literal.Put(cChQuote);
  return literal.Close();
}

char* EcrCmdInterpreter::EditAlfa(char* szDest, char* sIn, int iLnIn) {
  constexpr size_t kQuotesAndNul = 3;
  const auto length = static_cast<size_t>(std::max(iLnIn, 0));
  return EditAlfa(szDest, 2 * length + kQuotesAndNul, sIn, iLnIn);
}

char* EcrCmdInterpreter::LdNomeCampo(char* szLinea, size_t size, const char* szNome, int iNum,
                                     bool bModo) {
  if (bModo) {
    AppendFormat(szLinea, size, "#%d", iNum);
  } else {
    AppendText(szLinea, size, szNome);
  }
  return szLinea;
}

char* EcrCmdInterpreter::LdNomeCampo(char* szLinea, char* szNome, int iNum, bool bModo) {
  constexpr size_t kLongestNumber = sizeof "#-2147483648" - 1;
  const size_t length = bModo ? kLongestNumber : std::strlen(szNome);
  return LdNomeCampo(szLinea, std::strlen(szLinea) + length + 1, szNome, iNum, bModo);
}
