// Reading changes nothing, on days by chance with troubles and in whatever state they leave the
// register: the operations that ask the device, its properties and data items, and a reader of its
// file while it is at work. State, paper and facts are as they were, and so is every row of the
// file.
#include <filesystem>
#include <iterator>

#include "properties/day_generators.h"
#include "register/inspect/register_file.h"
#include "register/inspect/register_profile.h"
#include "rpccommon/services/rtfconst.h"
#include "support/temporary_folder.h"
#include "unit/register/database_dump.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;
namespace gen = rc::gen;

// Room for every text that an operation gives.
constexpr size_t kRoom = 4096;

struct Reading {
  const char* name;
  void (*read)(VirtualRegister& device, const std::string& file, int number, int other);
};

void ReadTables(VirtualRegister& device, const std::string&, int number, int other) {
  char text[kRoom] = "", word[kRoom] = "";
  int64_t price = 0, most = 0;
  int32_t quantity = 0, vat = 0;
  uint8_t small = 0, flags = 0, digits = 0;
  bool yes = false, no = false, maybe = false, service = false;
  int one = 0, two = 0;
  uint32_t preset = 0;
  device.ConfigDepartmentEx(false, number, text, &price, &most, &quantity, &vat, &small, &yes, &no,
                            &maybe, &service);
  device.ConfigDepartment(false, other, text, &price, &most, &quantity, &vat, &small, &yes, &no,
                          &maybe);
  device.ConfigGroup(false, number, text, word, &one, &two);
  device.ConfigSubtender(false, number, &small, text, &flags, &preset, &digits);
  int8_t keyboard = static_cast<int8_t>(other % 4);
  uint16_t size = 0;
  device.ConfigKeyboard(false, static_cast<uint8_t>(number), &small, &keyboard, text, &size);
  device.DownloadTable(other % 30, number, text);
  device.GetHeaderLine(number, text);
}

// In their order, so that what is generated stays what it was.
constexpr Reading kReadings[] = {
    {"data items",
     [](VirtualRegister& device, const std::string&, int number, int other) {
       char text[kRoom] = "";
       device.GetDataInternal(number * 5 + other % 5, text);
     }},
    {"data",
     [](VirtualRegister& device, const std::string&, int number, int other) {
       char text[kRoom] = "";
       int value = other;
       device.GetData(number, &value, text);
     }},
    {"properties",
     [](VirtualRegister& device, const std::string&, int number, int other) {
       int value = 0;
       char text[kRoom] = "";
       device.GetIntProperty(number * 100 + other, &value);
       device.GetStringProperty(number * 100 + other, text);
       for (const int property : {RTF_PIDX_State, RTF_PIDXFptr_DayOpened, RTF_PIDX_PowerState,
                                  RTF_PIDXFptr_InvoiceNumber, RTF_PIDXFptr_TrainingModeActive}) {
         device.GetIntProperty(property, &value);
       }
     }},
    {"totalizers",
     [](VirtualRegister& device, const std::string&, int number, int other) {
       char text[kRoom] = "";
       device.GetTotalizer(other % 8, number, text);
       device.GetTotalizerExtend(other % 8, number % 4, number, text);
     }},
    {"clock, rates and state",
     [](VirtualRegister& device, const std::string&, int number, int other) {
       char text[kRoom] = "";
       int rate = 0;
       device.GetDate(text);
       device.GetVatEntry(number % 10, other % 3, &rate);
       device.GetState();
       device.RetrieveStatistics("");
     }},
    {"tables", &ReadTables},
    {"reports into files",
     [](VirtualRegister& device, const std::string& file, int number, int other) {
       const std::string report = file + ".report";
       device.PeriodicReportMessageEx(number % 7, 0, "txt", report.c_str(), 2, false);
       device.FiscalReportMessageEx(other % 5, -1, 2 + number % 3, 0, 0, 1, 9999, "010120240000",
                                    "311220992359", "txt", report.c_str(), 2);
       device.SaveTelematicSummaryEx(1, 9999, report.c_str(), number % 4);
       device.ExportTelematicSummary(report.c_str());
       device.TelematicDocument(0, static_cast<uint8_t>(2 + other % 2), 1, 1, 1, 9999, 9999,
                                report.c_str());
       device.PrintXReportEx(other % 4, false, "txt", report.c_str(), 2);
     }},
    {"the file: status and roll",
     [](VirtualRegister&, const std::string& file, int number, int) {
       const RegisterFile read(file);
       read.Status();
       read.Profile();
       read.Roll(static_cast<size_t>(number % 5));
       read.Faults();
     }},
    {"the file: journal",
     [](VirtualRegister&, const std::string& file, int number, int) {
       const RegisterFile read(file);
       read.ReadJournal({}, [](uint64_t, const JournalEntry&) { return true; });
       read.Entry(static_cast<uint64_t>(number));
       read.VerifyJournal({});
     }},
};

// All that a register is: what it shows, and every row of its file with its log.
std::string Whole(const VirtualRegister& device, const std::string& file, const fs::path& copy) {
  for (const char* end : {"", "-wal"}) {
    fs::remove(copy.string() + end);
    if (fs::exists(file + end)) fs::copy_file(file + end, copy.string() + end);
  }
  fs::remove(copy.string() + "-shm");
  return RegisterFacts(device) + " " + std::to_string(device.receipt().total()) + " " +
         std::to_string(device.receipt().paid()) + " " +
         std::to_string(device.receipt().lines().size()) + " " +
         std::to_string(device.drawer_count()) + " " + device.display_text(0, 0) +
         device.display_text(0, 1) + device.display_text(2, 0) + device.display_text(2, 1) + "\n" +
         device.faults().ToText() + DumpDatabase(copy.string());
}

TEST(ReadingProperty, WhatReadsChangesNothing) {
  const PropertyRun run = RunOf(60);
  constexpr int kReadingsOfAStep = 4;
  Seen seen("readings");
  const fs::path folder = MakeTemporaryFolder();
  Holds(run, [&] {
    const std::string file = (folder / "register").string();
    for (const char* beside : {"", "-wal", "-shm", "-journal"}) fs::remove(file + beside);
    const Day steps = *Days(20, 5);
    FailingDisk disk;
    FailingDisk::Remember();
    TroubledDay::Counts counts;
    TroubledDay day(file, &disk, &counts);
    for (const DayStep& step : steps) {
      if (!day.Do(step)) RC_FAIL(day.wrong() + ": " + DescribeStep(step));
      if (*gen::resize(rc::kNominalSize, gen::inRange(0, 5)) != 0) continue;
      const std::string before = Whole(day.device(), file, folder / "copy");
      RC_ASSERT(before.find("\nerror ") == before.npos);
      for (int i = 0; i < kReadingsOfAStep; ++i) {
        const Reading& reading = kReadings[*gen::resize(
            rc::kNominalSize, gen::inRange<size_t>(0, std::size(kReadings)))];
        const int number = *gen::resize(rc::kNominalSize, gen::inRange(0, 250));
        const int other = *gen::resize(rc::kNominalSize, gen::inRange(0, 50));
        reading.read(day.device(), file, number, other);
        seen.Add(reading.name);
      }
      seen.Add(day.device().printer_state() == RTF_FPTR_PS_MONITOR ? "between documents"
                                                                   : "in a document");
      RC_ASSERT(Whole(day.device(), file, folder / "copy") == before);
    }
  });
  fs::remove_all(folder);
  std::map<std::string, int64_t> least = {{"between documents", 30}, {"in a document", 30}};
  for (const Reading& reading : kReadings) least[reading.name] = 30;
  seen.Require(run, least);
}

}  // namespace
}  // namespace lorimat
