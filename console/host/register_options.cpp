#include "console/host/register_options.h"

#include <CLI/CLI.hpp>

#include "console/message/translate.h"

namespace lorimat::console {
CLI::Option* AddRegisterOption(CLI::App* command, std::string* file) {
  return command->add_option("--register", *file, Tr("The register's file"))
      ->type_name("FILE")
      ->envname("LORIMAT_REGISTER");
}

void AddLanguageOptions(CLI::App* command, std::string* language, std::string* library) {
  command
      ->add_option("--language", *language,
                   Tr("Definition file with the words of the language (default: the merkelin.ini "
                      "beside the program)"))
      ->type_name("FILE");
  command
      ->add_option("--library", *library,
                   Tr("The shared library (default: liblorimatrt.so beside the program)"))
      ->type_name("FILE")
      ->envname("LORIMAT_LIBRARY");
}

void AddPaperOption(CLI::App* command, std::string* file, const std::string& description) {
  command->add_option("--paper,--output", *file, description)->type_name("FILE");
}

void RefuseEmptyTexts(CLI::App* command) {
  const CLI::Validator given(
      [](const std::string& text) { return text.empty() ? Tr("must not be empty") : ""; }, "");
  for (CLI::Option* option : command->get_options()) {
    if (option->get_items_expected_max() > 0) option->check(given);
  }
  for (CLI::App* below : command->get_subcommands({})) RefuseEmptyTexts(below);
}

}  // namespace lorimat::console
