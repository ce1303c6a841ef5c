#include "console/command/paper_places.h"

#include <fmt/format.h>

#include <utility>

#include "console/message/failure.h"
#include "console/message/register_messages.h"
#include "console/message/text.h"
#include "console/terminal/notices.h"
#include "register/paper/picture.h"

namespace lorimat::console {

std::vector<OutputName> names_of(const std::vector<PaperPlace>& places) {
  std::vector<OutputName> names;
  for (const PaperPlace& place : places) names.push_back(place.name);
  return names;
}

PaperPlaces::PaperPlaces(std::vector<PaperPlace> places, Streams& streams)
    : places_(std::move(places)), streams_(streams) {
  for (const PaperPlace& place : places_) files_.emplace_back(place.name.name, streams);
}

PaperPlaces::Outcome PaperPlaces::write() {
  Outcome outcome;
  auto file = files_.begin();
  for (const PaperPlace& place : places_) {
    try {
      (file++)->write(place.content());
    } catch (const ReaderGone&) {
      outcome.reader_gone = true;
    } catch (const lorimat::PictureError& error) {
      outcome.failed = true;
      tell_error(streams_,
                 fmt::format("{}: {}", shown(place.name.name), register_message(error.what())));
    } catch (const Failure& failure) {
      outcome.failed = true;
      tell_error(streams_, failure.what());
    }
  }
  files_.clear();
  return outcome;
}

}  // namespace lorimat::console
