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
void AppendTableRow(char* text, const char (&table)[Rows][Size], int row) {
  if (row >= 0 && row < static_cast<int>(Rows)) AppendRow(text, kErrorTextSize, table[row]);
}

// The rows of client results start at an offset; the indices below it are the keys of the
// definition file, which have rows of their own.
template <size_t Rows, size_t Size, size_t KeyRows>
void AppendClientRow(char* text, const char (&table)[Rows][Size], const char (&keys)[KeyRows][Size],
                     int index, int offset) {
  if (index < offset) {
    AppendTableRow(text, keys, index);
  } else {
    AppendTableRow(text, table, index - offset);
  }
}

template <size_t Rows, size_t Size>
void AppendTitle(char* text, const char (&table)[Rows][Size], int index) {
  AppendRow(text, kErrorTextSize, table[0]);
  AppendFormat(text, kErrorTextSize, "%d", index);
}

template <size_t Rows, size_t Size>
void AppendTitleAndRow(char* text, const char (&table)[Rows][Size], int index) {
  AppendRow(text, kErrorTextSize, table[0]);
  AppendText(text, kErrorTextSize, " : ");
  AppendTableRow(text, table, index);
}

}  // namespace

void EcrCmdInterpreter::SetStringErr(char* szEsito, long lErrCode) {
  if (lErrCode == 0) {
    if (Stat.bGetP) {
      CopyBytes(szEsito, kAnswerSize, Stat.szGetP, RowLength(Stat.szGetP, sizeof Stat.szGetP));
      Stat.bGetP = false;
      Stat.szGetP[0] = 0;
    } else if (TStato.iFlgINFO) {
      CopyBytes(szEsito, kAnswerSize, szInfo, RowLength(szInfo, sizeof szInfo));
      TStato.iFlgINFO = 0;
      szInfo[0] = 0;
    } else {
      BufferWriter text(szEsito, kErrorTextSize);
      text.Move(TabIntMsg[SMSG_OK], RowLength(TabIntMsg[SMSG_OK], sizeof TabIntMsg[SMSG_OK]));
      if (Stat.szMsgOK[0] != 0) {
        text.Move(Stat.szMsgOK, RowLength(Stat.szMsgOK, sizeof Stat.szMsgOK));
        Stat.szMsgOK[0] = 0;
      }
      text.Close();
      if (TStato.iFlgEMCmd) {
        AppendFormat(szEsito, kErrorTextSize, "(%ld Lines   %u msec)", Stat.lEMTotLines,
                     Stat.dwEMTotTime);
      }
    }
    return;
  }
  if (lErrCode == ERRORS_DURING_EXECUTION) {
    AppendRow(szEsito, kErrorTextSize, TabIntMsg[SMSG_NOK]);
    return;
  }

  const int class_bits = static_cast<int>(lErrCode & 0xFFFF00);
  const int index = static_cast<int>(lErrCode & 0xFF);
  szEsito[0] = 0;
  AppendRow(szEsito, kErrorTextSize, TabIntMsg[SMSG_ERROR]);
  AppendFormat(szEsito, kErrorTextSize, "%d/%d", class_bits >> 8, index);
  if (Stat.bLineErr || Stat.bEMLineErr) {
    AppendFormat(szEsito, kErrorTextSize,
                 " in line %ld : ", Stat.bLineErr ? Stat.lCurLine : Stat.lEMCurLine);
  } else {
    AppendText(szEsito, kErrorTextSize, " : ");
  }
  Stat.bLineErr = false;
  Stat.bEMLineErr = false;

  switch (class_bits) {
    case 0:
      AppendTableRow(szEsito, TabErrTradBase, index);
      break;
    case CLASS_SYNTAX:
      AppendTitle(szEsito, TabErrTrad1, index);
      if (lErrCode > 0) {
        AppendText(szEsito, kErrorTextSize, " : ");
        AppendTableRow(szEsito, TabErrTrad1, index);
      }
      break;
    case CLASS_IO:
      AppendTitle(szEsito, TabErrTrad2, index);
      AppendClientRow(szEsito, TabErrTrad2, TabErrKey2, index, 100);
      break;
    case CLASS_CRITICAL:
      AppendTitle(szEsito, TabErrTrad3, index);
      AppendText(szEsito, kErrorTextSize, " : ");
      AppendClientRow(szEsito, TabErrTrad3, TabErrKey3, index, 200);
      break;
    case CLASS_DATA:
      AppendTitle(szEsito, TabErrTrad4, index);
      break;
    case CLASS_ECR:
      AppendTitle(szEsito, TabErrTrad5, index);
      break;
    case CLASS_EM_LINK:
      if (index == 1) {
        AppendTableRow(szEsito, TabErrTrad6, index);
        AppendFormat(szEsito, kErrorTextSize, "(%ld Errors   %ld ECR-Errors)", Stat.lEMTotErr,
                     Stat.lEMTotErrEcr);
      } else {
        AppendTitleAndRow(szEsito, TabErrTrad6, index);
      }
      break;
    case CLASS_EM_SYNTAX:
      AppendTitleAndRow(szEsito, TabErrTrad7, index);
      break;
    case CLASS_ECR_REPORT:
      AppendTitle(szEsito, TabErrTrad8, index);
      break;
    case CLASS_ANSWER:
      AppendRow(szEsito, kErrorTextSize, TabErrTrad9[0]);
      AppendFormat(szEsito, kErrorTextSize, "%c", index);
      break;
    default:
      // Doubled class bits have no table.
      break;
  }
}
