// What a register costs that holds few receipts, and ones that hold many: opening it, a sale, its
// state, an old document. Each is measured on all files. Names are
// register_file/OPERATION/RECEIPTS. Of a sale the time of a day is that of the disk: a receipt is
// on it before the payment is answered.
//
//   capacity_bench [--quick | --large] [google-benchmark's arguments]
//
// The files have 1,000 to 100,000 receipts; --quick makes those of 1,000 and 10,000 alone, --large
// one of 1,000,000 too, which takes more than 1 GB in the folder for temporary files.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench_tools.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "stored_register.h"

namespace {

using lorimat::RegisterFile;
using lorimat::VirtualRegister;

// Enough of each, and fewer sales than a day's numbers.
constexpr int kOpenings = 20;
constexpr int kSales = 300;
constexpr int kReadings = 1000;

void Opening(benchmark::State& state, const StoredRegister* stored) {
  for (auto _ : state) {
    auto device = std::make_unique<VirtualRegister>(stored->settings());
    Require(device->GetState() == RTF_S_IDLE, "the register is not idle");
    state.PauseTiming();  // switching it off
    device.reset();
    state.ResumeTiming();
  }
}

void Sale(benchmark::State& state, const StoredRegister* stored) {
  VirtualRegister device(stored->settings());
  for (auto _ : state) {
    const bool sold = device.BeginFiscalReceipt(true) == 0 &&
                      device.PrintRecItemEx(0, "CAFFE", 12000, 0, -1, 0, "", 2, true, "") == 0 &&
                      device.PrintRecItemEx(0, "PANE", 0, 750, -1, 39000, "", 4, true, "") == 0 &&
                      device.PrintRecTotalEx(0, "0", true) == 0;
    Require(sold, "the register refuses a sale");
  }
}

// The status line, the total of the day and the grand total.
void StateAndTotals(benchmark::State& state, const StoredRegister* stored) {
  VirtualRegister device(stored->settings());
  char text[512];
  for (auto _ : state) {
    const bool read =
        device.GetDataInternal(371, text) == 0 && device.GetDataInternal(89, text) == 0 &&
        device.GetDataInternal(98, text) == 0 && device.GetTotalizerExtend(0, 4, 16, text) == 0;
    Require(read, "the register does not tell its totals");
  }
}

// A receipt of the first day is looked for to be made void, which is given up again.
void OldReceipt(benchmark::State& state, const StoredRegister* stored) {
  VirtualRegister device(stored->settings());
  for (auto _ : state) {
    const bool found =
        device.BeginDocTelematicCancel(500, 1, "", false, "") == 0 && device.ResetPrn() == 0;
    Require(found, "the register does not find a receipt of its first day");
  }
}

// What "lorimat status" does.
void StatusOfTheFile(benchmark::State& state, const StoredRegister* stored) {
  for (auto _ : state) {
    const RegisterFile file(stored->file());
    const lorimat::RegisterStatus status = file.Status();
    Require(status.documents >= static_cast<uint64_t>(stored->receipts()), "documents are missing");
  }
}

struct Measure {
  const char* name;
  void (*run)(benchmark::State& state, const StoredRegister* stored);
  int times;
};
constexpr Measure kMeasures[] = {{"opening", Opening, kOpenings},
                                 {"status_of_the_file", StatusOfTheFile, kOpenings},
                                 {"state_and_totals", StateAndTotals, kReadings},
                                 {"old_receipt", OldReceipt, kOpenings},
                                 {"sale", Sale, kSales}};

std::string NameOf(const Measure& measure, const StoredRegister& stored) {
  return std::string("register_file/") + measure.name + "/" + std::to_string(stored.receipts());
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<int64_t> sizes = {10000, 100000};
  std::vector<char*> others;
  for (int i = 0; i < count; ++i) {
    if (std::string_view(arguments[i]) == "--quick") {
      sizes = {10000};
    } else if (std::string_view(arguments[i]) == "--large") {
      sizes.push_back(1000000);
    } else {
      others.push_back(arguments[i]);
    }
  }
  int left = static_cast<int>(others.size());
  benchmark::Initialize(&left, others.data());
  if (benchmark::ReportUnrecognizedArguments(left, others.data())) return 1;

  std::vector<std::unique_ptr<const StoredRegister>> registers;
  registers.push_back(std::make_unique<StoredRegister>());
  for (const int64_t size : sizes) {
    std::fprintf(stderr, "making a register of %lld receipts\n", static_cast<long long>(size));
    registers.push_back(std::make_unique<StoredRegister>(*registers.front(), size));
  }
  for (const Measure& measure : kMeasures) {
    for (const auto& stored : registers) {
      benchmark::RegisterBenchmark(NameOf(measure, *stored).c_str(), measure.run, stored.get())
          ->Unit(benchmark::kMicrosecond)
          ->Iterations(measure.times)
          ->UseRealTime();
    }
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
