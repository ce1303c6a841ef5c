// The sums of the register as a host reads them: by scope, kind and VAT class.
#pragma once

#include <string>

#include "register/core/core.h"

namespace lorimat {

// The totalizers of the device by scope (RTF_FPTR_TT_*), kind (RTF_FPTR_GT_*) and VAT class or
// department. Class 0 stands for all, 1 to 8 for the entries of the VAT table; the classes 10,
// 20, 30, 40, 50 and 60 (sales without tax, by their nature) exist and stay at zero, since here
// such sales fall on an entry. Amounts are decimal digits in ten-thousandths, quantities in
// thousandths. RTF_E_ILLEGAL for a scope, kind or class that the register does not have.
int ReadTotalizer(const RegisterCore& core, int id, int scope, int kind, std::string* value);

}  // namespace lorimat
