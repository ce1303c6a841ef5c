#include "console/remote/http_request.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <algorithm>
#include <memory>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {
namespace {

constexpr size_t kMostAnswer = size_t{64} << 20;  // a hundred jobs of a thousand lines stay below
constexpr long kConnectTimeout = 10;              // seconds

// The functions of libcurl, of which the headers have the types.
struct Curl {
  decltype(&curl_global_init) global_init = nullptr;
  decltype(&curl_easy_init) init = nullptr;
  decltype(&curl_easy_setopt) set = nullptr;
  decltype(&curl_easy_perform) perform = nullptr;
  decltype(&curl_easy_getinfo) info = nullptr;
  decltype(&curl_easy_cleanup) cleanup = nullptr;
  decltype(&curl_easy_strerror) text = nullptr;
  decltype(&curl_slist_append) append = nullptr;
  decltype(&curl_slist_free_all) free_all = nullptr;
};

template <typename Function>
void Find(void* library, const char* name, Function* function) {
  *function = reinterpret_cast<Function>(dlsym(library, name));
  if (*function == nullptr) throw Failure(Tr("libcurl has no function {}", name));
}

Curl LoadCurl() {
  void* library = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) library = dlopen("libcurl-gnutls.so.4", RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    throw Failure(
        Tr("a door is spoken with by libcurl, which cannot be loaded (Debian: libcurl4): {}",
           Shown(dlerror())));
  }
  Curl curl;
  Find(library, "curl_global_init", &curl.global_init);
  Find(library, "curl_easy_init", &curl.init);
  Find(library, "curl_easy_setopt", &curl.set);
  Find(library, "curl_easy_perform", &curl.perform);
  Find(library, "curl_easy_getinfo", &curl.info);
  Find(library, "curl_easy_cleanup", &curl.cleanup);
  Find(library, "curl_easy_strerror", &curl.text);
  Find(library, "curl_slist_append", &curl.append);
  Find(library, "curl_slist_free_all", &curl.free_all);
  if (curl.global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) throw std::bad_alloc();
  return curl;
}

size_t Take(char* data, size_t size, size_t count, void* body) {
  auto* text = static_cast<std::string*>(body);
  const size_t bytes = size * count;
  if (text->size() + bytes > kMostAnswer) return 0;
  try {
    text->append(data, bytes);
  } catch (...) {
    return 0;  // another count than was given ends the transfer
  }
  return bytes;
}

int StopAtSignal(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return interrupted != 0 ? 1 : 0;
}

// What asking again does not mend, and what shows ahead of the request. No memory may show behind
// it.
constexpr CURLcode kForGood[] = {CURLE_URL_MALFORMAT, CURLE_UNSUPPORTED_PROTOCOL,
                                 CURLE_PEER_FAILED_VERIFICATION, CURLE_SSL_CACERT_BADFILE};

// Nothing of a line of the head may end it, or begin another one.
void RequireOneLine(const std::string& head) {
  const auto is_control = [](unsigned char c) { return c < ' ' || c == 0x7F; };
  if (std::any_of(head.begin(), head.end(), is_control)) {
    throw Failure(Tr("a request has no such line in its head: {}", Shown(head)));
  }
}

void RequireAddress(const std::string& url) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (url.size() > scheme.size() && url.compare(0, scheme.size(), scheme) == 0 &&
        url.find_first_of("@?# ") == url.npos) {
      return;
    }
  }
  throw Failure(Tr("{}: is no address of a door, such as http://127.0.0.1:8577", Shown(url)));
}

}  // namespace

HttpAnswer Ask(const DoorAddress& address, const HttpRequest& request) {
  RequireAddress(address.url);
  static const Curl curl = LoadCurl();
  const std::unique_ptr<CURL, decltype(curl.cleanup)> handle(curl.init(), curl.cleanup);
  if (!handle) throw std::bad_alloc();
  std::unique_ptr<curl_slist, decltype(curl.free_all)> heads(nullptr, curl.free_all);
  const auto add = [&](const std::string& head) {
    RequireOneLine(head);
    curl_slist* longer = curl.append(heads.get(), head.c_str());
    if (longer == nullptr) throw std::bad_alloc();
    static_cast<void>(heads.release());
    heads.reset(longer);
  };
  for (const std::string& head : request.heads) add(head);
  if (!address.token.empty()) add("Authorization: Bearer " + address.token);
  // Asking ahead of a body is for bodies that are longer.
  add("Expect:");
  std::string url = address.url;
  while (url.back() == '/') url.pop_back();
  url += request.path;
  HttpAnswer answer;
  const auto set = [&](CURLoption option, auto value) {
    const CURLcode code = curl.set(handle.get(), option, value);
    if (code == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
    // Half of what was asked for may be less safe than nothing.
    if (code != CURLE_OK) throw Failure(Tr("{}: {}", Shown(address.url), Shown(curl.text(code))));
  };
  set(CURLOPT_URL, url.c_str());
  set(CURLOPT_CUSTOMREQUEST, request.method.c_str());
  set(CURLOPT_HTTPHEADER, heads.get());
  if (request.body) {
    set(CURLOPT_POSTFIELDS, request.body->c_str());
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body->size()));
  }
  if (!address.ca_file.empty()) {
    set(CURLOPT_CAINFO, address.ca_file.c_str());
    // The folder of the system's is another place of theirs.
    set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
  }
  // A door is asked itself, whatever the environment has for the web.
  set(CURLOPT_PROXY, "");
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_CONNECTTIMEOUT, kConnectTimeout);
  set(CURLOPT_TIMEOUT_MS, static_cast<long>(request.timeout.count()));
  set(CURLOPT_WRITEFUNCTION, &Take);
  set(CURLOPT_WRITEDATA, &answer.body);
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFOFUNCTION, &StopAtSignal);
  const CURLcode code = curl.perform(handle.get());
  if (std::find(std::begin(kForGood), std::end(kForGood), code) != std::end(kForGood)) {
    throw Failure(Tr("{}: {}", Shown(address.url), Shown(curl.text(code))));
  }
  long status = 0;
  long bytes = 0;
  curl_off_t length = -1;
  curl_off_t retry_after = 0;
  curl.info(handle.get(), CURLINFO_RESPONSE_CODE, &status);
  curl.info(handle.get(), CURLINFO_REQUEST_SIZE, &bytes);
  curl.info(handle.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
  curl.info(handle.get(), CURLINFO_RETRY_AFTER, &retry_after);
  answer.is_sent = bytes > 0;
  if (code != CURLE_OK) {
    answer.cause = curl.text(code);
  } else if (length < 0) {
    // A head that is cut looks like one without a length, which no door sends.
    answer.cause = curl.text(CURLE_PARTIAL_FILE);
  } else {
    answer.status = static_cast<int>(status);
    constexpr curl_off_t kLongest = 3600;
    answer.retry_after = std::chrono::seconds(std::clamp<curl_off_t>(retry_after, 0, kLongest));
  }
  return answer;
}

std::string UrlText(std::string_view text) {
  std::string plain;
  for (const char c : text) {
    const bool is_plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                          (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
    plain += is_plain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return plain;
}

}  // namespace lorimat::console
