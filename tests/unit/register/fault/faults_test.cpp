// Faults on demand: what each strikes, when, and what a device shows of it.
#include "register/fault/faults.h"

#include <functional>

#include "pal/peripherals/keyboard/functioncode.h"
#include "register/fault/fault_operations.h"
#include "unit/register/fault_fixture.h"

namespace lorimat {
namespace {

using F = FunctionCode;

// A struck call answers the code and changes nothing, and succeeds when the fault is gone; the
// other call succeeds meanwhile.
class FaultKindTest : public FaultTest {
 protected:
  int Begin() { return device.BeginFiscalReceipt(true); }

  void Check(const char* name, int code, bool open, const std::function<int()>& struck,
             const std::function<int()>& untouched) {
    SCOPED_TRACE(name);
    if (open) OpenReceipt();
    const std::string before = Snapshot();
    Every(name);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(struck(), code);
    EXPECT_EQ(Waiting(), 1u);
    device.ClearFaults();
    EXPECT_EQ(Snapshot(), before);
    Every(name);
    EXPECT_EQ(untouched(), RTF_SUCCESS);
    device.ClearFaults();
    EXPECT_EQ(Waiting(), 0u);
    EXPECT_EQ(struck(), RTF_SUCCESS);
  }
};

TEST_F(FaultKindTest, PaperEndStrikesTheOpeningOfAReceipt) {
  Check(
      "paper-end", 203, false, [&] { return Begin(); }, [&] { return Reading(); });
}
TEST_F(FaultKindTest, PaperEndStrikesLinesAndLetsTheDrawerOpen) {
  Check(
      "paper-end", 203, true, [&] { return Sell(1, 10000); }, [&] { return device.OpenDrawer(); });
}
TEST_F(FaultKindTest, PaperEndStrikesPayments) {
  Check(
      "paper-end", 203, true, [&] { return PayRest(); }, [&] { return device.ClearText(); });
}
TEST_F(FaultKindTest, PaperEndStrikesNonFiscalDocuments) {
  Check(
      "paper-end", 203, false, [&] { return device.BeginNonFiscal(); },
      [&] { return Department(true); });
}
TEST_F(FaultKindTest, PaperEndStrikesAReportOnPaperAndNotOneInAFile) {
  Check(
      "paper-end", 203, false, [&] { return XReport(1); }, [&] { return XReport(2); });
}
TEST_F(FaultKindTest, PaperEndStrikesAReportOnPaperAndInAFile) {
  Check(
      "paper-end", 203, false, [&] { return XReport(3); }, [&] { return XReport(2); });
}
TEST_F(FaultKindTest, PaperEndStrikesKeysThatPrint) {
  Check(
      "paper-end", 203, false, [&] { return Key(F::kDepartment01, "\x05"); },
      [&] { return Key(F::kClear); });
}
TEST_F(FaultKindTest, PaperEndLetsTheLockTurn) {
  Check(
      "paper-end", 203, false, [&] { return device.PrintZReport(); },
      [&] { return Key(F::kKey, "\x01"); });
}
TEST_F(FaultKindTest, PaperEndLetsASubtotalBeCompared) {
  Check(
      "paper-end", 203, true, [&] { return device.PrintRecSubtotalEx(0, false); },
      [&] { return device.PrintRecSubtotalEx(100000, true); });
}
TEST_F(FaultKindTest, AnOpenCoverStrikesWhatPrints) {
  Check(
      "cover-open", 201, true, [&] { return device.PrintRecMessage("CIAO"); },
      [&] { return Reading(); });
}
TEST_F(FaultKindTest, OffLineStrikesLines) {
  Check(
      "off-line", 108, true, [&] { return Sell(1, 10000); },
      [&] { return device.SetIntProperty(RTF_PIDXFptr_DateType, RTF_FPTR_DT_RTC); });
}
TEST_F(FaultKindTest, OffLineStrikesReading) {
  Check(
      "off-line", 108, false, [&] { return Reading(); },
      [&] {
        int value = 0;
        return device.GetIntProperty(RTF_PIDXFptr_PrinterState, &value);
      });
}
TEST_F(FaultKindTest, OffLineStrikesTheDrawer) {
  Check(
      "off-line", 108, false, [&] { return device.OpenDrawer(); },
      [&] { return device.SetStringProperty(RTF_PIDXFptr_PreLine, ""); });
}
TEST_F(FaultKindTest, BusyStrikesProgrammingAndLeavesReading) {
  Check(
      "busy", 113, false, [&] { return Department(true); }, [&] { return Department(false); });
}
TEST_F(FaultKindTest, AFullMemoryStrikesPayments) {
  Check(
      "fiscal-memory-full", 210, true, [&] { return PayRest(); },
      [&] { return device.PrintRecMessage("CIAO"); });
}
TEST_F(FaultKindTest, AFullMemoryStrikesOpenings) {
  Check(
      "fiscal-memory-full", 210, false, [&] { return Begin(); }, [&] { return XReport(1); });
}
TEST_F(FaultKindTest, AFullMemoryStrikesTheDayClosing) {
  Check(
      "fiscal-memory-full", 210, false, [&] { return device.PrintZReportEx(false); },
      [&] { return device.OpenDrawer(); });
}
TEST_F(FaultKindTest, ADueClosingStrikesInvoices) {
  Check(
      "day-end-required", 224, false,
      [&] { return device.BeginDocInvoice("ROSSI SRL", "", "", "", ""); },
      [&] { return device.PrintZReport(); });
}
TEST_F(FaultKindTest, ADueClosingStrikesTheKeyOfADepartmentThatOpens) {
  Check(
      "day-end-required", 224, false, [&] { return Key(F::kDepartment01, "\x05"); },
      [&] { return XReport(1); });
}
TEST_F(FaultKindTest, WrongTotalsStrikePayments) {
  Check(
      "wrong-totals", 212, true, [&] { return PayCash(100000); },
      [&] { return device.PrintRecMessage("CIAO"); });
}
TEST_F(FaultKindTest, WrongTotalsStrikeThePaymentOfAKey) {
  Check(
      "wrong-totals", 212, true, [&] { return Key(F::kTotal); },
      [&] { return device.PrintRecMessage("CIAO"); });
}
TEST_F(FaultKindTest, WrongTotalsStrikeSubtotals) {
  Check(
      "wrong-totals", 212, true, [&] { return device.PrintRecSubtotal(100000); },
      [&] { return device.PrintRecMessage("CIAO"); });
}
TEST_F(FaultKindTest, AnOperationThatGetsLostIsNotCarriedOut) {
  Check(
      "no-answer", 112, true, [&] { return PayRest(); },
      [&] { return device.GetState() == RTF_S_IDLE ? RTF_SUCCESS : RTF_E_FAILURE; });
}

TEST_F(FaultTest, ADueClosingLeavesTheReceiptThatIsOpen) {
  OpenReceipt();
  Every("day-end-required");
  EXPECT_EQ(Key(F::kDepartment01, "\x05"), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 150000);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.BeginFiscalReceipt(true), 224);
}

TEST_F(FaultTest, AResetGoesThroughWithoutPaper) {
  OpenReceipt();
  Every("paper-end");
  EXPECT_EQ(device.ResetPrn(), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

TEST_F(FaultTest, AnyCodeStrikesTheNextOperationThatActs) {
  for (const int code : {1, 107, 214, 1213, 121202, 999999}) {
    device.AddFault({.name = "code", .code = code});
    EXPECT_EQ(Reading(), RTF_SUCCESS);
    EXPECT_EQ(device.OpenDrawer(), code);
    EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  }
  EXPECT_EQ(device.drawer_count(), 6);
}

TEST_F(FaultTest, AnyCodeForEveryCallStrikesReadingToo) {
  device.AddFault({.name = "code", .code = 111, .when = FaultWhen::kEvery});
  EXPECT_EQ(Reading(), 111);
  EXPECT_EQ(device.OpenDrawer(), 111);
  EXPECT_EQ(Property(RTF_PIDXFptr_PrinterState), RTF_FPTR_PS_MONITOR);
}

TEST_F(FaultTest, AnOperationThatIsNamedIsStruckAlone) {
  device.AddFault({.name = "code", .code = 107, .operation = ClientOperation::kGetDate});
  device.AddFault({.name = "paper-end", .operation = ClientOperation::kPrintRecMessage});
  device.AddFault({.name = "code", .code = 105, .operation = ClientOperation::kSetStringProperty});
  OpenReceipt();
  EXPECT_EQ(Item(12), "0");
  EXPECT_EQ(device.SetStringProperty(RTF_PIDXFptr_PreLine, "UNO"), 105);
  EXPECT_EQ(device.PrintRecMessage("CIAO"), 203);
  EXPECT_EQ(Reading(), 107);
  EXPECT_EQ(Waiting(), 0u);
  EXPECT_EQ(Reading(), RTF_SUCCESS);
}

TEST_F(FaultTest, OffLineCanStrikeANamedReading) {
  device.AddFault({.name = "off-line", .operation = ClientOperation::kGetDate});
  EXPECT_EQ(Item(12), "0");
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(Reading(), 108);
  EXPECT_EQ(Reading(), RTF_SUCCESS);
}

// What a host reads on its way does not use up what is meant for the operation.
TEST_F(FaultTest, CountedFaultsLeaveReadingAlone) {
  for (const char* name : {"off-line", "no-answer"}) {
    device.AddFault({.name = name});
    EXPECT_EQ(Reading(), RTF_SUCCESS);
    EXPECT_EQ(Item(12), "0");
    EXPECT_EQ(Department(false), RTF_SUCCESS);
    int item = 12;
    char data[513] = "";
    EXPECT_EQ(device.DirectIO(1, &item, data), RTF_SUCCESS);
    EXPECT_EQ(Waiting(), 1u);
    EXPECT_NE(Department(true), RTF_SUCCESS);
    EXPECT_EQ(Waiting(), 0u);
  }
}

TEST_F(FaultTest, TheNthOperationIsCountedAmongThoseThatTheFaultCanStrike) {
  device.AddFault({.name = "paper-end", .when = FaultWhen::kNth, .count = 3});
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 0);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 0);
  EXPECT_EQ(Sell(1, 10000), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 1);
  EXPECT_EQ(Reading(), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 20000), 203);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 0);
  EXPECT_EQ(Sell(1, 20000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 30000);
}

TEST_F(FaultTest, TheFirstOfItsNumberIsTheNext) {
  device.AddFault({.name = "paper-end", .when = FaultWhen::kNth, .count = 1});
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 1);
  EXPECT_EQ(device.BeginFiscalReceipt(true), 203);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(FaultTest, SoManyTimesIsThatMany) {
  device.AddFault({.name = "cover-open", .when = FaultWhen::kTimes, .count = 3});
  for (const int left : {3, 2, 1}) {
    EXPECT_EQ(device.faults().faults().at(0).count, left);
    EXPECT_EQ(Property(RTF_PIDXFptr_CoverOpen), 1);
    EXPECT_EQ(device.BeginFiscalReceipt(true), 201);
  }
  EXPECT_EQ(Property(RTF_PIDXFptr_CoverOpen), 0);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(FaultTest, PollsOfABusyDeviceCount) {
  device.AddFault({.name = "busy", .when = FaultWhen::kTimes, .count = 3});
  EXPECT_EQ(device.GetState(), RTF_S_BUSY);
  EXPECT_EQ(device.OpenDrawer(), RTF_E_BUSY);
  EXPECT_EQ(Reading(), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDX_State), RTF_S_BUSY);
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
}

TEST_F(FaultTest, ADeviceThatIsBusyForGoodStaysBusy) {
  Every("busy");
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(device.GetState(), RTF_S_BUSY);
  device.ClearFaults();
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
}

TEST_F(FaultTest, BusyAtTheThirdPoll) {
  device.AddFault({.name = "busy", .when = FaultWhen::kNth, .count = 3});
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(device.GetState(), RTF_S_BUSY);
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
}

TEST_F(FaultTest, TwoBusyFaultsAddUp) {
  device.AddFault({.name = "busy", .when = FaultWhen::kTimes, .count = 2});
  device.AddFault({.name = "busy"});
  for (int i = 0; i < 3; ++i) EXPECT_EQ(device.GetState(), RTF_S_BUSY);
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
}

TEST_F(FaultTest, BusyAtOneOperationDoesNotShowInThePolls) {
  device.AddFault({.name = "busy", .operation = ClientOperation::kOpenDrawer});
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(device.OpenDrawer(), RTF_E_BUSY);
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
}

TEST_F(FaultTest, OneFaultStrikesAtATimeAndTheOtherWaits) {
  device.AddFault({.name = "paper-end"});
  device.AddFault({.name = "cover-open"});
  device.AddFault({.name = "off-line"});
  EXPECT_EQ(device.BeginFiscalReceipt(true), 203);
  EXPECT_EQ(device.BeginFiscalReceipt(true), 201);
  EXPECT_EQ(device.BeginFiscalReceipt(true), 108);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(FaultTest, AFaultPassesAnOperationThatItCannotStrike) {
  device.AddFault({.name = "paper-end"});
  device.AddFault({.name = "off-line"});
  EXPECT_EQ(device.OpenDrawer(), 108);
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(device.BeginFiscalReceipt(true), 203);
}

TEST_F(FaultTest, TwoFaultsOfTheSameNumberStrikeOneBehindTheOther) {
  device.AddFault({.name = "paper-end", .when = FaultWhen::kNth, .count = 2});
  device.AddFault({.name = "cover-open", .when = FaultWhen::kNth, .count = 2});
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 10000), 203);
  EXPECT_EQ(Sell(1, 10000), 201);
  EXPECT_EQ(Sell(1, 10000), RTF_SUCCESS);
}

TEST_F(FaultTest, AFaultForEveryCallGoesBeforeThoseAddedLater) {
  Every("cover-open");
  device.AddFault({.name = "paper-end"});
  for (int i = 0; i < 3; ++i) EXPECT_EQ(device.BeginFiscalReceipt(true), 201);
  EXPECT_EQ(Waiting(), 2u);
}

TEST_F(FaultTest, ARollNearItsEndWarnsAndPrintsOn) {
  device.AddFault({.name = "paper-near-end", .when = FaultWhen::kTimes, .count = 2});
  device.AddFault({.name = "paper-end", .when = FaultWhen::kNth, .count = 3});
  EXPECT_EQ(Property(RTF_PIDXFptr_RecNearEnd), 1);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 0);
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 10000), RTF_SUCCESS);
  // An empty roll is near its end as well.
  EXPECT_EQ(Property(RTF_PIDXFptr_RecNearEnd), 1);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), 1);
  EXPECT_EQ(PayRest(), 203);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecNearEnd), 0);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
}

// Nothing was printed, so the roll did not get shorter.
TEST_F(FaultTest, ARefusedOperationDoesNotUseUpTheRoll) {
  device.AddFault({.name = "paper-near-end"});
  device.AddFault({.name = "off-line"});
  EXPECT_EQ(device.BeginFiscalReceipt(true), 108);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecNearEnd), 1);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_RecNearEnd), 0);
}

// --- What the device shows

TEST_F(FaultTest, ConditionsShowInPropertiesStateAndStatusLine) {
  // Of a register in service without an open day: 0x28.
  struct {
    const char* name;
    int state;
    int cover;
    int empty;
    int near_end;
    int power;
    int memory;
    const char* status;
  } const rows[] = {
      {"paper-end", RTF_S_ERROR, 0, 1, 1, RTF_PS_ONLINE, 9999, "90028;0;0;0;0;1;1"},
      {"paper-near-end", RTF_S_IDLE, 0, 0, 1, RTF_PS_ONLINE, 9999, "20028;0;0;0;0;1;1"},
      {"cover-open", RTF_S_ERROR, 1, 0, 0, RTF_PS_ONLINE, 9999, "8002C;0;0;0;0;1;1"},
      {"off-line", RTF_S_ERROR, 0, 0, 0, RTF_PS_OFFLINE, 9999, "80028;0;0;0;0;1;1"},
      {"fiscal-memory-full", RTF_S_IDLE, 0, 0, 0, RTF_PS_ONLINE, 0, "80028;0;0;1;0;1;1"},
      {"day-end-required", RTF_S_IDLE, 0, 0, 0, RTF_PS_ONLINE, 9999, "28;0;0;0;0;1;1"},
      {"wrong-totals", RTF_S_IDLE, 0, 0, 0, RTF_PS_ONLINE, 9999, "28;0;0;0;0;1;1"},
      {"no-answer", RTF_S_IDLE, 0, 0, 0, RTF_PS_ONLINE, 9999, "28;0;0;0;0;1;1"},
      {"lost-answer", RTF_S_IDLE, 0, 0, 0, RTF_PS_ONLINE, 9999, "28;0;0;0;0;1;1"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    device.AddFault({.name = row.name});
    EXPECT_EQ(device.GetState(), row.state);
    EXPECT_EQ(Property(RTF_PIDX_State), row.state);
    EXPECT_EQ(Property(RTF_PIDXFptr_CoverOpen), row.cover);
    EXPECT_EQ(Property(RTF_PIDXFptr_RecEmpty), row.empty);
    EXPECT_EQ(Property(RTF_PIDXFptr_RecNearEnd), row.near_end);
    EXPECT_EQ(Property(RTF_PIDX_PowerState), row.power);
    EXPECT_EQ(Property(RTF_PIDXFptr_RemainingFiscalMemory), row.memory);
    EXPECT_EQ(Property(RTF_PIDXFptr_PrinterState), RTF_FPTR_PS_MONITOR);
    EXPECT_EQ(Item(371), row.status);
    device.ClearFaults();
    EXPECT_EQ(device.GetState(), RTF_S_IDLE);
    EXPECT_EQ(Item(371), "28;0;0;0;0;1;1");
  }
}

TEST_F(FaultTest, SeveralConditionsShowTogether) {
  for (const char* name : {"paper-end", "paper-near-end", "cover-open", "fiscal-memory-full"}) {
    Every(name);
  }
  EXPECT_EQ(Item(371), "B002C;0;0;1;0;1;1");
}

TEST_F(FaultTest, TheSensorsAreToldOf) {
  EXPECT_EQ(Property(RTF_PIDXFptr_CapCoverSensor), 1);
  EXPECT_EQ(Property(RTF_PIDXFptr_CapRecEmptySensor), 1);
  EXPECT_EQ(Property(RTF_PIDXFptr_CapRecNearEndSensor), 1);
  EXPECT_EQ(Property(RTF_PIDXFptr_CapRemainingFiscalMemory), 1);
  EXPECT_EQ(Property(RTF_PIDX_CapPowerReporting), RTF_PR_STANDARD);
}

TEST_F(FaultTest, OffLineForGoodAnswersNoDataItem) {
  Every("off-line");
  EXPECT_EQ(Item(371), "refused");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "refused");
  EXPECT_EQ(Property(RTF_PIDX_PowerState), RTF_PS_OFFLINE);
}

TEST_F(FaultTest, TheFiscalMemoryCountsDownToNothing) {
  struct {
    int last_closure;
    int left;
  } const rows[] = {{0, 9999}, {1, 9998}, {9999, 0}, {10000, 0}, {-1, 9999}};
  for (const auto& row : rows) {
    RegisterSettings settings = TestSettings();
    settings.last_closure = row.last_closure;
    VirtualRegister other(settings);
    int value = -1;
    EXPECT_EQ(other.GetIntProperty(RTF_PIDXFptr_RemainingFiscalMemory, &value), RTF_SUCCESS);
    EXPECT_EQ(value, row.left) << row.last_closure;
  }
}

}  // namespace
}  // namespace lorimat
