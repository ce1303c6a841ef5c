#include "door/system/service_manager.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "console/terminal/streams.h"

namespace lorimat::door {
namespace {

constexpr int kFirstSocket = 3;

// Its value, which no process begun by this one is to take for its own.
std::string Taken(const char* name) {
  const char* value = std::getenv(name);
  std::string text = value == nullptr ? "" : value;
  unsetenv(name);
  return text;
}

std::optional<int64_t> WholeNumber(std::string_view text) {
  int64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < 0) return std::nullopt;
  return number;
}

bool IsListening(int socket) {
  int value = 0;
  socklen_t size = sizeof value;
  if (getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &value, &size) != 0 || value == 0) return false;
  size = sizeof value;
  if (getsockopt(socket, SOL_SOCKET, SO_TYPE, &value, &size) != 0) return false;
  sockaddr_storage address{};
  size = sizeof address;
  return value == SOCK_STREAM &&
         getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
         (address.ss_family == AF_INET || address.ss_family == AF_INET6);
}

}  // namespace

ServiceManager::ServiceManager() : address_(Taken("NOTIFY_SOCKET")) {
  const std::optional<int64_t> patience = WholeNumber(Taken("WATCHDOG_USEC"));
  const std::string watched = Taken("WATCHDOG_PID");
  const bool is_watched = watched.empty() || WholeNumber(watched) == getpid();
  if (patience && *patience > 0 && is_watched) patience_ = std::chrono::microseconds(*patience);
  const bool is_ours = WholeNumber(Taken("LISTEN_PID")) == getpid();
  const std::optional<int64_t> sockets = WholeNumber(Taken("LISTEN_FDS"));
  Taken("LISTEN_FDNAMES");
  if (is_ours && sockets) sockets_ = static_cast<int>(std::min<int64_t>(*sockets, 2));
}

void ServiceManager::Notify(const std::string& state) const noexcept {
  sockaddr_un address{};
  if (address_.empty() || address_.size() >= sizeof address.sun_path) return;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, address_.data(), address_.size());
  // An address that is no file's begins with NUL.
  if (address_[0] == '@') address.sun_path[0] = '\0';
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address_.size());
  const console::Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  // What cannot be told is told another time, or missed by nobody.
  static_cast<void>(sendto(socket.get(), state.data(), state.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
                           reinterpret_cast<const sockaddr*>(&address), size));
}

std::optional<int> ServiceManager::TakeSocket() {
  const int sockets = std::exchange(sockets_, 0);
  if (sockets == 0) return std::nullopt;
  if (sockets > 1 || !IsListening(kFirstSocket)) return -1;
  fcntl(kFirstSocket, F_SETFD, FD_CLOEXEC);
  return kFirstSocket;
}

std::string ListeningAddress(int socket) {
  sockaddr_storage address{};
  socklen_t size = sizeof address;
  getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (address.ss_family == AF_INET6) {
    sockaddr_in6 six{};
    std::memcpy(&six, &address, sizeof six);
    inet_ntop(AF_INET6, &six.sin6_addr, text.data(), text.size());
    return "[" + std::string(text.data()) + "]:" + std::to_string(ntohs(six.sin6_port));
  }
  sockaddr_in four{};
  std::memcpy(&four, &address, sizeof four);
  inet_ntop(AF_INET, &four.sin_addr, text.data(), text.size());
  return std::string(text.data()) + ":" + std::to_string(ntohs(four.sin_port));
}

SignsOfLife::SignsOfLife(const ServiceManager& manager, std::function<bool()> is_alive)
    : manager_(manager), is_alive_(std::move(is_alive)) {
  constexpr int kSigns = 4;
  if (!manager.patience()) return;
  thread_ = std::thread([this, pause = *manager.patience() / kSigns] { Loop(pause); });
}

SignsOfLife::~SignsOfLife() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    is_over_ = true;
  }
  ends_.notify_all();
  if (thread_.joinable()) thread_.join();
}

bool SignsOfLife::IsAlive() const noexcept {
  try {
    return is_alive_();
  } catch (...) {
    // Asked another time.
    return false;
  }
}

void SignsOfLife::Loop(std::chrono::microseconds pause) {
  std::unique_lock<std::mutex> lock(mutex_);
  while (!is_over_) {
    lock.unlock();
    if (IsAlive()) manager_.Notify("WATCHDOG=1");
    lock.lock();
    ends_.wait_for(lock, pause, [this] { return is_over_; });
  }
}

}  // namespace lorimat::door
