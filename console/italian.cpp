#include "italian.h"

#include <array>

std::span<const ItalianText> italian_texts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"must not be empty", "non può essere vuoto"},
  });
  return kTexts;
}
