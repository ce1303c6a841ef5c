// The default message texts, which the definition file may override row by row.
#pragma once

class EcrCmdInterpreter;

// Rows of TabIntMsg.
enum InternalMessage {
  SMSG_OK = 1,
  SMSG_NOK = 2,
  SMSG_ERROR = 3,
  SMSG_ABORTED = 4,
  SMSG_YES = 5,
  SMSG_NO = 6,
  SMSGECRF_FEXTERR = 7,
  SMSGECRL_FEXTERR = 8,
  SMSG_NOSTANDBY = 9,
  SMSG_ICOMANDO = 10,
  SMSG_INODO = 11,
  SMSG_ICASSA = 12,
  SMSG_IDATA = 13,
  SMSG_IECRD = 14,
  SMSG_IERRORI = 15,
  SMSG_IFINE = 16,
  SMSG_WCHIPC = 17,
  SMSG_CALLING = 18,
};

// Writes the defaults of TabIntMsg and of the ten message tables.
void WriteDefaultMessages(EcrCmdInterpreter& interpreter);
// Empties all rows of the message tables.
void ClearMessages(EcrCmdInterpreter& interpreter);
