// A request of HTTP and its answer. libcurl is loaded with the first one, so that no other command
// waits for it, or needs it.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lorimat::console {

// Where a door is, and how to speak with it.
struct DoorAddress {
  std::string url;      // "http://127.0.0.1:8577", or https, whose certificate is looked at
  std::string token;    // "NAME.SECRET"; empty for none
  std::string ca_file;  // certificates to trust (PEM); empty for those of the system
};

struct HttpRequest {
  std::string method;
  std::string path;                // with its query
  std::vector<std::string> heads;  // each "Name: value"
  std::optional<std::string> body;
  std::chrono::milliseconds timeout{};  // for all of it
};

struct HttpAnswer {
  int status = 0;  // 0 where none came that can be read
  std::string body;
  std::chrono::seconds retry_after{};  // 0 where the answer asks for none
  // Of one that did not come:
  std::string cause;     // in the words of libcurl
  bool is_sent = false;  // something of the request left
};

// Asks once, and follows nowhere. Throws Failure for what asking again does not mend: an address
// that is none, a head of more than one line, a certificate that is not trusted, no libcurl; then
// nothing of this request left. Behind std::bad_alloc it may have left. It ends early behind a
// signal that interrupt.h notes; then it has no answer.
HttpAnswer Ask(const DoorAddress& address, const HttpRequest& request);

// The text as a part of a path or query.
std::string UrlText(std::string_view text);

}  // namespace lorimat::console
