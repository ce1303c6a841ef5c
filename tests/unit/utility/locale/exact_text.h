// Texts of exactly their size, so that the sanitizer sees a step behind their end.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

// A text of exactly its characters, without a terminator.
class ExactText {
 public:
  explicit ExactText(const std::string& text) : text_(new char[text.size()]) {
    std::memcpy(text_.get(), text.data(), text.size());
  }
  const char* get() const { return text_.get(); }

 private:
  std::unique_ptr<char[]> text_;
};

// A text of exactly n bytes to write to.
class ExactBuffer {
 public:
  explicit ExactBuffer(size_t n) : text_(new char[n]), n_(n) { std::memset(text_.get(), '#', n); }
  char* get() { return text_.get(); }
  std::string text() const { return std::string(text_.get(), strnlen(text_.get(), n_)); }
  bool closed() const { return strnlen(text_.get(), n_) < n_; }

 private:
  std::unique_ptr<char[]> text_;
  size_t n_;
};
