// One program sells on a register while others look at it, follow it and are killed: what they see
// fits together at every look, the seller loses nothing, and there is one seller alone.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "process.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"

namespace lorimat {
namespace {

constexpr int kReceipts = 1000;
constexpr int kPart = 25;  // receipts between two kills
constexpr int kLookers = 3;

class SideBySideTest : public testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/lorimat-side.XXXXXX";
    ASSERT_NE(mkdtemp(name), nullptr);
    folder_ = name;
    file_ = folder_ + "/shop.register";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::unique_ptr<Process> Part(const char* part) const {
    return std::make_unique<Process>(std::vector<std::string>{SIDE_BY_SIDE_PART, part, file_});
  }
  std::unique_ptr<Process> Console(std::vector<std::string> arguments,
                                   const std::string& errors = {}) const {
    arguments.insert(arguments.begin(), LORIMAT_CONSOLE);
    for (const std::string& word : {std::string("--register"), file_}) arguments.push_back(word);
    return std::make_unique<Process>(std::move(arguments), errors);
  }
  // A seller whose register is there.
  std::unique_ptr<Process> Seller() const {
    auto seller = Part("sell");
    if (!seller->Take()) throw std::runtime_error("the seller cannot begin");
    return seller;
  }
  static void Sell(Process& seller, int receipts = 1) {
    for (int n = 0; n < receipts; ++n) {
      ASSERT_TRUE(seller.Give());
      ASSERT_TRUE(seller.Take());
    }
  }
  bool IsRefused() const {
    RegisterSettings settings;
    settings.file = file_;
    try {
      VirtualRegister device(settings);
    } catch (const RegisterError& error) {
      EXPECT_EQ(error.what(), file_ + ": is in use by another program");
      return true;
    }
    return false;
  }
  int64_t LogSize() const {
    struct stat status = {};
    return stat((file_ + "-wal").c_str(), &status) == 0 ? status.st_size : 0;
  }
  // The places of the journal's list, from the next line on.
  static void ExpectPlaces(Process& follower, int first, int last) {
    for (int place = first; place <= last; ++place) {
      std::string line;
      ASSERT_TRUE(follower.TakeLine(&line)) << place;
      ASSERT_EQ(std::atoi(line.c_str()), place) << line;
    }
  }
  static void ExpectHeads(Process& follower) {
    std::string line;
    ASSERT_TRUE(follower.TakeLine(&line));
    ASSERT_NE(line.find("Place"), line.npos) << line;
  }
  void ExpectAllStored(int receipts) const {
    const RegisterFile look(file_);
    EXPECT_EQ(look.Status().documents, static_cast<uint64_t>(receipts));
    EXPECT_EQ(look.Status().grand_total, 10000 * int64_t{receipts});
    const JournalCheck check = look.VerifyJournal(nullptr);
    EXPECT_TRUE(check.good());
    EXPECT_EQ(check.documents, static_cast<uint64_t>(receipts));
  }

  std::string folder_;
  std::string file_;
};

TEST_F(SideBySideTest, ReadersSeeWhatFitsTogetherAndTheSellerLosesNothing) {
  auto seller = Seller();
  Sell(*seller);
  auto journal = Console({"journal", "--follow"});
  auto paper = Console({"paper", "--follow"});
  auto sleeper = Console({"journal", "--follow"});
  ExpectHeads(*journal);
  ExpectHeads(*sleeper);
  ExpectPlaces(*sleeper, 1, 1);
  sleeper->Signal(SIGSTOP);
  std::vector<std::unique_ptr<Process>> lookers;
  for (int n = 0; n < kLookers; ++n) lookers.push_back(Part("look"));

  int kills = 0;
  for (int sold = 1; sold < kReceipts; ++sold) {
    ASSERT_TRUE(seller->Give());
    if (sold % kPart == 0) {
      // It has seen something, and dies at whatever it is, while the seller sells.
      std::unique_ptr<Process>& looker = lookers[static_cast<size_t>(kills) % kLookers];
      ASSERT_TRUE(looker->Take()) << "a reader saw what does not fit together";
      looker->Signal(SIGKILL);
      ASSERT_EQ(looker->Wait(), -SIGKILL);
      looker = Part("look");
      ++kills;
      EXPECT_TRUE(IsRefused());
    }
    ASSERT_TRUE(seller->Take()) << "the seller was refused";
  }
  for (auto& looker : lookers) {
    EXPECT_TRUE(looker->Take());
    looker->Signal(SIGKILL);
    EXPECT_EQ(looker->Wait(), -SIGKILL);
  }
  EXPECT_TRUE(IsRefused());
  ExpectPlaces(*journal, 1, kReceipts);
  sleeper->Signal(SIGCONT);
  ExpectPlaces(*sleeper, 2, kReceipts);
  int documents = 0;
  for (std::string line; documents < kReceipts && paper->TakeLine(&line);) {
    if (line.find("DOCUMENTO N.") != line.npos) ++documents;
  }
  EXPECT_EQ(documents, kReceipts);
  for (Process* follower : {journal.get(), paper.get(), sleeper.get()}) {
    follower->Signal(SIGINT);
    EXPECT_EQ(follower->Wait(), 0);
  }
  seller->CloseInput();
  EXPECT_EQ(seller->Wait(), 0);
  ExpectAllStored(kReceipts);
  // Nothing is left beside the file.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
  EXPECT_EQ(kills, (kReceipts - 1) / kPart);
}

// A thousand receipts write some ten times as much into the log.
TEST_F(SideBySideTest, TheLogStaysShortBehindAFollower) {
  auto seller = Seller();
  Sell(*seller);
  auto follower = Console({"status", "--follow", "--json"});
  std::string line;
  ASSERT_TRUE(follower->TakeLine(&line));
  int64_t longest = 0;
  for (int sold = 1; sold < kReceipts; ++sold) {
    Sell(*seller);
    longest = std::max(longest, LogSize());
  }
  EXPECT_GT(longest, 0);
  EXPECT_LT(longest, 9'000'000);
  // One that reads just when the register closes would leave the log to the next start.
  follower->Signal(SIGINT);
  EXPECT_EQ(follower->Wait(), 0);
  seller->CloseInput();
  EXPECT_EQ(seller->Wait(), 0);
  EXPECT_EQ(LogSize(), 0);
  ExpectAllStored(kReceipts);
}

TEST_F(SideBySideTest, AFollowerGoesOnOverTheEndsOfSellers) {
  {
    auto seller = Seller();
    Sell(*seller);
    seller->CloseInput();
    ASSERT_EQ(seller->Wait(), 0);
  }
  auto follower = Console({"journal", "--follow"});
  ExpectHeads(*follower);
  ExpectPlaces(*follower, 1, 1);
  {
    auto seller = Seller();
    Sell(*seller, 2);
    ExpectPlaces(*follower, 2, 3);
    seller->Signal(SIGKILL);
    ASSERT_EQ(seller->Wait(), -SIGKILL);
  }
  EXPECT_EQ(RegisterFile(file_).Status().documents, 3u);
  auto seller = Seller();
  Sell(*seller);
  ExpectPlaces(*follower, 4, 4);
}

TEST_F(SideBySideTest, AKilledSellersRegisterIsReadAndNotChanged) {
  auto seller = Seller();
  Sell(*seller, 3);
  seller->Signal(SIGKILL);
  ASSERT_EQ(seller->Wait(), -SIGKILL);
  const auto bytes = [](const std::string& file) {
    std::string content;
    if (FILE* stream = std::fopen(file.c_str(), "rb")) {
      for (int byte; (byte = std::fgetc(stream)) != EOF;) content += static_cast<char>(byte);
      std::fclose(stream);
    }
    return content;
  };
  const std::string before = bytes(file_);
  const std::string log = bytes(file_ + "-wal");
  ASSERT_FALSE(log.empty());
  ExpectAllStored(3);
  EXPECT_EQ(bytes(file_), before);
  EXPECT_EQ(bytes(file_ + "-wal"), log);
  EXPECT_FALSE(IsRefused());
  ExpectAllStored(3);
}

// Of which a look shows a thousand.
TEST_F(SideBySideTest, AFollowerShowsALongJournalWithoutNews) {
  {
    auto seller = Seller();
    Sell(*seller, kReceipts + kPart);
    seller->CloseInput();
    ASSERT_EQ(seller->Wait(), 0);
  }
  auto follower = Console({"journal", "--follow"});
  ExpectHeads(*follower);
  ExpectPlaces(*follower, 1, kReceipts + kPart);
  follower->Signal(SIGINT);
  EXPECT_EQ(follower->Wait(), 0);
}

TEST_F(SideBySideTest, ACopyIsOfOneMomentAndTheSellerSellsOn) {
  constexpr int kCopies = 20;
  auto seller = Seller();
  int sold = 0;
  for (int number = 0; number < kCopies; ++number) {
    Sell(*seller, kPart);
    sold += kPart;
    const int before = sold;
    const std::string to = folder_ + "/copy" + std::to_string(number);
    Process copy({LORIMAT_CONSOLE, "copy", file_, to}, folder_ + "/notes");
    Sell(*seller, kPart);
    sold += kPart;
    std::string line;
    while (copy.TakeLine(&line)) {
    }
    const int code = copy.Wait();
    std::ifstream notes(folder_ + "/notes");
    std::getline(notes, line);
    ASSERT_EQ(code, 0) << line;
    const RegisterFile look(to);
    const RegisterStatus status = look.Status();
    EXPECT_GE(status.documents, static_cast<uint64_t>(before));
    EXPECT_LE(status.documents, static_cast<uint64_t>(sold));
    EXPECT_EQ(status.grand_total, 10000 * static_cast<int64_t>(status.documents));
    EXPECT_TRUE(look.VerifyJournal(nullptr).good());
  }
  seller->CloseInput();
  EXPECT_EQ(seller->Wait(), 0);
  ExpectAllStored(sold);
}

// Killed behind as many receipts as its turn has, wherever that is in its work.
TEST_F(SideBySideTest, ACopyThatIsKilledLeavesNothingAndHoldsNobodyUp) {
  auto seller = Seller();
  int sold = 0;
  const std::string to = folder_ + "/copy";
  for (int number = 0; number < kPart; ++number) {
    Process copy({LORIMAT_CONSOLE, "copy", file_, to}, folder_ + "/notes");
    Sell(*seller, number);
    sold += number;
    copy.Signal(SIGKILL);
    const int code = copy.Wait();
    EXPECT_TRUE(code == -SIGKILL || code == 0) << code;
    if (std::filesystem::exists(to)) {
      EXPECT_TRUE(RegisterFile(to).VerifyJournal(nullptr).good());
    }
    EXPECT_FALSE(std::filesystem::exists(to + ".part"));
    std::filesystem::remove(to);
  }
  seller->CloseInput();
  EXPECT_EQ(seller->Wait(), 0);
  ExpectAllStored(sold);
}

TEST_F(SideBySideTest, AFollowerEndsWithItsFile) {
  {
    auto seller = Seller();
    Sell(*seller);
    seller->CloseInput();
    ASSERT_EQ(seller->Wait(), 0);
  }
  for (const bool replaced : {false, true}) {
    std::filesystem::copy_file(file_, folder_ + "/other");
    auto follower = Console({"journal", "--follow"}, folder_ + "/notes");
    ExpectHeads(*follower);
    ExpectPlaces(*follower, 1, 1);
    if (replaced) {
      std::filesystem::rename(folder_ + "/other", file_);
    } else {
      std::filesystem::remove(file_);
    }
    EXPECT_EQ(follower->Wait(), 0);
    std::ifstream notes(folder_ + "/notes");
    std::string line;
    std::getline(notes, line);
    EXPECT_EQ(line, "lorimat: note: " + file_ +
                        ": is not there any more, or is another file by now: nothing more can "
                        "come");
    if (!replaced) std::filesystem::rename(folder_ + "/other", file_);
  }
}

// It stands still while more is printed than the roll keeps.
TEST_F(SideBySideTest, AFollowerOfThePaperTellsWhatItMissed) {
  auto seller = Seller();
  Sell(*seller);
  const size_t seen = RegisterFile(file_).Roll().lines().size();
  auto follower = Console({"paper", "--follow"}, folder_ + "/notes");
  std::string line;
  for (size_t number = 0; number < seen; ++number) ASSERT_TRUE(follower->TakeLine(&line));
  follower->Signal(SIGSTOP);
  ASSERT_TRUE(seller->Give('p'));
  ASSERT_TRUE(seller->Take());
  const Paper roll = RegisterFile(file_).Roll();
  ASSERT_GT(roll.dropped(), seen);
  follower->Signal(SIGCONT);
  for (const std::string& printed : roll.lines()) {
    ASSERT_TRUE(follower->TakeLine(&line));
    ASSERT_EQ(line, printed);
  }
  follower->Signal(SIGTERM);
  EXPECT_EQ(follower->Wait(), 128 + SIGTERM);
  std::ifstream notes(folder_ + "/notes");
  std::getline(notes, line);
  EXPECT_EQ(line, "lorimat: note: " + std::to_string(roll.dropped() - seen) +
                      " lines are missing: the register has torn them off");
}

TEST_F(SideBySideTest, AFollowerEndsWhenNobodyReadsIt) {
  auto seller = Seller();
  Sell(*seller);
  auto follower = Console({"status", "--follow"});
  std::string line;
  ASSERT_TRUE(follower->TakeLine(&line));
  follower->CloseOutput();
  EXPECT_EQ(follower->Wait(), -SIGPIPE);
}

}  // namespace
}  // namespace lorimat
