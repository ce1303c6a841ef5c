#include "door/judge/client_words.h"

#include <algorithm>
#include <string>

#include "door/judge/code_page.h"

namespace lorimat::door {

Refusal InUtf8(Refusal refusal) {
  const std::string text = FromDevice(refusal.text());
  if (text.size() > Refusal::kTextSize) return refusal;
  std::copy(text.begin(), text.end(), refusal.characters.begin());
  refusal.size = static_cast<uint8_t>(text.size());
  return refusal;
}

}  // namespace lorimat::door
