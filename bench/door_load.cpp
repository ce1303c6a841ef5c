// Desks at work at a door, and what the commits of their receipts allow without it.
//
//   door_load desks PORT DESKS JOBS SECONDS PID
//     so many desks, each with a connection that it keeps, sell until there are JOBS or SECONDS are
//     over (0: without that end). PID is the door's process, whose memory is looked at meanwhile.
//   door_load bound FILE RECEIPTS
//     the same receipts by the translator on a register's file, with one durable commit of a row
//     each beside it, one after the other; and again without the job's mark on them.
//
// What was measured is one line of JSON on standard output. script/load runs it.
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sqlite3.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "bench_tools.h"
#include "console/host/installed_files.h"
#include "console/host/library.h"
#include "console/terminal/streams.h"
#include "register/client/virtual_register.h"

namespace {

using Clock = std::chrono::steady_clock;
using nlohmann::json;

// A day has numbers for 9,999 documents.
constexpr int64_t kDay = 9000;
const std::string kSale = "VEND REP=1, PRE=1.20, DES='CAFFE'";
const std::string kPayment = "CHIU TEND=CONTANTI";
const std::string kClosing = "AZZGIO";
constexpr char kMark[] = "R0123456789";

double Seconds(Clock::duration time) { return std::chrono::duration<double>(time).count(); }

// --- Desks

class Connection {
 public:
  explicit Connection(int port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int on = 1;
    setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    Require(connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0,
            "the door takes no connection");
  }
  ~Connection() { close(socket_); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void Send(const std::string& request) const {
    const auto size = static_cast<ssize_t>(request.size());
    Require(send(socket_, request.data(), request.size(), MSG_NOSIGNAL) == size,
            "the door takes no request");
  }

  // More of what comes; false at the end.
  bool Receive() {
    char part[16384];
    const ssize_t got = recv(socket_, part, sizeof part, 0);
    if (got > 0) text_.append(part, static_cast<size_t>(got));
    return got > 0;
  }

  // The status of the next answer, whose body is passed over.
  int Answer() {
    size_t end = 0;
    while ((end = text_.find("\r\n\r\n")) == text_.npos) Require(Receive(), "the door has gone");
    const size_t length = text_.find("Content-Length: ");
    Require(length < end, "an answer without a length");
    const size_t whole = end + 4 + std::strtoul(text_.c_str() + length + 16, nullptr, 10);
    while (text_.size() < whole) Require(Receive(), "the door has gone");
    const int status = std::atoi(text_.c_str() + 9);
    if (status != 201) std::fprintf(stderr, "%s\n", text_.substr(0, whole).c_str());
    text_.erase(0, whole);
    return status;
  }

  std::string& text() { return text_; }
  // Ends what another thread waits for.
  void End() const { shutdown(socket_, SHUT_RDWR); }

 private:
  int socket_;
  std::string text_;
};

std::string Request(int port, const std::string& path, const std::string& key,
                    const std::string& body) {
  return "POST " + path + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
         "\r\nContent-Type: application/json\r\nIdempotency-Key: " + key +
         "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

// In kilobytes.
int64_t MemoryOf(int pid) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmRSS:", 0) == 0) return std::atoll(line.c_str() + 6);
  }
  return 0;
}

struct Load {
  int port = 0;
  int64_t jobs = 0;
  double seconds = 0;
  std::atomic<int64_t> begun{0};
  std::atomic<int64_t> done{0};
  std::atomic<bool> over{false};
  Clock::time_point from = Clock::now();
  std::mutex mutex;
  std::vector<double> latencies;  // in milliseconds

  bool Ends(int64_t number) const {
    return (jobs > 0 && number >= jobs) || (seconds > 0 && Seconds(Clock::now() - from) >= seconds);
  }
};

void Sell(Load& load, int desk) {
  Connection door(load.port);
  std::vector<double> latencies;
  const std::string lines = json{kSale, kPayment}.dump();
  const std::string body =
      "{\"lines\":" + lines + ",\"desk\":\"desk-" + std::to_string(desk) + "\"}";
  for (int64_t number = load.begun++; !load.Ends(number); number = load.begun++) {
    const std::string key = "load-" + std::to_string(number);
    const bool closes = number % kDay == kDay - 1;
    const auto from = Clock::now();
    door.Send(closes ? Request(load.port, "/v1/device/close-day?wait=300", key, "{}")
                     : Request(load.port, "/v1/jobs?wait=300", key, body));
    Require(door.Answer() == 201, "a job is not confirmed");
    latencies.push_back(1e3 * Seconds(Clock::now() - from));
    ++load.done;
  }
  const std::lock_guard<std::mutex> lock(load.mutex);
  load.latencies.insert(load.latencies.end(), latencies.begin(), latencies.end());
}

// One who listens to what happens, and how many events that were; a door may have none.
class Listener {
 public:
  explicit Listener(int port) : connection_(port), thread_([this, port] { Listen(port); }) {}
  ~Listener() {
    connection_.End();
    thread_.join();
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  int64_t count() const { return count_; }

 private:
  void Listen(int port) {
    connection_.Send("GET /v1/events HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
                     "\r\n\r\n");
    while (connection_.Receive()) {
      std::string& text = connection_.text();
      for (size_t end = 0; (end = text.find('\n')) != text.npos; text.erase(0, end + 1)) {
        if (text.rfind("id:", 0) == 0) ++count_;
      }
    }
  }

  Connection connection_;
  std::atomic<int64_t> count_{0};
  std::thread thread_;
};

double Part(const std::vector<double>& sorted, double part) {
  return sorted.empty()
             ? 0
             : sorted[static_cast<size_t>(part * static_cast<double>(sorted.size() - 1))];
}

json RunDesks(int port, int desks, int64_t jobs, double seconds, int pid) {
  Load load;
  load.port = port;
  load.jobs = jobs;
  load.seconds = seconds;
  json memory = json::array();
  int64_t events = 0;
  double took = 0;
  {
    const Listener listener(port);
    load.from = Clock::now();
    std::thread watch([&] {
      while (!load.over) {
        memory.push_back({load.done.load(), MemoryOf(pid), Seconds(Clock::now() - load.from)});
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
      }
    });
    std::vector<std::thread> threads;
    threads.reserve(static_cast<size_t>(desks));
    for (int desk = 0; desk < desks; ++desk)
      threads.emplace_back([&load, desk] { Sell(load, desk); });
    for (std::thread& thread : threads) thread.join();
    took = Seconds(Clock::now() - load.from);
    load.over = true;
    watch.join();
    events = listener.count();
  }
  memory.push_back({load.done.load(), MemoryOf(pid), took});
  std::sort(load.latencies.begin(), load.latencies.end());
  return {{"desks", desks},
          {"jobs", load.done.load()},
          {"seconds", took},
          {"events", events},
          {"memory", memory},  // jobs, kilobytes, seconds
          {"latency",
           {{"median", Part(load.latencies, 0.5)},
            {"p90", Part(load.latencies, 0.9)},
            {"p99", Part(load.latencies, 0.99)},
            {"most", Part(load.latencies, 1)}}}};
}

// --- The bound

// One row for each, on the disk when it is answered.
class Rows {
 public:
  explicit Rows(const std::string& file) {
    Require(sqlite3_open(file.c_str(), &handle_) == SQLITE_OK, "the log does not open");
    Run("PRAGMA journal_mode = WAL");
    Run("PRAGMA synchronous = FULL");
    Run("CREATE TABLE receipt (id INTEGER PRIMARY KEY, total INTEGER, time INTEGER)");
  }
  ~Rows() { sqlite3_close(handle_); }
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  void Add() { Run("INSERT INTO receipt (total, time) VALUES (12000, 20240115103000)"); }

 private:
  void Run(const char* sql) {
    Require(sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
  }
  sqlite3* handle_ = nullptr;
};

json RunBound(const std::string& file, int64_t receipts, lorimat::console::Streams& streams) {
  using namespace lorimat;
  RegisterSettings settings;
  settings.file = file;
  VirtualRegister device(std::move(settings));
  Rows rows(file + ".rows");
  streams.StartTrace("");
  console::Library library(console::FindLibrary(""), streams);
  const console::Descriptor definition(
      open(console::FindDefinitionFile("").path.c_str(), O_RDONLY | O_CLOEXEC));
  Require(library.Init("/proc/self/fd/" + std::to_string(definition.get()), &device) == 0,
          "the library does not begin");
  std::string answer;
  json result = {{"receipts", receipts}};
  // Of three runs each, in turn: others may be at work on the machine.
  for (int run = 0; run < 3; ++run) {
    for (const bool is_marked : {true, false}) {
      const auto from = Clock::now();
      for (int64_t i = 0; i < receipts; ++i) {
        const bool sold = library.RunLine(kSale, &answer) == 0 &&
                          (!is_marked || device.PrintRecMessage(kMark) == 0) &&
                          library.RunLine(kPayment, &answer) == 0;
        Require(sold, answer.c_str());
        rows.Add();
      }
      const double took = Seconds(Clock::now() - from);
      result[is_marked ? "marked" : "bare"].push_back(static_cast<double>(receipts) / took);
      Require(library.RunLine(kClosing, &answer) == 0, answer.c_str());
    }
  }
  return result;
}

int RunProgram(int count, char** arguments) {
  const std::string what = count > 1 ? arguments[1] : "";
  json result;
  // The library's own lines are kept away from standard output.
  lorimat::console::Streams streams;
  if (what == "desks" && count == 7) {
    result = RunDesks(std::atoi(arguments[2]), std::atoi(arguments[3]), std::atoll(arguments[4]),
                      std::atof(arguments[5]), std::atoi(arguments[6]));
  } else if (what == "bound" && count == 4) {
    result = RunBound(arguments[2],
                      std::min(std::atoll(arguments[3]), static_cast<long long>(kDay)), streams);
  } else {
    std::fprintf(stderr,
                 "usage: door_load desks PORT DESKS JOBS SECONDS PID | bound FILE RECEIPTS\n");
    return 2;
  }
  streams.Output(result.dump() + "\n");
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return RunProgram(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "door_load: %s\n", error.what());
    return 1;
  }
}
