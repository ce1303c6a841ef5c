// A process beside others at a register.
//
//   side_by_side_part sell REGISTER   sells a receipt of 1,00 for each byte that comes on standard
//                                     input, or prints more lines than the roll keeps for a 'p',
//                                     and answers each with a byte; its end closes it
//   side_by_side_part look REGISTER   looks at it again and again, and answers each look with a
//                                     byte; ends with 1 when what it sees does not fit together
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

constexpr int64_t kPrice = 10000;

void Tell() {
  if (write(STDOUT_FILENO, ".", 1) != 1) _exit(3);
}

bool SellOne(VirtualRegister& device) {
  return device.BeginFiscalReceipt(true) == RTF_SUCCESS &&
         device.PrintRecItemEx(0, "", kPrice, 0, -1, 0, "", 1, true, "") == RTF_SUCCESS &&
         device.PrintRecTotalEx(0, "0", true) == RTF_SUCCESS;
}

bool PrintRoll(VirtualRegister& device) {
  constexpr size_t kLines = 25000;
  constexpr size_t kAtOnce = 250;
  const std::string text(kAtOnce * Paper::kColumns, 'x');
  bool done = device.BeginNonFiscal() == RTF_SUCCESS;
  for (size_t lines = 0; done && lines < kLines; lines += kAtOnce) {
    done = device.PrintNormal(RTF_FPTR_S_RECEIPT, text.c_str()) == RTF_SUCCESS;
  }
  return done && device.EndNonFiscal() == RTF_SUCCESS;
}

int Sell(const char* file) {
  RegisterSettings settings;
  settings.file = file;
  VirtualRegister device(settings);
  // What this process opens and closes beside it does not loosen its hold.
  try {
    const VirtualRegister second(settings);
    std::fprintf(stderr, "a second writer in one process\n");
    return 1;
  } catch (const RegisterError&) {
    if (RegisterFile(file).Status().schema_version == 0) return 1;
  }
  Tell();
  for (char byte = 0; read(STDIN_FILENO, &byte, 1) == 1;) {
    if (!(byte == 'p' ? PrintRoll(device) : SellOne(device))) {
      std::fprintf(stderr, "refused: %s\n", device.last_failure().c_str());
      return 1;
    }
    Tell();
  }
  return 0;
}

// Each receipt is registered, in the totals and in the journal at once.
bool FitsTogether(const RegisterStatus& status) {
  const auto documents = static_cast<int64_t>(status.documents);
  return status.counters.sales == documents && status.counters.documents == documents &&
         status.day_total == documents * kPrice && status.grand_total == documents * kPrice &&
         status.journal_entries == status.documents;
}

int Look(const char* file) {
  for (int looks = 1;; ++looks) {
    const RegisterFile look(file);
    if (!FitsTogether(look.Status())) {
      std::fprintf(stderr, "%llu documents, grand total %lld\n",
                   static_cast<unsigned long long>(look.Status().documents),
                   static_cast<long long>(look.Status().grand_total));
      return 1;
    }
    if (looks % 4 == 0) {
      const JournalCheck check = look.VerifyJournal(nullptr);
      if (!check.good()) {
        std::fprintf(stderr, "finding of kind %d\n", static_cast<int>(check.findings.front().kind));
        return 1;
      }
    }
    Tell();
  }
}

}  // namespace
}  // namespace lorimat

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    if (std::strcmp(argv[1], "sell") == 0) return lorimat::Sell(argv[2]);
    if (std::strcmp(argv[1], "look") == 0) return lorimat::Look(argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 2;
}
