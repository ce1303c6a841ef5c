// What a finding names of the file's tables and values: words, and no names of columns and tables.
#include "console/message/journal_finding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "console/message/translate.h"
#include "register/storage/chain.h"
#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat::console {
namespace {

using testing::HasSubstr;
using testing::Not;

class JournalFindingNames : public StoredRegisterTest {
 protected:
  std::set<std::string> Names() const {
    Database database(Path("shop.register"), Database::Open::kRead, kRegisterKind);
    std::set<std::string> names;
    for (const auto& [name, value] : ProgrammedValues(database, true, true)) names.insert(name);
    for (Statement row = database.Prepare("SELECT name FROM sqlite_schema WHERE type = 'table'");
         row.Step();) {
      names.insert(row.String(0));
    }
    return names;
  }
};

TEST_F(JournalFindingNames, AreWords) {
  const EnglishMessages english;
  const std::set<std::string> names = Names();
  EXPECT_GE(names.size(), 30u);
  for (const std::string& name : names) {
    const std::string text = JournalFindingText({.kind = FindingKind::kProgrammed, .text = name});
    // Words as they are.
    if (name == "journal" || name == "roll" || name == "training") continue;
    EXPECT_THAT(text, Not(HasSubstr("\"" + name + "\""))) << text;
  }
}

TEST_F(JournalFindingNames, ThatNobodyKnowsStayAsTheyAre) {
  const EnglishMessages english;
  EXPECT_EQ(JournalFindingText({.kind = FindingKind::kStrangeTable, .text = "guest_table"}),
            "file: \"guest_table\" is not as this version makes it");
}

}  // namespace
}  // namespace lorimat::console
