// The lines that were typed in the shell, kept from one session to the next in a file of the
// user's own: one line each, the bytes as they were typed, the oldest first.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace lorimat::console {

class ShellHistory {
 public:
  static constexpr size_t kMostLines = 1000;

  // Reads the file; what is there beyond kMostLines is left out, and taken off the file. A file
  // that cannot be read or written is noted in failure(), and the session keeps its own lines.
  explicit ShellHistory(const std::string& file);

  const std::vector<std::string>& lines() const { return lines_; }
  // Adds a line here and at the end of the file, so that a session that is killed loses nothing.
  // Lines that begin with a blank, repeat the one before or are too long to run are not kept.
  // Returns whether it was.
  bool Add(const std::string& line);
  // Why the lines cannot be kept, with the file; empty when they can.
  const std::string& failure() const { return failure_; }

 private:
  void Read();
  void Rewrite();
  void Fail(const std::string& cause);

  std::string file_;
  std::string failure_;
  std::vector<std::string> lines_;
};

// $XDG_STATE_HOME/lorimat/history, or ~/.local/state/lorimat/history; empty when neither variable
// names a folder.
std::string HistoryFile();

}  // namespace lorimat::console
