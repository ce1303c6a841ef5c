// What result codes mean: the classes, the codes that the library gives of itself, and the results
// of a device client. The texts of the answers are not here: they come from the library. What
// causes a code is in English here; the catalogs of po/ have it in other languages.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace language {

// A class of messages: one bit of a result code.
struct CodeClass {
  int bit;    // 0 for the class of the codes up to 255
  int shown;  // the number in "ERROR 1/9"
  const char* what;
};
std::span<const CodeClass> CodeClasses();

// A code that the library, or the older protocol that its tables come from, gives of itself.
struct OwnCode {
  int code;
  bool given;  // whether this library gives it; the others are kept for their texts
  const char* cause;
  const char* way_out = "";  // what leads out, where that is not plain to see
};
std::span<const OwnCode> OwnCodes();

// A result of the device client that has a name.
struct ClientResult {
  int result;
  const char* name;
  const char* cause;
  const char* way_out = "";
};
std::span<const ClientResult> ClientResults();

// What the console has the device answer to the lines of a batch that is stopped: the one at which
// that happens, and those behind it. No device answers them, and each class that the library adds
// to a result is in them, so that a line that passes them on is answered with this very code.
inline constexpr int kStoppedHere = 0x7FFF51;
inline constexpr int kStoppedBehind = 0x7FFF52;

// One way in which a code comes about.
struct CodeReading {
  enum Kind {
    kSuccess,        // 0
    kInternal,       // the translator's own sign, which no host sees
    kOwn,            // a code of the library
    kOwnAgain,       // a code of the library that was then taken for a client result
    kUnreachable,    // there was no answer from the device client
    kClient,         // a client result with a name
    kUnnamedClient,  // a client result without one
    kConsole         // of a line that the console has kept from the device
  };
  Kind kind = kOwn;
  std::vector<int> chain;  // from where it begins to the code itself, a code for each pass
  std::string name;        // of a client result
  std::string cause;
  std::string way_out;
  bool given = true;          // false for a code that the tables know and this library never gives
  bool once_or_more = false;  // a further pass changes nothing, so that it may be one of several
};

// Whether a result of the device client can have led to the code.
bool ComesFrom(long code, int result);

// Every way that is known, the likelier one first; none for a number that is no result code.
std::vector<CodeReading> ReadCode(int code);

}  // namespace language
