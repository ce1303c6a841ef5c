#include "console/command/help.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "console/host/installed_files.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

// What stands for a value in the help, behind options and by itself.
constexpr std::string_view kValues[] = {
    TR_TEXT("CODE"),
    TR_TEXT("COMMAND"),
    TR_TEXT("DIR"),
    TR_TEXT("ENTRY=RATE"),
    TR_TEXT("FAULT"),
    TR_TEXT("FILE"),
    TR_TEXT("FROM"),
    TR_TEXT("ID"),
    TR_TEXT("INT"),
    TR_TEXT("KEY"),
    TR_TEXT("KIND"),
    TR_TEXT("LOG"),
    TR_TEXT("N"),
    TR_TEXT("N|DATE"),
    TR_TEXT("NAME"),
    TR_TEXT("NUMBER=NAME[:VAT[:PRICE]]"),
    TR_TEXT("OPERATION"),
    TR_TEXT("PLACE"),
    TR_TEXT("ROLE"),
    TR_TEXT("TEXT"),
    TR_TEXT("TO"),
    TR_TEXT("UINT"),
    TR_TEXT("\"YYYY-MM-DD HH:MM\""),
};

// CLI11's help without its remark on how many subcommands there have to be, which the line
// "Usage" tells.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_description(const CLI::App* app) const override {
    const std::string description = app->get_description();
    return description.empty() ? description : description + "\n";
  }
  // Names of earlier times work and are not shown.
  std::string make_option_name(const CLI::Option* option, bool is_positional) const override {
    constexpr std::string_view kHiddenName = ",--output";
    if (is_positional) return ShownName(*option);
    std::string names = CLI::Formatter::make_option_name(option, is_positional);
    if (const size_t at = names.find(kHiddenName); at != std::string::npos) {
      names.erase(at, kHiddenName.size());
    }
    return names;
  }
};

constexpr std::string_view kExamples = TR_TEXT(R"(Examples:
  lorimat run examples/receipt.cmd
      Runs the lines of a file and prints the receipt.
  lorimat check receipt.cmd
      Looks for faults in them; runs nothing.
  lorimat explain 257
      Tells what a result code is.

"lorimat help run" tells more of run, with examples; so for each subcommand.

Exit codes:
  0  all is well
  1  something was found: a line failed, a file has errors, a code is unknown
  2  wrong use, or what was asked for could not be done
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)");

// With the examples' folder as a person can type it anywhere.
std::string WithExamples(std::string text, const std::string& folder) {
  constexpr std::string_view kFolder = " examples/";
  for (size_t at = 0; (at = text.find(kFolder, at)) != std::string::npos; at += folder.size()) {
    text.replace(at + 1, kFolder.size() - 2, folder);
  }
  return text;
}

// Of the program or a command, and of the commands below it.
void GiveWords(CLI::App& app, const std::shared_ptr<CLI::Formatter>& formatter) {
  app.formatter(formatter);
  app.footer(WithExamples(app.get_footer(), FindExamples()));
  for (CLI::Option* option : app.get_options()) option->group(Tr("Options"));
  for (CLI::App* command : app.get_subcommands({})) {
    // Those of the program have their headings.
    if (app.get_parent() != nullptr) command->group(Tr("Subcommands"));
    GiveWords(*command, formatter);
  }
}

}  // namespace

std::string HelpHeading(HelpGroup group) {
  switch (group) {
    case HelpGroup::kSetUpRegister:
      return Tr("Set up a register");
    case HelpGroup::kRunLines:
      return Tr("Run lines");
    case HelpGroup::kLookIntoLines:
      return Tr("Look into lines, words and codes");
    case HelpGroup::kLookAtRegister:
      return Tr("Look at a register");
    case HelpGroup::kLookAfterRegister:
      return Tr("Look after a register");
    case HelpGroup::kUseDoor:
      return Tr("Use a door");
    case HelpGroup::kLookUpProgram:
      return Tr("Look up the program");
  }
  return {};
}

std::string ShownValue(const std::string& value) {
  const auto* const known = std::find(std::begin(kValues), std::end(kValues), value);
  return known == std::end(kValues) ? value : std::string(Translated(*known));
}

std::string ShownName(const CLI::Option& option) {
  return option.get_positional() ? ShownValue(option.get_name()) : option.get_name();
}

void TranslateHelp(CLI::App& app) {
  const auto formatter = std::make_shared<HelpFormatter>();
  formatter->column_width(app.get_formatter()->get_column_width());
  formatter->label("Usage", Tr("Usage"));
  formatter->label("OPTIONS", Tr("OPTIONS"));
  formatter->label("SUBCOMMAND", Tr("SUBCOMMAND"));
  formatter->label("SUBCOMMANDS", Tr("SUBCOMMAND"));
  formatter->label("Positionals", Tr("Positionals"));
  formatter->label("REQUIRED", Tr("REQUIRED"));
  formatter->label("Env", Tr("Env"));
  formatter->label("Needs", Tr("Needs"));
  formatter->label("Excludes", Tr("Excludes"));
  for (const std::string_view value : kValues) {
    formatter->label(std::string(value), std::string(Translated(value)));
  }
  app.footer(std::string(Translated(kExamples)));
  GiveWords(app, formatter);
}

}  // namespace lorimat::console
