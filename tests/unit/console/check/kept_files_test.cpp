#include "console/check/kept_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

class KeptFilesTest : public testing::Test {
 protected:
  KeptFilesTest() : start_(fs::current_path()) {
    std::string folder = testing::TempDir() + "/kept-XXXXXX";
    folder_ = mkdtemp(folder.data());
    fs::current_path(folder_);
    std::ofstream("one") << "one";
    fs::create_directory("sub");
  }
  ~KeptFilesTest() override {
    fs::current_path(start_);
    fs::remove_all(folder_);
  }
  static KeptFiles Kept(const std::vector<KeptFile>& files) { return KeptFiles(files); }
  static bool IsKept(const KeptFiles& kept, const std::string& name) {
    return kept.Find(AT_FDCWD, name) != nullptr;
  }

  fs::path start_;
  fs::path folder_;
};

}  // namespace

TEST_F(KeptFilesTest, AreFoundUnderWhateverName) {
  fs::create_symlink("one", "soft");
  fs::create_symlink("soft", "softer");
  fs::create_hard_link("one", "hard");
  const KeptFiles kept = Kept({{"one", "the one"}});
  for (const std::string& name :
       {std::string("one"), std::string("./one"), std::string("sub/../one"), std::string("soft"),
        std::string("softer"), std::string("hard"), (folder_ / "one").string()}) {
    EXPECT_TRUE(IsKept(kept, name)) << name;
  }
  EXPECT_STREQ(kept.Find(AT_FDCWD, "hard"), "the one");
  for (const std::string name : {"two", "sub/one", "one2", "", ".", "sub", "none/one"}) {
    EXPECT_FALSE(IsKept(kept, name)) << name;
  }
}

TEST_F(KeptFilesTest, ThatAreNotThereYetAreFoundByTheirPlace) {
  fs::create_symlink("new", "soft");
  const KeptFiles kept = Kept({{"new", "the new one"}});
  for (const std::string name : {"new", "./new", "sub/../new", "soft"}) {
    EXPECT_TRUE(IsKept(kept, name)) << name;
  }
  EXPECT_FALSE(IsKept(kept, "sub/new"));
  // There by now, and gone again.
  std::ofstream("new") << "new";
  EXPECT_TRUE(IsKept(kept, "new"));
  EXPECT_FALSE(IsKept(kept, "one"));
}

TEST_F(KeptFilesTest, StayThoseOfTheFolderThatTheyWereNamedIn) {
  const KeptFiles kept = Kept({{"one", "the one"}});
  fs::current_path("sub");
  EXPECT_TRUE(IsKept(kept, "../one"));
  EXPECT_FALSE(IsKept(kept, "one"));
}

TEST_F(KeptFilesTest, AreThoseOfCapitalsWhereTheFileSystemSaysSo) {
  // Whether it does can be seen by what is there.
  const bool ignores = fs::exists("ONE");
  const KeptFiles kept = Kept({{"one", "the one"}, {"new", "the new one"}});
  EXPECT_EQ(IsKept(kept, "ONE"), ignores);
  EXPECT_EQ(IsKept(kept, "NEW"), ignores);
  // A folder where each name is found in other letters, too.
  fs::create_directory("any");
  std::ofstream("any/x") << "x";
  fs::create_hard_link("any/x", "any/X");
  EXPECT_TRUE(Kept({{"any/new", "the new one"}}).Find(AT_FDCWD, "any/NEW") != nullptr);
}

TEST_F(KeptFilesTest, OfARegisterAreThoseThatTheDatabaseMakesToo) {
  fs::create_symlink("one", "link");
  const KeptFiles kept(RegisterFiles("link"));
  for (const std::string name : {"one", "link", "one-wal", "one-shm", "one-journal"}) {
    EXPECT_TRUE(IsKept(kept, name)) << name;
  }
  EXPECT_FALSE(IsKept(kept, "link-wal"));
  EXPECT_TRUE(RegisterFiles("").empty());
}

TEST_F(KeptFilesTest, MayBeKeptForAWhile) {
  KeptFiles kept = Kept({{"one", "the one"}});
  {
    const KeptMeanwhile meanwhile(kept, {{"sub/two", "the other"}});
    EXPECT_TRUE(IsKept(kept, "sub/two"));
  }
  EXPECT_FALSE(IsKept(kept, "sub/two"));
  EXPECT_TRUE(IsKept(kept, "one"));
}

}  // namespace lorimat::console
