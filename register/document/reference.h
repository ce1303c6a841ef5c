// What a credit note or a void names: the document whose goods or money come back.
#pragma once

#include <string>
#include <string_view>

namespace lorimat {

struct Reference {
  int closure = 0;
  int number = 0;
  std::string date = {};    // DDMMYYYY, or empty
  std::string serial = {};  // of the register that made it; empty for this one

  bool empty() const { return closure == 0 && number == 0 && date.empty() && serial.empty(); }
  // Whether it names a document of the register with this serial number: it gives that number, in
  // capitals or not and with blanks around it or not, or none.
  bool IsOf(std::string_view own_serial) const;
};

}  // namespace lorimat
