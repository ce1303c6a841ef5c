// The socket calls of the operating system under one set of names. What differs between the
// platforms is in sockets_posix.cpp and sockets_windows.cpp, the rest in sockets.cpp.
//
// Results are those of the system: -1 for a failure, whose reason last_error() tells until
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
bool start();

// The reason of the last failure, a number of the platform, and what it means.
int last_error();
bool would_block(int error);  // nothing to be done just now
bool in_progress(int error);  // a connect that goes on

// --- Sockets.

int make_stream();
int make_datagram();
int close(int socket);  // also wakes a thread that waits in accept
int set_blocking(int socket, bool blocking);
int set_no_delay(int socket);
int set_reuse_address(int socket);
int set_receive_timeout(int socket, int milliseconds);

int connect(int socket, uint32_t address, uint16_t port);
// How a connect ended whose socket has become writable: 0 or the error. Where a failed one
// never gets writable this is always 0.
int connect_result(int socket);
int bind(int socket, uint32_t address, uint16_t port);
int listen(int socket, int backlog);
int accept(int socket);

// A peer that is gone gives -1 and no signal. A negative length gives -1.
int send(int socket, const void* data, int length);
int receive(int socket, void* data, int length, int flags);
int send_to(int socket, const void* data, size_t length, uint32_t address, uint16_t port);
int receive_from(int socket, void* data, size_t length);

// --- Waiting.

enum class Direction { kRead, kWrite };

struct Wait {
  int count;   // of descriptors that are ready, 0 when the time was up, -1 on failure
  bool ready;  // the socket
  bool woken;  // the wake end; never on Windows, where only sockets can be waited for
};

// Waits until the socket can be used in that direction, or, where the platform can wait for a
// pipe, the wake end can be read (-1 for none). A negative time is an error.
Wait wait(int socket, Direction direction, int wake_end, int milliseconds);

// --- Pipes. The error of a failure is errno's on both platforms.

// ends[0] is read, ends[1] written; a failure leaves both alone.
int make_pipe(int ends[2]);
int write_pipe(int end, char byte);  // never blocks; no signal where nobody reads
int close_pipe_end(int end);

// --- Names.

enum class Resolution {
  kFound,
  kFailed,
  kWrongType,  // no IPv4 address
  kNoAddress
};

// Finds the first IPv4 address of a host. May take as long as the system's resolver likes.
Resolution resolve(const char* host, uint32_t* address);

using ResolveFunction = Resolution (*)(const char* host, uint32_t* address);
// Replaces what resolve asks, for all threads; null gives back the system's own. The result
// is the function replaced. Tests put names of their own here.
ResolveFunction set_resolve_function(ResolveFunction function);

// "127.0.0.1" and its address; the text has room for kDottedSize characters. A text that is
// no address gives all ones, which is also the address "255.255.255.255".
constexpr size_t kDottedSize = 16;
void to_dotted(uint32_t address, char* text);
uint32_t from_dotted(const char* text);

}  // namespace sockets
