#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "pal/filesystem/filesystem.h"
#include "pal/platform/platform.h"

namespace {

TEST(LineEndsTest, TheAnswerIsWhatTheFileLayerDoes) {
  std::string name = (std::filesystem::temp_directory_path() / "endXXXXXX").string();
  const int made = mkstemp(name.data());
  ASSERT_NE(made, -1);
  close(made);
  fs_file_t file;
  ASSERT_NE(fs_open(&file, name.c_str(), FS_CREATE_TRUNC), FS_BADF);
  EXPECT_EQ(fs_write(&file, "\n", 1), 1);
  EXPECT_EQ(fs_fstat(&file), platform::DefaultModeTranslates() ? 2 : 1);
  fs_close(&file);
  fs_remove(name.c_str());
}

}  // namespace
