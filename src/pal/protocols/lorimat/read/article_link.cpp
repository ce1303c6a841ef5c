// The article exchange link: the article table of the device goes to a text file or comes
// from one, row by row. The rows are the device's and pass through as they are; no more than
// one is in memory. EditEMOut and Dimpacc bear the link's name and serve the work state.

#include "pal/protocols/lorimat/read/article_link.h"

#include "managermachine/managerdownloadtablerowtype.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/data_items.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/line_blocks.h"
#include "pal/protocols/lorimat/program/device_records.h"
#include "pal/threading/posix/thread.h"

namespace {

enum LinkCommand { kNone = 0, kUpload = 2, kDownload = 3 };

constexpr int kArticleTable = 1;
constexpr int kArticleTableBehind = 257;  // the same with bit 8: an erase behind a download

// Steps of an upload, second argument of UploadTable.
enum UploadStep { kOpen = 0, kRow = 1, kClose = 2 };

// The state of the device cannot be read beside an erase. The class bits have no table, so
// that the answer shows the numbers alone.
constexpr int kUnreachable = CLASS_CRITICAL | CLASS_SYNTAX;

constexpr int kLongestLine = 2047;  // of an uploaded file
constexpr size_t kBlock = 4096;     // read of it at once
constexpr int kLongestRow = 400;    // of a downloaded table

int LinkCommand(const char* field) {
  if (BeginsWith(field, "UA")) return kUpload;
  if (BeginsWith(field, "DA")) return kDownload;
  return kNone;
}

// The files are opened without translation where lines are written, since these end in
// carriage return and line feed as they are.
bool OpenDownload(EcrCmdInterpreter& translator, fs_file_t* file, const char* name, bool append) {
  if (append) {
    if (!translator.OpenOutput(file, name, FS_RDWR)) return false;
    fs_lseek(file, 0, FS_SEEK_END);
    return true;
  }
  // An existing file is written over from its start and keeps a longer tail: meant.
  return translator.OpenOutput(file, name, FS_CREATE_RDWR);
}

}  // namespace

void EcrCmdCommand::TakeLinkFields() {
  iEM_Cmd = LinkCommand(szCampi[1]);
  bEM_FlgReset = IsNamed(*this, 4);
  bEM_FlgClear = IsNamed(*this, 5);
  iEM_FlgBlock = IsNamed(*this, 6) ? 1 : IntegerField(*this, 6);
  bEM_FlgAppend = IsNamed(*this, 7);
  bEM_FlgInfo = IsNamed(*this, 8);
  iEM_SelezFlg = IntegerField(*this, 9);
  iEM_SelezDpt = IntegerField(*this, 10);
  iEM_FiltroMov = -1;
  if (Given(*this, 11)) iEM_FiltroMov = IntegerField(*this, 11) != 0 ? 1 : 0;
  std::memset(szEM_FiltroMov, 0, 5);
  if (std::strlen(szCampi[12]) == 6) iEM_FiltroMov = 1;
  iEM_LivTradDC = 0;
  if (IsNamed(*this, 13) || std::strcmp(szCampi[13], "1") == 0) iEM_LivTradDC = 1;
  if (std::strcmp(szCampi[13], "2") == 0) iEM_LivTradDC = 2;
  bEM_FlgOffLine = IsNamed(*this, 14);
  bEM_FlgFlush = IsNamed(*this, 16);
  bFlgFlush = bEM_FlgFlush;
  bEM_List = IsNamed(*this, 17);
}

bool EcrCmdCommand::OpenLinkFile(fs_file_t* file) {
  // A name that is cut would be another file's.
  if (std::strlen(szCampi[2]) >= sizeof szEM_FileIn) return false;
  if (iEM_Cmd != kUpload) return OpenDownload(*this, file, szEM_FileIn, bEM_FlgAppend);
  // Only read, in the platform's own mode: LineBlocks takes lines of either kind.
  if (fs_open(file, szEM_FileIn, FS_RDONLY) == FS_BADF) return false;
  dwEMFileInSize = ClientInt(fs_fstat(file));
  dwEMFileInRead = 1;
  return true;
}

int EcrCmdCommand::Trad_EMLINK() {
  int iR = 0;
  fs_file_t hFileData;
  fs_file_t hFileErr = -1;
  bool bAddErr = false;
  Stat.bEMLineErr = false;
  Stat.szFase[0] = 0;
  const bool saved_flush = bFlgFlush;
  CopyText(szEM_FileIn, szCampi[2]);
  CopyText(szEM_FileErr, szCampi[3]);
  lorimatutility::toLower(szEM_FileErr);
  if (szEM_FileErr[0] != 0) {
    // One file for both would lose its rows when it is opened for the errors.
    const bool good_name = std::strlen(szCampi[3]) < sizeof szEM_FileErr &&
                           !EqualsIgnoringCase(szCampi[2], szCampi[3]);
    if (!good_name || !OpenOutput(&hFileErr, szEM_FileErr, FS_CREATE_TRUNC)) {
      return EmLinkError(EM_ERROR_FILE_OPEN_ERROR);
    }
    bAddErr = true;
  }
  TakeLinkFields();
  lorimatutility::toLower(szEM_FileIn);
  // The file is opened ahead of the judgement of the direction, and with none it is created
  // all the same: meant.
  const bool opened = OpenLinkFile(&hFileData);
  if (!opened) {
    iR = EmLinkError(EM_FILE_OPEN_ERROR);
  } else if (iEM_Cmd == kUpload) {
    TStato.iFlgEMCmd = kUpload;
    iR = EM_UpdArt(&hFileData, &hFileErr);
  } else if (iEM_Cmd == kDownload) {
    TStato.iFlgEMCmd = kDownload;
    iR = EM_DwnArt(&hFileData, &hFileErr, bEM_List);
  } else {
    iR = EmLinkError(EM_ILLEGAL_COMMAND);
  }
  // The run has written its lines to the error file itself.
  if (iR == EmLinkError(EM_ERRORS_DURING_EXECUTION)) bAddErr = false;
  if (opened) fs_close(&hFileData);
  if (iR != 0 && bAddErr) {
    char text[255] = {};
    SetStringErr(text, iR);
    SeqFileWrite(&hFileErr, text);
  }
  if (szEM_FileErr[0] != 0) fs_close(&hFileErr);
  bFlgFlush = saved_flush;
  return iR;
}

int EcrCmdCommand::EM_UpdArt(fs_file_t* hFileSrc, fs_file_t* hFileErr) {
  if (bEM_FlgReset) {
    const int code = EraseArticles(kArticleTable);
    if (code != 0) return code;
  }
  Stat.lEMTotLines = 0;
  Stat.lEMCurLine = 0;
  Stat.lEMTotErr = 0;
  Stat.lEMTotErrEcr = 0;
  // A transfer that the device does not open is tried all the same: meant.
  static_cast<void>(RTF_FP_INVOKE(UploadTable, kArticleTable, kOpen, ""));
  char line[kLongestLine + 1];
  char row[kLongestLine + 3];  // with LF, CR and NUL
  char block[kBlock];
  LineBlocks lines(hFileSrc, block, sizeof block);
  for (int length; (length = lines.Read(line, kLongestLine)) >= 0;) {
    dwEMFileInRead = ClientInt(int64_t{dwEMFileInRead} + length + 2);
    ++Stat.lEMCurLine;
    if (lorimatutility::TogliCommento(row, line, cChQuote) == 0) continue;
    // In this order on the wire, unlike a file's lines.
    AppendText(row, "\n\r");
    const int code = checkResult(RTF_FP_INVOKE(UploadTable, kArticleTable, kRow, row));
    ++Stat.lEMTotLines;
    if (code == 0) continue;
    ++Stat.lEMTotErr;
    if (IsDeviceError(code)) ++Stat.lEMTotErrEcr;
    Stat.bEMLineErr = true;
    char text[255] = {};
    SetStringErr(text, code);
    if (szEM_FileErr[0] != 0) SeqFileWrite(hFileErr, text);
  }
  static_cast<void>(RTF_FP_INVOKE(UploadTable, kArticleTable, kClose, ""));
  Stat.szFase[0] = 0;
  return Stat.lEMTotErr != 0 ? EmLinkError(EM_ERRORS_DURING_EXECUTION) : 0;
}

int EcrCmdCommand::EM_DwnArt(fs_file_t* hFileOut, fs_file_t* /*hFileErr*/, bool /*bList*/) {
  int iR = 0;
  int rows = 0;
  bool written = true;
  // A row that the file does not take ends the download, and the table is not emptied behind
  // it: its rows are nowhere else. No file takes a row beyond the bound.
  const auto fetch = [&](int selector, int index) {
    ClientText data_row;
    const int code = checkResult(RTF_FP_INVOKE(DownloadTable, selector, index, data_row.buffer));
    data_row.buffer[kLongestRow] = 0;
    if (code != 0) return code;
    written = rows < kMostRows && SeqFileWrite(hFileOut, data_row.buffer);
    ++rows;
    return written ? 0 : EmLinkError(EM_FILE_OPEN_ERROR);
  };
  // As many as the device says: the first refused row ends the run.
  int64_t plu_counter = 0;
  ReadDataItem(kArticleCount, &plu_counter);
  if (iEM_SelezFlg != 0) {
    int row_type = ManagerDownloadTableRowType::kFirst;
    // The device ends a selection by refusing its next row, so a refusal is no error.
    while (fetch(DownloadSelector(kArticleTable, iEM_SelezFlg, row_type), 0) == 0) {
      row_type = ManagerDownloadTableRowType::kNextRow;
    }
  } else {
    const int selector = DownloadSelector(kArticleTable, 0, ManagerDownloadTableRowType::kRow);
    for (int i = 0; i < ClientInt(plu_counter) && iR == 0; ++i) iR = fetch(selector, i);
  }
  if (!written) iR = EmLinkError(EM_FILE_OPEN_ERROR);
  if (iR == 0 && bEM_FlgClear) iR = EraseArticles(kArticleTableBehind);
  return iR;
}

int EcrCmdCommand::EraseArticles(int table) {
  constexpr int kMostReads = 90;
  constexpr int kStep = 1000;  // milliseconds
  int state = 0;
  int read = RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_PrinterState, &state);
  // Only -1 means that the device does not answer.
  if (read == -1) return kUnreachable;
  if (checkResult(RTF_FP_INVOKE(EraseTable, table)) != 0) {
    for (int i = 0; i < kMostReads; ++i) {
      read = RTF_FP_INVOKE(GetIntProperty, RTF_PIDXFptr_PrinterState, &state);
      if (read != -1) break;
      Thread::Sleep(kStep);
    }
  }
  // A device that answers and refuses the erase goes on with its old rows: meant.
  return read == -1 ? kUnreachable : 0;
}

char* EcrCmdCommand::Dimpacc(char* dest, const char* text, int length) {
  const size_t size = static_cast<size_t>(length);
  CopyBytes(dest, size + 1, text, size);
  return dest + size;
}

char* EcrCmdCommand::EditEMOut(char* dest, size_t size, const char* text, int mode) {
  constexpr int kFixedForm = 1;  // edit option: values stand next to one another
  constexpr int kQuoted = 2;
  const bool fixed_form = iOutEditFlags == kFixedForm;
  const bool quoted = mode == kQuoted && !fixed_form && cChQuote != 0;
  BufferWriter value(dest, size);
  if (quoted) value.Put(cChQuote);
  for (; *text != 0; ++text) {
    if (quoted && *text == cChQuote) value.Put(cChQuote);
    value.Put(*text);
  }
  if (quoted) value.Put(cChQuote);
  if (!fixed_form && cChSep != 0) value.Put(cChSep);
  return value.Close();
}

char* EcrCmdCommand::EditEMOut(char* dest, const char* text, int mode) {
  constexpr size_t kMarksAndNul = 4;
  return EditEMOut(dest, 2 * std::strlen(text) + kMarksAndNul, text, mode);
}
