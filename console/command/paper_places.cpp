#include "console/command/paper_places.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "console/message/failure.h"
#include "console/message/register_messages.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "register/paper/picture.h"

namespace lorimat::console {

std::vector<OutputName> NamesOf(const std::vector<PaperPlace>& places) {
  std::vector<OutputName> names;
  for (const PaperPlace& place : places) names.push_back(place.name);
  return names;
}

PaperPlaces::PaperPlaces(std::vector<PaperPlace> places, Streams& streams)
    : places_(std::move(places)), streams_(streams) {
  for (const PaperPlace& place : places_) files_.emplace_back(place.name.name, streams);
}

void PaperPlaces::WriteOne(const PaperPlace& place, PaperFile& file) {
  std::optional<InterruptWatch> watch;
  if (place.is_picture) watch.emplace();
  std::optional<Progress> bar;
  const std::string content = place.content([&](size_t done, size_t all) {
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

PaperPlaces::Outcome PaperPlaces::write() {
  Outcome outcome;
  signals_before_ = interrupt_count;
  auto file = files_.begin();
  for (const PaperPlace& place : places_) {
    try {
      WriteOne(place, *file++);
    } catch (const ReaderGone&) {
      outcome.reader_gone = true;
    } catch (const lorimat::PictureStopped&) {
      outcome.stopped = true;
      TellError(streams_,
                Tr("{}: not written, stopped by {}", Shown(place.name.name), InterruptName()));
    } catch (const lorimat::PictureError& error) {
      outcome.failed = true;
      TellError(streams_,
                fmt::format("{}: {}", Shown(place.name.name), RegisterMessage(error.what())));
    } catch (const Failure& failure) {
      outcome.failed = true;
      TellError(streams_, failure.what());
    }
  }
  files_.clear();
  return outcome;
}

}  // namespace lorimat::console
