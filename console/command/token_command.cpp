// "lorimat token": who may come in at the door, as a file of tokens.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "console/command/subcommand.h"
#include "console/host/broken_pipe.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "console/token/token_file.h"

namespace lorimat::console {
namespace {

struct TokenOptions {
  std::string file;
  std::string name;
  std::string role;
  bool add = false;
  bool remove = false;
  bool json = false;
};

constexpr std::string_view kTokenExamples = TR_TEXT(R"(Examples:
  lorimat token add cassa-1 --role desk --tokens shop.tokens
      Writes the token of this desk once, to be given to the till; the file keeps a digest of it.
  lorimat token add office --role operator --tokens shop.tokens
      One that may close the day, reset, program, and see the jobs of all desks.
  lorimat token list --tokens shop.tokens
      The names, with their roles.
  lorimat token remove cassa-1 --tokens shop.tokens
      Takes it away again.

The file is that of "lorimatd --tokens", which reads it again at SIGHUP. Without --tokens it is the
one that the variable LORIMAT_TOKENS names.

Exit codes:
  0  it was done
  1  there is a token of this name already, or none
  2  wrong use, or the file cannot be read or written
)");

CLI::App* AddBelow(CLI::App* token, const char* name, const std::string& purpose,
                   TokenOptions* options, bool* chosen) {
  CLI::App* command = token->add_subcommand(name, purpose);
  command->add_option("--tokens", options->file, Tr("The file of the tokens"))
      ->type_name("FILE")
      ->envname("LORIMAT_TOKENS");
  command->footer(std::string(Translated(kTokenExamples)));
  if (chosen != nullptr) command->callback([chosen] { *chosen = true; });
  return command;
}

void AddOptions(CLI::App* token, TokenOptions* options) {
  CLI::App* add =
      AddBelow(token, "add", Tr("Make a token, and write it once"), options, &options->add);
  add->add_option("NAME", options->name, Tr("Whose it is: the name of the desk"))->required();
  add->add_option("--role", options->role, Tr("What it may do: desk or operator"))
      ->type_name("ROLE")
      ->required();
  CLI::App* list = AddBelow(token, "list", Tr("List the names and roles"), options, nullptr);
  list->add_flag("--json", options->json, Tr("Write JSON"));
  CLI::App* remove = AddBelow(token, "remove", Tr("Take a token away"), options, &options->remove);
  remove->add_option("NAME", options->name, Tr("Whose it is"))->required();
  token->require_subcommand(1, 1);
}

void RequireName(const std::string& name) {
  if (IsTokenName(name)) return;
  throw Failure(Tr("{}: is no name of a token, 1 to 64 of A-Z a-z 0-9 _ : -", Shown(name)));
}

int Add(const TokenOptions& options, Streams& streams) {
  const std::optional<TokenRole> role = FindTokenRole(options.role);
  if (!role) throw Failure(Tr("--role {}: is neither desk nor operator", Shown(options.role)));
  const NewToken made = MakeToken(*role);
  const bool caller_wants_error = IgnoreBrokenPipe();
  if (!AddToken(options.file, options.name, made.row)) {
    TellError(streams, Tr("{}: {} has a token already", Shown(options.file), options.name));
    return kExitFaults;
  }
  try {
    streams.Output(options.name + "." + made.secret + "\n");
  } catch (const Failure& failure) {
    // What nobody has read nobody can use, and the name is free to be tried again.
    try {
      RemoveToken(options.file, options.name);
    } catch (const Failure& left) {
      TellError(streams, left.what());
    }
    const bool is_reader_gone = dynamic_cast<const ReaderGone*>(&failure) != nullptr;
    if (is_reader_gone && !caller_wants_error) return kExitReaderGone;
    throw;
  }
  return kExitGood;
}

int List(const TokenOptions& options, Streams& streams) {
  const TokenTable table = LoadTokens(options.file);
  Json json = Json::array();
  size_t width = 0;
  for (const auto& [name, row] : table) width = std::max(width, name.size());
  std::string text;
  for (const auto& [name, row] : table) {
    json.push_back({{"name", name}, {"role", TokenRoleName(row.role)}});
    text += fmt::format("{:<{}}  {}\n", name, width, TokenRoleName(row.role));
  }
  streams.Output(options.json ? JsonText(json) : text);
  return kExitGood;
}

// Returns one of ExitCode. Throws Failure.
int TokenCommand(const TokenOptions& options, Streams& streams) {
  if (options.file.empty()) throw Failure(Tr("--tokens names no file"));
  if (!options.add && !options.remove) return List(options, streams);
  RequireName(options.name);
  if (options.add) return Add(options, streams);
  if (RemoveToken(options.file, options.name)) return kExitGood;
  TellError(streams, Tr("{}: {} has no token", Shown(options.file), options.name));
  return kExitFaults;
}

}  // namespace

const Subcommand kTokenSubcommand = {
    "token", HelpGroup::kLookUpProgram, TR_TEXT("Make, list and remove the tokens of the door"),
    kTokenExamples, &Prepare<TokenOptions, AddOptions, TokenCommand>};

}  // namespace lorimat::console
