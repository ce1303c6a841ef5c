#include "console/host/line_recording.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "console/check/password_mask.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"

namespace lorimat::console {
namespace {

constexpr uint64_t kMebibyte = uint64_t{1} << 20;

}  // namespace

class LineRecording::FileSink : public recording::Sink {
 public:
  FileSink(const std::string& file, const Streams& streams) : file_(Opened(file, streams)) {
    if (!file_.is_open()) {
      throw Failure(Tr("{}: cannot be opened for writing: {}", Shown(file), SystemMessage(errno)));
    }
    // It is for its owner, also where a file of the name was there.
    struct stat status;
    if (!Streams::IsOutput(file) && fstat(file_.get(), &status) == 0 && S_ISREG(status.st_mode)) {
      static_cast<void>(fchmod(file_.get(), 0600));
    }
  }
  int Write(std::string_view bytes) noexcept override {
    return WriteAll(file_.get(), bytes) ? 0 : errno;
  }

 private:
  static int Opened(const std::string& file, const Streams& streams) {
    if (Streams::IsOutput(file)) {
      return fcntl(streams.output_descriptor(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    }
    return open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  }

  Descriptor file_;
};

LineRecording::LineRecording(const RecordOptions& options, Library& library, const Device& device,
                             const std::string& definition_file, Streams& streams)
    : options_(options), streams_(streams) {
  if (options_.file.empty()) return;
  if (!options_.secrets) {
    // What the library is about to refuse has no words.
    try {
      words_.emplace(definition_file);
    } catch (const Failure&) {
      words_.reset();
    }
  }
  Begin(device, VersionText(library.identity().version));
  library.Record(*recorder_);
}

LineRecording::LineRecording(const RecordOptions& options, const Device& device, Streams& streams)
    : options_(options), streams_(streams) {
  if (!options_.file.empty()) Begin(device, {});
}

void LineRecording::Begin(const Device& device, std::string library) {
  sink_ = std::make_unique<FileSink>(options_.file, streams_);
  recording::RecorderSettings settings;
  settings.made_by = "lorimat " LORIMAT_VERSION;
  settings.library = std::move(library);
  settings.device = fmt::format("{} {}", device.name(), device.version());
  settings.limit = options_.limit * kMebibyte;
  settings.with_secrets = options_.secrets;
  settings.exceptions = [&device] { return device.exceptions(); };
  settings.line_blanking = [this](std::string_view line) {
    return WithoutSecrets(words_ ? &*words_ : nullptr, line);
  };
  recorder_.emplace(*sink_, std::move(settings));
}

LineRecording::~LineRecording() { Finish(); }

bool LineRecording::Finish() {
  if (!recorder_) return true;
  recorder_->Finish();
  const recording::RecordingEnd end = recorder_->end();
  const bool whole =
      end == recording::RecordingEnd::kWhole || end == recording::RecordingEnd::kLimit;
  if (std::exchange(finished_, true)) return whole;
  const std::string file = Shown(options_.file);
  switch (end) {
    case recording::RecordingEnd::kLimit:
      TellNote(streams_,
               Tr("{}: the recording ended at its limit of {} MiB", file, options_.limit));
      break;
    case recording::RecordingEnd::kDisk:
      TellError(streams_, Tr("{}: the recording could not be written on: {}", file,
                             SystemMessage(recorder_->error())));
      break;
    case recording::RecordingEnd::kMemory:
      TellError(streams_, Tr("{}: the recording ended: there is not enough memory", file));
      break;
    default:
      break;
  }
  return whole;
}

}  // namespace lorimat::console
