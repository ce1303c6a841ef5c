#include "properties/paper_day.h"

#include <cstdlib>
#include <iterator>
#include <ostream>
#include <utility>

#include "day/day_register.h"
#include "managermachine/pflitemtype.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

namespace gen = rc::gen;

int Below(int count) { return *gen::inRange(0, count); }

constexpr const char* kTexts[] = {
    "", "PANE", "UN ARTICOLO CON UN NOME CHE NON STA IN UNA RIGA SOLA", "CAFFE'", "", "LIBRO"};
constexpr const char* kLineTenders[] = {"0", "1", "2", "3",  "4",  "5",  "6",
                                        "7", "8", "9", "30", "10", "11", "31"};
constexpr int kCountOfTenders = static_cast<int>(std::size(kLineTenders));
constexpr int kLineKinds[] = {PflItemType::kPrintRecItem,
                              PflItemType::kPrintRecItemVoid,
                              PflItemType::kPrintRecItemRefund,
                              PflItemType::kPrintRecItemRefundVoid,
                              PflItemType::kPrintRecItemVoidOfVoid,
                              PflItemType::kPrintRecItemDeposit,
                              PflItemType::kPrintRecItemDepositVoid,
                              PflItemType::kPrintRecItemBuoniMonouso,
                              PflItemType::kPrintRecItemBuoniMonousoVoid};

// Rates in ten-thousandths of a percent: no two entries ever have the same.
constexpr const char* kRates[][3] = {{"220000", "210000", "200000"},
                                     {"100000", "95000", "110000"},
                                     {"50000", "60000", "55000"},
                                     {"40000", "30000", "73000"}};

// Prices in ten-thousandths: cents, round ones, small ones, and some that a quantity has to round.
int64_t PriceOf(int number) {
  static constexpr int64_t kPrices[] = {100,     500,  9900,  12000, 12345,   99900, 150000,
                                        1000000, 3333, 99999, 12500, 5000000, 610000};
  constexpr int kCountOfPrices = static_cast<int>(std::size(kPrices));
  if (number < kCountOfPrices) return kPrices[number];
  return static_cast<int64_t>(number) * 100;
}

void Push(PaperMoves* moves, PaperStep step, int a = 0, int b = 0, int c = 0, int d = 0) {
  moves->push_back({step, a, b, c, d});
}

PaperMove AnyLine() {
  const int pieces = Below(3) == 0 ? *gen::element(1000, 2000, 3000, 1500, 333, 12500) : 0;
  return {PaperStep::kLine, 1 + Below(7), Below(2) == 0 ? Below(13) : Below(3000), pieces, 0};
}

void AddLines(PaperMoves* moves) {
  for (int left = 1 + Below(6); left > 0; --left) {
    const PaperMove line = AnyLine();
    moves->push_back(line);
    switch (Below(10)) {
      case 0:
        Push(moves, PaperStep::kAdjustLine, 1 + Below(6), Below(200),
             Below(8) == 0 ? 1 + Below(5) : 0, 0);
        if (Below(4) == 0)
          moves->push_back({PaperStep::kAdjustmentBack, moves->back().a, moves->back().b,
                            moves->back().c, moves->back().d});
        break;
      case 1:
        Push(moves, PaperStep::kAdjustLine, 1 + Below(6), Below(200), 0, line.a);
        break;
      case 2: {
        PaperMove back = line;
        back.d = 1;
        if (back.c == 2000 && Below(2) == 0) back.c = 1000;
        moves->push_back(back);
        if (Below(3) == 0) {
          back.d = 4;
          moves->push_back(back);
        }
        break;
      }
      case 3: {
        PaperMove other = AnyLine();
        other.d = *gen::element(2, 2, 5, 7);
        moves->push_back(other);
        if (Below(4) == 0) {
          ++other.d;
          moves->push_back(other);
        }
        break;
      }
      default:
        break;
    }
    if (Below(8) == 0) Push(moves, PaperStep::kSubtotal);
  }
  for (int left = Below(6) == 0 ? 1 + Below(2) : 0; left > 0; --left) {
    Push(moves, PaperStep::kAdjustSubtotal, 1 + Below(6), Below(200));
    if (Below(5) == 0) {
      moves->push_back({PaperStep::kSubtotalBack, moves->back().a, moves->back().b, 0, 0});
    }
  }
  if (Below(15) == 0)
    Push(moves, PaperStep::kPackage, 1 + Below(2), 1 + Below(300), 1 + Below(300));
}

void AddPayment(PaperMoves* moves) {
  for (int part = 0; part < 3 && Below(3) == 0; ++part) {
    Push(moves, PaperStep::kPay, Below(kCountOfTenders), 1 + Below(3000));
  }
  if (Below(5) == 0) Push(moves, PaperStep::kPay, 0, 50000 + 50000 * Below(4));
  // A ticket above the rest.
  if (Below(15) == 0) Push(moves, PaperStep::kPay, 12, 100000);
  Push(moves, PaperStep::kPayRest, Below(2) == 0 ? 0 : Below(kCountOfTenders));
  Push(moves, PaperStep::kReset);
}

PaperMoves Scene() {
  PaperMoves moves;
  // Past midnight, and past some dates.
  if (Below(10) == 0) {
    Push(&moves, PaperStep::kLater, *gen::element(300, 840, 1440, 2880, 5000, 20160));
  }
  switch (*gen::weightedElement<int>(
      {{8, 0}, {3, 1}, {4, 2}, {3, 3}, {2, 4}, {2, 5}, {2, 6}, {1, 7}, {1, 8}, {1, 9}, {1, 10}})) {
    case 0:
      Push(&moves, PaperStep::kSale);
      if (Below(8) == 0) Push(&moves, PaperStep::kTaxId);
      AddLines(&moves);
      if (Below(4) == 0) {
        Push(&moves, PaperStep::kLottery, 0, Below(2));
        Push(&moves, PaperStep::kPayRest, Below(3) == 0 ? 0 : 2);
      }
      AddPayment(&moves);
      break;
    case 1:
      Push(&moves, PaperStep::kInvoice, Below(2));
      AddLines(&moves);
      AddPayment(&moves);
      break;
    case 2:
      Push(&moves, PaperStep::kCreditNote, Below(8), Below(3), Below(3));
      AddLines(&moves);
      AddPayment(&moves);
      break;
    case 3:
      Push(&moves, PaperStep::kVoid, Below(8), Below(3), 0);
      break;
    case 4: {
      // Sold, and taken back line by line.
      PaperMoves lines;
      for (int left = 1 + Below(4); left > 0; --left) lines.push_back(AnyLine());
      Push(&moves, PaperStep::kSale);
      moves.insert(moves.end(), lines.begin(), lines.end());
      AddPayment(&moves);
      Push(&moves, Below(2) == 0 ? PaperStep::kVoid : PaperStep::kCreditNote, 0, 0, 1);
      moves.insert(moves.end(), lines.begin(), lines.end());
      AddPayment(&moves);
      break;
    }
    case 5:
      Push(&moves, PaperStep::kWholeCreditNote, Below(8), Below(3));
      break;
    case 6:
      Push(&moves, PaperStep::kClose);
      if (Below(2) == 0) Push(&moves, PaperStep::kLater, *gen::element(1440, 2900, 5000, 20160));
      break;
    case 7:
      Push(&moves, PaperStep::kClose);
      for (int left = 1 + Below(2); left > 0; --left) {
        Push(&moves, PaperStep::kRates, Below(5), Below(3));
      }
      break;
    case 8:
      Push(&moves, PaperStep::kSale);
      AddLines(&moves);
      if (Below(2) == 0) Push(&moves, PaperStep::kPay, 2, 1 + Below(500));
      Push(&moves, Below(2) == 0 ? PaperStep::kCut : PaperStep::kReset);
      break;
    case 9:
      Push(&moves, PaperStep::kTraining, 1);
      Push(&moves, PaperStep::kSale);
      AddLines(&moves);
      AddPayment(&moves);
      Push(&moves, PaperStep::kTraining, 0);
      break;
    default:
      Push(&moves, PaperStep::kReading);
  }
  return moves;
}

// Where a trouble may strike an operation: it has many allocations, few writes and hardly a sync.
int PlacesOf(TroubleKind kind) {
  switch (kind) {
    case TroubleKind::kMemory:
      return 100;
    case TroubleKind::kDiskSync:
    case TroubleKind::kDiskUncut:
    case TroubleKind::kDiskGone:
    case TroubleKind::kKilledAtSync:
      return 2;
    default:
      return 3;
  }
}

PaperMoves WithTroubles(const PaperMoves& moves) {
  PaperMoves all;
  for (const PaperMove& move : moves) {
    if (Below(10) == 0) {
      const int kind = 1 + Below(kTroubleKinds - 1);
      Push(&all, PaperStep::kTrouble, kind, 1 + Below(PlacesOf(static_cast<TroubleKind>(kind))),
           Below(2));
    }
    all.push_back(move);
  }
  return all;
}

}  // namespace

rc::Gen<PaperMoves> PaperDays(int most_scenes, bool troubles) {
  const auto scene = gen::exec([troubles] {
    const PaperMoves moves = Scene();
    return troubles ? WithTroubles(moves) : moves;
  });
  // A vector of its own length, so that a failing day gets shorter by scenes.
  return gen::map(gen::mapcat(gen::inRange(1, most_scenes + 1),
                              [scene](int count) {
                                return gen::resize(rc::kNominalSize,
                                                   gen::container<std::vector<PaperMoves>>(
                                                       static_cast<size_t>(count), scene));
                              }),
                  [](const std::vector<PaperMoves>& scenes) {
                    PaperMoves all;
                    for (const PaperMoves& one : scenes)
                      all.insert(all.end(), one.begin(), one.end());
                    return all;
                  });
}

std::ostream& operator<<(std::ostream& out, const PaperMove& move) {
  return out << "\n    step " << static_cast<int>(move.step) << " (" << move.a << " " << move.b
             << " " << move.c << " " << move.d << ")";
}

PaperShop::PaperShop(const std::string& file, bool rounds_cash, FailingDisk* disk)
    : file_(file), rounds_cash_(rounds_cash), disk_(disk) {
  day_minutes = 600;
  Start();
  uint8_t kind = static_cast<uint8_t>(TenderKind::kTicket);
  uint8_t flags = Subtender::kKeepsRest;
  uint8_t digits = 0;
  uint32_t value = 0;
  char name[64] = "TICKET PRANZO";
  if (device_->ConfigSubtender(true, 2, &kind, name, &flags, &value, &digits) != RTF_SUCCESS) {
    device_.reset();
  }
}

void PaperShop::Start() {
  device_.reset();
  RegisterSettings settings = DaySettings(file_);
  settings.round_cash = rounds_cash_;
  device_ = std::make_unique<VirtualRegister>(std::move(settings));
}

template <typename Work>
int PaperShop::Troubled(Work work) {
  const Trouble trouble = std::exchange(trouble_, {});
  if (disk_ == nullptr || trouble.kind == TroubleKind::kNone) return work();
  if (trouble.kind == TroubleKind::kOrdered) {
    const auto kinds = FaultKinds();
    device_->AddFault(
        {.name = std::string(kinds[static_cast<size_t>(trouble.place) % kinds.size()].name)});
    const int code = work();
    if (device_->faults().empty()) ++struck_[static_cast<int>(trouble.kind)];
    device_->ClearFaults();
    return code;
  }
  Arm(*disk_, trouble);
  const int code = work();
  const bool struck = HasStruck(*disk_, trouble);
  const bool dies = struck && trouble.ends_the_process() && !file_.empty();
  if (struck) ++struck_[static_cast<int>(trouble.kind)];
  if (dies) device_.reset();
  HealAll(*disk_);
  if (dies) Start();
  return code;
}

void PaperShop::Do(const PaperMove& move) {
  if (move.step == PaperStep::kTrouble) {
    trouble_ = {static_cast<TroubleKind>(move.a), move.b, move.c == 1};
    return;
  }
  if (move.step == PaperStep::kLater) {
    day_minutes += move.a;
    return;
  }
  ++moves_;
  ++day_minutes;
  // A closing and a start are troubled in themselves.
  const bool by_itself = move.step == PaperStep::kClose || move.step == PaperStep::kCut;
  const int code = by_itself ? Answer(move) : Troubled([&] { return Answer(move); });
  if (code != RTF_SUCCESS) ++refused_;
}

void PaperShop::End() {
  trouble_ = {};
  // What a disk left in doubt is known behind a start.
  if (disk_ != nullptr && !file_.empty()) Start();
  device_->ResetPrn();
  device_->EndTraining();
  Close();
}

int PaperShop::Line(const PaperMove& move) {
  const bool pieces = move.c > 0;
  // Lines of one department are told apart by their text.
  const char* text = kTexts[static_cast<size_t>(move.b) % std::size(kTexts)];
  // Some are sold on an entry that is not their department's.
  const int vat = move.b % 11 == 0 ? 1 + move.b % 5 : -1;
  const int64_t price = PriceOf(move.b);
  return device_->PrintRecItemEx(kLineKinds[move.d], text, pieces ? 0 : price, move.c, vat,
                                 pieces ? price : 0, "", move.a, true, "");
}

int PaperShop::Refer(const PaperMove& move) {
  const int closure = device_->store().last_closure() + 1 - move.b;
  // Number 0 is the last one of the day.
  const int number = move.a > 0 ? move.a : device_->store().counters().documents;
  switch (move.step) {
    case PaperStep::kVoid:
      return device_->BeginDocTelematicCancel(number, closure, "", move.c % 2 == 0, "");
    case PaperStep::kWholeCreditNote:
      return device_->BeginDocRefundEx(number, closure, "", true);
    default:
      break;
  }
  if (move.c == 2) return device_->BeginDocTelematicRefund(0, 0, "", "");
  if (move.c == 0) return device_->BeginDocTelematicRefund(7, 3, "", "99XYZ000001");
  return device_->BeginDocTelematicRefund(number, closure, "", "");
}

// The last entry has natures.
int PaperShop::ChangeNature(int nature) {
  static constexpr const char* kCodes[] = {"N4", "N2", "N6"};
  ShopSetup setup;
  setup.vat_natures[5] = kCodes[nature];
  ShopRefusal refused;
  const int code = device_->SetUp(setup, &refused);
  if (code == RTF_SUCCESS) {
    figures_[device_->store().last_closure() + 1].rates_changed = true;
    ++rate_changes_;
  }
  return code;
}

int PaperShop::ChangeRate(int entry, int rate) {
  if (entry == 4) return ChangeNature(rate);
  const int noted = device_->SetVatValue(entry + 1, kRates[entry][rate]);
  const int code = noted == RTF_SUCCESS ? device_->SetVatTable() : noted;
  if (code == RTF_SUCCESS) {
    figures_[device_->store().last_closure() + 1].rates_changed = true;
    ++rate_changes_;
  }
  return code;
}

int PaperShop::Answer(const PaperMove& move) {
  VirtualRegister& device = *device_;
  const int64_t cents = static_cast<int64_t>(move.b) * 100;
  // A percentage, for the types that are one.
  const auto value = [&] { return move.a == 3 || move.a == 4 || move.a == 6 ? cents * 50 : cents; };
  switch (move.step) {
    case PaperStep::kSale:
      return device.BeginFiscalReceipt(true);
    case PaperStep::kInvoice:
      return device.BeginDocInvoice("ROSSI MARIO", move.a == 0 ? "" : "Via Roma 1", "", "", "");
    case PaperStep::kCreditNote:
    case PaperStep::kVoid:
    case PaperStep::kWholeCreditNote:
      return Refer(move);
    case PaperStep::kLine:
      return Line(move);
    case PaperStep::kAdjustLine:
    case PaperStep::kAdjustmentBack:
      return device.PrintRecItemAdjustmentEx2(move.a, "", value(), move.c == 0 ? -1 : move.c,
                                              move.d == 0 ? -2 : move.d,
                                              move.step == PaperStep::kAdjustmentBack);
    case PaperStep::kAdjustSubtotal:
      return device.PrintRecSubtotalAdjustment(move.a, "", value());
    case PaperStep::kSubtotalBack:
      return device.PrintRecSubtotalAdjustVoid(move.a, value());
    case PaperStep::kPackage: {
      const std::string shares =
          "1," + std::to_string(cents) + ";2," + std::to_string(move.c * 100);
      return device.PrintRecPackageAdjustment(move.a, "", shares.c_str());
    }
    case PaperStep::kSubtotal:
      return device.PrintRecSubtotalEx(0, false);
    case PaperStep::kPay:
      return device.PrintRecTotalEx(cents, kLineTenders[move.a], false);
    case PaperStep::kPayRest:
      return device.PrintRecTotalEx(0, kLineTenders[move.a], true);
    case PaperStep::kReset:
      return device.ResetPrn();
    case PaperStep::kClose:
      Close();
      return RTF_SUCCESS;
    case PaperStep::kCut:
      if (file_.empty()) return device.ResetPrn();
      ++cuts_;
      trouble_ = {};
      Start();
      return RTF_SUCCESS;
    case PaperStep::kRates:
      return ChangeRate(move.a, move.b);
    case PaperStep::kLottery:
      if (const int code = device.KeyCodeInput("", "", "", FunctionCode::kLotteryCode)) return code;
      return device.KeyCodeInput("", "", move.b == 0 ? "ab12cd34" : "AB12CD34",
                                 FunctionCode::kConfirm);
    case PaperStep::kTaxId:
      return device.PrintRecTaxID("RSSMRA80A01H501U");
    case PaperStep::kTraining:
      return move.a == 1 ? device.BeginTraining() : device.EndTraining();
    case PaperStep::kReading:
      return device.PrintXReport();
    case PaperStep::kLater:
    case PaperStep::kTrouble:
    case PaperStep::kCount:
      break;
  }
  return RTF_E_ILLEGAL;
}

void PaperShop::Close() {
  static constexpr int kOfAll[] = {
      RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS,  RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS,
      RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS,
      RTF_FPTR_GT_VAT_CATEGORY_TAXALL,       RTF_FPTR_GT_NOT_PAID,
      RTF_FPTR_GT_DISCOUNT_ON_PAYMENT,       RTF_FPTR_GT_TICKET_PAYED_GROSS,
      RTF_FPTR_GT_GENERIC_VOUCHER_GROSS};
  static constexpr int kOfRates[] = {RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS,
                                     RTF_FPTR_GT_VAT_CATEGORY_TAXALL};
  DayFigures& figures = figures_[device_->store().last_closure() + 1];
  const auto read = [&](int entry, int kind) {
    char text[50] = "";
    return device_->GetTotalizerExtend(entry, RTF_FPTR_TT_DAY, kind, text) == RTF_SUCCESS
               ? std::strtoll(text, nullptr, 10)
               : -1;
  };
  for (const int kind : kOfAll) figures.totalizers[kind] = read(0, kind);
  for (int entry = 1; entry <= 4; ++entry) {
    char rate[50] = "";
    if (device_->GetVatEntryExtended(entry, 0, rate) != RTF_SUCCESS) continue;
    for (const int kind : kOfRates) figures.by_mark[rate][kind] = read(entry, kind);
  }
  Troubled([&] { return device_->PrintZReport(); });
}

}  // namespace lorimat
