#include "door/http/client_stream.h"

#include <algorithm>
#include <array>
#include <boost/asio/as_tuple.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <vector>

namespace lorimat::door {
namespace {

constexpr auto kTuple = boost::asio::as_tuple(boost::asio::use_awaitable);

}  // namespace

// What a read that is under way holds: it may end behind the watch.
struct ClientWatch::State {
  std::shared_ptr<ClientStream> stream;
  std::shared_ptr<Timer> timer;
  size_t room = 0;  // of these bytes
  size_t size = 0;
  bool has_ended = false;
  bool is_gone = false;
  bool stops = false;
  bool is_over = false;  // nothing is under way
  std::array<char, 4096> bytes;
};

ClientWatch::ClientWatch(ClientStream& stream, boost::beast::flat_buffer& buffer,
                         std::shared_ptr<Timer> timer)
    : buffer_(buffer), state_(std::make_shared<State>()) {
  state_->stream = stream.shared_from_this();
  state_->timer = std::move(timer);
  state_->room = std::min(state_->bytes.size(), buffer.max_size() - buffer.size());
  state_->has_ended = state_->room == 0;
  stream.expires_never();
  state_->room > 0 ? Read(state_) : AwaitError(state_);
}

ClientWatch::~ClientWatch() {
  state_->stops = true;
  boost::system::error_code ignored;
  if (!state_->is_over) state_->stream->socket().close(ignored);
}

bool ClientWatch::has_sent() const { return state_->size > 0; }
bool ClientWatch::has_ended() const { return state_->has_ended; }
bool ClientWatch::is_gone() const { return state_->is_gone; }

void ClientWatch::Read(const std::shared_ptr<State>& state) {
  state->stream->async_read_some(
      boost::asio::buffer(state->bytes.data() + state->size, state->room - state->size),
      [state](const boost::system::error_code& error, size_t size) { Take(state, error, size); });
}

// Where nothing is read: a connection that is cut, or closed on this side.
void ClientWatch::AwaitError(const std::shared_ptr<State>& state) {
  state->stream->socket().async_wait(boost::asio::socket_base::wait_error,
                                     [state](const boost::system::error_code& error) {
                                       state->is_gone = !error;
                                       Take(state, boost::asio::error::operation_aborted, 0);
                                     });
}

void ClientWatch::Take(const std::shared_ptr<State>& state, const boost::system::error_code& error,
                       size_t size) noexcept {
  state->size += size;
  const bool is_cancelled = error == boost::asio::error::operation_aborted;
  // Of one that has filled the room nobody can tell either.
  if (error == boost::asio::error::eof || state->size == state->room) {
    state->has_ended = true;
  } else if ((error && !is_cancelled) || !state->stream->socket().is_open()) {
    state->is_gone = true;
  }
  state->is_over = is_cancelled || state->is_gone || state->stops;
  try {
    state->timer->cancel();
    if (state->is_over) return;
    !error && state->size < state->room ? Read(state) : AwaitError(state);
  } catch (...) {
    // No memory to look any further.
    state->is_over = true;
  }
}

boost::asio::awaitable<void> ClientWatch::End() {
  constexpr std::chrono::milliseconds kPause{10};
  state_->stops = true;
  // A read of TLS may be between two of its parts, where there is nothing to cancel.
  while (!state_->is_over) {
    state_->stream->cancel();
    state_->timer->expires_after(kPause);
    co_await state_->timer->async_wait(kTuple);
  }
  const size_t size = std::exchange(state_->size, 0);
  buffer_.commit(boost::asio::buffer_copy(buffer_.prepare(size),
                                          boost::asio::buffer(state_->bytes.data(), size)));
}

boost::asio::awaitable<void> EndStream(ClientStream& stream) {
  constexpr std::chrono::seconds kLinger{1};
  constexpr size_t kMostLingering = 4 << 20;
  boost::system::error_code ignored;
  stream.expires_after(kLinger);
  if (stream.has_tls()) co_await stream.async_shutdown(kTuple);
  stream.socket().shutdown(boost::asio::ip::tcp::socket::shutdown_send, ignored);
  std::vector<char> rest(size_t{16} * 1024);
  for (size_t taken = 0; taken < kMostLingering;) {
    auto [error, size] =
        co_await stream.next_layer().async_read_some(boost::asio::buffer(rest), kTuple);
    if (error) break;
    taken += size;
  }
}

}  // namespace lorimat::door
