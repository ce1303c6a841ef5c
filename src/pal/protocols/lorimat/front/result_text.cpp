// From a result code to the result string that the host reads.

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

constexpr size_t kErrorTextSize = 255;  // room that every caller gives
constexpr size_t kAnswerSize = 512;     // room for the answers of code 0

// Appends a row of a table; a row outside it is empty.
template <size_t Rows, size_t Size>
void append_table_row(char* text, const char (&table)[Rows][Size], int row) {
  if (row >= 0 && row < static_cast<int>(Rows)) append_row(text, kErrorTextSize, table[row]);
}

// The rows of client results start at an offset; the indices below it are the keys of the
// definition file, which have rows of their own.
template <size_t Rows, size_t Size, size_t KeyRows>
void append_client_row(char* text, const char (&table)[Rows][Size],
                       const char (&keys)[KeyRows][Size], int index, int offset) {
  if (index < offset) {
    append_table_row(text, keys, index);
  } else {
    append_table_row(text, table, index - offset);
  }
}

template <size_t Rows, size_t Size>
void append_title(char* text, const char (&table)[Rows][Size], int index) {
  append_row(text, kErrorTextSize, table[0]);
  append_format(text, kErrorTextSize, "%d", index);
}

template <size_t Rows, size_t Size>
void append_title_and_row(char* text, const char (&table)[Rows][Size], int index) {
  append_row(text, kErrorTextSize, table[0]);
  append_text(text, kErrorTextSize, " : ");
  append_table_row(text, table, index);
}

}  // namespace

void EcrCmdInterpreter::SetStringErr(char* szEsito, long lErrCode) {
  if (lErrCode == 0) {
    if (Stat.bGetP) {
      copy_bytes(szEsito, kAnswerSize, Stat.szGetP, row_length(Stat.szGetP, sizeof Stat.szGetP));
      Stat.bGetP = false;
      Stat.szGetP[0] = 0;
    } else if (TStato.iFlgINFO) {
      copy_bytes(szEsito, kAnswerSize, szInfo, row_length(szInfo, sizeof szInfo));
      TStato.iFlgINFO = 0;
      szInfo[0] = 0;
    } else {
      szEsito[0] = 0;
      append_row(szEsito, kErrorTextSize, TabIntMsg[SMSG_OK]);
      append_row(szEsito, kErrorTextSize, Stat.szMsgOK);
      Stat.szMsgOK[0] = 0;
      if (TStato.iFlgEMCmd) {
        append_format(szEsito, kErrorTextSize, "(%ld Lines   %u msec)", Stat.lEMTotLines,
                      Stat.dwEMTotTime);
      }
    }
    return;
  }
  if (lErrCode == ERRORS_DURING_EXECUTION) {
    append_row(szEsito, kErrorTextSize, TabIntMsg[SMSG_NOK]);
    return;
  }

  const int class_bits = static_cast<int>(lErrCode & 0xFFFF00);
  const int index = static_cast<int>(lErrCode & 0xFF);
  szEsito[0] = 0;
  append_row(szEsito, kErrorTextSize, TabIntMsg[SMSG_ERROR]);
  append_format(szEsito, kErrorTextSize, "%d/%d", class_bits >> 8, index);
  if (Stat.bLineErr || Stat.bEMLineErr) {
    append_format(szEsito, kErrorTextSize,
                  " in line %ld : ", Stat.bLineErr ? Stat.lCurLine : Stat.lEMCurLine);
  } else {
    append_text(szEsito, kErrorTextSize, " : ");
  }
  Stat.bLineErr = false;
  Stat.bEMLineErr = false;

  switch (class_bits) {
    case 0:
      append_table_row(szEsito, TabErrTradBase, index);
      break;
    case CLASS_SYNTAX:
      append_title(szEsito, TabErrTrad1, index);
      if (lErrCode > 0) {
        append_text(szEsito, kErrorTextSize, " : ");
        append_table_row(szEsito, TabErrTrad1, index);
      }
      break;
    case CLASS_IO:
      append_title(szEsito, TabErrTrad2, index);
      append_client_row(szEsito, TabErrTrad2, TabErrKey2, index, 100);
      break;
    case CLASS_CRITICAL:
      append_title(szEsito, TabErrTrad3, index);
      append_text(szEsito, kErrorTextSize, " : ");
      append_client_row(szEsito, TabErrTrad3, TabErrKey3, index, 200);
      break;
    case CLASS_DATA:
      append_title(szEsito, TabErrTrad4, index);
      break;
    case CLASS_ECR:
      append_title(szEsito, TabErrTrad5, index);
      break;
    case CLASS_EM_LINK:
      if (index == 1) {
        append_table_row(szEsito, TabErrTrad6, index);
        append_format(szEsito, kErrorTextSize, "(%ld Errors   %ld ECR-Errors)", Stat.lEMTotErr,
                      Stat.lEMTotErrEcr);
      } else {
        append_title_and_row(szEsito, TabErrTrad6, index);
      }
      break;
    case CLASS_EM_SYNTAX:
      append_title_and_row(szEsito, TabErrTrad7, index);
      break;
    case CLASS_ECR_REPORT:
      append_title(szEsito, TabErrTrad8, index);
      break;
    case CLASS_ANSWER:
      append_row(szEsito, kErrorTextSize, TabErrTrad9[0]);
      append_format(szEsito, kErrorTextSize, "%c", index);
      break;
    default:
      // Doubled class bits have no table.
      break;
  }
}
