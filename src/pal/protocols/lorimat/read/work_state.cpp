// The work state: a snapshot of the device's totals as a file of numbered records, which a
// host takes as its feed of the day. A record is its number and its values with separators
// between, and no command of the language. The numbers are a contract with the hosts: they
// are fixed by these tables, and do not rise along the file.
//
// A snapshot reads the device for every value, some four hundred calls, and keeps nothing.

#include <algorithm>
#include <iterator>

#include "pal/protocols/lorimat/data_items.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/program/device_records.h"
#include "pal/protocols/lorimat/read/record_line.h"

namespace {

// Modes of EditEMOut.
constexpr int kPlain = 0;
constexpr int kQuoted = 2;

// The VAT classes of the device, with the label that stands in place of a rate.
struct VatClass {
  int vat_info;
  const char* vat_info_des;  // null for a class with a rate
};

constexpr VatClass kVatClasses[] = {
    {0, "AL"},    {1, nullptr}, {2, nullptr}, {3, nullptr}, {4, nullptr},
    {5, nullptr}, {6, nullptr}, {7, nullptr}, {8, nullptr}, {10, "ES"},
    {20, "EE"},   {30, "NS"},   {40, "NI"},   {50, "RM"},   {60, "VI"},
};
constexpr int kVatClassCount = static_cast<int>(std::size(kVatClasses));

// A row of the grid: one record for each VAT class, with a plain and a gross total.
struct GridRow {
  int totalizer_gross;
  int totalizer;
  int totalizer_base_index;  // number of the first record
};

constexpr GridRow kGrid[] = {
    {RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, RTF_FPTR_GT_VAT_CATEGORY_DAILY, 1000},
    {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS, RTF_FPTR_GT_VAT_CATEGORY_RECEIPT, 1250},
    {RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, RTF_FPTR_GT_VAT_CATEGORY_REFUND, 1040},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, RTF_FPTR_GT_VAT_CATEGORY_INVOICE, 1060},
    {RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, RTF_FPTR_GT_VAT_CATEGORY_CANCEL, 1300},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_GROSS, RTF_FPTR_GT_VAT_CATEGORY_SERVICES, 1400},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS, RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID,
     1420},
    {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS, RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID, 1440},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID_GROSS, RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID,
     1460},
    {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID_GROSS,
     RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID, 1480},
    {RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS, RTF_FPTR_GT_VAT_CATEGORY_GIFT, 1500},
};

// Numbers of the first record of a block.
constexpr int kDateRecord = 1;
constexpr int kTotalRecord = 2;
constexpr int kCountRecord = 3;
constexpr int kVatRecords = 900;
constexpr int kTaxRecords = 1350;
constexpr int kDepartmentRecords = 2000;
constexpr int kCounterRecords = 3000;

constexpr int kReceiptCounter = 31;

// Where the parts of a date stand in the device's DDMMYYYYHHMM.
constexpr int kDay = 0;
constexpr int kMonth = 2;
constexpr int kYear = 6;  // its last two digits
constexpr int kHour = 8;
constexpr int kMinute = 10;

}  // namespace

// The record under way. Its texts are written one behind the other; what would not fit into the
// line is cut.
struct WorkStateLine {
  fs_file_t* file;
  char* szLinea;  // kRecordLineSize characters
  char* pL;       // the write position

  // What is left of the line, the place of the NUL included: 1 at least.
  size_t Room() const { return kRecordLineSize - static_cast<size_t>(pL - szLinea); }
  void Put(char c) {
    BufferWriter writer(pL, Room());
    writer.Put(c);
    pL = writer.Close();
  }
};

void EcrCmdCommand::PutValue(WorkStateLine& line, const char* text, int mode) {
  line.pL = EditEMOut(line.pL, line.Room(), text, mode);
}

void EcrCmdCommand::PutNumber(WorkStateLine& line, int number) {
  char text[16];
  std::snprintf(text, sizeof text, "%d", number);
  PutValue(line, text, kPlain);
}

void EcrCmdCommand::SubLeggiWS(WorkStateLine& line) {
  // Without separators between the values the last character may belong to a text, and goes
  // all the same when it is one: meant.
  if (line.pL != line.szLinea && line.pL[-1] == cChSep) --line.pL;
  *line.pL = 0;
  SeqFileWrite(line.file, line.szLinea);
  line.pL = line.szLinea;
  *line.pL = 0;
}

int EcrCmdCommand::ReadTotalizer(int vatID, int totalizer, char* szAUX1) {
  return GetTotalizerExtendInternal(vatID, RTF_FPTR_TT_DAY, totalizer, szAUX1, false);
}

void EcrCmdCommand::WriteDateRecord(WorkStateLine& line) {
  ClientText date;
  static_cast<void>(RTF_FP_INVOKE(SetIntProperty, RTF_PIDXFptr_DateType, RTF_FPTR_DT_RTC));
  static_cast<void>(RTF_FP_INVOKE(GetDate, date.buffer));
  date.close();
  const auto put_digits = [&](int place) {
    // Of a short date as much as there is.
    const char* digits = date.buffer + place;
    const size_t length = std::min(RowLength(digits, 2), line.Room() - 1);
    line.pL = Dimpacc(line.pL, digits, static_cast<int>(length));
  };
  const auto put_mark = [&](char mark) {
    if (mark != 0) line.Put(mark);
  };
  PutNumber(line, kDateRecord);
  // The quotes stand here whatever the edit options say.
  put_mark(cChQuote);
  put_digits(kDay);
  put_mark(cChDate);
  put_digits(kMonth);
  put_mark(cChDate);
  put_digits(kYear);
  put_mark(' ');
  put_digits(kHour);
  put_mark(cChTime);
  put_digits(kMinute);
  put_mark(cChQuote);
  SubLeggiWS(line);
}

int EcrCmdCommand::WriteVatRecords(WorkStateLine& line) {
  for (int i = 0; i < kVatClassCount; ++i) {
    const VatClass& vat = kVatClasses[i];
    PutNumber(line, kVatRecords + i);
    if (vat.vat_info_des != nullptr) {
      PutValue(line, vat.vat_info_des, kPlain);
    } else {
      int aliquota = 0;
      const int res = checkResult(RTF_FP_INVOKE(GetVatEntry, vat.vat_info, 0, &aliquota));
      if (res != 0) return res;
      char szTOT[64];
      lorimatutility::NumToString(szTOT, aliquota, percentage_factor, false);
      PutValue(line, szTOT, kPlain);
    }
    SubLeggiWS(line);
  }
  return 0;
}

int EcrCmdCommand::WriteGridRecords(WorkStateLine& line, char (&szAUX1)[32]) {
  // A class or kind that the device does not have reads as zero.
  const auto read = [&](int vatID, int totalizer) {
    const int result = ReadTotalizer(vatID, totalizer, szAUX1);
    if (result != RTF_E_ILLEGAL) return result;
    CopyText(szAUX1, "0000000000");
    return 0;
  };
  for (const GridRow& row : kGrid) {
    for (int i = 0; i < kVatClassCount; ++i) {
      char szGROSSTOT[32];
      int result = read(kVatClasses[i].vat_info, row.totalizer_gross);
      if (result != 0) return checkResult(result);
      CopyText(szGROSSTOT, szAUX1);
      result = read(kVatClasses[i].vat_info, row.totalizer);
      if (result != 0) return checkResult(result);
      PutNumber(line, row.totalizer_base_index + i);
      PutValue(line, szAUX1, kPlain);
      PutValue(line, szGROSSTOT, kPlain);
      SubLeggiWS(line);
    }
  }
  return 0;
}

int EcrCmdCommand::WriteTaxRecords(WorkStateLine& line, char (&szAUX1)[32]) {
  for (int i = 0; i < kVatClassCount; ++i) {
    const int result =
        ReadTotalizer(kVatClasses[i].vat_info, RTF_FPTR_GT_VAT_CATEGORY_TAXALL, szAUX1);
    if (result != 0) return checkResult(result);
    PutNumber(line, kTaxRecords + i);
    PutValue(line, szAUX1, kPlain);
    SubLeggiWS(line);
  }
  return 0;
}

void EcrCmdCommand::WriteDepartmentRecords(WorkStateLine& line, char (&szAUX1)[32]) {
  const int departments = ReadRecordCount(kDepartmentCapacity);
  for (int64_t number = 1; number <= departments; ++number) {
    const int department = static_cast<int>(number);
    char szGROSSTOT[32];
    char szTOT[32];
    // A refused total shows the one read before it, and a refused record no name: meant.
    // The quantity is read and has no place in the record.
    ReadTotalizer(department, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_QUANTITY, szAUX1);
    ReadTotalizer(department, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_GROSS_VALUE, szAUX1);
    CopyText(szGROSSTOT, szAUX1);
    ReadTotalizer(department, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE, szAUX1);
    CopyText(szTOT, szAUX1);
    DepartmentRecord record;
    static_cast<void>(ConfigDepartment(false, department, record));
    PutNumber(line, ClientInt(int64_t{kDepartmentRecords} + department));
    PutValue(line, szTOT, kPlain);
    PutValue(line, szGROSSTOT, kPlain);
    PutValue(line, record.description.buffer, kQuoted);
    SubLeggiWS(line);
  }
}

int EcrCmdCommand::WriteCounterRecords(WorkStateLine& line) {
  for (int64_t number = 1; number <= pCurConf->iNumTOTG; ++number) {
    const int t = static_cast<int>(number);
    char szTOT[32];
    char szCNT[32];
    PutNumber(line, ClientInt(int64_t{kCounterRecords} + t));
    const int code = getCounter(t, szTOT, szCNT);
    if (code != 0) return checkResult(code);
    char description[sizeof TabDscTotG[0] + 1] = {};
    if (t < MAXTOTG) AppendRow(description, sizeof description, TabDscTotG[t]);
    PutValue(line, szTOT, kPlain);
    PutValue(line, szCNT, kPlain);
    PutValue(line, description, kQuoted);
    SubLeggiWS(line);
  }
  return 0;
}

int EcrCmdCommand::LeggiWS(fs_file_t* hFileOut, char* szLinea, bool /*bList*/) {
  WorkStateLine line = {hFileOut, szLinea, szLinea};
  // What the last total read as: a refused one of a department shows it again.
  char szAUX1[32] = "";
  char szTOT[32] = "";
  char szCNT[32] = "";

  WriteDateRecord(line);
  getCounter(kReceiptCounter, szTOT, szCNT);
  PutNumber(line, kTotalRecord);
  PutValue(line, szTOT, kPlain);
  SubLeggiWS(line);
  PutNumber(line, kCountRecord);
  PutValue(line, szCNT, kPlain);
  SubLeggiWS(line);
  static_cast<void>(ReadCapacity(kVatRateCapacity));  // asked for, and not needed
  int result = WriteVatRecords(line);
  if (result == 0) result = WriteGridRecords(line, szAUX1);
  if (result == 0) result = WriteTaxRecords(line, szAUX1);
  if (result != 0) return result;
  WriteDepartmentRecords(line, szAUX1);
  return WriteCounterRecords(line);
}
