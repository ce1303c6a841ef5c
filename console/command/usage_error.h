// What is wrong with a command line, in the user's language.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lorimat::console {

// That the program, or a command with others below it, has none of this name; with one that is
// spelt like it.
std::string NoSuchCommand(const CLI::App& app, const std::string& name);

// The same where the command line names a command, and it is none of the program's; else empty.
std::string UnknownCommand(const CLI::App& app);

// What is wrong with the command line that app has refused, in one line without its end. It is told
// by the kind of the error and by what the options were given.
std::string UsageError(const CLI::App& app, const CLI::Error& error,
                       const std::vector<std::string>& arguments);

// An option was given oftener than it can be, in front of a command's name and behind it.
class GivenTooOften : public CLI::ParseError {
 public:
  GivenTooOften(const std::string& option, size_t most, size_t given);
};

// Refuses what is no whole number of that range.
CLI::Validator WholeNumberIn(uint64_t lowest, uint64_t highest);

}  // namespace lorimat::console
