#include "recording/recorder.h"

#include <openssl/evp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "recording/text_rooms.h"

namespace recording {
namespace {

using conversation::CallSlip;
using conversation::Escape;
using conversation::Out;
using conversation::Quote;
using conversation::Value;

// In the place of a result.
constexpr const char* kThrows = "throws";
// The last line.
constexpr uint64_t kRoomForEnd = 128;
// A call that takes longer is told with its time.
constexpr int64_t kLongCall = 10'000;
constexpr int64_t kMicrosPerMilli = 1000;
constexpr int64_t kMicrosPerSecond = 1'000'000;

// What can be told of a pointer: behind the end of a text there is nothing.
std::string_view Told(const Out& out, const char* bytes, size_t size) {
  return {bytes, out.is_text ? strnlen(bytes, size) : size};
}

enum class ResultKind : uint8_t { kNone, kFlag, kCode };

template <typename Result>
constexpr ResultKind KindOf() {
  if (std::is_void_v<Result>) return ResultKind::kNone;
  return std::is_same_v<Result, bool> ? ResultKind::kFlag : ResultKind::kCode;
}

constexpr ResultKind kResultKinds[] = {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) KindOf<Result>(),
#include "rpccommon/client/rtfclientoperations.inc"
};

std::string ShownResult(ClientOperation operation, int result) {
  switch (kResultKinds[static_cast<size_t>(operation)]) {
    case ResultKind::kNone:
      return "";
    case ResultKind::kFlag:
      return result != 0 ? "true" : "false";
    default:
      return std::to_string(result);
  }
}

// Bare where that reads the same.
std::string ShownAnswer(const std::string& text) {
  const bool plain = !text.empty() && text[0] != '"' && text[0] != '*' && text.front() != ' ' &&
                     text.back() != ' ' && std::all_of(text.begin(), text.end(), [](char c) {
                       return c >= ' ' && c <= '~' && c != '\\' && c != '{';
                     });
  return plain ? text : Quote(text);
}

// A line of a block. One that would be taken for a table's is none.
std::string BlockLine(std::string_view line) {
  std::string shown = Escape(line);
  const size_t first = shown.find_first_not_of(' ');
  if (first != std::string::npos && shown[first] == '%') shown.replace(first, 1, "\\x25");
  return "  " + shown + "\n";
}

}  // namespace

// SHA-256 of all that was written.
class Digest {
 public:
  Digest() : context_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
    if (!context_ || EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) != 1) {
      throw std::bad_alloc();
    }
  }
  void Add(std::string_view bytes) {
    if (EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) != 1) throw std::bad_alloc();
  }
  std::string Hex() {
    unsigned char bytes[EVP_MAX_MD_SIZE];
    unsigned size = 0;
    if (EVP_DigestFinal_ex(context_.get(), bytes, &size) != 1) throw std::bad_alloc();
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned i = 0; i < size; ++i) {
      hex += kDigits[bytes[i] >> 4];
      hex += kDigits[bytes[i] & 15];
    }
    return hex;
  }

 private:
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
};

std::string Block(std::string_view directive, std::string_view contents) {
  std::string text(directive);
  const bool by_lines =
      contents.size() > 1 && contents.back() == '\n' && contents[contents.size() - 2] != '\n';
  text += by_lines ? ": |\n" : ": bytes|\n";
  while (!contents.empty()) {
    const size_t feed = std::min(contents.find('\n'), contents.size() - 1);
    const std::string_view line = contents.substr(0, feed + (by_lines ? 0 : 1));
    text += line.empty() ? "\n" : BlockLine(line);
    contents.remove_prefix(feed + 1);
  }
  return text;
}

std::string DigestOf(std::string_view bytes) {
  Digest digest;
  digest.Add(bytes);
  return digest.Hex();
}

template <typename Work>
bool Recorder::Try(Work&& work) noexcept {
  if (end_ != RecordingEnd::kNone) return false;
  try {
    work();
    return end_ == RecordingEnd::kNone;
  } catch (...) {
    // Nothing but memory fails there.
    End(RecordingEnd::kMemory, 0);
    return false;
  }
}

Recorder::Recorder(Sink& sink, RecorderSettings settings)
    : sink_(sink),
      settings_(std::move(settings)),
      secrets_(settings_.line_blanking),
      client_(*this),
      digest_(std::make_unique<Digest>()) {
  Try([&] { WriteHead(); });
}

Recorder::~Recorder() { Finish(); }

RtfClientInterface& Recorder::Wrap(RtfClientInterface& device) {
  device_ = &device;
  return client_;
}

void Recorder::WriteHead() {
  std::string head = "recording: " + std::to_string(kFormat) + "\n";
  const auto tell = [&head](const char* word, const std::string& value) {
    if (!value.empty()) head += std::string(word) + ": " + Escape(value) + "\n";
  };
  tell("made-by", settings_.made_by);
  tell("library", settings_.library);
  tell("device", settings_.device);
  tell("secrets", settings_.with_secrets ? "shown" : "blanked");
  Write(head);
}

void Recorder::InitBegins(std::string_view language) noexcept {
  Try([&] {
    secrets_.Begin();
    Write("at: " + Now() + "\n" + Block("language", language) + "init: below\n");
  });
}

void Recorder::Callback(std::string_view arguments, long answer) noexcept {
  Try([&] {
    Write("< EcrIo(" + std::string(arguments) + ") -> " + std::to_string(answer) + "\n");
  });
}

void Recorder::InitEnds(long code) noexcept {
  Try([&] { WriteRest("= " + std::to_string(code) + "\n"); });
}

void Recorder::LineBegins(std::string_view line) noexcept {
  Try([&] {
    secrets_.Begin();
    const std::string shown =
        Escape(settings_.with_secrets ? std::string(line) : secrets_.Line(line));
    Write("at: " + Now() + "\n>" + (shown.empty() ? "" : " " + shown) + "\n");
  });
}

void Recorder::LineEnds(long code, std::string_view answer) noexcept {
  Try([&] {
    const std::string text = settings_.with_secrets ? std::string(answer) : secrets_.Text(answer);
    WriteRest("= " + std::to_string(code) + " " + ShownAnswer(text) + "\n");
  });
}

void Recorder::Closed(long answer) noexcept {
  Try([&] { Write("! TradClose() -> " + std::to_string(answer) + "\n"); });
}

void Recorder::Finish() noexcept {
  if (end_ == RecordingEnd::kNone) End(RecordingEnd::kWhole, 0);
}

int Recorder::Answer(ClientOperation operation, const CallSlip& slip,
                     const conversation::Forward& forward) {
  if (operation == ClientOperation::kLogTrace || operation == ClientOperation::kLogError) {
    Try([&] { TakeTrace(operation == ClientOperation::kLogError, slip); });
    return forward(*device_);
  }
  const bool told = Try([&] { BeginCall(operation, slip); });
  const int64_t begin = told ? Ticks() : 0;
  const uint64_t exceptions = Exceptions();
  int result = 0;
  try {
    result = forward(*device_);
  } catch (...) {
    if (told) Try([&] { EndCall(operation, slip, kThrows, false, Ticks() - begin); });
    throw;
  }
  if (told) {
    Try([&] {
      const bool threw = Exceptions() != exceptions;
      EndCall(operation, slip, threw ? std::string(kThrows) : ShownResult(operation, result),
              result == 0 && !threw, Ticks() - begin);
    });
  }
  return result;
}

int Recorder::AnswerUntold(ClientOperation, const conversation::Forward& forward) {
  if (end_ == RecordingEnd::kNone) End(RecordingEnd::kMemory, 0);
  return forward(*device_);
}

void Recorder::TakeTrace(bool error, const CallSlip& slip) {
  const Value& text = slip.arguments[0];
  if (text.kind != Value::kText) return;
  const std::string shown = Escape(settings_.with_secrets ? text.text : secrets_.Text(text.text));
  Write((error ? "~!" : "~") + (shown.empty() ? "" : " " + shown) + "\n");
}

void Recorder::BeginCall(ClientOperation operation, const CallSlip& slip) {
  before_.clear();
  for (size_t i = 0; i < slip.outs.size(); ++i) {
    const Out& out = slip.outs[i];
    const size_t size = out.is_text ? TextRoom(operation, slip, i) : out.size;
    before_.push_back(out.pointer == nullptr
                          ? std::string()
                          : std::string(static_cast<const char*>(out.pointer), size));
  }
  std::vector<Value> arguments = slip.arguments;
  if (!settings_.with_secrets) secrets_.Arguments(operation, arguments);
  Write("< " + std::string(ClientOperationName(operation)) + "(" + conversation::Shown(arguments) +
        ")");
}

void Recorder::EndCall(ClientOperation operation, const CallSlip& slip, const std::string& result,
                       bool success, int64_t micros) {
  std::vector<Value> outs = OutsOf(slip, success);
  if (!settings_.with_secrets) secrets_.Outs(operation, slip.arguments, outs);
  std::string text;
  if (!result.empty()) text = " -> " + result;
  if (!outs.empty()) text += " [" + conversation::Shown(outs) + "]";
  text += "\n";
  if (micros >= kLongCall) text += "took: " + std::to_string(micros / kMicrosPerMilli) + " ms\n";
  WriteRest(text);
}

// A call that failed may have left its pointers as the caller had them, with values that nobody has
// set: what it did not change is not told.
std::vector<Value> Recorder::OutsOf(const CallSlip& slip, bool success) {
  std::vector<Value> outs;
  bool any = success;
  for (size_t i = 0; i < slip.outs.size(); ++i) {
    const Out& out = slip.outs[i];
    const char* bytes = static_cast<const char*>(out.pointer);
    const std::string& before = before_[i];
    if (bytes == nullptr ||
        (!success && Told(out, bytes, before.size()) == Told(out, before.data(), before.size()))) {
      outs.push_back(Value::Word("kept"));
      continue;
    }
    any = true;
    if (out.is_text && settings_.guard_texts) {
      outs.push_back(Value::Text(std::string(Told(out, bytes, before.size()))));
    } else {
      outs.push_back(out.read(bytes));
    }
  }
  if (!any) outs.clear();
  return outs;
}

void Recorder::Write(const std::string& text) {
  if (settings_.limit != 0 && size_ + text.size() + kRoomForEnd > settings_.limit) {
    End(RecordingEnd::kLimit, 0);
    return;
  }
  WriteRest(text);
}

void Recorder::WriteRest(const std::string& text) {
  const int error = sink_.Write(text);
  if (error != 0) {
    End(RecordingEnd::kDisk, error);
    return;
  }
  digest_->Add(text);
  size_ += text.size();
  lines_ += static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

void Recorder::End(RecordingEnd end, int error) noexcept {
  end_ = end;
  error_ = error;
  // A disk that failed gets no further line, and the file is one that was cut off.
  if (end != RecordingEnd::kWhole && end != RecordingEnd::kLimit) return;
  try {
    const std::string text = std::string("end: ") +
                             (end == RecordingEnd::kWhole ? "whole " : "limit ") +
                             std::to_string(lines_) + " " + digest_->Hex() + "\n";
    error_ = sink_.Write(text);
    if (error_ != 0) end_ = RecordingEnd::kDisk;
    size_ += text.size();
  } catch (...) {
    end_ = RecordingEnd::kMemory;
  }
}

std::string Recorder::Now() const {
  int64_t micros = 0;
  if (settings_.now) {
    micros = settings_.now();
  } else {
    micros = std::chrono::duration_cast<std::chrono::microseconds>(
                 std::chrono::system_clock::now().time_since_epoch())
                 .count();
  }
  const std::time_t seconds = micros / kMicrosPerSecond;
  std::tm time{};
  gmtime_r(&seconds, &time);
  char text[64];
  const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &time);
  char rest[32];
  std::snprintf(rest, sizeof rest, ".%03dZ",
                static_cast<int>(micros % kMicrosPerSecond / kMicrosPerMilli));
  return std::string(text, length) + rest;
}

uint64_t Recorder::Exceptions() const { return settings_.exceptions ? settings_.exceptions() : 0; }

int64_t Recorder::Ticks() const {
  if (settings_.ticks) return settings_.ticks();
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace recording
