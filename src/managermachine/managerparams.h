// Limits and marker values of the device's tables, shared by the translator and
// the device client. The department and VAT arguments of the sale operations
// take the markers: -1 means not given, -2 the one of the last line.
#pragma once

struct ManagerParams {
  static constexpr int kMinDepEntry = 1;
  static constexpr int kMaxDepEntry = 40;
  static constexpr int kMaxDepEntryOld = 20;
  static constexpr int kUnsetDepartmentInfo = -1;
  static constexpr int kLastDepartmentInfoUsed = -2;
  static constexpr int kUnsetVatInfo = -1;
  static constexpr int kLastVatInfo = -2;
  static constexpr int kUnsetReverseCashDrawer = -1;
  static constexpr int kUnsetValue = -1;
  static constexpr int kUnsetKeyboard = 0;
  static constexpr int kFilenameSize = 80;
  static constexpr int kIdleMessageFirst = 10000;
  static constexpr int kIdleMessageFreq = 500;
  static constexpr int kSubtenderDescripionSize = 15;
};
