#include "console/command/usage_error.h"

#include <algorithm>
#include <functional>
#include <set>
#include <string_view>

#include "console/command/help.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/suggestion.h"

namespace lorimat::console {
namespace {

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
  // The opposite of what was meant is near, too.
  const bool opposite = name == "--no-" + nearest || "--no-" + name.substr(2) == "--" + nearest;
  if (!nearest.empty() && !opposite) text += Tr("; did you mean {}?", fmt::format("--{}", nearest));
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

std::string TooOften(const std::string& option, size_t most, size_t given) {
  return Tr("{}: At Most {} required but received {}", option, most, given);
}

// --- What an error is of. The library's errors have it in their words alone, so it is looked up in
// what the options were given, in the order in which the library goes through them.

using OptionTest = std::function<bool(const CLI::Option&)>;

// Of the program, and of the commands that were named.
const CLI::Option* FindOption(const CLI::App& app, const OptionTest& test) {
  for (const CLI::Option* option : app.get_options()) {
    if (test(*option)) return option;
  }
  for (const CLI::App* command : app.get_subcommands()) {
    if (const CLI::Option* found = FindOption(*command, test)) return found;
  }
  return nullptr;
}

// One of those that an option goes with or does not.
const CLI::Option* FindOther(const std::set<CLI::Option*>& others, bool given) {
  for (const CLI::Option* other : others) {
    if ((other->count() > 0) == given) return other;
  }
  return nullptr;
}

std::string Missing(const CLI::App& app) {
  const CLI::Option* const option = FindOption(
      app, [](const CLI::Option& one) { return one.get_required() && one.count() == 0; });
  return option == nullptr ? Tr("A subcommand is required")
                           : Tr("{} is required", ShownName(*option));
}

std::string Lonely(const CLI::App& app) {
  const CLI::Option* other = nullptr;
  const CLI::Option* const option = FindOption(app, [&other](const CLI::Option& one) {
    other = one.count() > 0 ? FindOther(one.get_needs(), false) : nullptr;
    return other != nullptr;
  });
  return option == nullptr ? std::string()
                           : Tr("{} requires {}", ShownName(*option), ShownName(*other));
}

std::string Unfit(const CLI::App& app) {
  const CLI::Option* other = nullptr;
  const CLI::Option* const option = FindOption(app, [&other](const CLI::Option& one) {
    other = one.count() > 0 ? FindOther(one.get_excludes(), true) : nullptr;
    return other != nullptr;
  });
  return option == nullptr ? std::string()
                           : Tr("{} excludes {}", ShownName(*option), ShownName(*other));
}

size_t MostOf(const CLI::Option& option) {
  return static_cast<size_t>(std::max(option.get_items_expected_max(), 1));
}

// Too many values of an option, or none for the one that ends the line.
std::string WrongCount(const CLI::App& app, const std::vector<std::string>& arguments) {
  const CLI::Option* const many = FindOption(app, [](const CLI::Option& one) {
    return one.get_multi_option_policy() == CLI::MultiOptionPolicy::Throw &&
           one.count() > MostOf(one);
  });
  if (many != nullptr) return TooOften(ShownName(*many), MostOf(*many), many->count());
  if (arguments.empty()) return {};
  // "--paper=" stands for an option without a value, too.
  const std::string name = arguments.back().substr(0, arguments.back().find('='));
  const CLI::Option* const last = LastCommand(app).get_option_no_throw(name);
  if (last == nullptr) return {};
  return Tr("{}: {} required {} missing", ShownName(*last), last->get_items_expected_min(),
            ShownValue(last->get_type_name()));
}

// The options' values are taken one after the other: the one that did not fit is the last that was
// taken.
std::string NotConverted(const CLI::App& app) {
  const CLI::Option* last = nullptr;
  FindOption(app, [&last](const CLI::Option& one) {
    if (one.count() > 0 && one.get_callback_run()) last = &one;
    return false;
  });
  if (last == nullptr) return {};
  std::string values;
  for (const std::string& value : last->results()) values += (values.empty() ? "" : ",") + value;
  return Tr("Could not convert: {} = {}", ShownName(*last), Shown(values));
}

// In our own words: the library puts the option's name in front of what our checks say, and that of
// an argument as the code has it.
std::string FailedCheck(const CLI::App& app, const std::string& text) {
  const CLI::Option* const argument = FindOption(app, [&text](const CLI::Option& one) {
    return one.get_positional() && text.rfind(one.get_name() + ": ", 0) == 0;
  });
  if (argument == nullptr) return text;
  return ShownName(*argument) + text.substr(argument->get_name().size());
}

}  // namespace

GivenTooOften::GivenTooOften(const std::string& option, size_t most, size_t given)
    : CLI::ParseError("GivenTooOften", TooOften(option, most, given),
                      CLI::ExitCodes::ArgumentMismatch) {}

CLI::Validator WholeNumberIn(uint64_t lowest, uint64_t highest) {
  return CLI::Validator(
      [lowest, highest](const std::string& text) {
        uint64_t number = 0;
        const bool good =
            CLI::detail::lexical_cast(text, number) && number >= lowest && number <= highest;
        return good ? std::string()
                    : Tr("Value {} not in range {} to {}", Shown(text), lowest, highest);
      },
      "");
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

std::string UsageError(const CLI::App& app, const CLI::Error& error,
                       const std::vector<std::string>& arguments) {
  const auto is = [&error]<typename Kind>(Kind*) {
    return dynamic_cast<const Kind*>(&error) != nullptr;
  };
  std::string text;
  if (is(static_cast<CLI::ExtrasError*>(nullptr))) {
    const std::vector<std::string> left_over = app.remaining(true);
    if (!left_over.empty()) text = Unexpected(app, left_over);
  } else if (is(static_cast<CLI::RequiredError*>(nullptr))) {
    // Where something is missing and something else is left over, that is the slip: "chek x.cmd"
    // lacks no subcommand, and "run --papper" more than its FILE.
    const std::vector<std::string> left_over = app.remaining(true);
    text = UnknownCommand(app);
    if (text.empty() && !left_over.empty() && StartsAsOption(left_over.front())) {
      text = Unexpected(app, left_over);
    }
    if (text.empty()) text = Missing(app);
  } else if (is(static_cast<CLI::RequiresError*>(nullptr))) {
    text = Lonely(app);
  } else if (is(static_cast<CLI::ExcludesError*>(nullptr))) {
    text = Unfit(app);
  } else if (is(static_cast<CLI::ArgumentMismatch*>(nullptr))) {
    text = WrongCount(app, arguments);
  } else if (is(static_cast<CLI::ConversionError*>(nullptr))) {
    text = NotConverted(app);
  } else if (is(static_cast<CLI::ValidationError*>(nullptr)) ||
             is(static_cast<GivenTooOften*>(nullptr))) {
    text = Shown(FailedCheck(app, error.what()));
  }
  return text.empty() ? Tr("the command line is wrong ({})", Shown(error.what())) : text;
}

}  // namespace lorimat::console
