// What a program of the tests did, told for the table at the end of script/test.
#pragma once

#include <cstdio>

// Prints the line "COUNT name value goal". The value is what was really done, never what was asked
// for; below the goal the run of script/test fails. Lines of the same name are added up, so that a
// test that is dealt out over processes has one row. The name has no blank. docs/testing.md tells
// of the line, and the names stand in script/counts.py.
inline void PrintCount(const char* name, unsigned long long value, unsigned long long goal) {
  // On a line of its own, whatever was printed ahead of it.
  std::printf("\nCOUNT %s %llu %llu\n", name, value, goal);
  std::fflush(stdout);
}
