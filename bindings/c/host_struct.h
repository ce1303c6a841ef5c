// The structs of hosts that begin with their size and the number of their contract: what is looked
// at and copied of one whose host was compiled with an earlier or a later header.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "lorimatrt/lorimat.h"

namespace lorimat::c {

// Where a struct of the first contract ends, in bytes: behind the member that was its last then.
// What is added goes behind that, and no host of before has it. Never changes while LORIMAT_ABI
// stays.
template <typename Struct>
constexpr size_t FirstSize() {
  return 0;
}
template <>
constexpr size_t FirstSize<lorimat_device>() {
  return offsetof(lorimat_device, set_wait_result_code) +
         sizeof(lorimat_device::set_wait_result_code);
}
static_assert(sizeof(void*) != 8 || FirstSize<lorimat_device>() == 1216);

// LORIMAT_OK for a struct that is whole. The two members at the front are there in every contract;
// what is behind them only in this one.
template <typename Struct>
lorimat_result FaultOf(const Struct* given) noexcept {
  static_assert(FirstSize<Struct>() > 0 && FirstSize<Struct>() <= sizeof(Struct));
  if (given == nullptr) return LORIMAT_NULL_ARGUMENT;
  if (given->size < offsetof(Struct, abi) + sizeof given->abi) return LORIMAT_TABLE_TOO_SHORT;
  if (given->abi != LORIMAT_ABI) return LORIMAT_OTHER_ABI;
  return given->size < FirstSize<Struct>() ? LORIMAT_TABLE_TOO_SHORT : LORIMAT_OK;
}

// A whole struct as this library knows it: what the host has not is zero, what only the host has is
// left out.
template <typename Struct>
Struct Taken(const Struct& given) noexcept {
  Struct own = {};
  std::memcpy(static_cast<void*>(&own), &given, std::min(given.size, sizeof own));
  return own;
}

// Gives a struct back to the host, as much of it as the host has.
template <typename Struct>
void GiveBack(const Struct& own, Struct* host) noexcept {
  std::memcpy(static_cast<void*>(host), &own, std::min(host->size, sizeof own));
}

}  // namespace lorimat::c
