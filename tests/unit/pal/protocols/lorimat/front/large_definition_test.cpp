// Definition files of 100 MB: read to their end, in the room that a small one takes.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "unit/support/temporary_folder.h"

namespace {

constexpr size_t kFileSize = 100'000'000;
constexpr long kMostKilobytes = 8192;  // more than the process may need besides

long PeakKilobytes() {
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

class LargeDefinitionTest : public ::testing::Test {
 protected:
  void SetUp() override { folder_ = MakeTemporaryFolder(); }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  // Reads a file that begins and ends with these texts and has another between them as often as it
  // takes. The peak of a process does not go back, so that each reads in one of its own, which ends
  // with the bits of what was wrong.
  int Read(const std::string& begin, const std::string& again, const std::string& end) {
    const std::string path = folder_ / "words.ini";
    {
      std::ofstream file(path, std::ios::binary);
      file << begin;
      for (size_t size = 0; size < kFileSize; size += again.size()) file << again;
      file << end;
    }
    EXPECT_GE(std::filesystem::file_size(path), kFileSize);
    const pid_t child = fork();
    if (child == 0) {
      auto translator = std::make_unique<EcrCmdCommand>();
      std::string name = path;
      const long before = PeakKilobytes();
      const bool read = translator->LeggiFileIni(name.data()) == 1;
      const bool grown = PeakKilobytes() - before > kMostKilobytes;
      const bool known = std::string(translator->szOpCodes[10]) == "VEND" &&
                         std::string(translator->szOpCodes[11]) == "CHIU";
      _exit((read ? 0 : 1) | (grown ? 2 : 0) | (known ? 0 : 4));
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::filesystem::path folder_;
};

constexpr char kBegin[] = "[OPCOD]\n10=VEND\n";
constexpr char kEnd[] = "\n11=CHIU\n";

TEST_F(LargeDefinitionTest, OfLinesThatSayTheSameAgain) {
  EXPECT_EQ(Read(kBegin, "10=VEND ;" + std::string(1000, 'x') + "\n", kEnd), 0);
}

TEST_F(LargeDefinitionTest, OfOneComment) {
  EXPECT_EQ(Read(std::string(kBegin) + ";", std::string(1000, 'x'), kEnd), 0);
}

}  // namespace

#endif
