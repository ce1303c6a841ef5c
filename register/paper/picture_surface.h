// Owners of the drawing libraries' objects.
#pragma once

#include <cairo.h>
#include <pango/pangocairo.h>

#include <memory>

namespace lorimat {

struct DestroySurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyDrawing {
  void operator()(cairo_t* drawing) const { cairo_destroy(drawing); }
};
struct Unref {
  void operator()(void* object) const { g_object_unref(object); }
};
struct FreeFont {
  void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};
struct FreeFontOptions {
  void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};

using SurfacePtr = std::unique_ptr<cairo_surface_t, DestroySurface>;
using DrawingPtr = std::unique_ptr<cairo_t, DestroyDrawing>;
using ContextPtr = std::unique_ptr<PangoContext, Unref>;
using LayoutPtr = std::unique_ptr<PangoLayout, Unref>;
using FontPtr = std::unique_ptr<PangoFontDescription, FreeFont>;
using FontOptionsPtr = std::unique_ptr<cairo_font_options_t, FreeFontOptions>;

}  // namespace lorimat
