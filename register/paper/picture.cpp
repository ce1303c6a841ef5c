// The paper is first laid out as blocks, each of them a row with its height. A PNG is then drawn in
// bands and a PDF in pages, both by the same drawing of a block.
#include "register/paper/picture.h"

#include <cairo-pdf.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <new>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "register/paper/picture_barcode.h"
#include "register/paper/picture_logo.h"
#include "register/paper/picture_png.h"
#include "register/paper/picture_surface.h"
#include "register/paper/picture_text.h"

namespace lorimat {
namespace {

constexpr int kBandHeight = 1024;
// PDF readers take pages of 14400 points, which are 5080 mm.
constexpr int kLongestPage = 5000 * kDotsPerMillimetre;
constexpr double kPointsPerDot = 72.0 / 25.4 / kDotsPerMillimetre;

// What text takes when it is drawn for the first time, most of it addresses alone: fonts, their
// caches, and threads that read them with a heap for each.
constexpr size_t kDrawingRoom = size_t{256} << 20;

// The library under the text ends the process where it gets no memory. Throws std::bad_alloc ahead
// of that.
void CheckRoom() {
  // Not by new, of which a compiler knows that it may be left out.
  void* volatile room = std::malloc(kDrawingRoom);
  if (room == nullptr) throw std::bad_alloc();
  std::free(room);
}

struct Block {
  size_t line;
  std::string_view sizes = {};
  bool cut = false;
  std::optional<Bars> bars = {};
  Alignment alignment = Alignment::kCentre;
  cairo_surface_t* logo = nullptr;
  int height = kRowHeight;
};

void CheckDrawing(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  throw PictureError(
      MakeFailure(FailureCause::kPictureNotDrawn, {status}, cairo_status_to_string(status)));
}

class Picture {
 public:
  Picture(const Paper& paper, const PictureProgress& progress);

  const std::vector<Block>& blocks() const { return blocks_; }
  void Draw(cairo_t* drawing, const Block& block, double top);
  void TellEnd() const { Tell(paper_.lines().size()); }

 private:
  void Tell(size_t done) const {
    if (progress_ && !progress_(done, paper_.lines().size())) throw PictureStopped();
  }
  void AddText(size_t line, std::string_view sizes = {});
  void AddRow(const PaperRow& row);
  // Null when there is no such logo.
  cairo_surface_t* Logo(const std::string& file);

  const Paper& paper_;
  const PictureProgress& progress_;
  Typesetter typesetter_;
  std::map<std::string, SurfacePtr> logos_;
  std::vector<Block> blocks_;
};

Picture::Picture(const Paper& paper, const PictureProgress& progress)
    : paper_(paper), progress_(progress) {
  size_t line = 0;
  for (const PaperRow& row : paper.rows()) {
    // Many barcodes take a while to be laid out.
    Tell(0);
    for (; line < row.line; ++line) AddText(line);
    AddRow(row);
    line = row.line + row.line_count;
  }
  for (; line < paper.lines().size(); ++line) AddText(line);
}

void Picture::AddText(size_t line, std::string_view sizes) {
  blocks_.push_back({.line = line, .sizes = sizes, .height = TextHeight(sizes)});
}

void Picture::AddRow(const PaperRow& row) {
  Block block{.line = row.line};
  if (const auto* sized = std::get_if<SizedRow>(&row.content)) {
    AddText(row.line, sized->sizes);
    return;
  }
  if (std::holds_alternative<CutRow>(row.content)) {
    block.cut = true;
  } else if (const auto* barcode = std::get_if<BarcodeRow>(&row.content)) {
    block.bars = EncodeBars(*barcode);
    block.alignment = barcode->alignment;
    if (block.bars) block.height = block.bars->height_in_dots() + 2 * block.bars->light_space();
  } else if (const auto* logo = std::get_if<LogoRow>(&row.content)) {
    block.logo = Logo(logo->file);
    if (block.logo != nullptr) block.height = cairo_image_surface_get_height(block.logo);
  }
  if (block.cut || block.bars || block.logo != nullptr) {
    blocks_.push_back(std::move(block));
    return;
  }
  for (size_t i = 0; i < row.line_count; ++i) AddText(row.line + i);
}

cairo_surface_t* Picture::Logo(const std::string& file) {
  const auto found = logos_.find(file);
  if (found != logos_.end()) return found->second.get();
  return logos_.emplace(file, ReadLogo(file)).first->second.get();
}

void FillBars(cairo_t* drawing, const Bars& bars, int left, double top) {
  const int height = bars.two_dimensional ? bars.row_height * bars.module : kBarHeight;
  for (const std::vector<bool>& row : bars.rows) {
    int begin = 0;
    while (begin < bars.width) {
      int end = begin;
      while (end < bars.width && row[static_cast<size_t>(end)]) ++end;
      if (end > begin) {
        cairo_rectangle(drawing, left + begin * bars.module, top, (end - begin) * bars.module,
                        height);
      }
      begin = end + 1;
    }
    top += height;
  }
  cairo_fill(drawing);
}

// Where something of this width begins.
int LeftOf(Alignment alignment, int width) {
  const int room = kPrintWidth - width;
  return kSideMargin + (alignment == Alignment::kLeft    ? 0
                        : alignment == Alignment::kRight ? room
                                                         : room / 2);
}

void Picture::Draw(cairo_t* drawing, const Block& block, double top) {
  Tell(block.line);
  cairo_set_source_rgb(drawing, 0, 0, 0);
  if (block.cut) {
    constexpr int kFromTop = (kRowHeight - kCutThickness) / 2;  // in whole dots
    cairo_rectangle(drawing, kSideMargin, top + kFromTop, kPrintWidth, kCutThickness);
    cairo_fill(drawing);
  } else if (block.bars) {
    FillBars(drawing, *block.bars, LeftOf(block.alignment, block.bars->width_in_dots()),
             top + block.bars->light_space());
  } else if (block.logo != nullptr) {
    const int left = LeftOf(Alignment::kCentre, cairo_image_surface_get_width(block.logo));
    cairo_set_source_surface(drawing, block.logo, left, top);
    cairo_paint(drawing);
  } else {
    typesetter_.Draw(drawing, paper_.lines()[block.line], block.sizes, top);
  }
}

// --- PNG

void WriteBand(cairo_surface_t* band, int rows, PngWriter& png) {
  cairo_surface_flush(band);
  const unsigned char* const data = cairo_image_surface_get_data(band);
  const int stride = cairo_image_surface_get_stride(band);
  unsigned char dots[kPictureWidth];
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < kPictureWidth; ++x) {
      // Everything drawn is grey, so that each of the three colours tells the shade.
      uint32_t pixel;
      std::memcpy(&pixel, data + static_cast<ptrdiff_t>(y) * stride + ptrdiff_t{4} * x,
                  sizeof(pixel));
      dots[x] = static_cast<unsigned char>(pixel & 0xFF);
    }
    png.Row(dots);
  }
}

// --- PDF

cairo_status_t AppendBytes(void* file, const unsigned char* data, unsigned size) {
  try {
    static_cast<std::string*>(file)->append(reinterpret_cast<const char*>(data), size);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

// The end of the page that begins with this block, and its height.
size_t EndOfPage(const std::vector<Block>& blocks, size_t begin, int* height) {
  *height = 2 * kEndMargin;
  size_t end = begin;
  while (end < blocks.size() && (end == begin || *height + blocks[end].height <= kLongestPage)) {
    *height += blocks[end].height;
    ++end;
    if (blocks[end - 1].cut) break;
  }
  return end;
}

}  // namespace

std::string RenderPng(const Paper& paper, const PictureProgress& progress) {
  CheckRoom();
  Picture picture(paper, progress);
  int64_t height = int64_t{2} * kEndMargin;
  for (const Block& block : picture.blocks()) height += block.height;
  if (height > kLongestPng) {
    throw PictureError(MakeFailure(FailureCause::kPaperTooLong, {height, kLongestPng}));
  }

  PngWriter png(kPictureWidth, static_cast<int>(height));
  const SurfacePtr band(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kPictureWidth, kBandHeight));
  const DrawingPtr drawing(cairo_create(band.get()));
  size_t first = 0;  // the block that the band begins in, and where that begins
  int first_top = kEndMargin;
  for (int top = 0; top < height; top += kBandHeight) {
    cairo_set_source_rgb(drawing.get(), 1, 1, 1);
    cairo_paint(drawing.get());
    int at = first_top;
    for (size_t i = first; i < picture.blocks().size() && at < top + kBandHeight; ++i) {
      const Block& block = picture.blocks()[i];
      picture.Draw(drawing.get(), block, at - top);
      at += block.height;
      // A glyph may reach a little out of its row: a row above is drawn in this band too.
      if (at <= top + kBandHeight - kRowHeight) {
        first = i + 1;
        first_top = at;
      }
    }
    CheckDrawing(cairo_status(drawing.get()));
    WriteBand(band.get(), std::min(kBandHeight, static_cast<int>(height) - top), png);
  }
  picture.TellEnd();
  return png.Finish();
}

std::string RenderPdf(const Paper& paper, const PictureProgress& progress) {
  CheckRoom();
  Picture picture(paper, progress);
  std::string file;
  const double width = kPictureWidth * kPointsPerDot;
  const SurfacePtr surface(cairo_pdf_surface_create_for_stream(&AppendBytes, &file, width, width));
  // The same paper makes the same file.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
  const DrawingPtr drawing(cairo_create(surface.get()));
  size_t begin = 0;
  do {
    int height = 0;
    const size_t end = EndOfPage(picture.blocks(), begin, &height);
    cairo_pdf_surface_set_size(surface.get(), width, height * kPointsPerDot);
    cairo_save(drawing.get());
    cairo_scale(drawing.get(), kPointsPerDot, kPointsPerDot);
    int top = kEndMargin;
    for (size_t i = begin; i < end; ++i) {
      picture.Draw(drawing.get(), picture.blocks()[i], top);
      top += picture.blocks()[i].height;
    }
    cairo_restore(drawing.get());
    cairo_show_page(drawing.get());
    begin = end;
  } while (begin < picture.blocks().size());
  CheckDrawing(cairo_status(drawing.get()));
  cairo_surface_finish(surface.get());
  CheckDrawing(cairo_surface_status(surface.get()));
  picture.TellEnd();
  return file;
}

}  // namespace lorimat
