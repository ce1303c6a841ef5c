// The tokenisers of a cleaned line: command word, fields, operands of "@" lines, symbols
// and key sequences. Words are looked up in the tables that the definition file filled.
// Results are 0 or the index of a class 1 message.

#include <algorithm>
#include <array>
#include <bit>

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

// What ends a plain piece of an operand, beside the quote that is set.
constexpr auto kEndsPlain = [] {
  std::array<bool, 256> ends{};
  ends[0] = ends['='] = ends[','] = true;
  return ends;
}();

const char* PastPlain(const char* text, char quote) {
  while (!kEndsPlain[static_cast<unsigned char>(*text)] && *text != quote) ++text;
  return text;
}

bool QuoteFollows(const char* text, char quote) {
  return *text != 0 && std::strchr(text, quote) != nullptr;
}

const char* PastBlanks(const char* text) {
  while (*text == ' ') ++text;
  return text;
}

size_t WithoutBlanksBehind(const char* text, size_t length) {
  while (length > 0 && text[length - 1] == ' ') --length;
  return length;
}

bool HasMandatoryField(const bool (&rows)[MAXCAMPI + 1]) {
  // The last part begins where it has its size, over the one before.
  uint64_t any = 0;
  for (size_t place = 0; place < sizeof rows; place += sizeof any) {
    uint64_t part;
    std::memcpy(&part, rows + std::min(place, sizeof rows - sizeof part), sizeof part);
    any |= part;
  }
  return any != 0;
}

// Opcode ids come from the definition file, and some lie outside the field tables: such a
// command has no fields.
bool HasFields(int opcode) { return opcode >= 0 && opcode < MAXOPCOD; }

}  // namespace

int EcrCmdInterpreter::GetCodOp(char* szLinea, int* iPunt, int* iOpCod) {
  *iOpCod = 0;
  const char* const word = szLinea + *iPunt - 1;
  const char* end = word;
  while (*end != 0 && *end != ' ' && *end != '\t') ++end;
  const size_t length = std::min(static_cast<size_t>(end - word), kLongestCommandWord);
  if (*end != 0) end = PastBlanks(end + 1);
  *iPunt = static_cast<int>(end - szLinea) + 1;

  const int number = HashNumber(word, length);
  if (number > 0 && number <= iTotOpCodes) {
    *iOpCod = number;
    return 0;
  }

  command_index_.Follow(szOpCodes, MAXOPCOD);
  CommandIndex::Matches match(command_index_, word, length);
  if (!match.Next()) return INSTRUCTION_NOT_FOUND;
  int found = iIdOpCodes[match.row()];
  size_t longest = match.compared();
  bool exact = match.exact();

  // The order of the rows counts: an exact name behind two abbreviations comes too late.
  while (match.Next()) {
    if (match.compared() < longest) continue;
    if (exact == match.exact()) return INSTRUCTION_NOT_UNIC;
    if (exact) continue;
    exact = true;
    longest = match.compared();
    found = iIdOpCodes[match.row()];
  }
  *iOpCod = found;
  return 0;
}

int EcrCmdInterpreter::GetCampi(char* szLinea, int iOpCod, int* iPunt) {
  static char room[MAXVALLN + 1];
  // The rows lie far apart, and most are empty: to look is cheaper than to write, and to look at
  // all before the first is written lets the processor wait for them at once.
  static_assert(MAXCAMPI < 64);
  uint64_t given = 0;
#if defined(__GNUC__)
#pragma GCC unroll 40
#endif
  for (int field = 1; field <= MAXCAMPI; ++field) {
    given |= uint64_t{szCampi[field][0] != 0} << field;
  }
  for (; given != 0; given &= given - 1) szCampi[std::countr_zero(given)][0] = 0;

  FollowFieldNames(iOpCod);
  while (szLinea[*iPunt - 1] != 0) {
    Operand operand(room);
    int number = 0;
    int result = ReadOperand(szLinea, iPunt, &operand);
    if (result == 0) result = FindField(iOpCod, operand.key, operand.key_length, &number);
    // A definition file may bind a name to a number that is no field.
    if (result == 0 && (number < 1 || number > MAXCAMPI)) result = FIELD_NAME_NOT_FOUND;
    if (result != 0) return result;
    CopyFewBytes(szCampi[number], sizeof szCampi[number], operand.value, operand.value_length);
    bCampiA[number] = operand.quoted;
  }

  if (!HasFields(iOpCod) || !HasMandatoryField(bObl[iOpCod])) return 0;
  for (int row = 1; row <= MAXCAMPI; ++row) {
    // By field row against field number, whatever number the row has: meant.
    if (bObl[iOpCod][row] && szCampi[row][0] == 0) return CAMPO_OBBLIGATORIO;
  }
  return 0;
}

int EcrCmdInterpreter::GetOper(char* szLinea, int* iPunt, char* szKey, char* szVal, bool* bAlfa) {
  Operand operand(szVal);
  const int result = ReadOperand(szLinea, iPunt, &operand);
  CopyBytes(szKey, MAXSIMBLN + 1, operand.key, operand.key_length);
  CopyBytes(szVal, MAXVALLN + 1, operand.value, operand.value_length);
  *bAlfa = operand.quoted;
  return result;
}

size_t EcrCmdInterpreter::Operand::Take(const char* piece, size_t length) {
  const size_t kept = std::min(length, MAXVALLN - value_length);
  if (value_length == 0) {
    value = piece;
  } else if (kept != 0) {
    if (value != room) {
      std::memcpy(room, value, value_length);
      value = room;
    }
    std::memcpy(room + value_length, piece, kept);
  }
  value_length += kept;
  return kept;
}

int EcrCmdInterpreter::ReadOperand(const char* line, int* iPunt, Operand* operand) const {
  const char* place = PastBlanks(line + *iPunt - 1);
  const int result = *place == 0 ? UNEXPECTED_END_OF_LINE : ReadKeyAndValue(&place, operand);
  *iPunt = static_cast<int>(place - line) + 1;
  if (result != 0) return result;
  operand->key_length = WithoutBlanksBehind(operand->key, operand->key_length);
  return operand->quoted ? 0 : ReadBareValue(operand);
}

// Leaves *place where the next operand begins, or where this one cannot go on.
int EcrCmdInterpreter::ReadKeyAndValue(const char** place, Operand* operand) const {
  const char quote = cChQuote;
  const char* const key = *place;
  const char* at = PastPlain(key, quote);
  operand->key = key;
  operand->key_length = std::min(static_cast<size_t>(at - key), size_t{MAXSIMBLN});
  const auto end_here = [&](int result) {
    *place = at;
    return result;
  };
  // Takes what lies between the two, and stands behind what was taken of it.
  const auto take = [&](const char* piece, const char* end) {
    at = piece + operand->Take(piece, static_cast<size_t>(end - piece));
    return at == end;
  };

  if (*at == quote && quote != 0) return end_here(ILLEGAL_FIELD_NAME);
  for (;;) {
    if (*at == '=' && quote != '=') {
      const char* const begin = PastBlanks(at + 1);
      if (!take(begin, PastPlain(begin, quote))) return end_here(ILLEGAL_VALUE);
    } else if (*at == quote && quote != 0) {
      const char* end = std::strchr(at + 1, quote);
      if (operand->value_length != 0 || end == nullptr) return end_here(ALFA_VALUE_INVALID);
      operand->quoted = true;
      // Each piece but the first begins with the second one of two quotes, which stands for both.
      for (const char* piece = at + 1;; piece = at + 1, end = std::strchr(at + 2, quote)) {
        if (end == nullptr) return end_here(ALFA_VALUE_INVALID);
        if (!take(piece, end)) return end_here(ILLEGAL_VALUE);
        if (end[1] != quote) break;
      }
      if (!take(at + 1, PastPlain(at + 1, quote))) return end_here(ILLEGAL_VALUE);
    } else {
      break;
    }
  }
  if (*at == ',') at = PastBlanks(at + 1);
  return end_here(0);
}

int EcrCmdInterpreter::ReadBareValue(Operand* operand) const {
  operand->value_length = WithoutBlanksBehind(operand->value, operand->value_length);
  if (operand->value_length == 0) {
    // A field named without a value is a true flag.
    operand->value = "VERO";
    operand->value_length = 4;
    return 0;
  }
  if (lorimatutility::IsNumber(operand->value, operand->value_length)) return 0;
  int symbol = 0;
  if (!FindSymbol(operand->value, operand->value_length, &symbol)) return LABEL_VALUE_NOT_FOUND;
  std::snprintf(operand->room, MAXVALLN + 1, "%d", symbol);
  operand->value = operand->room;
  operand->value_length = std::strlen(operand->room);
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

  const auto& numbers = iNCI[iOpCod];
  FieldIndex::Matches match(field_indexes_[iOpCod], szKey, length);
  if (!match.Next()) return FIELD_NAME_NOT_FOUND;
  const int found = numbers[match.row()];
  *iNum = found;
  if (match.exact()) return 0;

  const size_t longest = match.compared();
  while (match.Next()) {
    // Rows of the same number are aliases and never conflict.
    if (match.compared() < longest || numbers[match.row()] == found) continue;
    if (match.exact()) {
      *iNum = numbers[match.row()];
      return 0;
    }
    *iNum = 0;
    return FIELD_NAME_NOT_UNIC;
  }
  return 0;
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
  return FindSymbol(word, static_cast<size_t>(length), iVal);
}

bool EcrCmdInterpreter::FindSymbol(const char* word, size_t size, int* iVal) const {
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
