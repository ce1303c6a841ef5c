// The socket class: IPv4 streams over TCP and datagrams over UDP. Every wait for data or for
// room has a time-out, and another thread ends it at once by Close: on POSIX a pipe wakes the
// waiting thread, on Windows the closing of the socket does.
//
// Results are integers: below 0 for a failure, 0 or a count else. What went wrong is in the
// log. Addresses are in network order, ports in host order. Nothing is thrown.
//
// An object has no lock. One thread uses it; one other may call Close meanwhile.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "pal/peripherals/network/abstractsocket.h"

class NetSocket {
 public:
  enum Types { NST_STREAM_TCP = 0, NST_DGRAM_UDP = 1 };

  // Makes no socket yet. Starts the system's socket library where that is due; a failure
  // shows at Connect.
  explicit NetSocket(Types type);
  // A copy shares the socket and the pipe and owns them as the first does: whoever is closed
  // or destroyed first closes them for both, and the other then holds the numbers of
  // descriptors that are gone, or another's by now. Of all objects that share descriptors
  // only one may be closed, destroyed or connected again. An assignment does not close what
  // the object had before.
  NetSocket(const NetSocket& other);
  NetSocket& operator=(const NetSocket& other);
  virtual ~NetSocket();

  // Connects to a host, by name or as "127.0.0.1", within timeout milliseconds; finding the
  // name's address may take longer. The socket does not block from then on. The pipe is made
  // anew. An open socket of this object is closed first. 0, or below 0 on failure; the socket
  // is closed then, though handle() keeps its number.
  virtual int Connect(char* host, int port, int timeout);
  // Sends all of length bytes: length, or -1 when there is no socket, when there is no room
  // within the time-out, when Close comes or the connection is lost. If the peer takes
  // nothing more it gives the count sent so far. Once there was room it tries again as long
  // as it takes, every 200 milliseconds.
  virtual int Send(unsigned char* data, int length);
  // Sends a datagram: its length, or -1. Makes a UDP socket if there is none. Logs nothing.
  virtual int SendTo(const uint8_t* data, size_t length, uint32_t address, uint16_t port);
  // Waits 5 milliseconds for a datagram and gives its length, or -1. What does not fit is
  // lost. The sender may be anyone: address and port are not looked at. Makes a UDP socket if
  // there is none, and makes the socket blocking.
  virtual int RecvFrom(char* buffer, size_t length, uint32_t address, uint16_t port);
  // Receives until length bytes are there or Recv gives 0 or less. The count received.
  virtual int RecvAllBlock(unsigned char* data, int length);
  // Receives at most length bytes, length being 1 at least: the count, 0 when the peer closed
  // or when there was nothing after all, -1 when there is no socket, nothing within the
  // time-out, when Close comes or the connection is lost. Once the peer closed, every later
  // call gives 0 at once, until Connect.
  virtual int Recv(unsigned char* data, int length);
  // The same, and the data stay for the next Recv. Never asks the backup socket.
  virtual int Peek(unsigned char* data, int length);
  // Closes the socket, and wakes who waits in it. 0, or below 0 when the system reports a
  // failure.
  virtual int Close();
  // The time-out of Send, Recv and Peek in milliseconds, 45000 at first. A negative one makes
  // each wait fail.
  virtual void SetTimeout(int timeout);
  // Makes a TCP socket and gives it an own address. An open socket of this object is closed
  // first. 0 or -1.
  virtual int Bind(uint32_t address, uint16_t port);
  // Lets clients queue up for Accept. 0 or -1.
  virtual int Listen(int backlog);
  // Waits for a client, as long as it takes, and hands its socket to client, which then is as
  // after Connect; an open socket of client is closed first. The new handle or -1.
  virtual int Accept(NetSocket* client);

  // The descriptor, -1 when there was none or Close was called. After a failed Connect it is
  // the number that the socket had.
  int handle() const { return socket_; }
  // The address of a host: 0, or -1 when it is unknown or all ones.
  static int GetHostAddress(const char* host, uint32_t* address);
  // These two tell nothing: they give 0 and -1 and touch no argument.
  int GetLocalHost(char* host, size_t size, uint16_t* port);
  int GetRemoteHost(char* host, size_t size, uint16_t* port);

  // A transport that Connect, Send, Recv and Close hand their calls to while it is set, and
  // the destructor its Close: an own socket is then the transport's to close. It is not
  // owned. Null for none.
  AbstractSocket* backup_socket() const { return backup_socket_; }
  void set_backup_socket(AbstractSocket* socket) { backup_socket_ = socket; }

  // Whether calls on the socket itself block. 0 or -1.
  int Blocking(bool blocking);

 protected:
  // Makes the pipe anew. 0, or the system's negative result, with its reason in errno.
  int InitPipe();
  void ClearPipe();
  // Waits for data up to the time-out: 1 when there are some, else -1.
  int WaitReadable();
  int InternalRecv(unsigned char* data, int length, bool peek);
  int SocketRecv(unsigned char* data, int length, int flags);
  // Writes the first address of a host as dotted text, of 16 bytes at most with the NUL, into
  // address. 0 or -1.
  static int GetAddressInfo(char* address, const char* host);

  // One thread may close while another waits, so these are atomic.
  std::atomic<int> socket_;  // -1 when there is none
  std::atomic<bool> socket_closed_by_peer_;
  int timeout_;                 // milliseconds
  std::atomic<int> pipefd_[2];  // read end, write end; -1 when absent
  Types type_;
  AbstractSocket* backup_socket_;  // not owned

 private:
  // The socket's descriptor while it is open, else -1.
  int descriptor() const { return open_ ? socket_.load() : -1; }
  // Takes a new descriptor, in place of what the object had.
  void Adopt(int descriptor);
  // Closes the socket and leaves its number.
  int CloseDescriptor();
  // Makes a UDP socket if there is none.
  void NeedDatagramSocket();
  void ClosePipeEnd(int end);

  // Whether socket_ is this object's to close: a number that stays behind may be another's.
  std::atomic<bool> open_;
};
