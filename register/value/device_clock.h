// Times of the device's clock: local, without a zone, to the second.
#pragma once

#include <cstdint>
#include <ctime>

namespace lorimat {

// What the computer's clock shows here.
std::tm ComputerTime();

// Seconds from one time to another. Fields outside their ranges carry over.
int64_t SecondsBetween(const std::tm& from, const std::tm& to);

// A time some seconds later, or earlier for a number below 0; as it is for 0.
std::tm LaterBy(const std::tm& time, int64_t seconds);

}  // namespace lorimat
