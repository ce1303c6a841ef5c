// Where the program finds what it needs: the shared library, the definition file, the registry.
#pragma once

#include <string>

namespace lorimat::console {

// The shared library: the given file, or the one found beside the program (../lib, or the
// folder it is installed in) when the text is empty. Throws Failure naming the places searched.
std::string FindLibrary(const std::string& given);

// The folder of the examples of an installed program, ../share/lorimat/examples; where there is
// none, that of the sources.
std::string FindExamples();

// The folder of the catalogs of messages, ../share/locale; empty where the program's own folder
// cannot be found.
std::string FindCatalogs();

// The definition file that the library is going to read.
struct DefinitionFile {
  std::string path;
  // The registry's InstallationDir, which has the last word over every host; empty when the
  // registry does not name one. registry_file is the file that says so.
  std::string installation_dir;
  std::string registry_file;
};

// The definition file: what the registry says, else the given file, else the one found beside
// the program (../share/lorimat/merkelin.ini).
DefinitionFile FindDefinitionFile(const std::string& given);

// The file of the registry, which holds the library's settings; it need not be there.
std::string RegistryFile();

// The definition file of the option --language or, without it, the one that a host would read.
std::string DefinitionPath(const std::string& given);

}  // namespace lorimat::console
