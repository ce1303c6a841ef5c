// The shell driven by a program: one answer in JSON for each line, and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using namespace std::string_literals;

namespace {

ProgramRun Shell(const std::string& input, std::vector<std::string> more = {},
                 ProgramSetting setting = {}) {
  std::vector<std::string> arguments = {"shell", "--json", "--clock", "2026-11-20 11:03"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  setting.input = input;
  return RunConsole(arguments, setting);
}

// Every line of the output, each of which has to be an object.
std::vector<json> Answers(const ProgramRun& run) {
  std::vector<json> all;
  std::istringstream stream(run.output);
  for (std::string line; std::getline(stream, line);) {
    all.push_back(json::parse(line));
    EXPECT_TRUE(all.back().is_object()) << line;
  }
  EXPECT_TRUE(run.output.empty() || run.output.back() == '\n');
  return all;
}

std::string Request(int id, const std::string& line) {
  return json({{"id", id}, {"line", line}}).dump() + "\n";
}

// What is asked for in one line.
json AnswerTo(const std::string& line, std::vector<std::string> more = {}) {
  const std::vector<json> all = Answers(Shell(line, std::move(more)));
  EXPECT_EQ(all.size(), 1u) << line;
  return all.empty() ? json() : all.front();
}

}  // namespace

TEST(ShellJson, ASaleShowsPaperAndState) {
  const ProgramRun run = Shell(Request(1, "VEND REP=2, QTA=2, PRE=1.20") +
                               Request(2, "VEND REP=1, PRE=1.00") + Request(3, "CHIU"));
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  const std::vector<json> all = Answers(run);
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[0]["id"], 1);
  EXPECT_EQ(all[0]["code"], 0);
  EXPECT_EQ(all[0]["class"], 0);
  EXPECT_EQ(all[0]["text"], "OK.");
  EXPECT_EQ(all[0]["explanation"], "");
  EXPECT_EQ(all[0]["paper"][0], "             NEGOZIO DI PROVA");
  EXPECT_EQ(all[0]["state"]["printer"], "RECEIPT OPEN");
  EXPECT_EQ(all[0]["state"]["next_sale"], "goes-into-document");
  EXPECT_EQ(all[1]["paper"], json({"REPARTO 1                  22%        1,00"}));
  EXPECT_EQ(all[1]["state"]["open_document"], json({{"kind", "receipt"},
                                                    {"lines", 2},
                                                    {"subtotal_cents", 340},
                                                    {"paid_cents", 0},
                                                    {"to_pay_cents", 340}}));
  EXPECT_EQ(all[2]["state"], json({{"printer", "READY"},
                                   {"open_document", nullptr},
                                   {"key_position", 1},
                                   {"key", "registering"},
                                   {"training", false},
                                   {"next_sale", "opens-receipt"},
                                   {"faults", json::array()}}));
  EXPECT_FALSE(all[2].contains("error"));
}

TEST(ShellJson, AllPaperTogetherIsThatOfThePipe) {
  const std::string lines[] = {"VEND REP=1, PRE=2.50", "VNED", "SCOSUB IMP=0.50", "CHIU", "AZZGIO"};
  std::string requests;
  std::string plain;
  for (const std::string& line : lines) {
    requests += Request(0, line);
    plain += line + "\n";
  }
  std::string paper;
  for (const json& one : Answers(Shell(requests))) {
    for (const json& line : one["paper"]) paper += line.get<std::string>() + "\n";
  }
  EXPECT_EQ(paper, RunConsole({"shell", "--clock", "2026-11-20 11:03"}, {.input = plain}).output);
}

TEST(ShellJson, AFailureIsExplainedInEnglishWithItsPlace) {
  const std::string input = Request(7, "VNED REP=1") + Request(8, "VEND REP=99, PRE=1.00");
  const ProgramRun run = Shell(input, {}, {.environment = {{"LC_ALL", "it_IT.UTF-8"}}});
  EXPECT_EQ(run.exit_code, 0);
  const std::vector<json> all = Answers(run);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0]["code"], 257);
  EXPECT_EQ(all[0]["class"], 1);
  EXPECT_EQ(all[0]["text"], "ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND");
  EXPECT_EQ(all[0]["explanation"],
            "column 1: no command is called 'VNED'; did you mean VEND?\n"
            "class 1: syntax and command errors\n"
            "No command of the definition file has the name that the line begins with.");
  EXPECT_EQ(all[1]["code"], 1241);
  EXPECT_EQ(all[1]["class"], 4);
  EXPECT_THAT(all[1]["explanation"].get<std::string>(),
              StartsWith("There is no department 99: they are 1 to 40.\nclass 4: "));
  EXPECT_EQ(run.output, Shell(input).output);
}

TEST(ShellJson, ASaleThatFindsNoReceiptIsToldAhead) {
  const std::vector<json> all =
      Answers(Shell(Request(1, "VEND REP=1, PRE=1.00") + Request(2, "INP TASTO=TOTALE") +
                    Request(3, "VEND REP=1, PRE=2.00")));
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(all[1]["state"]["next_sale"], "lost");
  EXPECT_EQ(all[2]["code"], 1231);
  EXPECT_THAT(all[2]["explanation"].get<std::string>(),
              HasSubstr("The way out is CLEAR, CHIU or RESPRN."));
}

TEST(ShellJson, SilentLinesAreAnswered) {
  for (const char* line : {"", "   ", "; a comment"}) {
    const json answer = AnswerTo(Request(1, line));
    EXPECT_EQ(answer["code"], 0) << line;
    EXPECT_EQ(answer["text"], "OK.") << line;
    EXPECT_EQ(answer["paper"], json::array()) << line;
  }
}

TEST(ShellJson, ARequestThatIsNotUnderstoodIsNotRunAndTheNextOneIs) {
  const std::string wrong[] = {
      "",
      "VEND REP=1, PRE=9.00",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\"",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\"} ;",
      "{\"line\": \"VEND REP=1, PRE=9.00\"}",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\", \"line\": \"\"}",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\", \"test\": true}",
      "{\"id\": 1, \"line\": [\"VEND REP=1, PRE=9.00\"]}",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\\u0000, DES='X'\"}",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\\nCHIU\"}",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00, DES='\xE8'\"}",
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00\0\"}"s,
      "{\"id\": 1, \"line\": \"VEND REP=1, PRE=9.00 ;" + std::string(1 << 20, 'x') + "\"}",
      std::string(1 << 20, '['),
  };
  std::string input;
  for (const std::string& one : wrong) input += one + "\n";
  const ProgramRun run = Shell(input + Request(99, "VEND REP=1, PRE=1.00"));
  EXPECT_EQ(run.exit_code, 0);
  const std::vector<json> all = Answers(run);
  ASSERT_EQ(all.size(), std::size(wrong) + 1);
  for (size_t i = 0; i < std::size(wrong); ++i) {
    SCOPED_TRACE(wrong[i].substr(0, 100));
    EXPECT_TRUE(all[i]["code"].is_null());
    EXPECT_TRUE(all[i]["class"].is_null());
    EXPECT_FALSE(all[i]["error"]["cause"].get<std::string>().empty());
    EXPECT_GE(all[i]["error"]["column"].get<int>(), 1);
    EXPECT_EQ(all[i]["paper"], json::array());
    EXPECT_TRUE(all[i]["state"]["open_document"].is_null());
  }
  EXPECT_EQ(all.back()["id"], 99);
  EXPECT_EQ(all.back()["state"]["open_document"]["subtotal_cents"], 100);
}

TEST(ShellJson, EveryByteAnywhereInARequestGetsOneAnswer) {
  const std::string good = "{\"id\": 1, \"line\": \"SUBT\"}";
  std::string input;
  size_t lines = 0;
  for (size_t at = 0; at <= good.size(); at += 6) {
    for (int byte = 0; byte < 256; ++byte) {
      if (byte == '\n') continue;
      input += good.substr(0, at) + static_cast<char>(byte) + good.substr(at) + "\n";
      ++lines;
    }
  }
  for (size_t size = 0; size < good.size(); ++size, ++lines) input += good.substr(0, size) + "\n";
  const ProgramRun run = Shell(input);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(Answers(run).size(), lines);
}

TEST(ShellJson, ALineThatIsTooLongForTheLibraryGetsItsCode) {
  const json answer = AnswerTo(Request(1, "VEND DES='" + std::string(5000, 'x') + "'"));
  EXPECT_EQ(answer["code"], 274);
}

TEST(ShellJson, TheLastRequestMayLackItsEnd) {
  std::string line = Request(1, "SUBT");
  line.pop_back();
  EXPECT_EQ(AnswerTo(line)["id"], 1);
  EXPECT_THAT(Answers(Shell("")), IsEmpty());
}

TEST(ShellJson, ABatchTellsOfItsLines) {
  TestFolder folder;
  const std::string file =
      folder.Write("lines.cmd", "VEND REP=1, PRE=1.00\nVNED\nPOPER OPE=1, PASS='zqzq', XX=1\n");
  const json answer = AnswerTo(Request(1, "@" + file));
  EXPECT_EQ(answer["code"], 0);
  const json& batch = answer["batch"];
  EXPECT_EQ(batch["lines"], 3);
  EXPECT_EQ(batch["failed"], 2);
  EXPECT_EQ(batch["failures"][0]["place"], file + ":2");
  EXPECT_EQ(batch["failures"][0]["line"], "VNED");
  EXPECT_EQ(batch["failures"][0]["code"], 257);
  EXPECT_EQ(batch["failures"][1]["code"], 260);
  EXPECT_EQ(batch["failures"][1]["line"], "POPER OPE=1, PASS='****', XX=1");
  EXPECT_THAT(answer.dump(), testing::Not(HasSubstr("zqzq")));
  EXPECT_TRUE(batch["not_known"].is_null());
  EXPECT_TRUE(batch["stopped_behind"].is_null());
  EXPECT_EQ(answer["state"]["open_document"]["subtotal_cents"], 100);
}

TEST(ShellJson, ABatchThatIsADeviceIsNotRun) {
  const json answer = AnswerTo(Request(1, "@/dev/null"));
  EXPECT_TRUE(answer["code"].is_null());
  EXPECT_EQ(answer["error"]["kind"], "batch");
  EXPECT_EQ(answer["error"]["cause"], "/dev/null: is neither a regular file nor a pipe");
}

TEST(ShellJson, OfALongBatchAHundredFailuresAreShownAndAllCounted) {
  TestFolder folder;
  std::string lines;
  for (int i = 0; i < 150; ++i) lines += "WRONG\n";
  const json answer = AnswerTo(Request(1, "@" + folder.Write("wrong.cmd", lines)));
  EXPECT_EQ(answer["batch"]["failed"], 150);
  EXPECT_EQ(answer["batch"]["failures"].size(), 100u);
}

TEST(ShellJson, BytesThatAreNoTextAreReplaced) {
  TestFolder folder;
  const std::string file = folder.Write("lines.cmd", "VEND REP=1, PRE=1.00, DES='X\xE8Y'\n");
  const json answer = AnswerTo(Request(1, "@" + file));
  EXPECT_THAT(answer["paper"].back().get<std::string>(), StartsWith("X\uFFFDY"));
}

TEST(ShellJson, AFaultIsPlannedAndStrikes) {
  const std::vector<json> all = Answers(
      Shell(Request(1, ".fault paper-end") + Request(2, " .fault zzz ") +
            Request(3, "VEND REP=1, PRE=1.00") + Request(4, ".status") + Request(5, ".faults")));
  ASSERT_EQ(all.size(), 5u);
  EXPECT_EQ(all[0]["code"], 0);
  EXPECT_EQ(all[0]["state"]["faults"][0]["name"], "paper-end");
  EXPECT_TRUE(all[1]["code"].is_null());
  EXPECT_EQ(all[1]["error"]["kind"], "fault");
  EXPECT_EQ(all[1]["error"]["cause"], "no fault is called 'zzz'");
  EXPECT_NE(all[2]["code"], 0);
  EXPECT_EQ(all[2]["state"]["faults"], json::array());
  // The other words are no words here.
  EXPECT_EQ(all[3]["code"], 257);
  EXPECT_EQ(all[4]["code"], 257);
}

TEST(ShellJson, AnOpenDocumentIsToldOnStandardErrorAndThePaperOfItsEndComesFirst) {
  TestFolder folder;
  const std::vector<std::string> kept = {"--register", folder.Path("shop.register")};
  const ProgramRun first = Shell(Request(1, "VEND REP=1, PRE=1.00"), kept);
  EXPECT_EQ(first.exit_code, 0);
  EXPECT_THAT(first.errors, HasSubstr("shop.register keeps a receipt of "));
  const ProgramRun next = Shell(Request(1, "; nothing"), kept);
  const std::vector<json> all = Answers(next);
  ASSERT_EQ(all.size(), 1u);
  EXPECT_THAT(all[0]["paper"].dump(), HasSubstr("MANCANZA DI ALIMENTAZIONE"));
}

TEST(ShellJson, ASignalEndsItBehindTheLineAtWork) {
  TestFolder folder;
  const ProgramRun run =
      Shell(Request(1, "VEND REP=1, PRE=1.00") + "{\"id\": 2, \"line\": \"CHIU\"",
            {"--register", folder.Path("shop.register")},
            {.interrupt_at = "a new register was made", .signal = SIGTERM});
  EXPECT_EQ(run.exit_code, 143);
  EXPECT_THAT(run.errors, HasSubstr("stopped by SIGTERM behind line "));
  EXPECT_LE(Answers(run).size(), 1u);
}

TEST(ShellJson, AnOutputThatCannotBeWrittenIsAnError) {
  const ProgramRun full = Shell(Request(1, "SUBT"), {}, {.output_file = "/dev/full"});
  EXPECT_EQ(full.exit_code, 2);
  EXPECT_THAT(full.errors, HasSubstr("No space left on device"));
}

TEST(ShellJson, AReaderThatHasGoneIsAnErrorAndTheLineHasRun) {
  TestFolder folder;
  const std::string host = folder.Write("host.py", R"(import subprocess, sys
shell = subprocess.Popen(sys.argv[1:], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
shell.stdin.write(b'{"id":1,"line":"VEND REP=1, PRE=1.00"}\n')
shell.stdin.flush()
shell.stdout.readline()
shell.stdout.close()
shell.stdin.write(b'{"id":2,"line":"CHIU"}\n')
shell.stdin.flush()
sys.exit(shell.wait())
)");
  const std::string kept = folder.Path("shop.register");
  const ProgramRun gone =
      RunProgram("/usr/bin/env", {"python3", host, std::string(LORIMAT_BIN_FOLDER) + "/lorimat",
                                  "shell", "--json", "--register", kept});
  EXPECT_EQ(gone.exit_code, 2);
  EXPECT_THAT(gone.errors, HasSubstr("cannot write to standard output: Broken pipe\n"));
  EXPECT_THAT(RunConsole({"paper", "--register", kept}).output,
              HasSubstr("DOCUMENTO N. 0001-0001\n"));
}

TEST(ShellJson, WhatDoesNotStartWritesNoAnswer) {
  const ProgramRun run = Shell(Request(1, "SUBT"), {"--language", "/none.ini"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(Shell("", {"--terse"}).exit_code, 2);
}

TEST(ShellJson, ATerminalMakesNoDifference) {
  const ProgramRun run = Shell(Request(1, "INFO TIPO=MATRICOLA"), {}, {.output_to_terminal = true});
  EXPECT_EQ(Answers(run).size(), 1u);
}

TEST(ShellJson, TheHostInPythonSells) {
  const ProgramRun run = RunProgram("/usr/bin/env", {"python3", SourceFile("examples/json_host.py"),
                                                     std::string(LORIMAT_BIN_FOLDER) + "/lorimat",
                                                     "--clock", "2026-11-20 11:03"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(run.output, StartsWith("             NEGOZIO DI PROVA\n"));
  EXPECT_THAT(run.output, HasSubstr("TOTALE COMPLESSIVO                    3,90\n"));
  EXPECT_THAT(run.output, HasSubstr("Resto                                 1,10\n"));
}
