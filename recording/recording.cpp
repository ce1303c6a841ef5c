#include "recording/recording.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "recording/recorder.h"

namespace recording {
namespace {

using conversation::Failure;

constexpr std::string_view kFirstWord = "recording: ";
constexpr std::string_view kEndWord = "end: ";
constexpr uint64_t kMostBytes = uint64_t{1} << 30;

std::string_view FirstLine(std::string_view text) { return text.substr(0, text.find('\n')); }

// The last line that is whole, and where it begins.
std::pair<std::string_view, size_t> LastLine(std::string_view text) {
  const size_t feed = text.rfind('\n');
  if (feed == std::string_view::npos) return {{}, 0};
  const size_t before = feed == 0 ? std::string_view::npos : text.rfind('\n', feed - 1);
  const size_t begin = before == std::string_view::npos ? 0 : before + 1;
  return {text.substr(begin, feed - begin), begin};
}

int64_t LinesIn(std::string_view text) { return std::count(text.begin(), text.end(), '\n'); }

// What a recording's end says of the lines ahead of it.
struct End {
  bool at_limit = false;
  int64_t lines = 0;
  std::string digest;
};

// "whole 12 DIGEST"
std::optional<End> ReadEnd(std::string_view written) {
  const size_t blank = written.find(' ');
  const size_t second = blank == std::string_view::npos ? blank : written.find(' ', blank + 1);
  if (second == std::string_view::npos) return std::nullopt;
  const std::string_view word = written.substr(0, blank);
  const std::string lines(written.substr(blank + 1, second - blank - 1));
  if (word != "whole" && word != "limit") return std::nullopt;
  if (lines.empty() || lines.size() > 15 ||
      !std::all_of(lines.begin(), lines.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return std::nullopt;
  }
  return End{word == "limit", std::stoll(lines), std::string(written.substr(second + 1))};
}

class Reader {
 public:
  explicit Reader(const std::string& path) { read_.script.path = path; }

  Recording Read(const std::string& text) {
    const std::string_view first = FirstLine(text);
    if (!first.starts_with(kFirstWord)) {
      // A cut within the first word leaves nothing that could be told from another text.
      Parse(text, false);
      return std::move(read_);
    }
    read_.is_recording = true;
    const std::string_view version = first.substr(kFirstWord.size());
    if (version != std::to_string(kFormat)) {
      Set(RecordingCause::kForeignVersion,
          version.size() < 10 ? std::atoll(std::string(version).c_str()) : 0);
      return std::move(read_);
    }
    const auto [last, begin] = LastLine(text);
    const bool ended = last.starts_with(kEndWord) && text.back() == '\n';
    const std::optional<End> end =
        ended ? ReadEnd(last.substr(kEndWord.size())) : std::optional<End>();
    const RecordingFault ending = EndingOf(text, ended, begin, end);
    read_.at_limit = end && end->at_limit;
    const size_t whole = text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1;
    Parse(text.substr(0, whole), !ended || read_.at_limit);
    if (!read_.fault) read_.fault = ending;
    TakeNotes();
    return std::move(read_);
  }

 private:
  static RecordingFault EndingOf(const std::string& text, bool ended, size_t begin,
                                 const std::optional<End>& end) {
    const std::string_view ahead = std::string_view(text).substr(0, ended ? begin : text.size());
    const int64_t lines = LinesIn(ahead);
    if (!ended) {
      const size_t rest = ahead.rfind('\n') == std::string_view::npos ? 0 : ahead.rfind('\n') + 1;
      // A call's arguments are written ahead of it.
      std::string at_work;
      if (ahead.substr(rest).starts_with("< ")) at_work = ahead.substr(rest + 2);
      return {RecordingCause::kCut, lines, at_work};
    }
    if (!end || end->lines != lines || end->digest != DigestOf(ahead)) {
      return {RecordingCause::kEdited, lines + 1, {}};
    }
    return {};
  }

  void Parse(const std::string& text, bool may_be_cut) {
    try {
      read_.script = conversation::ReadConversation(read_.script.path, text, may_be_cut);
    } catch (const Failure& failure) {
      Set(RecordingCause::kNotUnderstood, failure.line, failure.what());
    }
  }

  void TakeNotes() {
    for (const conversation::Note& note : read_.script.notes) {
      if (note.word == "made-by") read_.made_by = note.value;
      if (note.word == "library") read_.library = note.value;
      if (note.word == "device") read_.device = note.value;
      if (note.word == "secrets") read_.blanked = note.value != "shown";
      if (note.word == "at" && read_.first_time.empty()) read_.first_time = note.value;
    }
  }

  void Set(RecordingCause cause, int64_t number, const std::string& text = {}) {
    read_.fault = {cause, number, text};
  }

  Recording read_;
};

}  // namespace

Recording ReadRecordingText(const std::string& path, const std::string& text) {
  return Reader(path).Read(text);
}

Recording ReadRecording(const std::string& path) {
  const auto unreadable = [](RecordingCause cause, int64_t number) {
    Recording recording;
    recording.fault = {cause, number, {}};
    return recording;
  };
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) return unreadable(RecordingCause::kUnreadable, errno);
  std::string text;
  char piece[1 << 16];
  while (file.read(piece, sizeof piece) || file.gcount() > 0) {
    text.append(piece, static_cast<size_t>(file.gcount()));
    if (text.size() > kMostBytes) return unreadable(RecordingCause::kTooLarge, kMostBytes);
  }
  if (file.bad()) return unreadable(RecordingCause::kUnreadable, errno != 0 ? errno : EIO);
  return ReadRecordingText(path, text);
}

}  // namespace recording
