#include "register/storage/file_check.h"

#include <fmt/format.h>

#include <deque>
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

// The tables as this version makes them.
class Model {
 public:
  // Statements have to last as long as the databases that they are made for.
  static const Model& Get() {
    static const Model model;
    return model;
  }

  std::map<std::string, std::string> schema;
  struct Question {
    std::string table;
    std::string sql;  // has a row when a value of the table has not the type of its column
  };
  std::deque<Question> questions;

 private:
  Model() {
    Database database("", Database::Open::kCreate, kRegisterKind);
    Transaction transaction(database);
    MakeSchema(database);
    schema = Schema(database);
    std::map<std::string, std::string> conditions;
    for (Statement row = database.Prepare(
             "SELECT made.name, made_column.name, lower(made_column.type) "
             "FROM sqlite_master AS made JOIN pragma_table_info(made.name) AS made_column "
             "WHERE made.type = 'table' AND made_column.type <> ''");
         row.Step();) {
      std::string& condition = conditions[row.String(0)];
      condition += fmt::format("{}typeof(\"{}\") <> '{}'", condition.empty() ? "" : " OR ",
                               row.Text(1), row.Text(2));
    }
    for (const auto& [table, condition] : conditions) {
      questions.push_back(
          {table, fmt::format("SELECT 1 FROM \"{}\" WHERE {} LIMIT 1", table, condition)});
    }
  }
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
  const Model& model = Model::Get();
  const std::map<std::string, std::string> schema = Schema(database);
  std::set<std::string> strange;
  for (const auto& [name, made] : schema) {
    const auto found = model.schema.find(name);
    if (found == model.schema.end() || found->second != made) strange.insert(name);
  }
  for (const auto& [name, made] : model.schema) {
    if (schema.count(name) == 0) strange.insert(name);
  }
  for (const std::string& name : strange) {
    find({.kind = FindingKind::kStrangeTable, .text = name});
  }
  for (const Model::Question& question : model.questions) {
    if (database.Prepare(question.sql).Step()) {
      find({.kind = FindingKind::kStrangeValue, .text = question.table});
    }
  }
}

}  // namespace lorimat
