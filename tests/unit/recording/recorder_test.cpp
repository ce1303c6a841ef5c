#include "recording/recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "recording/recording.h"
#include "text_sink.h"

namespace recording {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class RecorderTest : public ::testing::Test {
 protected:
  Recorder& Start(const RecorderSettings& settings) {
    recorder_.emplace(sink_, settings);
    client_ = &recorder_->Wrap(device_);
    return *recorder_;
  }
  // What stands behind the head.
  std::string Body() const {
    const size_t secrets = sink_.text.find("secrets: ");
    return sink_.text.substr(sink_.text.find('\n', secrets) + 1);
  }

  TextSink sink_;
  ToldDevice device_;
  RtfClientInterface* client_ = nullptr;
  std::optional<Recorder> recorder_;
};

TEST_F(RecorderTest, ALineStandsThereWithItsTimeItsCallsAndItsAnswer) {
  Recorder& recorder = Start(StillSettings());
  recorder.LineBegins("VEND REP=1 ");
  client_->LogTrace("TradEcr Cmd<VEND REP=1>");
  int state = 0;
  client_->GetIntProperty(16020, &state);
  client_->GetClaimed();
  client_->set_wait_result_code(3);
  recorder.LineEnds(0, "OK.");
  EXPECT_EQ(Body(),
            "at: 2024-01-15T10:30:00.123Z\n"
            "> VEND REP=1\\x20\n"
            "~ TradEcr Cmd<VEND REP=1>\n"
            "< GetIntProperty(16020) -> 0 [1]\n"
            "< GetClaimed() -> true\n"
            "< set_wait_result_code(3)\n"
            "= 0 OK.\n");
}

TEST_F(RecorderTest, TheHeadTellsTheVersions) {
  Start(StillSettings());
  EXPECT_EQ(sink_.text,
            "recording: 1\nmade-by: lorimat 3.1.11\nlibrary: 3.1.11\n"
            "device: a device of the tests\nsecrets: blanked\n");
}

TEST_F(RecorderTest, ACallIsWrittenAheadOfTheDevice) {
  class Looking : public ToldDevice {
   public:
    explicit Looking(const TextSink& sink) : sink_(sink) {}
    int OpenDrawer() override {
      seen = sink_.text;
      return RTF_SUCCESS;
    }
    std::string seen;

   private:
    const TextSink& sink_;
  };
  Recorder& recorder = Start(StillSettings());
  Looking looking(sink_);
  recorder.Wrap(looking).OpenDrawer();
  EXPECT_TRUE(looking.seen.ends_with("\n< OpenDrawer()")) << looking.seen;
}

TEST_F(RecorderTest, ALongCallIsTold) {
  RecorderSettings settings = StillSettings();
  settings.ticks = [time = int64_t{0}]() mutable { return time += 12'345; };
  Start(settings);
  client_->OpenDrawer();
  EXPECT_EQ(Body(), "< OpenDrawer() -> 0\ntook: 12 ms\n");
}

TEST_F(RecorderTest, AFailedCallTellsWhatItChangedAlone) {
  Start(StillSettings());
  device_.result = RTF_E_FAILURE;
  device_.fills = false;
  char text[513] = "DOMANDA";
  int argument = 5;
  client_->DirectIO(7, &argument, text);
  char item[50] = "as before";
  client_->GetDataInternal(92, item);
  EXPECT_EQ(Body(),
            "< DirectIO(7, 5, \"DOMANDA\") -> 111 [1, kept]\n"
            "< GetDataInternal(92) -> 111\n");
}

// What stands behind the end of a text is no change: a replay could not tell it.
TEST_F(RecorderTest, AFailedCallHasChangedNoTextBehindItsEnd) {
  Start(StillSettings());
  device_.result = RTF_E_FAILURE;
  device_.text = std::string("\0REST", 5);
  char item[50] = "";
  client_->GetDataInternal(92, item);
  char other[50] = "as before";
  client_->GetDataInternal(93, other);
  EXPECT_EQ(Body(),
            "< GetDataInternal(92) -> 111\n"
            "< GetDataInternal(93) -> 111 [\"\"]\n");
}

TEST_F(RecorderTest, ADeviceThatThrowsIsTold) {
  Start(StillSettings());
  device_.throws = true;
  EXPECT_THROW(client_->OpenDrawer(), std::runtime_error);
  EXPECT_EQ(Body(), "< OpenDrawer() -> throws\n");
}

TEST_F(RecorderTest, AnExceptionThatTheClientKeepsIsTold) {
  RecorderSettings settings = StillSettings();
  // One has been thrown ahead of the first call, and one in it.
  settings.exceptions = [told = uint64_t{0}]() mutable { return ++told < 2 ? 1 : 2; };
  Start(settings);
  device_.result = RTF_E_FAILURE;
  EXPECT_EQ(client_->OpenDrawer(), RTF_E_FAILURE);
  EXPECT_EQ(client_->OpenDrawer(), RTF_E_FAILURE);
  EXPECT_EQ(Body(), "< OpenDrawer() -> throws\n< OpenDrawer() -> 111\n");
}

TEST_F(RecorderTest, ATextWithoutAnEndIsReadToItsRoom) {
  Start(StillSettings());
  device_.text = std::string(50, 'A');
  device_.closes = false;
  // Behind the room stands what is none of the text.
  char item[60];
  std::memset(item, 'B', sizeof item);
  client_->GetDataInternal(92, item);
  EXPECT_EQ(Body(), "< GetDataInternal(92) -> 0 [\"{A*50}\"]\n");
}

TEST_F(RecorderTest, SecretsAreBlankedWhereverTheyStand) {
  RecorderSettings settings = StillSettings();
  settings.line_blanking = [](std::string_view line) {
    std::string blanked(line);
    const size_t at = blanked.find("Segreto9");
    if (at != std::string::npos) blanked.replace(at, 8, Blanked("Segreto9"));
    return blanked;
  };
  Recorder& recorder = Start(settings);
  recorder.LineBegins("POPER NUM=1, PASS='Segreto9'");
  client_->LogTrace("TradEcr Cmd<POPER NUM=1, PASS='Segreto9'>");
  char description[129] = "";
  char password[65] = "";
  int flags = 0;
  int options = 0;
  client_->ConfigGroup(false, 1, description, password, &flags, &options);
  client_->ConfigGroup(true, 1, description, password, &flags, &options);
  client_->PrintRecMessage("Segreto9, as free text");
  recorder.LineEnds(0, "OK Segreto9");
  EXPECT_STREQ(password, "Segreto9");
  EXPECT_THAT(Body(), HasSubstr("> POPER NUM=1, PASS='XXXXXXX0'\n"));
  EXPECT_THAT(Body(), HasSubstr("~ TradEcr Cmd<POPER NUM=1, PASS='XXXXXXX0'>\n"));
  EXPECT_THAT(Body(), HasSubstr("< ConfigGroup(false, 1) -> 0 [\"ANNA\", \"XXXXXXX0\", 0, 0]\n"));
  EXPECT_THAT(Body(), HasSubstr("< ConfigGroup(true, 1, \"ANNA\", \"XXXXXXX0\", 0, 0) -> 0\n"));
  EXPECT_THAT(Body(), HasSubstr("= 0 OK XXXXXXX0\n"));
}

TEST_F(RecorderTest, ACustomersNameIsBlanked) {
  Start(StillSettings());
  client_->BeginDocInvoice("ROSSI SRL", "VIA ROMA 1", "", "P.IVA 01234567890", nullptr);
  EXPECT_EQ(Body(),
            "< BeginDocInvoice(\"XXXXX XXX\", \"XXX XXXX 0\", \"\", \"XXXXX 00000000000\", null)"
            " -> 0\n");
}

TEST_F(RecorderTest, SecretsAreShownWhenItIsTold) {
  RecorderSettings settings = StillSettings();
  settings.with_secrets = true;
  Start(settings);
  client_->BeginDocInvoice("ROSSI SRL", "", "", "", "");
  EXPECT_THAT(sink_.text, HasSubstr("secrets: shown\n"));
  EXPECT_THAT(sink_.text, HasSubstr("\"ROSSI SRL\""));
}

TEST_F(RecorderTest, ItEndsAheadOfItsLimitAndTheDeviceIsCalledAsBefore) {
  RecorderSettings settings = StillSettings();
  settings.limit = 1000;
  Recorder& recorder = Start(settings);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(client_->OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(device_.drawers, 100);
  EXPECT_EQ(recorder.end(), RecordingEnd::kLimit);
  EXPECT_LE(sink_.text.size(), 1000u);
  EXPECT_EQ(recorder.size(), sink_.text.size());
  const Recording read = ReadRecordingText("x", "> VEND\n");
  EXPECT_EQ(read.fault.cause, RecordingCause::kNotUnderstood);
  recorder.Finish();
  EXPECT_EQ(recorder.end(), RecordingEnd::kLimit);
}

TEST_F(RecorderTest, ADiskThatIsFullEndsItAndNothingElse) {
  sink_.room = 200;
  Recorder& recorder = Start(StillSettings());
  for (int i = 0; i < 100; ++i) EXPECT_EQ(client_->OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(device_.drawers, 100);
  EXPECT_EQ(recorder.end(), RecordingEnd::kDisk);
  EXPECT_EQ(recorder.error(), 28);
}

TEST(Block, ReadsBackAsItWas) {
  for (const std::string& contents :
       {std::string(), std::string("\n"), std::string("a\n"), std::string("a\n\n"),
        std::string("a\n\nb\n"), std::string("a\r\nb"), std::string("%repeat\n  %use x\n \\{}\n"),
        std::string("# no comment\n\x80\xFF\x01 \n"), std::string("\n\n\na")}) {
    const std::string text = "init: none\n" + Block("file a.txt", contents) + "no-file b\n";
    const conversation::Conversation read = conversation::ReadConversation("x", text);
    ASSERT_EQ(read.steps.size(), 2u) << text;
    EXPECT_EQ(read.steps[0].text, contents) << text;
  }
}

}  // namespace
}  // namespace recording
