// The program as its service manager and its journal see it: this process plays them.
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <new>
#include <string>

#include "door/system/notices.h"
#include "door/system/service_manager.h"
#include "support/temporary_folder.h"

namespace lorimat::door {
namespace {

using testing::HasSubstr;

// A socket that takes datagrams.
class Listener {
 public:
  Listener() : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, file().c_str(), sizeof address.sun_path - 1);
    EXPECT_EQ(bind(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  }
  ~Listener() { std::filesystem::remove_all(folder_); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  std::string file() const { return (folder_ / "socket").string(); }
  // Waits for one.
  std::string Take(int flags = 0) const {
    std::string text(8192, '\0');
    const ssize_t size = recv(socket_.get(), text.data(), text.size(), flags);
    text.resize(size < 0 ? 0 : static_cast<size_t>(size));
    return text;
  }
  bool IsEmpty() const { return Take(MSG_DONTWAIT).empty(); }

 private:
  std::filesystem::path folder_ = MakeTemporaryFolder();
  console::Descriptor socket_;
};

class Environment {
 public:
  Environment(const char* name, const std::string& value) : name_(name) {
    setenv(name, value.c_str(), 1);
  }
  ~Environment() { unsetenv(name_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  const char* name_;
};

TEST(ServiceManager, IsToldWhatItAskedFor) {
  const Listener listener;
  const Environment address("NOTIFY_SOCKET", listener.file());
  const ServiceManager manager;
  EXPECT_EQ(std::getenv("NOTIFY_SOCKET"), nullptr);
  manager.Notify("READY=1\nSTATUS=there");
  EXPECT_EQ(listener.Take(), "READY=1\nSTATUS=there");
}

TEST(ServiceManager, NobodyIsToldWhereThereIsNone) {
  const ServiceManager manager;
  manager.Notify("READY=1");
  EXPECT_FALSE(manager.patience());
  const Environment address("NOTIFY_SOCKET", std::string(200, 'x'));
  const ServiceManager long_address;
  long_address.Notify("READY=1");
}

TEST(ServiceManager, SignsAreForTheProcessThatIsMeant) {
  const Environment patience("WATCHDOG_USEC", "400000");
  {
    const Environment pid("WATCHDOG_PID", "1");
    EXPECT_FALSE(ServiceManager().patience());
  }
  const Environment again("WATCHDOG_USEC", "400000");
  const Environment pid("WATCHDOG_PID", std::to_string(getpid()));
  EXPECT_EQ(ServiceManager().patience(), std::chrono::microseconds(400000));
  for (const char* bad : {"", "0", "-5", "1x", "99999999999999999999"}) {
    const Environment wrong("WATCHDOG_USEC", bad);
    EXPECT_FALSE(ServiceManager().patience()) << bad;
  }
}

TEST(SignsOfLife, ComeAsLongAsThereIsLife) {
  const Listener listener;
  const Environment address("NOTIFY_SOCKET", listener.file());
  const Environment patience("WATCHDOG_USEC", "4000");
  const ServiceManager manager;
  std::atomic<bool> is_alive{true};
  std::atomic<int> asked{0};
  const SignsOfLife signs(manager, [&] {
    ++asked;
    return is_alive.load();
  });
  for (int i = 0; i < 3; ++i) EXPECT_EQ(listener.Take(), "WATCHDOG=1");
  is_alive = false;
  // One may be under way.
  const int before = asked + 1;
  while (asked <= before) usleep(100);
  while (!listener.IsEmpty()) {
  }
  const int more = asked + 5;
  while (asked < more) usleep(100);
  EXPECT_TRUE(listener.IsEmpty());
}

// No memory, say.
TEST(SignsOfLife, GoOnBehindWhateverIsThrown) {
  const Listener listener;
  const Environment address("NOTIFY_SOCKET", listener.file());
  const Environment patience("WATCHDOG_USEC", "4000");
  const ServiceManager manager;
  std::atomic<int> asked{0};
  const SignsOfLife signs(manager, [&] {
    if (++asked == 1) throw std::bad_alloc();
    return true;
  });
  EXPECT_EQ(listener.Take(), "WATCHDOG=1");
  EXPECT_GT(asked, 1);
}

TEST(ServiceManager, SocketsOfAnotherProcessAreNotTaken) {
  const Environment pid("LISTEN_PID", "1");
  const Environment count("LISTEN_FDS", "1");
  EXPECT_FALSE(ServiceManager().TakeSocket());
}

TEST(ServiceManager, MoreThanOneSocketIsRefused) {
  const Environment pid("LISTEN_PID", std::to_string(getpid()));
  const Environment count("LISTEN_FDS", "2");
  ServiceManager manager;
  EXPECT_EQ(manager.TakeSocket(), -1);
}

// Standard error of this process, as the journal would be.
std::string ErrorStream() {
  struct stat status {};
  fstat(STDERR_FILENO, &status);
  return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

Job Moved() {
  Job job;
  job.id = 12;
  job.desk = "till\n1=\x1b[31m";
  job.key = "secret-key";
  job.reference = "secret";
  job.lines = {"VEND REP=1, PRE=1.20"};
  job.history.push_back({1000, JobState::kQueued, Why::kAccepted});
  job.history.push_back({2000, JobState::kConfirmed, Why::kOperatorDone, "a\nPRIORITY=0"});
  return job;
}

TEST(Notices, GoToTheJournalWithFields) {
  const Listener listener;
  const Environment stream("JOURNAL_STREAM", ErrorStream());
  console::Streams streams;
  Notices notices(streams, listener.file());
  ASSERT_TRUE(notices.is_journal());
  notices.TellJob(Moved());
  EXPECT_EQ(listener.Take(),
            "MESSAGE=job 12: confirmed: an operator says that it is done: a\\x0APRIORITY=0\n"
            "PRIORITY=6\nSYSLOG_IDENTIFIER=lorimatd\nLORIMAT_JOB=12\nLORIMAT_STATE=confirmed\n"
            "LORIMAT_WHY=an operator says that it is done: a\\x0APRIORITY=0\n"
            "LORIMAT_DESK=till\\x0A1=\\x1B[31m\n");
  notices.Tell(Level::kError, "it is over");
  EXPECT_THAT(listener.Take(), HasSubstr("MESSAGE=it is over\nPRIORITY=3\n"));
  notices.SetMost(Level::kNote);
  notices.TellJob(Moved());
  notices.SetMost(Level::kError);
  notices.Tell(Level::kNote, "a note");
  EXPECT_TRUE(listener.IsEmpty());
}

TEST(Notices, GoToStandardErrorWhereThatIsNotTheJournal) {
  const Listener listener;
  const Environment stream("JOURNAL_STREAM", "0:0");
  testing::internal::CaptureStderr();
  {
    console::Streams streams;
    Notices notices(streams, listener.file());
    EXPECT_FALSE(notices.is_journal());
    notices.TellJob(Moved());
    notices.Tell(Level::kNote, "a note\x1b");
    notices.SetMost(Level::kJob);
    notices.TellJob(Moved());
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "lorimatd: a note\\x1B\n"
            "lorimatd: job 12: confirmed: an operator says that it is done: a\\x0APRIORITY=0\n");
  EXPECT_TRUE(listener.IsEmpty());
}

// A journal that is not there: what it would have been told is on standard error.
TEST(Notices, AreNotLostWithTheJournal) {
  testing::internal::CaptureStderr();
  {
    const Environment stream("JOURNAL_STREAM", ErrorStream());
    console::Streams streams;
    Notices notices(streams, "/nonexistent/socket");
    ASSERT_TRUE(notices.is_journal());
    notices.Tell(Level::kNote, "a note");
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "lorimatd: a note\n");
}

// Nobody reads its stream, and its socket is not there.
TEST(Notices, KeepNobodyWaitingForAJournalThatStandsStill) {
  int pair[2] = {-1, -1};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair), 0);
  const console::Descriptor reader(pair[0]);
  const console::Descriptor before(dup(STDERR_FILENO));
  dup2(pair[1], STDERR_FILENO);
  close(pair[1]);
  constexpr int kNotices = 2000;
  int64_t lost = 0;
  bool is_journal = false;
  {
    const Environment stream("JOURNAL_STREAM", ErrorStream());
    console::Streams streams;
    Notices notices(streams, "/nonexistent/socket");
    is_journal = notices.is_journal();
    notices.Tell(Level::kNote, "the first one");
    for (int i = 0; i < kNotices; ++i) notices.Tell(Level::kNote, std::string(1000, 'x'));
    lost = notices.lost();
  }
  dup2(before.get(), STDERR_FILENO);
  EXPECT_TRUE(is_journal);
  EXPECT_GT(lost, 0);
  EXPECT_LT(lost, kNotices);
  std::string text(24, '\0');
  EXPECT_EQ(recv(reader.get(), text.data(), text.size(), 0), 24);
  EXPECT_EQ(text, "lorimatd: the first one\n");
}

}  // namespace
}  // namespace lorimat::door
