// A catalog of messages as msgfmt writes it (NAME.mo), looked through before it is used: the C
// library takes what it finds in one for granted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lorimat::console {

class CatalogFile {
 public:
  struct Message {
    // With the context and a '\4' in front where there is one; with a NUL and the plural behind.
    std::string_view original;
    std::string_view translation;  // its forms, with a NUL between
  };

  // Reads a file. Nothing where there is none, where it cannot be read, and where it is no catalog
  // that the C library can be given: cut, of another version, with an entry outside the file or
  // out of order, in another encoding than UTF-8, or with a rule for plurals that divides by zero.
  static std::optional<CatalogFile> Read(const std::string& path);
  // The same of a file's bytes.
  static std::optional<CatalogFile> Parse(std::string bytes);

  std::vector<Message> messages() const;

 private:
  explicit CatalogFile(std::string bytes) : bytes_(std::move(bytes)) {}

  bool IsSound() const;
  bool HasSoundTexts() const;
  bool HasSoundHashes() const;
  bool HasSoundHeader() const;
  // The number at a place of the file; the file has it.
  uint32_t NumberAt(uint64_t place) const;
  bool IsInside(uint64_t place, uint64_t size) const {
    return size <= bytes_.size() && place <= bytes_.size() - size;
  }
  // The text that an entry of a table is about; the file has both.
  std::string_view TextAt(uint32_t table, uint32_t index) const;

  std::string bytes_;
  bool swapped_ = false;  // in the other order of bytes
  uint32_t count_ = 0;
  uint32_t originals_ = 0;  // where the tables are
  uint32_t translations_ = 0;
};

}  // namespace lorimat::console
