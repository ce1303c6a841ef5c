#include "wide_language.h"

#include <cstdio>
#include <map>

std::string WideLanguage(int commands, int fields) {
  constexpr int kSale = 10;  // the opcode of VEND
  // Names as a definition file has them, with many beginnings.
  const auto name = [](char first, int number) {
    char text[16];
    std::snprintf(text, sizeof text, "%c%c%03d", 'A' + number % 26, first, number);
    return std::string(text);
  };
  std::string text = "[OPCOD]\n";
  for (int row = 1, opcode = 1; row < commands; ++row, ++opcode) {
    if (opcode == kSale) ++opcode;
    text += std::to_string(opcode) + "=" + name('Q', row) + "\n";
  }
  text += "10=VEND\n";
  const std::map<int, std::string> sale = {{1, "REP"}, {2, "ART"},  {3, "QTA"},
                                           {4, "PRE"}, {5, "RESO"}, {6, "STORNO"},
                                           {7, "DES"}, {14, "UM"},  {15, "PREUN"}};
  for (int opcode = 1; opcode <= commands; ++opcode) {
    text.append("[").append(std::to_string(opcode)).append("]\n");
    for (int field = 1; field <= fields; ++field) {
      const auto known = sale.find(field);
      const bool is_known = opcode == kSale && known != sale.end();
      text += std::to_string(field) + "=" + (is_known ? known->second : name('X', field)) + "\n";
    }
  }
  return text;
}
