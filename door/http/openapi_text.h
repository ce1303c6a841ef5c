// door/openapi.json, as it was when the program was built.
#pragma once

namespace lorimat::door {

// OpenAPI 3.1, a JSON object with a line end behind it. It ends with a zero.
extern const char kOpenApiText[];

}  // namespace lorimat::door
