// The lines of a batch on their way to the library, which runs it by itself and has no word that
// stops it: it opens a pipe in the place of the file, and the console puts each line in when the
// one ahead of it was taken out. So it knows the line at work, and a pipe that ends ends the batch,
// in the library's own order, with no line behind it having any effect.
//
// (A register that refuses the lines that are left would not do: the library runs them all the
// same. It empties the files that they name, takes over the settings that they make, and may
// believe that a document is open, so that the next sale opens none.)
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>

#include "console/host/register_client.h"
#include "console/terminal/line_reader.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

class BatchFeed {
 public:
  // Told of each line when it begins, and so behind the one before it, with its number from 1.
  using LineBegins = std::function<void(uint64_t number, const std::string& line)>;

  // Opens the file, and throws Failure when that cannot be done or there is no pipe. The client has
  // to outlive this object; it hears of each line that the library runs.
  BatchFeed(const std::string& file, RegisterClient& client, LineBegins begins);
  ~BatchFeed();
  BatchFeed(const BatchFeed&) = delete;
  BatchFeed& operator=(const BatchFeed&) = delete;

  // Whether the file can be fed: what is no regular file may have its next line only when the last
  // one has run, and a library that traces nothing would wait for its next line for ever.
  bool is_fed() const { return is_fed_; }
  // What the library is to open.
  std::string name() const;

  // How many lines of the batch have begun, empty ones too.
  uint64_t lines() const { return lines_; }
  // The last line of the batch that ran, after Ctrl-C; none when the batch ran to its end.
  std::optional<uint64_t> stopped_behind() const { return stopped_behind_; }
  // Behind the run: why the file could not be read to its end; empty when it was. Throws what was
  // thrown within the library, such as std::bad_alloc, which ended the batch.
  const std::string& failure() const;

 private:
  void Traced();
  void Begin();
  void PutNext();
  void Stop();
  bool is_taken() const;

  RegisterClient& client_;
  LineBegins begins_;
  LineReader reader_;
  Descriptor out_;  // the end that the library opens once more
  Descriptor in_;
  std::optional<std::string> ahead_;  // the line that was put in last, until it begins
  uint64_t lines_ = 0;
  std::optional<uint64_t> stopped_behind_;
  bool is_fed_ = false;
  std::string failure_;
  std::exception_ptr thrown_;
};

}  // namespace lorimat::console
