#include "console/terminal/notices.h"

#include <fmt/format.h>

#include <string>

#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"

namespace lorimat::console {
namespace {

void write_notice(Streams& streams, std::string_view kind, Style style, std::string_view text) {
  constexpr std::string_view kName = "lorimat:";
  const bool colours = streams.error_has_colours();
  std::string out = styled(kName, kind.empty() ? style : Style::kStrong, colours) + " ";
  size_t column = kName.size() + 1;
  if (!kind.empty()) {
    out += styled(fmt::format("{}:", kind), style, colours) + " ";
    column += columns_of(kind) + 2;
  }
  streams.error(out + flowed(text, column, 0, streams.notice_columns()) + "\n");
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

}  // namespace lorimat::console
