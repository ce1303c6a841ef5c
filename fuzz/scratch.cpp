#include "fuzz/scratch.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "fuzz/tally.h"
#include "support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

fs::path& Folder() {
  static fs::path folder;
  return folder;
}

}  // namespace

void FreshFolder() {
  std::error_code error;
  if (Folder().empty()) {
    if (fs::is_directory("/dev/shm", error)) setenv("TMPDIR", "/dev/shm", 0);
    Folder() = MakeTemporaryFolder();
    fs::current_path(Folder());
    std::atexit([] {
      std::error_code ignored;
      fs::remove_all(Folder(), ignored);
    });
    return;
  }
  fs::current_path(Folder());
  for (const fs::directory_entry& entry : fs::directory_iterator(Folder())) {
    fs::remove_all(entry.path(), error);
  }
}

void WriteBytes(const std::string& name, std::string_view bytes) {
  std::ofstream file(name, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) Fails("a file of the fuzzer's own cannot be written: " + name);
}

void WriteInput(const std::string& name, std::string_view bytes) {
  WriteBytes(name, bytes);
  ++TheTally().files;
}

std::string WithoutFolders(std::string_view text) {
  std::string plain(text);
  std::replace(plain.begin(), plain.end(), '/', '-');
  // SETP takes the folder above, too.
  for (size_t at; (at = plain.find("..")) != std::string::npos;) plain[at] = '-';
  return plain;
}

std::string_view InputParts::Next() {
  const size_t end = std::min(rest_.find('\0'), rest_.size());
  const std::string_view part = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return part;
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

Tally& TheTally() {
  static Tally tally;
  static const int told = std::atexit([] {
    const Tally& last = TheTally();
    std::fprintf(stderr, "TALLY %" PRIu64 " %" PRIu64 " %" PRIu64 "\n", last.lines, last.files,
                 last.answers);
  });
  static_cast<void>(told);
  return tally;
}

void Fails(const std::string& what) {
  std::fprintf(stderr, "DOES NOT HOLD: %s\n", what.c_str());
  std::abort();
}
