// The road of one line through the translator, with a client that costs nothing: cleaning,
// look-up of the words, conversion of the values, the handler, the result string.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>

#include "bench_tools.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "quiet_client.h"

namespace {

constexpr char kLanguage[] =
    "[OPCOD]\n9=SUBT\n10=VEND\n11=CHIU\n"
    "[10]\n1=REP\n2=ART\n3=QTA\n4=PRE\n5=RESO\n6=STORNO\n7=DES\n14=UM\n15=PREUN\n";

// Runs the line again and again; expected is the result code that it must have.
void RunLine(benchmark::State& state, const char* line, long expected) {
  TemporaryFile language(kLanguage);
  QuietClient client;
  const auto translator = std::make_unique<EcrCmdCommand>();
  Require(translator->TradInit(language.path(), 0, &client, true) == 0,
          "the definition file was refused");
  std::string command = line;
  char result[512];
  for (auto _ : state) {
    Require(translator->EcrCmd(command.data(), result) == expected, result);
  }
  state.SetItemsProcessed(state.iterations());
}

void SaleOfADepartment(benchmark::State& state) { RunLine(state, "VEND REP=1, PRE=12.34", 0); }
BENCHMARK(SaleOfADepartment)->Name("short_sale/ours");

void SaleWithEveryCommonField(benchmark::State& state) {
  RunLine(state, "VEND REP=1, QTA=1.5, PREUN=12.34, DES='Pane di casa', UM='kg'", 0);
}
BENCHMARK(SaleWithEveryCommonField)->Name("full_sale/ours");

void CommentLine(benchmark::State& state) { RunLine(state, "   ; nothing to do", 0); }
BENCHMARK(CommentLine)->Name("comment/ours");

void UnknownCommand(benchmark::State& state) { RunLine(state, "NOSUCH REP=1", 257); }
BENCHMARK(UnknownCommand)->Name("unknown_command/ours");

}  // namespace
