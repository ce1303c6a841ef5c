// A folder for register files, and everything that a register holds as one text, for comparison
// before and after.
#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "console/message/journal_finding.h"
#include "console/message/translate.h"
#include "register/desk/data_items.h"
#include "register/inspect/register_file.h"
#include "register/storage/entry_digest.h"
#include "support/temporary_folder.h"
#include "unit/register/database_dump.h"
#include "unit/register/failing_disk.h"
#include "unit/register/register_fixture.h"

namespace lorimat {

// The rows of paper that are more than text.
inline std::string PaperImage(const Paper& paper) {
  std::string image = fmt::format("dropped {}\n", paper.dropped()) + paper.text();
  for (const PaperRow& row : paper.rows()) {
    image += fmt::format("row {} +{}", row.line, row.line_count);
    if (const auto* sized = std::get_if<SizedRow>(&row.content)) {
      for (const char size : sized->sizes) image += fmt::format(" {}", int{size});
    } else if (const auto* barcode = std::get_if<BarcodeRow>(&row.content)) {
      image += fmt::format(" barcode {} {} {} {} {}", barcode->type, barcode->data, barcode->scale,
                           barcode->check_digit, static_cast<int>(barcode->alignment));
    } else if (const auto* logo = std::get_if<LogoRow>(&row.content)) {
      image += " logo " + logo->file;
    } else {
      image += " cut";
    }
    image += '\n';
  }
  return image;
}

inline std::string TableImage(const Tables& tables) {
  const RegisterSettings& settings = tables.settings();
  std::string image =
      fmt::format("serial {} groups {} operators {} flags {} {} {}\n", settings.serial_number,
                  settings.groups, settings.operators, settings.extended_departments,
                  settings.programming_needs_key, settings.fixed_decimal_point);
  for (const std::string& line : settings.header_lines) image += "header " + line + '\n';
  for (const VatRate& rate : settings.vat_rates) {
    image += fmt::format("vat {} '{}'\n", rate.rate, rate.mark);
  }
  for (const Department& row : settings.departments) {
    image += fmt::format("department {} {} {} {} {} {} {} {} {} {}\n", row.name, row.vat, row.price,
                         row.max_price, row.group, row.quantity, row.single_shoot,
                         row.allow_discount, row.force_description, row.is_service);
  }
  for (const GroupRow& row : tables.groups()) {
    image +=
        fmt::format("group {} {} {} {}\n", row.description, row.password, row.flags, row.options);
  }
  for (const Subtender& row : tables.subtenders()) {
    image += fmt::format("subtender {} '{}' {} {} {}\n", static_cast<int>(row.kind),
                         row.description, row.flags, row.preset_value, row.max_digits);
  }
  for (const Tender& row : tables.tenders()) {
    image += fmt::format("tender {} {} {} {} {}\n", row.id, row.name, static_cast<int>(row.kind),
                         row.gives_change, row.keeps_rest);
  }
  for (const Article& row : settings.articles) {
    image +=
        fmt::format("article {} {} {} {}\n", row.code, row.description, row.department, row.price);
  }
  for (const auto& [number, file] : tables.logos()) {
    image += fmt::format("logo {} {}\n", number, file);
  }
  return image;
}

inline std::string StoreImage(const RegisterStore& store) {
  const DailyCounters& counters = store.counters();
  std::string image =
      fmt::format("closure {} invoice {} counters {} {} {} {} {} {} {} grand {} pending {}\n",
                  store.last_closure(), store.next_invoice(), counters.documents, counters.sales,
                  counters.invoices, counters.refunds, counters.cancels, counters.abandoned,
                  counters.non_fiscal, store.grand_total(), store.pending_closures());
  image += "day " + store.day().ToRecord() + "\ngrand " + store.GrandTotals().ToRecord() + '\n';
  for (int period = 1; period <= RegisterStore::kPeriods; ++period) {
    const PeriodStart& start = store.period_start(period);
    image +=
        fmt::format("period {} {} {} {}\n", start.cleared, start.first_document,
                    start.cleared ? start.time.tm_min : 0, store.PeriodTotals(period).ToRecord());
  }
  for (const StoredDocument& document : store.documents()) {
    image += fmt::format("{} voided {} sent {}\n", DocumentFacts(document), document.voided,
                         document.lottery_sent);
  }
  for (const Closure& closure : store.closures()) {
    image += fmt::format("{} sent {}\n", ClosureFacts(closure), closure.sent);
  }
  for (const JournalEntry& entry : store.journal()) {
    image += fmt::format("entry {} {} {} {} {} {}\n", static_cast<int>(entry.kind), entry.closure,
                         entry.number, entry.time.tm_min, entry.document, entry.hash);
    for (const std::string& line : entry.lines) image += "  " + line + '\n';
  }
  return image;
}

// What is set beside the tables: data items but the clock, keyboards, properties.
inline std::string SettingImage(VirtualRegister& device) {
  std::string image;
  for (const DataItem& item : DataItems()) {
    char text[50] = "";
    if (item.number == 149 || item.number == 368) continue;  // the clock, the last key
    EXPECT_EQ(device.GetDataInternal(item.number, text), RTF_SUCCESS) << item.number;
    image += fmt::format("item {} {}\n", item.number, text);
  }
  for (int8_t keyboard = 0; keyboard < 3; ++keyboard) {
    for (uint8_t position = 1; position <= 120; ++position) {
      uint8_t code = 0;
      char macro[40] = "";
      uint16_t size = 0;
      int8_t number = keyboard;
      if (device.ConfigKeyboard(false, position, &code, &number, macro, &size) != RTF_SUCCESS) {
        break;
      }
      image += fmt::format("key {} {} {} {} {}\n", keyboard, position, code, macro, size);
    }
  }
  for (const int property :
       {RTF_PIDXFptr_SendLotteriaAEOnClosure, RTF_PIDXFptr_AutoCloseOnInactivity,
        RTF_PIDXFptr_CommissioningState, RTF_PIDXFptr_TrainingModeActive}) {
    int value = -1;
    EXPECT_EQ(device.GetIntProperty(property, &value), RTF_SUCCESS);
    image += fmt::format("property {} {}\n", property, value);
  }
  char series[128] = "";
  EXPECT_EQ(device.GetStringProperty(RTF_PIDXFptr_InvoiceSeries, series), RTF_SUCCESS);
  image += fmt::format("series {}\n", series);
  image += "faults " + device.faults().ToText() + '\n';
  return image;
}

// What a check found, as the console tells it in English.
inline std::vector<std::string> FindingTexts(const JournalCheck& check) {
  const console::EnglishMessages english;
  std::vector<std::string> texts;
  for (const Finding& finding : check.findings)
    texts.push_back(console::JournalFindingText(finding));
  return texts;
}

// All that outlasts a switching-off.
inline std::string Image(VirtualRegister& device) {
  return fmt::format("state {}\n", device.printer_state()) + PaperImage(device.paper()) +
         TableImage(device.tables()) + StoreImage(device.store()) + SettingImage(device);
}

// What is in memory of the document in progress.
inline std::string OpenImage(const VirtualRegister& device) {
  const Receipt& receipt = device.receipt();
  std::string image = fmt::format("total {} paid {} subtotal {}\n", receipt.total(), receipt.paid(),
                                  receipt.at_subtotal());
  for (const Receipt::Line& line : receipt.lines()) {
    image += fmt::format("line {} {} {} {} {}\n", line.item.description, line.item.amount,
                         line.open_quantity, line.open_amount, line.adjusted);
  }
  for (const Adjustment& adjustment : receipt.adjustments()) {
    image += fmt::format("adjustment {} {} {}\n", adjustment.delta, adjustment.is_void,
                         adjustment.voided);
  }
  for (const Payment& payment : receipt.payments()) {
    image += fmt::format("payment {} {} {}\n", payment.tender->id, payment.amount, payment.face);
  }
  for (const auto& [vat, amount] : receipt.by_vat())
    image += fmt::format("vat {} {}\n", vat, amount);
  for (const auto& [department, sum] : receipt.by_department()) {
    image += fmt::format("department {} {} {}\n", department, sum.quantity, sum.amount);
  }
  return image;
}

class StoreTest : public testing::Test {
 protected:
  ~StoreTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  RegisterSettings FileSettings(const std::string& name = "shop.register") const {
    RegisterSettings settings = TestSettings();
    settings.file = Path(name);
    return settings;
  }
  std::string Bytes(const std::string& name) const {
    std::ifstream file(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  void Write(const std::string& name, const std::string& bytes) const {
    std::ofstream file(folder_ / name, std::ios::binary | std::ios::trunc);
    file << bytes;
  }
  // The file as it would be found if the register, which goes on, had been switched off now.
  void CopyAsCut(const std::string& from, const std::string& to) const {
    for (const char* end : {"", "-wal"}) {
      std::filesystem::remove(folder_ / (to + end));
      if (std::filesystem::exists(folder_ / (from + end))) {
        std::filesystem::copy_file(folder_ / (from + end), folder_ / (to + end));
      }
    }
  }
  // Runs statements on a file that no register has open, apart from the register's own code.
  // Answers the first column of the rows, a line each.
  std::string Sql(const std::string& name, const std::string& sql) const {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open_v2(Path(name).c_str(), &database, SQLITE_OPEN_READWRITE,
                              FailingDisk::RealName()),
              SQLITE_OK);
    std::string result;
    char* error = nullptr;
    const auto keep = [](void* text, int, char** values, char**) {
      *static_cast<std::string*>(text) +=
          (values[0] != nullptr ? values[0] : "") + std::string("\n");
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), keep, &result, &error), SQLITE_OK)
        << (error != nullptr ? error : "") << ": " << sql;
    sqlite3_free(error);
    sqlite3_close(database);
    return result;
  }
  // A register of an older version with its days (tests/unit/register/files), as a file.
  void MakeVersion(int version, const std::string& name) const {
    std::ifstream dump(
        fmt::format("{}/tests/unit/register/files/version{}.sql", LORIMAT_SOURCE_DIR, version));
    ASSERT_TRUE(dump.is_open());
    Write(name, "");
    Sql(name, "PRAGMA synchronous = OFF; " + std::string(std::istreambuf_iterator<char>(dump), {}));
  }
  // Every row of every table.
  std::string Dump(const std::string& name) const {
    std::string dump = DumpDatabase(Path(name));
    EXPECT_EQ(dump.rfind("\nerror "), dump.npos);
    return dump;
  }

  FailingDisk disk;
  std::filesystem::path folder_ = MakeTemporaryFolder();
};

// A register in a file that is switched off and on.
class StoredRegisterTest : public StoreTest {
 protected:
  StoredRegisterTest() { Start(); }
  void Start() { device = std::make_unique<VirtualRegister>(FileSettings()); }
  void Restart() {
    device.reset();
    Start();
  }

  int Begin() { return device->BeginFiscalReceipt(true); }
  int Sell(int department, int64_t price, const char* description = "", int type = 0,
           const char* article = "") {
    return device->PrintRecItemEx(type, description, price, 0, -1, 0, "", department, true,
                                  article);
  }
  int SellPieces(int department, int quantity, int64_t price) {
    return device->PrintRecItemEx(0, "", 0, quantity, -1, price, "PZ", department, true, "");
  }
  int Pay(const char* tender = "0") { return device->PrintRecTotalEx(0, tender, true); }
  int PayPart(int64_t amount, const char* tender) {
    return device->PrintRecTotalEx(amount, tender, false);
  }
  void Receipt(int department, int64_t price) {
    ASSERT_EQ(Begin(), RTF_SUCCESS);
    ASSERT_EQ(Sell(department, price), RTF_SUCCESS);
    ASSERT_EQ(Pay(), RTF_SUCCESS);
  }

  std::unique_ptr<VirtualRegister> device;
};

}  // namespace lorimat
