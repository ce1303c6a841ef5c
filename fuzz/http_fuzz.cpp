// What comes on a connection of the door, byte by byte: heads, bodies, one request behind the
// other. The input: how many bytes come at once, a byte for how the door stands, the bytes.
#include <boost/asio/buffer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <nlohmann/json.hpp>

#include "door/http/message.h"
#include "fuzz/scratch.h"

namespace {

using namespace lorimat::door;
namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using boost::system::error_code;

LineJudge& TheJudge() {
  static LineJudge judge(LORIMAT_SOURCE_DIR "/language/merkelin.ini");
  return judge;
}

// The bytes of a client that then closes, and what it is told.
class Connection {
 public:
  Connection(std::string_view bytes, size_t at_once)
      : bytes_(bytes), at_once_(at_once == 0 ? bytes.size() : at_once) {}

  template <typename Buffers>
  size_t read_some(const Buffers& buffers, error_code& error) {
    const size_t size =
        asio::buffer_copy(buffers, asio::buffer(bytes_.data(), std::min(at_once_, bytes_.size())));
    error = bytes_.empty() ? error_code(asio::error::eof) : error_code();
    bytes_.remove_prefix(size);
    return size;
  }
  template <typename Buffers>
  size_t read_some(const Buffers& buffers) {
    error_code error;
    return read_some(buffers, error);
  }
  template <typename Buffers>
  size_t write_some(const Buffers& buffers, error_code& error) {
    error = {};
    const size_t before = told_.size();
    for (auto part = asio::buffer_sequence_begin(buffers);
         part != asio::buffer_sequence_end(buffers); ++part) {
      const asio::const_buffer bytes(*part);
      told_.append(static_cast<const char*>(bytes.data()), bytes.size());
    }
    return told_.size() - before;
  }
  template <typename Buffers>
  size_t write_some(const Buffers& buffers) {
    error_code error;
    return write_some(buffers, error);
  }
  std::string TakeTold() { return std::exchange(told_, {}); }

 private:
  std::string_view bytes_;
  size_t at_once_;
  std::string told_;
};

// One answer as its client reads it: good HTTP to its last byte, and JSON.
void LookAt(const std::string& told, const Reply& reply) {
  http::response_parser<http::string_body> parser;
  parser.eager(true);
  parser.body_limit(boost::none);
  error_code error;
  const size_t size = parser.put(asio::buffer(told), error);
  Require(!error && parser.is_done() && size == told.size(), "an answer is one HTTP message");
  const auto& message = parser.get();
  Require(static_cast<int>(message.result_int()) == reply.status, "the status is the reply's");
  for (const auto& header : message) {
    Require(header.name_string().substr(0, 14) != "Access-Control", "foreign pages get nowhere");
  }
  const nlohmann::json json = nlohmann::json::parse(message.body(), nullptr, false);
  Require(json.is_object(), "an answer is an object of JSON");
  const bool is_problem = message[http::field::content_type] == "application/problem+json";
  Require(is_problem == json.contains("code"), "a problem has a code");
  if (is_problem) Require(json.at("status") == reply.status, "a problem has its status");
  if (reply.status == 429) {
    Require(message.count(http::field::retry_after) == 1, "it is told when to try again");
  }
  Require(reply.status != 500, "nothing is thrown");
}

bool Tell(Connection& connection, Reply& reply, unsigned version, bool keep) {
  error_code error;
  ReplyMessage message = MessageOf(reply, version, keep);
  http::write(connection, message, error);
  LookAt(connection.TakeTold(), reply);
  return keep && !error;
}

// As the server does it, one request after the other.
bool ServeOne(Connection& connection, beast::flat_buffer& buffer, Api& api, JobLog& log) {
  RequestParser parser;
  SetLimits(parser);
  error_code error;
  http::read_header(connection, buffer, parser, error);
  const unsigned version = parser.get().version();
  if (error && error != http::error::body_limit) {
    std::optional<Reply> reply = Complaint(error);
    return reply && Tell(connection, *reply, version, false);
  }
  Request request = HeadOf(parser);
  std::optional<Reply> refused = RefuseHead(api, parser, request);
  if (!refused && error) refused = Complaint(error);
  if (refused) {
    return Tell(connection, *refused, version, false);
  }
  http::read(connection, buffer, parser, error);
  if (error) {
    std::optional<Reply> reply = Complaint(error);
    return reply && Tell(connection, *reply, version, false);
  }
  request.body = std::move(parser.get().body());
  Require(request.body.size() <= Api::kMostBody, "a body has its limit");
  const int64_t before = log.Count(JobState::kQueued);
  Reply reply = api.Handle(request);
  const int64_t more = log.Count(JobState::kQueued) - before;
  Require(more == 0 || (more == 1 && reply.status == 202) || (more == -1 && reply.status == 200),
          "a job is taken or taken back by an answer that says so");
  if (reply.wait_for) {
    Require(log.Find(*reply.wait_for).has_value(), "what is waited for is in the log");
    reply = api.Finish(*reply.wait_for);
  }
  return Tell(connection, reply, version, parser.get().keep_alive());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const uint8_t at_once = data[0];
  const uint8_t stands = data[1];
  JobLog log("");
  log.Bind("99LRM0000001VR");
  constexpr int kTroubles = 4;
  Api api({.log = log,
           .judge = TheJudge(),
           .hosts = {"127.0.0.1:8577", "localhost:8577"},
           .operators = {"operator"},
           .trouble = [stands] { return static_cast<DeviceTrouble>(stands % kTroubles); },
           .log_failed = [stands] { return stands >= 0xF0; },
           .wake = [] {}});
  Connection connection({reinterpret_cast<const char*>(data) + 2, size - 2}, at_once);
  beast::flat_buffer buffer(kMostBuffered);
  while (ServeOne(connection, buffer, api, log)) {
  }
  return 0;
}
