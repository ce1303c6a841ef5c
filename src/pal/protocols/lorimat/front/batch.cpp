// Batch files: an "@" line names a file of commands, which runs line by line, and with a
// second operand a file that collects the error texts. That file appears under its name
// only when the run has ended, so that a host may wait for it; until then its name ends
// in ".tmp".

#include <algorithm>

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdinterpreter.h"
#include "pal/protocols/lorimat/front/line_blocks.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

constexpr char kTemporary[] = ".tmp";
constexpr size_t kLineLimit = 2047;
constexpr size_t kBlock = 8192;  // read of the file at once

void AddSaturated(int* sum, int addend) {
  *sum = static_cast<int>(std::min<int64_t>(static_cast<int64_t>(*sum) + addend, INT32_MAX));
}

}  // namespace

int EcrCmdInterpreter::ParseBatchRequest(char* line) {
  // Ahead of the operands, so that the running batch keeps its file names.
  if (TStato.bFlgEC) return INVALID_BATCH_LINE;
  bool quoted = false;
  int position = 2;
  if (GetEMOper(line, &position, szFileIn, &quoted) != 0) return INVALID_BATCH_LINE;
  // The other operands may be missing, and then come out empty.
  GetEMOper(line, &position, szFileErr, &quoted);
  szFileErrTmp[0] = 0;
  if (szFileErr[0] != 0) {
    // A name without room for the ending would make both names one file.
    if (std::strlen(szFileErr) + sizeof kTemporary > sizeof szFileErrTmp) {
      return ERROR_FILE_OPEN_ERROR;
    }
    CopyText(szFileErrTmp, szFileErr);
    AppendText(szFileErrTmp, kTemporary);
  }
  GetEMOper(line, &position, szFileLog, &quoted);
  return -1;
}

long EcrCmdInterpreter::RunBatch(char* Result) {
  fs_file_t input;
  fs_file_t error_file;
  bool with_errors = false;

  const auto refuse = [&](long code) {
    SetStringErr(Result, code);
    return code;
  };

  lorimatutility::toLower(szFileIn);
  if (fs_open(&input, szFileIn, FS_RDONLY) == FS_BADF) return refuse(FILE_OPEN_ERROR);
  dwFileInSize = static_cast<int>(std::clamp<int64_t>(fs_fstat(&input), INT32_MIN, INT32_MAX));
  dwFileInRead = 1;
  if (szFileErr[0] != 0) {
    lorimatutility::toLower(szFileErr);
    lorimatutility::toLower(szFileErrTmp);
    // The batch file itself cannot take the errors: its lines would be lost.
    const bool own_name =
        std::strcmp(szFileErr, szFileIn) == 0 || std::strcmp(szFileErrTmp, szFileIn) == 0;
    if (!own_name) {
      fs_remove(szFileErr);
      // Opening does not truncate, and a run that was cut off may have left its lines.
      fs_remove(szFileErrTmp);
      // Lines end in carriage return and line feed as they are written: no translation.
      with_errors = fs_open_binary(&error_file, szFileErrTmp, FS_CREATE_RDWR) != FS_BADF;
    }
    if (!with_errors) {
      fs_close(&input);
      return refuse(ERROR_FILE_OPEN_ERROR);
    }
  }

  char block[kBlock];
  LineBlocks lines(&input, block, sizeof block);
  TStato.bFlgEC = true;
  for (;;) {
    char line[MAXLINELEN + 1];
    const int length = lines.Read(line, kLineLimit);
    if (length < 0) break;
    AddSaturated(&dwFileInRead, length + 2);
    ++Stat.lCurLine;
    // bProgressZUP asks for the percentage and the line to be shown; this contract keeps
    // no callback to show them with.
    output_named_ = false;
    const long code = EcrCmdL(line, with_errors ? &error_file : nullptr);
    // What a line writes to the batch's own file runs too.
    if (output_named_) lines.GiveBack();
    if (code == -2) continue;
    ++Stat.lTotLines;
    if (code != 0) Stat.bLineErr = true;
    Result[0] = 0;
    SetStringErr(Result, code);
    // The second text of the line: EcrCmdL wrote the first.
    if (with_errors && code != 0 && code != ERRORS_DURING_EXECUTION) {
      SeqFileWrite(&error_file, Result);
    }
    TStato.iFlgEMCmd = 0;
    TStato.iFlgINFO = 0;
    if (code != 0 && (bAbortIfError || bExitBatch)) break;
  }
  fs_close(&input);
  if (with_errors) fs_close(&error_file);

  Stat.bLineErr = false;
  // Nothing increments these counters: a run reports success whatever its lines did, and
  // the error file tells of them.
  const long code = Stat.lTotErr != 0 || Stat.lTotErrEcr != 0 ? ERRORS_DURING_EXECUTION_OF_FILE : 0;
  SetStringErr(Result, code);
  if (code == 0) {
    AppendFormat(Result, 512, "(%ld Lines   %u msec)", Stat.lTotLines, Stat.dwTotTime);
  }
  TStato.bFlgEC = false;
  if (with_errors) {
    // A copy that fails goes unreported, and the temporary file goes all the same.
    fs_copy(szFileErrTmp, szFileErr);
    fs_remove(szFileErrTmp);
  }
  return code;
}
