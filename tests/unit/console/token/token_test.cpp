// The tokens of the door and their file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "console/message/failure.h"
#include "console/token/token_file.h"

namespace lorimat::console {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;

class TokenFileTest : public testing::Test {
 protected:
  TokenFileTest() {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directory(folder_);
  }
  ~TokenFileTest() override { std::filesystem::remove_all(folder_); }
  void Write(const std::string& text) const {
    std::ofstream(file_, std::ios::binary) << text;
    chmod(file_.c_str(), 0600);
  }
  std::string Text() const {
    std::ifstream stream(file_, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void ExpectRefused(const std::string& cause) const {
    EXPECT_THAT(
        [this] { LoadTokens(file_); },
        Throws<Failure>(Property(&Failure::what, AllOf(HasSubstr(file_), HasSubstr(cause)))));
  }

  const std::string folder_ = testing::TempDir() + "lorimat-tokens-" +
                              testing::UnitTest::GetInstance()->current_test_info()->name();
  const std::string file_ = folder_ + "/shop.tokens";
};

TEST(Tokens, AreFoundByNameAndWholeSecretAlone) {
  const NewToken desk = MakeToken(TokenRole::kDesk);
  const NewToken office = MakeToken(TokenRole::kOperator);
  EXPECT_EQ(desk.secret.size(), 64U);
  EXPECT_NE(desk.secret, office.secret);
  EXPECT_NE(desk.row.salt, office.row.salt);
  const TokenTable table = {{"c1", desk.row}, {"office", office.row}};
  const auto found = FindHolder(table, "office." + office.secret);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "office");
  EXPECT_EQ(found->role, TokenRole::kOperator);
  for (size_t at = 0; at < desk.secret.size(); ++at) {
    std::string other = desk.secret;
    other[at] = other[at] == '0' ? '1' : '0';
    EXPECT_FALSE(FindHolder(table, "c1." + other)) << at;
  }
  for (const std::string& token :
       {std::string(), std::string("."), std::string("c1"), std::string("c1."),
        "c1." + desk.secret.substr(1), "c1." + desk.secret + "0", "office." + desk.secret,
        "c2." + desk.secret, "c1" + desk.secret, "c1." + std::string(100'000, 'x'),
        "c1." + desk.secret + std::string(1, '\0')}) {
    EXPECT_FALSE(FindHolder(table, token)) << token.substr(0, 80);
  }
}

TEST(Tokens, AName) {
  for (const char* name : {"a", "cassa-1", "A_z:9"}) EXPECT_TRUE(IsTokenName(name)) << name;
  EXPECT_TRUE(IsTokenName(std::string(64, 'x')));
  EXPECT_FALSE(IsTokenName(std::string(65, 'x')));
  for (const char* name : {"", "a.b", "a b", "\xc3\xa8", "a\n", "#"}) {
    EXPECT_FALSE(IsTokenName(name)) << name;
  }
}

TEST_F(TokenFileTest, KeepsWhatPeopleWroteBetweenTheLines) {
  const NewToken made = MakeToken(TokenRole::kDesk);
  Write("# the shop's\n\n" + TokenLine("c1", made.row) + "# the end");
  EXPECT_FALSE(AddToken(file_, "c1", made.row));
  EXPECT_TRUE(AddToken(file_, "c2", made.row));
  EXPECT_EQ(Text(), "# the shop's\n\n" + TokenLine("c1", made.row) + "# the end\n" +
                        TokenLine("c2", made.row));
  EXPECT_TRUE(RemoveToken(file_, "c1"));
  EXPECT_FALSE(RemoveToken(file_, "c1"));
  EXPECT_EQ(Text(), "# the shop's\n\n# the end\n" + TokenLine("c2", made.row));
  EXPECT_EQ(std::filesystem::status(file_).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(TokenFileTest, TellsTheLineAndTheCause) {
  const std::string good = TokenLine("c1", MakeToken(TokenRole::kDesk).row);
  struct Bad {
    std::string text;
    const char* cause;
  };
  for (const Bad& bad : std::vector<Bad>{
           {good + good, "line 2: c1 has a token already"},
           {good + "\n c2", "line 3:  is no name"},
           {"c.1 desk", "line 1: c.1 is no name"},
           {"c1 boss 00 00", "line 1: the role of c1"},
           {"c1", "line 1: the role of c1"},
           {"c1 desk 00 00", "line 1: salt and digest of c1"},
           {good.substr(0, good.size() - 2), "line 1: salt and digest of c1"},
           {good.substr(0, good.size() - 1) + " more\n", "line 1: salt and digest of c1"},
           {good.substr(0, good.size() - 1) + "\r\n", "line 1: salt and digest of c1"},
           {std::string(3 << 20, '#'), "is no file of tokens"}}) {
    Write(bad.text);
    ExpectRefused(bad.cause);
  }
}

TEST_F(TokenFileTest, IsItsOwnersAlone) {
  Write("");
  for (const mode_t mode : {0640U, 0604U, 0620U, 0602U, 0610U, 0601U, 0644U, 0666U}) {
    chmod(file_.c_str(), mode);
    ExpectRefused("may be read or written by others");
    EXPECT_THROW(AddToken(file_, "c1", MakeToken(TokenRole::kDesk).row), Failure);
    EXPECT_EQ(Text(), "");
  }
  chmod(file_.c_str(), 0400);
  EXPECT_NO_THROW(LoadTokens(file_));
  std::filesystem::remove(file_);
  ExpectRefused("cannot be opened");
  mkfifo(file_.c_str(), 0600);
  ExpectRefused("is no file of tokens");
}

// A door that is not root's has a file that it can read, and root says what is in it.
TEST_F(TokenFileTest, RootKeepsTheFilesOfOthers) {
  if (geteuid() != 0) GTEST_SKIP() << "root alone gives files away";
  constexpr uid_t kOther = 61234;
  const NewToken made = MakeToken(TokenRole::kDesk);
  Write("");
  ASSERT_EQ(chown(file_.c_str(), kOther, kOther), 0);
  EXPECT_TRUE(AddToken(file_, "c1", made.row));
  EXPECT_TRUE(AddToken(file_, "c2", made.row));
  EXPECT_TRUE(RemoveToken(file_, "c2"));
  EXPECT_EQ(LoadTokens(file_).count("c1"), 1U);
  struct stat status {};
  ASSERT_EQ(stat(file_.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, kOther);
  EXPECT_EQ(status.st_gid, kOther);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
  // Whom root's door lets in is not the other's to say.
  EXPECT_THAT([this] { TokenFile tokens(file_); },
              Throws<Failure>(Property(&Failure::what, HasSubstr("belongs to another user"))));
}

// systemd's copies for a service are root's, and an access list lets the service read them.
TEST_F(TokenFileTest, WhatTheServiceManagerGivesMayBeRead) {
  const NewToken made = MakeToken(TokenRole::kDesk);
  Write(TokenLine("c1", made.row));
  chmod(file_.c_str(), 0440);
  EXPECT_THROW(TokenFile tokens(file_), Failure);
  setenv("CREDENTIALS_DIRECTORY", (folder_ + "/").c_str(), 1);
  for (const mode_t mode : {0400U, 0440U}) {
    chmod(file_.c_str(), mode);
    EXPECT_TRUE(TokenFile(file_).Find("c1." + made.secret));
  }
  for (const mode_t mode : {0444U, 0460U, 0450U, 0404U}) {
    chmod(file_.c_str(), mode);
    EXPECT_THROW(TokenFile tokens(file_), Failure) << mode;
  }
  // The folder alone, and not what is beside or below it.
  chmod(file_.c_str(), 0440);
  for (const std::string& other : {folder_ + "/missing", testing::TempDir(), std::string()}) {
    setenv("CREDENTIALS_DIRECTORY", other.c_str(), 1);
    EXPECT_THROW(TokenFile tokens(file_), Failure) << other;
  }
  unsetenv("CREDENTIALS_DIRECTORY");
}

// What could not be read again is not written.
TEST_F(TokenFileTest, AFullFileIsLeftAsItIs) {
  const NewToken made = MakeToken(TokenRole::kDesk);
  const size_t room = TokenLine("c1", made.row).size();
  const std::string most = std::string((2 << 20) - room - 1, '#') + "\n";
  Write(most + "\n");
  EXPECT_THAT([&] { AddToken(file_, "c1", made.row); },
              Throws<Failure>(Property(&Failure::what, HasSubstr("no room for one more token"))));
  EXPECT_EQ(Text().size(), most.size() + 1);
  Write(most);
  EXPECT_TRUE(AddToken(file_, "c1", made.row));
  EXPECT_EQ(LoadTokens(file_).size(), 1U);
}

// Each that adds one waits for the others: none writes over what it has not read.
TEST_F(TokenFileTest, NoneIsLostWhereManyAddOne) {
  constexpr int kThreads = 4;
  constexpr int kEach = 5;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([this, thread] {
      for (int i = 0; i < kEach; ++i) {
        const std::string name = "c" + std::to_string(thread) + "-" + std::to_string(i);
        EXPECT_TRUE(AddToken(file_, name, MakeToken(TokenRole::kDesk).row));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(LoadTokens(file_).size(), static_cast<size_t>(kThreads * kEach));
}

TEST_F(TokenFileTest, BadNewsLeaveWhatWasRead) {
  const NewToken made = MakeToken(TokenRole::kDesk);
  Write(TokenLine("c1", made.row));
  TokenFile tokens(file_);
  Write("c1");
  EXPECT_THROW(tokens.Reload(), Failure);
  EXPECT_TRUE(tokens.Find("c1." + made.secret));
  Write("");
  tokens.Reload();
  EXPECT_FALSE(tokens.Find("c1." + made.secret));
}

}  // namespace
}  // namespace lorimat::console
