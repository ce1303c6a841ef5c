// The place where a fault strikes: the n-th allocation, or the n-th system call of a kind on a file
// of the test, counted over the calls that a register makes. strike.cpp stands in for the
// functions of the C library by its own of the same names, for the whole program and every library
// in it.
#pragma once

namespace lorimat::strike {

enum Kind {
  kMemory,    // malloc and its kin, operator new and SQLite's memory with them
  kWrite,     // write, and room that is asked for ahead
  kSync,      // fsync, fdatasync
  kOpen,      // open, also of a folder
  kRead,      // read
  kTruncate,  // ftruncate, truncate
  kName,      // rename, link, unlink, a new folder
  kMap,       // mmap of a file
  kKinds,
};

inline constexpr long kForGood = __LONG_MAX__;

struct Place {
  Kind kind = kMemory;
  long first = 0;            // from 1; 0 strikes nothing
  long run = 1;              // so many in a row
  bool half = false;         // a write or read gets half of it through first
  bool kill = false;         // the process dies there, behind the half
  bool disk = false;         // with it all that stores: no write, sync or truncation gets through
  int error = 0;             // errno; 0 takes what is likely for the kind
  bool behind_open = false;  // memory is counted from the first file of the test that is opened on
  bool cut = false;          // with `half`: the rest is not refused, the call is merely short
};

// What a file system is like, for as long as it is set.
struct Nature {
  bool read_only = false;  // EROFS
  bool full = false;       // ENOSPC for all that is written
  bool no_locks = false;   // ENOLCK and EOPNOTSUPP
  bool one_case = false;   // names that differ by case are one
};
void SetNature(const Nature& nature);

// Counts from the beginning again, and strikes at the place. `folder` holds the test's files,
// with its '/' at the end; it has to last.
void Arm(const Place& place, const char* folder);
// Nothing fails any more.
void Heal();
// Only between these two anything is counted or fails.
void Resume();
void Pause();

// Is called behind each fsync that succeeded, at whichever time.
void OnSync(void (*synced)(int descriptor));

// Of a kind, since Arm.
long Count(Kind kind);
// How many have failed since Arm.
long Failed();
// Whether the fault is past: it struck as often as it was to, or was healed.
bool Past();

}  // namespace lorimat::strike
