// The rooms of the texts that a client fills.
#include "rpccommon/client/rtfclientbuffers.h"

#include <gtest/gtest.h>

TEST(ClientBuffers, AnOperationHasARoomForEachTextItFillsAndNoOther) {
  const ClientBuffer* const row = FindClientBuffer(ClientOperation::kDirectIO, 0, 0);
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->size, 513u);
  EXPECT_EQ(FindClientBuffer(ClientOperation::kDirectIO, 1, 0), nullptr);
  EXPECT_EQ(FindClientBuffer(ClientOperation::kGetState, 0, 0), nullptr);
}
