// Tables go out and in: what the translator dumps of a device, loaded into a fresh one and dumped
// again, is the same to the byte, and the fresh device has what the other one has. For every table
// that the language dumps, by words and as lists, of registers that chance has programmed; articles
// by the exchange of files.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "properties/table_generators.h"
#include "support/temporary_folder.h"
#include "unit/register/till.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;

// The tables by the numbers that LEGGI takes: departments, rates, header, options, groups,
// subtenders, keyboards, operators. Departments have no list form that loads.
constexpr int kDepartments = 1;
constexpr int kAllTables[] = {1, 3, 4, 6, 8, 9, 10, 12};

std::string Content(const char* name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// A folder to dump into, and no settings of an installation.
class DumpFolder {
 public:
  DumpFolder() {
    fs::current_path(folder_);
    if (const char* registry = std::getenv("LORIMATRT_REGISTRY")) registry_ = registry;
    setenv("LORIMATRT_REGISTRY", (folder_ / "none").c_str(), 1);
  }
  ~DumpFolder() {
    if (registry_) {
      setenv("LORIMATRT_REGISTRY", registry_->c_str(), 1);
    } else {
      unsetenv("LORIMATRT_REGISTRY");
    }
    fs::current_path(before_);
    fs::remove_all(folder_);
  }
  DumpFolder(const DumpFolder&) = delete;
  DumpFolder& operator=(const DumpFolder&) = delete;

 private:
  fs::path before_ = fs::current_path();
  fs::path folder_ = MakeTemporaryFolder();
  std::optional<std::string> registry_;
};

std::string Dump(Till& till, int table, const std::string& form) {
  RC_ASSERT(till.Run("LEGGI TAB=" + std::to_string(table) + ", FILE='dump'" + form) == 0);
  return Content("dump");
}

// What the device has of the tables itself: a dump that leaves something out or has it otherwise is
// loaded and dumped again the same.
std::string Programmed(const VirtualRegister& device, bool departments) {
  std::ostringstream text;
  const Tables& tables = device.tables();
  const RegisterSettings& settings = tables.settings();
  for (const Department& one : settings.departments) {
    if (!departments) break;
    text << "department " << one.name << '|' << one.vat << '|' << one.price << '|' << one.max_price
         << '|' << one.group << '|' << one.single_shoot << one.allow_discount
         << one.force_description << one.is_service << '\n';
  }
  for (const VatRate& one : settings.vat_rates) text << "rate " << one.rate << '\n';
  for (const std::string& line : settings.header_lines) text << "header " << line << '\n';
  int groups = settings.groups;
  for (const GroupRow& one : tables.groups()) {
    text << "group " << one.description;
    // The language has the name of a group alone, and all of an operator.
    if (--groups < 0) text << '|' << one.password << '|' << one.flags << '|' << one.options;
    text << '\n';
  }
  for (const Subtender& one : tables.subtenders()) {
    text << "subtender " << static_cast<int>(one.kind) << '|' << one.description << '|'
         << int{one.flags} << '|' << one.preset_value << '|' << int{one.max_digits} << '\n';
  }
  return text.str();
}

// With what the exchange of articles brings.
std::string Articles(const VirtualRegister& device) {
  std::ostringstream text;
  for (const Article& one : device.tables().settings().articles) {
    text << one.code << '|' << one.description << '|' << one.department << '|' << one.price << '\n';
  }
  return text.str();
}

// The options that hold texts, numbers and marks.
void ProgramOptions(Till& till, Seen* seen) {
  const int digit = *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, 10));
  const std::string number = std::to_string(digit);
  const std::string mark = digit % 2 == 0 ? "SI" : "NO";
  const std::string lines[] = {"OPZ01='L''ORA " + number + "'",
                               "OPZ04=" + mark,
                               "CONTRASTO=" + number,
                               "OPZ13='" + number + number + "'",
                               "OPZ17='A, " + number + "; \"'",
                               "OPZ34='99" + number + "'",
                               "CASSETTO=" + mark};
  for (const std::string& line : lines) {
    if (*rc::gen::arbitrary<bool>() && till.Run("POPZ " + line) == 0) seen->Add("options");
  }
}

TEST(TablesProperty, WhatIsDumpedAndLoadedIsDumpedTheSame) {
  const PropertyRun run = RunOf(60);
  Seen seen("tables of the translator");
  const DumpFolder folder;
  Holds(run, [&] {
    const RegisterSettings settings = TablesByChance();
    Till till(settings);
    ProgramByChance(till.device, &seen);
    ProgramOptions(till, &seen);
    const std::string form = *rc::gen::element<std::string>("", ", LISTA", ", PROG");
    Till fresh{RegisterSettings()};
    for (const int table : kAllTables) {
      if (table == kDepartments && form == ", LISTA") continue;
      const std::string dump = Dump(till, table, form);
      std::ofstream("load", std::ios::binary) << dump;
      RC_LOG() << "table " << table << form << "\n" << dump;
      RC_ASSERT(fresh.Run("@load,errors") == 0);
      RC_ASSERT(Content("errors") == "");
      RC_ASSERT(Dump(fresh, table, form) == dump);
      seen.Add("bytes of dumps", static_cast<int64_t>(dump.size()));
    }
    const bool has_departments = form != ", LISTA";
    RC_ASSERT(Programmed(fresh.device, has_departments) ==
              Programmed(till.device, has_departments));
    // The exchange writes over what is there, and does not shorten it.
    for (const char* name : {"articles", "again"}) fs::remove(name);
    RC_ASSERT(till.Run("EMLINK CMD='DA', FILE='articles'") == 0);
    const std::string articles = Content("articles");
    RC_LOG() << articles;
    const long loaded = fresh.Run("EMLINK CMD='UA', FILE='articles', ERR='errors', AZZERA");
    RC_LOG() << Content("errors");
    RC_ASSERT(loaded == 0);
    RC_ASSERT(fresh.Run("EMLINK CMD='DA', FILE='again'") == 0);
    RC_ASSERT(Content("again") == articles);
    RC_ASSERT(Articles(fresh.device) == Articles(till.device));
    seen.Add("articles", static_cast<int64_t>(settings.articles.size()));
  });
  seen.Require(run, {{"departments", 200},
                     {"groups and operators", 100},
                     {"subtenders", 50},
                     {"header lines", 50},
                     {"keys", 100},
                     {"rates", 20},
                     {"options", 50},
                     {"articles", 100}});
}

}  // namespace
}  // namespace lorimat
