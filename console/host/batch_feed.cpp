#include "console/host/batch_feed.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {
namespace {

// The library drops what stands behind. Any pipe has room for as much.
constexpr size_t kFedOfLine = kLongestLine + 2;

}  // namespace

BatchFeed::BatchFeed(const std::string& file, RegisterClient& client, LineBegins begins)
    : client_(client), begins_(std::move(begins)), reader_(file, &interrupted) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw Failure(Tr("no pipe for the lines of the batch: {}", SystemMessage(errno)));
  }
  out_ = Descriptor(ends[0]);
  in_ = Descriptor(ends[1]);
  is_fed_ = reader_.is_regular() && client_.has_traced();
  if (!is_fed_) return;
  PutNext();
  client_.OnTrace([this] { Traced(); });
}

BatchFeed::~BatchFeed() { client_.OnTrace(nullptr); }

std::string BatchFeed::name() const { return fmt::format("/proc/self/fd/{}", out_.get()); }

const std::string& BatchFeed::failure() const {
  if (thrown_) std::rethrow_exception(thrown_);
  return failure_;
}

// The library traces something in each line that it runs, and reads nothing meanwhile. Nothing may
// leave it waiting for a line that does not come.
void BatchFeed::Traced() {
  if (!ahead_) return;
  try {
    if (is_taken()) {
      Begin();
    } else if (interrupted != 0) {
      Stop();
    }
  } catch (...) {
    thrown_ = std::current_exception();
    ahead_.reset();
    in_ = Descriptor();
  }
}

void BatchFeed::Begin() {
  const std::string line = *std::exchange(ahead_, std::nullopt);
  if (begins_) begins_(lines_ + 1, line);
  ++lines_;
  PutNext();
}

bool BatchFeed::is_taken() const {
  int bytes = 0;
  return ioctl(out_.get(), FIONREAD, &bytes) == 0 && bytes == 0;
}

void BatchFeed::PutNext() {
  SourceLine line;
  bool is_there = false;
  try {
    is_there = interrupted == 0 && reader_.Next(&line);
  } catch (const Failure& failure) {
    failure_ = failure.what();
  }
  if (is_there) {
    // Behind a line that the file ends with a line feed alone, the library takes this carriage
    // return off in the place of one that belongs to the line.
    const std::string bytes = line.text.substr(0, kFedOfLine) + "\r\n";
    if (write(in_.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size())) {
      ahead_ = std::move(line.text);
      return;
    }
    failure_ = SystemMessage(errno);
  } else if (interrupted != 0) {
    stopped_behind_ = lines_;
  }
  in_ = Descriptor();
}

// The line that the library would read next is taken back.
void BatchFeed::Stop() {
  std::array<char, kFedOfLine + 2> bytes;
  while (read(out_.get(), bytes.data(), bytes.size()) > 0) {
  }
  ahead_.reset();
  stopped_behind_ = lines_;
  in_ = Descriptor();
}

}  // namespace lorimat::console
