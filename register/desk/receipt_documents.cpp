// Opening of documents and non-fiscal printing.
#include <fmt/format.h>

#include <memory>
#include <optional>
#include <utility>

#include "register/desk/clock_check.h"
#include "register/desk/receipt_desk.h"
#include "register/paper/barcode.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr int kDaysInMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool IsCalendarDate(std::string_view date) {
  if (date.size() != 8 || date.find_first_not_of("0123456789") != date.npos) return false;
  const int day = 10 * (date[0] - '0') + date[1] - '0';
  const int month = 10 * (date[2] - '0') + date[3] - '0';
  const int year =
      1000 * (date[4] - '0') + 100 * (date[5] - '0') + 10 * (date[6] - '0') + date[7] - '0';
  if (month < 1 || month > 12) return false;
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  const int days = month == 2 && leap ? 29 : kDaysInMonth[month - 1];
  return day >= 1 && day <= days;
}

std::string DateText(const std::tm& time) {
  return fmt::format("{:02}{:02}{:04}", time.tm_mday, time.tm_mon + 1, 1900 + time.tm_year);
}

Alignment BarcodeAlignment(std::string_view code) {
  if (code == "1") return Alignment::kLeft;
  if (code == "2") return Alignment::kRight;
  return Alignment::kCentre;
}

// One digit, 1 to 9; anything else is the normal size.
int BarcodeScale(std::string_view scale) {
  return scale.size() == 1 && scale[0] >= '1' && scale[0] <= '9' ? scale[0] - '0' : 1;
}

// A sale of which something has gone back.
int GoneBack(const StoredDocument& sale) {
  return Refuse(RTF_E_EXISTS,
                sale.voided ? RefusalCause::kVoidedAlready : RefusalCause::kPaidBackAlready,
                {sale.closure, sale.number});
}

}  // namespace

int ReceiptDesk::CheckBegin() const {
  if (!core_.Allows(Operation::kBeginDocument)) return RTF_EFPTR_WRONG_STATE;
  if (core_.setup.training) return RTF_SUCCESS;  // takes no number
  if (const int code = CheckClock(core_)) return code;
  if (!core_.store.HasNumber()) {
    return Refuse(RTF_EFPTR_DAY_END_REQUIRED, RefusalCause::kDayFull, {RegisterStore::kLastNumber});
  }
  if (!core_.store.HasClosure()) {
    return Refuse(RTF_EFPTR_FISCAL_MEMORY_FULL, RefusalCause::kClosuresFull);
  }
  if (!core_.store.HasRoom())
    return Refuse(RTF_EFPTR_FISCAL_MEMORY_FULL, RefusalCause::kMemoryFull);
  return RTF_SUCCESS;
}

void ReceiptDesk::Open(DocumentKind kind, const Reference& reference, std::vector<VatRate> rates) {
  OpenDocument document;
  if (!rates.empty()) {
    document.rates = std::make_shared<const std::vector<VatRate>>(std::move(rates));
  }
  document.receipt = Receipt(kind);
  document.reference = reference;
  core_.Replace(std::move(document));
  core_.document_start = core_.paper.lines().size();
  core_.state = PrinterState::kReceipt;
  layout_.TrainingMark();
}

int ReceiptDesk::BeginReceipt(bool print_header) {
  if (const int code = CheckBegin()) return code;
  Open(DocumentKind::kSale, Reference{});
  if (print_header) layout_.Header();
  layout_.Title(DocumentKind::kSale, Reference{});
  layout_.ColumnHead();
  return RTF_SUCCESS;
}

int ReceiptDesk::BeginInvoice(const std::string_view (&customer)[5], bool opposition) {
  if (const int code = CheckBegin()) return code;
  Open(DocumentKind::kInvoice, Reference{});
  layout_.Header();
  layout_.Title(DocumentKind::kInvoice, Reference{});
  bool first = true;
  for (const std::string_view line : customer) {
    if (line.empty()) continue;
    if (first) core_.paper.Gap();
    first = false;
    core_.paper.Text(line);
  }
  if (opposition) {
    core_.paper.Gap();
    core_.paper.Text("Opposizione all'utilizzo dei dati");
  }
  layout_.ColumnHead();
  return RTF_SUCCESS;
}

int ReceiptDesk::BeginRefund(const Reference& reference) {
  if (const int code = CheckBegin()) return code;
  if (reference.closure < 0 || reference.closure > RegisterStore::kLastNumber ||
      reference.number < 0 || reference.number > RegisterStore::kLastNumber) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kReference, {reference.closure, reference.number});
  }
  if (!reference.date.empty() && !IsCalendarDate(reference.date)) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDate, {}, reference.date);
  }
  std::vector<VatRate> rates;
  if (IsOwn(reference)) {
    StoredDocument sale;
    if (const int code = FindSale(reference, &sale)) return code;
    rates = RatesOf(sale);
    const std::optional<PaidBack> paid_back = core_.store.FindPaidBack(sale.closure, sale.number);
    if (sale.voided || (paid_back && paid_back->total >= sale.total)) return GoneBack(sale);
  }
  Open(DocumentKind::kRefund, reference, std::move(rates));
  layout_.Header();
  layout_.Title(DocumentKind::kRefund, reference);
  layout_.ColumnHead();
  return RTF_SUCCESS;
}

// Whether the document is one of this register's; what is sold by another is unknown here. No
// reference at all is no document.
bool ReceiptDesk::IsOwn(const Reference& reference) const {
  return !reference.empty() && reference.IsOf(core_.tables.settings().serial_number);
}

// The sale of this register that a reference names, which has to be right in all that it gives.
int ReceiptDesk::FindSale(const Reference& reference, StoredDocument* sale) const {
  if (reference.closure == 0 || reference.number == 0) {
    return Refuse(RTF_E_NOEXIST, RefusalCause::kNotNamedWhole,
                  {reference.closure, reference.number});
  }
  std::optional<StoredDocument> found = core_.store.Find(reference.closure, reference.number);
  if (!found || found->kind != DocumentKind::kSale) {
    return Refuse(RTF_E_NOEXIST, RefusalCause::kNoSuchDocument,
                  {reference.closure, reference.number});
  }
  if (!reference.date.empty() && reference.date != DateText(found->time)) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kOfAnotherDay, {found->closure, found->number},
                  reference.date);
  }
  *sale = *std::move(found);
  return RTF_SUCCESS;
}

// One of this register's sales, of which nothing has gone back. No number means the last document.
int ReceiptDesk::FindWholeSale(const Reference& reference, StoredDocument* sale) const {
  if (!reference.date.empty() && !IsCalendarDate(reference.date)) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDate, {}, reference.date);
  }
  Reference wanted = reference;
  if (reference.closure == 0 && reference.number == 0) {
    const std::optional<StoredDocument> last = core_.store.FindLast();
    if (!last) return Refuse(RTF_E_NOEXIST, RefusalCause::kNoLastDocument);
    wanted.closure = last->closure;
    wanted.number = last->number;
  }
  if (const int code = FindSale(wanted, sale)) return code;
  return core_.store.FindPaidBack(sale->closure, sale->number) ? GoneBack(*sale) : RTF_SUCCESS;
}

// A credit note or a void is held against its sale when it is paid, not line by line: a line at
// its full price is in order when the discount that the sale gave on it is still to come, and one
// too many can be taken back. Until it is paid nothing has gone back.
int ReceiptDesk::CheckPaidBack() const {
  const OpenDocument& document = core_.document;
  const Receipt& receipt = document.receipt;
  if (receipt.kind() == DocumentKind::kCancel && receipt.total() != document.referred_total) {
    return Refuse(RTF_EFPTR_FISCAL_TOTALS_ERROR, RefusalCause::kVoidTotalDiffers,
                  {receipt.total(), document.referred_total});
  }
  if (!IsOwn(document.reference)) return RTF_SUCCESS;
  StoredDocument sale;
  if (const int code = FindSale(document.reference, &sale)) return code;
  const PaidBack gone = core_.store.FindPaidBack(sale.closure, sale.number).value_or(PaidBack{});
  if (receipt.total() > sale.total - gone.total) {
    return Refuse(RTF_EFPTR_FISCAL_TOTALS_ERROR, RefusalCause::kMoreThanSold,
                  {receipt.total(), sale.total - gone.total, sale.closure, sale.number});
  }
  const auto of = [](const std::map<int, Amount>& sums, int vat) {
    const auto sum = sums.find(vat);
    return sum == sums.end() ? 0 : sum->second;
  };
  for (const auto& [vat, gross] : receipt.by_vat()) {
    const Amount left = of(sale.by_vat, vat) - of(gone.by_vat, vat);
    if (gross > 0 && gross > left) {
      return Refuse(RTF_EFPTR_FISCAL_TOTALS_ERROR, RefusalCause::kMoreThanSoldOfVat,
                    {vat, gross, left, sale.closure, sale.number});
    }
  }
  return RTF_SUCCESS;
}

int ReceiptDesk::BeginCancel(const Reference& reference, bool automatic, std::string_view text) {
  if (const int code = CheckBegin()) return code;
  StoredDocument sale;
  if (const int code = FindWholeSale(reference, &sale)) return code;
  const Reference resolved = {sale.closure, sale.number, DateText(sale.time), {}};

  Open(DocumentKind::kCancel, resolved, RatesOf(sale));
  core_.document.referred_total = sale.total;
  layout_.Header();
  layout_.Title(DocumentKind::kCancel, resolved);
  if (!text.empty()) core_.paper.Text(text);
  layout_.ColumnHead();
  if (automatic) MakeWhole(DocumentKind::kCancel, sale);
  return RTF_SUCCESS;
}

int ReceiptDesk::RefundWhole(const Reference& reference) {
  if (const int code = CheckBegin()) return code;
  StoredDocument sale;
  if (const int code = FindWholeSale(reference, &sale)) return code;
  const Reference resolved = {sale.closure, sale.number, DateText(sale.time), {}};
  Open(DocumentKind::kRefund, resolved, RatesOf(sale));
  layout_.Header();
  layout_.Title(DocumentKind::kRefund, resolved);
  layout_.ColumnHead();
  MakeWhole(DocumentKind::kRefund, sale);
  return RTF_SUCCESS;
}

// The rates of the day of a sale; none where they are in force still.
std::vector<VatRate> ReceiptDesk::RatesOf(const StoredDocument& sale) const {
  std::vector<Closure> closed = core_.store.FindClosures(sale.closure, sale.closure);
  return closed.empty() ? std::vector<VatRate>() : std::move(closed.front().vat_rates);
}

// The lines of a sale that goes back as a whole; answers the VAT entries that they have.
std::map<int, Amount> ReceiptDesk::PrintGoneBack(const StoredDocument& sale) {
  const std::vector<VatRate>& rates = core_.rates();
  // What adjustments of several entries did to each is what its lines leave of its sum.
  std::map<int, Amount> rest = sale.by_vat;
  std::map<int, Amount> printed;
  for (const DocumentLine& line : sale.lines) {
    if (line.vat == 0) continue;
    const bool adjustment =
        line.kind == LineKind::kAdjustment || line.kind == LineKind::kSubtotalAdjustment;
    const std::string mark = VatName(rates, line.vat);
    const Amount left = line.amount - line.taken_back;
    if (left != 0) printed[line.vat] += left;
    rest[line.vat] -= adjustment || line.kind == LineKind::kSale ? left : -left;
    if (adjustment) {
      layout_.AdjustmentGoneBack(left, mark);
    } else {
      layout_.LineGoneBack(line, mark);
    }
  }
  for (const auto& [vat, amount] : rest) {
    layout_.AdjustmentGoneBack(amount, VatName(rates, vat));
    if (amount != 0) printed[vat] += amount;
  }
  return printed;
}

// Makes the open document over the whole of a sale, registers and ends it: the money goes back
// by the tenders of the sale, and its tax as it was taken.
void ReceiptDesk::MakeWhole(DocumentKind kind, const StoredDocument& sale) {
  const std::tm now = core_.Now();
  StoredDocument stored = sale;
  stored.kind = kind;
  // The change that the sale gave is not given back.
  if (!stored.payments.empty()) stored.payments.back().amount -= stored.change;
  stored.change = 0;
  // What cost nothing gives nothing back.
  if (sale.total == 0) {
    stored.payments.clear();
    stored.tender_counts.clear();
    stored.collected.clear();
  }
  stored.lottery_sent = false;
  Amount vat_total = 0;
  for (const auto& [vat, figures] : sale.figures) vat_total += figures[TaxedFigure::kGross].tax;
  TellRates(core_.tables, core_.rates(), &stored);
  const std::map<int, Amount> printed = PrintGoneBack(sale);
  layout_.Total(sale.total, vat_total);
  for (const DocumentPayment& payment : stored.payments) {
    const Tender* tender = core_.tables.FindTender(payment.tender);
    if (payment.amount == 0 || tender == nullptr) continue;
    layout_.Tender(tender->name, payment.amount);
  }
  layout_.Paid(kind, 0, TicketsOf(stored, core_.tables), CheckedParts(stored).collected);
  layout_.Natures(printed);
  core_.document.lottery_code = sale.lottery_code;
  layout_.Lottery(core_.document);
  core_.document.time = now;
  Store(std::move(stored));
  FinishDocument();
}

int ReceiptDesk::BeginNonFiscal(bool save_on_journal) {
  if (!core_.Allows(Operation::kBeginDocument)) return RTF_EFPTR_WRONG_STATE;
  core_.document_start = core_.paper.lines().size();
  core_.keep_non_fiscal = save_on_journal;
  core_.state = PrinterState::kNonFiscal;
  layout_.TrainingMark();
  layout_.Header();
  core_.paper.Centred("DOCUMENTO GESTIONALE");
  core_.paper.Blank();
  return RTF_SUCCESS;
}

int ReceiptDesk::PrintNormal(int station, std::string_view text) {
  if (!core_.Allows(Operation::kPrintNormal)) return RTF_EFPTR_WRONG_STATE;
  if (station != RTF_FPTR_S_RECEIPT) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kStation, {station});
  }
  core_.paper.Text(text);
  return RTF_SUCCESS;
}

int ReceiptDesk::EndNonFiscal() {
  if (!core_.Allows(Operation::kEndNonFiscal)) return RTF_EFPTR_WRONG_STATE;
  const std::tm now = core_.Now();
  if (!core_.setup.training) core_.store.CountNonFiscal(now);
  core_.paper.Gap();
  core_.paper.Centred("DOCUMENTO GESTIONALE");
  core_.paper.Centred(FormatDateTime(now));
  layout_.TrainingMark();
  core_.paper.Cut();
  if (core_.keep_non_fiscal) KeepInJournal(kJournalNonFiscal, 0, now);
  core_.state = PrinterState::kMonitor;
  return RTF_SUCCESS;
}

int ReceiptDesk::Barcode(const BarcodeArguments& arguments) {
  if (!core_.Allows(Operation::kGraphics)) return RTF_EFPTR_WRONG_STATE;
  const BarcodeType* type = FindBarcode(arguments.type);
  if (type == nullptr) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kUnknownName, Subject::kBarcodeType, {},
                       arguments.type);
  }
  if (const int code = CheckBarcode(*type, arguments.data)) return code;
  const Alignment alignment = BarcodeAlignment(arguments.alignment);
  const std::string text = ReadHostText(arguments.data).text;
  const bool readable = !type->two_dimensional;
  const std::string_view place = arguments.text_position;
  if (readable && (place == "1" || place == "3")) core_.paper.Aligned(text, alignment);
  core_.paper.Barcode({type->id, std::string(arguments.data), BarcodeScale(arguments.scale),
                       arguments.check_digit, alignment},
                      type->name);
  if (readable && (place == "2" || place == "3")) core_.paper.Aligned(text, alignment);
  if (arguments.cut && core_.Allows(Operation::kCut)) core_.paper.Cut();
  return RTF_SUCCESS;
}

int ReceiptDesk::Bitmap(int number) {
  if (!core_.Allows(Operation::kGraphics)) return RTF_EFPTR_WRONG_STATE;
  if (number < 0 || number > 255) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kLogo, {number, 0, 255});
  }
  layout_.Logo(number);
  return RTF_SUCCESS;
}

int ReceiptDesk::Cut() {
  if (!core_.Allows(Operation::kCut)) return RTF_EFPTR_WRONG_STATE;
  core_.paper.Cut();
  return RTF_SUCCESS;
}

}  // namespace lorimat
