// Displays, key lock, pass-through to the device, and the translator's own properties.

#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/platform/platform.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

// A flag's field: a true word sets it, 1 clears it, 2 sets it, any other text leaves it.
void set_flag(char* field, bool* flag) {
  if (lorimatutility::CheckTrue(field)) {
    *flag = true;
    return;
  }
  const int number = text_to_int(field);
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
    if (!given(*this, line.field)) continue;
    static_cast<void>(
        RTF_LD_INVOKE(DisplayTextAtEx, line.row, 0, szCampi[line.field], 0, line.display, 4, true));
  }
  return 0;
}

int EcrCmdCommand::Trad_CHIAVE() {
  if (!given(*this, 1)) {
    int field = 2;
    while (field <= 5 && !is_named(szCampi[field])) ++field;
    if (field > 5) return syntax_error(ILLEGAL_VALUE);
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
  int optarg = 0;
  char data[513] = {};
  if (given(*this, 1)) return checkResult(RTF_FP_INVOKE(DirectIO, kSlaveOn, &optarg, data));
  if (given(*this, 2)) return checkResult(RTF_FP_INVOKE(DirectIO, kSlaveOff, &optarg, data));
  return 0;
}

int EcrCmdCommand::Trad_SETP() {
  constexpr int kMostEditOptions = 3;
  if (given(*this, 1)) {
    if (is_named(szCampi[1])) return SET_PROPERTY_ERROR;
    platform::set_current_directory(szCampi[1]);
  }
  if (given(*this, 2)) {
    const int options = text_to_int(szCampi[2]);
    if (options >= 0 && options <= kMostEditOptions) iOutEditFlags = options;
  }
  if (given(*this, 7)) set_flag(szCampi[7], &bAbortIfError);
  if (given(*this, 8)) set_flag(szCampi[8], &bSendZAE);
  if (given(*this, 9)) set_flag(szCampi[9], &bWaitIdle);
  return 0;
}

int EcrCmdCommand::Trad_GETP() {
  if (given(*this, 1)) {
    char text[512] = {};
    SetStringErr(text, text_to_int(szCampi[1]));
    copy_text(Stat.szGetP, text);
    Stat.bGetP = true;
    return 0;
  }
  if (!given(*this, 2)) return 0;
  if (!is_named(szCampi[2])) return GET_PROPERTY_ERROR;
  if (!platform::get_current_directory(Stat.szGetP, sizeof Stat.szGetP)) {
    Stat.szGetP[0] = 0;
    return GET_PROPERTY_ERROR;
  }
  Stat.bGetP = true;
  return 0;
}

int EcrCmdCommand::Trad_DIRECTIO() {
  if (!given(*this, 1)) return syntax_error(CAMPO_OBBLIGATORIO);
  const int cmd = client_int(lorimatutility::TradNumLong(szCampi[1]));
  int optarg = client_int(lorimatutility::TradNumLong(szCampi[2]));
  char data[513] = {};
  copy_text(data, szCampi[3]);

  fs_file_t hFileOut;
  const bool to_file = given(*this, 4);
  lorimatutility::toLower(szCampi[4]);
  if (to_file && fs_open_binary(&hFileOut, szCampi[4], FS_CREATE_TRUNC) == FS_BADF) {
    return FILE_OPEN_ERROR;
  }
  const int lErrCode = RTF_FP_INVOKE(DirectIO, cmd, &optarg, data);
  if (lErrCode == 0) {
    data[sizeof data - 1] = 0;
    TStato.iFlgINFO = 1;
    copy_text(szInfo, data);
    if (to_file) SeqFileWrite(&hFileOut, szInfo);
  }
  if (to_file) fs_close(&hFileOut);
  return checkResult(lErrCode);
}
