// A client that is there no more counts as one that answers -1 and fills nothing: every command of
// the language, with none of its fields, with each, with each two and with all of them, loses its
// client behind each of its calls.

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/front/opcodes.h"
#include "pal/threading/posix/thread.h"
#include "support/language_commands.h"
#include "support/null_client.h"
#include "support/temporary_folder.h"
#include "unit/language/shipped_language.h"

namespace {

// Answers so many calls with 0, filling what they ask for with the number; all behind them with -1.
// The same client can take itself away instead.
class LosingClient : public RtfClientInterface {
 public:
  RtfClientInterface** place =
      nullptr;  // where the translator has it; null: it stays, and answers -1
  int good = 0;
  char fill = 0;
  std::vector<std::string> calls;
  int called = 0;

#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  Result Name Parameters override { return Note<Result>(#Name) Arguments; }
#include "rpccommon/client/rtfclientoperations.inc"

 private:
  // Takes the arguments, and gives the answer.
  template <typename Result>
  struct Answering {
    LosingClient* client;
    bool is_good;

    template <typename... Arguments>
    Result operator()(Arguments... arguments) {
      if (is_good) (client->Fill(arguments), ...);
      if constexpr (std::is_same_v<Result, bool>) {
        return is_good;
      } else if constexpr (!std::is_void_v<Result>) {
        return is_good ? 0 : -1;
      }
    }
  };

  template <typename Result>
  Answering<Result> Note(const char* name) {
    if (std::strncmp(name, "Log", 3) == 0) return {this, true};
    EXPECT_FALSE(place != nullptr && *place == nullptr) << name << " is called and nobody is there";
    ++called;
    const bool is_good = good > 0;
    if (is_good) {
      --good;
      calls.emplace_back(name);
    }
    if (good == 0 && place != nullptr) *place = nullptr;
    return {this, is_good};
  }

  template <typename T>
  void Fill(T) {}
  // A text that is a number for who reads one, and a line of the state words.
  void Fill(char* text) {
    const std::string line = fill == 0 ? "" : "1;2;1;1;1;1;1";
    std::memcpy(text, line.c_str(), line.size() + 1);
  }
  void Fill(int32_t* number) { *number = fill; }
  void Fill(uint32_t* number) { *number = static_cast<uint32_t>(fill); }
  void Fill(int64_t* number) { *number = fill; }
  void Fill(uint8_t* number) { *number = static_cast<uint8_t>(fill); }
  void Fill(bool* flag) { *flag = fill != 0; }
};

// Without the pause that a device in work is given.
class NoPause {
 public:
  NoPause() : before_(Thread::SetSleepFunction([](int) {})) {}
  ~NoPause() { Thread::SetSleepFunction(before_); }

 private:
  const Thread::SleepFunction before_;
};

constexpr char kReadsAFile[] = "#30 ";  // EMLINK

std::string Line(int opcode, const std::vector<int>& fields, const std::string& value) {
  std::string line = "#" + std::to_string(opcode);
  const char* before = " ";
  for (const int field : fields) {
    line += before + ("#" + std::to_string(field)) + "=" + value;
    before = ", ";
  }
  return line;
}

// All fields; each with some values; and all choices of few fields, or of each two of many.
std::vector<std::string> Lines(const LanguageCommand& command) {
  constexpr size_t kFew = 6;
  const std::vector<int>& fields = command.fields;
  std::vector<std::string> lines = {Line(command.opcode, fields, "1")};
  for (const int field : fields) {
    for (int value = 0; value <= 40; ++value) {
      lines.push_back(Line(command.opcode, {field}, std::to_string(value)));
    }
  }
  for (const char* value : {"0", "1", "2", "5", "'A'"}) {
    for (size_t choice = 0; fields.size() <= kFew && choice < 1u << fields.size(); ++choice) {
      std::vector<int> chosen;
      for (size_t i = 0; i < fields.size(); ++i) {
        if ((choice >> i & 1) != 0) chosen.push_back(fields[i]);
      }
      lines.push_back(Line(command.opcode, chosen, value));
    }
    for (size_t i = 0; fields.size() > kFew && i < fields.size(); ++i) {
      for (size_t j = i + 1; j < fields.size(); ++j) {
        lines.push_back(Line(command.opcode, {fields[i], fields[j]}, value));
      }
    }
  }
  return lines;
}

// The road of a line behind the entry, which would refuse one without a client.
std::string HandlersAnswer(EcrCmdCommand& translator, std::string line) {
  int position = 1;
  int opcode = 0;
  EXPECT_EQ(translator.GetCodOp(line.data(), &position, &opcode), 0);
  EXPECT_EQ(translator.GetCampi(line.data(), opcode, &position), 0);
  const int code = (translator.*FindHandler(opcode))();
  std::vector<char> text(1024);
  translator.SetStringErr(text.data(), code);
  translator.TStato.iFlgEMCmd = 0;
  translator.TStato.iFlgINFO = 0;
  return std::to_string(code) + " " + text.data();
}

class ClientGone : public testing::Test {
 protected:
  ClientGone() : before_(std::filesystem::current_path()), folder_(MakeTemporaryFolder()) {
    std::filesystem::current_path(folder_);
    for (auto* translator : {&losing_, &failing_}) {
      int result = 0;
      *translator = shipped::Read(&result);
      EXPECT_EQ(result, 1);
      WriteDefaultMessages(**translator);
      // Fields are named by number: none has to be given.
      std::memset((*translator)->bObl, 0, sizeof(*translator)->bObl);
      (*translator)->TStato.bInitOK = true;
      (*translator)->iCurEcrNum = 1;
      (*translator)->iEcrSelected = 1;
      (*translator)->pCurConf = &(*translator)->EcrConfArray[1];
    }
  }
  ~ClientGone() override {
    std::filesystem::current_path(before_);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  // What a translator is made to do, and what comes of it.
  using Deed = std::function<std::string(EcrCmdCommand&)>;

  // Does it with a client that goes behind so many good answers, and with one that fails, for every
  // number of them until it has no more calls.
  void Lose(const std::string& what, char fill, const Deed& deed) {
    constexpr int kMostCalls = 40;
    bool had_more = true;
    for (int good = 0; good < kMostCalls && had_more; ++good) {
      LosingClient gone;
      LosingClient failing;
      const std::string lost = Do(losing_.get(), good, fill, &gone, true, deed);
      const std::string failed = Do(failing_.get(), good, fill, &failing, false, deed);
      ASSERT_EQ(lost, failed) << what << ", behind call " << good << ", fill " << int{fill};
      ASSERT_EQ(gone.calls, failing.calls) << what << ", behind call " << good;
      had_more = failing.called > good;
    }
  }

  void LoseIn(const std::string& line, char fill) {
    Lose(line, fill, [&](EcrCmdCommand& translator) {
      if (line.starts_with(kReadsAFile)) std::ofstream("1", std::ios::binary) << "1,2,3\r\n";
      return HandlersAnswer(translator, line);
    });
  }

 private:
  static std::string Do(EcrCmdCommand* translator, int good, char fill, LosingClient* client,
                        bool goes, const Deed& deed) {
    client->good = good;
    client->fill = fill;
    if (goes) client->place = &translator->rtfClient_;
    translator->rtfClient_ = goes && good == 0 ? nullptr : client;
    translator->bOnFirstSale = true;
    const std::string outcome = deed(*translator);
    translator->rtfClient_ = nullptr;
    return outcome;
  }

  const std::filesystem::path before_;
  const std::filesystem::path folder_;
  const NoPause no_pause_;
  std::unique_ptr<EcrCmdCommand> losing_;
  std::unique_ptr<EcrCmdCommand> failing_;
};

// Lines whose fields belong together.
std::vector<std::string> LongerLines() {
  std::vector<std::string> lines = {
      "#9 #1='100', #4=" + std::to_string(FunctionCode::kOpenTransaction),
      "#9 #1='100', #4=" + std::to_string(FunctionCode::kCloseTransaction),
      "#23 #1=2, #2=1",
      "#23 #1=2, #2=0",
      "#10 #1=1, #4=1, #16, #18",
      "#10 #1=1, #4=1, #17, #18",
  };
  for (const int table : {1, 3, 4, 6, 8, 9, 10, 12, 20, 22, 23, 24, 100}) {
    for (const char* form : {"", ", #4, #5", ", #7"}) {
      lines.push_back("#3 #1=" + std::to_string(table) + ", #2='dump'" + form);
    }
  }
  for (const int report : {1, 2, 3, 10, 11, 200, 201, 202, 203, 204, 206, 207}) {
    for (const char* range : {"", ", #6='1', #7='2'", ", #8='010124', #9='020124'"}) {
      lines.push_back("#26 #1=" + std::to_string(report) + range);
    }
  }
  for (const char* command : {"UA", "DA"}) {
    for (const char* way : {"", ", #4", ", #5", ", #8", ", #3='e'", ", #4, #5, #6, #7"}) {
      lines.push_back(kReadsAFile + ("#1='" + std::string(command)) + "', #2='1'" + way);
    }
  }
  return lines;
}

TEST_F(ClientGone, CountsInALineAsOneThatCannotBeReached) {
  for (const char fill : {char{0}, char{1}}) {
    for (const LanguageCommand& command : LanguageCommands()) {
      for (const std::string& line : Lines(command)) ASSERT_NO_FATAL_FAILURE(LoseIn(line, fill));
    }
    for (const std::string& line : LongerLines()) ASSERT_NO_FATAL_FAILURE(LoseIn(line, fill));
  }
}

TEST_F(ClientGone, CountsInAQueryAsOneThatCannotBeReached) {
  for (const char fill : {char{0}, char{1}}) {
    for (long id = 0; id < 300; ++id) {
      ASSERT_NO_FATAL_FAILURE(
          Lose("query " + std::to_string(id), fill, [id](EcrCmdCommand& translator) {
            translator.TradClose();  // what was read is forgotten
            const long value = translator.GetEcrConfVal(id);
            translator.TradClose();
            const char* text = translator.GetEcrConfStr(id);
            return std::to_string(value) + " " + (text != nullptr ? text : "none");
          }));
    }
  }
}

}  // namespace
