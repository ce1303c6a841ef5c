// Whatever is changed in a register's file by hand, the check of its journal tells of it: tried on
// every table and every column of a register that has seen everything. What the check cannot know
// stands in a list.
#include <set>

#include "register/inspect/register_file.h"
#include "unit/register/filled_register.h"
#include "unit/register/journal_exceptions.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

struct Column {
  std::string name;
  std::string type;
  bool in_key = false;
};

class JournalChangesTest : public StoreTest {
 protected:
  void Make() {
    Write("logo.png", "x");
    {
      VirtualRegister device(FileSettings());
      RegisterFiller(device).Fill(Path("logo.png").c_str());
    }
    // The same with a receipt that is paid and has not ended.
    VirtualRegister device(FileSettings("at work"));
    RegisterFiller filler(device);
    filler.Fill(Path("logo.png").c_str());
    filler.LeaveInItsEnding();
    CopyAsCut("at work", "cut");
    Sql("cut", "PRAGMA wal_checkpoint(TRUNCATE)");
  }

  std::vector<std::string> Lines(const std::string& name, const std::string& sql) const {
    std::vector<std::string> lines;
    std::string line;
    for (const char c : Sql(name, sql)) {
      if (c == '\n') {
        lines.push_back(std::move(line));
        line.clear();
      } else {
        line += c;
      }
    }
    return lines;
  }
  std::vector<Column> Columns(const std::string& table) const {
    std::vector<Column> columns;
    for (const std::string& row :
         Lines("shop.register",
               "SELECT name || ' ' || pk || ' ' || type FROM pragma_table_info('" + table + "')")) {
      const size_t first = row.find(' ');
      const size_t second = row.find(' ', first + 1);
      columns.push_back({row.substr(0, first), row.substr(second + 1), row[first + 1] != '0'});
    }
    return columns;
  }

  // Changes a copy. False when SQLite itself refuses the change, or it changes no row.
  bool Change(const std::string& from, const std::string& sql) const {
    std::filesystem::copy_file(Path(from), Path("changed"),
                               std::filesystem::copy_options::overwrite_existing);
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open_v2(Path("changed").c_str(), &database, SQLITE_OPEN_READWRITE,
                              FailingDisk::RealName()),
              SQLITE_OK);
    sqlite3_exec(database, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    const int code = sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
    const bool changed = code == SQLITE_OK && sqlite3_total_changes(database) > 0;
    EXPECT_TRUE(code == SQLITE_OK || (code & 0xFF) == SQLITE_CONSTRAINT ||
                (code & 0xFF) == SQLITE_MISMATCH)
        << sql << ": " << sqlite3_errmsg(database);
    sqlite3_close(database);
    return changed;
  }
  bool Found() const {
    try {
      return !RegisterFile(Path("changed")).VerifyJournal({}).good();
    } catch (const RegisterError&) {
      return true;
    }
  }
  void ExpectFound(const std::string& from, const std::string& sql) {
    if (!Change(from, sql)) return;
    ++changes;
    EXPECT_TRUE(Found()) << sql;
  }

  // The first two rows, the one in the middle and the last two, by their keys; of small tables
  // all.
  std::vector<std::string> Rows(const std::string& from, const std::string& table,
                                const std::string& key) const {
    const std::vector<std::string> all =
        Lines(from, "SELECT " + key + " FROM " + table + " ORDER BY " + key);
    const size_t count = all.size();
    if (count <= 6 || table == "setting") return all;
    return {all[0], all[1], all[count / 2], all[count - 2], all[count - 1]};
  }

  void ChangeTable(const std::string& from, const std::string& table) {
    const std::vector<Column> columns = Columns(table);
    std::string key;
    std::string last_key;
    for (const Column& column : columns) {
      if (!column.in_key) continue;
      key += (key.empty() ? "" : " || '/' || ") + column.name;
      last_key = column.name;
    }
    const std::vector<std::string> rows = Rows(from, table, key);
    for (size_t row = 0; row < rows.size(); ++row) {
      if (table == "setting" && IsJournalException(table, rows[row])) continue;
      const std::string where = " WHERE " + key + " = '" + rows[row] + "'";
      ExpectFound(from, "DELETE FROM " + table + where);
      std::string copied;
      for (const Column& column : columns) {
        const std::string other = column.name != last_key ? column.name
                                  : column.type == "INTEGER"
                                      ? "(SELECT max(" + column.name + ") + 1 FROM " + table + ")"
                                      : column.name + " || 'x'";
        copied += (copied.empty() ? "" : ", ") + other;
      }
      ExpectFound(from, "INSERT INTO " + table + " SELECT " + copied + " FROM " + table + where);
      for (const Column& column : columns) {
        if (IsJournalException(table, column.name)) continue;
        const std::string update = "UPDATE " + table + " SET " + column.name + " = ";
        if (column.type == "INTEGER") {
          for (const char* other : {" + 1", " - 1", " || 'x'"}) {
            ExpectFound(from, update + column.name + other + where);
          }
          continue;
        }
        ExpectFound(from, update + column.name + " || 'x'" + where);
        // A number in a text, or the last of them, by one more.
        ExpectFound(from, update + "CAST(" + column.name + " + 1 AS TEXT)" + where + " AND CAST(" +
                              column.name + " + 0 AS TEXT) = " + column.name);
        ExpectFound(from, update + "''" + where + " AND " + column.name + " <> ''");
        // The value of the next row.
        if (column.in_key || row + 1 == rows.size()) continue;
        const std::string there = "(SELECT " + column.name + " FROM " + table + " WHERE " + key +
                                  " = '" + rows[row + 1] + "')";
        ExpectFound(from, update + there + where + " AND " + column.name + " <> " + there);
      }
      if (row + 1 < rows.size()) Swap(from, table, columns, key, rows[row], rows[row + 1]);
    }
  }

  // All but the key of two rows.
  void Swap(const std::string& from, const std::string& table, const std::vector<Column>& columns,
            const std::string& key, const std::string& first, const std::string& second) {
    if (IsJournalException(table, second)) return;
    std::string set;
    std::string differ;
    for (const Column& column : columns) {
      if (column.in_key) continue;
      const auto value = [&](const std::string& row) {
        return Lines(from, "SELECT hex(CAST(" + column.name + " AS BLOB)) || ' ' || typeof(" +
                               column.name + ") FROM " + table + " WHERE " + key + " = '" + row +
                               "'")[0];
      };
      const auto literal = [](const std::string& quoted) {
        const size_t blank = quoted.find(' ');
        return "CAST(X'" + quoted.substr(0, blank) + "' AS " + quoted.substr(blank + 1) + ")";
      };
      const std::string a = value(first);
      const std::string b = value(second);
      if (a != b) differ = "yes";
      set += (set.empty() ? "" : ", ") + column.name + " = CASE " + key + " WHEN '" + first +
             "' THEN " + literal(b) + " ELSE " + literal(a) + " END";
    }
    if (differ.empty()) return;
    ExpectFound(from, "UPDATE " + table + " SET " + set + " WHERE " + key + " IN ('" + first +
                          "', '" + second + "')");
  }

  int changes = 0;
};

TEST_F(JournalChangesTest, TheRegistersThemselvesAreGood) {
  Make();
  for (const char* name : {"shop.register", "cut"}) {
    for (const std::string& finding : FindingTexts(RegisterFile(Path(name)).VerifyJournal({}))) {
      ADD_FAILURE() << name << ": " << finding;
    }
  }
}

TEST_F(JournalChangesTest, AnyChangeInAnyTableIsFound) {
  Make();
  const std::vector<std::string> tables =
      Lines("shop.register", "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
  EXPECT_EQ(tables.size(), 22u);
  for (const std::string& table : tables) {
    if (IsJournalException(table, "*")) continue;
    const int before = changes;
    ChangeTable(table == "open_document" ? "cut" : "shop.register", table);
    EXPECT_GT(changes, before) << table;
  }
  EXPECT_GT(changes, 1300);
}

// The list of exceptions holds nothing that is compared.
TEST_F(JournalChangesTest, AChangeOfAnExceptionIsNoFinding) {
  Make();
  for (const JournalException& one : kJournalExceptions) {
    const std::string table = one.table;
    const std::string value = std::string(one.column) == "faults" ? "" : "2";
    ASSERT_TRUE(Change("shop.register",
                       table == "setting" ? fmt::format("REPLACE INTO setting VALUES ('{}', '{}')",
                                                        one.column, value)
                                          : "DELETE FROM " + table))
        << table;
    EXPECT_FALSE(Found()) << table << " " << one.column;
  }
}

TEST_F(JournalChangesTest, ChangesOfManyRowsAndOfTheTablesAreFound) {
  Make();
  // What was sent is put among what waits, and what was never set is set.
  for (const char* sql :
       {"INSERT INTO summary_waiting SELECT number FROM closure WHERE number NOT IN "
        "(SELECT closure FROM summary_waiting)",
        "INSERT INTO lottery_waiting SELECT min(id) FROM document WHERE lottery_code <> ''",
        "INSERT INTO lottery_waiting SELECT min(id) FROM document WHERE lottery_code = ''",
        "DELETE FROM lottery_waiting", "DELETE FROM summary_waiting",
        "REPLACE INTO setting VALUES ('training', '1')",
        "REPLACE INTO setting VALUES ('clock_offset', '-86400')",
        "UPDATE period SET cleared = 1, time = 20240115103000 WHERE number = 5",
        "UPDATE ledger SET next_invoice = 1", "UPDATE ledger SET first_of_day = 1",
        "UPDATE ledger SET non_fiscal = 0",
        "UPDATE document_line SET place = place + 100 WHERE document = 2",
        "UPDATE document_payment SET place = place - 1 WHERE document = 2",
        "DELETE FROM event WHERE place = (SELECT max(place) FROM event)", "DELETE FROM event"}) {
    ASSERT_TRUE(Change("shop.register", sql)) << sql;
    EXPECT_TRUE(Found()) << sql;
  }
  // Tables that do something by themselves.
  for (const char* sql :
       {"CREATE TRIGGER t AFTER INSERT ON document BEGIN UPDATE ledger SET next_invoice = 1; END",
        "DROP INDEX document_by_time", "CREATE TABLE other (x)"}) {
    Change("shop.register", sql);
    EXPECT_TRUE(Found()) << sql;
  }
}

TEST_F(JournalChangesTest, WhatAHostMayDoIsNoFinding) {
  Make();
  const auto expect_good = [this](const char* when) {
    for (const std::string& finding :
         FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal({}))) {
      ADD_FAILURE() << when << ": " << finding;
    }
  };
  const auto start = [this] { return std::make_unique<VirtualRegister>(FileSettings()); };
  {
    const auto device = start();
    ASSERT_EQ(device->SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 5), RTF_SUCCESS);
  }
  expect_good("an earlier number of invoices");
  RegisterFiller(*start()).LeaveOpen();
  expect_good("a document in progress");
  {
    const auto device = start();
    ASSERT_TRUE(device->cut_off());
    ASSERT_EQ(device->SetDataInternal(459, "1"), RTF_SUCCESS);
    ASSERT_EQ(device->OpenDrawer(), RTF_SUCCESS);
  }
  expect_good("a start behind a cut, and options");
  RegisterFiller(*start()).LeaveInItsEnding();
  expect_good("a receipt that is paid and has not ended");
  {
    const auto device = start();
    ASSERT_EQ(device->SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, RTF_FPTR_RT_CASH_IN),
              RTF_SUCCESS);
    ASSERT_EQ(device->BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecCash(50000), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecTotal(50000, 50000, "0"), RTF_SUCCESS);
    ASSERT_EQ(device->BeginNonFiscal(), RTF_SUCCESS);
    ASSERT_EQ(device->ResetPrn(), RTF_SUCCESS);
  }
  expect_good("cash in, and a non-fiscal document that is given up");
  {
    const auto device = start();
    for (int period = 1; period <= 5; ++period) {
      ASSERT_EQ(device->PeriodicReportMessageEx(period, 0, "txt", "", 1, true), RTF_SUCCESS);
    }
    ASSERT_EQ(device->PrintZReportEx(true), RTF_SUCCESS);
    ASSERT_EQ(device->PrintZReportEx(true), RTF_SUCCESS);
  }
  expect_good("all periods cleared, and all sent");
  {
    const auto device = start();
    ASSERT_EQ(device->SetDate("160120241200"), RTF_SUCCESS);
    ASSERT_EQ(device->SetVatValue(1, "230000"), RTF_SUCCESS);
    ASSERT_EQ(device->SetVatTable(), RTF_SUCCESS);
  }
  expect_good("the clock and a rate");
  RegisterFile::ChangeFaults(Path("shop.register"), [](FaultPlan* plan) { plan->Clear(); });
  expect_good("faults");
}

TEST_F(JournalChangesTest, NumbersThatAreGivenOutAgainAreFoundLater) {
  Make();
  Sql("shop.register", "UPDATE ledger SET next_invoice = 41");
  {
    VirtualRegister device(FileSettings());
    ASSERT_EQ(device.BeginDocInvoice("A", "", "", "", ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  EXPECT_EQ(FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal({})),
            std::vector<std::string>{"invoice 41: its number does not go on from the one before, "
                                     "the next was 43"});
}

TEST_F(JournalChangesTest, WorkBehindAChangeDoesNotHideIt) {
  Make();
  const struct {
    const char* sql;
    const char* code;
  } cases[] = {
      {"UPDATE setting SET value = '99LRM9999999VR' WHERE name = 'serial_number'", "programmed"},
      {"UPDATE vat_rate SET rate = 100000 WHERE number = 1", "programmed-before"},
      {"UPDATE setting SET value = '00000000000' WHERE name = 'fiscal_id'", "programmed-before"},
      {"INSERT INTO summary_waiting VALUES (1)", "sent-twice"},
      {"DELETE FROM summary_waiting WHERE closure = 2", "summary-waits-not"},
      {"INSERT INTO lottery_waiting SELECT min(id) FROM document WHERE lottery_code <> ''",
       "sent-twice"},
      {"DELETE FROM lottery_waiting WHERE document IN (SELECT min(document) FROM lottery_waiting)",
       "lottery-waits-not"},
      {"UPDATE period SET cleared = 0, time = 0 WHERE number = 2", "period"},
      {"UPDATE ledger SET non_fiscal = 0", "closing-counters"},
      {"UPDATE ledger SET documents = 1", "closing-counters"},
  };
  for (const auto& [sql, code] : cases) {
    ASSERT_TRUE(Change("shop.register", sql)) << sql;
    {
      VirtualRegister device(FileSettings("changed"));
      ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
      ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
      ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
      ASSERT_EQ(device.PrintZReportEx(true), RTF_SUCCESS);
      ASSERT_EQ(device.TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_SUCCESS);
      ASSERT_EQ(device.SetVatValue(2, "110000"), RTF_SUCCESS);
      ASSERT_EQ(device.SetVatTable(), RTF_SUCCESS);
      ASSERT_EQ(device.SetStoreFiscalID("12345678903"), RTF_SUCCESS);
      ASSERT_EQ(device.OpenDrawer(), RTF_SUCCESS);
    }
    std::set<std::string> codes;
    for (const Finding& finding : RegisterFile(Path("changed")).VerifyJournal({}).findings) {
      codes.insert(console::JournalFindingCode(finding));
    }
    EXPECT_EQ(codes.count(code), 1u) << sql << " " << fmt::format("{}", fmt::join(codes, " "));
  }
}

TEST_F(JournalChangesTest, EveryFindingHasASentenceAndACodeOfItsOwn) {
  std::set<std::string> sentences;
  std::set<std::string> codes;
  const console::EnglishMessages english;
  const int last = static_cast<int>(FindingKind::kLast);
  for (int kind = 0; kind <= last; ++kind) {
    Finding finding;
    finding.kind = static_cast<FindingKind>(kind);
    finding.text = "text";
    finding.failure.cause = FailureCause::kDiskFull;
    sentences.insert(console::JournalFindingText(finding));
    codes.insert(console::JournalFindingCode(finding));
  }
  EXPECT_EQ(sentences.size(), static_cast<size_t>(last) + 1);
  EXPECT_EQ(codes.size(), static_cast<size_t>(last) + 1);
  EXPECT_EQ(sentences.count(""), 0u);
  EXPECT_EQ(codes.count(""), 0u);
}

}  // namespace
}  // namespace lorimat
