// conversation_runner [--library FILE] [--language FILE]
//                     [--must-fail | --expand | --c-face | --replay] CONVERSATION...
//
// Plays conversation files against the shared library and says how many steps it took.
// With --must-fail each file has to fail with the text of its "must-fail:" line: the
// runner's own test. With --c-face the library gets the client as a table of C functions. With
// --replay each is recorded and played once more with the recording as the device. With
// --expand it prints them with their tables written out. Exits 0 when all is well, 1 when a
// conversation differs, 2 when it was called wrongly.
#include <fstream>
#include <memory>
#include <string>

#if defined(CONVERSATION_C_FACE)
#include "bindings/c/forwarding_table.h"
#include "lorimatrt/lorimat.h"
#endif
#include "player.h"
#include "recording/conversation/script.h"
#if defined(CONVERSATION_REPLAY)
#include "replay_trial.h"
#endif
#include "runner_words.h"
#include "sweep.h"

namespace {

using conversation::Failure;

struct Played {
  conversation::Count count;
  int faults = 0;
};

// Throws Failure with the line of the file.
Played PlayScript(const std::string& path, const conversation::Stage& stage) {
  const conversation::Conversation script = conversation::ReadConversation(path);
  Played played;
  try {
    played.count = conversation::Play(script, stage);
    if (played.count.steps == 0 && script.streams.empty()) {
      throw Failure(0, "the file has no step");
    }
    played.faults = conversation::Sweep(script, stage);
  } catch (const Failure& failure) {
    throw conversation::InFile(script, failure);
  }
  return played;
}

// Like FailsAsItMust, writes the rest of the line that begins with the path.
bool PlayFile(const std::string& path, const conversation::Stage& stage) {
  try {
    const Played played = PlayScript(path, stage);
    std::printf(": %d steps, %d client calls", played.count.steps, played.count.calls);
    if (played.faults > 0) std::printf(", %d faults", played.faults);
    std::printf("\n");
    return true;
  } catch (const Failure& failure) {
    std::printf(":%d: %s\n", failure.line, failure.what());
  } catch (const std::exception& error) {
    std::printf(": %s\n", error.what());
  }
  return false;
}

// The text behind "must-fail: " in the file's first line.
std::string WantedFailure(const std::string& path) {
  const std::string mark = "must-fail: ";
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line.compare(0, mark.size(), mark) == 0 ? line.substr(mark.size()) : "";
}

bool FailsAsItMust(const std::string& path, const conversation::Stage& stage) {
  const std::string wanted = WantedFailure(path);
  if (wanted.empty()) {
    std::printf(": the first line says no must-fail text\n");
    return false;
  }
  std::string message;
  try {
    PlayScript(path, stage);
    std::printf(": passes, but it must fail with: %s\n", wanted.c_str());
    return false;
  } catch (const Failure& failure) {
    message = "line " + std::to_string(failure.line) + ": " + failure.what();
  } catch (const std::exception& error) {
    message = error.what();
  }
  for (char& c : message) c = c == '\n' ? ' ' : c;
  if (message.find(wanted) == std::string::npos) {
    std::printf(": must fail with: %s\n    fails with: %s\n", wanted.c_str(), message.c_str());
    return false;
  }
  std::printf(": fails as it must\n");
  return true;
}

bool PrintExpanded(const std::string& path) {
  try {
    for (const conversation::ScriptLine& line : conversation::ReadScriptLines(path)) {
      std::printf("%s\n", line.text.c_str());
    }
    return true;
  } catch (const Failure& failure) {
    std::fprintf(stderr, "%s:%d: %s\n", path.c_str(), failure.line, failure.what());
  }
  return false;
}

#if defined(CONVERSATION_REPLAY)
// Like PlayFile.
bool ReplayFile(const std::string& path, const conversation::Stage& stage) {
  try {
    const conversation::Conversation script = conversation::ReadConversation(path);
    const uint64_t calls = conversation::RecordAndReplay(script, stage);
    std::printf(": %llu client calls replayed\n", static_cast<unsigned long long>(calls));
    return true;
  } catch (const Failure& failure) {
    std::printf(":%d: %s\n", failure.line, failure.what());
  } catch (const std::exception& error) {
    std::printf(": %s\n", error.what());
  }
  return false;
}
#endif

#if defined(CONVERSATION_C_FACE)
// The client as the C face gives it to the library. The conversations fill more of a text than it
// has room, as a bad client does, so there is no guard.
std::shared_ptr<RtfClientInterface> CFace(RtfClientInterface& client) {
  const lorimat_device table = c_face::TableOf(client);
  lorimat_client* made = nullptr;
  if (lorimat_client_new(&table, &made) != LORIMAT_OK) throw Failure(0, lorimat_error());
  lorimat_client_guard(made, false);
  return {static_cast<RtfClientInterface*>(lorimat_client_interface(made)),
          [made](RtfClientInterface*) { lorimat_client_free(made); }};
}
#endif

bool PlayBy(const std::string& flag, const std::string& file, const conversation::Stage& stage) {
  if (flag == "--must-fail") return FailsAsItMust(file, stage);
#if defined(CONVERSATION_REPLAY)
  if (flag == "--replay") return ReplayFile(file, stage);
#endif
  return PlayFile(file, stage);
}

}  // namespace

int main(int count, char** arguments) {
  conversation::Stage stage;
  stage.library = CONVERSATION_LIBRARY;
  stage.language = CONVERSATION_LANGUAGE;
  const auto read = conversation::ReadRunnerWords(
      count, arguments, {"--must-fail", "--expand", "--c-face", "--replay"}, stage);
  if (!read) return 2;

  if (read->flag == "--c-face") {
#if defined(CONVERSATION_C_FACE)
    stage.face = CFace;
#else
    std::fprintf(stderr, "--c-face: this build has no C face (LORIMAT_BINDINGS)\n");
    return 2;
#endif
  }
#if !defined(CONVERSATION_REPLAY)
  if (read->flag == "--replay") {
    std::fprintf(stderr, "--replay: this build has no recordings (LORIMAT_TOOLS)\n");
    return 2;
  }
#endif
  bool all_well = true;
  for (const std::string& file : read->words) {
    if (read->flag == "--expand") {
      all_well &= PrintExpanded(file);
    } else {
      // Ahead of the play: it may end the process, and many files share one.
      std::printf("%s", file.c_str());
      std::fflush(stdout);
      all_well &= PlayBy(read->flag, file, stage);
    }
  }
  return all_well ? 0 : 1;
}
