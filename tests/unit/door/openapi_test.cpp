// The door's description names what the door takes, and nothing else.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "door/http/api.h"
#include "door/http/openapi_text.h"

namespace lorimat::door {
namespace {

using nlohmann::json;

// A path's braces are what a route has "#" for.
std::string Plain(std::string path) {
  for (size_t open = path.find('{'); open != path.npos; open = path.find('{')) {
    path.replace(open, path.find('}') - open + 1, "#");
  }
  return path;
}

std::string InCapitals(std::string method) {
  for (char& c : method) c = static_cast<char>(c - 'a' + 'A');
  return method;
}

std::vector<std::string> Described() {
  const json api = json::parse(kOpenApiText);
  std::vector<std::string> texts;
  for (const auto& [path, operations] : api.at("paths").items()) {
    for (const auto& [method, operation] : operations.items()) {
      std::string& text = texts.emplace_back(InCapitals(method) + Plain(path));
      for (json parameter : operation.value("parameters", json::array())) {
        if (parameter.contains("$ref")) {
          const std::string pointer = parameter.at("$ref").get<std::string>().substr(1);
          parameter = api.at(json::json_pointer(pointer));
        }
        if (parameter.at("in") != "query") continue;
        text += "&" + parameter.at("name").get<std::string>();
      }
    }
  }
  return texts;
}

TEST(OpenApi, HasEachRouteAndNoOther) {
  EXPECT_THAT(Described(), testing::UnorderedElementsAreArray(Api::RouteTexts()));
}

}  // namespace
}  // namespace lorimat::door
