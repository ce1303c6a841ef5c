// What strikes an operation of a day that chance makes: the disk, the memory, a fault that a host
// orders, the end of the process or of the computer.
#pragma once

#include <cstdint>

#include "unit/register/failing_disk.h"

namespace lorimat {

enum class TroubleKind : uint8_t {
  kNone,
  kDiskFull,      // a write finds no room, once or for all of the operation
  kDiskWrite,     // a write fails
  kDiskHalf,      // half of it gets through
  kDiskSync,      // what was written is not waited for
  kDiskUncut,     // nor can the file be cut then: nobody knows what stands
  kDiskGone,      // from then on nothing gets through
  kMemory,        // there is none
  kOrdered,       // a fault of register/fault
  kKilled,        // the process ends in a write
  kKilledAtSync,  // or when all is written, and not waited for
  kPowerCut,      // and the computer with it
  kCount,
};
inline constexpr int kTroubleKinds = static_cast<int>(TroubleKind::kCount);
const char* NameOf(TroubleKind kind);

struct Trouble {
  TroubleKind kind = TroubleKind::kNone;
  int place = 1;  // of the write, sync or allocation; of an ordered fault its kind
  bool lasting = false;

  bool ends_the_process() const {
    return kind == TroubleKind::kKilled || kind == TroubleKind::kKilledAtSync ||
           kind == TroubleKind::kPowerCut;
  }
};

// Makes it strike from now on, if it is of the disk or the memory; and makes all work again.
void Arm(FailingDisk& disk, const Trouble& trouble);
void HealAll(FailingDisk& disk);
// Whether what was armed last has struck.
bool HasStruck(const FailingDisk& disk, const Trouble& trouble);

}  // namespace lorimat
