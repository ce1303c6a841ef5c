#include "console/command/door_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {
namespace {

bool IsToken(const std::string& text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

std::string TokenOfFile(const std::string& file) {
  LineReader reader(file);
  reader.GiveUpBehind(LineReader::kKept);
  SourceLine line;
  if (!reader.Next(&line) || line.length > LineReader::kKept || !IsToken(line.text)) {
    throw Failure(Tr("{}: holds no token", Shown(reader.name())));
  }
  return line.text;
}

}  // namespace

void AddDoorOptions(CLI::App* command, DoorOptions* options) {
  command->add_option("--to", options->url, Tr("The door; http://127.0.0.1:8577 unless it is said"))
      ->type_name("URL");
  command
      ->add_option("--token", options->token_file,
                   Tr("A file that holds the token; else the variable LORIMAT_TOKEN does"))
      ->type_name("FILE");
  command
      ->add_option("--cacert", options->ca_file,
                   Tr("Certificates to trust (PEM), instead of those of the system"))
      ->type_name("FILE");
}

DoorAddress AddressOf(const DoorOptions& options) {
  DoorAddress address{options.url, {}, options.ca_file};
  if (!options.token_file.empty()) {
    address.token = TokenOfFile(options.token_file);
  } else if (const char* token = std::getenv("LORIMAT_TOKEN"); token != nullptr && *token != 0) {
    if (!IsToken(token)) throw Failure(Tr("LORIMAT_TOKEN holds no token"));
    address.token = token;
  }
  return address;
}

}  // namespace lorimat::console
