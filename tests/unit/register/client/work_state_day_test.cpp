// The work state of a whole day. Register and translator sell a list of known documents, with
// the shipped words; the file that the host reads afterwards is held byte for byte against one
// that is worked out here from that list, in cents.
#include "unit/register/work_state_day.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "language/shipped_language.h"
#include "support/temporary_folder.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using namespace work_state_day;

class WorkStateDay : public testing::Test {
 protected:
  WorkStateDay() : before_(std::filesystem::current_path()), device_(Settings()) {
    // Files are written under lower-case names, into a folder of the test's own.
    folder_ = MakeTemporaryFolder().string();
    std::filesystem::current_path(folder_);
    // No settings of this computer's installation.
    if (const char* registry = std::getenv("LORIMATRT_REGISTRY")) registry_ = registry;
    setenv("LORIMATRT_REGISTRY", (folder_ + "/none").c_str(), 1);
    // The translator takes a path of 79 characters at most.
    std::filesystem::current_path(shipped::LanguageFile().parent_path());
    char name[] = "merkelin.ini";
    EXPECT_EQ(translator_->TradInit(name, 0, &device_, true), 0);
    std::filesystem::current_path(folder_);
  }
  ~WorkStateDay() override {
    if (registry_.empty()) {
      unsetenv("LORIMATRT_REGISTRY");
    } else {
      setenv("LORIMATRT_REGISTRY", registry_.c_str(), 1);
    }
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  void Run(const std::string& line) {
    std::string copy = line;
    copy.resize(copy.size() + 1);
    std::vector<char> result(1024);
    EXPECT_EQ(translator_->EcrCmd(copy.data(), result.data()), 0) << line << ": " << result.data();
  }

  void RunDay() {
    for (const Document& document : kDay) {
      for (const std::string& line : LinesOf(document)) Run(line);
    }
    for (const char* line : {"NOFIS INIZIO", "NOFIS MSG='TURNO'", "NOFIS FINE",
                             "INP TASTO=CASSETTO", "INP TASTO=CASSETTO"}) {
      Run(line);
    }
  }

  std::string WorkState(int edit) {
    const std::string name = "state" + std::to_string(edit);
    Run("LEGGI TAB=STATOLAV, FILE='" + name + "'");
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file.good());
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  static RegisterSettings Settings() {
    RegisterSettings settings = TestSettings();
    settings.last_closure = kClosuresBefore;
    settings.vat_rates.clear();
    for (const int64_t rate : kRates) {
      settings.vat_rates.push_back({static_cast<int32_t>(rate * 100), rate == 0 ? "ES*" : ""});
    }
    for (const Shelf& shelf : kShelves) {
      Department department;
      department.name = shelf.name;
      department.vat = shelf.vat;
      department.is_service = shelf.service;
      settings.departments.push_back(department);
    }
    return settings;
  }

  std::filesystem::path before_;
  std::string folder_;
  std::string registry_;
  VirtualRegister device_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
};

TEST_F(WorkStateDay, HoldsWhatTheDaySold) {
  RunDay();
  EXPECT_EQ(WorkState(0), ExpectedFile(Add(kDay), 0));
}

TEST_F(WorkStateDay, HoldsTheSameInEveryFormThatAHostCanAskFor) {
  RunDay();
  for (int edit = 3; edit >= 0; --edit) {
    SCOPED_TRACE(edit);
    Run("SETP EDIT=" + std::to_string(edit));
    EXPECT_EQ(WorkState(edit), ExpectedFile(Add(kDay), edit));
  }
}

TEST_F(WorkStateDay, FollowsTheDayDocumentByDocument) {
  // What the whole day has besides its documents goes first.
  std::vector<Document> so_far;
  for (const char* line :
       {"NOFIS INIZIO", "NOFIS FINE", "INP TASTO=CASSETTO", "INP TASTO=CASSETTO"}) {
    Run(line);
  }
  int number = 10;
  for (const Document& document : kDay) {
    SCOPED_TRACE(so_far.size());
    for (const std::string& line : LinesOf(document)) Run(line);
    so_far.push_back(document);
    EXPECT_EQ(WorkState(number++), ExpectedFile(Add(so_far), 0));
  }
}

}  // namespace
}  // namespace lorimat
