// Register files with many receipts, made in seconds: one day is sold and closed by the register
// itself, and its rows are copied for the other days.
#pragma once

#include <cstdint>
#include <string>

#include "register/value/settings.h"

// The receipts of each day.
inline constexpr int kReceiptsOfADay = 1000;

// A file in a temporary folder that goes with the object.
class StoredRegister {
 public:
  // One day. Ends the program when the file cannot be made.
  StoredRegister();
  // As many days like that as it takes: `receipts` is a multiple of kReceiptsOfADay.
  StoredRegister(const StoredRegister& day, int64_t receipts);
  ~StoredRegister();
  StoredRegister(const StoredRegister&) = delete;
  StoredRegister& operator=(const StoredRegister&) = delete;

  int64_t receipts() const { return receipts_; }
  int64_t days() const { return receipts_ / kReceiptsOfADay; }
  const std::string& file() const { return file_; }
  // For a register on the file, on the day behind the last one.
  lorimat::RegisterSettings settings() const;

 private:
  void MakeFolder();
  // Whether the file holds so many documents, and their sums.
  void Check() const;

  int64_t receipts_;
  std::string folder_;
  std::string file_;
};
