// Files beside their rivals: a batch beside its lines given one by one, a definition file beside a
// reader of INI files.
#include <benchmark/benchmark.h>
#include <ini.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include "bench_tools.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "quiet_client.h"
#include "wide_language.h"

namespace {

constexpr QuietClient::Sale kSale = {1, 1500, 123400, "Pane di casa", "kg"};
// script/bench leaves these out where it is not asked for them.
constexpr int64_t kMostLines = 10000000;
constexpr char kSaleLine[] = "VEND REP=1, QTA=1.5, PREUN=12.34, DES='Pane di casa', UM='kg'\n";

// A translator with the wide language, and a file of as many sale lines as the benchmark's argument
// says.
class Batch {
 public:
  explicit Batch(int64_t lines) : language_(WideLanguage()), file_(kSaleLine, lines) {
    Require(translator_->TradInit(language_.path(), 0, &client_, true) == 0,
            "the definition file was refused");
  }

  EcrCmdCommand& translator() { return *translator_; }
  const char* path() const { return file_.path(); }
  void RequireSales(int64_t count) const { client_.RequireSales(count, kSale); }

 private:
  TemporaryFile language_;
  TemporaryFile file_;
  QuietClient client_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
};

void BatchOfSales(benchmark::State& state) {
  Batch batch(state.range(0));
  const MemoryPeak memory;
  for (auto _ : state) {
    std::string line = std::string("@'") + batch.path() + "'";
    std::array<char, 512> result;
    Require(batch.translator().EcrCmd(line.data(), result.data()) == 0, result.data());
  }
  state.counters["memory"] = memory.bytes();
  batch.RequireSales(state.iterations() * state.range(0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BatchOfSales)
    ->Name("batch/ours")
    ->RangeMultiplier(10)
    ->Range(1000, kMostLines)
    ->Unit(benchmark::kMillisecond);

void SalesOneByOne(benchmark::State& state) {
  Batch batch(state.range(0));
  for (auto _ : state) {
    std::ifstream file(batch.path());
    std::array<char, 512> result;
    for (std::string line; std::getline(file, line);) {
      Require(batch.translator().EcrCmd(line.data(), result.data()) == 0, result.data());
    }
  }
  batch.RequireSales(state.iterations() * state.range(0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SalesOneByOne)
    ->Name("batch/one_by_one")
    ->RangeMultiplier(10)
    ->Range(1000, kMostLines)
    ->Unit(benchmark::kMillisecond);

constexpr int kCommands = 127;
constexpr int kFields = 40;

void DefinitionFile(benchmark::State& state) {
  TemporaryFile language(WideLanguage(kCommands, kFields));
  const auto translator = std::make_unique<EcrCmdCommand>();
  for (auto _ : state) {
    Require(translator->LeggiFileIni(language.path()) == 1 &&
                translator->iNumOper[kCommands] == kFields,
            "the definition file was refused");
  }
  state.SetItemsProcessed(state.iterations() * kCommands * (kFields + 1));
}
BENCHMARK(DefinitionFile)->Name("definition_file/ours")->Unit(benchmark::kMicrosecond);

// What a program without a language of its own would fill: the same tables, by section and row.
struct IniTables {
  std::array<std::array<char, MAXSIMBLN + 1>, MAXOPCOD> commands{};
  std::array<std::array<std::array<char, MAXSIMBLN + 1>, MAXCAMPI + 1>, MAXOPCOD> fields{};
  int entries = 0;

  static int Take(void* user, const char* section, const char* name, const char* value) {
    auto& tables = *static_cast<IniTables*>(user);
    const int row = std::atoi(name);
    const bool is_command = std::strcmp(section, "OPCOD") == 0;
    const int id = is_command ? 0 : std::atoi(section);
    if (row < 0 || row > (is_command ? MAXOPCOD - 1 : MAXCAMPI) || id >= MAXOPCOD) return 0;
    auto& text = is_command ? tables.commands[static_cast<size_t>(row)]
                            : tables.fields[static_cast<size_t>(id)][static_cast<size_t>(row)];
    const size_t length = std::min(std::strlen(value), size_t{MAXSIMBLN});
    std::memcpy(text.data(), value, length);
    text[length] = 0;
    ++tables.entries;
    return 1;
  }
};

void DefinitionByInih(benchmark::State& state) {
  const TemporaryFile language(WideLanguage(kCommands, kFields));
  const auto tables = std::make_unique<IniTables>();
  for (auto _ : state) {
    tables->entries = 0;
    Require(ini_parse(language.path(), &IniTables::Take, tables.get()) == 0 &&
                tables->entries == kCommands * (kFields + 1),
            "not read");
  }
  state.SetItemsProcessed(state.iterations() * kCommands * (kFields + 1));
}
BENCHMARK(DefinitionByInih)->Name("definition_file/inih")->Unit(benchmark::kMicrosecond);

}  // namespace
