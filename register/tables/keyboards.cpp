#include "register/tables/keyboards.h"

#include <algorithm>
#include <utility>

#include "pal/peripherals/keyboard/functioncode.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

using F = FunctionCode;

// A run of keys as they leave the factory.
struct KeyRun {
  uint8_t first;
  uint8_t last;
};

constexpr KeyRun kFunctions[] = {
    {F::kClear, F::kKey},                     // digits, separator and lock too: positions 1 to 15
    {F::kMultiplier, F::kMultiplier},         // 16
    {F::kAmount, F::kAmount},                 // 17
    {F::kPlu, F::kPlu},                       // 18
    {F::kDepartment, F::kDepartment},         // 19
    {F::kRefund, F::kCancel},                 // 20, 21
    {F::kVoidItem, F::kVoidItem},             // 22
    {F::kPercentageA, F::kAbsoluteIncrease},  // 23 to 26
    {F::kSubtotal, F::kDrawer},               // 27, 28
    {F::kOperator, F::kOperator},             // 29
    {F::kDescription, F::kDescription},       // 30
    {F::kInvoice, F::kInvoice},               // 31
    {F::kTaxCode, F::kTaxCode},               // 32
    {F::kLotteryCode, F::kLotteryCode},       // 33
    {F::kConfirm, F::kConfirm},               // 34
    {F::kTotal, F::kTicket},                  // 35 to 38
    {F::kCreditCard, F::kCreditCard},         // 39
    {F::kPaperFeed, F::kPaperFeed},           // 40
};

struct Model {
  const char* name;
  size_t keys;
  // What follows the functions; the rest of the keys is empty.
  KeyRun departments;
  KeyRun subtenders;  // last 0 for none
};

constexpr Model kModels[] = {
    {"INTERNA", 60, {F::kDepartment01, F::kDepartment20}, {0, 0}},
    {"ESTERNA", 120, {F::kDepartment01, F::kLastDepartment}, {F::kSubTender01, F::kLastSubTender}},
    {"COMPATTA", 48, {F::kDepartment01, F::kDepartment05}, {0, 0}},
};

// The codes that a key may have: those that FunctionCode names.
constexpr KeyRun kCodes[] = {
    {F::kClear, F::kAlpha},
    {F::kDepartment, F::kLastTotal},
    {F::kTotal, F::kRecallOperator},
    {F::kDepartment01, F::kLastDepartment},
    {F::kSubTender01, F::kMenuChip},
    {F::kCopyReceipt, F::kVariant},
    {F::kWeight, F::kTare},
    {F::kVoucher, F::kLotteryCode},
    {F::kGrossSubtotal, F::kCheckBanknote},
    {F::kBuoniMonouso, F::kBuoniMonouso},
    {F::kOpenTransaction, F::kCloudMenu},
    {F::kOpenCancelDoc, F::kOpenCancelDoc},
    {F::kLetterA, F::kLetterI},
    {F::kMacro01, F::kLetterZ},
    {F::kPaperFeed, F::kStopPaperFeed},
    {F::kMenu, F::kNull},
};

bool IsCode(uint8_t code) {
  return std::any_of(std::begin(kCodes), std::end(kCodes),
                     [code](const KeyRun& run) { return code >= run.first && code <= run.last; });
}

bool IsMacroKey(uint8_t code) { return code >= F::kMacro01 && code <= F::kMacro20; }

// Clear, the digits up to the double zero and the lock keep their places: a till without them
// could not be served.
bool IsFixed(uint8_t code) { return code <= F::kNumber00 || code == F::kKey; }

void Add(std::vector<ProgrammedKey>* keys, const KeyRun& run) {
  for (int code = run.first; code <= run.last; ++code) {
    keys->push_back({static_cast<uint8_t>(code)});
  }
}

template <typename Entry>
std::string List(Entry entry) {
  std::string list;
  for (size_t number = 0; number < std::size(kModels); ++number) {
    if (number > 0) list += ',';
    list += entry(number);
  }
  return list;
}

}  // namespace

Keyboards::Keyboards() {
  static const auto factory = [] {
    std::vector<std::vector<ProgrammedKey>> keyboards;
    for (const Model& model : kModels) {
      std::vector<ProgrammedKey> keys;
      for (const KeyRun& run : kFunctions) Add(&keys, run);
      Add(&keys, model.departments);
      if (model.subtenders.last != 0) Add(&keys, model.subtenders);
      keys.resize(model.keys, {F::kEmpty});
      keyboards.push_back(std::move(keys));
    }
    return std::make_shared<std::vector<std::vector<ProgrammedKey>>>(std::move(keyboards));
  }();
  keys_ = factory;
}

std::string Keyboards::Types() {
  return List([](size_t number) { return std::to_string(number); });
}

std::string Keyboards::Names() {
  return List([](size_t number) { return kModels[number].name; });
}

std::string Keyboards::KeyCounts() {
  return List([](size_t number) { return std::to_string(kModels[number].keys); });
}

const ProgrammedKey* Keyboards::Find(int keyboard, int position) const {
  if (keyboard < 0 || static_cast<size_t>(keyboard) >= keys_->size()) return nullptr;
  const std::vector<ProgrammedKey>& keys = (*keys_)[static_cast<size_t>(keyboard)];
  if (position < 1 || static_cast<size_t>(position) > keys.size()) return nullptr;
  return &keys[static_cast<size_t>(position) - 1];
}

int Keyboards::Program(int keyboard, int position, ProgrammedKey key) {
  const ProgrammedKey* old = Find(keyboard, position);
  if (old == nullptr) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kKeyPlace, {position});
  }
  if (!IsCode(key.code)) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kKeyCode, {key.code});
  }
  if (key.code != old->code && (IsFixed(key.code) || IsFixed(old->code))) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kFixedKey,
                  {IsFixed(key.code) ? key.code : old->code});
  }
  if (key.macro.size() > kMacroSize) {
    return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kMacro,
                       {static_cast<int64_t>(key.macro.size()), kMacroSize});
  }
  if (!key.macro.empty() && !IsMacroKey(key.code)) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kNoMacroKey, {key.code});
  }
  for (const char c : key.macro) {
    const uint8_t code = static_cast<uint8_t>(c);
    if (!IsCode(code) || IsMacroKey(code)) {
      return Refuse(RTF_E_ILLEGAL, RefusalCause::kMacroKey, {code});
    }
  }
  if (keys_.use_count() > 1) {
    keys_ = std::make_shared<std::vector<std::vector<ProgrammedKey>>>(*keys_);
  }
  (*keys_)[static_cast<size_t>(keyboard)][static_cast<size_t>(position) - 1] = std::move(key);
  return RTF_SUCCESS;
}

const ProgrammedKey* Keyboards::FindMacro(uint8_t code) const {
  if (!IsMacroKey(code)) return nullptr;
  for (const std::vector<ProgrammedKey>& keys : *keys_) {
    for (const ProgrammedKey& key : keys) {
      if (key.code == code && !key.macro.empty()) return &key;
    }
  }
  return nullptr;
}

void Keyboards::ForEachChange(
    const Keyboards& before,
    const std::function<void(int keyboard, int position, const ProgrammedKey& key)>& each) const {
  if (keys_ == before.keys_) return;
  for (size_t keyboard = 0; keyboard < keys_->size(); ++keyboard) {
    const std::vector<ProgrammedKey>& keys = (*keys_)[keyboard];
    for (size_t at = 0; at < keys.size(); ++at) {
      if (keys[at] == (*before.keys_)[keyboard][at]) continue;
      each(static_cast<int>(keyboard), static_cast<int>(at) + 1, keys[at]);
    }
  }
}

}  // namespace lorimat
