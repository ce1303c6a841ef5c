#include "pal/peripherals/network/netsocket.h"

#include <cerrno>

#include "pal/peripherals/network/sockets.h"
#include "pal/threading/posix/thread.h"
#include "utility/log/log.h"

namespace {

// The socket library has been started, once for the process.
std::atomic<bool> ws_init{false};

constexpr int kDefaultTimeout = 45000;  // milliseconds
constexpr int kSendRetry = 200;         // milliseconds
constexpr int kReceiveFromTimeout = 5;  // milliseconds

}  // namespace

// The log has a socket: constructor and destructor log nothing.
NetSocket::NetSocket(Types type)
    : socket_(-1),
      socket_closed_by_peer_(false),
      timeout_(kDefaultTimeout),
      pipefd_{-1, -1},
      type_(type),
      backup_socket_(nullptr),
      open_(false) {
  if (!ws_init && sockets::Start()) ws_init = true;
}

NetSocket::NetSocket(const NetSocket& other)
    : socket_(other.socket_.load()),
      socket_closed_by_peer_(other.socket_closed_by_peer_.load()),
      timeout_(other.timeout_),
      pipefd_{other.pipefd_[0].load(), other.pipefd_[1].load()},
      type_(other.type_),
      backup_socket_(other.backup_socket_),
      open_(other.open_.load()) {}

NetSocket& NetSocket::operator=(const NetSocket& other) {
  if (this == &other) return *this;
  socket_ = other.socket_.load();
  socket_closed_by_peer_ = other.socket_closed_by_peer_.load();
  timeout_ = other.timeout_;
  pipefd_[0] = other.pipefd_[0].load();
  pipefd_[1] = other.pipefd_[1].load();
  type_ = other.type_;
  backup_socket_ = other.backup_socket_;
  open_ = other.open_.load();
  return *this;
}

NetSocket::~NetSocket() {
  NetSocket::Close();
  ClearPipe();
}

int NetSocket::CloseDescriptor() {
  // Of two threads that close, one does.
  return open_.exchange(false) ? sockets::Close(socket_) : 0;
}

void NetSocket::Adopt(int descriptor) {
  CloseDescriptor();
  socket_ = descriptor;
  open_ = descriptor >= 0;
}

void NetSocket::ClosePipeEnd(int end) {
  const int descriptor = pipefd_[end].exchange(-1);
  if (descriptor != -1) sockets::ClosePipeEnd(descriptor);
}

void NetSocket::ClearPipe() {
  ClosePipeEnd(0);
  ClosePipeEnd(1);
}

int NetSocket::InitPipe() {
  ClearPipe();
  int ends[2] = {-1, -1};
  const int result = sockets::MakePipe(ends);
  if (result < 0) {
    const int error = errno;
    LOG_TRACE_F("Returning %d. Errno: %d", result, error);
    errno = error;  // for the caller's message
    return result;
  }
  pipefd_[0] = ends[0];
  pipefd_[1] = ends[1];
  return 0;
}

int NetSocket::Blocking(bool blocking) { return sockets::SetBlocking(descriptor(), blocking); }

void NetSocket::SetTimeout(int timeout) { timeout_ = timeout; }

// --- Names.

int NetSocket::GetAddressInfo(char* address, const char* host) {
  uint32_t found = 0;
  switch (sockets::Resolve(host, &found)) {
    case sockets::Resolution::kFound:
      break;
    case sockets::Resolution::kFailed:
      LOG_ERROR("gethostbyname failed");
      return -1;
    case sockets::Resolution::kWrongType:
      LOG_ERROR("gethostbyname: invalid address type returned");
      return -1;
    case sockets::Resolution::kNoAddress:
      LOG_ERROR("gethostbyname: no address returned");
      return -1;
  }
  sockets::ToDotted(found, address);
  LOG_INFO_F("DNS translation: %s -> %s", host, address);
  return 0;
}

int NetSocket::GetHostAddress(const char* host, uint32_t* address) {
  char dotted[sockets::kDottedSize];
  if (GetAddressInfo(dotted, host) != 0) return -1;
  *address = sockets::FromDotted(dotted);
  return *address == UINT32_MAX ? -1 : 0;
}

int NetSocket::GetLocalHost(char*, size_t, uint16_t*) { return 0; }

int NetSocket::GetRemoteHost(char*, size_t, uint16_t*) { return -1; }

// --- Streams.

int NetSocket::Connect(char* host, int port, int timeout) {
  LOG_TRACE_F("Connecting to %s:%d", host != nullptr ? host : "", port);
  if (!ws_init) LOG_ERROR("WinSock not initialized!");
  socket_closed_by_peer_ = false;
  if (backup_socket_ != nullptr) return backup_socket_->Connect(host, port, timeout);

  Adopt(sockets::MakeStream());
  if (socket_ <= 0) {
    const int error = sockets::LastError();
    LOG_ERROR_F("Error creating socket errno: %d, socket: %d", error, socket_.load());
    CloseDescriptor();  // 0 is a descriptor, and none of ours
    return -1;
  }
  sockets::SetNoDelay(descriptor());
  if (InitPipe() != 0) {
    const int error = errno;
    LOG_ERROR_F("Error initpipe socket errno: %d, socket: %d", error, socket_.load());
    CloseDescriptor();
    return -1;
  }
  char dotted[sockets::kDottedSize];
  const int named = GetAddressInfo(dotted, host);
  if (named != 0) {
    CloseDescriptor();
    LOG_ERROR_F("Error translating host name: %d", named);
    return -1;
  }
  Blocking(false);
  const int result =
      sockets::Connect(descriptor(), sockets::FromDotted(dotted), static_cast<uint16_t>(port));
  if (result >= 0) return result;
  if (!sockets::InProgress(sockets::LastError())) {
    LOG_ERROR_F("Error connecting socket: %d", result);
    CloseDescriptor();
    return result;
  }

  LOG_TRACE_F("Socket select, timeout %d", timeout);
  const int connecting = descriptor();
  const sockets::Wait wait =
      sockets::AwaitReady(connecting, sockets::Direction::kWrite, pipefd_[0], timeout);
  int error = wait.count < 0 ? sockets::LastError() : 0;
  if (descriptor() < 0) return -1;  // by Close
  // Where select calls also a refused port writable, the socket knows.
  if (wait.ready) error = sockets::ConnectResult(connecting);
  if (!wait.ready || error != 0) {
    LOG_ERROR_F("Error socket select %d, errno: %d", wait.count, error);
    CloseDescriptor();
    return -1;
  }
  return 0;
}

int NetSocket::Send(unsigned char* data, int length) {
  if (backup_socket_ != nullptr) return backup_socket_->Send(data, length);
  if (descriptor() <= 0) {
    LOG_ERROR_F("Invalid socket_ = %d", socket_.load());
    return -1;
  }
  const sockets::Wait wait =
      sockets::AwaitReady(descriptor(), sockets::Direction::kWrite, pipefd_[0], timeout_);
  if (!wait.ready) {
    if (wait.woken) {
      ClosePipeEnd(0);
      return -1;
    }
    LOG_ERROR_F("Error socket send select: %d", wait.count);
    return -1;
  }
  int count = 0;
  while (count < length) {
    const int sent = sockets::Send(descriptor(), data + count, length - count);
    if (sent < 0) {
      const int error = sockets::LastError();
      if (sockets::WouldBlock(error)) {
        Thread::Sleep(kSendRetry);
        continue;
      }
      LOG_INFO_F("rc = -1, errno=%d", error);
      return -1;
    }
    if (sent == 0) {
      socket_closed_by_peer_ = true;
      LOG_INFO_F("error rc = 0 count %d", count);
      return count;
    }
    count += sent;
  }
  return count;
}

int NetSocket::WaitReadable() {
  if (descriptor() <= 0) {
    LOG_ERROR_F("Invalid socket_ = %d", socket_.load());
    return -1;
  }
  LOG_TRACE_F("WaitReadable for %d ms...", timeout_);
  const sockets::Wait wait =
      sockets::AwaitReady(descriptor(), sockets::Direction::kRead, pipefd_[0], timeout_);
  const int error = wait.count < 0 ? sockets::LastError() : 0;
  LOG_TRACE_F("select = %d", wait.count);
  if (wait.ready) return 1;
  if (wait.woken) {
    ClosePipeEnd(0);
    return -1;
  }
  LOG_TRACE_F("select = %d, %d", wait.count, error);
  return -1;
}

int NetSocket::SocketRecv(unsigned char* data, int length, int flags) {
  return sockets::Receive(descriptor(), data, length, flags);
}

int NetSocket::InternalRecv(unsigned char* data, int length, bool peek) {
  if (socket_closed_by_peer_) {
    LOG_ERROR("socket_closed_by_peer_");
    return 0;
  }
  const int readable = WaitReadable();
  if (readable < 0) {
    LOG_TRACE_F("WaitReadable = %d", readable);
    return -1;
  }
  if (readable == 0) {
    LOG_ERROR("WaitReadable = 0");
    return -1;
  }
  const int count = SocketRecv(data, length, peek ? sockets::kPeek : 0);
  if (count < 0) {
    const int error = sockets::LastError();
    if (sockets::WouldBlock(error)) {
      LOG_INFO_F("EAGAIN errno=%d, count %d", error, count);
      return 0;
    }
    LOG_INFO_F("rc = -1, errno=%d", error);
  } else if (count == 0) {
    socket_closed_by_peer_ = true;
    LOG_INFO("error rc = 0");
  }
  return count;
}

int NetSocket::Recv(unsigned char* data, int length) {
  if (backup_socket_ != nullptr) return backup_socket_->Recv(data, length);
  return InternalRecv(data, length, false);
}

int NetSocket::Peek(unsigned char* data, int length) { return InternalRecv(data, length, true); }

int NetSocket::RecvAllBlock(unsigned char* data, int length) {
  int count = 0;
  while (count < length) {
    const int received = Recv(data + count, length - count);
    if (received <= 0) break;
    count += received;
  }
  return count;
}

int NetSocket::Close() {
  if (backup_socket_ != nullptr) return backup_socket_->Close();
  int result = 0;
  if (socket_ > 0) {
    result = CloseDescriptor();
    socket_ = -1;
  }
  const int wake_end = pipefd_[1].exchange(-1);
  if (wake_end != -1) {
    sockets::WritePipe(wake_end, '\n');
    sockets::ClosePipeEnd(wake_end);
  }
  // The read end stays for the waiting thread to find.
  return result;
}

// --- Datagrams.

void NetSocket::NeedDatagramSocket() {
  if (descriptor() >= 0) return;
  ClearPipe();  // what is left of a closed stream would end the first wait
  Adopt(sockets::MakeDatagram());
}

int NetSocket::SendTo(const uint8_t* data, size_t length, uint32_t address, uint16_t port) {
  NeedDatagramSocket();
  if (descriptor() <= 0) return -1;
  return sockets::SendTo(descriptor(), data, length, address, port);
}

int NetSocket::RecvFrom(char* buffer, size_t length, uint32_t, uint16_t) {
  NeedDatagramSocket();
  if (descriptor() <= 0) return -1;
  Blocking(true);
  sockets::SetReceiveTimeout(descriptor(), kReceiveFromTimeout);
  return sockets::ReceiveFrom(descriptor(), buffer, length);
}

// --- Servers.

int NetSocket::Bind(uint32_t address, uint16_t port) {
  Adopt(sockets::MakeStream());
  if (descriptor() <= 0) return -1;
  sockets::SetReuseAddress(descriptor());
  return sockets::Bind(descriptor(), address, port);
}

int NetSocket::Listen(int backlog) {
  if (InitPipe() != 0) return -1;
  return sockets::Listen(descriptor(), backlog);
}

int NetSocket::Accept(NetSocket* client) {
  const int accepted = client != nullptr ? sockets::Accept(descriptor()) : -1;
  if (accepted < 0) return -1;
  if (client->InitPipe() != 0) {
    sockets::Close(accepted);
    return -1;
  }
  client->Adopt(accepted);
  client->socket_closed_by_peer_ = false;
  client->timeout_ = kDefaultTimeout;
  client->Blocking(false);
  // The listening socket's, by intent: on some systems its clients take the option over.
  sockets::SetNoDelay(descriptor());
  return accepted;
}
