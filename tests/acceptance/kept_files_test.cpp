// No line writes over a file that the command works with or writes itself, by whatever command of
// the language and under whatever name: the line fails, and the file is what it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "shop.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

namespace fs = std::filesystem;

constexpr const char* kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";
constexpr const char* kNotRun = ": not run: ";

struct Form {
  const char* line;  // with a "%" where the name of the file goes
  bool makes_small;  // the name's capitals
};

// Every field that takes a file which the library or the device writes.
constexpr Form kForms[] = {
    {"LEGGI TAB=REPARTI, FILE='%'", true},
    {"LEGGI TAB=REPARTI, FILE='%', AGGIUNGI", true},
    {"INFO TIPO=1, FILE='%'", true},
    {"DIRECTIO CMD=1, FILE='%'", true},
    {"EMLINK CMD='DA', FILE='%'", true},
    {"EMLINK CMD='XX', FILE='%'", true},
    {"EMLINK CMD='UA', FILE='rows.txt', ERR='%'", true},
    {"EMLINK CMD='DA', FILE='rows.txt', ERR='%'", true},
    {"REPORT TIPO=1, STAMPA=0, FILE='%'", false},
    {"DGFE DAZETA=1, FILE='%'", false},
    {"RTEJ ESPORTA, FILE='%'", false},
    {"RTEJ DANUM=1, ANUM=1, FILE='%'", false},
    {"SAVELOTT FILE='%', TUTTO", false},
    // By number, cut short, and with a comment.
    {"#71 #1=1, #4='%'", true},
    {"#26 #1=1, #3=0, #10='%'", false},
    {"  inf  f='%', tip=1 ; a comment", true},
    {"@'rows.cmd','%'", true},
};

std::string With(const Form& form, const std::string& name) {
  std::string line = form.line;
  return line.replace(line.find('%'), 1, name) + "\n";
}

size_t Count(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

std::string Capitals(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return text;
}

class KeptFiles : public testing::Test {
 protected:
  KeptFiles() {
    folder_.Write("words.ini", ReadFile(SourceFile("language/merkelin.ini")));
    folder_.Write("rows.txt", "");
    folder_.Write("rows.cmd", "VEND REP=1, PRE=5.00\n");
    fs::copy_file(std::string(LORIMAT_LIB_FOLDER) + "/liblorimatrt.so", folder_.Path("lib.so"));
    fs::create_directory(folder_.Path("sub"));
  }

  ProgramRun Run(std::vector<std::string> arguments, const std::string& input = {}) const {
    return RunConsole(arguments, {.folder = folder_.path(), .input = input});
  }
  ProgramRun Sell(const std::string& file) const {
    return Run({"run", "-", "--clock", Shop::kClock, "--register", file}, kReceipt);
  }
  ProgramRun RunLines(const std::string& lines, const std::vector<std::string>& more) const {
    folder_.Write("lines.cmd", lines);
    std::vector<std::string> arguments = {"run",       "lines.cmd", "--language",
                                          "words.ini", "--clock",   Shop::kClock,
                                          "--library", "./lib.so",  "--terse"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  }

  // Names of one file; links are made for it.
  std::vector<std::string> NamesOf(const std::string& file, bool links_may_be_hard) const {
    fs::remove(folder_.Path("soft"));
    fs::remove(folder_.Path("hard"));
    fs::create_symlink(file, folder_.Path("soft"));
    std::vector<std::string> names = {file, "./" + file, "sub/../" + file, folder_.Path(file),
                                      "soft"};
    if (links_may_be_hard && fs::exists(folder_.Path(file))) {
      fs::create_hard_link(folder_.Path(file), folder_.Path("hard"));
      names.emplace_back("hard");
    }
    return names;
  }

  // A receipt, and behind it each form with each of the names.
  static std::string LinesWith(const std::vector<std::string>& names, size_t* count) {
    std::string lines = kReceipt;
    *count = 0;
    for (const Form& form : kForms) {
      for (const std::string& name : names) {
        lines += With(form, name);
        ++*count;
        if (!form.makes_small || name.front() == '/') continue;
        lines += With(form, Capitals(name));
        ++*count;
      }
    }
    return lines;
  }

  void ExpectRefused(const ProgramRun& run, size_t lines, const std::string& what) const {
    EXPECT_EQ(run.exit_code, 1) << what;
    EXPECT_EQ(Count(run.errors, kNotRun), lines) << what << "\n" << run.errors.substr(0, 2000);
    EXPECT_EQ(Count(run.errors, ": code "), 0U) << what << "\n" << run.errors.substr(0, 2000);
  }

  TestFolder folder_;
};

}  // namespace

TEST_F(KeptFiles, OfTheRunStayWhatTheyAre) {
  for (const std::string file : {"lines.cmd", "words.ini", "lib.so"}) {
    folder_.Write("lines.cmd", kReceipt);
    size_t count = 0;
    const std::string lines = LinesWith(NamesOf(file, true), &count);
    folder_.Write("lines.cmd", lines);
    const std::string before = folder_.Read(file);
    ExpectRefused(RunLines(lines, {}), count, file);
    EXPECT_TRUE(folder_.Read(file) == before) << file;
    EXPECT_TRUE(fs::is_symlink(folder_.Path("soft"))) << file;
    EXPECT_EQ(fs::hard_link_count(folder_.Path(file)), 2U) << file;
  }
}

// A copy of the program, with what it needs beside it.
TEST_F(KeptFiles, OfTheProgramStayWhatTheyAre) {
  const std::string program = folder_.Path("program");
  fs::copy_file(std::string(LORIMAT_BIN_FOLDER) + "/lorimat", program);
  const std::string settings = folder_.Write("registry.ini", "");
  size_t count = 0;
  folder_.Write("lines.cmd", LinesWith({"program", "registry.ini"}, &count));
  const ProgramRun run = RunProgram(
      program, {"run", "lines.cmd", "--language", "words.ini", "--library", "./lib.so", "--terse"},
      {.folder = folder_.path(), .environment = {{"LORIMATRT_REGISTRY", settings}}});
  ExpectRefused(run, count, "program");
  EXPECT_EQ(folder_.Read("registry.ini"), "");
  EXPECT_TRUE(ReadFile(program) == ReadFile(std::string(LORIMAT_BIN_FOLDER) + "/lorimat"));
}

TEST_F(KeptFiles, OfTheRegisterStayWhatTheyAre) {
  for (const std::string end : {"", "-wal", "-shm", "-journal"}) {
    const std::string file = "shop.register" + end;
    size_t count = 0;
    // A register of two names is not even opened.
    const std::string lines = LinesWith(NamesOf(file, false), &count);
    const ProgramRun run = RunLines(lines, {"--register", "shop.register"});
    ExpectRefused(run, count, file);
    const ProgramRun verified = Run({"journal", "verify", "--register", "shop.register"});
    EXPECT_EQ(verified.exit_code, 0) << file << verified.output << verified.errors;
    fs::remove(folder_.Path("soft"));
  }
  const ProgramRun status = Run({"status", "--register", "shop.register"});
  EXPECT_THAT(status.output, HasSubstr("Documents       4\n"));
}

// Of a register by another name, too: the log stands beside the file that the name means.
TEST_F(KeptFiles, OfARegisterBehindALinkStayWhatTheyAre) {
  fs::create_directory(folder_.Path("data"));
  ASSERT_EQ(Sell("data/shop.register").exit_code, 0);
  fs::create_symlink("data/shop.register", folder_.Path("link.register"));
  for (const std::string end : {"", "-wal", "-journal"}) {
    size_t count = 0;
    const std::string lines = LinesWith({"data/shop.register" + end}, &count);
    ExpectRefused(RunLines(lines, {"--register", "link.register"}), count, end);
  }
  EXPECT_EQ(Run({"journal", "verify", "--register", "data/shop.register"}).exit_code, 0);
}

TEST_F(KeptFiles, ThatTheRunWritesHaveWhatTheyShould) {
  const ProgramRun plain = RunLines(kReceipt, {"--paper", "plain.txt", "--png", "plain.png"});
  ASSERT_EQ(plain.exit_code, 0);
  for (const bool there : {false, true}) {
    for (const auto& [option, file] :
         std::vector<std::pair<std::string, std::string>>{{"--paper", "out.txt"},
                                                          {"--png", "out.png"},
                                                          {"--pdf", "out.pdf"},
                                                          {"--trace", "out.trace"}}) {
      if (there) folder_.Write(file, "old");
      if (!there) fs::remove(folder_.Path(file));
      size_t count = 0;
      const std::string lines = LinesWith(NamesOf(file, option != "--trace"), &count);
      ExpectRefused(RunLines(lines, {option, file}), count, file);
      const std::string written = folder_.Read(file);
      // The translator traces each line that it is given.
      EXPECT_TRUE(option == "--paper" ? written == folder_.Read("plain.txt")
                  : option == "--png" ? written == folder_.Read("plain.png")
                  : option == "--pdf" ? written.starts_with("%PDF-")
                                      : written.find("<CHIU>") != written.npos)
          << file;
    }
  }
}

TEST_F(KeptFiles, ThatTheStandardStreamsLeadToHaveWhatTheyShould) {
  size_t outputs = 0;
  size_t errors = 0;
  const std::string lines =
      LinesWith({"out.txt", "./out.txt"}, &outputs) + LinesWith({"errors.txt"}, &errors);
  folder_.Write("lines.cmd", lines);
  const ProgramRun run =
      RunProgram("/bin/bash",
                 {"-c", "\"$1\" run - --terse < lines.cmd > out.txt 2> errors.txt", "bash",
                  std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                 {.folder = folder_.path()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(folder_.Read("lines.cmd"), lines);
  EXPECT_EQ(Count(folder_.Read("out.txt"), "DOCUMENTO N. "), 2U);
  EXPECT_EQ(Count(folder_.Read("errors.txt"), kNotRun), outputs + errors);
}

// A batch is refused as a whole: once the library has it, none of its lines is held up.
TEST_F(KeptFiles, AreNoOutputOfABatch) {
  ASSERT_EQ(Sell("shop.register").exit_code, 0);
  for (const Form& form : kForms) {
    if (form.line[0] == '@') continue;
    for (const std::string name :
         {"shop.register", "inner.cmd", "errors.txt", "errors.txt.tmp", "lines.cmd"}) {
      const std::string inner = kReceipt + With(form, name);
      folder_.Write("inner.cmd", inner);
      const ProgramRun run = RunLines("@inner.cmd, errors.txt\n", {"--register", "shop.register"});
      ExpectRefused(run, 1, inner);
      EXPECT_THAT(run.errors, HasSubstr("lines.cmd:1: not run: inner.cmd:3: ")) << inner;
      EXPECT_EQ(folder_.Read("inner.cmd"), inner);
      EXPECT_FALSE(fs::exists(folder_.Path("errors.txt"))) << inner;
      EXPECT_FALSE(fs::exists(folder_.Path("errors.txt.tmp"))) << inner;
    }
    const std::string inner = kReceipt + With(form, "inner.cmd");
    folder_.Write("inner.cmd", inner);
    const ProgramRun run = Run({"run", "inner.cmd", "--batch"});
    ExpectRefused(run, 1, inner);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(folder_.Read("inner.cmd"), inner);
  }
  const ProgramRun status = Run({"status", "--register", "shop.register"});
  EXPECT_THAT(status.output, HasSubstr("Documents       1\n"));
}

// The folder that lines go to is the one that names count from, in a batch as line by line.
TEST_F(KeptFiles, AreFoundFromTheFolderThatLinesGoTo) {
  const std::string lines = "SETP DIR='sub'\nINFO TIPO=1, FILE='../shop.register'\n";
  folder_.Write("inner.cmd", lines);
  for (const std::string& sent : {lines, std::string("@inner.cmd\n")}) {
    const ProgramRun run = RunLines(sent, {"--register", "shop.register"});
    ExpectRefused(run, 1, sent);
    EXPECT_EQ(Run({"journal", "verify", "--register", "shop.register"}).exit_code, 0);
  }
  // From there the plain name is another file.
  folder_.Write("inner.cmd", "SETP DIR='sub'\nINFO TIPO=1, FILE='shop.register'\n");
  EXPECT_EQ(RunLines("@inner.cmd\n", {"--register", "shop.register"}).exit_code, 0);
  EXPECT_TRUE(fs::exists(folder_.Path("sub/shop.register")));
}

// The library copies the error file in the folder that the batch has ended in.
TEST_F(KeptFiles, AreNoErrorFileOfTheFolderThatABatchGoesTo) {
  folder_.Write("sub/out.txt.tmp", "mine");
  folder_.Write("inner.cmd", "SETP DIR='sub'\nWRONG\n");
  const ProgramRun run = RunLines("@inner.cmd, out.txt\n", {"--paper", "sub/out.txt.tmp"});
  ExpectRefused(run, 1, "sub");
}

TEST_F(KeptFiles, AreNoOutputOfTheShell) {
  folder_.Write("part.cmd", "INFO TIPO=1, FILE='part.cmd'\nINFO TIPO=1, FILE='shop.register'\n");
  const std::string part = folder_.Read("part.cmd");
  size_t count = 0;
  const std::string lines =
      LinesWith({"shop.register", "shop.register-wal"}, &count) + ".batch part.cmd\n";
  const ProgramRun run = Run({"shell", "--terse", "--register", "shop.register"}, lines);
  ExpectRefused(run, count + 2, "shell");
  EXPECT_EQ(folder_.Read("part.cmd"), part);
  EXPECT_EQ(Run({"journal", "verify", "--register", "shop.register"}).exit_code, 0);
  const ProgramRun json = Run({"shell", "--json", "--register", "shop.register"},
                              "{\"id\": 1, \"line\": \"INFO TIPO=1, FILE='shop.register'\"}\n");
  EXPECT_THAT(json.output, HasSubstr("\"kind\":\"output\""));
  EXPECT_THAT(json.output,
              HasSubstr("field FILE: 'shop.register' is the register's file: the line would write "
                        "over it"));
}

TEST_F(KeptFiles, AreToldOfByACheck) {
  ASSERT_EQ(Sell("shop.register").exit_code, 0);
  size_t count = 0;
  std::string lines = LinesWith({"shop.register", "words.ini", "lines.cmd"}, &count);
  lines += "SETP DIR='sub'\nINFO TIPO=1, FILE='../shop.register'\n";
  folder_.Write("lines.cmd", lines);
  const ProgramRun run =
      Run({"check", "lines.cmd", "--register", "shop.register", "--language", "words.ini"});
  EXPECT_EQ(run.exit_code, 1);
  const size_t batches = Count(lines, "@");
  EXPECT_EQ(Count(run.output, "the line would write over it; write the name of another file"),
            count - batches + 1);
  EXPECT_THAT(run.output,
              HasSubstr("lines.cmd:3:20: error: field FILE: 'shop.register' is the register's "
                        "file: the line would write over it"));
  const ProgramRun without = Run({"check", "lines.cmd", "--language", "words.ini"});
  EXPECT_THAT(without.output, Not(HasSubstr("the register's file")));
}

TEST_F(KeptFiles, LeaveOtherOutputsAlone) {
  const ProgramRun run = RunLines(
      std::string(kReceipt) + "INFO TIPO=1, FILE='shop.register.txt'\n" +
          "LEGGI TAB=REPARTI, FILE='reparti.txt'\nLEGGI TAB=REPARTI, FILE='reparti.txt'\n" +
          "INFO TIPO=1, FILE='/dev/null'\n@rows.cmd, errors.txt\n@rows.cmd, errors.txt\n",
      {"--register", "shop.register", "--paper", "paper.txt"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_FALSE(folder_.Read("shop.register.txt").empty());
  EXPECT_FALSE(folder_.Read("reparti.txt").empty());
}

// What the library would remove ahead of writing: a device, a folder, a pipe.
TEST_F(KeptFiles, AreAllThatIsNoRegularFileWhereTheLibraryWouldRemoveIt) {
  ASSERT_EQ(mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  fs::create_directory(folder_.Path("empty"));
  // Not the device itself: a test that fails must not take it from the computer.
  fs::create_symlink("/dev/null", folder_.Path("device"));
  std::string lines;
  const std::vector<std::string> names = {"device", "pipe", "empty", "./empty/", ".", "sub/.."};
  for (const std::string& name : names) {
    lines += "LEGGI TAB=REPARTI, FILE='" + name + "'\n@rows.cmd, " + name + "\n";
  }
  ExpectRefused(RunLines(lines, {}), 2 * names.size(), lines);
  EXPECT_TRUE(fs::is_symlink(folder_.Path("device")));
  EXPECT_TRUE(fs::is_fifo(folder_.Path("pipe")));
  EXPECT_TRUE(fs::is_directory(folder_.Path("empty")));
}
