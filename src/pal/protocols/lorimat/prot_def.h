/* Usable from C.
 * The host's side of the contract: callback types, control codes of the I/O
 * callback, and the description of the older protocol layer that hosts share. */
#ifndef LORIMAT_PROT_DEF_H
#define LORIMAT_PROT_DEF_H

#ifndef __cplusplus
#include <stdbool.h>
#endif

/* The host's I/O callback: control code, then six arguments whose meaning depends on
 * the code. The library sends ECRIOIC_GET_CLIENT_RT alone, once, from the export
 * TradInit; the last argument is then the address of the pointer that takes the
 * device client. */
typedef long (*PECRIO)(long, long, char*, long, char*, long*, long*);

/* The host's progress callback. Accepted by the export TradInit, never called. */
typedef void (*PFIREPROGR)(long, long, long, char*, long*);

/* Callbacks of the older protocol. Nothing stores or calls them. */
typedef long (*PEcrBrdcIO)(long, char*, long);
typedef long (*PSendStRq)(long);
typedef long (*PSendStExRq)(long);

/* Control codes of PECRIO. */
enum EcrIoControlCode {
  ECRIOIC_ONLINEOFF = -101,
  ECRIOIC_ONLINEON = -102,
  ECRIOIC_ONLINE = -103,
  ECRIOIC_GETPROTINFO = -105,
  ECRIOIC_DIAL = -106,
  ECRIOIC_HANGUP = -107,
  ECRIOIC_ONDSRCHECK = -108,
  ECRIOIC_ONCTSCHECK = -109,
  ECRIOIC_SOCKET_CONNECT = -110,
  ECRIOIC_SOCKET_CLOSE = -111,
  ECRIOIC_GET_CLIENT_RT = -112,
  ECRIOIC_GET_CLIENT_RT_FP = -112, /* the fiscal printer client */
  ECRIOIC_GET_CLIENT_RT_CD = -113,
  ECRIOIC_GET_CLIENT_RT_LD = -114,
};

/* The older protocol layer as hosts describe it. The translator only declares it. */
typedef struct PROTINFO {
  unsigned int iTipo; /* protocol type */
  bool bModem;
  unsigned int iVerMajor;
  unsigned int iVerMinor;
  unsigned int iVerRelease;
  bool bOpen;
  int iMaxEcr;
  long* plLastErr;
  long* plTotBytesTx;
  long* plTotBytesRx;
  void* pTbNet;
  int iTbNetSize;
  long* pNetStatus;
  char* pszPortName;
  char* pszPortEcrProt;
  char* pszPortNetDef;
  char* pszECRIP;
  char* pszECRPortNumber;
  bool bExtDisplayEcho;
  bool bOnLine;
  bool bNoSync;
  bool bNoCHKS;
  bool bLongTmOut;
  void* pEcrIO;
  void* pEcrBrdcIO;
  void* pSendStRq;
  void* pSendStExRq;
  void* pOutLog;
  void* pFunzUF1;
  void* pFunzUF2;
  void* pFunzUF3;
} PROTINFO;

#endif
