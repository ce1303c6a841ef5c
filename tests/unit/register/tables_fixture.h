// A register that is programmed: its tables written, and read back as texts.
#pragma once

#include <cstring>
#include <string>

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/register_fixture.h"

namespace lorimat {

struct DepartmentCall {
  int32_t number = 1;
  std::string description = "PANE";
  int64_t price = 0;
  int64_t max_price = 0;
  int32_t quantity = 0;
  int32_t vat = 1;
  uint8_t group = 0;
  bool single_shoot = false;
  bool allow_discount = true;
  bool force_description = false;
  bool is_service = false;
};

class TablesTest : public RegisterTest {
 protected:
  static int Write(VirtualRegister& device, DepartmentCall call, bool extended = true) {
    char description[200] = "";
    call.description.copy(description, sizeof description - 1);
    if (!extended) {
      return device.ConfigDepartment(true, call.number, description, &call.price, &call.max_price,
                                     &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                     &call.allow_discount, &call.force_description);
    }
    return device.ConfigDepartmentEx(true, call.number, description, &call.price, &call.max_price,
                                     &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                     &call.allow_discount, &call.force_description,
                                     &call.is_service);
  }
  int Write(const DepartmentCall& call) { return Write(device, call); }

  // The record as one text; "refused N" when the register refuses to read it.
  static std::string Department(VirtualRegister& device, int32_t number, bool extended = true) {
    DepartmentCall call;
    call.price = call.max_price = call.quantity = call.vat = -7;
    char description[128];
    std::memset(description, '#', sizeof description);
    const int code =
        extended
            ? device.ConfigDepartmentEx(false, number, description, &call.price, &call.max_price,
                                        &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                        &call.allow_discount, &call.force_description,
                                        &call.is_service)
            : device.ConfigDepartment(false, number, description, &call.price, &call.max_price,
                                      &call.quantity, &call.vat, &call.group, &call.single_shoot,
                                      &call.allow_discount, &call.force_description);
    if (code != RTF_SUCCESS) return "refused " + std::to_string(code);
    std::string text = description;
    for (const int64_t value :
         {call.price, call.max_price, static_cast<int64_t>(call.quantity),
          static_cast<int64_t>(call.vat), static_cast<int64_t>(call.group),
          static_cast<int64_t>(call.single_shoot), static_cast<int64_t>(call.allow_discount),
          static_cast<int64_t>(call.force_description), static_cast<int64_t>(call.is_service)}) {
      text += "," + std::to_string(value);
    }
    return text;
  }
  std::string Department(int32_t number) { return Department(device, number); }

  int WriteGroup(int index, const std::string& description, const std::string& password, int flags,
                 int options) {
    char text[200] = "", word[200] = "";
    description.copy(text, sizeof text - 1);
    password.copy(word, sizeof word - 1);
    return device.ConfigGroup(true, index, text, word, &flags, &options);
  }
  std::string Group(int index) {
    char text[129], word[65];
    int flags = -7, options = -7;
    const int code = device.ConfigGroup(false, index, text, word, &flags, &options);
    if (code != RTF_SUCCESS) return "refused " + std::to_string(code);
    return std::string(text) + "," + word + "," + std::to_string(flags) + "," +
           std::to_string(options);
  }

  int WriteSubtender(int number, uint8_t type, const std::string& description, uint8_t flags,
                     uint32_t preset, uint8_t digits) {
    char text[200] = "";
    description.copy(text, sizeof text - 1);
    return device.ConfigSubtender(true, number, &type, text, &flags, &preset, &digits);
  }
  std::string Subtender(int number) {
    uint8_t type = 99, flags = 99, digits = 99;
    uint32_t preset = 99;
    char text[64];
    const int code = device.ConfigSubtender(false, number, &type, text, &flags, &preset, &digits);
    if (code != RTF_SUCCESS) return "refused " + std::to_string(code);
    return std::to_string(type) + "," + text + "," + std::to_string(flags) + "," +
           std::to_string(preset) + "," + std::to_string(digits);
  }

  int Rate(int entry) {
    int rate = -7;
    const int code = device.GetVatEntry(entry, 0, &rate);
    return code == RTF_SUCCESS ? rate : -code;
  }
  std::string Header(int line) {
    char text[65];
    return device.GetHeaderLine(line, text) == RTF_SUCCESS ? text : "refused";
  }
  bool PaperHas(const std::string& text) {
    return device.paper_text().find(text) != std::string::npos;
  }
  bool Key(uint8_t key, const char* digits = "") {
    std::string codes;
    for (; *digits != '\0'; ++digits) {
      codes += *digits == '0' ? static_cast<char>(FunctionCode::kNumber0)
                              : static_cast<char>(*digits - '0');
    }
    EXPECT_EQ(device.KeyCodeInput(codes.c_str(), "", "", key), RTF_SUCCESS);
    return Item(368) == "0";
  }
};

}  // namespace lorimat
