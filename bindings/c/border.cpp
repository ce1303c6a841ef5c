#include "bindings/c/border.h"

#include <algorithm>
#include <cstring>

namespace lorimat::c {
namespace {

struct ResultText {
  lorimat_result result;
  const char* text;
};
constexpr ResultText kResultTexts[] = {
    {LORIMAT_OK, "all is well"},
    {LORIMAT_NULL_ARGUMENT, "a pointer is null that must not be"},
    {LORIMAT_TABLE_TOO_SHORT, "a table is too short for its abi"},
    {LORIMAT_OTHER_ABI, "a table was compiled for another abi"},
    {LORIMAT_NO_MEMORY, "there is no memory"},
    {LORIMAT_BAD_VALUE, "an argument has a value that is not allowed"},
    {LORIMAT_REGISTER_FAULT, "the register cannot do it"},
    {LORIMAT_FAILURE, "it failed"},
    {LORIMAT_CALLBACK_THREW, "an exception left a function of the device"},
    {LORIMAT_BUFFER_OVERRUN, "a function of the device wrote behind the room of a text"},
    {LORIMAT_CALLBACK_ENTERED,
     "an operation began while a function of the device was at work: it called the translator, or "
     "a second thread did"},
};

constexpr size_t kErrorSize = 512;
// Of plain bytes: nothing is left to be done when a thread ends or the library goes.
thread_local char last_error[kErrorSize];

}  // namespace

int Fail(lorimat_result result, std::string_view text) noexcept {
  const size_t length = std::min(text.size(), kErrorSize - 1);
  if (length > 0) std::memcpy(last_error, text.data(), length);
  last_error[length] = 0;
  return result;
}

int Fail(lorimat_result result) noexcept { return Fail(result, TextOf(result)); }

const char* LastError() noexcept { return last_error; }

const char* TextOf(int result) noexcept {
  for (const ResultText& row : kResultTexts) {
    if (row.result == result) return row.text;
  }
  return "there is no such result";
}

}  // namespace lorimat::c
