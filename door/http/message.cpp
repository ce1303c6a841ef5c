#include "door/http/message.h"

#include <fmt/format.h>

#include <boost/beast/http/error.hpp>
#include <string>
#include <utility>

#include "door/http/target.h"

namespace lorimat::door {
namespace {

namespace beast = boost::beast;
namespace http = beast::http;

std::string Text(beast::string_view text) { return {text.data(), text.size()}; }

}  // namespace

void SetLimits(RequestParser& parser) {
  parser.header_limit(kMostHeader);
  parser.body_limit(Api::kMostBody);
}

std::optional<Reply> Complaint(const boost::system::error_code& error) {
  if (error == http::error::body_limit) {
    return Problem(413, "too_large",
                   fmt::format("the body is longer than {} bytes", Api::kMostBody));
  }
  if (error == http::error::header_limit) {
    return Problem(431, "too_large", "the head is too long");
  }
  const bool is_form = error.category() == make_error_code(http::error::bad_method).category() &&
                       error != http::error::end_of_stream && error != http::error::partial_message;
  if (!is_form) return std::nullopt;
  return Problem(400, "bad_request", "the request is not HTTP");
}

Request HeadOf(const RequestParser& parser) {
  const auto& message = parser.get();
  Request request;
  request.method = Text(message.method_string());
  request.target = Text(message.target());
  request.host = Text(message[http::field::host]);
  // A whole address says by itself whose it is, beside a Host that has to be there all the same.
  std::optional<AddressTarget> address = ReadAddressTarget(request.target);
  if (address) {
    constexpr unsigned kNeedsHost = 11;
    if (!request.host.empty() || message.version() < kNeedsHost) request.host = address->authority;
    request.scheme = std::move(address->scheme);
    request.target = std::move(address->target);
  }
  request.content_type = Text(message[http::field::content_type]);
  const auto origin = message.find(http::field::origin);
  if (origin != message.end()) request.origin = Text(origin->value());
  request.accept = Text(message[http::field::accept]);
  const auto key = message.find("Idempotency-Key");
  if (key != message.end()) request.key = Text(key->value());
  const auto last = message.find("Last-Event-ID");
  if (last != message.end()) request.last_event_id = Text(last->value());
  const auto authorization = message.find(http::field::authorization);
  if (authorization != message.end()) request.authorization = Text(authorization->value());
  const auto method = message.find(http::field::access_control_request_method);
  if (method != message.end()) request.preflight = Text(method->value());
  request.asks_private_network = message["Access-Control-Request-Private-Network"] == "true";
  return request;
}

std::optional<Reply> RefuseHead(const Api& api, const RequestParser& parser,
                                const Request& request) {
  const auto& message = parser.get();
  // Which of the two counts, two readers would not agree upon.
  if (message.count(http::field::host) > 1 || message.count("Idempotency-Key") > 1 ||
      message.count(http::field::authorization) > 1 || message.count(http::field::origin) > 1) {
    return Problem(400, "bad_request",
                   "Host, Origin, Authorization or Idempotency-Key is given twice");
  }
  // What it is coded by nobody here can take away: its end would be anybody's guess.
  if (message.count(http::field::transfer_encoding) > 0 && !message.chunked()) {
    return Problem(400, "bad_request", "Transfer-Encoding: is not chunked");
  }
  return api.RefuseHead(request);
}

Reply TooManyRequests(std::string_view where) {
  Reply reply = Problem(429, "too_many_requests", fmt::format("too many requests {}", where));
  reply.headers.emplace_back("Retry-After", "1");
  return reply;
}

Reply TooManyFollow() {
  Reply reply = Problem(429, "too_many_streams", "too many clients follow the events");
  reply.headers.emplace_back("Retry-After", "5");
  return reply;
}

std::string StreamHead(const Reply& reply) {
  std::string head = fmt::format(
      "HTTP/1.1 {} OK\r\nContent-Type: {}\r\nCache-Control: no-store\r\n"
      "X-Content-Type-Options: nosniff\r\nConnection: close\r\n",
      reply.status, reply.content_type);
  for (const auto& [name, value] : reply.headers) head += fmt::format("{}: {}\r\n", name, value);
  return head + "\r\n";
}

ReplyMessage MessageOf(Reply& reply, unsigned version, bool keep) {
  ReplyMessage message(static_cast<http::status>(reply.status), version);
  if (reply.status != 204) message.set(http::field::content_type, reply.content_type);
  message.set(http::field::cache_control, "no-store");
  message.set("X-Content-Type-Options", "nosniff");
  for (const auto& [name, value] : reply.headers) message.set(name, value);
  message.body() = std::move(reply.body);
  message.keep_alive(keep);
  message.prepare_payload();
  if (reply.status == 204) message.erase(http::field::content_length);
  return message;
}

}  // namespace lorimat::door
