// Nothing that was answered with success is lost or doubled when the process is killed: a host
// sells on a register in a file and gets SIGKILL at random points, a few hundred times. After
// each the register has to open, its journal to verify, and every fiscal fact that was answered
// with success to be there once; what was not answered is there whole or not at all. Each article
// of a transfer is there as it was answered, also of one that was never closed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "answer.h"
#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "tests/unit/support/count.h"

extern char** environ;

namespace lorimat {
namespace {

constexpr int kKills = KILL_COUNT;
constexpr int kMostAnswers = 12;         // before a kill
constexpr long kLongestPause = 3000000;  // nanoseconds behind the last of them

class Folder {
 public:
  Folder() {
    char name[] = "/tmp/lorimat-kill.XXXXXX";
    if (mkdtemp(name) != nullptr) path_ = name;
  }
  ~Folder() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
  }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// What a seller that is started and killed was answered.
struct Life {
  std::vector<Answer> answers;
  bool killed = false;  // otherwise it ended by itself, which it must not
};

Life LiveAndDie(const std::string& file, unsigned seed, std::mt19937* random) {
  Life life;
  int ends[2];
  if (pipe(ends) != 0) return life;
  fcntl(ends[0], F_SETFD, FD_CLOEXEC);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  // The library's own lines are none of this test.
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  if (ends[1] != 3) {
    posix_spawn_file_actions_adddup2(&actions, ends[1], 3);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
  }
  std::string arguments[] = {KILL_SELLER, file, DEFINITION_FILE, std::to_string(seed)};
  char* argv[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(),
                  arguments[3].data(), nullptr};
  pid_t child = 0;
  const int started = posix_spawn(&child, KILL_SELLER, &actions, nullptr, argv, environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (started != 0) {
    close(ends[0]);
    return life;
  }

  const auto read_answer = [&] {
    Answer answer;
    if (read(ends[0], &answer, sizeof answer) != static_cast<ssize_t>(sizeof answer)) return false;
    life.answers.push_back(answer);
    return true;
  };
  // Also 0: it dies while it opens the register.
  const int awaited = std::uniform_int_distribution<int>(0, kMostAnswers)(*random);
  while (static_cast<int>(life.answers.size()) < awaited && read_answer()) {
  }
  const timespec pause = {0, std::uniform_int_distribution<long>(0, kLongestPause)(*random)};
  nanosleep(&pause, nullptr);
  kill(child, SIGKILL);
  while (read_answer()) {
  }
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  life.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  return life;
}

// Kind, closure and number; credit notes share the numbers of receipts.
using DocumentName = std::tuple<bool, int, int>;

DocumentName NameOf(const StoredDocument& document) {
  return {document.kind == DocumentKind::kInvoice, document.closure, document.number};
}

TEST(KilledRegisterTest, KeepsEveryAnsweredDocumentOnceAndNothingHalf) {
  const Folder folder;
  ASSERT_FALSE(folder.path().empty());
  const std::string file = folder.path() + "/shop.register";
  std::mt19937 random(20240115);

  std::map<DocumentName, int64_t> known;  // with their totals
  unsigned kills = 0;
  uint64_t answered = 0;
  int interrupted = 0;  // documents that were begun and not ended
  int last_closure = 0;
  int articles = 0;  // that were there behind the last round
  int articles_answered = 0;

  for (int round = 0; round < kKills; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const Life life = LiveAndDie(file, 1000 + static_cast<unsigned>(round), &random);
    ASSERT_TRUE(life.killed) << "the seller ended by itself";
    ++kills;
    if (!std::filesystem::exists(file)) continue;  // killed before it made one

    {
      RegisterSettings settings;
      settings.file = file;
      const VirtualRegister device(settings);
      EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
      if (device.cut_off()) ++interrupted;

      std::map<DocumentName, int64_t> stored;
      std::map<int, int> last_number;  // of a day
      int64_t sum = 0;
      int64_t day_sum = 0;
      int invoice = 0;
      for (const StoredDocument& document : device.store().documents()) {
        ASSERT_TRUE(stored.emplace(NameOf(document), document.total).second)
            << "the number " << document.closure << "-" << document.number << " is there twice";
        if (document.kind == DocumentKind::kInvoice) {
          EXPECT_EQ(document.number, ++invoice);
        } else {
          EXPECT_EQ(document.number, ++last_number[document.closure]);
        }
        const int64_t signed_total = DailySign(document.kind) * document.total;
        sum += signed_total;
        if (document.closure == device.store().last_closure() + 1) day_sum += signed_total;
      }
      EXPECT_EQ(device.store().grand_total(), sum);
      EXPECT_EQ(device.store().daily().net(), day_sum);
      EXPECT_EQ(device.store().next_invoice(), invoice + 1);

      size_t new_answers = 0;
      int closings = 0;
      int new_articles = 0;
      for (const Answer& answer : life.answers) {
        switch (answer.kind) {
          case Answer::kSale:
          case Answer::kRefund:
          case Answer::kInvoice: {
            ++new_answers;
            const DocumentName name = {answer.kind == Answer::kInvoice, answer.closure,
                                       answer.number};
            ASSERT_TRUE(stored.count(name))
                << "answered and lost: " << answer.closure << "-" << answer.number;
            EXPECT_EQ(stored[name], answer.total);
            EXPECT_FALSE(known.count(name)) << "its number was used before";
            break;
          }
          case Answer::kClosed:
            ++closings;
            EXPECT_GE(device.store().last_closure(), answer.closure);
            break;
          case Answer::kArticle:
            ++articles_answered;
            EXPECT_EQ(answer.number, articles + ++new_articles);
            break;
          default:
            break;
        }
      }
      // Each that was answered, and at most one more.
      const std::vector<Article>& there = device.tables().settings().articles;
      const auto rows = static_cast<int>(there.size());
      EXPECT_GE(rows, articles + new_articles);
      EXPECT_LE(rows, articles + new_articles + 1);
      for (int row = 0; row < rows; ++row) {
        std::string code = "A";
        EXPECT_EQ(there[static_cast<size_t>(row)].code, code.append(std::to_string(row + 1)));
      }
      articles = rows;
      answered += new_answers;
      // Nothing that was there before has gone or changed, and at most one document and one
      // closing came without their answer.
      for (const auto& [name, total] : known) {
        const auto found = stored.find(name);
        ASSERT_NE(found, stored.end());
        EXPECT_EQ(found->second, total);
      }
      EXPECT_GE(stored.size(), known.size() + new_answers);
      EXPECT_LE(stored.size(), known.size() + new_answers + 1);
      EXPECT_GE(device.store().last_closure(), last_closure + closings);
      EXPECT_LE(device.store().last_closure(), last_closure + closings + 1);
      last_closure = device.store().last_closure();
      known = std::move(stored);
    }

    const JournalCheck check = RegisterFile(file).VerifyJournal(nullptr);
    EXPECT_TRUE(check.good()) << static_cast<int>(check.findings.front().kind);
    EXPECT_EQ(check.documents, known.size());
    if (HasFailure()) break;
  }
  // The rounds were worth something: there were sales, and cuts in the middle of documents.
  EXPECT_GT(answered, static_cast<unsigned>(kKills));
  EXPECT_GT(articles_answered, kKills / 6);
  EXPECT_GT(interrupted, 0);
  PrintCount("kills", kills, kKills);
  std::printf("%u kills, %zu documents, %llu of them answered, %d cut off in the middle\n", kills,
              known.size(), static_cast<unsigned long long>(answered), interrupted);
}

}  // namespace
}  // namespace lorimat
