// A register's file, looked at without switching it on.
#include "register/inspect/register_file.h"

#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class RegisterFileTest : public StoredRegisterTest {
 protected:
  FaultPlan PlanPaperEnd() const {
    return RegisterFile::ChangeFaults(Path("shop.register"),
                                      [](FaultPlan* plan) { plan->Add({.name = "paper-end"}); });
  }
};

TEST_F(RegisterFileTest, TheStatusOfANewRegister) {
  device.reset();
  const RegisterStatus status = RegisterFile(Path("shop.register")).Status();
  EXPECT_EQ(status.file, Path("shop.register"));
  EXPECT_EQ(status.schema_version, kSchemaVersion);
  EXPECT_EQ(status.serial_number, "99LRM0000001VR");
  EXPECT_EQ(status.firmware_version, "1.00");
  EXPECT_EQ(status.key_position, 1);
  EXPECT_EQ(status.current_operator, 1);
  EXPECT_EQ(status.closures, 0);
  EXPECT_FALSE(status.day_open);
  EXPECT_EQ(status.documents, 0u);
  EXPECT_EQ(status.journal_entries, 0u);
  EXPECT_EQ(status.journal_hash.size(), 64u);  // of what the chain begins with
  EXPECT_EQ(status.next_invoice, 1);
  EXPECT_FALSE(status.open_document);
  EXPECT_TRUE(status.faults.empty());
}

TEST_F(RegisterFileTest, TheStatusOfADay) {
  Receipt(1, 100000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  Receipt(1, 20000);
  ASSERT_EQ(device->BeginDocInvoice("A", "", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 30000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  const std::string hash = device->store().journal_hash();
  device.reset();
  const RegisterStatus status = RegisterFile(Path("shop.register")).Status();
  EXPECT_EQ(status.closures, 1);
  EXPECT_TRUE(status.day_open);
  EXPECT_EQ(status.counters.documents, 1);
  EXPECT_EQ(status.counters.invoices, 1);
  EXPECT_EQ(status.day_total, 50000);
  EXPECT_EQ(status.grand_total, 150000);
  EXPECT_EQ(status.next_invoice, 2);
  EXPECT_EQ(status.pending_summaries, 1);
  EXPECT_EQ(status.documents, 3u);
  EXPECT_EQ(status.journal_entries, 4u);
  EXPECT_EQ(status.journal_hash, hash);
}

TEST_F(RegisterFileTest, ALookChangesNothing) {
  Receipt(1, 10000);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 5000), RTF_SUCCESS);
  device.reset();
  const std::string before = Dump("shop.register");
  {
    RegisterFile file(Path("shop.register"));
    const RegisterStatus status = file.Status();
    ASSERT_TRUE(status.open_document);
    EXPECT_EQ(status.open_document->kind, InterruptedKind::kReceipt);
    EXPECT_EQ(status.open_document->lines, 1);
    EXPECT_EQ(status.open_document->subtotal, 5000);
    static_cast<void>(file.Roll());
    static_cast<void>(file.VerifyJournal({}));
  }
  EXPECT_EQ(Dump("shop.register"), before);
}

TEST_F(RegisterFileTest, TheRollAndItsLastDocuments) {
  Receipt(1, 10000);
  const size_t first = device->paper_lines().size();
  Receipt(2, 20000);
  const size_t second = device->paper_lines().size();
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 5000), RTF_SUCCESS);
  const std::vector<std::string> lines = device->paper_lines();
  const auto from = [&lines](size_t line) {
    return std::vector<std::string>(lines.begin() + static_cast<std::ptrdiff_t>(line), lines.end());
  };
  device.reset();
  RegisterFile file(Path("shop.register"));
  EXPECT_EQ(file.Roll().lines(), lines);
  EXPECT_EQ(file.Roll(1).lines(), from(second));  // the one in progress
  EXPECT_EQ(file.Roll(2).lines(), from(first));
  EXPECT_EQ(file.Roll(3).lines(), lines);
  EXPECT_EQ(file.Roll(99).lines(), lines);
  const Paper two = file.Roll(2);
  ASSERT_EQ(two.rows().size(), 1u);  // the cut of the second receipt
  EXPECT_EQ(two.rows()[0].line, second - first - 1);
  EXPECT_EQ(two.dropped(), first);
}

TEST_F(RegisterFileTest, WithoutAnOpenDocumentTheLastOneEndsWithItsCut) {
  Receipt(1, 10000);
  const size_t first = device->paper_lines().size();
  Receipt(2, 20000);
  device.reset();
  RegisterFile file(Path("shop.register"));
  EXPECT_EQ(file.Roll(1).lines().size(), first);
  EXPECT_EQ(file.Roll(1).lines().back(), std::string(42, '-'));
  EXPECT_EQ(file.Roll(2).lines().size(), 2 * first);
}

TEST_F(RegisterFileTest, TheJournalBySelectionWithItsPlaces) {
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  Receipt(1, 20000);
  Receipt(1, 30000);
  device.reset();
  RegisterFile file(Path("shop.register"));
  const auto places = [&file](JournalSelection selection) {
    std::vector<uint64_t> found;
    file.ReadJournal(selection, [&found](uint64_t place, const JournalEntry&) {
      found.push_back(place);
      return true;
    });
    return found;
  };
  JournalSelection all;
  all.from_closure = 0;
  all.to_closure = 9999;
  EXPECT_EQ(places(all), (std::vector<uint64_t>{1, 2, 3, 4}));
  JournalSelection closings = all;
  closings.filter = kJournalClosure;
  EXPECT_EQ(places(closings), std::vector<uint64_t>{2});
  JournalSelection second = all;
  second.from_closure = second.to_closure = 2;
  EXPECT_EQ(places(second), (std::vector<uint64_t>{3, 4}));
  JournalSelection day;
  day.by_date = true;
  ASSERT_TRUE(ParseMinute("150120241030", &day.from));
  ASSERT_TRUE(ParseMinute("150120241030", &day.to));
  EXPECT_EQ(places(day), (std::vector<uint64_t>{1, 2, 3, 4}));
  ASSERT_TRUE(ParseMinute("150120241031", &day.from));
  ASSERT_TRUE(ParseMinute("150120251031", &day.to));
  EXPECT_TRUE(places(day).empty());
  int read = 0;
  file.ReadJournal(all, [&read](uint64_t, const JournalEntry&) { return ++read < 2; });
  EXPECT_EQ(read, 2);
}

TEST_F(RegisterFileTest, TheJournalInPartsIsTheWholeOfIt) {
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  for (int n = 0; n < 3; ++n) Receipt(1, 20000);
  device.reset();
  const RegisterFile file(Path("shop.register"));
  using Places = std::vector<uint64_t>;
  const auto part = [&file](const JournalSelection& selection, uint64_t behind, size_t most,
                            std::optional<uint64_t> next) {
    Places found;
    const auto more = file.ReadJournalPart(
        selection, behind, most, [&found](uint64_t place, const auto&) { found.push_back(place); });
    EXPECT_EQ(more, next);
    return found;
  };
  JournalSelection all;
  all.from_closure = 0;
  all.to_closure = 9999;
  EXPECT_EQ(part(all, 0, 2, 2), (Places{1, 2}));
  EXPECT_EQ(part(all, 2, 2, 4), (Places{3, 4}));
  EXPECT_EQ(part(all, 4, 2, std::nullopt), Places{5});
  EXPECT_EQ(part(all, 5, 2, std::nullopt), Places{});
  EXPECT_EQ(part(all, 0, 9, std::nullopt), (Places{1, 2, 3, 4, 5}));
  // Of a part that has none of the kind there is nothing, and more to come.
  JournalSelection closings = all;
  closings.filter = kJournalClosure;
  EXPECT_EQ(part(closings, 0, 1, 1), Places{});
  EXPECT_EQ(part(closings, 1, 1, 2), Places{2});
  JournalSelection day;
  day.by_date = true;
  ASSERT_TRUE(ParseMinute("150120241030", &day.from));
  ASSERT_TRUE(ParseMinute("150120241030", &day.to));
  EXPECT_EQ(part(day, 0, 3, 3), (Places{1, 2, 3}));
  EXPECT_EQ(part(day, 3, 3, std::nullopt), (Places{4, 5}));
}

TEST_F(RegisterFileTest, AnEntryOfTheJournalByItsPlace) {
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  Receipt(1, 20000);
  const std::vector<JournalEntry> all = device->store().journal();
  ASSERT_EQ(all.size(), 3u);
  device.reset();
  RegisterFile file(Path("shop.register"));
  for (size_t place = 1; place <= all.size(); ++place) {
    const std::optional<JournalEntry> entry = file.Entry(place);
    ASSERT_TRUE(entry) << place;
    EXPECT_EQ(entry->kind, all[place - 1].kind);
    EXPECT_EQ(entry->lines, all[place - 1].lines);
    EXPECT_EQ(entry->hash, all[place - 1].hash);
  }
  for (const uint64_t place : {uint64_t{0}, uint64_t{4}, UINT64_MAX}) {
    EXPECT_FALSE(file.Entry(place)) << place;
  }
}

TEST_F(RegisterFileTest, AnEntryIsReadWithoutThoseBeforeIt) {
  Receipt(1, 10000);
  Receipt(1, 20000);
  device.reset();
  Sql("shop.register", "UPDATE journal SET kind = 99999999999 WHERE place = 1");
  RegisterFile file(Path("shop.register"));
  EXPECT_THROW(file.Entry(1), RegisterError);
  ASSERT_TRUE(file.Entry(2));
  EXPECT_EQ(file.Entry(2)->number, 2);
}

TEST_F(RegisterFileTest, FindingsLeaveTheFileToThoseWhoShowThem) {
  Receipt(1, 10000);
  device.reset();
  Sql("shop.register", "DROP TABLE journal");
  const JournalCheck check = RegisterFile(Path("shop.register")).VerifyJournal({});
  EXPECT_EQ(FindingTexts(check),
            std::vector<std::string>{"the register is damaged (no such table: journal)"});
}

TEST_F(RegisterFileTest, DamagedPagesAreNamedLineByLine) {
  Receipt(1, 10000);
  device.reset();
  constexpr size_t kPage = 4096;
  const size_t root = static_cast<size_t>(std::stoi(
      Sql("shop.register", "SELECT rootpage FROM sqlite_master WHERE name = 'journal_by_time'")));
  std::string bytes = Bytes("shop.register");
  bytes.replace((root - 1) * kPage, kPage, kPage, 'Z');
  Write("shop.register", bytes);
  const JournalCheck check = RegisterFile(Path("shop.register")).VerifyJournal({});
  ASSERT_FALSE(check.findings.empty());
  const std::string page = "Page " + std::to_string(root) + ": ";
  const std::vector<std::string> findings = FindingTexts(check);
  EXPECT_EQ(findings[0].find("the file is damaged (" + page), 0u) << findings[0];
  for (const std::string& finding : findings) {
    EXPECT_EQ(finding.find_first_of("*\n"), finding.npos) << finding;
  }
}

TEST_F(RegisterFileTest, FaultsAreSetForTheNextStart) {
  device.reset();
  {
    RegisterFile file(Path("shop.register"));
    EXPECT_TRUE(file.Faults().empty());
    PlanPaperEnd();
    EXPECT_TRUE(file.Faults().empty());  // as it was when it was opened
    EXPECT_EQ(file.Look(), RegisterFile::News::kChanged);
    EXPECT_EQ(file.Faults().faults().size(), 1u);
    EXPECT_EQ(file.Status().faults.faults().size(), 1u);
  }
  Start();
  ASSERT_EQ(device->faults().faults().size(), 1u);
  EXPECT_NE(Begin(), RTF_SUCCESS);
  // It has struck: it is gone for good.
  Restart();
  EXPECT_TRUE(device->faults().empty());
  EXPECT_EQ(Begin(), RTF_SUCCESS);
}

TEST_F(RegisterFileTest, FaultsThatCannotBeStoredAreNotSet) {
  device.reset();
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_THROW(PlanPaperEnd(), RegisterError);
  disk.Heal();
  EXPECT_TRUE(RegisterFile(Path("shop.register")).Faults().empty());
  EXPECT_EQ(PlanPaperEnd().faults().size(), 1u);
  EXPECT_EQ(RegisterFile(Path("shop.register")).Faults().faults().size(), 1u);
}

}  // namespace
}  // namespace lorimat
