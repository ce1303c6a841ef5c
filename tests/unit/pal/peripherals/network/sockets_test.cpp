// The platform's sockets where nothing is: no descriptor, no length, no time.
#include "pal/peripherals/network/sockets.h"

#include <cerrno>

#include "unit/pal/peripherals/network/netsocket_fixture.h"

namespace {

TEST(Sockets, ANegativeLengthIsInvalid) {
  char byte = 'x';
  errno = 0;
  EXPECT_EQ(sockets::Send(-1, &byte, -1), -1);
  EXPECT_EQ(errno, EINVAL);
  errno = 0;
  EXPECT_EQ(sockets::Receive(-1, &byte, -1, 0), -1);
  EXPECT_EQ(errno, EINVAL);
}

TEST(Sockets, NoSocketCannotBeWaitedFor) {
  errno = 0;
  sockets::Wait wait = sockets::AwaitReady(-1, sockets::Direction::kRead, -1, 0);
  EXPECT_EQ(wait.count, -1);
  EXPECT_EQ(errno, EBADF);
  errno = 0;
  wait = sockets::AwaitReady(0, sockets::Direction::kRead, -1, -1);
  EXPECT_EQ(wait.count, -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_FALSE(wait.ready);
  EXPECT_FALSE(wait.woken);
}

TEST(Sockets, TheConnectOfNoSocketHasFailed) { EXPECT_EQ(sockets::ConnectResult(-1), EBADF); }

}  // namespace
