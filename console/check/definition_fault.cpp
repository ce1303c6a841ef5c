#include "console/check/definition_fault.h"

#include <fmt/format.h>

#include <cstdlib>
#include <vector>

#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/line_reader.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

constexpr int kCommandRows = 150;

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool HoldsTexts(const std::string& section) {
  return section == "INTMSG" || section == "TOTG" || section.rfind("ERRMSG", 0) == 0;
}

}  // namespace

std::string CleanedDefinitionLine(const std::string& text) {
  std::string source = text;
  std::vector<char> out(source.size() + 1);
  lorimatutility::TogliCommento(out.data(), source.data(), '\'');
  return out.data();
}

std::string SectionName(const std::string& line) {
  // Whatever the last character is, it is not part of the name.
  return line.size() > 2 ? line.substr(1, line.size() - 2) : std::string();
}

std::string StoppingFault(const std::string& section, const std::string& line) {
  const size_t equals = line.find('=');
  if (equals == std::string::npos) return Tr("an entry needs a '='");
  const std::string left = Trimmed(line.substr(0, equals));
  if (left.empty()) return Tr("nothing stands before the '='");
  if (section == "EQU" || section == "EQUTASTI" || HoldsTexts(section)) return {};
  const long row = std::strtol(left.c_str(), nullptr, 10);
  if (row == 0) {
    return Tr("'{}' is no row number (section [{}] needs one above 0)", Shown(left, 20),
              Shown(section, 20));
  }
  if (section == "OPCOD" && row > kCommandRows) {
    return Tr("row {} is above {}, the last command row", row, kCommandRows);
  }
  return {};
}

DefinitionReport InspectDefinition(const std::string& path) {
  DefinitionReport report;
  LineReader reader(path);
  SourceLine source;
  std::string section;
  while (reader.Next(&source)) {
    const std::string line = CleanedDefinitionLine(source.text.substr(0, kDefinitionLineLimit));
    if (line.empty()) continue;
    if (line.front() == '[') {
      section = SectionName(line);
      continue;
    }
    report.fault = StoppingFault(section, line);
    if (!report.fault.empty()) {
      report.fault_line = source.number;
      return report;
    }
    if (section == "OPCOD") ++report.commands;
  }
  return report;
}

}  // namespace lorimat::console
