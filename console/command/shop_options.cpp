#include "console/command/shop_options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "console/message/failure.h"
#include "console/message/refusal_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/nature.h"

namespace lorimat::console {
namespace {

using lorimat::ShopValue;

// An option, and the rule of its values with an example.
struct ValueRule {
  ShopValue value;
  const char* option;
  const char* rule;
};

constexpr ValueRule kRules[] = {
    {ShopValue::kSerialNumber, "--serial",
     TR_TEXT("A serial number has 11 to 32 capital letters and digits, such as 99LRM0000001VR")},
    {ShopValue::kVatNumber, "--vat-number",
     TR_TEXT("A VAT number has 11 digits, the last of which checks the others, such as "
             "01234567897")},
    {ShopValue::kHeaderLines, "--header",
     TR_TEXT("A header has up to 6 lines of 42 characters, each with a --header of its own, such "
             "as --header \"BAR SPORT\"; an accented letter counts two")},
    {ShopValue::kVatRates, "--vat",
     TR_TEXT(
         "A rate is an entry of the table and a percentage from 0 to 99.99 with two decimals at "
         "most, such as 1=22 or 3=5.5, or the nature of sales without tax, N1 to N6, such as 5=N4; "
         "several stand between blanks, as \"22 10 5,5 N4\", from entry 1 on")},
    {ShopValue::kDepartments, "--departments",
     TR_TEXT("A department is its number from 1 to 40, a name of up to 32 characters, and if need "
             "be its VAT "
             "entry and a price, such as 1=PANE, 1=PANE:4 or 1=PANE:4:2,50; a name with a colon "
             "takes both")},
    {ShopValue::kOutbox, "--outbox",
     TR_TEXT("The outbox is a folder that is there, such as /srv/outbox")},
};

const ValueRule* FindRule(ShopValue value) {
  for (const ValueRule& row : kRules) {
    if (row.value == value) return &row;
  }
  return nullptr;
}

[[noreturn]] void Refuse(ShopValue value, const std::string& text, const std::string& cause) {
  const ValueRule* const rule = FindRule(value);
  throw Failure(Tr("{} {}: {} {}", rule->option, Shown(text, 100), cause, Translated(rule->rule)));
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Digits alone, of a number that an int takes.
std::optional<int> ReadNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  if (text.empty() || !IsDigit(text.front()) || !whole) return std::nullopt;
  return number;
}

// Hundredths: digits with at most two decimals behind a comma or a point.
std::optional<int> ReadHundredths(std::string_view text) {
  const size_t mark = text.find_first_of(",.");
  const std::string_view whole = text.substr(0, mark);
  std::string decimals(mark == text.npos ? "" : text.substr(mark + 1));
  if (decimals.size() > 2 || (mark != text.npos && decimals.empty())) return std::nullopt;
  decimals.resize(2, '0');
  return ReadNumber(std::string(whole.empty() ? "x" : whole) + decimals);
}

// Whether a rate with a comma may have been meant as two: both sides are rates that shops have.
bool MayBeTwoRates(std::string_view rate) {
  constexpr std::string_view kUsual[] = {"0", "4", "5", "10", "20", "21", "22"};
  const auto usual = [&](std::string_view side) {
    return std::find(std::begin(kUsual), std::end(kUsual), side) != std::end(kUsual);
  };
  const size_t comma = rate.find(',');
  if (comma == rate.npos) return false;
  const std::string_view first = rate.substr(0, comma);
  const std::string_view second = rate.substr(comma + 1);
  return first != second && usual(first) && usual(second);
}

// The pieces between blanks and semicolons.
std::vector<std::string> Pieces(const std::string& text) {
  constexpr std::string_view kBetween = "; \t";
  std::vector<std::string> pieces;
  for (size_t at = text.find_first_not_of(kBetween); at != text.npos;) {
    const size_t end = std::min(text.find_first_of(kBetween, at), text.size());
    pieces.push_back(text.substr(at, end - at));
    at = text.find_first_not_of(kBetween, end);
  }
  return pieces;
}

void ReadVat(const std::vector<std::string>& texts, ShopValues* values) {
  constexpr int kHundredth = 100;  // of a percent, in ten-thousandths
  int entry = 0;
  for (const std::string& text : texts) {
    const std::vector<std::string> pieces = Pieces(text);
    if (pieces.empty()) Refuse(ShopValue::kVatRates, text, Tr("There is no rate in it."));
    for (const std::string& piece : pieces) {
      const size_t sign = piece.find('=');
      std::string rate = sign == piece.npos ? piece : piece.substr(sign + 1);
      if (!rate.empty() && rate.back() == '%') rate.pop_back();
      const std::optional<int> named =
          sign == piece.npos ? std::optional(entry + 1) : ReadNumber(piece.substr(0, sign));
      const bool nature = lorimat::FindNature(rate) != nullptr;
      const std::optional<int> hundredths = nature ? 0 : ReadHundredths(rate);
      if (!named || *named < 1 || !hundredths || *hundredths > 9999) {
        Refuse(ShopValue::kVatRates, piece, Tr("That is no rate."));
      }
      if (MayBeTwoRates(rate)) {
        const size_t comma = rate.find(',');
        const std::string first = rate.substr(0, comma);
        const std::string second = rate.substr(comma + 1);
        const bool has_entry = sign != piece.npos;
        Refuse(ShopValue::kVatRates, piece,
               Tr("One rate, or two? Write {} for one rate, or --vat {} --vat {}.",
                  (has_entry ? fmt::format("{}=", *named) : "") + first + "." + second,
                  has_entry ? fmt::format("{}={}", *named, first) : first,
                  has_entry ? fmt::format("{}={}", *named + 1, second) : second));
      }
      entry = *named;
      if (!values->vat.emplace(entry, piece).second) {
        Refuse(ShopValue::kVatRates, piece, Tr("Entry {} is given twice.", entry));
      }
      if (nature) {
        values->setup.vat_natures[entry] = rate;
      } else {
        values->setup.vat_rates[entry] = *hundredths * kHundredth;
      }
    }
  }
}

// Behind the number: NAME, NAME:VAT or NAME:VAT:PRICE.
std::optional<lorimat::ShopSetup::DepartmentChange> ReadDepartment(const std::string& text) {
  lorimat::ShopSetup::DepartmentChange change;
  const size_t last = text.rfind(':');
  if (last == text.npos) {
    change.name = text;
    return change;
  }
  const std::string behind = text.substr(last + 1);
  const size_t first = last == 0 ? text.npos : text.rfind(':', last - 1);
  if (first == text.npos) {
    change.name = text.substr(0, last);
    change.vat = ReadNumber(behind);
  } else {
    change.name = text.substr(0, first);
    change.vat = ReadNumber(text.substr(first + 1, last - first - 1));
    const std::optional<int> cents = ReadHundredths(behind);
    if (!cents) return std::nullopt;
    change.price = *cents * lorimat::kCent;
  }
  if (!change.vat) return std::nullopt;
  return change;
}

void ReadDepartments(const std::vector<std::string>& texts, ShopValues* values) {
  for (const std::string& text : texts) {
    const size_t sign = text.find('=');
    const std::optional<int> number =
        sign == text.npos ? std::nullopt : ReadNumber(text.substr(0, sign));
    const auto change = number ? ReadDepartment(text.substr(sign + 1)) : std::nullopt;
    if (!change) Refuse(ShopValue::kDepartments, text, Tr("That is no department."));
    if (!values->departments.emplace(*number, text).second) {
      Refuse(ShopValue::kDepartments, text, Tr("Department {} is given twice.", *number));
    }
    values->setup.departments[*number] = *change;
  }
}

// The value as it was given.
std::string GivenText(const ShopValues& values, const lorimat::ShopRefusal& refused) {
  const auto found = [&refused](const std::map<int, std::string>& texts) {
    const auto row = texts.find(refused.number);
    return row != texts.end() ? row->second : std::string();
  };
  switch (refused.value) {
    case ShopValue::kSerialNumber:
      return values.setup.serial_number.value_or("");
    case ShopValue::kVatNumber:
      return values.setup.vat_number.value_or("");
    case ShopValue::kHeaderLines: {
      const auto index = static_cast<size_t>(std::max(refused.number, 1)) - 1;
      return index < values.header.size() ? values.header[index] : std::string();
    }
    case ShopValue::kVatRates:
      return found(values.vat);
    case ShopValue::kDepartments:
      return found(values.departments);
    case ShopValue::kOutbox:
      return values.setup.outbox.value_or("");
    default:
      return {};
  }
}

// The first character that no serial number has, whole.
std::string StrangeInSerialNumber(const std::string& number) {
  const auto fits = [](char c) { return IsDigit(c) || (c >= 'A' && c <= 'Z'); };
  const auto first = std::find_if_not(number.begin(), number.end(), fits);
  if (first == number.end()) return {};
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  return {first, std::find_if_not(first + 1, number.end(), continues)};
}

std::string CauseText(const std::string& given, const lorimat::Refusal& refusal, ShopValue value) {
  if (value == ShopValue::kSerialNumber && refusal.cause == lorimat::RefusalCause::kCharacters) {
    return Tr("Not allowed for {}: '{}'.", SubjectText(lorimat::Subject::kSerialNumber),
              Shown(StrangeInSerialNumber(given)));
  }
  return RefusalText(refusal);
}

// What is wrong with the value itself, and not with the moment.
bool IsOfTheValue(lorimat::RefusalCause cause) {
  using Cause = lorimat::RefusalCause;
  switch (cause) {
    case Cause::kState:
    case Cause::kTraining:
    case Cause::kDayOpen:
    case Cause::kFixedByDocuments:
    case Cause::kNotKept:
    case Cause::kFault:
      return false;
    default:
      return true;
  }
}

}  // namespace

void AddShopOptions(CLI::App* command, ShopOptions* options) {
  command->add_option("--serial", options->serial,
                      Tr("Serial number, 11 to 32 capital letters and digits"));
  command->add_option("--vat-number", options->vat_number, Tr("VAT number of the shop, 11 digits"));
  const auto several = [command](const char* name, std::vector<std::string>* texts,
                                 const std::string& description) {
    return command->add_option(name, *texts, description)->allow_extra_args(false);
  };
  several("--header", &options->header,
          Tr("A line of the header, up to 42 characters; once for each of up to 6 lines"))
      ->type_name("TEXT");
  several("--vat", &options->vat,
          Tr("Rate of an entry of the VAT table, such as 1=22 or 3=5,50, or the nature of sales "
             "without tax, such as 5=N4; or those from entry 1 on, such as \"22 10 5 4 N4\""))
      ->type_name("ENTRY=RATE");
  several("--departments", &options->departments,
          Tr("Name of a department, its VAT entry and its price, such as 1=PANE:4 or "
             "1=PANE:4:2,50; once for each"))
      ->type_name("NUMBER=NAME[:VAT[:PRICE]]");
  command
      ->add_option("--outbox", options->outbox,
                   Tr("Folder into which summaries and lottery documents are sent"))
      ->type_name("DIR");
  command->add_flag("--round-cash", options->round_cash,
                    Tr("Round what is paid wholly in cash to five cents"));
  command->add_flag("--training", options->training,
                    Tr("In training: documents print, and nothing is registered"));
  command->add_flag("--not-in-service", options->not_in_service,
                    Tr("Not yet put into service with the revenue agency"));
}

void AddShopChangeOptions(CLI::App* command, ShopOptions* options) {
  command->add_flag("--no-outbox", options->no_outbox, Tr("Send into no folder any more"))
      ->excludes("--outbox");
  command->add_flag("--no-round-cash", options->no_round_cash, Tr("Take cash to the cent"))
      ->excludes("--round-cash");
  command->add_flag("--no-training", options->no_training, Tr("End the training"))
      ->excludes("--training");
  command->add_flag("--in-service", options->in_service, Tr("Put it into service"))
      ->excludes("--not-in-service");
}

ShopValues ReadShopOptions(const ShopOptions& options) {
  ShopValues values;
  lorimat::ShopSetup& setup = values.setup;
  const auto give = [&values](bool given, const char* name) {
    if (given) values.given.emplace_back(name);
    return given;
  };
  if (give(!options.serial.empty(), "--serial")) setup.serial_number = options.serial;
  if (give(!options.vat_number.empty(), "--vat-number")) setup.vat_number = options.vat_number;
  if (give(!options.header.empty(), "--header")) {
    setup.header_lines = values.header = options.header;
  }
  if (give(!options.vat.empty(), "--vat")) ReadVat(options.vat, &values);
  if (give(!options.departments.empty(), "--departments")) {
    ReadDepartments(options.departments, &values);
  }
  if (give(!options.outbox.empty(), "--outbox")) {
    // The register may be opened from another folder.
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::absolute(options.outbox, error);
    setup.outbox = error ? options.outbox : folder.string();
  }
  if (give(options.no_outbox, "--no-outbox")) setup.outbox = "";
  if (give(options.round_cash, "--round-cash")) setup.round_cash = true;
  if (give(options.no_round_cash, "--no-round-cash")) setup.round_cash = false;
  if (give(options.training, "--training")) setup.training = true;
  if (give(options.no_training, "--no-training")) setup.training = false;
  if (give(options.not_in_service, "--not-in-service")) setup.in_service = false;
  if (give(options.in_service, "--in-service")) setup.in_service = true;
  return values;
}

std::string ShopRefusalText(const ShopValues& values, const lorimat::ShopRefusal& refused,
                            const lorimat::Refusal& refusal) {
  const std::string text = GivenText(values, refused);
  const std::string cause = CauseText(text, refusal, refused.value);
  const ValueRule* const rule = FindRule(refused.value);
  if (rule == nullptr) return cause;
  const std::string place = text.empty() ? std::string(rule->option)
                                         : fmt::format("{} {}", rule->option, Shown(text, 100));
  if (!IsOfTheValue(refusal.cause)) return fmt::format("{}: {}", place, cause);
  return fmt::format("{}: {} {}", place, cause, Translated(rule->rule));
}

std::string VatOptionText(int32_t rate) {
  std::string text = fmt::format("{}.{:02}", rate / 10000, rate / 100 % 100);
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string DepartmentOptionText(int number, const lorimat::Department& department) {
  const lorimat::Amount cents = department.price / lorimat::kCent;
  return fmt::format("{}={}:{}:{}.{:02}", number, department.name, department.vat, cents / 100,
                     cents % 100);
}

}  // namespace lorimat::console
