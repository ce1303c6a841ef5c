// Clients that wait for a job, and go, or say what they say meanwhile.
#include <gmock/gmock.h>
#include <sys/socket.h>

#include <string>
#include <thread>

#include "network.h"

namespace lorimat::door {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Waiting, WhoHasGoneKeepsNoPlace) {
  Network network({.waiting = 1});
  console::Descriptor gone = network.Connect();
  Send(gone, network.Sell("a"));
  network.AwaitWaiting(1);
  gone = console::Descriptor();
  network.AwaitWaiting(0);
  const console::Descriptor other = network.Connect();
  Send(other, network.Sell("b"));
  network.AwaitWaiting(1);
  // There is no place for a third one.
  const console::Descriptor third = network.Connect();
  Send(third, network.Sell("c"));
  EXPECT_THAT(ReadUntil(third, "\r\n"), StartsWith("HTTP/1.1 202 "));
  network.Cancel(2);
  EXPECT_THAT(ReadUntil(other, "\r\n"), StartsWith("HTTP/1.1 422 "));
}

// Whether it has gone cannot be seen behind what it has said.
TEST(Waiting, WhoHasSaidMuchMoreKeepsNoPlace) {
  Network network({.waiting = 1});
  console::Descriptor gone = network.Connect();
  Send(gone, network.Sell("a"));
  network.AwaitWaiting(1);
  Send(gone, std::string(6000, 'x'));
  gone = console::Descriptor();
  network.AwaitWaiting(0);
  const console::Descriptor other = network.Connect();
  Send(other, network.Sell("b"));
  network.AwaitWaiting(1);
}

TEST(Waiting, WhoIsCutIsForgotten) {
  Network network({});
  console::Descriptor cut = network.Connect();
  Send(cut, network.Sell("a"));
  network.AwaitWaiting(1);
  const linger at_once{1, 0};
  setsockopt(cut.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
  cut = console::Descriptor();
  while (network.figures().connections != 0) std::this_thread::yield();
  EXPECT_EQ(network.figures().waiting, 0U);
}

// It may read yet: nobody can tell.
TEST(Waiting, WhoHasSaidAllIsAnsweredAllTheSame) {
  Network network({.waiting = 1});
  const console::Descriptor client = network.Connect();
  Send(client, network.Sell("a"));
  network.AwaitWaiting(1);
  shutdown(client.get(), SHUT_WR);
  network.AwaitWaiting(0);
  const console::Descriptor other = network.Connect();
  Send(other, network.Sell("b"));
  network.AwaitWaiting(1);
  network.Cancel(1);
  EXPECT_THAT(ReadAll(client), StartsWith("HTTP/1.1 422 "));
  network.Stop();
  EXPECT_THAT(ReadAll(other), StartsWith("HTTP/1.1 202 "));
}

TEST(Waiting, WhoHasSaidAllGoesForOthersBeforeWhoMayAskAgain) {
  Network network({.connections = 2, .head_time = std::chrono::hours(1000)});
  const console::Descriptor ended = network.Connect();
  Send(ended, network.Sell("a"));
  network.AwaitWaiting(1);
  shutdown(ended.get(), SHUT_WR);
  network.AwaitWaiting(0);
  const console::Descriptor till = network.Connect();
  Send(till, network.Get());
  ReadUntil(till, "\r\n\r\n");
  std::string answer;
  while (answer.empty()) answer = Ask(network);
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 "));
  EXPECT_THAT(ReadAll(ended), IsEmpty());
  Send(till, network.Get("Connection: close\r\n\r\n"));
  EXPECT_THAT(ReadAll(till), HasSubstr("HTTP/1.1 200 "));
}

// Also one that says more than is read ahead.
TEST(Waiting, WhatIsSaidMeanwhileIsAnsweredInItsTurn) {
  for (const size_t length : {size_t{0}, size_t{10'000}}) {
    Network network({});
    const console::Descriptor client = network.Connect();
    Send(client, network.Sell("a"));
    network.AwaitWaiting(1);
    const std::string blanks(length, ' ');
    Send(client, network.Get("X-More:" + blanks + "\r\n\r\n"));
    Send(client, network.Get("Connection: close\r\n\r\n"));
    network.Cancel(1);
    const std::string answers = ReadAll(client);
    EXPECT_THAT(answers, StartsWith("HTTP/1.1 422 "));
    EXPECT_EQ(Count(answers, "HTTP/1.1 200 "), 2U) << length;
  }
}

}  // namespace
}  // namespace lorimat::door
