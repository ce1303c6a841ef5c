// A register with a clock that the test turns, a folder for its files, and short names for its
// reports.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/temporary_folder.h"
#include "unit/register/register_fixture.h"

namespace lorimat {

class ReportTest : public RegisterTest {
 protected:
  ~ReportTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::string ReadText(const std::string& name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }
  void WriteText(const std::string& name, const std::string& content) const {
    std::ofstream file(folder_ / name, std::ios::binary);
    file << content;
  }
  bool HasFile(const std::string& name) const { return std::filesystem::exists(folder_ / name); }
  size_t FileCount() const {
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      static_cast<void>(entry);
      ++count;
    }
    return count;
  }

  // The paper since the last call.
  std::string NewPaper() {
    std::string text;
    const std::vector<std::string>& lines = device.paper_lines();
    for (; seen_ < lines.size(); ++seen_) text += lines[seen_] + "\n";
    return text;
  }
  std::string Totalizer(int id, int kind, int scope = RTF_FPTR_TT_DAY) {
    char text[50] = "unset";
    const int code = device.GetTotalizerExtend(id, scope, kind, text);
    return code == RTF_SUCCESS ? text : "refused " + std::to_string(code);
  }
  // A whole receipt of one line.
  void Receipt(int department, int64_t price, const char* tender = "0") {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(department, price), RTF_SUCCESS);
    ASSERT_EQ(PayRest(tender), RTF_SUCCESS);
  }
  int Extract(int source, int criteria, uint32_t from, uint32_t to, const char* from_date,
              const char* to_date, int filter = 65535, const char* format = "txt",
              const std::string& file = "", int outputs = 1) {
    return device.FiscalReportMessageEx(source, filter, criteria, 0, 0, from, to, from_date,
                                        to_date, format, file.c_str(), outputs);
  }

  std::filesystem::path folder_ = MakeTemporaryFolder();
  size_t seen_ = 0;
};

// A register whose clock the test turns by setting `now`.
class ClockTest : public ReportTest {
 protected:
  ClockTest() { now = FixedTime(); }
  void At(int day, int month, int hour, int minute) {
    now.tm_mday = day;
    now.tm_mon = month - 1;
    now.tm_hour = hour;
    now.tm_min = minute;
  }

  static RegisterSettings Settings() {
    RegisterSettings settings = TestSettings();
    settings.clock = [] { return now; };
    return settings;
  }

  static inline std::tm now = {};
};

}  // namespace lorimat
