// Setting the device's options: every given field is one data item.

#include "pal/protocols/lorimat/program/options.h"

#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

// Whether a text begins with a number, behind blanks.
bool HasNumber(const char* text) {
  char* end = nullptr;
  static_cast<void>(std::strtol(text, &end, 10));
  return end != text;
}

}  // namespace

int EcrCmdCommand::Trad_POPZ() {
  int first_error = 0;  // the first failure; it does not hold back the other options
  for (const DeviceOption& option : kDeviceOptions) {
    if (!Given(*this, option.field)) continue;
    char* field = szCampi[option.field];
    char digits[16];
    const char* text = field;
    if (option.written == OptionForm::kContrast) {
      // This one ends the line, and a failure before it is forgotten: meant.
      if (!HasNumber(field)) return SyntaxError(ILLEGAL_VALUE);
      const int contrast = TextToInt(field);
      if (contrast < 1 || contrast > kContrastLevels) {
        if (first_error == 0) first_error = SyntaxError(ILLEGAL_VALUE);
        continue;
      }
      std::snprintf(digits, sizeof digits, "%d", (contrast - 1) * kContrastStep + kContrastBase);
      text = digits;
    } else if (option.written == OptionForm::kFlag) {
      text = FlagField(*this, option.field) ? "1" : "0";
    } else if (option.written == OptionForm::kInvertedFlag) {
      text = FlagField(*this, option.field) ? "0" : "1";
    }
    const int err = checkResult(RTF_FP_INVOKE(SetDataInternal, option.item, text));
    if (first_error == 0) first_error = err;
  }
  return first_error;
}
