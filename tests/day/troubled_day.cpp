#include "day/troubled_day.h"

#include <exception>
#include <string_view>
#include <utility>

#include "register/fault/faults.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr int kAnyCode = 4711;

}  // namespace

std::string DescribeStep(const DayStep& step) {
  if (step.restart) return "restart";
  std::string text =
      "+" + std::to_string(step.minutes) + "' operation " + std::to_string(step.operation) + " (";
  for (const char c : step.values) text += std::to_string(static_cast<uint8_t>(c)) + " ";
  text += ")";
  if (step.trouble.kind != TroubleKind::kNone) {
    text += std::string(" ") + NameOf(step.trouble.kind) + " at " +
            std::to_string(step.trouble.place) + (step.trouble.lasting ? " and on" : "");
  }
  return text;
}

TroubledDay::TroubledDay(const std::string& file, FailingDisk* disk, Counts* counts)
    : file_(file), disk_(disk), counts_(*counts) {
  if (disk_ != nullptr) HealAll(*disk_);
  day_minutes = 600;
  Start();
}

TroubledDay::Stored TroubledDay::StoredNow() const {
  const RegisterStore& store = device_->store();
  return {store.document_count(), store.grand_total(), store.day().ToRecord(),
          store.last_closure()};
}

bool TroubledDay::Wrong(const std::string& what) {
  if (wrong_.empty()) wrong_ = what;
  return false;
}

bool TroubledDay::Start() {
  try {
    device_ = std::make_unique<VirtualRegister>(DaySettings(file_));
  } catch (const std::exception& error) {
    return Wrong(std::string("it does not start: ") + error.what());
  }
  return true;
}

bool TroubledDay::StartAgain(const Stored& expected) {
  ++counts_.restarts;
  if (!Start()) return false;
  const Stored now = StoredNow();
  if (!(now == expected)) {
    // Stored as a whole, and once.
    const bool once = now.documents + now.closure == expected.documents + expected.closure + 1;
    if (!unknown_ || !once) return Wrong("a start finds something else than was answered");
    ++counts_.unknown_stored;
    documents_ += now.documents - expected.documents;
  }
  unknown_ = false;
  in_journal_ = false;
  if (device_->printer_state() != RTF_FPTR_PS_MONITOR) return Wrong("a start is not ready");
  return true;
}

bool TroubledDay::Restart() {
  if (file_.empty()) return true;
  const Stored expected = StoredNow();
  device_.reset();
  return StartAgain(expected);
}

bool TroubledDay::End() {
  if (!wrong_.empty()) return false;
  if (!Restart()) return false;
  const std::string sums = WrongSums(device_->store());
  if (!sums.empty()) return Wrong(sums);
  const uint64_t entries = device_->store().journal_count();
  if (device_->store().document_count() != documents_) {
    return Wrong("there are other documents than were answered");
  }
  if (entries < least_entries_) return Wrong("the journal has fewer entries than were answered");
  if (file_.empty()) return true;
  device_.reset();
  const std::string journal = WrongJournal(file_, documents_, entries);
  return journal.empty() || Wrong(journal);
}

int TroubledDay::OrderFault(const Trouble& trouble) {
  if (trouble.kind != TroubleKind::kOrdered) return RTF_SUCCESS;
  const auto kinds = FaultKinds();
  const size_t which = static_cast<size_t>(trouble.place) % (kinds.size() + 1);
  Fault fault;
  if (which < kinds.size()) {
    fault.name = kinds[which].name;
  } else {
    fault.name = kCodeFault;
    fault.code = kAnyCode;
  }
  device_->AddFault(fault);
  return device_->faults().faults().front().code;
}

bool TroubledDay::Do(const DayStep& step) {
  if (!wrong_.empty()) return false;
  ++counts_.steps;
  values_used_ = 0;
  if (step.restart) return Restart();
  day_minutes += step.minutes;
  refused_surely_ = false;
  if (!Once(step)) return false;
  if (!refused_surely_) return true;
  ++counts_.tried_again;
  DayStep untroubled = step;
  untroubled.trouble = {};
  return Once(untroubled);
}

bool TroubledDay::Once(const DayStep& step) {
  InputNumbers values(step.values);
  const int fault_code = OrderFault(step.trouble);
  const Stored before = StoredNow();
  const std::string facts = RegisterFacts(*device_);
  const int state_before = device_->printer_state();
  const int abandoned_before = device_->store().counters().abandoned;
  if (disk_ != nullptr) Arm(*disk_, step.trouble);
  const int answer = OperateDay(*device_, step.operation, values);
  values_used_ = values.used();
  bool struck = disk_ != nullptr && HasStruck(*disk_, step.trouble);
  const bool dies = struck && step.trouble.ends_the_process() && !file_.empty();
  if (disk_ != nullptr && !dies) HealAll(*disk_);
  bool lost = false;
  if (step.trouble.kind == TroubleKind::kOrdered) {
    struck = device_->faults().empty() && answer == fault_code;
    lost = struck && fault_code == RTF_E_TIMEOUT && RegisterFacts(*device_) != facts;
    device_->ClearFaults();
  }
  if (struck) ++counts_.struck[static_cast<int>(step.trouble.kind)];

  const bool doubtful = struck && answer == RTF_E_FAILURE && device_->failure().doubtful;
  if (doubtful) {
    ++counts_.unknown;
    unknown_ = true;
  }
  if (answer == RTF_SUCCESS || lost) {
    if (lost) ++counts_.lost_answers;
    if (!CheckDone(step, before, state_before, abandoned_before)) return false;
  } else {
    ++counts_.refused;
    if (RegisterFacts(*device_) != facts) return Wrong("what is refused changes something");
    refused_surely_ = struck && !doubtful && !dies;
  }
  if (!dies) return true;
  const Stored expected = StoredNow();
  device_.reset();
  HealAll(*disk_);
  return StartAgain(expected);
}

bool TroubledDay::CheckDone(const DayStep& step, const Stored& before, int state_before,
                            int abandoned_before) {
  ++counts_.done;
  const Stored now = StoredNow();
  const int64_t more = now.documents - before.documents;
  if (more != 0 && more != 1) return Wrong("an answer of 0 is more than one document");
  const bool pays_all = step.operation >= kDayPayRest && step.operation < kDayPay;
  const bool in_receipt = state_before == RTF_FPTR_PS_FISCAL_RECEIPT ||
                          state_before == RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
  if (pays_all && in_receipt && more == 0 && !device_->training()) {
    return Wrong("a receipt that is paid is no document");
  }
  documents_ += more;
  counts_.documents += more;
  if (more != 0 || now.closure != before.closure) unknown_ = false;

  least_entries_ += static_cast<uint64_t>(more + now.closure - before.closure);
  const int abandoned = device_->store().counters().abandoned;
  if (now.closure == before.closure && abandoned > abandoned_before) ++least_entries_;
  if (step.operation == kDayBeginNonFiscal) {
    InputNumbers values(step.values);
    values.Small(4);
    in_journal_ = values.Small(2) == 0 && !device_->training();
  }
  if (step.operation == kDayEndNonFiscal && in_journal_) ++least_entries_;
  return true;
}

}  // namespace lorimat
