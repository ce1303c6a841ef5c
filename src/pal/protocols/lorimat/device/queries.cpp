// What the host may ask of the device: numbers and texts by the exports, answers of
// Trad_INFO by lines. The selector numbers are part of the host contract.

#include <initializer_list>

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

constexpr int kDeviceItems = 1000;  // selectors from here on name data items

struct Value {
  int selector;
  int ECRCONF::*field;
};

constexpr Value kValues[] = {
    {10, &ECRCONF::iConfOK},       {11, &ECRCONF::iLnARTCodN},    {12, &ECRCONF::iLNSTP},
    {13, &ECRCONF::iLCS},          {14, &ECRCONF::iLTS},          {15, &ECRCONF::iNumDPT},
    {16, &ECRCONF::iNumIVA},       {17, &ECRCONF::iNumPLU},       {18, &ECRCONF::iNumSTEN},
    {19, &ECRCONF::iNumOPE},       {20, &ECRCONF::iNumTOTG},      {101, &ECRCONF::iEMArtMax},
    {102, &ECRCONF::iEMArtNum},    {103, &ECRCONF::iEMArtDel},    {104, &ECRCONF::iEMArtFlgQ},
    {105, &ECRCONF::iEMArtLnCod},  {106, &ECRCONF::iEMArtLnDes},  {107, &ECRCONF::iEMArtLnCodN},
    {108, &ECRCONF::iEMArtLnRec},  {109, &ECRCONF::iEMArtLnRecF}, {110, &ECRCONF::iEMDCMaxByte},
    {111, &ECRCONF::iEMDCNumByte}, {112, &ECRCONF::iEMDCNumRec},  {113, &ECRCONF::iEMDCFlags},
    {114, &ECRCONF::iEMCliMax},    {115, &ECRCONF::iEMCliNum},    {116, &ECRCONF::iEMOffMax},
    {117, &ECRCONF::iEMTTGMax},    {118, &ECRCONF::iEMTTGLnRec},  {119, &ECRCONF::iEMTTGFlags},
    {200, &ECRCONF::iLnARTCodNI},  {201, &ECRCONF::iFlgART},      {202, &ECRCONF::iNumLINT},
    {203, &ECRCONF::iLNSTPINT},
};

// A selector with the device number that may stand in its high half.
struct Selector {
  explicit Selector(long id)
      : number(static_cast<int>(static_cast<uint32_t>(id) & 0xFFFF)),
        device(static_cast<int>(static_cast<uint32_t>(id) >> 16)) {}
  bool is_valid() const { return device <= MAXNUMECR; }
  int number;
  int device;  // 0 for the selected one
};

// Points the translator at another device for the time of one query.
class DeviceInTurn {
 public:
  DeviceInTurn(EcrCmdInterpreter& interpreter, int device)
      : interpreter_(interpreter), active_(device != 0) {
    if (active_) interpreter_.iCurEcrNum = device;
  }
  ~DeviceInTurn() {
    if (active_) interpreter_.iCurEcrNum = interpreter_.iEcrSelected;
  }
  DeviceInTurn(const DeviceInTurn&) = delete;
  DeviceInTurn& operator=(const DeviceInTurn&) = delete;

 private:
  EcrCmdInterpreter& interpreter_;
  const bool active_;
};

}  // namespace

long EcrCmdCommand::GetEcrConfVal(long IdVal) {
  const Selector selector(IdVal);
  if (!selector.is_valid()) return -1;
  const DeviceInTurn turn(*this, selector.device);
  if (selector.number <= 1) return wVerMajor * 1000000L + wVerMinor * 1000L + wVerRelease;
  if (selector.number < 10) return -1;
  GetEcrConf(0);
  const ECRCONF& c = selector.device != 0 ? EcrConfArray[selector.device] : *pCurConf;
  if (selector.number == 204) return c.bUPOS ? 1 : 0;
  for (const Value& value : kValues) {
    if (value.selector == selector.number) return c.*value.field;
  }
  return -1;
}

char* EcrCmdCommand::GetEcrConfStr(long IdStr) {
  const Selector selector(IdStr);
  if (!selector.is_valid()) return nullptr;
  const DeviceInTurn turn(*this, selector.device);
  if (selector.number == 0) {
    if (selector.device != 0) return nullptr;
    szDrvStat[0] = 0;
    return szDrvStat;
  }
  GetEcrConf(0);
  ECRCONF& c = selector.device != 0 ? EcrConfArray[selector.device] : *pCurConf;
  switch (selector.number) {
    case 1:
      return c.szMatr;
    case 2:
      return c.szModel;
    case 3:
      return c.szVers;
    case 4:
      return status_offline() == 0 ? szInfo : nullptr;
    // Behind what stands in szInfo, so that repeated calls lengthen the text: meant.
    case 6:
      return UpdateStatusEx() == 0 ? szInfo : nullptr;
    default:
      break;
  }
  if (selector.number < kDeviceItems) return nullptr;
  std::memset(szInfo, 0, sizeof szInfo);
  return ReadInfoItem(selector.number - kDeviceItems) == 0 ? szInfo : nullptr;
}

int EcrCmdCommand::ReadInfoItem(int item) {
  const int result = RTF_FP_INVOKE(GetDataInternal, item, szInfo);
  szInfo[sizeof szInfo - 1] = 0;
  return result;
}

int EcrCmdCommand::ReadInfoDate(int date_type) {
  ClientText date;
  static_cast<void>(RTF_FP_INVOKE(SetIntProperty, RTF_PIDXFptr_DateType, date_type));
  const int result = RTF_FP_INVOKE(GetDate, date.buffer);
  date.close();
  // A refused clock shows as an empty answer; a refused closure date is an error.
  if (result == 0 || date_type == RTF_FPTR_DT_RTC) {
    lorimatutility::upos2ZupDateTime(szInfo, date.buffer);
  }
  return result;
}

int EcrCmdCommand::ReadLongStatus() {
  int result = UpdateStatusEx();
  if (result != 0) return result;
  szInfo[0] = 0;
  const bool in_document = fiscal_functional_state_ >= 2 && fiscal_functional_state_ <= 6;
  AppendFormat(szInfo, sizeof szInfo, "1,%d,0,%d,%d,0,%d,",
               (fiscal_inner_state_ & 0x80000) != 0 ? 1 : 0, key_mode_, in_document ? 1 : 0,
               current_operator_);
  for (const int selector : {RTF_FPTR_GD_FISCAL_REC, RTF_FPTR_GD_Z_REPORT}) {
    ClientText text;
    int number = 0;
    result = RTF_FP_INVOKE(GetData, selector, &number, text.buffer);
    if (result != 0) return result;
    AppendFormat(szInfo, sizeof szInfo, "%s,", text.close());
  }
  // A refused item counts as an empty text, or as 0.
  ClientText date;
  if (RTF_FP_INVOKE(GetDataInternal, 149, date.buffer) != 0) date.Clear();
  date.close();
  char edited[17] = {};
  lorimatutility::upos2ZupDateTime(edited, date.buffer);
  AppendFormat(szInfo, sizeof szInfo, "%c%s%c,", cChQuote, edited, cChQuote);
  ClientText item;
  if (RTF_FP_INVOKE(GetDataInternal, 15, item.buffer) != 0) item.Clear();
  AppendFormat(szInfo, sizeof szInfo, "%d,0,%lld", (fiscal_inner_state_ & 0x8) != 0 ? 0 : 1,
               TextToInt(item.close()) + 1LL);
  return 0;
}

int EcrCmdCommand::ReadPendingDocuments() {
  int result = checkResult(ReadInfoItem(155));
  // The code has its class already and gets another from the caller: meant.
  if (result != 0 || TextToInt(szInfo) == 0) {
    szInfo[0] = 0;
    return result;
  }
  ClientText date;
  result = checkResult(RTF_FP_INVOKE(GetDataInternal, 156, date.buffer));
  if (result != 0) {
    szInfo[0] = 0;
    return result;
  }
  AppendFormat(szInfo, sizeof szInfo, ",%s", date.close());
  return 0;
}

int EcrCmdCommand::ReadInfo(int selector) {
  const ECRCONF& c = EcrConfArray[iCurEcrNum];
  int number = 0;
  int result = 0;
  if (selector >= kDeviceItems && selector < 2 * kDeviceItems) {
    ReadInfoItem(selector - kDeviceItems);  // a refusal shows what stood there
    return 0;
  }
  switch (selector) {
    case 1:
      CopyText(szInfo, c.szMatr);
      return 0;
    case 2:
      CopyText(szInfo, c.szModel);
      return 0;
    case 3:
      CopyText(szInfo, c.szVers);
      return 0;
    case 4:
      return status_offline();
    case 5:
      szInfo[0] = 0;
      return 0;
    case 6:
      return UpdateStatusEx();
    case 7:
      ReadInfoDate(RTF_FPTR_DT_RTC);
      return 0;
    case 8:
      return ReadLongStatus();
    case 10:
      return lastsco(szInfo);
    case 11:
      static_cast<void>(RTF_FP_INVOKE(GetData, RTF_FPTR_GD_Z_REPORT, &number, szInfo));
      szInfo[sizeof szInfo - 1] = 0;
      return 0;
    case 12:
      return ReadInfoDate(RTF_FPTR_DT_EOD);
    // These show what stands in szInfo, normally nothing.
    case 13:
    case 14:
    case 15:
      return 0;
    case 16:
      CopyText(szInfo, "0");
      return 0;
    case 17:
      ReadInfoItem(57);
      return 0;
    case 18:
      result = UpdateStatus();
      if (result != 0) return result;
      CopyText(szInfo, (fiscal_inner_state_ & 0x4) != 0 ? "1," : "0,");
      return 0;
    case 19:
      return ReadInfoItem(98);
    case 20:
      return ReadInfoItem(89);
    case 21:
      return ReadPendingDocuments();
    case 22:
      result = RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_TrainingModeActive, &number);
      if (result != 0) return result;
      std::snprintf(szInfo, sizeof szInfo, "%d", number);
      return 0;
    default:
      szInfo[0] = 0;
      return SyntaxError(ILLEGAL_VALUE);
  }
}

int EcrCmdCommand::Trad_INFO() {
  if (szCampi[1][0] == 0) return SyntaxError(CAMPO_OBBLIGATORIO);
  lorimatutility::toLower(szCampi[4]);
  const bool to_file = szCampi[4][0] != 0;
  fs_file_t file;
  if (to_file && !OpenOutput(&file, szCampi[4], FS_CREATE_TRUNC)) {
    return FILE_OPEN_ERROR;
  }
  const int selector = TextToInt(szCampi[1]);
  int result = 0;
  if (selector == 0) {
    szInfo[0] = 0;
  } else {
    GetEcrConf(selector == 14 || selector == 15 ? 1 : 0);
    result = ReadInfo(selector);
  }
  if (result == 0) {
    if (to_file) SeqFileWrite(&file, szInfo);
    TStato.iFlgINFO = 1;
  }
  if (to_file) fs_close(&file);
  return checkResult(result);
}
