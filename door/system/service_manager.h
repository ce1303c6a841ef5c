// What a service manager gives a program that it has started, and wants to be told, by systemd's
// protocols: datagrams to NOTIFY_SOCKET, a socket that listens already, and signs of life.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace lorimat::door {

class ServiceManager {
 public:
  // Takes what is for this process out of the environment. To be made while there is one thread.
  ServiceManager();

  // "READY=1", "STATUS=...": lines as sd_notify takes them. Nothing without a manager; one that
  // does not listen keeps nobody waiting. From any thread.
  void Notify(const std::string& state) const noexcept;
  // How long the manager waits for a sign of life before it ends the program.
  std::optional<std::chrono::microseconds> patience() const { return patience_; }
  // The descriptor of a socket that listens; the receiver closes it. -1 when there are several, or
  // it is no TCP socket that listens.
  std::optional<int> TakeSocket();

 private:
  std::string address_;  // of NOTIFY_SOCKET
  std::optional<std::chrono::microseconds> patience_;
  int sockets_ = 0;
};

// "127.0.0.1:8577", "[::1]:8577": where a TCP socket listens.
std::string ListeningAddress(int socket);

// Gives signs of life as long as `is_alive` says so, four in the time that the manager waits.
class SignsOfLife {
 public:
  SignsOfLife(const ServiceManager& manager, std::function<bool()> is_alive);
  ~SignsOfLife();
  SignsOfLife(const SignsOfLife&) = delete;
  SignsOfLife& operator=(const SignsOfLife&) = delete;

 private:
  bool IsAlive() const noexcept;
  void Loop(std::chrono::microseconds pause);

  const ServiceManager& manager_;
  std::function<bool()> is_alive_;
  std::mutex mutex_;
  std::condition_variable ends_;
  bool is_over_ = false;
  std::thread thread_;
};

}  // namespace lorimat::door
