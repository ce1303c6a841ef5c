// The device's options: one table for the command that sets them and for the reader that
// dumps them. The rows stand in the order in which they are applied, which is not that of
// the field numbers; the reader goes by field number.
#pragma once

enum class OptionForm {
  kText,
  kInteger,       // digits
  kFlag,          // 1 and 0 on the device
  kInvertedFlag,  // 0 for yes and 1 for no
  kContrast,      // levels 1 to 3 for the values 80, 100 and 120
};

struct DeviceOption {
  int field;
  int item;            // data item of the device
  OptionForm written;  // how the command sends it
  OptionForm read;     // how the reader shows it: some texts come back as their digits
  int text_item;       // read beside item; its success keeps the field too; 0 for none
};

inline constexpr DeviceOption kDeviceOptions[] = {
    {1, 60, OptionForm::kText, OptionForm::kText, 0},
    {4, 317, OptionForm::kFlag, OptionForm::kFlag, 0},
    {7, 204, OptionForm::kContrast, OptionForm::kContrast, 0},
    {8, 395, OptionForm::kFlag, OptionForm::kFlag, 0},
    {13, 402, OptionForm::kText, OptionForm::kInteger, 0},
    {14, 415, OptionForm::kFlag, OptionForm::kFlag, 0},
    {16, 399, OptionForm::kText, OptionForm::kInteger, 401},
    {17, 401, OptionForm::kText, OptionForm::kText, 0},
    {20, 419, OptionForm::kFlag, OptionForm::kFlag, 0},
    {36, 400, OptionForm::kText, OptionForm::kInteger, 0},
    {19, 318, OptionForm::kFlag, OptionForm::kFlag, 0},
    {32, 367, OptionForm::kInvertedFlag, OptionForm::kInvertedFlag, 0},
    {33, 150, OptionForm::kText, OptionForm::kInteger, 0},
    {34, 151, OptionForm::kText, OptionForm::kInteger, 0},
    {35, 396, OptionForm::kFlag, OptionForm::kFlag, 0},
    {37, 418, OptionForm::kFlag, OptionForm::kFlag, 0},
    {28, 459, OptionForm::kFlag, OptionForm::kFlag, 0},
};

// The contrast on the device: kContrastBase at level 1, kContrastStep more a level.
constexpr int kContrastBase = 80;
constexpr int kContrastStep = 20;
constexpr int kContrastLevels = 3;
