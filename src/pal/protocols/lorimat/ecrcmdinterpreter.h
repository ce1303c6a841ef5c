// EcrCmdInterpreter: the state of the command language and the road of one line
// through it. It holds the tables that the definition file fills, the fields of the
// line in hand, the message tables, the device records and the flags, and declares one
// handler for each command of commands.inc. EcrCmdCommand implements the handlers.
//
// There is one object for the life of the library; nothing in it allocates, and
// nothing locks: calls come from one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pal/filesystem/filesystem.h"
#include "pal/protocols/lorimat/front/name_index.h"
#include "pal/protocols/lorimat/lorimatenums.h"
#include "pal/protocols/lorimat/prot_def.h"
#include "pal/protocols/lorimat/records.h"

class DefinitionSink;
class RtfClientInterface;

class EcrCmdInterpreter {
 public:
  EcrCmdInterpreter();
  EcrCmdInterpreter(const EcrCmdInterpreter&) = delete;
  EcrCmdInterpreter& operator=(const EcrCmdInterpreter&) = delete;

  // --- Virtual operations, in slot order. A handler takes the fields of the line in
  // hand from szCampi and returns 0 or a result code.
  virtual ~EcrCmdInterpreter();
  virtual void WaitIdle() = 0;
#define LORIMAT_HANDLER(Handler) virtual int Handler() = 0;
#include "pal/protocols/lorimat/commands.inc"

  // --- Entry (front/entry.cpp, front/batch.cpp, front/result_text.cpp)

  // Forgets the device configurations. Always 0.
  int TradClose();
  // Runs a line, or the batch file that an "@" line names. Result belongs to the host,
  // takes at least 512 characters and receives the result string. Returns 0 or a result
  // code.
  long EcrCmd(char* Command, char* Result);
  // Runs one line; a failure's result string also goes to hFileErr when it is not null.
  // Returns 0, a result code, -1 for a batch request, -2 for a line that holds nothing.
  long EcrCmdL(char* Command, fs_file_t* hFileErr);
  // The same without the bookkeeping. Not re-entrant: its parse state is static.
  int TradEcr(char* szSrcLine);
  // Takes the operands of an "@" line into szFileIn, szFileErr, szFileErrTmp and
  // szFileLog. Returns -1, or a result code when the line is refused.
  int ParseBatchRequest(char* line);
  // Runs szFileIn line by line, with the errors to szFileErr when it is not empty.
  long RunBatch(char* Result);
  // Trace to the client, at most 1023 characters; nothing without a client.
  void LogF(bool error, const char* fmt, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 3, 4)))
#endif
      ;
  // Traces str; this form always traces, whatever error says.
  void Log(bool error, const char* str);
  // Writes the result string of a code into szEsito, which takes at least 255
  // characters (512 where code 0 may show a pending answer). Code 16 appends.
  void SetStringErr(char* szEsito, long lErrCode);
  // A client result as a result code: 0 stays, -1 gives 512, a result below 200 gets
  // class bit 0x200, any other 0x400.
  int checkResult(int result);

  // --- Definition file and line files (front/language_file.cpp, front/line_file.cpp)

  // Reads the definition file, or "merkelin.ini" of the current directory when it cannot
  // be opened. Returns 1 when the file was read to its end, else 0; what was read
  // stays in the tables.
  int LeggiFileIni(char* szNomeFileIni);
  // The same, and tells a sink, unless it is null, what becomes of each line.
  int ReadDefinition(const char* name, DefinitionSink* sink);
  // Reads one line into szLinea (nMax + 1 characters); characters beyond nMax are
  // dropped. Returns the length without the line end, -1 at the end of the file, -2 on
  // a read error.
  int SeqFileRead(fs_file_t* hHandle, char* szLinea, unsigned long nMax);
  // Opens a file for a command that writes to it, without translation of line ends, which are
  // written as they are. False when it does not open.
  bool OpenOutput(fs_file_t* file, const char* name, mode_flags_t flags);
  // A command has the device write to a file.
  void NoteOutput() { output_named_ = true; }
  // Writes a line with carriage return and line feed; false when not all went out.
  bool SeqFileWrite(fs_file_t* hHandle, char* szString);

  // --- Line parsing (front/parser.cpp). Results are 0 or the index of a class 1
  // message. *iPunt is the parse position, one-based.

  int GetCodOp(char* szLinea, int* iPunt, int* iOpCod);
  int GetCampi(char* szLinea, int iOpCod, int* iPunt);
  // szKey takes MAXSIMBLN + 1 characters, szVal MAXVALLN + 1.
  int GetOper(char* szLinea, int* iPunt, char* szKey, char* szVal, bool* bAlfa);
  int GetNumOper(int iOpCod, char* szKey, int* iNum);
  // Operand of an "@" line. szVal takes 256 characters; what does not fit is dropped.
  int GetEMOper(char* szLinea, int* iPunt, char* szVal, bool* bAlfa);
  bool TradSimb(char* szIn, int* iVal);
  // Parses blank-separated keys into iMacro (100 bytes). Returns the number of keys, -1
  // for a token that is no key, -2 for more than 99. A token that no blank ends is not
  // stored.
  int GetMacro(char* szCampo, unsigned char* iMacro);
  // Writes a quoted literal into size characters; twice iLnIn plus 3 are enough for any, and what
  // does not fit is cut. Returns the place of the closing NUL.
  char* EditAlfa(char* szDest, size_t size, const char* sIn, int iLnIn);
  // The same for a buffer that has room for any literal of that length.
  char* EditAlfa(char* szDest, char* sIn, int iLnIn);
  // Appends a field's name, as "#n" when bModo is set. szLinea has size characters, and what does
  // not fit is cut. Returns szLinea.
  char* LdNomeCampo(char* szLinea, size_t size, const char* szNome, int iNum, bool bModo);
  // The same for a buffer that has room for the name behind its text: for szNome, or with bModo for
  // the twelve characters of the longest number.
  char* LdNomeCampo(char* szLinea, char* szNome, int iNum, bool bModo);

  // --- Accessors
  void SetOutEditFlags(int flags) { iOutEditFlags = flags; }
  int GetOutEditOptions() const { return iOutEditFlags; }
  void SetSeparatorChar(char c) { cChSep = c; }
  char GetSeparatorChar() const { return cChSep; }
  void SetQuoteChar(char c) { cChQuote = c; }
  char GetQuoteChar() const { return cChQuote; }
  void SetEnableTradDC(bool enable) { bFlgTradDC = enable; }
  bool GetEnableTradDC() const { return bFlgTradDC; }
  bool VirgolaFissa() const { return bVirgolaFissa; }
  int GetCurrencyDecimalPlaceFactor() const { return currency_decimal_place_factor; }
  void SetCurrencyDecimalPlaceFactor(int factor) { currency_decimal_place_factor = factor; }
  int GetPercentageDecimalPlaceFactor() const { return percentage_decimal_place_factor; }
  void SetPercentageDecimalPlaceFactor(int factor) { percentage_decimal_place_factor = factor; }
  int GetCurrencyFactor() const { return currency_factor; }
  void SetCurrencyFactor(int factor) { currency_factor = factor; }
  int GetPercentageFactor() const { return percentage_factor; }
  void SetPercentageFactor(int factor) { percentage_factor = factor; }
  int GetMaxPrecision() const { return max_precision; }
  void SetMaxPrecision(int precision) { max_precision = precision; }

  // --- Members
  char cChQuote;  // quote character of the language
  char cChSep;    // separator of "@" lines
  char cChDate;   // separators in edited output
  char cChTime;
  int iOutEditFlags;   // output edit options of the reading commands
  bool bFlgTradDC;     // kept for the host
  bool bVirgolaFissa;  // fixed decimal point mode, set from the device
  char currency_decimal_separator;
  char filename_[81];  // path of the definition file in use
  const uint16_t wVerMajor;
  const uint16_t wVerMinor;
  const uint16_t wVerRelease;
  long iCurEcrNum;  // current device number
  TRADSTATO TStato;
  ECRSTATO EcrStato;
  STATERR Stat;
  char szCampi[MAXCAMPI + 1][MAXVALLN + 1];  // fields of the line in hand, by number
  char TabIntMsg[50][32];                    // internal messages; a full row has no closing NUL
  char szOpCodes[MAXOPCOD][MAXSIMBLN + 1];   // command names by row
  char szEM_FileIn[64];                      // file names of the article exchange link
  char szEM_FileErr[64];
  char szEM_FileLog[64];
  int iEM_Cmd;
  bool bEM_FlgReset;
  bool bEM_FlgClear;
  int iEM_FlgBlock;
  bool bEM_FlgAppend;
  bool bEM_FlgInfo;
  int iEM_SelezFlg;
  int iEM_SelezDpt;
  int iEM_FiltroMov;
  char szEM_FiltroMov[10];
  int iEM_LivTradDC;
  bool bEM_FlgOffLine;
  bool bEM_FlgFlush;
  bool bEM_List;
  int dwEMFileInSize;
  int dwEMFileInRead;
  int iSavePrintMon;
  bool bFlgFlush;
  RtfClientInterface* rtfClient_;  // the device client, the host's; null until TradInit
  bool bCampiA[MAXCAMPI + 1];      // field was given in quotes; kept from line to line
  int iIdOpCodes[MAXOPCOD];        // opcode id by command row
  char szKeyI[MAXOPCOD][MAXCAMPI + 1][MAXSIMBLN + 1];  // field names by opcode id and row
  char szInfo[512];                                    // answer text of info commands
  int iNumOper[MAXOPCOD];                              // highest field row by opcode id
  int iNCI[MAXOPCOD][MAXCAMPI + 1];                    // field number by opcode id and row
  bool bObl[MAXOPCOD][MAXCAMPI + 1];                   // field row is mandatory
  int iTotOpCodes;                                     // highest command row read
  int iTotSimb;                                        // symbols read
  char szSimb[MAXSIMB][MAXSIMBLN + 1];                 // symbol names, from row 1
  int iVSimb[MAXSIMB + 1];                             // symbol values
  char TabDscTotG[MAXTOTG][32];  // totalizer descriptions; a full row has no NUL
  char TabErrTradBase[50][80];   // messages of class 0; rows as in TabIntMsg
  char TabErrTrad1[40][80];      // class 1
  char TabErrTrad2[20][80];      // class 2
  char TabErrTrad3[30][80];      // class 4
  char TabErrTrad4[10][80];      // class 8
  char TabErrTrad5[10][80];      // class 16
  char TabErrTrad6[20][80];      // class 32
  char TabErrTrad7[20][80];      // class 64
  char TabErrTrad8[10][80];      // class 128
  char TabErrTrad9[10][80];      // class 256
  int iInvTast[300];             // symbol row by key code
  char szFileIn[256];            // names of the last "@" request
  char szFileErr[256];
  char szFileErrTmp[256];
  char szFileLog[256];
  long iEcrSelected;                    // selected device number
  bool bAutoSlaveOnBatch;               // nothing reads it
  ECRCONF EcrConfArray[MAXNUMECR + 1];  // one configuration per device number
  ECRCONF* pCurConf;                    // record of the selected device
  PECRIO pfnEcrIO;                      // callbacks of the older protocol; nothing stores them
  PECRIO pfnEcrIO2;
  PEcrBrdcIO pfnEcrBrdcIO;
  PSendStRq pfnSendStRq;
  PSendStExRq pfnSendStExRq;
  PROTINFO* pProtInfo;
  bool bProtInfo;
  int iMaxEcr;
  uint8_t iGlobalOptions;  // the host's options, low byte
  bool bProgressZUP;       // bit 0x80 of iGlobalOptions
  int hFileReportOut;      // report output
  char szFileReportOut[128];
  int dwFileReportLines;
  int wReportHeaderLines;
  char szAux[1024];     // work text
  char sRdBuf[5][512];  // read buffers, unused
  int iRdNum[5];
  int iRdCur[5];
  int currency_decimal_place_factor;  // divides a device amount to two decimals
  int percentage_decimal_place_factor;
  int currency_factor;       // amount units of one currency unit
  int percentage_factor;     // percentage units of one percent
  int quantity_factor;       // quantity units of one piece
  int max_precision;         // decimals of an amount or percentage
  long commissioning;        // the device is commissioned, data item 86
  char szDrvStat[100];       // empty text that GetEcrConfStr 0 returns
  long fiscal_inner_state_;  // state words of the device, as last read
  int fiscal_functional_state_;
  int fiscal_operation_state_;
  long fiscal_memory_state_;
  int fiscal_journal_state_;
  int current_operator_;
  int key_mode_;
  char sEcrStEx[64];   // six-byte extended status
  bool bAbortIfError;  // a failed batch line ends the batch
  bool bSendZAE;       // registry settings of the same names
  bool bSendLotteriaAEOnClosure;
  bool bAutoCloseOnInactivity;
  bool bWaitIdle;     // wait for an idle device ahead of each command
  bool bOnFirstSale;  // the next sale may have to open a document
  bool bDocOpened;    // false; nothing reads or changes it
  bool bExitBatch;    // read by the batch loop, nothing sets it
  bool bFlgBreak;     // read by EcrCmdL, nothing sets it
  int dwFileInSize;   // size of the batch file and bytes consumed
  int dwFileInRead;
  char szInstDir[128];  // installation directory from the registry

  // Texts of keys 0 to 19 of ERRMSG2 and 0 to 29 of ERRMSG3. The reader of these
  // sections and the reader of the messages both subtract 100 and 200, so that these
  // keys lie in front of TabErrTrad2 and TabErrTrad3; they have rows of their own here.
  char TabErrKey2[20][80];
  char TabErrKey3[30][80];

 private:
  using CommandIndex = NameIndex<MAXOPCOD>;
  using FieldIndex = NameIndex<MAXCAMPI + 1>;

  // A field of a line: a key and its value, pieces of the line where they stand as they are.
  struct Operand {
    // Room for a value that is put together: MAXVALLN + 1 characters.
    explicit Operand(char* value_room) : room(value_room) {}
    // Puts a piece behind the value, as much of it as there is room for. Returns how much that is.
    size_t Take(const char* piece, size_t length);

    const char* key = "";
    size_t key_length = 0;
    const char* value = "";
    size_t value_length = 0;
    bool quoted = false;
    char* const room;
  };

  // What TradEcr tells the client, which has to be there, of a line, in the form of LogF.
  void TraceLine(const char* line, size_t length);
  // GetOper without its copies. With an answer other than 0 the operand is as far as it was read.
  int ReadOperand(const char* line, int* iPunt, Operand* operand) const;
  int ReadKeyAndValue(const char** place, Operand* operand) const;
  // What a value without quotes stands for.
  int ReadBareValue(Operand* operand) const;
  // TradSimb for a text of this length without blanks at its ends.
  bool FindSymbol(const char* word, size_t size, int* iVal) const;
  // The field rows of a command that a name is looked for in.
  size_t FieldRows(int opcode) const;
  // To be called before FindField for this command.
  void FollowFieldNames(int opcode);
  // GetNumOper for a key of this length.
  int FindField(int iOpCod, const char* szKey, size_t length, int* iNum) const;

  // A command of the batch writes to a file: perhaps to the batch itself.
  bool output_named_ = false;
  CommandIndex command_index_;
  FieldIndex field_indexes_[MAXOPCOD];
};
