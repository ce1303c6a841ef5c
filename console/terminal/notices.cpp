#include "console/terminal/notices.h"

#include <fmt/format.h>

#include "console/message/failure.h"
#include "console/message/translate.h"
#include "console/terminal/shell_text.h"
#include "console/terminal/styles.h"

namespace lorimat::console {
namespace {

void WriteNotice(Streams& streams, std::string_view kind, Style style, std::string_view text) {
  const std::string name = streams.program() + ":";
  const bool colours = streams.error_has_colours();
  std::string out = Styled(name, kind.empty() ? style : Style::kStrong, colours) + " ";
  size_t column = name.size() + 1;
  if (!kind.empty()) {
    out += Styled(fmt::format("{}:", kind), style, colours) + " ";
    column += ColumnsOf(kind) + 2;
  }
  streams.Error(out + Flowed(text, column, 0, streams.notice_columns()) + "\n");
}

}  // namespace

void TellError(Streams& streams, std::string_view text) {
  WriteNotice(streams, "", Style::kError, text);
}

void TellWarning(Streams& streams, std::string_view text) {
  WriteNotice(streams, Tr("warning"), Style::kWarning, text);
}

void TellNote(Streams& streams, std::string_view text) {
  WriteNotice(streams, Tr("note"), Style::kNote, text);
}

void Tell(Streams& streams, std::string_view text) {
  WriteNotice(streams, "", Style::kStrong, text);
}

bool WriteReport(Streams& streams, const std::string& report,
                 const std::function<std::string(const char* cause)>& missing) {
  try {
    streams.Output(report);
    return true;
  } catch (const ReaderGone&) {
    throw;
  } catch (const Failure& failure) {
    TellError(streams, missing(failure.what()));
    return false;
  }
}

}  // namespace lorimat::console
