// What a shop sets of its register: all of it or nothing, kept, and in the journal's chain.
#include "register/desk/shop_setup.h"

#include <filesystem>

#include "unit/register/failing_memory.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class ShopSetupTest : public StoredRegisterTest {
 protected:
  // Everything that can be set, other than it is.
  ShopSetup Whole() const {
    ShopSetup setup;
    setup.serial_number = "99LRM0000042VR";
    setup.vat_number = "12345678903";
    setup.header_lines = {{"BAR SPORT", "P.IVA 12345678903"}};
    setup.vat_rates = {{1, 210000}, {5, 70000}};
    setup.departments = {{1, {"PANE", 4, 25000}}, {40, {"GELATO", {}, {}}}};
    setup.outbox = folder_.string();
    setup.training = true;
    setup.in_service = false;
    return setup;
  }
  int SetUp(const ShopSetup& setup) { return device->SetUp(setup, &refused); }
  RefusalCause Cause() const { return device->last_refusal().cause; }
  std::vector<std::string> Findings() {
    device.reset();
    const RegisterFile file(Path("shop.register"));
    return FindingTexts(file.VerifyJournal(nullptr));
  }

  ShopRefusal refused;
};

}  // namespace

TEST_F(ShopSetupTest, SetsEverythingAndKeepsIt) {
  ASSERT_EQ(SetUp(Whole()), RTF_SUCCESS);
  for (int start = 0; start < 2; ++start, Restart()) {
    const RegisterSettings& settings = device->tables().settings();
    EXPECT_EQ(settings.serial_number, "99LRM0000042VR");
    EXPECT_EQ(settings.header_lines, (std::vector<std::string>{"BAR SPORT", "P.IVA 12345678903"}));
    EXPECT_EQ(settings.vat_rates[0].rate, 210000);
    EXPECT_EQ(settings.vat_rates[1].rate, 100000);
    EXPECT_EQ(settings.vat_rates[4].rate, 70000);
    EXPECT_EQ(settings.vat_rates[4].mark, "");
    EXPECT_EQ(settings.departments[0].name, "PANE");
    EXPECT_EQ(settings.departments[0].vat, 4);
    EXPECT_EQ(settings.departments[0].price, 25000);
    EXPECT_EQ(settings.departments[39].name, "GELATO");
    EXPECT_EQ(settings.departments[39].vat, 1);
    EXPECT_TRUE(device->training());
    EXPECT_EQ(device->key_position(), KeyPosition::kRegister);
  }
  EXPECT_TRUE(Findings().empty());
  EXPECT_EQ(Sql("shop.register",
                "SELECT value FROM setting WHERE name IN ('fiscal_id', 'outbox', "
                "'commissioning') ORDER BY name"),
            "0\n12345678903\n" + folder_.string() + "\n");
}

TEST_F(ShopSetupTest, EachValueThatCountsIsAnEventOfTheChain) {
  const std::string events =
      "SELECT subject FROM event WHERE kind = 2 AND place > (SELECT count(*) FROM event) - 7 "
      "ORDER BY subject";
  ASSERT_EQ(SetUp(Whole()), RTF_SUCCESS);
  device.reset();
  EXPECT_EQ(Sql("shop.register", events),
            "commissioning\ndepartment\nfiscal_id\noutbox\nserial_number\ntraining\nvat_rate\n");
  // And a change by other means is found.
  Sql("shop.register", "UPDATE setting SET value = '99LRM0000043VR' WHERE name = 'serial_number'");
  EXPECT_EQ(Findings().size(), 1u);
}

// Not as a by-catch of others.
TEST_F(ShopSetupTest, EachValueAloneIsInTheChain) {
  for (const ShopSetup& setup :
       {ShopSetup{.serial_number = "99LRM0000042VR"}, ShopSetup{.vat_number = "12345678903"},
        ShopSetup{.vat_rates = {{1, 210000}}}, ShopSetup{.departments = {{1, {"PANE", {}, {}}}}},
        ShopSetup{.outbox = folder_.string()}, ShopSetup{.in_service = false},
        ShopSetup{.training = true}}) {
    const std::string before = device->store().journal_hash();
    ASSERT_EQ(SetUp(setup), RTF_SUCCESS);
    EXPECT_NE(device->store().journal_hash(), before);
    EXPECT_TRUE(Findings().empty());
    Start();
  }
}

TEST_F(ShopSetupTest, WhatIsNotGivenStaysAndTheSameAgainChangesNothing) {
  ASSERT_EQ(SetUp(Whole()), RTF_SUCCESS);
  ASSERT_EQ(SetUp({.training = false}), RTF_SUCCESS);
  const std::string before = Image(*device);
  const std::string hash = device->store().journal_hash();
  EXPECT_EQ(SetUp({}), RTF_SUCCESS);
  ShopSetup same = Whole();
  same.training.reset();
  EXPECT_EQ(SetUp(same), RTF_SUCCESS);
  EXPECT_EQ(Image(*device), before);
  EXPECT_EQ(device->store().journal_hash(), hash);
}

TEST_F(ShopSetupTest, TheHeadersLineWithTheVatNumberGoesAlongWithIt) {
  const auto header = [this] { return device->tables().settings().header_lines; };
  using Lines = std::vector<std::string>;
  ASSERT_EQ(SetUp({.header_lines = {{"BAR", "P.IVA 01234567897", "P.IVA 01234567897 ROMA"}}}),
            RTF_SUCCESS);
  ASSERT_EQ(SetUp({.vat_number = "01234567897"}), RTF_SUCCESS);
  ASSERT_EQ(SetUp({.vat_number = "00743110157"}), RTF_SUCCESS);
  Restart();
  EXPECT_EQ(header(), (Lines{"BAR", "P.IVA 00743110157", "P.IVA 01234567897 ROMA"}));
  // Refused as a whole, and taken back as a whole.
  EXPECT_NE(SetUp({.vat_number = "12345678903", .vat_rates = {{9, 220000}}}), RTF_SUCCESS);
  EXPECT_EQ(header()[1], "P.IVA 00743110157");
  // A header that is given is the whole header.
  ASSERT_EQ(SetUp({.vat_number = "12345678903", .header_lines = {{"P.IVA 00743110157"}}}),
            RTF_SUCCESS);
  EXPECT_EQ(header(), Lines{"P.IVA 00743110157"});
}

TEST_F(ShopSetupTest, OneThatIsRefusedTakesAllOthersBack) {
  const std::string before = Image(*device);
  ShopSetup setup = Whole();
  setup.departments[2] = {"NIENTE", 6, {}};
  EXPECT_EQ(SetUp(setup), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(refused.value, ShopValue::kDepartments);
  EXPECT_EQ(refused.number, 2);
  EXPECT_EQ(Cause(), RefusalCause::kNoVatEntry);
  EXPECT_EQ(Image(*device), before);
  EXPECT_FALSE(device->training());
  Restart();
  EXPECT_EQ(Image(*device), before);
  EXPECT_TRUE(Findings().empty());
}

TEST_F(ShopSetupTest, RefusesValuesByTheirRules) {
  struct Case {
    ShopSetup setup;
    RefusalCause cause;
    ShopValue value;
    int number = 0;
  };
  const std::string wide(43, 'W');
  const Case kCases[] = {
      {{.serial_number = "99LRM00001"}, RefusalCause::kWrongLength, ShopValue::kSerialNumber},
      {{.serial_number = std::string(33, 'A')},
       RefusalCause::kWrongLength,
       ShopValue::kSerialNumber},
      {{.serial_number = ""}, RefusalCause::kWrongLength, ShopValue::kSerialNumber},
      {{.serial_number = "99lrm0000042vr"}, RefusalCause::kCharacters, ShopValue::kSerialNumber},
      {{.serial_number = "99LRM 0000042VR"}, RefusalCause::kCharacters, ShopValue::kSerialNumber},
      {{.serial_number = std::string("99LRM000042\0", 12)},
       RefusalCause::kCharacters,
       ShopValue::kSerialNumber},
      {{.vat_number = "1234567890"}, RefusalCause::kWrongLength, ShopValue::kVatNumber},
      {{.vat_number = "1234567890A"}, RefusalCause::kCharacters, ShopValue::kVatNumber},
      {{.vat_number = "12345678901"}, RefusalCause::kCheckDigit, ShopValue::kVatNumber},
      {{.header_lines = {{"A", wide}}}, RefusalCause::kTooLong, ShopValue::kHeaderLines, 2},
      {{.header_lines = {{"A\nB"}}}, RefusalCause::kCharacters, ShopValue::kHeaderLines, 1},
      {{.header_lines = {{std::string("A\0B", 3)}}},
       RefusalCause::kCharacters,
       ShopValue::kHeaderLines,
       1},
      {{.header_lines = std::vector<std::string>(7, "A")},
       RefusalCause::kOutOfRange,
       ShopValue::kHeaderLines,
       7},
      {{.vat_rates = {{6, 220000}}}, RefusalCause::kNoVatEntry, ShopValue::kVatRates, 6},
      {{.vat_rates = {{0, 220000}}}, RefusalCause::kNoVatEntry, ShopValue::kVatRates, 0},
      {{.vat_rates = {{1, 1000000}}}, RefusalCause::kNotANumber, ShopValue::kVatRates, 1},
      {{.vat_rates = {{1, -1}}}, RefusalCause::kNotANumber, ShopValue::kVatRates, 1},
      {{.vat_rates = {{1, 55050}}}, RefusalCause::kNotANumber, ShopValue::kVatRates, 1},
      {{.departments = {{41, {"X", {}, {}}}}},
       RefusalCause::kNotOneOf,
       ShopValue::kDepartments,
       41},
      {{.departments = {{1, {std::string(33, 'X'), {}, {}}}}},
       RefusalCause::kTooLong,
       ShopValue::kDepartments,
       1},
      {{.departments = {{1, {"X", 1, 1000000000}}}},
       RefusalCause::kAmountOutOfRange,
       ShopValue::kDepartments,
       1},
      {{.outbox = Path("none")}, RefusalCause::kNoFolder, ShopValue::kOutbox},
      {{.outbox = Path("shop.register")}, RefusalCause::kNoFolder, ShopValue::kOutbox},
      {{.outbox = folder_.string() + std::string("\0x", 2)},
       RefusalCause::kNoFolder,
       ShopValue::kOutbox},
  };
  const std::string before = Image(*device);
  for (const Case& one : kCases) {
    EXPECT_NE(SetUp(one.setup), RTF_SUCCESS) << static_cast<int>(one.cause);
    EXPECT_EQ(static_cast<int>(Cause()), static_cast<int>(one.cause));
    EXPECT_EQ(static_cast<int>(refused.value), static_cast<int>(one.value));
    EXPECT_EQ(refused.number, one.number) << static_cast<int>(one.cause);
  }
  EXPECT_EQ(Image(*device), before);
  // The longest and the widest that go.
  EXPECT_EQ(SetUp({.serial_number = std::string(32, 'Z')}), RTF_SUCCESS);
  EXPECT_EQ(SetUp({.serial_number = "99LRM000042"}), RTF_SUCCESS);
  EXPECT_EQ(SetUp({.header_lines = {{wide.substr(1), "\x1b|2CDOPPIA LARGHEZZA"}}}), RTF_SUCCESS);
  EXPECT_EQ(SetUp({.vat_rates = {{1, 999900}}}), RTF_SUCCESS);
}

TEST_F(ShopSetupTest, SerialAndVatNumberAreFixedOnceADocumentWasMade) {
  const auto is_fixed = [this] {
    EXPECT_EQ(SetUp({.serial_number = "99LRM0000042VR"}), RTF_EFPTR_WRONG_STATE);
    EXPECT_EQ(Cause(), RefusalCause::kFixedByDocuments);
    EXPECT_EQ(refused.value, ShopValue::kSerialNumber);
    EXPECT_EQ(SetUp({.vat_number = "12345678903"}), RTF_EFPTR_WRONG_STATE);
    EXPECT_EQ(Cause(), RefusalCause::kFixedByDocuments);
    EXPECT_EQ(refused.value, ShopValue::kVatNumber);
    // The same number is no change.
    EXPECT_EQ(SetUp({.serial_number = "99LRM0000001VR", .vat_number = "01234567897"}), RTF_SUCCESS);
  };
  // One that was given up has them on paper, too.
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
  is_fixed();
  Receipt(1, 10000);
  is_fixed();
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  is_fixed();
  EXPECT_EQ(SetUp({.header_lines = {{"ALTRO"}}, .vat_rates = {{1, 230000}}}), RTF_SUCCESS);
  EXPECT_EQ(device->tables().settings().serial_number, "99LRM0000001VR");
  EXPECT_TRUE(Findings().empty());
}

TEST_F(ShopSetupTest, RatesAndServiceWaitForTheEndOfTheDay) {
  Receipt(1, 10000);
  EXPECT_EQ(SetUp({.vat_rates = {{1, 230000}}}), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(refused.value, ShopValue::kVatRates);
  EXPECT_EQ(SetUp({.in_service = false}), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(refused.value, ShopValue::kInService);
  EXPECT_EQ(SetUp({.header_lines = {{"ALTRO"}}, .departments = {{1, {"PANE", {}, {}}}}}),
            RTF_SUCCESS);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(SetUp({.vat_rates = {{1, 230000}}, .in_service = false}), RTF_SUCCESS);
  EXPECT_TRUE(Findings().empty());
}

TEST_F(ShopSetupTest, TrainingEndsAheadOfTheRestAndBeginsBehindIt) {
  ASSERT_EQ(SetUp({.training = true}), RTF_SUCCESS);
  EXPECT_EQ(SetUp({.header_lines = {{"ALTRO"}}}), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Cause(), RefusalCause::kTraining);
  EXPECT_EQ(SetUp({.header_lines = {{"ALTRO"}}, .training = false}), RTF_SUCCESS);
  EXPECT_EQ(SetUp({.header_lines = {{"ANCORA"}}, .training = true}), RTF_SUCCESS);
  EXPECT_EQ(device->tables().settings().header_lines.front(), "ANCORA");
  EXPECT_TRUE(device->training());
}

TEST_F(ShopSetupTest, NothingIsSetInsideOfADocument) {
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  for (const ShopSetup& setup :
       {ShopSetup{.header_lines = {{"ALTRO"}}}, ShopSetup{.training = true},
        ShopSetup{.serial_number = "99LRM0000042VR"}, ShopSetup{.in_service = false}}) {
    EXPECT_EQ(SetUp(setup), RTF_EFPTR_WRONG_STATE);
    EXPECT_EQ(Cause(), RefusalCause::kState);
  }
}

TEST_F(ShopSetupTest, TheKeyOfAHostDoesNotMatter) {
  RegisterSettings settings = FileSettings("key.register");
  settings.programming_needs_key = true;
  VirtualRegister locked(settings);
  EXPECT_EQ(locked.SetUp({.header_lines = {{"ALTRO"}}}, &refused), RTF_SUCCESS);
  EXPECT_EQ(locked.key_position(), KeyPosition::kRegister);
  EXPECT_EQ(locked.tables().settings().header_lines.front(), "ALTRO");
}

TEST_F(ShopSetupTest, SummariesGoIntoTheShopsFolderUnlessTheHostNamesAnother) {
  std::filesystem::create_directory(folder_ / "shop");
  std::filesystem::create_directory(folder_ / "host");
  ASSERT_EQ(SetUp({.outbox = Path("shop")}), RTF_SUCCESS);
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "shop" / "corrispettivi_0001.xml"));
  device.reset();
  RegisterSettings settings = FileSettings();
  settings.outbox = Path("host");
  device = std::make_unique<VirtualRegister>(settings);
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "host" / "corrispettivi_0002.xml"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "shop" / "corrispettivi_0002.xml"));
  // The host's folder is that of the host's place.
  EXPECT_EQ(SetUp({.outbox = ""}), RTF_SUCCESS);
  Restart();
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "shop" / "corrispettivi_0003.xml"));
}

TEST_F(ShopSetupTest, ADiskThatFailsChangesNothing) {
  const std::string before = Image(*device);
  for (const auto fault : {FailingDisk::Fault::kFull, FailingDisk::Fault::kSync}) {
    disk.FailAt(fault, 1, true);
    EXPECT_EQ(SetUp(Whole()), RTF_E_FAILURE);
    EXPECT_TRUE(disk.failed());
    EXPECT_EQ(Cause(), RefusalCause::kNotKept);
    disk.Heal();
    EXPECT_EQ(Image(*device), before);
  }
  EXPECT_EQ(SetUp(Whole()), RTF_SUCCESS);
  EXPECT_TRUE(Findings().empty());
}

TEST_F(ShopSetupTest, WithoutMemoryNothingChanges) {
  const ShopSetup setup = Whole();
  const std::string before = Image(*device);
  int code = RTF_E_FAILURE;
  int place = 0;
  while (code != RTF_SUCCESS) {
    FailingMemory::FailAt(++place, FailingMemory::kForGood);
    code = SetUp(setup);
    FailingMemory::Heal();
    if (code == RTF_SUCCESS) break;
    ASSERT_EQ(code, RTF_E_FAILURE) << place;
    ASSERT_EQ(Image(*device), before) << place;
  }
  EXPECT_GT(place, 50);
  EXPECT_EQ(device->tables().settings().serial_number, "99LRM0000042VR");
  EXPECT_TRUE(Findings().empty());
}

}  // namespace lorimat
