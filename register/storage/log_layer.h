// A layer below SQLite that writes a unit of work into the log by one call of the system. SQLite
// itself makes two for each page, which cost more than the pages.
#pragma once

namespace lorimat {

class LogLayer {
 public:
  // For sqlite3_open_v2, behind Register. All files but logs are the usual layer's own, whichever
  // that is when they are opened.
  static constexpr char kName[] = "lorimat-log";

  // For the xFileControl of a log, behind a unit that was taken back: SQLite does not tell the log.
  // The usual layer does not know it, and holds nothing.
  static constexpr int kTakenBack = 1000;

  // Makes it known. False when there is no memory for it, or no room in it for the usual layer's
  // files: then the usual layer does as well.
  static bool Register();
};

}  // namespace lorimat
