// Every example line of docs/language.md and of its Italian is run on the register that ships, and
// has to answer as the page says: 0, or the code that stands behind it in a comment, as in
//
//   ALLEG MSG='2012345678906', BARCODE=EAN   ; answers 1642: the check digit is wrong
//
// Lines that the page shows a text below are one conversation, with a register of its own that
// prints that text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "language/shipped_language.h"
#include "pal/threading/posix/thread.h"
#include "register/value/digest.h"
#include "support/temporary_folder.h"
#include "unit/register/register_fixture.h"
#include "unit/register/till.h"

namespace lorimat {
namespace {

// What stands on the page between two fences.
struct Block {
  int command = 0;  // of the chapter; 0 for one that is no command's
  int line = 0;     // of the page, of the opening fence
  std::vector<std::string> examples;
  std::vector<std::string> printed;  // lines of paper that the page shows below them
};

std::vector<Block> ReadBlocks(const std::string& page) {
  std::vector<Block> blocks;
  int command = 0;
  int number = 0;
  bool in_block = false;
  bool in_other = false;
  bool behind = false;  // nothing stands between the last block and this line
  bool in_print = false;
  const auto file = std::filesystem::path(LORIMAT_SOURCE_DIR) / "docs" / page;
  for (const std::string& line : shipped::Lines(file)) {
    ++number;
    const bool empty = shipped::Trim(line).empty();
    if (line.rfind("```", 0) == 0) {
      const bool opens = !in_block && !in_other;
      const bool closes_block = in_block;
      in_block = opens && line == "```lorimat";
      in_other = opens && !in_block;
      in_print = in_other && behind && line == "```text";
      behind = closes_block;
      if (in_block) blocks.push_back({command, number, {}, {}});
      continue;
    }
    if (in_print) blocks.back().printed.push_back(line);
    if (in_block && !empty) blocks.back().examples.push_back(line);
    if (in_block || in_other || empty) continue;
    behind = false;
    if (line.rfind("## ", 0) == 0) {
      command = 0;
    } else if (line.rfind("### ", 0) == 0) {
      command = std::atoi(line.c_str() + 4);
    }
  }
  return blocks;
}

long AnswerOfThePage(const std::string& example) {
  static const std::regex answer(";.*(answers|risponde) ([0-9]+)");
  std::smatch found;
  return std::regex_search(example, found, answer) ? std::atol(found[2].str().c_str()) : 0;
}

// What has been done when the examples of a command come, behind the day of the shop.
struct Scene {
  std::vector<std::string> before;
  // The examples are one conversation; else each of them has a register of its own.
  bool together = false;
};

const Scene& SceneOf(int command) {
  static const std::vector<std::string> kSale = {"VEND REP=1, PRE=100.00"};
  static const std::map<int, Scene> kScenes = {
      {9, {{}, true}},  // keys: a whole receipt
      {3, {{}, true}},  // a dump is appended to another
      {10, {kSale}},    // some examples pay something back
      {11, {kSale}},
      {12, {kSale}},
      {16, {{"VEND REP=1, PRE=100.00", "VEND REP=3, PRE=1.00"}}},
      {17, {kSale}},
      {18, {kSale}},
      {20, {kSale}},
      {33, {{"AZZGIO"}}},  // rates change while no day is open
      {21, {{"ALLEG INIZIO", "VEND REP=1, PRE=100.00", "CHIU"}}},
      {22, {{}, true}},  // a whole document
      {30, {{}, true}},  // a download appends to the file of another
      {73, {{"VEND REP=1, PRE=12.34"}}},
      {80, {kSale}},
  };
  static const Scene kNothing;
  const auto found = kScenes.find(command);
  return found == kScenes.end() ? kNothing : found->second;
}

// The rows of a document that move its total.
size_t CountRows(const std::vector<std::string>& lines) {
  static const std::regex row(".{25}.*[0-9]%.*[0-9],[0-9]{2}");
  return static_cast<size_t>(std::count_if(
      lines.begin(), lines.end(), [](const auto& line) { return std::regex_match(line, row); }));
}

// The lines stand on the paper in this order, others between them, and no row is missing among
// them.
void ExpectPrinted(const std::vector<std::string>& printed, const std::vector<std::string>& paper) {
  auto at = paper.begin();
  for (const std::string& line : printed) {
    at = std::find(at, paper.end(), line);
    ASSERT_NE(at, paper.end()) << "not printed there: " << line;
    ++at;
  }
  EXPECT_EQ(CountRows(printed), CountRows(paper));
}

class LanguageExamples : public testing::TestWithParam<const char*> {
 protected:
  LanguageExamples() : before_(std::filesystem::current_path()) {
    folder_ = MakeTemporaryFolder().string();
    std::filesystem::current_path(folder_);
    if (const char* registry = std::getenv("LORIMATRT_REGISTRY")) registry_ = registry;
    setenv("LORIMATRT_REGISTRY", (folder_ / "none").c_str(), 1);
    Thread::SetSleepFunction([](int) {});
  }
  ~LanguageExamples() override {
    Thread::SetSleepFunction(nullptr);
    if (registry_.empty()) {
      unsetenv("LORIMATRT_REGISTRY");
    } else {
      setenv("LORIMATRT_REGISTRY", registry_.c_str(), 1);
    }
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  static void Write(const std::string& name, const std::string& content) {
    std::ofstream(name, std::ios::binary) << content;
  }

  // The files that the examples read, in a folder that has nothing else.
  void WriteFiles() const {
    std::filesystem::current_path(folder_);
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      std::filesystem::remove_all(entry.path());
    }
    Write("articoli.txt", "'8001234567897','LATTE',4,1.50\n'8001','PANE',4,2.00\n");
    Write("variati.txt", "");
    Write("logo.bmp", "");
    Write("natale.bmp", "");
    const std::string image = "image";
    Write("aggiornamento.bin",
          "LORIMAT FIRMWARE 1\nVERSION 1.01\nSIZE 5\nSHA256 " + Sha256(image) + "\n\n" + image);
  }

  // A register that has sold, with a customer of the lottery, and closed a day: documents
  // 0001-0001, 0001-0002 and 0002-0001 of 15 January 2024.
  static std::unique_ptr<Till> Shop() {
    RegisterSettings settings;
    settings.clock = FixedTime;
    auto till = std::make_unique<Till>(settings);
    for (const char* line :
         {"EMLINK CMD='UA', FILE='articoli.txt'", "VEND REP=1, PRE=12.34", "CHIU",
          "VEND REP=2, PRE=5.00", "INP TASTO=LOTTERIA", "INP LOTTERIA='ABCD1234', TASTO=CONFERMA",
          "CHIU TEND=CARTA", "AZZGIO", "VEND REP=1, PRE=3.00", "CHIU"}) {
      EXPECT_EQ(till->Run(line), 0) << line;
    }
    return till;
  }

 private:
  std::filesystem::path before_;
  std::filesystem::path folder_;
  std::string registry_;
};

INSTANTIATE_TEST_SUITE_P(Pages, LanguageExamples, testing::Values("language.md", "language.it.md"),
                         [](const auto& test) {
                           return std::string(test.param) == "language.md" ? "English" : "Italian";
                         });

TEST_P(LanguageExamples, AnswerAsThePageSays) {
  const std::vector<Block> blocks = ReadBlocks(GetParam());
  // One for each command that has a page, and the two of the beginning.
  EXPECT_GT(blocks.size(), 45u);
  int conversations = 0;
  for (const Block& block : blocks) {
    EXPECT_FALSE(block.examples.empty()) << block.line;
    const Scene& scene = SceneOf(block.command);
    std::unique_ptr<Till> till;
    if (!block.printed.empty()) {
      RegisterSettings settings;
      settings.clock = FixedTime;
      till = std::make_unique<Till>(settings);
    }
    for (const std::string& example : block.examples) {
      SCOPED_TRACE(std::string(GetParam()) + ":" + std::to_string(block.line) + ": " + example);
      if (till == nullptr || (!scene.together && block.printed.empty())) {
        WriteFiles();
        till = Shop();
        for (const std::string& line : scene.before) EXPECT_EQ(till->Run(line), 0) << line;
      }
      EXPECT_EQ(till->Run(example), AnswerOfThePage(example));
    }
    if (block.printed.empty()) continue;
    SCOPED_TRACE(std::string(GetParam()) + ":" + std::to_string(block.line));
    ExpectPrinted(block.printed, till->device.paper_lines());
    ++conversations;
  }
  EXPECT_GE(conversations, 10);
}

}  // namespace
}  // namespace lorimat
