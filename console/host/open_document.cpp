#include "console/host/open_document.h"

#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {

std::string OpenDocumentFate(const lorimat::VirtualRegister& device, bool kept) {
  if (!kept) return Tr("It is gone with the shell.");
  const int state = device.printer_state();
  const bool unpaid =
      state == RTF_FPTR_PS_FISCAL_RECEIPT || state == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
  if (unpaid && !device.training()) {
    return Tr("It is not paid: the next start of the register voids it.");
  }
  return Tr("The next start of the register ends it.");
}

void TellOpenDocument(const std::string& register_file, const std::string& words,
                      const std::string& ended, Streams& streams) {
  if (words.empty()) return;
  if (register_file.empty()) {
    TellNote(streams, Tr("{} ends, and {}: it is gone with the register in memory", ended, words));
    return;
  }
  const lorimat::RegisterStatus status = lorimat::RegisterFile(register_file).Status();
  if (!status.open_document) return;
  TellNote(streams,
           Tr("{} keeps {}", Shown(register_file), OpenDocumentText(*status.open_document)));
}

}  // namespace lorimat::console
