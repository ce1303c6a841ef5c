// Start, Stop and the way to the syslog server, which is a plain socket here.
#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "pal/drivers/datetime.h"
#include "pal/peripherals/network/sockets.h"
#include "unit/pal/peripherals/network/loopback.h"
#include "unit/utility/log_fixture.h"

namespace {

using sockets::Resolution;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

std::vector<std::string> asked;                        // names that were looked up
std::function<Resolution(const std::string&)> answer;  // for each of them

Resolution LookUp(const char* host, uint32_t* address) {
  asked.push_back(host);
  *address = loopback::Address();
  return answer ? answer(host) : Resolution::kFound;
}

class LogSyslogServerTest : public LogFolderTest {
 protected:
  void SetUp() override {
    LogFolderTest::SetUp();
    asked.clear();
    answer = nullptr;
    sockets::SetResolveFunction(LookUp);
    // What the sockets log is not of interest here.
    Log::GetInstance()->set_outputs(Log::LO_NULL);
    log_.set_outputs(Log::LO_SYSLOG | Log::LO_FILE);
    log_.set_output_syslog_port(server_.port());
    log_.set_syslog_hostname("till7");
  }
  void TearDown() override {
    sockets::SetResolveFunction(nullptr);
    Log::GetInstance()->set_outputs(Log::LO_ALL);
    LogFolderTest::TearDown();
  }

  void Start(const char* host) {
    log_.set_output_syslog_host(host);
    log_.Start();
  }
  void Write(const std::string& message, Log::Levels level = Log::LL_INFO) {
    log_.Write(level, Log::LocationInfo("f", "Method", 1, 0), message.c_str());
  }
  // Makes the last failure to be that long ago.
  void FailBefore(uint32_t milliseconds) {
    log_.last_addr_resol_error_time_ = DateTime::GetUptime_ms() - milliseconds;
  }

  static constexpr uint32_t kInterval = 30 * 60 * 1000;

  loopback::Server server_{SOCK_DGRAM};
  OpenLog log_;
};

TEST_F(LogSyslogServerTest, ALineIsOneDatagramWithItsTrailer) {
  Start("server.example");
  Write("first", Log::LL_ERROR);
  Write("second", Log::LL_TRACE);
  EXPECT_THAT(server_.datagram(),
              MatchesRegex("<11>[A-Z][a-z]{2} [ 0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} till7 "
                           "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}"
                           ":E:[0-9]+:Method:1 - first\n"));
  const std::string second = server_.datagram();
  EXPECT_EQ(second.substr(0, 4), "<15>");
  EXPECT_THAT(second, EndsWith(":Method:1 - second\n"));
  EXPECT_EQ(server_.datagram(), "none");
  EXPECT_THAT(asked, ElementsAre("server.example"));
}

TEST_F(LogSyslogServerTest, EveryKindOfLineIsSent) {
  Start("server.example");
  const Log::LocationInfo place("f", "Method", 1, 0);
  log_.WriteF(Log::LL_FATAL, place, "%d", 12);
  log_.WriteH(Log::LL_WARN, place, "bytes ", "\x01\xAB", 2);
  const std::string first = server_.datagram();
  EXPECT_EQ(first.substr(0, 3), "<8>");
  EXPECT_THAT(first, EndsWith(" - 12\n"));
  EXPECT_THAT(server_.datagram(), EndsWith(" - bytes 01AB\n"));
}

TEST_F(LogSyslogServerTest, TheLongestLineGoesWhole) {
  log_.set_syslog_hostname(std::string(128, 'h').c_str());
  Start("server.example");
  Write(std::string(3000, 'x'));
  const std::string text = server_.datagram();
  EXPECT_EQ(text.size(), 39u + 1024u);
  EXPECT_EQ(text.substr(39), log_.output_);
}

TEST_F(LogSyslogServerTest, AnEmptyHostNameStaysEmpty) {
  OpenLog log;
  log.set_outputs(Log::LO_SYSLOG);
  log.set_output_syslog_port(server_.port());
  log.set_output_syslog_host("server.example");
  log.Start();
  log.Write(Log::LL_INFO, Log::LocationInfo("f", "Method", 1, 0), "text");
  // Between the time and the line's date stand the two blanks around no name.
  EXPECT_THAT(server_.datagram(), MatchesRegex("<14>[A-Z][a-z]{2} [ 0-9]{2} "
                                               "[0-9]{2}:[0-9]{2}:[0-9]{2}  [0-9]{4}-.* - text\n"));
}

TEST_F(LogSyslogServerTest, WithoutStartNothingIsSentNorLookedUp) {
  log_.set_output_syslog_host("server.example");
  Write("text");
  EXPECT_EQ(server_.datagram(), "none");
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(log_.output_syslog_socket_.handle(), -1);
}

TEST_F(LogSyslogServerTest, StartOpensNoSyslogWithoutAHost) {
  Start("");
  EXPECT_FALSE(log_.output_syslog_opened_);
  Write("text");
  EXPECT_TRUE(asked.empty());
}

TEST_F(LogSyslogServerTest, StartOpensNoSyslogThatIsNotWanted) {
  log_.set_outputs(Log::LO_FILE);
  Start("server.example");
  EXPECT_FALSE(log_.output_syslog_opened_);
  log_.set_outputs(Log::LO_ALL & ~Log::LO_CONSOLE);
  Write("text");
  EXPECT_TRUE(asked.empty());
  EXPECT_EQ(server_.datagram(), "none");
}

TEST_F(LogSyslogServerTest, ALineGoesToSyslogOnlyWhileItIsWanted) {
  Start("server.example");
  log_.set_outputs(Log::LO_FILE);
  Write("not wanted");
  log_.set_outputs(Log::LO_SYSLOG);
  Write("wanted");
  EXPECT_THAT(server_.datagram(), EndsWith(" - wanted\n"));
  EXPECT_EQ(server_.datagram(), "none");
}

TEST_F(LogSyslogServerTest, OpenSyslogOpensNothing) {
  Start("server.example");
  EXPECT_TRUE(log_.output_syslog_opened_);
  log_.OpenSyslog();
  EXPECT_FALSE(log_.output_syslog_opened_);
  Write("text");
  EXPECT_EQ(server_.datagram(), "none");
}

TEST_F(LogSyslogServerTest, CloseSyslogClosesTheSocketOfAnOpenOne) {
  Start("server.example");
  Write("text");
  EXPECT_GT(log_.output_syslog_socket_.handle(), 0);
  log_.CloseSyslog();
  EXPECT_EQ(log_.output_syslog_socket_.handle(), -1);
  EXPECT_FALSE(log_.output_syslog_opened_);
  log_.CloseSyslog();
}

TEST_F(LogSyslogServerTest, TheDestructorClosesTheSocket) {
  int handle = -1;
  {
    OpenLog log;
    log.set_outputs(Log::LO_SYSLOG);
    log.set_output_syslog_port(server_.port());
    log.set_output_syslog_host("server.example");
    log.Start();
    log.Write(Log::LL_INFO, Log::LocationInfo("f", "Method", 1, 0), "text");
    handle = log.output_syslog_socket_.handle();
    ASSERT_GT(handle, 0);
  }
  EXPECT_EQ(::send(handle, "x", 1, MSG_NOSIGNAL), -1);
  EXPECT_EQ(errno, EBADF);
}

TEST_F(LogSyslogServerTest, AServerThatIsGoneFailsNobody) {
  Start("server.example");
  server_.Close();
  log_.set_output_file_name(name_.c_str());
  log_.Start();
  for (int i = 0; i < 3; ++i) Write("line");
  const std::string text = Contents(name_);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
}

// --- The look-up.

TEST_F(LogSyslogServerTest, AFailedLookUpIsCountedAndNotRepeatedWithinTheInterval) {
  answer = [](const std::string&) { return Resolution::kFailed; };
  log_.set_output_file_name(name_.c_str());
  const uint32_t before = DateTime::GetUptime_ms();
  Start("server.example");
  EXPECT_EQ(log_.syslog_getaddr_errors_, 1);
  EXPECT_LT(log_.last_addr_resol_error_time_ - before, 600000u);
  EXPECT_EQ(log_.output_syslog_addr_, 0xFFFFFFFF);
  EXPECT_TRUE(log_.output_syslog_opened_);
  Write("first");
  Write("second");
  log_.Start();
  Write("third");
  EXPECT_EQ(asked.size(), 1u);
  EXPECT_EQ(log_.syslog_getaddr_errors_, 1);
  EXPECT_EQ(server_.datagram(), "none");
  // The other outputs get the lines.
  EXPECT_THAT(Contents(name_), testing::AllOf(HasSubstr("first"), HasSubstr("third")));
}

TEST_F(LogSyslogServerTest, ALineBehindTheIntervalLooksUpAgain) {
  EXPECT_EQ(OpenLog::address_resolution_interval_, 1800000);
  answer = [](const std::string&) { return Resolution::kNoAddress; };
  Start("server.example");
  FailBefore(kInterval - 600000);
  Write("early");
  EXPECT_EQ(asked.size(), 1u);
  FailBefore(kInterval);
  Write("late");
  EXPECT_EQ(asked.size(), 2u);
  EXPECT_EQ(log_.syslog_getaddr_errors_, 2);
  Write("early again");
  EXPECT_EQ(asked.size(), 2u);

  answer = nullptr;
  FailBefore(kInterval);
  Write("found");
  Write("and kept");
  EXPECT_EQ(asked.size(), 3u);
  EXPECT_EQ(log_.syslog_getaddr_errors_, 2);
  EXPECT_THAT(server_.datagram(), EndsWith(" - found\n"));
  EXPECT_THAT(server_.datagram(), EndsWith(" - and kept\n"));
}

TEST_F(LogSyslogServerTest, AClockThatIsSetBackDoesNotHoldTheLookUp) {
  answer = [](const std::string&) { return Resolution::kFailed; };
  Start("server.example");
  FailBefore(static_cast<uint32_t>(-3600000));  // an hour ahead of now
  Write("text");
  EXPECT_EQ(asked.size(), 2u);
}

TEST_F(LogSyslogServerTest, ALineThatIsNotSentLooksNothingUp) {
  answer = [](const std::string&) { return Resolution::kFailed; };
  Start("server.example");
  FailBefore(kInterval);
  log_.set_level(Log::LL_ERROR);
  Write("below the level");
  log_.set_level(Log::LL_TRACE);
  log_.set_outputs(Log::LO_FILE);
  Write("not for syslog");
  EXPECT_EQ(asked.size(), 1u);
}

TEST_F(LogSyslogServerTest, AnAddressOfAllOnesIsAFailure) {
  sockets::SetResolveFunction([](const char*, uint32_t* address) {
    *address = 0xFFFFFFFF;
    return Resolution::kFound;
  });
  Start("everybody.example");
  EXPECT_EQ(log_.syslog_getaddr_errors_, 1);
}

TEST_F(LogSyslogServerTest, AnotherHostIsLookedUpAtOnce) {
  answer = [](const std::string& host) {
    return host == "bad.example" ? Resolution::kFailed : Resolution::kFound;
  };
  Start("bad.example");
  log_.set_output_syslog_host("bad.example");
  Write("the same host");
  EXPECT_THAT(asked, ElementsAre("bad.example"));
  log_.set_output_syslog_host("good.example");
  Write("another");
  EXPECT_THAT(server_.datagram(), EndsWith(" - another\n"));
  log_.set_output_syslog_host("bad.example");
  EXPECT_EQ(log_.output_syslog_addr_, 0xFFFFFFFF);
  Write("lost");
  EXPECT_THAT(asked, ElementsAre("bad.example", "good.example", "bad.example"));
  EXPECT_EQ(log_.syslog_getaddr_errors_, 2);
  EXPECT_EQ(server_.datagram(), "none");
}

TEST_F(LogSyslogServerTest, AHostThatChangesDuringTheLookUpGetsItsOwn) {
  answer = [this](const std::string& host) {
    if (host == "old.example") log_.set_output_syslog_host("new.example");
    return host == "old.example" ? Resolution::kFailed : Resolution::kFound;
  };
  Start("old.example");
  EXPECT_EQ(log_.syslog_getaddr_errors_, 1);
  EXPECT_EQ(log_.output_syslog_addr_, 0xFFFFFFFF);
  Write("text");
  EXPECT_THAT(asked, ElementsAre("old.example", "new.example"));
  EXPECT_THAT(server_.datagram(), EndsWith(" - text\n"));
}

TEST_F(LogSyslogServerTest, TheLookUpMayWriteLinesItself) {
  // The mutex is free, and a line written here asks for no second look-up.
  log_.set_output_file_name(name_.c_str());
  answer = [this](const std::string&) {
    EXPECT_TRUE(log_.mutex_.TryLock());
    log_.mutex_.Unlock();
    Write("from within");
    return Resolution::kFound;
  };
  Start("server.example");
  EXPECT_EQ(asked.size(), 1u);
  EXPECT_THAT(Contents(name_), HasSubstr("from within"));
  EXPECT_EQ(server_.datagram(), "none");
}

TEST_F(LogSyslogServerTest, TheProcessesOwnLogMayLookUp) {
  // What the sockets log of the look-up comes back to the log that looks up.
  Log* log = Log::GetInstance();
  log->set_outputs(Log::LO_SYSLOG);
  log->set_output_syslog_port(server_.port());
  log->set_output_syslog_host("server.example");
  log->Start();
  LOG_INFO("text");
  log->Stop();
  log->set_output_syslog_host("");
  log->Start();
  EXPECT_THAT(server_.datagram(), EndsWith(" - text\n"));
}

TEST_F(LogSyslogServerTest, OtherThreadsWriteDuringALookUp) {
  log_.set_output_file_name(name_.c_str());
  answer = [this](const std::string&) {
    std::thread([this] { Write("meanwhile"); }).join();
    return Resolution::kFound;
  };
  Start("server.example");
  EXPECT_EQ(asked.size(), 1u);
  EXPECT_THAT(Contents(name_), HasSubstr("meanwhile"));
}

TEST_F(LogSyslogServerTest, DatagramsOfSeveralThreadsNeverMix) {
  constexpr int kThreads = 4;
  constexpr int kLines = 30;
  Start("server.example");
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([this, t] {
      for (int i = 0; i < kLines; ++i) {
        Write(std::string(static_cast<size_t>(20 + i), static_cast<char>('a' + t)) + "|");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  int counts[kThreads] = {};
  for (std::string text; (text = server_.datagram()) != "none";) {
    const size_t message = text.find(" - ");
    ASSERT_NE(message, std::string::npos);
    const char letter = text[message + 3];
    ASSERT_THAT(letter, testing::AllOf(testing::Ge('a'), testing::Lt('a' + kThreads)));
    const int thread = letter - 'a';
    EXPECT_EQ(text.substr(message + 3),
              std::string(static_cast<size_t>(20 + counts[thread]++), letter) + "|\n");
  }
  EXPECT_THAT(counts, testing::Each(kLines));
}

TEST_F(LogSyslogServerTest, SettingsMayChangeWhileThreadsWrite) {
  log_.set_output_file_name(name_.c_str());
  sockets::SetResolveFunction([](const char* host, uint32_t* address) {
    *address = loopback::Address();
    return host[0] == 'b' ? Resolution::kFailed : Resolution::kFound;
  });
  Start("good.example");
  std::thread writer([this] {
    for (int i = 0; i < 200; ++i) Write("line");
  });
  for (int i = 0; i < 20; ++i) {
    log_.set_output_syslog_host(i % 2 != 0 ? "good.example" : "bad.example");
    log_.Stop();
    log_.Start();
  }
  writer.join();
  Write("last");
  EXPECT_THAT(Contents(name_), EndsWith(" - last\n"));
}

// --- Start and Stop.

using LogStartTest = LogSyslogServerTest;

TEST_F(LogStartTest, StartAddsToTheFileThatIsNamed) {
  Put(name_, "old\n");
  log_.set_output_file_name(name_.c_str());
  log_.Start();
  EXPECT_TRUE(log_.output_file_opened_);
  Write("new");
  EXPECT_THAT(Contents(name_), MatchesRegex("old\n.* - new\n"));
}

TEST_F(LogStartTest, StartOpensNoFileWithoutANameOrAWish) {
  log_.Start();
  EXPECT_FALSE(log_.output_file_opened_);
  log_.set_output_file_name(name_.c_str());
  log_.set_outputs(Log::LO_SYSLOG);
  log_.Start();
  EXPECT_FALSE(log_.output_file_opened_);
  EXPECT_FALSE(std::filesystem::exists(name_));
}

TEST_F(LogStartTest, StartOpensTheConsoleIfItIsWanted) {
  log_.CloseConsole();
  log_.Start();
  EXPECT_FALSE(log_.output_console_opened_);
  log_.set_outputs(Log::LO_CONSOLE);
  log_.Start();
  EXPECT_TRUE(log_.output_console_opened_);
}

TEST_F(LogStartTest, AFileThatCannotBeOpenedFailsNobody) {
  log_.set_output_file_name((folder_ + "/missing/log").c_str());
  Start("server.example");
  EXPECT_FALSE(log_.output_file_opened_);
  Write("text");
  EXPECT_THAT(server_.datagram(), EndsWith(" - text\n"));
}

TEST_F(LogStartTest, StopDropsEveryLineUntilStart) {
  log_.set_output_file_name(name_.c_str());
  Start("server.example");
  Write("before");
  log_.Stop();
  EXPECT_TRUE(log_.stopped_);
  EXPECT_FALSE(log_.output_file_opened_);
  EXPECT_FALSE(log_.output_syslog_opened_);
  EXPECT_EQ(log_.output_syslog_socket_.handle(), -1);
  Write("between");
  log_.Stop();
  log_.Start();
  EXPECT_FALSE(log_.stopped_);
  Write("after");
  EXPECT_THAT(Contents(name_), MatchesRegex(".* - before\n.* - after\n"));
  EXPECT_THAT(server_.datagram(), EndsWith(" - before\n"));
  EXPECT_THAT(server_.datagram(), EndsWith(" - after\n"));
  EXPECT_EQ(server_.datagram(), "none");
  EXPECT_EQ(asked.size(), 1u);  // the address is kept
}

TEST_F(LogStartTest, StartWithoutAHostClosesSyslog) {
  Start("server.example");
  Write("text");
  Start("");
  EXPECT_FALSE(log_.output_syslog_opened_);
  EXPECT_EQ(log_.output_syslog_socket_.handle(), -1);
}

}  // namespace
