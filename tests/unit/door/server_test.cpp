#include "door/http/server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <string>
#include <thread>
#include <vector>

#include "network.h"

namespace lorimat::door {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Time = RateLimit::Time;
using std::chrono::milliseconds;

constexpr std::chrono::hours kNever{1000};

TEST(RateLimit, GivesAllAtOnceAndThenOneInEachPause) {
  RateLimit rate({.pause = milliseconds(10), .at_once = 3});
  Time now{std::chrono::hours(1)};
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(rate.Take(now));
  EXPECT_FALSE(rate.Take(now));
  now += milliseconds(9);
  EXPECT_FALSE(rate.Take(now));
  now += milliseconds(1);
  EXPECT_TRUE(rate.Take(now));
  EXPECT_FALSE(rate.Take(now));
  // However long nobody asks, no more come together than at first.
  now += std::chrono::hours(24);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(rate.Take(now));
  EXPECT_FALSE(rate.Take(now));
}

TEST(RateLimit, WhatIsRefusedCostsNothing) {
  RateLimit rate({.pause = milliseconds(10), .at_once = 1});
  Time now{std::chrono::hours(1)};
  EXPECT_TRUE(rate.Take(now));
  for (int i = 0; i < 1000; ++i) EXPECT_FALSE(rate.Take(now));
  EXPECT_TRUE(rate.Take(now + milliseconds(10)));
}

TEST(Server, OneConnectionMayNotAskWithoutEnd) {
  const Network network({.connection = {kNever, 3}});
  const console::Descriptor client = network.Connect();
  for (int i = 0; i < 5; ++i) Send(client, network.Get());
  const std::string answers = ReadAll(client);
  EXPECT_EQ(Count(answers, "HTTP/1.1 200 OK"), 3U);
  EXPECT_EQ(Count(answers, "HTTP/1.1 429 Too Many Requests"), 1U);
  EXPECT_THAT(answers, HasSubstr("\r\nRetry-After: 1\r\n"));
  EXPECT_THAT(answers, HasSubstr("too_many_requests\",\"detail\":\"too many requests on this"));
  // Another one may.
  const console::Descriptor other = network.Connect();
  Send(other, network.Get("Connection: close\r\n\r\n"));
  EXPECT_THAT(ReadAll(other), StartsWith("HTTP/1.1 200 "));
}

TEST(Server, NorMayAllOfThemTogether) {
  const Network network({.all = {kNever, 4}});
  for (int i = 0; i < 6; ++i) {
    const console::Descriptor client = network.Connect();
    Send(client, network.Get("Connection: close\r\n\r\n"));
    const std::string answer = ReadAll(client);
    EXPECT_THAT(answer, StartsWith(i < 4 ? "HTTP/1.1 200 " : "HTTP/1.1 429 ")) << i;
    EXPECT_EQ(Count(answer, "too many requests of all clients"), i < 4 ? 0U : 1U);
  }
}

// What is refused on one connection takes nothing from the others.
TEST(Server, ALoudConnectionLeavesTheOthersTheirRoom) {
  const Network network({.connection = {kNever, 1}, .all = {kNever, 3}});
  for (int i = 0; i < 2; ++i) {
    const console::Descriptor client = network.Connect();
    for (int request = 0; request < 3; ++request) Send(client, network.Get());
    EXPECT_EQ(Count(ReadAll(client), "HTTP/1.1 200 OK"), 1U);
  }
  const console::Descriptor quiet = network.Connect();
  Send(quiet, network.Get("Connection: close\r\n\r\n"));
  EXPECT_THAT(ReadAll(quiet), StartsWith("HTTP/1.1 200 "));
}

TEST(Server, StrangersWhoSayNothingShutNobodyOut) {
  Network network({.head_time = kNever});
  const console::Descriptor till = network.Connect();
  Send(till, network.Get());
  ReadUntil(till, "\r\n\r\n");
  std::vector<console::Descriptor> silent;
  for (int i = 0; i < 300; ++i) silent.push_back(network.Connect());
  ASSERT_THAT(Ask(network), StartsWith("HTTP/1.1 200 "));
  // The first of them had to go, and who has asked before not.
  EXPECT_THAT(ReadAll(silent.front()), IsEmpty());
  Send(till, network.Get("Connection: close\r\n\r\n"));
  EXPECT_THAT(ReadAll(till), HasSubstr("HTTP/1.1 200 "));
  EXPECT_GE(network.figures().refused, 101);
}

TEST(Server, WhoHasAskedAndIsSilentGoesBehindTheOthers) {
  const Network network({.connections = 1, .head_time = kNever});
  const console::Descriptor first = network.Connect();
  Send(first, network.Get());
  ReadUntil(first, "\r\n\r\n");
  // The door may not have seen yet that the answer is taken.
  std::string answer;
  while (answer.empty()) answer = Ask(network);
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 "));
  ReadAll(first);
}

TEST(Server, AConnectionTooManyIsClosedWhereAllAreAtWork) {
  Network network({.connections = 2, .heartbeat = kNever});
  console::Descriptor followers[2] = {network.Connect(), network.Connect()};
  for (const console::Descriptor& follower : followers) {
    Send(follower, network.Follow());
    ReadUntil(follower, "\r\n\r\n");
  }
  EXPECT_THAT(Ask(network), IsEmpty());
  EXPECT_EQ(network.figures().refused, 1);
  followers[1] = console::Descriptor();
  // The door may not have seen yet that it is gone.
  std::string answer;
  while (answer.empty()) answer = Ask(network);
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 200 "));
}

TEST(Server, WhoIsSlowWithTheHeadIsCut) {
  const Network network({.head_time = milliseconds(1)});
  const console::Descriptor silent = network.Connect();
  const console::Descriptor slow = network.Connect();
  Send(slow, "GET /v1/device HT");
  EXPECT_THAT(ReadAll(silent), IsEmpty());
  EXPECT_THAT(ReadAll(slow), IsEmpty());
}

TEST(Server, WhoIsSlowWithTheBodyIsCut) {
  const Network network({.body_time = milliseconds(1)});
  const console::Descriptor slow = network.Connect();
  Send(slow, "POST /v1/jobs HTTP/1.1\r\nHost: " + network.host() +
                 "\r\nContent-Type: application/json\r\nContent-Length: 100\r\n\r\n{");
  EXPECT_THAT(ReadAll(slow), IsEmpty());
}

TEST(Server, WhoDoesNotTakeTheAnswersIsCut) {
  const Network network({.connection = {milliseconds(0), 1},
                         .all = {milliseconds(0), 1},
                         .write_time = milliseconds(1)});
  const console::Descriptor client = network.Connect();
  const std::string request = network.Get();
  // What both sides hold of bytes on their way is full before long.
  const auto sends = [&] {
    return send(client.get(), request.data(), request.size(), MSG_NOSIGNAL) > 0;
  };
  constexpr int kMost = 10'000'000;
  int sent = 0;
  while (sent < kMost && sends()) ++sent;
  EXPECT_LT(sent, kMost);
}

// The next answer follows at once, and the length is that of what was left out.
TEST(Server, TheAnswerToHeadHasNoBody) {
  const Network network({});
  const console::Descriptor client = network.Connect();
  Send(client, "HEAD /v1/device HTTP/1.1\r\nHost: " + network.host() + "\r\n\r\n");
  const std::string head = ReadUntil(client, "\r\n\r\n");
  EXPECT_THAT(head, StartsWith("HTTP/1.1 405 "));
  EXPECT_THAT(head, HasSubstr("\r\nAllow: GET\r\n"));
  EXPECT_THAT(head, HasSubstr("\r\nContent-Length: "));
  EXPECT_THAT(head, Not(HasSubstr("\r\nContent-Length: 0\r\n")));
  Send(client, "HEAD / HTTP/1.1\r\nHost: other\r\n\r\n");
  const std::string refused = ReadAll(client);
  EXPECT_THAT(refused, StartsWith("HTTP/1.1 403 "));
  EXPECT_THAT(refused, EndsWith("\r\n\r\n"));
}

// As it would be told of any other address that it may see.
TEST(Server, WhatAnybodyMayAskIsNobodysSecretByAnotherMethod) {
  const Network network(
      {}, {.needs_token = true, .find = [](std::string_view) { return std::nullopt; }});
  const auto status = [&network](const std::string& asked) {
    const console::Descriptor client = network.Connect();
    Send(client, asked + " HTTP/1.1\r\nHost: " + network.host() + "\r\nConnection: close\r\n\r\n");
    return ReadAll(client).substr(9, 3);
  };
  for (const char* method : {"HEAD", "OPTIONS"}) {
    EXPECT_EQ(status(std::string(method) + " /healthz"), "405");
    EXPECT_EQ(status(std::string(method) + " /v1/device"), "401");
    EXPECT_EQ(status(std::string(method) + " /v1/nothing"), "401");
  }
  EXPECT_EQ(status("GET /healthz"), "200");
  EXPECT_EQ(status("GET /healthz?more=1"), "400");
}

// As some clients send it to any server; whose it is, is looked at as that of Host is.
TEST(Server, AWholeAddressIsATargetToo) {
  const Network network({});
  const auto status = [&network](const std::string& target, const std::string& host) {
    const console::Descriptor client = network.Connect();
    Send(client, "GET " + target + " HTTP/1.1\r\n" + host + "Connection: close\r\n\r\n");
    return ReadAll(client).substr(9, 3);
  };
  const std::string named = "Host: " + network.host() + "\r\n";
  EXPECT_EQ(status("http://" + network.host() + "/healthz", named), "200");
  EXPECT_EQ(status("HTTP://" + network.host() + "/v1/jobs?limit=1", named), "200");
  EXPECT_EQ(status("http://" + network.host() + "/v1/jobs?limit=0", named), "400");
  EXPECT_EQ(status("http://" + network.host(), named), "404");
  EXPECT_EQ(status("http://" + network.host() + "?limit=1", named), "404");
  // The target counts, whatever Host says.
  EXPECT_EQ(status("http://" + network.host() + "/healthz", "Host: example.org\r\n"), "200");
  EXPECT_EQ(status("http://example.org/healthz", named), "403");
  EXPECT_EQ(status("http://a@" + network.host() + "/healthz", named), "403");
  EXPECT_EQ(status("http:///healthz", named), "403");
  EXPECT_EQ(status("https://" + network.host() + "/healthz", named), "403");
  EXPECT_EQ(status("http://" + network.host() + "/healthz", ""), "403");
  EXPECT_EQ(status("ftp://" + network.host() + "/healthz", named), "400");
}

TEST(Server, AHeadThatIsTooLongIsTold) {
  const Network network({});
  const console::Descriptor client = network.Connect();
  Send(client, network.Get("X-Long: " + std::string(17 * 1024, 'x')));
  EXPECT_THAT(ReadAll(client), StartsWith("HTTP/1.1 431 "));
}

// Who asks, and from where, counts ahead of what is to come; and a page may read what it is told.
TEST(Server, ALengthThatIsTooLongIsToldToWhoMayAsk) {
  const Network network({}, {.origins = {"https://till.example"}});
  const auto ask = [&network](const std::string& origin) {
    const console::Descriptor client = network.Connect();
    Send(client, "POST /v1/jobs HTTP/1.1\r\nHost: " + network.host() + "\r\nOrigin: " + origin +
                     "\r\nContent-Type: application/json\r\nContent-Length: 1048577\r\n\r\n");
    return ReadAll(client);
  };
  EXPECT_THAT(ask("https://other.example"), StartsWith("HTTP/1.1 403 "));
  const std::string answer = ask("https://till.example");
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 413 "));
  EXPECT_THAT(answer, HasSubstr("\r\nAccess-Control-Allow-Origin: https://till.example\r\n"));
}

// Two readers would not agree upon where it ends.
TEST(Server, ABodyThatIsCodedIsRefused) {
  const Network network({});
  const console::Descriptor client = network.Connect();
  Send(client, "POST /v1/jobs HTTP/1.1\r\nHost: " + network.host() +
                   "\r\nContent-Type: application/json\r\nTransfer-Encoding: xchunked\r\n\r\n"
                   "0\r\n\r\n");
  const std::string answer = ReadAll(client);
  EXPECT_THAT(answer, StartsWith("HTTP/1.1 400 "));
  EXPECT_THAT(answer, HasSubstr("Transfer-Encoding: is not chunked"));
  EXPECT_EQ(answer.find("HTTP/1.1", 1), std::string::npos);
}

TEST(Server, ABodyThatGrowsTooLongIsTold) {
  const Network network({});
  const console::Descriptor client = network.Connect();
  Send(client, "POST /v1/jobs HTTP/1.1\r\nHost: " + network.host() +
                   "\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n"
                   "200000\r\n" +
                   std::string(0x200000, ' '));
  EXPECT_THAT(ReadAll(client), StartsWith("HTTP/1.1 413 "));
}

TEST(Events, AreSentAsTheyHappen) {
  Network network({.heartbeat = kNever});
  network.Accept("a");
  const console::Descriptor client = network.Connect();
  Send(client, network.Follow());
  const std::string head = ReadUntil(client, "\r\n\r\n");
  EXPECT_THAT(head, StartsWith("HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n"));
  EXPECT_THAT(head, HasSubstr("\r\nCache-Control: no-store\r\n"));
  EXPECT_THAT(ReadUntil(client, "\n\n"), StartsWith("id: 1\nevent: job\ndata: {\"id\":1,"));
  network.Accept("b");
  EXPECT_THAT(ReadUntil(client, "\n\n"), StartsWith("id: 2\nevent: job\ndata: {\"id\":2,"));
  EXPECT_EQ(network.figures().streams, 1U);
  network.Stop();
  EXPECT_THAT(ReadAll(client), IsEmpty());
}

TEST(Events, GoOnBehindTheLastOneThatWasRead) {
  Network network({.heartbeat = kNever});
  for (const char* key : {"a", "b", "c"}) network.Accept(key);
  const console::Descriptor client = network.Connect();
  Send(client, network.Follow("Last-Event-ID: 2\r\n\r\n"));
  ReadUntil(client, "\r\n\r\n");
  EXPECT_THAT(ReadUntil(client, "\n\n"), StartsWith("id: 3\n"));
}

TEST(Events, ASignOfLifeComesWhereThereAreNone) {
  Network network({.heartbeat = milliseconds(1)});
  const console::Descriptor client = network.Connect();
  Send(client, network.Follow());
  ReadUntil(client, "\r\n\r\n");
  EXPECT_EQ(ReadUntil(client, "\n\n"), ": still here\n\n");
  network.Accept("a");
  ReadUntil(client, "id: 1\nevent: job\n");
}

TEST(Events, WhoGoesMakesRoom) {
  Network network({.streams = 1, .heartbeat = kNever});
  console::Descriptor first = network.Connect();
  Send(first, network.Follow());
  ReadUntil(first, "\r\n\r\n");
  const console::Descriptor second = network.Connect();
  Send(second, network.Follow());
  const std::string refused = ReadAll(second);
  EXPECT_THAT(refused, StartsWith("HTTP/1.1 429 "));
  EXPECT_THAT(refused, HasSubstr("too_many_streams"));
  // Nothing is to be sent: that it has gone is seen all the same.
  first = console::Descriptor();
  while (network.figures().streams != 0) std::this_thread::yield();
  const console::Descriptor third = network.Connect();
  Send(third, network.Follow());
  EXPECT_THAT(ReadUntil(third, "\r\n"), StartsWith("HTTP/1.1 200 "));
}

// What it does not have, a browser keeps from the page: also when to come again.
TEST(Events, APageThatMayAskIsToldThatTooManyFollow) {
  const Network network({.streams = 0}, {.origins = {"https://till.example"}});
  const console::Descriptor client = network.Connect();
  Send(client, network.Follow("Origin: https://till.example\r\n\r\n"));
  const std::string refused = ReadAll(client);
  EXPECT_THAT(refused, StartsWith("HTTP/1.1 429 "));
  EXPECT_THAT(refused, HasSubstr("\r\nAccess-Control-Allow-Origin: https://till.example\r\n"));
}

TEST(Events, WhoDoesNotTakeThemIsCut) {
  Network network({.write_time = milliseconds(1), .heartbeat = kNever});
  const console::Descriptor client = network.Connect();
  // What is on its way is not to hold all that there is.
  const int little = 4096;
  setsockopt(client.get(), SOL_SOCKET, SO_RCVBUF, &little, sizeof little);
  Send(client, network.Follow());
  constexpr int kMost = 1'000'000;
  while (network.figures().streams == 0) std::this_thread::yield();
  int told = 0;
  while (told < kMost && network.figures().streams != 0) network.Accept(std::to_string(++told));
  EXPECT_LT(told, kMost);
}

TEST(Events, ANumberThatIsNoneIsRefused) {
  const Network network({});
  const console::Descriptor client = network.Connect();
  Send(client, network.Follow("Last-Event-ID: x\r\nConnection: close\r\n\r\n"));
  EXPECT_THAT(ReadAll(client), StartsWith("HTTP/1.1 400 "));
}

}  // namespace
}  // namespace lorimat::door
