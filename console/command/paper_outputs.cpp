#include "console/command/paper_outputs.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "console/message/failure.h"
#include "console/message/register_failure_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "register/paper/picture.h"

namespace lorimat::console {

std::vector<OutputName> NamesOf(const std::vector<PaperOutput>& outputs) {
  std::vector<OutputName> names;
  names.reserve(outputs.size());
  for (const PaperOutput& output : outputs) names.push_back(output.name);
  return names;
}

PaperOutputs::PaperOutputs(std::vector<PaperOutput> outputs, Streams& streams)
    : outputs_(std::move(outputs)), streams_(streams) {
  for (const PaperOutput& output : outputs_) files_.emplace_back(output.name.name, streams);
}

void PaperOutputs::WriteOne(const PaperOutput& output, PaperFile& file) {
  std::optional<InterruptWatch> watch;
  if (output.is_picture) watch.emplace();
  std::optional<Progress> bar;
  const std::string content = output.content([&](size_t done, size_t all) {
    if (interrupt_count != signals_before_) return false;
    if (!bar) bar.emplace(streams_, true, all, Progress::Shows::kLines);
    bar->Update(done);
    return interrupt_count == signals_before_;
  });
  bar.reset();
  // A reader that lets it wait is no reason to stay: then a signal ends the program as ever.
  if (file.has_reader()) watch.reset();
  file.Write(content);
}

PaperOutputs::Outcome PaperOutputs::write() {
  Outcome outcome;
  signals_before_ = interrupt_count;
  auto file = files_.begin();
  for (const PaperOutput& output : outputs_) {
    try {
      WriteOne(output, *file++);
    } catch (const ReaderGone&) {
      outcome.reader_gone = true;
    } catch (const lorimat::PictureStopped&) {
      outcome.stopped = true;
      TellError(streams_,
                Tr("{}: not written, stopped by {}", Shown(output.name.name), InterruptName()));
    } catch (const lorimat::PictureError& error) {
      outcome.failed = true;
      TellError(streams_, fmt::format("{}: {}", Shown(output.name.name), ErrorText(error)));
    } catch (const Failure& failure) {
      outcome.failed = true;
      TellError(streams_, failure.what());
    }
  }
  files_.clear();
  return outcome;
}

}  // namespace lorimat::console
