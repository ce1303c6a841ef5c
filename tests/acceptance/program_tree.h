// The console in a folder of its own, as it is installed, with the catalogs that a test gives it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "program_run.h"

class ProgramTree {
 public:
  ProgramTree() {
    namespace fs = std::filesystem;
    for (const char* part : {"bin", "lib", "share/lorimat"}) {
      fs::create_directories(folder_.Path(part));
    }
    fs::copy_file(std::string(LORIMAT_BIN_FOLDER) + "/lorimat", program());
    fs::copy_file(std::string(LORIMAT_LIB_FOLDER) + "/liblorimatrt.so",
                  folder_.Path("lib/liblorimatrt.so"));
    fs::copy_file(SourceFile("language/merkelin.ini"), folder_.Path("share/lorimat/merkelin.ini"));
  }

  std::string program() const { return folder_.Path("bin/lorimat"); }
  const TestFolder& folder() const { return folder_; }

  // The place of a language's catalog, whose folder is there then.
  std::string CatalogPlace(const std::string& language) const {
    const std::string place = "share/locale/" + language + "/LC_MESSAGES";
    std::filesystem::create_directories(folder_.Path(place));
    return folder_.Path(place + "/lorimat.mo");
  }
  // Puts a catalog there, of any bytes.
  void SetCatalog(const std::string& language, const std::string& bytes) const {
    CatalogPlace(language);
    folder_.Write("share/locale/" + language + "/LC_MESSAGES/lorimat.mo", bytes);
  }

  ProgramRun Run(const std::vector<std::string>& arguments,
                 const ProgramSetting& setting = {}) const {
    return RunProgram(program(), arguments, setting);
  }

 private:
  TestFolder folder_;
};
