#include "model/definitions.h"

const std::vector<std::string>& SmallDefinitions() {
  static const std::vector<std::string> definitions = {
      // One command, a field, a symbol.
      "[OPCOD]\n1=A,10\n[10]\n1=B\n[EQU]\nAB=7\n",
      // Names that begin each other, the short one first.
      "[OPCOD]\n1=A,60\n2=AB,71\n3=ABA,6\n[60]\n1=A\n2=AB\n3=ABB,7\n[71]\n1=B,O\n[EQU]\nA=6\n",
      // The long ones first; an abbreviation of two; the same name twice.
      "[OPCOD]\n1=ABA,71\n2=ABB,6\n3=AB,60\n5=B,7\n6=B,8\n[60]\n1=ABA,2\n2=ABB,2\n3=AB,6\n"
      "[EQU]\nAB=66\nAB=67\nB=-1\n",
      // Aliases of one field, a gap, a mandatory row whose number is another's.
      "[OPCOD]\n7=AB,67\n[67]\n1=A,6\n2=AA,6\n4=AB,7\n6=B,O\n[EQUTASTI]\nA=7\nB=300\n",
      // Rows far up, ids beyond every handler, a row out of reach of the search, numbers that
      // are no field's.
      "[OPCOD]\n149=A,128\n150=B,6\n77=AB,66\n[128]\n40=A\n39=B,41\n[66]\n7=A,7\n6=BA,-3\n7=B,60\n"
      "[6]\n1=AB\n[7]\n6=B\n",
      // Hardly a file: a field row ahead of every section, an empty name, a comma in front.
      "6=A\n[OPCOD]\n1=\n2=,A\n3=B,\n4=A,O\n[4]\n1=,B\n2=A,\n3=A,OB\n",
      // It ends at its fourth line.
      "[OPCOD]\n6=A\n[6]\nA\n1=B\n",
      "",
  };
  return definitions;
}

std::string ChanceName(Comparison& comparison) {
  std::string name;
  const uint64_t length = comparison.Once(12) ? 9 + comparison.Below(10) : comparison.Below(5);
  for (uint64_t i = 0; i < length; ++i) name += comparison.Any(std::string("AABBab"));
  return name;
}

namespace {

std::string ChanceNumber(Comparison& comparison, size_t usual) {
  if (comparison.Once(25)) {
    static const std::vector<std::string> odd = {
        "0",  "-1",  "",    "A",          "99999999999", "-99999999999999999999",
        "+3", "149", "150", "2147483648", "7B",          " 4",
        "40", "41",  "151", "299",        "300",         "007"};
    return comparison.Any(odd);
  }
  return std::to_string(1 + comparison.Below(usual));
}

std::string ChanceText(Comparison& comparison) {
  std::string text;
  const uint64_t length = comparison.Once(6) ? 28 + comparison.Below(60) : comparison.Below(12);
  if (comparison.Once(3)) text += '\'';
  for (uint64_t i = 0; i < length; ++i) {
    text += comparison.Any(std::string("AB 1;=,\t%") + (comparison.Once(8) ? "'" : "B"));
  }
  if (comparison.Once(3)) text += '\'';
  return text;
}

std::string ChanceSection(Comparison& comparison) {
  static const std::vector<std::string> texts = {
      "INTMSG",  "TOTG",    "ERRMSG",  "ERRMSG0", "ERRMSG1",  "ERRMSG2",  "ERRMSG3", "ERRMSG4",
      "ERRMSG5", "ERRMSG6", "ERRMSG7", "ERRMSG8", "ERRMSG9",  "ERRMSG10", "ERRMSGA", "ERRMSG-1",
      "errmsg1", "OPCO",    " EQU",    "EQU ",    "EQUTASTO", "",         "-5",      "150"};
  const uint64_t choice = comparison.Below(10);
  if (choice < 2) return "OPCOD";
  if (choice < 3) return "EQU";
  if (choice < 4) return "EQUTASTI";
  if (choice < 6) return comparison.Any(texts);
  return ChanceNumber(comparison, comparison.Once(2) ? 8 : 149);
}

}  // namespace

std::string ChanceDefinition(Comparison& comparison) {
  static const std::vector<std::string> ends = {"\n", "\r\n", "\n\n", " \n", "\t;A=B\n", "\r\r\n"};
  std::string file;
  const uint64_t sections = 1 + comparison.Below(8);
  for (uint64_t i = 0; i < sections; ++i) {
    const std::string section = ChanceSection(comparison);
    if (i > 0 || !comparison.Once(10)) {
      file += "[" + section + (comparison.Once(30) ? "" : "]") + comparison.Any(ends);
    }
    const bool symbols = section.starts_with("EQU");
    const bool texts = section == "TOTG" || section.find("MSG") != std::string::npos;
    uint64_t rows = comparison.Below(10);
    if (symbols && comparison.Once(40)) rows = 310;
    for (uint64_t row = 0; row < rows; ++row) {
      if (comparison.Once(150)) file += comparison.Once(2) ? "A" : "=A";
      if (comparison.Once(9)) file += comparison.Any(std::string(" \t"));
      file += symbols ? ChanceName(comparison) + (comparison.Once(20) ? "" : "B")
                      : ChanceNumber(comparison, texts ? 60 : 9);
      file += comparison.Once(9) ? " = " : "=";
      // So far out that a part of what follows is beyond the line's limit.
      if (comparison.Once(60)) file += std::string(238 + comparison.Below(16), ' ');
      if (texts) {
        file += ChanceText(comparison);
      } else if (symbols) {
        file += ChanceNumber(comparison, 320);
      } else {
        file += ChanceName(comparison);
        if (comparison.Once(2))
          file += "," + ChanceNumber(comparison, section == "OPCOD" ? 130 : 9);
        if (comparison.Once(12)) file += comparison.Once(2) ? ",O" : "O";
      }
      if (comparison.Once(200)) file += std::string(200 + comparison.Below(120), 'B');
      file += comparison.Once(5) ? comparison.Any(ends) : "\n";
    }
  }
  if (comparison.Once(5) && !file.empty()) file.pop_back();
  return file;
}
