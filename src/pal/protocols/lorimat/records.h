// The plain records of the translator's state. Texts are fixed character buffers.
#pragma once

// State of the translator's run.
struct TRADSTATO {
  bool bInitOK;      // the definition file was read
  int iFlgProg;      // zeroed by TradInit; no command changes it
  bool bFlgNoPrint;  // zeroed by TradInit; no command changes it
  bool bFlgEC;       // a batch file runs
  int iFlgEMCmd;     // the answer to an article exchange request is pending
  int iFlgINFO;      // szInfo holds the answer
  int iCurOpCode;    // opcode id of the line in hand; 0 until its fields parsed
  bool bDGFEH15;     // unused
};

// Status record of the older serial protocol. Nothing reads or writes it.
struct ECRSTATO {
  char cSta;
  char cErr;
  char cTrn;
  char cNEm;
  char cKey;
  bool bExtended;
  char cSta2;
  char cSta3;
  char cTrn2;
  char cTrn3;
  char cTrn4;
  char cTrn5;
  char cDayOpen;
  char cFiller1;
  char cSMFR;
  char cPR_STATOL;
  char cPR_STATOH;
  char cPR_CurrStatusL;
  char cPR_CurrStatusH;
};

// Run statistics, and what one line carries over to the result string.
struct STATERR {
  long lTotErr;  // errors of a batch; reset by EcrCmd, nothing increments them
  long lTotErrEcr;
  long lEMTotErr;  // errors of the article exchange link
  long lEMTotErrEcr;
  unsigned int dwTotTime;  // milliseconds shown in the result string; not measured
  unsigned int dwEMTotTime;
  long lEMTotLines;  // lines of the article exchange link
  long lTotLines;    // executed batch lines
  long lCurLine;     // physical line number in the batch file
  long lEMCurLine;   // line number in the link's file
  char szFase[80];   // phase of the run
  bool bEMLineErr;   // the next error text names the link's line
  bool bLineErr;     // the next error text names the batch line
  char szMsgOK[80];  // addition to the "OK." answer
  bool bGetP;        // szGetP holds the answer
  char szGetP[256];  // pending answer of a property query
};

// Configuration of one device. Fields without a note stay zero.
struct ECRCONF {
  int iConfOK;      // the device number when the record is valid, 0 when it must be read again
  char szMatr[33];  // the device serial number
  char szVers[21];  // the firmware version
  int iVersN;
  bool bFlgEURO;
  int iNumDPT;  // number of departments, from data item 77
  int iNumPLU;
  int iNumDecimals;
  int iNumSTEN;  // from data item 157
  bool bFlgShift;
  bool bFlgPDecz;
  bool bFlgAlfad;
  bool bFlgTast2;
  bool bFlgNoVirg;
  int iAdrTABRAM;
  char szModel[9];  // the model
  int iCodModel;
  int iCodNF;
  char cCodMarca;
  char cCodMarcaEx;
  char cHwFlags1;
  char cHwFlags2;
  bool bFlgM16;
  int iAdrDPT;
  int iLnDPT;
  int iAdrPLU;
  int iLnPLU;
  int iAdrIVA;
  int iLnIVA;
  int iAdrOPE;
  int iLnOPE;
  int iAdrTOTG;
  int iNumTOTG;  // 67
  int iAdrTOTP;
  int iNumTOTP;
  int iAdrTOTF;
  int iAdrVALU;
  int iAdrPRCA;
  int iAdrOPZ;
  int iAdrSYSF;
  int iAdrGRU;
  int iLnGRU;
  int iAdrSTEN;
  int iLnSTEN;
  int iAdrFASCEO;
  int iAdrTABIND;
  int iAdrVCNF;
  char sOPZ[60];
  char sStrVCNF[30];
  int iAdrFIPBUF;
  int iAdrLCD0;
  int iAdrTNZ;
  int iAdrINTBUF;
  int iAdrKEYTAB;
  int iAdrOOPZ;
  int iAdrIOCONTO;
  int iLnIIOCONTO;
  int iNumIOCONTO;
  unsigned char cDD[150];
  int iLNSTP;
  int iLTS;  // 5
  int iLCS;
  int iNumLINT;
  int iLNSTPINT;  // from data item 75
  int iLnDPTName;
  int iLnDPTFlags;
  int iLnPLUName;
  int iLnPLUPrice;
  int iLnPLUValue;
  int iNumOPE;  // from data item 110
  int iNumIVA;  // from data item 77
  unsigned char cOOPZ[60];
  int iAdrCCBlackList;
  int iNumCCBlackList;
  int iLnARTCodN;
  bool bFlgARTCrc;
  int iLnARTCodNI;
  int iFlgART;  // 1
  int iCSPKey;
  int iCSPNoPrint;
  int iCSPNoPrintEx;
  int iCSPIniEM;
  int iCSPAbiEM;
  int iCSPPrgOPE;
  bool bFlgPluStock;
  bool bFlgEM;
  int iEMStato;
  char sEMInit[51];
  char sEMDescr[100];
  unsigned int iEMArtAdr;
  unsigned int iEMArtAdrI;
  unsigned int iEMArtAdrD;
  int iEMArtMax;  // 6000
  int iEMArtNum;  // from data item 109
  int iEMArtDel;
  int iEMArtFlgQ;
  int iEMArtLnCod;
  int iEMArtLnDes;
  int iEMArtLnCodN;
  int iEMArtLnRec;
  int iEMArtLnRecF;
  bool bEMArtCodA;
  bool bEMArtFTot;
  bool bEMArtFGia;
  bool bEMArtFCrc;
  bool bEMFlgCount;
  int iEMArtLnPre;
  int iEMArtLnVal;
  int iEMArtLnQty;
  unsigned int iEMDCAdr;
  unsigned int iEMDCPntFree;
  unsigned int iEMDCPntO;
  int iEMDCFlags;
  int iEMDCMaxByte;
  int iEMDCNumByte;
  int iEMDCNumRec;
  int iEMCliMax;
  int iEMCliNum;
  unsigned int iEMOffAdr;
  int iEMOffMax;
  int iEMTTGMax;
  int iEMTTGLnRec;
  int iEMTTGFlags;
  char sEMTTGDAzz[4];
  bool bFlgREMOPZ;
  unsigned int iBitREMOPZ;
  int iFlgBarCode;
  int capDotLineRepeatNoFiscal;
  int iLTS_TP;
  int iLCS_TP;
  bool bTabTrack;
  bool bTicketsR;
  int iSTEN_DscLn;
  int iTT_Var_MaxN;
  int iTT_Tav_MaxN;
  int iTK_Con_MaxN;
  int iTK_Con_Vers;
  int iTK_STen_MaxN;
  int iTK_STen_Vers;
  int iTK_Tik_MaxN;
  int iTK_Tik_Occ;
  int iTK_Tik_Vers;
  int iTT_Tav_LnRec;
  int iTT_Var_LnRec;
  int iTT_Con_LnRec;
  int iTT_Tik_LnRec;
  int iTT_STen_LnRec;
  int iTT_Con_LnName;
  int iAdrLastZBuff;
  bool bUPOS;  // true once read
  int iDisplayOperatoreCols;
  int iDisplayClienteCols;
  bool capCustomerCode;
  int iFlgDDEst;
};
