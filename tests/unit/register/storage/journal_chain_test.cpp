// The chain of the journal, worked out here apart from the register's own code, and what shows
// when somebody changes what is registered.
#include <openssl/evp.h>

#include <tuple>

#include "register/inspect/register_file.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

// The form that docs/register.md describes.
std::string N(int64_t number) { return std::to_string(number) + " "; }
std::string T(const std::string& text) { return std::to_string(text.size()) + ":" + text + " "; }

std::string Digest(const std::string& text) {
  unsigned char digest[32];
  unsigned int size = 0;
  EXPECT_EQ(EVP_Digest(text.data(), text.size(), digest, &size, EVP_sha256(), nullptr), 1);
  std::string hex;
  for (const unsigned char byte : digest) hex += fmt::format("{:02x}", byte);
  return hex;
}

class JournalChainTest : public StoredRegisterTest {
 protected:
  // Two days: documents of every kind, a closing, an abandoned and a non-fiscal document.
  void MakeDays() {
    Receipt(1, 100000);
    ASSERT_EQ(Begin(), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 50000, "PANE"), RTF_SUCCESS);
    ASSERT_EQ(SellPieces(2, 2000, 10000), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecItemAdjustmentEx(1, "", 1000, -1, -2), RTF_SUCCESS);
    ASSERT_EQ(PayPart(30000, "2"), RTF_SUCCESS);
    ASSERT_EQ(Pay(), RTF_SUCCESS);
    ASSERT_EQ(device->BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
    ASSERT_EQ(Sell(2, 70000), RTF_SUCCESS);
    ASSERT_EQ(Pay("5"), RTF_SUCCESS);
    ASSERT_EQ(device->BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
    ASSERT_EQ(device->PrintZReportEx(false), RTF_SUCCESS);
    ASSERT_EQ(Begin(), RTF_SUCCESS);
    ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
    ASSERT_EQ(device->BeginNonFiscal(), RTF_SUCCESS);
    ASSERT_EQ(device->EndNonFiscal(), RTF_SUCCESS);
    Receipt(3, 20000);
    Receipt(1, 30000);
    device.reset();
  }
  std::vector<std::string> Findings(const std::string& name = "shop.register") const {
    return FindingTexts(RegisterFile(Path(name)).VerifyJournal({}));
  }
  // What is found in a copy that these statements have changed.
  std::vector<std::string> After(const std::string& sql) const {
    std::filesystem::copy_file(Path("shop.register"), Path("changed"),
                               std::filesystem::copy_options::overwrite_existing);
    Sql("changed", sql);
    return Findings("changed");
  }
  void ExpectFound(const std::string& sql, const std::string& finding) {
    const std::vector<std::string> findings = After(sql);
    bool found = false;
    std::string all;
    for (const std::string& one : findings) {
      all += one + '\n';
      found = found || one.find(finding) == 0;
    }
    EXPECT_TRUE(found) << sql << "\nwanted: " << finding << "\nfound:\n" << all;
  }
};

TEST_F(JournalChainTest, AnUntouchedRegisterIsGood) {
  MakeDays();
  RegisterFile file(Path("shop.register"));
  std::vector<std::pair<uint64_t, uint64_t>> progress;
  const JournalCheck check = file.VerifyJournal([&](uint64_t done, uint64_t all) {
    progress.emplace_back(done, all);
    return true;
  });
  for (const std::string& finding : FindingTexts(check)) ADD_FAILURE() << finding;
  EXPECT_TRUE(check.good());
  EXPECT_EQ(check.entries, 9u);
  EXPECT_EQ(check.documents, 6u);
  ASSERT_EQ(progress.size(), 1u);
  EXPECT_EQ(progress[0], std::make_pair(uint64_t{9}, uint64_t{9}));
}

TEST_F(JournalChainTest, AnEmptyRegisterIsGood) {
  device.reset();
  EXPECT_TRUE(Findings().empty());
}

TEST_F(JournalChainTest, TheHashOfALinkIsThatOfItsText) {
  device.reset();
  std::string previous = Sql("shop.register", "SELECT journal_hash FROM ledger");
  previous.pop_back();
  const int64_t events = std::stoll(Sql("shop.register", "SELECT max(place) FROM event"));
  Start();
  // A non-fiscal document stands for nothing but its lines; an event counts it.
  ASSERT_EQ(device->BeginNonFiscal(), RTF_SUCCESS);
  ASSERT_EQ(device->EndNonFiscal(), RTF_SUCCESS);
  ASSERT_EQ(device->BeginNonFiscal(), RTF_SUCCESS);
  ASSERT_EQ(device->EndNonFiscal(), RTF_SUCCESS);
  const std::vector<JournalEntry> entries = device->store().journal();
  ASSERT_EQ(entries.size(), 2u);
  for (int64_t index = 0; index < 2; ++index) {
    previous = Digest(T(previous) + T("event") + N(events + index + 1) + N(index) + N(7) +
                      N(20240115103000) + T("") + T(""));
    const JournalEntry& entry = entries[static_cast<size_t>(index)];
    std::string text = T(previous) + N(index + 1) + N(0x100) + N(1) + N(0) + N(20240115103000) +
                       N(0) + N(static_cast<int64_t>(entry.lines.size()));
    for (const std::string& line : entry.lines) text += T(line);
    text += T("");
    EXPECT_EQ(entry.hash, Digest(text)) << index;
    previous = entry.hash;
  }
  EXPECT_EQ(device->store().journal_hash(), previous);
}

TEST_F(JournalChainTest, TheChainBeginsWithWhatTheRegisterIs) {
  device.reset();
  // Closing, invoice, non-fiscal and registered documents; six periods that began with the first
  // document; no summary and no receipt of the lottery waits.
  std::string beginning = N(0) + N(1) + N(0) + N(0) + N(6);
  for (int period = 0; period < 6; ++period) beginning += N(period) + N(0) + N(0) + N(1);
  beginning += N(0) + N(0);
  EXPECT_EQ(Sql("shop.register", "SELECT value FROM event WHERE place = 1"), beginning + "\n");
  EXPECT_EQ(
      Sql("shop.register", "SELECT hash FROM event WHERE place = 1"),
      Digest(T("") + T("event") + N(1) + N(0) + N(1) + N(20240115103000) + T("") + T(beginning)) +
          "\n");
  EXPECT_EQ(Sql("shop.register", "SELECT value FROM event WHERE subject = 'serial_number'"),
            T("") + T("99LRM0000001VR") + "\n");
  std::string rates;
  for (const auto& [number, rate, mark] : {std::tuple("1", "220000", ""),
                                           {"2", "100000", ""},
                                           {"3", "50000", ""},
                                           {"4", "40000", ""},
                                           {"5", "0", "ES*"}}) {
    rates += T(number) + T(rate) + T(mark);
  }
  EXPECT_EQ(Sql("shop.register", "SELECT value FROM event WHERE subject = 'vat_rate'"),
            T("") + T(Digest(rates)) + "\n");
}

TEST_F(JournalChainTest, TheHashOfAReceiptTakesInItsFiscalFacts) {
  const std::string previous = device->store().journal_hash();
  // 10.00 in department 1 (22 %: 1.80 of tax), paid in cash with 20.00.
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(SellPieces(1, 2000, 50000), RTF_SUCCESS);
  ASSERT_EQ(PayPart(200000, "0"), RTF_SUCCESS);
  const std::vector<JournalEntry> entries = device->store().journal();
  ASSERT_EQ(entries.size(), 1u);

  std::string figures;  // gross and tax, then ten figures that are 0, then the lines sold
  figures += N(100000) + N(18000);
  for (int figure = 2; figure < 24; ++figure) figures += N(figure == 12 ? 100000 : 0);
  const std::string sums = N(1) + N(1) + N(100000) +                  // by VAT entry
                           N(1) + N(1) + figures +                    // figures by VAT entry
                           N(1) + N(1) + N(2000) + N(100000) +        // by department
                           N(1) + N(1) + N(2000) + N(100000) +        // sold by department
                           N(1) + T("0") + N(100000) +                // by tender
                           N(1) + T("0") + N(1) +                     // payments by tender
                           N(1) + N(1) + N(1) + N(0) + N(0) + N(0) +  // counts: a document
                           N(1) + N(1) + N(100000) + N(1) +           // cash
                           N(0);                                      // no rates of another day
  const std::string facts = T("document") + N(1) + N(0) + N(1) + N(1) + N(20240115103000) + N(1) +
                            N(100000) + N(0) + N(100000) + N(0) + N(0) + T("") + N(0) + N(0) +
                            T(sums) +  //
                            N(1) + N(0) + N(0) + T("REPARTO 1") + T("") + N(1) + N(1) + N(2000) +
                            N(50000) + N(100000) + N(0) + N(0) +  //
                            N(1) + T("0") + N(200000);
  std::string text = T(previous) + N(1) + N(2) + N(1) + N(1) + N(20240115103000) + N(1) +
                     N(static_cast<int64_t>(entries[0].lines.size()));
  for (const std::string& line : entries[0].lines) text += T(line);
  text += T(facts);
  EXPECT_EQ(entries[0].hash, Digest(text));
}

// The days behind a closing are not held against what it says now.
TEST_F(JournalChainTest, AChangedClosingIsToldAloneAndOnce) {
  MakeDays();
  EXPECT_EQ(After("UPDATE journal SET lines = lines || 'x' || char(10) WHERE place = 5"),
            std::vector<std::string>{"entry 5, closing 0001: its hash does not fit: the entry, or "
                                     "what it stands for, was changed"});
}

TEST_F(JournalChainTest, AChangeOfAnyColumnOfADocumentIsFound) {
  MakeDays();
  const std::string finding =
      "entry 2, receipt 0001-0002: its hash does not fit: the entry, or what it stands for, was "
      "changed";
  for (const char* column :
       {"time", "operator", "total", "not_paid", "change", "discounts", "surcharges",
        "referred_closure", "referred_number", "closure", "number"}) {
    ExpectFound(fmt::format("UPDATE document SET {0} = {0} + 1 WHERE id = 2", column), finding);
  }
  ExpectFound("UPDATE document SET kind = 2 WHERE id = 2", finding);
  ExpectFound("UPDATE document SET lottery_code = 'X' WHERE id = 2", finding);
  ExpectFound("UPDATE document SET sums = (SELECT sums FROM document WHERE id = 1) WHERE id = 2",
              finding);
  ExpectFound("UPDATE document SET sums = 'nonsense' WHERE id = 2",
              "entry 2, receipt 0001-0002: its document cannot be read");
  ExpectFound("UPDATE document SET time = time + 100000000000000 WHERE id = 2",
              "entry 2, receipt 0001-0002: its document cannot be read");
}

TEST_F(JournalChainTest, AChangeOfAnyColumnOfALineOrAPaymentIsFound) {
  MakeDays();
  const std::string finding = "entry 2, receipt 0001-0002: its hash does not fit";
  for (const char* column : {"kind", "adjustment_type", "department", "vat", "quantity",
                             "unit_price", "amount", "quantity_taken_back", "taken_back"}) {
    ExpectFound(
        fmt::format("UPDATE document_line SET {0} = {0} + 1 WHERE document = 2 AND place = 1",
                    column),
        finding);
  }
  for (const char* column : {"description", "article"}) {
    ExpectFound(
        fmt::format("UPDATE document_line SET {0} = {0} || 'x' WHERE document = 2 AND place = 2",
                    column),
        finding);
  }
  ExpectFound("UPDATE document_line SET place = 9 - place WHERE document = 2", finding);
  ExpectFound("DELETE FROM document_line WHERE document = 2 AND place = 3", finding);
  ExpectFound("INSERT INTO document_line VALUES (2, 9, 0, 0, '', '', 1, 1, 1, 1, 1, 0, 0)",
              finding);
  ExpectFound("UPDATE document_payment SET amount = amount + 1 WHERE document = 2 AND place = 1",
              finding);
  ExpectFound("UPDATE document_payment SET tender = '1' WHERE document = 2 AND place = 1", finding);
  ExpectFound("DELETE FROM document_payment WHERE document = 2 AND place = 2", finding);
}

TEST_F(JournalChainTest, AChangeOfAnEntryIsFoundAndItAlone) {
  MakeDays();
  for (const char* change :
       {"lines = replace(lines, 'PANE', 'VINO')", "lines = lines || 'x'", "time = time + 1",
        "number = 7", "kind = 4", "closure = 2", "hash = replace(hash, substr(hash, 1, 1), 'x')"}) {
    const std::vector<std::string> findings =
        After(fmt::format("UPDATE journal SET {} WHERE place = 2", change));
    ASSERT_EQ(findings.size(), 1u) << change;
    EXPECT_EQ(findings[0].find("entry 2, "), 0u) << findings[0];
    EXPECT_NE(findings[0].find("its hash does not fit"), findings[0].npos) << findings[0];
  }
  ExpectFound("UPDATE journal SET document = 1 WHERE place = 2",
              "entry 2, receipt 0001-0002: its document has an entry already");
  ExpectFound("UPDATE journal SET document = 0 WHERE place = 2", "entry 2, receipt 0001-0002");
}

TEST_F(JournalChainTest, AnEntryThatIsGoneIsFound) {
  MakeDays();
  ExpectFound("DELETE FROM journal WHERE place = 1", "entry 1: missing");
  ExpectFound("DELETE FROM journal WHERE place = 2", "entry 2: missing");
  ExpectFound("DELETE FROM journal WHERE place = 2",
              "document 0001-0002: it has no entry in the journal");
  ExpectFound("DELETE FROM journal WHERE place IN (2, 3, 4)", "entries 2 to 4: missing");
  ExpectFound("DELETE FROM journal WHERE place = 9", "entry 9: missing at the end");
  ExpectFound("DELETE FROM journal WHERE place >= 8", "entries 8 to 9: missing at the end");
  ExpectFound("DELETE FROM journal", "entries 1 to 9: missing at the end");
  // With its document and the sums put right it still shows.
  ExpectFound(
      "DELETE FROM document_line WHERE document = 6; DELETE FROM document_payment WHERE document "
      "= 6; DELETE FROM document WHERE id = 6; DELETE FROM journal WHERE place = 9",
      "entry 9: missing at the end");
}

TEST_F(JournalChainTest, AnotherOrderIsFound) {
  MakeDays();
  const std::string swap =
      "UPDATE journal SET place = -1 WHERE place = 6; UPDATE journal SET place = 6 WHERE place = "
      "7; UPDATE journal SET place = 7 WHERE place = -1";
  ExpectFound(swap, "entry 6, non-fiscal document: its hash does not fit");
  ExpectFound(swap, "entry 7, cancelled document: its hash does not fit");
  // Closing the gap does not hide it.
  ExpectFound(
      "DELETE FROM journal WHERE place = 6; UPDATE journal SET place = place - 1 WHERE "
      "place > 6",
      "entry 6, non-fiscal document: its hash does not fit");
}

TEST_F(JournalChainTest, ADocumentThatIsGoneOrTooManyIsFound) {
  MakeDays();
  const char* remove =
      "DELETE FROM document_line WHERE document = {0}; DELETE FROM document_payment WHERE "
      "document = {0}; DELETE FROM document WHERE id = {0}";
  ExpectFound(fmt::format(fmt::runtime(remove), 2),
              "entry 2, receipt 0001-0002: its document is missing");
  ExpectFound(fmt::format(fmt::runtime(remove), 6),
              "entry 9, receipt 0002-0002: its document is missing");
  ExpectFound(
      "INSERT INTO document SELECT 7, kind, closure, 3, time, operator, total, not_paid, "
      "change, discounts, surcharges, lottery_code, referred_closure, referred_number, "
      "sums FROM document WHERE id = 6",
      "document 0002-0003: it has no entry in the journal");
  ExpectFound("INSERT INTO document_line VALUES (99, 1, 0, 0, '', '', 1, 1, 1, 1, 1, 0, 0)",
              "file: a row of \"lines of documents\" belongs to nothing");
}

TEST_F(JournalChainTest, AClosingThatWasChangedIsFound) {
  MakeDays();
  const std::string finding = "entry 5, closing 0001: its hash does not fit";
  for (const char* column : {"time", "documents", "sales", "invoices", "refunds", "cancels",
                             "abandoned", "non_fiscal", "grand_total"}) {
    ExpectFound(fmt::format("UPDATE closure SET {0} = {0} + 1", column), finding);
  }
  ExpectFound("UPDATE closure SET vat_rates = '0 '", finding);
  ExpectFound("UPDATE closure SET totals = (SELECT day_totals FROM ledger)", finding);
  ExpectFound("UPDATE closure SET totals = (SELECT day_totals FROM ledger)",
              "closing 0001: its totals are not the sum of its documents");
  ExpectFound("UPDATE closure SET sales = sales + 1",
              "closing 0001: its counters are not those of its documents");
  ExpectFound("UPDATE closure SET grand_total = grand_total + 100",
              "closing 0001: the grand total is not that of the days before and this one");
  ExpectFound("UPDATE closure SET totals = 'x'",
              "entry 5, closing 0001: the closing cannot be read");
  ExpectFound("DELETE FROM closure", "entry 5, closing 0001: the closing is missing");
  ExpectFound(
      "INSERT INTO closure SELECT 7, time, documents, sales, invoices, refunds, cancels, "
      "abandoned, non_fiscal, grand_total, vat_rates, totals FROM closure",
      "closing 0007: it has no entry in the journal");
}

TEST_F(JournalChainTest, NumbersBeyondEveryRangeAreFoundAndDoNoHarm) {
  MakeDays();
  const char* huge[] = {"9223372036854775807", "-9223372036854775807 - 1"};
  for (const char* value : huge) {
    for (const char* column : {"total", "not_paid", "change", "discounts", "surcharges"}) {
      EXPECT_FALSE(After(fmt::format("UPDATE document SET {} = {}", column, value)).empty());
    }
    EXPECT_FALSE(After(fmt::format("UPDATE document_line SET amount = {}", value)).empty());
    EXPECT_FALSE(After(fmt::format("UPDATE ledger SET grand_total = {}", value)).empty());
    EXPECT_FALSE(After(fmt::format("UPDATE closure SET grand_total = {}", value)).empty());
    EXPECT_FALSE(After(fmt::format("UPDATE journal SET time = {} WHERE place = 1", value)).empty());
    EXPECT_FALSE(
        After(fmt::format("UPDATE journal SET place = {} WHERE place = 9", value)).empty());
  }
  // Totals of the largest numbers: the register works with them, and adds up nonsense.
  const std::string totals =
      "(SELECT replace(replace(totals, '100000 ', '9223372036854775807 '), '70000 ', "
      "'9223372036854775807 ') FROM closure)";
  std::filesystem::copy_file(Path("shop.register"), Path("huge"));
  Sql("huge", "UPDATE closure SET totals = " + totals);
  Sql("huge",
      "UPDATE ledger SET day_totals = (SELECT totals FROM closure); UPDATE period SET "
      "totals = (SELECT totals FROM closure)");
  EXPECT_FALSE(Findings("huge").empty());
  VirtualRegister overflown(FileSettings("huge"));
  ASSERT_EQ(overflown.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(overflown.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(overflown.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  for (int kind = 0; kind <= 128; ++kind) {
    for (const int scope : {RTF_FPTR_TT_DAY, RTF_FPTR_TT_GRAND}) {
      char text[50] = "";
      overflown.GetTotalizerExtend(0, scope, kind, text);
    }
  }
  for (int kind = 1; kind <= 5; ++kind) {
    EXPECT_EQ(overflown.PeriodicReportMessageEx(kind, 0, "txt", "", 1, true), RTF_SUCCESS);
  }
  for (int kind = 0; kind <= 2; ++kind) {
    EXPECT_EQ(overflown.PrintXReportEx(kind, false, "txt", "", 1), RTF_SUCCESS);
  }
  EXPECT_EQ(overflown.SaveTelematicSummary(1, 1, Path("saved.xml").c_str()), RTF_SUCCESS);
  EXPECT_EQ(overflown.PrintZReport(), RTF_SUCCESS);
}

TEST_F(JournalChainTest, CountersAndTotalsThatWereChangedAreFound) {
  MakeDays();
  ExpectFound("UPDATE ledger SET day_totals = (SELECT totals FROM closure)",
              "the day: its totals are not the sum of its documents");
  for (const char* column : {"documents", "sales", "invoices", "refunds", "cancels", "abandoned"}) {
    ExpectFound(fmt::format("UPDATE ledger SET {0} = {0} + 1", column),
                "the day: its counters are not those of its documents");
  }
  ExpectFound("UPDATE ledger SET grand_total = grand_total - 100", "the day: the grand total");
  ExpectFound("UPDATE period SET totals = (SELECT day_totals FROM ledger) WHERE number = 0",
              "the totals of all days are not the sum of the closings");
  ExpectFound("UPDATE ledger SET journal_hash = ''",
              "entry 9: it is not the one that was made last");
  ExpectFound("UPDATE ledger SET journal_place = 8", "entry 9: behind the last one, which is 8");
  ExpectFound("UPDATE ledger SET last_document = 7",
              "documents: 7 were registered, the last one there is the 6.");
}

TEST_F(JournalChainTest, ADayNumberThatWasChangedIsFound) {
  MakeDays();
  ExpectFound("UPDATE ledger SET last_closure = 0",
              "the day: its number is 0001, and the journal is at 0002");
  ExpectFound("UPDATE ledger SET last_closure = 9999",
              "the day: its number is 10000, and the journal is at 0002");
  // Before the first closing, too.
  device = std::make_unique<VirtualRegister>(FileSettings("first"));
  Receipt(1, 10000);
  device.reset();
  Sql("first", "UPDATE ledger SET last_closure = 3");
  EXPECT_EQ(Findings("first"),
            std::vector<std::string>{"the day: its number is 0004, and the journal is at 0001"});
  // What is registered afterwards does not hide it: number 0001-0003 of the day that was closed
  // is given out a second time.
  std::filesystem::copy_file(Path("shop.register"), Path("back"));
  Sql("back", "UPDATE ledger SET last_closure = 0");
  device = std::make_unique<VirtualRegister>(FileSettings("back"));
  Receipt(1, 10000);
  Receipt(1, 10000);
  device.reset();
  EXPECT_EQ(Findings("back"),
            std::vector<std::string>{
                "entry 10, receipt 0001-0003: it is of the day 0001, and the day was 0002"});
}

TEST_F(JournalChainTest, ARegisterThatBeganWithALaterClosingIsGood) {
  RegisterSettings settings = FileSettings("later");
  settings.last_closure = 41;
  device = std::make_unique<VirtualRegister>(settings);
  EXPECT_TRUE((device.reset(), Findings("later").empty()));
  device = std::make_unique<VirtualRegister>(settings);
  Receipt(1, 10000);
  ASSERT_EQ(device->PrintZReportEx(false), RTF_SUCCESS);
  device.reset();
  EXPECT_TRUE(Findings("later").empty());
}

TEST_F(JournalChainTest, ADocumentInItsEndingHasNoEntryYet) {
  ASSERT_EQ(device->SetDataInternal(600, "1"), RTF_SUCCESS);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  CopyAsCut("shop.register", "cut");
  EXPECT_TRUE(Findings("cut").empty());
  Sql("cut", "DELETE FROM open_document");
  EXPECT_EQ(Findings("cut"),
            std::vector<std::string>{"document 0001-0001: it has no entry in the journal"});
}

TEST_F(JournalChainTest, ManyFindingsAreCounted) {
  for (int number = 0; number < 120; ++number) Receipt(1, 10000);
  device.reset();
  Sql("shop.register", "UPDATE journal SET lines = lines || 'x'");
  RegisterFile file(Path("shop.register"));
  const JournalCheck check = file.VerifyJournal({});
  EXPECT_EQ(check.findings.size(), JournalCheck::kMostFindings);
  EXPECT_EQ(check.findings_left_out, 20u);
  EXPECT_FALSE(check.good());
}

TEST_F(JournalChainTest, ACheckCanBeStopped) {
  for (int number = 0; number < 300; ++number) {
    ASSERT_EQ(Begin(), RTF_SUCCESS);
    ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
  }
  device.reset();
  RegisterFile file(Path("shop.register"));
  // Where the first entries have been read, and not within the pages ahead of them.
  int calls = 0;
  uint64_t told = 0;
  const JournalCheck check = file.VerifyJournal([&](uint64_t done, uint64_t all) {
    EXPECT_EQ(all, 300u);
    told = done;
    if (done != 0) ++calls;
    return done == 0;
  });
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(check.stopped);
  EXPECT_GT(told, 0u);
  EXPECT_LE(told, 256u);
  EXPECT_EQ(check.entries, told);
  EXPECT_TRUE(check.good());
}

}  // namespace
}  // namespace lorimat
