// The calls that the platforms have in common, and the names of hosts.
#include "pal/peripherals/network/sockets.h"

#include <atomic>
#include <cstdio>
#include <cstring>

#include "pal/peripherals/network/system_sockets.h"

namespace sockets {

static_assert(kPeek == MSG_PEEK);

namespace {

sockaddr_in MakeAddress(uint32_t address, uint16_t port) {
  sockaddr_in result = {};
  result.sin_family = AF_INET;
  result.sin_port = htons(port);
  std::memcpy(&result.sin_addr, &address, sizeof(address));
  return result;
}

Resolution ResolveBySystem(const char* host, uint32_t* address) {
  addrinfo hints = {};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;  // else each address comes once for every kind
  addrinfo* list = nullptr;
  if (host == nullptr || getaddrinfo(host, nullptr, &hints, &list) != 0) {
    return Resolution::kFailed;
  }
  Resolution result = Resolution::kNoAddress;
  if (list != nullptr && (list->ai_family != AF_INET || list->ai_addrlen < sizeof(sockaddr_in))) {
    result = Resolution::kWrongType;
  } else if (list != nullptr && list->ai_addr != nullptr) {
    sockaddr_in first;
    std::memcpy(&first, list->ai_addr, sizeof(first));
    std::memcpy(address, &first.sin_addr, sizeof(*address));
    result = Resolution::kFound;
  }
  if (list != nullptr) freeaddrinfo(list);
  return result;
}

std::atomic<ResolveFunction> resolve_function{ResolveBySystem};

}  // namespace

int SetNoDelay(int socket) {
  const int on = 1;
  return setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on),
                    sizeof(on));
}

int Connect(int socket, uint32_t address, uint16_t port) {
  const sockaddr_in peer = MakeAddress(address, port);
  return ::connect(socket, reinterpret_cast<const sockaddr*>(&peer), sizeof(peer));
}

int Bind(int socket, uint32_t address, uint16_t port) {
  const sockaddr_in own = MakeAddress(address, port);
  return ::bind(socket, reinterpret_cast<const sockaddr*>(&own), sizeof(own));
}

int Listen(int socket, int backlog) { return ::listen(socket, backlog); }

Resolution Resolve(const char* host, uint32_t* address) {
  return resolve_function.load()(host, address);
}

ResolveFunction SetResolveFunction(ResolveFunction function) {
  return resolve_function.exchange(function != nullptr ? function : ResolveBySystem);
}

void ToDotted(uint32_t address, char* text) {
  unsigned char bytes[4];  // network order: the first number first
  std::memcpy(bytes, &address, sizeof(bytes));
  std::snprintf(text, kDottedSize, "%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
}

uint32_t FromDotted(const char* text) { return inet_addr(text); }

}  // namespace sockets
