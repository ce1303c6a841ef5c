// A file that replaces another: whole and on the disk before it takes the name, and nothing beside
// it otherwise.
#include "console/terminal/replacing_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "unit/register/file_calls.h"

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

class ReplacingFileTest : public testing::Test {
 protected:
  ~ReplacingFileTest() override {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  void WriteText(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name)) << text;
  }
  std::string ReadText(const std::string& name) const {
    std::ifstream file(Path(name));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder_)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  fs::path folder_ = MakeTemporaryFolder();
};

using Set = std::set<std::string>;

TEST_F(ReplacingFileTest, TheOlderFileStaysUntilTheNewOneIsWhole) {
  WriteText("file", "older");
  ReplacingFile file;
  ASSERT_EQ(file.Make(Path("file")), 0);
  EXPECT_EQ(ReadText("file"), "older");
  EXPECT_EQ(file.Write("newer"), 0);
  EXPECT_EQ(file.SyncName(), 0);
  EXPECT_EQ(ReadText("file"), "newer");
  EXPECT_EQ(Names(), Set{"file"});
}

TEST_F(ReplacingFileTest, OneThatIsNotWrittenLeavesNothing) {
  {
    ReplacingFile file;
    ASSERT_EQ(file.Make(Path("file")), 0);
  }
  EXPECT_EQ(Names(), Set{});
}

TEST_F(ReplacingFileTest, ADiskThatDoesNotTakeItLeavesTheOlderFile) {
  for (const bool older : {true, false}) {
    if (older) WriteText("file", "older");
    ReplacingFile file;
    ASSERT_EQ(file.Make(Path("file")), 0);
    {
      const lorimat::FileCalls failing([](const char* call, const std::string&) {
        return std::string(call) == "fsync" ? EIO : 0;
      });
      EXPECT_EQ(file.Write("newer"), EIO);
    }
    EXPECT_EQ(Names(), older ? Set{"file"} : Set{});
    if (older) {
      EXPECT_EQ(ReadText("file"), "older");
      fs::remove(Path("file"));
    }
  }
}

TEST_F(ReplacingFileTest, ANameThatCannotBeTakenLeavesNothingBeside) {
  ReplacingFile file;
  ASSERT_EQ(file.Make(Path("file")), 0);
  fs::create_directory(Path("file"));
  EXPECT_EQ(file.Write("newer"), EISDIR);
  EXPECT_EQ(Names(), Set{"file"});
}

// Where a file cannot be named later it is made with a name.
TEST_F(ReplacingFileTest, WithoutFilesThatHaveNoNameAHiddenOneIsFilled) {
  const lorimat::FileCalls failing([](const char* call, const std::string&) {
    return std::string(call) == "linkat" ? EPERM : 0;
  });
  WriteText("file", "older");
  {
    ReplacingFile file;
    ASSERT_EQ(file.Make(Path("file")), 0);
    EXPECT_EQ(file.Write("newer"), 0);
  }
  EXPECT_EQ(ReadText("file"), "newer");
  EXPECT_EQ(Names(), Set{"file"});
  ReplacingFile file;
  ASSERT_EQ(file.Make(Path("other")), 0);
  fs::create_directory(Path("other"));
  EXPECT_EQ(file.Write("newer"), EISDIR);
  EXPECT_EQ(Names(), (Set{"file", "other"}));
}

TEST_F(ReplacingFileTest, ANameThatCouldNotBeWaitedForIsTold) {
  ReplacingFile file;
  ASSERT_EQ(file.Make(Path("file")), 0);
  ASSERT_EQ(file.Write("newer"), 0);
  const lorimat::FileCalls failing([this](const char* call, const std::string& name) {
    return std::string(call) == "fsync" && name == folder_.string() ? EIO : 0;
  });
  EXPECT_EQ(file.SyncName(), EIO);
  EXPECT_EQ(ReadText("file"), "newer");
}

// A run can go to another folder on its way.
TEST_F(ReplacingFileTest, TheFolderIsTheOneOfTheBeginning) {
  const fs::path before = fs::current_path();
  fs::create_directory(Path("other"));
  fs::current_path(folder_);
  ReplacingFile file;
  ASSERT_EQ(file.Make("file"), 0);
  fs::current_path(Path("other"));
  EXPECT_EQ(file.Write("newer"), 0);
  fs::current_path(before);
  EXPECT_EQ(Names(), (Set{"file", "other"}));
  EXPECT_TRUE(fs::is_empty(Path("other")));
}

TEST_F(ReplacingFileTest, LinksStayAndLeadToTheFile) {
  fs::create_directory(Path("other"));
  fs::create_symlink("other/second", Path("first"));
  fs::create_symlink("target", Path("other/second"));
  for (const std::string text : {"new", "newer"}) {
    ReplacingFile file;
    ASSERT_EQ(file.Make(Path("first")), 0);
    EXPECT_EQ(file.Write(text), 0);
    EXPECT_TRUE(fs::is_symlink(Path("first")));
    EXPECT_TRUE(fs::is_symlink(Path("other/second")));
    EXPECT_FALSE(fs::is_symlink(Path("other/target")));
    EXPECT_EQ(ReadText("other/target"), text);
  }
  fs::create_symlink("round", Path("round"));
  ReplacingFile file;
  EXPECT_EQ(file.Make(Path("round")), ELOOP);
}

TEST_F(ReplacingFileTest, TheModeStaysAndANewFileHasTheUsualOne) {
  const mode_t mask = umask(0027);
  WriteText("file", "older");
  chmod(Path("file").c_str(), 0604);
  for (const std::string name : {"file", "new"}) {
    ReplacingFile file;
    ASSERT_EQ(file.Make(Path(name)), 0);
    EXPECT_EQ(file.Write("newer"), 0);
    struct stat status = {};
    EXPECT_EQ(stat(Path(name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, name == "file" ? 0604u : 0640u) << name;
  }
  umask(mask);
}

// Until it is whole, nobody else reads what replaces a file of the user's own.
TEST_F(ReplacingFileTest, AHiddenFileIsTheUsersOwnUntilItHasTheMode) {
  WriteText("file", "older");
  ASSERT_EQ(chmod(Path("file").c_str(), 0644), 0);
  mode_t mode = 0;
  const FileCalls calls([&](const char* call, const std::string&) {
    if (call == std::string("linkat")) return EOPNOTSUPP;
    return 0;
  });
  ReplacingFile file;
  ASSERT_EQ(file.Make(Path("file")), 0);
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    struct stat status;
    if (stat(entry.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
    std::error_code none;
    const std::string name = fs::read_symlink(entry.path(), none).string();
    if (name.starts_with(folder_.string() + "/")) mode = status.st_mode & 0777;
  }
  EXPECT_EQ(mode, mode_t{0600});
  EXPECT_EQ(file.Write("newer"), 0);
  struct stat status;
  ASSERT_EQ(stat(Path("file").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, mode_t{0644});
}

TEST_F(ReplacingFileTest, ALinkThatSomebodyElsePlantedIsNotFollowed) {
  if (geteuid() != 0) GTEST_SKIP() << "only root makes a link another's";
  constexpr uid_t kOther = 65534;
  fs::create_directory(folder_ / "all");
  ASSERT_EQ(chmod(Path("all").c_str(), 01777), 0);
  WriteText("mine", "older");
  fs::create_symlink(folder_ / "mine", folder_ / "all" / "link");
  ASSERT_EQ(lchown(Path("all/link").c_str(), kOther, kOther), 0);
  EXPECT_EQ(ReplacingFile().Make(Path("all/link")), ELOOP);
  EXPECT_EQ(ReadText("mine"), "older");
  // The folder's owner is trusted, and so is a folder that is not everybody's.
  ASSERT_EQ(chown(Path("all").c_str(), kOther, kOther), 0);
  EXPECT_EQ(ReplacingFile().Make(Path("all/link")), 0);
  ASSERT_EQ(chown(Path("all").c_str(), 0, 0), 0);
  ASSERT_EQ(chmod(Path("all").c_str(), 0755), 0);
  EXPECT_EQ(ReplacingFile().Make(Path("all/link")), 0);
}

TEST_F(ReplacingFileTest, WhatIsNoNameOfAFileIsRefused) {
  const std::vector<std::pair<std::string, int>> rows = {
      {"none/file", ENOENT}, {"folder", EISDIR}, {"folder/", EISDIR}, {"..", EISDIR}};
  fs::create_directory(Path("folder"));
  for (const auto& [name, error] : rows) {
    ReplacingFile file;
    EXPECT_EQ(file.Make(Path(name)), error) << name;
  }
  EXPECT_EQ(Names(), Set{"folder"});
}

}  // namespace

}  // namespace lorimat::console
