// Numbers of the device's data items that more than one handler reads.
#pragma once

enum DataItem {
  kHeaderLineCapacity = 75,
  kVatRateCapacity = 77,
  kDepartmentCapacity = 78,
  kGroupCapacity = 108,
  kArticleCount = 109,
  kOperatorCapacity = 110,
};
