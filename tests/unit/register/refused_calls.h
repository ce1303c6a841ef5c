// Refused calls as rows: what is called, the code, the cause and its numbers.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "register/value/refusal.h"
#include "unit/register/register_fixture.h"

namespace lorimat {

using RefusalNumbers = std::vector<int64_t>;

struct RefusedCall {
  const char* name;
  std::function<int(VirtualRegister&)> call;
  int code;
  RefusalCause cause;
  RefusalNumbers numbers = {};
  std::string text = {};
};

inline int64_t Of(Subject subject) { return static_cast<int64_t>(subject); }
inline int64_t Of(PrinterState state) { return static_cast<int64_t>(state); }
inline int64_t Of(Operation operation) { return static_cast<int64_t>(operation); }

inline void Check(VirtualRegister& r, const std::vector<RefusedCall>& cases) {
  for (const RefusedCall& one : cases) {
    const uint64_t before = r.refusal_count();
    EXPECT_EQ(one.call(r), one.code) << one.name;
    const Refusal& refusal = r.last_refusal();
    EXPECT_EQ(r.refusal_count(), before + 1) << one.name;
    EXPECT_EQ(static_cast<int>(refusal.cause), static_cast<int>(one.cause)) << one.name;
    EXPECT_EQ(refusal.code, one.code) << one.name;
    RefusalNumbers numbers = one.numbers;
    numbers.resize(Refusal::kNumbers);
    EXPECT_EQ(RefusalNumbers(refusal.numbers.begin(), refusal.numbers.end()), numbers) << one.name;
    EXPECT_EQ(refusal.text(), one.text) << one.name;
  }
}

}  // namespace lorimat
