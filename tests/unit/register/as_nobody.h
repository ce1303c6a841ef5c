// Somebody whom the system refuses to read and write; root it refuses nothing.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace lorimat {

// While one is there, and the tests run as root, files are asked for as another user does.
class AsNobody {
 public:
  AsNobody() : root_(geteuid() == 0) {
    if (root_) {
      EXPECT_EQ(seteuid(65534), 0);
    }
  }
  ~AsNobody() {
    if (root_) {
      EXPECT_EQ(seteuid(0), 0);
    }
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;

 private:
  bool root_;
};

}  // namespace lorimat
