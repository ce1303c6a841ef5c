#include "door/http/client_stream.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <vector>

namespace lorimat::door {

boost::asio::awaitable<void> EndStream(ClientStream& stream) {
  constexpr std::chrono::seconds kLinger{1};
  constexpr size_t kMostLingering = 4 << 20;
  constexpr auto kTuple = boost::asio::as_tuple(boost::asio::use_awaitable);
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
