// EcrCmdCommand: the handlers of the command language, one for each command. A handler
// reads its fields from szCampi, converts them, calls the device client and returns 0
// or a result code. The members are spread over the folders by job: device, receipt,
// program, read, report.
#pragma once

#include "managermachine/filesettable.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"

struct Adjustment;
struct ClientText;
struct DepartmentRecord;
struct DeviceOption;
struct DocumentReference;
struct GroupRecord;
struct JournalSelection;
struct KeyRecord;
struct PrintingTwin;
struct ReportRequest;
struct SubtenderRecord;
struct WorkStateLine;

class EcrCmdCommand : public EcrCmdInterpreter {
 public:
  EcrCmdCommand();
  // filesettable takes the names of report and export files; it stays the caller's.
  explicit EcrCmdCommand(FileSettable* filesettable);
  ~EcrCmdCommand() override;

  // Sleeps while the device is busy, 60 seconds at most, in steps of 150 milliseconds.
  void WaitIdle() override;
#define LORIMAT_HANDLER(Handler) int Handler() override;
#include "pal/protocols/lorimat/commands.inc"

  // --- Initialisation and numeric access to the device (device/init.cpp)

  // Writes the default messages, reads the registry and the definition file, takes over
  // the client and, with readEcrConf, reads the device's configuration. Returns 0, or 2
  // when the definition file cannot be read; then there is no new client.
  int TradInit(char* szNomeFileIni, int iOpzioni, RtfClientInterface* rtfClient, bool readEcrConf);
  // Fills the record of iCurEcrNum. A valid record is kept unless bit 0 of iFlags is
  // set. Always 0: what the device refuses stays empty or 0.
  int GetEcrConf(int iFlags);
  // A data item as a number; "." and "," are dropped. A failure leaves *value alone.
  int getDataInternal(int dataitem, long* value);
  // The same with 64 bits on every platform: totals outgrow a long of 32.
  int ReadDataItem(int dataitem, int64_t* value);
  int setDataInternal(int dataitem, long value);
  // A value of the client's GetData as a number; *value is 0 after a failure.
  int getData(long dataitem, long optArgs, long* value);

  // --- Configuration queries (device/queries.cpp)
  long GetEcrConfVal(long IdVal);
  // The text stays the translator's, until the next call; null when there is none.
  char* GetEcrConfStr(long IdStr);

  // The answer of one selector of Trad_INFO into szInfo, and its longer pieces. Each gives
  // 0, a client result or a result code.
  int ReadInfo(int selector);
  int ReadInfoItem(int item);
  int ReadInfoDate(int date_type);
  int ReadLongStatus();
  int ReadPendingDocuments();

  // --- Status (device/status.cpp)

  // Reads the state words. Returns 0 or 265.
  int UpdateStatus();
  // The same, then appends the extended status to szInfo, 12 hexadecimal digits.
  int UpdateStatusEx();
  // Writes the status line into szInfo. Returns a code that has passed checkResult.
  int status_offline();
  // The number of the last document, four digits, or eight with the closure's number on
  // a commissioned device. szAUX1 takes 50 characters.
  int lastsco(char* szAUX1);

  // --- Sale (receipt/sale.cpp)

  // A deposit line or, with buonoMonouso, a single-use voucher line; reads fields 2 and
  // 14. price in ten-thousandths. Returns the client's result, unmapped.
  int PrintRecRedeem(const char* description, long price, int vatInfo, bool buonoMonouso,
                     bool preline, bool void_item, int departmentInfo);

  // --- Adjustments, documents, printing (receipt/adjustments.cpp, documents.cpp,
  // printing.cpp)

  // The one shape of the four adjustments.
  int Adjust(const Adjustment& adjustment);
  // Reads the reference of a refund or cancel document; 0 or 266.
  int TakeReference(DocumentReference& reference);
  // The pieces that an attachment and a non-fiscal line share. PrintLine gives the client's
  // result.
  int PrintLine(const PrintingTwin& twin, const char* text);
  int PrintBarcode(const PrintingTwin& twin, int cut_mode);
  int PrintLogo(const PrintingTwin& twin, int cut_mode);

  // --- Payment and key input (receipt/payment.cpp)

  // Opens the drawer when the receipt was settled and the device asks for it.
  void OpenDrawerAtEnd();
  // The keys that open and close a transaction, and all keys without a road of their own.
  int OpenByKey();
  int CloseByKey();
  int PlayKey(uint8_t key_code_terminator);

  // --- Reports and journal (report/reports.cpp, report/journal.cpp)

  // Waits while the device is at a report, 120 seconds at most, in steps of 500
  // milliseconds, and returns res. A res other than 0 is returned at once.
  int PollReportState(int res);
  // The day closing with its wait; a result code.
  int CloseDay();
  // Takes the report file's name, cut to what szFileReportOut holds, and hands it to
  // filesettable_, in lower case if wanted.
  void TakeReportFile(int field, bool lower_case);
  int PrintReading(const ReportRequest& request);
  int PrintFiscalReport(const ReportRequest& request);
  // The two halves of a journal selection; 0 or the code of a refusal.
  int TakeJournalPeriod(JournalSelection& selection);
  int TakeJournalDocuments(JournalSelection& selection);

  // --- Records of the device's tables (program/device_records.cpp)

  // One call reads a record of the device or, with write, writes it. Each gives the client's
  // result, unmapped; texts come back closed and cut to the length of their contract.
  int ConfigDepartment(bool write, int dep_id, DepartmentRecord& record);
  int ConfigDepartmentEx(bool write, int dep_id, DepartmentRecord& record);
  int ConfigGroup(bool write, int index, GroupRecord& record);
  int ConfigSubtender(bool write, int subtender_id, SubtenderRecord& record);
  // The low 8 bits of key_pos travel.
  int ConfigKeyboard(bool write, int key_pos, KeyRecord& record);
  // How many records a table has, by its data item. What cannot be read is 0.
  int ReadCapacity(int dataitem);
  // The same for a dump, which takes kMostRecords at most.
  int ReadRecordCount(int dataitem);
  // Turns the key of the device, "1" to "4"; what the device says to it is dropped.
  void TurnKey(const char* position);

  // --- Reading tables (read/)

  // The readers. Each writes the lines of one table to hFileOut and returns 0 or a result
  // code; what was written before a failure stays. szLinea takes kRecordLineSize characters
  // (read/record_line.h). bList asks for numbers in place of words. The fields of the line
  // in hand are overwritten.
  int LeggiREP(fs_file_t* hFileOut, char* szLinea, bool bList, bool extended);
  int LeggiIVA(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiINT(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiSTEN(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiGRU(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiOPE(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiOPZ(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiKEY(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiTOTG(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiTOTREP(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiTOTPLU(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiTOTOPE(fs_file_t* hFileOut, char* szLinea, bool bList);
  int LeggiWS(fs_file_t* hFileOut, char* szLinea, bool bList);

  // One option from the device, into *number or *text by its form; whether it was read.
  bool ReadOption(const DeviceOption& option, int64_t* number, ClientText* text);
  // The line of one key, unless its code is one of those that keep their places.
  void WriteKey(fs_file_t* hFileOut, char* szLinea, bool bList, int key_pos,
                const KeyRecord& record, const char* keyboard_type);

  // A totalizer of the device (RTF_FPTR_TT_*, RTF_FPTR_GT_*) in digits, ten at least, with
  // zeros in front: an amount in cents, or with counter the number as it is. data takes 32
  // characters. Returns the client's result, unmapped; after a failure data is as it was.
  int GetTotalizerExtendInternal(int vatID, int totalizerType, int totalizer, char* data,
                                 bool counter);
  // Total and count of a counter, ten and six digits at least; both are -1 for a counter
  // that does not exist. The texts take 32 characters. Returns 0 or a result code, and then
  // they are as they were.
  int getCounter(int counter, char* szTOT, char* szCNT);

  // The pieces of the work state: blocks of records, their values, and the end of a record.
  // szAUX1 holds the total read last.
  void WriteDateRecord(WorkStateLine& line);
  int WriteVatRecords(WorkStateLine& line);
  int WriteGridRecords(WorkStateLine& line, char (&szAUX1)[32]);
  int WriteTaxRecords(WorkStateLine& line, char (&szAUX1)[32]);
  void WriteDepartmentRecords(WorkStateLine& line, char (&szAUX1)[32]);
  int WriteCounterRecords(WorkStateLine& line);
  int ReadTotalizer(int vatID, int totalizer, char* szAUX1);
  void PutValue(WorkStateLine& line, const char* text, int mode);
  void PutNumber(WorkStateLine& line, int number);
  void SubLeggiWS(WorkStateLine& line);

  // --- Article exchange (read/article_link.cpp)

  // Sends the lines of a file to the device as rows of the article table. Returns 0, 8193
  // when rows were refused, 1280 when the device does not answer at the erase.
  int EM_UpdArt(fs_file_t* hFileSrc, fs_file_t* hFileErr);
  // Fetches rows into a file. Returns 0, the code of a refused row, or 1280.
  int EM_DwnArt(fs_file_t* hFileOut, fs_file_t* hFileErr, bool bList);
  // Empties the article table. Returns 0, also when the device refuses, or 1280.
  int EraseArticles(int table);
  // The fields of the line into the link's members.
  void TakeLinkFields();
  // Opens the data file for the direction at hand.
  bool OpenLinkFile(fs_file_t* file);
  // Writes a value of an output record, quoted in mode 2, with the separator behind it, as
  // the edit options say, into size characters. Twice the text's length plus 4 are enough for any;
  // what does not fit is cut. Returns the place of the closing NUL.
  char* EditEMOut(char* dest, size_t size, const char* text, int mode);
  // The same for a buffer that has room for any value of that length.
  char* EditEMOut(char* dest, const char* text, int mode);
  // Copies length characters and closes them with NUL. Returns the place of the NUL.
  char* Dimpacc(char* dest, const char* text, int length);

  FileSettable* filesettable_;
  bool LotteryCodeDetect_;  // the lottery key was played, the next key carries a code
};
