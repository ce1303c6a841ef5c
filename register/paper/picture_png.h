// Writes a PNG file row by row, so that a picture of any length is never whole in memory.
#pragma once

#include <png.h>

#include <string>
#include <string_view>

namespace lorimat {

class PngWriter {
 public:
  // Eight bits of grey for each dot. Throws PictureError, as all that follow.
  PngWriter(int width, int height);
  ~PngWriter();
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  // The next row of dots, `width` bytes from black to white.
  void Row(const unsigned char* dots);
  // The file, once all rows are written.
  std::string Finish();

  // Keeps the bytes; false when there is no memory.
  bool Keep(std::string_view bytes) noexcept;

 private:
  bool Begin(int width, int height);
  bool WriteRow(const unsigned char* dots);
  bool End();

  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::string file_;
};

}  // namespace lorimat
