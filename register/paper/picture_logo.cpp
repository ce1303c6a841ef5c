#include "register/paper/picture_logo.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "register/paper/picture.h"

namespace lorimat {
namespace {

constexpr uintmax_t kLargestFile = 16u << 20;
constexpr uint32_t kLargestSide = 4096;

// A PNG begins with its signature and the header chunk: length, name, width, height.
constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
constexpr size_t kWidthAt = 16;
constexpr size_t kHeightAt = 20;
constexpr size_t kHeaderEnd = 24;

uint32_t BigEndian(std::string_view bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

// Looked at ahead of unpacking: a small file can hold a huge image.
bool IsUsable(std::string_view png) {
  if (png.size() < kHeaderEnd || png.substr(0, kSignature.size()) != kSignature) return false;
  const uint32_t width = BigEndian(png, kWidthAt);
  const uint32_t height = BigEndian(png, kHeightAt);
  return width >= 1 && width <= kLargestSide && height >= 1 && height <= kLargestSide;
}

cairo_status_t Take(void* rest, unsigned char* data, unsigned length) {
  std::string_view& bytes = *static_cast<std::string_view*>(rest);
  if (bytes.size() < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, bytes.data(), length);
  bytes.remove_prefix(length);
  return CAIRO_STATUS_SUCCESS;
}

// Paper knows no colours. The weights are those of ITU-R BT.601, in thousandths.
void MakeGrey(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  unsigned char* const data = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  const int width = cairo_image_surface_get_width(surface);
  for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
    for (int x = 0; x < width; ++x) {
      unsigned char* const at = data + static_cast<ptrdiff_t>(y) * stride + ptrdiff_t{4} * x;
      uint32_t pixel;
      std::memcpy(&pixel, at, sizeof(pixel));
      const uint32_t grey =
          (299 * (pixel >> 16 & 0xFF) + 587 * (pixel >> 8 & 0xFF) + 114 * (pixel & 0xFF) + 500) /
          1000;
      pixel = grey << 16 | grey << 8 | grey;
      std::memcpy(at, &pixel, sizeof(pixel));
    }
  }
  cairo_surface_mark_dirty(surface);
}

}  // namespace

SurfacePtr ReadLogo(const std::string& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return nullptr;
  const uintmax_t size = std::filesystem::file_size(file, error);
  if (error || size > kLargestFile) return nullptr;
  std::string bytes(static_cast<size_t>(size), '\0');
  std::ifstream stream(file, std::ios::binary);
  if (!stream.read(bytes.data(), static_cast<std::streamsize>(size))) return nullptr;
  if (!IsUsable(bytes)) return nullptr;
  std::string_view rest = bytes;
  const SurfacePtr image(cairo_image_surface_create_from_png_stream(&Take, &rest));
  if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS) return nullptr;

  const int width = cairo_image_surface_get_width(image.get());
  const int height = cairo_image_surface_get_height(image.get());
  const double scale = std::min(1.0, static_cast<double>(kPrintWidth) / width);
  SurfacePtr logo(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, std::min(width, kPrintWidth),
                                 std::max(1, static_cast<int>(std::lround(scale * height)))));
  const DrawingPtr drawing(cairo_create(logo.get()));
  cairo_set_source_rgb(drawing.get(), 1, 1, 1);
  cairo_paint(drawing.get());
  cairo_scale(drawing.get(), scale, scale);
  cairo_set_source_surface(drawing.get(), image.get(), 0, 0);
  cairo_paint(drawing.get());
  if (cairo_status(drawing.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  MakeGrey(logo.get());
  return logo;
}

}  // namespace lorimat
