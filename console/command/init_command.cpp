// "lorimat init": a new register in a file, with the shop's own numbers, lines and tables.

#include <fmt/format.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>

#include "console/command/backup/table_loading.h"
#include "console/command/backup/table_session.h"
#include "console/command/shop_options.h"
#include "console/command/subcommand.h"
#include "console/device/register_device.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/register_failure_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::console {
namespace {

struct InitOptions {
  std::string file;
  ShopOptions shop;
  std::string from;
  std::string language;
  std::string library;
};

constexpr std::string_view kInitExamples = TR_TEXT(
    R"(Examples:
  lorimat init shop.register
      A register to try things with, in the name of a shop that does not exist.
  lorimat init bar.register --serial 99LRM0000042VR --vat-number 01234567897 )"
    "\\\n"
    R"(      --header "BAR SPORT" --header "Via Roma 1 - 00100 ROMA" --header "P.IVA 01234567897"
      One with the shop's own numbers and header.
  lorimat init stall.register --vat "22 10 5,50 4 0" --departments 1=PANE:4 )"
    "\\\n"
    R"(      --departments 2=CAFFE:2:1,20 --not-in-service
      The rates of the VAT entries 1 to 5, and two departments with their VAT entry and price.
  lorimat init second.register --from tables --serial 99LRM0000043VR
      One with the tables of another register, as "lorimat backup" wrote them.

What is not given is that of the shop that does not exist: 22, 10, 5, 4 % and exempt, forty
departments. The file appears when all of it is written; one that is there is not touched.
"lorimat set" changes the same later.

Exit codes:
  0  the register was made
  1  it was made and is whole; rows of the backup that could not be loaded, and what failed behind
     it, are told
  2  wrong use, or it could not be made; then there is no file
  130  stopped by Ctrl-C; there is no file
)");

// The checks that need no register. A new name says nothing of its folder's rights: that is found
// out when the file is made.
void RequireNewName(const std::string& file) {
  RequireRegisterName(file);
  struct stat status;
  if (lstat(file.c_str(), &status) == 0) {
    throw Failure(Tr("{}: is there already, and stays as it is; \"lorimat set\" changes a register",
                     Shown(file)));
  }
}

// Puts the values into the register, all of them.
void SetUp(lorimat::VirtualRegister& device, const ShopValues& values) {
  lorimat::ShopRefusal refused;
  const int code = device.SetUp(values.setup, &refused);
  if (code == RTF_SUCCESS) return;
  const bool kept = device.last_refusal().cause != lorimat::RefusalCause::kNotKept;
  throw Failure(kept ? ShopRefusalText(values, refused, device.last_refusal())
                     : RegisterFailureText(device.failure()));
}

lorimat::RegisterSettings FirstSettings(const lorimat::ShopSetup& setup) {
  lorimat::RegisterSettings settings;
  if (setup.serial_number) settings.serial_number = *setup.serial_number;
  if (setup.vat_number) {
    settings.vat_number = *setup.vat_number;
    settings.header_lines.back() = lorimat::VatNumberLine(*setup.vat_number);
  }
  settings.commissioned = setup.in_service.value_or(true);
  return settings;
}

// Writes the register, and tells it. What fails behind the writing leaves it.
int Save(lorimat::VirtualRegister& device, const InitOptions& options, int code, Streams& streams) {
  if (const int error = device.SaveAs(options.file)) {
    TellWarning(streams, Tr("{}: the register is there and whole, and its name may not have "
                            "reached the disk: {}",
                            Shown(options.file), SystemMessage(error)));
    code = kExitFaults;
  }
  const std::string report = Tr("{}: a new register, serial number {}\n", Shown(options.file),
                                Shown(device.tables().settings().serial_number));
  const auto missing = [&options](const char* cause) {
    return Tr("{}: the register is there and whole, and its report is missing: {}",
              Shown(options.file), cause);
  };
  return WriteReport(streams, report, missing) ? code : kExitFaults;
}

// With the tables of a backup, which the library loads; what the options say goes before them.
int InitFromBackup(const InitOptions& options, const ShopValues& values, Streams& streams) {
  lorimat::RegisterSettings settings = FirstSettings(values.setup);
  // An empty line of the backup's header would not take one of the trial shop away.
  settings.header_lines.clear();
  lorimat::VirtualRegister* machine = nullptr;
  TableSession session(
      [&] {
        auto device = std::make_unique<RegisterDevice>(settings, streams);
        machine = &device->machine();
        return device;
      },
      options.language, options.library, streams);
  const LoadedTables loaded = LoadTables(options.from, session, streams);
  if (loaded.stopped) {
    TellError(streams, Tr("stopped by {}; no register was made", InterruptName()));
    return InterruptExit();
  }
  int code = kExitGood;
  for (const std::string& row : loaded.not_restored) {
    TellWarning(streams, row);
    code = kExitFaults;
  }
  SetUp(*machine, values);
  if (loaded.serial_number != machine->tables().settings().serial_number) {
    TellNote(streams, Tr("the backup is of {}, and this is {}", Shown(loaded.serial_number),
                         Shown(machine->tables().settings().serial_number)));
  }
  return Save(*machine, options, code, streams);
}

void AddOptions(CLI::App* init, InitOptions* options) {
  init->add_option("FILE", options->file, Tr("The register's file, which must not be there"))
      ->required();
  AddShopOptions(init, &options->shop);
  init->add_option("--from", options->from,
                   Tr("Folder of a backup, whose tables the register gets"))
      ->type_name("DIR");
  AddLanguageOptions(init, &options->language, &options->library);
}

// Returns one of ExitCode. Throws Failure or RegisterError: then there is no such file.
int InitCommand(const InitOptions& options, Streams& streams) {
  RequireNewName(options.file);
  const ShopValues values = ReadShopOptions(options.shop);
  // On another register first: the new one is made with numbers that are good.
  {
    lorimat::VirtualRegister trial;
    SetUp(trial, values);
  }
  // It is made in memory, and written when all of it is there.
  if (!options.from.empty()) return InitFromBackup(options, values, streams);
  lorimat::VirtualRegister device(FirstSettings(values.setup));
  SetUp(device, values);
  return Save(device, options, kExitGood, streams);
}

}  // namespace

const Subcommand kInitSubcommand = {"init", HelpGroup::kSetUpRegister,
                                    TR_TEXT("Make a new register in a file"), kInitExamples,
                                    &Prepare<InitOptions, AddOptions, InitCommand>};

}  // namespace lorimat::console
