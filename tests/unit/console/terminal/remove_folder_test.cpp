#include "console/terminal/remove_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

TEST(RemoveFolder, TakesAllThatIsInItAndNothingBehindItsLinks) {
  std::string folder = (fs::temp_directory_path() / "remove-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const fs::path gone = fs::path(folder) / "gone";
  fs::create_directories(gone / "deep" / "deeper");
  fs::create_directories(fs::path(folder) / "stays");
  std::ofstream(gone / "deep" / "file") << "text";
  std::ofstream(fs::path(folder) / "stays" / "file") << "text";
  fs::create_directory_symlink(fs::path(folder) / "stays", gone / "link");
  RemoveFolder(gone.string());
  EXPECT_FALSE(fs::exists(gone));
  EXPECT_TRUE(fs::exists(fs::path(folder) / "stays" / "file"));
  RemoveFolder(folder);
  EXPECT_FALSE(fs::exists(folder));
}

TEST(RemoveFolder, OfNothingIsNothing) { RemoveFolder("/nowhere/at/all"); }

}  // namespace
}  // namespace lorimat::console
