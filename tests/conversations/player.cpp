#include "player.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>

#include "library.h"
#include "platform/descriptors.h"
#include "recording/conversation/recording_client.h"
#include "surroundings.h"

namespace conversation {
namespace {

namespace fs = std::filesystem;

// Room that the contract gives a result, and the bytes behind it that have to stay.
constexpr std::size_t kResultRoom = 512;
constexpr std::size_t kGuardRoom = 256;
constexpr char kGuard = '\x5A';

void WriteFile(const std::string& name, const std::string& contents) {
  const fs::path path(name);
  if (path.has_parent_path()) fs::create_directories(path.parent_path());
  std::ofstream file(name, std::ios::binary);
  file << contents;
  if (!file.flush()) throw Failure(0, "cannot write " + name);
}

std::string ReadFile(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  if (!file) throw Failure(0, "the file " + name + " is missing");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Whether a file of exactly this name is there, also where the system takes names in any case.
bool Stands(const std::string& name) {
  const fs::path path(name);
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, none)) {
    if (entry.path().filename() == path.filename()) return true;
  }
  return false;
}

// Both versions, and where they part.
std::string Difference(const std::string& what, const std::string& expected,
                       const std::string& seen) {
  std::size_t at = 0;
  while (at < expected.size() && at < seen.size() && expected[at] == seen[at]) ++at;
  return what + " differs from byte " + std::to_string(at) +
         " on\n    expected: " + Quote(expected) + "\n    seen:     " + Quote(seen);
}

// The expectations of one step, ticked off call by call.
class StepBook : public CallBook {
 public:
  explicit StepBook(const Stage& stage) : stage_(stage), device_(stage.device) {}

  void Open(const Step& step) {
    step_ = &step;
    if (stage_.device_for) {
      if (RtfClientInterface* device = stage_.device_for(step)) device_ = device;
    }
    if (stage_.by_script && stage_.by_script(step)) device_ = nullptr;
    next_ = 0;
    traces_.clear();
    fault_.reset();
    same_ = true;
  }

  // Throws what went wrong in the step.
  void Close() {
    if (fault_ != nullptr) throw *fault_;
    if (next_ < step_->calls.size()) same_ = false;
    if (Compares(Comparison::kCodes) && step_->strict && next_ < step_->calls.size()) {
      const Call& call = step_->calls[next_];
      throw Failure(call.line, "call not made\n    expected: " + call.Shown() +
                                   "\n    seen:     no further call");
    }
    count_ += static_cast<int>(next_);
    if (Compares(Comparison::kAll)) CompareTraces();
    step_ = nullptr;
  }

  int Answer(ClientOperation operation, const CallSlip& slip, const Forward& forward) override {
    const bool error = operation == ClientOperation::kLogError;
    if (error || operation == ClientOperation::kLogTrace) {
      traces_.push_back({error, slip.arguments[0].text});
      if (device_ != nullptr) forward(*device_);
      return 0;
    }
    return AnswerCall(operation, slip, forward);
  }

  // The host's side of TradInit's callback: compared as a call named EcrIo.
  int AnswerCallback(const CallSlip& slip) {
    if (!step_->strict || !Compares(Comparison::kCodes)) return 0;
    return AnswerCall(std::nullopt, slip, Forward([](RtfClientInterface&) { return 0; }));
  }

  // The library's work, by its result.
  template <typename Work>
  long AtWork(Work&& work) {
    library_works_ = true;
    Tell(true);
    const long result = work();
    Tell(false);
    library_works_ = false;
    return result;
  }
  void Enter() override { Tell(false); }
  void Leave() override { Tell(library_works_); }

  std::map<long long, std::string> items;  // data of the device, for steps that are not strict
  int count() const { return count_; }
  int forwarded() const { return forwarded_; }
  // Whether the step's calls and their answers have been those of the conversation.
  bool same() const { return same_; }

  bool Compares(Comparison what) const { return device_ == nullptr || stage_.comparison <= what; }

 private:
  void Tell(bool library_works) const {
    if (stage_.library_works) stage_.library_works(library_works);
  }

  // Without an operation it is the callback.
  int AnswerCall(std::optional<ClientOperation> operation, const CallSlip& slip,
                 const Forward& forward) {
    // Behind the first fault nothing is compared any more; a failing device lets the
    // library come to its end.
    if (fault_ != nullptr) return 111;
    if (!Compares(Comparison::kCodes)) return AnswerFreely(operation, slip, forward);
    if (!step_->strict) {
      return device_ != nullptr ? AskDevice(forward) : AnswerByDefault(operation, slip);
    }

    Call seen;
    seen.name = operation ? ClientOperationName(*operation) : "EcrIo";
    seen.arguments = slip.arguments;
    if (next_ >= step_->calls.size()) {
      Fail(step_->line,
           "call not expected\n    expected: no further call\n    seen:     " + seen.Shown());
      return 111;
    }
    const Call& wanted = step_->calls[next_++];
    if (wanted.operation != operation || !Fit(wanted.arguments, slip.arguments)) {
      Fail(wanted.line,
           "another call\n    expected: " + wanted.Shown() + "\n    seen:     " + seen.Shown());
      return 111;
    }
    if (device_ == nullptr || !operation) return Give(wanted, slip);
    const std::optional<int> answer = wanted.Result();
    if (!answer) return ExpectException(wanted, forward);
    if (stage_.refusal && answer != 0) stage_.refusal(wanted, *answer);
    return CompareAnswer(wanted, slip, AskDevice(forward));
  }

  int ExpectException(const Call& wanted, const Forward& forward) {
    const int result = AskDevice(forward);
    Fail(wanted.line, "the device answers " + wanted.Shown() + "\n    expected: " +
                          wanted.ShownAnswer() + "\n    seen:     " + std::to_string(result));
    return result;
  }

  int AskDevice(const Forward& forward) {
    const int result = forward(*device_);
    ++forwarded_;
    if (result == -1 && !stage_.wild_device)
      Fail(step_->line, "the device answers -1, which no device does");
    return result;
  }

  // The calls that are expected are looked at, to tell whether the line went the same way.
  int AnswerFreely(std::optional<ClientOperation> operation, const CallSlip& slip,
                   const Forward& forward) {
    const int result = AskDevice(forward);
    if (!step_->strict) return result;
    if (next_ >= step_->calls.size()) {
      same_ = false;
      return result;
    }
    const Call& wanted = step_->calls[next_++];
    same_ = same_ && wanted.operation == operation && Fit(wanted.arguments, slip.arguments) &&
            wanted.Result() == result && (result != 0 || OutsAreScripted(wanted, slip));
    return result;
  }

  // The device's answer beside the conversation's.
  int CompareAnswer(const Call& wanted, const CallSlip& slip, int result) {
    const bool outs_count = Compares(Comparison::kAll) && result == 0;
    if (fault_ != nullptr) return result;
    if (result == wanted.Result() && (!outs_count || OutsAreScripted(wanted, slip))) {
      return result;
    }
    Call seen;
    seen.has_answer = true;
    seen.answer = Value::Word(std::to_string(result));
    if (result == 0) {
      seen.has_outs = true;
      for (const Out& out : slip.outs) seen.outs.push_back(out.read(out.pointer));
    }
    Fail(wanted.line, "the device answers " + wanted.Shown() + "\n    expected: " +
                          wanted.ShownAnswer() + "\n    seen:     " + seen.ShownAnswer());
    return result;
  }

  static bool OutsAreScripted(const Call& wanted, const CallSlip& slip) {
    for (std::size_t i = 0; i < wanted.outs.size() && i < slip.outs.size(); ++i) {
      const Value seen = slip.outs[i].read(slip.outs[i].pointer);
      if (!wanted.outs[i].IsKept() && wanted.outs[i].text != seen.text) return false;
    }
    return true;
  }

  void Fail(int line, const std::string& message) {
    fault_ = std::make_unique<Failure>(line, message);
  }

  int AnswerByDefault(std::optional<ClientOperation> operation, const CallSlip& slip) {
    if (operation == ClientOperation::kGetDataInternal) {
      const auto item = items.find(ReadNumber(slip.arguments[0].text));
      if (item != items.end()) slip.outs[0].fill(slip.outs[0].pointer, Value::Text(item->second));
    }
    return operation == ClientOperation::kGetState ? 2 : 0;
  }

  int Give(const Call& wanted, const CallSlip& slip) {
    if (wanted.outs.size() > slip.outs.size()) {
      Fail(wanted.line,
           wanted.name + " takes " + std::to_string(slip.outs.size()) + " out-parameters only");
      return 111;
    }
    for (std::size_t i = 0; i < wanted.outs.size(); ++i) {
      // A client promises to keep to this room.
      if (wanted.operation == ClientOperation::kGetDataInternal &&
          wanted.outs[i].text.size() > 49) {
        Fail(wanted.line, "a data item holds 49 characters at most");
        return 111;
      }
      conversation::Give(slip.outs[i], wanted.outs[i]);
    }
    const std::optional<int> result = wanted.Result();
    if (!result) throw std::runtime_error("the device of the conversation");
    return *result;
  }

  void CompareTraces() const {
    if (step_->traces.empty()) return;
    std::string expected;
    std::string seen;
    const auto add = [](std::string& text, const Trace& trace) {
      text += (trace.error ? "~! " : "~ ") + trace.text + "\n";
    };
    for (const Trace& trace : step_->traces) add(expected, trace);
    for (const Trace& trace : traces_) add(seen, trace);
    if (expected != seen) throw Failure(step_->line, Difference("the trace", expected, seen));
  }

  const Stage& stage_;
  RtfClientInterface* device_;
  const Step* step_ = nullptr;
  bool same_ = true;
  bool library_works_ = false;
  int forwarded_ = 0;
  std::size_t next_ = 0;
  std::vector<Trace> traces_;
  std::unique_ptr<Failure> fault_;
  int count_ = 0;
};

class Player {
 public:
  Player(const Conversation& conversation, const Stage& stage)
      : conversation_(conversation),
        stage_(stage),
        book_(stage),
        client_(book_),
        face_(stage.face ? stage.face(client_) : nullptr) {}

  Count Run() {
    TemporaryFolder folder;
    OwnRegistry registry;
    registry_ = &registry;
    fs::copy_file(stage_.language, "test.ini");
    current_ = this;
    KeptStreams streams;
    const int open_before = OpenDescriptors();
    // Unloaded before the streams are given back, also when a step fails.
    const auto library = std::make_unique<Library>(stage_.library);
    library_ = library.get();
    for (const Step& step : conversation_.steps) {
      try {
        PlayStep(step);
      } catch (const Failure& failure) {
        throw Failure(failure.line == 0 ? step.line : failure.line, failure.what());
      }
    }
    library_->Unload();
    const int left_open = OpenDescriptors() - open_before;
    // A device that is not the conversation's may keep files of its own.
    if (stage_.device == nullptr && left_open != 0) {
      throw Failure(0, "the library leaves files open: " + std::to_string(left_open));
    }
    if (book_.Compares(Comparison::kAll)) CheckStreams(streams);
    return {steps_, book_.count(), lines_, same_lines_, book_.forwarded()};
  }

 private:
  void PlayStep(const Step& step) {
    switch (step.kind) {
      case Step::kSend:
        return Send(step);
      case Step::kExport:
        return CallExport(step);
      case Step::kInit:
        return Initialise(step);
      case Step::kLanguageName:
        language_ = step.text;
        return;
      case Step::kLanguageText:
        return TakeLanguage(step.text);
      case Step::kLanguageMore:
        return TakeLanguage(ReadFile("test.ini") + step.text);
      case Step::kOptions:
        options_ = static_cast<int>(ReadNumber(step.text));
        return;
      case Step::kClient:
        if (step.text != "yes" && step.text != "none") throw Failure(0, "client: yes, or none");
        has_client_ = step.text == "yes";
        return;
      case Step::kRegistry:
        return registry_->Write(step.text);
      case Step::kItem:
        book_.items[ReadNumber(step.name)] = step.text;
        return;
      case Step::kFile:
        return WriteFile(step.name, step.text);
      case Step::kFolder:
        fs::create_directories(step.name);
        return;
      case Step::kRemove:
        fs::remove(step.name);
        return;
      case Step::kFileIs: {
        if (!book_.Compares(Comparison::kAll)) return;
        const std::string seen = ReadFile(step.name);
        if (seen != step.text) throw Failure(0, Difference(step.name, step.text, seen));
        return;
      }
      case Step::kNoFile:
        if (book_.Compares(Comparison::kAll) && Stands(step.name))
          throw Failure(0, "the file " + step.name + " exists");
        return;
    }
  }

  void TakeLanguage(const std::string& contents) {
    language_ = "language.ini";
    WriteFile(language_, contents);
  }

  void Send(const Step& step) {
    ++steps_;
    // Each text stands in a block of its own size, so that a read past its end shows.
    const std::unique_ptr<char[]> line(new char[step.text.size() + 1]);
    std::memcpy(line.get(), step.text.c_str(), step.text.size() + 1);
    std::vector<char> result(kResultRoom + kGuardRoom, kGuard);

    book_.Open(step);
    const long code = book_.AtWork([&] { return library_->EcrCmd(line.get(), result.data()); });
    book_.Close();

    if (std::memcmp(line.get(), step.text.c_str(), step.text.size() + 1) != 0) {
      throw Failure(0, "the library wrote into the host's line");
    }
    for (std::size_t i = kResultRoom; i < result.size(); ++i) {
      if (result[i] != kGuard) throw Failure(0, "the result runs over its 512 characters");
    }
    if (std::memchr(result.data(), '\0', kResultRoom) == nullptr) {
      throw Failure(0, "the result is not closed");
    }
    if (stage_.is_code != nullptr && !stage_.is_code(code)) {
      throw Failure(0, "the line ends with " + std::to_string(code) + ", which is no result code");
    }
    const Value seen = Value::Text(result.data());
    ++lines_;
    if (stage_.answered) stage_.answered(step, code, seen.text);
    if (book_.same() && code == step.code && step.answer.Fits(seen)) ++same_lines_;
    if (!book_.Compares(Comparison::kCodes)) return;
    const bool text_counts = book_.Compares(Comparison::kAll);
    if (code != step.code || (text_counts && !step.answer.Fits(seen))) {
      throw Failure(step.answer_line, "another answer\n    expected: " + std::to_string(step.code) +
                                          " " + step.answer.Shown() + "\n    seen:     " +
                                          std::to_string(code) + " " + seen.Shown());
    }
  }

  void CallExport(const Step& step) {
    ++steps_;
    book_.Open(step);
    const Call seen = library_->CallExport(step.call);
    book_.Close();
    if (!book_.Compares(Comparison::kAll)) return;
    const bool same = seen.has_answer == step.call.has_answer &&
                      step.call.answer.Fits(seen.answer) && Fit(step.call.outs, seen.outs);
    if (!same) {
      throw Failure(0, step.call.Shown() + " answers\n    expected: " + step.call.ShownAnswer() +
                           "\n    seen:     " + seen.ShownAnswer());
    }
  }

  void Initialise(const Step& step) {
    ++steps_;
    book_.Open(step);
    std::string name = language_;
    const long code = book_.AtWork(
        [&] { return library_->TradInit(name.data(), options_, nullptr, &Player::EcrIo); });
    book_.Close();
    if (code != step.code && book_.Compares(Comparison::kCodes)) {
      throw Failure(0, "TradInit answers\n    expected: " + std::to_string(step.code) +
                           "\n    seen:     " + std::to_string(code));
    }
  }

  static long EcrIo(long control, long second, char* third, long fourth, char* fifth, long* sixth,
                    long* seventh) {
    Player& player = *current_;
    const ClientTurn turn(player.book_);
    const auto pointer = [](const void* p) {
      return Value::Word(p == nullptr ? "null" : "pointer");
    };
    CallSlip slip(control, second);
    slip.arguments.push_back(pointer(third));
    slip.arguments.push_back(Value::Word(std::to_string(fourth)));
    slip.arguments.push_back(pointer(fifth));
    slip.arguments.push_back(pointer(sixth));
    if (player.has_client_ && seventh != nullptr) {
      RtfClientInterface* client = player.face_ ? player.face_.get() : &player.client_;
      std::memcpy(seventh, &client, sizeof client);
    }
    return player.book_.AnswerCallback(slip);
  }

  void CheckStreams(const KeptStreams& streams) const {
    for (const StreamCheck& check : conversation_.streams) {
      const std::string seen = check.error_stream ? streams.Errors() : streams.Output();
      const std::string name = check.error_stream ? "standard error" : "standard output";
      if (check.whole && seen != check.text) {
        throw Failure(check.line, Difference(name, check.text, seen));
      }
      if (!check.whole && seen.find(check.text) == std::string::npos) {
        throw Failure(check.line, name + " lacks\n    expected: " + Quote(check.text) +
                                      "\n    seen:     " + Quote(seen));
      }
    }
  }

  // The callback carries no context.
  static inline Player* current_ = nullptr;

  const Conversation& conversation_;
  const Stage& stage_;
  StepBook book_;
  RecordingClient client_;
  std::shared_ptr<RtfClientInterface> face_;
  Library* library_ = nullptr;
  OwnRegistry* registry_ = nullptr;
  std::string language_ = "test.ini";
  int options_ = 0;
  bool has_client_ = true;
  int steps_ = 0;
  int lines_ = 0;
  int same_lines_ = 0;
};

}  // namespace

Count Play(const Conversation& conversation, const Stage& stage) {
  return Player(conversation, stage).Run();
}

}  // namespace conversation
