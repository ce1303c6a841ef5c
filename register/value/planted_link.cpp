#include "register/value/planted_link.h"

#include <sys/stat.h>
#include <unistd.h>

namespace lorimat {

bool IsPlantedLink(const std::string& path) {
  struct stat link = {};
  if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return false;
  const size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  struct stat status = {};
  if (stat(folder.c_str(), &status) != 0) return false;
  const bool everybodys = (status.st_mode & S_ISVTX) != 0 && (status.st_mode & S_IWOTH) != 0;
  return everybodys && link.st_uid != geteuid() && link.st_uid != status.st_uid;
}

}  // namespace lorimat
