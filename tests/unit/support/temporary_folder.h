// A fresh folder for the files of a test, on either platform.
#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

// Makes a folder that nobody else has, and gives its path. The caller removes it.
inline std::filesystem::path MakeTemporaryFolder() {
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string name = "lorimat." + std::to_string(random()) + std::to_string(random());
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / name;
    if (std::filesystem::create_directory(folder)) return std::filesystem::canonical(folder);
  }
  throw std::runtime_error("no temporary folder can be made");
}
