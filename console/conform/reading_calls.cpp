#include "console/conform/reading_calls.h"

#include <algorithm>

#include "rpccommon/client/rtfclientinterface.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

using C = RtfClientInterface;
using Op = ClientOperation;
using Texts = AskedTextRooms;
using Form = AnswerForm;

int Item(C& device, int item, Texts& texts) {
  return device.GetDataInternal(item, texts[0].data());
}

int Total(C& device, int selector, Texts& texts) {
  int number = 0;
  return device.GetData(selector, &number, texts[0].data());
}

int Department(C& device, int row, Texts& texts) {
  int64_t price = 0;
  int64_t most = 0;
  int32_t quantity = 0;
  int32_t vat = 0;
  uint8_t group = 0;
  bool single = false;
  bool discount = false;
  bool description = false;
  return device.ConfigDepartment(false, row, texts[0].data(), &price, &most, &quantity, &vat,
                                 &group, &single, &discount, &description);
}

int Group(C& device, int row, Texts& texts) {
  int flags = 0;
  int options = 0;
  return device.ConfigGroup(false, row, texts[0].data(), texts[1].data(), &flags, &options);
}

int Keyboard(C& device, int position, Texts& texts) {
  uint8_t code = 0;
  int8_t keyboard = 0;
  uint16_t size = 0;
  return device.ConfigKeyboard(false, static_cast<uint8_t>(position), &code, &keyboard,
                               texts[0].data(), &size);
}

int Subtender(C& device, int row, Texts& texts) {
  uint8_t tender = 0;
  uint8_t flags = 0;
  uint32_t preset = 0;
  uint8_t digits = 0;
  return device.ConfigSubtender(false, row, &tender, texts[0].data(), &flags, &preset, &digits);
}

constexpr ReadingCall kReadingCalls[] = {
    {Op::kGetIntProperty, RTF_PIDXFptr_PrinterState, Form::kAny, 0,
     [](C& r, int property, Texts&) {
       int value = 0;
       return r.GetIntProperty(property, &value);
     }},
    {Op::kGetDataInternal, 75, Form::kCount, 1, &Item},   // header lines
    {Op::kGetDataInternal, 77, Form::kCount, 1, &Item},   // VAT entries
    {Op::kGetDataInternal, 78, Form::kCount, 1, &Item},   // departments
    {Op::kGetDataInternal, 108, Form::kCount, 1, &Item},  // groups
    {Op::kGetDataInternal, 109, Form::kCount, 1, &Item},  // articles
    {Op::kGetDataInternal, 110, Form::kCount, 1, &Item},  // operators
    {Op::kGetDataInternal, 157, Form::kCount, 1, &Item},  // subtenders
    {Op::kGetDataInternal, 86, Form::kFlag, 1, &Item},    // in service
    {Op::kGetDataInternal, 92, Form::kAny, 1, &Item},     // serial number
    {Op::kGetDataInternal, 103, Form::kAny, 1, &Item},    // firmware
    {Op::kGetDataInternal, 105, Form::kAny, 1, &Item},    // numbers of the keyboards
    {Op::kGetDataInternal, 149, Form::kDate, 1, &Item},   // clock
    {Op::kGetDataInternal, 352, Form::kFlag, 1, &Item},   // fixed decimal point
    {Op::kGetDataInternal, 368, Form::kNumber, 1, &Item},
    {Op::kGetDataInternal, 371, Form::kStatus, 1, &Item},
    {Op::kGetData, RTF_FPTR_GD_PRINTER_ID, Form::kAny, 1, &Total},
    {Op::kGetData, RTF_FPTR_GD_FIRMWARE, Form::kAny, 1, &Total},
    {Op::kGetDate, -1, Form::kDate, 1,
     [](C& r, int, Texts& texts) { return r.GetDate(texts[0].data()); }},
    {Op::kGetVatEntry, 1, Form::kAny, 0,
     [](C& r, int entry, Texts&) {
       int rate = 0;
       return r.GetVatEntry(entry, 0, &rate);
     }},
    {Op::kGetTotalizerExtend, 1, Form::kNumber, 1,
     [](C& r, int entry, Texts& texts) {
       return r.GetTotalizerExtend(entry, RTF_FPTR_TT_DAY, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS,
                                   texts[0].data());
     }},
    {Op::kGetHeaderLine, 1, Form::kAny, 1,
     [](C& r, int line, Texts& texts) { return r.GetHeaderLine(line, texts[0].data()); }},
    {Op::kConfigDepartment, 1, Form::kAny, 1, &Department},
    {Op::kConfigGroup, 1, Form::kAny, 2, &Group},
    {Op::kConfigKeyboard, 1, Form::kAny, 1, &Keyboard},
    {Op::kConfigSubtender, 1, Form::kAny, 1, &Subtender},
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsHexadecimal(char c) {
  return IsDigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool IsNumber(std::string_view text) {
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
  return !text.empty() && IsDigit(text.back()) && std::all_of(text.begin(), text.end(), [](char c) {
    return IsDigit(c) || c == '.' || c == ',';
  });
}

// Its fields are hexadecimal, but for the decimal 2, 3, 6 and 7.
bool IsStatus(std::string_view text) {
  constexpr bool kHexadecimal[] = {true, false, false, true, true, false, false};
  for (const bool hexadecimal : kHexadecimal) {
    const std::string_view field = text.substr(0, text.find(';'));
    const auto fits = hexadecimal ? &IsHexadecimal : &IsDigit;
    if (field.empty() || !std::all_of(field.begin(), field.end(), fits)) return false;
    text.remove_prefix(std::min(text.size(), field.size() + 1));
  }
  return text.empty();
}

}  // namespace

std::string ReadingCall::Name() const {
  const std::string name(ClientOperationName(operation));
  return number < 0 ? name : name + " " + std::to_string(number);
}

std::span<const ReadingCall> ReadingCalls() { return kReadingCalls; }

bool HasForm(AnswerForm form, std::string_view text) {
  switch (form) {
    case Form::kNumber:
      return IsNumber(text);
    case Form::kCount:
      return !text.empty() && text.size() <= 9 && std::all_of(text.begin(), text.end(), &IsDigit);
    case Form::kFlag:
      return text == "0" || text == "1";
    case Form::kDate:
      return text.size() <= 12 && std::all_of(text.begin(), text.end(), &IsDigit);
    case Form::kStatus:
      return IsStatus(text);
    default:
      return true;
  }
}

}  // namespace lorimat::console
