// Displays, key lock, pass-through to the device, and the translator's own properties.

#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/platform/platform.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

// A flag's field: a true word sets it, 1 clears it, 2 sets it, any other text leaves it.
void SetFlag(char* field, bool* flag) {
  if (lorimatutility::CheckTrue(field)) {
    *flag = true;
    return;
  }
  const int number = TextToInt(field);
  if (number == 1) *flag = false;
  if (number == 2) *flag = true;
}

}  // namespace

int EcrCmdCommand::Trad_VIS() {
  struct DisplayLine {
    int field;
    int row;
    int display;  // which of the two displays
  };
  static constexpr DisplayLine kLines[] = {{5, 0, 2}, {6, 1, 2}, {7, 0, 0}, {8, 1, 0}};
  for (const DisplayLine& line : kLines) {
    if (!Given(*this, line.field)) continue;
    static_cast<void>(
        RTF_LD_INVOKE(DisplayTextAtEx, line.row, 0, szCampi[line.field], 0, line.display, 4, true));
  }
  return 0;
}

int EcrCmdCommand::Trad_CHIAVE() {
  if (!Given(*this, 1)) {
    int field = 2;
    while (field <= 5 && !IsNamed(szCampi[field])) ++field;
    if (field > 5) return SyntaxError(ILLEGAL_VALUE);
    szCampi[1][0] = static_cast<char>('0' + field - 1);
    szCampi[1][1] = 0;
  }
  // One position: of several digits the first.
  int length = 0;
  char position[2] = {*lorimatutility::TogliSpaziP(szCampi[1], &length), 0};
  char key[2];
  lorimatutility::TradNum(key, position);
  return checkResult(RTF_FP_INVOKE(KeyCodeInput, key, "", "", FunctionCode::kKey));
}

int EcrCmdCommand::Trad_SLAVE() {
  constexpr int kSlaveOn = 502;
  constexpr int kSlaveOff = 503;
  int argument = 0;
  char data[513] = {};
  if (Given(*this, 1)) return checkResult(RTF_FP_INVOKE(DirectIO, kSlaveOn, &argument, data));
  if (Given(*this, 2)) return checkResult(RTF_FP_INVOKE(DirectIO, kSlaveOff, &argument, data));
  return 0;
}

int EcrCmdCommand::Trad_SETP() {
  constexpr int kMostEditOptions = 3;
  if (Given(*this, 1)) {
    if (IsNamed(szCampi[1])) return SET_PROPERTY_ERROR;
    platform::EnterDirectory(szCampi[1]);
  }
  if (Given(*this, 2)) {
    const int options = TextToInt(szCampi[2]);
    if (options >= 0 && options <= kMostEditOptions) iOutEditFlags = options;
  }
  if (Given(*this, 7)) SetFlag(szCampi[7], &bAbortIfError);
  if (Given(*this, 8)) SetFlag(szCampi[8], &bSendZAE);
  if (Given(*this, 9)) SetFlag(szCampi[9], &bWaitIdle);
  return 0;
}

int EcrCmdCommand::Trad_GETP() {
  if (Given(*this, 1)) {
    char text[512] = {};
    SetStringErr(text, TextToInt(szCampi[1]));
    CopyText(Stat.szGetP, text);
    Stat.bGetP = true;
    return 0;
  }
  if (!Given(*this, 2)) return 0;
  if (!IsNamed(szCampi[2])) return GET_PROPERTY_ERROR;
  if (!platform::WorkingDirectory(Stat.szGetP, sizeof Stat.szGetP)) {
    Stat.szGetP[0] = 0;
    return GET_PROPERTY_ERROR;
  }
  Stat.bGetP = true;
  return 0;
}

int EcrCmdCommand::Trad_DIRECTIO() {
  if (!Given(*this, 1)) return SyntaxError(CAMPO_OBBLIGATORIO);
  const int cmd = ClientInt(lorimatutility::TradNumLong(szCampi[1]));
  int argument = ClientInt(lorimatutility::TradNumLong(szCampi[2]));
  char data[513] = {};
  CopyText(data, szCampi[3]);

  fs_file_t hFileOut;
  const bool to_file = Given(*this, 4);
  lorimatutility::toLower(szCampi[4]);
  if (to_file && !OpenOutput(&hFileOut, szCampi[4], FS_CREATE_TRUNC)) {
    return FILE_OPEN_ERROR;
  }
  const int lErrCode = RTF_FP_INVOKE(DirectIO, cmd, &argument, data);
  if (lErrCode == 0) {
    data[sizeof data - 1] = 0;
    TStato.iFlgINFO = 1;
    CopyText(szInfo, data);
    if (to_file) SeqFileWrite(&hFileOut, szInfo);
  }
  if (to_file) fs_close(&hFileOut);
  return checkResult(lErrCode);
}
