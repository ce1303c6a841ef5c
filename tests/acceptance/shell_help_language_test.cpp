// What "?" tells of the language, in the language of the user.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

namespace {

std::string Told(const std::string& input, const std::string& language) {
  const ProgramRun run =
      RunConsole({"shell"}, {.input = input, .environment = {{"LANG", language}}});
  EXPECT_EQ(0, run.exit_code);
  EXPECT_THAT(run.errors, IsEmpty());
  return run.output;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The names of the commands that a list of them has.
std::vector<std::string> CommandsIn(const std::string& overview) {
  const std::regex row("  ([A-Z0-9]+) +([A-Z0-9]+)  .*");
  std::vector<std::string> names;
  for (const std::string& line : LinesOf(overview)) {
    std::smatch match;
    if (std::regex_match(line, match, row)) names.push_back(match[1]);
  }
  return names;
}

// The words of small letters, which are those of texts.
size_t TextWords(const std::string& line) {
  std::istringstream stream(line);
  size_t count = 0;
  for (std::string word; stream >> word;) {
    count += word.size() > 1 && std::all_of(word.begin(), word.end(), [](char c) {
               return std::islower(static_cast<unsigned char>(c)) != 0;
             });
  }
  return count;
}

}  // namespace

TEST(ShellHelpLanguage, ACommandIsToldInItalianThroughout) {
  const std::string page = Told("? VEND\n", "it_IT.UTF-8");
  EXPECT_THAT(page, StartsWith("VEND: comando 10, abbreviato VE\n"
                               "Vende una riga. La prima vendita apre lo scontrino, "));
  EXPECT_THAT(page, HasSubstr("\n  Campo      Abbrev.  Prende\n"
                              "  REP        REP      numero del reparto\n"));
  EXPECT_THAT(page, HasSubstr("\n  QTA        Q        quantità\n"));
  EXPECT_THAT(page, HasSubstr("\n  QUANT      Q        come QTA\n"));
  EXPECT_THAT(page, HasSubstr("\n  RESO       RES      indicatore: riga di reso\n"));
  EXPECT_THAT(page, HasSubstr("\nEsempi\n  VEND REP=1, PRE=12.34\n"));
  EXPECT_THAT(page, HasSubstr("\n  269          né REP né ART, oppure tutti e due\n"));
  EXPECT_THAT(page, HasSubstr("\n  dispositivo  non si è potuto aprire lo scontrino, "));
  for (const char* english : {"Sells", "receipt", "flag", "quantity", "device", "Short"}) {
    EXPECT_THAT(page, Not(HasSubstr(english)));
  }
}

TEST(ShellHelpLanguage, WordsForValuesAndWhatAGroupSharesAreItalian) {
  const std::string tender = Told("? CHIU\n", "it");
  EXPECT_THAT(tender, HasSubstr("\n  Valore  Parola     Identificativo\n"
                                "  1       CONTANTI   0, contanti; 6, "));
  EXPECT_THAT(Told("? SCONTO\n", "it"),
              HasSubstr("\nSconti, maggiorazioni, correzioni\nI quattro comandi di sconto "));
  EXPECT_THAT(Told("? SELEZ\n", "it"), HasSubstr("\nSenza effetto; risponde 1.\n"));
}

TEST(ShellHelpLanguage, TheListOfCommandsIsItalian) {
  const std::string italian = Told("?\n", "it_IT.UTF-8");
  EXPECT_THAT(italian, StartsWith("Vendita\n  VEND        VE          Vende una riga.\n\n"
                                  "Pagamento\n  CHIU        CHIU        Paga, e chiude lo "));
  EXPECT_THAT(italian, HasSubstr("\nGiornale elettronico e riepilogo telematico\n  DGFE "));
  const std::string english = Told("?\n", "C");
  EXPECT_THAT(CommandsIn(english), SizeIs(testing::Gt(60u)));
  EXPECT_EQ(CommandsIn(english), CommandsIn(italian));
}

TEST(ShellHelpLanguage, OthersAreToldInEnglish) {
  for (const char* language : {"C", "en_GB.UTF-8", "de_DE.UTF-8", ""}) {
    const std::string page = Told("?\n? VEND\n", language);
    EXPECT_THAT(page, StartsWith("Sale\n  VEND        VE          Sells one line.\n\nPayment\n"));
    EXPECT_THAT(page, HasSubstr("\nVEND: command 10, short VE\nSells one line. The first sale "));
    EXPECT_THAT(page, HasSubstr("\n  REP        REP    department number\n"));
    EXPECT_THAT(page, HasSubstr("\n  269     neither REP nor ART, or both\n"));
    EXPECT_THAT(page, Not(HasSubstr("reparto")));
  }
}

// No line of text is the same in both languages, whatever command is asked for.
TEST(ShellHelpLanguage, NoCommandKeepsAnEnglishLine) {
  std::string input = "?\n";
  for (const std::string& name : CommandsIn(Told("?\n", "C"))) input += "? " + name + "\n";
  std::set<std::string> english;
  for (const std::string& line : LinesOf(Told(input, "C"))) {
    if (TextWords(line) >= 2) english.insert(line);
  }
  EXPECT_THAT(english, SizeIs(testing::Gt(400u)));
  const std::vector<std::string> italian = LinesOf(Told(input, "it_IT.UTF-8"));
  EXPECT_THAT(italian, SizeIs(testing::Gt(1000u)));
  for (const std::string& line : italian) EXPECT_EQ(0u, english.count(line)) << line;
}
