#include "console/device/plugin_device.h"

#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {

std::unique_ptr<Device> OpenPlugin(const DeviceRequest& request, Streams&) {
  throw Failure(Tr("there is no device '{}'", Shown(request.device)));
}

}  // namespace lorimat::console
