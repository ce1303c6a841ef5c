// Catalogs of messages before the C library gets them.
#include "console/message/catalog_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace lorimat::console {

using testing::SizeIs;

namespace {

constexpr const char* kHeader =
    "Content-Type: text/plain; charset=UTF-8\nPlural-Forms: nplurals=2; plural=(n != 1);\n";

struct Hashes {
  uint32_t size = 0;
  std::vector<uint32_t> places = {};
};

using Texts = std::vector<std::pair<std::string, std::string>>;

std::string Number(uint32_t number, bool swapped) {
  std::string bytes(4, '\0');
  for (size_t i = 0; i < 4; ++i) {
    bytes[swapped ? 3 - i : i] = static_cast<char>(number >> 8 * i);
  }
  return bytes;
}

// A catalog as msgfmt would write it: header, the two tables, hashes, texts.
std::string Catalog(const Texts& texts, const Hashes& hashes = {}, bool swapped = false) {
  const uint32_t count = static_cast<uint32_t>(texts.size());
  const uint32_t hash_table = 28 + 16 * count;
  uint32_t place = hash_table + 4 * static_cast<uint32_t>(hashes.places.size());
  std::string tables[2];
  std::string all;
  for (int which = 0; which < 2; ++which) {
    for (const auto& [original, translation] : texts) {
      const std::string& text = which == 0 ? original : translation;
      tables[which] += Number(static_cast<uint32_t>(text.size()), swapped) + Number(place, swapped);
      all += text + '\0';
      place += static_cast<uint32_t>(text.size()) + 1;
    }
  }
  std::string bytes;
  for (const uint32_t number :
       {0x950412DEu, 0u, count, 28u, 28 + 8 * count, hashes.size, hash_table}) {
    bytes += Number(number, swapped);
  }
  bytes += tables[0] + tables[1];
  for (const uint32_t number : hashes.places) bytes += Number(number, swapped);
  return bytes + all;
}

Texts Sound() {
  return {{"", kHeader},
          {"apple", "mela"},
          {std::string("{} pear\0{} pears", 16), std::string("{} pera\0{} pere", 15)}};
}

bool IsTaken(std::string bytes) { return CatalogFile::Parse(std::move(bytes)).has_value(); }

bool IsTakenWith(const std::string& header) { return IsTaken(Catalog({{"", header}})); }

// The bytes with another number at a place of the file.
std::string With(std::string bytes, size_t place, uint32_t number) {
  return bytes.replace(place, 4, Number(number, false));
}

}  // namespace

TEST(CatalogFile, HasTheMessagesWithoutTheHeader) {
  for (const bool swapped : {false, true}) {
    const auto file = CatalogFile::Parse(Catalog(Sound(), {}, swapped));
    ASSERT_TRUE(file);
    const auto messages = file->messages();
    ASSERT_THAT(messages, SizeIs(2));
    EXPECT_EQ(messages[0].original, "apple");
    EXPECT_EQ(messages[0].translation, "mela");
    EXPECT_EQ(messages[1].original, Sound()[2].first);
    EXPECT_EQ(messages[1].translation, Sound()[2].second);
  }
}

TEST(CatalogFile, CutAnywhereItIsNone) {
  const std::string whole = Catalog(Sound(), {5, {0, 3, 2, 1, 0}});
  ASSERT_TRUE(IsTaken(whole));
  for (size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(IsTaken(whole.substr(0, size))) << size;
  }
}

TEST(CatalogFile, NoNumberOfItLeadsOutside) {
  const std::string whole = Catalog(Sound(), {5, {0, 3, 2, 1, 0}});
  // Whatever a number says, what is taken can be read to its end.
  for (size_t place = 0; place + 4 <= whole.size(); place += 4) {
    for (const uint32_t number :
         {0u, 1u, 3u, 7u, 27u, 28u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFF0u, 0xFFFFFFFFu,
          static_cast<uint32_t>(whole.size()), static_cast<uint32_t>(whole.size() - 1)}) {
      const auto file = CatalogFile::Parse(With(whole, place, number));
      if (!file) continue;
      for (const CatalogFile::Message& message : file->messages()) {
        EXPECT_LE(message.original.size() + message.translation.size(), 2 * whole.size());
        EXPECT_EQ(message.original.data()[message.original.size()], '\0');
        EXPECT_EQ(message.translation.data()[message.translation.size()], '\0');
      }
    }
  }
}

TEST(CatalogFile, AnotherMagicOrVersionIsNone) {
  const std::string whole = Catalog(Sound());
  EXPECT_TRUE(IsTaken(With(whole, 4, 0)));
  EXPECT_FALSE(IsTaken(With(whole, 0, 0x950412DF)));
  EXPECT_FALSE(IsTaken(With(whole, 4, 1)));
  EXPECT_FALSE(IsTaken(With(whole, 4, 0x10000)));
  EXPECT_FALSE(IsTaken(With(whole, 8, 0)));
}

TEST(CatalogFile, MessagesOutOfOrderOrTwiceAreNone) {
  EXPECT_TRUE(IsTaken(Catalog({{"", kHeader}, {"a", "1"}, {"b", "2"}})));
  EXPECT_FALSE(IsTaken(Catalog({{"", kHeader}, {"b", "2"}, {"a", "1"}})));
  EXPECT_FALSE(IsTaken(Catalog({{"", kHeader}, {"a", "1"}, {"a", "2"}})));
  EXPECT_FALSE(IsTaken(Catalog({{"a", "1"}, {"b", "2"}})));
}

TEST(CatalogFile, TextsAreUtf8WithoutControlCharacters) {
  const auto is_taken = [](const std::string& text) {
    return IsTaken(Catalog({{"", kHeader}, {"a", text}}));
  };
  EXPECT_TRUE(is_taken("perch\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x99\x82\n"));
  for (const char* text : {"\x1B[31m", "\t", "\r", "\x7F", "\x80", "\xC3", "\xC3(", "\xC0\x80",
                           "\xC1\xBF", "\xC2\x9B", "\xE2\x82", "\xE0\x9F\xBF", "\xED\xA0\x80",
                           "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5", "\xFF"}) {
    EXPECT_FALSE(is_taken(text)) << text;
  }
  EXPECT_FALSE(is_taken(std::string("good\0ba\x01", 8)));
}

TEST(CatalogFile, AnotherEncodingIsNone) {
  EXPECT_TRUE(IsTakenWith("Content-Type: text/plain; charset=utf-8\n"));
  EXPECT_FALSE(IsTakenWith("Content-Type: text/plain; charset=ISO-8859-1\n"));
  EXPECT_FALSE(IsTakenWith("Content-Type: text/plain\n"));
  EXPECT_FALSE(IsTakenWith("X: charset=UTF-16\nContent-Type: text/plain; charset=UTF-8\n"));
  EXPECT_FALSE(IsTakenWith(""));
}

TEST(CatalogFile, ARuleForPluralsDividesByNoZero) {
  const auto is_taken = [](const std::string& rule) {
    return IsTakenWith("Content-Type: text/plain; charset=UTF-8\nPlural-Forms: " + rule + "\n");
  };
  EXPECT_TRUE(is_taken("nplurals=2; plural=(n != 1);"));
  EXPECT_TRUE(
      is_taken("nplurals=3; plural=(n%10==1 && n%100!=11 ? 0 : n % 10>=2 && n%10<=4 ? 1 "
               ": 2);"));
  for (const char* rule :
       {"nplurals=2; plural=1/0;", "nplurals=2; plural=n%0;", "nplurals=2; plural=n%n;",
        "nplurals=2; plural=n%(n-n);", "nplurals=2; plural=n% 0;", "nplurals=2; plural=n%",
        "nplurals=2; plural=n; plural=n/0;"}) {
    EXPECT_FALSE(is_taken(rule)) << rule;
  }
  EXPECT_FALSE(is_taken("nplurals=2; plural=" + std::string(1000, '(')));
  EXPECT_FALSE(
      IsTakenWith("Content-Type: text/plain; charset=UTF-8\nX: nplurals=2; plural=1/0;\n"));
}

TEST(CatalogFile, ASearchByHashesComesToItsEnd) {
  const auto is_taken = [](const Hashes& hashes) { return IsTaken(Catalog(Sound(), hashes)); };
  EXPECT_TRUE(is_taken({5, {0, 3, 2, 1, 0}}));
  EXPECT_FALSE(is_taken({5, {1, 3, 2, 1, 1}}));           // no place is free
  EXPECT_FALSE(is_taken({6, {0, 3, 2, 1, 0, 0}}));        // steps of two go round without it
  EXPECT_FALSE(is_taken({5, {0, 4, 2, 1, 0}}));           // there is no fourth message
  EXPECT_FALSE(is_taken({0xFFFFFFFB, {0, 3, 2, 1, 0}}));  // a table beyond the file
}

TEST(CatalogFile, WhatIsNoFileIsNoCatalog) {
  std::string folder = (std::filesystem::temp_directory_path() / "lorimat-XXXXXX").string();
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const std::string path = folder + "/file";
  EXPECT_FALSE(CatalogFile::Read(path));
  EXPECT_FALSE(CatalogFile::Read(folder));
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_FALSE(CatalogFile::Read(path));
  std::filesystem::remove(path);
  std::ofstream(path, std::ios::binary) << Catalog(Sound());
  EXPECT_TRUE(CatalogFile::Read(path));
  std::filesystem::resize_file(path, (8 << 20) + 1);
  EXPECT_FALSE(CatalogFile::Read(path));
  std::filesystem::remove_all(folder);
}

}  // namespace lorimat::console
