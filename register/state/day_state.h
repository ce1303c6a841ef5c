// What is to be told of a register's day at a moment.
#pragma once

#include <cstdint>
#include <optional>

namespace lorimat {

// Dates on which nothing was registered, both ends included; numbers that read as YYYYMMDDHHMMSS,
// at midnight.
struct IdleDates {
  int64_t from = 0;
  int64_t to = 0;

  bool operator==(const IdleDates&) const = default;
};

struct DayNotice {
  // The first document of the day that is open, when it is of an earlier date than the clock's.
  std::optional<int64_t> opened = {};
  // Since the last closing, when no day is open.
  std::optional<IdleDates> idle = {};
  // How many the day and the memory still take, from RegisterStore::kToldAhead on.
  std::optional<int> documents_left = {};
  std::optional<int> closings_left = {};

  bool operator==(const DayNotice&) const = default;
};

}  // namespace lorimat
