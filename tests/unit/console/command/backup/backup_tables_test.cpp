// Rows of a backup beside those of a register: which of them are the same one, and what differs.
#include "console/command/backup/backup_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "console/message/failure.h"
#include "support/temporary_folder.h"

namespace lorimat::console {
namespace {

const BackupTable& Table(const std::string& name) {
  const auto tables = BackupTables();
  return *std::find_if(tables.begin(), tables.end(), [&](auto& one) { return one.name == name; });
}

std::vector<DumpRow> Rows(const std::vector<std::string>& texts) {
  std::vector<DumpRow> rows;
  for (const std::string& text : texts) rows.push_back({rows.size() + 2, text});
  return rows;
}

// A line for each: "LINE: in the backup | in the register".
std::vector<std::string> Differences(const std::string& table,
                                     const std::vector<std::string>& backup,
                                     const std::vector<std::string>& in_register) {
  std::vector<std::string> told;
  for (const RowDifference& one : CompareRows(Table(table), Rows(backup), Rows(in_register))) {
    told.push_back(std::to_string(one.line) + ": " + one.in_backup + " | " + one.in_register);
  }
  return told;
}

using Told = std::vector<std::string>;

TEST(BackupRows, AreTheSameByTheNumberInTheirFirstField) {
  EXPECT_EQ(Differences("departments", {"PREP REP=1, DES='A'", "PREP REP=2, DES='B'"},
                        {"PREP REP=2, DES='B'", "PREP REP=1, DES='A'"}),
            Told{});
  EXPECT_EQ(Differences("departments", {"PREP REP=1, DES='A'", "PREP REP=3, DES='C'"},
                        {"PREP REP=1, DES='Z'", "PREP REP=2, DES='B'"}),
            (Told{"2: PREP REP=1, DES='A' | PREP REP=1, DES='Z'", "3: PREP REP=3, DES='C' | ",
                  "0:  | PREP REP=2, DES='B'"}));
}

TEST(BackupRows, OfATableThatIsOneRowAreTheSameWhateverTheySay) {
  EXPECT_EQ(Differences("header", {"PINT RIGA1='A'"}, {"PINT RIGA1='B', RIGA2='C'"}),
            Told{"2: PINT RIGA1='A' | PINT RIGA1='B', RIGA2='C'"});
}

TEST(BackupRows, OfKeysAreToldApartByTheKeyboardInTheirLastField) {
  const std::string first = "PTAST TASTO=1, FUNZ=5, LATO=0",
                    second = "PTAST TASTO=1, FUNZ=6, LATO=1";
  EXPECT_EQ(Differences("keyboards", {first, second}, {second, first}), Told{});
  EXPECT_EQ(Differences("keyboards", {first}, {second}),
            (Told{"2: " + first + " | ", "0:  | " + second}));
}

TEST(BackupRows, OfArticlesAreTheSameByTheirCodeWithItsQuotes) {
  // An apostrophe in a code is written twice, and a comma does not end it.
  const std::string quoted = "'A'',B',one,1,1.00", other = "'A''',one,1,1.00";
  EXPECT_EQ(Differences("articles", {quoted, other}, {other, quoted}), Told{});
  EXPECT_EQ(Differences("articles", {quoted}, {other}),
            (Told{"2: " + quoted + " | ", "0:  | " + other}));
  EXPECT_EQ(Differences("articles", {"17,one,1,1.00"}, {"17,two,1,1.00"}),
            Told{"2: 17,one,1,1.00 | 17,two,1,1.00"});
  // Codes without an end, and none.
  EXPECT_EQ(Differences("articles", {"'A,one"}, {"'A,one"}), Told{});
  EXPECT_EQ(Differences("articles", {""}, {"17"}), (Told{"2:  | ", "0:  | 17"}));
}

TEST(FolderStayTest, AFolderThatIsNoneIsNamedAndTheOldOneKept) {
  const std::filesystem::path before = std::filesystem::current_path();
  const std::filesystem::path folder = MakeTemporaryFolder();
  const std::string none = (folder / "none").string();
  try {
    const FolderStay stay(none);
    FAIL() << "it works in a folder that is not there";
  } catch (const Failure& failure) {
    EXPECT_EQ(std::string(failure.what()),
              none + ": cannot work in this folder: No such file or directory");
  }
  EXPECT_EQ(std::filesystem::current_path(), before);
  {
    const FolderStay stay(folder.string());
    EXPECT_TRUE(std::filesystem::equivalent(std::filesystem::current_path(), folder));
  }
  EXPECT_EQ(std::filesystem::current_path(), before);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace lorimat::console
