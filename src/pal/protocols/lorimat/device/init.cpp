// From the constructor's state to working order: messages, registry, definition file,
// client, and the configuration of the device. The numeric wrappers over the client are
// here too.

#include <cstddef>

#include "pal/platform/platform.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "utility/locale/locale.h"

namespace {

constexpr char kRegistryPath[] = "Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA";
constexpr uint32_t kDirectorySize = 80;
constexpr uint32_t kFlagSize = 16;

// The settings of the installation. Every query is offered the size that the one before
// it returned, so that a value longer than that counts as missing.
class Settings {
 public:
  Settings() : key_(kRegistryPath) {}

  bool ReadDirectory(char* directory) { return read("InstallationDir", directory); }

  bool ReadFlag(const char* name) {
    char text[kFlagSize + 1] = {};
    if (size_ > kFlagSize) size_ = kFlagSize;
    return read(name, text) && (std::strcmp(text, "1") == 0 || EqualsIgnoringCase(text, "YES") ||
                                EqualsIgnoringCase(text, "SI"));
  }

 private:
  bool read(const char* name, char* text) {
    return key_.is_open() && key_.Query(name, text, &size_) == platform::kRegistrySuccess;
  }

  platform::RegistryKey key_;
  uint32_t size_ = kDirectorySize;
};

// By the first two bytes of the serial number: makes of devices that print in a language of
// their own. Any other serial number leaves the language as it was.
void ChooseLanguage(const char* serial) {
  const unsigned char first = static_cast<unsigned char>(serial[0]);
  const unsigned char second = first != 0 ? static_cast<unsigned char>(serial[1]) : 0;
  if (first == 0xC5 && second == 0xCB) loc.setCurrentLanguageCode(Locale::kGreek);
  if (first == 0x85 && second == 0xE0) loc.setCurrentLanguageCode(Locale::kEnglish);
}

template <class First, class Last>
void ZeroRange(First* first, Last* last) {
  char* begin = reinterpret_cast<char*>(first);
  char* end = reinterpret_cast<char*>(last) + sizeof(Last);
  for (; begin != end; ++begin) *begin = 0;
}

}  // namespace

int EcrCmdCommand::TradInit(char* szNomeFileIni, int iOpzioni, RtfClientInterface* rtfClient,
                            bool readEcrConf) {
  constexpr uint8_t kProgressOption = 0x80;

  iGlobalOptions = static_cast<uint8_t>(iOpzioni);
  TStato.bInitOK = false;
  TStato.iFlgProg = 0;
  TStato.bFlgNoPrint = false;
  TStato.bFlgEC = false;
  TStato.iFlgEMCmd = 0;
  TStato.iFlgINFO = 0;
  Stat.bGetP = false;
  Stat.szGetP[0] = 0;
  WriteDefaultMessages(*this);
  std::memset(TabDscTotG, 0, sizeof TabDscTotG);
  hFileReportOut = 0;
  szFileReportOut[0] = 0;
  dwFileReportLines = 0;
  wReportHeaderLines = 0;

  char path[256];
  {
    Settings settings;
    char directory[kDirectorySize + 1] = {};
    if (settings.ReadDirectory(directory)) {
      // An installation in the registry overrides the host's argument.
      CopyText(szInstDir, directory);
      const char separator = platform::PathSeparator();
      std::snprintf(path, sizeof path, "%s%cDrivers%cMERKELIN.INI", directory, separator,
                    separator);
    } else {
      CopyText(path, szNomeFileIni != nullptr ? szNomeFileIni : "");
    }
    bSendLotteriaAEOnClosure = settings.ReadFlag("SendLotteriaAEOnClosure");
    bAutoCloseOnInactivity = settings.ReadFlag("AutoCloseOnInactivity");
    bSendZAE = settings.ReadFlag("SendZAE");
    bWaitIdle = settings.ReadFlag("WaitIdle");
  }

  if (LeggiFileIni(path) == 0) return INITIALIZATION_ERROR;

  TStato.bInitOK = true;
  bFlgFlush = false;
  bProtInfo = false;
  pProtInfo = nullptr;
  iMaxEcr = MAXNUMECR;
  bProgressZUP = (iGlobalOptions & kProgressOption) != 0;
  iCurEcrNum = 1;
  iEcrSelected = 1;
  pCurConf = &EcrConfArray[1];
  rtfClient_ = rtfClient;
  if (readEcrConf) GetEcrConf(1);
  // What the client answers to these two does not matter.
  static_cast<void>(RTF_FP_INVOKE(SetIntProperty, RTF_PIDXFptr_SendLotteriaAEOnClosure,
                                  bSendLotteriaAEOnClosure ? 1 : 0));
  static_cast<void>(RTF_FP_INVOKE(SetIntProperty, RTF_PIDXFptr_AutoCloseOnInactivity,
                                  bAutoCloseOnInactivity ? 1 : 0));
  LOG_ZUP_TRACE("EcrCmdCommand::TradInit");
  return 0;
}

int EcrCmdCommand::GetEcrConf(int iFlags) {
  ECRCONF& c = EcrConfArray[iCurEcrNum];
  if (c.iConfOK != 0 && (iFlags & 1) == 0) return 0;

  getDataInternal(86, &commissioning);
  c.szMatr[0] = 0;
  c.szVers[0] = 0;
  std::memset(c.szModel, 0, sizeof c.szModel);
  ClientText text;
  if (RTF_FP_INVOKE(GetDataInternal, 103, text.buffer) == RTF_SUCCESS) {
    CopyText(c.szVers, text.close());
  }
  text.Clear();
  if (RTF_FP_INVOKE(GetDataInternal, 92, text.buffer) == RTF_SUCCESS) {
    CopyText(c.szMatr, text.close());
  }
  ChooseLanguage(c.szMatr);
  // The model is the tail of the serial number.
  constexpr size_t kModelPlace = 12;
  if (std::strlen(c.szMatr) > kModelPlace) {
    CopyBytes(c.szModel, sizeof c.szModel, c.szMatr + kModelPlace,
              RowLength(c.szMatr + kModelPlace, 2));
  }

  c.iConfOK = static_cast<int>(iCurEcrNum);
  c.iLnARTCodN = 0;
  c.bFlgARTCrc = false;
  c.iLnARTCodNI = 0;
  c.iFlgART = 1;
  c.bFlgREMOPZ = false;
  c.iBitREMOPZ = 0;
  c.sEMInit[0] = 0;
  c.sEMDescr[0] = 0;
  c.iEMArtAdrI = 0;
  c.iEMArtAdrD = 0;
  c.iEMArtMax = 6000;

  // One local for all reads: a read that fails hands on the value of the one before it.
  int64_t value = 0;
  const auto read = [&](int item) {
    ReadDataItem(item, &value);
    return static_cast<int>(value);
  };
  c.iLNSTPINT = read(75);
  c.iNumIVA = read(77);
  c.iNumOPE = read(110);
  static_cast<void>(read(108));
  c.iNumDPT = read(78);
  c.iNumSTEN = read(157);
  c.iEMArtNum = read(109);

  ZeroRange(&c.iEMArtDel, &c.iEMTTGFlags);
  ZeroRange(&c.iTT_Var_MaxN, &c.iTT_Con_LnName);
  std::memset(c.sEMTTGDAzz, 0, sizeof c.sEMTTGDAzz);
  c.iConfOK = static_cast<int>(iCurEcrNum);
  c.bUPOS = true;
  // The number of departments is taken from item 77 after all: meant.
  c.iNumDPT = read(77);
  c.iNumTOTG = 67;
  long fixed_point = 0;
  getDataInternal(352, &fixed_point);
  bVirgolaFissa = fixed_point != 0;
  c.iLTS = 5;
  return 0;
}

int EcrCmdCommand::getDataInternal(int dataitem, long* value) {
  int64_t number = 0;
  const int code = ReadDataItem(dataitem, &number);
  if (code == 0) *value = NearestLong(number);
  return code;
}

int EcrCmdCommand::ReadDataItem(int dataitem, int64_t* value) {
  ClientText text;
  const int code = checkResult(RTF_FP_INVOKE(GetDataInternal, dataitem, text.buffer));
  if (code != 0) return code;
  char* digits = text.buffer;
  for (const char* in = text.close(); *in != 0; ++in) {
    if (*in != '.' && *in != ',') *digits++ = *in;
  }
  *digits = 0;
  *value = std::strtoll(text.buffer, nullptr, 10);
  return 0;
}

int EcrCmdCommand::setDataInternal(int dataitem, long value) {
  char text[32];
  std::snprintf(text, sizeof text, "%ld", value);
  return checkResult(RTF_FP_INVOKE(SetDataInternal, dataitem, text));
}

int EcrCmdCommand::getData(long dataitem, long optArgs, long* value) {
  ClientText text;
  int number = static_cast<int>(optArgs);
  *value = 0;
  const int code =
      checkResult(RTF_FP_INVOKE(GetData, static_cast<int>(dataitem), &number, text.buffer));
  if (code == 0) *value = std::strtol(text.close(), nullptr, 10);
  return code;
}
