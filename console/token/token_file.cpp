#include "console/token/token_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <system_error>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/replacing_file.h"
#include "console/terminal/streams.h"

namespace lorimat::console {
namespace {

// More than ten thousand tokens.
constexpr size_t kMostBytes = 2 << 20;

[[noreturn]] void Refuse(const std::string& file, int error) {
  throw Failure(Tr("{}: cannot be read: {}", Shown(file), SystemMessage(error)));
}

struct stat StatusOf(const Descriptor& opened, const std::string& file) {
  struct stat status;
  if (fstat(opened.get(), &status) != 0) Refuse(file, errno);
  return status;
}

// Whether the service manager has given it to this program, in a folder that nobody else looks
// into. It belongs to root then, and an access list lets the program read it, which shows as its
// group's right to.
bool IsCredential(const std::string& file) {
  const char* folder = std::getenv("CREDENTIALS_DIRECTORY");
  if (folder == nullptr) return false;
  std::error_code error;
  return std::filesystem::equivalent(std::filesystem::path(file).parent_path(), folder, error);
}

// Who asks for a file: the door, which lets in whom it names, or who keeps it.
enum class Asker : uint8_t { kDoor, kKeeper };

void RequirePrivate(const struct stat& status, const std::string& file, Asker asker) {
  if (!S_ISREG(status.st_mode)) throw Failure(Tr("{}: is no file of tokens", Shown(file)));
  const bool is_roots_to_keep = asker == Asker::kKeeper && geteuid() == 0;
  if (status.st_uid != geteuid() && status.st_uid != 0 && !is_roots_to_keep) {
    throw Failure(
        Tr("{}: belongs to another user; who may come in is not to be his to say", Shown(file)));
  }
  mode_t others = S_IRWXG | S_IRWXO;
  if (IsCredential(file)) others &= ~static_cast<mode_t>(S_IRGRP);
  if ((status.st_mode & others) != 0) {
    throw Failure(
        Tr("{}: may be read or written by others; chmod 600 keeps them out", Shown(file)));
  }
}

std::string ReadAll(const Descriptor& opened, const std::string& file) {
  std::string text;
  char part[16 * 1024];
  for (;;) {
    const ssize_t size = read(opened.get(), part, sizeof part);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) Refuse(file, errno);
    if (size == 0) return text;
    text.append(part, static_cast<size_t>(size));
    if (text.size() > kMostBytes) throw Failure(Tr("{}: is no file of tokens", Shown(file)));
  }
}

// Nothing that waits for a writer is waited for.
constexpr int kOpening = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

// Opened and locked: the one that has the name, and not one that was replaced meanwhile.
Descriptor Lock(const std::string& file, bool makes) {
  for (;;) {
    Descriptor opened(open(file.c_str(), O_RDWR | kOpening | (makes ? O_CREAT : 0), 0600));
    if (!opened.is_open()) {
      throw Failure(Tr("{}: cannot be opened: {}", Shown(file), SystemMessage(errno)));
    }
    const struct stat status = StatusOf(opened, file);
    RequirePrivate(status, file, Asker::kKeeper);
    while (flock(opened.get(), LOCK_EX) != 0) {
      if (errno != EINTR) Refuse(file, errno);
    }
    struct stat named;
    if (stat(file.c_str(), &named) == 0 && named.st_dev == status.st_dev &&
        named.st_ino == status.st_ino) {
      return opened;
    }
  }
}

// Replaces the text by what `change` makes of it, unless it answers false.
bool Change(const std::string& file, bool makes,
            const std::function<bool(const TokenTable&, std::string*)>& change) {
  const Descriptor locked = Lock(file, makes);
  std::string text = ReadAll(locked, file);
  if (!change(ReadTokens(text, file), &text)) return false;
  if (text.size() > kMostBytes) {
    throw Failure(Tr("{}: there is no room for one more token", Shown(file)));
  }
  ReplacingFile replacing;
  int error = replacing.Make(file);
  if (error == 0) error = replacing.Write(text);
  if (error == 0) error = replacing.SyncName();
  if (error != 0) {
    throw Failure(Tr("{}: cannot be written: {}", Shown(file), SystemMessage(error)));
  }
  return true;
}

TokenTable Load(const std::string& file, Asker asker) {
  const Descriptor opened(open(file.c_str(), O_RDONLY | kOpening));
  if (!opened.is_open()) {
    throw Failure(Tr("{}: cannot be opened: {}", Shown(file), SystemMessage(errno)));
  }
  RequirePrivate(StatusOf(opened, file), file, asker);
  return ReadTokens(ReadAll(opened, file), file);
}

}  // namespace

TokenTable LoadTokens(const std::string& file) { return Load(file, Asker::kKeeper); }

bool AddToken(const std::string& file, const std::string& name, const TokenRow& row) {
  return Change(file, true, [&](const TokenTable& table, std::string* text) {
    if (table.count(name) != 0) return false;
    if (!text->empty() && text->back() != '\n') *text += '\n';
    *text += TokenLine(name, row);
    return true;
  });
}

bool RemoveToken(const std::string& file, const std::string& name) {
  return Change(file, false, [&](const TokenTable& table, std::string* text) {
    if (table.count(name) == 0) return false;
    // What people wrote between the lines stays.
    for (size_t at = 0; at < text->size();) {
      const size_t end = text->find('\n', at);
      const size_t behind = end == text->npos ? text->size() : end + 1;
      const std::string_view line = std::string_view(*text).substr(at, behind - at);
      if (NameOfLine(line) == name) {
        text->erase(at, behind - at);
      } else {
        at = behind;
      }
    }
    return true;
  });
}

TokenFile::TokenFile(std::string file)
    : file_(std::move(file)),
      table_(std::make_shared<const TokenTable>(Load(file_, Asker::kDoor))) {}

void TokenFile::Reload() {
  auto table = std::make_shared<const TokenTable>(Load(file_, Asker::kDoor));
  const std::lock_guard<std::mutex> lock(mutex_);
  table_ = std::move(table);
}

std::shared_ptr<const TokenTable> TokenFile::table() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return table_;
}

std::optional<TokenHolder> TokenFile::Find(std::string_view token) const {
  return FindHolder(*table(), token);
}

}  // namespace lorimat::console
