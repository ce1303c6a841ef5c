// The device's clock behind what was registered last: what it stops, what lets go on, and what the
// journal keeps of it.
#include "register/desk/clock_check.h"

#include <memory>

#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class ClockCheckTest : public StoreTest {
 protected:
  ClockCheckTest() {
    At(2024, 1, 15, 10, 30);
    Start();
  }

  void At(int year, int month, int day, int hour, int minute, int second = 0) {
    now = {};
    now.tm_year = year - 1900;
    now.tm_mon = month - 1;
    now.tm_mday = day;
    now.tm_hour = hour;
    now.tm_min = minute;
    now.tm_sec = second;
  }
  void Start() {
    device.reset();
    RegisterSettings settings = FileSettings();
    settings.clock = [] { return now; };
    device = std::make_unique<VirtualRegister>(settings);
  }
  int Begin() { return device->BeginFiscalReceipt(false); }
  int Pay() {
    if (const int code = device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "")) {
      return code;
    }
    return device->PrintRecTotalEx(0, "0", true);
  }
  int Sell() {
    if (const int code = Begin()) return code;
    return Pay();
  }
  int Close() { return device->PrintZReport(); }
  std::string Date() {
    char text[13] = "";
    EXPECT_EQ(device->GetDate(text), RTF_SUCCESS);
    return text;
  }
  JournalCheck Verify() {
    device.reset();
    return RegisterFile(Path("shop.register")).VerifyJournal({});
  }
  static std::vector<std::string> NoteTexts(const JournalCheck& check) {
    JournalCheck notes;
    notes.findings = check.notes;
    return FindingTexts(notes);
  }

  static inline std::tm now = {};
  std::unique_ptr<VirtualRegister> device;
};

TEST_F(ClockCheckTest, AnHourBehindTheLastDocumentGoesThroughAndASecondMoreDoesNot) {
  ASSERT_EQ(Sell(), RTF_SUCCESS);  // 10:30:00
  At(2024, 1, 15, 9, 29, 59);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(Close(), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(device->store().document_count(), 1);
  EXPECT_EQ(device->store().last_closure(), 0);
  At(2024, 1, 15, 9, 30, 0);
  EXPECT_EQ(Sell(), RTF_SUCCESS);
  EXPECT_EQ(Close(), RTF_SUCCESS);
}

TEST_F(ClockCheckTest, AnHourBehindTheLastClosingGoesThroughAndASecondMoreDoesNot) {
  ASSERT_EQ(Close(), RTF_SUCCESS);
  At(2024, 1, 15, 9, 29, 59);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(Close(), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(device->store().last_closure(), 1);
  At(2024, 1, 15, 9, 30, 0);
  EXPECT_EQ(Sell(), RTF_SUCCESS);
  // The closing still counts when a document has come behind it.
  At(2024, 1, 15, 9, 29, 59);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
}

TEST_F(ClockCheckTest, TheHourGoesOverMidnightAndTheEndOfAYear) {
  At(2024, 1, 1, 0, 20);
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  At(2023, 12, 31, 23, 19, 59);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
  At(2023, 12, 31, 23, 20);
  EXPECT_EQ(Sell(), RTF_SUCCESS);
}

TEST_F(ClockCheckTest, EveryFiscalDocumentIsHeldAgainstTheClockAndNoOther) {
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  At(2023, 6, 1, 12, 0);
  EXPECT_EQ(device->BeginDocInvoice("A", "", "", "", ""), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(device->BeginDocTelematicCancel(1, 1, "", true, ""), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(device->PrintZReportEx(false), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(device->printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device->BeginNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device->EndNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device->PrintXReport(), RTF_SUCCESS);
}

TEST_F(ClockCheckTest, TheCauseHasTheClockAndTheTimeThatItIsBehind) {
  At(2026, 11, 20, 18, 5, 7);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  At(2024, 3, 15, 10, 30);
  ASSERT_EQ(Begin(), RTF_EFPTR_CLOCK_ERROR);
  const Refusal& refusal = device->last_refusal();
  EXPECT_EQ(refusal.code, RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(refusal.cause, RefusalCause::kClockBehind);
  EXPECT_EQ(refusal.numbers[0], 20240315103000);
  EXPECT_EQ(refusal.numbers[1], 20261120180507);
}

TEST_F(ClockCheckTest, ARestartChangesNothingAndTellsOfTheClock) {
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  EXPECT_FALSE(device->clock_behind());
  At(2023, 1, 15, 10, 30);
  Start();
  ASSERT_TRUE(device->clock_behind());
  EXPECT_EQ(device->clock_behind()->now, 20230115103000);
  EXPECT_EQ(device->clock_behind()->latest, 20240115103000);
  EXPECT_EQ(device->start_notice(),
            "The clock shows 15/01/2023 10:30, more than an hour before the last document or "
            "closing, 15/01/2024 10:30. Nothing is registered before the clock is right; SetDate "
            "sets it back, and the journal keeps that.");
  EXPECT_EQ(device->CheckHealth(RTF_CH_INTERNAL), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
  At(2024, 1, 15, 10, 30);
  EXPECT_EQ(device->CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  EXPECT_EQ(Sell(), RTF_SUCCESS);
  Start();
  EXPECT_FALSE(device->clock_behind());
}

TEST_F(ClockCheckTest, TrainingSellsAtAnyTime) {
  ASSERT_EQ(Close(), RTF_SUCCESS);
  ASSERT_EQ(device->BeginTraining(), RTF_SUCCESS);
  At(2020, 1, 1, 0, 0);
  EXPECT_EQ(Sell(), RTF_SUCCESS);
  ASSERT_EQ(device->EndTraining(), RTF_SUCCESS);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
}

TEST_F(ClockCheckTest, AClosingOf2099IsLeftBySettingTheDateAndTheJournalKeepsIt) {
  At(2099, 12, 31, 23, 59);
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  At(2026, 11, 21, 9, 0);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
  ASSERT_EQ(device->SetDate("211120260900"), RTF_SUCCESS);
  EXPECT_EQ(Date(), "211120260900");
  EXPECT_EQ(device->CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  Start();
  EXPECT_EQ(device->start_notice(), "");
  ASSERT_EQ(Close(), RTF_SUCCESS);
  // From then on that time counts.
  At(2026, 11, 21, 7, 59, 59);
  EXPECT_EQ(Sell(), RTF_EFPTR_CLOCK_ERROR);
  const JournalCheck check = Verify();
  EXPECT_EQ(FindingTexts(check), std::vector<std::string>{});
  const std::vector<std::string> notes = NoteTexts(check);
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_NE(notes[0].find(": the clock was set back from 31/12/2099 23:59 to 21/11/2026 09:00"),
            std::string::npos)
      << notes[0];
}

TEST_F(ClockCheckTest, AnOpenDayOf2099IsLeftTheSameWay) {
  At(2099, 12, 31, 23, 59);
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  // As long as the clock is not behind, the day is closed first.
  EXPECT_EQ(device->SetDate("211120260900"), RTF_EFPTR_DAY_END_REQUIRED);
  At(2026, 11, 21, 9, 0);
  EXPECT_EQ(Close(), RTF_EFPTR_CLOCK_ERROR);
  ASSERT_EQ(device->SetDate("211120260900"), RTF_SUCCESS);
  EXPECT_EQ(Close(), RTF_SUCCESS);
  EXPECT_EQ(FindingTexts(Verify()), std::vector<std::string>{});
}

TEST_F(ClockCheckTest, TheDateIsSetByTheDataItemOfTheClockToo) {
  At(2099, 1, 1, 0, 0);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  At(2026, 11, 21, 9, 0);
  int item = 149;
  char date[513] = "211120260901";
  ASSERT_EQ(device->DirectIO(2, &item, date), RTF_SUCCESS);
  EXPECT_EQ(Date(), "211120260901");
  EXPECT_EQ(Sell(), RTF_SUCCESS);
  char wrong[513] = "300220260901";
  EXPECT_EQ(device->DirectIO(2, &item, wrong), RTF_EFPTR_DAY_END_REQUIRED);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  EXPECT_EQ(device->DirectIO(2, &item, wrong), RTF_EFPTR_BAD_DATE);
}

TEST_F(ClockCheckTest, WhatIsKeptOfTheClockIsHeldAgainstTheChain) {
  At(2099, 1, 1, 0, 0);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  At(2026, 11, 21, 9, 0);
  ASSERT_EQ(device->SetDate("211120260900"), RTF_SUCCESS);
  device.reset();
  Sql("shop.register",
      "UPDATE setting SET value = '20990101000000 20200101000000 0 1 ' "
      "WHERE name = 'clock_set_back'");
  EXPECT_EQ(
      FindingTexts(Verify()),
      std::vector<std::string>{"\"clock that was set back\": it is not as it was programmed"});
}

TEST_F(ClockCheckTest, ATimeThatCannotBeReadIsNoRegister) {
  ASSERT_EQ(Close(), RTF_SUCCESS);
  device.reset();
  for (const char* value : {"", "1 2 3", "1 2 3 4", "1 2 3 4 5 ", "x"}) {
    Sql("shop.register",
        fmt::format("REPLACE INTO setting VALUES ('clock_set_back', '{}')", value));
    EXPECT_THROW(Start(), RegisterError) << value;
  }
}

TEST_F(ClockCheckTest, ADocumentWhoseClockGoesBackWhileItIsOpenIsNoted) {
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  At(2024, 1, 15, 9, 29);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  const JournalCheck check = Verify();
  EXPECT_TRUE(check.good());
  EXPECT_EQ(NoteTexts(check),
            std::vector<std::string>{
                "entry 2, receipt 0001-0002: its time 15/01/2024 09:29 lies before that of the "
                "document or closing ahead of it, 15/01/2024 10:30"});
}

TEST_F(ClockCheckTest, TheEndOfSummerTimeIsNotNoted) {
  At(2024, 10, 27, 2, 59, 59);
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  At(2024, 10, 27, 2, 0, 0);
  ASSERT_EQ(Sell(), RTF_SUCCESS);
  ASSERT_EQ(Close(), RTF_SUCCESS);
  const JournalCheck check = Verify();
  EXPECT_TRUE(check.good());
  EXPECT_TRUE(check.notes.empty());
}

TEST_F(ClockCheckTest, WhatCouldNotBeStoredMovesNoTime) {
  At(2099, 1, 1, 0, 0);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  ASSERT_EQ(Close(), RTF_E_FAILURE);
  ASSERT_TRUE(disk.failed());
  disk.Heal();
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  ASSERT_EQ(Pay(), RTF_E_FAILURE);
  disk.Heal();
  ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
  At(2024, 1, 15, 10, 30);
  EXPECT_EQ(Sell(), RTF_SUCCESS);
}

}  // namespace
}  // namespace lorimat
