#include "paper_places.h"

#include <sys/stat.h>

#include <utility>

#include "failure.h"
#include "register/picture.h"
#include "register_messages.h"
#include "text.h"
#include "translate.h"

namespace {

bool are_one_file(const std::string& one, const std::string& other) {
  if (one == "-" || other == "-") return one == other;
  struct stat status;
  struct stat other_status;
  return stat(one.c_str(), &status) == 0 && stat(other.c_str(), &other_status) == 0 &&
         S_ISREG(status.st_mode) && status.st_dev == other_status.st_dev &&
         status.st_ino == other_status.st_ino;
}

}  // namespace

PaperPlaces::PaperPlaces(std::vector<PaperPlace> places, const std::vector<KeptFile>& kept,
                         Streams& streams)
    : places_(std::move(places)) {
  for (const PaperPlace& place : places_) {
    files_.emplace_back(place.name, kept, streams);
    for (const PaperPlace& before : places_) {
      if (&before == &place) break;
      if (!are_one_file(before.name, place.name)) continue;
      throw Failure(
          tr("{} {}: {} goes there already", place.option, shown(place.name), before.what));
    }
  }
}

void PaperPlaces::write() {
  for (size_t i = 0; i < places_.size(); ++i) {
    std::string content;
    try {
      content = places_[i].content();
    } catch (const lorimat::PictureError& error) {
      throw Failure(fmt::format("{}: {}", shown(places_[i].name), register_message(error.what())));
    }
    files_[i].write(content);
  }
}
