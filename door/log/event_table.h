// The table of events in the file of the log. Its user sees to it that one thread is at it, and
// that what is written is part of a unit of work.
#pragma once

#include <optional>
#include <string>

#include "door/log/event.h"
#include "register/storage/database.h"

namespace lorimat::door {

class EventTable {
 public:
  explicit EventTable(Database& database) : database_(database) {}

  void Make();
  // A step of a job, by its number, is told; with its document, where it is confirmed with one.
  void AddStep(int64_t job, int64_t step, bool has_document);
  void AddText(EventKind kind, int64_t time, const std::string& text);
  // Of each unit of work that adds some, behind all of them: old ones go.
  void Prune();

  // The newest one; 0 before the first.
  int64_t Last();
  // At most so many behind that number. For a desk what belongs to another one is left out.
  EventPage Read(int64_t after, int limit, const std::optional<std::string>& desk);

 private:
  LogEvent Load(Statement& row);

  Database& database_;
};

}  // namespace lorimat::door
