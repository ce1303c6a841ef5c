// A register that is kept in a file, for tests of the commands that work on one.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "program_run.h"

class Shop {
 public:
  static constexpr const char* kClock = "2024-03-15 10:30";

  const TestFolder& folder() const { return folder_; }
  std::string file() const { return folder_.Path("shop.register"); }

  // Runs lines on the register, which the first run makes.
  ProgramRun Sell(const std::string& lines, const std::string& clock = kClock) const {
    return RunConsole(
        {"run", folder_.Write("lines.cmd", lines), "--register", file(), "--clock", clock});
  }
  // Sells with a program that is killed behind its last document: nobody knows whether its answer
  // went out.
  ProgramRun SellAndDie(const std::string& lines) const {
    return Run({"shell"},
               {.input = lines + "WRONG\n", .interrupt_at = "code 257", .signal = SIGKILL});
  }
  // Runs a command of the console on the register.
  ProgramRun Run(std::vector<std::string> arguments, const ProgramSetting& setting = {}) const {
    arguments.push_back("--register");
    arguments.push_back(file());
    return RunConsole(arguments, setting);
  }

 private:
  TestFolder folder_;
};
