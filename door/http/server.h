// The network: connections, their limits, and jobs that are waited for.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "door/access/tls.h"
#include "door/http/rate_limit.h"

namespace lorimat::door {

class Api;

struct ServerLimits {
  // Connections at once. For one more the one is closed that has been silent longest, first of
  // those that have not asked anything, then of those that wait for a job and send nothing any
  // more; where all are at work or follow events, it is closed
  // itself.
  int connections = 200;
  // Of these, as many may wait for a job; one more is answered at once. Who sends nothing any more
  // does not count.
  size_t waiting = 100;
  // As many may follow events; one more is answered 429.
  size_t streams = 32;
  // Requests; one more is answered 429, and its connection closed.
  Rate connection = {std::chrono::milliseconds(5), 1000};
  Rate all = {std::chrono::microseconds(500), 4000};
  // What a client may take for a head, also that of the next request, for a body and for taking the
  // answer.
  std::chrono::milliseconds head_time = std::chrono::seconds(15);
  std::chrono::milliseconds body_time = std::chrono::seconds(15);
  std::chrono::milliseconds write_time = std::chrono::seconds(15);
  // Between two signs of life to a client that follows events.
  std::chrono::milliseconds heartbeat = std::chrono::seconds(15);
};

struct ServerFigures {
  int64_t taken = 0;    // connections, since the start
  int64_t refused = 0;  // closed for want of a place: as they came, or silent ones for them
  int connections = 0;  // now
  size_t waiting = 0;   // requests that wait for a job, of clients that are not known to have gone
  size_t streams = 0;   // connections that follow events
};

class HttpServer {
 public:
  // Listens; port 0 picks a free one. Throws std::system_error with the cause.
  HttpServer(const std::string& address, uint16_t port, const ServerLimits& limits = {});
  // On a socket that listens already, which it closes.
  explicit HttpServer(int listening, const ServerLimits& limits = {});
  // As Stop.
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  uint16_t port() const;
  // Connections that come from here on speak TLS, or not where it is null. From any thread.
  void SetTls(TlsContext tls);
  // Answers requests from here on, by threads of its own.
  void Start(Api& api);
  // Nobody is to wait for this job any longer. From any thread.
  void Notify(int64_t job_id);
  // There are events. From any thread.
  void NotifyEvents();
  ServerFigures figures();
  // Runs it by one of the threads that answer requests. Behind Start.
  void Post(std::function<void()> task);
  // Takes no connection any more, and answers those that wait.
  void Stop();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace lorimat::door
