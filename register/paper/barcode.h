// The barcodes that the register prints, and what each may hold.
#pragma once

#include <string_view>

namespace lorimat {

struct BarcodeType {
  std::string_view id;  // the client's number of the type, "00" to "11"
  std::string_view name;
  bool two_dimensional;
};

// Null for a number that is not in the table.
const BarcodeType* FindBarcode(std::string_view id);

// RTF_SUCCESS when the type can hold the text; RTF_EFPTR_BAD_LENGTH for a wrong number of
// characters, RTF_E_ILLEGAL for characters or a check digit that the type does not take.
int CheckBarcode(const BarcodeType& type, std::string_view data);

}  // namespace lorimat
