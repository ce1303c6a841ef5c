#include "properties/table_generators.h"

#include <array>

#include "pal/peripherals/keyboard/functioncode.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

namespace gen = rc::gen;

int Below(int count) { return *gen::resize(rc::kNominalSize, gen::inRange(0, count)); }
bool Chance(int of) { return Below(of) == 0; }

// With a byte at least: an empty text clears nothing.
std::string AnyText(size_t most) {
  const size_t size = Chance(4) ? most : static_cast<size_t>(1 + Below(static_cast<int>(most)));
  std::string text(size, ' ');
  for (char& c : text) {
    switch (Below(4)) {
      case 0:
        c = "'\"=,;# @"[Below(8)];
        break;
      case 1:
        c = static_cast<char>(0x80 + Below(0x80));
        break;
      default:
        c = static_cast<char>(0x20 + Below(0x5F));
    }
  }
  return text;
}

// As wide as the device reads it, with its end.
template <size_t kSize>
std::array<char, kSize> Buffer(const std::string& text) {
  std::array<char, kSize> buffer = {};
  text.copy(buffer.data(), kSize - 1);
  return buffer;
}

int AnyInteger() {
  if (Chance(5)) return *gen::element(0, 1, -1, INT32_MAX, INT32_MIN);
  return static_cast<int>(static_cast<unsigned>(Below(65536)) << 16 |
                          static_cast<unsigned>(Below(65536)));
}

int WriteDepartment(VirtualRegister& device) {
  auto name = Buffer<128>(AnyText(32));
  int64_t price = static_cast<int64_t>(Below(10000000)) * kCent;
  int64_t most = Chance(2) ? 0 : static_cast<int64_t>(Below(10000000)) * kCent;
  int32_t quantity = 0, vat = 1 + Below(5);
  auto group = static_cast<uint8_t>(Below(11));
  bool single = Chance(2), discount = Chance(2), force = Chance(2), service = Chance(2);
  return device.ConfigDepartmentEx(true, 1 + Below(40), name.data(), &price, &most, &quantity, &vat,
                                   &group, &single, &discount, &force, &service);
}

// The second half are operators.
int WriteGroup(VirtualRegister& device) {
  auto description = Buffer<129>(AnyText(32));
  auto password = Buffer<65>(AnyText(16));
  int flags = AnyInteger(), options = AnyInteger();
  return device.ConfigGroup(true, 1 + Below(20), description.data(), password.data(), &flags,
                            &options);
}

int WriteSubtender(VirtualRegister& device) {
  auto kind = static_cast<uint8_t>(Below(3)), flags = static_cast<uint8_t>(Below(2));
  auto digits = static_cast<uint8_t>(Below(256));
  auto preset = static_cast<uint32_t>(Below(1000000000));
  auto description = Buffer<64>(AnyText(15));
  return device.ConfigSubtender(true, 1 + Below(20), &kind, description.data(), &flags, &preset,
                                &digits);
}

int WriteHeader(VirtualRegister& device) {
  return device.SetHeaderLine(1 + Below(6), AnyText(32).c_str(), false);
}

int WriteKey(VirtualRegister& device) {
  uint8_t code = static_cast<uint8_t>(Below(256));
  std::string macro;
  if (Chance(2)) {
    code = static_cast<uint8_t>(FunctionCode::kMacro01 + Below(20));
    const int size = Below(40);
    for (int i = 0; i < size; ++i) macro += static_cast<char>(1 + Below(199));
  }
  auto text = Buffer<64>(macro);
  auto size = static_cast<uint16_t>(macro.size());
  auto keyboard = static_cast<int8_t>(Below(3));
  return device.ConfigKeyboard(true, static_cast<uint8_t>(1 + Below(120)), &code, &keyboard,
                               text.data(), &size);
}

int WriteRate(VirtualRegister& device) {
  const int code = device.SetVatValue(1 + Below(5), std::to_string(Below(10000) * 100).c_str());
  return code == RTF_SUCCESS ? device.SetVatTable() : code;
}

struct TableRow {
  const char* name;
  int (*write)(VirtualRegister& device);
  int most;  // records of it
};
constexpr TableRow kTableRows[] = {
    {"departments", &WriteDepartment, 20},
    {"groups and operators", &WriteGroup, 12},
    {"subtenders", &WriteSubtender, 10},
    {"header lines", &WriteHeader, 6},
    {"keys", &WriteKey, 60},
    {"rates", &WriteRate, 3},
};

}  // namespace

RegisterSettings TablesByChance() {
  RegisterSettings settings;
  const int count = Below(12);
  for (int number = 0; number < count; ++number) {
    std::string code = std::to_string(number) + AnyText(8);
    while (code.back() == ' ') code.pop_back();
    settings.articles.push_back(
        {std::move(code), AnyText(20), 1 + Below(40), Below(10000000) * kCent});
  }
  return settings;
}

void ProgramByChance(VirtualRegister& device, Seen* seen) {
  for (const TableRow& row : kTableRows) {
    const int count = Below(row.most + 1);
    for (int i = 0; i < count; ++i) {
      seen->Add(row.write(device) == RTF_SUCCESS ? std::string(row.name)
                                                 : row.name + std::string(", refused"));
    }
  }
}

}  // namespace lorimat
