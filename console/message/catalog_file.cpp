#include "console/message/catalog_file.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace lorimat::console {
namespace {

constexpr uint32_t kMagic = 0x950412DE;
constexpr uint64_t kHeaderSize = 28;
constexpr uint64_t kEntrySize = 8;  // of a table of texts: length and place
// Far more than all messages of the program in the longest language.
constexpr std::streamsize kLargestFile = 8 << 20;
constexpr size_t kLongestPluralRule = 500;

uint32_t InOtherOrder(uint32_t number) {
  return number >> 24 | (number >> 8 & 0xFF00) | (number << 8 & 0xFF0000) | number << 24;
}

bool IsPrime(uint32_t number) {
  for (uint32_t divisor = 2; divisor <= number / divisor; ++divisor) {
    if (number % divisor == 0) return false;
  }
  return number > 1;
}

// Whether all is UTF-8 and may be shown: line feeds are the only control characters.
bool IsShowable(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    const unsigned char lead = static_cast<unsigned char>(text[at]);
    const size_t size = lead < 0x80                   ? 1
                        : lead >= 0xC2 && lead < 0xE0 ? 2
                        : lead >= 0xE0 && lead < 0xF0 ? 3
                        : lead >= 0xF0 && lead < 0xF5 ? 4
                                                      : 0;
    if (size == 0 || text.size() - at < size) return false;
    if ((lead < 0x20 && lead != '\n') || lead == 0x7F) return false;
    for (size_t i = 1; i < size; ++i) {
      if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return false;
    }
    const unsigned char second = size > 1 ? static_cast<unsigned char>(text[at + 1]) : 0;
    // Longer than need be, surrogates, beyond the last character, and the controls above 0x7F.
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
        (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90) ||
        (lead == 0xC2 && second < 0xA0)) {
      return false;
    }
    at += size;
  }
  return true;
}

// The line "NAME: VALUE" of a catalog's header.
std::string_view HeaderLine(std::string_view header, std::string_view name) {
  while (!header.empty()) {
    const std::string_view line = header.substr(0, header.find('\n'));
    if (line.substr(0, name.size()) == name) return line.substr(name.size());
    header.remove_prefix(std::min(line.size() + 1, header.size()));
  }
  return {};
}

// A rule for plurals, as "nplurals=2; plural=(n != 1);". It may take remainders, of a number that
// is written there and not 0, and no quotients.
bool IsSoundPluralRule(std::string_view rule) {
  if (rule.size() > kLongestPluralRule) return false;
  constexpr std::string_view kKnown = "nplurals=; ()<>=!&|?:%0123456789";
  for (size_t at = 0; at < rule.size(); ++at) {
    if (kKnown.find(rule[at]) == std::string_view::npos) return false;
    if (rule[at] != '%') continue;
    const size_t digit = std::min(rule.find_first_not_of(' ', at + 1), rule.size());
    const std::string_view divisor = rule.substr(digit, 1);
    if (divisor.empty() || divisor < "1" || divisor > "9") return false;
  }
  return true;
}

}  // namespace

std::optional<CatalogFile> CatalogFile::Read(const std::string& path) {
  // A pipe would keep the program waiting.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const std::streamsize size = file ? std::streamsize(file.tellg()) : -1;
  if (size < 0 || size > kLargestFile) return std::nullopt;
  std::string bytes(static_cast<size_t>(size), '\0');
  file.seekg(0);
  if (!file.read(bytes.data(), size)) return std::nullopt;
  return Parse(std::move(bytes));
}

std::optional<CatalogFile> CatalogFile::Parse(std::string bytes) {
  CatalogFile file(std::move(bytes));
  if (file.bytes_.size() < kHeaderSize) return std::nullopt;
  file.swapped_ = file.NumberAt(0) == InOtherOrder(kMagic);
  if (file.NumberAt(0) != kMagic) return std::nullopt;
  file.count_ = file.NumberAt(8);
  file.originals_ = file.NumberAt(12);
  file.translations_ = file.NumberAt(16);
  if (!file.IsSound()) return std::nullopt;
  return file;
}

uint32_t CatalogFile::NumberAt(uint64_t place) const {
  uint32_t number = 0;
  std::memcpy(&number, bytes_.data() + place, sizeof number);
  return swapped_ ? InOtherOrder(number) : number;
}

std::string_view CatalogFile::TextAt(uint32_t table, uint32_t index) const {
  const uint64_t entry = table + index * kEntrySize;
  return std::string_view(bytes_).substr(NumberAt(entry + 4), NumberAt(entry));
}

bool CatalogFile::IsSound() const {
  const uint32_t version = NumberAt(4);
  return version == 0 && count_ != 0 && originals_ % 4 == 0 && translations_ % 4 == 0 &&
         HasSoundTexts() && HasSoundHashes() && HasSoundHeader();
}

bool CatalogFile::HasSoundTexts() const {
  for (const uint32_t table : {originals_, translations_}) {
    if (!IsInside(table, count_ * kEntrySize)) return false;
    for (uint32_t i = 0; i < count_; ++i) {
      const uint64_t entry = table + i * kEntrySize;
      const uint64_t length = NumberAt(entry);
      const uint64_t place = NumberAt(entry + 4);
      // With the NUL behind it.
      if (!IsInside(place, length + 1) || bytes_[place + length] != '\0') return false;
    }
  }
  for (uint32_t i = 0; i < count_; ++i) {
    // The C library looks for the first part of each.
    const char* text = TextAt(originals_, i).data();
    if (i > 0 && std::strcmp(TextAt(originals_, i - 1).data(), text) >= 0) return false;
    std::string_view forms = TextAt(translations_, i);
    for (size_t end; (end = forms.find('\0')) != std::string_view::npos;) {
      if (!IsShowable(forms.substr(0, end))) return false;
      forms.remove_prefix(end + 1);
    }
    if (!IsShowable(forms)) return false;
  }
  return true;
}

// The search goes on until it meets a place that is free. Steps of any width come by every place
// when their number is a prime.
bool CatalogFile::HasSoundHashes() const {
  const uint32_t size = NumberAt(20);
  const uint32_t table = NumberAt(24);
  if (size <= 2) return true;
  if (table % 4 != 0 || !IsInside(table, uint64_t{size} * 4) || !IsPrime(size)) return false;
  bool has_free = false;
  for (uint32_t i = 0; i < size; ++i) {
    const uint32_t number = NumberAt(table + uint64_t{i} * 4);
    if (number > count_) return false;
    has_free = has_free || number == 0;
  }
  return has_free;
}

bool CatalogFile::HasSoundHeader() const {
  if (!TextAt(originals_, 0).empty()) return false;
  const std::string_view header = TextAt(translations_, 0);
  constexpr std::string_view kCharset = "charset=UTF-8";
  const std::string_view type = HeaderLine(header, "Content-Type:");
  const bool ends_so =
      type.size() >= kCharset.size() &&
      std::equal(kCharset.rbegin(), kCharset.rend(), type.rbegin(), [](char a, char b) {
        return std::toupper(static_cast<unsigned char>(a)) ==
               std::toupper(static_cast<unsigned char>(b));
      });
  // The C library looks for these words wherever they stand.
  const size_t rule = std::min(header.find("nplurals="), header.find("plural="));
  return ends_so && header.find("charset=") == header.rfind("charset=") &&
         header.find('\0') == std::string_view::npos &&
         (rule == std::string_view::npos ||
          (header.find("plural=") == header.rfind("plural=") &&
           IsSoundPluralRule(HeaderLine(header, "Plural-Forms:")) &&
           !HeaderLine(header, "Plural-Forms:").empty()));
}

std::vector<CatalogFile::Message> CatalogFile::messages() const {
  std::vector<Message> all;
  // The first is the header.
  for (uint32_t i = 1; i < count_; ++i) {
    all.push_back({TextAt(originals_, i), TextAt(translations_, i)});
  }
  return all;
}

}  // namespace lorimat::console
