#include "check.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <utility>

#include "host.h"
#include "register/inspect/register_file.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

using Documents = std::map<std::pair<Fact::Kind, int64_t>, int>;

Fact::Kind KindOf(DocumentKind kind) {
  switch (kind) {
    case DocumentKind::kSale:
      return Fact::kSale;
    case DocumentKind::kInvoice:
      return Fact::kInvoice;
    case DocumentKind::kRefund:
      return Fact::kRefund;
    case DocumentKind::kCancel:
      return Fact::kVoid;
  }
  return Fact::kNone;
}

const char* Name(Fact::Kind kind) {
  static const char* const names[] = {"nothing",    "sale",      "invoice", "credit note", "void",
                                      "non-fiscal", "abandoned", "closing", "programming"};
  return names[kind];
}

class Checker {
 public:
  Checker(const std::string& folder, Report* report) : folder_(folder), report_(*report) {}

  void CheckAll() {
    {
      VirtualRegister device(ShopSettings(folder_));
      if (device.printer_state() != RTF_FPTR_PS_MONITOR) {
        report_.Wrong("file: the register starts in the state %d", device.printer_state());
      }
      CheckCutOff(device);
      CheckDocuments(device);
      CheckSums(device.store());
      CheckCounts(device);
      CheckSending(device.store());
      SellOnce(device);
      CheckProgramming(device);
    }
    const JournalCheck check = RegisterFile(folder_ + kRegisterName).VerifyJournal(nullptr);
    if (check.good()) return;
    const Finding& first = check.findings.front();
    report_.Wrong("file: journal: finding of kind %d at entry %lld: %lld, not %lld %s",
                  static_cast<int>(first.kind), static_cast<long long>(first.entry),
                  static_cast<long long>(first.value), static_cast<long long>(first.expected),
                  first.text.c_str());
  }

 private:
  // What may be there or not: the call that was cut off, and one whose outcome is unknown.
  bool MayBe(const Fact& fact) const {
    const auto is = [&](const Fact& open) {
      return open.kind == fact.kind && open.value == fact.value;
    };
    return (report_.calling && is(report_.in_flight)) || is(report_.doubtful);
  }

  int Answered(Fact::Kind kind, int64_t value) const {
    int count = 0;
    for (int i = 0; i < report_.fact_count; ++i) {
      count += report_.facts[i].kind == kind && report_.facts[i].value == value ? 1 : 0;
    }
    return count;
  }

  void CheckDocuments(const VirtualRegister& device) {
    Documents stored;
    for (const StoredDocument& document : device.store().documents()) {
      ++stored[{KindOf(document.kind), document.total}];
    }
    Documents answered;
    for (int i = 0; i < report_.fact_count; ++i) {
      const Fact& fact = report_.facts[i];
      if (IsDocument(fact.kind)) ++answered[{fact.kind, fact.value}];
    }
    for (const auto& [name, count] : answered) stored.try_emplace(name, 0);
    for (const auto& [name, count] : stored) {
      const auto found = answered.find(name);
      const int wanted = found != answered.end() ? found->second : 0;
      if (count == wanted) continue;
      if (count == wanted + 1 && MayBe({name.first, name.second})) {
        CheckNotice(device, {name.first, name.second});
        continue;
      }
      report_.Wrong("file: %s of %lld: answered 0 %d times, stored %d times", Name(name.first),
                    static_cast<long long>(name.second), wanted, count);
    }
  }

  // It has been told to nobody: the start has to.
  void CheckNotice(const VirtualRegister& device, const Fact& fact) {
    if (report_.calling || device.cut_off() || device.unanswered()) return;
    report_.Wrong("file: %s of %lld is there, was answered as unknown, and the start says nothing",
                  Name(fact.kind), static_cast<long long>(fact.value));
  }

  void CheckSums(const RegisterStore& store) {
    std::map<int, int> last_number;  // of a day
    int64_t sum = 0;
    int64_t day = 0;
    int invoice = 0;
    for (const StoredDocument& document : store.documents()) {
      int& last = document.kind == DocumentKind::kInvoice ? invoice : last_number[document.closure];
      if (document.number != ++last) {
        report_.Wrong("file: number %d where %d was to come", document.number, last);
      }
      const int64_t total = DailySign(document.kind) * document.total;
      sum += total;
      if (document.closure == store.last_closure() + 1) day += total;
    }
    if (store.grand_total() != sum || store.daily().net() != day ||
        store.next_invoice() != invoice + 1) {
      report_.Wrong("file: grand total %lld, of the documents %lld; day %lld, %lld; invoice %d, %d",
                    static_cast<long long>(store.grand_total()), static_cast<long long>(sum),
                    static_cast<long long>(store.daily().net()), static_cast<long long>(day),
                    store.next_invoice(), invoice + 1);
    }
  }

  void CheckCount(Fact::Kind kind, int stored, int more = 0, bool one_more = false) {
    const int wanted = Answered(kind, 0) + more;
    if (stored == wanted || (stored == wanted + 1 && (one_more || MayBe({kind, 0})))) return;
    report_.Wrong("file: %s: %d, stored %d", Name(kind), wanted, stored);
  }

  void CheckCounts(const VirtualRegister& device) {
    const RegisterStore& store = device.store();
    CheckCount(Fact::kClosure, store.last_closure());
    if (store.last_closure() > Answered(Fact::kClosure, 0)) {
      CheckNotice(device, {Fact::kClosure, 0});
    }
    DailyCounters sums = store.counters();
    for (const Closure& closure : store.closures()) {
      sums.abandoned += closure.counters.abandoned;
      sums.non_fiscal += closure.counters.non_fiscal;
    }
    CheckCount(Fact::kNonFiscal, sums.non_fiscal);
    // One that the start has cancelled counts too, but where nothing was sold on it.
    const auto& cut = device.cut_off();
    const bool unpaid = cut && !cut->registered;
    const bool other = unpaid && cut->kind == InterruptedKind::kNonFiscal;
    const bool cancelled = unpaid && (!other || report_.open.kind == Report::Open::kCash);
    const bool either = other && report_.calling && report_.open.kind == Report::Open::kNone;
    CheckCount(Fact::kAbandoned, sums.abandoned, cancelled ? 1 : 0, either);
  }

  // The document that was open when the host ended.
  void CheckCutOff(const VirtualRegister& device) {
    if (report_.calling || report_.power_cut || report_.unknown) return;
    const auto& cut = device.cut_off();
    const bool open = report_.open.kind != Report::Open::kNone;
    if (cut.has_value() != open) {
      report_.Wrong("file: %s", open ? "the open document is gone" : "a document is open");
    } else if (report_.open.kind == Report::Open::kReceipt &&
               (cut->registered || cut->subtotal != report_.open.subtotal)) {
      report_.Wrong("file: the open document comes to %lld, not %lld",
                    static_cast<long long>(cut->subtotal),
                    static_cast<long long>(report_.open.subtotal));
    }
  }

  // What counts as sent lies in the outbox, whole.
  void CheckSending(const RegisterStore& store) {
    int waiting = 0;
    for (const Closure& closure : store.closures()) {
      if (!closure.sent) {
        ++waiting;
        continue;
      }
      char name[64];
      std::snprintf(name, sizeof name, "corrispettivi_%04d.xml", closure.number);
      std::ifstream file(folder_ + kOutboxName + name, std::ios::binary);
      const std::string text(std::istreambuf_iterator<char>(file), {});
      const std::string end = "</n1:DatiCorrispettivi>\n";
      if (text.size() < end.size() ||
          text.compare(text.size() - end.size(), end.size(), end) != 0) {
        report_.Wrong("file: summary %d counts as sent, and %s", closure.number,
                      text.empty() ? "is not there" : "is not whole");
      }
    }
    if (waiting != store.pending_closures()) {
      report_.Wrong("file: %d summaries wait, counted %d", waiting, store.pending_closures());
    }
  }

  void SellOnce(VirtualRegister& device) {
    const int64_t before = device.store().document_count();
    if (device.BeginFiscalReceipt(true) != RTF_SUCCESS ||
        device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "") != RTF_SUCCESS ||
        device.PrintRecTotalEx(0, "0", true) != RTF_SUCCESS ||
        device.store().document_count() != before + 1) {
      report_.Wrong("file: the next sale is refused (%s)", device.last_failure().c_str());
    }
  }

  // Behind a sale that shows the trailer.
  void CheckProgramming(const VirtualRegister& device) {
    for (int number = 0; number < kProgrammedCount; ++number) {
      const auto what = static_cast<Programmed>(number);
      // The rows of a transfer are waited for at its end.
      const bool article = what == kFirstArticle || what == kSecondArticle;
      if (article && report_.power_cut && !report_.transfer_closed) continue;
      bool there = IsProgrammed(device, what);
      if (what == kTrailer) {
        there = false;
        const size_t first = device.first_line() - device.paper().dropped();
        for (size_t line = first; line < device.paper_lines().size(); ++line) {
          if (device.paper_lines()[line].find(kNewTrailer) != std::string::npos) there = true;
        }
      }
      const bool answered = Answered(Fact::kProgrammed, number) > 0;
      if (there != answered && !MayBe({Fact::kProgrammed, number})) {
        report_.Wrong("file: programming %d: answered %d, stored %d", number, answered, there);
      }
    }
  }

  const std::string& folder_;
  Report& report_;
};

}  // namespace

void CheckFile(const std::string& folder, Report* report) {
  if (!std::filesystem::exists(folder + kRegisterName)) {
    if (report->fact_count > 0) report->Wrong("file: it is gone");
    return;
  }
  try {
    Checker(folder, report).CheckAll();
  } catch (const std::exception& error) {
    report->Wrong("file: %s", error.what());
  }
}

}  // namespace lorimat
