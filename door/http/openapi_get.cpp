// The door's description of itself.
#include "door/http/api.h"
#include "door/http/openapi_text.h"

namespace lorimat::door {

Reply Api::GetOpenApi(const Request&, const Path&) {
  Reply reply;
  reply.body = kOpenApiText;
  return reply;
}

}  // namespace lorimat::door
