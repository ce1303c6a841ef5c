#include "door/system/notices.h"

#include <fmt/format.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "console/message/shown_text.h"

namespace lorimat::door {
namespace {

// What a text may take of an entry.
constexpr size_t kMostText = 4096;

bool IsErrorTheJournal() {
  const char* stream = std::getenv("JOURNAL_STREAM");
  struct stat status {};
  return stream != nullptr && fstat(STDERR_FILENO, &status) == 0 &&
         fmt::format("{}:{}", status.st_dev, status.st_ino) == stream;
}

// As syslog has them: error, warning, information.
int Priority(Level level) {
  constexpr int kPriorities[] = {3, 4, 6};
  return kPriorities[static_cast<size_t>(level)];
}

// Of one line, since all values are shown.
void AddField(std::string* entry, std::string_view name, std::string_view value) {
  *entry += fmt::format("{}={}\n", name, console::Shown(value, kMostText));
}

}  // namespace

Notices::Notices(console::Streams& streams, std::string journal)
    : streams_(streams), journal_(std::move(journal)), is_journal_(IsErrorTheJournal()) {
  if (is_journal_) most_ = Level::kJob;
}

void Notices::Tell(Level level, const std::string& text, Fields fields) noexcept {
  try {
    if (level > most_) return;
    if (is_journal_ && Send(level, text, fields)) return;
    const std::string line = "lorimatd: " + console::ShownLines(text) + "\n";
    if (!is_journal_) return streams_.Error(line);
    if (!SendLine(line)) ++lost_;
  } catch (...) {
    // There is no memory for a notice.
  }
}

// The journal's stream is a socket, which a journal that stands still does not empty.
bool Notices::SendLine(const std::string& line) const {
  const ssize_t sent = send(STDERR_FILENO, line.data(), line.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent < 0 && errno == ENOTSOCK) {
    streams_.Error(line);
    return true;
  }
  return sent == static_cast<ssize_t>(line.size());
}

bool Notices::Send(Level level, const std::string& text, Fields fields) const {
  std::string entry;
  AddField(&entry, "MESSAGE", text);
  AddField(&entry, "PRIORITY", std::to_string(Priority(level)));
  AddField(&entry, "SYSLOG_IDENTIFIER", "lorimatd");
  for (const auto& [name, value] : fields) AddField(&entry, name, value);
  sockaddr_un address{};
  if (journal_.size() >= sizeof address.sun_path) return false;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, journal_.data(), journal_.size());
  const console::Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  return sendto(socket.get(), entry.data(), entry.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                reinterpret_cast<const sockaddr*>(&address), sizeof address) >= 0;
}

void Notices::TellJob(const Job& job) noexcept {
  try {
    if (most_ < Level::kJob) return;
    const JobStep& step = job.history.back();
    std::string why(WhyText(step.why));
    if (!step.note.empty()) why += ": " + console::Shown(step.note, kMostText);
    const std::string state(JobStateName(step.state));
    Tell(Level::kJob, fmt::format("job {}: {}: {}", job.id, state, why),
         {{"LORIMAT_JOB", std::to_string(job.id)},
          {"LORIMAT_STATE", state},
          {"LORIMAT_WHY", why},
          {"LORIMAT_DESK", job.desk}});
  } catch (...) {
  }
}

}  // namespace lorimat::door
