// A device that costs next to nothing: it answers, keeps the last sale and counts.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "bench_tools.h"
#include "rpccommon/client/rtfclientbase.h"

class QuietClient : public RtfClientBase {
 public:
  struct Sale {
    int department;
    int quantity;        // thousandths
    int64_t unit_price;  // ten-thousandths
    std::string_view description;
    std::string_view unit;
  };

  int GetIntProperty(int, int* value) override {
    *value = 0;
    return RTF_SUCCESS;
  }
  int GetDataInternal(int, char* text) override {
    *text = 0;
    return RTF_SUCCESS;
  }
  int PrintRecItemEx(int, const char* description, int64_t, int quantity, int, int64_t unit_price,
                     const char* unit, int department, bool, const char*) override {
    ++sales_;
    department_ = department;
    quantity_ = quantity;
    unit_price_ = unit_price;
    description_.assign(description);
    unit_.assign(unit);
    return RTF_SUCCESS;
  }

  // Ends the program unless so many sales came, the last of them this one.
  void RequireSales(int64_t count, const Sale& last) const {
    Require(sales_ == count && department_ == last.department && quantity_ == last.quantity &&
                unit_price_ == last.unit_price && description_ == last.description &&
                unit_ == last.unit,
            "the sales that came are not those that were sent");
  }

 private:
  int64_t sales_ = 0;
  int department_ = 0;
  int quantity_ = 0;
  int64_t unit_price_ = 0;
  std::string description_;
  std::string unit_;
};
