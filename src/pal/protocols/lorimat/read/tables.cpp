// Dumping a table of the device to a file: the command, and the readers of the plain
// tables. Every reader writes record lines under the field numbers of the command that
// programmes the table.

#include <algorithm>
#include <iterator>

#include "pal/protocols/lorimat/data_items.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/program/device_records.h"
#include "pal/protocols/lorimat/read/record_line.h"

namespace {

// Opcode ids, for the words of the lines.
constexpr int kProg = 1;
constexpr int kEndProg = 2;
constexpr int kPrep = 31;
constexpr int kPiva = 33;
constexpr int kPint = 34;
constexpr int kPgru = 38;
constexpr int kPsten = 39;
constexpr int kPoper = 53;

using Reader = int (EcrCmdCommand::*)(fs_file_t*, char*, bool);

struct DeviceTable {
  int number;
  Reader reader;  // null for a table that holds nothing
};

constexpr int kDepartments = 1;  // its reader takes one argument more

constexpr DeviceTable kTables[] = {
    {3, &EcrCmdCommand::LeggiIVA},
    {4, &EcrCmdCommand::LeggiINT},
    {6, &EcrCmdCommand::LeggiOPZ},
    {7, nullptr},
    {8, &EcrCmdCommand::LeggiGRU},
    {9, &EcrCmdCommand::LeggiSTEN},
    {10, &EcrCmdCommand::LeggiKEY},
    {11, nullptr},
    {12, &EcrCmdCommand::LeggiOPE},
    {20, &EcrCmdCommand::LeggiTOTG},
    {21, nullptr},
    {22, &EcrCmdCommand::LeggiTOTREP},
    {23, &EcrCmdCommand::LeggiTOTPLU},
    {24, &EcrCmdCommand::LeggiTOTOPE},
    {100, &EcrCmdCommand::LeggiWS},
};

// Numbers that are refused before any file is touched. The others may have no table either,
// and then the file is created or emptied all the same: meant.
bool IsRefusedAtOnce(int number) {
  static constexpr int kKnown[] = {20, 21, 22, 23, 24, 30, 31, 100, 199, 9999};
  if (number == 0 || number == 5) return true;
  return number > 12 && std::find(std::begin(kKnown), std::end(kKnown), number) == std::end(kKnown);
}

// Lines end in carriage return and line feed as they are written, so the file is opened
// without translation in both ways.
bool OpenDump(EcrCmdInterpreter& translator, fs_file_t* file, const char* name, bool append) {
  if (append) {
    if (!translator.OpenOutput(file, name, FS_RDWR)) return false;
    fs_lseek(file, 0, FS_SEEK_END);
    return true;
  }
  fs_remove(name);
  return translator.OpenOutput(file, name, FS_CREATE_TRUNC);
}

}  // namespace

int EcrCmdCommand::Trad_LEGGI() {
  const int iN = IntegerField(*this, 1);
  if (IsRefusedAtOnce(iN)) return SyntaxError(ILLEGAL_FILE_NUMBER);
  lorimatutility::toLower(szCampi[2]);
  const bool bFlgSP = IsNamed(*this, 4);
  const bool bList = IsNamed(*this, 5);
  const bool extended = IsNamed(*this, 7);
  fs_file_t hFileOut;
  if (!OpenDump(*this, &hFileOut, szCampi[2], IsNamed(*this, 3))) return FILE_OPEN_ERROR;

  char szLinea[kRecordLineSize];
  if (bFlgSP) {
    // In words whatever the form of the lines between.
    std::snprintf(szLinea, sizeof szLinea, "%s %s", szOpCodes[kProg], szKeyI[kProg][1]);
    SeqFileWrite(&hFileOut, szLinea);
  }
  int iR = SyntaxError(ILLEGAL_FILE_NUMBER);
  if (iN == kDepartments) iR = LeggiREP(&hFileOut, szLinea, bList, extended);
  for (const DeviceTable& table : kTables) {
    if (table.number != iN) continue;
    iR = table.reader != nullptr ? (this->*table.reader)(&hFileOut, szLinea, bList) : 0;
  }
  if (bFlgSP) {
    CopyText(szLinea, szOpCodes[kEndProg]);
    SeqFileWrite(&hFileOut, szLinea);
  }
  fs_close(&hFileOut);
  return iR;
}

int EcrCmdCommand::LeggiREP(fs_file_t* hFileOut, char* szLinea, bool bList, bool /*extended*/) {
  const int department_capacity = ReadRecordCount(kDepartmentCapacity);
  for (int64_t number = 1; number <= department_capacity; ++number) {
    const int dep_id = static_cast<int>(number);
    DepartmentRecord record;
    const int resEx = checkResult(ConfigDepartmentEx(false, dep_id, record));
    const int res = resEx == 0 ? 0 : checkResult(ConfigDepartment(false, dep_id, record));
    if (res != 0) continue;
    // In list form every field of this one table reads #1, by its place: meant.
    RecordLine line(*this, szLinea, kPrep, bList, RecordLine::kAllOnes);
    line.integer(1, dep_id);
    line.text(2, record.description.buffer);
    line.price(3, record.max_price);
    line.Flag(4, record.single_shoot);
    line.integer(5, record.vat_id);
    line.price(6, record.price);
    line.integer(7, record.group_id);
    line.Flag(16, record.allow_discount);
    line.Flag(17, record.force_description);
    if (resEx == 0) line.Flag(21, record.is_service);
    line.write(hFileOut);
  }
  return 0;
}

int EcrCmdCommand::LeggiIVA(fs_file_t* hFileOut, char* szLinea, bool bList) {
  const int vat_rate_capacity = ReadRecordCount(kVatRateCapacity);
  for (int64_t number = 1; number <= vat_rate_capacity; ++number) {
    const int vat_id = static_cast<int>(number);
    int aliquota = 0;
    if (checkResult(RTF_FP_INVOKE(GetVatEntry, vat_id, 0, &aliquota)) != 0) continue;
    RecordLine line(*this, szLinea, kPiva, bList);
    line.integer(1, vat_id);
    line.percentage(2, aliquota);
    line.write(hFileOut);
  }
  return 0;
}

int EcrCmdCommand::LeggiINT(fs_file_t* hFileOut, char* szLinea, bool bList) {
  constexpr size_t kTextSize = 65;
  const int header_lines_capacity = std::min<int>(ReadCapacity(kHeaderLineCapacity), MAXCAMPI);
  RecordLine line(*this, szLinea, kPint, bList);
  for (int number = 1; number <= header_lines_capacity; ++number) {
    // A line that the device refuses shows as an empty text.
    ClientText text;
    static_cast<void>(RTF_FP_INVOKE(GetHeaderLine, number, text.buffer));
    text.buffer[kTextSize - 1] = 0;
    line.text(number, text.buffer);
  }
  line.write(hFileOut);
  return 0;
}

int EcrCmdCommand::LeggiSTEN(fs_file_t* hFileOut, char* szLinea, bool bList) {
  int res = 0;
  const int subtenders = std::min(pCurConf->iNumSTEN, kMostRecords);
  for (int subtender_id = 1; subtender_id <= subtenders; ++subtender_id) {
    SubtenderRecord record;
    res = checkResult(ConfigSubtender(false, subtender_id, record));
    if (res != 0) break;
    RecordLine line(*this, szLinea, kPsten, bList);
    line.integer(1, subtender_id);
    line.integer(2, record.tender_type);
    line.text(3, record.description.buffer);
    line.integer(4, record.flags);
    line.integer(5, record.preset_value);
    line.integer(6, record.max_digits);
    line.write(hFileOut);
  }
  // The code gets its class a second time: meant.
  return checkResult(res);
}

int EcrCmdCommand::LeggiGRU(fs_file_t* hFileOut, char* szLinea, bool bList) {
  const int group_capacity = ReadRecordCount(kGroupCapacity);
  for (int64_t number = 1; number <= group_capacity; ++number) {
    const int group_id = static_cast<int>(number);
    GroupRecord record;
    // The dump ends here, and the answer does not tell: meant.
    if (checkResult(ConfigGroup(false, group_id, record)) != 0) break;
    RecordLine line(*this, szLinea, kPgru, bList);
    line.integer(1, group_id);
    line.text(2, record.description.buffer);
    line.write(hFileOut);
  }
  return 0;
}

int EcrCmdCommand::LeggiOPE(fs_file_t* hFileOut, char* szLinea, bool bList) {
  const int operator_capacity = ReadRecordCount(kOperatorCapacity);
  int64_t group_capacity = 0;
  // Without it the records of the groups would pass for operators.
  if (ReadDataItem(kGroupCapacity, &group_capacity) != 0) return 0;
  for (int64_t number = 1; number <= operator_capacity; ++number) {
    const int operator_id = static_cast<int>(number);
    GroupRecord record;
    const int index = ClientInt(int64_t{ClientInt(group_capacity)} + operator_id);
    if (checkResult(ConfigGroup(false, index, record)) != 0) break;
    RecordLine line(*this, szLinea, kPoper, bList);
    line.integer(1, operator_id);
    line.text(2, record.description.buffer);
    line.text(3, record.operator_password.buffer);
    line.integer(4, record.operator_flags);
    line.integer(5, record.operator_options);
    line.write(hFileOut);
  }
  return 0;
}
