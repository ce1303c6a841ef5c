#include "register/document/receipt.h"

#include <algorithm>
#include <cstddef>

#include "register/document/line_likeness.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

int Sign(LineKind kind) { return kind == LineKind::kSale ? 1 : -1; }

bool IsKnownAdjustment(int type) {
  return type >= RTF_FPTR_AT_AMOUNT_DISCOUNT && type <= RTF_FPTR_AT_COUPON_PERCENTAGE_DISCOUNT;
}

int NoAdjustment(int type) { return Refuse(RTF_E_ILLEGAL, RefusalCause::kAdjustmentKind, {type}); }

int NoSize(const AdjustmentRequest& request) {
  return Refuse(
      RTF_EFPTR_BAD_ITEM_AMOUNT,
      IsPercentage(request.type) ? RefusalCause::kPercentageSize : RefusalCause::kAdjustmentSize,
      {request.value});
}

// The size of an adjustment on a base, in whole cents. Nothing for one that no adjustment has:
// zero or below, a discount of more than 100 %, or more than any document holds.
std::optional<Amount> AdjustmentSize(const AdjustmentRequest& request, Amount base) {
  if (request.value <= 0) return std::nullopt;
  std::optional<Amount> size;
  if (IsPercentage(request.type)) {
    if (request.value > kWholePercentage && !IsSurcharge(request.type)) return std::nullopt;
    size = PercentageOf(base, request.value);
  } else {
    size = RoundToCents(request.value);
  }
  if (!size || *size > kMaxAmount || *size <= 0) return std::nullopt;
  return size;
}

}  // namespace

bool IsPercentage(int type) {
  return type == RTF_FPTR_AT_PERCENTAGE_DISCOUNT || type == RTF_FPTR_AT_PERCENTAGE_SURCHARGE ||
         type == RTF_FPTR_AT_COUPON_PERCENTAGE_DISCOUNT;
}

bool IsSurcharge(int type) {
  return type == RTF_FPTR_AT_AMOUNT_SURCHARGE || type == RTF_FPTR_AT_PERCENTAGE_SURCHARGE;
}

bool IsCoupon(int type) {
  return type == RTF_FPTR_AT_COUPON_AMOUNT_DISCOUNT ||
         type == RTF_FPTR_AT_COUPON_PERCENTAGE_DISCOUNT;
}

void Receipt::Mark() {
  marked_.by_vat = by_vat_;
  marked_.by_department = by_department_;
  marked_.lines = lines_.size();
  marked_.adjustments = adjustments_.size();
  marked_.payments = payments_.size();
  marked_.total = total_;
  marked_.paid = paid_;
  marked_.at_subtotal = at_subtotal_;
  marked_.changed_lines.clear();
  marked_.voided.clear();
}

void Receipt::TakeBack() noexcept {
  const auto shorten = [](auto* all, size_t size) {
    if (size < all->size())
      all->erase(all->begin() + static_cast<std::ptrdiff_t>(size), all->end());
  };
  shorten(&lines_, marked_.lines);
  shorten(&adjustments_, marked_.adjustments);
  shorten(&payments_, marked_.payments);
  // Backwards: a line that changed twice ends with what it was first.
  for (auto old = marked_.changed_lines.rbegin(); old != marked_.changed_lines.rend(); ++old) {
    Line& line = lines_[old->index];
    line.open_quantity = old->open_quantity;
    line.open_amount = old->open_amount;
    line.adjusted = old->adjusted;
  }
  for (const size_t adjustment : marked_.voided) adjustments_[adjustment].voided = false;
  by_vat_.swap(marked_.by_vat);
  by_department_.swap(marked_.by_department);
  total_ = marked_.total;
  paid_ = marked_.paid;
  at_subtotal_ = marked_.at_subtotal;
  marked_.changed_lines.clear();
  marked_.voided.clear();
}

Receipt::Line& Receipt::Change(size_t index) {
  Line& line = lines_[index];
  if (index < marked_.lines) {
    marked_.changed_lines.push_back({index, line.open_quantity, line.open_amount, line.adjusted});
  }
  return line;
}

void Receipt::SetVoided(size_t index) {
  if (adjustments_[index].voided) return;
  if (index < marked_.adjustments) marked_.voided.push_back(index);
  adjustments_[index].voided = true;
}

int Receipt::CheckSums(const std::map<int, Amount>& deltas) const {
  Amount total = total_;
  int negative_vat = 0;
  for (const auto& [vat, delta] : deltas) {
    total += delta;
    const auto sum = by_vat_.find(vat);
    if ((sum == by_vat_.end() ? 0 : sum->second) + delta < 0) negative_vat = vat;
  }
  if (total > kMaxAmount) {
    return Refuse(RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, RefusalCause::kTotalTooHigh,
                  {total_, kMaxAmount});
  }
  if (total < 0) {
    return Refuse(RTF_EFPTR_NEGATIVE_TOTAL, RefusalCause::kTotalBelowZero,
                  {total_, total - total_});
  }
  if (negative_vat != 0) {
    return Refuse(RTF_EFPTR_NEGATIVE_VAT, RefusalCause::kVatBelowZero,
                  {negative_vat, deltas.at(negative_vat)});
  }
  return RTF_SUCCESS;
}

void Receipt::AddToSums(const std::map<int, Amount>& deltas) {
  for (const auto& [vat, delta] : deltas) {
    by_vat_[vat] += delta;
    total_ += delta;
  }
}

void Receipt::AddToDepartment(const Item& item, int32_t quantity, Amount amount) {
  if (item.department == 0) return;
  DepartmentSum& sum = by_department_[item.department];
  sum.quantity += quantity;
  sum.amount += amount;
}

int Receipt::Enter(const Item& item) {
  const int sign = Sign(item.kind);
  const std::map<int, Amount> deltas = {{item.vat, sign * item.amount}};
  if (const int code = CheckSums(deltas)) return code;
  lines_.push_back({item, item.quantity, item.amount, 0});
  AddToSums(deltas);
  AddToDepartment(item, sign * item.quantity, sign * item.amount);
  at_subtotal_ = false;
  return RTF_SUCCESS;
}

bool Receipt::HasAdjustment(size_t line, int type, int64_t value) const {
  return std::any_of(adjustments_.begin(), adjustments_.end(), [&](const Adjustment& adjustment) {
    return adjustment.line == line && !adjustment.voided && !adjustment.is_void &&
           adjustment.request.type == type && adjustment.request.value == value;
  });
}

std::optional<Receipt::FoundLine> Receipt::FindOpenLine(const Item& item,
                                                        const VoidTerms& terms) const {
  const auto likeness = [&](size_t index) {
    const Line& line = lines_[index];
    const bool has_adjustment =
        terms.adjustment == 0 || HasAdjustment(index, terms.adjustment_type, terms.adjustment);
    if (!has_adjustment) return kUnlike;
    return LikenessOf(line.item, item, line.open_amount + Sign(item.kind) * line.adjusted);
  };
  const auto by_price = [&](size_t index) {
    const Line& line = lines_[index];
    const bool has_pieces = line.open_quantity == item.quantity ||
                            (line.open_quantity > item.quantity && line.adjusted == 0);
    return has_pieces && line.item.unit_price == item.unit_price ? likeness(index) : kUnlike;
  };
  if (const auto index = FindNearest(terms.by_amount ? 0 : lines_.size(), by_price)) {
    return FoundLine{*index, lines_[*index].open_quantity == item.quantity};
  }
  // A correction by its amount alone takes a whole line of that amount, however it was sold.
  if (item.quantity_given) return std::nullopt;
  const auto by_amount = [&](size_t index) {
    const Line& line = lines_[index];
    return line.open_quantity > 0 && line.open_amount == item.amount ? likeness(index) : kUnlike;
  };
  if (const auto index = FindNearest(lines_.size(), by_amount)) return FoundLine{*index, true};
  return std::nullopt;
}

std::map<int, Amount> Receipt::DepartmentByVat(int department) const {
  std::map<int, Amount> sums;
  for (const Line& line : lines_) {
    if (line.item.department != department) continue;
    sums[line.item.vat] += Sign(line.item.kind) * line.open_amount + line.adjusted;
  }
  for (const Adjustment& adjustment : adjustments_) {
    if (adjustment.voided || adjustment.is_void || adjustment.request.department != department) {
      continue;
    }
    for (const auto& [vat, delta] : adjustment.by_vat) sums[vat] += delta;
  }
  return sums;
}

Amount Receipt::SoldBy(int department) const {
  Amount sum = 0;
  for (const Line& line : lines_) {
    if (line.item.department == department && line.item.kind == LineKind::kSale) {
      sum += line.open_amount + line.adjusted;
    }
  }
  for (const Adjustment& adjustment : adjustments_) {
    const bool stands = !adjustment.voided && !adjustment.is_void;
    if (stands && adjustment.request.department == department) sum += adjustment.delta;
  }
  return sum;
}

bool Receipt::LeavesDepartment(int department, Amount delta) const {
  return department == 0 || delta >= 0 || SoldBy(department) + delta >= 0;
}

int Receipt::Void(const Item& item, Amount* amount, const VoidTerms& terms,
                  std::string* description) {
  const std::optional<FoundLine> found = FindOpenLine(item, terms);
  if (!found) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoLineToVoid,
                  {item.quantity, item.unit_price});
  }
  const Line& line = lines_[found->index];
  const int32_t quantity = found->whole ? line.open_quantity : item.quantity;
  const Amount goods = found->whole ? line.open_amount : std::min(item.amount, line.open_amount);
  const int sign = Sign(item.kind);
  // The adjustments of a line go with it.
  const Amount delta = -(sign * goods + line.adjusted);
  const std::map<int, Amount> deltas = {{item.vat, delta}};
  if (const int code = CheckSums(deltas)) return code;
  if (item.kind == LineKind::kSale && !LeavesDepartment(item.department, delta)) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kDepartmentBelowZero, {item.department});
  }
  AddToSums(deltas);
  AddToDepartment(item, -sign * quantity, delta);
  Line& changed = Change(found->index);
  changed.open_quantity -= quantity;
  changed.open_amount -= goods;
  changed.adjusted = 0;
  for (size_t index = 0; found->whole && index < adjustments_.size(); ++index) {
    if (adjustments_[index].line == found->index) SetVoided(index);
  }
  at_subtotal_ = false;
  if (description != nullptr) *description = changed.item.description;
  *amount = delta;
  return RTF_SUCCESS;
}

int Receipt::Restore(const Item& item, Amount* amount, std::string* description) {
  const auto likeness = [&](size_t index) {
    const Line& line = lines_[index];
    const bool is_gone = line.item.quantity - line.open_quantity >= item.quantity;
    if (!is_gone || line.item.unit_price != item.unit_price) return kUnlike;
    return LikenessOf(line.item, item, line.item.amount - line.open_amount);
  };
  const std::optional<size_t> found = FindNearest(lines_.size(), likeness);
  if (!found) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoLineToRestore,
                  {item.quantity, item.unit_price});
  }
  const Line& line = lines_[*found];
  const int sign = Sign(item.kind);
  const int32_t gone = line.item.quantity - line.open_quantity;
  const Amount gone_amount = line.item.amount - line.open_amount;
  const Amount goods = gone == item.quantity ? gone_amount : std::min(item.amount, gone_amount);
  const std::map<int, Amount> deltas = {{item.vat, sign * goods}};
  if (const int code = CheckSums(deltas)) return code;
  AddToSums(deltas);
  AddToDepartment(item, sign * item.quantity, sign * goods);
  Line& changed = Change(*found);
  changed.open_quantity += item.quantity;
  changed.open_amount += goods;
  at_subtotal_ = false;
  if (description != nullptr) *description = changed.item.description;
  *amount = sign * goods;
  return RTF_SUCCESS;
}

const Item* Receipt::last_open_line() const {
  if (lines_.empty() || lines_.back().open_quantity == 0) return nullptr;
  return &lines_.back().item;
}

int Receipt::TakeBackAdjustment(const AdjustmentRequest& request, bool on_subtotal,
                                Adjustment* done) {
  for (size_t index = adjustments_.size(); index-- > 0;) {
    const Adjustment* const earlier = &adjustments_[index];
    if (earlier->on_subtotal != on_subtotal || earlier->voided || earlier->is_void ||
        earlier->request.type != request.type || earlier->request.value != request.value ||
        earlier->request.package != request.package ||
        earlier->request.department != request.department ||
        (request.vat != 0 && earlier->by_vat.count(request.vat) == 0)) {
      continue;
    }
    std::map<int, Amount> deltas;
    for (const auto& [vat, delta] : earlier->by_vat) deltas[vat] = -delta;
    if (const int code = CheckSums(deltas)) return code;
    int department = earlier->request.department;
    if (earlier->line) {
      const Line& line = lines_[*earlier->line];
      const int sign = Sign(line.item.kind);
      // A discount that stands may have counted on the surcharge that goes.
      if (line.open_amount + sign * (line.adjusted - earlier->delta) < 0) {
        return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kDiscountStandsOnIt);
      }
      department = line.item.kind == LineKind::kSale ? line.item.department : 0;
    }
    if (!LeavesDepartment(department, -earlier->delta)) {
      return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kDepartmentBelowZero, {department});
    }
    AddToSums(deltas);
    SetVoided(index);
    if (earlier->line) {
      Line& line = Change(*earlier->line);
      line.adjusted -= earlier->delta;
      AddToDepartment(line.item, 0, -earlier->delta);
    } else if (!on_subtotal && earlier->request.department != 0) {
      by_department_[earlier->request.department].amount -= earlier->delta;
    }
    *done = *earlier;
    done->delta = -earlier->delta;
    done->by_vat = deltas;
    done->is_void = true;
    done->voided = false;
    adjustments_.push_back(*done);
    return RTF_SUCCESS;
  }
  return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoAdjustmentToVoid);
}

int Receipt::Adjust(const AdjustmentRequest& request, Adjustment* done) {
  if (!IsKnownAdjustment(request.type)) return NoAdjustment(request.type);
  if (request.is_void) return TakeBackAdjustment(request, false, done);

  Adjustment adjustment;
  adjustment.request = request;
  Amount base = 0;
  int sign = 1;
  int vat = request.vat;
  if (request.department != 0) {
    // A department's adjustment falls on what the department sold on this document.
    const auto sum = by_department_.find(request.department);
    if (sum != by_department_.end()) base = sum->second.amount;
  } else {
    const Item* last = last_open_line();
    if (last == nullptr) return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoOpenLine);
    const Line& line = lines_.back();
    sign = Sign(last->kind);
    base = line.open_amount + sign * line.adjusted;
    if (vat == 0) vat = last->vat;
    // An adjustment is part of its line as long as both fall on one VAT entry. On another it is
    // of that entry alone, and of no department.
    if (vat == last->vat) adjustment.line = lines_.size() - 1;
  }
  const std::optional<Amount> size = AdjustmentSize(request, base);
  if (!size) return NoSize(request);
  const bool surcharge = IsSurcharge(request.type);
  adjustment.delta = (surcharge ? sign : -sign) * *size;
  if (request.spread) {
    adjustment.by_vat = Spread(adjustment.delta, DepartmentByVat(request.department));
    std::erase_if(adjustment.by_vat, [](const auto& share) { return share.second == 0; });
  }
  if (adjustment.by_vat.empty()) adjustment.by_vat = {{vat, adjustment.delta}};
  if (const int code = CheckSums(adjustment.by_vat)) return code;
  if (!surcharge && *size > base) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kDiscountAboveBase, {*size, base});
  }

  AddToSums(adjustment.by_vat);
  if (request.department != 0) {
    by_department_[request.department].amount += adjustment.delta;
  } else if (adjustment.line) {
    Change(lines_.size() - 1).adjusted += adjustment.delta;
    AddToDepartment(lines_.back().item, 0, adjustment.delta);
  }
  adjustments_.push_back(adjustment);
  at_subtotal_ = false;
  *done = adjustment;
  return RTF_SUCCESS;
}

int Receipt::AdjustSubtotal(const AdjustmentRequest& request, Adjustment* done) {
  if (!IsKnownAdjustment(request.type)) return NoAdjustment(request.type);
  if (request.is_void) return TakeBackAdjustment(request, true, done);

  const std::optional<Amount> size = AdjustmentSize(request, total_);
  if (!size) return NoSize(request);
  Adjustment adjustment;
  adjustment.request = request;
  adjustment.on_subtotal = true;
  adjustment.delta = IsSurcharge(request.type) ? *size : -*size;
  if (total_ + adjustment.delta < 0) {
    return Refuse(RTF_EFPTR_NEGATIVE_TOTAL, RefusalCause::kTotalBelowZero,
                  {total_, adjustment.delta});
  }
  adjustment.by_vat = Spread(adjustment.delta, by_vat_);
  if (adjustment.by_vat.empty()) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNothingSold);
  }
  if (const int code = CheckSums(adjustment.by_vat)) return code;
  AddToSums(adjustment.by_vat);
  adjustments_.push_back(adjustment);
  *done = adjustment;
  return RTF_SUCCESS;
}

int Receipt::AdjustPackage(const AdjustmentRequest& request, Adjustment* done) {
  if (request.type != RTF_FPTR_AT_AMOUNT_DISCOUNT && request.type != RTF_FPTR_AT_AMOUNT_SURCHARGE) {
    return NoAdjustment(request.type);
  }
  if (request.is_void) return TakeBackAdjustment(request, true, done);

  const int sign = IsSurcharge(request.type) ? 1 : -1;
  Adjustment adjustment;
  adjustment.request = request;
  adjustment.on_subtotal = true;
  for (const auto& [vat, share] : request.package) {
    if (share <= 0 || share > kMaxAmount) {
      return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kAdjustmentSize, {share});
    }
    adjustment.by_vat[vat] = sign * share;
    adjustment.delta += sign * share;
  }
  if (adjustment.by_vat.empty()) return RTF_EFPTR_BAD_ITEM_AMOUNT;
  if (const int code = CheckSums(adjustment.by_vat)) return code;
  AddToSums(adjustment.by_vat);
  adjustments_.push_back(adjustment);
  *done = adjustment;
  return RTF_SUCCESS;
}

Amount Receipt::VatTotal(const std::vector<VatRate>& rates) const {
  Amount sum = 0;
  for (const auto& [vat, gross] : by_vat_) {
    if (const VatRate* rate = VatEntry(rates, vat)) sum += VatPart(gross, rate->rate);
  }
  return sum;
}

}  // namespace lorimat
