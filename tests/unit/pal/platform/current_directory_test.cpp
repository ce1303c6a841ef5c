#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "pal/platform/platform.h"
#include "unit/support/temporary_folder.h"

namespace {

namespace stdfs = std::filesystem;

class CurrentDirectoryTest : public testing::Test {
 protected:
  void SetUp() override {
    old_ = stdfs::current_path();
    folder_ = MakeTemporaryFolder().string();
  }
  void TearDown() override {
    stdfs::current_path(old_);
    stdfs::remove_all(folder_);
  }
  stdfs::path old_;
  std::string folder_;
};

TEST_F(CurrentDirectoryTest, SetShowsInGet) {
  ASSERT_TRUE(platform::EnterDirectory(folder_.c_str()));
  char path[4096];
  ASSERT_TRUE(platform::WorkingDirectory(path, sizeof(path)));
  EXPECT_EQ(path, folder_);
}

TEST_F(CurrentDirectoryTest, SetOfNoDirectoryFailsAndChangesNothing) {
  ASSERT_TRUE(platform::EnterDirectory(folder_.c_str()));
  EXPECT_FALSE(platform::EnterDirectory((folder_ + "/missing").c_str()));
  EXPECT_FALSE(platform::EnterDirectory(""));
  EXPECT_FALSE(platform::EnterDirectory(std::string(100000, 'x').c_str()));
  EXPECT_EQ(stdfs::current_path(), folder_);
}

TEST_F(CurrentDirectoryTest, GetRefusesAPathThatDoesNotFit) {
  ASSERT_TRUE(platform::EnterDirectory(folder_.c_str()));
  std::string room(folder_.size() + 1, '#');
  EXPECT_TRUE(platform::WorkingDirectory(room.data(), room.size()));
  EXPECT_EQ(room.c_str(), folder_);
  room.assign(folder_.size(), '#');
  EXPECT_FALSE(platform::WorkingDirectory(room.data(), room.size()));
  EXPECT_STREQ(room.c_str(), "");
  char one = '#';
  EXPECT_FALSE(platform::WorkingDirectory(&one, 1));
  EXPECT_EQ(one, 0);
  one = '#';
  EXPECT_FALSE(platform::WorkingDirectory(&one, 0));
  EXPECT_EQ(one, '#');
}

TEST_F(CurrentDirectoryTest, GetFailsWhenTheDirectoryIsGone) {
  const std::string gone = folder_ + "/gone";
  ASSERT_TRUE(stdfs::create_directory(gone));
  ASSERT_TRUE(platform::EnterDirectory(gone.c_str()));
  stdfs::remove(gone);
  char path[4096] = "#";
  EXPECT_FALSE(platform::WorkingDirectory(path, sizeof(path)));
  EXPECT_STREQ(path, "");
}

TEST(PathSeparator, IsThePlatformsOwn) {
  EXPECT_EQ(platform::PathSeparator(), static_cast<char>(stdfs::path::preferred_separator));
}

}  // namespace
