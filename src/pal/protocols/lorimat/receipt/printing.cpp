// What is printed beside sales: text, barcodes and logos, attached to a receipt or in a
// non-fiscal document of their own. The two commands are twins: one shape, other fields,
// other print calls, and a few differences that are kept.

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

constexpr int kItemAutoCut = 148;  // data item
constexpr int kDefaultLogo = 63;

enum CutMode { kNoCut = 1, kCut = 2, kCutToo = 3 };  // nothing sets the last one

bool Cuts(int cut_mode) { return cut_mode == kCut || cut_mode == kCutToo; }

// Option bits of field 4.
constexpr int kOptionDouble = 0x08;
constexpr int kOptionCut = 0x10;
constexpr int kOptionLogo = 0x40;

// What the barcode type does to the content.
enum class Content { kAny, kEan, kUpcA };

struct BarcodeType {
  int host_type;
  const char* tipo;  // as the client numbers it; an EAN is 02, and 03 with 7 characters
  Content content;
  bool code39checksum;
};

constexpr BarcodeType kBarcodeTypes[] = {
    {0, "02", Content::kEan, false},   {1, "02", Content::kEan, false},
    {113, "02", Content::kEan, false}, {2, "04", Content::kAny, false},
    {108, "04", Content::kAny, false}, {3, "04", Content::kAny, true},
    {4, "08", Content::kAny, false},   {5, "08", Content::kAny, false},
    {6, "08", Content::kAny, false},   {120, "08", Content::kAny, false},
    {103, "05", Content::kAny, false}, {109, "07", Content::kAny, false},
    {118, "06", Content::kAny, false}, {134, "00", Content::kUpcA, false},
    {137, "01", Content::kAny, false}, {155, "10", Content::kAny, false},
    {158, "11", Content::kAny, false}, {229, "09", Content::kAny, false},
};

const BarcodeType* FindBarcodeType(int host_type) {
  for (const BarcodeType& type : kBarcodeTypes) {
    if (type.host_type == host_type) return &type;
  }
  return nullptr;
}

// Drops the last character of a text of exactly that length.
void CutLength(char* text, size_t length) {
  if (std::strlen(text) == length) text[length - 1] = 0;
}

constexpr size_t kLongestContent = 249;

}  // namespace

// Fields and details of one of the twins.
struct PrintingTwin {
  int barcode_field;
  int scale_field;
  int align_field;
  int hide_text_field;
  int logo_field;
  size_t ean_length;     // an EAN of this length loses its check digit
  bool on_receipt;       // prints by PrintRecMessage, else by PrintNormal
  bool doubled_barcode;  // a refused barcode gets its class twice: meant
};

namespace {

constexpr PrintingTwin kAttachment = {6, 9, 12, 13, 25, 12, true, true};
constexpr PrintingTwin kNonFiscal = {8, 11, 14, 15, 30, 13, false, false};

}  // namespace

int EcrCmdCommand::PrintLine(const PrintingTwin& twin, const char* text) {
  return twin.on_receipt ? RTF_FP_INVOKE(PrintRecMessage, text)
                         : RTF_FP_INVOKE(PrintNormal, RTF_FPTR_S_RECEIPT, text);
}

int EcrCmdCommand::PrintBarcode(const PrintingTwin& twin, int cut_mode) {
  char scale[3] = "1";
  const char* align = "3";
  const char* text_position = "2";
  char tipo[3];
  if (Given(*this, twin.scale_field)) CopyText(scale, szCampi[twin.scale_field]);
  if (Given(*this, twin.align_field)) {
    static constexpr const char* kAlignments[] = {"1", "3", "2"};
    const int number = TextToInt(szCampi[twin.align_field]);
    if (number >= 0 && number <= 2) align = kAlignments[number];
  }
  char data[kLongestContent + 1];
  CopyText(data, szCampi[3]);
  // "VERO", the field named without a value, counts as 0 like any word.
  const BarcodeType* type = FindBarcodeType(TextToInt(szCampi[twin.barcode_field]));
  if (type == nullptr) return SyntaxError(ILLEGAL_VALUE);
  CopyText(tipo, type->tipo);
  if (type->content == Content::kEan) {
    CutLength(data, 8);
    CutLength(data, twin.ean_length);
    if (std::strlen(data) == 7) CopyText(tipo, "03");
  } else if (type->content == Content::kUpcA) {
    CutLength(data, 12);
  }
  if (TextToInt(szCampi[twin.hide_text_field]) != 0) text_position = "0";

  const uint8_t cut = static_cast<uint8_t>(cut_mode);
  int err = type->code39checksum
                ? RTF_FP_INVOKE(PrintBarcodeEx, tipo, scale, align, text_position, data, cut, true)
                : RTF_FP_INVOKE(PrintBarcode, tipo, scale, align, text_position, data, cut);
  if (twin.doubled_barcode) err = checkResult(err);
  // A blank line follows every barcode.
  if (err == 0) static_cast<void>(PrintLine(twin, " "));
  return checkResult(err);
}

int EcrCmdCommand::PrintLogo(const PrintingTwin& twin, int cut_mode) {
  int ngraex = kDefaultLogo;
  if (Given(*this, twin.logo_field)) ngraex = TextToInt(szCampi[twin.logo_field]);
  const int err = checkResult(RTF_FP_INVOKE(PrintBitmap, ngraex, cut_mode));
  if (err == 0) static_cast<void>(PrintLine(twin, " "));
  if (err == 0 && Cuts(cut_mode)) static_cast<void>(RTF_FP_INVOKE_NP(PrintPaperCut));
  // The code gets its class a second time: meant.
  return checkResult(err);
}

int EcrCmdCommand::Trad_ALLEG() {
  const int opzioni = TextToInt(szCampi[4]);
  const int cut_mode = (opzioni & kOptionCut) != 0 ? kCut : kNoCut;
  // The code of a refused data item gets its class a second time: meant.
  if (Given(*this, 1)) return checkResult(setDataInternal(kItemAutoCut, 0));
  if (Given(*this, 2)) return checkResult(RTF_FP_INVOKE(EndFiscalReceipt, true));
  if (Given(*this, kAttachment.barcode_field)) return PrintBarcode(kAttachment, cut_mode);
  if ((opzioni & kOptionLogo) != 0) return PrintLogo(kAttachment, cut_mode);
  if (!Given(*this, 3)) CopyText(szCampi[3], " ");
  return checkResult(PrintLine(kAttachment, szCampi[3]));
}

int EcrCmdCommand::Trad_NOFIS() {
  const int opzioni = TextToInt(szCampi[4]);
  const int cut_mode = (opzioni & kOptionCut) != 0 ? kCut : kNoCut;
  const bool save_on_journal = !Given(*this, 6);
  if (Given(*this, 1)) return checkResult(RTF_FP_INVOKE(BeginNonFiscalJournal, save_on_journal));
  if (Given(*this, 2)) return checkResult(RTF_FP_INVOKE_NP(EndNonFiscal));
  if (Given(*this, kNonFiscal.barcode_field)) return PrintBarcode(kNonFiscal, cut_mode);
  if ((opzioni & kOptionLogo) != 0) return PrintLogo(kNonFiscal, cut_mode);
  // A cut alone: the text of the line is not printed, meant.
  if (Cuts(cut_mode)) return checkResult(RTF_FP_INVOKE_NP(PrintPaperCut));
  if (!Given(*this, 3)) CopyText(szCampi[3], " ");
  constexpr char kDoubleWidthAndHeight[] = "\x1b|2C\x1b|3C";
  char description[MAX_DESCRIPTION + 1] = {};
  if ((opzioni & kOptionDouble) != 0) CopyText(description, kDoubleWidthAndHeight);
  AppendText(description, szCampi[3]);
  return checkResult(PrintLine(kNonFiscal, description));
}

int EcrCmdCommand::Trad_PRMSG() {
  if (!Given(*this, 1)) return 0;
  return checkResult(RTF_FP_INVOKE(PrintRecMessage, szCampi[1]));
}

int EcrCmdCommand::Trad_RESPRN() {
  LotteryCodeDetect_ = false;
  bOnFirstSale = true;
  Trad_CLEAR();
  return checkResult(RTF_FP_INVOKE_NP(ResetPrn));
}
