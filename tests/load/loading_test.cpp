// What loading and unloading the shared object does: its lines on the output streams, its
// memory, and the independence of two copies.
#include <fstream>
#include <memory>
#include <string>
#include <thread>

#include "loaded_library.h"

namespace {

struct CloseFile {
  void operator()(FILE* file) const { fclose(file); }
};
using TemporaryFile = std::unique_ptr<FILE, CloseFile>;

bool IsMapped(const std::string& file) {
  const std::string real = std::filesystem::canonical(file).string();
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find(real) != std::string::npos) return true;
  }
  return false;
}

TEST(Loading, WritesItsLinesOnTheirStreams) {
  TemporaryFile output(tmpfile());
  TemporaryFile errors(tmpfile());
  {
    CapturedOutput output_turned(STDOUT_FILENO, output.get());
    CapturedOutput errors_turned(STDERR_FILENO, errors.get());
    LoadedLibrary library;
  }
  EXPECT_EQ(WrittenTo(output.get()), "Load working...\nUnload working...\n");
  EXPECT_EQ(WrittenTo(errors.get()), "library destroy\n");
}

TEST(Loading, SaysNothingOfItsEndBeforeTheUnload) {
  TemporaryFile output(tmpfile());
  TemporaryFile errors(tmpfile());
  LoadedLibrary* library;
  {
    CapturedOutput output_turned(STDOUT_FILENO, output.get());
    CapturedOutput errors_turned(STDERR_FILENO, errors.get());
    library = new LoadedLibrary;
  }
  EXPECT_EQ(WrittenTo(output.get()), "Load working...\n");
  EXPECT_EQ(WrittenTo(errors.get()), "");
  delete library;
}

TEST(Loading, ThreadsOfTheHostWriteNoLine) {
  TemporaryFile output(tmpfile());
  {
    CapturedOutput output_turned(STDOUT_FILENO, output.get());
    LoadedLibrary library;
    const auto get_quote_char = EXPORT_OF(library, GetQuoteChar);
    std::thread([&] { EXPECT_EQ(get_quote_char(), '\''); }).join();
  }
  EXPECT_EQ(WrittenTo(output.get()), "Load working...\nUnload working...\n");
}

TEST(Loading, TheDetachLineComesBeforeTheDestroyLine) {
  TemporaryFile both(tmpfile());
  {
    CapturedOutput output_turned(STDOUT_FILENO, both.get());
    // One open file for both streams, so that they write one behind the other.
    CapturedOutput errors_turned(STDERR_FILENO, both.get());
    LoadedLibrary library;
  }
  EXPECT_EQ(WrittenTo(both.get()), "Load working...\nUnload working...\nlibrary destroy\n");
}

TEST(LoadingDeathTest, AProgramThatEndsWithoutUnloadingEndsWell) {
  EXPECT_EXIT(
      {
        if (dlopen(LIBRARY_FILE, RTLD_NOW) == nullptr) exit(1);
        exit(0);
      },
      testing::ExitedWithCode(0), "^library destroy\n$");
}

TEST(Loading, UnloadingTakesTheLibraryOutOfMemory) {
  LoadedLibrary library;
  EXPECT_TRUE(IsMapped(LIBRARY_FILE));
  library.Unload();
  EXPECT_FALSE(IsMapped(LIBRARY_FILE));
}

TEST(Loading, ALineWasRunAndTheLibraryStillGoesOutOfMemory) {
  OwnFolder folder;
  std::string language = folder.Write("words.ini", "[OPCOD]\n10=SELL\n");
  LoadedLibrary library;
  const PECRIO no_client = [](long, long, char*, long, char*, long*, long*) -> long { return 0; };
  ASSERT_EQ(EXPORT_OF(library, TradInit)(language.data(), 0, nullptr, no_client), 0);
  char line[] = "SELL";
  char result[512];
  EXPECT_EQ(EXPORT_OF(library, EcrCmd)(line, result), 256);
  library.Unload();
  EXPECT_FALSE(IsMapped(LIBRARY_FILE));
}

TEST(Loading, ALibraryThatIsLoadedAgainStartsAfresh) {
  {
    LoadedLibrary library;
    EXPORT_OF(library, SetQuoteChar)('"');
    EXPECT_EQ(EXPORT_OF(library, GetQuoteChar)(), '"');
  }
  LoadedLibrary again;
  EXPECT_EQ(EXPORT_OF(again, GetQuoteChar)(), '\'');
}

TEST(Loading, LoadingTwiceByOneNameGivesOneTranslator) {
  LoadedLibrary first;
  LoadedLibrary second;
  EXPORT_OF(first, SetQuoteChar)('"');
  EXPECT_EQ(EXPORT_OF(second, GetQuoteChar)(), '"');
  first.Unload();
  EXPECT_EQ(EXPORT_OF(second, GetQuoteChar)(), '"');
}

// With RTLD_GLOBAL the names of the first copy are in sight of the second, which must not
// bind to them.
class TwoCopies : public testing::TestWithParam<int> {};

TEST_P(TwoCopies, AreTwoTranslators) {
  OwnFolder folder;
  const std::string first_file = folder.File("first.so");
  const std::string second_file = folder.File("second.so");
  std::filesystem::copy_file(LIBRARY_FILE, first_file);
  std::filesystem::copy_file(LIBRARY_FILE, second_file);
  LoadedLibrary first(first_file, RTLD_NOW | GetParam());
  LoadedLibrary second(second_file, RTLD_NOW | GetParam());

  EXPORT_OF(first, SetQuoteChar)('"');
  EXPORT_OF(second, SetSeparatorChar)(';');
  EXPECT_EQ(EXPORT_OF(first, GetQuoteChar)(), '"');
  EXPECT_EQ(EXPORT_OF(second, GetQuoteChar)(), '\'');
  EXPECT_EQ(EXPORT_OF(first, GetSeparatorChar)(), ',');
  EXPECT_EQ(EXPORT_OF(second, GetSeparatorChar)(), ';');

  first.Unload();
  EXPECT_FALSE(IsMapped(first_file));
  EXPECT_EQ(EXPORT_OF(second, GetSeparatorChar)(), ';');
  second.Unload();
  EXPECT_FALSE(IsMapped(second_file));
}

INSTANTIATE_TEST_SUITE_P(Loading, TwoCopies, testing::Values(RTLD_LOCAL, RTLD_GLOBAL));

}  // namespace
