#include "door/job/result_code.h"

#include <algorithm>
#include <iterator>

#include "rpccommon/services/rtfconst.h"

namespace lorimat::door {
namespace {

// It says that it refuses, and has done nothing.
constexpr int kRefusals[] = {RTF_E_ILLEGAL, RTF_E_NOEXIST, RTF_E_EXISTS};

// The first of the device's own codes that is a state of it, for which it refuses.
constexpr int kFirstOfState = 200;

// Classes of codes of the translator that come from the device: those that are no state of it, and
// those that are.
constexpr long kInputOutput = 512;
constexpr long kCritical = 1024;

}  // namespace

bool IsRefusal(int result) {
  return std::find(std::begin(kRefusals), std::end(kRefusals), result) != std::end(kRefusals);
}

bool IsUnclearResult(int result) {
  return result != RTF_SUCCESS && result < kFirstOfState && !IsRefusal(result);
}

long CodeOf(int result) { return result | (result < kFirstOfState ? kInputOutput : kCritical); }

bool IsUnclear(long code) {
  if ((code & kInputOutput) == 0) return false;
  // The class stands above the device's own code.
  return !IsRefusal(static_cast<int>(code & 0xFF));
}

}  // namespace lorimat::door
