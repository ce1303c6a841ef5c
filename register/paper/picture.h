// The paper as a picture, dot by dot as a thermal printer of 80 mm shows it: text in a fixed
// pitch, in double width and height where it was asked for, barcodes with their bars, logos from
// their files, and a line where the paper was cut.
//
//   std::string png = RenderPng(device.paper());
//   std::string pdf = RenderPdf(device.paper());
//
// A barcode that its type cannot hold or that is wider than the paper, and a logo whose file is
// missing or no PNG, show as the text that stands in for them. Text is read as UTF-8, and bytes
// that are none as Windows-1252.
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <string>

#include "register/paper/paper.h"
#include "register/value/register_error.h"

namespace lorimat {

// Measures of the picture, in dots. 80 mm of paper at 8 dots to the millimetre, as wide as
// receipt printers take it.
inline constexpr int kDotsPerMillimetre = 8;
inline constexpr int kPictureWidth = 640;
inline constexpr int kColumnWidth = 14;
inline constexpr int kPrintWidth = kColumnWidth * static_cast<int>(Paper::kColumns);
inline constexpr int kSideMargin = (kPictureWidth - kPrintWidth) / 2;
inline constexpr int kEndMargin = 24;    // above the first row and below the last
inline constexpr int kRowHeight = 28;    // of a row of text, and of a cut
inline constexpr int kCutThickness = 2;  // of the line in the middle of its row
inline constexpr int kBarHeight = 80;    // of a one-dimensional barcode
// The rows of dots that readers of PNG files take.
inline constexpr int kLongestPng = 1000000;

// Why a picture could not be made.
class PictureError : public RegisterError {
 public:
  using RegisterError::RegisterError;
};

// Told ahead of each row how many lines of the paper are drawn, of how many, and at the end that
// all are. It answers false to stop the drawing.
using PictureProgress = std::function<bool(size_t done, size_t all)>;

// The drawing was stopped.
class PictureStopped : public std::exception {
 public:
  const char* what() const noexcept override { return "the drawing was stopped"; }
};

// A PNG file with the whole roll, in shades of grey. Throws PictureError; a roll of more than
// kLongestPng dots is too long. Throws PictureStopped when `progress`, which may be null, says so.
std::string RenderPng(const Paper& paper, const PictureProgress& progress = nullptr);

// A PDF file with a page for each piece that was cut off, as long as the piece. One longer than
// PDF readers take (5 m) goes on to the next page. Throws PictureError and PictureStopped.
std::string RenderPdf(const Paper& paper, const PictureProgress& progress = nullptr);

}  // namespace lorimat
