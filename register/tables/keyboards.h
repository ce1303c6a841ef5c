// The layouts of the register's three keyboards: which function each key has, and what the
// macro keys play. A key has a position, from 1.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lorimat {

struct ProgrammedKey {
  uint8_t code = 0;        // FunctionCode::Enum
  std::string macro = {};  // the codes that a macro key plays, one a byte

  bool operator==(const ProgrammedKey&) const = default;
};

class Keyboards {
 public:
  static constexpr int kConnected = 0;      // number of the keyboard that is plugged in
  static constexpr size_t kMacroSize = 39;  // with a NUL behind them they fill a record of 40

  Keyboards();

  // What the keyboards are, as lists with a comma between: their numbers, names, counts of keys.
  static std::string Types();
  static std::string Names();
  static std::string KeyCounts();

  // Null for a keyboard or a position that is not there.
  const ProgrammedKey* Find(int keyboard, int position) const;
  // Gives a key its function. Refused with RTF_E_ILLEGAL: keys and codes that are not there, a
  // macro on a key that is no macro key (200 to 219) or one that holds macro keys itself, and
  // any change that moves clear, a digit or the key lock from its place or to another. A macro
  // beyond its size answers RTF_EFPTR_BAD_LENGTH.
  int Program(int keyboard, int position, ProgrammedKey key);
  // The first key with this code and a macro; null when there is none.
  const ProgrammedKey* FindMacro(uint8_t code) const;

  // Tells each key that is another one than on `before`: keyboard, position, key.
  void ForEachChange(
      const Keyboards& before,
      const std::function<void(int keyboard, int position, const ProgrammedKey& key)>& each) const;

 private:
  // By keyboard, by position less 1. Copies share it until one of them is programmed.
  std::shared_ptr<std::vector<std::vector<ProgrammedKey>>> keys_;
};

}  // namespace lorimat
