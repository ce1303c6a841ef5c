#include "register/storage/work_watch.h"

#include <sqlite3.h>

#include <utility>

namespace lorimat {
namespace {

// Steps of SQLite's machine between two questions: a fraction of a millisecond.
constexpr int kSteps = 10000;

}  // namespace

WorkWatch::WorkWatch(Database& database, std::function<bool()> goes_on)
    : database_(database), goes_on_(std::move(goes_on)) {
  sqlite3_progress_handler(database_.handle_.get(), kSteps, &WorkWatch::Ask, this);
}

WorkWatch::~WorkWatch() { sqlite3_progress_handler(database_.handle_.get(), 0, nullptr, nullptr); }

int WorkWatch::Ask(void* watch) noexcept {
  try {
    return static_cast<WorkWatch*>(watch)->goes_on_() ? 0 : 1;
  } catch (...) {
    // Without memory to ask the work goes on. Nothing may be thrown through SQLite.
    return 0;
  }
}

}  // namespace lorimat
