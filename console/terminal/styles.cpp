#include "console/terminal/styles.h"

#include <fmt/color.h>
#include <unistd.h>

#include <cstdlib>

namespace lorimat::console {
namespace {

fmt::text_style Look(Style style) {
  switch (style) {
    case Style::kError:
      return fmt::emphasis::bold | fmt::fg(fmt::terminal_color::red);
    case Style::kWarning:
      return fmt::emphasis::bold | fmt::fg(fmt::terminal_color::yellow);
    case Style::kNote:
      return fmt::fg(fmt::terminal_color::cyan);
    case Style::kGood:
      return fmt::fg(fmt::terminal_color::green);
    case Style::kStrong:
      return fmt::emphasis::bold;
    case Style::kFaint:
      return fmt::emphasis::faint;
  }
  return {};
}

}  // namespace

bool HasColours(int descriptor) {
  const char* refused = std::getenv("NO_COLOR");
  if (refused != nullptr && *refused != 0) return false;
  const char* terminal = std::getenv("TERM");
  if (terminal == nullptr || *terminal == 0 || std::string_view(terminal) == "dumb") return false;
  return isatty(descriptor) == 1;
}

std::string Styled(std::string_view text, Style style, bool colours) {
  return colours ? fmt::format(Look(style), "{}", text) : std::string(text);
}

}  // namespace lorimat::console
