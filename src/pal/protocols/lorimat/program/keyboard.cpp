// The keys of the device's keyboard with the macros they play, and its logo archive.

#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/program/device_records.h"

int EcrCmdCommand::Trad_PTAST() {
  for (const int field : {1, 2}) {
    if (!Given(*this, field)) return SyntaxError(CAMPO_OBBLIGATORIO);
    if (IsNamed(*this, field)) return SyntaxError(ILLEGAL_VALUE);
  }
  // A key is written whole, without a read: what the line leaves out is 0.
  KeyRecord record;
  record.key_code = static_cast<uint8_t>(IntegerField(*this, 2));
  if (Given(*this, 4)) record.keyboard_type = static_cast<int8_t>(IntegerField(*this, 4));
  if (record.key_code >= kFirstMacroKey && record.key_code <= kLastMacroKey && Given(*this, 3)) {
    unsigned char keys[100];  // the most that GetMacro stores
    const int count = GetMacro(szCampi[3], keys);
    // What the record cannot hold with its NUL is refused ahead of the device.
    if (count < 0 || count >= KeyRecord::kMacroSize) return SyntaxError(ILLEGAL_VALUE);
    std::memcpy(record.macro.buffer, keys, static_cast<size_t>(count));
    record.macro_size = static_cast<uint16_t>(count);
  }
  return checkResult(ConfigKeyboard(true, IntegerField(*this, 1), record));
}

int EcrCmdCommand::Trad_PTASTA() { return Trad_PTAST(); }

int EcrCmdCommand::Trad_LDGRAF() {
  constexpr int kMostPlaces = 3;
  constexpr int kLastPlaceLogo = 63;  // the graphic behind place 3
  constexpr size_t kLongestFileName = 50;
  int num = 0;
  int ngraex = 0;
  if (Given(*this, 3)) {
    const int res = checkResult(RTF_FP_INVOKE_NP(EraseLogoArchive));
    if (res != 0) return res;
  }
  if (Given(*this, 8)) {
    // No upper bound, and one byte of the number reaches the device: meant.
    ngraex = IntegerField(*this, 8);
    if (ngraex < 0) return SyntaxError(ILLEGAL_VALUE);
  }
  if (Given(*this, 1)) {
    num = IntegerField(*this, 1);
    if (num < 0 || num > kMostPlaces) return SyntaxError(ILLEGAL_VALUE);
  }
  // A load takes one of the two numbers; an erase is complete without.
  if ((num == 0) == (ngraex == 0)) return Given(*this, 3) ? 0 : SyntaxError(ILLEGAL_VALUE);
  if (!Given(*this, 2)) return SyntaxError(ILLEGAL_VALUE);
  char szFileName[kLongestFileName + 1];
  CopyText(szFileName, szCampi[2]);
  if (ngraex == 0) ngraex = num == kMostPlaces ? kLastPlaceLogo : num;
  return checkResult(
      RTF_FP_INVOKE(ProgramGRC, static_cast<uint8_t>(ngraex & 255), szFileName, false));
}
