#include "register/tables/options.h"

#include <optional>

#include "register/value/device_text.h"
#include "register/value/money.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

enum class Form { kText, kNumber, kFlag, kContrast };

struct OptionRow {
  int item;
  Form form;
  const char* factory;
};

constexpr OptionRow kOptions[] = {
    {60, Form::kText, ""},         {150, Form::kNumber, "0"}, {151, Form::kNumber, "0"},
    {204, Form::kContrast, "100"}, {317, Form::kFlag, "0"},   {318, Form::kFlag, "0"},
    {367, Form::kFlag, "0"},       {395, Form::kFlag, "0"},   {396, Form::kFlag, "0"},
    {399, Form::kNumber, "0"},     {400, Form::kNumber, "0"}, {401, Form::kText, ""},
    {402, Form::kNumber, "0"},     {415, Form::kFlag, "0"},   {418, Form::kFlag, "0"},
    {419, Form::kFlag, "0"},       {459, Form::kFlag, "0"},
};

const OptionRow* FindOption(int item) {
  for (const OptionRow& row : kOptions) {
    if (row.item == item) return &row;
  }
  return nullptr;
}

}  // namespace

std::string DeviceOptions::Read(int item) const {
  const auto found = values_.find(item);
  if (found != values_.end()) return found->second;
  const OptionRow* row = FindOption(item);
  return row != nullptr ? row->factory : "";
}

int DeviceOptions::Write(int item, std::string_view text) {
  const OptionRow* row = FindOption(item);
  if (row == nullptr) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kOption, {item});
  }
  switch (row->form) {
    case Form::kText:
      if (text.size() > kTextSize) {
        return RefuseValue(RTF_EFPTR_BAD_LENGTH, RefusalCause::kTooLong, Subject::kOption,
                           {static_cast<int64_t>(text.size()), kTextSize});
      }
      values_[item] = DeviceText(text);
      return RTF_SUCCESS;
    case Form::kNumber: {
      // Kept as a number: leading zeros are gone when it is read.
      const std::optional<int64_t> number = ParseDecimal(text, 0, 0);
      if (!number || text.size() > kNumberDigits) {
        return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotANumber, Subject::kOption, {}, text);
      }
      values_[item] = std::to_string(*number);
      return RTF_SUCCESS;
    }
    case Form::kFlag:
      if (text != "0" && text != "1") {
        return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotAFlag, Subject::kOption, {}, text);
      }
      break;
    case Form::kContrast:
      // Three levels.
      if (text != "80" && text != "100" && text != "120") {
        return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kUnknownName, Subject::kOption, {}, text);
      }
      break;
  }
  values_[item] = text;
  return RTF_SUCCESS;
}

}  // namespace lorimat
