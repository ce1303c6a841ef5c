/* The nineteen functions of liblorimatrt, usable from C. Every text is a NUL-terminated
 * 8-bit string. The functions are not safe to enter from two threads at once. */
#ifndef LORIMATRT_LORIMATRT_H
#define LORIMATRT_LORIMATRT_H

#ifndef __cplusplus
#include <stdbool.h>
#endif

/* Below the folder of this file where it is installed. */
#include "pal/protocols/lorimat/prot_def.h"

/* The functions are exported by name from the shared object. */
#if defined(_WIN32)
#define LORIMATRT_API
#else
#define LORIMATRT_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Asks pEcrIO for the device client (control code ECRIOIC_GET_CLIENT_RT, the last
 * argument being the address of the pointer to write), reads the registry and the
 * definition file szNomeFileIni, and reads the device's configuration. Bit 0x80 of
 * iOpzioni is the progress flag; pFireProgr is never called and may be null. The client
 * stays the host's. Returns 0, or 2 when the definition file cannot be read. */
LORIMATRT_API int TradInit(char* szNomeFileIni, int iOpzioni, PFIREPROGR pFireProgr, PECRIO pEcrIO);

/* Forgets the device configurations; the translator goes on working. Returns 0. */
LORIMATRT_API int TradClose(void);

/* Runs a line of the command language, or the batch file that an "@" line names. Result
 * takes at least 512 characters. Returns 0 or a result code, whose text is in Result. */
LORIMATRT_API long EcrCmd(char* Command, char* Result);

/* A number or a text of the configuration; -1, or a null pointer, when there is none.
 * The text stays the library's and is overwritten by the next call. */
LORIMATRT_API long GetEcrConfVal(long IdVal);
LORIMATRT_API char* GetEcrConfStr(long IdStr);

/* A flag that the library keeps for the host. */
LORIMATRT_API bool GetEnableTradDC(void);
LORIMATRT_API void SetEnableTradDC(bool bNewValue);

/* The quote character of the language (the definition file is read with it too: set it
 * before TradInit) and the separator of "@" lines. The low byte counts; the getters
 * widen it with its sign. */
LORIMATRT_API long GetQuoteChar(void);
LORIMATRT_API void SetQuoteChar(long nNewValue);
LORIMATRT_API long GetSeparatorChar(void);
LORIMATRT_API void SetSeparatorChar(long nNewValue);

/* Output edit options of the reading commands. */
LORIMATRT_API long GetOutEditOptions(void);
LORIMATRT_API void SetOutEditOptions(long nNewValue);

/* Kept for hosts of an older contract: they touch neither the translator nor the device.
 * The first three return a constant empty text. */
LORIMATRT_API char* Trad_DCYEvent(int EcrNum, char* pIn, int iLnIn);
LORIMATRT_API char* Trad_DCXEvent(int EcrNum, char* pIn, int iLnIn);
LORIMATRT_API char* Trad_IEvent(int EcrNum, char* pIn, int iLnIn);
/* *iTipoArt = 0, szCodice emptied, *Qty = 0. */
LORIMATRT_API void Trad_FileExtEnq(int EcrNum, char* pIn, int iL, long* iTipoArt, char* szCodice,
                                   double* Qty);
/* *iLnOut = 0; returns 0. */
LORIMATRT_API long Trad_RispExtEnq(int EcrNum, long iTipoRec, long iTipoArt, char* szDatiApp,
                                   char* sOut, int* iLnOut);
/* *iTipoArt = 0, *Qty = 0, *Valore = 0; szCodice stays as it is. */
LORIMATRT_API void Trad_FileExtUpd(int EcrNum, char* pIn, int iL, int* iTipoArt, char* szCodice,
                                   double* Qty, double* Valore);

#ifdef __cplusplus
}
#endif

#endif
