// Days whose paper is read back: all that a shop does on documents, wild and in order, with rates
// that change between days and starts behind a cut.
#pragma once

#include <rapidcheck.h>

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "day/trouble.h"
#include "register/client/virtual_register.h"

namespace lorimat {

enum class PaperStep : int {
  kSale,
  kInvoice,
  kCreditNote,  // of document a of this day or b days ago, or of none
  kVoid,        // the same, whole where c is even
  kWholeCreditNote,
  kLine,        // department a, price b, pieces c, kind of line d
  kAdjustLine,  // type a, value b, VAT entry c, department d
  kAdjustmentBack,
  kAdjustSubtotal,
  kSubtotalBack,
  kPackage,
  kSubtotal,
  kPay,  // b of the tender a
  kPayRest,
  kReset,
  kClose,
  kCut,
  kRates,    // entry a gets the rate b of its own
  kLottery,  // a code, where b is 0 with small letters
  kTaxId,
  kTraining,
  kReading,
  kLater,    // a minutes pass
  kTrouble,  // of kind a at the place b, lasting where c is 1, in the next step
  kCount,
};

struct PaperMove {
  PaperStep step = PaperStep::kSale;
  int a = 0, b = 0, c = 0, d = 0;
};

using PaperMoves = std::vector<PaperMove>;

// With troubles: of disk, memory, process and power, and faults that a host orders.
rc::Gen<PaperMoves> PaperDays(int most_scenes, bool troubles);
std::ostream& operator<<(std::ostream& out, const PaperMove& move);

// What the register says of a day that is about to be closed, by itself.
struct DayFigures {
  std::map<int, int64_t> totalizers;  // of all VAT entries together, by RTF_FPTR_GT_*
  std::map<std::string, std::map<int, int64_t>> by_mark;
  bool rates_changed = false;  // since the last closing
};

class PaperShop {
 public:
  // In memory where no file is named; then nothing cuts it off. The disk is that of the troubles,
  // null where there are none.
  PaperShop(const std::string& file, bool rounds_cash, FailingDisk* disk);

  void Do(const PaperMove& move);
  // Ends what is open, and closes the last day.
  void End();

  VirtualRegister& device() { return *device_; }
  // By the number of the closing.
  const std::map<int, DayFigures>& figures() const { return figures_; }
  bool rounds_cash() const { return rounds_cash_; }
  int64_t moves() const { return moves_; }
  int64_t refused() const { return refused_; }
  int64_t cuts() const { return cuts_; }
  int64_t rate_changes() const { return rate_changes_; }
  // By TroubleKind.
  const int64_t (&struck() const)[kTroubleKinds] { return struck_; }

 private:
  int Answer(const PaperMove& move);
  // The same under the trouble that waits, if one does.
  template <typename Work>
  int Troubled(Work work);
  void Start();
  int Line(const PaperMove& move);
  int Refer(const PaperMove& move);
  int ChangeRate(int entry, int rate);
  int ChangeNature(int nature);
  void Close();

  std::string file_;
  bool rounds_cash_ = false;
  std::unique_ptr<VirtualRegister> device_;
  std::map<int, DayFigures> figures_;
  FailingDisk* disk_;
  Trouble trouble_;
  int64_t struck_[kTroubleKinds] = {};
  int64_t moves_ = 0, refused_ = 0, cuts_ = 0, rate_changes_ = 0;
};

}  // namespace lorimat
