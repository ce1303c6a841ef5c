// WinSock 2.2. A SOCKET is a small number, so that an int holds it.
#include <fcntl.h>
#include <io.h>

#include <climits>

#include "pal/peripherals/network/sockets.h"
#include "pal/peripherals/network/system_sockets.h"

namespace sockets {

namespace {

int Narrow(SOCKET socket) { return socket == INVALID_SOCKET ? -1 : static_cast<int>(socket); }
SOCKET Wide(int socket) { return static_cast<SOCKET>(static_cast<INT_PTR>(socket)); }

int Fail(int error) {
  WSASetLastError(error);
  return -1;
}

int Make(int type) { return Narrow(::socket(AF_INET, type, 0)); }

}  // namespace

bool Start() {
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return false;
  if (data.wVersion == MAKEWORD(2, 2)) return true;
  WSACleanup();
  return false;
}

int LastError() { return WSAGetLastError(); }
bool WouldBlock(int error) { return error == WSAEWOULDBLOCK; }
bool InProgress(int error) { return error == WSAEWOULDBLOCK; }

int MakeStream() { return Make(SOCK_STREAM); }
int MakeDatagram() { return Make(SOCK_DGRAM); }

int Close(int socket) { return closesocket(Wide(socket)); }

int SetBlocking(int socket, bool blocking) {
  u_long non_blocking = blocking ? 0 : 1;
  return ioctlsocket(Wide(socket), FIONBIO, &non_blocking);
}

int SetReuseAddress(int socket) {
  const char on = 1;  // one byte is enough here
  return setsockopt(Wide(socket), SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
}

int SetReceiveTimeout(int socket, int milliseconds) {
  // The first word is read, in milliseconds.
  const int words[] = {milliseconds, 0};
  return setsockopt(Wide(socket), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(words),
                    sizeof(words));
}

// A connect that failed is never writable.
int ConnectResult(int) { return 0; }

int Accept(int socket) { return Narrow(::accept(Wide(socket), nullptr, nullptr)); }

int Send(int socket, const void* data, int length) {
  if (length < 0) return Fail(WSAEINVAL);
  return ::send(Wide(socket), static_cast<const char*>(data), length, 0);
}

int Receive(int socket, void* data, int length, int flags) {
  if (length < 0) return Fail(WSAEINVAL);
  return ::recv(Wide(socket), static_cast<char*>(data), length, flags);
}

int SendTo(int socket, const void* data, size_t length, uint32_t address, uint16_t port) {
  if (length > INT_MAX) return Fail(WSAEMSGSIZE);
  sockaddr_in peer = {};
  peer.sin_family = AF_INET;
  peer.sin_port = htons(port);
  peer.sin_addr.s_addr = address;
  return ::sendto(Wide(socket), static_cast<const char*>(data), static_cast<int>(length), 0,
                  reinterpret_cast<const sockaddr*>(&peer), sizeof(peer));
}

int ReceiveFrom(int socket, void* data, size_t length) {
  const int room = length > INT_MAX ? INT_MAX : static_cast<int>(length);
  return ::recvfrom(Wide(socket), static_cast<char*>(data), room, 0, nullptr, nullptr);
}

// select takes sockets alone here: whoever waits is woken by the closing of the socket.
Wait AwaitReady(int socket, Direction direction, int, int milliseconds) {
  Wait result = {-1, false, false};
  if (milliseconds < 0 || socket < 0) {
    WSASetLastError(socket < 0 ? WSAENOTSOCK : WSAEINVAL);
    return result;
  }
  fd_set set;
  FD_ZERO(&set);
  FD_SET(Wide(socket), &set);
  timeval time = {};
  time.tv_sec = milliseconds / 1000;
  time.tv_usec = milliseconds % 1000 * 1000;
  const bool reads = direction == Direction::kRead;
  result.count = select(0, reads ? &set : nullptr, reads ? nullptr : &set, nullptr, &time);
  result.ready = result.count > 0;
  return result;
}

int MakePipe(int ends[2]) { return _pipe(ends, 4096, _O_BINARY); }

int WritePipe(int end, char byte) { return _write(end, &byte, 1); }

int ClosePipeEnd(int end) { return _close(end); }

}  // namespace sockets
