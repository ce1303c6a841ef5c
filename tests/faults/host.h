// A host and its day: documents of all kinds, programming, reports and closings. It looks at what
// becomes of each call: an answer of 0 did what it is for, any other did nothing. A document that
// fails is given up and sold again, as an operator would.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "register/client/virtual_register.h"
#include "report.h"
#include "strike.h"

namespace lorimat {

// The same for whoever opens the register of a test; the folder ends with a '/'.
RegisterSettings ShopSettings(const std::string& folder);
inline constexpr char kRegisterName[] = "shop.register";
inline constexpr char kOutboxName[] = "outbox/";

// What the programming of the day leaves behind.
inline constexpr char kNewHeader[] = "NEGOZIO NUOVO";
inline constexpr char kNewTrailer[] = "GRAZIE E ARRIVEDERCI";
inline constexpr char kNewDepartment[] = "FRUTTA";
inline constexpr int32_t kNewRate = 110000;
bool IsProgrammed(const VirtualRegister& device, Programmed what);

// What can be seen of a register between two calls.
struct Look {
  int state = 0;
  int receipt_lines = 0;
  int64_t receipt_total = 0;
  int64_t receipt_paid = 0;
  int64_t documents = 0;
  int64_t grand_total = 0;
  int number = 0;
  int invoice = 0;
  int closure = 0;
  int pending = 0;
  int non_fiscal = 0;
  int abandoned = 0;
  uint64_t entries = 0;
  size_t paper = 0;
  unsigned programmed = 0;  // a bit for each Programmed; the trailer shows on paper alone

  bool operator==(const Look&) const = default;
  std::string Difference(const Look& other) const;
  // Without what goes with the open document.
  Look Stored() const;
};
Look LookAt(const VirtualRegister& device);

// The translator is to send the lines of this process to the device. Throws std::runtime_error.
void StartTranslator(VirtualRegister* device);

class Host {
 public:
  struct Manners {
    bool dies_at_answer = false;  // of the call in which the fault struck
    // The fault is not healed before the host has given up: it stops there.
    bool ends_struck = false;
    // The answer of one call is lost after it was carried out: what answers so has done its work.
    int lost_code = 0;
    const std::vector<Look>* undisturbed = nullptr;  // behind each call of a day without faults
    // The day is one of lines, sent through the translator (StartTranslator). A line is several
    // calls: one that fails may have done a part of them, and a host finds out by asking.
    bool by_lines = false;
  };

  Host(VirtualRegister& device, std::string folder, Report* report, Manners manners);

  // The day, up to where a fault is past; then some more documents and a closing, which have to
  // succeed. With `to_the_end` the rest of the day comes first.
  void Live(bool to_the_end);
  // Documents and a closing on a register that has had its trouble.
  void LiveOn();
  // Sells and stops in the middle: a document with lines.
  void LiveHalf();
  // Behind each call so far.
  const std::vector<Look>& looks() const { return looks_; }

 private:
  struct Step {
    const char* name;
    bool (Host::*work)();  // false: a call failed
  };
  static const std::vector<Step>& Day();
  static const std::vector<Step>& DayOfLines();

  // A call; true when it did what it is for. `fact` stands once it has.
  template <typename Work>
  bool Call(const char* name, Work&& work, Fact fact = {}) {
    const Look before = Begin(name, fact);
    strike::Resume();
    const int code = work();
    strike::Pause();
    return End(name, code, fact, before);
  }
  Look Begin(const char* name, const Fact& fact);
  bool End(const char* name, int code, const Fact& fact, const Look& before);
  // The same by the keyboard, where a refusal shows in a data item.
  bool Key(const char* digits, const char* text, uint8_t key, Fact fact = {});
  bool Line(int department, int64_t price, int type = 0);
  bool Pay(const char* tender, int64_t amount, Fact fact = {});  // 0: the rest
  // A line, through the translator.
  bool Send(const char* line, Fact fact = {});
  // Whether a line that failed has done what counts of it all the same.
  static bool IsThere(const Fact& fact, const Look& before, const Look& after);
  void CompareDone(const char* name, const Fact& fact, const Look& before, const Look& after);
  void Ask(const char* name);
  // Gives up what is open, so that the next document can begin. False when that is not to be had.
  bool GiveUp();
  bool Do(const Step& step);
  // Behind a failure: whether to try again. Where all goes on failing help comes, or the host
  // ends.
  bool Wait();
  [[noreturn]] void Stop();

  bool Receipt();
  bool KeyedReceipt();
  bool Invoice();
  bool LotteryReceipt();
  bool CreditNote();
  bool WholeVoid();
  bool CashIn();
  bool CashOut();
  bool Cash(int type, int64_t amount);
  bool NonFiscal();
  bool Abandoned();
  bool Header();
  bool Trailer();
  bool Department();
  bool Rates();
  bool Articles();
  bool Reading();
  bool ReadingToFile();
  bool IsWritten(const std::string& file);
  bool Closing();
  bool Journal();
  bool SmallReceipt();
  bool LineReceipt();
  bool LineInvoice();
  bool LineCreditNote();
  bool LineNonFiscal();
  bool LineClosing();

  VirtualRegister& device_;
  const std::string folder_;
  Report& report_;
  const Manners manners_;
  std::vector<Look> looks_;
  const char* step_ = "";
  bool settled_ = false;  // the fact of this step stands
  int failures_ = 0;      // in a row
  int failures_of_step_ = 0;
  int failures_in_peace_ = 0;  // of the step, with nothing that was struck
  int receipt_number_ = 0;
  int keyed_number_ = 0;
  bool moves_cash_ = false;
  // The end of a transfer was not waited for, and nothing has been told of it but its answer.
  bool to_be_told_ = false;
};

}  // namespace lorimat
