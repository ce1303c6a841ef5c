#include "console/terminal/remove_folder.h"

#include <ftw.h>

#include <cstdio>

namespace lorimat::console {
namespace {

constexpr int kMostDescriptors = 8;

int Remove(const char* path, const struct stat*, int, FTW*) {
  std::remove(path);
  return 0;
}

}  // namespace

void RemoveFolder(const std::string& path) noexcept {
  nftw(path.c_str(), &Remove, kMostDescriptors, FTW_DEPTH | FTW_PHYS);
}

}  // namespace lorimat::console
