// The tables of texts, against the given wording and against the file that they are made of.

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "utility/locale/locale.h"
#include "utility/locale/texts_default.h"
#include "utility/locale/texts_greek.h"

namespace {

// The numbers that devices and the blocks used by number rest on.
static_assert(TextCode::kNull == 0);
static_assert(TextCode::kMAC == 1);
static_assert(TextCode::kErrorNull == 541);
static_assert(TextCode::kFidelityCardExpired == 541 + 148);
static_assert(TextCode::kLanguageDefault == 960);
static_assert(TextCode::kLanguageItalian == 961 && TextCode::kLanguageEnglish == 962 &&
              TextCode::kLanguageFrench == 963 && TextCode::kLanguageGreek == 964);
static_assert(TextCode::kErrors == 1125);
static_assert(TextCode::kEnd == 1126);
static_assert(TextCode::kDigit9 == TextCode::kDigit0 + 9);
static_assert(sizeof texts_default::texts / sizeof texts_default::texts[0] == 1127);
static_assert(sizeof texts_greek::texts / sizeof texts_greek::texts[0] == 1127);

// The texts of the error block; null for the one whose wording is ours.
const char* const kErrorTexts[] = {
    "ERR.INTERNO",
    "ERR.DI IMPOSTAZ.",
    "$$$$$$$$$$$$$$$$",
    "* ERR.OROLOGIO *",
    "ERR.CHIAVE MACCH",
    "SUP. C.TA'TOTALE",
    "ERR. VERS.EPROM",
    "FUNZ.NON AMMESSA",
    "PLU NON TROVATO",
    "MANCANZA RESTO",
    "INSERIRE MODULO",
    "EFFET. PRELIEVO",
    "SUPERATA C.TA'MF",
    "MEM.FISC. GUASTA",
    "CLI. NON TROVATO",
    "M.FISC. ASSENTE",
    "TOTALE NEGATIVO",
    "SOST.CARTA GIORN",
    "* M.F.ESAURITA *",
    "* MAC NECESSARIO *",
    "FINIRE SCONTRINO",
    "ERR.TENS. STAMP.",
    "ERR.STAMP.SCONT.",
    "ERR.STAMP.GIORN",
    "MOV. NON AMMESSO",
    "C. VALUTA ERRATO",
    "PLU NON VALIDO",
    "ERR. COLLEGAM.",
    "ERR. SCRIT. M.F.",
    "ERR. LETT. M.F.",
    "INTERF. ASSENTE",
    "FARE AZZ.FISCALE",
    "SUP. MAX RIPRIST",
    "DATA ERRATA",
    "FINE SPAZIO INT",
    "SLIP ASSENTE",
    "MODULO ASSENTE",
    "MODULO FINITO",
    "INSERIRE MODULO",
    "NON AMM.IN APPR.",
    "SOGLIE FISCALI",
    "ERRORE HOST",
    "INSERIRE OPERAT.",
    "TESTA SOLLEVATA",
    "ERR. ALLIN. M.F.",
    "INSERIRE IMPORTO",
    "OBBL.SUBTOTALE",
    "ERR. MODEM",
    "ERR. TAGLIERINA",
    "CARTA NON VALIDA",
    "ERRORE CHIP-CARD",
    "FARE CHIUSURA",
    "S.T. NON ABIL.",
    "ERR. LOGO MF",
    "",
    "",
    "SCHEDA EM ASSENTE",
    "ERR. I/O SU EM",
    "ERRORE EM",
    "ERR.OFFERTA",
    "TROPPE OFFERTE",
    "CARTA SCADUTA",
    "ERRORE EFT-POS",
    "OPER. RESPINTA",
    "OPER. ANNULLATA",
    "ERRORE POMPA",
    "ATTIVARE EURO",
    "FINE MEM.TICKETS",
    "CARTA BLOCCATA",
    "CONN. STAMPANTE",
    "BATTERIA ASSENTE",
    "ERRORE CONTO",
    "MEMORIA CONTO",
    "CONTO NON APERTO",
    "CONTO APERTO",
    "KIT.PRN ASSENTE",
    "INSERIRE CARD",
    "CRED.INSUFFIC",
    "CHIUDERE ORDINAZ",
    "ERR.STAMP.CUCINA",
    "ERRORE BILANCIA",
    "ERR. RANGE BIL.",
    "MAC ATTIVO",
    "ERR.ACC.GIO.ELE.",
    "DGFE ASSENTE",
    "DGFE VERGINE",
    "DGFE ESAURITO",
    "NON CONNESSO",
    "NON CONNESSO",
    "FARE AZZERAMENTO",
    "ERR. SUB. VALUTA",
    "LINEA OCCUPATA",
    "",
    "",
    "",
    "",
    "",
    "",
    "",
    "",
    "SISTEMA OCCUPATO",
    "ERRORE TOTALE",
    "ERRORE PARAMETRO",
    "ERRORE TRANSAZ.",
    "ERR. IND. M.F.",
    "FINE SPAZIO IVA",
    "FINE SPAZIO G.E.",
    "FINE SPAZIO AZZ",
    "GIO.ELE. CHIUSO",
    "GIO.ELE. INV.",
    "GIO.ELE. ESTR.",
    "TAGLIERINA APER.",
    "ERR. ACCES. DATI",
    "ERRORE DATI",
    "INVIA AZZERAM.",
    "ERR. FIRMA FILE",
    "ERR. INVIO FILE",
    "SERVER OCCUPATO",
    "QUASI FINE CARTA",
    "MF IN ESAURIMENTO",
    "DGFE IN ESAURIMENTO",
    "ERRORE DISPLAY",
    "ERRORE USB",
    "ERRORE BAT. BCK",
    "SETTARE ATECO!",
    "VALORE NON ARROT.",
    nullptr,
    "ERR. EXPORT FILE",
    "FARE EXPORT FILE",
    "ERR. FIDELITY",
    "ERR. CONNESSIONE",
    "ERR. PROTOCOL",
    "CARTA INATTIVA",
    "CARTA BLOCCATA",
    "CARTA INV/STATUS",
    "PIN ERRATO",
    "CARTA NON CARICATA",
    "CARTA NON ABILITATA",
    "CREDITO INSUFFICIENTE",
    "DISCONNESSA",
    "NON AUTORIZZATO",
    "OBB. P.I.CLIENTE",
    "SOGLIA FATT.SEM.",
    "ERR. FIDELITY GEN.",
    "CARTA INESISTENTE",
    "BATT.QUASI SCAR.",
    "BATTERIA SCARICA",
    "CARTA SOSPESA",
    "CARTA SCADUTA",
};

// Greek letters of UTF-8 in code page 1253; ASCII stays.
std::string toCp1253(const std::string& utf8) {
  std::string out;
  for (size_t i = 0; i < utf8.size(); ++i) {
    const unsigned char byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {
      out += utf8[i];
      continue;
    }
    const unsigned char next = i + 1 < utf8.size() ? static_cast<unsigned char>(utf8[++i]) : 0;
    const int code = (byte & 0x1F) << 6 | (next & 0x3F);
    if ((byte & 0xE0) != 0xC0 || code < 0x0388 || code > 0x03CE) return "not Greek";
    out += static_cast<char>(code - 0x0388 + 0xB8);
  }
  return out;
}

struct Row {
  std::string name, italian, greek;
  bool has_greek;
};

std::vector<Row> readSource() {
  std::vector<Row> rows;
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/src/utility/locale/texts.tsv");
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    const size_t first = line.find('\t');
    const size_t second = line.find('\t', first + 1);
    if (first == std::string::npos || second == std::string::npos) return {};
    const std::string greek = line.substr(second + 1);
    rows.push_back({line.substr(0, first), line.substr(first + 2, second - first - 3),
                    greek == "-" ? "" : greek.substr(1, greek.size() - 2), greek != "-"});
  }
  return rows;
}

TEST(TextTables, ErrorBlockReadsAsGiven) {
  static_assert(sizeof kErrorTexts / sizeof kErrorTexts[0] == 149);
  for (int i = 0; i < 149; ++i) {
    const char* const text = texts_default::texts[TextCode::kErrorNull + i];
    if (kErrorTexts[i] != nullptr) {
      EXPECT_STREQ(kErrorTexts[i], text) << i;
    } else {
      EXPECT_EQ(TextCode::kPaymentServiceError, TextCode::kErrorNull + i);
      EXPECT_STRNE("", text);
    }
  }
}

TEST(TextTables, TellingRowsReadAsGiven) {
  const struct {
    TextCode::Enum code;
    const char* italian;
    const char* greek;
  } rows[] = {
      {TextCode::kDiscount, "SCONTO", "ΕΚΠΤΩΣΗ ΠΟΣΟΥ"},
      {TextCode::kSurcharge, "MAGGIORAZIONE", "ΕΠΙΒΑΡΥΝΣΗ"},
      {TextCode::kDiscountPercentage, "SCONTO %", "ΕΚΠΤΩΣΗ%"},
      {TextCode::kSurchargePercentage, "MAGGIORAZIONE %", "ΕΠΙΒΑΡΥΝΣΗ%"},
      {TextCode::kSellDeposit, "STORNO ACCONTO", "ΠΡΟΣ ΠΩΛΗΣΗ"},
      {TextCode::kBuoniMonouso, "BUONI MONOUSO", "BUONI MONOUSO"},
      {TextCode::kError, "ERRORE", "ΛΑΘΟΣ "},
      {TextCode::kShortError, "ERR.", "ΛΑΘΟΣ"},
      {TextCode::kSubtotal, "SUBTOTALE", "ΜΕΡ. ΣΥΝΟΛΟ"},
      {TextCode::kTotal, "TOTALE", "ΣΥΝΟΛΟ"},
      {TextCode::kYes, "SI", "ΝΑΙ"},
      {TextCode::kNo, "NO", "ΟΧΙ"},
      {TextCode::kVat, "IVA", "ΑΞΙΑ ΦΠΑ"},
      {TextCode::kFiscalCode, "MF", "ΦΜ"},
      {TextCode::kCode, "CODICE", "ΚΩΔΙΚΟΣ"},
      {TextCode::kModel, "MODELLO", "ΜΟΝΤΕΛΟ"},
      {TextCode::kLanguageDefault, "DEFAULT", "ΕΞ ΟΡΙΣΜΟΥ"},
      {TextCode::kLanguageItalian, "ITALIANO", "ΙΤΑΛΙΚΑ"},
      {TextCode::kLanguageEnglish, "INGLESE", "ΑΓΓΛΙΚΑ"},
      {TextCode::kLanguageFrench, "FRANCESE", "ΓΑΛΛΙΚΑ"},
      {TextCode::kLanguageGreek, "GRECO", "ΕΛΛΗΝΙΚΑ"},
      {TextCode::kErrorNull, "ERR.INTERNO", "ΕΣΩΤ. ΛΑΘΟΣ"},
      {TextCode::kErrorSettings, "ERR.DI IMPOSTAZ.", "ΛΑΘΟΣ ΧΕΙΡΙΣΜΟΣ"},
  };
  for (const auto& row : rows) {
    EXPECT_STREQ(row.italian, texts_default::texts[row.code]);
    EXPECT_EQ(toCp1253(row.greek), texts_greek::texts[row.code]);
  }
}

TEST(TextTables, GreekIsInCodePage1253) {
  EXPECT_STREQ("\xCD\xC1\xC9", texts_greek::texts[TextCode::kYes]);
  EXPECT_STREQ("\xCB\xC1\xC8\xCF\xD3 ", texts_greek::text_kError);
}

TEST(TextTables, TheEmptyTextsAreEmpty) {
  EXPECT_STREQ("", texts_default::text_kNull);
  EXPECT_EQ(texts_default::text_kNull, texts_default::texts[TextCode::kNull]);
  EXPECT_STREQ("", texts_greek::texts[TextCode::kNull]);
  for (const TextCode::Enum code :
       {TextCode::kError54, TextCode::kError55, TextCode::kError92, TextCode::kError99}) {
    EXPECT_STREQ("", texts_default::texts[code]);
    EXPECT_STREQ("", texts_greek::texts[code]);
  }
}

TEST(TextTables, DigitKeysReadAsTheirDigits) {
  for (int digit = 0; digit < 10; ++digit) {
    const std::string text(1, static_cast<char>('0' + digit));
    EXPECT_EQ(text, texts_default::texts[TextCode::kDigit0 + digit]);
    EXPECT_EQ(text, texts_greek::texts[TextCode::kDigit0 + digit]);
  }
}

TEST(TextTables, NoEntryIsNullInAnyLanguage) {
  for (int code = 0; code <= TextCode::kEnd; ++code) {
    EXPECT_NE(nullptr, texts_default::texts[code]) << code;
    EXPECT_NE(nullptr, texts_greek::texts[code]) << code;
  }
}

TEST(TextTables, EveryCodeOutsideTheErrorBlockHasADefaultText) {
  for (int code = TextCode::kNull + 1; code < TextCode::kEnd; ++code) {
    if (code >= TextCode::kErrorNull && code < TextCode::kErrorNull + 149) continue;
    EXPECT_STRNE("", texts_default::texts[code]) << code;
  }
}

TEST(TextTables, AreWhatTheirSourceSays) {
  const std::vector<Row> rows = readSource();
  ASSERT_EQ(static_cast<size_t>(TextCode::kEnd), rows.size());
  int greek = 0;
  for (size_t code = 0; code < rows.size(); ++code) {
    EXPECT_EQ(rows[code].italian, texts_default::texts[code]) << rows[code].name;
    if (rows[code].has_greek) {
      ++greek;
      EXPECT_EQ(toCp1253(rows[code].greek), texts_greek::texts[code]) << rows[code].name;
    } else {
      EXPECT_EQ(texts_default::texts[code], texts_greek::texts[code]) << rows[code].name;
    }
  }
  EXPECT_GT(greek, 750);
}

TEST(TextTables, CodesAreNumberedAsTheirRows) {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/src/utility/locale/textcode.h");
  const std::vector<Row> rows = readSource();
  size_t code = 0;
  std::string line;
  while (std::getline(file, line)) {
    if (line.compare(0, 5, "    k") != 0 && line.compare(0, 5, "    K") != 0) continue;
    const std::string name = code < rows.size() ? rows[code].name : "kEnd";
    EXPECT_EQ("    " + name + " = " + std::to_string(code) + ",", line);
    ++code;
  }
  EXPECT_EQ(rows.size() + 1, code);
}

// Device labels: upper case but for the rows that say otherwise, and short.
TEST(TextTables, LabelsAreShortAndInUpperCase) {
  for (const Row& row : readSource()) {
    EXPECT_LE(row.italian.size(), 24U) << row.name;
    EXPECT_LE(toCp1253(row.greek).size(), 24U) << row.name;
    const bool lower = row.name.size() > 5 && row.name.substr(row.name.size() - 5) == "Lower";
    for (const char c : row.italian) {
      EXPECT_TRUE(c >= ' ' && c < 0x7F) << row.name;
      if (!lower) {
        EXPECT_FALSE(c >= 'a' && c <= 'z') << row.name;
      }
    }
    for (const char c : toCp1253(row.greek)) {
      const unsigned char byte = static_cast<unsigned char>(c);
      // Small letters are 0xDC to 0xFE.
      EXPECT_TRUE(byte < 'a' || (byte > 'z' && byte < 0xDC)) << row.name;
    }
  }
}

}  // namespace
