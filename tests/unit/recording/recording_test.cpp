#include "recording/recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "recording/replay.h"
#include "recording/trim.h"
#include "text_sink.h"

namespace recording {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Two lines, the second of which fails.
std::string TwoLines() {
  TextSink sink;
  ToldDevice device;
  Recorder recorder(sink, StillSettings());
  RtfClientInterface& client = recorder.Wrap(device);
  recorder.InitBegins("[OPCOD]\n10=VEND\n");
  recorder.Callback("-112, 0, null, 0, null, null", 0);
  char item[50] = "";
  device.text = "99MEX000000001";
  client.GetDataInternal(92, item);
  recorder.InitEnds(0);
  recorder.LineBegins("VEND REP=1, PRE=1.00");
  client.BeginFiscalReceipt(true);
  recorder.LineEnds(0, "OK.");
  recorder.LineBegins("VEND REP=2, PRE=1.00");
  device.result = 212;
  client.OpenDrawer();
  recorder.LineEnds(1231, "ERROR 4/212 : ");
  recorder.Finish();
  return sink.text;
}

TEST(Recording, IsReadWithWhatItTellsOfItself) {
  const Recording read = ReadRecordingText("x", TwoLines());
  EXPECT_FALSE(read.fault) << read.fault.text;
  EXPECT_TRUE(read.is_recording);
  EXPECT_TRUE(read.blanked);
  EXPECT_EQ(read.library, "3.1.11");
  EXPECT_EQ(read.first_time, "2024-01-15T10:30:00.123Z");
  ASSERT_EQ(read.script.steps.size(), 4u);  // language, init and two lines
  EXPECT_EQ(read.script.steps[3].code, 1231);
}

TEST(Recording, OfAFileIsReadAndOneThatCannotBeIsNamed) {
  const std::string path = ::testing::TempDir() + "lorimat-recording-" + std::to_string(getpid());
  EXPECT_EQ(ReadRecording(path).fault.cause, RecordingCause::kUnreadable);
  EXPECT_EQ(ReadRecording(path).fault.number, ENOENT);
  EXPECT_FALSE(ReadRecording(path).readable());
  EXPECT_EQ(ReadRecording("/").fault.cause, RecordingCause::kUnreadable);
  EXPECT_EQ(ReadRecording("/").fault.number, EISDIR);
  std::ofstream(path) << TwoLines();
  const Recording read = ReadRecording(path);
  EXPECT_EQ(unlink(path.c_str()), 0);
  EXPECT_FALSE(read.fault) << read.fault.text;
  EXPECT_EQ(read.script.path, path);
  EXPECT_EQ(read.script.steps.size(), 4u);
}

TEST(Recording, CutAnywhereIsNamed) {
  const std::string text = TwoLines();
  for (size_t size = std::string("recording: 1\n").size(); size < text.size(); ++size) {
    const Recording read = ReadRecordingText("x", text.substr(0, size));
    EXPECT_EQ(read.fault.cause, RecordingCause::kCut) << size << read.fault.text;
  }
}

TEST(Recording, TheCallAtWorkIsTheOneThatItWasCutIn) {
  const std::string text = TwoLines();
  const size_t call = text.find("< OpenDrawer()");
  const Recording read =
      ReadRecordingText("x", text.substr(0, call + std::string("< OpenDrawer()").size()));
  EXPECT_EQ(read.fault.cause, RecordingCause::kCut);
  EXPECT_EQ(read.fault.text, "OpenDrawer()");
  // The line ahead of it is there, and the one that it stands in has no answer.
  EXPECT_TRUE(read.script.steps.back().cut);
}

TEST(Recording, EditedAnywhereIsNamed) {
  const std::string text = TwoLines();
  for (size_t at = std::string("recording: 1\n").size(); at < text.size(); ++at) {
    std::string edited = text;
    edited[at] = static_cast<char>(edited[at] ^ 1);
    const Recording read = ReadRecordingText("x", edited);
    EXPECT_TRUE(read.fault) << at;
  }
  std::string without = text;
  without.erase(without.find("= 0 OK."), std::string("= 0 OK.\n").size());
  without.insert(without.find("> VEND REP=2"), "= 0 SURE\n");
  EXPECT_EQ(ReadRecordingText("x", without).fault.cause, RecordingCause::kEdited);
}

TEST(Recording, OfAnotherFormatIsNamed) {
  std::string text = TwoLines();
  text.replace(0, 12, "recording: 2");
  const Recording read = ReadRecordingText("x", text);
  EXPECT_EQ(read.fault.cause, RecordingCause::kForeignVersion);
  EXPECT_EQ(read.fault.number, 2);
  EXPECT_FALSE(read.readable());
}

TEST(Recording, AConversationIsOne) {
  const Recording read = ReadRecordingText("x", "> CHIU\n< OpenDrawer() -> 0\n= 0 OK.\n");
  EXPECT_FALSE(read.fault);
  EXPECT_FALSE(read.is_recording);
}

TEST(Recording, TextsThatWouldFillTheMemoryAreRefused) {
  std::string text = "> CHIU\n";
  for (int i = 0; i < 200; ++i) text += "~ {A*10000000}\n";
  text += "= 0 OK.\n";
  EXPECT_EQ(ReadRecordingText("x", text).fault.cause, RecordingCause::kNotUnderstood);
}

TEST(Recording, EndsAtItsLimitWithinALine) {
  TextSink sink;
  ToldDevice device;
  RecorderSettings settings = StillSettings();
  settings.limit = 600;
  Recorder recorder(sink, settings);
  RtfClientInterface& client = recorder.Wrap(device);
  recorder.LineBegins("CHIU");
  for (int i = 0; i < 100; ++i) client.OpenDrawer();
  recorder.LineEnds(0, "OK.");
  const Recording read = ReadRecordingText("x", sink.text);
  EXPECT_FALSE(read.fault) << read.fault.text;
  EXPECT_TRUE(read.at_limit);
  ASSERT_FALSE(read.script.steps.empty());
  EXPECT_GT(read.script.steps.back().calls.size(), 1u);
}

// --- The replay.

class ReplayTest : public ::testing::Test {
 protected:
  Replay& Start(const std::string& text, ReplayOrder order = ReplayOrder::kStrict) {
    ReplaySettings settings;
    settings.order = order;
    settings.parted = [this](const Departure& departure) { departures_.push_back(departure); };
    replay_.emplace(ReadRecordingText("x", text), settings);
    return *replay_;
  }
  RtfClientInterface& client() { return replay_->client(); }

  std::optional<Replay> replay_;
  std::vector<Departure> departures_;
};

constexpr const char* kThreeCalls =
    "> CHIU\n"
    "< OpenDrawer() -> 0\n"
    "< GetDataInternal(92) -> 0 [\"EINS\"]\n"
    "< PrintRecMessage(\"A\") -> 207\n"
    "= 0 OK.\n";

TEST_F(ReplayTest, AnswersAsTheRecordingDoes) {
  Start(kThreeCalls);
  EXPECT_EQ(client().OpenDrawer(), 0);
  char item[50] = "";
  EXPECT_EQ(client().GetDataInternal(92, item), 0);
  EXPECT_STREQ(item, "EINS");
  ASSERT_TRUE(replay_->NotMade());
  EXPECT_EQ(replay_->NotMade()->expected, "PrintRecMessage(\"A\")");
  EXPECT_EQ(replay_->NotMade()->line, 4);
  EXPECT_EQ(client().PrintRecMessage("A"), 207);
  EXPECT_FALSE(replay_->NotMade());
  EXPECT_TRUE(departures_.empty());
}

TEST_F(ReplayTest, TellsWhereTheCallsPartAndRefusesTheRest) {
  Start(kThreeCalls);
  client().OpenDrawer();
  EXPECT_EQ(client().PrintRecMessage("B"), RTF_E_FAILURE);
  EXPECT_EQ(client().PrintRecMessage("A"), RTF_E_FAILURE);
  ASSERT_EQ(departures_.size(), 1u);
  EXPECT_EQ(departures_[0].kind, DepartureKind::kOther);
  EXPECT_EQ(departures_[0].line, 3);
  EXPECT_EQ(departures_[0].expected, "GetDataInternal(92)");
  EXPECT_EQ(departures_[0].got, "PrintRecMessage(\"B\")");
}

TEST_F(ReplayTest, RunningOutIsNamed) {
  Start("> CHIU\n< OpenDrawer() -> 0\n= 0 OK.\n");
  client().OpenDrawer();
  EXPECT_EQ(client().OpenDrawer(), RTF_E_FAILURE);
  ASSERT_EQ(departures_.size(), 1u);
  EXPECT_EQ(departures_[0].kind, DepartureKind::kRanOut);
  EXPECT_EQ(departures_[0].line, 2);
  EXPECT_EQ(departures_[0].got, "OpenDrawer()");
}

TEST_F(ReplayTest, OneWithoutCallsRunsOutAtOnce) {
  Start("# nothing\n", ReplayOrder::kLenient);
  EXPECT_EQ(client().OpenDrawer(), RTF_E_FAILURE);
  ASSERT_EQ(departures_.size(), 1u);
  EXPECT_EQ(departures_[0].kind, DepartureKind::kRanOut);
  EXPECT_EQ(departures_[0].line, 0);
}

TEST_F(ReplayTest, ALenientOneTakesAnyOrderAndReadsAgain) {
  Start(kThreeCalls, ReplayOrder::kLenient);
  char item[50] = "";
  EXPECT_EQ(client().PrintRecMessage("A"), 207);
  EXPECT_EQ(client().GetDataInternal(92, item), 0);
  EXPECT_EQ(client().GetDataInternal(92, item), 0);
  EXPECT_TRUE(departures_.empty());
  // What does something is done once.
  EXPECT_EQ(client().PrintRecMessage("A"), RTF_E_FAILURE);
  ASSERT_EQ(departures_.size(), 1u);
  EXPECT_EQ(departures_[0].kind, DepartureKind::kNowhere);
  EXPECT_EQ(client().OpenDrawer(), 0);
}

TEST_F(ReplayTest, AWaitBehindADepartureComesToItsEnd) {
  Start("> CHIU\n= 0 OK.\n");
  EXPECT_NE(client().GetState(), 3);  // busy
  int state = 0;
  EXPECT_EQ(client().GetIntProperty(16020, &state), 0);
  EXPECT_EQ(state, 1);
}

TEST_F(ReplayTest, AnAnswerThatDoesNotFitIsNamed) {
  Start("> CHIU\n< GetIntProperty(1) -> 0 [\"X\"]\n= 0 OK.\n");
  int value = 0;
  client().GetIntProperty(1, &value);
  ASSERT_EQ(departures_.size(), 1u);
  EXPECT_EQ(departures_[0].kind, DepartureKind::kNoAnswer);
  EXPECT_EQ(departures_[0].line, 2);
}

TEST_F(ReplayTest, ATextLongerThanItsRoomIsCut) {
  Start("> CHIU\n< GetDataInternal(92) -> 0 [\"{A*99}\"]\n= 0 OK.\n");
  char item[60];
  std::memset(item, 'B', sizeof item);
  client().GetDataInternal(92, item);
  EXPECT_EQ(std::string(item, sizeof item), std::string(50, 'A') + std::string(10, 'B'));
}

TEST_F(ReplayTest, SecretsThatWereBlankedFitThemselves) {
  TextSink sink;
  ToldDevice device;
  Recorder recorder(sink, StillSettings());
  recorder.LineBegins("FATTURA");
  recorder.Wrap(device).BeginDocInvoice("ROSSI SRL", "", "", "", "");
  recorder.LineEnds(0, "OK.");
  recorder.Finish();
  Start(sink.text);
  EXPECT_EQ(client().BeginDocInvoice("ROSSI SRL", "", "", "", ""), 0);
  EXPECT_TRUE(departures_.empty());
}

TEST_F(ReplayTest, ADeviceThatThrewThrowsAgain) {
  Start("> CHIU\n< OpenDrawer() -> throws\n= 0 OK.\n");
  EXPECT_THROW(client().OpenDrawer(), std::runtime_error);
}

TEST_F(ReplayTest, AnyBytesOfTextsComeBack) {
  std::mt19937 random(20240115);
  const auto text_of = [&random](size_t most) {
    std::string text(random() % (most + 1), ' ');
    const bool few = random() % 2 == 0;
    for (char& c : text)
      c = static_cast<char>(few ? "A {}\\\"*%\n"[random() % 9] : random() % 255 + 1);
    return text;
  };
  for (int round = 0; round < 300; ++round) {
    TextSink sink;
    ToldDevice device;
    RecorderSettings settings = StillSettings();
    settings.with_secrets = true;
    Recorder recorder(sink, settings);
    RtfClientInterface& client = recorder.Wrap(device);
    const std::string line = text_of(300);
    const std::string message = text_of(100);
    const std::string answer = text_of(300);
    const std::string trace = text_of(100);
    device.text = text_of(49);
    device.number = static_cast<int>(random());
    recorder.LineBegins(line);
    client.LogTrace(trace.c_str());
    client.PrintRecMessage(message.c_str());
    char item[50] = "";
    client.GetDataInternal(92, item);
    int argument = 7;
    char data[513] = "";
    client.DirectIO(1, &argument, data);
    recorder.LineEnds(0, answer);
    recorder.Finish();

    const Recording read = ReadRecordingText("x", sink.text);
    ASSERT_FALSE(read.fault) << read.fault.number << read.fault.text << "\n" << sink.text;
    ASSERT_EQ(read.script.steps.size(), 2u);  // the start and the line
    const conversation::Step& step = read.script.steps[1];
    EXPECT_EQ(step.text, line);
    EXPECT_EQ(step.answer.text, answer);
    ASSERT_EQ(step.traces.size(), 1u);
    EXPECT_EQ(step.traces[0].text, trace);
    Start(sink.text);
    EXPECT_EQ(this->client().PrintRecMessage(message.c_str()), 0);
    char again[50] = "";
    this->client().GetDataInternal(92, again);
    EXPECT_EQ(std::string(again), device.text);
    argument = 7;
    data[0] = '\0';
    this->client().DirectIO(1, &argument, data);
    EXPECT_EQ(argument, device.number);
    EXPECT_EQ(std::string(data), device.text);
    EXPECT_TRUE(departures_.empty());
  }
}

// A run of one byte shows as a repetition, whose mark is a byte as well.
TEST(Texts, ARunOfAnyByteReadsBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string run = "a" + std::string(50, static_cast<char>(byte)) + "b";
    EXPECT_EQ(conversation::Unescape(conversation::Escape(run)), run) << byte;
    const std::string quoted = conversation::Quote(run);
    EXPECT_EQ(conversation::Unescape(quoted.substr(1, quoted.size() - 2)), run) << byte;
  }
}

// --- The trimming.

TEST(Trim, TheLinesThatFailedGoWithTheirDocumentAndWhatWasSet) {
  const Recording read =
      ReadRecordingText("x",
                        "init: 0\n"
                        "< EcrIo(-112, 0, null, 0, null, null) -> 0\n"
                        "< GetDataInternal(92) -> 0 [\"99MEX\"]\n"
                        "> ; a remark\n= 0 OK.\n"
                        "> SETP ABORT=1\n= 0 OK.\n"
                        "> VEND REP=1\n"
                        "< GetIntProperty(16020) -> 0 [1]\n"
                        "< BeginFiscalReceipt(true) -> 0\n= 0 OK.\n"
                        "> CHIU\n< PrintRecTotalEx(0, \"0\", true) -> 0\n= 0 OK.\n"
                        "> VEND REP=2\n"
                        "< GetIntProperty(16020) -> 0 [1]\n"
                        "< BeginFiscalReceipt(true) -> 0\n= 0 OK.\n"
                        "> CHIU\n"
                        "< PrintRecTotalEx(0, \"0\", true) -> 212\n"
                        "= 1236 \"ERROR 4/212 : \"\n"
                        "> SUBT\n< PrintRecSubtotalEx(0, false) -> 0\n= 0 OK.\n");
  ASSERT_FALSE(read.fault) << read.fault.text;
  const Trimmed trimmed = Trim(read, {});
  EXPECT_EQ(trimmed.cause, TrimCause::kNone);
  EXPECT_EQ(trimmed.kept, 3u);
  EXPECT_EQ(trimmed.all, 7u);
  EXPECT_EQ(trimmed.text,
            "# 3 of 7 lines.\n"
            "item 92: \"99MEX\"\n"
            "> SETP ABORT=1\n= 0 \"OK.\"\n"
            "> VEND REP=2\n"
            "< GetIntProperty(16020) -> 0 [1]\n"
            "< BeginFiscalReceipt(true) -> 0\n= 0 \"OK.\"\n"
            "> CHIU\n"
            "< PrintRecTotalEx(0, \"0\", true) -> 212\n"
            "= 1236 \"ERROR 4/212 : \"\n");
}

TEST(Trim, OfARecordingTellsWhatMadeItAndKeepsItsWords) {
  const Trimmed trimmed = Trim(ReadRecordingText("x", TwoLines()), {});
  EXPECT_EQ(
      trimmed.text,
      "# 2 of 2 lines recorded from a device of the tests, 2024-01-15T10:30:00.123Z, by lorimat "
      "3.1.11; secrets are blanked.\n"
      "language: |\n  [OPCOD]\n  10=VEND\n"
      "item 92: \"99MEX000000001\"\n"
      "> VEND REP=1, PRE=1.00\n< BeginFiscalReceipt(true) -> 0\n= 0 \"OK.\"\n"
      "> VEND REP=2, PRE=1.00\n< OpenDrawer() -> 212\n= 1231 \"ERROR 4/212 : \"\n");
  EXPECT_EQ(
      Trim(ReadRecordingText("x", "language: words.ini\nitem 75: \"2\"\n> CHIU\n= 257 *\n"), {})
          .text,
      "# 1 of 1 lines.\nlanguage: words.ini\nitem 75: \"2\"\n> CHIU\n= 257 *\n");
}

TEST(Trim, WithoutAFailureLinesHaveToBeNamed) {
  const Recording read = ReadRecordingText(
      "x", "> SUBT\n< PrintRecSubtotalEx(0, false) -> 0\n= 0 OK.\n> CHIU\n= 0 OK.\n");
  EXPECT_EQ(Trim(read, {}).cause, TrimCause::kNothingFailed);
  EXPECT_EQ(Trim(read, {2}).cause, TrimCause::kNoLine);
  EXPECT_EQ(Trim(read, {2}).number, 2);
  EXPECT_THAT(Trim(read, {1}).text, HasSubstr("> SUBT\n"));
  EXPECT_THAT(Trim(read, {1}).text, Not(HasSubstr("> CHIU\n")));
}

// A conversation starts by itself, once; a second start is one that its lines rest on.
TEST(Trim, AStartBehindALineIsKept) {
  const std::string start =
      "init: 0\n"
      "< EcrIo(-112, 0, null, 0, null, null) -> 0\n"
      "< GetDataInternal(92) -> 0 [\"99MEX\"]\n";
  const std::string line = "> CHIU\n= 1236 \"ERROR 4/212 : \"\n";
  const Trimmed once = Trim(ReadRecordingText("x", start + line + start + line), {});
  EXPECT_EQ(once.text, "# 2 of 2 lines.\nitem 92: \"99MEX\"\n" + line + start + line);
  EXPECT_EQ(Trim(ReadRecordingText("x", once.text), {}).text, once.text);
}

TEST(Trim, OfTwoStartsAheadOfTheLinesBothAreKept) {
  const std::string start = "init: 0\n< EcrIo(-112, 0, null, 0, null, null) -> 0\n";
  const std::string line = "> CHIU\n= 1236 \"ERROR 4/212 : \"\n";
  const Trimmed once = Trim(ReadRecordingText("x", start + start + line), {});
  EXPECT_EQ(once.text, "# 1 of 1 lines.\n" + start + start + line);
  EXPECT_EQ(Trim(ReadRecordingText("x", once.text), {}).text, once.text);
}

TEST(Trim, AStartThatDidNotGoTheOrdinaryWayIsKeptWhole) {
  const Recording read = ReadRecordingText("x",
                                           "init: below\n"
                                           "< EcrIo(-112, 0, null, 0, null, null) -> 0\n"
                                           "< GetDataInternal(92) -> 107\n"
                                           "= 0\n"
                                           "> CHIU\n= 1236 \"ERROR 4/212 : \"\n");
  ASSERT_FALSE(read.fault) << read.fault.text;
  EXPECT_THAT(Trim(read, {}).text, HasSubstr("init: 0\n"
                                             "< EcrIo(-112, 0, null, 0, null, null) -> 0\n"
                                             "< GetDataInternal(92) -> 107\n"));
}

}  // namespace
}  // namespace recording
