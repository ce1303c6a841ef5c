// Changes of the tables that could not be stored: each is taken back whole, alone and behind
// others.
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "register/tables/tables.h"
#include "register/value/nature.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

struct TableChange {
  const char* name;
  std::function<int(Tables&)> make;
};

const std::vector<TableChange> kTableChanges = {
    {"department", [](Tables& t) { return t.SetDepartment(2, {.name = "PANE", .price = 10000}); }},
    {"group",
     [](Tables& t) {
       return t.SetGroup(3, {"GRUPPO", "AB", 1, 2});
     }},
    {"subtender",
     [](Tables& t) {
       return t.SetSubtender(4, {TenderKind::kTicket, "BUONI", Subtender::kKeepsRest, 500, 3});
     }},
    {"header line", [](Tables& t) { return t.SetHeaderLine(5, "SOTTO"); }},
    {"header", [](Tables& t) { return t.SetHeaderLines({"SOPRA"}); }},
    {"serial number", [](Tables& t) { return t.SetSerialNumber("99LRM0000009VR"); }},
    {"rate",
     [](Tables& t) {
       const int code = t.NoteVatRate(1, "210000");
       return code != RTF_SUCCESS ? code : t.CommitVat(false);
     }},
    {"rate of sales without tax",
     [](Tables& t) {
       const int code = t.NoteVatRate(2, "0");
       return code != RTF_SUCCESS ? code : t.CommitVat(false);
     }},
    {"nature", [](Tables& t) { return t.SetVatNature(3, kNatures[1], false); }},
    {"article",
     [](Tables& t) {
       return t.SetArticle({"8001", "PANNA", 2, 20000});
     }},
    {"new article",
     [](Tables& t) {
       return t.SetArticle({"NEW", "BURRO", 2, 30000});
     }},
    {"no articles",
     [](Tables& t) {
       t.EraseArticles();
       return RTF_SUCCESS;
     }},
    {"logo", [](Tables& t) { return t.SetLogo(7, LORIMAT_SOURCE_DIR "/README.md"); }},
    {"no logos",
     [](Tables& t) {
       t.EraseLogos();
       return RTF_SUCCESS;
     }},
};

// What the tables have, and which article a code finds.
std::string Everything(const Tables& tables) {
  std::string all = TableImage(tables);
  for (const char* code : {"8001", "FREE", "NEW"}) {
    const Article* const found = tables.FindArticle(code);
    all += fmt::format("{} is {}\n", code, found == nullptr ? "none" : found->description);
  }
  return all;
}

Tables Filled() {
  Tables tables(TestSettings());
  EXPECT_EQ(tables.SetLogo(1, LORIMAT_SOURCE_DIR "/README.md"), RTF_SUCCESS);
  tables.Keep();
  return tables;
}

TEST(TablesTakenBack, EachChangeAlone) {
  for (const TableChange& change : kTableChanges) {
    Tables tables = Filled();
    const std::string before = Everything(tables);
    ASSERT_EQ(change.make(tables), RTF_SUCCESS) << change.name;
    EXPECT_NE(Everything(tables), before) << change.name;
    tables.TakeBack();
    EXPECT_EQ(Everything(tables), before) << change.name;
    EXPECT_TRUE(tables.changes().empty()) << change.name;
  }
}

TEST(TablesTakenBack, EachChangeBehindAnyOther) {
  for (const TableChange& first : kTableChanges) {
    for (const TableChange& second : kTableChanges) {
      Tables tables = Filled();
      const std::string before = Everything(tables);
      ASSERT_EQ(first.make(tables), RTF_SUCCESS) << first.name;
      ASSERT_EQ(second.make(tables), RTF_SUCCESS) << second.name;
      tables.TakeBack();
      EXPECT_EQ(Everything(tables), before) << first.name << ", " << second.name;
    }
  }
}

TEST(TablesTakenBack, WhatWasStoredBeforeStays) {
  for (const TableChange& first : kTableChanges) {
    for (const TableChange& second : kTableChanges) {
      Tables tables = Filled();
      ASSERT_EQ(first.make(tables), RTF_SUCCESS) << first.name;
      tables.Keep();
      const std::string before = Everything(tables);
      ASSERT_EQ(second.make(tables), RTF_SUCCESS) << second.name;
      tables.TakeBack();
      EXPECT_EQ(Everything(tables), before) << first.name << ", " << second.name;
    }
  }
}

// A rate that is noted comes into force by a later call: it is there or not as that call finds it.
TEST(TablesTakenBack, RatesThatAreNoted) {
  Tables tables = Filled();
  ASSERT_EQ(tables.NoteVatRate(1, "210000"), RTF_SUCCESS);
  tables.TakeBack();
  ASSERT_EQ(tables.CommitVat(false), RTF_SUCCESS);
  EXPECT_EQ(tables.FindVat(1)->rate, 220000);
  ASSERT_EQ(tables.NoteVatRate(1, "200000"), RTF_SUCCESS);
  tables.Keep();
  ASSERT_EQ(tables.NoteVatRate(1, "190000"), RTF_SUCCESS);
  ASSERT_EQ(tables.NoteVatRate(2, "90000"), RTF_SUCCESS);
  tables.TakeBack();
  ASSERT_EQ(tables.CommitVat(false), RTF_SUCCESS);
  EXPECT_EQ(tables.FindVat(1)->rate, 200000);
  EXPECT_EQ(tables.FindVat(2)->rate, 100000);
  // Neither does what came into force come back by itself.
  tables.Keep();
  ASSERT_EQ(tables.CommitVat(false), RTF_SUCCESS);
  EXPECT_EQ(tables.FindVat(1)->rate, 200000);
}

// Refused on an open day they are forgotten, unless that could not be stored either.
TEST(TablesTakenBack, RatesThatAreNotedAndRefused) {
  Tables tables = Filled();
  ASSERT_EQ(tables.NoteVatRate(1, "210000"), RTF_SUCCESS);
  tables.Keep();
  EXPECT_EQ(tables.CommitVat(true), RTF_EFPTR_DAY_END_REQUIRED);
  tables.TakeBack();
  EXPECT_EQ(tables.CommitVat(true), RTF_EFPTR_DAY_END_REQUIRED);
  tables.Keep();
  ASSERT_EQ(tables.CommitVat(true), RTF_SUCCESS);
  EXPECT_EQ(tables.FindVat(1)->rate, 220000);
}

}  // namespace
}  // namespace lorimat
