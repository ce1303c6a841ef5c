// The catalogs that the build makes of po/, held against the messages of the code: those of a
// catalog in which each message is its own translation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "console/message/catalog_file.h"
#include "console/message/fields.h"

namespace lorimat::console {

using testing::IsEmpty;
using testing::Not;

namespace {

CatalogFile Catalog(const std::string& path) {
  auto file = CatalogFile::Read(path);
  if (!file) throw std::runtime_error(path + " is no catalog");
  return *file;
}

const std::vector<CatalogFile::Message>& Messages() {
  static const CatalogFile file = Catalog(LORIMAT_TEST_CATALOGS "/english.mo");
  static const std::vector<CatalogFile::Message> all = file.messages();
  return all;
}

// By the languages of their folders.
const std::map<std::string, CatalogFile>& Catalogs() {
  static const auto all = [] {
    std::map<std::string, CatalogFile> found;
    for (const auto& entry : std::filesystem::directory_iterator(LORIMAT_CATALOGS)) {
      const std::string path = entry.path().string() + "/LC_MESSAGES/lorimat.mo";
      found.emplace(entry.path().filename().string(), Catalog(path));
    }
    return found;
  }();
  return all;
}

// A message and its plural, or the forms of a translation.
std::vector<std::string_view> Forms(std::string_view text) {
  std::vector<std::string_view> forms;
  for (size_t end; (end = text.find('\0')) != std::string_view::npos;) {
    forms.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  forms.push_back(text);
  return forms;
}

// Calls with each form of each message and each form of its translations.
template <typename Check>
void ForEachPair(const Check& check) {
  for (const auto& [language, file] : Catalogs()) {
    for (const CatalogFile::Message& message : file.messages()) {
      for (const std::string_view original : Forms(message.original)) {
        for (const std::string_view form : Forms(message.translation)) check(original, form);
      }
    }
  }
}

size_t Indent(std::string_view text) { return std::min(text.find_first_not_of(' '), text.size()); }

}  // namespace

TEST(Messages, AreThere) {
  // The rest would pass if there were none.
  EXPECT_GT(Messages().size(), 1000u);
  EXPECT_EQ(Catalogs().count("it"), 1u);
}

TEST(Messages, EachLanguageHasAllAndNoOthers) {
  std::vector<std::string_view> wanted;
  for (const CatalogFile::Message& message : Messages()) wanted.push_back(message.original);
  for (const auto& [language, file] : Catalogs()) {
    std::vector<std::string_view> has;
    for (const CatalogFile::Message& message : file.messages()) has.push_back(message.original);
    std::vector<std::string_view> differing;
    std::set_symmetric_difference(wanted.begin(), wanted.end(), has.begin(), has.end(),
                                  std::back_inserter(differing));
    EXPECT_THAT(differing, IsEmpty()) << language;
  }
}

TEST(Messages, TranslationsHaveTheSameFields) {
  ForEachPair([](std::string_view original, std::string_view translation) {
    EXPECT_TRUE(HasSameFields(original, translation)) << original << "\n" << translation;
  });
}

TEST(Messages, TranslationsBeginAndEndAlike) {
  ForEachPair([](std::string_view original, std::string_view translation) {
    ASSERT_THAT(translation, Not(IsEmpty())) << original;
    EXPECT_EQ(original.back() == '\n', translation.back() == '\n') << original;
    EXPECT_EQ(original.back() == ' ', translation.back() == ' ') << original;
    EXPECT_EQ(Indent(original), Indent(translation)) << original;
  });
}

TEST(Messages, HelpLinesFitATerminal) {
  ForEachPair([](std::string_view original, std::string_view translation) {
    for (const std::string_view text : {original, translation}) {
      if (text.find("\n\n") == std::string_view::npos) continue;
      size_t column = 0;
      for (const char c : text) {
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++column;
        if (c == '\n') column = 0;
        ASSERT_LE(column, 100u) << text;
      }
    }
  });
}

}  // namespace lorimat::console
