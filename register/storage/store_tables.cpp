// The tables as rows.
#include "register/storage/store_tables.h"

#include <algorithm>
#include <utility>

namespace lorimat {
namespace {

// --- One row each

void PutDepartment(Database& database, int number, const Department& row) {
  database
      .Prepare(
          "REPLACE INTO department (number, name, vat, price, max_price, department_group, "
          "quantity, single_shoot, allow_discount, force_description, is_service) VALUES (?, ?, ?, "
          "?, ?, ?, ?, ?, ?, ?, ?)")
      .With(number, row.name, row.vat, row.price, row.max_price, row.group, row.quantity,
            row.single_shoot, row.allow_discount, row.force_description, row.is_service)
      .Run();
}

void PutGroup(Database& database, int number, const GroupRow& row) {
  database
      .Prepare(
          "REPLACE INTO operator_group (number, description, password, flags, options) VALUES (?, "
          "?, ?, ?, ?)")
      .With(number, row.description, row.password, row.flags, row.options)
      .Run();
}

void PutSubtender(Database& database, int number, const Subtender& row) {
  database
      .Prepare(
          "REPLACE INTO subtender (number, kind, description, flags, preset_value, max_digits) "
          "VALUES (?, ?, ?, ?, ?, ?)")
      .With(number, static_cast<int>(row.kind), row.description, row.flags, row.preset_value,
            row.max_digits)
      .Run();
}

void PutArticle(Database& database, int place, const Article& row) {
  database
      .Prepare(
          "REPLACE INTO article (place, code, description, department, price) VALUES (?, ?, ?, ?, "
          "?)")
      .With(place, row.code, row.description, row.department, row.price)
      .Run();
}

// --- Whole tables

void PutHeader(Database& database, const Tables& tables) {
  database.Prepare("DELETE FROM header_line").Run();
  int number = 0;
  for (const std::string& line : tables.settings().header_lines) {
    database.Prepare("INSERT INTO header_line (number, text) VALUES (?, ?)")
        .With(++number, line)
        .Run();
  }
}

void PutVat(Database& database, const Tables& tables) {
  database.Prepare("DELETE FROM vat_rate").Run();
  int number = 0;
  for (const VatRate& rate : tables.settings().vat_rates) {
    database.Prepare("INSERT INTO vat_rate (number, rate, mark) VALUES (?, ?, ?)")
        .With(++number, rate.rate, rate.mark)
        .Run();
  }
}

void PutLogos(Database& database, const Tables& tables) {
  database.Prepare("DELETE FROM logo").Run();
  for (const auto& [number, file] : tables.logos()) {
    database.Prepare("INSERT INTO logo (number, file) VALUES (?, ?)").With(number, file).Run();
  }
}

// What a register is, and nobody programs.
struct FixedFlag {
  const char* name;
  bool RegisterSettings::*flag;
};
constexpr FixedFlag kFixedFlags[] = {
    {"extended_departments", &RegisterSettings::extended_departments},
    {"programming_needs_key", &RegisterSettings::programming_needs_key},
    {"fixed_decimal_point", &RegisterSettings::fixed_decimal_point},
};
struct FixedNumber {
  const char* name;
  int RegisterSettings::*number;
};
constexpr FixedNumber kFixedNumbers[] = {
    {"groups", &RegisterSettings::groups},
    {"operators", &RegisterSettings::operators},
};
constexpr char kSerialNumber[] = "serial_number";

template <typename Value>
void PutSetting(Database& database, const char* name, const Value& value) {
  database.Prepare("REPLACE INTO setting (name, value) VALUES (?, ?)")
      .With(std::string_view(name), value)
      .Run();
}

Statement FindSetting(Database& database, const char* name) {
  Statement row = database.Prepare("SELECT value FROM setting WHERE name = ?");
  if (!row.With(std::string_view(name)).Step()) database.Damaged(name);
  return row;
}

}  // namespace

void InsertTables(Database& database, const Tables& tables) {
  const RegisterSettings& settings = tables.settings();
  PutSetting(database, kSerialNumber, settings.serial_number);
  for (const FixedFlag& row : kFixedFlags) PutSetting(database, row.name, settings.*row.flag);
  for (const FixedNumber& row : kFixedNumbers) PutSetting(database, row.name, settings.*row.number);
  PutHeader(database, tables);
  PutVat(database, tables);
  int number = 0;
  for (const Department& row : settings.departments) PutDepartment(database, ++number, row);
  number = 0;
  for (const GroupRow& row : tables.groups()) PutGroup(database, ++number, row);
  number = 0;
  for (const Subtender& row : tables.subtenders()) PutSubtender(database, ++number, row);
  number = 0;
  for (const Article& row : settings.articles) PutArticle(database, ++number, row);
}

bool ChainedTablesChange(const Tables& tables) {
  return std::any_of(
      tables.changes().begin(), tables.changes().end(), [](const Tables::Change& change) {
        return change.part == Tables::Part::kDepartment || change.part == Tables::Part::kGroup ||
               change.part == Tables::Part::kSubtender || change.part == Tables::Part::kVat;
      });
}

bool ChainedSettingsChange(const Tables& tables) {
  return std::any_of(
      tables.changes().begin(), tables.changes().end(),
      [](const Tables::Change& change) { return change.part == Tables::Part::kSerialNumber; });
}

void StoreTables(Database& database, const Tables& tables) {
  const RegisterSettings& settings = tables.settings();
  for (const Tables::Change& change : tables.changes()) {
    const size_t index = static_cast<size_t>(change.number) - 1;
    switch (change.part) {
      case Tables::Part::kDepartment:
        PutDepartment(database, change.number, settings.departments[index]);
        break;
      case Tables::Part::kGroup:
        PutGroup(database, change.number, tables.groups()[index]);
        break;
      case Tables::Part::kSubtender:
        PutSubtender(database, change.number, tables.subtenders()[index]);
        break;
      case Tables::Part::kHeader:
        PutHeader(database, tables);
        break;
      case Tables::Part::kVat:
        PutVat(database, tables);
        break;
      case Tables::Part::kArticle:
        // The table may have been emptied behind it.
        if (index < settings.articles.size()) {
          PutArticle(database, change.number, settings.articles[index]);
        }
        break;
      case Tables::Part::kArticles: {
        database.Prepare("DELETE FROM article").Run();
        int place = 0;
        for (const Article& row : settings.articles) PutArticle(database, ++place, row);
        break;
      }
      case Tables::Part::kLogos:
        PutLogos(database, tables);
        break;
      case Tables::Part::kSerialNumber:
        PutSetting(database, kSerialNumber, settings.serial_number);
        break;
      case Tables::Part::kNotes:
        break;
    }
  }
}

Tables LoadTables(Database& database, const RegisterSettings& given) {
  RegisterSettings settings;
  settings.clock = given.clock;
  settings.outbox = given.outbox;
  settings.report_polls = given.report_polls;
  settings.file = given.file;
  settings.serial_number = FindSetting(database, kSerialNumber).Text(0);
  for (const FixedFlag& row : kFixedFlags) {
    settings.*row.flag = FindSetting(database, row.name).Flag(0);
  }
  for (const FixedNumber& row : kFixedNumbers) {
    settings.*row.number = FindSetting(database, row.name).Int(0);
  }
  settings.header_lines.clear();
  for (Statement row = database.Prepare("SELECT text FROM header_line ORDER BY number");
       row.Step();) {
    settings.header_lines.push_back(row.String(0));
  }
  settings.vat_rates.clear();
  for (Statement row = database.Prepare("SELECT rate, mark FROM vat_rate ORDER BY number");
       row.Step();) {
    settings.vat_rates.push_back({row.Int(0), row.String(1)});
  }
  for (Statement row = database.Prepare(
           "SELECT name, vat, price, max_price, department_group, quantity, single_shoot, "
           "allow_discount, force_description, is_service FROM department ORDER BY number");
       row.Step();) {
    settings.departments.push_back({row.String(0), row.Int(1), row.Integer(2), row.Integer(3),
                                    row.Int(4), row.Int(5), row.Flag(6), row.Flag(7), row.Flag(8),
                                    row.Flag(9)});
  }
  for (Statement row = database.Prepare(
           "SELECT code, description, department, price FROM article ORDER BY place");
       row.Step();) {
    settings.articles.push_back({row.String(0), row.String(1), row.Int(2), row.Integer(3)});
  }
  std::vector<GroupRow> groups;
  for (Statement row = database.Prepare(
           "SELECT description, password, flags, options FROM operator_group ORDER BY number");
       row.Step();) {
    groups.push_back({row.String(0), row.String(1), row.Int(2), row.Int(3)});
  }
  std::vector<Subtender> subtenders;
  for (Statement row = database.Prepare(
           "SELECT kind, description, flags, preset_value, max_digits FROM subtender "
           "ORDER BY number");
       row.Step();) {
    Subtender subtender;
    const int64_t kind = row.Integer(0);
    const int64_t preset = row.Integer(3);
    if (kind < 0 || kind > static_cast<int>(TenderKind::kNotPaid) || preset < 0 ||
        preset > Tables::kMaxPresetValue) {
      database.Damaged("subtender");
    }
    subtender.kind = static_cast<TenderKind>(kind);
    subtender.description = row.Text(1);
    subtender.flags = static_cast<uint8_t>(row.Integer(2));
    subtender.preset_value = static_cast<uint32_t>(preset);
    subtender.max_digits = static_cast<uint8_t>(row.Integer(4));
    subtenders.push_back(std::move(subtender));
  }
  std::map<int, std::string> logos;
  for (Statement row = database.Prepare("SELECT number, file FROM logo"); row.Step();) {
    logos[row.Int(0)] = row.Text(1);
  }
  if (groups.size() !=
      static_cast<size_t>(settings.groups) + static_cast<size_t>(settings.operators)) {
    database.Damaged("operator_group");
  }
  return Tables(std::move(settings), std::move(groups), subtenders, std::move(logos));
}

}  // namespace lorimat
