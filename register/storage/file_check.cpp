#include "register/storage/file_check.h"

#include <map>
#include <set>
#include <string>
#include <utility>

#include "register/storage/schema.h"
#include "register/storage/store_rows.h"

namespace lorimat {
namespace {

// What the schema has, by its name.
std::map<std::string, std::string> Schema(Database& database) {
  std::map<std::string, std::string> schema;
  for (Statement row = database.Prepare(
           "SELECT name, type || ' ' || tbl_name || ' ' || coalesce(sql, '') FROM sqlite_master");
       row.Step();) {
    schema[row.String(0)] = row.Text(1);
  }
  return schema;
}

// What the schema has as this version makes it.
const std::map<std::string, std::string>& ModelSchema() {
  static const std::map<std::string, std::string> schema = [] {
    Database database("", Database::Open::kCreate, kRegisterKind);
    Transaction transaction(database);
    MakeSchema(database);
    return Schema(database);
  }();
  return schema;
}

// " OR ..." for each of these columns: true when the value is not of that type.
template <SqlText type, SqlText... columns>
inline constexpr auto kNot = kSql<kSql<" OR typeof(\"", columns, "\") <> '", type, "'">...>;

struct Question {
  const char* table;
  SqlLiteral sql;  // has a row when a value of the table has not the type of its column
};
template <SqlText table, SqlText... conditions>
inline constexpr SqlText kWrongType =
    kSql<"SELECT 1 FROM \"", table, "\" WHERE 0", conditions..., " LIMIT 1">;

// By name, each column that the schema gives a type.
constexpr Question kQuestions[] = {
    {"article", kWrongType<"article", kNot<"integer", "place", "department", "price">,
                           kNot<"text", "code", "description">>},
    {"closure", kWrongType<"closure",
                           kNot<"integer", "number", "time", "documents", "sales", "invoices",
                                "refunds", "cancels", "abandoned", "non_fiscal", "grand_total">,
                           kNot<"text", "vat_rates", "totals">>},
    {"department",
     kWrongType<
         "department",
         kNot<"integer", "number", "vat", "price", "max_price", "department_group", "quantity",
              "single_shoot", "allow_discount", "force_description", "is_service">,
         kNot<"text", "name">>},
    {"device_option",
     kWrongType<"device_option", kNot<"integer", "number">, kNot<"text", "value">>},
    {"document",
     kWrongType<
         "document",
         kNot<"integer", "id", "kind", "closure", "number", "time", "operator", "total", "not_paid",
              "change", "discounts", "surcharges", "referred_closure", "referred_number">,
         kNot<"text", "lottery_code", "sums">>},
    {"document_line",
     kWrongType<"document_line",
                kNot<"integer", "document", "place", "kind", "adjustment_type", "department", "vat",
                     "quantity", "unit_price", "amount", "quantity_taken_back", "taken_back">,
                kNot<"text", "description", "article">>},
    {"document_payment",
     kWrongType<"document_payment", kNot<"integer", "document", "place", "amount">,
                kNot<"text", "tender">>},
    {"event", kWrongType<"event", kNot<"integer", "place", "entry", "kind", "time">,
                         kNot<"text", "subject", "value", "hash">>},
    {"header_line", kWrongType<"header_line", kNot<"integer", "number">, kNot<"text", "text">>},
    {"journal",
     kWrongType<"journal",
                kNot<"integer", "place", "kind", "closure", "number", "time", "document">,
                kNot<"text", "lines", "hash">>},
    {"ledger", kWrongType<"ledger",
                          kNot<"integer", "id", "last_closure", "next_invoice", "documents",
                               "sales", "invoices", "refunds", "cancels", "abandoned", "non_fiscal",
                               "grand_total", "last_document", "first_of_day", "journal_place">,
                          kNot<"text", "day_totals", "journal_hash">>},
    {"logo", kWrongType<"logo", kNot<"integer", "number">, kNot<"text", "file">>},
    {"lottery_waiting", kWrongType<"lottery_waiting", kNot<"integer", "document">>},
    {"open_document",
     kWrongType<"open_document",
                kNot<"integer", "id", "state", "kind", "begun", "lines", "subtotal">,
                kNot<"text", "notes">>},
    {"operator_group", kWrongType<"operator_group", kNot<"integer", "number", "flags", "options">,
                                  kNot<"text", "description", "password">>},
    {"period", kWrongType<"period", kNot<"integer", "number", "cleared", "time", "first_document">,
                          kNot<"text", "totals">>},
    {"programmed_key", kWrongType<"programmed_key", kNot<"integer", "keyboard", "position", "code">,
                                  kNot<"text", "macro">>},
    {"roll",
     kWrongType<"roll", kNot<"integer", "first_line", "lines">, kNot<"text", "text", "rows">>},
    {"setting", kWrongType<"setting", kNot<"text", "name">>},
    {"subtender",
     kWrongType<"subtender",
                kNot<"integer", "number", "kind", "flags", "preset_value", "max_digits">,
                kNot<"text", "description">>},
    {"summary_waiting", kWrongType<"summary_waiting", kNot<"integer", "closure">>},
    {"vat_rate", kWrongType<"vat_rate", kNot<"integer", "number", "rate">, kNot<"text", "mark">>},
};

}  // namespace

void CheckPages(Database& database, const std::function<void(Finding)>& find) {
  Statement rows = database.Prepare("PRAGMA integrity_check(20)");
  while (rows.Step()) {
    if (rows.Text(0) == "ok") continue;
    // A row may have several lines, the first of them with the name of the database in asterisks.
    for (std::string& line : SplitLines(rows.Text(0))) {
      if (line.rfind("*** ", 0) == 0) continue;
      find({.kind = FindingKind::kDamagedPage, .text = std::move(line)});
    }
  }
}

void CheckReferences(Database& database, const std::function<void(Finding)>& find) {
  Statement strangers = database.Prepare("PRAGMA foreign_key_check");
  while (strangers.Step()) find({.kind = FindingKind::kStrangeRow, .text = strangers.String(0)});
}

void CheckValues(Database& database, const std::function<void(Finding)>& find) {
  const std::map<std::string, std::string>& model = ModelSchema();
  const std::map<std::string, std::string> schema = Schema(database);
  std::set<std::string> strange;
  for (const auto& [name, made] : schema) {
    const auto found = model.find(name);
    if (found == model.end() || found->second != made) strange.insert(name);
  }
  for (const auto& [name, made] : model) {
    if (schema.count(name) == 0) strange.insert(name);
  }
  for (const std::string& name : strange) {
    find({.kind = FindingKind::kStrangeTable, .text = name});
  }
  for (const Question& question : kQuestions) {
    if (database.Prepare(question.sql).Step()) {
      find({.kind = FindingKind::kStrangeValue, .text = question.table});
    }
  }
}

}  // namespace lorimat
