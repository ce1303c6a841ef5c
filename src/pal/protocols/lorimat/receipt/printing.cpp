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

bool cuts(int cut_mode) { return cut_mode == kCut || cut_mode == kCutToo; }

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

const BarcodeType* find_barcode_type(int host_type) {
  for (const BarcodeType& type : kBarcodeTypes) {
    if (type.host_type == host_type) return &type;
  }
  return nullptr;
}

// Drops the last character of a text of exactly that length.
void cut_length(char* text, size_t length) {
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

int EcrCmdCommand::print_line(const PrintingTwin& twin, const char* text) {
  return twin.on_receipt ? RTF_FP_INVOKE(PrintRecMessage, text)
                         : RTF_FP_INVOKE(PrintNormal, RTF_FPTR_S_RECEIPT, text);
}

int EcrCmdCommand::print_barcode(const PrintingTwin& twin, int cut_mode) {
  char scale[3] = "1";
  const char* align = "3";
  const char* text_position = "2";
  char tipo[3];
  if (given(*this, twin.scale_field)) copy_text(scale, szCampi[twin.scale_field]);
  if (given(*this, twin.align_field)) {
    static constexpr const char* kAlignments[] = {"1", "3", "2"};
    const int number = text_to_int(szCampi[twin.align_field]);
    if (number >= 0 && number <= 2) align = kAlignments[number];
  }
  char data[kLongestContent + 1];
  copy_text(data, szCampi[3]);
  // "VERO", the field named without a value, counts as 0 like any word.
  const BarcodeType* type = find_barcode_type(text_to_int(szCampi[twin.barcode_field]));
  if (type == nullptr) return syntax_error(ILLEGAL_VALUE);
  copy_text(tipo, type->tipo);
  if (type->content == Content::kEan) {
    cut_length(data, 8);
    cut_length(data, twin.ean_length);
    if (std::strlen(data) == 7) copy_text(tipo, "03");
  } else if (type->content == Content::kUpcA) {
    cut_length(data, 12);
  }
  if (text_to_int(szCampi[twin.hide_text_field]) != 0) text_position = "0";

  const uint8_t cut = static_cast<uint8_t>(cut_mode);
  int err = type->code39checksum
                ? RTF_FP_INVOKE(PrintBarcodeEx, tipo, scale, align, text_position, data, cut, true)
                : RTF_FP_INVOKE(PrintBarcode, tipo, scale, align, text_position, data, cut);
  if (twin.doubled_barcode) err = checkResult(err);
  // A blank line follows every barcode.
  if (err == 0) static_cast<void>(print_line(twin, " "));
  return checkResult(err);
}

int EcrCmdCommand::print_logo(const PrintingTwin& twin, int cut_mode) {
  int ngraex = kDefaultLogo;
  if (given(*this, twin.logo_field)) ngraex = text_to_int(szCampi[twin.logo_field]);
  const int err = checkResult(RTF_FP_INVOKE(PrintBitmap, ngraex, cut_mode));
  if (err == 0) static_cast<void>(print_line(twin, " "));
  if (err == 0 && cuts(cut_mode)) static_cast<void>(RTF_FP_INVOKE_NP(PrintPaperCut));
  // The code gets its class a second time: meant.
  return checkResult(err);
}

int EcrCmdCommand::Trad_ALLEG() {
  const int opzioni = text_to_int(szCampi[4]);
  const int cut_mode = (opzioni & kOptionCut) != 0 ? kCut : kNoCut;
  // The code of a refused data item gets its class a second time: meant.
  if (given(*this, 1)) return checkResult(setDataInternal(kItemAutoCut, 0));
  if (given(*this, 2)) return checkResult(RTF_FP_INVOKE(EndFiscalReceipt, true));
  if (given(*this, kAttachment.barcode_field)) return print_barcode(kAttachment, cut_mode);
  if ((opzioni & kOptionLogo) != 0) return print_logo(kAttachment, cut_mode);
  if (!given(*this, 3)) copy_text(szCampi[3], " ");
  return checkResult(print_line(kAttachment, szCampi[3]));
}

int EcrCmdCommand::Trad_NOFIS() {
  const int opzioni = text_to_int(szCampi[4]);
  const int cut_mode = (opzioni & kOptionCut) != 0 ? kCut : kNoCut;
  const bool save_on_journal = !given(*this, 6);
  if (given(*this, 1)) return checkResult(RTF_FP_INVOKE(BeginNonFiscalJournal, save_on_journal));
  if (given(*this, 2)) return checkResult(RTF_FP_INVOKE_NP(EndNonFiscal));
  if (given(*this, kNonFiscal.barcode_field)) return print_barcode(kNonFiscal, cut_mode);
  if ((opzioni & kOptionLogo) != 0) return print_logo(kNonFiscal, cut_mode);
  // A cut alone: the text of the line is not printed, meant.
  if (cuts(cut_mode)) return checkResult(RTF_FP_INVOKE_NP(PrintPaperCut));
  if (!given(*this, 3)) copy_text(szCampi[3], " ");
  constexpr char kDoubleWidthAndHeight[] = "\x1b|2C\x1b|3C";
  char description[MAX_DESCRIPTION + 1] = {};
  if ((opzioni & kOptionDouble) != 0) copy_text(description, kDoubleWidthAndHeight);
  append_text(description, szCampi[3]);
  return checkResult(print_line(kNonFiscal, description));
}

int EcrCmdCommand::Trad_PRMSG() {
  if (!given(*this, 1)) return 0;
  return checkResult(RTF_FP_INVOKE(PrintRecMessage, szCampi[1]));
}

int EcrCmdCommand::Trad_RESPRN() {
  LotteryCodeDetect_ = false;
  bOnFirstSale = true;
  Trad_CLEAR();
  return checkResult(RTF_FP_INVOKE_NP(ResetPrn));
}
