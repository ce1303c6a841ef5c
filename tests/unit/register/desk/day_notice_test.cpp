// What a start, a property and a closing tell of the day.
#include "register/desk/day_notice.h"

#include "register/inspect/register_file.h"
#include "register/value/row_encoding.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

std::tm Date(int year, int month, int day, int hour = 10, int minute = 30) {
  std::tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  return time;
}

TEST(DatesBetweenTest, AreWholeDates) {
  const struct {
    std::tm earlier, later;
    int64_t from, to;  // 0: none
  } rows[] = {
      {Date(2024, 1, 15), Date(2024, 1, 15), 0, 0},
      {Date(2024, 1, 15, 0, 0), Date(2024, 1, 16, 23, 59), 0, 0},
      {Date(2024, 1, 15, 23, 59), Date(2024, 1, 17, 0, 0), 20240116000000, 20240116000000},
      {Date(2023, 12, 30), Date(2024, 1, 3), 20231231000000, 20240102000000},
      {Date(2024, 2, 28), Date(2024, 3, 1), 20240229000000, 20240229000000},
      {Date(2023, 2, 28), Date(2023, 3, 1), 0, 0},
      {Date(2100, 2, 28), Date(2100, 3, 1), 0, 0},
      {Date(1970, 1, 1), Date(2100, 1, 1), 19700102000000, 20991231000000},
      {Date(2024, 1, 20), Date(2024, 1, 15), 0, 0},
  };
  for (const auto& row : rows) {
    const std::optional<IdleDates> dates = DatesBetween(row.earlier, row.later);
    EXPECT_EQ(dates.has_value(), row.from != 0) << TimeNumber(row.earlier);
    EXPECT_EQ(dates.value_or(IdleDates{}), (IdleDates{row.from, row.to}));
  }
}

class DayNoticeTest : public StoreTest {
 protected:
  RegisterSettings Settings() {
    RegisterSettings settings = FileSettings();
    settings.clock = [this] {
      ++clock_reads;
      return now;
    };
    return settings;
  }
  void Start() {
    device.reset();
    device = std::make_unique<VirtualRegister>(Settings());
  }
  void Sell() {
    ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  std::string Told(bool at_start = true) {
    char text[128] = "unset";
    EXPECT_EQ(device->GetStringProperty(RTF_PIDXFptr_ErrorString, text), RTF_SUCCESS);
    if (!at_start) return text;
    EXPECT_EQ(device->start_notice(), text);
    EXPECT_EQ(RegisterFile(Path("shop.register")).Status([this] { return now; }).notice,
              device->FindNotice());
    return text;
  }
  std::string Closing() {
    EXPECT_EQ(device->PrintZReport(), RTF_SUCCESS);
    const std::string paper = device->paper_text();
    return paper.substr(paper.rfind("CHIUSURA GIORNALIERA"));
  }

  std::tm now = Date(2024, 1, 15);
  int clock_reads = 0;
  std::unique_ptr<VirtualRegister> device;
};

TEST_F(DayNoticeTest, ADayThatWasLeftOpenIsToldAtTheNextStart) {
  Start();
  EXPECT_EQ(Told(), "");
  Sell();
  now = Date(2024, 1, 15, 23, 59);
  Start();
  EXPECT_EQ(Told(), "");
  now = Date(2024, 1, 16, 0, 0);
  Start();
  EXPECT_EQ(Told(), "The day of 15/01/2024 is not closed.");
  EXPECT_EQ(device->day_notice().opened, 20240115103000);
  const std::string closing = Closing();
  EXPECT_NE(closing.find("   Giornata aperta il 15/01/2024 10:30\n"), closing.npos);
  EXPECT_EQ(closing.find("Inattivo"), closing.npos);
  Start();
  EXPECT_EQ(Told(), "");
}

// It is asked behind failures, too: what the last operation saw is told, whatever clock and file
// do.
TEST_F(DayNoticeTest, ThePropertyReadsNeitherTheClockNorTheFile) {
  Start();
  Sell();
  now = Date(2024, 1, 16);
  Start();
  Sql("shop.register", "UPDATE document SET time = 20240116080000");
  clock_reads = 0;
  EXPECT_EQ(Told(false), "The day of 15/01/2024 is not closed.");
  now = Date(2024, 1, 15);
  EXPECT_EQ(Told(false), "The day of 15/01/2024 is not closed.");
  EXPECT_EQ(clock_reads, 0);
}

TEST_F(DayNoticeTest, ThePropertyIsOfTheLastOperation) {
  Start();
  Sell();
  now = Date(2024, 1, 16);
  EXPECT_EQ(Told(false), "");
  Sell();
  EXPECT_EQ(Told(false), "The day of 15/01/2024 is not closed.");
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(Told(false), "");
  now = Date(2024, 1, 20);
  ASSERT_EQ(device->PrintXReport(), RTF_SUCCESS);
  EXPECT_EQ(Told(false), "Nothing registered from 17/01/2024 to 19/01/2024.");
}

TEST_F(DayNoticeTest, DatesWithoutADocumentAreToldAtAStartAndOnTheClosing) {
  Start();
  now = Date(2024, 1, 20);
  Start();
  EXPECT_EQ(Told(), "");  // a new register
  ASSERT_EQ(Closing().find("Inattivo"), std::string::npos);
  now = Date(2024, 1, 21);
  Start();
  EXPECT_EQ(Told(), "");
  now = Date(2024, 1, 23);
  Start();
  EXPECT_EQ(Told(), "Nothing registered from 21/01/2024 to 22/01/2024.");
  Sell();
  // What is told is of the start; a property is of now.
  EXPECT_EQ(device->start_notice(), "Nothing registered from 21/01/2024 to 22/01/2024.");
  Start();
  EXPECT_EQ(Told(), "");
  const std::string closing = Closing();
  EXPECT_NE(closing.find("  Inattivo dal 21/01/2024 al 22/01/2024\n"), closing.npos) << closing;
  // A closing without a document tells them up to itself.
  now = Date(2024, 1, 25);
  const std::string empty = Closing();
  EXPECT_NE(empty.find("  Inattivo dal 24/01/2024 al 24/01/2024\n"), empty.npos) << empty;
  EXPECT_EQ(empty.find("Giornata aperta"), empty.npos);
}

// The summary has the dates in a place of its own, also those ahead of a day of invoices alone.
TEST_F(DayNoticeTest, TheSummaryTellsTheDatesWithoutADocument) {
  Start();
  Sell();
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  now = Date(2024, 1, 18);
  ASSERT_EQ(device->BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  now = Date(2024, 1, 20);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  now = Date(2024, 1, 22);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  now = Date(2024, 1, 23);
  Sell();
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  const char* const expected[] = {
      "", "  <PeriodoInattivo>\n    <Dal>2024-01-16</Dal>\n    <Al>2024-01-17</Al>\n",
      "  <PeriodoInattivo>\n    <Dal>2024-01-21</Dal>\n    <Al>2024-01-21</Al>\n", ""};
  for (int closing = 1; closing <= 4; ++closing) {
    std::filesystem::remove(Path("summary"));
    ASSERT_EQ(device->SaveTelematicSummary(closing, closing, Path("summary").c_str()), RTF_SUCCESS);
    const std::string summary = Bytes("summary");
    const std::string idle = expected[closing - 1];
    const size_t at = summary.find("  <PeriodoInattivo>");
    EXPECT_EQ(at == summary.npos ? "" : summary.substr(at, idle.size()), idle) << closing;
    if (at == summary.npos) continue;
    EXPECT_EQ(summary.find("  </PeriodoInattivo>\n  <DataOraRilevazione>", at), at + idle.size());
  }
}

TEST_F(DayNoticeTest, LimitsAreToldAheadAndNeverPassed) {
  Start();
  Sell();
  device.reset();
  Sql("shop.register", "UPDATE ledger SET documents = 9899");
  Start();
  EXPECT_EQ(Told(), "");
  Sell();
  Start();
  EXPECT_EQ(Told(), "Documents left in the day: 99.");
  device.reset();
  Sql("shop.register", "UPDATE ledger SET documents = 9998, last_closure = 9900");
  now = Date(2024, 1, 16);
  Start();
  // All that there can be at once fits the property.
  EXPECT_EQ(Told(),
            "The day of 15/01/2024 is not closed. Documents left in the day: 1. Closings left in "
            "the memory: 99.");
  Sell();
  EXPECT_EQ(device->BeginFiscalReceipt(false), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(device->FindNotice().documents_left, 0);
  EXPECT_EQ(device->store().counters().documents, 9999);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device->FindNotice().documents_left, std::nullopt);
  EXPECT_EQ(device->FindNotice().closings_left, 98);
  device.reset();
  Sql("shop.register", "UPDATE ledger SET last_closure = 9998");
  Start();
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device->PrintZReport(), RTF_EFPTR_FISCAL_MEMORY_FULL);
  EXPECT_EQ(device->BeginFiscalReceipt(false), RTF_EFPTR_FISCAL_MEMORY_FULL);
  EXPECT_EQ(device->store().last_closure(), 9999);
  EXPECT_EQ(device->FindNotice().closings_left, 0);
}

}  // namespace
}  // namespace lorimat
