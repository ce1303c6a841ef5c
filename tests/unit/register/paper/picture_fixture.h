// Pictures of the paper, read back dot by dot.
#pragma once

#include <gtest/gtest.h>
#include <png.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "register/paper/picture.h"

namespace lorimat {

struct Dots {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> grey;

  int At(int x, int y) const { return grey[static_cast<size_t>(y * width + x)]; }
  bool IsWhite(int left, int top, int right, int bottom) const {
    for (int y = top; y < bottom; ++y) {
      for (int x = left; x < right; ++x) {
        if (At(x, y) != 255) return false;
      }
    }
    return true;
  }
  // A row of text or anything else of its height, the first is row 0.
  bool RowIsWhite(int row) const {
    const int top = kEndMargin + row * kRowHeight;
    return IsWhite(0, top, width, top + kRowHeight);
  }
};

inline Dots ReadPng(const std::string& file) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0) return {};
  image.format = PNG_FORMAT_GRAY;
  Dots dots;
  dots.width = static_cast<int>(image.width);
  dots.height = static_cast<int>(image.height);
  dots.grey.resize(PNG_IMAGE_SIZE(image));
  EXPECT_NE(png_image_finish_read(&image, nullptr, dots.grey.data(), 0, nullptr), 0);
  return dots;
}

inline Dots Draw(const Paper& paper) { return ReadPng(RenderPng(paper)); }

// A folder of this test, removed with all its files.
class PictureFolder {
 public:
  PictureFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("lorimat-picture-" + std::to_string(getpid()))) {
    std::filesystem::create_directory(path_);
  }
  ~PictureFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  PictureFolder(const PictureFolder&) = delete;
  PictureFolder& operator=(const PictureFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ / name; }
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace lorimat
