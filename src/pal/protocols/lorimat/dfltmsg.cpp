#include "pal/protocols/lorimat/dfltmsg.h"

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"

namespace {

struct Message {
  int row;
  const char* text;
};

// The texts are the device family's own, faults and trailing blanks included: hosts
// compare them.

constexpr Message kInternal[] = {
    {SMSG_OK, "OK."},
    {SMSG_NOK, "NON OK. "},
    {SMSG_ERROR, "ERROR "},
    {SMSG_ABORTED, " *** ABORTED BY USER *** "},
    {SMSG_YES, "SI"},
    {SMSG_NO, "NO"},
    {SMSGECRF_FEXTERR, "FILE ERROR"},
    {SMSGECRL_FEXTERR, "EXT. FILE ERROR"},
    {SMSG_NOSTANDBY, "WAITING FOR TRANSACTION END"},
    {SMSG_ICOMANDO, "COMMAND = "},
    {SMSG_INODO, "ECR# = "},
    {SMSG_ICASSA, "ECR-ID = "},
    {SMSG_IDATA, "DATE = "},
    {SMSG_IECRD, "ECR = "},
    {SMSG_IERRORI, "ERRORS "},
    {SMSG_IFINE, "END. "},
    {SMSG_WCHIPC, "WAITING FOR CHIPCARD"},
    {SMSG_CALLING, "CALL IN PROGRESS"},
};

constexpr Message kBase[] = {
    {1, "SO NOT OPEN "},
    {2, "INITIALIZATION ERROR "},
    {3, "'PROG' SESSION OPEN "},
    {4, "CONFIGURATION READ ERROR ECR "},
    {5, "ECR VERSION NOT SUPPORTED "},
    {6, "ECR NOT IN IDLE "},
    {7, "'PROG' SESSION NOT OPEN "},
    {8, "ECR NOT IN REG POSITION "},
    {9, "EM-BOARD NOT INITALIZED ON ECR "},
    {10, "INVALID BATCH LINE "},
    {11, "FILE OPEN ERROR"},
    {12, "ERROR FILE OPEN ERROR"},
    {13, "LOG FILE OPEN ERROR"},
    {14, "ERRORS DURING EXECUTION OF FILE"},
    {15, "NO TRANSACTION OPEN"},
    {16, "ERRORS DURING EXECUTION"},
    {17, "NO SERVICE OBJECT FOUND"},
    {18, "SO ALREADY OPEN"},
    {19, "SO BUSY"},
    {20, "NO SERIAL PORT"},
    {21, "PROPERTY ERROR"},
    {22, "INVALID PARAMETERES"},
    {23, "SET PROPERTY ERROR"},
    {24, "GET PROPERTY ERROR"},
    {25, "CHIP-CARD ERROR"},
    {26, "CHIP-CARD NOT BLANK"},
    {27, "NO ECR SELECTED"},
    {28, "CONNECTION TIME-OUT"},
    {29, "MODEM ERROR"},
    {30, "BROADCAST ERROR"},
    {31, "INTERNAL ERROR : ECR STRING TOO BIG"},
    {32, "ECR ASKS FOR CONFIRMATION"},
    {33, "ECR MEMORY OVERFLOW"},
};

constexpr Message kSyntax[] = {
    {0, "SINTAX ERROR "},
    {1, "INSTRUCTION NOT FOUND"},
    {2, "INSTRUCTION NOT UNIC"},
    {3, "ILLEGAL INSTRUCTION"},
    {4, "FIELD NAME NOT FOUND"},
    {5, "FIELD NAME NOT UNIC"},
    {6, "ILLEGAL FIELD NAME"},
    {7, "LABEL-VALUE NOT FOUND"},
    {8, "ALFA-VALUE INVALID"},
    {9, "ILLEGAL VALUE"},
    {10, "CAMPO OBBLIGATORIO "},
    {11, "UNEXPECTED END OF LINE "},
    {12, "INSTRUCTION NOT SUPPORTED "},
    {13, "NO DPT NUMBER OR ARTICLE CODE "},
    {14, "ILLEGAL DPR NUMBER "},
    {15, "ILLEGAL FILE NUMBER "},
    {16, "FILE NOT SUPPORTED BY ECR "},
    {17, "GROUPS FILE NOT SUPPORTED BY ECR "},
    {18, "SOURCE LINE TOO LONG"},
    {19, "ECR NUMBER ILLEGAL"},
    {20, "OPERATOR CODE ILLEGAL"},
    {21, "REPORT NOT SUPPORTED"},
    {22, "MODIFIER CODE ILLEGAL"},
    {23, "CURRENCIES FILE NOT SUPPORTED BY ECR "},
    {24, "PROGRAMMABLE GRAPHIC NOT AVAILABLE ON ECR "},
};

constexpr Message kLink[] = {
    {0, "EM_LINK ERROR "},
    {1, "ERRORS DURING EXECUTION "},
    {2, "ILLEGAL COMMAND "},
    {3, "FILE OPEN "},
    {4, "ERR FILE OPEN ERROR "},
    {5, "LOG FILE OPEN ERROR "},
    {6, "ERROR IN ARTICLES-FILE RESET "},
    {7, "ERROR IN STAND-BY SET "},
    {8, "ERROR IN DOWNLOAD OPEN "},
    {9, "ECR ABORT DOWNLOAD SESSION"},
    {10, "ONE OR MORE RECORDS MISSING"},
    {11, "ECR REPOERTS DATA-COLLECT OVERFLOW"},
    {12, "CAN NOT BLOCK. TRANSACTION OPEN ON ECR"},
};

constexpr Message kLinkSyntax[] = {
    {0, "SYNTAX ERROR "},         {1, "UNEXPECTED END OF LINE "}, {2, "ALPHA FIELD INVALID "},
    {3, "ARTICLE CODE INVALID "}, {4, "NOT NUMERIC FIELD "},      {5, "VAT FIELD INVALID "},
    {6, "DPT FIELD INVALID "},    {7, "COMMAND FIELD INVALID "},  {8, "NUMERIC FILED ILLEGAL "},
};

template <size_t Rows, size_t Size, size_t Count>
void WriteRows(char (&table)[Rows][Size], const Message (&messages)[Count]) {
  for (const Message& message : messages) StoreRow(table[message.row], message.text);
}

}  // namespace

void ClearMessages(EcrCmdInterpreter& interpreter) {
  std::memset(interpreter.TabErrTradBase, 0, sizeof interpreter.TabErrTradBase);
  std::memset(interpreter.TabErrTrad1, 0, sizeof interpreter.TabErrTrad1);
  std::memset(interpreter.TabErrTrad2, 0, sizeof interpreter.TabErrTrad2);
  std::memset(interpreter.TabErrTrad3, 0, sizeof interpreter.TabErrTrad3);
  std::memset(interpreter.TabErrTrad4, 0, sizeof interpreter.TabErrTrad4);
  std::memset(interpreter.TabErrTrad5, 0, sizeof interpreter.TabErrTrad5);
  std::memset(interpreter.TabErrTrad6, 0, sizeof interpreter.TabErrTrad6);
  std::memset(interpreter.TabErrTrad7, 0, sizeof interpreter.TabErrTrad7);
  std::memset(interpreter.TabErrTrad8, 0, sizeof interpreter.TabErrTrad8);
  std::memset(interpreter.TabErrTrad9, 0, sizeof interpreter.TabErrTrad9);
  std::memset(interpreter.TabErrKey2, 0, sizeof interpreter.TabErrKey2);
  std::memset(interpreter.TabErrKey3, 0, sizeof interpreter.TabErrKey3);
}

void WriteDefaultMessages(EcrCmdInterpreter& interpreter) {
  ClearMessages(interpreter);
  std::memset(interpreter.TabIntMsg, 0, sizeof interpreter.TabIntMsg);
  WriteRows(interpreter.TabIntMsg, kInternal);
  WriteRows(interpreter.TabErrTradBase, kBase);
  WriteRows(interpreter.TabErrTrad1, kSyntax);
  StoreRow(interpreter.TabErrTrad2[0], "I/O ERROR ");
  StoreRow(interpreter.TabErrTrad3[0], "ECR SIGNALS CRITICAL ERROR ");
  StoreRow(interpreter.TabErrTrad4[0], "ECR REPORTS DATA-ERROR ");
  StoreRow(interpreter.TabErrTrad5[0], "ECR REPORTS ERROR ");
  WriteRows(interpreter.TabErrTrad6, kLink);
  WriteRows(interpreter.TabErrTrad7, kLinkSyntax);
  StoreRow(interpreter.TabErrTrad8[0], "ECR REPORTS ERROR ");
  StoreRow(interpreter.TabErrTrad9[0], "INCORRECT ANSWER FOR ECR ");
}
