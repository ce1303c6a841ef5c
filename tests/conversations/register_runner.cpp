// register_runner [--library FILE] [--language FILE] [--place] FOLDER [NAME...]
//
// Plays the conversations of a folder with the virtual register as the device. Each has to go the
// same way with a new register, but for the exceptions that FOLDER/register.txt lists: those have
// to go as far as it says, and to need what it gives them. NAMEs ("sale/receipt") limit it to
// these. With --place it says instead where each belongs and after which set-up, with the first
// difference. Exits 0 when all is well, 1 when something differs, 2 when it was called wrongly.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "language/code_table.h"
#include "player.h"
#include "recording/conversation/script.h"
#include "register/client/virtual_register.h"
#include "register_list.h"
#include "replay_trial.h"
#include "runner_words.h"

namespace {

using conversation::Call;
using conversation::Comparison;
using conversation::Conversation;
using conversation::Count;
using conversation::Failure;
using conversation::Placing;
using conversation::Reach;
using conversation::RegisterList;
using conversation::Stage;
using conversation::Start;
using conversation::Step;

namespace fs = std::filesystem;

// The time at which the conversations play.
std::tm PlayingTime() {
  std::tm time{};
  time.tm_year = 2024 - 1900;
  time.tm_mon = 0;
  time.tm_mday = 15;
  time.tm_hour = 10;
  time.tm_min = 30;
  time.tm_wday = 1;  // a Monday
  time.tm_yday = 14;
  time.tm_isdst = 0;
  return time;
}

// A register that holds the data items that the conversation gives ahead of a line, as far as one
// can be made so. Line 0 is that of the first step that talks to the library.
lorimat::RegisterSettings SettingsFor(const Conversation& script, int line) {
  lorimat::RegisterSettings settings;
  settings.clock = &PlayingTime;
  for (const Step& step : script.steps) {
    if (line == 0 ? step.TalksToLibrary() : LineInFile(script, step.line) == line) break;
    if (step.kind != Step::kItem) continue;
    if (step.name == "92") settings.serial_number = step.text;
    if (step.name == "103") settings.firmware_version = step.text;
    if (step.name == "352") settings.fixed_decimal_point = step.text == "1";
  }
  return settings;
}

// The lines of a set-up, each of which has to succeed.
Conversation SetUpScript(const std::vector<std::string>& lines) {
  Conversation script;
  Step init;
  init.kind = Step::kInit;
  init.strict = false;
  script.steps.push_back(init);
  for (const std::string& line : lines) {
    // "file NAME: TEXT"
    if (line.compare(0, 5, "file ") == 0) {
      const std::size_t colon = line.find(": ");
      if (colon == std::string::npos) throw Failure(0, "a file of a set-up is written NAME: TEXT");
      Step file;
      file.kind = Step::kFile;
      file.name = line.substr(5, colon - 5);
      file.text = conversation::Unescape(line.substr(colon + 2));
      script.steps.push_back(file);
      continue;
    }
    Step send;
    send.text = line;
    send.strict = false;
    send.answer = {conversation::Value::kAny, ""};
    script.steps.push_back(send);
  }
  return script;
}

bool IsCode(long code) {
  return code == static_cast<int>(code) && !language::ReadCode(static_cast<int>(code)).empty();
}

class RegisterPlayer {
 public:
  RegisterPlayer(Stage stage, const RegisterList& list) : stage_(std::move(stage)), list_(list) {
    stage_.is_code = &IsCode;
  }

  // Throws Failure at the first difference.
  Count Play(const Conversation& script, const Placing& placing, Comparison comparison) {
    Count count;
    PlayBy(script, placing, comparison,
           [&](const Stage& stage) { count = conversation::Play(script, stage); });
    return count;
  }

  // Records what the register answers, and plays once more with the recording; how many calls that
  // answered. Throws Failure.
  uint64_t Replay(const Conversation& script, const Placing& placing) {
    uint64_t calls = 0;
    PlayBy(script, placing, Comparison::kNothing,
           [&](const Stage& stage) { calls = conversation::RecordAndReplay(script, stage); });
    return calls;
  }

  // The first difference, or nothing.
  std::unique_ptr<Failure> Difference(const Conversation& script, const Placing& placing,
                                      Comparison comparison, Count* count = nullptr) {
    try {
      const Count seen = Play(script, placing, comparison);
      if (count != nullptr) *count = seen;
      return nullptr;
    } catch (const Failure& failure) {
      return std::make_unique<Failure>(failure);
    }
  }

 private:
  // Plays with the registers of the place.
  template <typename Playing>
  void PlayBy(const Conversation& script, const Placing& placing, Comparison comparison,
              Playing playing) {
    std::vector<std::unique_ptr<lorimat::VirtualRegister>> devices;
    std::map<int, lorimat::VirtualRegister*> by_line;
    for (const Start& start : placing.starts) {
      devices.push_back(MakeRegister(script, start));
      by_line[start.line] = devices.back().get();
    }
    if (by_line.count(0) == 0) {
      devices.push_back(MakeRegister(script, {}));
      by_line[0] = devices.back().get();
    }
    lorimat::VirtualRegister* device = by_line[0];
    Stage stage = stage_;
    stage.device = device;
    stage.device_for = [&](const Step& step) -> RtfClientInterface* {
      const auto found = by_line.find(LineInFile(script, step.line));
      if (found == by_line.end()) return nullptr;
      device = found->second;
      by_line.erase(found);
      return device;
    };
    if (placing.faults) {
      stage.refusal = [&device](const Call& call, int answer) {
        Suffer(*device, *call.operation, answer);
      };
    }
    stage.comparison = comparison;
    playing(stage);
    by_line.erase(0);
    if (!by_line.empty()) {
      throw std::runtime_error("no step stands at line " + std::to_string(by_line.begin()->first));
    }
  }

  // A register that the conversation finds, after the lines of the set-up.
  std::unique_ptr<lorimat::VirtualRegister> MakeRegister(const Conversation& script,
                                                         const Start& start) {
    const std::string& set_up = start.set_up;
    auto device = std::make_unique<lorimat::VirtualRegister>(SettingsFor(script, start.line));
    if (set_up.empty()) return device;
    Stage stage = stage_;
    stage.device = device.get();
    stage.comparison = Comparison::kCodes;
    try {
      conversation::Play(SetUpScript(list_.set_ups.at(set_up)), stage);
    } catch (const Failure& failure) {
      throw std::runtime_error("the set-up \"" + set_up + "\" fails: " + failure.what());
    }
    return device;
  }

  // The next such operation answers this.
  static void Suffer(lorimat::VirtualRegister& device, ClientOperation operation, int answer) {
    lorimat::Fault fault;
    fault.name = lorimat::kCodeFault;
    fault.code = answer;
    fault.operation = operation;
    if (operation == ClientOperation::kGetState && answer == RTF_S_BUSY) {
      fault = lorimat::Fault{};
      fault.name = lorimat::kBusyFault;
      fault.when = lorimat::FaultWhen::kTimes;
    }
    try {
      device.AddFault(fault);
    } catch (const lorimat::RegisterError&) {
      // An answer that no device gives, or of an operation that gives no answer: the register
      // keeps to its own, and the difference shows.
    }
  }

  Stage stage_;
  const RegisterList& list_;
};

std::string Shown(const Conversation& script, const Failure& played) {
  const Failure failure = InFile(script, played);
  return "line " + std::to_string(failure.line) + ": " + failure.what();
}

// What the whole comes to.
struct Summary {
  int conversations[3] = {};  // by Reach
  int silent = 0;             // of the same: without a call that the register answers
  int calls[3] = {};          // that the register answered
  int lines = 0;
  int same_lines = 0;
  uint64_t replayed = 0;  // calls that recordings answered
};

// What the place gives the conversation and it does not need to go as far; empty without such.
std::string Superfluous(const Conversation& script, const Placing& placing,
                        RegisterPlayer& player) {
  if (placing.reach == Reach::kDiffers) {
    return placing.faults || !placing.starts.empty() ? "differs; it needs no set-up and no faults"
                                                     : "";
  }
  const Comparison comparison =
      placing.reach == Reach::kSame ? Comparison::kAll : Comparison::kCodes;
  if (placing.faults) {
    Placing without = placing;
    without.faults = false;
    if (!player.Difference(script, without, comparison)) return "goes as far without faults";
  }
  for (std::size_t i = 0; i < placing.starts.size(); ++i) {
    Placing without = placing;
    without.starts.erase(without.starts.begin() + static_cast<std::ptrdiff_t>(i));
    if (player.Difference(script, without, comparison)) continue;
    const int line = placing.starts[i].line;
    return "goes as far without the start " +
           (line == 0 ? "at the beginning" : "at line " + std::to_string(line));
  }
  if (placing.line != 0 && placing.reach == Reach::kSame && !placing.faults &&
      placing.starts.empty()) {
    return "goes as the conversation says by itself; take it off the list";
  }
  return "";
}

// Empty when the conversation goes as far as its place says.
std::string Check(const Conversation& script, const Placing& placing, RegisterPlayer& player,
                  Summary& summary) {
  if (placing.reach == Reach::kSame) {
    if (const auto found = player.Difference(script, placing, Comparison::kAll)) {
      return Shown(script, *found);
    }
  } else {
    if (!player.Difference(script, placing, Comparison::kAll)) {
      return "goes as the conversation says; list it under \"same\"";
    }
    const auto found = player.Difference(script, placing, Comparison::kCodes);
    if (found && placing.reach == Reach::kCodes) return Shown(script, *found);
    if (!found && placing.reach == Reach::kDiffers) {
      return "makes the same calls with the same codes; list it under \"codes\"";
    }
  }
  if (std::string superfluous = Superfluous(script, placing, player); !superfluous.empty()) {
    return superfluous;
  }
  Count count;
  if (const auto found = player.Difference(script, placing, Comparison::kNothing, &count)) {
    return Shown(script, *found);
  }
  try {
    summary.replayed += player.Replay(script, placing);
  } catch (const Failure& failure) {
    return "recorded and replayed, " + Shown(script, failure);
  }
  const auto reach = static_cast<std::size_t>(placing.reach);
  ++summary.conversations[reach];
  summary.calls[reach] += count.forwarded;
  summary.lines += count.lines;
  summary.same_lines += count.same_lines;
  if (placing.reach == Reach::kSame && count.calls == 0) ++summary.silent;
  return "";
}

// The line at which a conversation parts from the register, 0 when it does not; the step that
// was being sent, not the call in it.
int FirstPart(const Conversation& script, const Failure& failure) {
  int line = 1;
  for (const Step& step : script.steps) {
    if (step.line <= failure.line) line = step.line;
  }
  return line;
}

// Looks for the starts with which a conversation goes as far as the comparison says, line by
// line: the register there is, a new one, one behind each set-up. Gives the difference that is
// left.
std::unique_ptr<Failure> FindStarts(const Conversation& script, const RegisterList& list,
                                    RegisterPlayer& player, Comparison comparison,
                                    Placing& placing) {
  std::vector<std::string> set_ups = {""};
  for (const auto& set_up : list.set_ups) set_ups.push_back(set_up.first);
  auto found = player.Difference(script, placing, comparison);
  while (found) {
    const int parted = FirstPart(script, *found);
    Placing best = placing;
    int reached = parted;
    std::unique_ptr<Failure> left;
    bool done = false;
    // At the beginning, or at the line that parts.
    for (const int line : {0, parted}) {
      if (line == 0 && !placing.starts.empty()) continue;
      for (const std::string& set_up : set_ups) {
        Placing tried = placing;
        tried.starts.push_back({LineInFile(script, line), set_up});
        auto seen = player.Difference(script, tried, comparison);
        const int at = seen ? FirstPart(script, *seen) : INT_MAX;
        if (at > reached) {
          reached = at;
          best = tried;
          left = std::move(seen);
          done = at == INT_MAX;
        }
      }
    }
    if (reached == parted) return found;
    placing = best;
    if (done) return nullptr;
    found = std::move(left);
  }
  return nullptr;
}

std::string Shown(const Placing& placing) {
  std::string text = placing.faults ? " with faults" : "";
  const char* between = " ";
  for (const Start& start : placing.starts) {
    text += between;
    if (start.line != 0) text += std::to_string(start.line) + " ";
    text += start.set_up.empty() ? "anew" : "after " + start.set_up;
    between = ", ";
  }
  return text;
}

// Says where a conversation belongs.
void Place(const std::string& name, const Conversation& script, const RegisterList& list,
           RegisterPlayer& player) {
  std::string differences;
  for (const Comparison comparison : {Comparison::kAll, Comparison::kCodes}) {
    for (const bool faults : {false, true}) {
      Placing placing;
      placing.faults = faults;
      const auto found = FindStarts(script, list, player, comparison, placing);
      if (!found) {
        std::printf("%s: %s%s\n", comparison == Comparison::kAll ? "same" : "codes", name.c_str(),
                    Shown(placing).c_str());
        return;
      }
      differences += "\n " + Shown(placing) + ": " + Shown(script, *found);
    }
  }
  Count count;
  const auto free = player.Difference(script, {}, Comparison::kNothing, &count);
  std::printf("differs: %s, %d of %d lines the same%s%s\n", name.c_str(), count.same_lines,
              count.lines, free ? (", and fails: " + Shown(script, *free)).c_str() : "",
              differences.c_str());
}

// "folder/name" of every conversation but those for Windows.
std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& room : fs::directory_iterator(folder)) {
    const std::string theme = room.path().filename();
    // The runners' own tests.
    if (!room.is_directory() || theme == "must_fail" || theme == "register_must_fail") continue;
    for (const auto& entry : fs::directory_iterator(room.path())) {
      const fs::path& path = entry.path();
      const std::string stem = path.stem().string();
      if (path.extension() == ".txt" && !stem.ends_with("_windows")) {
        names.push_back(theme + "/" + stem);
      }
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

int main(int count, char** arguments) {
  Stage stage;
  stage.library = CONVERSATION_LIBRARY;
  stage.language = CONVERSATION_LANGUAGE;
  const auto read = conversation::ReadRunnerWords(count, arguments, {"--place"}, stage);
  if (!read) return 2;
  const std::string folder = fs::absolute(read->words[0]).lexically_normal();
  const std::string list_path = fs::path(folder) / "register.txt";

  bool all_well = true;
  const auto complain = [&all_well](const std::string& where, const std::string& what) {
    std::printf("%s: %s\n", where.c_str(), what.c_str());
    all_well = false;
  };
  try {
    const RegisterList list = conversation::ReadRegisterList(list_path);
    RegisterPlayer player(stage, list);
    const std::vector<std::string> all = NamesIn(folder);
    std::vector<std::string> names(read->words.begin() + 1, read->words.end());
    if (names.empty()) names = all;
    for (const auto& [name, placing] : list.conversations) {
      if (!std::binary_search(all.begin(), all.end(), name)) {
        complain(list_path + ":" + std::to_string(placing.line), name + " is not there");
      }
    }
    Summary summary;
    for (const std::string& name : names) {
      const std::string path = fs::path(folder) / (name + ".txt");
      try {
        const Conversation script = conversation::ReadConversation(path);
        if (!read->flag.empty()) {
          Place(name, script, list, player);
          continue;
        }
        const auto listed = list.conversations.find(name);
        const bool exception = listed != list.conversations.end();
        const std::string fault =
            Check(script, exception ? listed->second : Placing{}, player, summary);
        if (fault.empty()) continue;
        complain(path, fault + (exception ? ""
                                          : "\n    It is none of the exceptions in register.txt; "
                                            "--place tells where it belongs"));
      } catch (const std::exception& error) {
        complain(path, error.what());
      }
    }
    if (read->flag.empty()) {
      std::printf(
          "%d conversations go the same way with the register (%d calls; %d of them "
          "without one), %d with the register's own data (%d calls), %d differ (%d "
          "calls); %d of all %d lines are the same; %llu calls replayed from recordings\n",
          summary.conversations[0], summary.calls[0], summary.silent, summary.conversations[1],
          summary.calls[1], summary.conversations[2], summary.calls[2], summary.same_lines,
          summary.lines, static_cast<unsigned long long>(summary.replayed));
    }
  } catch (const Failure& failure) {
    complain(list_path + ":" + std::to_string(failure.line), failure.what());
  } catch (const std::exception& error) {
    complain(folder, error.what());
  }
  return all_well ? 0 : 1;
}
