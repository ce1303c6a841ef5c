// Logos from PNG files.
#pragma once

#include <memory>
#include <string>

#include "register/paper/picture_surface.h"

namespace lorimat {

// The file's image in shades of grey on white, one dot for each of its own and made smaller
// when it is wider than the paper. Null when the file is not there, is no PNG, or is larger than
// 16 MB or 4096 dots on a side.
SurfacePtr ReadLogo(const std::string& file);

}  // namespace lorimat
