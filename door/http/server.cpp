#include "door/http/server.h"

#include <sys/socket.h>

#include <atomic>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "door/http/api.h"
#include "door/http/client_stream.h"
#include "door/http/event_stream.h"
#include "door/http/gathered_news.h"
#include "door/http/message.h"

namespace lorimat::door {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;
using Timer = asio::steady_timer;

constexpr int kThreads = 4;
constexpr auto kTuple = asio::as_tuple(asio::use_awaitable);

}  // namespace

class HttpServer::Impl {
 public:
  Impl(const std::string& address, uint16_t port, const ServerLimits& limits) try
      : limits_(limits),
        all_(limits.all),
        io_(kThreads),
        acceptor_(asio::make_strand(io_), tcp::endpoint(asio::ip::make_address(address), port)) {
    port_ = acceptor_.local_endpoint().port();
  } catch (const boost::system::system_error& error) {
    throw std::system_error(error.code().value(), std::system_category());
  }

  Impl(int listening, const ServerLimits& limits)
      : limits_(limits), all_(limits.all), io_(kThreads), acceptor_(asio::make_strand(io_)) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    getsockname(listening, reinterpret_cast<sockaddr*>(&address), &size);
    acceptor_.assign(address.ss_family == AF_INET6 ? tcp::v6() : tcp::v4(), listening);
    port_ = acceptor_.local_endpoint().port();
  }

  // Threads that cannot be stopped leave no other end than the program's.
  ~Impl() { Stop(); }  // NOLINT(bugprone-exception-escape)

  void SetTls(TlsContext tls) {
    const std::lock_guard<std::mutex> lock(mutex_);
    tls_ = std::move(tls);
  }

  uint16_t port() const { return port_; }

  void Start(Api& api) {
    api_ = &api;
    asio::co_spawn(acceptor_.get_executor(), Listen(), asio::detached);
    for (int i = 0; i < kThreads; ++i) threads_.emplace_back([this] { io_.run(); });
  }

  void Notify(int64_t job_id) { news_.AddJob(job_id); }
  void NotifyEvents() { news_.AddEvents(); }

  ServerFigures figures() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return {taken_, refused_, connections_, waiting_.size() - giving_way_, streams_.size()};
  }

  void Post(std::function<void()> task) { asio::post(io_, std::move(task)); }

  void Stop() {
    if (threads_.empty()) return;
    asio::post(acceptor_.get_executor(), [this] { acceptor_.close(); });
    {
      // What waits is answered with what is known; idle connections are closed.
      const std::lock_guard<std::mutex> lock(mutex_);
      stopping_ = true;
      for (auto& [id, timer] : waiting_) Wake(timer);
      for (auto& [place, row] : idle_) {
        PostToIdle(place, row.stream, [](ClientStream& stream) { stream.cancel(); });
      }
    }
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
  }

 private:
  void TellNews() noexcept try {
    const News news = news_.Take();
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const int64_t job : news.jobs) {
      const auto [first, last] = waiting_.equal_range(job);
      for (auto row = first; row != last; ++row) Wake(row->second);
    }
    if (!news.has_events) return;
    for (const std::shared_ptr<Timer>& timer : streams_) Wake(timer);
  } catch (...) {
    // Without memory whoever waits asks when its time is over.
  }

  // On the strand of its connection, which either waits by now or looks at the job again.
  static void Wake(const std::shared_ptr<Timer>& timer) {
    asio::post(timer->get_executor(), [timer] { timer->cancel(); });
  }

  // What an idle connection waits for, in the order in which they go when there are too many.
  enum class Wait : uint8_t { kFirstHead, kJob, kNextHead, kEvents };
  using Place = std::pair<Wait, int64_t>;
  struct IdleRow {
    std::shared_ptr<ClientStream> stream;
    bool goes = false;
  };

  // Runs it on the strand of the connection, if that is still idle by then.
  void PostToIdle(const Place& place, const std::shared_ptr<ClientStream>& stream,
                  void (*task)(ClientStream& stream)) {
    asio::post(stream->get_executor(), [this, place, stream, task] {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (idle_.count(place) != 0) task(*stream);
    });
  }

  // Closes one connection for another: the one that has been silent longest since it came; behind
  // all of these one that waits and sends nothing any more, or is silent since its last answer.
  // False where each is at work, or follows events.
  bool MakeRoom() {
    // Beside the places: those that are being closed.
    constexpr int kMostGoing = 50;
    const std::lock_guard<std::mutex> lock(mutex_);
    if (connections_ >= limits_.connections + kMostGoing) return false;
    for (auto& [place, row] : idle_) {
      if (place.first == Wait::kEvents) return false;
      if (std::exchange(row.goes, true)) continue;
      PostToIdle(place, row.stream, [](ClientStream& stream) {
        boost::system::error_code ignored;
        stream.socket().close(ignored);
      });
      return true;
    }
    return false;
  }

  bool IsStopping() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return stopping_;
  }

  // Whatever is thrown, no memory say, the door is not to be deaf behind it.
  asio::awaitable<void> Listen() {
    bool pauses = false;
    for (;;) {
      try {
        if (pauses) {
          Timer pause(acceptor_.get_executor(), std::chrono::milliseconds(100));
          co_await pause.async_wait(kTuple);
        }
        pauses = true;
        co_await Accept();
      } catch (...) {
      }
      if (!acceptor_.is_open()) co_return;
    }
  }

  // As long as it is there, its stream may be closed without loss.
  class Idle {
   public:
    Idle(Impl& server, ClientStream& stream, Wait wait) : server_(server) {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      place_ = {wait, ++server_.last_idle_};
      server_.idle_.emplace(place_, IdleRow{stream.shared_from_this()});
    }
    ~Idle() {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      server_.idle_.erase(place_);
    }
    Idle(const Idle&) = delete;
    Idle& operator=(const Idle&) = delete;

   private:
    Impl& server_;
    Place place_;
  };

  // Takes connections until the acceptor is closed, or cannot.
  asio::awaitable<void> Accept() {
    for (;;) {
      auto [error, socket] = co_await acceptor_.async_accept(asio::make_strand(io_), kTuple);
      if (!acceptor_.is_open()) co_return;
      // No descriptor is left, say: others have to end first.
      if (error) co_return;
      ++taken_;
      const bool is_full = connections_ >= limits_.connections;
      if (is_full) ++refused_;
      if (!is_full || MakeRoom()) Begin(std::move(socket));
    }
  }

  void Begin(tcp::socket socket) {
    ++connections_;
    try {
      const auto strand = socket.get_executor();
      auto stream = std::make_shared<ClientStream>(std::move(socket), tls());
      // From here on, so that it is seen to be silent, whenever its turn comes.
      auto idle = std::make_unique<Idle>(*this, *stream, Wait::kFirstHead);
      asio::co_spawn(strand, Serve(std::move(stream), std::move(idle)),
                     [this](const std::exception_ptr&) { --connections_; });
    } catch (...) {
      --connections_;
      throw;
    }
  }

  asio::awaitable<void> Serve(std::shared_ptr<ClientStream> held, std::unique_ptr<Idle> idle) {
    ClientStream& stream = *held;
    beast::flat_buffer buffer(kMostBuffered);
    RateLimit rate(limits_.connection);
    if (stream.has_tls() && !co_await ShakeHands(stream)) co_return;
    while (co_await ServeOne(stream, buffer, rate, std::move(idle))) {
      idle = std::make_unique<Idle>(*this, stream, Wait::kNextHead);
    }
    co_await EndStream(stream);
  }

  TlsContext tls() {
    const std::lock_guard<std::mutex> lock(mutex_);
    return tls_;
  }

  // What is no TLS, or too slow with it, is cut.
  asio::awaitable<bool> ShakeHands(ClientStream& stream) {
    if (IsStopping()) co_return false;
    stream.expires_after(limits_.head_time);
    auto [error] = co_await stream.async_handshake(kTuple);
    co_return !error;
  }

  // A request that waits for a job: its timer is woken when there is nothing more to wait for.
  class Waiting {
   public:
    Waiting(Impl& server, int64_t job_id, std::shared_ptr<Timer> timer) : server_(server) {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      began_ = !server_.stopping_ &&
               server_.waiting_.size() - server_.giving_way_ < server_.limits_.waiting;
      if (began_) row_ = server_.waiting_.emplace(job_id, std::move(timer));
    }
    ~Waiting() {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      if (began_) server_.waiting_.erase(row_);
      if (gives_way_) --server_.giving_way_;
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    // Not while the server stops, and not when too many wait.
    bool began() const { return began_; }
    // It waits on, beside those that may.
    void GiveWay() {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      if (!std::exchange(gives_way_, true)) ++server_.giving_way_;
    }

   private:
    Impl& server_;
    std::multimap<int64_t, std::shared_ptr<Timer>>::iterator row_;
    bool began_ = false;
    bool gives_way_ = false;
  };

  // What a request waits for is dropped with it, also where it ends without an answer.
  struct Asked {
    Api& api;
    const int64_t id;
    ~Asked() { api.Drop(id); }
  };

  // Whether the connection goes on.
  asio::awaitable<bool> ServeOne(ClientStream& stream, beast::flat_buffer& buffer, RateLimit& rate,
                                 std::unique_ptr<Idle> idle) {
    RequestParser parser;
    SetLimits(parser);
    // From here on a stop ends the wait.
    if (IsStopping()) co_return false;
    stream.expires_after(limits_.head_time);
    auto [error, head_size] = co_await http::async_read_header(stream, buffer, parser, kTuple);
    idle.reset();
    // A length that is too long is one to refuse, behind whom and whence.
    if (error && error != http::error::body_limit) {
      std::optional<Reply> reply = Complaint(error);
      if (reply) co_await Write(stream, *reply, parser, false);
      co_return false;
    }
    Request request = HeadOf(parser);
    std::optional<Reply> refused = RefuseRate(rate);
    if (!refused) refused = RefuseHead(*api_, parser, request);
    if (!refused && error) refused = Complaint(error);
    if (refused) {
      api_->AllowOrigin(request, &*refused);
      co_await Write(stream, *refused, parser, false);
      co_return false;
    }
    stream.expires_after(limits_.body_time);
    if (beast::iequals(parser.get()[http::field::expect], "100-continue")) {
      http::response<http::empty_body> go_on(http::status::continue_, parser.get().version());
      auto [failed, written] = co_await http::async_write(stream, go_on, kTuple);
      if (failed) co_return false;
    }
    auto [body_error, body_size] = co_await http::async_read(stream, buffer, parser, kTuple);
    if (body_error) {
      std::optional<Reply> reply = Complaint(body_error);
      if (reply) api_->AllowOrigin(request, &*reply);
      if (reply) co_await Write(stream, *reply, parser, false);
      co_return false;
    }
    const bool keep = parser.get().keep_alive() && !IsStopping();
    request.body = std::move(parser.get().body());
    Reply reply = api_->Handle(request);
    if (reply.wait_for && reply.wait_seconds > 0) {
      const int64_t waited = *reply.wait_for;
      const Asked asked{*api_, waited};
      if (!co_await WaitFor(waited, reply.wait_seconds, stream, buffer)) co_return false;
      reply = api_->Finish(waited);
    }
    api_->AllowOrigin(request, &reply);
    if (reply.events) co_return co_await Follow(stream, buffer, request, reply, parser);
    co_return co_await Write(stream, reply, parser, keep);
  }

  // A client that follows events: its timer is woken when there are more.
  class Following {
   public:
    Following(Impl& server, std::shared_ptr<Timer> timer) : server_(server) {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      began_ = server_.streams_.size() < server_.limits_.streams;
      if (began_) row_ = server_.streams_.insert(std::move(timer)).first;
    }
    ~Following() {
      const std::lock_guard<std::mutex> lock(server_.mutex_);
      if (began_) server_.streams_.erase(row_);
    }
    Following(const Following&) = delete;
    Following& operator=(const Following&) = delete;
    // Not when too many follow.
    bool began() const { return began_; }

   private:
    Impl& server_;
    std::set<std::shared_ptr<Timer>>::iterator row_;
    bool began_ = false;
  };

  // Until the client goes, or says anything, does not take what it is sent, may not ask any more,
  // or the server stops. The connection does not go on: its end is that of the answer.
  asio::awaitable<bool> Follow(ClientStream& stream, beast::flat_buffer& buffer,
                               const Request& request, Reply& reply, const RequestParser& parser) {
    const auto timer = std::make_shared<Timer>(stream.get_executor());
    const Following following(*this, timer);
    if (!following.began()) {
      Reply full = TooManyFollow();
      api_->AllowOrigin(request, &full);
      co_return co_await Write(stream, full, parser, false);
    }
    const Idle idle(*this, stream, Wait::kEvents);
    if (IsStopping()) co_return false;
    ClientWatch watch(stream, buffer, timer);
    try {
      co_await Send(stream, watch, timer, request, reply);
    } catch (...) {
      // A log that cannot be read ends the stream as well.
    }
    co_await watch.End();
    co_return false;
  }

  asio::awaitable<void> Send(ClientStream& stream, const ClientWatch& watch,
                             const std::shared_ptr<Timer>& timer, const Request& request,
                             const Reply& reply) {
    std::string bytes = StreamHead(reply);
    const auto ends = [&] { return watch.has_sent() || watch.has_ended() || watch.is_gone(); };
    while (!ends() && !IsStopping()) {
      if (bytes.empty()) {
        if (!api_->MayFollow(request, *reply.events)) break;
        bytes = reply.events->Next();
      }
      if (bytes.empty()) {
        timer->expires_after(limits_.heartbeat);
        auto [woken] = co_await timer->async_wait(kTuple);
        if (!woken) bytes = EventStream::kHeartbeat;
        continue;
      }
      stream.expires_after(limits_.write_time);
      auto [error, size] = co_await asio::async_write(stream, asio::buffer(bytes), kTuple);
      if (error) break;
      bytes.clear();
    }
  }

  // Ahead of all that costs more: a client that does nothing but ask is not to keep others away.
  std::optional<Reply> RefuseRate(RateLimit& connection) {
    const RateLimit::Time now = std::chrono::steady_clock::now();
    if (!connection.Take(now)) return TooManyRequests("on this connection");
    const std::lock_guard<std::mutex> lock(mutex_);
    if (!all_.Take(now)) return TooManyRequests("of all clients");
    return std::nullopt;
  }

  // Whether the client is there yet. One that has ended what it sends waits on, but in nobody's
  // place: it may have gone.
  asio::awaitable<bool> WaitFor(int64_t job_id, int seconds, ClientStream& stream,
                                beast::flat_buffer& buffer) {
    const auto timer = std::make_shared<Timer>(stream.get_executor());
    timer->expires_after(std::chrono::seconds(seconds));
    Waiting waiting(*this, job_id, timer);
    if (!waiting.began() || api_->IsOver(job_id)) co_return true;
    ClientWatch watch(stream, buffer, timer);
    std::optional<Idle> idle;
    while (!watch.is_gone() && !IsStopping()) {
      if (watch.has_ended() && !idle) {
        waiting.GiveWay();
        idle.emplace(*this, stream, Wait::kJob);
      }
      // What ends from here on wakes the timer.
      auto [woken] = co_await timer->async_wait(kTuple);
      if (!woken || api_->IsOver(job_id)) break;
    }
    co_await watch.End();
    co_return !watch.is_gone();
  }

  asio::awaitable<bool> Write(ClientStream& stream, Reply& reply, const RequestParser& parser,
                              bool keep) {
    ReplyMessage message = MessageOf(reply, parser.get().version(), keep);
    // Its length stays: whoever asks for the head alone would take a body for the next answer.
    if (parser.get().method() == http::verb::head) message.body().clear();
    stream.expires_after(limits_.write_time);
    auto [error, size] = co_await http::async_write(stream, message, kTuple);
    co_return !error && keep;
  }

  const ServerLimits limits_;
  RateLimit all_;
  asio::io_context io_;
  tcp::acceptor acceptor_;
  uint16_t port_ = 0;
  Api* api_ = nullptr;
  std::atomic<int> connections_{0};
  GatheredNews news_{[this] { asio::post(io_, [this] { TellNews(); }); }};
  std::mutex mutex_;
  bool stopping_ = false;
  std::atomic<int64_t> taken_{0};
  std::atomic<int64_t> refused_{0};
  TlsContext tls_;
  std::multimap<int64_t, std::shared_ptr<Timer>> waiting_;
  size_t giving_way_ = 0;  // of these
  std::set<std::shared_ptr<Timer>> streams_;
  int64_t last_idle_ = 0;
  std::map<Place, IdleRow> idle_;
  std::vector<std::thread> threads_;
};

HttpServer::HttpServer(const std::string& address, uint16_t port, const ServerLimits& limits)
    : impl_(std::make_unique<Impl>(address, port, limits)) {}
HttpServer::HttpServer(int listening, const ServerLimits& limits)
    : impl_(std::make_unique<Impl>(listening, limits)) {}
HttpServer::~HttpServer() = default;
uint16_t HttpServer::port() const { return impl_->port(); }
void HttpServer::SetTls(TlsContext tls) { impl_->SetTls(std::move(tls)); }
void HttpServer::Start(Api& api) { impl_->Start(api); }
void HttpServer::Notify(int64_t job_id) { impl_->Notify(job_id); }
void HttpServer::NotifyEvents() { impl_->NotifyEvents(); }
ServerFigures HttpServer::figures() { return impl_->figures(); }
void HttpServer::Post(std::function<void()> task) { impl_->Post(std::move(task)); }
void HttpServer::Stop() { impl_->Stop(); }

}  // namespace lorimat::door
