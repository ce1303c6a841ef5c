// What the register's work costs in instructions, on a register in memory: receipts, lines of one
// receipt, reading it, and rows of one transfer of articles. Receipts in a file as well: what the
// system does for them is not counted.
#include <string>

#include "bench_tools.h"
#include "growth.h"
#include "register/client/virtual_register.h"
#include "register_work.h"

namespace {

using growth::Measure;
using lorimat::VirtualRegister;

// One of each, so that nothing of the first is counted.
void WarmUp(VirtualRegister& device) {
  SellFiveLines(device);
  UploadArticles(device, ArticleRows(1));
}

void Receipts(const char* family, const std::string& file) {
  for (const int receipts : {20, 100, 400}) {
    const TemporaryFolder folder;
    VirtualRegister device(WorkSettings(file.empty() ? file : folder.File(file)));
    WarmUp(device);
    Measure(std::string(family) + "/" + std::to_string(receipts), receipts, [&] {
      for (int receipt = 0; receipt < receipts; ++receipt) SellFiveLines(device);
    });
  }
}

void Lines() {
  for (const int lines : {100, 400, 1600}) {
    VirtualRegister device(WorkSettings());
    WarmUp(device);
    Require(device.BeginFiscalReceipt(true) == 0, "the register refuses a receipt");
    bool sold = true;
    Measure("receipt_lines/" + std::to_string(lines), lines, [&] {
      for (int line = 0; line < lines; ++line) {
        sold = device.PrintRecItemEx(0, "PANE", 100, 0, -1, 0, "", 4, true, "") == 0 && sold;
      }
    });
    Require(sold, "the register refuses a line");
  }
}

void Readings() {
  for (const int receipts : {1, 200}) {
    VirtualRegister device(WorkSettings());
    for (int receipt = 0; receipt < receipts; ++receipt) SellFiveLines(device);
    constexpr int kReadings = 200;
    bool told = true;
    char text[512];
    Measure("register_read/" + std::to_string(receipts), kReadings, [&] {
      for (int reading = 0; reading < kReadings; ++reading) {
        told = told && device.GetState() == RTF_S_IDLE && device.GetDataInternal(371, text) == 0 &&
               device.GetDataInternal(89, text) == 0 && device.GetDataInternal(98, text) == 0;
      }
    });
    Require(told, "the register does not tell its totals");
  }
}

void ArticleTransfers() {
  for (const int rows : {100, 1000, 4000}) {
    VirtualRegister device(WorkSettings());
    WarmUp(device);
    const auto articles = ArticleRows(rows);
    Measure("article_row/" + std::to_string(rows), rows, [&] { UploadArticles(device, articles); });
  }
}

}  // namespace

int main() {
  Receipts("receipt_in_memory", "");
  Receipts("receipt_in_file", "register");
  Lines();
  Readings();
  ArticleTransfers();
}
