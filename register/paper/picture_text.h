// Lines of text in a picture: every character stands in its column, whatever the font.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "register/paper/picture_surface.h"

namespace lorimat {

struct PlacedCharacter {
  std::string text;  // UTF-8
  int column = 0;
  int width = 1;   // columns
  int height = 1;  // rows
};

// The characters of a line, blanks left out. The line holds bytes, one for each column, and the
// sizes are as in HostText. The bytes that make up a character of UTF-8 take one column together,
// and what follows moves up.
std::vector<PlacedCharacter> PlaceCharacters(std::string_view line, std::string_view sizes);

// The height of a line, in dots.
int TextHeight(std::string_view sizes);

class Typesetter {
 public:
  Typesetter();

  // Draws the line with the top of its row at `top`.
  void Draw(cairo_t* drawing, std::string_view line, std::string_view sizes, double top);

 private:
  struct Glyph {
    LayoutPtr layout;
    double advance = 0;
    // Of a character that is one glyph of a font: these, to be drawn with its neighbours. Null for
    // others. The layout has the font.
    cairo_scaled_font_t* font = nullptr;
    cairo_glyph_t glyph = {};
  };

  const Glyph& Find(const std::string& character);
  void DrawRun(cairo_t* drawing, cairo_scaled_font_t* font);

  ContextPtr context_;
  FontPtr font_;
  double baseline_ = 0;  // below the top of a row of normal height
  std::unordered_map<std::string, Glyph> glyphs_;
  // Neighbours of one font and of plain size, with the bytes of each.
  std::string run_text_;
  std::vector<cairo_glyph_t> run_glyphs_;
  std::vector<cairo_text_cluster_t> run_clusters_;
};

}  // namespace lorimat
