// What one operation of the client was given: its arguments in a readable form, and the
// pointers that its answer fills.
#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "recording/conversation/script_text.h"

class Event;

namespace conversation {

// A pointer that the answer fills.
struct Out {
  void* pointer;
  void (*fill)(void* pointer, const Value& value);
  Value (*read)(const void* pointer);  // what it holds now; a text up to its end
  bool is_text;
  std::size_t size;  // of the number in bytes; 0 for a text, whose room no pointer tells
};

// Fills it, or leaves it as it is where the value says so. Throws Failure for a number that is
// none.
inline void Give(const Out& out, const Value& value) {
  if (!value.IsKept()) out.fill(out.pointer, value);
}

// A pointer that the operation reads and fills.
template <typename T>
struct Both {
  T* pointer;
};
template <typename T>
Both<T> BothWays(T* pointer) {
  return {pointer};
}

// A field of a table record: an argument when the record is written, filled when it is read.
template <typename T>
struct TableField {
  bool write;
  T* pointer;
};
template <typename T>
TableField<T> Field(bool write, T* pointer) {
  return {write, pointer};
}

// The argument as the operation itself takes it.
template <typename T>
T Plain(T value) {
  return value;
}
template <typename T>
T* Plain(Both<T> both) {
  return both.pointer;
}
template <typename T>
T* Plain(TableField<T> field) {
  return field.pointer;
}

class CallSlip {
 public:
  CallSlip() = default;
  template <typename... Arguments>
  requires(sizeof...(Arguments) != 0) explicit CallSlip(Arguments... passed) { (Add(passed), ...); }

  std::vector<Value> arguments;
  std::vector<Out> outs;

 private:
  template <typename T>
  static Value Read(const T* pointer) {
    if (pointer == nullptr) return Value::Word("null");
    if constexpr (std::is_same_v<T, char>) {
      return Value::Text(pointer);
    } else if constexpr (std::is_same_v<T, bool>) {
      return Value::Word(*pointer ? "true" : "false");
    } else {
      return Value::Word(std::to_string(*pointer));
    }
  }

  template <typename T>
  static constexpr std::size_t SizeOf() {
    return std::is_same_v<T, char> ? 0 : sizeof(T);
  }

  template <typename T>
  static Value ReadBack(const void* pointer) {
    return Read(static_cast<const T*>(pointer));
  }

  template <typename T>
  static void Fill(void* pointer, const Value& value) {
    if (pointer == nullptr) return;
    if constexpr (std::is_same_v<T, char>) {
      char* text = static_cast<char*>(pointer);
      text[value.text.copy(text, value.text.size())] = '\0';
    } else if constexpr (std::is_same_v<T, bool>) {
      *static_cast<bool*>(pointer) = value.text == "true";
    } else {
      *static_cast<T*>(pointer) = static_cast<T>(ReadNumber(value.text));
    }
  }

  template <typename T>
  void Add(T value) {
    if constexpr (std::is_same_v<T, bool>) {
      arguments.push_back(Value::Word(value ? "true" : "false"));
    } else {
      arguments.push_back(Value::Word(std::to_string(value)));
    }
  }
  void Add(const char* text) { arguments.push_back(Read(text)); }
  void Add(Event* event) { arguments.push_back(Value::Word(event == nullptr ? "null" : "event")); }
  template <typename T>
  void Add(T* pointer) {
    outs.push_back({pointer, &Fill<T>, &ReadBack<T>, std::is_same_v<T, char>, SizeOf<T>()});
  }
  template <typename T>
  void Add(Both<T> both) {
    arguments.push_back(Read(both.pointer));
    outs.push_back({both.pointer, &Fill<T>, &ReadBack<T>, std::is_same_v<T, char>, SizeOf<T>()});
  }
  template <typename T>
  void Add(TableField<T> field) {
    if (field.write) {
      arguments.push_back(Read(field.pointer));
    } else {
      outs.push_back({field.pointer, &Fill<T>, &ReadBack<T>, std::is_same_v<T, char>, SizeOf<T>()});
    }
  }
};

}  // namespace conversation
