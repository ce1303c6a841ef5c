#include "console/host/journal_checking.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "register/client/virtual_register.h"
#include "register/value/register_error.h"

namespace lorimat::console {
namespace {

class JournalChecking : public testing::Test {
 protected:
  JournalChecking() {
    std::string folder = testing::TempDir() + "/journal-XXXXXX";
    folder_ = mkdtemp(folder.data());
    file_ = folder_ + "/shop.register";
    lorimat::RegisterSettings settings;
    settings.file = file_;
    const lorimat::VirtualRegister made(settings);
  }
  ~JournalChecking() override { std::filesystem::remove_all(folder_); }

  void Change(const char* sql) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(database);
  }
  lorimat::JournalCheck Check() const {
    return CheckJournalOf(file_, [](uint64_t, uint64_t) { return true; });
  }

  std::string folder_;
  std::string file_;
};

}  // namespace

TEST_F(JournalChecking, OfAGoodRegisterFindsNothing) {
  const lorimat::JournalCheck check = Check();
  EXPECT_TRUE(check.good());
  EXPECT_FALSE(check.damaged);
}

TEST_F(JournalChecking, OfARegisterWithoutItsLedgerFindsThat) {
  Change("DELETE FROM ledger");
  const lorimat::JournalCheck check = Check();
  EXPECT_FALSE(check.good());
  EXPECT_TRUE(check.damaged);
  ASSERT_EQ(check.findings.size(), 1U);
  EXPECT_EQ(check.findings[0].kind, lorimat::FindingKind::kUnreadable);
  EXPECT_EQ(check.findings[0].failure.cause, lorimat::FailureCause::kDamagedValue);
  EXPECT_EQ(check.findings[0].failure.text, "ledger");
  EXPECT_EQ(check.findings[0].failure.file, "");
}

TEST_F(JournalChecking, OfWhatIsNoRegisterIsRefused) {
  std::filesystem::remove(file_);
  EXPECT_THROW(Check(), lorimat::RegisterError);
}

}  // namespace lorimat::console
