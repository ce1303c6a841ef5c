// libpng leaves a function that fails by longjmp, which runs no destructors: each call of it
// stands in a small function of its own, without any object.
#include "register/paper/picture_png.h"

#include <csetjmp>
#include <exception>
#include <utility>

#include "register/paper/picture.h"

namespace lorimat {
namespace {

[[noreturn]] void FailForMemory() {
  throw PictureError(MakeFailure(FailureCause::kPictureNoMemory));
}

[[noreturn]] void LeaveByJump(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void IgnoreWarning(png_structp, png_const_charp) {}

void KeepBytes(png_structp png, png_bytep data, size_t size) {
  auto* const writer = static_cast<PngWriter*>(png_get_io_ptr(png));
  if (!writer->Keep({reinterpret_cast<const char*>(data), size})) png_error(png, "");
}

void FlushNothing(png_structp) {}

}  // namespace

PngWriter::PngWriter(int width, int height) {
  png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, &LeaveByJump, &IgnoreWarning);
  if (png_ != nullptr) info_ = png_create_info_struct(png_);
  if (info_ != nullptr && Begin(width, height)) return;
  png_destroy_write_struct(&png_, &info_);
  FailForMemory();
}

PngWriter::~PngWriter() { png_destroy_write_struct(&png_, &info_); }

bool PngWriter::Begin(int width, int height) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_set_write_fn(png_, this, &KeepBytes, &FlushNothing);
  png_set_IHDR(png_, info_, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
               PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_set_pHYs(png_, info_, 1000 * kDotsPerMillimetre, 1000 * kDotsPerMillimetre,
               PNG_RESOLUTION_METER);
  png_write_info(png_, info_);
  return true;
}

bool PngWriter::WriteRow(const unsigned char* dots) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_write_row(png_, dots);
  return true;
}

bool PngWriter::End() {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  png_write_end(png_, nullptr);
  return true;
}

void PngWriter::Row(const unsigned char* dots) {
  if (!WriteRow(dots)) FailForMemory();
}

std::string PngWriter::Finish() {
  if (!End()) FailForMemory();
  return std::move(file_);
}

bool PngWriter::Keep(std::string_view bytes) noexcept {
  try {
    file_.append(bytes);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace lorimat
