// A host with a device of its own, compiled from what is installed and nothing else: the client
// prints what it is told to do, a line for each operation.
#include <lorimatrt/client.h>
#include <lorimatrt/lorimatrt.h>

#include <cstdio>
#include <string>

namespace {

class Printer : public RtfClientBase {
 public:
  int GetState() override { return RTF_S_IDLE; }
  bool GetDeviceEnabled() override { return true; }
  int GetIntProperty(int property, int* value) override {
    if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
    *value = open_ ? RTF_FPTR_PS_FISCAL_RECEIPT : RTF_FPTR_PS_MONITOR;
    return RTF_SUCCESS;
  }
  int BeginFiscalReceipt(bool) override {
    open_ = true;
    std::puts("receipt");
    return RTF_SUCCESS;
  }
  int PrintRecItemEx(int, const char* description, int64_t, int quantity, int, int64_t unit_price,
                     const char*, int department, bool, const char*) override {
    std::printf("%d.%03d x %lld %s, department %d\n", quantity / 1000, quantity % 1000,
                static_cast<long long>(unit_price), description, department);
    return RTF_SUCCESS;
  }
  int PrintRecTotalEx(int64_t payment, const char* tender, bool) override {
    std::printf("paid %lld by %s\n", static_cast<long long>(payment), tender);
    open_ = false;
    return RTF_SUCCESS;
  }

 private:
  bool open_ = false;
};

RtfClientInterface* client = nullptr;

long EcrIo(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = client;
  return 0;
}

int Run(std::string line) {
  char result[512];
  const long code = EcrCmd(&line[0], result);
  std::printf("%ld %s\n", code, result);
  return code == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  static Printer printer;
  client = &printer;
  if (argc != 2 || TradInit(argv[1], 0, nullptr, &EcrIo) != 0) return 2;
  int failed = Run("VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'");
  failed += Run("CHIU TEND=CONTANTI, IMP=5.00");
  // A device that lacks an operation says so, and the library tells the host.
  failed += Run("RESPRN");
  TradClose();
  return failed == 1 ? 0 : 1;
}
