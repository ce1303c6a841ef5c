// The network: connections, their limits, and jobs that are waited for.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace lorimat::door {

class Api;

class HttpServer {
 public:
  // Connections at once; one more is closed as it comes.
  static constexpr int kMostConnections = 200;
  // Of these, as many may wait for a job; one more is answered at once.
  static constexpr int kMostWaiting = kMostConnections / 2;

  // Listens; port 0 picks a free one. Throws std::exception with the cause.
  HttpServer(const std::string& address, uint16_t port);
  // As Stop.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  uint16_t port() const;
  // Answers requests from here on, by threads of its own.
  void Start(Api& api);
  // Nobody is to wait for this job any longer. From any thread.
  void Notify(int64_t job_id);
  // Takes no connection any more, and answers those that wait.
  void Stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace lorimat::door
