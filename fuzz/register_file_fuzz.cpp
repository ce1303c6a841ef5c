// Changed bytes in a register's file, and a file that is cut off: it is opened, sold on, verified
// and read. A check that finds nothing leaves the documents as they were. The input: changes of
// four bytes, a place (three bytes) and what is there then; a place of ones cuts the file off.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "day/day_register.h"
#include "day/operations.h"
#include "fuzz/scratch.h"
#include "managermachine/pflitemtype.h"
#include "register/inspect/register_file.h"
#include "register/inspect/register_profile.h"
#include "register/value/register_error.h"
#include "rpccommon/services/rtfconst.h"

namespace {

using lorimat::DaySettings;
using lorimat::VirtualRegister;

constexpr const char* kFile = "register";

int Sell(VirtualRegister& device, int department, int64_t price) {
  return device.PrintRecItemEx(PflItemType::kPrintRecItem, "CAFFE", price, 0, -1, 0, "", department,
                               true, "");
}

// Two days, with everything that a shop does.
std::string MakeFile() {
  lorimat::day_minutes = 600;
  {
    VirtualRegister device(DaySettings(kFile));
    for (int day = 0; day < 2; ++day) {
      for (int sale = 1; sale < 4; ++sale) {
        device.BeginFiscalReceipt(true);
        Sell(device, sale, 12000 * sale);
        Sell(device, 1, 100);
        device.PrintRecTotalEx(0, sale == 2 ? "2" : "0", true);
        ++lorimat::day_minutes;
      }
      device.BeginDocTelematicRefund(1, day + 1, "", "");
      Sell(device, 1, 5000);
      device.PrintRecTotalEx(0, "0", true);
      device.BeginDocTelematicCancel(2, day + 1, "", true, "");
      device.BeginDocInvoice("ROSSI", "", "", "", "");
      Sell(device, 3, 70000);
      device.PrintRecTotalEx(0, "0", true);
      if (day == 0) device.PrintZReportEx(false);
      lorimat::day_minutes += 1000;
    }
    device.BeginFiscalReceipt(true);
    Sell(device, 1, 3000);
  }
  std::ifstream file(kFile, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string Documents(const lorimat::RegisterStore& store) {
  std::string all;
  for (const lorimat::StoredDocument& document : store.documents()) {
    all += std::to_string(document.id) + " " + std::to_string(document.closure) + " " +
           std::to_string(document.number) + " " + std::to_string(document.total) + " " +
           lorimat::SumsRecord(document) + "\n";
  }
  return all;
}

// Whether the check found nothing; false for a file that cannot be read either.
bool ReadAll() {
  try {
    const lorimat::RegisterFile file(kFile);
    const bool good = file.VerifyJournal(nullptr).good();
    file.Status();
    file.Profile();
    file.Roll(2);
    file.Faults();
    file.ReadJournal({}, [](uint64_t, const lorimat::JournalEntry&) { return true; });
    return good;
  } catch (const lorimat::RegisterError&) {
    return false;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FreshFolder();
  static const std::string whole = MakeFile();
  static const std::string documents = [] {
    VirtualRegister device(DaySettings(kFile));
    return Documents(device.store());
  }();
  FreshFolder();
  lorimat::day_minutes = 9000;

  std::string bytes = whole;
  for (size_t i = 0; i + 4 <= size; i += 4) {
    const size_t place = data[i] * size_t{65536} + data[i + 1] * size_t{256} + data[i + 2];
    if (place == 0xFFFFFF) {
      bytes.resize(bytes.size() * data[i + 3] / 256);
    } else if (!bytes.empty()) {
      bytes[place % bytes.size()] = static_cast<char>(data[i + 3]);
    }
  }
  WriteInput(kFile, bytes);
  const bool good = ReadAll();
  try {
    VirtualRegister device(DaySettings(kFile));
    if (good) {
      Require(Documents(device.store()) == documents,
              "a check that finds nothing has the documents as they were");
    }
    const int64_t count = device.store().document_count();
    if (device.BeginFiscalReceipt(true) == RTF_SUCCESS && Sell(device, 1, 10000) == RTF_SUCCESS &&
        device.PrintRecTotalEx(0, "0", true) == RTF_SUCCESS) {
      Require(device.store().document_count() == count + 1, "an answer of 0 is a document");
    }
    device.ResetPrn();
    device.PrintXReport();
    device.PrintZReportEx(false);
  } catch (const lorimat::RegisterError&) {
    // Refused, and the file with it.
  }
  ReadAll();
  return 0;
}
