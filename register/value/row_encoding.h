// Numbers and texts in a row as one text, and back: what the register stores in a single column,
// and what the digest of a journal entry is taken over. A number is its decimal digits and a
// blank ("-12 "), a text its length, a colon, its bytes and a blank ("3:abc "): no two rows of
// values make the same text, whatever bytes they hold.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>

namespace lorimat {

class RowEncoder {
 public:
  RowEncoder& Number(int64_t number);
  RowEncoder& Text(std::string_view text);

  const std::string& text() const { return text_; }
  std::string Take() { return std::move(text_); }

 private:
  std::string text_;
};

// Reads what RowEncoder wrote. Behind the first fault every number is 0 and every text empty.
class RowDecoder {
 public:
  explicit RowDecoder(std::string_view text) : rest_(text) {}

  int64_t Number();
  // A number that fits an int; another is a fault.
  int Int();
  // Holds as long as the text that is read.
  std::string_view Text();

  bool good() const { return good_; }
  // Whether all has been read, without a fault.
  bool done() const { return good_ && rest_.empty(); }

 private:
  bool TakeNumber(char end, int64_t* number);

  std::string_view rest_;
  bool good_ = true;
};

// A time as a number that sorts like it and reads as YYYYMMDDHHMMSS, and back. The fields that a
// calendar has are kept; a day of the week is worked out by nobody.
int64_t TimeNumber(const std::tm& time);
std::tm NumberTime(int64_t number);

}  // namespace lorimat
