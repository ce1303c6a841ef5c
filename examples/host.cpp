// A host in its smallest form: it links the library, hands it a device client and runs lines.
//
//   example_host merkelin.ini
//
// A host of its own stands in for the virtual register with a client for its device: a class
// that implements RtfClientInterface.
#include <lorimatrt/client.h>
#include <lorimatrt/lorimatrt.h>
#include <lorimatrt/register.h>

#include <cstdio>
#include <string>

namespace {

RtfClientInterface* client = nullptr;

// The library asks for the client once, from TradInit; the last argument is the address of the
// pointer to fill.
long EcrIo(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = client;
  return 0;
}

// Runs one line; false, with the answer shown, when it fails.
bool Run(std::string line) {
  char result[512];  // the least that EcrCmd asks for
  const long code = EcrCmd(line.data(), result);
  if (code != 0) std::fprintf(stderr, "%s: code %ld: %s\n", line.c_str(), code, result);
  return code == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: example_host DEFINITION_FILE\n");
    return 2;
  }
  lorimatrt::VirtualRegister device;
  client = device.client();
  if (TradInit(argv[1], 0, nullptr, &EcrIo) != 0) {
    std::fprintf(stderr, "%s: the library cannot read this definition file\n", argv[1]);
    return 2;
  }
  bool good = Run("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'");
  good = Run("VEND REP=2, PRE=1.50, DES='CORNETTO'") && good;
  good = Run("CHIU TEND=CONTANTI, IMP=5.00") && good;
  TradClose();
  std::fputs(device.paper_text().c_str(), stdout);
  return good ? 0 : 1;
}
