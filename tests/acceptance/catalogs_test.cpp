// Catalogs of messages that are missing, broken or wrong, and names and texts that are odd.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "program_run.h"
#include "program_tree.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

using Environment = std::map<std::string, std::string>;

std::string ItalianCatalog() {
  return ReadFile(std::string(LORIMAT_BUILD_FOLDER) + "/share/locale/it/LC_MESSAGES/lorimat.mo");
}

// The catalog with other text of the same length.
std::string ItalianWith(const std::string& text, const std::string& other) {
  std::string bytes = ItalianCatalog();
  const size_t at = bytes.find(text);
  EXPECT_NE(at, std::string::npos) << text;
  EXPECT_EQ(text.size(), other.size());
  return bytes.replace(at, text.size(), other);
}

class Catalogs : public testing::Test {
 protected:
  // What `words --help` comes in: "it", "en", or what it said.
  std::string Language(const Environment& environment) const {
    const ProgramRun run = tree_.Run({"words", "--help"}, {.environment = environment});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.errors, IsEmpty());
    if (run.output.find("\nCodici di uscita:") != std::string::npos) return "it";
    return run.output.find("\nExit codes:") != std::string::npos ? "en" : run.output;
  }

  // What is told of a file that is not there.
  std::string Missing(const std::string& name) const {
    return tree_.Run({"check", name}, {.environment = {{"LANG", "it"}}}).errors;
  }

  ProgramTree tree_;
};

}  // namespace

TEST_F(Catalogs, AreFoundBesideTheProgram) {
  EXPECT_EQ(Language({{"LANG", "it"}}), "en");
  tree_.SetCatalog("it", ItalianCatalog());
  EXPECT_EQ(Language({{"LANG", "it"}}), "it");
}

TEST_F(Catalogs, AreInstalled) {
  const ProgramRun installed = RunProgram(
      LORIMAT_CMAKE,
      {"--install", std::string(LORIMAT_BUILD_FOLDER) + "/po", "--prefix", tree_.folder().path()});
  ASSERT_EQ(installed.exit_code, 0) << installed.errors;
  EXPECT_EQ(Language({{"LANG", "it_IT.UTF-8"}}), "it");
}

TEST_F(Catalogs, LanguageNamesThemInTheirOrder) {
  tree_.SetCatalog("it", ItalianCatalog());
  EXPECT_EQ(Language({{"LANG", "C.UTF-8"}, {"LANGUAGE", "it"}}), "it");
  EXPECT_EQ(Language({{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "fr:it"}}), "it");
  EXPECT_EQ(Language({{"LANG", "it_IT.UTF-8"}, {"LANGUAGE", "de"}}), "en");
  EXPECT_EQ(Language({{"LANG", "it_IT.UTF-8"}, {"LANGUAGE", "en_GB:it"}}), "en");
  EXPECT_EQ(Language({{"LANG", "it_IT.UTF-8"}, {"LANGUAGE", "C:it"}}), "en");
  EXPECT_EQ(Language({{"LANG", "it_IT.UTF-8"}, {"LANGUAGE", ""}}), "it");
  EXPECT_EQ(Language({{"LANG", "de"}, {"LANGUAGE", "::it_CH:"}}), "it");
  EXPECT_EQ(Language({{"LANG", "de"}}), "en");
}

TEST_F(Catalogs, InTheLocaleCLanguageDoesNotCount) {
  tree_.SetCatalog("it", ItalianCatalog());
  EXPECT_EQ(Language({{"LANGUAGE", "it"}}), "en");
  EXPECT_EQ(Language({{"LANG", "C"}, {"LANGUAGE", "it"}}), "en");
  EXPECT_EQ(Language({{"LANG", "POSIX"}, {"LANGUAGE", "it"}}), "en");
  EXPECT_EQ(Language({{"LC_ALL", "C"}, {"LANG", "it"}, {"LANGUAGE", "it"}}), "en");
}

TEST_F(Catalogs, OddNamesOfLanguagesAreNone) {
  tree_.SetCatalog("it", ItalianCatalog());
  const std::string path = tree_.folder().Path("share/locale/it");
  for (const std::string& name :
       {std::string("../locale/it"), path, std::string("/"), std::string("it/"),
        std::string("\x1B[31m"), std::string("it_\n"), std::string(100000, 'i'),
        "it_" + std::string(100000, 'A'), std::string("%s%n"), std::string("{}"),
        std::string("\xFF\xFE"), std::string("it_IT/../..")}) {
    EXPECT_EQ(Language({{"LANG", "de"}, {"LANGUAGE", name}}), "en") << name.substr(0, 40);
    EXPECT_EQ(Language({{"LANG", name}}), "en") << name.substr(0, 40);
    EXPECT_EQ(Language({{"LANG", "de"}, {"LANGUAGE", name + ":it"}}), "it") << name.substr(0, 40);
  }
}

TEST_F(Catalogs, BrokenOnesCountAsMissing) {
  const std::string whole = ItalianCatalog();
  for (const size_t size : {size_t{0}, size_t{4}, size_t{27}, size_t{28}, size_t{100},
                            whole.size() / 4, whole.size() / 2, whole.size() - 1}) {
    tree_.SetCatalog("it", whole.substr(0, size));
    EXPECT_EQ(Language({{"LANG", "it"}}), "en") << size;
  }
  std::string other = whole;
  other[4] = 7;  // the version
  tree_.SetCatalog("it", other);
  EXPECT_EQ(Language({{"LANG", "it"}}), "en");
  tree_.SetCatalog("it", std::string(50000, '\xFF'));
  EXPECT_EQ(Language({{"LANG", "it"}}), "en");
  tree_.SetCatalog("it", ItalianWith("plural=(n != 1);", "plural=(n %  0);"));
  EXPECT_EQ(Language({{"LANG", "it"}}), "en");
  tree_.SetCatalog("it", ItalianWith("charset=UTF-8", "charset=UTF-7"));
  EXPECT_EQ(Language({{"LANG", "it"}}), "en");
  std::filesystem::remove(tree_.CatalogPlace("it"));
  std::filesystem::create_directory(tree_.CatalogPlace("it"));
  EXPECT_EQ(Language({{"LANG", "it"}}), "en");
}

TEST_F(Catalogs, ABrokenOneLetsTheNextLanguageThrough) {
  tree_.SetCatalog("it", ItalianCatalog());
  tree_.SetCatalog("fr", ItalianCatalog().substr(0, 1000));
  EXPECT_EQ(Language({{"LANG", "fr_FR.UTF-8"}, {"LANGUAGE", "fr:it"}}), "it");
  tree_.SetCatalog("it_CH", "broken");
  EXPECT_EQ(Language({{"LANG", "it_CH.UTF-8"}}), "en");
}

TEST_F(Catalogs, AMessageWithOtherFieldsComesInEnglish) {
  const std::string good = "{}: non si può aprire: {}";
  const std::string english = "lorimat: none.cmd: cannot be opened: ";
  tree_.SetCatalog("it", ItalianCatalog());
  EXPECT_EQ(Missing("none.cmd"),
            "lorimat: none.cmd: non si può aprire: Il file o la cartella non esiste\n");
  for (const char* wrong :
       {"{}: non si può aprire: xx", "{}: non si può aprire:{}{}", "{}: non si puo aprire {:d}",
        "{}: non si puo aprir {:99}", "{}: non si può aprire: {", "{}: non si può aprire: }}",
        "{0} non si può aprire: {}", "{0}non si può aprire: {0}",
        "{}: non si può {aprire}: ", "{}: non s pu aprire: {:{}}"}) {
    std::string text = wrong;
    text.resize(good.size(), '.');
    tree_.SetCatalog(
        "it", ItalianWith(std::string(1, '\0') + good + '\0', std::string(1, '\0') + text + '\0'));
    // The cause is another message.
    EXPECT_EQ(Missing("none.cmd"), english + "Il file o la cartella non esiste\n") << text;
  }
}

TEST_F(Catalogs, NamesWithBracesAndPercentSignsStayAsTheyAre) {
  tree_.SetCatalog("it", ItalianCatalog());
  const std::string file = tree_.folder().Write("{}%s{0}%n{:d}", "not a register");
  for (const std::string& odd :
       {std::string("{}"), std::string("%s%n%d"), std::string("{0:1000000000}"), std::string("{"),
        std::string("}}"), std::string("{x!r}")}) {
    const std::vector<std::vector<std::string>> commands = {
        {"run", odd},
        {"run", file, "--language", odd},
        {"check", odd},
        {"explain", odd},
        {"words", "--command", odd},
        {"words", "--language", odd},
        {"status", "--register", odd},
        {"journal", "--register", odd},
        {"fault", odd, "--register", odd},
        {"paper", "--register", odd},
        {"copy", odd, odd},
        {"backup", odd, "--register", odd},
        {"restore", odd, "--register", odd},
        {"init", odd, "--serial", odd},
        {"init", odd, "--vat", odd},
        {"set", odd, "--serial", "1"},
        {"help", odd},
        {odd},
        {"run", file, "--" + odd},
    };
    for (const auto& command : commands) {
      const ProgramRun run =
          tree_.Run(command, {.folder = tree_.folder().path(), .environment = {{"LANG", "it"}}});
      EXPECT_THAT(run.exit_code, testing::AnyOf(1, 2)) << command[0] << " " << odd;
      EXPECT_THAT(run.errors, AllOf(StartsWith("lorimat: "), HasSubstr(odd))) << command[0];
    }
  }
  EXPECT_THAT(tree_.Run({"status", "--register", file}, {.environment = {{"LANG", "it"}}}).errors,
              AllOf(HasSubstr(file + ": "), Not(HasSubstr("is not"))));
}
