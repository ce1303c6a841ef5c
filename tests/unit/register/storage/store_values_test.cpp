// Values that a register's file holds and that no program of ours would have put there, or only
// one that was given odd settings.
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class StoredValueTest : public StoreTest {
 protected:
  static void Sell(VirtualRegister& device) {
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemEx(0, "PANE", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  void ExpectDamaged(const std::string& name, const std::string& what) const {
    try {
      const VirtualRegister device(FileSettings(name));
      ADD_FAILURE() << name << " was opened";
    } catch (const RegisterError& error) {
      EXPECT_EQ(error.what(),
                Path(name) + ": the register is damaged: " + what + " makes no sense");
    }
  }
};

TEST_F(StoredValueTest, AVatMarkWithALineEndStaysInItsLine) {
  RegisterSettings settings = FileSettings();
  settings.vat_rates[0] = {0, "E\nS\r*"};
  {
    VirtualRegister device(settings);
    Sell(device);
    const std::string line =
        "PANE" + std::string(21, ' ') + "E S *" + std::string(8, ' ') + "1,00\n";
    EXPECT_NE(device.paper_text().find(line), std::string::npos) << device.paper_text();
  }
  // The roll and the journal are read back, line by line.
  EXPECT_TRUE(RegisterFile(settings.file).VerifyJournal(nullptr).good());
  VirtualRegister device(settings);
  Sell(device);
  EXPECT_EQ(device.store().document_count(), 2);
}

TEST_F(StoredValueTest, CountsBeyondEveryRangeAreDamage) {
  { VirtualRegister device(FileSettings()); }
  int number = 0;
  for (const char* value : {"2147483647", "1000000001", "-1", "-2147483648"}) {
    for (const char* name :
         {"drawer_openings", "power_losses", "operator", "header_logo", "trailer_logo"}) {
      const std::string copy = fmt::format("copy{}", ++number);
      std::filesystem::copy_file(Path("shop.register"), Path(copy));
      Sql(copy, fmt::format("REPLACE INTO setting VALUES ('{}', '{}')", name, value));
      ExpectDamaged(copy, name);
    }
  }
}

TEST_F(StoredValueTest, ATableThatIsNotThereIsNamed) {
  { VirtualRegister device(FileSettings()); }
  Sql("shop.register", "DROP TABLE roll");
  try {
    const VirtualRegister device(FileSettings());
    ADD_FAILURE() << "it was opened";
  } catch (const RegisterError& error) {
    EXPECT_EQ(error.what(),
              Path("shop.register") + ": the register is damaged (no such table: roll)");
  }
}

// SQLite reads such a name as an address, with another file behind it.
TEST_F(StoredValueTest, ANameThatLooksLikeAnAddressIsAFile) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(Path(""));
  const std::string name = "file:shop?mode=memory";
  RegisterSettings settings = FileSettings();
  settings.file = name;
  {
    VirtualRegister device(settings);
    Sell(device);
  }
  EXPECT_TRUE(std::filesystem::exists(name));
  EXPECT_FALSE(std::filesystem::exists("shop"));
  EXPECT_EQ(RegisterFile(name).Status().documents, 1u);
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace lorimat
