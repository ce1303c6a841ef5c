#include "door/access/origin.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::door {
namespace {

TEST(Origin, IsWhatABrowserSends) {
  for (const char* origin :
       {"https://till.example", "http://localhost:8080", "http://192.168.0.4:80800"}) {
    EXPECT_EQ(IsOrigin(origin), std::string(origin).find("80800") == std::string::npos) << origin;
  }
  EXPECT_TRUE(IsOrigin("https://[::1]:8443"));
  EXPECT_TRUE(IsOrigin("https://[::1]"));
  for (const char* origin : {"",
                             "null",
                             "*",
                             "till.example",
                             "https://",
                             "https://:80",
                             "https://till.example/",
                             "https://till.example:",
                             "https://till.example:443",
                             "http://till.example:80",
                             "https://till.example:08",
                             "https://TILL.example",
                             "ftp://till.example",
                             "https://a@till.example",
                             "https://till.example:8443/x",
                             "https://till.example:66000",
                             "https://*.example",
                             "https://[::1",
                             "https://[::1]x",
                             "https://a b"}) {
    EXPECT_FALSE(IsOrigin(origin)) << origin;
  }
}

TEST(HostName, HasNoPort) {
  for (const char* name : {"till", "Till.shop.example", "192.168.0.4", "[fe80::1]"}) {
    EXPECT_TRUE(IsHostName(name)) << name;
  }
  for (const char* name : {"", "till:80", "a b", "-a", ".a", "a/b", "[]", "[::1]:80", "[g::]"}) {
    EXPECT_FALSE(IsHostName(name)) << name;
  }
  EXPECT_TRUE(IsHostName(std::string(253, 'a')));
  EXPECT_FALSE(IsHostName(std::string(254, 'a')));
}

}  // namespace
}  // namespace lorimat::door
