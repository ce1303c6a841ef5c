// "lorimat set": changes what a shop has set of its register.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <string_view>

#include "console/command/shop_options.h"
#include "console/command/subcommand.h"
#include "console/device/register_device.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::console {
namespace {

struct SetOptions {
  std::string file;
  ShopOptions shop;
};

constexpr std::string_view kSetExamples = TR_TEXT(R"(Examples:
  lorimat set shop.register --header "BAR SPORT" --header "Via Roma 1 - 00100 ROMA"
      Another header: these lines, and no others.
  lorimat set shop.register --vat 3=5,50 --departments 7=GELATO:3
      The rate of VAT entry 3, and the name and the VAT entry of department 7.
  lorimat set shop.register --no-training
      Ends the training.

All of it is set, or nothing. What is set goes into the journal's chain, but for header lines,
which the journal has with each document. Serial number and VAT number are fixed once the register
has made a document; VAT rates and the state of service change while no day is open.

Exit codes:
  0  all of it was set
  1  it was set; what failed behind that is told
  2  wrong use, or nothing was set
)");

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

void AddOptions(CLI::App* set, SetOptions* options) {
  set->add_option("FILE", options->file, Tr("The register's file"))->required();
  AddShopOptions(set, &options->shop);
  AddShopChangeOptions(set, &options->shop);
}

// Returns one of ExitCode. Throws Failure or RegisterError: then nothing was changed.
int SetCommand(const SetOptions& options, Streams& streams) {
  const ShopValues values = ReadShopOptions(options.shop);
  if (values.given.empty()) {
    throw Failure(
        Tr("what is to be set? Name it, as --header \"BAR SPORT\"; \"lorimat set --help\" "
           "lists all"));
  }
  RequireRegister(options.file, true);
  RequireQuietRegister(options.file);
  RegisterDevice client("", options.file, streams);
  client.machine().LeaveUnanswered();
  lorimat::ShopRefusal refused;
  if (client.machine().SetUp(values.setup, &refused) != RTF_SUCCESS) {
    const lorimat::Refusal& refusal = client.machine().last_refusal();
    const std::string cause = refusal.cause == lorimat::RefusalCause::kNotKept
                                  ? client.keeping_failure()
                                  : ShopRefusalText(values, refused, refusal);
    throw Failure(Tr("{}: nothing was set: {}", Shown(options.file), cause));
  }
  if (const auto& number = values.setup.vat_number; number && !values.setup.header_lines) {
    const std::vector<std::string>& header = client.machine().tables().settings().header_lines;
    const bool named = std::any_of(header.begin(), header.end(), [&](const std::string& line) {
      return line.find(*number) != line.npos;
    });
    if (!named) {
      TellNote(streams,
               Tr("{}: no line of the header names the VAT number {}, and the header stays "
                  "as it was; --header sets another",
                  Shown(options.file), Shown(*number)));
    }
  }
  const std::string report = Tr("{}: set: {}\n", Shown(options.file), Joined(values.given));
  const auto missing = [&options](const char* cause) {
    return Tr("{}: it was set, and the report is missing: {}", Shown(options.file), cause);
  };
  return WriteReport(streams, report, missing) ? kExitGood : kExitFaults;
}

}  // namespace

const Subcommand kSetSubcommand = {"set", HelpGroup::kSetUpRegister,
                                   TR_TEXT("Change what a register was set up with"), kSetExamples,
                                   &Prepare<SetOptions, AddOptions, SetCommand>};

}  // namespace lorimat::console
