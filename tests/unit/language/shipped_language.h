// The shipped definition file for the tests: once read by the translator into its
// tables, and once as plain sections and entries, read here without the translator.
#pragma once

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace shipped {

// As the file stands: trimmed left and right parts in their order, by section.
using Entries = std::vector<std::pair<std::string, std::string>>;

inline std::filesystem::path LanguageFile() {
  return std::filesystem::path(LORIMAT_SOURCE_DIR) / "language" / "merkelin.ini";
}

inline std::string Trim(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

inline std::vector<std::string> Lines(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

// The file quotes no text, so a ";" always begins a comment in it; the tests check that.
inline std::map<std::string, Entries> Sections() {
  std::map<std::string, Entries> sections;
  std::string section;
  for (const std::string& line : Lines(LanguageFile())) {
    const std::string text = Trim(line.substr(0, line.find(';')));
    if (text.empty()) continue;
    if (text.front() == '[') {
      section = text.substr(1, text.size() - 2);
      sections[section];
      continue;
    }
    const size_t equals = text.find('=');
    if (equals == std::string::npos) {
      sections[section].emplace_back(text, "<no equals sign>");
    } else {
      sections[section].emplace_back(Trim(text.substr(0, equals)), Trim(text.substr(equals + 1)));
    }
  }
  return sections;
}

// A command or field row of the file: its name and its id or field number.
struct Row {
  std::string name;
  int number = 0;
};

inline std::map<int, Row> Rows(const Entries& entries) {
  std::map<int, Row> rows;
  for (const auto& [left, right] : entries) {
    const size_t comma = right.find(',');
    Row row{right.substr(0, comma), std::atoi(left.c_str())};
    if (comma != std::string::npos) row.number = std::atoi(right.c_str() + comma + 1);
    rows[std::atoi(left.c_str())] = row;
  }
  return rows;
}

// A translator that has read the file. The path that the reader takes has 79 characters
// at most, so it is given the bare name in the file's own folder.
inline std::unique_ptr<EcrCmdCommand> Read(int* result) {
  auto translator = std::make_unique<EcrCmdCommand>();
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(LanguageFile().parent_path());
  char name[] = "merkelin.ini";
  *result = translator->LeggiFileIni(name);
  std::filesystem::current_path(before);
  return translator;
}

// The road of one line up to its fields: the id of its command, or minus the class 1
// index of what is wrong with it; 0 for a line that holds nothing.
inline int Parse(EcrCmdCommand& translator, const std::string& line) {
  std::string copy = line;
  std::string cleaned(line.size() + 1, '\0');
  if (translator.cChQuote != '\'') return -1000;
  const size_t length = static_cast<size_t>(
      lorimatutility::TogliCommento(cleaned.data(), copy.data(), translator.cChQuote));
  if (length == 0) return 0;
  int position = 1;
  int id = 0;
  int failure = translator.GetCodOp(cleaned.data(), &position, &id);
  if (failure == 0) failure = translator.GetCampi(cleaned.data(), id, &position);
  return failure == 0 ? id : -failure;
}

// The id of a command word, the number of a field word; minus the index when there is none.
inline int Command(EcrCmdCommand& translator, std::string word) {
  int position = 1;
  int id = 0;
  const int failure = translator.GetCodOp(word.data(), &position, &id);
  return failure == 0 ? id : -failure;
}

inline int Field(EcrCmdCommand& translator, int id, std::string word) {
  int number = 0;
  const int failure = translator.GetNumOper(id, word.data(), &number);
  return failure == 0 ? number : -failure;
}

inline std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

}  // namespace shipped
