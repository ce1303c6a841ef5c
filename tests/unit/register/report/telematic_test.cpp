// The telematic summary, the lottery documents, and firmware files.
#include "pal/peripherals/keyboard/functioncode.h"
#include "register/report/report_file.h"
#include "register/value/digest.h"
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class Telematic : public ReportTest {
 protected:
  // 10,00 at 22 % in cash, 11,00 at 10 % by card, 5,00 exempt by ticket, a credit note of 3,00 at
  // 22 % in cash, an invoice of 4,00 at 4 % that is not paid.
  void SellADay() {
    Receipt(1, 100000);
    Receipt(2, 110000, "2");
    Receipt(5, 50000, "4");
    ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 30000), RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(4, 40000), RTF_SUCCESS);
    ASSERT_EQ(PayRest("5"), RTF_SUCCESS);
  }
  void LotteryReceipt(const char* code, const char* tender = "2") {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
    ASSERT_EQ(device.KeyCodeInput("", "", "", FunctionCode::kLotteryCode), RTF_SUCCESS);
    ASSERT_EQ(device.KeyCodeInput("", code, code, FunctionCode::kConfirm), RTF_SUCCESS);
    ASSERT_EQ(PayRest(tender), RTF_SUCCESS);
  }
};

std::string VatPart(const char* head, const char* sales, const char* refunds, const char* unpaid,
                    const char* invoices) {
  return std::string("    <Riepilogo>\n") + head + "      <Ammontare>" + sales +
         "</Ammontare>\n"
         "      <TotaleAmmontareResi>" +
         refunds +
         "</TotaleAmmontareResi>\n"
         "      <TotaleAmmontareAnnulli>0.00</TotaleAmmontareAnnulli>\n"
         "      <BeniInSospeso>0.00</BeniInSospeso>\n"
         "      <NonRiscossoServizi>0.00</NonRiscossoServizi>\n"
         "      <NonRiscossoFatture>" +
         unpaid +
         "</NonRiscossoFatture>\n"
         "      <TotaleDaFattureRT>" +
         invoices +
         "</TotaleDaFattureRT>\n"
         "      <NonRiscossoDCRaSSN>0.00</NonRiscossoDCRaSSN>\n"
         "      <NonRiscossoOmaggio>0.00</NonRiscossoOmaggio>\n"
         "    </Riepilogo>\n";
}

TEST_F(Telematic, TheSummaryOfADay) {
  SellADay();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device.SaveTelematicSummary(1, 1, Path("day.xml").c_str()), RTF_SUCCESS);
  const auto rate = [](const char* percent, const char* tax) {
    return std::string("      <IVA>\n        <AliquotaIVA>") + percent +
           "</AliquotaIVA>\n        <Imposta>" + tax + "</Imposta>\n      </IVA>\n";
  };
  EXPECT_EQ(
      ReadText("day.xml"),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<n1:DatiCorrispettivi versione=\"COR10\" simulazione=\"true\" "
      "xmlns:n1=\"http://ivaservizi.agenziaentrate.gov.it/docs/xsd/corrispettivi/dati/v1.0\">\n"
      "  <Trasmissione>\n"
      "    <Progressivo>1</Progressivo>\n"
      "    <Formato>RT</Formato>\n"
      "    <Dispositivo>\n"
      "      <Tipo>RT</Tipo>\n"
      "      <IdDispositivo>99LRM0000001VR</IdDispositivo>\n"
      "    </Dispositivo>\n"
      "    <PIVAEsercente>01234567897</PIVAEsercente>\n"
      "  </Trasmissione>\n"
      "  <DataOraRilevazione>2024-01-15T10:30:00</DataOraRilevazione>\n"
      "  <DatiRT>\n" +
          // 10,00 holds 1,80 of tax; 3,00 holds 0,54.
          VatPart(rate("22.00", "1.80").c_str(), "8.20", "2.46", "0.00", "0.00") +
          VatPart(rate("10.00", "1.00").c_str(), "10.00", "0.00", "0.00", "0.00") +
          // 4,00 holds 0,15.
          VatPart(rate("4.00", "0.15").c_str(), "3.85", "0.00", "3.85", "3.85") +
          VatPart("      <Natura>N4</Natura>\n", "5.00", "0.00", "0.00", "0.00") +
          "    <Totali>\n"
          "      <NumeroDocCommerciali>4</NumeroDocCommerciali>\n"
          "      <PagatoContanti>10.00</PagatoContanti>\n"
          "      <PagatoElettronico>11.00</PagatoElettronico>\n"
          "      <ScontoApagare>0.00</ScontoApagare>\n"
          "      <PagatoTicket>\n"
          "        <PagatoTicket>5.00</PagatoTicket>\n"
          "        <NumeroTicket>1</NumeroTicket>\n"
          "      </PagatoTicket>\n"
          "    </Totali>\n"
          "  </DatiRT>\n"
          "</n1:DatiCorrispettivi>\n");
}

TEST_F(Telematic, ClosuresWaitUntilTheyAreSent) {
  Receipt(1, 10000);
  EXPECT_EQ(Property(RTF_PIDXFptr_ZReportSendPending), 0);
  EXPECT_EQ(device.SendTelematicSummary(), RTF_SUCCESS);  // nothing to send
  ASSERT_EQ(device.PrintZReportEx(false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintZReportEx(false), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_ZReportSendPending), 1);
  EXPECT_EQ(Item(155), "2");
  EXPECT_EQ(Item(156), "15012024");
  EXPECT_EQ(device.SendTelematicSummary(), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_ZReportSendPending), 0);
  EXPECT_EQ(Item(155), "0");
  ASSERT_EQ(device.PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_ZReportSendPending), 0);
}

TEST_F(Telematic, ExportTakesThoseThatWaitAndLeavesThemWaiting) {
  const std::string file = Path("export.xml");
  EXPECT_EQ(device.ExportTelematicSummary(file.c_str()), RTF_E_NOEXIST);
  device.PrintZReportEx(true);
  EXPECT_EQ(device.ExportTelematicSummary(file.c_str()), RTF_E_NOEXIST);
  EXPECT_EQ(FileCount(), 0u);
  device.PrintZReportEx(false);
  device.PrintZReportEx(false);
  ASSERT_EQ(device.ExportTelematicSummary(file.c_str()), RTF_SUCCESS);
  const std::string text = ReadText("export.xml");
  EXPECT_EQ(text.find("<Progressivo>1<"), std::string::npos);
  EXPECT_NE(text.find("<CorrispettiviSalvati>\n<n1:DatiCorrispettivi"), std::string::npos);
  EXPECT_LT(text.find("<Progressivo>2<"), text.find("<Progressivo>3<"));
  EXPECT_TRUE(text.ends_with("</n1:DatiCorrispettivi>\n</CorrispettiviSalvati>\n"));
  EXPECT_EQ(Item(155), "2");
}

TEST_F(Telematic, SaveTakesARangeAllOfItOrByState) {
  device.PrintZReportEx(true);
  device.PrintZReportEx(false);
  const auto saved = [&](int from, int to, int options) {
    const std::string file = Path("range.xml");
    std::filesystem::remove(file);
    const int code = device.SaveTelematicSummaryEx(from, to, file.c_str(), options);
    std::string found = code == RTF_SUCCESS ? "" : std::to_string(code);
    for (const char* number : {"1", "2"}) {
      const std::string mark = std::string("<Progressivo>") + number + "<";
      if (ReadText("range.xml").find(mark) != std::string::npos) found += number;
    }
    return found;
  };
  EXPECT_EQ(saved(1, 9999, 0), "12");
  EXPECT_EQ(saved(2, 2, 0), "2");
  EXPECT_EQ(saved(1, 9999, 1), "2");
  EXPECT_EQ(saved(1, 9999, 2), "1");
  EXPECT_EQ(saved(1, 1, 1), "109");
  EXPECT_EQ(saved(3, 9, 0), "109");
  EXPECT_EQ(saved(0, 1, 0), "106");
  EXPECT_EQ(saved(2, 1, 0), "106");
  EXPECT_EQ(saved(1, 10000, 0), "106");
  EXPECT_EQ(saved(1, 1, 3), "106");
  EXPECT_EQ(saved(1, 1, -1), "106");
  EXPECT_EQ(device.SaveTelematicSummary(1, 1, ""), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SaveTelematicSummary(1, 1, nullptr), RTF_E_ILLEGAL);
}

TEST_F(Telematic, TextsOfTheShopAreEscaped) {
  RegisterSettings settings = TestSettings();
  settings.vat_number = "<&>\x01\xE0";
  VirtualRegister shop(settings);
  shop.PrintZReport();
  ASSERT_EQ(shop.SaveTelematicSummary(1, 1, Path("x.xml").c_str()), RTF_SUCCESS);
  EXPECT_NE(ReadText("x.xml").find("<PIVAEsercente>&lt;&amp;&gt;?\?</PIVAEsercente>"),
            std::string::npos);
}

TEST_F(Telematic, SentSummariesAreFilesOfTheOutbox) {
  RegisterSettings settings = TestSettings();
  settings.outbox = folder_.string();
  VirtualRegister shop(settings);
  shop.PrintZReportEx(false);
  EXPECT_EQ(FileCount(), 0u);
  ASSERT_EQ(shop.PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_NE(ReadText("corrispettivi_0001.xml").find("<Progressivo>1<"), std::string::npos);
  EXPECT_NE(ReadText("corrispettivi_0002.xml").find("<Progressivo>2<"), std::string::npos);
  EXPECT_EQ(FileCount(), 2u);
}

TEST_F(Telematic, NoFileOfOthersIsReplacedInTheOutbox) {
  RegisterSettings settings = TestSettings();
  settings.outbox = folder_.string();
  const std::string name = Path("corrispettivi_0001.xml");
  for (const char* other : {"", "VEND REP=1, PRE=1.00\n", "<?xml version=\"1.0\"?>\n<a/>\n"}) {
    std::ofstream(name) << other;
    VirtualRegister shop(settings);
    EXPECT_EQ(shop.PrintZReportEx(true), RTF_SUCCESS);
    EXPECT_EQ(shop.SendTelematicSummary(), RTF_E_FAILURE) << other;
    EXPECT_EQ(shop.store().pending_closures(), 1);
    EXPECT_EQ(ReadText("corrispettivi_0001.xml"), other);
  }
  std::filesystem::remove(name);
  for (const int waiting : {0, 1}) {
    VirtualRegister shop(settings);
    EXPECT_EQ(shop.PrintZReportEx(true), RTF_SUCCESS);
    EXPECT_EQ(shop.store().pending_closures(), waiting);
    EXPECT_NE(ReadText("corrispettivi_0001.xml").find("<IdDispositivo>99LRM0000001VR<"),
              std::string::npos);
    settings.serial_number = "99LRM0000002VR";
  }
}

TEST_F(Telematic, AClosingStandsWhenItsSendingFails) {
  RegisterSettings settings = TestSettings();
  settings.outbox = Path("missing");
  VirtualRegister shop(settings);
  shop.BeginFiscalReceipt(false);
  shop.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "");
  shop.PrintRecTotalEx(0, "0", true);
  EXPECT_EQ(shop.PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_EQ(shop.store().last_closure(), 1);
  EXPECT_EQ(shop.store().pending_closures(), 1);
  EXPECT_EQ(shop.SendTelematicSummary(), RTF_E_FAILURE);
  EXPECT_EQ(shop.store().pending_closures(), 1);
  std::filesystem::create_directory(folder_ / "missing");
  EXPECT_EQ(shop.SendTelematicSummary(), RTF_SUCCESS);
  EXPECT_EQ(shop.store().pending_closures(), 0);
  EXPECT_TRUE(HasFile("missing/corrispettivi_0001.xml"));
}

TEST_F(Telematic, LotteryDocumentsAreSavedAndSent) {
  const std::string file = Path("lottery.xml");
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_E_NOEXIST);
  EXPECT_EQ(device.TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_SUCCESS);
  LotteryReceipt("AB12CD34");
  Receipt(1, 10000);
  ASSERT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_SUCCESS);
  EXPECT_EQ(ReadText("lottery.xml"),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<DocumentiLotteria>\n"
            "  <IdDispositivo>99LRM0000001VR</IdDispositivo>\n"
            "  <Documento>\n"
            "    <Numero>0001-0001</Numero>\n"
            "    <DataOra>2024-01-15T10:30:00</DataOra>\n"
            "    <CodiceLotteria>AB12CD34</CodiceLotteria>\n"
            "    <Importo>2.00</Importo>\n"
            "    <PagatoElettronico>2.00</PagatoElettronico>\n"
            "    <Annullato>NO</Annullato>\n"
            "  </Documento>\n"
            "</DocumentiLotteria>\n");
  // Sent, they wait no more; by range they can still be had.
  EXPECT_EQ(device.TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_SUCCESS);
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_E_NOEXIST);
  EXPECT_EQ(device.TelematicDocument(0, 3, 1, 1, 1, 1, 1, file.c_str()), RTF_SUCCESS);
}

TEST_F(Telematic, LotteryDocumentsOfARange) {
  const std::string file = Path("range.xml");
  LotteryReceipt("AAAA1111");
  LotteryReceipt("BBBB2222");
  device.PrintZReport();
  LotteryReceipt("CCCC3333");
  const auto saved = [&](int from_z, int from, int to_z, int to) {
    std::filesystem::remove(file);
    const int code = device.TelematicDocument(0, 3, 1, from_z, from, to_z, to, file.c_str());
    if (code != RTF_SUCCESS) return std::to_string(code);
    std::string found;
    for (const char* mark : {"A", "B", "C"}) {
      if (ReadText("range.xml").find(std::string(4, *mark)) != std::string::npos) found += mark;
    }
    return found;
  };
  EXPECT_EQ(saved(1, 1, 1, 1), "A");
  EXPECT_EQ(saved(1, 2, 2, 1), "BC");
  EXPECT_EQ(saved(1, 0, 9999, 9999), "ABC");
  EXPECT_EQ(saved(2, 2, 2, 9), "109");
  EXPECT_EQ(saved(0, 1, 1, 1), "106");
  EXPECT_EQ(saved(2, 1, 1, 1), "106");
  EXPECT_EQ(saved(1, 2, 1, 1), "106");
  EXPECT_EQ(saved(1, 1, 10000, 1), "106");
  EXPECT_EQ(saved(1, -1, 1, 1), "106");
  EXPECT_EQ(device.TelematicDocument(1, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_E_ILLEGAL);
  EXPECT_EQ(device.TelematicDocument(0, 2, 2, 0, 0, 0, 0, file.c_str()), RTF_E_ILLEGAL);
  for (const unsigned operation : {0u, 1u, 4u, 6u, 255u}) {
    EXPECT_EQ(
        device.TelematicDocument(0, static_cast<uint8_t>(operation), 1, 0, 0, 0, 0, file.c_str()),
        RTF_E_ILLEGAL);
  }
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, Path("missing/lottery.xml").c_str()),
            RTF_E_FAILURE);
}

TEST_F(Telematic, TheClosingSendsLotteryDocumentsWhenAskedTo) {
  const std::string file = Path("lottery.xml");
  LotteryReceipt("AAAA1111");
  device.PrintZReport();
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_SUCCESS);
  device.SetIntProperty(RTF_PIDXFptr_SendLotteriaAEOnClosure, 1);
  device.PrintZReport();
  EXPECT_EQ(device.TelematicDocument(0, 2, 1, 0, 0, 0, 0, file.c_str()), RTF_E_NOEXIST);
}

TEST_F(Telematic, FirmwareIsCheckedBeforeItIsTaken) {
  const std::string image("image\n\0bytes", 12);
  const auto content = [](const std::string& version, const std::string& size,
                          const std::string& digest, const std::string& bytes) {
    return "LORIMAT FIRMWARE 1\nVERSION " + version + "\nSIZE " + size + "\nSHA256 " + digest +
           "\n\n" + bytes;
  };
  const std::string size = std::to_string(image.size());
  const std::string digest = Sha256(image);
  const std::string good = content("2.10", size, digest, image);
  const std::string name = Path("firmware.bin");
  const char* file = name.c_str();

  EXPECT_EQ(device.ProgramFirmware(file), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramFirmware(""), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramFirmware(nullptr), RTF_E_NOEXIST);
  EXPECT_EQ(device.ProgramFirmware(folder_.string().c_str()), RTF_EFIRMWARE_BAD_FILE);
  const std::string bad[] = {
      "",
      "LORIMAT FIRMWARE 1\n",
      "x",
      std::string(100000, '\0'),
      content("2.10", size, digest, ""),
      content("2.10", size, digest, image + "x"),
      content("2.10", std::to_string(image.size() + 1), digest, image + "x"),
      content("", size, digest, image),
      content(std::string(21, '9'), size, digest, image),
      content("2\x01", size, digest, image),
      content("2.10", "0" + size, digest, image),
      content("2.10", "-1", digest, image),
      "X" + good,
      good.substr(0, good.size() - 1),
  };
  for (const std::string& text : bad) {
    WriteText("firmware.bin", text);
    EXPECT_EQ(device.ProgramFirmware(file), RTF_EFIRMWARE_BAD_FILE) << text.substr(0, 80);
  }
  EXPECT_EQ(Item(103), "1.00");
  WriteText("firmware.bin", good);
  EXPECT_EQ(device.ProgramFirmware(file), RTF_SUCCESS);
  EXPECT_EQ(Item(103), "2.10");
  EXPECT_EQ(Data(RTF_FPTR_GD_FIRMWARE), "2.10");
}

TEST_F(Telematic, AFileIsWrittenWholeOrNotAtAll) {
  WriteText("kept.txt", "older");
  EXPECT_EQ(WriteFile(Path("kept.txt"), "newer"), RTF_SUCCESS);
  EXPECT_EQ(ReadText("kept.txt"), "newer");
  EXPECT_EQ(WriteFile(Path("missing/kept.txt"), "text"), RTF_E_FAILURE);
  EXPECT_EQ(WriteFile(folder_.string(), "text"), RTF_E_FAILURE);
  EXPECT_EQ(WriteFile("/dev/full", std::string(1000000, 'x')), RTF_E_FAILURE);
  EXPECT_EQ(FileCount(), 1u);
}

}  // namespace
}  // namespace lorimat
