// The screens in the language "qps", whose texts are longer by a third, with accents, each between
// brackets: what is cut loses a bracket, what is not translated has none, and tables have to go
// along.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "program_run.h"
#include "program_tree.h"
#include "terminal_run.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

const std::string kOpen = "⟦";
const std::string kClose = "⟧";

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

size_t Columns(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

// What stands outside of the brackets; adds "CUT" where one has no other.
std::string Outside(const std::string& text) {
  std::string out;
  int depth = 0;
  for (size_t at = 0; at < text.size();) {
    if (text.compare(at, kOpen.size(), kOpen) == 0) {
      ++depth;
      at += kOpen.size();
    } else if (text.compare(at, kClose.size(), kClose) == 0) {
      if (--depth < 0) return out + "CUT";
      at += kClose.size();
    } else {
      if (depth == 0) out += text[at];
      ++at;
    }
  }
  return depth == 0 ? out : out + "CUT";
}

// Words of a sentence that nobody translated.
std::vector<std::string> English(const std::string& text) {
  static const std::regex sentence("[A-Za-z]{2,}[,;:]? [a-z]{3,}");
  std::vector<std::string> found;
  for (const std::string& line : LinesOf(Outside(text))) {
    // "Usage: lorimat fault [OPTIONS]" is what one types.
    const bool usage = line.substr(0, 10) == ": lorimat ";
    if (!usage && std::regex_search(line, sentence)) found.push_back(line);
  }
  return found;
}

void ExpectWhole(const std::string& text, const std::string& what) {
  EXPECT_THAT(text, HasSubstr(kOpen)) << what;
  EXPECT_THAT(Outside(text), Not(HasSubstr("CUT"))) << what << ":\n" << text;
}

// Of a screen that has no sentences but the program's own.
void ExpectTranslated(const std::string& text, const std::string& what) {
  ExpectWhole(text, what);
  EXPECT_THAT(English(text), IsEmpty()) << what;
}

// The column where the second entry of a line begins, behind two blanks or more.
size_t SecondColumn(const std::string& line) {
  const size_t first = line.find_first_not_of(' ');
  const size_t gap = line.find("  ", first);
  if (first == std::string::npos || gap == std::string::npos) return 0;
  return Columns(line.substr(0, line.find_first_not_of(' ', gap)));
}

std::set<size_t> SecondColumns(const std::vector<std::string>& lines) {
  std::set<size_t> columns;
  for (const std::string& line : lines) columns.insert(SecondColumn(line));
  return columns;
}

class PseudoLanguage : public testing::Test {
 protected:
  PseudoLanguage() {
    tree_.SetCatalog("qps", ReadFile(LORIMAT_TEST_CATALOGS "/pseudo.mo"));
    const std::string lines = Folder().Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
    sold_ = Run({"run", lines, "--register", file_, "--clock", "2024-03-15 10:30"});
    EXPECT_EQ(sold_.exit_code, 0) << sold_.errors;
  }

  const TestFolder& Folder() const { return tree_.folder(); }

  ProgramRun Run(const std::vector<std::string>& arguments, const std::string& input = {}) const {
    return tree_.Run(arguments, {.folder = Folder().path(),
                                 .input = input,
                                 .environment = {{"LANG", "C.UTF-8"}, {"LANGUAGE", "qps"}}});
  }

  ProgramTree tree_;
  const std::string file_ = "shop.register";
  ProgramRun sold_;
};

}  // namespace

TEST_F(PseudoLanguage, HelpOfAllCommands) {
  const std::vector<std::vector<std::string>> commands = {{},
                                                          {"init"},
                                                          {"set"},
                                                          {"run"},
                                                          {"shell"},
                                                          {"check"},
                                                          {"words"},
                                                          {"explain"},
                                                          {"status"},
                                                          {"paper"},
                                                          {"journal"},
                                                          {"journal", "show"},
                                                          {"journal", "verify"},
                                                          {"fault"},
                                                          {"copy"},
                                                          {"door"},
                                                          {"door", "backup"},
                                                          {"backup"},
                                                          {"restore"},
                                                          {"token"},
                                                          {"token", "add"},
                                                          {"help"},
                                                          {"version"}};
  for (std::vector<std::string> command : commands) {
    const std::string what = command.empty() ? "lorimat" : command.back();
    command.emplace_back("--help");
    const ProgramRun run = Run(command);
    EXPECT_EQ(run.exit_code, 0);
    ExpectTranslated(run.output, what);
  }
}

TEST_F(PseudoLanguage, ExamplesOfTheHelpKeepTheirLines) {
  const std::vector<std::string> lines = LinesOf(Run({"init", "--help"}).output);
  // The shell's sign for a line that goes on.
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.back() == '\\'; }),
            2);
}

TEST_F(PseudoLanguage, HelpHasItsTextsInOneColumn) {
  std::vector<std::string> commands;
  for (const std::string& line : LinesOf(Run({"--help"}).output)) {
    if (std::regex_search(line, std::regex("^  [a-z]+  "))) commands.push_back(line);
  }
  EXPECT_THAT(commands, SizeIs(23));
  EXPECT_THAT(SecondColumns(commands), ElementsAre(30));
}

TEST_F(PseudoLanguage, NotesAndErrors) {
  ExpectTranslated(sold_.errors, "the first run");
  const std::string wrong = Folder().Write("wrong.cmd", "VNED\nVEND REP=99,PRE=1\nVEND REP=1\n");
  const std::vector<std::vector<std::string>> commands = {{"status", "--register", "none"},
                                                          {"run", "none"},
                                                          {"explain", "abc"},
                                                          {"fault", "xyz"},
                                                          {"run", "--papper"},
                                                          {"rnu"},
                                                          {"words", "--json", "--markdown"},
                                                          {"init", file_},
                                                          {"copy", file_, file_},
                                                          {"set", file_},
                                                          {"words", "--command", "VEMD"}};
  for (const auto& command : commands) {
    const ProgramRun run = Run(command);
    EXPECT_NE(run.exit_code, 0) << command[0];
    ExpectTranslated(run.errors, command[0]);
  }
  const ProgramRun run = Run({"run", wrong});
  EXPECT_EQ(run.exit_code, 1);
  ExpectWhole(run.errors, "failing lines");
  std::string told;
  for (const std::string& line : LinesOf(run.errors)) {
    if (line.find(": ERROR ") == std::string::npos) told += line + "\n";
  }
  EXPECT_THAT(English(told), IsEmpty());
}

TEST_F(PseudoLanguage, TheTableOfFailingLines) {
  Folder().Write("wrong.cmd", "VNED\nVEND REP=99,PRE=1\nVNED\n");
  std::vector<std::string> table;
  for (const std::string& line : LinesOf(Run({"run", "wrong.cmd"}).errors)) {
    if (std::regex_search(line, std::regex("^ +(⟦tímés|[0-9]+  )"))) table.push_back(line);
  }
  ASSERT_THAT(table, SizeIs(3));
  const auto column_of = [](const std::string& line, const std::string& text) {
    return Columns(line.substr(0, line.find(text)));
  };
  EXPECT_EQ(column_of(table[1], "wrong.cmd:1"), column_of(table[0], "⟦fírst"));
  EXPECT_EQ(column_of(table[2], "wrong.cmd:2"), column_of(table[0], "⟦fírst"));
  EXPECT_EQ(column_of(table[1], "⟦"), column_of(table[0], "⟦whát"));
}

TEST_F(PseudoLanguage, Status) {
  const std::string status = Run({"status", "--register", file_}).output;
  ExpectTranslated(status, "status");
  const std::vector<std::string> lines = LinesOf(status);
  EXPECT_GT(lines.size(), 15u);
  EXPECT_THAT(SecondColumns(lines), SizeIs(1)) << status;
}

TEST_F(PseudoLanguage, Check) {
  const std::string wrong =
      Folder().Write("wrong.cmd", "VNED\nVEND REP=1, PRE=1,00\nCHIU TEND=9\nVEND PRE='\n");
  const ProgramRun run = Run({"check", wrong});
  EXPECT_EQ(run.exit_code, 1);
  ExpectTranslated(run.output, "check");
  const std::string words = Folder().Write("words.ini", "[OPCOD]\n10=SELL\n151=LATE\n[10]\n1=A\n");
  ExpectTranslated(Run({"check", words}).output, "check of words");
}

TEST_F(PseudoLanguage, ExplainHangsItsTextsBehindTheLongestHeading) {
  const ProgramRun run = Run({"explain", "265", "1643", "0", "-1", "99999"});
  ExpectTranslated(run.output, "explain");
  size_t seen = 0;
  for (const std::string& line : LinesOf(run.output)) {
    ASSERT_LE(Columns(line), 78u) << line;
    static const std::regex heading("^  ⟦(Téxt|Cláss|Fróm) ~+⟧ *");
    std::smatch match;
    if (std::regex_search(line, match, heading)) {
      ++seen;
      EXPECT_EQ(Columns(match[0]), 12u) << line;
    } else if (line.substr(0, 3) == "   ") {
      EXPECT_EQ(line.find_first_not_of(' '), 12u) << line;
    }
  }
  EXPECT_GT(seen, 8u);
}

TEST_F(PseudoLanguage, WordsUnderTheirHeadings) {
  const std::string words = Run({"words"}).output;
  ExpectTranslated(words, "words");
  const std::vector<std::string> lines = LinesOf(words);
  const size_t command = Columns(lines[0].substr(0, lines[0].find("⟦Cómmánd")));
  const size_t name = Columns(lines[0].substr(0, lines[0].find("⟦Námé")));
  for (const std::string& line : lines) {
    if (line.find("QTA") == std::string::npos || line.find(kOpen) != std::string::npos) continue;
    EXPECT_EQ(line.find("QTA"), name) << line;
  }
  EXPECT_EQ(lines[1].find("PROG"), command) << lines[1];
  EXPECT_EQ(lines[1].find("INIZIO"), name) << lines[1];
}

TEST_F(PseudoLanguage, JournalUnderItsHeadings) {
  const std::string journal = Run({"journal", "--register", file_}).output;
  ExpectTranslated(journal, "journal");
  const std::vector<std::string> lines = LinesOf(journal);
  ASSERT_THAT(lines, SizeIs(2));
  for (const auto& [heading, entry] : std::vector<std::pair<std::string, std::string>>{
           {"⟦Kínd", "⟦"}, {"⟦Númbér", "0001-0001"}, {"⟦Tímé", "15/03/2024"}, {"⟦Fírst", "DOC"}}) {
    EXPECT_EQ(Columns(lines[0].substr(0, lines[0].find(heading))),
              Columns(lines[1].substr(0, lines[1].find(entry))))
        << journal;
  }
  ExpectTranslated(Run({"journal", "verify", "--register", file_}).output, "verify");
}

TEST_F(PseudoLanguage, FaultsBackupAndRestore) {
  ExpectTranslated(Run({"fault"}).output, "fault");
  ExpectTranslated(Run({"fault", "paper-end", "--register", file_}).output, "a fault");
  ExpectTranslated(Run({"fault", "--clear", "--register", file_}).output, "no fault");
  ExpectTranslated(Run({"backup", "tables", "--register", file_}).output, "backup");
  ExpectTranslated(Run({"restore", "tables", "--register", file_}).output, "restore");
  ExpectTranslated(Run({"copy", file_, "copy.register"}).output, "copy");
}

TEST_F(PseudoLanguage, TheShellInWindowsOfTwoWidths) {
  for (const size_t columns : {size_t{80}, size_t{40}}) {
    TerminalRun shell({"shell"}, {.folder = Folder().path(),
                                  .environment = {{"HOME", Folder().path()}, {"LANGUAGE", "qps"}},
                                  .columns = columns,
                                  .height = 200,
                                  .program = tree_.program()});
    for (const char* line : {".help", ".status", ".fault", ".xyz", "VNED", "SUBT", "? XYZ"}) {
      std::string rows;
      for (const std::string& row : shell.Enter(line)) {
        EXPECT_LE(Columns(row), columns) << line;
        rows += row + "\n";
      }
      ExpectWhole(rows, line);
    }
    // There is no page of this language, and the English one has its own headings.
    std::string page;
    for (const std::string& row : shell.Enter("? VEND")) page += row + "\n";
    ExpectWhole(page, "? VEND");
    EXPECT_THAT(page, HasSubstr("Field"));
    EXPECT_THAT(page, Not(HasSubstr("Fíéld")));
    EXPECT_THAT(page, HasSubstr("VEND: command 10, short VE\n"));
    shell.Type("quit\r");
    shell.WaitForEnd();
  }
}
