// The socket calls of the operating system under one set of names. What differs between the
// platforms is in sockets_posix.cpp and sockets_windows.cpp, the rest in sockets.cpp.
//
// Results are those of the system: -1 for a failure, whose reason LastError() tells until
// the next call. Addresses are IPv4 addresses in network order, ports are in host order.
// Nothing here logs, allocates for a caller to free, or throws. Any thread may call.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sockets {

// Flag of receive: the data stay. MSG_PEEK has this value on both platforms.
constexpr int kPeek = 2;

// Makes the socket library ready, for the life of the process; false when it is missing or
// of an unfit version. Succeeds at once where there is nothing to start.
bool Start();

// The reason of the last failure, a number of the platform, and what it means.
int LastError();
bool WouldBlock(int error);  // nothing to be done just now
bool InProgress(int error);  // a connect that goes on

// --- Sockets.

int MakeStream();
int MakeDatagram();
int Close(int socket);  // also wakes a thread that waits in accept
int SetBlocking(int socket, bool blocking);
int SetNoDelay(int socket);
int SetReuseAddress(int socket);
int SetReceiveTimeout(int socket, int milliseconds);

int Connect(int socket, uint32_t address, uint16_t port);
// How a connect ended whose socket has become writable: 0 or the error. Where a failed one
// never gets writable this is always 0.
int ConnectResult(int socket);
int Bind(int socket, uint32_t address, uint16_t port);
int Listen(int socket, int backlog);
int Accept(int socket);

// A peer that is gone gives -1 and no signal. A negative length gives -1.
int Send(int socket, const void* data, int length);
int Receive(int socket, void* data, int length, int flags);
int SendTo(int socket, const void* data, size_t length, uint32_t address, uint16_t port);
int ReceiveFrom(int socket, void* data, size_t length);

// --- Waiting.

enum class Direction { kRead, kWrite };

struct Wait {
  int count;   // of descriptors that are ready, 0 when the time was up, -1 on failure
  bool ready;  // the socket
  bool woken;  // the wake end; never on Windows, where only sockets can be waited for
};

// Waits until the socket can be used in that direction, or, where the platform can wait for a
// pipe, the wake end can be read (-1 for none). A negative time is an error.
Wait AwaitReady(int socket, Direction direction, int wake_end, int milliseconds);

// --- Pipes. The error of a failure is errno's on both platforms.

// ends[0] is read, ends[1] written; a failure leaves both alone.
int MakePipe(int ends[2]);
int WritePipe(int end, char byte);  // never blocks; no signal where nobody reads
int ClosePipeEnd(int end);

// --- Names.

enum class Resolution {
  kFound,
  kFailed,
  kWrongType,  // no IPv4 address
  kNoAddress
};

// Finds the first IPv4 address of a host. May take as long as the system's resolver likes.
Resolution Resolve(const char* host, uint32_t* address);

using ResolveFunction = Resolution (*)(const char* host, uint32_t* address);
// Replaces what resolve asks, for all threads; null gives back the system's own. The result
// is the function replaced. Tests put names of their own here.
ResolveFunction SetResolveFunction(ResolveFunction function);

// "127.0.0.1" and its address; the text has room for kDottedSize characters. A text that is
// no address gives all ones, which is also the address "255.255.255.255".
constexpr size_t kDottedSize = 16;
void ToDotted(uint32_t address, char* text);
uint32_t FromDotted(const char* text);

}  // namespace sockets
