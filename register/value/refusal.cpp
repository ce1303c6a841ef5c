#include "register/value/refusal.h"

#include <algorithm>

namespace lorimat {
namespace {

// One register has one operation at a time, and a thread is at one.
thread_local RefusalNote::Operation* at_work = nullptr;

Refusal MakeRefusal(int code, RefusalCause cause, std::string_view text) noexcept {
  Refusal refusal;
  refusal.code = code;
  refusal.cause = cause;
  refusal.cut = text.size() > Refusal::kTextSize;
  text = text.substr(0, Refusal::kTextSize);
  std::copy(text.begin(), text.end(), refusal.characters.begin());
  refusal.size = static_cast<uint8_t>(text.size());
  return refusal;
}

}  // namespace

RefusalNote::Operation::Operation(RefusalNote& note) noexcept : note_(note), outer_(at_work) {
  at_work = this;
}

RefusalNote::Operation::~Operation() { at_work = outer_; }

void RefusalNote::Operation::End(int code) noexcept {
  if (code == 0) return;
  if (latest_.code == code) {
    note_.last_ = latest_;
  } else {
    const bool by_key = latest_.by_key;
    note_.last_ = Refusal{};
    note_.last_.code = code;
    note_.last_.by_key = by_key;
  }
  ++note_.count_;
}

int Refuse(int code, RefusalCause cause, std::initializer_list<int64_t> numbers,
           std::string_view text) noexcept {
  if (at_work == nullptr) return code;
  at_work->latest_ = MakeRefusal(code, cause, text);
  const size_t count = std::min(numbers.size(), Refusal::kNumbers);
  std::copy_n(numbers.begin(), count, at_work->latest_.numbers.begin());
  return code;
}

int RefuseValue(int code, RefusalCause cause, Subject subject,
                std::initializer_list<int64_t> numbers, std::string_view text) noexcept {
  std::array<int64_t, Refusal::kNumbers - 1> values{};
  std::copy_n(numbers.begin(), std::min(numbers.size(), values.size()), values.begin());
  return Refuse(code, cause,
                {static_cast<int64_t>(subject), values[0], values[1], values[2], values[3]}, text);
}

void KeepRefusal(int code) noexcept {
  if (at_work == nullptr) return;
  at_work->latest_.by_key = true;
  at_work->End(code);
  at_work->latest_ = Refusal{};
}

}  // namespace lorimat
