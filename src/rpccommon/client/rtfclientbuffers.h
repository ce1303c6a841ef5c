// The rooms of the texts that a device client fills. RtfClientInterface passes no size: this list
// has what a client may count on, whoever calls it. Many of the translator's own buffers are
// larger; DirectIO's is not.
#pragma once

#include <cstddef>
#include <type_traits>

#include "rpccommon/client/rtfclientoperation.h"

struct ClientBuffer {
  ClientOperation operation;
  int text;  // which of the operation's texts that are filled, from 0
  // The data items that it holds for; both -1: all, behind the rows that name some.
  int first_item;
  int last_item;
  size_t size;  // with the closing NUL
};

// The room of ZupEcrCmd's answer is what its length says.
inline constexpr size_t kClientBufferByLength = 0;

inline constexpr ClientBuffer kClientBuffers[] = {
    {ClientOperation::kGetStringProperty, 0, -1, -1, 128},
    // The keyboards: names, types and counts of keys of five in a row.
    {ClientOperation::kGetDataInternal, 0, 104, 107, 129},
    {ClientOperation::kGetDataInternal, 0, -1, -1, 50},
    {ClientOperation::kGetVatEntryExtended, 0, -1, -1, 50},
    {ClientOperation::kZupEcrCmd, 0, -1, -1, kClientBufferByLength},
    {ClientOperation::kGetData, 0, -1, -1, 50},
    {ClientOperation::kGetDate, 0, -1, -1, 32},
    {ClientOperation::kGetTotalizer, 0, -1, -1, 50},
    {ClientOperation::kGetTotalizerExtend, 0, -1, -1, 50},
    {ClientOperation::kDownloadTable, 0, -1, -1, 401},
    {ClientOperation::kConfigDepartment, 0, -1, -1, 128},
    {ClientOperation::kConfigDepartmentEx, 0, -1, -1, 128},
    {ClientOperation::kConfigGroup, 0, -1, -1, 129},
    {ClientOperation::kConfigGroup, 1, -1, -1, 65},
    // Codes of keys, as many as macro_size says, and a NUL behind them.
    {ClientOperation::kConfigKeyboard, 0, -1, -1, 41},
    {ClientOperation::kConfigSubtender, 0, -1, -1, 64},
    {ClientOperation::kGetHeaderLine, 0, -1, -1, 65},
    {ClientOperation::kDirectIO, 0, -1, -1, 513},
};

// The row of an operation's text; null for an operation that fills none of that number. The data
// item counts for the operations that have rows with one.
constexpr const ClientBuffer* FindClientBuffer(ClientOperation operation, int text, int item) {
  for (const ClientBuffer& row : kClientBuffers) {
    if (row.operation != operation || row.text != text) continue;
    if (row.first_item == -1 || (item >= row.first_item && item <= row.last_item)) return &row;
  }
  return nullptr;
}

// The room of a text of an operation that is called with these arguments, which tell it where the
// list does not; 0 where there is none.
template <ClientOperation operation, typename... Arguments>
size_t ClientBufferSize(int text, Arguments... arguments) {
  int item = -1;
  int length = 0;
  [[maybe_unused]] const auto look = [&](auto argument) {
    if constexpr (std::is_same_v<decltype(argument), int>) {
      if (item == -1) item = argument;
    } else if constexpr (std::is_same_v<decltype(argument), int*> &&
                         operation == ClientOperation::kZupEcrCmd) {
      if (argument != nullptr) length = *argument;
    }
  };
  (look(arguments), ...);
  const ClientBuffer* row = FindClientBuffer(operation, text, item);
  if (row == nullptr) return 0;
  if (row->size != kClientBufferByLength) return row->size;
  return length > 0 ? static_cast<size_t>(length) : 0;
}

// The largest of them.
constexpr size_t LargestClientBuffer() {
  size_t size = 0;
  for (const ClientBuffer& row : kClientBuffers) size = row.size > size ? row.size : size;
  return size;
}
