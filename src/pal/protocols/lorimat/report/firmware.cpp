// Firmware load, and the wait for an idle device.

#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

int EcrCmdCommand::Trad_FIRMWAREUPD() {
  char szFileName[51];
  if (!Given(*this, 1)) return SyntaxError(ILLEGAL_VALUE);
  CopyText(szFileName, szCampi[1]);
  return checkResult(RTF_FP_INVOKE(ProgramFirmware, szFileName));
}

int EcrCmdCommand::Trad_IDLE() {
  WaitIdle();
  return 0;
}
