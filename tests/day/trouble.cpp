#include "day/trouble.h"

#include "unit/register/failing_memory.h"

namespace lorimat {
namespace {

struct Row {
  const char* name;
  FailingDisk::Fault fault;  // of those of the disk
};
constexpr Row kRows[kTroubleKinds] = {
    {"none", {}},
    {"disk full", FailingDisk::Fault::kFull},
    {"write fails", FailingDisk::Fault::kWrite},
    {"half a write", FailingDisk::Fault::kHalf},
    {"sync fails", FailingDisk::Fault::kSync},
    {"sync fails, file uncut", FailingDisk::Fault::kUncut},
    {"disk gone", FailingDisk::Fault::kGone},
    {"no memory", {}},
    {"ordered fault", {}},
    {"killed", FailingDisk::Fault::kDead},
    {"killed at a sync", FailingDisk::Fault::kGone},
    {"power cut", FailingDisk::Fault::kPower},
};

bool IsOfDisk(TroubleKind kind) {
  return kind != TroubleKind::kNone && kind != TroubleKind::kMemory &&
         kind != TroubleKind::kOrdered;
}

}  // namespace

const char* NameOf(TroubleKind kind) { return kRows[static_cast<int>(kind)].name; }

void Arm(FailingDisk& disk, const Trouble& trouble) {
  if (trouble.kind == TroubleKind::kMemory) {
    FailingMemory::FailAt(trouble.place, trouble.lasting ? FailingMemory::kForGood : 1);
  } else if (IsOfDisk(trouble.kind)) {
    disk.FailAt(kRows[static_cast<int>(trouble.kind)].fault, trouble.place, trouble.lasting);
  }
}

void HealAll(FailingDisk& disk) {
  FailingMemory::Heal();
  disk.Heal();
}

bool HasStruck(const FailingDisk& disk, const Trouble& trouble) {
  if (trouble.kind == TroubleKind::kMemory) return FailingMemory::failed();
  return IsOfDisk(trouble.kind) && disk.failed();
}

}  // namespace lorimat
