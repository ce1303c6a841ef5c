// The command line that the programs of loops share.
#pragma once

#include <string>
#include <vector>

namespace lorimat {

struct LoopOptions {
  long places = 20000;   // 0: all
  long seed = 0;         // of the choice of places, where they are spread
  long only = 0;         // this place of each row alone
  int jobs = 1;          // at a time
  std::string folder;    // for the files of the tests: memory, where there is a folder of it
  std::string failures;  // file for all that was found
  std::vector<std::string> names;
};

// Ends the program when it is called wrongly.
LoopOptions ReadLoopOptions(int argc, char** argv);

}  // namespace lorimat
