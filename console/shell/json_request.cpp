#include "console/shell/json_request.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "console/message/shown_text.h"

namespace lorimat::console {
namespace {

constexpr size_t kShownName = 60;  // bytes of a member's name

// The text, one byte at a time, so that one knows how far the parser has read.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, const char** furthest) : at_(at), furthest_(furthest) {}
  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    *furthest_ = ++at_;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }
  bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** furthest_;
};

// Where the first byte stands that begins no character of UTF-8, or ends one too early; the size
// where there is none. Its first byte tells of a character how many follow, and between what bounds
// the next of them lies: what is longer than need be, a surrogate or too high is none.
size_t FirstNoUtf8(std::string_view text) {
  size_t at = 0;
  while (at < text.size()) {
    const auto byte = [&text](size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char first = byte(at);
    const size_t more = first < 0x80    ? 0
                        : first < 0xC2  ? text.size()
                        : first < 0xE0  ? 1
                        : first < 0xF0  ? 2
                        : first <= 0xF4 ? 3
                                        : text.size();
    if (more >= text.size() - at) return at;
    for (size_t next = 1; next <= more; ++next) {
      const int lowest = next > 1 ? 0x80 : first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
      const int highest = next > 1 ? 0xBF : first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
      if (byte(at + next) < lowest || byte(at + next) > highest) return at;
    }
    at += more + 1;
  }
  return text.size();
}

// Whether this is a whole part of JSON, by itself or, ahead of the end of the text, without the
// byte by which the parser has found the end of a number.
bool IsToken(std::string_view part, bool at_end) {
  constexpr std::string_view kSigns = "{}[]";
  if (kSigns.find(part.front()) != kSigns.npos) return true;
  if (Json::accept(part)) return true;
  if (at_end) return false;
  part.remove_suffix(1);
  return !part.empty() && Json::accept(part);
}

// Takes the parts of a request as the parser finds them. What is nested is passed over, so that its
// depth takes no room. Of several errors the first is kept.
class RequestParts : public nlohmann::json_sax<Json> {
 public:
  RequestParts(std::string_view text, const char* const* furthest, JsonRequest* request)
      : text_(text), furthest_(furthest), request_(request) {}

  bool null() override { return Scalar("null"); }
  bool boolean(bool) override { return Scalar("true or false"); }
  bool number_float(number_float_t, const string_t&) override {
    RefuseValue("a number with a fraction or an exponent, or too large", NumberToken());
    return true;
  }
  bool number_integer(number_integer_t number) override { return WholeNumber(number); }
  bool number_unsigned(number_unsigned_t number) override { return WholeNumber(number); }
  bool binary(binary_t&) override { return Scalar("bytes"); }
  bool string(string_t& text) override {
    const size_t begin = token();
    if (depth_ == 1 && member_ == kId) {
      TakeId(text);
    } else if (depth_ == 1 && member_ == kLine) {
      TakeLine(text, begin);
    } else {
      RefuseValue("a text", begin);
    }
    return true;
  }

  bool start_object(std::size_t) override {
    const size_t begin = token();
    if (depth_ > 0) RefuseValue("an object", begin);
    ++depth_;
    return true;
  }
  bool key(string_t& name) override {
    const size_t begin = token();
    if (depth_ != 1) return true;
    member_ = name == "id" ? kId : name == "line" ? kLine : kOther;
    if (member_ == kOther) {
      Refuse(
          RequestError::kMemberUnknown,
          fmt::format("a request has no member '{}', but id and line", CutText(name, kShownName)),
          begin);
    } else if (++seen_[member_] > 1) {
      Refuse(RequestError::kMemberTwice, fmt::format("the member '{}' stands there twice", name),
             begin);
      // Which of them is meant cannot be told.
      if (member_ == kId) id_ = Json();
    }
    return true;
  }
  bool end_object() override {
    const size_t end = position() - 1;
    token();
    if (--depth_ > 0) return true;
    for (const auto& [member, name] : {std::pair(kId, "id"), std::pair(kLine, "line")}) {
      if (seen_[member] == 0) {
        Refuse(RequestError::kMemberMissing, fmt::format("the member '{}' is missing", name), end);
      }
    }
    return true;
  }
  bool start_array(std::size_t) override {
    const size_t begin = token();
    RefuseValue("an array", begin);
    ++depth_;
    return true;
  }
  bool end_array() override {
    token();
    --depth_;
    return true;
  }

  // What is wrong is told by the bytes alone.
  bool parse_error(std::size_t read_with_end, const std::string&,
                   const nlohmann::detail::exception& error) override {
    const size_t read = position();
    const size_t strange = FirstNoUtf8(text_);
    const size_t begin = std::min(token(), read);
    const std::string_view part = text_.substr(begin, read - begin);
    // The end was read as if it were a byte.
    const bool at_end = read_with_end > text_.size();
    // A number that is too large stops it, too, and is a part.
    constexpr int kSyntax = 101;
    const bool within = error.id == kSyntax && !part.empty() && !IsToken(part, at_end);
    const bool ends = at_end && (!within || part.front() == '"');
    std::string cause = "this is no JSON";
    // The parser stops at a byte within a part, or behind a part that is out of place.
    uint64_t column = within || part.empty() ? read : begin + 1;
    if (text_.find_first_not_of(" \t\r") == std::string_view::npos) {
      cause = "the line is blank, and no JSON";
      column = text_.size() + 1;
    } else if (strange < read) {
      cause = "a byte is no UTF-8";
      column = read;
    } else if (ends) {
      cause = "the JSON is not whole";
      column = text_.size() + 1;
    }
    // Nothing in front of it counts: the text as a whole is none.
    request_->error = {RequestError::kNotJson, std::move(cause), column};
    broken_ = true;
    return false;
  }

  void Finish() {
    if (!broken_) request_->id = std::move(id_);
  }

 private:
  enum Member { kId, kLine, kOther, kNone };

  size_t position() const { return static_cast<size_t>(*furthest_ - text_.data()); }

  // Where the part begins that the parser has just read: what stands between two of them is known.
  size_t token() {
    const size_t begin = text_.find_first_not_of(" \t\r\n:,", passed_);
    passed_ = position();
    return begin;
  }

  // The same of a number, whose end the parser sees by the byte behind it.
  size_t NumberToken() {
    const size_t begin = token();
    constexpr std::string_view kOfNumbers = "0123456789+-.eE";
    const bool ends = passed_ == text_.size();
    if (!ends || kOfNumbers.find(text_[passed_ - 1]) == kOfNumbers.npos) --passed_;
    return begin;
  }

  template <typename Number>
  bool WholeNumber(Number number) {
    const size_t begin = NumberToken();
    if (depth_ == 1 && member_ == kId) {
      TakeId(number);
    } else {
      RefuseValue("a number", begin);
    }
    return true;
  }

  bool Scalar(const char* what) {
    RefuseValue(what, token());
    return true;
  }

  void TakeId(Json value) {
    if (seen_[kId] == 1) id_ = std::move(value);
  }

  void TakeLine(const std::string& line, size_t begin) {
    if (const size_t nul = line.find('\0'); nul != std::string::npos) {
      Refuse(
          RequestError::kNulByte,
          fmt::format("a NUL byte stands in column {} of the line, and the library would read it "
                      "only up to there",
                      nul + 1),
          begin);
    } else if (const size_t feed = line.find('\n'); feed != std::string::npos) {
      Refuse(
          RequestError::kLineFeed,
          fmt::format("a line feed stands in column {} of the line: these are two lines", feed + 1),
          begin);
    }
    if (seen_[kLine] == 1) request_->line = line;
  }

  // A value of a kind that its place does not take. What stands in a nested value, and in a member
  // that is none, has been refused with it.
  void RefuseValue(const char* what, size_t begin) {
    if (depth_ == 0) {
      Refuse(RequestError::kNotAnObject, fmt::format("a request is an object, not {}", what),
             begin);
    } else if (depth_ == 1 && member_ == kId) {
      Refuse(RequestError::kWrongType,
             fmt::format("the id is {}; it has to be a text or a whole number", what), begin);
    } else if (depth_ == 1 && member_ == kLine) {
      Refuse(RequestError::kWrongType, fmt::format("the line is {}; it has to be a text", what),
             begin);
    }
  }

  void Refuse(RequestError::Kind kind, std::string cause, size_t begin) {
    if (!request_->error) request_->error = {kind, std::move(cause), begin + 1};
  }

  std::string_view text_;
  const char* const* furthest_;
  JsonRequest* request_;
  Json id_;
  size_t passed_ = 0;
  size_t depth_ = 0;
  Member member_ = kNone;
  int seen_[kNone] = {};
  bool broken_ = false;
};

}  // namespace

const char* RequestErrorName(RequestError::Kind kind) {
  static constexpr const char* kNames[] = {
      "too-long",   "not-json", "not-an-object", "member-twice", "member-unknown", "member-missing",
      "wrong-type", "nul-byte", "line-feed",     "fault",        "batch",          "output",
  };
  static_assert(std::size(kNames) == RequestError::kLast + 1);
  return kNames[kind];
}

JsonRequest ReadRequest(const SourceLine& source) {
  JsonRequest request;
  if (source.length > kLongestRequest) {
    request.error = {
        RequestError::kTooLong,
        fmt::format("the request has {} bytes; {} are the most", source.length, kLongestRequest),
        kLongestRequest + 1};
    return request;
  }
  const std::string& text = source.text;
  const char* furthest = text.data();
  RequestParts parts(text, &furthest, &request);
  Json::sax_parse(CountingIterator(text.data(), &furthest),
                  CountingIterator(text.data() + text.size(), &furthest), &parts);
  parts.Finish();
  return request;
}

}  // namespace lorimat::console
