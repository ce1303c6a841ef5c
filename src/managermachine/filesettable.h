// A sink for the names of output files. A host that builds its own
// EcrCmdCommand may give it one: before a report or an export goes to a file,
// the handlers lower-case the file's name and hand it over. The object stays the
// host's.
#pragma once

class FileSettable {
 public:
  virtual ~FileSettable() = default;
  virtual void set_filename(char* filename) = 0;
};
