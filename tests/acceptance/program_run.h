// Runs the console as a person's shell does and keeps what it wrote.
#pragma once

#include <csignal>
#include <map>
#include <optional>
#include <string>
#include <vector>

struct ProgramRun {
  int exit_code = -1;  // -1 when a signal ended the program
  std::string output;  // standard output
  std::string errors;  // standard error
};

struct ProgramSetting {
  std::string folder = {};                              // to run in; empty stays here
  std::string input = {};                               // standard input
  std::map<std::string, std::string> environment = {};  // added to the caller's
  bool errors_to_terminal = false;                      // standard error is a pseudo-terminal
  bool output_to_terminal = false;                      // so is standard output
  std::string output_file = {};                         // standard output goes to this file
  bool close_output = false;  // the program starts without standard output
  bool as_nobody = false;     // when the tests run as root
  // Sends the signal once standard error holds this text; standard input stays open until the
  // program ends.
  std::string interrupt_at = {};
  int signal = SIGINT;
};

// Adds to a setting that the program loads this library first.
ProgramSetting WithPreload(const std::string& library, ProgramSetting setting = {});

// Runs the console with these arguments. No registry of this computer is seen, nor what its user
// chose for language and colours, unless the environment of the setting says so.
ProgramRun RunConsole(const std::vector<std::string>& arguments,
                      const ProgramSetting& setting = {});

// Runs another program: a path, or a name in the build's bin folder.
ProgramRun RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                      const ProgramSetting& setting = {});

// A folder for a test, removed with all its files. Its path has no capital letters.
class TestFolder {
 public:
  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }
  const std::string& path() const { return path_; }
  // Writes a file, every byte as given, and returns its path.
  std::string Write(const std::string& name, const std::string& content) const;
  std::string Read(const std::string& name) const;
  std::vector<std::string> names() const;

 private:
  std::string path_;
};

// A file of the source tree.
std::string SourceFile(const std::string& name);
std::string ReadFile(const std::string& path);
// A file of tests/acceptance/expected.
std::string ExpectedPaper(const std::string& name);
