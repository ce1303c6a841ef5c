#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "recording/conversation/script_text.h"
#include "surroundings.h"

namespace conversation {

OwnRegistry::OwnRegistry() {
  const std::string file = std::filesystem::current_path() / "registry.ini";
  setenv("LORIMATRT_REGISTRY", file.c_str(), 1);
}

OwnRegistry::~OwnRegistry() = default;

void OwnRegistry::Write(const std::string& text) {
  std::ofstream file("registry.ini", std::ios::binary);
  file << text;
  if (!file.flush()) throw Failure(0, "cannot write registry.ini");
}

}  // namespace conversation
