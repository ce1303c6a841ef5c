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
std::vector<std::span<const ItalianText>> ItalianTexts();

// The parts of it.
std::span<const ItalianText> ItalianBackupTexts();
std::span<const ItalianText> ItalianCheckTexts();
std::span<const ItalianText> ItalianCodesTexts();
std::span<const ItalianText> ItalianHelpTexts();
std::span<const ItalianText> ItalianJournalTexts();
std::span<const ItalianText> ItalianRefusalTexts();
std::span<const ItalianText> ItalianRegisterTexts();
std::span<const ItalianText> ItalianMessagesTexts();
std::span<const ItalianText> ItalianExamplesTexts();
std::span<const ItalianText> ItalianSetupTexts();
std::span<const ItalianText> ItalianShellTexts();
std::span<const ItalianText> ItalianTrapsTexts();

}  // namespace lorimat::console
