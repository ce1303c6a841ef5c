// Barcodes as dark and light modules, a module being the narrowest bar or the smallest square.
#pragma once

#include <optional>
#include <vector>

#include "register/paper/paper.h"

namespace lorimat {

struct Bars {
  bool two_dimensional = false;
  int module = 0;      // dots that a module is wide, chosen so that the bars fit the paper
  int width = 0;       // modules
  int row_height = 1;  // modules; of no meaning for one dimension
  // From the top; `width` modules each, true for dark.
  std::vector<std::vector<bool>> rows;

  int width_in_dots() const { return module * width; }
  int height_in_dots() const;  // without the light space that readers need around them
  int light_space() const;     // above and below, in dots
};

// Nothing when the type cannot hold the data, or not on this paper.
std::optional<Bars> EncodeBars(const BarcodeRow& barcode);

}  // namespace lorimat
