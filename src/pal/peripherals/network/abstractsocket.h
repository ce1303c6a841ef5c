// The interface of a transport that takes the place of a plain socket, such as a secured
// stream. NetSocket hands its traffic to one (NetSocket::set_backup_socket).
#pragma once

class AbstractSocket {
 public:
  virtual ~AbstractSocket() = default;

  // Connects to a host by name within timeout milliseconds: 0, or below 0 on failure.
  virtual int Connect(char* host, int port, int timeout) = 0;
  // Sends length bytes: the count sent, or -1.
  virtual int Send(unsigned char* data, int length) = 0;
  // Receives at most length bytes: the count, 0 when the peer closed, or -1.
  virtual int Recv(unsigned char* data, int length) = 0;
  // 0, or below 0 on failure.
  virtual int Close() = 0;
  // Milliseconds, for each wait.
  virtual void SetTimeout(int timeout) = 0;
  // Whether a peer must prove who it is, and a file of those who vouch for peers. What they
  // ask for and report, the transport settles.
  virtual void SetServerCertVerification(bool verify) = 0;
  virtual int AddCertDb(char* name) = 0;
};
