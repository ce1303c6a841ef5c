// A device in training that keeps to its contract, with the least that makes receipts and closes
// days: what the broken ones beside it are made of.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "lorimatrt/device.h"
#include "managermachine/pflitemtype.h"
#include "rpccommon/client/rtfclientbase.h"
#include "rpccommon/services/rtffptrconst.h"

class SoundDevice : public RtfClientBase {
 public:
  int GetState() override { return RTF_S_IDLE; }
  int GetIntProperty(int property, int* value) override {
    if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
    *value = !open_       ? RTF_FPTR_PS_MONITOR
             : paid_ == 0 ? RTF_FPTR_PS_FISCAL_RECEIPT
                          : RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL;
    return RTF_SUCCESS;
  }
  int GetDataInternal(int item, char* text) override {
    switch (item) {
      case 75:
        return Give("2", text);
      case 78:
        return Give("40", text);
      case 92:
        return Give("99TST000001", text);
      case 371:
        return Give(open_ ? "20;2;0;0;0;1;1" : "20;0;0;0;0;1;1", text);
      default:
        return RTF_E_ILLEGAL;
    }
  }
  int GetHeaderLine(int line, char* text) override {
    return line == 1 || line == 2 ? Give("TESTATA", text) : RTF_E_ILLEGAL;
  }
  int BeginFiscalReceipt(bool) override {
    if (open_) return RTF_EFPTR_WRONG_STATE;
    open_ = true;
    total_ = paid_ = 0;
    return RTF_SUCCESS;
  }
  int PrintRecItemEx(int type, const char*, int64_t price, int quantity, int, int64_t unit_price,
                     const char*, int department, bool, const char*) override {
    if (!open_ || paid_ > 0) return RTF_EFPTR_WRONG_STATE;
    if (type != PflItemType::kPrintRecItem) return RTF_E_ILLEGAL;
    if (department < 1 || department > 40) return RTF_EFPTR_BAD_VAT;
    if (quantity < 0) return RTF_EFPTR_BAD_ITEM_QUANTITY;
    const int64_t amount = quantity > 0 ? unit_price * quantity / 1000 : price;
    if (amount <= 0) return RTF_EFPTR_BAD_PRICE;
    if (amount > kMost - total_) return RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW;
    total_ += amount;
    return RTF_SUCCESS;
  }
  int PrintRecSubtotalEx(int64_t amount, bool check) override {
    if (!open_ || paid_ > 0) return RTF_EFPTR_WRONG_STATE;
    return check && amount != total_ ? RTF_EFPTR_FISCAL_TOTALS_ERROR : RTF_SUCCESS;
  }
  int PrintRecTotalEx(int64_t payment, const char* tender, bool rest) override {
    if (!open_ || total_ == 0) return RTF_EFPTR_WRONG_STATE;
    if (std::string(tender) != "0") return RTF_E_NOEXIST;
    if (rest) payment = total_ - paid_;
    if (payment <= 0) return RTF_EFPTR_BAD_ITEM_AMOUNT;
    paid_ += payment;
    open_ = paid_ < total_;
    return RTF_SUCCESS;
  }
  int PrintZReportEx(bool) override { return open_ ? RTF_EFPTR_WRONG_STATE : RTF_SUCCESS; }
  int OpenDrawer() override { return RTF_SUCCESS; }
  int ResetPrn() override {
    open_ = false;
    return RTF_SUCCESS;
  }

 protected:
  static constexpr int64_t kMost = 99'999'999'900;  // ten-thousandths

  static int Give(const std::string& answer, char* text) {
    std::snprintf(text, 50, "%s", answer.c_str());
    return RTF_SUCCESS;
  }

  bool open_ = false;
  int64_t total_ = 0;
  int64_t paid_ = 0;
};

// The plug-in's beginning: a client that lives as long as the file is loaded.
inline int OpenSound(lorimat_device_plugin* plugin, const char* name, RtfClientInterface* client,
                     bool (*training)(void* data)) {
  if (const int other = lorimat_device_begin(plugin)) return other;
  plugin->name = name;
  plugin->version = "1.0";
  plugin->kind = LORIMAT_DEVICE_CPP;
  plugin->client = client;
  plugin->can = LORIMAT_DEVICE_TRAINING;
  plugin->training = training;
  return LORIMAT_DEVICE_OK;
}
