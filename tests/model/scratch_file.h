// The file through which the translator reads a definition.
#pragma once

#include <filesystem>

// In a folder of the program's own, which goes with it.
const std::filesystem::path& ScratchFile();
