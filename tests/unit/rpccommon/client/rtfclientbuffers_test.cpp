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

TEST(ClientBuffers, ArgumentsTellTheRoomWhereItIsNotAlwaysTheSame) {
  char text[8] = {};
  EXPECT_EQ((ClientBufferSize<ClientOperation::kGetState>(0)), 0u);
  EXPECT_EQ((ClientBufferSize<ClientOperation::kGetDataInternal>(0, 104, text)), 129u);
  EXPECT_EQ((ClientBufferSize<ClientOperation::kGetDataInternal>(0, 108, text)), 50u);
  EXPECT_EQ((ClientBufferSize<ClientOperation::kGetData>(0, 104, text)), 50u);
  int length = 80;
  const char* const command = "";
  EXPECT_EQ((ClientBufferSize<ClientOperation::kZupEcrCmd>(0, command, &length, text)), 80u);
  length = -1;
  EXPECT_EQ((ClientBufferSize<ClientOperation::kZupEcrCmd>(0, command, &length, text)), 0u);
  int* const none = nullptr;
  EXPECT_EQ((ClientBufferSize<ClientOperation::kZupEcrCmd>(0, command, none, text)), 0u);
}
