// What the surroundings of a conversation ask of a platform.
#pragma once

#include <string>

namespace conversation {

// Makes a new folder; its path. Throws Failure where that fails.
std::string MakeTemporaryFolder();

// Another descriptor of the same stream, which programs that are started do not inherit.
int DuplicateOf(int fd);
// A new file that is gone when it is closed; nothing in it is translated. Throws Failure where
// that fails.
int OpenScratchFile();
// All that is in the file of a descriptor, whose position stays.
std::string WholeFile(int fd);
// How many files, sockets and the like are open in the process; 0 where that is not to be seen.
int OpenDescriptors();
// Where a sanitizer writes what it finds.
void SendReportsTo(int fd);

}  // namespace conversation
