// The tenders that every register has: what each is, and all that goes by it. A new tender is a
// row; who pays, counts, reports or sends looks here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "pal/peripherals/keyboard/functioncode.h"
#include "register/value/figures.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

enum class TenderKind { kCash, kElectronic, kTicket, kNotPaid };

// Where the summary of a day that is sent has what a tender collected. A discount on the payment
// is none.
enum class SummaryElement { kNone, kCash, kElectronic, kTicket, kDiscount, kCount };

constexpr SummaryElement ElementOf(TenderKind kind) {
  switch (kind) {
    case TenderKind::kCash:
      return SummaryElement::kCash;
    case TenderKind::kElectronic:
      return SummaryElement::kElectronic;
    case TenderKind::kTicket:
      return SummaryElement::kTicket;
    case TenderKind::kNotPaid:
      break;
  }
  return SummaryElement::kNone;
}

struct TenderRow {
  std::string_view id;    // as PrintRecTotalEx names it, and as it is stored
  std::string_view name;  // as the paper names it
  TenderKind kind;
  bool gives_change = false;
  uint8_t key = 0;    // the function code that pays with it; 0 for none
  int data_item = 0;  // the data item that has its sum of the day, maybe with others'; 0 for none
  // Of kNotPaid: what it adds to in the VAT entries.
  TaxedFigure not_paid = TaxedFigure::kUndeliveredNotPaid;
  SummaryElement element = ElementOf(kind);
  // What the register adds by itself to a payment in cash; no host pays with it.
  bool by_register = false;
  int totalizer = 0;  // that has its sum, and how many payments there were; 0 for none
  int count_totalizer = 0;
};

// The tender of a key TOTALE, and of what is paid without naming one.
inline constexpr char kCashTender[] = "0";
// That of what is not paid, and no more is known of it.
inline constexpr char kNotPaidTender[] = "9";

// That of what is given away.
inline constexpr char kGiftTender[] = "31";
// What rounding cash to five cents lets go, and what it takes besides: that counts below 0, as the
// cash has it too.
inline constexpr char kRoundedDownTender[] = "32";
inline constexpr char kRoundedUpTender[] = "33";

inline constexpr TenderRow kTenders[] = {
    {.id = kCashTender,
     .name = "Pagamento contante",
     .kind = TenderKind::kCash,
     .gives_change = true,
     .key = FunctionCode::kTotal,
     .data_item = 372},
    {.id = "1",
     .name = "Pagamento assegno",
     .kind = TenderKind::kCash,
     .key = FunctionCode::kCheque,
     .data_item = 374},
    {.id = "2",
     .name = "Pagamento elettronico",
     .kind = TenderKind::kElectronic,
     .key = FunctionCode::kCreditCard,
     .data_item = 375},
    {.id = "3", .name = "Pagamento bancomat", .kind = TenderKind::kElectronic, .data_item = 375},
    {.id = "4",
     .name = "Ticket",
     .kind = TenderKind::kTicket,
     .key = FunctionCode::kTicket,
     .data_item = 376,
     .totalizer = RTF_FPTR_GT_TICKET_PAYED_GROSS,
     .count_totalizer = RTF_FPTR_GT_TICKET_PAYED_COUNT},
    {.id = "5",
     .name = "Non riscosso fatture",
     .kind = TenderKind::kNotPaid,
     .key = FunctionCode::kCreditInvoice,
     .not_paid = TaxedFigure::kInvoicesNotPaid},
    {.id = "6",
     .name = "Non riscosso servizi",
     .kind = TenderKind::kNotPaid,
     .key = FunctionCode::kCreditServices,
     .not_paid = TaxedFigure::kServicesNotPaid},
    {.id = "7",
     .name = "Non riscosso SSN",
     .kind = TenderKind::kNotPaid,
     .key = FunctionCode::kCreditSSN,
     .not_paid = TaxedFigure::kSsnNotPaid},
    {.id = "8",
     .name = "Sconto a pagare",
     .kind = TenderKind::kTicket,
     .element = SummaryElement::kDiscount,
     .totalizer = RTF_FPTR_GT_DISCOUNT_ON_PAYMENT},
    {.id = kNotPaidTender,
     .name = "Non riscosso",
     .kind = TenderKind::kNotPaid,
     .key = FunctionCode::kCredit,
     .data_item = 373},
    {.id = "30",
     .name = "Buono multiuso",
     .kind = TenderKind::kTicket,
     .element = SummaryElement::kDiscount,
     .totalizer = RTF_FPTR_GT_GENERIC_VOUCHER_GROSS},
    {.id = kGiftTender,
     .name = "Non riscosso omaggio",
     .kind = TenderKind::kNotPaid,
     .not_paid = TaxedFigure::kGiftsNotPaid},
    {.id = kRoundedDownTender,
     .name = "Arrotondamento per difetto",
     .kind = TenderKind::kTicket,
     .element = SummaryElement::kDiscount,
     .by_register = true},
    {.id = kRoundedUpTender,
     .name = "Arrotondamento per eccesso",
     .kind = TenderKind::kTicket,
     .element = SummaryElement::kNone,
     .by_register = true},
};

// Null for a key that pays with none of them.
constexpr const TenderRow* FindTenderOfKey(uint8_t key) {
  for (const TenderRow& row : kTenders) {
    if (row.key != 0 && row.key == key) return &row;
  }
  return nullptr;
}

// A tender as it is programmed: one of the above, or that of a subtender.
struct Tender {
  std::string id;    // as PrintRecTotalEx names it
  std::string name;  // as the paper names it
  TenderKind kind;
  bool gives_change;
  TaxedFigure not_paid = TaxedFigure::kUndeliveredNotPaid;  // of kNotPaid
  SummaryElement element = ElementOf(kind);
  bool by_register = false;
  bool keeps_rest = false;  // takes more than what is due, and gives no change
};

}  // namespace lorimat
