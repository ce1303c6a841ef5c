// Requests and replies as HTTP has them, without the network. This header and server.cpp are what
// reads Beast.
#pragma once

#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/system/error_code.hpp>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "door/http/api.h"

namespace lorimat::door {

using RequestParser = boost::beast::http::request_parser<boost::beast::http::string_body>;
using ReplyMessage = boost::beast::http::response<boost::beast::http::string_body>;

inline constexpr size_t kMostHeader = size_t{16} * 1024;
// What a connection may hold that has not been taken yet.
inline constexpr size_t kMostBuffered = 2 * kMostHeader + Api::kMostBody;

// To be called ahead of the first byte.
void SetLimits(RequestParser& parser);
// What a request is told that cannot be read; nothing for one that has gone or is too slow.
std::optional<Reply> Complaint(const boost::system::error_code& error);
// Behind the head: the request as far as it has come, and the reply to one that is not to be read
// any further.
Request HeadOf(const RequestParser& parser);
std::optional<Reply> RefuseHead(const Api& api, const RequestParser& parser,
                                const Request& request);
// The reply to too many requests.
Reply TooManyRequests(std::string_view where);
// The reply to a client that would follow events, where too many do.
Reply TooManyFollow();
// The head of an answer that ends when the connection does.
std::string StreamHead(const Reply& reply);
// Takes the body out of the reply.
ReplyMessage MessageOf(Reply& reply, unsigned version, bool keep);

}  // namespace lorimat::door
