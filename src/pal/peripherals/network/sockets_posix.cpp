#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "pal/peripherals/network/sockets.h"
#include "pal/peripherals/network/system_sockets.h"

namespace sockets {

namespace {

int64_t MonotonicMs() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

int Fail(int error) {
  errno = error;
  return -1;
}

}  // namespace

bool Start() { return true; }

int LastError() { return errno; }
bool WouldBlock(int error) { return error == EAGAIN || error == EWOULDBLOCK; }
bool InProgress(int error) { return error == EINPROGRESS; }

int MakeStream() { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0); }
int MakeDatagram() { return ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0); }

int Close(int socket) {
  // Closing alone leaves a thread in accept waiting for ever.
  int listening = 0;
  socklen_t size = sizeof(listening);
  if (getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &listening, &size) == 0 && listening != 0) {
    ::shutdown(socket, SHUT_RDWR);
  }
  return ::close(socket);
}

int SetBlocking(int socket, bool blocking) {
  const int flags = fcntl(socket, F_GETFL);
  if (flags < 0) return -1;
  return fcntl(socket, F_SETFL, blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK);
}

int SetReuseAddress(int socket) {
  const int on = 1;
  return setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
}

int SetReceiveTimeout(int socket, int milliseconds) {
  timeval time = {};
  time.tv_sec = milliseconds / 1000;
  time.tv_usec = milliseconds % 1000 * 1000L;
  return setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof(time));
}

int ConnectResult(int socket) {
  int error = 0;
  socklen_t size = sizeof(error);
  return getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

int Accept(int socket) {
  int result;
  do {
    result = accept4(socket, nullptr, nullptr, SOCK_CLOEXEC);
  } while (result < 0 && errno == EINTR);
  return result;
}

int Send(int socket, const void* data, int length) {
  if (length < 0) return Fail(EINVAL);
  ssize_t result;
  do {
    result = ::send(socket, data, static_cast<size_t>(length), MSG_NOSIGNAL);
  } while (result < 0 && errno == EINTR);
  return static_cast<int>(result);
}

int Receive(int socket, void* data, int length, int flags) {
  if (length < 0) return Fail(EINVAL);
  ssize_t result;
  do {
    result = ::recv(socket, data, static_cast<size_t>(length), flags);
  } while (result < 0 && errno == EINTR);
  return static_cast<int>(result);
}

int SendTo(int socket, const void* data, size_t length, uint32_t address, uint16_t port) {
  sockaddr_in peer = {};
  peer.sin_family = AF_INET;
  peer.sin_port = htons(port);
  peer.sin_addr.s_addr = address;
  return static_cast<int>(::sendto(socket, data, length, MSG_NOSIGNAL,
                                   reinterpret_cast<const sockaddr*>(&peer), sizeof(peer)));
}

int ReceiveFrom(int socket, void* data, size_t length) {
  return static_cast<int>(::recvfrom(socket, data, length, 0, nullptr, nullptr));
}

// By poll, which has no highest descriptor as select has. A signal does not end the wait.
Wait AwaitReady(int socket, Direction direction, int wake_end, int milliseconds) {
  Wait result = {-1, false, false};
  if (milliseconds < 0 || socket < 0) {
    errno = socket < 0 ? EBADF : EINVAL;
    return result;
  }
  const short event = direction == Direction::kRead ? POLLIN : POLLOUT;
  pollfd entries[] = {{socket, event, 0}, {wake_end, POLLIN, 0}};
  const int64_t deadline = MonotonicMs() + milliseconds;
  int left = milliseconds;
  while ((result.count = poll(entries, 2, left)) < 0 && errno == EINTR) {
    const int64_t rest = deadline - MonotonicMs();
    left = rest > 0 ? static_cast<int>(rest) : 0;
  }
  if (result.count <= 0) return result;
  if ((entries[0].revents | entries[1].revents) & POLLNVAL) {
    errno = EBADF;
    result.count = -1;
    return result;
  }
  result.ready = entries[0].revents != 0;
  result.woken = entries[1].revents != 0;
  return result;
}

// A pair of sockets makes the pipe: only on these does a write without a reader give no signal.
int MakePipe(int ends[2]) {
  return ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends);
}

int WritePipe(int end, char byte) { return static_cast<int>(::send(end, &byte, 1, MSG_NOSIGNAL)); }

int ClosePipeEnd(int end) { return ::close(end); }

}  // namespace sockets
