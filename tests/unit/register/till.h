// A register with a translator before it, which has the shipped words.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "language/shipped_language.h"
#include "register/client/virtual_register.h"

namespace lorimat {

class Till {
 public:
  explicit Till(RegisterSettings settings) : device(std::move(settings)) {
    // The translator takes a path of 79 characters at most.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(shipped::LanguageFile().parent_path());
    char name[] = "merkelin.ini";
    EXPECT_EQ(translator_->TradInit(name, 0, &device, true), 0);
    std::filesystem::current_path(before);
  }

  // The code of a line.
  long Run(const std::string& line) {
    std::string copy = line;
    copy.resize(copy.size() + 1);
    std::vector<char> result(1024);
    return translator_->EcrCmd(copy.data(), result.data());
  }

  VirtualRegister device;

 private:
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
};

}  // namespace lorimat
