#include "notices.h"

#include <fmt/format.h>

#include <string>

#include "styles.h"
#include "translate.h"

namespace {

void write_notice(Streams& streams, std::string_view kind, Style style, std::string_view text) {
  const bool colours = streams.error_has_colours();
  std::string out = styled("lorimat:", kind.empty() ? style : Style::kStrong, colours);
  if (!kind.empty()) out += " " + styled(fmt::format("{}:", kind), style, colours);
  streams.error(fmt::format("{} {}\n", out, text));
}

}  // namespace

void tell_error(Streams& streams, std::string_view text) {
  write_notice(streams, "", Style::kError, text);
}

void tell_warning(Streams& streams, std::string_view text) {
  write_notice(streams, tr("warning"), Style::kWarning, text);
}

void tell_note(Streams& streams, std::string_view text) {
  write_notice(streams, tr("note"), Style::kNote, text);
}

void tell(Streams& streams, std::string_view text) {
  write_notice(streams, "", Style::kStrong, text);
}
