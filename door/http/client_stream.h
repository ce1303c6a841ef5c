// A connection, plain or by TLS: one stream for Beast to read and write, and its time limits.
// Always held by a shared pointer: what it reads at its end may outlive who has begun that.
#pragma once

#include <openssl/ssl.h>

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "door/access/tls.h"

namespace lorimat::door {

// What Beast and Asio call has the names that they give it.
// NOLINTBEGIN(readability-identifier-naming)
class ClientStream : public std::enable_shared_from_this<ClientStream> {
 public:
  using next_layer_type = boost::beast::tcp_stream;
  using executor_type = next_layer_type::executor_type;

  // Speaks TLS where there is a context, behind a handshake.
  ClientStream(boost::asio::ip::tcp::socket socket, const TlsContext& tls)
      : tcp_(std::move(socket)) {
    // What is sent in parts is not to wait until the other side has told of the first one.
    boost::system::error_code ignored;
    tcp_.socket().set_option(boost::asio::ip::tcp::no_delay(true), ignored);
    if (!tls) return;
    SSL_CTX_up_ref(tls.get());
    // Takes one of the references.
    context_.emplace(tls.get());
    tls_.emplace(tcp_, *context_);
  }
  ClientStream(const ClientStream&) = delete;
  ClientStream& operator=(const ClientStream&) = delete;

  bool has_tls() const { return tls_.has_value(); }
  executor_type get_executor() { return tcp_.get_executor(); }
  next_layer_type& next_layer() { return tcp_; }
  boost::asio::ip::tcp::socket& socket() { return tcp_.socket(); }
  void expires_after(std::chrono::nanoseconds time) { tcp_.expires_after(time); }
  void expires_never() { tcp_.expires_never(); }
  void cancel() { tcp_.cancel(); }

  template <class Token>
  auto async_handshake(Token&& token) {
    return tls_->async_handshake(boost::asio::ssl::stream_base::server, std::forward<Token>(token));
  }
  template <class Token>
  auto async_shutdown(Token&& token) {
    return tls_->async_shutdown(std::forward<Token>(token));
  }
  template <class Buffers, class Token>
  auto async_read_some(const Buffers& buffers, Token&& token) {
    if (tls_) return tls_->async_read_some(buffers, std::forward<Token>(token));
    return tcp_.async_read_some(buffers, std::forward<Token>(token));
  }
  template <class Buffers, class Token>
  auto async_write_some(const Buffers& buffers, Token&& token) {
    if (tls_) return tls_->async_write_some(buffers, std::forward<Token>(token));
    return tcp_.async_write_some(buffers, std::forward<Token>(token));
  }

 private:
  next_layer_type tcp_;
  std::optional<boost::asio::ssl::context> context_;
  std::optional<boost::asio::ssl::stream<next_layer_type&>> tls_;
};
// NOLINTEND(readability-identifier-naming)

// Looks after a client that waits for something to be sent. It is read meanwhile, for a socket that
// can be read tells little: there may be parts of TLS alone, or what has been taken by now. All of
// it on the strand of the connection, on which nobody else may read ahead of End.
class ClientWatch {
 public:
  using Timer = boost::asio::steady_timer;

  // Cancels what waits for the timer whenever it has seen something. What the client sends goes
  // into the buffer, up to 4 KiB; what it sends behind these is not looked at.
  ClientWatch(ClientStream& stream, boost::beast::flat_buffer& buffer,
              std::shared_ptr<Timer> timer);
  // Closes the connection where there was no End.
  ~ClientWatch();
  ClientWatch(const ClientWatch&) = delete;
  ClientWatch& operator=(const ClientWatch&) = delete;

  bool has_sent() const;
  // It sends nothing any more, or has sent more than is taken. Whether it has gone, or still reads,
  // nobody can tell.
  bool has_ended() const;
  // Nobody reads what is sent; also where the connection was closed on this side.
  bool is_gone() const;
  // From here on others may read. The timer has another end behind it.
  boost::asio::awaitable<void> End();

 private:
  struct State;
  static void Read(const std::shared_ptr<State>& state);
  static void AwaitError(const std::shared_ptr<State>& state);
  static void Take(const std::shared_ptr<State>& state, const boost::system::error_code& error,
                   size_t size) noexcept;
  boost::beast::flat_buffer& buffer_;
  std::shared_ptr<State> state_;
};

// Ends what is sent, and takes for a moment what is still on its way: closed at once, the
// connection would take the answer along.
boost::asio::awaitable<void> EndStream(ClientStream& stream);

}  // namespace lorimat::door
