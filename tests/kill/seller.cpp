// A host that sells until it is killed: receipts, invoices, credit notes, receipts given up and
// day closings, through the library, on a register that is kept in a file.
//
//   kill_seller REGISTER DEFINITION_FILE SEED <answers on descriptor 3>
//
// After each line that stands for a fiscal fact and was answered with 0, a record goes to
// descriptor 3. It ends with 1 when a line is refused, and with 2 when it cannot start.
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <random>
#include <string>

#include "answer.h"
#include "lorimatrt/lorimatrt.h"
#include "register/client/virtual_register.h"

namespace {

constexpr int kAnswers = 3;

RtfClientInterface* client = nullptr;

long ecr_io(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = client;
  return 0;
}

class Refused : public std::exception {};

void run(std::string line) {
  char result[512];
  const long code = EcrCmd(line.data(), result);
  if (code == 0) return;
  std::fprintf(stderr, "kill_seller: %s: code %ld: %s\n", line.c_str(), code, result);
  throw Refused();
}

void tell(Answer::Kind kind, int closure, int number, int64_t total) {
  Answer answer;
  answer.kind = kind;
  answer.closure = closure;
  answer.number = number;
  answer.total = total;
  // Nobody reads any more: the test has ended without killing.
  if (write(kAnswers, &answer, sizeof answer) != static_cast<ssize_t>(sizeof answer)) _exit(3);
}

class Seller {
 public:
  Seller(lorimat::VirtualRegister& device, unsigned seed) : device_(device), random_(seed) {}

  void sell_for_ever() {
    for (;;) {
      switch (pick(12)) {
        case 0:
          invoice();
          break;
        case 1:
          credit_note();
          break;
        case 2:
          give_up();
          break;
        case 3:
          close_day();
          break;
        default:
          receipt();
          break;
      }
    }
  }

 private:
  int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

  // Some lines; their sum in ten-thousandths.
  int64_t lines() {
    int64_t total = 0;
    for (int line = pick(4); line >= 0; --line) {
      const int cents = 1 + pick(9999);
      run("VEND REP=" + std::to_string(1 + pick(5)) + ", PRE=" + std::to_string(cents / 100) + "." +
          std::to_string(cents / 10 % 10) + std::to_string(cents % 10));
      total += int64_t{100} * cents;
    }
    return total;
  }

  void tell_document(Answer::Kind kind, int64_t total) {
    tell(kind, device_.store().last_closure() + 1, device_.store().counters().documents, total);
  }

  void receipt() {
    const int64_t total = lines();
    // One cent by card first: a part, or all of the cheapest receipt.
    if (pick(3) == 0) run("CHIU TEND=CARTA, IMP=0.01");
    if (device_.printer_state() != RTF_FPTR_PS_MONITOR) run("CHIU");
    tell_document(Answer::kSale, total);
  }

  void invoice() {
    run("FATTURA TIPO=2, RIGA1='ROSSI MARIO SRL', RIGA2='P.IVA 12345678903'");
    const int64_t total = lines();
    run("CHIU");
    tell(Answer::kInvoice, device_.store().last_closure() + 1, device_.store().next_invoice() - 1,
         total);
  }

  void credit_note() {
    run("NOTACRED DOC='01230045', DATA='150124', MATR='99LRM0000002'");
    const int64_t total = lines();
    run("CHIU");
    tell_document(Answer::kRefund, total);
  }

  void give_up() {
    lines();
    run("RESPRN");
  }

  void close_day() {
    run("AZZGIO TIPO=1");
    tell(Answer::kClosed, device_.store().last_closure(), 0, 0);
  }

  lorimat::VirtualRegister& device_;
  std::mt19937 random_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: kill_seller REGISTER DEFINITION_FILE SEED\n", stderr);
    return 2;
  }
  try {
    lorimat::RegisterSettings settings;
    settings.file = argv[1];
    lorimat::VirtualRegister device(settings);
    client = &device;
    if (TradInit(argv[2], 0, nullptr, &ecr_io) != 0) {
      std::fprintf(stderr, "%s: the library cannot read this definition file\n", argv[2]);
      return 2;
    }
    tell(Answer::kReady, 0, 0, 0);
    Seller(device, static_cast<unsigned>(std::stoul(argv[3]))).sell_for_ever();
  } catch (const Refused&) {
    return 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kill_seller: %s\n", error.what());
    return 2;
  }
}
