// The dumps of one register, loaded into another: library and register together, with the
// shipped words. A register that was loaded holds what the first one holds, and dumps the same
// bytes.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "language/shipped_language.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "register/desk/articles.h"
#include "support/temporary_folder.h"
#include "unit/register/register_fixture.h"
#include "unit/register/till.h"

namespace lorimat {
namespace {

using F = FunctionCode;

std::string Content(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  EXPECT_TRUE(file.good()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

// The tables by the number that LEGGI takes.
constexpr int kDepartments = 1;
constexpr int kAllTables[] = {1, 3, 4, 6, 8, 9, 10, 12};

class DumpLoadTest : public testing::Test {
 protected:
  DumpLoadTest() : before_(std::filesystem::current_path()) {
    // Dumps are written under lower-case names, into a folder of the test's own.
    folder_ = MakeTemporaryFolder().string();
    std::filesystem::current_path(folder_);
    // No settings of this computer's installation.
    if (const char* registry = std::getenv("LORIMATRT_REGISTRY")) registry_ = registry;
    setenv("LORIMATRT_REGISTRY", (folder_ + "/none").c_str(), 1);
  }
  ~DumpLoadTest() override {
    if (registry_.empty()) {
      unsetenv("LORIMATRT_REGISTRY");
    } else {
      setenv("LORIMATRT_REGISTRY", registry_.c_str(), 1);
    }
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }

  // A dump of these tables, one behind the other; form is what LEGGI takes besides.
  static std::string Dump(Till& till, const std::vector<int>& tables, const std::string& form) {
    bool first = true;
    for (const int table : tables) {
      EXPECT_EQ(till.Run("LEGGI TAB=" + std::to_string(table) + ", FILE='dump'" +
                         (first ? "" : ", AGGIUNGI") + form),
                0);
      first = false;
    }
    return Content("dump");
  }

  static void Load(Till& till, const std::string& dump) {
    std::ofstream("load", std::ios::binary) << dump;
    EXPECT_EQ(till.Run("@load,errors"), 0);
    EXPECT_EQ(Content("errors"), "");
  }

  // Every table other than it leaves the factory, by the lines that a host sends.
  static void Programme(Till& till) {
    const char* const lines[] = {
        "PROG",
        "PREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, SINGOLO=SI, IVA=2, PRE=12.50, GRU=3, "
        "SCONTO=NO, OBBDES=SI, SERVIZIO=SI",
        "PREP REP=2, DES='''''', LIMITE=99999.99, PRE=99999.99",
        "PREP REP=40, DES='PANE; PIZZA, DOLCI=2', PRE=0.05",
        "PIVA IVA=1, ALIQ=21",
        "PIVA IVA=5, ALIQ=7.35",
        "PIVA IVA=4, ALIQ=0",
        "PINT RIGA1='BAR ''SPORT''', RIGA2='\"DA GINO\"; VIA ROMA, 1', RIGA4='  TEL. 06=1  ', "
        "RIGA6='12345678901234567890123456789012345678901234567890'",
        "POPZ OPZ01='L''ORA \"ESATTA\"', OPZ04=SI, CONTRASTO=3, OPZ08=SI, OPZ13='13', OPZ14=SI, "
        "OPZ16='16', OPZ17='A, B; C', OPZ19=SI, OPZ20=SI, CASSETTO=SI, OPZ32=NO, OPZ33='33', "
        "OPZ34='999999999', OPZ35=SI, OPZ36='36', OPZ37=SI",
        "PGRU GRU=1, DES='BAR ''UNO'''",
        "PGRU GRU=10, DES='12345678901234567890123456789012'",
        "POPER OPE=1, DES='ANNA \"A\"', PASS='12''34', FLAG=-5, OPZ=2147483647",
        "POPER OPE=10, DES=' LUCA ', PASS='1234567890123456'",
        "PSTEN ST=1, TIPO=2, DES='BUONO ''A''', FLAG=1, IMP=999999999, CIFRE=255",
        "PSTEN ST=20, TIPO=0, DES='123456789012345'",
        "PTAST POS=41, COD=MENU",
        "PTAST POS=42, COD=MACRO01, MACRO='N1 N2 REP01 CLEAR '",
        "PTAST POS=120, COD=MACRO20, MACRO='T_CARTA ', TIPO=1",
        "PTAST POS=48, COD=VUOTO, TIPO=2",
        "PTAST POS=47, COD=LET_Z, TIPO=2",
        "ENDPROG"};
    for (const char* line : lines) EXPECT_EQ(till.Run(line), 0) << line;
    // A macro of the full length: the keys of departments, each a symbol of five letters.
    std::string macro;
    for (int key = 0; key < 39; ++key) macro += key % 2 == 0 ? "REP40 " : "ST20 ";
    EXPECT_EQ(till.Run("PTAST POS=46, COD=MACRO02, MACRO='" + macro + "', TIPO=2"), 0);
  }

  static void ExpectSameRecords(const VirtualRegister& one, const VirtualRegister& other) {
    const RegisterSettings& a = one.tables().settings();
    const RegisterSettings& b = other.tables().settings();
    ASSERT_EQ(a.departments.size(), b.departments.size());
    for (size_t row = 0; row < a.departments.size(); ++row) {
      const Department& d = a.departments[row];
      const Department& e = b.departments[row];
      EXPECT_EQ(d.name, e.name);
      EXPECT_EQ(d.vat, e.vat);
      EXPECT_EQ(d.price, e.price);
      EXPECT_EQ(d.max_price, e.max_price);
      EXPECT_EQ(d.group, e.group);
      EXPECT_EQ(d.quantity, e.quantity);
      EXPECT_EQ(d.single_shoot, e.single_shoot);
      EXPECT_EQ(d.allow_discount, e.allow_discount);
      EXPECT_EQ(d.force_description, e.force_description);
      EXPECT_EQ(d.is_service, e.is_service);
    }
    for (size_t entry = 0; entry < a.vat_rates.size(); ++entry) {
      EXPECT_EQ(a.vat_rates[entry].rate, b.vat_rates[entry].rate);
      EXPECT_EQ(a.vat_rates[entry].mark, b.vat_rates[entry].mark);
    }
    EXPECT_EQ(a.header_lines, b.header_lines);
    for (int index = 1; index <= 20; ++index) {
      const GroupRow* g = one.tables().FindGroup(index);
      const GroupRow* h = other.tables().FindGroup(index);
      EXPECT_EQ(g->description, h->description);
      EXPECT_EQ(g->password, h->password);
      EXPECT_EQ(g->flags, h->flags);
      EXPECT_EQ(g->options, h->options);
    }
    for (int number = 1; number <= 20; ++number) {
      const Subtender* s = one.tables().FindSubtender(number);
      const Subtender* t = other.tables().FindSubtender(number);
      EXPECT_EQ(s->kind, t->kind);
      EXPECT_EQ(s->description, t->description);
      EXPECT_EQ(s->flags, t->flags);
      EXPECT_EQ(s->preset_value, t->preset_value);
      EXPECT_EQ(s->max_digits, t->max_digits);
    }
  }

 private:
  std::filesystem::path before_;
  std::string folder_;
  std::string registry_;
};

TEST_F(DumpLoadTest, ALineOfADumpIsTheLineThatProgrammesTheRecord) {
  Till till(TestSettings());
  Programme(till);
  const std::string departments = Dump(till, {kDepartments}, "");
  EXPECT_EQ(departments.substr(0, departments.find('\n') + 1),
            "PREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, SINGOLO=SI, IVA=2, PRE=12.50, "
            "GRU=3, SCONTO=NO, OBBDES=SI, SERVIZIO=SI\r\n");
  EXPECT_EQ(Dump(till, {3}, ", LISTA"),
            "#33 #1=1, #2=21.00\r\n#33 #1=2, #2=10.00\r\n#33 #1=3, #2=5.00\r\n"
            "#33 #1=4, #2=0.00\r\n#33 #1=5, #2=7.35\r\n");
  EXPECT_EQ(Dump(till, {4}, ""),
            "PINT RIGA1='BAR ''SPORT''', RIGA2='\"DA GINO\"; VIA ROMA, 1', "
            "RIGA3='P.IVA 01234567897', RIGA4='  TEL. 06=1  ', RIGA5='', "
            "RIGA6='12345678901234567890123456789012345678901234567890'\r\n");
  EXPECT_EQ(Dump(till, {6}, ""),
            "POPZ OPZ01='L''ORA \"ESATTA\"', OPZ04=SI, CONTRASTO=3, OPZ08=SI, OPZ13=13, OPZ14=SI, "
            "OPZ16=16, OPZ17='A, B; C', OPZ19=SI, OPZ20=SI, CASSETTO=SI, OPZ32=NO, OPZ33=33, "
            "OPZ34=999999999, OPZ35=SI, OPZ36=36, OPZ37=SI\r\n");
  const std::string keys = Dump(till, {10}, "");
  EXPECT_EQ(keys.substr(0, keys.find('\n') + 1),
            ";Keyboard Name = 'INTERNA', Keyboard id = 0, Keyboard Key Numbers=60\r\n");
  EXPECT_NE(keys.find("\nPTAST POS=42, COD=MACRO01, MACRO='N1 N2 REP01 CLEAR ', TIPO=0\r\n"),
            keys.npos);
  EXPECT_NE(keys.find(";Keyboard Name = 'COMPATTA', Keyboard id = 2, Keyboard Key Numbers=48\r\n"),
            keys.npos);
}

TEST_F(DumpLoadTest, EveryTableInWords) {
  Till till(TestSettings());
  Programme(till);
  for (const int table : kAllTables) {
    SCOPED_TRACE(table);
    Till fresh(TestSettings());
    const std::string dump = Dump(till, {table}, "");
    EXPECT_NE(Dump(fresh, {table}, ""), dump);  // there is something to load
    Load(fresh, dump);
    EXPECT_EQ(Dump(fresh, {table}, ""), dump);
  }
}

TEST_F(DumpLoadTest, EveryTableButDepartmentsInListForm) {
  Till till(TestSettings());
  Programme(till);
  for (const int table : kAllTables) {
    if (table == kDepartments) continue;
    SCOPED_TRACE(table);
    Till fresh(TestSettings());
    const std::string dump = Dump(till, {table}, ", LISTA");
    EXPECT_NE(Dump(fresh, {table}, ", LISTA"), dump);
    Load(fresh, dump);
    EXPECT_EQ(Dump(fresh, {table}, ", LISTA"), dump);
  }
}

TEST_F(DumpLoadTest, AllTablesTogether) {
  Till till(TestSettings());
  Programme(till);
  const std::vector<int> tables(std::begin(kAllTables), std::end(kAllTables));
  for (const char* form : {"", ", PROG"}) {
    Till fresh(TestSettings());
    const std::string dump = Dump(till, tables, form);
    Load(fresh, dump);
    EXPECT_EQ(Dump(fresh, tables, form), dump);
    ExpectSameRecords(fresh.device, till.device);
  }
}

TEST_F(DumpLoadTest, AFactoryRegisterLoadsItsOwnDump) {
  Till till(TestSettings());
  const std::vector<int> tables(std::begin(kAllTables), std::end(kAllTables));
  const std::string dump = Dump(till, tables, "");
  Load(till, dump);
  EXPECT_EQ(Dump(till, tables, ""), dump);
}

TEST_F(DumpLoadTest, AWrappedDumpTurnsTheKeyOfARegisterThatWantsIt) {
  RegisterSettings settings = TestSettings();
  settings.programming_needs_key = true;
  Till till(settings);
  ASSERT_EQ(till.Run("PGRU GRU=1, DES='BAR'"), 207 | 0x400);
  ASSERT_EQ(till.Run("PROG"), 0);
  ASSERT_EQ(till.Run("PGRU GRU=1, DES='BAR'"), 0);
  Till fresh(settings);
  const std::string dump = Dump(till, {8}, ", PROG");
  Load(fresh, dump);
  EXPECT_EQ(fresh.device.tables().FindGroup(1)->description, "BAR");
  // The last line turned the key back: it sells again.
  EXPECT_EQ(fresh.Run("VEND REP=1, PRE=1.00"), 0);
}

TEST_F(DumpLoadTest, RegistersWithoutTheExtendedRecordExchangeTheirDepartments) {
  RegisterSettings settings = TestSettings();
  settings.extended_departments = false;
  Till till(settings);
  ASSERT_EQ(till.Run("PREP REP=7, DES='L''ORTO', PRE=3.50, SERVIZIO=SI"), 0);
  const std::string dump = Dump(till, {kDepartments}, "");
  EXPECT_EQ(dump.find("SERVIZIO"), dump.npos);
  Till fresh(settings);
  Load(fresh, dump);
  EXPECT_EQ(Dump(fresh, {kDepartments}, ""), dump);
  EXPECT_EQ(fresh.device.tables().FindDepartment(7)->name, "L'ORTO");
  EXPECT_EQ(fresh.device.tables().FindDepartment(7)->price, 35000);
}

// What the register refuses comes back as its code: below 200 with 0x600, above with 0x400
// where the translator passes it twice.
TEST_F(DumpLoadTest, RefusalsReachTheHost) {
  Till till(TestSettings());
  struct {
    const char* line;
    long code;
  } const rows[] = {
      {"PREP REP=41, DES='X'", 106 | 0x600},
      {"PREP REP=1, IVA=6", 217 | 0x400},
      {"PREP REP=1, GRU=11", 106 | 0x600},
      {"PREP REP=1, PRE=100000.00", 218 | 0x400},
      {"PREP REP=1, DES='123456789012345678901234567890123'", 222 | 0x400},
      {"PGRU GRU=0, DES='X'", 265},
      {"PGRU GRU=11, DES='X'", 265},
      {"POPER OPE=11, DES='X'", 265},
      {"POPER OPE=1, PASS='12345678901234567'", 222 | 0x400},
      {"PSTEN ST=21, DES='X'", 106 | 0x600},
      {"PSTEN ST=1, DES='1234567890123456'", 222 | 0x400},
      {"PIVA IVA=6, ALIQ=10", 217 | 0x400},
      {"PIVA IVA=1, ALIQ=100", 106 | 0x200},
      {"POPZ OPZ13='X'", 106 | 0x200},
      {"PTAST POS=61, COD=MENU", 106 | 0x200},
      {"PTAST POS=1, COD=MENU", 106 | 0x200},
      {"PTAST POS=41, COD=199", 106 | 0x200},
      {"PTAST POS=41, COD=MENU, TIPO=3", 106 | 0x200},
      {"LDGRAF NUM=1, FILE='none.bmp'", 109 | 0x200},
  };
  const std::vector<int> tables(std::begin(kAllTables), std::end(kAllTables));
  const std::string before = Dump(till, tables, "");
  for (const auto& row : rows) EXPECT_EQ(till.Run(row.line), row.code) << row.line;
  EXPECT_EQ(Dump(till, tables, ""), before);
  // And with a receipt open everything is.
  ASSERT_EQ(till.Run("VEND REP=1, PRE=1.00"), 0);
  for (const char* line :
       {"PREP REP=1, DES='X'", "PGRU GRU=1, DES='X'", "POPER OPE=1, DES='X'", "PSTEN ST=1, DES='X'",
        "PIVA IVA=1, ALIQ=10", "PINT RIGA1='X'", "PPFATT NUM=5", "PPFATT SERIE='B'",
        "POPZ OPZ04=SI", "PTAST POS=41, COD=MENU", "LDGRAF CANC"}) {
    EXPECT_EQ(till.Run(line), 207 | 0x400) << line;
  }
  EXPECT_EQ(Dump(till, tables, ""), before);
}

TEST_F(DumpLoadTest, ProgrammingHoldsForTheNextReceipt) {
  Till till(TestSettings());
  ASSERT_EQ(till.Run("PREP REP=3, DES='VINO', IVA=2, PRE=4.50, LIMITE=10"), 0);
  ASSERT_EQ(till.Run("PINT RIGA1='DA GINO'"), 0);
  ASSERT_EQ(till.Run("PPFATT NUM=77, SERIE='B'"), 0);
  ASSERT_EQ(till.Run("VEND REP=3"), 0);
  EXPECT_EQ(till.Run("VEND REP=3, PRE=10.01"), 218 | 0x400);
  EXPECT_EQ(till.device.receipt().by_vat(), (std::map<int, Amount>{{2, 45000}}));
  ASSERT_EQ(till.Run("CHIU"), 0);
  EXPECT_EQ(till.device.paper_lines()[0], std::string(17, ' ') + "DA GINO");
  EXPECT_EQ(till.device.store().next_invoice(), 77);
}

TEST_F(DumpLoadTest, ArticlesGoFromOneRegisterToAnother) {
  RegisterSettings settings = TestSettings();
  settings.articles = {{"8001", "LATTE 'FRESCO', 1 L", 4, 15000},
                       {"8'00;2", "PANE \"CASARECCIO\"; 1 KG", 40, 999999900},
                       {" 3 ", "", 4, 0}};
  Till till(settings);
  ASSERT_EQ(till.Run("EMLINK CMD='DA', FILE='all'"), 0);
  EXPECT_EQ(Content("all"),
            "'8001','LATTE ''FRESCO'', 1 L',4,1.50\r\n"
            "'8''00;2','PANE \"CASARECCIO\"; 1 KG',40,99999.99\r\n"
            "' 3 ','',4,0.00\r\n");
  Till fresh(TestSettings());
  ASSERT_EQ(fresh.Run("EMLINK CMD='UA', FILE='all', ERR='errors', AZZERA"), 0);
  ASSERT_EQ(fresh.Run("EMLINK CMD='DA', FILE='again'"), 0);
  EXPECT_EQ(Content("again"), Content("all"));
  const std::vector<Article>& loaded = fresh.device.tables().settings().articles;
  ASSERT_EQ(loaded.size(), 3u);
  EXPECT_EQ(loaded[1].code, "8'00;2");
  EXPECT_EQ(loaded[1].description, "PANE \"CASARECCIO\"; 1 KG");
  // A selection: department 4. The other table goes with the download.
  ASSERT_EQ(fresh.Run("EMLINK CMD='DA', FILE='four', SELEZ=4, SVUOTA"), 0);
  EXPECT_EQ(Content("four"), "'8001','LATTE ''FRESCO'', 1 L',4,1.50\r\n' 3 ','',4,0.00\r\n");
  EXPECT_TRUE(fresh.device.tables().settings().articles.empty());
}

TEST_F(DumpLoadTest, RefusedArticlesAreCountedAndTheOthersGoIn) {
  Till till(TestSettings());
  std::ofstream("rows", std::ios::binary) << "'1','UNO',1,1.00\r\n"
                                          << "'2','DUE',41,1.00\r\n"  // no such department
                                          << "; a comment\r\n"
                                          << std::string(5000, 'x') << "\r\n"
                                          << "'3','TRE',1,1.00\r\n";
  EXPECT_EQ(till.Run("EMLINK CMD='UA', FILE='rows', ERR='errors', AZZERA"), 8193);
  EXPECT_EQ(till.device.tables().settings().articles.size(), 2u);
  EXPECT_EQ(till.device.tables().settings().articles[1].code, "3");
}

// Texts of any printable bytes, quotes often among them.
TEST_F(DumpLoadTest, AnyTextComesBack) {
  std::mt19937 random(20240115);
  const auto text = [&random](size_t most) {
    std::string made(random() % most + 1, ' ');  // an empty text does not clear
    for (char& c : made) {
      const unsigned pick = static_cast<unsigned>(random()) % 4;
      c = pick == 0   ? "'\"=,;# "[random() % 7]
          : pick == 1 ? static_cast<char>(0x80 + random() % 0x80)
                      : static_cast<char>(0x20 + random() % 0x5F);
    }
    return made;
  };
  for (int round = 0; round < 20; ++round) {
    RegisterSettings settings = TestSettings();
    for (int number = 1; number <= 40; ++number) {
      settings.departments.push_back({text(Tables::kDescriptionSize), number % 5 + 1,
                                      static_cast<Amount>(random() % 10000000) * kCent});
    }
    settings.header_lines.clear();
    for (int line = 1; line <= 6; ++line) {
      settings.header_lines.push_back(text(Tables::kHeaderLineSize));
    }
    Till till(settings);
    for (int index = 1; index <= 20; ++index) {
      std::string description = text(Tables::kDescriptionSize);
      std::string password = text(Tables::kPasswordSize);
      int flags = static_cast<int>(random());
      int options = static_cast<int>(random());
      ASSERT_EQ(till.device.ConfigGroup(true, index, description.data(), password.data(), &flags,
                                        &options),
                RTF_SUCCESS);
    }
    Till fresh(TestSettings());
    const std::string departments = Dump(till, {1}, "");
    Load(fresh, departments);
    EXPECT_EQ(Dump(fresh, {1}, ""), departments);
    for (const char* form : {"", ", LISTA"}) {
      Till other(TestSettings());
      const std::string dump = Dump(till, {4, 8, 12}, form);
      Load(other, dump);
      ASSERT_EQ(Dump(other, {4, 8, 12}, form), dump);
    }
    for (int number = 1; number <= 40; ++number) {
      EXPECT_EQ(fresh.device.tables().FindDepartment(number)->name,
                till.device.tables().FindDepartment(number)->name);
    }
  }
}

// Random layouts of all three keyboards.
TEST_F(DumpLoadTest, AnyKeyboardComesBack) {
  std::mt19937 random(20240116);
  for (int round = 0; round < 5; ++round) {
    Till till(TestSettings());
    int macros = 0;
    for (int call = 0; call < 2000; ++call) {
      int8_t keyboard = static_cast<int8_t>(random() % 3);
      uint8_t code = static_cast<uint8_t>(random());
      std::string macro;
      if (random() % 2 == 0) {
        code = static_cast<uint8_t>(F::kMacro01 + random() % 20);
        for (size_t size = random() % 40; macro.size() < size;) {
          macro += static_cast<char>(random() % 200);
        }
      }
      uint16_t size = static_cast<uint16_t>(macro.size());
      macro.resize(40);
      const uint8_t position = static_cast<uint8_t>(random() % 120 + 1);
      const int result =
          till.device.ConfigKeyboard(true, position, &code, &keyboard, macro.data(), &size);
      if (result == RTF_SUCCESS && size > 0) ++macros;
    }
    EXPECT_GT(macros, 0);
    for (const char* form : {"", ", LISTA"}) {
      Till fresh(TestSettings());
      const std::string dump = Dump(till, {10}, form);
      Load(fresh, dump);
      ASSERT_EQ(Dump(fresh, {10}, form), dump);
    }
  }
}

}  // namespace
}  // namespace lorimat
