// The Italian of the program's messages: one table, in several files by the jobs of the program.
#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace lorimat::console {

struct ItalianText {
  std::string_view english;  // as it stands in the code that shows it
  std::string_view italian;  // with the same fields; "{1} {0}" where their order changes
};

// In no order.
std::vector<std::span<const ItalianText>> italian_texts();

// The parts of it.
std::span<const ItalianText> italian_backup_texts();
std::span<const ItalianText> italian_check_texts();
std::span<const ItalianText> italian_codes_texts();
std::span<const ItalianText> italian_help_texts();
std::span<const ItalianText> italian_journal_texts();
std::span<const ItalianText> italian_refusal_texts();
std::span<const ItalianText> italian_register_texts();
std::span<const ItalianText> italian_messages_texts();
std::span<const ItalianText> italian_examples_texts();
std::span<const ItalianText> ItalianSetupTexts();
std::span<const ItalianText> italian_shell_texts();
std::span<const ItalianText> italian_traps_texts();

}  // namespace lorimat::console
