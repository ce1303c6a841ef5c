#include "pal/filesystem/filesystem.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "unit/support/temporary_folder.h"

namespace {

namespace stdfs = std::filesystem;

std::string Contents(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

void Put(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// The descriptors that the process has open.
std::set<int> OpenDescriptors() {
  std::set<int> found;
  for (int fd = 0; fd < 1024; ++fd) {
    if (fcntl(fd, F_GETFD) != -1) found.insert(fd);
  }
  return found;
}

class FilesystemTest : public testing::Test {
 protected:
  void SetUp() override { folder_ = MakeTemporaryFolder().string(); }
  void TearDown() override { stdfs::remove_all(folder_); }
  std::string Path(const std::string& name) const { return folder_ + "/" + name; }

  // Opens and closes what opened. Whether it did.
  bool Opens(const std::string& name, mode_flags_t flags) {
    fs_file_t file;
    if (fs_open(&file, Path(name).c_str(), flags) == FS_BADF) return false;
    EXPECT_EQ(fs_close(&file), 0);
    return true;
  }

  std::string folder_;
};

TEST(FilesystemValues, FlagsOriginsAndResultsAreSettled) {
  EXPECT_EQ(FS_RDONLY, 0);
  EXPECT_EQ(FS_WRONLY, 1);
  EXPECT_EQ(FS_RDWR, 2);
  EXPECT_EQ(FS_CREATE_WRONLY, 257);
  EXPECT_EQ(FS_CREATE_RDWR, 258);
  EXPECT_EQ(FS_CREATE_TRUNC, 770);
  EXPECT_EQ(FS_CREATE_APPEND, 266);
  EXPECT_EQ(FS_SEEK_SET, 0);
  EXPECT_EQ(FS_SEEK_CUR, 1);
  EXPECT_EQ(FS_SEEK_END, 2);
  EXPECT_EQ(FS_SUCCESS, 0);
  EXPECT_EQ(FS_INIT_ERROR_INTERNAL, -1000);
  EXPECT_EQ(FS_INIT_ERROR_EXTERNAL, -1001);
  EXPECT_EQ(FS_WRITE_ERROR, -1003);
  EXPECT_EQ(FS_READ_ERROR, -1004);
  EXPECT_EQ(FS_MAX_NUMBER_VOLUME, -1005);
  EXPECT_EQ(FS_NOT_FOUND, -1006);
  EXPECT_EQ(reinterpret_cast<intptr_t>(FS_BADF), -1);
  EXPECT_EQ(sizeof(fs_file_t), sizeof(int));
}

TEST(FilesystemValues, MountPointsAreEmptyTexts) {
  for (const char* point :
       {MP_DATA_FLASH, MP_QPSI_FLASH, MP_RAM, MP_CODE_FLASH, MP_USB0, MP_USB1, MP_USB2}) {
    EXPECT_STREQ(point, "");
  }
}

TEST_F(FilesystemTest, OpenGivesTheHandleItGot) {
  Put(Path("a"), "x");
  fs_file_t file = 12345;
  EXPECT_EQ(fs_open(&file, Path("a").c_str(), FS_RDONLY), &file);
  EXPECT_GE(file, 0);
  EXPECT_NE(file, 12345);
  EXPECT_EQ(fs_close(&file), 0);
}

TEST_F(FilesystemTest, OpenOfAMissingFileIsBadAndMarksTheHandle) {
  for (mode_flags_t flags : {FS_RDONLY, FS_WRONLY, FS_RDWR}) {
    fs_file_t file = 12345;
    EXPECT_EQ(fs_open(&file, Path("a").c_str(), flags), FS_BADF);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(file, -1);
    EXPECT_FALSE(stdfs::exists(Path("a")));
  }
}

TEST_F(FilesystemTest, OpenForReadingRefusesWrites) {
  Put(Path("a"), "old");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_RDONLY), FS_BADF);
  EXPECT_LT(fs_write(&file, "x", 1), 0);
  char text[8] = {};
  EXPECT_EQ(fs_read(&file, text, sizeof(text)), 3);
  EXPECT_STREQ(text, "old");
  fs_close(&file);
}

TEST_F(FilesystemTest, OpenForWritingRefusesReadsAndKeepsTheTail) {
  Put(Path("a"), "old");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_WRONLY), FS_BADF);
  char text[8];
  EXPECT_LT(fs_read(&file, text, sizeof(text)), 0);
  EXPECT_EQ(fs_write(&file, "N", 1), 1);
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), "Nld");
}

TEST_F(FilesystemTest, OpenForBothReadsAndWrites) {
  Put(Path("a"), "old");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_RDWR), FS_BADF);
  char c;
  EXPECT_EQ(fs_read(&file, &c, 1), 1);
  EXPECT_EQ(c, 'o');
  EXPECT_EQ(fs_write(&file, "N", 1), 1);
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), "oNd");
}

TEST_F(FilesystemTest, CreateForWritingMakesTheFileAndRefusesReads) {
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_WRONLY), FS_BADF);
  EXPECT_EQ(fs_write(&file, "new", 3), 3);
  char c;
  EXPECT_LT(fs_read(&file, &c, 1), 0);
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), "new");
}

TEST_F(FilesystemTest, CreateForBothDoesNotTruncate) {
  Put(Path("a"), "old text");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_RDWR), FS_BADF);
  EXPECT_EQ(fs_write(&file, "new", 3), 3);
  char text[16] = {};
  EXPECT_EQ(fs_read(&file, text, sizeof(text)), 5);
  EXPECT_STREQ(text, " text");
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), "new text");
}

TEST_F(FilesystemTest, CreateAndTruncateEmptiesAnOldFile) {
  Put(Path("a"), "old text");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_TRUNC), FS_BADF);
  EXPECT_EQ(fs_fstat(&file), 0);
  EXPECT_EQ(fs_write(&file, "new", 3), 3);
  EXPECT_EQ(fs_lseek(&file, 0, FS_SEEK_SET), 0);
  char text[8] = {};
  EXPECT_EQ(fs_read(&file, text, sizeof(text)), 3);
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), "new");
}

TEST_F(FilesystemTest, CreateAndAppendWritesAtTheEndWhereverTheFileStands) {
  Put(Path("a"), "old");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_APPEND), FS_BADF);
  char c;
  EXPECT_EQ(fs_read(&file, &c, 1), 1);
  EXPECT_EQ(c, 'o');
  EXPECT_EQ(fs_lseek(&file, 0, FS_SEEK_SET), 0);
  EXPECT_EQ(fs_write(&file, "new", 3), 3);
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), "oldnew");
  EXPECT_TRUE(Opens("b", FS_CREATE_APPEND));
  EXPECT_TRUE(stdfs::exists(Path("b")));
}

TEST_F(FilesystemTest, CreatedFilesBelongToTheOwnerAlone) {
  const mode_t mask = umask(0);
  for (mode_flags_t flags : {FS_CREATE_WRONLY, FS_CREATE_RDWR, FS_CREATE_TRUNC, FS_CREATE_APPEND}) {
    const std::string name = "new" + std::to_string(flags);
    ASSERT_TRUE(Opens(name, flags));
    struct stat status;
    ASSERT_EQ(stat(Path(name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
  }
  umask(mask);
}

TEST_F(FilesystemTest, OpenRefusesADirectoryAndLeavesNoDescriptor) {
  const std::set<int> before = OpenDescriptors();
  for (mode_flags_t flags : {FS_RDONLY, FS_WRONLY, FS_RDWR, FS_CREATE_WRONLY, FS_CREATE_RDWR,
                             FS_CREATE_TRUNC, FS_CREATE_APPEND}) {
    fs_file_t file = 12345;
    EXPECT_EQ(fs_open(&file, folder_.c_str(), flags), FS_BADF);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(file, -1);
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(FilesystemTest, OpenRefusesAnAccessThatIsNone) {
  Put(Path("a"), "x");
  fs_file_t file = 12345;
  EXPECT_EQ(fs_open(&file, Path("a").c_str(), static_cast<mode_flags_t>(3)), FS_BADF);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(file, -1);
}

TEST_F(FilesystemTest, OpenOfAnEmptyOrOverlongNameIsBad) {
  fs_file_t file;
  EXPECT_EQ(fs_open(&file, "", FS_CREATE_RDWR), FS_BADF);
  const std::string name(100000, 'x');
  EXPECT_EQ(fs_open(&file, name.c_str(), FS_CREATE_RDWR), FS_BADF);
}

TEST_F(FilesystemTest, StartedProgramsDoNotInheritTheDescriptor) {
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_RDWR), FS_BADF);
  EXPECT_TRUE(fcntl(file, F_GETFD) & FD_CLOEXEC);
  fs_close(&file);
}

// No file is translated here. (The bit's value is O_LARGEFILE, which a 64-bit system shows
// for every file, so of that one flag this tells nothing.)
TEST_F(FilesystemTest, BinaryOpenShowsTheFlagsOfAPlainOne) {
  for (mode_flags_t flags : {FS_CREATE_RDWR, FS_RDONLY}) {
    fs_file_t plain;
    fs_file_t binary;
    ASSERT_EQ(fs_open(&plain, Path("a").c_str(), flags), &plain);
    ASSERT_EQ(fs_open_binary(&binary, Path("a").c_str(), flags), &binary);
    EXPECT_EQ(fcntl(binary, F_GETFL), fcntl(plain, F_GETFL));
    fs_close(&plain);
    fs_close(&binary);
  }
}

TEST_F(FilesystemTest, BinaryOpenKeepsEveryByte) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  all += "\r\n\n\r\x1A";
  fs_file_t file;
  ASSERT_NE(fs_open_binary(&file, Path("a").c_str(), FS_CREATE_TRUNC), FS_BADF);
  EXPECT_EQ(fs_write(&file, all.data(), all.size()), static_cast<ptrdiff_t>(all.size()));
  fs_lseek(&file, 0, FS_SEEK_SET);
  std::string back(all.size(), '\0');
  EXPECT_EQ(fs_read(&file, back.data(), back.size()), static_cast<ptrdiff_t>(all.size()));
  EXPECT_EQ(back, all);
  fs_close(&file);
  EXPECT_EQ(Contents(Path("a")), all);
}

TEST_F(FilesystemTest, BinaryOpenOfAMissingFileIsBad) {
  fs_file_t file = 12345;
  EXPECT_EQ(fs_open_binary(&file, Path("a").c_str(), FS_RDWR), FS_BADF);
  EXPECT_EQ(file, -1);
}

TEST_F(FilesystemTest, ReadGivesZeroAtTheEnd) {
  Put(Path("a"), "abc");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_RDONLY), FS_BADF);
  char text[8];
  EXPECT_EQ(fs_read(&file, text, 2), 2);
  EXPECT_EQ(fs_read(&file, text, sizeof(text)), 1);
  EXPECT_EQ(fs_read(&file, text, sizeof(text)), 0);
  fs_close(&file);
}

TEST_F(FilesystemTest, WriteToAFullDeviceIsNegative) {
  fs_file_t file;
  ASSERT_NE(fs_open(&file, "/dev/full", FS_WRONLY), FS_BADF);
  EXPECT_LT(fs_write(&file, "x", 1), 0);
  EXPECT_EQ(errno, ENOSPC);
  fs_close(&file);
}

TEST_F(FilesystemTest, SeekCountsFromEachOrigin) {
  Put(Path("a"), "0123456789");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_RDONLY), FS_BADF);
  EXPECT_EQ(fs_lseek(&file, 4, FS_SEEK_SET), 4);
  EXPECT_EQ(fs_lseek(&file, 3, FS_SEEK_CUR), 7);
  EXPECT_EQ(fs_lseek(&file, -2, FS_SEEK_END), 8);
  char c;
  EXPECT_EQ(fs_read(&file, &c, 1), 1);
  EXPECT_EQ(c, '8');
  fs_close(&file);
}

TEST_F(FilesystemTest, SeekRefusesAPlaceBeforeTheFileAndOtherOrigins) {
  Put(Path("a"), "0123456789");
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_RDONLY), FS_BADF);
  EXPECT_EQ(fs_lseek(&file, -1, FS_SEEK_SET), -1);
  for (int origin : {-1, 3, 4, 1000}) {  // 3 and 4 mean something to the system
    EXPECT_EQ(fs_lseek(&file, 0, origin), -1);
    EXPECT_EQ(errno, EINVAL);
  }
  fs_close(&file);
}

TEST_F(FilesystemTest, SizesPassTwoAndFourGigabytes) {
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_RDWR), FS_BADF);
  const int64_t last = INT64_C(5000000000);
  ASSERT_EQ(fs_lseek(&file, last, FS_SEEK_SET), last);
  ASSERT_EQ(fs_write(&file, "x", 1), 1);  // a hole before it: no disk is used
  EXPECT_EQ(fs_fstat(&file), INT64_C(5000000001));
  EXPECT_EQ(fs_lseek(&file, 0, FS_SEEK_END), INT64_C(5000000001));
  fs_close(&file);
}

TEST_F(FilesystemTest, SizeOfAnEmptyFileIsZero) {
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_RDWR), FS_BADF);
  EXPECT_EQ(fs_fstat(&file), 0);
  EXPECT_EQ(fs_write(&file, "abc", 3), 3);
  EXPECT_EQ(fs_fstat(&file), 3);
  fs_close(&file);
}

TEST_F(FilesystemTest, AClosedHandleFailsEveryCall) {
  fs_file_t file;
  ASSERT_NE(fs_open(&file, Path("a").c_str(), FS_CREATE_RDWR), FS_BADF);
  fs_file_t number = file;
  ASSERT_EQ(fs_close(&file), 0);
  EXPECT_EQ(file, -1);
  for (fs_file_t* closed : {&file, &number}) {
    char c = 'x';
    EXPECT_EQ(fs_fstat(closed), -1);
    EXPECT_EQ(fs_lseek(closed, 0, FS_SEEK_SET), -1);
    EXPECT_LT(fs_read(closed, &c, 1), 0);
    EXPECT_LT(fs_write(closed, &c, 1), 0);
    EXPECT_EQ(fs_close(closed), -1);
  }
}

// The number that a closed handle had may be another file's by now.
TEST_F(FilesystemTest, ASecondCloseLeavesOtherFilesAlone) {
  fs_file_t first;
  fs_file_t second;
  ASSERT_NE(fs_open(&first, Path("a").c_str(), FS_CREATE_RDWR), FS_BADF);
  ASSERT_EQ(fs_close(&first), 0);
  ASSERT_NE(fs_open(&second, Path("b").c_str(), FS_CREATE_RDWR), FS_BADF);
  EXPECT_EQ(fs_close(&first), -1);
  EXPECT_EQ(fs_fstat(&second), 0);
  EXPECT_EQ(fs_close(&second), 0);
}

TEST_F(FilesystemTest, FlushIsAlwaysZero) {
  fs_file_t none = -1;
  EXPECT_EQ(fs_flush(&none), 0);
  EXPECT_EQ(fs_flush(nullptr), 0);
}

TEST_F(FilesystemTest, RemoveTakesAFileAwayAndFailsOnNone) {
  Put(Path("a"), "x");
  EXPECT_EQ(fs_remove(Path("a").c_str()), 0);
  EXPECT_FALSE(stdfs::exists(Path("a")));
  EXPECT_NE(fs_remove(Path("a").c_str()), 0);
}

TEST_F(FilesystemTest, DirectoriesAreMadeAndRemoved) {
  EXPECT_EQ(fs_directory_create(Path("d").c_str()), 0);
  EXPECT_TRUE(stdfs::is_directory(Path("d")));
  EXPECT_EQ(fs_directory_create(Path("d").c_str()), -1);
  Put(Path("d/a"), "x");
  EXPECT_EQ(fs_directory_remove(Path("d").c_str()), -1);
  EXPECT_EQ(fs_remove(Path("d/a").c_str()), 0);
  EXPECT_EQ(fs_directory_remove(Path("d").c_str()), 0);
  EXPECT_FALSE(stdfs::exists(Path("d")));
  EXPECT_EQ(fs_directory_remove(Path("d").c_str()), -1);
}

TEST_F(FilesystemTest, CopyKeepsEveryByteAtEverySizeAroundItsChunk) {
  const std::set<int> before = OpenDescriptors();
  for (size_t size : {0, 1, 511, 512, 513, 1024, 100000}) {
    std::string text(size, '\0');
    for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 7 + i / 256);
    Put(Path("a"), text);
    fs_remove(Path("b").c_str());
    EXPECT_EQ(fs_copy(Path("a").c_str(), Path("b").c_str()), 0) << size;
    EXPECT_TRUE(Contents(Path("b")) == text) << size;
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(FilesystemTest, CopyLeavesTheTailOfALongerTarget) {
  Put(Path("a"), "new");
  Put(Path("b"), "old text");
  EXPECT_EQ(fs_copy(Path("a").c_str(), Path("b").c_str()), 0);
  EXPECT_EQ(Contents(Path("b")), "new text");
}

TEST_F(FilesystemTest, CopyOfAMissingFileIsNotFoundAndMakesNoTarget) {
  EXPECT_EQ(fs_copy(Path("a").c_str(), Path("b").c_str()), -1006);
  EXPECT_FALSE(stdfs::exists(Path("b")));
}

TEST_F(FilesystemTest, CopyToAnImpossibleTargetReportsSuccess) {
  Put(Path("a"), "new");
  const std::set<int> before = OpenDescriptors();
  EXPECT_EQ(fs_copy(Path("a").c_str(), Path("missing/b").c_str()), 0);
  EXPECT_EQ(fs_copy(Path("a").c_str(), folder_.c_str()), 0);
  EXPECT_EQ(OpenDescriptors(), before);
}

// Closes what the copy left open, and gives how many there were.
size_t CloseNewDescriptors(const std::set<int>& before) {
  size_t count = 0;
  for (int fd : OpenDescriptors()) {
    if (before.count(fd)) continue;
    ++count;
    close(fd);
  }
  return count;
}

TEST_F(FilesystemTest, CopyStopsAtAWriteErrorAndLeavesBothOpen) {
  Put(Path("a"), "new");
  const std::set<int> before = OpenDescriptors();
  EXPECT_EQ(fs_copy(Path("a").c_str(), "/dev/full"), FS_WRITE_ERROR);
  EXPECT_EQ(CloseNewDescriptors(before), 2u);
}

TEST_F(FilesystemTest, CopyStopsAtAReadErrorAndLeavesBothOpen) {
  const std::set<int> before = OpenDescriptors();
  // The process's own memory opens, and cannot be read at its start.
  EXPECT_EQ(fs_copy("/proc/self/mem", Path("b").c_str()), FS_READ_ERROR);
  EXPECT_EQ(CloseNewDescriptors(before), 2u);
  EXPECT_EQ(Contents(Path("b")), "");
}

}  // namespace
