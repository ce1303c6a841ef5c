// The log's numbers, defaults and settings.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "unit/utility/log_fixture.h"
#include "utility/log/log.h"

namespace {

TEST(LogValuesTest, EnumerationsAreSettled) {
  EXPECT_EQ(Log::LL_TRACE, 0);
  EXPECT_EQ(Log::LL_DEBUG, 1);
  EXPECT_EQ(Log::LL_INFO, 2);
  EXPECT_EQ(Log::LL_WARN, 3);
  EXPECT_EQ(Log::LL_ERROR, 4);
  EXPECT_EQ(Log::LL_FATAL, 5);
  EXPECT_EQ(Log::LL_LEVELS, 6);
  EXPECT_EQ(Log::LO_NULL, 0);
  EXPECT_EQ(Log::LO_CONSOLE, 1);
  EXPECT_EQ(Log::LO_DFLASH, 2);
  EXPECT_EQ(Log::LO_FILE, 4);
  EXPECT_EQ(Log::LO_SYSLOG, 8);
  EXPECT_EQ(Log::LO_ANDROID, 16);
  EXPECT_EQ(Log::LO_ALL, 31);
  EXPECT_EQ(Log::LR_NONE, 0);
  EXPECT_EQ(Log::LR_SIZE, 1);
  EXPECT_EQ(Log::LR_WEEKLY, 2);
  EXPECT_EQ(Log::LS_HEADER, 40);
  EXPECT_EQ(Log::LS_OUTPUT, 1024);
  EXPECT_EQ(Log::LS_BUFFER, 1064);
  EXPECT_EQ(Log::LS_TRAILER, 6);
  EXPECT_EQ(Log::LS_FILENAME, 128);
  EXPECT_EQ(Log::LS_HOSTNAME, 128);
  EXPECT_EQ(_WITH_LOG, 1);
  EXPECT_EQ(_WITH_LOG_CONSOLE, 1);
  EXPECT_EQ(_WITH_LOG_FILE, 1);
  EXPECT_EQ(_WITH_LOG_SYSLOG, 1);
  EXPECT_EQ(_WITH_LOG_DFLASH, 0);
  EXPECT_EQ(_WITH_LOG_ANDROID, 0);
}

TEST(LogValuesTest, TheConstructorsDefaultsStand) {
  OpenLog log;
  EXPECT_FALSE(log.stopped_);
  EXPECT_EQ(log.level(), Log::LL_TRACE);
  EXPECT_EQ(log.modules(), 255u);
  EXPECT_EQ(log.outputs(), 31u);
  EXPECT_STREQ(log.trailer(), "\n");
  EXPECT_STREQ(log.output_file_name(), "");
  EXPECT_STREQ(log.output_syslog_host(), "");
  EXPECT_EQ(log.output_syslog_port(), 514);
  EXPECT_EQ(log.output_syslog_addr_, 0xFFFFFFFFu);
  EXPECT_EQ(log.last_addr_resol_error_time_, 0u);
  EXPECT_EQ(log.syslog_getaddr_errors_, 0);
  EXPECT_EQ(log.max_file_size_, 104857600);
  EXPECT_EQ(log.rotate_kind_, Log::LR_NONE);
  EXPECT_TRUE(log.output_console_opened_);
  EXPECT_FALSE(log.output_dflash_opened_);
  EXPECT_FALSE(log.output_file_opened_);
  EXPECT_FALSE(log.output_syslog_opened_);
  EXPECT_EQ(log.output_, log.buffer_ + 40);
  EXPECT_EQ(log.last_opened_date_.tm_mday, 0);
  const char* const texts[] = {"TRACE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL"};
  for (int i = 0; i < 6; ++i) EXPECT_STREQ(log.level_texts_[i], texts[i]);
}

TEST(LogValuesTest, ALocationKeepsItsPointers) {
  const char* file = "file.cpp";
  const char* method = "Method";
  const Log::LocationInfo place(file, method, 12, 34);
  EXPECT_EQ(place.fileName(), file);
  EXPECT_EQ(place.methodName(), method);
  EXPECT_EQ(place.lineNumber(), 12);
  EXPECT_EQ(place.moduleNumber(), 34);
}

TEST(LogValuesTest, SettingsReadBack) {
  OpenLog log;
  log.set_level(Log::LL_WARN);
  log.set_modules(0x80000001);
  log.set_outputs(Log::LO_FILE);
  log.set_output_file_name("name");
  log.set_output_syslog_host("host");
  log.set_syslog_hostname("me");
  log.set_output_syslog_port(65535);
  log.set_trailer("\r\n");
  log.set_file_rotate(Log::LR_WEEKLY);
  log.set_file_rotate_size(77);
  EXPECT_EQ(log.level(), Log::LL_WARN);
  EXPECT_EQ(log.modules(), 0x80000001u);
  EXPECT_EQ(log.outputs(), 4u);
  EXPECT_STREQ(log.output_file_name(), "name");
  EXPECT_STREQ(log.output_syslog_host(), "host");
  EXPECT_STREQ(log.syslog_hostname(), "me");
  EXPECT_EQ(log.output_syslog_port(), 65535);
  EXPECT_STREQ(log.trailer(), "\r\n");
  EXPECT_EQ(log.rotate_kind_, Log::LR_WEEKLY);
  EXPECT_EQ(log.max_file_size_, 77);
}

TEST(LogValuesTest, LongTextsAreCutToTheirPlaces) {
  OpenLog log;
  const std::string text(1000, 'x');
  log.set_output_file_name(text.c_str());
  log.set_output_syslog_host(text.c_str());
  log.set_syslog_hostname(text.c_str());
  log.set_trailer(text.c_str());
  EXPECT_EQ(log.output_file_name(), std::string(128, 'x'));
  EXPECT_EQ(log.output_syslog_host(), std::string(128, 'x'));
  EXPECT_EQ(log.syslog_hostname(), std::string(128, 'x'));
  EXPECT_EQ(log.trailer(), std::string(6, 'x'));
  log.set_output_file_name("short");
  log.set_trailer("");
  EXPECT_STREQ(log.output_file_name(), "short");
  EXPECT_STREQ(log.trailer(), "");
  log.set_syslog_hostname(nullptr);
  EXPECT_STREQ(log.syslog_hostname(), "");
}

}  // namespace
