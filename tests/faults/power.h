// What a disk holds when the power goes: of each file what was waited for by fsync, under the names
// that its folder had when that was waited for. All else is gone. It is the worst that may happen;
// a real disk may have got further.
#pragma once

#include <string>

namespace lorimat::power {

// From now on the folder and the folders in it are watched, and what they hold is on the disk.
// `disk` is an empty folder of another place, where that is kept.
void Watch(const std::string& folder, const std::string& disk);

// Makes the folder what the disk holds; by another process, when the first one is dead.
void Cut(const std::string& folder, const std::string& disk);

}  // namespace lorimat::power
