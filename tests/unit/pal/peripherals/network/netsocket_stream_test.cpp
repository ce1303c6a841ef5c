// Sending and receiving, and the ways in which a peer leaves.
#include <netinet/ip.h>
#include <pthread.h>
#include <sys/resource.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <thread>
#include <vector>

#include "pal/threading/posix/thread.h"
#include "unit/pal/peripherals/network/netsocket_fixture.h"

namespace {

using loopback::Descriptor;
using testing::HasSubstr;

class NetSocketStreamTest : public NetSocketTest {
 protected:
  ~NetSocketStreamTest() override { Thread::SetSleepFunction(nullptr); }

  // Sends past the socket until there is no room.
  static void Fill(const NetSocket& socket) {
    const std::string block(65536, 'x');
    while (::send(socket.handle(), block.data(), block.size(), MSG_DONTWAIT) > 0) {
    }
    ASSERT_EQ(errno, EAGAIN);
  }
};

TEST_F(NetSocketStreamTest, EveryByteComesThroughAsItIs) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(Send(socket, bytes), 256);
  char back[256];
  ASSERT_EQ(::recv(peer.get(), back, 256, MSG_WAITALL), 256);
  Put(peer, std::string(back, 256));
  std::string received(256, 0);
  EXPECT_EQ(socket.RecvAllBlock(reinterpret_cast<unsigned char*>(received.data()), 256), 256);
  EXPECT_EQ(received, bytes);
}

TEST_F(NetSocketStreamTest, WithoutASocketNothingIsSentOrReceived) {
  OpenSocket socket;
  std::string lines = Logged([&] { EXPECT_EQ(Send(socket, "x"), -1); });
  EXPECT_THAT(lines, HasSubstr(":E:"));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Invalid socket_ = -1")));
  lines = Logged([&] { EXPECT_EQ(Recv(socket), "failed"); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Invalid socket_ = -1")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("WaitReadable = -1")));
  EXPECT_EQ(Peek(socket), "failed");
  unsigned char data[1];
  EXPECT_EQ(socket.RecvAllBlock(data, 1), 0);
}

TEST_F(NetSocketStreamTest, NothingToSendSendsNothing) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  EXPECT_EQ(Send(socket, ""), 0);
  unsigned char data[1] = {};
  EXPECT_EQ(socket.Send(data, -1), 0);
  EXPECT_EQ(socket.Send(data, INT_MIN), 0);
}

TEST_F(NetSocketStreamTest, ANegativeLengthReceivesNothing) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Put(peer, "data");
  unsigned char data[1] = {'#'};
  EXPECT_EQ(socket.Recv(data, -1), -1);
  EXPECT_EQ(socket.Peek(data, INT_MIN), -1);
  EXPECT_EQ(socket.RecvAllBlock(data, -1), 0);
  EXPECT_EQ(data[0], '#');
  EXPECT_EQ(Recv(socket), "data");
}

TEST_F(NetSocketStreamTest, RecvLogsItsWait) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Put(peer, "data");
  const std::string lines = Logged([&] { EXPECT_EQ(Recv(socket), "data"); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("WaitReadable for 45000 ms...")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("select = 1")));
}

TEST_F(NetSocketStreamTest, PeekLeavesTheDataInPlace) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Put(peer, "data");
  EXPECT_EQ(Peek(socket, 2), "da");
  EXPECT_EQ(Peek(socket), "data");
  EXPECT_EQ(Recv(socket, 3), "dat");
  EXPECT_EQ(Recv(socket), "a");
}

TEST_F(NetSocketStreamTest, APeerThatStallsTimesOut) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  socket.SetTimeout(3);
  const std::string lines = Logged([&] { EXPECT_EQ(Recv(socket), "failed"); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("WaitReadable for 3 ms...")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("select = 0")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("select = 0, 0")));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("WaitReadable = -1")));
  // It is only late.
  Put(peer, "data");
  EXPECT_EQ(Recv(socket), "data");
}

TEST_F(NetSocketStreamTest, ANegativeTimeOutFailsEveryWait) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Put(peer, "data");
  socket.SetTimeout(-1);
  std::string lines = Logged([&] { EXPECT_EQ(Recv(socket), "failed"); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("select = -1, 22")));
  lines = Logged([&] { EXPECT_EQ(Send(socket, "x"), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error socket send select: -1")));
}

TEST_F(NetSocketStreamTest, ATimeOutOfZeroOnlyLooks) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  socket.SetTimeout(0);
  EXPECT_EQ(Recv(socket), "failed");
  Put(peer, "data");
  EXPECT_TRUE(loopback::Readable(socket.handle()));
  EXPECT_EQ(Recv(socket), "data");
}

TEST_F(NetSocketStreamTest, APeerThatClosesGivesZeroThenAndEverAfter) {
  OpenSocket socket;
  Descriptor peer = Connected(socket);
  Put(peer, "last");
  peer.Close();
  EXPECT_EQ(Recv(socket), "last");
  std::string lines = Logged([&] { EXPECT_EQ(Recv(socket), "closed"); });
  EXPECT_THAT(lines, HasSubstr(":I:"));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("error rc = 0")));
  lines = Logged([&] { EXPECT_EQ(Recv(socket), "closed"); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("socket_closed_by_peer_")));
  EXPECT_THAT(lines, testing::Not(HasSubstr("WaitReadable")));
  EXPECT_EQ(Peek(socket), "closed");
  socket.Close();
  EXPECT_EQ(Recv(socket), "closed");  // only Connect clears it
  const Descriptor next = Connected(socket);
  Put(next, "new");
  EXPECT_EQ(Recv(socket), "new");
}

TEST_F(NetSocketStreamTest, AFailedConnectClearsThePeersLeavingToo) {
  OpenSocket socket;
  socket.socket_closed_by_peer_ = true;
  EXPECT_EQ(Connect(socket, loopback::RefusedPort()), -1);
  EXPECT_EQ(Recv(socket), "failed");
}

TEST_F(NetSocketStreamTest, APeerThatSendsAByteAtATimeFillsTheBuffer) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  std::thread sender([&] {
    for (char byte = 'a'; byte <= 'z'; ++byte) Put(peer, std::string(1, byte));
  });
  std::string received(27, '#');
  EXPECT_EQ(socket.RecvAllBlock(reinterpret_cast<unsigned char*>(received.data()), 26), 26);
  EXPECT_EQ(received, "abcdefghijklmnopqrstuvwxyz#");
  sender.join();
}

TEST_F(NetSocketStreamTest, RecvAllBlockGivesWhatCameBeforeTheEnd) {
  OpenSocket socket;
  Descriptor peer = Connected(socket);
  Put(peer, "part");
  socket.SetTimeout(3);
  unsigned char data[10];
  EXPECT_EQ(socket.RecvAllBlock(data, 10), 4);  // the time was up
  Put(peer, "rest");
  peer.Close();
  socket.SetTimeout(20000);
  EXPECT_EQ(socket.RecvAllBlock(data, 10), 4);
  EXPECT_EQ(std::string(data, data + 4), "rest");
  EXPECT_EQ(socket.RecvAllBlock(data, 10), 0);
}

class CountingSocket : public OpenSocket {
 public:
  int Recv(unsigned char* data, int length) override {
    lengths.push_back(length);
    data[0] = 'r';
    return 1;
  }
  std::vector<int> lengths;
};

TEST_F(NetSocketStreamTest, RecvAllBlockCallsTheVirtualRecv) {
  CountingSocket socket;
  unsigned char data[3];
  EXPECT_EQ(socket.RecvAllBlock(data, 3), 3);
  EXPECT_EQ(std::string(data, data + 3), "rrr");
  EXPECT_THAT(socket.lengths, testing::ElementsAre(3, 2, 1));
}

TEST_F(NetSocketStreamTest, APeerThatResetsFailsTheReceive) {
  OpenSocket socket;
  Descriptor peer = Connected(socket);
  peer.Reset();
  const std::string lines = Logged([&] { EXPECT_EQ(Recv(socket), "failed"); });
  EXPECT_THAT(lines, HasSubstr(":I:"));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("rc = -1, errno=104")));
  EXPECT_FALSE(socket.socket_closed_by_peer_);
}

TEST_F(NetSocketStreamTest, SendingToADeadPeerFailsWithoutASignal) {
  OpenSocket socket;
  Descriptor peer = Connected(socket);
  peer.Reset();
  std::string lines = Logged([&] { EXPECT_EQ(Send(socket, "x"), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("rc = -1, errno=104")));
  // From now on the system would send a signal that ends the process.
  lines = Logged([&] { EXPECT_EQ(Send(socket, "x"), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("rc = -1, errno=32")));
}

TEST_F(NetSocketStreamTest, WithoutRoomSendTimesOut) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Fill(socket);
  socket.SetTimeout(3);
  const std::string lines = Logged([&] { EXPECT_EQ(Send(socket, "x"), -1); });
  EXPECT_THAT(lines, HasSubstr(":E:"));
  EXPECT_THAT(lines, HasSubstr(EndOfLine("Error socket send select: 0")));
}

int draining;  // the descriptor that is read while Send sleeps
std::string drained;
std::vector<int> sleeps;

void Drain(int milliseconds) {
  sleeps.push_back(milliseconds);
  char block[65536];
  for (;;) {
    const ssize_t count = ::recv(draining, block, sizeof(block), MSG_DONTWAIT);
    if (count <= 0) break;
    drained.append(block, static_cast<size_t>(count));
  }
}

TEST_F(NetSocketStreamTest, SendSleepsWhileThereIsNoRoomAndLosesNothing) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  draining = peer.get();
  drained.clear();
  sleeps.clear();
  Thread::SetSleepFunction(Drain);
  std::string text;
  while (text.size() < 16000000) text += std::to_string(text.size()) + ' ';
  EXPECT_EQ(Send(socket, text), static_cast<int>(text.size()));
  ASSERT_FALSE(sleeps.empty());
  for (int milliseconds : sleeps) EXPECT_EQ(milliseconds, 200);
  while (drained.size() < text.size() && loopback::Readable(peer.get())) Drain(0);
  EXPECT_TRUE(drained == text);
}

OpenSocket* closing;

void CloseMeanwhile(int) { closing->Close(); }

TEST_F(NetSocketStreamTest, CloseEndsTheTriesOfSend) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  closing = &socket;
  Thread::SetSleepFunction(CloseMeanwhile);
  const std::string lines =
      Logged([&] { EXPECT_EQ(Send(socket, std::string(16000000, 'x')), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("rc = -1, errno=9")));
}

TEST_F(NetSocketStreamTest, DataThatAreGoneAgainAreNone) {
  // A datagram to a port where nobody is leaves a report that can be seen and not received.
  loopback::Server nobody(SOCK_DGRAM);
  const uint16_t port = nobody.port();
  nobody.Close();
  OpenSocket socket(NetSocket::NST_DGRAM_UDP);
  const uint8_t data[] = {'a'};
  char buffer[1];
  socket.RecvFrom(buffer, 1, 0, 0);
  const int on = 1;
  ASSERT_EQ(setsockopt(socket.handle(), IPPROTO_IP, IP_RECVERR, &on, sizeof(on)), 0);
  ASSERT_EQ(socket.Blocking(false), 0);
  EXPECT_EQ(socket.SendTo(data, 1, loopback::Address(), port), 1);
  EXPECT_EQ(Recv(socket), "failed");
  const std::string lines = Logged([&] { EXPECT_EQ(Recv(socket), "closed"); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("EAGAIN errno=11, count -1")));
  EXPECT_FALSE(socket.socket_closed_by_peer_);
}

// --- Being woken.

TEST_F(NetSocketStreamTest, ThePipeEndsAWaitForDataAndIsClosed) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  ASSERT_EQ(write(socket.pipefd_[1], "\n", 1), 1);
  const std::string lines = Logged([&] { EXPECT_EQ(socket.WaitReadable(), -1); });
  EXPECT_THAT(lines, HasSubstr(EndOfLine("select = 1")));
  EXPECT_THAT(lines, testing::Not(HasSubstr("select = 1,")));
  EXPECT_EQ(socket.pipefd_[0], -1);
}

TEST_F(NetSocketStreamTest, DataComeBeforeThePipe) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Put(peer, "data");
  ASSERT_TRUE(loopback::Readable(socket.handle()));
  ASSERT_EQ(write(socket.pipefd_[1], "\n", 1), 1);
  EXPECT_EQ(socket.WaitReadable(), 1);
  EXPECT_NE(socket.pipefd_[0], -1);
}

TEST_F(NetSocketStreamTest, ThePipeEndsAWaitForRoomAndIsClosed) {
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  Fill(socket);
  ASSERT_EQ(write(socket.pipefd_[1], "\n", 1), 1);
  EXPECT_EQ(Logged([&] { EXPECT_EQ(Send(socket, "x"), -1); }), "");
  EXPECT_EQ(socket.pipefd_[0], -1);
}

// Gives the other thread the time to wait. Only to make the interesting order likely: any
// order has the same result.
void LetItWait(const std::atomic<bool>& started) {
  while (!started) std::this_thread::yield();
  for (int i = 0; i < 1000; ++i) std::this_thread::yield();
}

TEST_F(NetSocketStreamTest, CloseWakesAWaitingReader) {
  for (int i = 0; i < 50; ++i) {
    OpenSocket socket;
    const Descriptor peer = Connected(socket);
    std::atomic<bool> started{false};
    std::string result;
    std::thread reader([&] {
      started = true;
      result = Recv(socket);
    });
    LetItWait(started);
    EXPECT_EQ(socket.Close(), 0);
    reader.join();  // in time, or the test's own limit ends it
    EXPECT_EQ(result, "failed");
  }
}

TEST_F(NetSocketStreamTest, ASignalDoesNotEndAWait) {
  struct sigaction action = {};
  struct sigaction old = {};
  action.sa_handler = [](int) {};
  ASSERT_EQ(sigaction(SIGUSR1, &action, &old), 0);
  OpenSocket socket;
  const Descriptor peer = Connected(socket);
  std::atomic<bool> started{false};
  std::string result;
  std::thread reader([&] {
    started = true;
    result = Recv(socket);
  });
  for (int i = 0; i < 20; ++i) {
    LetItWait(started);
    pthread_kill(reader.native_handle(), SIGUSR1);
  }
  Put(peer, "data");
  reader.join();
  EXPECT_EQ(result, "data");
  sigaction(SIGUSR1, &old, nullptr);
}

TEST_F(NetSocketStreamTest, CloseWakesAWaitingSender) {
  for (int i = 0; i < 10; ++i) {
    OpenSocket socket;
    const Descriptor peer = Connected(socket);
    Fill(socket);
    std::atomic<bool> started{false};
    int result = 0;
    std::thread sender([&] {
      started = true;
      result = Send(socket, "x");
    });
    LetItWait(started);
    socket.Close();
    sender.join();
    EXPECT_EQ(result, -1);
  }
}

TEST_F(NetSocketStreamTest, CloseWakesAConnectThatStalls) {
  loopback::Server full(SOCK_STREAM, 0);
  OpenSocket first;
  ASSERT_EQ(Connect(first, full.port()), 0);
  OpenSocket socket;
  int result = 0;
  std::thread caller([&] { result = Connect(socket, full.port(), 40000); });
  // The pipe is the last thing made before the connect.
  while (socket.pipefd_[1] == -1) std::this_thread::yield();
  socket.Close();
  caller.join();
  EXPECT_EQ(result, -1);
  EXPECT_EQ(socket.handle(), -1);
}

TEST_F(NetSocketStreamTest, CloseWakesAWaitingServer) {
  for (int i = 0; i < 20; ++i) {
    OpenSocket server;
    OpenSocket client;
    ASSERT_EQ(server.Bind(loopback::Address(), 0), 0);
    ASSERT_EQ(server.Listen(1), 0);
    std::atomic<bool> started{false};
    int result = 0;
    std::thread waiter([&] {
      started = true;
      result = server.Accept(&client);
    });
    LetItWait(started);
    EXPECT_EQ(server.Close(), 0);
    waiter.join();
    EXPECT_EQ(result, -1);
  }
}

TEST_F(NetSocketStreamTest, ADescriptorPastAThousandIsWaitedForToo) {
  rlimit old = {};
  getrlimit(RLIMIT_NOFILE, &old);
  if (old.rlim_max < 1500) GTEST_SKIP() << "the system allows no such descriptor";
  rlimit more = old;
  more.rlim_cur = 1500;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &more), 0);
  std::vector<Descriptor> taken;
  while (taken.empty() || taken.back().get() < 1100) {
    taken.emplace_back(dup(server_.get()));
    ASSERT_GE(taken.back().get(), 0);
  }
  {
    OpenSocket socket;
    const Descriptor peer = Connected(socket);
    EXPECT_GT(socket.handle(), 1100);
    Put(peer, "data");
    EXPECT_EQ(Recv(socket), "data");
  }
  taken.clear();
  setrlimit(RLIMIT_NOFILE, &old);
}

}  // namespace
