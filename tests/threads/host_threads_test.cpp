// Threads of a host at the library: in turns at one copy of it, and at the same time at two. Each
// copy has a register of its own.
#include <array>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "loaded_library.h"
#include "register/client/virtual_register.h"

namespace {

constexpr int kReceipts = 40;

RtfClientInterface* asked_for = nullptr;

long GiveClient(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = asked_for;
  return 0;
}

// A copy of the library with a register.
class Desk {
 public:
  explicit Desk(const std::string& library) : library_(library) {
    char words[] = "merkelin.ini";
    asked_for = &device;
    EXPECT_EQ(EXPORT_OF(library_, TradInit)(words, 0, nullptr, GiveClient), 0);
    run_ = EXPORT_OF(library_, EcrCmd);
  }
  ~Desk() { EXPORT_OF(library_, TradClose)(); }

  long Run(std::string line) {
    char answer[512];
    return run_(line.data(), answer);
  }
  // A receipt of two lines; how many of its calls were refused.
  int Sell() {
    int refused = 0;
    for (const char* line : {"VEND REP=1, PRE=1.00", "VEND REP=2, QTA=3, PRE=0.50", "CHIU TEND=1",
                             "INFO TOT", "no such command"}) {
      refused += Run(line) != 0;
    }
    return refused;
  }

  lorimat::VirtualRegister device;

 private:
  LoadedLibrary library_;
  long (*run_)(char*, char*) = nullptr;
};

class HostThreads : public testing::Test {
 protected:
  HostThreads() {
    std::filesystem::copy_file(LANGUAGE_FILE, folder_.File("merkelin.ini"));
    for (const char* name : {"one.so", "two.so"}) {
      std::filesystem::copy_file(LIBRARY_FILE, folder_.File(name));
    }
  }

  OwnFolder folder_;
};

TEST_F(HostThreads, TakeTurnsAtACopyOfTheLibrary) {
  Desk desk(folder_.File("one.so"));
  std::mutex turn;
  std::array<int, 3> refused = {};
  std::vector<std::thread> threads;
  for (int& mine : refused) {
    threads.emplace_back([&] {
      for (int n = 0; n < kReceipts; ++n) {
        const std::lock_guard lock(turn);
        mine += desk.Sell();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const int count : refused) EXPECT_EQ(count, refused[0]);
  EXPECT_EQ(desk.device.store().documents().size(), 3u * kReceipts);
}

TEST_F(HostThreads, WorkAtTheSameTimeAtTwoCopies) {
  std::array<std::unique_ptr<Desk>, 2> desks = {std::make_unique<Desk>(folder_.File("one.so")),
                                                std::make_unique<Desk>(folder_.File("two.so"))};
  std::vector<std::thread> threads;
  for (const std::unique_ptr<Desk>& desk : desks) {
    threads.emplace_back([&] {
      for (int n = 0; n < kReceipts; ++n) desk->Sell();
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::unique_ptr<Desk>& desk : desks) {
    EXPECT_EQ(desk->device.store().documents().size(), size_t{kReceipts});
    EXPECT_EQ(desk->device.last_refusal().code, 0) << "the last receipt";
  }
}

}  // namespace
