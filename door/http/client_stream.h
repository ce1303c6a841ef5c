// A connection, plain or by TLS: one stream for Beast to read and write, and its time limits.
// Always held by a shared pointer: what it reads at its end may outlive who has begun that.
#pragma once

#include <openssl/ssl.h>

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
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

// Ends what is sent, and takes for a moment what is still on its way: closed at once, the
// connection would take the answer along.
boost::asio::awaitable<void> EndStream(ClientStream& stream);

}  // namespace lorimat::door
