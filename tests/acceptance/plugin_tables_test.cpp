// "lorimat backup" and "lorimat restore" on a device from a file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "program_run.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kTwoGroups =
    "PROG INIZIO\nPGRU GRU=2, DES='ORTO'\nPREP REP=3, DES='LATTE'\nENDPROG\n";
constexpr const char* kOtherGroup = "PROG INIZIO\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n";

class PluginTables : public testing::Test {
 protected:
  ProgramRun Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--device", LORIMAT_REGISTER_DEVICE, "--device-option",
                                       "file=" + folder_.Path("shop.register")});
    return RunConsole(arguments);
  }

  TestFolder folder_;
};

TEST_F(PluginTables, ABackupOfAPluginIsThatOfItsTables) {
  ASSERT_EQ(Run({"run", folder_.Write("groups.cmd", kTwoGroups)}).exit_code, 0);
  const ProgramRun backup = Run({"backup", folder_.Path("tables")});
  EXPECT_EQ(backup.exit_code, 0) << backup.errors;
  EXPECT_THAT(folder_.Read("tables/groups.txt"), HasSubstr("ORTO"));
  EXPECT_THAT(folder_.Read("tables/departments.txt"), HasSubstr("LATTE"));
  // The same file as the built-in register has the same tables.
  ASSERT_EQ(
      RunConsole({"backup", folder_.Path("other"), "--register", folder_.Path("shop.register")})
          .exit_code,
      0);
  for (const char* name : {"vat.txt", "header.txt", "options.txt", "groups.txt", "operators.txt",
                           "departments.txt", "subtenders.txt", "keyboards.txt", "articles.txt"}) {
    EXPECT_EQ(folder_.Read(std::string("tables/") + name),
              folder_.Read(std::string("other/") + name))
        << name;
  }
}

TEST_F(PluginTables, ARestoreLoadsThemBack) {
  ASSERT_EQ(Run({"run", folder_.Write("groups.cmd", kTwoGroups)}).exit_code, 0);
  ASSERT_EQ(Run({"backup", folder_.Path("tables")}).exit_code, 0);
  ASSERT_EQ(Run({"run", folder_.Write("other.cmd", kOtherGroup)}).exit_code, 0);
  const ProgramRun shown = Run({"restore", folder_.Path("tables"), "--dry-run"});
  EXPECT_THAT(shown.output, HasSubstr("FRUTTA"));
  const ProgramRun restored = Run({"restore", folder_.Path("tables")});
  EXPECT_EQ(restored.exit_code, 0) << restored.errors;
  ASSERT_EQ(Run({"backup", folder_.Path("again")}).exit_code, 0);
  EXPECT_EQ(folder_.Read("again/groups.txt"), folder_.Read("tables/groups.txt"));
}

TEST_F(PluginTables, ADeviceWithoutATableSaysWhatItLacks) {
  const ProgramRun run =
      RunConsole({"backup", folder_.Path("tables"), "--device", LORIMAT_TEXT_PRINTER,
                  "--device-option", "file=" + folder_.Path("paper.txt")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors,
            "lorimat: the VAT rates cannot be read: the device 'text-printer' does not have "
            "GetDataInternal(77)\n");
  EXPECT_THAT(run.output, IsEmpty());
}

// What a register answered to a backup, with the answer to one question changed: a device that
// gives that answer.
class ChangedAnswer : public testing::Test {
 protected:
  // The backup of the device that answers `result` where the register had answered the question.
  ProgramRun BackUp(const std::string& question, int result) const {
    EXPECT_EQ(RunConsole({"init", folder_.Path("shop.register")}).exit_code, 0);
    const ProgramRun first =
        RunConsole({"backup", folder_.Path("whole"), "--register", folder_.Path("shop.register"),
                    "--record", folder_.Path("whole.rec")});
    EXPECT_EQ(first.exit_code, 0) << first.errors;
    std::string recording = folder_.Read("whole.rec");
    const std::string call = "\n< " + question + " -> ";
    const size_t at = recording.find(call);
    if (at == std::string::npos) ADD_FAILURE() << question << " was not asked";
    const size_t answer = at + call.size();
    recording.replace(answer, recording.find('\n', answer) - answer, std::to_string(result));
    return RunConsole({"backup", folder_.Path("tables"), "--device", "replay", "--device-option",
                       "file=" + folder_.Write("changed.rec", recording), "--device-option",
                       "damaged=taken"});
  }

  TestFolder folder_;
};

TEST_F(ChangedAnswer, ABackupThatTheDeviceDidNotAnswerIsNone) {
  const ProgramRun run = BackUp("GetVatEntry(4, 0)", 112);
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("lorimat: the VAT rates cannot be read: the device 'replay' "
                                    "answered 112 to GetVatEntry(4, 0)\n"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("tables")));
}

TEST_F(ChangedAnswer, AnEmptyTextIsNotTakenForOneThatCouldNotBeRead) {
  const ProgramRun run = BackUp("GetHeaderLine(2)", 108);
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("lorimat: the header lines cannot be read: the device 'replay' "
                                    "answered 108 to GetHeaderLine(2)\n"));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("tables")));
}

TEST_F(ChangedAnswer, ARowThatTheDeviceDoesNotHaveIsLeftOut) {
  const ProgramRun run = BackUp("GetVatEntry(4, 0)", 109);
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("VAT rates     4 rows\n"));
}

}  // namespace
