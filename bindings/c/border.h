// The border between C and C++: what goes wrong behind it becomes a result and a text.
#pragma once

#include <cxxabi.h>

#include <exception>
#include <new>
#include <string_view>

#include "lorimatrt/lorimat.h"

namespace lorimat::c {

// Keeps a text for lorimat_error, cut to its room, and answers the result.
int Fail(lorimat_result result, std::string_view text) noexcept;
// The same with what TextOf has.
int Fail(lorimat_result result) noexcept;

// The text that the last failure of this thread left.
const char* LastError() noexcept;
const char* TextOf(int result) noexcept;

// Runs what a function of C does, which answers a result; an exception becomes one.
template <typename Work>
int Guarded(Work&& work) {
  try {
    return work();
  } catch (abi::__forced_unwind&) {
    throw;  // the thread is being cancelled: that goes its way
  } catch (const std::bad_alloc&) {
    return Fail(LORIMAT_NO_MEMORY);
  } catch (const std::exception& error) {
    return Fail(LORIMAT_FAILURE, error.what());
  } catch (...) {
    return Fail(LORIMAT_FAILURE);
  }
}

}  // namespace lorimat::c
