// The road of one line: EcrCmd, EcrCmdL, TradEcr, the handler, and back.

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/front/opcodes.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

// Answers of TradEcr that are no result codes.
constexpr int kBatchRequest = -1;
constexpr int kEmptyLine = -2;

constexpr size_t kLongestLine = 2046;

}  // namespace

int EcrCmdInterpreter::TradClose() {
  iEcrSelected = 0;
  for (ECRCONF& conf : EcrConfArray) conf.iConfOK = 0;
  pCurConf = &EcrConfArray[0];
  return 0;
}

long EcrCmdInterpreter::EcrCmd(char* Command, char* Result) {
  Stat.bLineErr = false;
  Stat.bEMLineErr = false;
  Stat.szFase[0] = 0;
  Stat.szMsgOK[0] = 0;
  Stat.lTotLines = 0;
  Stat.lCurLine = 0;
  Stat.lTotErr = 0;
  Stat.lTotErrEcr = 0;
  Result[0] = 0;

  long code = EcrCmdL(Command, nullptr);
  if (code == kBatchRequest) return RunBatch(Result);
  if (code == kEmptyLine) code = 0;
  SetStringErr(Result, code);
  TStato.iFlgEMCmd = 0;
  TStato.iFlgINFO = 0;
  return code;
}

long EcrCmdInterpreter::EcrCmdL(char* Command, fs_file_t* hFileErr) {
  const int code = TradEcr(Command);
  if (code == kBatchRequest || code == kEmptyLine) return code;
  if (code != 0 && !bFlgBreak) {
    if (TStato.bFlgEC) Stat.bLineErr = true;
    char text[255];
    text[0] = 0;
    SetStringErr(text, code);
    if (hFileErr != nullptr) SeqFileWrite(hFileErr, text);
  }
  return code;
}

void EcrCmdInterpreter::LogF(bool error, const char* fmt, ...) {
  if (rtfClient_ == nullptr) return;
  char text[1024];
  va_list arguments;
  va_start(arguments, fmt);
  const int length = std::vsnprintf(text, sizeof text, fmt, arguments);
  va_end(arguments);
  if (length < 0) text[0] = 0;
  GuardedClientCall([&] {
    if (error) {
      rtfClient_->LogError(text);
    } else {
      rtfClient_->LogTrace(text);
    }
    return 0;
  });
}

void EcrCmdInterpreter::Log(bool, const char* str) {
  // An error text is traced like any other here: meant.
  if (rtfClient_ == nullptr) return;
  GuardedClientCall([&] {
    rtfClient_->LogTrace(str);
    return 0;
  });
}

void EcrCmdInterpreter::TraceLine(const char* line, size_t length) {
  constexpr char kBefore[] = "TradEcr Cmd<";
  char text[1024];
  BufferWriter trace(text, sizeof text);
  trace.Move(kBefore, sizeof kBefore - 1);
  trace.Move(line, length);
  trace.Put('>');
  trace.Close();
  GuardedClientCall([&] {
    rtfClient_->LogTrace(text);
    return 0;
  });
}

int EcrCmdInterpreter::checkResult(int result) {
  if (result == 0) return 0;
  if (result == -1) return CLASS_IO;
  return result < 200 ? (result | CLASS_IO) : (result | CLASS_CRITICAL);
}

int EcrCmdInterpreter::TradEcr(char* szSrcLine) {
  static char line[MAXLINELEN];
  static int position;
  static int opcode;

  TStato.iCurOpCode = 0;
  if (rtfClient_ == nullptr) return CLASS_SYNTAX;
  const size_t length = std::strlen(szSrcLine);
  TraceLine(szSrcLine, length);
  if (length > kLongestLine) return SyntaxError(SOURCE_LINE_TOO_LONG);
  if (!TStato.bInitOK) return INITIALIZATION_ERROR;
  if (lorimatutility::CleanLine(line, szSrcLine, length, cChQuote) == 0) return kEmptyLine;

  position = 1;
  if (line[0] == '@') return ParseBatchRequest(line);

  int result = GetCodOp(line, &position, &opcode);
  if (result != 0) return CLASS_SYNTAX | result;
  result = GetCampi(line, opcode, &position);
  if (result != 0) return CLASS_SYNTAX | result;

  TStato.iCurOpCode = opcode;
  if (bWaitIdle) WaitIdle();
  const CommandHandler handler = FindHandler(opcode);
  if (handler == nullptr) return SyntaxError(INSTRUCTION_NOT_SUPPORTED);
  result = (this->*handler)();
  // A client result of -513 becomes -1 with its class bit. It must not pass for a batch
  // request, which would run the last batch once more.
  return result == kBatchRequest ? CLASS_IO : result;
}
