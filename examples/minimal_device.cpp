// A device in its smallest form: it opens a receipt, sells, takes money, closes the receipt and the
// day, and refuses everything else.
//
//   example_minimal_device merkelin.ini < lines.cmd
#include <cinttypes>
#include <cstdio>
#include <iostream>
#include <string>

#include "lorimatrt/lorimatrt.h"
#include "managermachine/pflitemtype.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/services/rtffptrconst.h"

namespace {

constexpr int64_t kMost = 99'999'999'900;  // 9999999.99 in ten-thousandths

class MinimalDevice : public RtfClientBase {
 public:
  int GetState() override { return RTF_S_IDLE; }

  // What opens a receipt: the first sale asks for the state, and begins one in the monitor's alone.
  int GetIntProperty(int property, int* value) override {
    if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
    *value = !open_       ? RTF_FPTR_PS_MONITOR
             : paid_ == 0 ? RTF_FPTR_PS_FISCAL_RECEIPT
                          : RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
    return RTF_SUCCESS;
  }
  int BeginFiscalReceipt(bool) override {
    if (open_) return RTF_EFPTR_WRONG_STATE;
    open_ = true;
    total_ = paid_ = 0;
    return RTF_SUCCESS;
  }
  // With a quantity the unit price counts, without one the price. There are no voids and refunds
  // here, and no departments that have a price.
  int PrintRecItemEx(int type, const char* description, int64_t price, int quantity, int,
                     int64_t unit_price, const char*, int department, bool, const char*) override {
    if (!open_ || paid_ > 0) return RTF_EFPTR_WRONG_STATE;
    if (type != PflItemType::kPrintRecItem) return RTF_E_ILLEGAL;
    if (quantity < 0 || quantity > 9'999'999) return RTF_EFPTR_BAD_ITEM_QUANTITY;
    int64_t amount = quantity > 0 ? unit_price : price;
    if (amount <= 0 || amount > kMost) return RTF_EFPTR_BAD_PRICE;
    if (quantity > 0) amount = amount * quantity / 1000;
    amount = (amount + 50) / 100 * 100;  // whole cents
    if (amount > kMost - total_) return RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW;
    total_ += amount;
    Print(*description != 0 ? description : "REPARTO " + std::to_string(department), amount);
    return RTF_SUCCESS;
  }
  // What covers the total ends the receipt: the library does not call EndFiscalReceipt then.
  int PrintRecTotalEx(int64_t payment, const char* tender, bool rest) override {
    if (!open_ || total_ == 0) return RTF_EFPTR_WRONG_STATE;
    if (std::string(tender) != "0") return RTF_E_NOEXIST;  // cash alone
    if (rest) payment = total_ - paid_;
    if (payment <= 0 || payment > kMost) return RTF_EFPTR_BAD_ITEM_AMOUNT;
    paid_ += payment;
    Print("CONTANTI", payment);
    if (paid_ < total_) return RTF_SUCCESS;
    Print("TOTALE", total_);
    Print("RESTO", paid_ - total_);
    day_ += total_;
    open_ = false;
    return RTF_SUCCESS;
  }
  int PrintZReportEx(bool) override {
    if (open_) return RTF_EFPTR_WRONG_STATE;
    Print("CHIUSURA", day_);
    day_ = 0;
    return RTF_SUCCESS;
  }
  // The way out, from any state.
  int ResetPrn() override {
    open_ = false;
    return RTF_SUCCESS;
  }

 private:
  static void Print(const std::string& text, int64_t amount) {
    std::printf("%-30s%9" PRId64 ",%02d\n", text.c_str(), amount / 10000,
                static_cast<int>(amount / 100 % 100));
  }

  bool open_ = false;
  int64_t total_ = 0;  // of the receipt, its payments, and the day: ten-thousandths
  int64_t paid_ = 0;
  int64_t day_ = 0;
};

MinimalDevice device;

// The library asks for the client once, from TradInit; the last argument is the address of the
// pointer to fill.
long GiveDevice(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = static_cast<RtfClientInterface*>(&device);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || TradInit(argv[1], 0, nullptr, &GiveDevice) != 0) {
    std::fprintf(stderr, "usage: example_minimal_device DEFINITION_FILE\n");
    return 2;
  }
  int failed = 0;
  char result[512];  // the least that EcrCmd asks for
  for (std::string line; std::getline(std::cin, line);) {
    const long code = EcrCmd(line.data(), result);
    if (code == 0) continue;
    failed = 1;
    std::printf("%s: code %ld: %s\n", line.c_str(), code, result);
  }
  TradClose();
  return failed;
}
