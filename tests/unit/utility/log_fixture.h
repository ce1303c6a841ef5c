// A log of a test's own: nothing of the process-wide one is touched.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "unit/support/temporary_folder.h"
#include "utility/log/log.h"

class OpenLog : public Log {
 public:
  using Log::CloseConsole;
  using Log::CloseFile;
  using Log::CloseSyslog;
  using Log::FormatSyslogHeader;
  using Log::OpenFile;
  using Log::OpenSyslog;
  using Log::PrependSyslogHeader;
  using Log::RotateFile;
  using Log::toLocalDateTime;
  using Log::WriteSyslog;

  using Log::address_resolution_interval_;
  using Log::buffer_;
  using Log::last_addr_resol_error_time_;
  using Log::last_opened_date_;
  using Log::level_initials_;
  using Log::level_texts_;
  using Log::max_file_size_;
  using Log::mutex_;
  using Log::output_;
  using Log::output_console_opened_;
  using Log::output_dflash_opened_;
  using Log::output_file_opened_;
  using Log::output_level_;
  using Log::output_syslog_addr_;
  using Log::output_syslog_opened_;
  using Log::output_syslog_socket_;
  using Log::rotate_kind_;
  using Log::stopped_;
  using Log::syslog_getaddr_errors_;
};

// A folder for log files.
class LogFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = MakeTemporaryFolder().string();
    name_ = folder_ + "/log";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  static std::string Contents(const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
  }
  static void Put(const std::string& name, const std::string& text) {
    std::ofstream(name, std::ios::binary) << text;
  }

  std::string folder_;
  std::string name_;
};
