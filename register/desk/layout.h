// How documents look on paper: titles, lines, totals, tenders and trailer, in the forms of an
// Italian telematic register.
#pragma once

#include <string>
#include <string_view>

#include "register/core/core.h"
#include "register/document/receipt_entry.h"

namespace lorimat {

// "15/01/2024 10:30".
std::string FormatDateTime(const std::tm& time);

class Layout {
 public:
  explicit Layout(RegisterCore& core) : core_(core) {}

  // The line that tells a document of training from a real one.
  static constexpr const char* kTrainingMark = "*** DOCUMENTO DI PROVA - NON FISCALE ***";

  // The training mark, when the register is in training.
  void TrainingMark();
  void Header();
  // Title, references and the head of the columns.
  void Title(DocumentKind kind, const Reference& reference);
  void ColumnHead();
  // A line with the amount that it adds to the total.
  void Line(LineAction action, const Item& item, Amount amount);
  // A line, or an adjustment, of a sale that goes back as a whole, as far as it stands, with the
  // rate that it was sold at.
  void LineGoneBack(const DocumentLine& line, const std::string& mark);
  void AdjustmentGoneBack(Amount amount, const std::string& mark);
  // With the rates that it falls on, where they are several.
  void AdjustmentLine(const Adjustment& adjustment, std::string_view description);
  void Subtotal(Amount amount);
  // Total and contained tax.
  void Total(Amount total, Amount vat);
  // Of an invoice: base and tax of each rate.
  void VatTable(const std::map<int, Amount>& by_vat);
  // Of a ticket above what was due with its face.
  void Tender(std::string_view name, Amount amount, Amount face = 0);
  // What follows the last tender: change, how many tickets there were, and what was collected, or
  // went back.
  void Paid(DocumentKind kind, Amount change, int tickets, Amount collected);
  // What the marks of sales without tax mean, for those of a document.
  void Natures(const std::map<int, Amount>& by_vat);
  // The lottery code, or why there is none.
  void Lottery(const OpenDocument& document);
  // What follows that: customer's codes, courtesy text.
  void Settled(const OpenDocument& document);
  // Date, number, point of sale, serial number and the shop's own lines.
  void Trailer(const OpenDocument& document);
  void Abandoned();
  // A logo by its number; one that was not programmed is only named.
  void Logo(int number);

 private:
  std::string VatMark(int vat) const;

  RegisterCore& core_;
};

}  // namespace lorimat
