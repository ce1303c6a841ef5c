#include "pal/protocols/lorimat/read/record_line.h"

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/lorimatutility.h"

RecordLine::RecordLine(EcrCmdInterpreter& tables, char* szLinea, int opcode, bool bList,
                       Numbering numbering)
    : tables_(tables), line_(szLinea), opcode_(opcode), list_(bList), numbering_(numbering) {
  line_[0] = 0;
  tables_.LdNomeCampo(line_, kRecordLineSize, tables_.szOpCodes[opcode], opcode, bList);
  AppendText(line_, kRecordLineSize, " ");
}

void RecordLine::integer(int field, int64_t value) {
  std::snprintf(tables_.szCampi[field], sizeof tables_.szCampi[field], "%lld",
                static_cast<long long>(value));
  append(field);
}

void RecordLine::text(int field, const char* value) {
  char text[kLongestRecordText + 1];
  CopyText(text, value);
  tables_.EditAlfa(tables_.szCampi[field], sizeof tables_.szCampi[field], text,
                   static_cast<int>(std::strlen(text)));
  append(field);
}

void RecordLine::price(int field, int64_t amount) {
  lorimatutility::CurrencyToString(tables_.szCampi[field], static_cast<int32_t>(amount),
                                   tables_.currency_factor, false,
                                   tables_.currency_decimal_place_factor);
  append(field);
}

void RecordLine::percentage(int field, int value) {
  lorimatutility::NumToString(tables_.szCampi[field], value, tables_.percentage_factor, false);
  append(field);
}

void RecordLine::Flag(int field, bool value) {
  // "1" is no: a yes/no field takes "2" as yes.
  char* text = tables_.szCampi[field];
  text[0] = 0;
  if (list_) {
    CopyText(text, sizeof tables_.szCampi[field], value ? "2" : "1");
  } else {
    AppendRow(text, sizeof tables_.szCampi[field], tables_.TabIntMsg[value ? SMSG_YES : SMSG_NO]);
  }
  append(field);
}

void RecordLine::Plain(int field, const char* value) {
  CopyText(tables_.szCampi[field], value);
  append(field);
}

void RecordLine::append(int field) {
  char word[16] = {};
  tables_.LdNomeCampo(word, sizeof word, tables_.szKeyI[opcode_][field],
                      numbering_ == kAllOnes ? 1 : field, list_);
  const char separator[] = {tables_.cChSep, ' ', 0};
  AppendText(line_, kRecordLineSize, word);
  AppendText(line_, kRecordLineSize, "=");
  AppendText(line_, kRecordLineSize, tables_.szCampi[field]);
  AppendText(line_, kRecordLineSize, separator);
}

void RecordLine::write(fs_file_t* file) {
  constexpr size_t kSeparatorLength = 2;
  const size_t length = std::strlen(line_);
  line_[length > kSeparatorLength ? length - kSeparatorLength : 0] = 0;
  tables_.SeqFileWrite(file, line_);
}
