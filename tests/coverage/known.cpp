// Branches that are known, for gcov_test.py. A line that ends in "// A of B" has B branches, and A
// of them are taken, when those of exceptions are left out and those of cleaning up; with "hidden"
// behind it, gcov's text alone has more. A question has two. A call that may throw has one, the way
// on, but for a line of a template of which there are several: where it was never executed it has
// both, for then the text does not say which of the two is the exception's.
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<std::string> ListInBraces() {
  return {"one", "two", "three"};  // 3 of 3 hidden
}

std::string Chosen(bool first) {
  // One question in the source and three by the compiler: which of the three texts were made?
  return first ? std::string("a") + "b" : std::string("c");  // 6 of 11 hidden
}

void Refuse(int value) {
  if (value > 1) throw std::runtime_error("refused");  // 3 of 3
}

// The decisions of a handler and behind it are only reached by an exception, and stay. gcov has the
// question behind it at the handler's end.
int Handled(int value, int other) {
  try {
    Refuse(value);
    return 0;
  } catch (const std::runtime_error&) {
    if (other == 1) return 1;  // 0 of 2
  }                            // 0 of 2
  if (other == 2) return 2;
  return 3;
}

// So do those of one that throws on.
int ThrownOn(int value, int other) {
  try {
    Refuse(value);
  } catch (...) {
    if (other == 3) std::puts("three");  // 0 of 3 hidden
    throw;
  }
  return 0;
}

// What stands beside a handler stays whole: it cannot be told from it.
std::size_t BesideAHandler() {
  std::size_t size = 0;
  try {
    const std::vector<std::string> list = {"one", "two"};  // 3 of 5
    size = list.size();
  } catch (...) {
    size = 7;
  }
  return size;
}

// A decision that no run takes, in a function that no run calls, with a list beside it.
int NeverCalled(int value) {
  if (value == 4) return static_cast<int>(ListInBraces().size());  // 0 of 3 hidden
  return value == 5 && ListInBraces().empty() ? 1 : 0;             // 0 of 7 hidden
}

// Two of a template.
template <typename Value>
int NeverCalledEither(Value value) {
  return ListInBraces().size() == sizeof value ? 1 : 2;  // 0 of 8
}

class Guard {
 public:
  explicit Guard(int value) : value_(value) {}
  // A destructor's own decision, which an exception may take as well.
  ~Guard() {
    if (value_ == 6) std::puts("six");  // 1 of 2
  }

 private:
  int value_;
};

int Guarded(int value) {
  const Guard guard(value);
  Refuse(value);
  return value == 0 ? 1 : 2;  // 1 of 2
}

}  // namespace

int main(int count, char**) {
  const std::size_t size = ListInBraces().size() + Chosen(true).size() + BesideAHandler();
  if (count > 5) return NeverCalled(count);                                 // 1 of 2
  if (count > 6) return NeverCalledEither(count) + NeverCalledEither('6');  // 1 of 2
  try {
    Refuse(2);
  } catch (const std::runtime_error&) {
    if (count == 1) std::puts("caught");  // 2 of 3
  }
  return size == 7 && Handled(0, 1) + ThrownOn(0, 1) == 0 && Guarded(0) == 1 ? 0 : 1;
}
