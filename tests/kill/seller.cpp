// A host that sells until it is killed: receipts, invoices, credit notes, receipts given up, day
// closings and transfers of articles, through the library, on a register that is kept in a file.
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

long EcrIo(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = client;
  return 0;
}

class Refused : public std::exception {};

void Run(std::string line) {
  char result[512];
  const long code = EcrCmd(line.data(), result);
  if (code == 0) return;
  std::fprintf(stderr, "kill_seller: %s: code %ld: %s\n", line.c_str(), code, result);
  throw Refused();
}

void Tell(Answer::Kind kind, int closure, int number, int64_t total) {
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

  void SellForEver() {
    for (;;) {
      switch (Pick(14)) {
        case 0:
          Invoice();
          break;
        case 1:
          CreditNote();
          break;
        case 2:
          GiveUp();
          break;
        case 3:
          CloseDay();
          break;
        case 4:
          Articles();
          break;
        default:
          Receipt();
          break;
      }
    }
  }

 private:
  int Pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

  // Some lines; their sum in ten-thousandths.
  int64_t lines() {
    int64_t total = 0;
    for (int line = Pick(4); line >= 0; --line) {
      const int cents = 1 + Pick(9999);
      Run("VEND REP=" + std::to_string(1 + Pick(5)) + ", PRE=" + std::to_string(cents / 100) + "." +
          std::to_string(cents / 10 % 10) + std::to_string(cents % 10));
      total += int64_t{100} * cents;
    }
    return total;
  }

  void TellDocument(Answer::Kind kind, int64_t total) {
    Tell(kind, device_.store().last_closure() + 1, device_.store().counters().documents, total);
  }

  void Receipt() {
    const int64_t total = lines();
    // One cent by card first: a part, or all of the cheapest receipt.
    if (Pick(3) == 0) Run("CHIU TEND=CARTA, IMP=0.01");
    if (device_.printer_state() != RTF_FPTR_PS_MONITOR) Run("CHIU");
    TellDocument(Answer::kSale, total);
  }

  void Invoice() {
    Run("FATTURA TIPO=2, RIGA1='ROSSI MARIO SRL', RIGA2='P.IVA 12345678903'");
    const int64_t total = lines();
    Run("CHIU");
    Tell(Answer::kInvoice, device_.store().last_closure() + 1, device_.store().next_invoice() - 1,
         total);
  }

  void CreditNote() {
    Run("NOTACRED DOC='01230045', DATA='150124', MATR='99LRM0000002'");
    const int64_t total = lines();
    Run("CHIU");
    TellDocument(Answer::kRefund, total);
  }

  void GiveUp() {
    lines();
    Run("RESPRN");
  }

  // By the client, for the library tells of a transfer when it is over. The codes are numbered from
  // one start to the next, and some transfers are never closed.
  void Articles() {
    enum Step { kOpen, kRow, kClose };
    constexpr int kTable = 1;
    const auto upload = [this](Step step, const std::string& row) {
      if (device_.UploadTable(kTable, step, row.c_str()) != RTF_SUCCESS) throw Refused();
    };
    upload(kOpen, "");
    for (int rows = 1 + Pick(8); rows > 0; --rows) {
      const auto number = static_cast<int>(device_.tables().settings().articles.size()) + 1;
      std::string row = "A";
      row.append(std::to_string(number)).append(",RIGA,1,1.00");
      upload(kRow, row);
      Tell(Answer::kArticle, 0, number, 0);
    }
    if (Pick(3) != 0) upload(kClose, "");
  }

  void CloseDay() {
    Run("AZZGIO TIPO=1");
    Tell(Answer::kClosed, device_.store().last_closure(), 0, 0);
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
    if (TradInit(argv[2], 0, nullptr, &EcrIo) != 0) {
      std::fprintf(stderr, "%s: the library cannot read this definition file\n", argv[2]);
      return 2;
    }
    Tell(Answer::kReady, 0, 0, 0);
    Seller(device, static_cast<unsigned>(std::stoul(argv[3]))).SellForEver();
  } catch (const Refused&) {
    return 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "kill_seller: %s\n", error.what());
    return 2;
  }
}
