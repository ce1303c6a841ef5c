// The virtual register as a sequence of operations, with troubles of disk, memory, process and
// power among them: what holds of it is looked at behind each. An answer of 0 is stored, any other
// changes nothing. The input: a byte for the minutes that pass, an operation's byte, and the bytes
// that it takes. A byte of 200 to 249 in the operation's place brings trouble: its kind, its place
// and whether it lasts come behind it, and then the operation; one of 250 on starts the register
// again.
#include "day/troubled_day.h"
#include "fuzz/scratch.h"

namespace {

using lorimat::InputNumbers;

constexpr int kMostOperations = 60;
constexpr uint8_t kTrouble = 200;
constexpr uint8_t kRestart = 250;

lorimat::Trouble TakeTrouble(InputNumbers& input) {
  lorimat::Trouble trouble;
  trouble.kind = static_cast<lorimat::TroubleKind>(input.Small(lorimat::kTroubleKinds));
  trouble.place = 1 + input.Byte();
  trouble.lasting = input.Small(2) == 1;
  return trouble;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  lorimat::FailingDisk disk;
  lorimat::FailingDisk::Remember();
  lorimat::TroubledDay::Counts counts;
  lorimat::TroubledDay day("register", &disk, &counts);
  size_t place = 0;
  for (int i = 0; i < kMostOperations && place < size; ++i) {
    InputNumbers input(bytes.substr(place));
    lorimat::DayStep step;
    step.minutes = input.Small(4);
    uint8_t which = input.Byte();
    step.restart = which >= kRestart;
    if (which >= kTrouble && !step.restart) {
      step.trouble = TakeTrouble(input);
      which = input.Byte();
    }
    step.operation = which % lorimat::kDayOperations;
    place += input.used();
    if (place < size) step.values = bytes.substr(place);
    if (!day.Do(step)) Fails(day.wrong());
    place += day.values_used();
  }
  if (!day.End()) Fails(day.wrong());
  return 0;
}
