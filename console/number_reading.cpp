#include "number_reading.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "language/command_help.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace {

constexpr char kSeparator = '.';
constexpr int kPrecision = 4;  // of prices and percentages
constexpr int64_t kTenThousand = 10000;
constexpr int64_t kThousand = 1000;

bool is_number(std::string_view text) {
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  const size_t point = text.find(kSeparator);
  if (point != text.npos && text.find(kSeparator, point + 1) != text.npos) return false;
  return !text.empty() && text.front() != kSeparator &&
         text.find_first_not_of("0123456789.") == text.npos;
}

// "2.5" of 2500 thousandths.
std::string decimal(int64_t value, int64_t scale) {
  std::string text = fmt::format("{}", static_cast<double>(value) / static_cast<double>(scale));
  return text.ends_with(".0") ? text.substr(0, text.size() - 2) : text;
}

bool takes(const language::FieldHelp& field, std::string_view what) {
  return std::string_view(field.takes).substr(0, what.size()) == what;
}

}  // namespace

std::string other_number(int opcode, int field, const std::string& value) {
  const language::CommandHelp* command = language::find_command_help(opcode);
  const language::FieldHelp* help = command != nullptr ? command->find_field(field) : nullptr;
  if (help == nullptr || !is_number(value)) return {};
  std::string text = value;
  int64_t read = 0;
  int64_t scale = 1;
  if (takes(*help, "price") || takes(*help, "amount")) {
    scale = kTenThousand;
    read = lorimatutility::TradPrice(text.data(), false, kSeparator, kPrecision);
  } else if (takes(*help, "percentage")) {
    scale = kTenThousand;
    read = lorimatutility::TradPercentage(text.data(), kSeparator, kPrecision);
  } else if (takes(*help, "quantity")) {
    scale = kThousand;
    read = lorimatutility::TradQuantity(text.data(), kSeparator);
  } else if (takes(*help, "department")) {
    read = text_to_int(text.c_str());
  } else {
    return {};
  }
  // What a double has no room for is no matter beside what gets lost.
  const double written = std::strtod(value.c_str(), nullptr) * static_cast<double>(scale);
  const double room = 1 + std::abs(written) * 1e-9;
  if (std::abs(written - static_cast<double>(read)) <= room) return {};
  return decimal(read, scale);
}
