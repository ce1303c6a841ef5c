// Days with troubles, in which the disk or the memory fails, a host orders faults, the process is
// killed or the power goes:
//
// - the documents in the file are those that were answered with 0, no more and no fewer;
// - any other answer changed nothing: no document, no sum, no paper, no entry;
// - what was refused for certain and is tried again is done once;
// - the journal is good, and has an entry for each answer of 0 that makes one;
// - where the register says that an outcome is unknown, it is stored whole and once, or not at all.
#include <filesystem>

#include "properties/day_generators.h"
#include "support/temporary_folder.h"

namespace lorimat {
namespace {

TEST(DayProperty, WhatWasAnsweredIsStoredAndNothingElse) {
  const PropertyRun run = RunOf(400);
  Seen seen("troubled days");
  const std::filesystem::path folder = MakeTemporaryFolder();
  Holds(run, [&] {
    const Day day = *Days(40, 15);
    const std::string file = (folder / "register").string();
    for (const char* beside : {"", "-wal", "-shm", "-journal"}) {
      std::filesystem::remove(file + beside);
    }
    FailingDisk disk;
    FailingDisk::Remember();
    TroubledDay::Counts counts;
    {
      TroubledDay life(file, &disk, &counts);
      for (const DayStep& step : day) {
        if (!life.Do(step)) RC_FAIL(life.wrong() + ": " + DescribeStep(step));
      }
      if (!life.End()) RC_FAIL(life.wrong());
    }
    AddCounts(counts, &seen);
  });
  std::filesystem::remove_all(folder);
  seen.Require(run, {{"documents", 500},
                     {"refused", 500},
                     {"restarts", 300},
                     {"struck: disk full", 50},
                     {"struck: write fails", 50},
                     {"struck: half a write", 50},
                     {"struck: sync fails", 20},
                     {"struck: sync fails, file uncut", 20},
                     {"struck: disk gone", 20},
                     {"struck: no memory", 50},
                     {"struck: ordered fault", 50},
                     {"struck: killed", 50},
                     {"struck: killed at a sync", 10},
                     {"struck: power cut", 50},
                     {"answers that got lost", 5},
                     {"unknown outcomes", 10},
                     {"unknown outcomes that were stored", 1},
                     {"tried again", 100}});
}

}  // namespace
}  // namespace lorimat
