// Work of the register, so many times, to be run under a counter of instructions:
//
//   register_counted SUBJECT COUNT
//
//   receipt_stored   receipts of five lines, on a register in memory
//   receipt_lines    lines of one receipt
//   register_read    state, totals and data items read, in front of a register that sold a receipt
//   article_row      rows of one transfer of articles
//
// Whoever wants the cost of one subtracts two runs, or takes a count at which the start is nothing.
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "bench_tools.h"
#include "register/client/virtual_register.h"
#include "register_work.h"

namespace {

using lorimat::VirtualRegister;

constexpr int kReceiptsOfADay = 9000;

void Receipts(VirtualRegister& device, int count) {
  for (int receipt = 0; receipt < count; ++receipt) {
    if (receipt > 0 && receipt % kReceiptsOfADay == 0) {
      Require(device.PrintZReportEx(true) == 0, "the register refuses the day closing");
    }
    SellFiveLines(device);
  }
}

void Lines(VirtualRegister& device, int count) {
  Require(device.BeginFiscalReceipt(true) == 0, "the register refuses a receipt");
  for (int line = 0; line < count; ++line) {
    Require(device.PrintRecItemEx(0, "PANE", 100, 0, -1, 0, "", 4, true, "") == 0,
            "the register refuses a line");
  }
}

void Readings(VirtualRegister& device, int count) {
  SellFiveLines(device);
  char text[512];
  for (int reading = 0; reading < count; ++reading) {
    Require(device.GetState() == RTF_S_IDLE && device.GetDataInternal(371, text) == 0 &&
                device.GetDataInternal(89, text) == 0 && device.GetDataInternal(98, text) == 0,
            "the register does not tell its totals");
  }
}

void Rows(VirtualRegister& device, int count) { UploadArticles(device, ArticleRows(count)); }

struct Subject {
  std::string_view name;
  void (*work)(VirtualRegister& device, int count);
};
constexpr Subject kSubjects[] = {{"receipt_stored", Receipts},
                                 {"receipt_lines", Lines},
                                 {"register_read", Readings},
                                 {"article_row", Rows}};

}  // namespace

int main(int argc, char** argv) {
  const int count = argc == 3 ? std::atoi(argv[2]) : 0;
  for (const Subject& subject : kSubjects) {
    if (count < 1 || subject.name != argv[1]) continue;
    VirtualRegister device(WorkSettings());
    subject.work(device, count);
    return 0;
  }
  std::fputs("usage: register_counted SUBJECT COUNT\n", stderr);
  return 2;
}
