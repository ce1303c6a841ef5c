// The line reader beside its rivals: the same file of 200,000 sale lines read by
// SeqFileRead, by std::getline and by fgets. Each counts the characters of the lines
// without their ends, which must come to the same number.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "bench_tools.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace {

constexpr int kLines = 200000;
constexpr int kLongest = 2047;  // the limit of a batch run

std::string SaleLines() {
  std::string text;
  for (int i = 0; i < kLines; ++i) {
    char line[64];
    const int size = std::snprintf(line, sizeof line, "VEND REP=%d, PRE=%d.%02d, DES='LINE %d'\r\n",
                                   i % 40 + 1, i % 900, i % 100, i);
    text.append(line, static_cast<size_t>(size));
  }
  return text;
}

const std::string& TextOfLines() {
  static const std::string text = SaleLines();
  return text;
}

const TemporaryFile& FileOfLines() {
  static const TemporaryFile file(TextOfLines());
  return file;
}

// characters: what was read in all, without the two characters of each line end.
void Report(benchmark::State& state, int64_t characters) {
  const int64_t lines = state.iterations() * int64_t{kLines};
  const int64_t size = state.iterations() * static_cast<int64_t>(TextOfLines().size());
  Require(characters == size - 2 * lines, "a reader lost characters");
  state.SetItemsProcessed(lines);
  state.SetBytesProcessed(size);
}

void read_by_SeqFileRead(benchmark::State& state) {
  const auto translator = std::make_unique<EcrCmdCommand>();
  const char* path = FileOfLines().path();
  int64_t characters = 0;
  for (auto _ : state) {
    fs_file_t file;
    Require(fs_open(&file, path, FS_RDONLY) != FS_BADF, "the file does not open");
    char line[kLongest + 1];
    for (int length; (length = translator->SeqFileRead(&file, line, kLongest)) >= 0;) {
      characters += length;
    }
    fs_close(&file);
  }
  Report(state, characters);
}
BENCHMARK(read_by_SeqFileRead)->Name("read_lines/ours")->Unit(benchmark::kMillisecond);

void ReadByGetline(benchmark::State& state) {
  const char* path = FileOfLines().path();
  int64_t characters = 0;
  for (auto _ : state) {
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      characters += static_cast<int64_t>(line.size());
    }
  }
  Report(state, characters);
}
BENCHMARK(ReadByGetline)->Name("read_lines/getline")->Unit(benchmark::kMillisecond);

void ReadByFgets(benchmark::State& state) {
  const char* path = FileOfLines().path();
  int64_t characters = 0;
  for (auto _ : state) {
    FILE* file = std::fopen(path, "rb");
    Require(file != nullptr, "the file does not open");
    char line[kLongest + 3];
    while (std::fgets(line, sizeof line, file) != nullptr) {
      characters += static_cast<int64_t>(std::strcspn(line, "\r\n"));
    }
    std::fclose(file);
  }
  Report(state, characters);
}
BENCHMARK(ReadByFgets)->Name("read_lines/fgets")->Unit(benchmark::kMillisecond);

}  // namespace
