#include "stored_register.h"

#include <sqlite3.h>
#include <stdlib.h>

#include <array>
#include <ctime>
#include <filesystem>

#include "bench_tools.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "register/totals/totals.h"

namespace {

using lorimat::VirtualRegister;

// Ten in the morning of a day of the register's life, counted from 0, and seconds behind it.
std::tm Morning(int64_t day, int seconds = 0) {
  std::tm first{};
  first.tm_year = 2020 - 1900;
  first.tm_mday = 1;
  first.tm_hour = 10;
  const time_t time = timegm(&first) + day * 24 * 60 * 60 + seconds;
  std::tm result{};
  gmtime_r(&time, &result);
  return result;
}

// The date as the register's rows have it, YYYYMMDD and six zeros for the time.
int64_t DateNumber(const std::tm& day) {
  return ((day.tm_year + 1900) * INT64_C(10000) + (day.tm_mon + 1) * 100 + day.tm_mday) * 1000000;
}

// Of a receipt: a coffee of 1.20 to 1.69, and 750 grams of bread at 3.90 the kilo, 2.93.
constexpr int kCoffees = 50;
constexpr lorimat::Amount kTotalOfADay =
    kReceiptsOfADay * (12000 + 29300) +
    kReceiptsOfADay / kCoffees * 100 * (kCoffees * (kCoffees - 1) / 2);

// One day by the register itself: receipts of two lines, paid in cash, and the closing.
void SellADay(const std::string& file) {
  int seconds = 0;
  lorimat::RegisterSettings settings;
  settings.file = file;
  settings.clock = [&seconds] { return Morning(0, seconds); };
  VirtualRegister device(settings);
  for (int i = 0; i < kReceiptsOfADay; ++i) {
    seconds = 30 * i;
    const bool sold = device.BeginFiscalReceipt(true) == 0 &&
                      device.PrintRecItemEx(0, "CAFFE", 12000 + 100 * (i % kCoffees), 0, -1, 0, "",
                                            2, true, "") == 0 &&
                      device.PrintRecItemEx(0, "PANE", 0, 750, -1, 39000, "", 4, true, "") == 0 &&
                      device.PrintRecTotalEx(0, "0", true) == 0;
    Require(sold, "the register refuses a sale");
  }
  Require(device.PrintZReportEx(true) == 0, "the register refuses the day closing");
}

// A connection that trades safety for speed: the file is not in use yet.
class Copier {
 public:
  explicit Copier(const std::string& file) {
    Require(sqlite3_open_v2(file.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK,
            "the register file does not open");
    Run("PRAGMA locking_mode = EXCLUSIVE");
    Run("PRAGMA journal_mode = OFF");
    Run("PRAGMA synchronous = OFF");
    Run("PRAGMA cache_size = -200000");
    Run("BEGIN");
  }
  ~Copier() { sqlite3_close(handle_); }
  Copier(const Copier&) = delete;
  Copier& operator=(const Copier&) = delete;

  void Commit() {
    Run("COMMIT");
    Run("PRAGMA journal_mode = WAL");
  }

  // Binds the values to ?1, ?2 ... and runs the statement.
  void Run(const char* sql, std::initializer_list<int64_t> values = {}) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr));
    // Not every statement uses them all.
    const int wanted = sqlite3_bind_parameter_count(statement);
    int parameter = 0;
    for (const int64_t value : values) {
      if (parameter < wanted) Check(sqlite3_bind_int64(statement, ++parameter, value));
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
    }
    Check(sqlite3_finalize(statement));
  }

  std::string ReadText(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr));
    Require(sqlite3_step(statement) == SQLITE_ROW, sql);
    const void* text = sqlite3_column_text(statement, 0);
    std::string result(static_cast<const char*>(text),
                       static_cast<size_t>(sqlite3_column_bytes(statement, 0)));
    Check(sqlite3_finalize(statement));
    return result;
  }

  void WriteText(const char* sql, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(handle_, sql, -1, &statement, nullptr));
    Check(
        sqlite3_bind_text(statement, 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC));
    sqlite3_step(statement);
    Check(sqlite3_finalize(statement));
  }

 private:
  void Check(int code) { Require(code == SQLITE_OK, sqlite3_errmsg(handle_)); }

  sqlite3* handle_ = nullptr;
};

// ?1 the number of the day, counted from 0; ?2 its date; ?3 the receipts of a day. The first day
// is the closure 1, and its journal has an entry for each receipt and one for the closing. The
// copies keep the texts and hashes of the first day, so that a check of the journal would complain;
// numbers, times and sums are right.
constexpr std::array<const char*, 5> kCopies = {
    "INSERT INTO document SELECT id + ?1 * ?3, kind, closure + ?1, number, ?2 + time % 1000000, "
    "operator, total, not_paid, change, discounts, surcharges, lottery_code, referred_closure, "
    "referred_number, sums FROM document WHERE id <= ?3",
    "INSERT INTO document_line SELECT document + ?1 * ?3, place, kind, adjustment_type, "
    "description, article, department, vat, quantity, unit_price, amount, quantity_taken_back, "
    "taken_back FROM document_line WHERE document <= ?3",
    "INSERT INTO document_payment SELECT document + ?1 * ?3, place, tender, amount FROM "
    "document_payment WHERE document <= ?3",
    "INSERT INTO journal SELECT place + ?1 * (?3 + 1), kind, closure + ?1, number, "
    "?2 + time % 1000000, iif(document = 0, 0, document + ?1 * ?3), lines, hash FROM journal "
    "WHERE place <= ?3 + 1",
    "INSERT INTO closure SELECT number + ?1, ?2 + time % 1000000, documents, sales, invoices, "
    "refunds, cancels, abandoned, non_fiscal, grand_total * (?1 + 1), vat_rates, totals FROM "
    "closure WHERE number = 1",
};

void CopyTheDay(const std::string& file, int64_t days) {
  Copier copier(file);
  for (int64_t day = 1; day < days; ++day) {
    for (const char* copy : kCopies) {
      copier.Run(copy, {day, DateNumber(Morning(day)), kReceiptsOfADay});
    }
  }
  copier.Run(
      "UPDATE ledger SET last_closure = ?1, last_document = ?1 * ?2, first_of_day = ?1 * ?2 + 1, "
      "journal_place = ?1 * (?2 + 1), grand_total = grand_total * ?1",
      {days, kReceiptsOfADay});
  // What all closed days come to: that of the first one as many times.
  lorimat::Totals one;
  Require(lorimat::Totals::FromRecord(
              copier.ReadText("SELECT totals FROM closure WHERE number = 1"), &one),
          "the totals of the day cannot be read");
  lorimat::Totals all;
  for (int64_t day = 0; day < days; ++day) all.Add(one);
  copier.WriteText("UPDATE period SET totals = ?1", all.ToRecord());
  copier.Commit();
  // The ledger is believed, so the rows are counted once.
  const std::string rows = copier.ReadText(
      "SELECT (SELECT count(*) FROM document) || ' ' || (SELECT count(*) FROM document_line) || "
      "' ' || (SELECT count(*) FROM journal) || ' ' || (SELECT sum(total) FROM document)");
  const int64_t receipts = days * kReceiptsOfADay;
  Require(rows == std::to_string(receipts) + " " + std::to_string(2 * receipts) + " " +
                      std::to_string(receipts + days) + " " + std::to_string(days * kTotalOfADay),
          "the register file lacks rows");
}

}  // namespace

StoredRegister::StoredRegister() : receipts_(kReceiptsOfADay) {
  MakeFolder();
  SellADay(file_);
  Check();
}

StoredRegister::StoredRegister(const StoredRegister& day, int64_t receipts) : receipts_(receipts) {
  Require(day.receipts() == kReceiptsOfADay, "a single day is to be copied");
  Require(receipts > 0 && receipts % kReceiptsOfADay == 0, "a register has whole days");
  MakeFolder();
  std::filesystem::copy_file(day.file(), file_);
  CopyTheDay(file_, days());
  Check();
}

void StoredRegister::MakeFolder() {
  folder_ = (std::filesystem::temp_directory_path() / "lorimat-bench-XXXXXX").string();
  Require(mkdtemp(folder_.data()) != nullptr, "the temporary folder cannot be made");
  file_ = folder_ + "/register";
}

void StoredRegister::Check() const {
  const lorimat::RegisterStatus status = lorimat::RegisterFile(file_).Status();
  Require(status.documents == static_cast<uint64_t>(receipts_) && status.closures == days() &&
              status.journal_entries == static_cast<uint64_t>(receipts_ + days()) &&
              status.grand_total == days() * kTotalOfADay && !status.day_open,
          "the register file does not hold what it should");
}

StoredRegister::~StoredRegister() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

lorimat::RegisterSettings StoredRegister::settings() const {
  lorimat::RegisterSettings settings;
  settings.file = file_;
  settings.clock = [day = days()] { return Morning(day); };
  return settings;
}
