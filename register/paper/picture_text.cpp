#include "register/paper/picture_text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "register/paper/columns.h"
#include "register/paper/picture.h"

namespace lorimat {
namespace {

// What Windows-1252 has at 0x80 to 0x9F; 0 for the five bytes that it leaves out.
constexpr char32_t kWindows1252[] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
constexpr char32_t kReplacement = 0xFFFD;

std::string ToUtf8(char32_t character) {
  std::string text;
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
  return text;
}

std::string FromWindows1252(unsigned char byte) {
  if (byte < 0x80 || byte > 0x9F) return ToUtf8(byte);
  const char32_t character = kWindows1252[byte - 0x80];
  return ToUtf8(character != 0 ? character : kReplacement);
}

struct Column {
  int at;
  char size;
};

constexpr double kTrialSize = 100;  // dots

// The only run of a line, if it is of one glyph; null for others.
const PangoGlyphItem* OnlyGlyph(PangoLayoutLine* line) {
  if (line->runs == nullptr || line->runs->next != nullptr) return nullptr;
  const auto* const run = static_cast<const PangoGlyphItem*>(line->runs->data);
  const bool one = run->glyphs->num_glyphs == 1;
  return one && (run->glyphs->glyphs[0].glyph & PANGO_GLYPH_UNKNOWN_FLAG) == 0 ? run : nullptr;
}

}  // namespace

std::vector<PlacedCharacter> PlaceCharacters(std::string_view line, std::string_view sizes) {
  // The bytes without those that fill up a double width, with the columns that they stand in.
  std::string bytes;
  std::vector<Column> columns;
  for (size_t i = 0; i < line.size(); ++i) {
    const char size = i < sizes.size() ? sizes[i] : static_cast<char>(kPlainSize);
    if ((size & kFilled) != 0) continue;
    bytes += line[i];
    columns.push_back({static_cast<int>(i), size});
  }

  std::vector<PlacedCharacter> placed;
  int moved = 0;  // columns to the left
  for (size_t i = 0; i < bytes.size();) {
    const unsigned char first = static_cast<unsigned char>(bytes[i]);
    if (first <= ' ' || first == 0x7F) {
      ++i;
      continue;
    }
    const size_t length = CharacterLength(std::string_view(bytes).substr(i));
    const Column column = columns[i];
    PlacedCharacter character;
    character.text = length > 1 ? bytes.substr(i, length) : FromWindows1252(first);
    character.column = column.at - moved;
    character.height = (column.size & kDoubleHeight) != 0 ? 2 : 1;
    if ((column.size & kDoubleWidth) != 0) character.width = 2;
    moved += static_cast<int>(length - 1) * character.width;
    // In the last column there is no room for the other half.
    if (character.column + 1 >= static_cast<int>(Paper::kColumns)) character.width = 1;
    placed.push_back(std::move(character));
    i += length;
  }
  return placed;
}

int TextHeight(std::string_view sizes) {
  const bool tall = std::any_of(sizes.begin(), sizes.end(),
                                [](char size) { return (size & kDoubleHeight) != 0; });
  return tall ? 2 * kRowHeight : kRowHeight;
}

// The font is scaled so that its advance is a column, and its line is set in the middle of the
// row. Hinting would round the advance away.
Typesetter::Typesetter()
    : context_(pango_font_map_create_context(pango_cairo_font_map_get_default())),
      font_(pango_font_description_from_string("DejaVu Sans Mono, monospace")) {
  const FontOptionsPtr options(cairo_font_options_create());
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(context_.get(), options.get());
  pango_context_set_round_glyph_positions(context_.get(), FALSE);

  pango_font_description_set_absolute_size(font_.get(), kTrialSize * PANGO_SCALE);
  const double advance = Find("0").advance;
  glyphs_.clear();
  const double size = advance > 0 ? kTrialSize * kColumnWidth / advance : kColumnWidth;
  pango_font_description_set_absolute_size(font_.get(), size * PANGO_SCALE);

  PangoLayout* const layout = Find("0").layout.get();
  PangoRectangle extents;
  pango_layout_get_extents(layout, nullptr, &extents);
  baseline_ = (kRowHeight - static_cast<double>(extents.height) / PANGO_SCALE) / 2 +
              static_cast<double>(pango_layout_get_baseline(layout)) / PANGO_SCALE;
}

const Typesetter::Glyph& Typesetter::Find(const std::string& character) {
  const auto found = glyphs_.find(character);
  if (found != glyphs_.end()) return found->second;
  Glyph glyph;
  glyph.layout.reset(pango_layout_new(context_.get()));
  pango_layout_set_font_description(glyph.layout.get(), font_.get());
  pango_layout_set_single_paragraph_mode(glyph.layout.get(), TRUE);
  pango_layout_set_text(glyph.layout.get(), character.data(), static_cast<int>(character.size()));
  int width = 0;
  pango_layout_get_size(glyph.layout.get(), &width, nullptr);
  glyph.advance = static_cast<double>(width) / PANGO_SCALE;
  PangoLayoutLine* const line = pango_layout_get_line_readonly(glyph.layout.get(), 0);
  if (const PangoGlyphItem* const run = OnlyGlyph(line)) {
    const PangoGlyphInfo& info = run->glyphs->glyphs[0];
    glyph.font = pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(run->item->analysis.font));
    glyph.glyph.index = info.glyph;
    glyph.glyph.x = static_cast<double>(info.geometry.x_offset) / PANGO_SCALE;
    glyph.glyph.y = static_cast<double>(info.geometry.y_offset) / PANGO_SCALE;
  }
  return glyphs_.emplace(character, std::move(glyph)).first->second;
}

// As Pango draws a run, so that the text can be found in a PDF.
void Typesetter::DrawRun(cairo_t* drawing, cairo_scaled_font_t* font) {
  if (run_glyphs_.empty()) return;
  cairo_set_scaled_font(drawing, font);
  cairo_show_text_glyphs(drawing, run_text_.data(), static_cast<int>(run_text_.size()),
                         run_glyphs_.data(), static_cast<int>(run_glyphs_.size()),
                         run_clusters_.data(), static_cast<int>(run_clusters_.size()),
                         static_cast<cairo_text_cluster_flags_t>(0));
  run_text_.clear();
  run_glyphs_.clear();
  run_clusters_.clear();
}

void Typesetter::Draw(cairo_t* drawing, std::string_view line, std::string_view sizes, double top) {
  const double row_height = TextHeight(sizes);
  // All characters of a row stand on one line, which the largest set.
  const double scale = row_height / kRowHeight;
  const double baseline = top + scale * baseline_;
  cairo_scaled_font_t* font = nullptr;
  for (const PlacedCharacter& character : PlaceCharacters(line, sizes)) {
    const Glyph& glyph = Find(character.text);
    const double room = kColumnWidth;
    const double squeeze = glyph.advance > room ? room / glyph.advance : 1;
    const double indent = (room - squeeze * glyph.advance) / 2;
    const double left = kSideMargin + character.column * kColumnWidth + character.width * indent;
    if (glyph.font != nullptr && squeeze == 1 && character.width == 1 && character.height == 1) {
      if (glyph.font != font) DrawRun(drawing, font);
      font = glyph.font;
      run_text_ += character.text;
      run_glyphs_.push_back({glyph.glyph.index, left + glyph.glyph.x, baseline + glyph.glyph.y});
      run_clusters_.push_back({static_cast<int>(character.text.size()), 1});
      continue;
    }
    cairo_save(drawing);
    cairo_translate(drawing, left, baseline);
    cairo_scale(drawing, character.width * squeeze, character.height);
    cairo_move_to(drawing, 0, 0);
    pango_cairo_show_layout_line(drawing, pango_layout_get_line_readonly(glyph.layout.get(), 0));
    cairo_restore(drawing);
  }
  DrawRun(drawing, font);
}

}  // namespace lorimat
