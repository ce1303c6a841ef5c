// The exported functions. Each one that does something forwards to the translator object;
// the others keep an older host contract alive.

#include "lorimatrt/instance.h"
#include "lorimatrt/lorimatrt.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

EcrCmdCommand* translator_instance = nullptr;

namespace {

// The answer of the stubs that return a text. Never written to.
char* EmptyText() {
  static char empty[1] = "";
  return empty;
}

}  // namespace

int TradInit(char* szNomeFileIni, int iOpzioni, PFIREPROGR, PECRIO pEcrIO) {
  void* baseClientFP = nullptr;
  // A host that fails here leaves the pointer null, and every line then answers so.
  if (pEcrIO != nullptr) {
    GuardedClientCall([&] {
      pEcrIO(ECRIOIC_GET_CLIENT_RT, 0, nullptr, 0, nullptr, nullptr,
             reinterpret_cast<long*>(&baseClientFP));
      return 0;
    });
  }
  return translator_instance->TradInit(szNomeFileIni, iOpzioni,
                                       static_cast<RtfClientInterface*>(baseClientFP), true);
}

int TradClose(void) { return translator_instance->TradClose(); }

long EcrCmd(char* Command, char* Result) { return translator_instance->EcrCmd(Command, Result); }

long GetEcrConfVal(long IdVal) { return translator_instance->GetEcrConfVal(IdVal); }

char* GetEcrConfStr(long IdStr) { return translator_instance->GetEcrConfStr(IdStr); }

bool GetEnableTradDC(void) { return translator_instance->GetEnableTradDC(); }

void SetEnableTradDC(bool bNewValue) { translator_instance->SetEnableTradDC(bNewValue); }

// A character counts with its sign, whatever plain char is on the platform.
long GetQuoteChar(void) { return static_cast<signed char>(translator_instance->GetQuoteChar()); }

void SetQuoteChar(long nNewValue) {
  translator_instance->SetQuoteChar(static_cast<char>(nNewValue));
}

long GetSeparatorChar(void) {
  return static_cast<signed char>(translator_instance->GetSeparatorChar());
}

void SetSeparatorChar(long nNewValue) {
  translator_instance->SetSeparatorChar(static_cast<char>(nNewValue));
}

long GetOutEditOptions(void) { return translator_instance->GetOutEditOptions(); }

void SetOutEditOptions(long nNewValue) {
  translator_instance->SetOutEditFlags(static_cast<int32_t>(nNewValue));
}

char* Trad_DCYEvent(int, char*, int) { return EmptyText(); }

char* Trad_DCXEvent(int, char*, int) { return EmptyText(); }

char* Trad_IEvent(int, char*, int) { return EmptyText(); }

void Trad_FileExtEnq(int, char*, int, long* iTipoArt, char* szCodice, double* Qty) {
  *iTipoArt = 0;
  szCodice[0] = 0;
  *Qty = 0.0;
}

long Trad_RispExtEnq(int, long, long, char*, char*, int* iLnOut) {
  *iLnOut = 0;
  return 0;
}

void Trad_FileExtUpd(int, char*, int, int* iTipoArt, char*, double* Qty, double* Valore) {
  *iTipoArt = 0;
  *Qty = 0.0;
  *Valore = 0.0;
}
