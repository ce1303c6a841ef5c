#include "console/command/help.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string_view>
#include <vector>

#include "console/host/installed_files.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/suggestion.h"

namespace lorimat::console {
namespace {

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
    std::string names = CLI::Formatter::make_option_name(option, is_positional);
    if (const size_t at = names.find(kHiddenName); at != std::string::npos) {
      names.erase(at, kHiddenName.size());
    }
    return names;
  }
};

// In CLI11's own words, where the fields are names and numbers. A pattern stands in front of
// those that fit its messages, too.
constexpr std::string_view kUsageErrors[] = {
    TR_TEXT("A subcommand is required"),
    TR_TEXT("The following argument was not expected: {}"),
    TR_TEXT("{} was given a disallowed flag override"),
    TR_TEXT("{}: too many inputs for a flag"),
    TR_TEXT("{}: Should be true/false or a number"),
    TR_TEXT("{}: At least {} required but received {}"),
    TR_TEXT("{}: At Most {} required but received {}"),
    TR_TEXT("{}: {} required {} missing"),
    TR_TEXT("Expected exactly {} arguments to {}, got {}"),
    TR_TEXT("Expected at least {} arguments to {}, got {}"),
    TR_TEXT("Could not convert: {} = {}"),
    TR_TEXT("{}: Value {} not in range {} to {}"),
    TR_TEXT("{}: Number less or equal to 0: {}"),
    TR_TEXT("{}: Number less than 0: {}"),
    TR_TEXT("{}: {} not in {}"),
    TR_TEXT("{} is required"),
    TR_TEXT("{} excludes {}"),
    TR_TEXT("{} requires {}"),
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

bool StartsAsOption(std::string_view argument) {
  return argument.size() > 1 && argument.front() == '-';
}

// "--paper" of "--paper=x".
std::string OptionName(const std::string& argument) {
  return argument.substr(0, argument.find('='));
}

// The command that was named last: that of "journal verify" is verify.
const CLI::App& LastCommand(const CLI::App& app) {
  const CLI::App* last = &app;
  while (!last->get_subcommands().empty()) last = last->get_subcommands().back();
  return *last;
}

bool HasOption(const CLI::App& app, const std::string& name) {
  return app.get_option_no_throw(name) != nullptr;
}

// An option of some command in front of its command: "lorimat --register x status".
std::string MisplacedOption(const CLI::App& app, const std::string& name) {
  const CLI::App& command = LastCommand(app);
  if (&command != &app) {
    if (!HasOption(command, name)) return {};
    return Tr("the option {} stands behind the subcommand: lorimat {} {} ...", name,
              command.get_name(), name);
  }
  for (const CLI::App* one : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (HasOption(*one, name)) {
      return Tr("the option {} stands behind a subcommand, and none was given", name);
    }
  }
  return {};
}

std::string NoSuchOption(const CLI::App& app, const std::string& name) {
  std::vector<std::string> names;
  for (const CLI::Option* option : LastCommand(app).get_options()) {
    for (const std::string& one : option->get_lnames()) names.push_back(one);
  }
  std::string text = Tr("no option is called '{}'", Shown(name));
  const std::string nearest = name.substr(0, 2) == "--" ? NearestWord(name.substr(2), names) : "";
  if (!nearest.empty()) text += Tr("; did you mean {}?", fmt::format("--{}", nearest));
  return text;
}

// Names what nothing took, options first: what stands behind one is often its value.
std::string Unexpected(const CLI::App& app, const std::vector<std::string>& left_over) {
  for (const std::string& argument : left_over) {
    if (!StartsAsOption(argument)) continue;
    const std::string name = OptionName(argument);
    const std::vector<std::string> in_front = app.remaining(false);
    const bool is_in_front =
        std::find(in_front.begin(), in_front.end(), argument) != in_front.end();
    const std::string misplaced = is_in_front ? MisplacedOption(app, name) : "";
    return misplaced.empty() ? NoSuchOption(app, name) : misplaced;
  }
  return Tr("The following argument was not expected: {}", Shown(left_over.front()));
}

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
  for (CLI::Option* option : app.get_options()) {
    if (option->get_group() == "Options") option->group(Tr("Options"));
  }
  for (CLI::App* command : app.get_subcommands({})) {
    if (command->get_group() == "Subcommands") command->group(Tr("Subcommands"));
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
    case HelpGroup::kLookUpProgram:
      return Tr("Look up the program");
  }
  return {};
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
  // Kinds of values.
  formatter->label("TEXT", Tr("TEXT"));
  formatter->label("INT", Tr("INT"));
  formatter->label("UINT", Tr("UINT"));
  formatter->label("NAME", Tr("NAME"));
  formatter->label("KIND", Tr("KIND"));
  formatter->label("OPERATION", Tr("OPERATION"));
  formatter->label("N|DATE", Tr("N|DATE"));
  formatter->label("\"YYYY-MM-DD HH:MM\"", Tr("\"YYYY-MM-DD HH:MM\""));
  app.footer(std::string(Translated(kExamples)));
  GiveWords(app, formatter);
}

std::string NoSuchCommand(const CLI::App& app, const std::string& name) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  std::string text = Tr("no subcommand is called '{}'", Shown(name));
  const std::string nearest = NearestWord(name, names);
  if (!nearest.empty()) text += Tr("; did you mean {}?", nearest);
  return text;
}

std::string UnknownCommand(const CLI::App& app) {
  const std::vector<std::string> left_over = app.remaining(true);
  if (!app.get_subcommands().empty() || left_over.empty() || StartsAsOption(left_over.front())) {
    return {};
  }
  return NoSuchCommand(app, left_over.front());
}

std::string UsageError(const CLI::App& app, const CLI::Error& error) {
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::vector<std::string> left_over = app.remaining(true);
    if (!left_over.empty()) return Unexpected(app, left_over);
  }
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    // Where something is missing and something else is left over, that is the slip: "chek x.cmd"
    // lacks no subcommand, and "run --papper" more than its FILE.
    const std::vector<std::string> left_over = app.remaining(true);
    if (const std::string unknown = UnknownCommand(app); !unknown.empty()) return unknown;
    if (!left_over.empty() && StartsAsOption(left_over.front())) {
      return Unexpected(app, left_over);
    }
  }
  return TrFinished(Shown(error.what()), kUsageErrors);
}

}  // namespace lorimat::console
